// How the work for one act of a person, or one call of a host, grows with the formula. Steps are counted, no
// clock is read.

#include <gtest/gtest.h>

#include <algorithm>
#include <iterator>
#include <memory>

#include "fuzzing/growth.h"
#include "fuzzing/step_count.h"
#include "tests/support/cases.h"
#include "tests/support/operators.h"
#include "zolt/exchange/plain_text.h"
#include "zolt/script/script_runner.h"
#include "zolt/surfaces/recording/recording_graphics.h"
#include "zolt/ved/tree/tree_notation.h"

namespace zolt::tests {
namespace {

using namespace field;
using namespace script;
using namespace math::ved;
using math::algexpr::AlgebraicExpressionC;
using surfaces::RecordingGraphicsC;

constexpr unsigned long small_size = 1000;
constexpr unsigned long large_size = 10000;

// Ten times as much formula may take twelve times the work, and a logarithm: sorting counts as linear,
// squares do not.
constexpr unsigned long most_growth = 14;
// Work that does not grow is not examined closely.
constexpr unsigned long negligible_steps = 20000;

// Every operator nested in every argument of itself and of another, through all that is done to formulas.
TEST(GrowthOfPatterns, IsInProportion) {
  for (fuzz::BytesT const& seed : fuzz::growthSeeds()) {
    if (!fuzz::showsTree(seed)) continue;
    EXPECT_EQ(fuzz::checkGrowthFrom(1ul << 12, seed.data(), seed.size()), "")
        << std::string(seed.begin(), seed.end());
  }
}

/// A formula of any size, in tree notation with the caret in its middle: of so many pieces before it and as
/// many after it as there are `pieces` in 100 of its size.
struct ShapeS {
  char const* name;
  unsigned long pieces;
  wstring start, before, middle, after, end;

  wstring make(unsigned long size) const {
    unsigned long const count = size * pieces / 100;
    return u"[" + start + repeat(count, before) + middle + repeat(count, after) + end + u"]";
  }
};

ShapeS const shapes[] = {
    {"text", 25, u"\"", u"a+", u"\u2038", u"b+", u"c\""},
    {"signs", 50, u"\"", u"\u2212", u"\u2038", u"\u2212", u"x\""},
    {"fractions", 50, u"", u"\"+\", /<[\"a\"] ; [\"b\"]>, ", u"\"+\u2038\"", u", /<[\"a\"] ; [\"b\"]>, \"+\"",
     u", sqrt<[\"1\"]>, \"\""},
    {"exponents", 50, u"", u"\"x\", P[\"2\"], ", u"\"x\u2038x\"", u", P[\"2\"], \"x\"", u""},
    {"names", 50, u"", u"\"alpha 2x\", sqrt<[\"y\"]>, ", u"\"x\u2038y\"", u", sqrt<[\"y\"]>, \"alpha 2x\"",
     u""},
    {"brackets", 12, u"", u"\"+\", (, \"a\", ), ", u"\"+\u2038\"", u", (, \"a\", ), \"+\"",
     u", (, \"a\", ), \"\""},
    {"open brackets", 25, u"", u"\"\", (, ", u"\"a\u2038b\"", u", AC, \"\"", u""},
    {"factorials", 25, u"", u"\"\", (, ", u"\"a\u2038b\"", u", ), \"!\"", u""},
    {"calls", 25, u"", u"\"f\", (, ", u"\"a\u2038b\"", u", ), \"\"", u""},
    {"exponents on groups", 16, u"", u"\"\", (, ", u"\"a\u2038b\"", u", ), \"\", P[\"2\"], \"\"", u""},
    {"beside an open bracket", 50, u"\"\", sqrt<[\"\", (, \"a\", AC, \"\"]>, ", u"\"+\", sqrt<[\"y\"]>, ",
     u"\"+\u2038\"", u", sqrt<[\"y\"]>, \"+\"", u", sqrt<[\"y\"]>, \"\""},
};

wstring toHex(char16_t c) {
  char const* const digits = "0123456789ABCDEF";
  return {static_cast<char16_t>(digits[c / 16]), static_cast<char16_t>(digits[c % 16])};
}

/// Something done to a field: a script, played as a person would, and painted after each step.
struct ActS {
  wstring before;  ///< to get ready; its work does not count
  wstring script;
};

/// The most frequent acts.
std::vector<ActS> mainActs() {
  return {{u"", u"char x"},
          {u"", u"key backspace"},
          {u"", u"char ( char ("},
          {u"command select-formula-end copy", u"paste"},
          {u"command select-formula-end", u"cut"}};
}

std::vector<ActS> allActs() {
  std::vector<ActS> acts = mainActs();
  for (wstring const place : {u"", u"command formula-start", u"command formula-end"}) {
    for (wstring const script :
         {u"char +", u"char )", u"char !", u"op sqrt", u"op /", u"op ^", u"op sin", u"key backspace",
          u"paste prefix \"+(a,b)\"", u"insert \"((x+1)\"", u"char U+0020"}) {
      acts.push_back({place, script});
    }
  }
  for (CommandS const& command : commands()) acts.push_back({u"", u"command " + command.name});
  for (wstring const selection : {u"command select-all", u"command select-formula-end"}) {
    for (wstring const script : {u"char x", u"key backspace", u"op sqrt", u"op /", u"op ^", u"char (",
                                 u"copy", u"op !", u"command grow-selection"}) {
      acts.push_back({selection, script});
    }
  }
  acts.push_back({u"command select-all copy command formula-end", u"paste"});
  acts.push_back({u"", u"pen down 50 3 pen move 200000 5 pen up pen down 50 3 x2 pen up"});
  acts.push_back({u"char x", u"undo"});
  acts.push_back({u"char x undo", u"redo"});
  return acts;
}

EventScriptT toScript(wstring const& text) {
  EventScriptT script;
  unsigned long position = 0;
  EXPECT_TRUE(readEventScript(text, script, position)) << toUtf8(text);
  return script;
}

/// A call of a host.
struct CallS {
  char const* name;
  void (*call)(FormulaFieldC& field);
};

constexpr CallS calls[] = {
    {"to an expression or its fault",
     [](FormulaFieldC& field) {
       FormulaErrorS error;
       field.getExpression(&error);
     }},
    {"to plain text and back",
     [](FormulaFieldC& field) {
       auto const expression = field.getExpression();
       if (!expression) return;
       [[maybe_unused]] auto const read =
           exchange::fromPlainText(exchange::toPlainText(*expression), nullptr);
       exchange::toPlainText(*expression, exchange::PLAIN_TEXT_READABLE);
     }},
    {"shown again", [](FormulaFieldC& field) { field.setExpression(field.getExpression()); }},
    {"to notation and back", [](FormulaFieldC& field) { (void)field.setNotation(field.writeNotation()); }},
    {"as much text put in",
     [](FormulaFieldC& field) {
       field.refView().insertText(repeat(field.writeNotation().size() / 8, u"(b)+"));
     }},
    {"copied out",
     [](FormulaFieldC& field) {
       field.run(COMMAND_SELECT_ALL);
       field.copy();
     }},
};

struct CostS {
  unsigned long act = 0;    ///< with the layout that follows, and the question what has changed
  unsigned long paint = 0;  ///< of what a host does after it
};

/// A field with a shape of some size in it, which measures what acts cost there.
class SubjectC {
 public:
  SubjectC(ShapeS const& shape, unsigned long size)
      : field_((standardOperators(), new RecordingGraphicsC(RecordingGraphicsC::LOG_NOTHING))),
        runner_(field_) {
    EXPECT_TRUE(field_.setNotation(shape.make(size))) << shape.name;
    notation_ = field_.writeNotation();
    paint();
  }

  CostS cost(ActS const& act) {
    play(act.before);
    EventScriptT const script = toScript(act.script);
    return cost([&](FormulaFieldC&) { runner_.run(script); });
  }

  template <class CallT>
  CostS cost(CallT const& call) {
    CostS cost;
    unsigned long const start = fuzz::countedSteps;
    call(field_);
    field_.takeChange();
    field_.refView().getExpressionSize();
    cost.act = fuzz::countedSteps - start;
    paint();
    cost.paint = fuzz::countedSteps - start - cost.act;
    // The field returns to its beginning. Dropping the steps of earlier acts is no work of the next one.
    if (field_.writeNotation() != notation_) {
      field_.setExpression(nullptr);
      EXPECT_TRUE(field_.setNotation(notation_));
      paint();
    }
    return cost;
  }

 private:
  void play(wstring const& script) {
    for (ScriptStepS const& step : toScript(script)) {
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

  FormulaFieldC field_;
  ScriptRunnerC runner_;
  wstring notation_;
};

bool isLinear(unsigned long small, unsigned long large) {
  return large <= most_growth * small + negligible_steps;
}

void expectGrowth(std::string const& what, CostS const& small, CostS const& large) {
  EXPECT_TRUE(isLinear(small.act, large.act)) << what << ": from " << small.act << " to " << large.act;
  EXPECT_TRUE(isLinear(small.paint, large.paint))
      << what << ", painting: from " << small.paint << " to " << large.paint;
}

class Growth : public testing::TestWithParam<ShapeS> {
 protected:
  static void expectLinear(unsigned long size, std::vector<ActS> const& acts) {
    SubjectC small(GetParam(), size);
    SubjectC large(GetParam(), 10 * size);
    for (ActS const& act : acts)
      expectGrowth(toUtf8(act.before + u" " + act.script), small.cost(act), large.cost(act));
    for (CallS const& call : calls) expectGrowth(call.name, small.cost(call.call), large.cost(call.call));
  }
};

TEST_P(Growth, OfEveryAct) { expectLinear(400, allActs()); }

TEST_P(Growth, OfMainActsInLargeFormulas) { expectLinear(4000, mainActs()); }

// A hundred times as much formula takes a key at most five times the work: only what it changed is looked at.
TEST(GrowthOfAKey, FollowsTheEdit) {
  for (char const* const name : {"fractions", "exponents", "brackets", "names", "beside an open bracket"}) {
    auto const shape = std::find_if(std::begin(shapes), std::end(shapes),
                                    [&](ShapeS const& one) { return one.name == std::string(name); });
    ASSERT_NE(shape, std::end(shapes));
    // A leaf or two for each item.
    SubjectC small(*shape, small_size / 2);
    SubjectC largest(*shape, 50 * small_size);
    for (wstring const script : {u"char x", u"key backspace", u"char +", u"op sqrt", u"key left", u"undo"}) {
      // The first item that comes into a row makes room there for those that follow.
      for (wstring const before : {u"op sqrt key right char y", u"char y"}) {
        ActS const act{before, script};
        unsigned long const least = small.cost(act).act;
        unsigned long const most = largest.cost(act).act;
        unsigned long const growth = script == u"op sqrt" && before == u"char y" ? 6 : 5;
        EXPECT_LE(most, growth * least) << name << ": " << toUtf8(script) << ", from " << least << " steps";
      }
    }
  }
}

// Ten times as many keys before it make a key twice the work at most: what was typed leaves nothing that
// slows them down.
TEST(GrowthOfAKey, DoesNotDependOnHowManyCameBefore) {
  for (wstring const keys : {u"x", u"!", u"-", u"x+", u"(x)!", u"x "}) {
    auto const costAfter = [&](unsigned long count) {
      SubjectC subject({"nothing", 0, {}, {}, u"\"\u2038\"", {}, {}}, 0);
      wstring typed;
      for (unsigned long i = 0; i < count; ++i) typed += u"char U+" + toHex(keys[i % keys.size()]) + u" ";
      return subject.cost(ActS{typed, u"char x"}).act;
    };
    unsigned long const least = costAfter(small_size);
    unsigned long const most = costAfter(large_size);
    EXPECT_LE(most, 2 * least + 2000) << toUtf8(keys) << ", from " << least << " steps";
  }
}

// Where the caret goes next does not depend on what is far away.
TEST_P(Growth, OfNoCaretMove) {
  SubjectC large(GetParam(), large_size);
  large.cost(ActS{u"", u"command left"});  // The first command of a process fills the table of commands.
  for (wstring const script : {u"left", u"right", u"up", u"down", u"word-left", u"word-right", u"home",
                               u"end", u"select-left", u"select-right", u"select-end", u"select-all"}) {
    EXPECT_LT(large.cost(ActS{u"", u"command " + script}).act, 3000u) << toUtf8(script);
  }
}

INSTANTIATE_TEST_SUITE_P(Shapes, Growth, testing::ValuesIn(shapes), [](auto const& one) {
  std::string name = one.param.name;
  for (char& c : name) c = c == ' ' ? '_' : c;
  return name;
});

}  // namespace
}  // namespace zolt::tests
