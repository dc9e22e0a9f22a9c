#include "zolt/field/surrounding_text.h"

#include <algorithm>

#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/row_view.h"
#include "zolt/ved/tree/tree_path.h"
#include "zolt/ved/view/view.h"

namespace zolt::field {

using namespace math::ved;

namespace {

char16_t signOf(Node4C const& item) {
  if (isOpeningBracket(item.getType())) return u'(';
  return isClosingBracket(item.getType()) ? u')' : SurroundingTextS::construct_sign;
}

/// The characters after a place, at most `reach`. When `end` is met on the way, `distance` is set to the
/// number of characters before it.
wstring readAfter(PlaceS place, unsigned long reach, PlaceS end, unsigned long& distance) {
  wstring text;
  unsigned long pos = place.pos;
  for (Node4C const* item = place.node; item && text.size() <= reach; item = item->goRight(), pos = 0) {
    if (item == end.node && end.pos >= pos) distance = text.size() + end.pos - pos;
    if (item->getType() == NODE4_TEXT) {
      text.append(item->crefText(), pos, reach - text.size());
    } else {
      text += signOf(*item);
    }
  }
  return text.substr(0, reach);
}

/// The same before a place.
wstring readBefore(PlaceS place, unsigned long reach, PlaceS end, unsigned long& distance) {
  wstring backwards;
  unsigned long pos = place.pos;
  for (Node4C const* item = place.node; item && backwards.size() <= reach;) {
    if (item == end.node && end.pos <= pos) distance = backwards.size() + pos - end.pos;
    if (item->getType() == NODE4_TEXT) {
      wstring const& text = item->crefText();
      unsigned long const count = std::min<unsigned long>(pos, reach - backwards.size());
      for (unsigned long i = 0; i < count; ++i) backwards += text[pos - 1 - i];
    } else {
      backwards += signOf(*item);
    }
    item = item->goLeft();
    if (item) pos = item->sizeText();
  }
  return {backwards.rbegin(),
          backwards.rbegin() + static_cast<long>(std::min<std::size_t>(backwards.size(), reach))};
}

}  // namespace

SurroundingTextS makeSurroundingText(ViewZNT4C const& view, unsigned long reach) {
  SelectionS const selection = view.getSelection();
  SelectionS const range = inOneRow(selection);
  bool const forwards = !selection.anchor || isBefore(selection.anchor, selection.caret);
  PlaceS const caret = forwards ? range.caret : range.anchor;
  PlaceS const anchor = forwards ? range.anchor : range.caret;
  SurroundingTextS around;
  unsigned long before = reach + 1;
  unsigned long after = reach + 1;
  around.text = readBefore(caret, reach, anchor, before);
  around.caret = around.anchor = around.text.size();
  around.text += readAfter(caret, reach, anchor, after);
  if (caret == anchor) return around;
  around.anchor = forwards ? around.caret - std::min(before, around.caret)
                           : std::min<unsigned long>(around.caret + after, around.text.size());
  return around;
}

PlaceS placeAtDistance(PlaceS from, long count) {
  auto left = static_cast<unsigned long>(count < 0 ? -count : count);
  while (left > 0) {
    unsigned long const size = from.node->sizeText();
    unsigned long const step = std::min<unsigned long>(left, count < 0 ? from.pos : size - from.pos);
    left -= step;
    from.pos = static_cast<unsigned int>(count < 0 ? from.pos - step : from.pos + step);
    Node4C const* const item = count < 0 ? from.node->goLeft() : from.node->goRight();
    if (left == 0 || !item) break;
    from = count < 0 ? placeBefore(*item) : placeAfter(*item);
    --left;
  }
  return from;
}

}  // namespace zolt::field
