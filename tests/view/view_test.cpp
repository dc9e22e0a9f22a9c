#include <gtest/gtest.h>

#include "tests/support/stage.h"
#include "tests/support/uneven_graphics.h"
#include "zolt/oss/binary_stream.h"
#include "zolt/oss/binary_string_stream.h"

namespace zolt::tests {
namespace {

using namespace math::ved;
using math::algexpr::AlgebraicExpressionC;
using oss::bytestring;

ExpressionT expressionOf(wstring const& prefix) { return AlgebraicExpressionC::fromPrefixString(prefix); }

/// What a view does by itself: the options of the field around it are off.
class Constraints : public testing::Test {
 protected:
  Constraints() { stage.turnOptionsOff(); }
  void show(std::string const& prefix, std::function<bool(std::string const&)> rule) {
    stage.show(prefix, new RuleC(std::move(rule)));
  }

  StageC stage;
};

TEST_F(Constraints, UndoARejectedEditAsAWhole) {
  for (std::string const place :
       {"key right", "key left", "key left key right shift", "pen down 3 20", "pen down 3 20 pen up"}) {
    for (std::string const edit :
         {"char x", "key backspace", "insert \"+y\"", "paste prefix \"y\"", "cut", "op sin", "char !"}) {
      SCOPED_TRACE(place + " " + edit);
      show("+(sqrt(b),a)", [](std::string const&) { return false; });
      stage.play(place);
      std::string const before = stage.notation();
      bytestring const bytes = stage.bytes();
      stage.play(edit);
      EXPECT_EQ(stage.refView().canUndo(), stage.bytes() != bytes);
      if (stage.refView().getAlgebraicExpression(nullptr)) {
        EXPECT_EQ(stage.notation(), before);
      }
      EXPECT_EQ(stage.findFault(), "");
    }
  }
}

TEST_F(Constraints, LetIncompleteFormulasPassAndForbidClearing) {
  show("a", [](std::string const& prefix) { return prefix == "a" || prefix == "+(a,b)"; });
  std::string const before = stage.notation();
  stage.play("key clear");
  EXPECT_EQ(stage.notation(), before);
  EXPECT_FALSE(stage.refView().canUndo());
  stage.play("key right char + char c");
  EXPECT_EQ(stage.notation(), "[\"a+‸\"]");
  stage.play("char b");
  EXPECT_EQ(stage.notation(), "[\"a+b‸\"]");
}

TEST_F(Constraints, MayNotChangeTheViewThatAsks) {
  int calls = 0;
  show("a", [&](std::string const&) {
    ++calls;
    auto& view = stage.refView();
    std::string const before = stage.notation();
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
    EXPECT_EQ(stage.notation(), before);
    return true;
  });
  auto& view = stage.refView();
  view.addEvent(EVENT_KEY, KEY_RIGHT, false, false, false, 0, 0);
  EXPECT_FALSE(view.addEvent(EVENT_KEY, KEY_RIGHT, false, false, false, 0, 0));  // it is at the end
  view.addEvent(EVENT_CHAR, u'b', false, false, false, 0, 0);
  EXPECT_EQ(stage.notation(), "[\"ab‸\"]");
  view.insertText(u"c");
  view.paste(expressionOf(u"d"));
  view.addEvent(EVENT_KEY, KEY_BACKSPACE, false, false, false, 0, 0);
  EXPECT_EQ(stage.notation(), "[\"abc‸\"]");
  EXPECT_EQ(calls, 4);

  auto doomed = std::make_unique<ViewZNT4C>(new surfaces::RecordingGraphicsC);
  doomed->setConstraints(new RuleC([&](std::string const&) { return doomed.reset(), true; }));
  EXPECT_FALSE(doomed->insertText(u"a"));
  EXPECT_FALSE(doomed);
}

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

// A host that queries the view inside the repaint request sees the new expression, whatever was under way.
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
  auto const change = [&] {
    ++tries;
    EXPECT_FALSE(view.undo());
    EXPECT_FALSE(view.insertText(u"z"));
    EXPECT_FALSE(view.addEvent(EVENT_KEY, KEY_LEFT, false, false, false, 0, 0));
    EXPECT_FALSE(view.selectRange(nullptr, 0, view.getCaretNode(), 0));
    show(u"z");
  };
  graphics->onInvalidate = change;
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

  // Nor while the surface measures and draws, for the view or for a field.
  field::FormulaFieldC field(graphics);
  graphics->onUse = [&] {
    change();
    EXPECT_FALSE(view.measureAgain());
    view.getExpressionSize();
    view.display(0, 0);
  };
  tries = 0;
  view.measureAgain();
  view.display(0, 0);
  view.getCaretRectangle();
  EXPECT_GE(tries, 10);
  graphics->onUse = nullptr;
  ASSERT_TRUE(field.setPlainText(u"a/b"));
  graphics->onUse = [&] { EXPECT_FALSE(field.refView().insertText(u"z")); };
  EXPECT_EQ(field.getSelectionRectangles().size(), 1u);
  EXPECT_TRUE(field.run(field::COMMAND_DOWN));
  graphics->onUse = nullptr;
  EXPECT_EQ(prefix(), "bx(c)");
}

#ifndef NDEBUG
TEST_F(Repaints, MayNotDestroyTheView) {
  auto doomed = std::make_unique<field::FormulaFieldC>(graphics);
  ASSERT_TRUE(doomed->setPlainText(u"a/b"));
  graphics->onUse = graphics->onInvalidate = [&] { doomed.reset(); };
  EXPECT_DEATH(doomed->refView().display(0, 0), "");
  EXPECT_DEATH(doomed->refView().needLayout(), "");
  graphics->onUse = graphics->onInvalidate = nullptr;
  doomed->setConstraints(new RuleC([&](std::string const&) { return doomed.reset(), true; }));
  EXPECT_DEATH(doomed->typeCharacter(u'x'), "");
  doomed->setConstraints(nullptr);
}
#endif

// A host that paints as soon as it is asked to is asked again when the change is over.
TEST_F(Repaints, ThatWereMissedAreAskedForAgain) {
  show(u"a");
  view.display(0, 0);
  int asked = 0;
  graphics->onInvalidate = [&] {
    ++asked;
    view.display(0, 0);
  };
  view.insertText(u"b");
  graphics->onInvalidate = nullptr;
  EXPECT_NE(graphics->getText().rfind("drawText \"b\""), std::string::npos)
      << asked << " " << graphics->getText();
}

TEST_F(Repaints, GroupsGoBackToWhereTheyBegan) {
  auto const state = [&] { return toUtf8(writeTreeNotation(view.crefRoot(), view.getSelection())); };
  for (bool const editable : {false, true}) {
    show(u"+(a,b)");
    std::string const before = state();
    view.setEditable(editable);
    view.beginGroup();
    view.selectRange(nullptr, 0, view.getCaretNode(), 1);
    view.cancelGroup();
    EXPECT_EQ(state(), before);
  }
  view.beginGroup();
  show(u"+(p,q)");
  view.selectRange(nullptr, 0, view.getCaretNode(), 1);
  view.insertText(u"r");
  view.cancelGroup();
  EXPECT_TRUE(view.isSelected());
  EXPECT_EQ(prefix(), "+(p,q)");
}

TEST(Clipboard, CopiesExpressions) {
  std::pair<char const*, char const*> const cases[] = {{"[\"⚑a+b‸*c\"]", "+(a,b)"},
                                                       {"[\"a⚑+b‸\"]", "_pos(b)"},
                                                       {"[\"⚑a+‸b\"]", "no expression"},
                                                       {"[\"a+⚑\", sqrt<[\"x\"]>, \"‸+1\"]", "sqrt(x)"},
                                                       {"[\"a+\", sqrt<[\"⚑x\"]>, \"‸+1\"]", "sqrt(x)"},
                                                       {"[\"a⚑\", sqrt<[\"\"]>, \"‸\"]", "no expression"},
                                                       {"[\"a+⚑\", (, \"b‸\", ), \"\"]", "_quietpos(b)"}};
  for (auto const& [formula, prefix] : cases) {
    StageC stage(formula);
    bytestring bytes;
    EXPECT_EQ(describe(stage.refView().copy(bytes)), prefix);
    EXPECT_FALSE(bytes.empty()) << "the bytes are filled all the same";
    EXPECT_EQ(stage.notation(), formula);
  }
  bytestring bytes{1, 2, 3};
  EXPECT_FALSE(StageC("[\"a‸\"]").refView().copy(bytes));
  EXPECT_EQ(bytes, (bytestring{1, 2, 3})) << "nothing is selected";
}

TEST(Clipboard, GivesTheHostsOwnExpressionBackWhenNotEditable) {
  StageC stage;
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
  EXPECT_EQ(describe(view.copy(bytes)), "a");
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
      {"bytes behind the row", row + bytestring{9, 9}, true},
      {"a fraction", construct(u"/", {row, row}), true},
      {"an error with any number of rows", construct(u"error", {row, row, row}), true},
      {"a text at the top", text, false},
      {"a root at the top", record(NODE4_ROOT, u"", {row}), false},
      {"a row in a row", inRow(row), false},
      {"a root in a row", inRow(record(NODE4_ROOT, u"", {row})), false},
      {"an unknown kind", inRow(record(9, u"", {})), false},
      {"a text with children", inRow(record(NODE4_TEXT, u"x", {text})), false},
      {"an exponent without a row", inRow(record(NODE4_POWER, u"", {})), false},
      {"an exponent with two rows", inRow(record(NODE4_POWER, u"", {row, row})), false},
      {"a fraction with one row", construct(u"/", {row}), false},
      {"a fraction of texts", construct(u"/", {text, text}), false},
      {"an unknown operator", construct(u"nosuch", {row}), false},
      {"an infix sign as a construct", construct(u"+", {row, row}), false},
      {"a fixed power as a construct", construct(u"_deg", {row}), false},
      {"a constant as a construct", construct(u"_PI", {}), false},
      {"a grave accent", inRow(record(NODE4_TEXT, u"a`b", {})), false},
      {"a zero character", inRow(record(NODE4_TEXT, wstring(1, u'\0'), {})), false},
      {"a deep grave accent", construct(u"/", {row, inRow(record(NODE4_TEXT, u"`", {}))}), false},
  };
  for (auto const& one : cases) {
    SCOPED_TRACE(one.what);
    std::string const start = "[\"a⚑b‸c\"]";
    StageC stage(start);
    stage.refView().paste(one.bytes);
    EXPECT_EQ(stage.notation() != start, one.good);
    EXPECT_EQ(stage.findFault(), "");
    stage.refView().display(0, 0);
    stage.refView().getAlgebraicExpression(nullptr);
  }
}

}  // namespace
}  // namespace zolt::tests
