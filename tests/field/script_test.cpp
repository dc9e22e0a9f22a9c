#include <gtest/gtest.h>

#include "tests/field/field_stage.h"

namespace zolt::tests {
namespace {

using namespace field;

std::string roundTrip(std::string const& text) { return toUtf8(writeEventScript(toScript(text))); }

TEST(EventScript, ReadsBackAsWritten) {
  for (std::string const line : {"char a",
                                 "char U+0",
                                 "char U+2038",
                                 "char \"",
                                 "key 280",
                                 "key left",
                                 "key backspace shift",
                                 "type \"a b\"",
                                 "insert \"\\\"\\\\\\u0007\\uD835\"",
                                 "op sqrt",
                                 "pen down 10 -5",
                                 "pen down 0 0 x2",
                                 "pen down 1 2 x3 shift",
                                 "pen down 1 2 shift",
                                 "pen move -3 4",
                                 "pen up",
                                 "command select-all",
                                 "copy",
                                 "cut",
                                 "paste",
                                 "paste \"(a+b)/2\"",
                                 "paste prefix \"+(a,b)\"",
                                 "paste bytes \"01FF\"",
                                 "undo",
                                 "redo",
                                 "show \"x\"",
                                 "tree \"[\\\"a‸\\\"]\"",
                                 "set decimal-comma on",
                                 "set letters off",
                                 "lock",
                                 "unlock",
                                 "paint"}) {
    EXPECT_EQ(roundTrip(line), line + "\n");
  }
}

TEST(EventScript, TakesBlanksLinesAndComments) {
  EXPECT_EQ(roundTrip("# a comment\n\n  char a\tkey  37   shift\r\nundo # char b\nredo"),
            "char a\nkey left shift\nundo\nredo\n");
  EXPECT_EQ(roundTrip(""), "");
  EXPECT_EQ(roundTrip("paste paste \"x\" paste prefix \"y\" pen up"),
            "paste\npaste \"x\"\npaste prefix \"y\"\npen up\n");
  EXPECT_EQ(roundTrip("char # char #"), "char #\nchar #\n");
}

TEST(EventScript, TellsWhatItCannotRead) {
  struct CaseS {
    char const* text;
    unsigned long position;
  };
  for (CaseS const& one :
       {CaseS{"undo nothing", 5}, CaseS{"char", 0}, CaseS{"char ab", 0}, CaseS{"char U+G", 0},
        CaseS{"key nothing", 0}, CaseS{"type abc", 0}, CaseS{"type \"abc", 0}, CaseS{"type \"\\u12\"", 0},
        CaseS{"pen", 0}, CaseS{"pen side 1 2", 0}, CaseS{"pen down 1", 0}, CaseS{"pen move 1 99999999999", 0},
        CaseS{"op", 0}, CaseS{"set letters", 0}, CaseS{"set letters maybe", 0}, CaseS{"paste prefix", 0},
        CaseS{"copy type", 5}}) {
    EventScriptT script(1);
    unsigned long position = 99;
    EXPECT_FALSE(readEventScript(fromUtf8(one.text), script, position)) << one.text;
    EXPECT_EQ(position, one.position) << one.text;
    EXPECT_EQ(script.size(), 1u);
  }
}

TEST(ScriptRunner, ReportsEachStep) {
  FieldStageC stage;
  ScriptRunnerC runner(stage.refField());
  std::string trace;
  for (ScriptStepS const& step : toScript("char a key right key left shift")) {
    trace += toUtf8(writeReport(runner.runAndReport(step))) + "\n";
  }
  EXPECT_EQ(trace, "char a → [\"a‸\"]\nkey right → [\"a‸\"] refused\nkey left shift → [\"‸a⚑\"]\n");
}

TEST(ScriptRunner, PutsUpATree) {
  FieldStageC stage("[\"ab‸\"]");
  EXPECT_TRUE(stage.play("tree \"[\\\"x⚑\\\", sqrt<[\\\"y‸\\\"]>, \\\"\\\"]\""));
  EXPECT_EQ(stage.notation(), "[\"x⚑\", sqrt<[\"y‸\"]>, \"\"]");
  EXPECT_TRUE(stage.play("undo"));
  EXPECT_EQ(stage.notation(), "[\"ab‸\"]");
  EXPECT_FALSE(stage.play("tree \"[\\\"x\""));
  EXPECT_FALSE(stage.play("tree \"[\\\"x\\\", nothing<[\\\"\\\"]>, \\\"\\\"]\""));
  EXPECT_EQ(stage.notation(), "[\"ab‸\"]");
}

// What came from elsewhere is in the recording itself.
TEST(Recording, HoldsWhatWasPastedFromElsewhere) {
  FieldStageC other("[\"⚑x\", P[\"2\"], \"‸\"]");
  oss::PointerTC<ClipboardABC> const shared(new MemoryClipboardC);
  other.refField().setClipboard(shared);
  other.refField().run(COMMAND_COPY);

  FieldStageC stage("[\"a‸\"]");
  stage.refField().setClipboard(shared);
  EventScriptT script;
  stage.refField().record(&script);
  EXPECT_TRUE(stage.refField().run(COMMAND_PASTE));
  EXPECT_TRUE(stage.refField().run(COMMAND_SELECT_ALL));
  EXPECT_TRUE(stage.refField().run(COMMAND_CUT));
  EXPECT_TRUE(stage.refField().run(COMMAND_PASTE));
  stage.refField().record(nullptr);
  std::string const text = toUtf8(writeEventScript(script));
  EXPECT_EQ(text.compare(0, 13, "paste bytes \""), 0) << text;
  EXPECT_EQ(text.substr(text.find('\n')), "\ncommand select-all\ncut\npaste\n");
  FieldStageC replayed("[\"a‸\"]");
  EXPECT_TRUE(replayed.play(text));
  EXPECT_EQ(replayed.notation(), stage.notation());
}

}  // namespace
}  // namespace zolt::tests
