#include "zolt/ved/operators/operator.h"

#include "zolt/algexpr/parent_node.h"
#include "zolt/ved/operators/call_row.h"
#include "zolt/ved/operators/detail/operands.h"
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

OperatorBC::~OperatorBC() = default;

wstring OperatorBC::getName() const { return name_; }
wstring OperatorBC::getText() const { return text_; }
unsigned long OperatorBC::getArity() const { return arity_; }
int OperatorBC::getPrecedence() const { return precedence_; }
bool OperatorBC::isLinear() const { return linear_; }
bool OperatorBC::isCoreElement() const { return coreElement_; }
int OperatorBC::getCode() const { return code_; }

std::pair<Node4C*, int> OperatorBC::fromAlgebraicNode(algexpr::NodeABC& node, ConversionStackT& stack) const {
  if (arity_ != 0) return {makeCallRow(text_, arity_, stack), precedence_};
  auto const* parent = algexpr::castNode<algexpr::ParentNodeABC>(node);
  if (parent && parent->numChildren() > 0)
    return {makeCallRow(text_, parent->numChildren(), stack), precedence_};
  return {detail::makeText(text_).release(), 0};
}

wstring OperatorBC::arrangeArgumentList(std::vector<wstring> const& arguments) const {
  wstring list;
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    if (i > 0) list += Node4C::COMMA_C;
    list += arguments[i];
  }
  return list;
}

void OperatorBC::beforeChildrenLayout(Node4C*, GraphicsABC const&) const {}
void OperatorBC::layoutNode4(Node4C*, GraphicsABC const&) const {}
void OperatorBC::displayNode4(Node4C*, GraphicsABC const&, long, long, long, long, long) const {}

bool OperatorBC::runOperator(ViewZNT4C& view) const {
  ViewInsertionC insertion(view);
  if (arity_ == 0) {
    insertion.deleteSelection();
    insertion.insertText(text_);
    return true;
  }
  std::unique_ptr<Node4C> const selection = insertion.cutSelection();
  insertion.insertText(text_);

  // One text between the brackets holds the commas that separate the arguments.
  Node4C& name = insertion.refCaretNode();
  unsigned int const pos = insertion.getCaret().pos;
  wstring const behind = name.crefText().substr(pos);
  name.refText().erase(pos);
  detail::NodeT commas = detail::makeText(wstring(arity_ - 1, Node4C::COMMA_C));
  Node4C* const arguments = commas.get();
  Node4C* const row = name.getParent();
  unsigned long place = name.findChildNumber() + 1;
  row->insertChild(place++, detail::makeItem(NODE4_OPEN).release());
  row->insertChild(place, commas.release());
  row->insertChild(place + 1, detail::makeItem(NODE4_CLOSE).release());
  row->insertChild(place + 2, detail::makeText(behind).release());

  if (selection) {
    while (selection->numChildren() > 0) {
      Node4C* const item = selection->child(0);
      selection->removeChild(0);
      row->insertChild(place++, item);
    }
  }
  insertion.placeCaret({arguments, selection && arity_ > 1 ? 1u : 0u});
  return true;
}

bool OperatorBC::hasOwnRow(unsigned long) const { return false; }

}  // namespace zolt::math::ved
