#include "zolt/field/caret_motion.h"

#include "zolt/field/detail/vertical_motion.h"
#include "zolt/field/detail/words.h"
#include "zolt/ved/tree/row_view.h"
#include "zolt/ved/view/view.h"

namespace zolt::field {

using namespace detail;
using namespace math::ved;

namespace {

PlaceS leftOf(PlaceS from) {
  if (from.pos == 0) return endOf(previousText(*from.node));
  do {
    --from.pos;
  } while (from.pos > 0 && isContinuation(from.node->crefText()[from.pos]));
  return from;
}

PlaceS rightOf(PlaceS from) {
  wstring const& text = from.node->crefText();
  if (from.pos == text.size()) return startOf(nextText(*from.node));
  do {
    ++from.pos;
  } while (from.pos < text.size() && isContinuation(text[from.pos]));
  return from;
}

PlaceS outLeft(PlaceS from) {
  Node4C const* const item = enclosingItem(*from.node);
  return item ? placeBefore(*item) : PlaceS();
}

PlaceS outRight(PlaceS from) {
  Node4C const* const item = enclosingItem(*from.node);
  return item ? placeAfter(*item) : PlaceS();
}

PlaceS wordLeft(PlaceS from) {
  if (from.pos == 0) {
    Node4C const* const item = from.node->goLeft();
    return item ? placeBefore(*item) : outLeft(from);
  }
  wstring const& text = from.node->crefText();
  while (from.pos > 0 && text[from.pos - 1] == u' ') --from.pos;
  if (from.pos == 0) return from;
  unsigned int const start = wordStart(text, from.pos);
  return {from.node, start < from.pos ? start : from.pos - 1};
}

PlaceS wordRight(PlaceS from) {
  wstring const& text = from.node->crefText();
  if (from.pos == text.size()) {
    Node4C const* const item = from.node->goRight();
    return item ? placeAfter(*item) : outRight(from);
  }
  while (from.pos < text.size() && text[from.pos] == u' ') ++from.pos;
  if (from.pos == text.size()) return from;
  unsigned int const end = wordEnd(text, from.pos);
  return {from.node, end > from.pos ? end : from.pos + 1};
}

PlaceS nextSlot(PlaceS from) {
  Node4C const* text = from.node;
  do {
    text = nextText(*text);
  } while (text && !isSlot(*text));
  return text ? startOf(text) : outRight(from);
}

PlaceS previousSlot(PlaceS from) {
  Node4C const* text = from.node;
  do {
    text = previousText(*text);
  } while (text && !isSlot(*text));
  return text ? startOf(text) : outLeft(from);
}

PlaceS search(CaretMotionE motion, ViewZNT4C const& view, PlaceS from, long& column) {
  auto const [formulaStart, formulaEnd] = view.getWhole();
  auto const [start, end] = wholeRow(*from.node->getParent());
  switch (motion) {
    case MOTION_LEFT:
      return leftOf(from);
    case MOTION_RIGHT:
      return rightOf(from);
    case MOTION_UP:
    case MOTION_DOWN:
      return findVertical(view, from, motion, column);
    case MOTION_WORD_LEFT:
      return wordLeft(from);
    case MOTION_WORD_RIGHT:
      return wordRight(from);
    case MOTION_HOME:
      return from != start ? start : formulaStart;
    case MOTION_END:
      return from != end ? end : formulaEnd;
    case MOTION_FORMULA_START:
      return formulaStart;
    case MOTION_FORMULA_END:
      return formulaEnd;
    case MOTION_NEXT_SLOT:
      return nextSlot(from);
    case MOTION_PREVIOUS_SLOT:
      return previousSlot(from);
    case MOTION_OUT_LEFT:
      return outLeft(from);
    case MOTION_OUT_RIGHT:
      return outRight(from);
  }
  return {};
}

}  // namespace

PlaceS findTarget(CaretMotionE motion, ViewZNT4C const& view, PlaceS from, long& column) {
  PlaceS const target = search(motion, view, from, column);
  return target == from ? PlaceS() : target;
}

}  // namespace zolt::field
