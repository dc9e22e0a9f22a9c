#include "zolt/ved/operators/operator.h"

#include "zolt/algexpr/parent_node.h"
#include "zolt/ved/operators/call_row.h"
#include "zolt/ved/operators/row_building.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/view/view_insertion.h"

namespace zolt::math::ved {

OperatorBC::OperatorBC(wstring const& name, wstring const& text, unsigned long arity, int precedence,
                       bool linear, bool coreElement, int code)
    : name_(name),
      text_(text),
      arity_(arity),
      precedence_(precedence),
      linear_(linear),
      coreElement_(coreElement),
      code_(code) {}

std::pair<Node4C*, int> OperatorBC::fromAlgebraicNode(algexpr::NodeABC& node, ConversionStackT& stack) const {
  algexpr::ParentNodeABC const* const parent = node.asParent();
  unsigned long const count = arity_ != 0 || !parent ? arity_ : parent->numChildren();
  if (count == 0) return {rows::makeText(text_).release(), 0};
  return {makeCallRow(text_, count, stack), precedence_};
}

wstring OperatorBC::arrangeArgumentList(std::vector<wstring> const& arguments) const {
  wstring list;
  for (wstring const& argument : arguments) {
    if (&argument != &arguments.front()) list += Node4C::COMMA_C;
    list += argument;
  }
  return list;
}

wstring OperatorBC::getStoredName() const {
  wstring const variant = getVariant();
  return variant.empty() ? getName() : getName() + u' ' + variant;
}

void OperatorBC::displayNode4(Node4C*, GraphicsABC const&, long, long, long, long, long) const {}

bool OperatorBC::runOperator(ViewZNT4C& view) const {
  ViewInsertionC insertion(view);
  if (arity_ == 0) {
    insertion.deleteSelection();
    insertion.insertText(text_);
    return true;
  }
  std::unique_ptr<Node4C> selection = insertion.cutSelection();
  insertion.insertText(text_);

  // One text between the brackets holds the commas that separate the arguments.
  Node4C& name = insertion.refCaretNode();
  unsigned int const pos = insertion.getCaret().pos;
  wstring const behind = name.crefText().substr(pos);
  name.refText().erase(pos);
  rows::NodeT commas = rows::makeText(wstring(arity_ - 1, Node4C::COMMA_C));
  Node4C* const arguments = commas.get();
  Node4C* const row = name.getParent();
  unsigned long place = name.findChildNumber() + 1;
  row->insertChild(place++, rows::makeOpen().release());
  row->insertChild(place, commas.release());
  row->insertChild(place + 1, rows::makeClose().release());
  row->insertChild(place + 2, rows::makeText(behind).release());
  bool const filled = selection && arity_ > 1;
  if (selection) row->spliceChildren(place, selection.release());
  insertion.placeCaret({arguments, filled ? 1u : 0u});
  return true;
}

}  // namespace zolt::math::ved
