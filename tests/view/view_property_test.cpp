#include <gtest/gtest.h>

#include <iterator>
#include <random>

#include "tests/support/cases.h"
#include "tests/support/view_stage.h"
#include "zolt/oss/binary_stream.h"
#include "zolt/oss/binary_string_stream.h"

namespace zolt::tests {
namespace {

using namespace field;
using namespace math::ved;
using math::algexpr::AlgebraicExpressionC;
using oss::bytestring;

ScriptStepS textStep(ScriptWordE word, wstring text) {
  ScriptStepS step;
  step.word = word;
  step.text = std::move(text);
  return step;
}

ScriptStepS keyStep(unsigned long code, bool shift) {
  ScriptStepS step;
  step.word = SCRIPT_KEY;
  step.code = code;
  step.shift = shift;
  return step;
}

/// Does what a person might, with no sense at all.
class RandomPersonC {
 public:
  explicit RandomPersonC(unsigned seed) : random_(seed) {}

  unsigned pick(std::size_t count) { return static_cast<unsigned>(random_() % count); }

  ScriptStepS next() {
    static wstring const operators[] = {u"/",    u"^",        u"sqrt",  u"nthroot", u"abs", u"log",
                                        u"diff", u"integral", u"sum",   u"where",   u"sin", u"!",
                                        u"_deg", u"+",        u"error", u"and"};
    static wstring const texts[] = {u"a+b", u"(x", u"y)", u"1/2", u"f(x)", u"a#", u")(", u"x^2"};
    static wstring const expressions[] = {u"+(a,b)", u"/(1,^(x,2))", u"sqrt(-(x,1))", u"error(a,b)", u"f("};
    switch (pick(16)) {
      case 0:
      case 1:
      case 2:
      case 3: {
        static char16_t const characters[] = u"ab12(()) +-!/^*,#\u0394";
        ScriptStepS step;
        step.code = characters[pick(std::size(characters))];
        return step;
      }
      case 4:
      case 5:
        return keyStep(pick(2) ? KEY_LEFT : KEY_RIGHT, false);
      case 6:
      case 7:
        return keyStep(pick(2) ? KEY_LEFT : KEY_RIGHT, true);
      case 8:
        return keyStep(KEY_BACKSPACE, false);
      case 9:
        return keyStep(pick(30) ? KEY_DELETE : KEY_CLEAR, false);
      case 10:
        return textStep(SCRIPT_OPERATOR, operators[pick(std::size(operators))]);
      case 11:
        return textStep(SCRIPT_INSERT, texts[pick(std::size(texts))]);
      case 12:
        return pick(2) ? plainStep(SCRIPT_PASTE)
                       : textStep(SCRIPT_PASTE_PREFIX, expressions[pick(std::size(expressions))]);
      case 13:
        return plainStep(pick(2) ? SCRIPT_COPY : SCRIPT_CUT);
      case 14: {
        ScriptWordE const words[] = {SCRIPT_PEN_DOWN, SCRIPT_PEN_MOVE, SCRIPT_PEN_UP};
        ScriptStepS step = plainStep(words[pick(3)]);
        step.x = static_cast<long>(pick(200)) - 20;
        step.y = static_cast<long>(pick(80)) - 20;
        return step;
      }
      default:
        return plainStep(pick(3) ? SCRIPT_UNDO : SCRIPT_REDO);
    }
  }

 private:
  static ScriptStepS plainStep(ScriptWordE word) {
    ScriptStepS step;
    step.word = word;
    return step;
  }

  std::mt19937 random_;
};

/// What undo and redo have to bring back: the states around each edit, with caret and selection.
class HistoryModelC {
 public:
  void note(wstring before, wstring after) {
    steps_.resize(done_);
    steps_.push_back({std::move(before), std::move(after)});
    ++done_;
  }
  wstring const* undo() { return done_ > 0 ? &steps_[--done_].before : nullptr; }
  wstring const* redo() { return done_ < steps_.size() ? &steps_[done_++].after : nullptr; }

 private:
  struct StepS {
    wstring before;
    wstring after;
  };
  std::vector<StepS> steps_;
  std::size_t done_ = 0;
};

bytestring readAndWriteAgain(bytestring const& bytes) {
  oss::PointerTC<oss::BinaryStringInputStreamC> const held(new oss::BinaryStringInputStreamC(bytes));
  oss::PointerTC<oss::ObjectInputStreamABC> in(new oss::BinaryInputStreamC(held));
  Node4C root;
  return root.readObject(in) ? writeBytes(root) : bytestring();
}

class RandomSession {
 public:
  explicit RandomSession(unsigned seed, wstring const& prefix = {}) : person_(seed) {
    auto const expression = prefix.empty() ? nullptr : AlgebraicExpressionC::fromPrefixString(prefix);
    auto& view = stage_.refView();
    view.setAlgebraicExpression(expression, nullptr, 0, math::algexpr::NUMBER_FORMAT_AUTOMATIC);
    Node4C const& row = *view.crefRoot().child(0);
    unsigned long const middle = row.numChildren() / 4 * 2;
    view.selectRange(nullptr, 0, row.child(middle), 0);
    view.display(0, 0);
  }

  void run(int steps) {
    for (int i = 0; i < steps && !testing::Test::HasFailure(); ++i) {
      script_.push_back(person_.next());
      SCOPED_TRACE(toUtf8(writeEventScript(script_)));
      step(script_.back());
    }
    SCOPED_TRACE(toUtf8(writeEventScript(script_)));
    checkCopies();
    checkScript();
  }

 private:
  void step(ScriptStepS const& step) {
    wstring const before = stage_.notation();
    bytestring const bytes = stage_.bytes();
    bool const answer = stage_.refPlayer().play(step);
    wstring const after = stage_.notation();
    EXPECT_EQ(stage_.findFault(), "");
    if (step.word == SCRIPT_UNDO || step.word == SCRIPT_REDO) {
      wstring const* const expected = step.word == SCRIPT_UNDO ? model_.undo() : model_.redo();
      EXPECT_EQ(answer, expected != nullptr);
      EXPECT_EQ(toUtf8(after), toUtf8(expected ? *expected : before));
    } else if (stage_.bytes() != bytes) {
      model_.note(before, after);
    }
    stage_.refView().display(0, 0);
  }

  void checkCopies() {
    bytestring const bytes = stage_.bytes();
    EXPECT_EQ(readAndWriteAgain(bytes), bytes);
    ViewStageC other;
    EXPECT_TRUE(other.setUp(stage_.notation()));
    EXPECT_EQ(toUtf8(other.notation()), toUtf8(stage_.notation()));
  }

  void checkScript() {
    wstring const text = writeEventScript(script_);
    EventScriptT read;
    unsigned long position = 0;
    EXPECT_TRUE(readEventScript(text, read, position));
    EXPECT_EQ(writeEventScript(read), text);
  }

  ViewStageC stage_;
  RandomPersonC person_;
  EventScriptT script_;
  HistoryModelC model_;
};

TEST(ViewProperty, HoldsItsInvariantsWhateverHappens) {
  for (unsigned seed = 1; seed <= 250 && !HasFailure(); ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    RandomSession(seed).run(100);
  }
}

// Long rows are kept in stretches, which come and go where the session works.
TEST(ViewProperty, HoldsItsInvariantsInLongRows) {
  wstring prefix = u"x";
  for (int i = 0; i < 90; ++i) {
    prefix = u"+(+(" + prefix + u",/(a,b)),*(^(_quietpos(+(c,sqrt(d))),2),^(y,n)))";
  }
  for (unsigned seed = 1; seed <= 12 && !HasFailure(); ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    RandomSession(seed, prefix).run(60);
  }
}

TEST(ViewProperty, WholeTextsEndLikeTypedOnes) {
  wstring const starts[] = {u"[\"a\u2038b\"]",
                            u"[\"a\u2038bcdefghijklmnopqrstuvwxyz\"]",
                            u"[\"a\u2691a+\u2038bcdefghijklmnopqrstuvwxyz\", (, \"c\", AC, \"\"]",
                            u"[\"\u2038\", AO, \"a\", ), \"\"]",
                            u"[\"a\", (, \"b\", AC, \"\u2038\"]",
                            u"[\"a\", (, \"\", (, \"b\u2038\", AC, \"\", AC, \"\"]",
                            u"[\"x\", P[\"\u2691a\u2038\"], \"\"]",
                            u"[\"\", AO, \"\u2038\", AO, \"\", ), \"\", ), \"\"]"};
  std::mt19937 random(5);
  for (int round = 0; round < 2000 && !HasFailure(); ++round) {
    wstring text;
    for (auto size = 2 + random() % (round % 4 == 0 ? 60 : 9); size > 0; --size)
      text += u"ab(()) +!/^d,"[random() % 13];
    wstring const& start = starts[random() % std::size(starts)];
    SCOPED_TRACE(toUtf8(start + u" " + text));
    ViewStageC typed;
    ViewStageC inserted;
    ASSERT_TRUE(typed.setUp(start) && inserted.setUp(start));
    for (char16_t c : text) {
      typed.refView().addEvent(EVENT_CHAR, c, false, false, false, 0, 0);
      typed.refView().display(0, 0);
    }
    ASSERT_TRUE(inserted.refView().insertText(text));
    EXPECT_EQ(toUtf8(inserted.notation()), toUtf8(typed.notation()));
    EXPECT_EQ(inserted.findFault(), "");
  }
}

}  // namespace
}  // namespace zolt::tests
