#include <gtest/gtest.h>

#include <iterator>
#include <random>

#include "tests/field/field_stage.h"

namespace zolt::tests {
namespace {

using namespace field;

/// Does what a person might, with no sense at all.
class RandomPersonC {
 public:
  explicit RandomPersonC(unsigned seed) : random_(seed) {}

  ScriptStepS next() {
    static wstring const texts[] = {u"sqrt(", u"log(x,2)", u"int(0", u"alpha+", u"pi",  u"2x",
                                    u"<=",    u"**",       u"|x|",   u"x²",     u"a/b", u"(a",
                                    u"b)",    u"f(x,",     u" and ", u"ê",      u"𝑥",   u"#"};
    static wstring const pasted[] = {u"(a+b)/2", u"x^2+", u"sqrt(2)", u"a+", u"1/(", u"sin", u""};
    static wstring const operators[] = {u"/",   u"^",   u"sqrt", u"nthroot", u"integral",
                                        u"sum", u"sin", u"and",  u"_deg"};
    ScriptStepS step;
    switch (pick(14)) {
      case 0:
      case 1:
      case 2: {
        static char16_t const characters[] = u"ab12()()^/+-*=,, |<>!.²";
        step.code = characters[pick(std::size(characters) - 1)];
        return step;
      }
      case 3:
        return withText(pick(2) ? SCRIPT_TYPE : SCRIPT_INSERT, texts[pick(std::size(texts))]);
      case 4:
        return withText(SCRIPT_PASTE_TEXT, pasted[pick(std::size(pasted))]);
      case 5:
        return withText(SCRIPT_OPERATOR, operators[pick(std::size(operators))]);
      case 6: {
        static ScriptWordE const words[] = {SCRIPT_PEN_DOWN, SCRIPT_PEN_MOVE, SCRIPT_PEN_UP};
        step.word = words[pick(3)];
        if (step.word == SCRIPT_PEN_UP) return step;
        step.x = static_cast<long>(pick(80)) - 10;
        step.y = static_cast<long>(pick(50)) - 10;
        if (step.word == SCRIPT_PEN_MOVE) return step;
        step.clicks = 1 + pick(4);
        step.shift = pick(4) == 0;
        return step;
      }
      case 7: {
        static ScriptWordE const words[] = {SCRIPT_MOVE, SCRIPT_SELECT, SCRIPT_ASK, SCRIPT_COMPLETE};
        step.word = words[pick(4)];
        step.places.push_back(place());
        if (step.word == SCRIPT_SELECT) step.places.push_back(place());
        return step;
      }
      default:
        return withText(SCRIPT_COMMAND, commands()[pick(COMMAND_COUNT)].name);
    }
  }

  ScriptPlaceS place() {
    ScriptPlaceS place{{0, pick(3)}, pick(4)};
    if (pick(3) == 0) place.path.insert(place.path.end(), {pick(2), 0});
    return place;
  }

  unsigned pick(std::size_t count) { return static_cast<unsigned>(random_() % count); }

 private:
  static ScriptStepS withText(ScriptWordE word, wstring text) {
    ScriptStepS step;
    step.word = word;
    step.text = std::move(text);
    return step;
  }

  std::mt19937 random_;
};

/// One session: the field after each step, by notation.
void runSession(unsigned seed) {
  RandomPersonC person(seed);
  FieldStageC stage;
  ScriptRunnerC runner(stage.refField());
  EventScriptT recorded;
  stage.refField().record(&recorded);
  for (int i = 0; i < 60; ++i) {
    ScriptStepS const step = person.next();
    std::string const before = stage.notation();
    bool const taken = runner.run(step);
    SCOPED_TRACE(toUtf8(writeScriptStep(step)) + " on " + before);
    ASSERT_EQ(stage.findFault(), "");
    // A run of characters may have been taken in part.
    bool const whole = step.word != SCRIPT_TYPE;
    if (!taken && whole) {
      ASSERT_EQ(stage.notation(), before);
    }
    if (step.word == SCRIPT_COMMAND) stage.refField().refView().display(0, 0);
  }
  stage.refField().record(nullptr);

  FieldStageC replayed;
  replayed.play(toUtf8(writeEventScript(recorded)));
  ASSERT_EQ(replayed.notation(), stage.notation()) << toUtf8(writeEventScript(recorded));

  FormulaFieldC& field = stage.refField();
  while (field.run(COMMAND_REDO)) {
  }
  std::vector<std::string> trees{stage.tree()};
  while (field.run(COMMAND_UNDO)) {
    ASSERT_EQ(stage.findFault(), "");
    trees.push_back(stage.tree());
  }
  ASSERT_EQ(stage.tree(), "[\"\"]");
  for (std::size_t i = trees.size() - 1; i-- > 0;) {
    ASSERT_TRUE(field.run(COMMAND_REDO));
    ASSERT_EQ(stage.tree(), trees[i]);
  }
}

TEST(FieldProperties, HoldInRandomSessions) {
  for (unsigned seed = 1; seed <= 300 && !testing::Test::HasFailure(); ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    runSession(seed);
  }
}

}  // namespace
}  // namespace zolt::tests
