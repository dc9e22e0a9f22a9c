#include <gtest/gtest.h>

#include "tests/operators/extra_operators.h"
#include "tests/support/cases.h"
#include "tests/support/small_stack.h"
#include "tests/support/view_stage.h"
#include "zolt/ved/limits.h"

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
