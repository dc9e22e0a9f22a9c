// How the work for one act of a person, or one call of a host, grows with the formula. Steps are counted, no
// clock is read.

#include <gtest/gtest.h>

#include "fuzzing/growth.h"
#include "fuzzing/step_count.h"
#include "tests/support/cases.h"
#include "tests/support/operators.h"
#include "zolt/catalogue_extended/extended_operators.h"
#include "zolt/script/script_runner.h"
#include "zolt/surfaces/recording/recording_graphics.h"

namespace zolt::tests {
namespace {

using namespace field;
using surfaces::RecordingGraphicsC;

constexpr unsigned long small_size = 1000;
constexpr unsigned long large_size = 10000;

// Every operator nested in every argument of itself and of another, and rows of many items, through all that
// is done to formulas.
TEST(GrowthOfPatterns, IsInProportion) {
  for (fuzz::BytesT const& seed : fuzz::growthSeeds()) {
    if (!fuzz::showsTree(seed)) continue;
    EXPECT_EQ(fuzz::checkGrowthFrom(1ul << 12, seed.data(), seed.size()), "")
        << std::string(seed.begin(), seed.end());
  }
}

/// A formula of any size, in tree notation with the caret in its middle.
struct ShapeS {
  char const* name;
  wstring start, before, middle, after, end;

  wstring make(unsigned long pieces) const {
    return u"[" + start + nest(pieces, before, middle, after) + end + u"]";
  }
};

ShapeS const longRows[] = {
    {"fractions", u"", u"\"+\", /<[\"a\"] ; [\"b\"]>, ", u"\"+\u2038\"", u", /<[\"a\"] ; [\"b\"]>, \"+\"",
     u", sqrt<[\"1\"]>, \"\""},
    {"exponents", u"", u"\"x\", P[\"2\"], ", u"\"x\u2038x\"", u", P[\"2\"], \"x\"", u""},
    {"names", u"", u"\"alpha 2x\", sqrt<[\"y\"]>, ", u"\"x\u2038y\"", u", sqrt<[\"y\"]>, \"alpha 2x\"", u""},
    {"brackets", u"", u"\"+\", (, \"a\", ), ", u"\"+\u2038\"", u", (, \"a\", ), \"+\"",
     u", (, \"a\", ), \"\""},
    {"beside an open bracket", u"\"\", sqrt<[\"\", (, \"a\", AC, \"\"]>, ", u"\"+\", sqrt<[\"y\"]>, ",
     u"\"+\u2038\"", u", sqrt<[\"y\"]>, \"+\"", u", sqrt<[\"y\"]>, \"\""},
};

ShapeS const nestedRows[] = {
    {"roots", u"", u"\"a+\", sqrt<[", u"\"x\u2038\"", u"]>, \"\"", u""},
    {"fractions", u"", u"\"\", /<[\"a\"] ; [", u"\"x\u2038\"", u"]>, \"\"", u""},
    {"exponents", u"", u"\"x\", P[", u"\"x\u2038\"", u"], \"\"", u""},
};

wstring toHex(char16_t c) {
  char const* const digits = "0123456789ABCDEF";
  return {static_cast<char16_t>(digits[c / 16]), static_cast<char16_t>(digits[c % 16])};
}

/// A field with a formula in it, which measures what acts cost there.
class SubjectC {
 public:
  explicit SubjectC(wstring const& notation)
      : graphics_((standardOperators(), new RecordingGraphicsC(RecordingGraphicsC::LOG_NOTHING))),
        field_(graphics_),
        runner_(field_) {
    EXPECT_TRUE(field_.setNotation(notation));
    notation_ = field_.writeNotation();
    paint();
  }

  /// The steps that a script takes after another one, with layout and the question what has changed.
  unsigned long cost(wstring const& before, wstring const& script) {
    play(before);
    EventScriptT const steps = read(script);
    unsigned long const cost = countIn([&] { runner_.run(steps); });
    paint();
    // The field returns to its beginning. Dropping the steps of earlier acts is no work of the next one.
    if (field_.writeNotation() != notation_) {
      field_.setExpression(nullptr);
      EXPECT_TRUE(field_.setNotation(notation_));
      paint();
    }
    return cost;
  }

  /// How many texts were measured for the last cost.
  unsigned long countMeasured() const { return measured_; }

  unsigned long costOfWhatIsEnabled() {
    return countIn([this] {
      for (CommandS const& command : commands()) field_.isEnabled(command.command);
    });
  }

 private:
  template <class ActT>
  unsigned long countIn(ActT const& act) {
    graphics_->resetCounts();
    unsigned long const start = fuzz::countedSteps;
    act();
    field_.takeChange();
    field_.refView().getExpressionSize();
    measured_ = graphics_->getMeasureCount();
    return fuzz::countedSteps - start;
  }
  static EventScriptT read(wstring const& text) {
    EventScriptT script;
    unsigned long position = 0;
    EXPECT_TRUE(script::readEventScript(text, script, position)) << toUtf8(text);
    return script;
  }
  void play(wstring const& script) {
    for (ScriptStepS const& step : read(script)) {
      runner_.run(step);
      paint();
    }
  }
  void paint() {
    field_.takeChange();
    field_.refView().display(0, 0);
    field_.getCaretRectangle();
    field_.getSelectionRectangles();
  }

  oss::PointerTC<RecordingGraphicsC> graphics_;
  FormulaFieldC field_;
  script::ScriptRunnerC runner_;
  wstring notation_;
  unsigned long measured_ = 0;
};

/// A matrix with so many rows and columns, the caret in its middle.
wstring makeMatrix(unsigned long size) {
  wstring cells;
  for (unsigned long i = 0; i < size * size; ++i) {
    cells +=
        wstring(i > 0 ? u" ; " : u"") + (i == size * size / 2 + size / 2 ? u"[\"12\u2038\"]" : u"[\"123\"]");
  }
  return u"[\"\", matrix " + fromUtf8(std::to_string(size)) + u"<" + cells + u">, \"\"]";
}

// A hundred times as much formula takes a key at most five times the work: only what it changed is looked at.
TEST(GrowthOfAKey, FollowsTheEdit) {
  for (ShapeS const& shape : longRows) {
    // A leaf or two for each item.
    unsigned long const pieces = shape.name == std::string("brackets") ? 60 : 250;
    SubjectC small(shape.make(pieces));
    SubjectC largest(shape.make(100 * pieces));
    for (wstring const script : {u"char x", u"key backspace", u"char +", u"op sqrt", u"key left", u"undo"}) {
      // The first item that comes into a row makes room there for those that follow.
      for (wstring const before : {u"op sqrt key right char y", u"char y"}) {
        unsigned long const least = small.cost(before, script);
        unsigned long const growth = script == u"op sqrt" && before == u"char y" ? 6 : 5;
        EXPECT_LE(largest.cost(before, script), growth * least)
            << shape.name << ": " << toUtf8(script) << ", from " << least << " steps";
        EXPECT_EQ(largest.countMeasured(), small.countMeasured()) << shape.name << ": " << toUtf8(script);
      }
    }
  }
}

// Ten times as many keys before it make a key twice the work at most: what was typed leaves nothing that
// slows them down.
TEST(GrowthOfAKey, DoesNotDependOnHowManyCameBefore) {
  for (wstring const keys : {u"x", u"!", u"-", u"x+", u"(x)!", u"x "}) {
    auto const costAfter = [&](unsigned long count) {
      SubjectC subject(u"[\"\u2038\"]");
      wstring typed;
      for (unsigned long i = 0; i < count; ++i) typed += u"char U+" + toHex(keys[i % keys.size()]) + u" ";
      return subject.cost(typed, u"char x");
    };
    unsigned long const least = costAfter(small_size);
    EXPECT_LE(costAfter(large_size), 2 * least + 2000) << toUtf8(keys) << ", from " << least << " steps";
  }
}

// Where the caret goes next does not depend on what is far away.
TEST(GrowthOfACaretMove, IsNone) {
  for (ShapeS const& shape : longRows) {
    SubjectC large(shape.make(large_size / 2));
    large.cost(u"", u"command left");  // The first command of a process fills the table of commands.
    for (wstring const move : {u"left", u"right", u"up", u"down", u"word-left", u"word-right", u"home",
                               u"end", u"select-left", u"select-right", u"select-end", u"select-all"}) {
      EXPECT_LT(large.cost(u"", u"command " + move), 3000u) << shape.name << ": " << toUtf8(move);
    }
  }
}

// Menus ask after each key. Ten times as many levels around the caret take ten times the work.
TEST(GrowthOfWhatIsEnabled, FollowsTheDepth) {
  for (ShapeS const& shape : nestedRows) {
    unsigned long const least = SubjectC(shape.make(95)).costOfWhatIsEnabled();
    EXPECT_LE(SubjectC(shape.make(950)).costOfWhatIsEnabled(), 12 * least) << shape.name;
  }
}

// The last test, since the operators stay registered: 81 times as many cells take a key, and an act on rows
// or columns, about as many times the work as there are more rows and columns.
TEST(GrowthOfATable, FollowsRowsAndColumns) {
  catalogue_extended::registerExtendedOperators(standardOperators());
  SubjectC small(makeMatrix(10));
  SubjectC large(makeMatrix(90));
  for (wstring const script :
       {u"char x", u"char 3", u"type \"3456\"", u"key backspace", u"command down", u"command next-slot",
        u"command select-right", u"undo", u"command row-above", u"command row-below", u"command column-left",
        u"command column-right", u"command delete-rows", u"command delete-columns", u"command rows-up",
        u"command rows-down", u"command columns-left", u"command columns-right",
        u"char 4 pen down 40 40 pen up"}) {
    for (wstring const after : {u"", u" undo"}) {
      if (script == u"undo" && !after.empty()) continue;  // it would take the table away
      // The first click ever measures everything.
      wstring const before = script.find(u"pen") < script.size() ? u"pen down 9 9 pen up char y" : u"char y";
      unsigned long const least = small.cost(before, script + after);
      EXPECT_LE(large.cost(before, script + after), 12 * least)
          << toUtf8(script + after) << ", from " << least << " steps";
    }
  }
}

}  // namespace
}  // namespace zolt::tests
