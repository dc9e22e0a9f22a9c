#include "zolt/field/detail/spoken_nouns.h"

#include <algorithm>
#include <string>
#include <string_view>

#include "zolt/ved/operators/operator.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/table_view.h"

namespace zolt::field::detail {

using namespace exchange;
using namespace math::ved;
using std::u16string_view;

namespace {

NounS readNoun(u16string_view text) {
  std::size_t const slash = text.find(u'/');
  NounS noun{wstring(text.substr(0, slash))};
  std::size_t const gender = slash < text.size() ? u16string_view(u"mfnw").find(text.back()) : 0;
  noun.gender = static_cast<int>(gender);
  return noun;
}

}  // namespace

NounS NounsC::find(Node4C const& item, unsigned long index) const {
  bool const isPower = item.getType() == NODE4_POWER;
  OperatorBC const* const op = item.crefOperator();
  SpokenFormS const* const form = findSpokenForm(isPower || !op ? u"^" : op->getName(), language_);
  u16string_view nouns = form ? form->nouns : u16string_view();
  if (nouns.empty()) {
    return index == 0 && op ? NounS{op->getText()} : readNoun(getSpeechWord(SPEECH_PART, language_));
  }
  for (; index > 0 && nouns.find(u',') != nouns.npos; --index) nouns.remove_prefix(nouns.find(u',') + 1);
  return readNoun(nouns.substr(0, nouns.find(u',')));
}

NounS NounsC::ofItem(Node4C const& item) const { return find(item, 0); }

NounS NounsC::ofRow(Node4C const& row) const {
  Node4C const& parent = *row.getParent();
  if (parent.getType() == NODE4_ROOT) return readNoun(getSpeechWord(SPEECH_FORMULA, language_));
  unsigned long const number = row.findChildNumber();
  unsigned long const columns = countColumns(parent);
  if (columns == 0) return find(parent, number + 1);
  NounS cell = find(parent, number % columns + 1);
  auto const append = [&](SpeechWordE word, unsigned long count) {
    std::string const digits = std::to_string(count + 1);
    cell.text += u", " + say(word, wstring(digits.begin(), digits.end()));
  };
  append(SPEECH_TABLE_ROW, number / columns);
  // "condition" says which column it is.
  if (find(parent, 1).text == find(parent, 2).text) append(SPEECH_TABLE_COLUMN, number % columns);
  return cell;
}

wstring NounsC::say(SpeechWordE word, wstring const& about) const {
  wstring said(getSpeechWord(word, language_));
  std::size_t const place = said.find(u'#');
  return place == said.npos ? said : said.replace(place, 1, about);
}

wstring NounsC::say(SpeechWordE word, NounS const& about) const {
  bool const hasGender = word == SPEECH_INTO || word == SPEECH_EMPTY_ROW;
  return say(hasGender ? static_cast<SpeechWordE>(word + about.gender) : word, about.text);
}

}  // namespace zolt::field::detail
