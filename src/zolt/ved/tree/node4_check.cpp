#include "zolt/ved/operators/operator.h"
#include "zolt/ved/tree/detail/row_normaliser.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/tree_walk.h"

namespace zolt::math::ved {

void Node4C::checkTree(Node4C*& caretNode, unsigned& caretPos, Node4C*& anchorNode, unsigned& anchorPos) {
  if (!(stale_ & STALE_VISIT)) return;
  RowNormaliserC normaliser(caretNode, caretPos, anchorNode, anchorPos);
  walkTree(
      *this, [&](Node4C& node) { normaliser.visit(node); }, &RowNormaliserC::leave,
      [](Node4C& node, unsigned long& next) { return node.findMarked(next, STALE_VISIT); });
  normaliser.markRowsWithAutoBrackets();
}

void Node4C::checkTree(SelectionS& places) {
  auto* caretNode = const_cast<Node4C*>(places.caret.node);
  auto* anchorNode = const_cast<Node4C*>(places.anchor.node);
  checkTree(caretNode, places.caret.pos, anchorNode, places.anchor.pos);
  places.caret.node = caretNode;
  places.anchor.node = anchorNode;
}

void Node4C::checkTree() {
  SelectionS noPlaces;
  checkTree(noPlaces);
}

void Node4C::stepInside(PlaceS& place) {
  if (!place || !place.node->parent_) return;
  auto* node = const_cast<Node4C*>(place.node);
  RowNormaliserC::stepInside(*node->parent_, node, place.pos);
  place.node = node;
}

Node4C* Node4C::inLine() {
  if (type_ == NODE4_LINE) return this;
  auto* row = new Node4C(NODE4_LINE, nullptr, wstring(), 1);
  row->setChild(0, this);
  return row;
}

bool Node4C::isPlaceholder() const {
  if (!text_.empty() || !parent_) return false;
  if (parent_->numChildren() == 1) return true;
  Node4C const* right = goRight();
  if (!right || right->type_ != NODE4_POWER) return false;
  Node4C const* left = goLeft();
  if (!left) return true;
  return left->type_ != NODE4_OPERATOR && left->type_ != NODE4_CLOSE && left->type_ != NODE4_AUTO_CLOSE;
}

}  // namespace zolt::math::ved
