// Formulas as large and as deep as the limits promise, in a field as a person and a host use it, on a small
// stack; and what happens past the limits.

#include <gtest/gtest.h>

#include "tests/support/small_stack.h"
#include "tests/support/stage.h"
#include "zolt/algexpr/make_node.h"
#include "zolt/exchange/latex.h"
#include "zolt/exchange/plain_text.h"
#include "zolt/field/readable_text.h"
#include "zolt/mathjson/mathjson.h"
#include "zolt/ved/limits.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/tree/validate_tree.h"

namespace zolt::tests {
namespace {

using namespace field;
using namespace math::ved;
using math::algexpr::AlgebraicExpressionC;
using oss::PointerTC;
using oss::wstring;

constexpr unsigned long most_rows = limits::max_nested_rows;

/// A stage for texts that are long, so that what differs is not printed.
class LargeC : public StageC {
 public:
  using StageC::play;
  bool play(wstring const& script) { return play(toUtf8(script)); }
  void show(wstring const& text) { StageC::show(toUtf8(text)); }
  void expectSound() {
    Node4C const& root = crefRoot();
    auto const& view = field.crefView();
    EXPECT_EQ(TREE_VALID, validateTree(root).invariant);
    EXPECT_EQ(TREE_VALID, validateSelection(root, view.getSelection()).invariant);
    EXPECT_GT(refView().getExpressionSize().x, 0);
  }
  wstring prefix() { return fromUtf8(StageC::prefix()); }
  /// Tree, caret, selection and history.
  wstring state() {
    return field.writeNotation() + (field.isEnabled(COMMAND_UNDO) ? u" undo" : u"") +
           (field.isEnabled(COMMAND_REDO) ? u" redo" : u"");
  }
  void expectAllUndone(wstring const& prefixBefore) {
    while (field.run(COMMAND_UNDO)) {
    }
    EXPECT_EQ(prefix(), prefixBefore);
  }

  FormulaFieldC& field = refField();
};

/// Constructs in one another so that their rows nest at least so deep: every argument with a row of its own,
/// of each operator in turn, from `first` on.
wstring nestEveryOperator(unsigned long rows, wstring const& inside, unsigned long first = 0) {
  auto const nestings = everyNesting();
  wstring before, after;
  for (unsigned long i = 0; i < rows; ++i) {
    auto const& [head, tail] = nestings[(first + i) % nestings.size()];
    before += head;
    after.insert(0, tail);
  }
  return before + inside + after;
}

/// Every way in which the whole formula leaves a field and enters another field.
void expectCopies(LargeC& stage, wstring const& prefix) {
  LargeC other;
  wstring const notation = stage.field.writeNotation();
  EXPECT_TRUE(other.field.setNotation(notation));
  EXPECT_EQ(other.field.writeNotation(), notation);
  stage.play(u"command select-all copy");
  ClipboardContentS const copied = stage.field.copy();
  EXPECT_EQ(copied.prefix, prefix);
  ClipboardContentS asBytes, asPrefix;
  asBytes.bytes = copied.bytes;
  asPrefix.prefix = copied.prefix;
  for (ClipboardContentS const& content : {asBytes, asPrefix}) {
    other.play(u"command clear");
    EXPECT_EQ(other.field.paste(content), PASTE_DONE);
    EXPECT_EQ(other.prefix(), prefix);
  }
  auto const expression = stage.field.getExpression();
  auto const again = exchange::fromPlainText(exchange::toPlainText(*expression), nullptr);
  EXPECT_TRUE(again && again->equals(*expression));
}

/// All uses of a formula, from loading to its end, with all commands or some of them.
void expectUsable(wstring const& prefix, bool all) {
  SCOPED_TRACE(toUtf8(prefix.substr(0, 40)) + "…, " + std::to_string(prefix.size()) + " characters");
  LargeC stage;
  stage.show(prefix);
  stage.expectSound();
  EXPECT_EQ(stage.prefix(), prefix);
  EXPECT_EQ(stage.field.writeNotation().find(u'`'), wstring::npos) << "shown as text";
  expectCopies(stage, prefix);
  EXPECT_FALSE(makeReadableText(stage.field.crefView()).text.empty());

  // Commands with the caret in the depth of the formula.
  for (CommandS const& command : commands()) {
    if (!all && command.command % 9 != 0) continue;
    stage.play(u"command formula-start command right command right command " + command.name);
    stage.expectSound();
  }
  stage.expectAllUndone(prefix);

  // Edits deep inside and around everything, their undo, and the same once more from the recording.
  EventScriptT recording;
  stage.show(prefix);
  stage.field.record(&recording);
  stage.play(
      u"command formula-start " + repeat(20, u"command right ") +
      u"char x op / char 1 key backspace key backspace char ( char ) command grow-selection op ^ char 2 "
      u"pen down 30 10 pen move 90 12 pen up");
  stage.expectSound();
  stage.play(u"command select-all char ( command select-all op _neg command select-all cut paste");
  stage.field.record(nullptr);
  stage.expectSound();
  LargeC other;
  other.show(prefix);
  other.play(recording);
  EXPECT_EQ(other.field.writeNotation(), stage.field.writeNotation());
  stage.expectAllUndone(prefix);
}

TEST(Limits, AThousandNestedRows) {
  onSmallStack([] {
    EXPECT_GT(everyNesting().size(), 20u);
    expectUsable(nest(1000, u"sqrt(", u"a", u")"), true);
    expectUsable(nestEveryOperator(1000, u"a"), false);
    expectUsable(nest(200, u"/(^(2,sin(sum(k,1,n,integral(0,log(", u"a", u",10),f,t)))),where(f,x,1))"),
                 false);
    expectUsable(nest(500, u"sqrt(_quietpos(f(^(_quietpos(", u"a", u"),2))))"), false);
  });
}

TEST(Limits, ThousandsOfNestedBrackets) {
  onSmallStack([] {
    expectUsable(nest(1000, u"_quietpos(", u"a", u")"), true);
    expectUsable(nest(20000, u"_neg(", u"a", u")"), false);
    for (wstring const before : {u"sin(+(1,", u"!(_quietpos(", u"^(2,not("}) {
      expectUsable(nest(500, before, u"a", u"))"), false);
    }
  });
}

// Brackets without a partner, for which the formula supplies one.
TEST(Limits, ThousandsOfSuppliedBrackets) {
  constexpr unsigned long count = 8000;
  wstring const prefix = nest(count, u"_quietpos(", u"a", u")");
  onSmallStack([&] {
    for (wstring const& text : {repeat(count, u"(") + u"a", u"a" + repeat(count, u")")}) {
      LargeC stage;
      EXPECT_TRUE(stage.field.insertText(text));
      stage.expectSound();
      EXPECT_EQ(stage.prefix(), prefix);
      LargeC other;
      ClipboardContentS plain;
      plain.plainText = text;
      EXPECT_EQ(other.field.paste(plain), PASTE_AS_CHARACTERS);
      EXPECT_EQ(other.prefix(), prefix);
      expectCopies(stage, prefix);
      stage.play(
          u"command formula-start char + command formula-end char + key backspace command select-all cut "
          u"paste");
      stage.expectSound();
      stage.expectAllUndone(u"");
      EXPECT_TRUE(stage.play(u"redo"));
      EXPECT_EQ(stage.prefix(), prefix);
    }
  });
}

TEST(Limits, AHundredThousandItems) {
  constexpr unsigned long count = 100000;
  onSmallStack([] {
    expectUsable(nest(count, u"+(", u"a", u",b)"), false);
    expectUsable(nest(count / 2, u"+(", u"a", u",^(x,2))"), false);
    expectUsable(nest(count / 10, u"*(", u"a", u",/(b,^(c,2)))"), false);
    expectUsable(u"f(a" + repeat(count / 5, u",b") + u")", false);
    expectUsable(repeat(count, u"x"), false);

    // Larger than any number that the formula's language knows: shown, and refused with the reason.
    LargeC stage;
    stage.show(repeat(count, u"7"));
    stage.expectSound();
    FormulaErrorS error;
    EXPECT_FALSE(stage.field.getExpression(&error));
    EXPECT_EQ(math::common::READ_ERROR_BAD_NUMBER, error.cause);
    wstring const state = stage.state();
    EXPECT_TRUE(stage.play(u"command select-all cut paste undo undo"));
    EXPECT_EQ(stage.state(), state + u" redo");
  });
}

TEST(Limits, WhatNestsToTheRightReadsBackFromThenOn) {
  onSmallStack([] {
    for (wstring const name : {u"+", u"-"}) {
      LargeC stage;
      stage.show(nest(20000, name + u"(a,", u"b", u")"));
      stage.expectSound();
      wstring const prefix = stage.prefix();
      EXPECT_FALSE(prefix.empty());
      stage.show(prefix);
      EXPECT_EQ(stage.prefix(), prefix) << toUtf8(name);
    }
  });
}

TEST(Limits, RowsDoNotNestDeeperWhateverIsTried) {
  onSmallStack([] {
    LargeC stage;
    for (unsigned long rows = 1; rows < most_rows; ++rows) ASSERT_TRUE(stage.play(u"op sqrt"));
    EXPECT_TRUE(stage.play(u"char a char b undo"));
    auto const expectRefused = [&](wstring const& script) {
      wstring const before = stage.state();
      EXPECT_FALSE(stage.play(script)) << toUtf8(script);
      stage.expectSound();
      EXPECT_EQ(stage.state(), before) << toUtf8(script);
    };
    for (auto const& [before, after] : everyNesting())
      expectRefused(u"op " + before.substr(0, before.size() - 1));
    for (wstring const script : {u"paste prefix \"sqrt(x)\"", u"paste \"1/2\"", u"insert \"b^2\"", u"char /",
                                 u"char ^", u"char U+00B2", u"char U+221A", u"char |"}) {
      expectRefused(script);
    }
    // A formula that cannot be built is typed instead, which is an edit.
    EXPECT_TRUE(stage.play(u"type \"sqrt(x\""));
    stage.expectSound();
    EXPECT_TRUE(stage.play(u"command clear undo"));

    // One row more around it all.
    wstring const deepest = stage.field.writeNotation();
    stage.play(u"command select-all");
    for (wstring const name : {u"sqrt", u"nthroot", u"/", u"abs"}) expectRefused(u"op " + name);
    stage.play(u"command formula-start");
    for (wstring const& notation :
         {u"[\"\", sqrt<" + deepest + u">, \"\"]", nest(100000, u"[\"x\", P", u"[\"\"]", u", \"\"]"),
          nest(100000, u"[", u"\"\"", u"]")}) {
      wstring const before = stage.state();
      EXPECT_FALSE(stage.field.setNotation(notation));
      EXPECT_EQ(stage.state(), before);
    }
    // Rows in rows, which are merged when they are few.
    wstring const row =
        u"0102000301000500000000"
        u"0401000000";
    for (unsigned long const depth : {2 * most_rows + 1, 100000ul}) {
      expectRefused(u"paste bytes \"" +
                    nest(depth, row,
                         u"0102000302000500000000"
                         u"0400000000"
                         u"02",
                         u"02") +
                    u"\"");
    }
  });
}

TEST(Limits, WhatIsTooDeepIsKeptAsText) {
  auto const expectKept = [](wstring const& prefix) {
    SCOPED_TRACE(toUtf8(prefix.substr(0, 40)) + "…, " + std::to_string(prefix.size()) + " characters");
    LargeC stage;
    stage.show(prefix);
    stage.expectSound();
    EXPECT_EQ(stage.prefix(), prefix);
    EXPECT_NE(stage.field.writeNotation().find(u'`'), wstring::npos);
    expectCopies(stage, prefix);

    // Edits around it, complete or not, keep it whole, and so does copying it.
    stage.play(u"command select-all cut type \"1+\" paste");
    EXPECT_EQ(stage.prefix(), u"+(1," + prefix + u")");
    stage.play(u"command select-all char (");
    EXPECT_EQ(stage.prefix(), u"_quietpos(+(1," + prefix + u"))");
    stage.play(u"command formula-end type \"+2x+\" command select-all cut paste type \"3\"");
    EXPECT_EQ(stage.prefix(), u"+(+(_quietpos(+(1," + prefix + u")),*(2,x)),3)");
    stage.play(u"command select-all op sqrt command select-all op sqrt command select-all op sqrt");
    stage.expectSound();
    stage.expectAllUndone(prefix);
  };
  onSmallStack([&] {
    for (unsigned long first = 0; first < everyNesting().size(); first += 5) {
      wstring const prefix = nestEveryOperator(1300, u"\u22122", first);
      // A power would bind the text before it differently from how it is written.
      expectKept(prefix[0] == u'^' ? u"abs(" + prefix + u")" : prefix);
    }
    expectKept(nest(20000, u"sqrt(", u"a", u")"));
    expectKept(nest(1300, u"f(^(x,", u"a", u"))"));
    // Depth does not matter where there is no tree.
    auto const expression = exchange::fromPlainText(nest(100000, u"(1+", u"x", u")"), nullptr);
    ASSERT_TRUE(expression);
    auto const again = exchange::fromPlainText(exchange::toPlainText(*expression), nullptr);
    EXPECT_TRUE(again && again->equals(*expression));
  });
}

// No notation has a limit of its own.
TEST(Limits, TextsNestToAnyDepth) {
  LargeC const operators;
  onSmallStack([] {
    for (auto const& [before, after] : {std::pair{u"sqrt(", u")"}, {u"/(", u",2)"}, {u"f(^(x,", u"))"}}) {
      auto const expression = AlgebraicExpressionC::fromPrefixString(nest(50000, before, u"a", after));
      ASSERT_TRUE(expression);
      for (auto const& again : {exchange::fromLatex(exchange::toLatex(*expression), nullptr),
                                exchange::fromPlainText(exchange::toPlainText(*expression), nullptr),
                                mathjson::fromMathJson(mathjson::toMathJson(*expression), nullptr)}) {
        EXPECT_TRUE(again && again->equals(*expression)) << toUtf8(before);
      }
    }
  });
}

// At the very limit, with exponents that operators insert and with parts that are in other places.
TEST(Limits, TheLimitHoldsForWhateverIsInside) {
  auto const expectShown = [](PointerTC<AlgebraicExpressionC> const& expression, bool converts) {
    LargeC stage;
    stage.field.setExpression(expression);
    stage.expectSound();
    auto const back = stage.field.getExpression();
    EXPECT_TRUE(!converts || (back && back->equals(*expression)));
  };
  std::pair<wstring, bool> const insides[] = {{u"x", true},
                                              {u"_deg(x)", true},
                                              {u"+(a,^(_deg(x),y))", false},
                                              {u"/(a,_rad(f(sqrt(x))))", true},
                                              {u"error(_deg(a),sqrt(_deg(b)))", true},
                                              {u"log(^(x,_deg(y)),^(x,/(1,2)))", true}};
  onSmallStack([&] {
    for (unsigned long depth = most_rows - 6; depth < most_rows + 3; ++depth) {
      for (auto const& [inside, converts] : insides) {
        SCOPED_TRACE(std::to_string(depth) + " " + toUtf8(inside));
        expectShown(AlgebraicExpressionC::fromPrefixString(nest(depth, u"sqrt(", inside, u")")), converts);
      }
    }
    // One node, too deep in one place and not in the other.
    auto const shared = AlgebraicExpressionC::fromPrefixString(u"sqrt(/(a,b))")->getNode();
    auto deep = shared;
    for (unsigned long i = 0; i < most_rows - 2; ++i) deep = math::algexpr::makeFunction(u"abs", {deep});
    for (auto const& [first, second] : {std::pair{deep, shared}, {shared, deep}}) {
      expectShown(new AlgebraicExpressionC(math::algexpr::makeFunction(u"/", {first, second}), nullptr),
                  true);
    }
  });
}

}  // namespace
}  // namespace zolt::tests
