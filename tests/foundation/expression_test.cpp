#include <gtest/gtest.h>

#include <functional>
#include <iterator>
#include <map>
#include <string>
#include <utility>
#include <vector>

#include "tests/support/cases.h"
#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/algexpr/float_node.h"
#include "zolt/algexpr/make_node.h"
#include "zolt/algexpr/make_operation.h"
#include "zolt/algexpr/nodes.h"

namespace zolt::math::algexpr {
namespace {

using tests::toText;
using tests::toUtf8;
using ExpressionP = PointerTC<AlgebraicExpressionC>;

// Combines the values of the children into the value of the whole, as a conversion of expressions does.
template <class ValueT>
class FoldC : public NodeVisitorABC {
 public:
  using MakeF = std::function<ValueT(NodeABC&, char kind, std::vector<ValueT> children)>;

  explicit FoldC(MakeF make, unsigned long order = VISIT_CHILDREN_FIRST)
      : NodeVisitorABC(order), make_(std::move(make)) {}

  ValueT of(AlgebraicExpressionC const& expression) {
    expression.accept(*this);
    EXPECT_EQ(values_.size(), 1U);
    ValueT value = std::move(values_.back());
    values_.clear();
    return value;
  }

  void visitCoreFunction(CoreFunctionNodeC& node) override { fold(node, 'C', node.numChildren()); }
  void visitUserFunction(UserFunctionNodeC& node) override { fold(node, 'U', node.numChildren()); }
  void visitCoreConstant(CoreConstantNodeC& node) override { fold(node, 'K', 0); }
  void visitInteger(IntegerNodeC& node) override { fold(node, 'I', 0); }
  void visitFloat(FloatNodeC& node) override { fold(node, 'F', 0); }
  void visitSymbol(SymbolNodeC& node) override { fold(node, 'S', 0); }

 private:
  void fold(NodeABC& node, char kind, unsigned long count) {
    if (getOrder() != VISIT_CHILDREN_FIRST) count = 0;
    auto const first = values_.end() - static_cast<std::ptrdiff_t>(count);
    std::vector<ValueT> children(std::make_move_iterator(first), std::make_move_iterator(values_.end()));
    values_.erase(first, values_.end());
    values_.push_back(make_(node, kind, std::move(children)));
  }

  MakeF make_;
  std::vector<ValueT> values_;
};

std::string classified(AlgebraicExpressionC const& expression) {
  return FoldC<std::string>([](NodeABC& node, char kind, std::vector<std::string> children) {
           std::string text = std::string(1, kind) + ":" + toUtf8(node.getName());
           for (std::size_t i = 0; i < children.size(); ++i) text += (i == 0 ? "(" : ",") + children[i];
           return children.empty() ? text : text + ")";
         })
      .of(expression);
}

std::string nameOf(common::ReadErrorE cause) {
  static std::map<common::ReadErrorE, char const*> const names = {
      {common::READ_ERROR_MISSING_OPERAND, "missing-operand"},
      {common::READ_ERROR_BAD_NUMBER, "bad-number"},
      {common::READ_ERROR_BAD_CHARACTER, "bad-character"},
      {common::READ_ERROR_MISSING_CLOSE, "not-closed"},
      {common::READ_ERROR_MISSING_COMMA, "missing-comma"},
      {common::READ_ERROR_TRAILING_TEXT, "trailing-text"}};
  return names.at(cause);
}

TEST(Visitors, MayComeToParentsFirst) {
  std::string order;
  FoldC<int> names([&](NodeABC& node, char, auto const&) { return order += toUtf8(node.getName()), 0; },
                   VISIT_PARENT_FIRST);
  AlgebraicExpressionC::fromPrefixString(u"f(+(a,b),c)")->accept(names);
  EXPECT_EQ(order, "f+abc");
}

TEST(PrefixText, ReadsAndReadsBack) {
  for (tests::CaseS const& one : tests::readCases(ZOLT_TEST_DATA "/prefix.cases")) {
    common::ReadErrorS error;
    ExpressionP const read = AlgebraicExpressionC::fromPrefixString(toText(one.input), nullptr, &error);
    if (!read) {
      EXPECT_EQ("error " + nameOf(error.cause) + " " + std::to_string(error.begin), one.expected)
          << one.where;
      continue;
    }
    EXPECT_EQ(error.cause, common::READ_ERROR_NONE) << one.where;
    EXPECT_EQ(classified(*read), one.expected) << one.where;
    ExpressionP const again = AlgebraicExpressionC::fromPrefixString(read->toPrefixString());
    EXPECT_TRUE(again && again->equals(*read)) << one.where;
  }
}

TEST(Nodes, AreMadeOnlyIfTheyCanBeWritten) {
  PointerTC<NodeABC> const x = makeNamed(u"x");
  for (wstring const& name : {wstring(), wstring(u"a b"), wstring(u"f("), wstring(u"a,b"), wstring(u"a`"),
                              wstring(u"a\0", 2), wstring(u"2x"), wstring(u"\u22121"), wstring(u".x")}) {
    EXPECT_FALSE(isWritableName(name));
    EXPECT_FALSE(makeNamed(name));
    EXPECT_FALSE(makeFunction(name, {x}));
  }
  EXPECT_FALSE(makeFunction(u"f", {}));
  EXPECT_FALSE(makeFunction(u"f", {x, nullptr}));
  for (wstring const& text :
       {wstring(), wstring(u"x"), wstring(u"\u2212"), wstring(u"--1"), wstring(u"+1"), wstring(u"1 ")}) {
    EXPECT_FALSE(makeNumber(text));
  }
  EXPECT_EQ(makeNumber(u"-1")->getName(), u"\u22121");
}

TEST(Operations, ReadBackAsTheyWereMeant) {
  FoldC<PointerTC<NodeABC>> remake([](NodeABC& node, char, std::vector<PointerTC<NodeABC>> operands) {
    return operands.empty() ? PointerTC<NodeABC>(&node) : makeOperation(node.getName(), std::move(operands));
  });
  for (tests::CaseS const& one : tests::readCases(ZOLT_TEST_DATA "/operations.cases")) {
    ExpressionP const given = AlgebraicExpressionC::fromPrefixString(toText(one.input));
    ASSERT_TRUE(given) << one.where;
    AlgebraicExpressionC const made(remake.of(*given), nullptr);
    EXPECT_EQ(toUtf8(made.toPrefixString()), one.expected) << one.where;
  }
  PointerTC<NodeABC> const x = makeNamed(u"x");
  EXPECT_FALSE(makePower(nullptr, x));
  EXPECT_FALSE(makePower(x, nullptr));
  EXPECT_FALSE(makeFactorial(nullptr));
  EXPECT_FALSE(makeOperation(u"+", {}));
  EXPECT_FALSE(makeOperation(u"+", {x, nullptr, x}));
}

TEST(Expressions, AreEqualDigitForDigit) {
  auto const equal = [](wstring const& a, wstring const& b) {
    ExpressionP const first = AlgebraicExpressionC::fromPrefixString(a);
    ExpressionP const second = AlgebraicExpressionC::fromPrefixString(b, new CASSessionBC);
    return first->equals(*second) && second->equals(*first);
  };
  EXPECT_TRUE(equal(u"+(a,f(-1))", u" + ( a , f(\u22121) ) "));
  EXPECT_FALSE(equal(u"1.0", u"1.00"));
  EXPECT_FALSE(equal(u"f(a)", u"f(a,a)"));
  EXPECT_FALSE(equal(u"f(a)", u"g(a)"));
  EXPECT_FALSE(equal(u"f(a,b)", u"f(b,a)"));
  EXPECT_FALSE(equal(u"error", u"error(a)"));
  EXPECT_FALSE(equal(u"f", u"f(a)"));

  AlgebraicExpressionC const empty(nullptr, nullptr);
  EXPECT_TRUE(empty.equals(AlgebraicExpressionC(nullptr, new CASSessionBC)));
  EXPECT_FALSE(empty.equals(*AlgebraicExpressionC::fromPrefixString(u"x")));
  EXPECT_EQ(empty.toPrefixString(), u"");
}

// Parts are shared at every level: a walk down every path would meet 2^60 leaves.
TEST(Expressions, MayShareParts) {
  auto const doubled = [](wstring const& leaf) {
    PointerTC<NodeABC> node = makeNamed(leaf);
    for (int level = 0; level < 60; ++level) node = makeFunction(u"+", {node, node});
    return AlgebraicExpressionC(node, nullptr);
  };
  EXPECT_TRUE(doubled(u"x").equals(doubled(u"x")));
  EXPECT_FALSE(doubled(u"x").equals(doubled(u"y")));

  // A part outlives the whole that it was taken from.
  PointerTC<NodeABC> part;
  {
    ExpressionP const whole = AlgebraicExpressionC::fromPrefixString(u"f(g(a,b),h(c),d)");
    part = castNode<ParentNodeABC>(*whole->getNode())->childPointer(0);
  }
  EXPECT_EQ(AlgebraicExpressionC(part, nullptr).toPrefixString(), u"g(a,b)");
}

TEST(Sessions, AreNeverNull) {
  class OtherEngineC : public CASEngineABC {
   public:
    wstring getName() const override { return u"other"; }
  };
  ExpressionP const own = AlgebraicExpressionC::fromPrefixString(u"x", new CASSessionBC(new OtherEngineC));
  AlgebraicExpressionC const none(nullptr, nullptr);
  EXPECT_EQ(own->getCASEngine().getName(), u"other");
  EXPECT_EQ(none.getCASEngine().getName(), u"standard");
  CASSessionBC::setSession(own->getCASSession());
  EXPECT_EQ(none.getCASEngine().getName(), u"other");
  EXPECT_EQ(AlgebraicExpressionC::fromPrefixString(u"x")->getCASSession(), own->getCASSession());
  CASSessionBC::setSession(nullptr);
  EXPECT_EQ(CASSessionBC::getSession()->getEngine().getName(), u"standard");

  CASSessionBC const standard(nullptr);
  CASEngineABC const& engine = standard.getEngine();
  EXPECT_TRUE(engine.isCoreFunction(u"nthroot") && engine.isCoreFunction(u"diff") &&
              engine.isCoreConstant(u"error"));
  EXPECT_FALSE(engine.isCoreFunction(u"d") || engine.isCoreFunction(u"_PI") || engine.isCoreConstant(u"sin"));
}

}  // namespace
}  // namespace zolt::math::algexpr
