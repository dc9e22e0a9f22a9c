#include "zolt/field/detail/stretch.h"

#include "zolt/ved/tree/node4.h"
#include "zolt/ved/view/view.h"

namespace zolt::field::detail {

using namespace math::ved;

PlaceS StretchS::begin() const { return {row->child(first), firstPos}; }

PlaceS StretchS::end() const { return {row->child(last), lastPos}; }

bool operator==(StretchS const& a, StretchS const& b) {
  return a.row == b.row && a.first == b.first && a.firstPos == b.firstPos && a.last == b.last &&
         a.lastPos == b.lastPos;
}

StretchS selectedStretch(ViewZNT4C const& view) {
  StretchS stretch;
  Node4C* row = nullptr;
  if (view.getSelectionBounds(row, stretch.first, stretch.firstPos, stretch.last, stretch.lastPos)) {
    stretch.row = row;
    // An end inside a construct takes the whole construct.
    if (row->child(stretch.first)->getType() != NODE4_TEXT) {
      --stretch.first;
      stretch.firstPos = static_cast<unsigned int>(row->child(stretch.first)->sizeText());
    }
    if (row->child(stretch.last)->getType() != NODE4_TEXT) {
      ++stretch.last;
      stretch.lastPos = 0;
    }
    return stretch;
  }
  Node4C const& text = *view.getCaretNode();
  stretch.row = text.getParent();
  stretch.first = stretch.last = text.findChildNumber();
  stretch.firstPos = stretch.lastPos = view.getCaretPos();
  return stretch;
}

}  // namespace zolt::field::detail
