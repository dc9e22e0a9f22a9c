#include <gtest/gtest.h>

#include <random>

#include "tests/support/stage.h"
#include "zolt/ved/view/edit_backup.h"
#include "zolt/ved/view/edit_history.h"

namespace zolt::tests {
namespace {

using namespace math::ved;

/// A history that the test itself informs of what a view does.
class Observed : public testing::Test {
 protected:
  Observed() { stage.turnOptionsOff(); }

  void edit(EditHistoryC& history, std::string const& script) {
    history.beginStep(stage.crefRoot(), stage.refView().getSelection());
    stage.play(script);
    history.endStep(stage.crefRoot(), stage.refView().getSelection());
  }

  StageC stage;
};

TEST_F(Observed, KeysCostFewBytesInALargeFormula) {
  wstring row = u"[\"\u2038\"";
  for (int i = 0; i < 333; ++i) row += u", /<[\"a\"] ; [\"b\"]>, \"+\"";
  ASSERT_TRUE(stage.refField().setNotation(row + u"]"));
  // Unmatched brackets change the row's other end as well.
  std::string const keys[] = {"char x", "char )",        "char (",    "op sqrt",
                              "char 2", "key backspace", "key delete"};
  EditHistoryC history;
  std::mt19937 random(3);
  unsigned long steps = 0;
  while (steps < 1000) {
    stage.play(random() % 2 ? "key right" : "key left");
    unsigned long const before = history.byteSize();
    edit(history, keys[random() % std::size(keys)]);
    if (history.byteSize() != before) ++steps;
  }
  EXPECT_LE(history.byteSize(), 4ul << 20);
  RecordProperty("bytes_for_1000_steps", static_cast<int>(history.byteSize()));
  TreeT const root(stage.crefRoot().clone());
  for (; history.canUndo(); --steps) history.undo(*root);
  EXPECT_EQ(steps, 0u);
}

TEST(EditBackup, CopiesATreeWithItsPlaces) {
  std::string const notation = "[\"a\", /<[\"b\u2038c\"] ; [\"\u2691d\"]>, \"\"]";
  TreeNotationS const tree = readTree(notation);
  auto const [anchor, caret] = tree.selection;
  EditBackupC const copy(true, tree.root.get(), const_cast<Node4C*>(caret.node), caret.pos,
                         const_cast<Node4C*>(anchor.node), anchor.pos);
  EXPECT_EQ(toUtf8(writeTreeNotation(*copy.crefRoot(), copy.getSelection())), notation);
}

TEST_F(Observed, OldStepsAreForgottenPastTheLimits) {
  EditHistoryC history(3, 1ul << 20);
  for (std::string const letter : {"a", "b", "c", "d", "e"}) edit(history, "char " + letter);
  TreeT const root(stage.crefRoot().clone());
  int undone = 0;
  for (; history.canUndo(); ++undone) history.undo(*root);
  EXPECT_EQ(describe(*root), "[\"ab\"]");
  EXPECT_EQ(undone, 3);
  EXPECT_TRUE(history.canRedo());
  EXPECT_FALSE(history.undoContinues());
  EXPECT_EQ(history.getPosition(), 2u) << "two are forgotten";

  EditHistoryC small(1000, 1);
  for (std::string const letter : {"a", "b", "c"}) edit(small, "char " + letter);
  ASSERT_TRUE(small.canUndo()) << "the newest step is kept whatever it takes";
  small.undo(*TreeT(stage.crefRoot().clone()));
  EXPECT_FALSE(small.canUndo());
  EXPECT_EQ(small.getPosition(), 2u);

  EditHistoryC next;
  next.countFrom(small);
  EXPECT_EQ(next.getPosition(), 2u);
}

TEST_F(Observed, BringsBackOperatorsThatTheTableForgot) {
  stage.play("op sqrt");
  auto const* const op = stage.crefRoot().child(0)->child(1)->crefOperator();
  EditHistoryC history;
  edit(history, "key clear");
  ASSERT_TRUE(history.canUndo());
  TreeT const root(stage.crefRoot().clone());
  history.undo(*root);
  EXPECT_EQ(root->child(0)->child(1)->crefOperator(), op);
}

TEST(ViewHistory, MarksTypingThatGoesOn) {
  std::pair<char const*, bool> const cases[] = {{"char a", false},
                                                {"char a char b", true},
                                                {"char a insert \"b\"", true},
                                                {"char a insert \"bc\"", false},
                                                {"char a key left char b", false},
                                                {"char a char +", false},
                                                {"char + char a", false},
                                                {"char a key backspace char b", false},
                                                {"char a char b key left shift char c", false}};
  for (auto const& [script, continues] : cases) {
    SCOPED_TRACE(script);
    StageC stage;
    stage.turnOptionsOff();
    stage.play(script);
    EXPECT_EQ(stage.refView().undoContinues(), continues);
    EXPECT_TRUE(stage.refView().undo());
    EXPECT_EQ(stage.refView().redoContinues(), continues);
  }
}

}  // namespace
}  // namespace zolt::tests
