#include <gtest/gtest.h>

#include <random>

#include "tests/support/cases.h"
#include "tests/support/view_stage.h"
#include "zolt/ved/tree/tree_notation.h"
#include "zolt/ved/view/edit_history.h"

namespace zolt::tests {
namespace {

using namespace math::ved;
/// A history fed from outside about what a view does.
class Observed : public testing::Test {
 protected:
  EditPlacesS places() const {
    auto& view = stage.refView();
    bool const selected = view.isSelected();
    return {view.getCaretNode(), view.getCaretPos(), selected ? view.getAnchorNode() : nullptr,
            view.getAnchorPos()};
  }
  void edit(EditHistoryC& history, EventScriptT const& script) {
    history.beginStep(stage.refView().crefRoot(), places());
    stage.refPlayer().play(script);
    history.endStep(stage.refView().crefRoot(), places());
  }
  static EventScriptT script(wstring const& text) {
    EventScriptT steps;
    unsigned long position = 0;
    EXPECT_TRUE(readEventScript(text, steps, position));
    return steps;
  }

  mutable ViewStageC stage;
};

TEST_F(Observed, KeysCostFewBytesInALargeFormula) {
  wstring row = u"[\"\u2038\"";
  for (int i = 0; i < 333; ++i) row += u", /<[\"a\"] ; [\"b\"]>, \"+\"";
  ASSERT_TRUE(stage.setUp(row + u"]"));
  // Unmatched brackets change the row's other end as well.
  EventScriptT const keys[] = {script(u"char x"),    script(u"char )"), script(u"char ("),
                               script(u"op sqrt"),   script(u"char 2"), script(u"key backspace"),
                               script(u"key delete")};
  EditHistoryC history;
  std::mt19937 random(3);
  unsigned long steps = 0;
  while (steps < 1000) {
    stage.refPlayer().play(script(random() % 2 ? u"key right" : u"key left"));
    unsigned long const before = history.byteSize();
    edit(history, keys[random() % std::size(keys)]);
    if (history.byteSize() != before) ++steps;
  }
  EXPECT_LE(history.byteSize(), 4ul << 20);
  RecordProperty("bytes_for_1000_steps", static_cast<int>(history.byteSize()));
  std::unique_ptr<Node4C> const root(stage.refView().crefRoot().clone());
  for (; history.canUndo(); --steps) history.undo(*root);
  EXPECT_EQ(steps, 0u);
}

TEST_F(Observed, OldStepsAreForgottenPastTheLimits) {
  ASSERT_TRUE(stage.setUp(u"[\"\u2038\"]"));
  EditHistoryC history(3, 1ul << 20);
  for (char16_t c : wstring(u"abcde")) edit(history, script(wstring(u"char ") + c));
  std::unique_ptr<Node4C> const root(stage.refView().crefRoot().clone());
  int undone = 0;
  for (; history.canUndo(); ++undone) history.undo(*root);
  EXPECT_EQ(writeTreeNotation(*root), u"[\"ab\"]");
  EXPECT_EQ(undone, 3);
  EXPECT_TRUE(history.canRedo());
  EXPECT_FALSE(history.undoContinues());
  EXPECT_EQ(history.getPosition(), 2u) << "two are forgotten";

  EditHistoryC small(1000, 1);
  for (char16_t c : wstring(u"abc")) edit(small, script(wstring(u"char ") + c));
  ASSERT_TRUE(small.canUndo()) << "the newest step is kept whatever it takes";
  small.undo(*std::unique_ptr<Node4C>(stage.refView().crefRoot().clone()));
  EXPECT_FALSE(small.canUndo());
  EXPECT_EQ(small.getPosition(), 2u);

  EditHistoryC next;
  next.countFrom(small);
  EXPECT_EQ(next.getPosition(), 2u);
}

TEST_F(Observed, BringsBackOperatorsThatTheTableForgot) {
  ASSERT_TRUE(stage.setUp(u"[\"\", sqrt<[\"x\u2038\"]>, \"\"]"));
  PointerTC<OperatorBC> const op = stage.refView().crefRoot().child(0)->child(1)->getOperator();
  EditHistoryC history;
  edit(history, script(u"key clear"));
  ASSERT_TRUE(history.canUndo());
  std::unique_ptr<Node4C> const root(stage.refView().crefRoot().clone());
  history.undo(*root);
  EXPECT_EQ(root->child(0)->child(1)->crefOperator(), op.get());
}

TEST(ViewHistory, MarksTypingThatGoesOn) {
  struct {
    wstring script;
    bool continues;
  } const cases[] = {
      {u"char a", false},
      {u"char a char b", true},
      {u"char a insert \"b\"", true},
      {u"char a insert \"bc\"", false},
      {u"char a key left char b", false},
      {u"char a key left key right char b", true},
      {u"char a char +", false},
      {u"char + char a", false},
      {u"char a key backspace char b", false},
      {u"char a char b key left shift char c", false},
      {u"char a char b undo", false},
      {u"char a char b char c undo", true},
      {u"char a undo char b", false},
  };
  for (auto const& one : cases) {
    SCOPED_TRACE(toUtf8(one.script));
    ViewStageC stage;
    stage.refView().setAlgebraicExpression(nullptr, nullptr, 0, math::algexpr::NUMBER_FORMAT_AUTOMATIC);
    EventScriptT script;
    unsigned long position = 0;
    ASSERT_TRUE(readEventScript(one.script, script, position));
    stage.play(script);
    EXPECT_EQ(stage.refView().undoContinues(), one.continues);
    if (stage.refView().undo()) {
      EXPECT_EQ(stage.refView().redoContinues(), one.continues);
    }
  }
}

}  // namespace
}  // namespace zolt::tests
