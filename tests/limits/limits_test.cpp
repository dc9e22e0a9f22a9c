// Formulas as large and as deep as the limits promise, in a field as a person and a host use it, on a small
// stack; and what happens past the limits.

#include <gtest/gtest.h>

#include "tests/support/cases.h"
#include "tests/support/operators.h"
#include "tests/support/small_stack.h"
#include "zolt/exchange/plain_text.h"
#include "zolt/field/script_runner.h"
#include "zolt/surfaces/recording/recording_graphics.h"
#include "zolt/ved/limits.h"
#include "zolt/ved/tree/validate_tree.h"

namespace zolt::tests {
namespace {

using namespace field;
using namespace math::ved;
using math::algexpr::AlgebraicExpressionC;
using oss::PointerTC;
using oss::wstring;
using surfaces::RecordingGraphicsC;

wstring repeat(unsigned long count, wstring const& text) {
  wstring result;
  for (unsigned long i = 0; i < count; ++i) result += text;
  return result;
}

wstring nest(unsigned long count, wstring const& before, wstring const& inside, wstring const& after) {
  return repeat(count, before) + inside + repeat(count, after);
}

/// A field, and a script's steps played and painted.
class StageC {
 public:
  StageC()
      : field((standardOperators(), new RecordingGraphicsC(RecordingGraphicsC::LOG_NOTHING))),
        runner_(field) {}

  bool play(wstring const& text) {
    EventScriptT script;
    unsigned long position = 0;
    EXPECT_TRUE(readEventScript(text, script, position)) << toUtf8(text);
    bool taken = true;
    for (ScriptStepS const& step : script) {
      taken = runner_.run(step);
      field.refView().display(0, 0);
    }
    return taken;
  }
  void expectSound() {
    Node4C const& root = field.crefView().crefRoot();
    EXPECT_EQ(TREE_VALID, validateTree(root).invariant);
    auto const& view = field.crefView();
    EXPECT_EQ(TREE_VALID, validatePlace(root, view.getCaretNode(), view.getCaretPos()).invariant);
    EXPECT_GT(field.refView().getExpressionSize().x, 0);
  }
  /// Empty when there is none.
  wstring prefix() {
    auto const expression = field.getExpression();
    return expression ? expression->toPrefixString() : wstring();
  }

  FormulaFieldC field;

 private:
  ScriptRunnerC runner_;
};

/// All that is done to a formula, from loading to its end; of the commands all, or some.
void expectUsable(wstring const& prefix, bool all) {
  SCOPED_TRACE(toUtf8(prefix.substr(0, 40)) + "…, " + std::to_string(prefix.size()) + " characters");
  StageC stage;
  stage.field.setExpression(AlgebraicExpressionC::fromPrefixString(prefix));
  stage.expectSound();
  EXPECT_EQ(stage.prefix(), prefix);

  // There and back by every way that a formula leaves a field.
  wstring const notation = stage.field.writeNotation();
  StageC other;
  EXPECT_TRUE(other.field.setNotation(notation));
  EXPECT_EQ(other.field.writeNotation(), notation);
  stage.play(u"command select-all copy");
  ClipboardContentS const copied = stage.field.copy();
  EXPECT_EQ(copied.prefix, prefix);
  ClipboardContentS asBytes;
  asBytes.bytes = copied.bytes;
  ClipboardContentS asPrefix;
  asPrefix.prefix = copied.prefix;
  for (ClipboardContentS const& content : {asBytes, asPrefix}) {
    other.play(u"command clear");
    EXPECT_EQ(other.field.paste(content), PASTE_DONE);
    EXPECT_EQ(other.prefix(), prefix);
  }
  auto const expression = stage.field.getExpression();
  auto const again = exchange::fromPlainText(exchange::toPlainText(*expression), nullptr);
  EXPECT_TRUE(again && again->equals(*expression));

  // Commands with the caret in the depth of the formula.
  for (CommandS const& command : commands()) {
    if (!all && command.command % 9 != 0) continue;
    stage.play(u"command formula-start command right command right command " + command.name);
    stage.expectSound();
  }
  while (stage.field.run(COMMAND_UNDO)) {
  }
  EXPECT_EQ(stage.prefix(), prefix);

  // Edits in the depth, around everything, and back.
  stage.play(
      u"command formula-start " + repeat(20, u"command right ") +
      u"char x op / char 1 key backspace key backspace char ( char ) command grow-selection op ^ char 2 "
      u"pen down 30 10 pen move 90 12 pen up");
  stage.expectSound();
  stage.play(u"command select-all char ( command select-all op _neg command select-all cut paste");
  stage.expectSound();
  while (stage.field.run(COMMAND_UNDO)) {
  }
  EXPECT_EQ(stage.prefix(), prefix);
}

TEST(Limits, AThousandNestedRows) {
  onSmallStack([] {
    struct {
      unsigned long count;
      char16_t const* before;
      char16_t const* after;
    } const nestings[] = {{1000, u"sqrt(", u")"},
                          {1000, u"/(1,", u")"},
                          {1000, u"/(", u",2)"},
                          {1000, u"^(x,", u")"},
                          {1000, u"nthroot(", u",3)"},
                          {1000, u"log(", u",10)"},
                          {1000, u"diff(", u",x)"},
                          {1000, u"integral(0,1,", u",t)"},
                          {1000, u"integral(", u",1,f,t)"},
                          {1000, u"sum(k,1,n,", u")"},
                          {1000, u"where(", u",x,1)"},
                          {333, u"+(abs(floor(ceil(", u"))),1)"}};
    for (auto const& one : nestings) {
      expectUsable(nest(one.count, one.before, u"a", one.after), one.before[0] == u's');
    }
  });
}

TEST(Limits, ThousandsOfNestedBrackets) {
  onSmallStack([] {
    expectUsable(nest(1000, u"_quietpos(", u"a", u")"), true);
    expectUsable(nest(20000, u"_quietpos(", u"a", u")"), false);
    expectUsable(nest(10000, u"sin(+(", u"a", u",1))"), false);
    expectUsable(nest(10000, u"!(_quietpos(", u"a", u"))"), false);
    expectUsable(nest(10000, u"^(_quietpos(", u"a", u"),2)"), false);
  });
}

TEST(Limits, AHundredThousandItems) {
  onSmallStack([] {
    expectUsable(nest(100000, u"+(", u"a", u",b)"), false);
    expectUsable(nest(50000, u"+(", u"a", u",^(x,2))"), false);
  });
}

TEST(Limits, RowsDoNotNestDeeperWhateverIsTried) {
  onSmallStack([] {
    StageC stage;
    unsigned long const most = limits::max_nested_rows;
    for (unsigned long rows = 1; rows < most; ++rows) ASSERT_TRUE(stage.play(u"op sqrt"));
    EXPECT_TRUE(stage.play(u"char a"));
    wstring const before = stage.field.writeNotation();
    for (wstring const script : {u"op sqrt", u"op /", u"op ^", u"op integral", u"paste prefix \"sqrt(x)\"",
                                 u"paste \"1/2\"", u"char /", u"char ^", u"insert \"b^2\""}) {
      stage.play(script);
      stage.expectSound();
      if (stage.field.writeNotation() == before) continue;
      // What cannot be built is at most typed.
      EXPECT_TRUE(stage.play(u"undo")) << toUtf8(script);
      EXPECT_EQ(stage.field.writeNotation(), before) << toUtf8(script);
    }
    stage.play(u"type \"sqrt(x\" type \"^2\"");
    stage.expectSound();

    // One row more around it all.
    wstring const deepest = stage.field.writeNotation();
    EXPECT_FALSE(stage.play(u"command select-all op sqrt"));
    EXPECT_FALSE(stage.play(u"command select-all op nthroot"));
    stage.expectSound();
    wstring const deeper = u"[\"\", sqrt<" + deepest + u">, \"\"]";
    EXPECT_FALSE(stage.field.setNotation(deeper));
    EXPECT_FALSE(stage.field.setNotation(nest(100000, u"[\"x\", P", u"[\"\"]", u", \"\"]")));
    EXPECT_FALSE(stage.field.setNotation(nest(100000, u"[", u"\"\"", u"]")));
    stage.expectSound();
  });
}

TEST(Limits, WhatIsTooDeepIsKeptAsText) {
  onSmallStack([] {
    for (auto const& [before, after] :
         {std::pair<wstring, wstring>{u"sqrt(", u")"}, {u"/(1,", u")"}, {u"^(x,", u")"}}) {
      for (unsigned long const depth : {1300ul, 20000ul}) {
        SCOPED_TRACE(toUtf8(before) + std::to_string(depth));
        wstring const prefix = nest(depth, before, u"a", after);
        StageC stage;
        stage.field.setExpression(AlgebraicExpressionC::fromPrefixString(prefix));
        stage.expectSound();
        EXPECT_EQ(stage.prefix(), prefix);
        EXPECT_NE(stage.field.writeNotation().find(u'`'), wstring::npos);

        // Copied and pasted it is the same again, and an edit elsewhere leaves it whole.
        stage.play(u"command select-all copy command clear paste");
        stage.expectSound();
        EXPECT_EQ(stage.prefix(), prefix);
        stage.play(u"type \"+1\"");
        EXPECT_EQ(stage.prefix(), u"+(" + prefix + u",1)");
        while (stage.field.run(COMMAND_UNDO)) {
        }
        EXPECT_EQ(stage.prefix(), prefix);
      }
    }
    // Nothing is too deep for what is no tree.
    wstring const plain = nest(100000, u"(1+", u"x", u")");
    auto const expression = exchange::fromPlainText(plain, nullptr);
    ASSERT_TRUE(expression);
    auto const again = exchange::fromPlainText(exchange::toPlainText(*expression), nullptr);
    EXPECT_TRUE(again && again->equals(*expression));
  });
}

}  // namespace
}  // namespace zolt::tests
