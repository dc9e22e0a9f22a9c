#include <gtest/gtest.h>

#include "tests/operators/extra_operators.h"
#include "tests/support/stage.h"
#include "zolt/algexpr/make_node.h"

namespace zolt::tests {
namespace {

using namespace math::ved;

TEST(OperatorInsertion, OfKindsThatAHostMayAdd) {
  allOperators();
  for (CaseS const& line : readCases(ZOLT_TEST_DATA "/insertion.cases")) {
    SCOPED_TRACE(line.where);
    std::size_t const bar = line.input.find(" | ");
    StageC stage(line.input.substr(0, bar));
    EXPECT_TRUE(stage.refView().insertText(fromUtf8(line.input.substr(bar + 6))));
    EXPECT_EQ(line.expected, stage.notation());
    EXPECT_EQ("", stage.findFault());
  }
}

TEST(OperatorShapes, OfKindsThatAHostMayAdd) {
  allOperators();
  for (CaseS const& line : readCases(ZOLT_TEST_DATA "/shapes.cases")) {
    auto const expression = math::algexpr::AlgebraicExpressionC::fromPrefixString(fromUtf8(line.input));
    EXPECT_EQ(line.expected, describe(*showTree(expression))) << line.where;
  }
}

// An operator that meets a node without its operands, or a stack without them, leaves empty places.
TEST(OperatorShapes, TakeNothingFromAnEmptyStack) {
  std::pair<wstring, std::string> const cases[] = {
      {u"+", R"(["", "+", ""])"},   {u"_neg", R"(["−", ""])"},        {u"!", R"(["", "!"])"},
      {u"^", R"(["", P[""]])"},     {u"/", R"(/<[""] ; [""]>)"},      {u"sin", R"(["sin", (, "", )])"},
      {u"error", R"(error<[""]>)"}, {u"call0", R"(["f0", (, "", )])"}};
  for (auto const& [name, shape] : cases) {
    auto const op = allOperators().lookup(name);
    auto const x = math::algexpr::makeNamed(u"x");
    auto const node = math::algexpr::makeFunction(name, {op->getArity() > 0 ? op->getArity() : 1, x});
    for (auto const& given : {node, name == u"+" || name == u"_neg" ? x : node}) {
      ConversionStackT stack;
      TreeT const made(op->fromAlgebraicNode(*given, stack).first);
      if (given != node) {
        EXPECT_EQ(NODE4_OPEN, made->child(1)->getType()) << "a sign without operands is a call";
      } else {
        EXPECT_EQ(shape, describe(*made)) << toUtf8(name);
      }
    }
  }
}

}  // namespace
}  // namespace zolt::tests
