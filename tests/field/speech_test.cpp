#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <map>
#include <set>
#include <sstream>
#include <utility>

#include "tests/exchange/random_notation.h"
#include "tests/formula/random_formula.h"
#include "tests/support/stage.h"
#include "zolt/exchange/detail/speech_tables.h"
#include "zolt/exchange/plain_text.h"
#include "zolt/field/caret_speech.h"
#include "zolt/field/readable_text.h"
#include "zolt/ved/operators/operator.h"

namespace zolt::tests {
namespace {

using namespace exchange;
using namespace field;

/// Takes the words before a case that say how to speak.
SpeechStyleS takeStyle(std::string& line) {
  SpeechStyleS style;
  std::map<std::string, std::function<void()>> const words = {
      {"german ", [&] { style.language = SPEECH_GERMAN; }},
      {"brief ", [&] { style.verbosity = SPEECH_BRIEF; }},
      {"full ", [&] { style.verbosity = SPEECH_FULL; }}};
  for (auto const& [word, apply] : words) {
    if (line.compare(0, word.size(), word) != 0) continue;
    line.erase(0, word.size());
    apply();
  }
  return style;
}

TEST(Speech, SaysWhatIsThere) {
  for (CaseS one : readCases(ZOLT_TEST_DATA "/spoken.cases")) {
    SpeechStyleS const style = takeStyle(one.input);
    StageC stage(one.input);
    ReadableTextS const words = makeReadableText(stage.refView(), style);
    EXPECT_EQ(toUtf8(words.text), one.expected) << one.where;
    for (ReadableTextS::MarkS const& mark : words.marks) {
      EXPECT_EQ(words.offsetOf(mark.place), mark.offset) << one.where;
      EXPECT_EQ(words.offsetOf(words.placeAt(mark.offset)), mark.offset) << one.where;
    }
  }
}

TEST(Speech, TellsWhatAPersonDoes) {
  for (CaseS one : readCases(ZOLT_TEST_DATA "/heard.cases")) {
    SpeechStyleS const style = takeStyle(one.input);
    std::size_t const bar = one.input.find(" | ");
    StageC stage(one.input.substr(0, bar));
    EventScriptT const script = toScript(one.input.substr(bar + 3));
    CaretSpeechC speech(style);
    stage.play(EventScriptT(script.begin(), script.end() - 1));
    speech.listen(stage.refView());
    std::string const before = stage.tree();
    stage.play(EventScriptT(script.end() - 1, script.end()));
    wstring heard;
    if (stage.tree() == before) {
      heard = speech.tellMove(stage.refView()).said;
    } else {
      SpokenEditS const edit = speech.tellEdit(stage.refView());
      heard = edit.said + (edit.isPlace ? u" [place]" : u"");
    }
    EXPECT_EQ(toUtf8(heard), one.expected) << one.where;
  }
}

// Words are found by their operators' names, so a row that is missing or misspelt in one language would be
// silence or English.
TEST(Speech, HasAllWordsInAllLanguages) {
  std::map<std::u16string_view, SpokenFormS> english;
  for (SpokenFormS const& form : exchange::detail::makeEnglish().forms) {
    EXPECT_TRUE(english.emplace(form.name, form).second) << toUtf8(wstring(form.name));
  }
  std::set<std::u16string_view> german;
  auto const rows = [](std::u16string_view frame) { return std::count(frame.begin(), frame.end(), u'#'); };
  for (SpokenFormS const& form : exchange::detail::makeGerman().forms) {
    SCOPED_TRACE(toUtf8(wstring(form.name)));
    EXPECT_TRUE(german.insert(form.name).second);
    SpokenFormS const& other = english[form.name];
    EXPECT_EQ(rows(form.words), rows(other.words));
    for (SpokenFormS const* one : {&form, &std::as_const(other)}) {
      EXPECT_TRUE(one->brief.empty() || rows(one->brief) == rows(one->words));
      EXPECT_TRUE(one->small.empty() || rows(one->small) == rows(one->words));
      EXPECT_LE(std::count(one->nouns.begin(), one->nouns.end(), u','), rows(other.words));
    }
  }
  EXPECT_EQ(german.size(), english.size());
  for (math::ved::OperatorBC const* const op : operatorsOfExpressions()) {
    wstring const name = op->getName();
    if (name[0] == u'_' || name == u"d") continue;  // inner names; the letter of a derivative
    EXPECT_TRUE(german.count(name)) << toUtf8(name);
  }
}

/// What is said for an expression must lead back to what is shown, so two that sound the same look the same.
void expectDifferent(std::vector<ExpressionT> const& expressions) {
  for (auto const language : {SPEECH_ENGLISH, SPEECH_GERMAN}) {
    std::map<wstring, std::string> shown;
    for (ExpressionT const& expression : expressions) {
      wstring const words = toSpeech(expression, {language, SPEECH_FULL});
      std::string const tree = describe(*showTree(expression));
      EXPECT_EQ(shown.emplace(words, tree).first->second, tree) << toUtf8(words);
    }
  }
}

TEST(Speech, NeverSoundsTheSameForDifferentFormulas) {
  std::vector<ExpressionT> expressions;
  for (unsigned seed = 0; seed < 6000; ++seed) {
    expressions.push_back(RandomExpressionC(seed, RandomExpressionC::WELL_MADE).make(1 + seed % 9));
  }
  std::istringstream near(
      "a+b/c (a+b)/c a/(b+c) a/b+c (a/b)/c a/(b/c) x^(n+1) x^n+1 x^(n+1)*2 x^n^2 (x^n)^2 sqrt(a+b) sqrt(a)+b "
      "sqrt(sqrt(a))+b sqrt(sqrt(a)+b) sin(x)+1 sin(x+1) f*x f(x,y) f(x*y) f(x)*y -x^2 (-x)^2 -(x^2)! "
      "(-x)! x_1 x*1 x1 X x_X plus x+plus Plus theta θ Θ a_b*c a_(b) nthroot(x,3) nthroot(3,x) 3*sqrt(x) "
      "int(0,1,x,x) int(0,1,x^2,x)+1 int(0,1,x^2+1,x) sum(k,1,n,k)+1 sum(k,1,n,k+1) 1.5 1*5 15 1.5e3 abs(x)! "
      "abs(x!) diff(x,y) diff(y,x) where(x,y,1) 30° o^30 30^o squared x^2 x*squared max*A mAx Max max");
  for (std::string text; near >> text;) {
    expressions.push_back(fromPlainText(fromUtf8(text), nullptr));
    ASSERT_TRUE(expressions.back()) << text;
  }
  expectDifferent(expressions);
}

// Tables, intervals, sides of limits and their like, which are shown where the extended catalogue is.
TEST(Speech, NeverSoundsTheSameForDifferentConstructs) {
  RandomNotationC random(22);
  std::vector<ExpressionT> expressions;
  for (unsigned i = 0; i < 4000; ++i)
    expressions.push_back(new math::algexpr::AlgebraicExpressionC(random.make(1 + i % 9), nullptr));
  expectDifferent(expressions);
}

}  // namespace
}  // namespace zolt::tests
