#include <gtest/gtest.h>
#include <utf8.h>

#include <set>

#include "tests/field/field_stage.h"
#include "zolt/ved/tree/tree_notation.h"
#include "zolt/ved/tree/validate_tree.h"

namespace zolt::tests {

using namespace field;
using namespace math::ved;

FieldStageC::FieldStageC()
    : graphics_((standardOperators(), new surfaces::RecordingGraphicsC)),
      field_(graphics_),
      runner_(field_) {}

FieldStageC::FieldStageC(std::string const& notation) : FieldStageC() {
  EXPECT_TRUE(field_.setNotation(fromUtf8(notation))) << notation;
  EXPECT_EQ(this->notation(), notation) << "not a normal tree";
}

bool FieldStageC::play(std::string const& script) { return runner_.run(toScript(script)); }

std::string FieldStageC::tree() const { return toUtf8(writeTreeNotation(field_.crefView().crefRoot())); }

std::string FieldStageC::findFault() const {
  ViewZNT4C const& view = field_.crefView();
  TreeFaultS fault = validateTree(view.crefRoot());
  if (fault.invariant == TREE_VALID) {
    fault = validatePlace(view.crefRoot(), view.getCaretNode(), view.getCaretPos());
  }
  if (fault.invariant == TREE_VALID && view.isSelected()) {
    fault = validatePlace(view.crefRoot(), view.getAnchorNode(), view.getAnchorPos());
  }
  return fault.invariant == TREE_VALID ? std::string() : toUtf8(describeInvariant(fault.invariant));
}

wstring fromUtf8(std::string const& text) { return utf8::utf8to16(text); }

EventScriptT toScript(std::string const& text) {
  EventScriptT script;
  unsigned long position = 0;
  EXPECT_TRUE(readEventScript(fromUtf8(text), script, position)) << text << " at " << position;
  return script;
}

std::vector<std::string> const& fieldCaseFiles() {
  static std::vector<std::string> const names = {"motion",  "vertical", "selection", "typing",
                                                 "leaving", "delete",   "clipboard", "pointer"};
  return names;
}

std::vector<FieldCaseS> readFieldCases(std::string const& name) {
  std::vector<FieldCaseS> cases;
  std::string const bar = " | ";
  std::string const refused = " | refused";
  for (CaseS const& line : readCases(ZOLT_TEST_DATA "/" + name + ".cases")) {
    FieldCaseS one;
    one.where = line.where;
    std::size_t const at = line.input.find(bar);
    one.start = line.input.substr(0, at);
    one.script = line.input.substr(at + bar.size());
    one.end = line.expected;
    if (one.end.size() > refused.size() && one.end.substr(one.end.size() - refused.size()) == refused) {
      one.refused = true;
      one.end.erase(one.end.size() - refused.size());
    }
    if (one.end == "=") one.end = one.start;
    cases.push_back(std::move(one));
  }
  return cases;
}

namespace {

bool startsHistory(EventScriptT const& script) {
  for (ScriptStepS const& step : script) {
    if (step.word == SCRIPT_SHOW) return true;
  }
  return false;
}

/// Takes everything back and brings it again, one act after the other.
void checkHistory(FieldStageC& stage, std::string const& start) {
  FormulaFieldC& field = stage.refField();
  field.setEditable(true);
  while (field.run(COMMAND_REDO)) {
  }
  std::string const end = stage.tree();
  std::vector<std::string> trees{end};
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

class FieldCases : public testing::TestWithParam<std::string> {};

TEST_P(FieldCases, EndAsWritten) {
  for (FieldCaseS const& one : readFieldCases(GetParam())) {
    SCOPED_TRACE(one.where + ": " + one.start + " | " + one.script);
    FieldStageC stage(one.start);
    std::string const start = stage.tree();
    EventScriptT recorded;
    stage.refField().record(&recorded);
    EXPECT_EQ(!stage.play(one.script), one.refused);
    stage.refField().record(nullptr);
    EXPECT_EQ(stage.notation(), one.end);
    EXPECT_EQ(stage.findFault(), "");

    // What was recorded, written out and read back, does the same again.
    FieldStageC other(one.start);
    InputOptionsS const options = stage.refField().getOptions();
    for (ScriptStepS const& step : toScript(one.script)) {
      if (step.word == SCRIPT_SET) other.refField().setOptions(options);
    }
    std::string const text = toUtf8(writeEventScript(recorded));
    EventScriptT read;
    unsigned long position = 0;
    ASSERT_TRUE(readEventScript(writeEventScript(recorded), read, position)) << text;
    ScriptRunnerC(other.refField()).run(read);
    EXPECT_EQ(other.notation(), one.end) << text;

    if (!startsHistory(recorded)) checkHistory(stage, start);
  }
}

INSTANTIATE_TEST_SUITE_P(Files, FieldCases, testing::ValuesIn(fieldCaseFiles()),
                         [](auto const& file) { return file.param; });

TEST(FieldCommands, EachHasACase) {
  std::set<wstring> tried;
  for (std::string const& file : fieldCaseFiles()) {
    for (FieldCaseS const& one : readFieldCases(file)) {
      for (ScriptStepS const& step : toScript(one.script)) {
        wstring const line = writeScriptStep(step);
        tried.insert(step.word == SCRIPT_COMMAND ? step.text : line);
      }
    }
  }
  for (CommandS const& command : commands()) {
    EXPECT_EQ(tried.count(command.name), 1u) << toUtf8(command.name);
  }
}

// A command that is not enabled does nothing; one that is enabled does something.
TEST(FieldCommands, AreEnabledWhenTheyDoSomething) {
  for (std::string const& file : fieldCaseFiles()) {
    for (FieldCaseS const& one : readFieldCases(file)) {
      for (CommandS const& command : commands()) {
        SCOPED_TRACE(one.where + ": " + one.start + " " + toUtf8(command.name));
        FieldStageC stage(one.start);
        bool const enabled = stage.refField().isEnabled(command.command);
        EXPECT_EQ(stage.refField().run(command.command), enabled);
        if (!enabled) {
          EXPECT_EQ(stage.notation(), one.start);
        }
        EXPECT_EQ(stage.findFault(), "");
        stage.refField().setEditable(false);
        if (command.modifies) {
          EXPECT_FALSE(stage.refField().isEnabled(command.command));
        }
      }
    }
  }
}

TEST(FieldExpressions, AreAsWritten) {
  for (CaseS const& one : readCases(ZOLT_TEST_DATA "/expression.cases")) {
    SCOPED_TRACE(one.where + ": " + one.input);
    FieldStageC stage;
    for (char16_t const c : fromUtf8(one.input)) EXPECT_TRUE(stage.refField().typeCharacter(c));
    FormulaErrorS error;
    auto const expression = stage.refField().getExpression(&error);
    std::string const found =
        expression ? toUtf8(expression->toPrefixString()) : toUtf8(error.text) + ": " + stage.notation();
    EXPECT_EQ(found, one.expected);
  }
}

}  // namespace
}  // namespace zolt::tests
