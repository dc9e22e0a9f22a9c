#include "zolt/field/caret_speech.h"

#include <algorithm>
#include <utility>

#include "zolt/field/detail/spoken_nouns.h"
#include "zolt/field/readable_text.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/row_view.h"
#include "zolt/ved/view/view.h"

namespace zolt::field {

using namespace detail;
using namespace exchange;
using namespace math::ved;

namespace {

bool isAtEnd(PlaceS place) { return place.pos == place.node->sizeText(); }

/// Whether the caret gets from one place to the other by one key.
bool isOneStep(PlaceS from, PlaceS to) {
  if (from.node == to.node) return from.pos + 1 == to.pos || to.pos + 1 == from.pos;
  if (isBefore(to, from)) std::swap(from, to);
  return isAtEnd(from) && to.pos == 0 && from.node->goRight() && from.node->goRight()->goRight() == to.node;
}

class MoveC {
 public:
  MoveC(ViewZNT4C const& view, SpeechStyleS style) : view_(view), nouns_(style.language), style_(style) {}

  SpokenMoveS tellMove(PlaceS from, PlaceS to) const {
    Node4C const& fromRow = *from.node->getParent();
    Node4C const& toRow = *to.node->getParent();
    if (&fromRow == &toRow) {
      return isOneStep(from, to) ? SpokenMoveS{speak({from, to})} : SpokenMoveS{tellPlace(to), true};
    }
    Node4C const* const left = findItem(fromRow, toRow);
    if (!left || findItem(toRow, fromRow)) return {tellRow(toRow), true};
    if (to == placeAfter(*left)) return {nouns_.say(SPEECH_END, nouns_.ofItem(*left)), true};
    if (to == placeBefore(*left)) return {nouns_.say(SPEECH_START, nouns_.ofItem(*left)), true};
    return {tellPlace(to), true};
  }

  SpokenMoveS tellSelection(SelectionS const& before, SelectionS const& now) const {
    PlaceS const start = before.anchor ? before.anchor : before.caret;
    bool const grows = isBetween(before.caret, now.anchor, now.caret);
    if (start != now.anchor || (!grows && !isBetween(now.caret, now.anchor, before.caret))) {
      return {nouns_.say(SPEECH_SELECTED, speak(now))};
    }
    return {nouns_.say(grows ? SPEECH_SELECTED : SPEECH_UNSELECTED, speak({before.caret, now.caret}))};
  }

  /// The construct with the row that the caret is in.
  wstring tellConstruct(Node4C const& row) const {
    return nouns_.ofItem(*row.getParent()).text + u", " + tellRow(row);
  }
  wstring tellDeleted(wstring const& words) const { return nouns_.say(SPEECH_DELETED, words); }

 private:
  /// Where the caret is: in a row, at one of its ends.
  wstring tellPlace(PlaceS place) const {
    Node4C const& row = *place.node->getParent();
    if (isEmptyRow(row)) return tellRow(row);
    if (place == rowStart(row)) return nouns_.say(SPEECH_START, nouns_.ofRow(row));
    if (place == rowEnd(row)) return nouns_.say(SPEECH_END, nouns_.ofRow(row));
    return speak({place, isAtEnd(place) ? placeAfter(*place.node->goRight()) : endOf(place.node)});
  }
  wstring tellRow(Node4C const& row) const {
    return nouns_.say(isEmptyRow(row) ? SPEECH_EMPTY_ROW : SPEECH_INTO, nouns_.ofRow(row));
  }
  wstring speak(SelectionS const& stretch) const {
    return makeReadableText(stretch, view_.crefOperatorList(), style_).text;
  }
  /// The item of `row` that `inner` is in; null when it is in none.
  static Node4C const* findItem(Node4C const& inner, Node4C const& row) {
    Node4C const* item = &inner;
    while (item && item->getParent() != &row) item = item->getParent();
    return item;
  }
  static bool isBetween(PlaceS place, PlaceS a, PlaceS b) {
    return place == a || (isBefore(a, b) ? isBefore(a, place) && isBefore(place, b)
                                         : isBefore(b, place) && isBefore(place, a));
  }

  ViewZNT4C const& view_;
  NounsC nouns_;
  SpeechStyleS style_;
};

void widenToWords(SpokenEditS& edit, wstring const& before, wstring const& now) {
  auto const isBreak = [](wstring const& text, std::size_t at) {
    return at == 0 || at >= text.size() || text[at] == u' ' || text[at] == u',' || text[at - 1] == u' ';
  };
  std::size_t begin = edit.offset;
  while (!isBreak(before, begin) || !isBreak(now, begin)) --begin;
  std::size_t removedEnd = edit.offset + edit.removed.size();
  std::size_t insertedEnd = edit.offset + edit.inserted.size();
  while (!isBreak(before, removedEnd) || !isBreak(now, insertedEnd)) ++removedEnd, ++insertedEnd;
  edit.offset = static_cast<unsigned long>(begin);
  edit.removed = before.substr(begin, removedEnd - begin);
  edit.inserted = now.substr(begin, insertedEnd - begin);
}

SpokenEditS compare(wstring const& before, wstring const& now) {
  std::size_t const common = std::min(before.size(), now.size());
  std::size_t start = 0, end = 0;
  while (start < common && before[start] == now[start]) ++start;
  while (end < common - start && before[before.size() - 1 - end] == now[now.size() - 1 - end]) ++end;
  SpokenEditS edit;
  edit.offset = static_cast<unsigned long>(start);
  edit.removed = before.substr(start, before.size() - end - start);
  edit.inserted = now.substr(start, now.size() - end - start);
  // One letter more or less is heard as it is; a word that becomes another one as a whole.
  if (!edit.removed.empty() && !edit.inserted.empty()) widenToWords(edit, before, now);
  return edit;
}

wstring trim(wstring const& text) {
  std::size_t const begin = text.find_first_not_of(u" ,");
  return begin == text.npos ? wstring() : text.substr(begin, text.find_last_not_of(u" ,") + 1 - begin);
}

}  // namespace

void CaretSpeechC::listen(ViewZNT4C const& view) {
  selection_ = pathOf(view.getSelection());
  words_ = makeReadableText(view, style_).text;
}

SpokenMoveS CaretSpeechC::tellMove(ViewZNT4C const& view) {
  if (!isListening()) return {};
  SelectionS const now = view.getSelection();
  SelectionPathS const path = pathOf(now);
  SelectionPathS const last = std::exchange(selection_, path);
  SelectionS const before = selectionAt(view.crefRoot(), last);
  if (last == path || !before.caret) return {};
  MoveC const move(view, style_);
  bool const isSelected = now.anchor && now.anchor != now.caret;
  return isSelected ? move.tellSelection(before, now) : move.tellMove(before.caret, now.caret);
}

SpokenEditS CaretSpeechC::tellEdit(ViewZNT4C const& view) {
  CaretSpeechC const last = *this;
  listen(view);
  if (!last.isListening()) return {};
  SpokenEditS edit = compare(*last.words_, *words_);
  SelectionS const now = view.getSelection();
  MoveC const move(view, style_);
  wstring const typed = trim(edit.inserted), deleted = trim(edit.removed);
  bool const isNested = selection_.caret.path.size() > last.selection_.caret.path.size();
  if (isNested && !now.anchor) {
    edit.said = move.tellConstruct(*now.caret.node->getParent());
    edit.isPlace = true;
  } else if (!deleted.empty() && deleted.size() > typed.size()) {
    edit.said = move.tellDeleted(deleted) + (typed.empty() ? u"" : u", ") + typed;
  } else {
    edit.said = typed;
  }
  return edit;
}

}  // namespace zolt::field
