#include <gtest/gtest.h>

#include "tests/operators/extra_operators.h"
#include "tests/support/cases.h"
#include "tests/support/small_stack.h"
#include "tests/support/view_stage.h"
#include "zolt/algexpr/make_node.h"
#include "zolt/algexpr/number_display_format.h"
#include "zolt/ved/limits.h"
#include "zolt/ved/tree/tree_notation.h"

namespace zolt::tests {
namespace {

using namespace math::ved;

EventScriptT readScript(wstring const& text) {
  EventScriptT script;
  unsigned long position = 0;
  EXPECT_TRUE(readEventScript(text, script, position)) << toUtf8(text);
  return script;
}

TEST(OperatorInsertion, OfKindsThatAHostMayAdd) {
  allOperators();
  for (CaseS const& line : readCases(ZOLT_TEST_DATA "/insertion.cases")) {
    SCOPED_TRACE(line.where);
    std::size_t const bar = line.input.find(" | ");
    ViewStageC stage;
    ASSERT_TRUE(stage.setUp(toText(line.input.substr(0, bar)))) << line.input;
    EXPECT_TRUE(stage.play(readScript(toText(line.input.substr(bar + 3)))));
    EXPECT_EQ(line.expected, toUtf8(stage.notation()));
    EXPECT_EQ("", stage.findFault());
  }
}

TEST(OperatorShapes, OfKindsThatAHostMayAdd) {
  allOperators();
  for (CaseS const& line : readCases(ZOLT_TEST_DATA "/shapes.cases")) {
    std::unique_ptr<Node4C> const tree(Node4C::fromAlgebraicExpression(
        math::algexpr::AlgebraicExpressionC::fromPrefixString(toText(line.input)), 0,
        math::algexpr::NUMBER_FORMAT_AUTOMATIC));
    EXPECT_EQ(line.expected, toUtf8(writeTreeNotation(*tree))) << line.where;
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
      std::unique_ptr<Node4C> const made(op->fromAlgebraicNode(*given, stack).first);
      if (given != node) {
        EXPECT_EQ(NODE4_OPEN, made->child(1)->getType()) << "a sign without operands is a call";
      } else {
        EXPECT_EQ(shape, toUtf8(writeTreeNotation(*made))) << toUtf8(name);
      }
    }
  }
}

/// A row with a root in it so that rows nest `rows` deep.
wstring nest(unsigned long rows, wstring const& before, wstring const& behind) {
  wstring inner = u"[\"\"]";
  wstring end;
  for (unsigned long i = 2; i < rows; ++i) {
    inner.insert(0, u"[\"\", sqrt<");
    end += u">, \"\"]";
  }
  return u"[\"" + before + u"\", sqrt<" + inner + end + u">, \"" + behind + u"\"]";
}

TEST(OperatorInsertion, AsksForTheRowsThatItNestsAndForNoMore) {
  struct {
    wstring before;
    wstring behind;
    wstring script;
    bool nestsDeeper;  // whether the root goes into a row of what is inserted
  } const cases[] = {
      {u"", u"\u2691+\u2038b", u"op /", true},   {u"a\u2691+\u2038", u"", u"op /", true},
      {u"", u"+a\u2691b\u2038", u"op /", false}, {u"", u"+a\u2038", u"op /", false},
      {u"", u"\u2038", u"op /", true},           {u"\u2691", u"\u2038", u"op ^", true},
      {u"\u2691", u"\u2038", u"op _deg", false}, {u"\u2691", u"\u2038", u"op sin", false},
  };
  onSmallStack([&] {
    for (auto const& one : cases) {
      for (bool deepest : {false, true}) {
        wstring const start = nest(limits::max_nested_rows - (deepest ? 0 : 1), one.before, one.behind);
        ViewStageC stage;
        ASSERT_TRUE(stage.setUp(start));
        bool const fits = !(deepest && one.nestsDeeper);
        SCOPED_TRACE(toUtf8(one.before + u" … " + one.behind + u" " + one.script));
        EXPECT_EQ(fits, stage.play(readScript(one.script)));
        EXPECT_EQ(fits, stage.notation() != start);
        EXPECT_EQ("", stage.findFault());
      }
    }
  });
}

}  // namespace
}  // namespace zolt::tests
