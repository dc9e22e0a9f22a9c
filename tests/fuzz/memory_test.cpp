// How much memory hostile input can make the component ask for: a multiple of its size that does not grow
// with it (docs/reliability.md states the multiples). It also checks the state after large acts that run
// out of memory; fuzzing/fuzz_memory.cpp tries small ones.

#include <gtest/gtest.h>

#include <array>
#include <functional>
#include <new>
#include <tuple>

#include "fuzzing/allocations.h"
#include "fuzzing/trip.h"
#include "zolt/algexpr/cas_session.h"
#include "zolt/exchange/latex.h"
#ifdef ZOLT_HAS_MATHML_TEXT
#include "zolt/mathml/text/mathml_text.h"
#endif
#include "zolt/exchange/plain_text.h"
#include "zolt/field/formula_field.h"
#include "zolt/mathjson/mathjson.h"
#include "zolt/script/event_script.h"
#include "zolt/sheet/sheet_text.h"
#include "zolt/surfaces/recording/recording_graphics.h"
#include "zolt/ved/convert/error_selection.h"
#include "zolt/ved/operators/operator_list_repository.h"
#include "zolt/ved/tree/tree_notation.h"
#include "zolt/ved/view/view_insertion.h"

namespace zolt::fuzz {
namespace {

using namespace math::ved;
using surfaces::RecordingGraphicsC;

PointerTC<RecordingGraphicsC> makeSurface() {
  return new RecordingGraphicsC(RecordingGraphicsC::LOG_NOTHING);
}

TreeNotationS readTree(wstring const& text) {
  TreeNotationS tree;
  unsigned long position = 0;
  auto const& engine = math::algexpr::CASSessionBC::getSession()->getEngine();
  readTreeNotation(text, *OperatorListRepositoryC::lookup(engine), tree, position);
  return tree;
}

void readPrefix(wstring const& text) { static_cast<void>(AlgebraicExpressionC::fromPrefixString(text)); }
void readLatex(wstring const& text) { (void)exchange::fromLatex(text, nullptr); }
void readMathJson(wstring const& text) { (void)mathjson::fromMathJson(text, nullptr); }
void readPlain(wstring const& text) { static_cast<void>(exchange::fromPlainText(text, nullptr)); }
void readNotation(wstring const& text) { readTree(text); }
void readInfix(wstring const& text) {
  wstring prefix;
  unsigned first = 0;
  unsigned second = 0;
  ErrorCauseE cause = ERROR_CAUSE_SYNTAX;
  Node4C::convertInfixToPrefix(text, prefix, first, second, cause);
}
void readScript(wstring const& text) {
  field::EventScriptT script;
  unsigned long position = 0;
  script::readEventScript(text, script, position);
}
void readSheet(wstring const& text) {
  sheet::SheetT sheet;
  sheet::SheetErrorS error;
  sheet::readSheet(text, sheet, error);
}
void show(wstring const& text) {
  ViewZNT4C view(makeSurface());
  view.setAlgebraicExpression(AlgebraicExpressionC::fromPrefixString(text), nullptr, 0,
                              math::algexpr::NUMBER_FORMAT_AUTOMATIC);
  view.getExpressionSize();
  view.getAlgebraicExpression(nullptr);
}
void type(wstring const& text) {
  ViewZNT4C view(makeSurface());
  view.insertText(text);
  view.getExpressionSize();
}
void pasteText(wstring const& text) {
  field::ClipboardContentS content;
  content.plainText = text;
  field::FormulaFieldC(makeSurface()).paste(content);
}

using TextsT = std::vector<wstring>;  // a head, what is repeated and a tail, with "~" between them

/// The most memory held at a time for one character. Storage that doubles is largest a little past a power of
/// two.
template <class ReadF>
double findWorst(TextsT const& texts, ReadF read) {
  double worst = 0;
  for (wstring const& pattern : texts) {
    std::size_t const begin = pattern.find(u'~');
    std::size_t const end = pattern.find(u'~', begin + 1);
    for (unsigned long const count : {40000UL, 66000UL}) {
      wstring text = pattern.substr(0, begin);
      for (unsigned long i = 0; i < count; ++i) text.append(pattern, begin + 1, end - begin - 1);
      text.append(pattern, end + 1);
      AllocationsS::reset();
      std::size_t const size = read(text);
      worst = std::max(worst, static_cast<double>(AllocationsS::get().peak) / static_cast<double>(size));
    }
  }
  return worst;
}

TEST(Amplification, MemoryIsInProportion) {
  struct EntryS {
    char const* name;
    void (*read)(wstring const&);
    double most;
    TextsT texts;
  };
  EntryS const entries[] = {
      {"prefix text", readPrefix, 50, {u"~f(~x", u"~+(a,~", u"+(~a,~a)"}},
      {"plain text",
       readPlain,
       130,
       {u"a~+a~", u"a~a ~", u"~-~x", u"~sin ~x", u"x~^2~", u"f(1~,1~)", u"[1~;1~]", u"~[~", u"~|~x"}},
      {"LaTeX",
       readLatex,
       140,
       {u"a~+a~", u"a~a~", u"~-~x", u"~(~", u"~{~", u"~\\int ~x", u"x~!~", u"~|~", u"f(1~,1~)",
        u"~\\begin{array}{c}~", u"x~_{a~", u"\\begin{matrix}1~&1~\\end{matrix}",
        u"\\begin{matrix}1~\\\\1~\\end{matrix}", u"~\\vec ~x"}},
      {"MathJSON",
       readMathJson,
       60,
       {u"[\"f\"~,1~]", u"~[\"f\",~1", u"~{\"fn\":[\"f\",~1", u"~[~", u"{\"a\":~[~",
        u"[\"Matrix\",[\"List\"~,[\"List\",1]~]]"}},
#ifdef ZOLT_HAS_MATHML_TEXT
      {"MathML",
       [](wstring const& text) { static_cast<void>(mathml::fromMathmlText(text, nullptr)); },
       150,
       {u"<math>~<mi>x</mi>~</math>", u"<math>~<mo>!</mo>~</math>", u"<math>~<a/>~</math>", u"<math>~<mrow>~",
        u"<math a='~&mu;~'/>", u"<math><mo>~(~</mo></math>", u"<math><mo>~|~</mo></math>",
        u"<math><mi>x</mi><mo>~!~</mo></math>", u"<math><apply><plus/>~<cn>1</cn>~</apply></math>"}},
#endif
      {"infix text", readInfix, 120, {u"a~+a~", u"~(~", u"x~!~", u"x~^2~"}},
      {"tree notation", readNotation, 90, {u"[~(,~\"\"]", u"[~\"\",P[\"\"],~\"\"]"}},
      {"event script", readScript, 80, {u"~cut ~", u"~undo\n~"}},
      {"sheet",
       readSheet,
       850,
       {u"zolt-sheet 1\n~text\n~", u"zolt-sheet 1\n~formula x\n~",
        u"zolt-sheet 1\nformula\ntree [~(,~\"\"]\n"}},
      {"expression shown", show, 200, {u"f(1~,abs(1)~)", u"f(1~,^(1,2)~)"}},
      {"typed text", type, 900, {u"~a~", u"~(~", u"~^~", u"~1/~"}},
      {"pasted text", pasteText, 900, {u"a~+a~", u"~(~", u"~|a|~"}},
  };
  prepare();
  for (EntryS const& entry : entries) {
    double const worst = findWorst(entry.texts, [&](wstring const& text) {
      entry.read(text);
      return text.size();
    });
    RecordProperty(entry.name, std::to_string(worst));
    EXPECT_LT(worst, entry.most) << entry.name;
  }
  double const worst = findWorst({u"[~\"\",~\"\"]", u"[~(,~\"\"]"}, [](wstring const& notation) {
    bytestring const bytes = writeBytes(*readTree(notation).root->child(0));
    AllocationsS::reset();
    ViewZNT4C(makeSurface()).paste(bytes);
    return bytes.size();
  });
  RecordProperty("clipboard bytes", std::to_string(worst));
  EXPECT_LT(worst, 80) << "clipboard bytes";
}

#if defined(__cpp_exceptions) && !defined(ZOLT_BARE_CORE)

/// Whether the act succeeded with so many allocations.
bool isDone(std::function<void()> const& act, std::size_t allocations) {
  ScarceHeapC const heap(allocations);
  try {
    act();
  } catch (std::bad_alloc const&) {
    return false;
  }
  return true;
}

// An edit that failed leaves nothing to which a later one, which is rejected, could go back.
TEST(ScarceMemory, RejectedEditsGoBackToTheirOwnBeginning) {
  class NoZC : public math::algexpr::ConstraintsBC {
    bool check(PointerTC<AlgebraicExpressionC> expression) const override {
      return expression->toPrefixString().find(u'z') == wstring::npos;
    }
  };
  prepare();
  std::size_t failures = 0;
  for (bool through = false; !through; ++failures) {
    ViewZNT4C view(makeSurface());
    view.setAlgebraicExpression(nullptr, new NoZC, 0, math::algexpr::NUMBER_FORMAT_AUTOMATIC);
    for (char16_t const c : wstring(u"a/b")) view.insertText(wstring(1, c));
    while (view.undo()) {
    }
    through = isDone([&] { view.insertText(u"c"); }, failures);
    while (view.redo()) {
    }
    bytestring const before = writeBytes(view.crefRoot());
    EXPECT_FALSE(view.insertText(u"z"));
    EXPECT_EQ(writeBytes(view.crefRoot()), before) << failures;
    while (view.undo()) EXPECT_EQ(checkInvariants(view.crefRoot()), "") << failures;
  }
  EXPECT_GT(failures, 10u);
}

// A group goes on after an edit that failed, and is one step.
TEST(ScarceMemory, GroupsKeepTheirBeginning) {
  prepare();
  std::size_t failures = 0;
  for (bool through = false; !through; ++failures) {
    ViewZNT4C view(makeSurface());
    view.insertText(u"a");
    auto const write = [&] { return writeTreeNotation(view.crefRoot(), view.getSelection()); };
    wstring const before = write();
    view.beginGroup();
    view.insertText(u"b");
    through = isDone([&] { view.insertText(u"(c+d)"); }, failures);
    view.addEvent(EVENT_KEY, KEY_LEFT, false, false, false, 0, 0);
    EXPECT_TRUE(view.insertText(u"d"));
    view.endGroup();
    EXPECT_TRUE(view.undo());
    EXPECT_TRUE(write() == before) << failures;
  }
  EXPECT_GT(failures, 3u);
}

TEST(ScarceMemory, WhatAHostThrowsTakesTheEditBack) {
  class SurfaceC : public RecordingGraphicsC {
   public:
    SurfaceC() : RecordingGraphicsC(LOG_NOTHING) {}
    void getTextExtent(wstring const& text, long& width, long& height, long& mid) const override {
      if (text.find(u'm') != wstring::npos) throw 1;
      RecordingGraphicsC::getTextExtent(text, width, height, mid);
    }
  };
  class NoZC : public math::algexpr::ConstraintsBC {
    bool check(PointerTC<AlgebraicExpressionC> expression) const override {
      if (expression->toPrefixString().find(u'z') != wstring::npos) throw 1;
      return true;
    }
  };
  prepare();
  ViewZNT4C view(new SurfaceC);
  view.setAlgebraicExpression(AlgebraicExpressionC::fromPrefixString(u"/(a,sqrt(b))"), new NoZC, 0,
                              math::algexpr::NUMBER_FORMAT_AUTOMATIC);
  EXPECT_TRUE(view.insertText(u"+c"));
  bytestring const before = writeBytes(view.crefRoot());
  for (wstring const text : {u"z", u"/z", u"+sqrt(z)"}) {
    EXPECT_THROW(view.insertText(text), int);
    EXPECT_EQ(writeBytes(view.crefRoot()), before);
    EXPECT_TRUE(view.undo() && view.redo() && !view.canRedo());
  }
  EXPECT_TRUE(view.insertText(u"m"));
  EXPECT_THROW(view.getExpressionSize(), int);
  EXPECT_TRUE(view.undo());
  EXPECT_EQ(writeBytes(view.crefRoot()), before);
  EXPECT_TRUE(view.insertText(u"d"));
  EXPECT_EQ(checkInvariants(view.crefRoot()), "");
}

TEST(ScarceMemory, WhatOperatorsAndClipboardsThrowTakesTheEditBack) {
  class OperatorC : public OperatorBC {
   public:
    OperatorC() : OperatorBC(u"throws", u"throws", 1, 0, false, false, 0) {}
    bool runOperator(ViewZNT4C& view) const override {
      ViewInsertionC(view).cutSelection();
      EXPECT_FALSE(view.insertText(u"z") || view.undo());
      throw 1;
    }
  };
  struct ClipboardC : field::ClipboardABC {
    void write(field::ClipboardContentS const&) override { throw 1; }
    field::ClipboardContentS read() const override { throw 1; }
    bool hasContent() const override { return true; }
  };
  prepare();
  field::FormulaFieldC field(makeSurface());
  field.setClipboard(new ClipboardC);
  ASSERT_TRUE(field.setNotation(u"[\"a\u2691b\", sqrt<[\"c\"]>, \"d\u2038e\"]"));
  wstring const before = field.writeNotation();
  PointerTC<OperatorBC> const op = new OperatorC;
  auto& list = *OperatorListRepositoryC::lookup(math::algexpr::CASSessionBC::getSession()->getEngine());
  list.add(op);
  EXPECT_THROW(field.insertOperator(u"throws"), int);
  list.remove(u"throws");
  for (auto const command : {field::COMMAND_COPY, field::COMMAND_CUT, field::COMMAND_PASTE}) {
    EXPECT_THROW(field.run(command), int);
    EXPECT_EQ(field.writeNotation(), before) << command;
  }
  EXPECT_TRUE(field.typeCharacter(u'x'));
  EXPECT_TRUE(field.run(field::COMMAND_UNDO));
  EXPECT_EQ(field.writeNotation(), before);
  EXPECT_TRUE(field.run(field::COMMAND_UNDO) && !field.crefView().canUndo());
}

// Whatever a reader or a conversion has made so far goes, and what it was given stays.
TEST(ScarceMemory, ReadersHaveNoEffect) {
  prepare();
  TreeNotationS tree;
  field::EventScriptT script;
  sheet::SheetT sheet;
  wstring prefix;
  PointerTC<AlgebraicExpressionC> expression;
  auto const& operators =
      *OperatorListRepositoryC::lookup(math::algexpr::CASSessionBC::getSession()->getEngine());
  std::unique_ptr<Node4C> node;
  std::function<void()> const acts[] = {
      [&] { expression = AlgebraicExpressionC::fromPrefixString(u"+(sum(k,1,n,sqrt(k)),_neg(2.50))"); },
      [&] { expression = exchange::fromPlainText(u"sum(k,1,n,a b/2)-|x|^3!", nullptr); },
      [&] { expression = exchange::fromLatex(u"\\sum_{k=1}^n \\frac{a}{\\sqrt[3]{b}}-\\alpha^2", nullptr); },
      [&] {
        expression = mathjson::fromMathJson(u"[\"Add\",[\"Power\",\"x\",2],{\"num\":\"-2.50\"}]", nullptr);
      },
#ifdef ZOLT_HAS_MATHML_TEXT
      [&] {
        expression = mathml::fromMathmlText(
            u"<math><msqrt><mi>x</mi><mo>+</mo><mn>1</mn></msqrt><mo>!</mo></math>", nullptr);
      },
#endif
      [&] {
        node.reset(Node4C::fromAlgebraicExpression(expression, 0, math::algexpr::NUMBER_FORMAT_AUTOMATIC));
      },
      [&] { expression = node->getAlgebraicExpression(nullptr); },
      [&] {
        unsigned first = 0, second = 0;
        ErrorCauseE cause = ERROR_CAUSE_SYNTAX;
        Node4C::convertInfixToPrefix(u"2*(a+b)^3!", prefix, first, second, cause);
      },
      [&] {
        unsigned long position = 0;
        readTreeNotation(u"[\"a\", /<[\"b\u2038\"] ; [\"x\", P[\"2\"], \"\"]>, \"\"]", operators, tree,
                         position);
      },
      [&] {
        unsigned long position = 0;
        script::readEventScript(u"type \"a+b\" key left op sqrt", script, position);
      },
      [&] {
        sheet::SheetErrorS error;
        sheet::readSheet(u"zolt-sheet 1\ntext a\nformula +(a,b)\nend 2\n", sheet, error);
      },
  };
  // What the first one of a process makes for all stays, too.
  for (auto const& act : acts) act();
  tree = {};
  script.clear();
  sheet.clear();
  prefix.clear();
  auto const state = [&] {
    return std::make_tuple(expression, node.get(), prefix, tree.root.get(), script.size(), sheet.size());
  };
  for (auto const& act : acts) {
    auto const before = state();
    std::size_t failures = 0;
    for (std::size_t const blocks = AllocationsS::blocks(); !isDone(act, failures); ++failures) {
      EXPECT_EQ(AllocationsS::blocks(), blocks) << &act - acts << " " << failures;
      EXPECT_TRUE(state() == before) << failures;
    }
    EXPECT_GT(failures, 2u);
    EXPECT_FALSE(state() == before);
  }
}

TEST(ScarceMemory, LargeActsAreAllOrNothing) {
  prepare();
  ViewZNT4C view(makeSurface());
  wstring sum = u"a";
  for (int i = 0; i < 3000; ++i) sum += u"+1/b";
  wstring deep = u"x";
  for (int i = 0; i < 300; ++i) deep = u"sqrt(" + deep + u")";
  auto const sumExpression = exchange::fromPlainText(sum, nullptr);
  auto const deepExpression = exchange::fromPlainText(deep, nullptr);
  bytestring bytes;
  std::function<void()> const acts[] = {
      [&] { view.insertText(wstring(500, u'(')); },
      [&] { view.paste(sumExpression); },
      [&] { view.getExpressionSize(); },
      [&] { view.getAlgebraicExpression(nullptr); },
      [&] { view.undo(); },
      [&] { view.redo(); },
      [&] { view.display(0, 0); },
      [&] {
        view.setAlgebraicExpression(deepExpression, nullptr, 0, math::algexpr::NUMBER_FORMAT_AUTOMATIC);
      },
      [&] { view.copy(bytes); },
      [&] { view.paste(bytes); },
  };
  for (auto const& act : acts) {
    bytestring const before = writeBytes(view.crefRoot());
    for (std::size_t n = 0; !isDone(act, n); n += 1 + n / 8) {
      // Taking back needs memory, too; without any it waits for the next call.
      static_cast<void>(isDone([&] { view.crefRoot(); }, n % 3));
      EXPECT_EQ(writeBytes(view.crefRoot()), before) << n;
    }
    EXPECT_EQ(checkInvariants(view.crefRoot()), "");
  }
}

#endif

}  // namespace
}  // namespace zolt::fuzz
