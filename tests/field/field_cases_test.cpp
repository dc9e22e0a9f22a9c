#include <gtest/gtest.h>

#include <set>

#include "tests/support/stage.h"

namespace zolt::tests {
namespace {

using namespace field;
using namespace script;

/// A line `start | script ⇒ end`, with `| refused` after it when the last step was refused; "=" is the start
/// again. The options are off for the cases of view.cases: that is how a view behaves without a field.
struct FieldCaseS {
  std::string where;
  std::string start;
  std::string script;
  std::string end;
  bool refused;
};

std::vector<FieldCaseS> readFieldCases(std::string const& file) {
  std::vector<FieldCaseS> cases;
  std::string const bar = " | ", refused = " | refused";
  for (CaseS const& line : readCases(ZOLT_TEST_DATA "/" + file + ".cases")) {
    std::size_t const at = line.input.find(bar);
    FieldCaseS one{line.where, line.input.substr(0, at), line.input.substr(at + bar.size()), line.expected,
                   false};
    std::size_t const end = one.end.find(refused);
    one.refused = end != std::string::npos;
    if (one.refused) one.end.erase(end);
    if (one.end == "=") one.end = one.start;
    cases.push_back(std::move(one));
  }
  return cases;
}

auto const files = {"motion", "vertical",   "selection", "typing",  "leaving",
                    "delete", "completion", "clipboard", "pointer", "view"};

/// Undoes everything and redoes it, one act after the other.
void checkHistory(StageC& stage, std::string const& start) {
  FormulaFieldC& field = stage.refField();
  field.setEditable(true);
  while (field.run(COMMAND_REDO)) {
  }
  std::vector<std::string> trees{stage.tree()};
  while (field.run(COMMAND_UNDO)) trees.push_back(stage.tree());
  EXPECT_EQ(stage.tree(), "[\"\"]");
  if (trees.size() > 1 && start != "[\"\"]") {
    EXPECT_EQ(trees[trees.size() - 2], start);
  }
  for (std::size_t i = trees.size() - 1; i-- > 0;) {
    EXPECT_TRUE(field.run(COMMAND_REDO));
    EXPECT_EQ(stage.tree(), trees[i]);
    EXPECT_EQ(stage.findFault(), "");
  }
  EXPECT_FALSE(field.run(COMMAND_REDO));
}

class FieldCases : public testing::TestWithParam<char const*> {};

TEST_P(FieldCases, EndAsWritten) {
  for (FieldCaseS const& one : readFieldCases(GetParam())) {
    SCOPED_TRACE(one.where + ": " + one.start + " | " + one.script);
    StageC stage(one.start);
    if (GetParam() == std::string("view")) stage.turnOptionsOff();
    std::string const start = stage.tree();
    EventScriptT recorded;
    stage.refField().record(&recorded);
    EXPECT_EQ(!stage.play(one.script), one.refused);
    stage.refField().record(nullptr);
    EXPECT_EQ(stage.notation(), one.end);
    EXPECT_EQ(stage.findFault(), "");

    // The recording does the same again after it was written and read back.
    std::string const text = toUtf8(writeEventScript(recorded));
    StageC other(one.start);
    other.play(text);
    EXPECT_EQ(other.notation(), one.end) << text;
    if (text.find("show \"") == std::string::npos) checkHistory(stage, start);
  }
}

INSTANTIATE_TEST_SUITE_P(Files, FieldCases, testing::ValuesIn(files),
                         [](auto const& file) { return std::string(file.param); });

// A command that is not enabled does nothing; one that is enabled does something.
TEST(FieldCommands, AreEnabledWhenTheyDoSomething) {
  std::set<std::string> starts;
  for (std::string const file : files) {
    for (FieldCaseS const& one : readFieldCases(file)) starts.insert(one.start);
  }
  for (std::string const& start : starts) {
    for (CommandS const& command : commands()) {
      SCOPED_TRACE(start + " " + toUtf8(command.name));
      StageC stage(start);
      bool const enabled = stage.refField().isEnabled(command.command);
      EXPECT_EQ(stage.refField().run(command.command), enabled);
      EXPECT_TRUE(enabled || stage.notation() == start);
      stage.refField().setEditable(false);
      EXPECT_FALSE(command.modifies && stage.refField().isEnabled(command.command));
    }
  }
}

TEST(FieldExpressions, AreAsWritten) {
  for (CaseS const& one : readCases(ZOLT_TEST_DATA "/expression.cases")) {
    SCOPED_TRACE(one.where + ": " + one.input);
    StageC stage;
    for (char16_t const c : fromUtf8(one.input)) EXPECT_TRUE(stage.refField().typeCharacter(c));
    std::string const before = stage.notation();
    FormulaDiagnosisS const told = stage.refField().diagnose();
    EXPECT_EQ(stage.notation(), before);
    FormulaErrorS error;
    auto const expression = stage.refField().getExpression(&error);
    EXPECT_EQ(describe(told.expression), describe(expression));
    EXPECT_EQ(told.error.message, error.message);
    EXPECT_EQ(expression ? describe(expression) : toUtf8(error.message) + ": " + stage.notation(),
              one.expected);
  }
}

}  // namespace
}  // namespace zolt::tests
