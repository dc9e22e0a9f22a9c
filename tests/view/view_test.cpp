#include <gtest/gtest.h>

#include <functional>

#include "tests/support/cases.h"
#include "tests/support/operators.h"
#include "tests/support/small_stack.h"
#include "tests/support/uneven_graphics.h"
#include "tests/support/view_stage.h"
#include "zolt/oss/binary_stream.h"
#include "zolt/oss/binary_string_stream.h"
#include "zolt/ved/limits.h"
#include "zolt/ved/tree/tree_notation.h"

namespace zolt::tests {
namespace {

using namespace math::ved;
using math::algexpr::AlgebraicExpressionC;
using math::algexpr::ConstraintsBC;
using oss::bytestring;

EventScriptT toScript(wstring const& text) {
  EventScriptT script;
  unsigned long position = 0;
  EXPECT_TRUE(readEventScript(text, script, position)) << toUtf8(text.substr(position));
  return script;
}

bool play(ViewStageC& stage, wstring const& script) { return stage.play(toScript(script)); }

PointerTC<AlgebraicExpressionC> expressionOf(wstring const& prefix) {
  return AlgebraicExpressionC::fromPrefixString(prefix);
}

// ---- Constraints ------------------------------------------------------------------------------------------

class RuleC : public ConstraintsBC {
 public:
  explicit RuleC(std::function<bool(wstring const&)> rule) : rule_(std::move(rule)) {}
  bool check(PointerTC<AlgebraicExpressionC> expression) const override {
    return rule_(expression->toPrefixString());
  }

 private:
  std::function<bool(wstring const&)> rule_;
};

class Constraints : public testing::Test {
 protected:
  void show(wstring const& prefix, std::function<bool(wstring const&)> rule) {
    stage.refView().setAlgebraicExpression(expressionOf(prefix), new RuleC(std::move(rule)), 0,
                                           math::algexpr::NUMBER_FORMAT_AUTOMATIC);
    stage.refView().display(0, 0);
  }

  ViewStageC stage;
};

TEST_F(Constraints, UndoARejectedEditAsAWhole) {
  show(u"+(sqrt(b),a)", [](wstring const&) { return false; });
  for (wstring const place :
       {u"key right", u"key left", u"key left key right shift", u"pen down 3 20", u"pen down 3 20 pen up"}) {
    for (wstring const edit : {u"char x", u"key backspace", u"key delete", u"insert \"+y\"",
                               u"paste prefix \"y\"", u"cut", u"op sin", u"char !"}) {
      SCOPED_TRACE(toUtf8(place + u" " + edit));
      show(u"+(sqrt(b),a)", [](wstring const&) { return false; });
      play(stage, place);
      wstring const before = stage.notation();
      bytestring const bytes = stage.bytes();
      play(stage, edit);
      if (stage.refView().getAlgebraicExpression(nullptr)) {
        EXPECT_EQ(toUtf8(stage.notation()), toUtf8(before));
        EXPECT_FALSE(stage.refView().canUndo());
      }
      EXPECT_EQ(stage.findFault(), "");
      EXPECT_EQ(stage.refView().canUndo(), stage.bytes() != bytes);
    }
  }
}

TEST_F(Constraints, LetIncompleteFormulasPass) {
  show(u"a", [](wstring const& prefix) { return prefix == u"a" || prefix == u"+(a,b)"; });
  play(stage, u"key right char + char c");
  EXPECT_EQ(toUtf8(stage.notation()), "[\"a+\u2038\"]");
  play(stage, u"char b");
  EXPECT_EQ(toUtf8(stage.notation()), "[\"a+b\u2038\"]");
  play(stage, u"undo undo undo");
  EXPECT_EQ(toUtf8(stage.notation()), "[\"a\u2038\"]");
}

TEST_F(Constraints, ForbidClearing) {
  show(u"a", [](wstring const&) { return true; });
  wstring const before = stage.notation();
  play(stage, u"key clear");
  EXPECT_EQ(toUtf8(stage.notation()), toUtf8(before));
  EXPECT_FALSE(stage.refView().canUndo());
}

TEST_F(Constraints, MayNotChangeTheViewThatAsks) {
  int calls = 0;
  show(u"a", [&](wstring const&) {
    ++calls;
    auto& view = stage.refView();
    wstring const before = stage.notation();
    EXPECT_FALSE(view.addEvent(EVENT_CHAR, u'z', false, false, false, 0, 0));
    EXPECT_FALSE(view.addEvent(EVENT_KEY, KEY_LEFT, false, false, false, 0, 0));
    EXPECT_FALSE(view.insertText(u"z"));
    EXPECT_FALSE(view.undo());
    EXPECT_FALSE(view.redo());
    EXPECT_FALSE(view.selectRange(nullptr, 0, view.getCaretNode(), 0));
    bytestring bytes;
    view.cut(bytes);
    view.paste(expressionOf(u"z"));
    view.paste(writeBytes(*view.crefRoot().child(0)));
    view.setAlgebraicExpression(expressionOf(u"z"), nullptr, 0, math::algexpr::NUMBER_FORMAT_AUTOMATIC);
    view.display(0, 0);
    view.getExpressionSize();
    view.getCaretRectangle();
    EXPECT_EQ(toUtf8(stage.notation()), toUtf8(before));
    return true;
  });
  play(stage, u"key right char b");
  EXPECT_EQ(toUtf8(stage.notation()), "[\"ab\u2038\"]");
  play(stage, u"insert \"c\" paste prefix \"d\" key backspace");
  EXPECT_EQ(toUtf8(stage.notation()), "[\"abc\u2038\"]");
  EXPECT_EQ(calls, 4);
}

// ---- Repaints ---------------------------------------------------------------------------------------------

class Repaints : public testing::Test {
 protected:
  PointerTC<UnevenGraphicsC> graphics{(standardOperators(), new UnevenGraphicsC)};
  ViewZNT4C view{graphics};

  void show(wstring const& prefix) {
    view.setAlgebraicExpression(expressionOf(prefix), nullptr, 0, math::algexpr::NUMBER_FORMAT_AUTOMATIC);
  }
  std::string prefix() {
    auto const expression = view.getAlgebraicExpression(nullptr);
    return expression ? toUtf8(expression->toPrefixString()) : "";
  }
};

// Whatever was under way when an expression comes, who looks at the view as soon as it asks sees the new one.
TEST_F(Repaints, AreAskedForWhenTheNewExpressionStands) {
  int looks = 0;
  for (bool const grouped : {false, true}) {
    show(u"+(a,b)");
    view.insertText(u"c");
    view.beginGroup();
    view.insertText(u"zzz");
    if (!grouped) view.cancelGroup();
    graphics->onInvalidate = [&] {
      ++looks;
      EXPECT_EQ(prefix(), "sqrt(q)");
      EXPECT_TRUE(view.isSelected());
      EXPECT_FALSE(view.canUndo());
      EXPECT_GT(view.getExpressionSize().x, 0);
    };
    show(u"sqrt(q)");
    graphics->onInvalidate = nullptr;
    EXPECT_EQ(prefix(), "sqrt(q)");
    view.cancelGroup();
    EXPECT_EQ(prefix(), "sqrt(q)");
    EXPECT_FALSE(view.canUndo());
  }
  EXPECT_EQ(looks, 2);
}

TEST_F(Repaints, MayNotChangeTheView) {
  show(u"a");
  view.insertText(u"b");
  view.insertText(u"(c)");
  int tries = 0;
  graphics->onInvalidate = [&] {
    ++tries;
    EXPECT_FALSE(view.undo());
    EXPECT_FALSE(view.insertText(u"z"));
    EXPECT_FALSE(view.addEvent(EVENT_KEY, KEY_LEFT, false, false, false, 0, 0));
    EXPECT_FALSE(view.selectRange(nullptr, 0, view.getCaretNode(), 0));
    show(u"z");
  };
  view.selectRange(nullptr, 0, view.crefRoot().child(0)->child(0), 1);
  view.insertText(u"x");
  view.beginGroup();
  view.cancelGroup();
  view.undo();
  view.redo();
  view.needLayout();
  graphics->onInvalidate = nullptr;
  EXPECT_GE(tries, 5);
  EXPECT_EQ(prefix(), "bx(c)");
}

// ---- Groups -----------------------------------------------------------------------------------------------

TEST_F(Repaints, GroupsGoBackToWhereTheyBegan) {
  for (bool const editable : {false, true}) {
    show(u"+(a,b)");
    wstring const before = writeTreeNotation(view.crefRoot(), view.getCaretNode(), view.getCaretPos(),
                                             view.getAnchorNode(), view.getAnchorPos());
    view.setEditable(editable);
    view.beginGroup();
    view.selectRange(nullptr, 0, view.getCaretNode(), 1);
    view.cancelGroup();
    EXPECT_EQ(toUtf8(writeTreeNotation(view.crefRoot(), view.getCaretNode(), view.getCaretPos(),
                                       view.getAnchorNode(), view.getAnchorPos())),
              toUtf8(before));
  }
  view.beginGroup();
  show(u"+(p,q)");
  view.selectRange(nullptr, 0, view.getCaretNode(), 1);
  view.insertText(u"r");
  view.cancelGroup();
  EXPECT_TRUE(view.isSelected());
  EXPECT_EQ(prefix(), "+(p,q)");
}

// ---- Clipboard --------------------------------------------------------------------------------------------

TEST(Clipboard, CopiesExpressions) {
  struct {
    wstring formula;
    wstring prefix;  // empty: none
  } const cases[] = {
      {u"[\"\u2691a+b\u2038*c\"]", u"+(a,b)"},
      {u"[\"a\u2691+b\u2038\"]", u"_pos(b)"},
      {u"[\"\u2691a+\u2038b\"]", u""},
      {u"[\"a+\u2691\", sqrt<[\"x\"]>, \"\u2038+1\"]", u"sqrt(x)"},
      {u"[\"a+\", sqrt<[\"\u2691x\"]>, \"\u2038+1\"]", u"sqrt(x)"},
      {u"[\"a\u2691\", sqrt<[\"\"]>, \"\u2038\"]", u""},
      {u"[\"a+\u2691\", (, \"b\u2038\", ), \"\"]", u"_quietpos(b)"},
  };
  for (auto const& one : cases) {
    SCOPED_TRACE(toUtf8(one.formula));
    ViewStageC stage;
    ASSERT_TRUE(stage.setUp(one.formula));
    bytestring bytes;
    auto const expression = stage.refView().copy(bytes);
    EXPECT_EQ(toUtf8(expression ? expression->toPrefixString() : wstring()), toUtf8(one.prefix));
    EXPECT_FALSE(bytes.empty()) << "the bytes are filled all the same";
    EXPECT_EQ(toUtf8(stage.notation()), toUtf8(one.formula));
  }
}

TEST(Clipboard, LeavesTheBytesAloneWithoutASelection) {
  ViewStageC stage;
  ASSERT_TRUE(stage.setUp(u"[\"a\u2038\"]"));
  bytestring bytes{1, 2, 3};
  EXPECT_FALSE(stage.refView().copy(bytes));
  EXPECT_EQ(bytes, (bytestring{1, 2, 3}));
}

TEST(Clipboard, GivesTheHostsOwnExpressionBackWhenNotEditable) {
  ViewStageC stage;
  auto& view = stage.refView();
  auto const expression = expressionOf(u"+(a,0.10)");
  view.setAlgebraicExpression(expression, nullptr, 0, math::algexpr::NUMBER_FORMAT_AUTOMATIC);
  view.setEditable(false);
  Node4C const* const text = view.getCaretNode();
  bytestring bytes;
  EXPECT_EQ(view.copy(bytes), expression);
  EXPECT_TRUE(view.selectRange(text, static_cast<unsigned int>(text->sizeText()), text, 0));
  EXPECT_EQ(view.copy(bytes), expression);
  EXPECT_TRUE(bytes.empty());
  EXPECT_TRUE(view.selectRange(text, 0, text, 1));
  auto const part = view.copy(bytes);
  ASSERT_TRUE(part);
  EXPECT_EQ(toUtf8(part->toPrefixString()), "a");
  EXPECT_FALSE(bytes.empty());
  EXPECT_EQ(view.getAlgebraicExpression(nullptr), expression);
}

/// The bytes of one node, with children as given.
bytestring record(short type, wstring const& text, std::vector<bytestring> const& children) {
  oss::PointerTC<oss::BinaryStringOutputStreamC> const bytes(new oss::BinaryStringOutputStreamC);
  oss::PointerTC<oss::ObjectOutputStreamABC> out(new oss::BinaryOutputStreamC(bytes));
  out->writeStartAggregate(2);
  out->writeMember(type);
  out->writeMember(text);
  out->writeMember(static_cast<unsigned long>(children.size()));
  for (bytestring const& child : children) bytes->write(child.data(), child.size());
  out->writeEndAggregate();
  return bytes->getString();
}

TEST(Clipboard, PastesOnlyWhatTheEditorCouldHaveWritten) {
  bytestring const text = record(NODE4_TEXT, u"x", {});
  bytestring const row = record(NODE4_LINE, u"", {text});
  auto const inRow = [](bytestring const& item) { return record(NODE4_LINE, u"", {item}); };
  auto const construct = [&](wstring const& name, std::vector<bytestring> const& children) {
    return inRow(record(NODE4_OPERATOR, name, children));
  };
  struct {
    char const* what;
    bytestring bytes;
    bool good;
  } const cases[] = {
      {"a row", row, true},
      {"a row without items", record(NODE4_LINE, u"", {}), true},
      {"bytes behind the row", row + bytestring{9, 9}, true},
      {"a fraction", construct(u"/", {row, row}), true},
      {"an exponent alone", inRow(record(NODE4_POWER, u"", {row})), true},
      {"an error with any number of rows", construct(u"error", {row, row, row}), true},
      {"a closing bracket", inRow(record(NODE4_CLOSE, u"", {})), true},
      {"nothing", {}, false},
      {"a text at the top", text, false},
      {"a root at the top", record(NODE4_ROOT, u"", {row}), false},
      {"a row in a row", inRow(row), false},
      {"a root in a row", inRow(record(NODE4_ROOT, u"", {row})), false},
      {"an unknown kind", inRow(record(9, u"", {})), false},
      {"a negative kind", inRow(record(-1, u"", {})), false},
      {"a text with children", inRow(record(NODE4_TEXT, u"x", {text})), false},
      {"a bracket with children", inRow(record(NODE4_OPEN, u"", {text})), false},
      {"an exponent without a row", inRow(record(NODE4_POWER, u"", {})), false},
      {"an exponent with two rows", inRow(record(NODE4_POWER, u"", {row, row})), false},
      {"an exponent of a text", inRow(record(NODE4_POWER, u"", {text})), false},
      {"a fraction with one row", construct(u"/", {row}), false},
      {"a fraction of texts", construct(u"/", {text, text}), false},
      {"an unknown operator", construct(u"nosuch", {row}), false},
      {"an infix sign as a construct", construct(u"+", {row, row}), false},
      {"a power as a construct", construct(u"^", {row, row}), false},
      {"a fixed power as a construct", construct(u"_deg", {row}), false},
      {"a call as a construct", construct(u"sin", {row}), false},
      {"a constant as a construct", construct(u"_PI", {}), false},
      {"a grave accent", inRow(record(NODE4_TEXT, u"a`b", {})), false},
      {"a zero character", inRow(record(NODE4_TEXT, wstring(1, u'\0'), {})), false},
      {"a deep grave accent", construct(u"/", {row, inRow(record(NODE4_TEXT, u"`", {}))}), false},
  };
  for (auto const& one : cases) {
    SCOPED_TRACE(one.what);
    ViewStageC stage;
    ASSERT_TRUE(stage.setUp(u"[\"a\u2691b\u2038c\"]"));
    stage.refView().paste(one.bytes);
    EXPECT_EQ(stage.notation() != u"[\"a\u2691b\u2038c\"]", one.good);
    EXPECT_EQ(stage.findFault(), "");
    stage.refView().display(0, 0);
    stage.refView().getAlgebraicExpression(nullptr);
  }
}

// ---- Limits -----------------------------------------------------------------------------------------------

wstring nestedRoots(unsigned long rows, wstring const& innermost) {
  wstring text;
  for (unsigned long i = 1; i < rows; ++i) text += u"[\"\", sqrt<";
  text += innermost;
  for (unsigned long i = 1; i < rows; ++i) text += u">, \"\"]";
  return text;
}

TEST(Limits, CountTheRowsThatAreWrapped) {
  onSmallStack([] {
    unsigned long const most = limits::max_nested_rows;
    struct {
      wstring script;
      unsigned long rows;  // of a formula that it nests one deeper
    } const cases[] = {
        {u"op sqrt", most},  {u"op nthroot", most}, {u"op integral", most},
        {u"op where", most}, {u"op ^", most},       {u"key right op /", most},
    };
    for (auto const& one : cases) {
      SCOPED_TRACE(toUtf8(one.script));
      for (bool fits : {false, true}) {
        ViewStageC stage;
        ASSERT_TRUE(stage.setUp(nestedRoots(one.rows - (fits ? 1 : 0), u"[\"\u2038\"]")));
        Node4C const* const row = stage.refView().crefRoot().child(0);
        stage.refView().selectRange(row->child(0), 0, row->child(2), 0);
        EXPECT_EQ(stage.findFault(), "");
        bytestring const before = stage.bytes();
        stage.play(toScript(one.script));
        EXPECT_EQ(stage.bytes() != before, fits);
        EXPECT_EQ(stage.findFault(), "");
      }
    }
  });
}

TEST(Limits, CountTheRowsThatArePasted) {
  onSmallStack([] {
    unsigned long const most = limits::max_nested_rows;
    ViewStageC source;
    ASSERT_TRUE(source.setUp(nestedRoots(most, u"[\"\u2038\"]")));
    bytestring const bytes = writeBytes(*source.refView().crefRoot().child(0));
    ViewStageC stage;
    ASSERT_TRUE(stage.setUp(u"[\"\", sqrt<[\"\u2038\"]>, \"\"]"));
    bytestring const before = stage.bytes();
    stage.refView().paste(bytes);
    EXPECT_EQ(stage.bytes(), before);
    // The row that it would go into counts, not the one with the caret.
    ASSERT_TRUE(stage.setUp(u"[\"\u2691\", sqrt<[\"\u2038\"]>, \"\"]"));
    stage.refView().paste(bytes);
    EXPECT_NE(stage.bytes(), before);
    EXPECT_EQ(stage.findFault(), "");
    play(stage, u"pen down 5 5 pen move 50 9 pen up copy undo redo key clear");
    EXPECT_EQ(stage.findFault(), "");
  });
}

}  // namespace
}  // namespace zolt::tests
