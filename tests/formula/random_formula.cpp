#include "tests/formula/random_formula.h"

#include "tests/support/operators.h"
#include "zolt/algexpr/make_node.h"
#include "zolt/algexpr/make_operation.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/operators/operator_list.h"

namespace zolt::tests {

using namespace math::ved;
using math::algexpr::AlgebraicExpressionC;

namespace {

wstring const names[] = {u"x",     u"y",   u"r",   u"o",       u"E",     u"θ",   u"n1", u"alpha",
                         u"x.y_2", u"a/b", u"_PI", u"d",       u"error", u"2",   u"10", u"007",
                         u"−2",    u"0.5", u".25", u"−1.5E−3", u"3.",    u"1e+9"};
wstring const oddNames[] = {u"sin", u"not", u"+",  u":a", u"√", u"x!", u"∙",  u"=",   u"log10", u"_neg",
                            u"x\"", u"\"",  u"pi", u"π",  u"α", u"∞",  u"x²", u"|x|", u"["};

bool isAssignment(OperatorBC const& op) { return op.getName() == u":=" || op.getName() == u":>"; }

std::vector<OperatorBC const*> const& functions() {
  static std::vector<OperatorBC const*> const all = [] {
    std::vector<OperatorBC const*> found;
    for (OperatorBC const* const op : operatorsOfExpressions()) {
      wstring const name = op->getName();
      bool const isConstant = op->getArity() == 0 && !op->isConstruct() && name.size() == 1;
      if (name != u"_PI" && (!isConstant || name == u"∞")) found.push_back(op);
    }
    return found;
  }();
  return all;
}

}  // namespace

ExpressionT RandomExpressionC::make(unsigned size) {
  return new AlgebraicExpressionC(makeNode(size, true), nullptr);
}

RandomExpressionC::NodeT RandomExpressionC::makeNode(unsigned size, bool isTop) {
  if (size <= 1) return makeLeaf();
  // The signs are half of the catalogue, calls of unknown functions some of the rest.
  unsigned const choice = below(functions().size() + 3);
  OperatorBC const* const op = choice < functions().size() ? functions()[choice] : nullptr;
  if (op && kind_ == WELL_MADE && isAssignment(*op) && !isTop) return makeNode(size, false);
  unsigned long arity = op ? op->getArity() : 0;
  if (arity == 0) arity = 1 + below(3);
  if (kind_ == ANYTHING && below(12) == 0) arity = 1 + below(4);

  std::vector<NodeT> operands;
  unsigned left = size - 1;
  for (unsigned long i = 0; i < arity; ++i) {
    unsigned const share = i + 1 == arity ? left : below(left + 1);
    operands.push_back(makeNode(share, false));
    left -= share;
  }
  wstring const name = op ? op->getName() : wstring{static_cast<char16_t>(u'f' + below(3))};
  return kind_ == WELL_MADE ? math::algexpr::makeOperation(name, std::move(operands))
                            : math::algexpr::makeFunction(name, std::move(operands));
}

RandomExpressionC::NodeT RandomExpressionC::makeLeaf() {
  bool const odd = kind_ == ANYTHING && below(5) == 0;
  wstring const& text = odd ? oddNames[below(std::size(oddNames))] : names[below(std::size(names))];
  NodeT const number = math::algexpr::makeNumber(text);
  return number ? number : math::algexpr::makeNamed(text);
}

TreeT RandomTreeC::make() {
  auto root = std::make_unique<Node4C>(NODE4_ROOT, nullptr, wstring(), 1);
  root->setChild(0, makeRow(0).release());
  root->checkTree();
  return root;
}

TreeT RandomTreeC::makeRow(unsigned level) {
  auto row = std::make_unique<Node4C>(NODE4_LINE, nullptr, wstring(), 0);
  for (unsigned i = below(level > 2 ? 4 : 10); i > 0; --i) {
    row->insertChild(row->numChildren(), makeItem(level).release());
  }
  return row;
}

TreeT RandomTreeC::makeItem(unsigned level) {
  static std::vector<wstring> const texts{u"",   u"x", u"+",  u"a+b",   u"2", u"∙3",  u"sin", u"f", u"f,",
                                          u"a ", u"!", u"−1", u"1.2.3", u"=", u" or", u":=",  u"^", u"`r`"};
  auto const item = [](Node4TypeE type, wstring const& text) {
    return std::make_unique<Node4C>(type, nullptr, text, 0);
  };
  switch (below(level > 3 ? 8 : 12)) {
    case 0:
    case 1:
    case 2:
    case 3:
      return item(NODE4_TEXT, texts[below(texts.size())]);
    case 4:
    case 5:
      return item(NODE4_OPEN, wstring());
    case 6:
    case 7:
      return item(NODE4_CLOSE, wstring());
    case 8:
    case 9: {
      auto power = item(NODE4_POWER, wstring());
      power->insertChild(0, makeRow(level + 1).release());
      return power;
    }
    default: {
      OperatorBC const* op = nullptr;
      do {
        op = functions()[below(functions().size())];
      } while (!op->isConstruct());
      auto construct = std::make_unique<Node4C>(NODE4_OPERATOR, const_cast<OperatorBC*>(op), wstring(), 0);
      unsigned long const columns = op->getColumns();
      unsigned long const any = columns > 0 ? columns * (1 + below(2)) : below(3);
      unsigned long const arity = op->getArity() > 0 ? op->getArity() : any;
      for (unsigned long i = 0; i < arity; ++i) construct->insertChild(i, makeRow(level + 1).release());
      return construct;
    }
  }
}

}  // namespace zolt::tests
