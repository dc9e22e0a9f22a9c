#include "zolt/engines/sheet/sheet_engine.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

#include "tests/support/cases.h"
#include "tests/support/operators.h"

#include "zolt/catalogue_extended/extended_operators.h"
#include "zolt/engines/basic/basic_engine.h"
#include "zolt/engines/sheet/worth_showing.h"
#include "zolt/exchange/plain_text.h"

namespace zolt::engine_sheet {
namespace {

using namespace math::algexpr;

/// A sheet whose tasks are done at once, with a record of them.
class SheetStage : public testing::Test {
 protected:
  SheetStage() { catalogue_extended::registerExtendedOperators(tests::standardOperators()); }

  void show(std::vector<std::string> const& texts) {
    std::vector<LineT> order;
    for (LineT line = 1; line <= texts.size(); ++line) order.push_back(line);
    sheet_.setOrder(order);
    for (LineT line = 1; line <= texts.size(); ++line) type(line, texts[line - 1]);
  }

  void type(LineT line, std::string const& text) {
    sheet_.touch(line);
    sheet_.setExpression(line, read(text));
  }

  static PointerTC<AlgebraicExpressionC> read(std::string const& text) {
    return text.empty() ? nullptr : exchange::fromPlainText(tests::toText(text), CASSessionBC::getSession());
  }

  void finish(TaskS const& task) { sheet_.deliver(task, engine_.compute(task.request)); }

  /// The lines whose values have been computed, in that order: "1 3".
  std::string run() {
    std::string done;
    for (TaskS task; sheet_.takeTask(task); finish(task)) {
      if (task.request.operation == CAS_EVALUATE)
        done += (done.empty() ? "" : " ") + std::to_string(task.line);
    }
    return done;
  }

  /// What a person sees under a line: "= 1/2 == 0.5", or the reason, or nothing.
  std::string shown(LineT line) {
    LineResultS const* const result = sheet_.findResult(line);
    if (!result) return "none";
    ShownS const shown = findShown(*sheet_.getExpression(line), *result, sheet_.crefComputing().digits);
    std::string text;
    if (shown.isValue) text += (shown.isImplied ? "=> " : "= ") + write(result->value);
    if (shown.isNumber)
      text +=
          (text.empty() ? "" : " ") + std::string(shown.isNumberExact ? "== " : "~ ") + write(result->number);
    if (shown.reason) text += tests::toUtf8(describe(*shown.reason));
    return text;
  }

  static std::string write(CASResultS const& result) {
    return tests::toUtf8(exchange::toPlainText(*result.value));
  }

  engine_basic::BasicEngineC engine_;
  SheetEngineC sheet_;
};

TEST_F(SheetStage, showsWhatSaysMoreThanTheFormula) {
  std::pair<char const*, char const*> const cases[] = {
      {"1/3+1/6", "= 1/2 == 0.5"},
      {"1/3", "~ 0.3333333333"},
      {"7", ""},
      {"-3", ""},
      {"(2)", ""},
      {"x+x", "= 2*x"},
      {"b^2-4*a*c", ""},
      {"1/(1+x)", ""},
      {"x/(a/(b+c))", "= x*(b+c)/a"},
      {"[1,2;3,4]*[x;y]", "= [x+2*y;3*x+4*y]"},
      {"diff(x^3,x)", "= 3*x^2"},
      {"x^2+y^2=r^2", ""},
      {"1+1=3", "=> false"},
      {"a:=1/4", "== 0.25"},
      {"-7/3", "~ -2.333333333"},
      {"12345678901/8", "~ 1543209863"},
      {"a:=2", ""},
      {"f(x):=x+x", ""},
      {"int(0,1,exp(-x^2),x)", "~ 0.7468241328"},
      {"int(0,t,exp(-x^2),x)", ""},
      {"1/0", "This divides by zero"},
      {"sqrt(-1)", "This has no real value"},
      {"2^70", "= 1180591620717411303424 ~ 1.180591621E21"},
  };
  for (auto const& [formula, expected] : cases) {
    show({formula});
    run();
    EXPECT_EQ(shown(1), expected) << formula;
  }
}

TEST_F(SheetStage, computesWhatDependsOnAChange) {
  show({"a:=2", "b:=a+1", "b*10", "5+6", "f(x):=a*x", "f(3)", "c+1"});
  EXPECT_EQ(run(), "1 2 3 4 5 6 7");
  EXPECT_EQ(shown(3), "= 30");
  EXPECT_EQ(shown(6), "= 6");

  type(4, "5+7");
  EXPECT_EQ(run(), "4");
  type(1, "a:=3");
  EXPECT_FALSE(sheet_.isCurrent(3)) << "also what depends on it indirectly, at once";
  EXPECT_TRUE(sheet_.isCurrent(4));
  EXPECT_EQ(run(), "1 2 3 5 6");
  EXPECT_EQ(shown(3), "= 40");
  EXPECT_EQ(shown(6), "= 9");

  // The same value, the same text, and a name that nobody uses.
  type(1, "a:=1+2");
  EXPECT_EQ(run(), "1");
  type(1, "a:=1+2");
  EXPECT_EQ(run(), "");
  EXPECT_TRUE(sheet_.isCurrent(3));
  type(4, "d:=1");
  EXPECT_EQ(run(), "4");
  type(4, "c:=9");
  EXPECT_EQ(run(), "4 7");
  EXPECT_EQ(shown(7), "= 10");
}

TEST_F(SheetStage, takesTheNearestDefinitionAbove) {
  show({"x:=1", "x:=x+1", "x:=x+1", "x+0", "5:>x", "x+0"});
  EXPECT_EQ(run(), "1 2 3 4 5 6");
  EXPECT_EQ(shown(4), "= 3");
  EXPECT_EQ(shown(6), "= 5");
  type(2, "x:=x+10");
  EXPECT_EQ(run(), "2 3 4");
  EXPECT_EQ(shown(4), "= 12");

  sheet_.setOrder({1, 4, 2, 3, 5, 6});
  EXPECT_EQ(run(), "4");
  EXPECT_EQ(shown(4), "= 1");
  sheet_.setOrder({4, 2, 3, 5, 6});
  EXPECT_EQ(run(), "4 2 3");
  EXPECT_EQ(shown(4), "= x");
  EXPECT_EQ(shown(2), "\"x\" is defined by itself");
  EXPECT_EQ(shown(3), "\"x\" has no value");
}

TEST_F(SheetStage, saysWhoseDefinitionFailed) {
  show({"a:=1/0", "b:=a+1", "b", "sum(a,1,3,a)"});
  run();
  EXPECT_EQ(shown(1), "This divides by zero");
  EXPECT_EQ(shown(2), "\"a\" has no value");
  EXPECT_EQ(shown(3), "\"b\" has no value");
  EXPECT_EQ(shown(4), "= 6") << "its own variable";
  type(1, "a:=1");
  run();
  EXPECT_EQ(shown(3), "= 2");
  type(1, "");
  EXPECT_EQ(run(), "2 3 4");
  EXPECT_EQ(shown(1), "none");
  EXPECT_EQ(shown(3), "= a+1");
}

TEST_F(SheetStage, waitsForALineThatIsTypedIn) {
  show({"a:=2", "b:=a", "b+1", "8/2"});
  run();
  sheet_.touch(1);
  EXPECT_FALSE(sheet_.isCurrent(3));
  type(4, "b+8/2");
  EXPECT_EQ(run(), "") << "nothing that may be out of date is computed";
  sheet_.setExpression(1, read("a:=5"));
  EXPECT_EQ(run(), "1 2 3 4");
  EXPECT_EQ(shown(4), "= 9");
}

TEST_F(SheetStage, dropsResultsThatNobodyWants) {
  show({"a:=2", "a+1"});
  TaskS task, next;
  ASSERT_TRUE(sheet_.takeTask(task));
  EXPECT_FALSE(sheet_.takeTask(next)) << "one at a time";
  type(1, "a:=3");
  EXPECT_FALSE(sheet_.isWanted(task));
  finish(task);
  EXPECT_EQ(sheet_.findResult(1), nullptr);
  EXPECT_EQ(run(), "1 2");
  EXPECT_EQ(shown(2), "= 4");

  // A definition changes under a computation that uses it; the line vanishes under the next one.
  type(2, "a+10");
  ASSERT_TRUE(sheet_.takeTask(task));
  sheet_.touch(1);
  EXPECT_FALSE(sheet_.isWanted(task));
  sheet_.setExpression(1, read("a:=4"));
  ASSERT_TRUE(sheet_.takeTask(task));
  sheet_.setOrder({2});
  EXPECT_FALSE(sheet_.isWanted(task));
  finish(task);
  EXPECT_EQ(run(), "2");
  EXPECT_EQ(shown(2), "");
}

TEST_F(SheetStage, stopsALine) {
  show({"a:=1+1", "a*2"});
  TaskS task;
  ASSERT_TRUE(sheet_.takeTask(task));
  sheet_.stop(1);
  EXPECT_FALSE(sheet_.isWanted(task));
  EXPECT_EQ(sheet_.getState(1), LINE_STOPPED);
  EXPECT_EQ(run(), "2") << "it stays stopped";
  EXPECT_EQ(shown(2), "= 4") << "with the definition as it is written";
  EXPECT_EQ(shown(1), "The computation was stopped");
  sheet_.computeAll();
  EXPECT_EQ(run(), "1 2");
}

TEST_F(SheetStage, beginsWithWhatIsSeen) {
  std::vector<std::string> lines{"a0:=1"};
  for (int i = 1; i < 1000; ++i)
    lines.push_back("a" + std::to_string(i) + ":=a" + std::to_string(i - 1) + "+1");
  for (int i = 0; i < 1000; ++i) lines.push_back(std::to_string(i) + "+1");
  lines.push_back("a9");
  show(lines);
  sheet_.setVisible(2000);
  EXPECT_EQ(run().substr(0, 27), "1 2 3 4 5 6 7 8 9 10 2001 1") << "after what it depends on";
  EXPECT_EQ(shown(2001), "= 10");
  EXPECT_EQ(shown(1000), "= 1000");
  unsigned long const before = sheet_.numComputed();
  type(991, "a990:=0");
  run();
  EXPECT_EQ(sheet_.numComputed() - before, 10u);
  // Endless chains of names do not matter to what does not use them.
  sheet_.setComputing({false});
  EXPECT_EQ(sheet_.findResult(1), nullptr);
  EXPECT_EQ(run(), "");
}

TEST_F(SheetStage, asksAtThePlaceOfALine) {
  show({"a:=2", "x^2=a", "a:=7"});
  run();
  CASRequestS request = sheet_.makeRequest(2, read("x^2=a"), CAS_SOLVE);
  request.variable = u"x";
  EXPECT_EQ(write(engine_.compute(request)), "list(x = -sqrt(2),x = sqrt(2))");
}

TEST_F(SheetStage, computesFirstWhereSomebodyIs) {
  show({"1+1", "a:=2+2", "3+3", "a+4"});
  TaskS task;
  ASSERT_TRUE(sheet_.takeTask(task));
  EXPECT_EQ(task.line, 1U);
  // What is under way gives way, and what a line depends on does not give way to it.
  sheet_.setFavourite(4);
  EXPECT_TRUE(sheet_.isWanted(task));
  sheet_.setFavourite(3);
  EXPECT_FALSE(sheet_.isWanted(task));
  ASSERT_TRUE(sheet_.takeTask(task));
  EXPECT_EQ(task.line, 3U);
  sheet_.postpone();
  EXPECT_EQ(run(), "3 1 2 4");
  EXPECT_EQ(shown(4), "= 8");
}

}  // namespace
}  // namespace zolt::engine_sheet
