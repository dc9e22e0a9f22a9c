#include "zolt/catalogue_extended/operator_where_equation.h"

#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/algexpr/nodes.h"
#include "zolt/algexpr/parent_node.h"
#include "zolt/ved/operators/row_building.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::catalogue_extended {

using namespace math::ved;
using math::algexpr::AlgebraicExpressionC;
using math::algexpr::NodeABC;
using math::algexpr::SymbolNodeC;
using oss::wstring;

namespace {

/// The name on the left of an equation; null for anything else.
SymbolNodeC const* findVariable(NodeABC const& node) {
  auto const* const equation = node.asParent();
  bool const fits = equation && equation->crefName() == u"=" && equation->numChildren() == 2;
  return fits ? math::algexpr::castNode<SymbolNodeC>(equation->child(0)) : nullptr;
}

/// Takes `start` from the texts that the row begins with; false, and nothing changes, when they differ.
bool takeStart(Node4C& row, wstring const& start) {
  wstring found;
  unsigned long texts = 0;
  while (found.size() < start.size() && texts < row.numChildren() &&
         row.child(texts)->getType() == NODE4_TEXT) {
    found += row.child(texts++)->crefText();
  }
  if (found.compare(0, start.size(), start) != 0) return false;
  row.deleteChildren(0, texts - 1);
  row.child(0)->refText().assign(found, start.size(), wstring::npos);
  return true;
}

}  // namespace

OperatorWhereEquationC::OperatorWhereEquationC(OperatorBC const& standard, wstring variant)
    : OperatorWhereC(standard.getName(), standard.getText(), standard.isCoreElement(), standard.getCode()),
      variant_(std::move(variant)) {
  setWords(standard.crefWords());
}

bool OperatorWhereEquationC::fits(NodeABC const& node, unsigned long numArguments) const {
  return numArguments == 2 ? findVariable(node.asParent()->child(1)) != nullptr
                           : OperatorWhereC::fits(node, numArguments);
}

oss::PointerTC<OperatorBC> OperatorWhereEquationC::findVariant(wstring const& variant) const {
  return variant == u"equation" ? equation_ : nullptr;
}

// A variable that has been edited and is no name any more makes no equation that would be shown like this.
wstring OperatorWhereEquationC::arrangeArgumentList(std::vector<wstring> const& arguments) const {
  bool const isLeaf = arguments[1].find_first_of(u"(,") == wstring::npos;
  auto const variable =
      !variant_.empty() && isLeaf ? AlgebraicExpressionC::fromPrefixString(arguments[1]) : nullptr;
  bool const isName = variable && math::algexpr::castNode<SymbolNodeC>(*variable->getNode());
  if (!isName) return OperatorWhereC::arrangeArgumentList(arguments);
  return arguments[0] + u",=(" + arguments[1] + u"," + arguments[2] + u")";
}

OperatorWhereEquationC::RowT OperatorWhereEquationC::fromArguments(NodeABC const& node,
                                                                   std::vector<RowT> arguments) const {
  if (arguments.size() != 2) return OperatorWhereC::fromArguments(node, std::move(arguments));
  wstring const& name = findVariable(node.asParent()->child(1))->crefName();
  if (!takeStart(*arguments[1], name + u"=")) {  // A host shows equations in another way.
    RowT row = rows::join(rows::toRow(rows::makeText(getText())), rows::makeOpen());
    row = rows::join(std::move(row), std::move(arguments[0]));
    rows::append(*row, rows::makeText(u","));
    row = rows::join(std::move(row), std::move(arguments[1]));
    rows::append(*row, rows::makeClose());
    return row;
  }
  arguments.insert(arguments.begin() + 1, rows::toRow(rows::makeText(name)));
  return rows::makeConstruct(*equation_, std::move(arguments));
}

}  // namespace zolt::catalogue_extended
