#include <gtest/gtest.h>

#include "tests/support/cases.h"
#include "tests/support/view_stage.h"

namespace zolt::tests {
namespace {

/// The parts of a line `start | script ⇒ end | answer`; the answer with its bar may be missing.
struct ViewCaseS {
  explicit ViewCaseS(CaseS const& line) {
    split(line.input, start, script);
    split(line.expected, end, answer);
    if (end == "=") end = start;
  }

  std::string start;
  std::string script;
  std::string end;
  std::string answer;

 private:
  static void split(std::string const& text, std::string& left, std::string& right) {
    std::string const bar = " | ";
    std::size_t const at = text.find(bar);
    left = text.substr(0, at);
    if (at != std::string::npos) right = text.substr(at + bar.size());
  }
};

/// Takes everything back and brings it again: the first step is the one that put up the start, unless that is
/// empty.
void checkHistory(ViewStageC& stage, oss::bytestring const& start) {
  oss::bytestring const end = stage.bytes();
  auto& view = stage.refView();
  view.setEditable(true);
  unsigned long steps = 0;
  while (view.undo()) ++steps;
  EXPECT_EQ(toUtf8(stage.notationWithoutPlaces()), "[\"\"]");
  bool reached = stage.bytes() == start;
  for (unsigned long i = 0; i < steps; ++i) {
    EXPECT_TRUE(view.redo());
    EXPECT_EQ(stage.findFault(), "");
    if (i == 0) reached = reached || stage.bytes() == start;
  }
  EXPECT_TRUE(reached) << "the first edit was taken back to another tree";
  EXPECT_EQ(stage.bytes(), end);
}

bool startsHistory(EventScriptT const& script) {
  for (ScriptStepS const& step : script) {
    if (step.word == field::SCRIPT_SHOW) return true;
  }
  return false;
}

void runCase(ViewCaseS const& one) {
  ViewStageC stage;
  ASSERT_TRUE(stage.setUp(toText(one.start))) << "not a normal tree: " << one.start;
  oss::bytestring const start = stage.bytes();
  EventScriptT script;
  unsigned long position = 0;
  ASSERT_TRUE(readEventScript(toText(one.script), script, position)) << one.script.substr(position);

  bool const answer = stage.play(script);
  EXPECT_EQ(toUtf8(stage.notation()), one.end);
  EXPECT_EQ(answer ? "" : "ignored", one.answer);
  EXPECT_EQ(stage.findFault(), "");
  if (!startsHistory(script) && !stage.refView().canRedo()) checkHistory(stage, start);
}

class ViewCases : public testing::TestWithParam<char const*> {};

TEST_P(ViewCases, EndAsWritten) {
  for (CaseS const& line : readCases(std::string(ZOLT_TEST_DATA "/") + GetParam() + ".cases")) {
    SCOPED_TRACE(line.where + ": " + line.input);
    runCase(ViewCaseS(line));
  }
}

INSTANTIATE_TEST_SUITE_P(
    Files, ViewCases, testing::Values("caret", "clipboard", "delete", "insertion", "pointer", "text", "undo"),
    [](testing::TestParamInfo<char const*> const& file) { return std::string(file.param); });

}  // namespace
}  // namespace zolt::tests
