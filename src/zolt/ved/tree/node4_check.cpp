#include "zolt/ved/operators/operator.h"
#include "zolt/ved/tree/detail/row_normaliser.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/row_view.h"
#include "zolt/ved/tree/tree_walk.h"

namespace zolt::math::ved {

void Node4C::checkTree(SelectionS& places) {
  if (state_.stale & STALE_CHECK) {
    auto const normalise = [&](Node4C& node) {
      node.unmark(STALE_CHECK);
      if (node.type_ == NODE4_LINE) RowNormaliserC(node, places).normalise();
      if (node.type_ == NODE4_OPERATOR) node.indexTable();
    };
    auto const leave = [](Node4C& node) {
      if (node.state_.index) node.state_.index->clear(STALE_CHECK);
    };
    walkTree(*this, normalise, leave,
             [](Node4C& node, unsigned long& next) { return node.findMarked(next, STALE_CHECK); });
  }
  // A place may be beside a supplied bracket even in an unchanged row.
  stepInside(places.caret);
  stepInside(places.anchor);
}

void Node4C::checkTree(Node4C*& caretNode, unsigned& caretPos, Node4C*& anchorNode, unsigned& anchorPos) {
  SelectionS places{{anchorNode, anchorPos}, {caretNode, caretPos}};
  checkTree(places);
  caretNode = const_cast<Node4C*>(places.caret.node);
  caretPos = places.caret.pos;
  anchorNode = const_cast<Node4C*>(places.anchor.node);
  anchorPos = places.anchor.pos;
}

void Node4C::checkTree() {
  SelectionS noPlaces;
  checkTree(noPlaces);
}

void Node4C::stepInside(PlaceS& place) {
  Node4C const* const row = place ? place.node->parent_ : nullptr;
  if (!row || row->type_ != NODE4_LINE || !place.node->isEmptyText()) return;
  unsigned long const from = place.node->findChildNumber();
  unsigned long inside = from;
  while (inside + 1 < row->numChildren() && row->child(inside + 1)->type_ == NODE4_AUTO_OPEN) inside += 2;
  while (inside > 0 && row->child(inside - 1)->type_ == NODE4_AUTO_CLOSE) inside -= 2;
  if (inside != from) place = inside > from ? startOf(row->child(inside)) : endOf(row->child(inside));
}

Node4C* Node4C::inLine() {
  if (type_ == NODE4_LINE) return this;
  auto* row = new Node4C(NODE4_LINE, 1);
  row->setChild(0, this);
  return row;
}

bool Node4C::isPlaceholder() const { return text_.empty() && parent_ && lacksOperand(*this); }

}  // namespace zolt::math::ved
