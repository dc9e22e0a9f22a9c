#include <gtest/gtest.h>

#include <fstream>
#include <set>

#include "tests/support/stage.h"
#include "tests/support/uneven_graphics.h"
#include "zolt/algexpr/cas_request.h"
#include "zolt/constraints/constraints.h"
#include "zolt/field/error_text.h"
#include "zolt/field/surrounding_text.h"
#include "zolt/ved/tree/row_view.h"

namespace zolt::tests {
namespace {

using namespace field;
using namespace math::ved;
using math::algexpr::AlgebraicExpressionC;

std::string writeBox(RectangleS const& box) {
  return std::to_string(box.left) + "," + std::to_string(box.top) + "-" + std::to_string(box.right) + "," +
         std::to_string(box.bottom);
}

TEST(FieldCommandTable, IsConsistent) {
  std::set<wstring> names;
  std::set<wstring> chords;
  for (std::size_t i = 0; i < commands().size(); ++i) {
    CommandS const& command = commands()[i];
    SCOPED_TRACE(toUtf8(command.name));
    EXPECT_EQ(command.command, i);
    EXPECT_TRUE(names.insert(command.name).second);
    EXPECT_EQ(findCommand(command.name), &command);
    EXPECT_EQ(command.help.back(), u'.');
    for (std::size_t start = 0; start < command.keys.size();) {
      std::size_t const end = std::min(command.keys.find(u", ", start), command.keys.size());
      wstring const chord = command.keys.substr(start, end - start);
      EXPECT_TRUE(chords.insert(chord).second) << toUtf8(chord);
      EXPECT_EQ(findCommandForKeys(chord), &command) << toUtf8(chord);
      start = end + 2;
    }
  }
  EXPECT_EQ(findCommand(u"nothing"), nullptr);
}

TEST(FieldCommandTable, FindsChordsHoweverTheyAreWritten) {
  EXPECT_EQ(findCommandForKeys(u"shift+ctrl+LEFT")->command, COMMAND_SELECT_WORD_LEFT);
  EXPECT_EQ(findCommandForKeys(u"Ctrl+z")->command, COMMAND_UNDO);
  EXPECT_EQ(findCommandForKeys(u"Left")->command, COMMAND_LEFT);
  for (wstring const chord :
       {u"", u"+", u"Ctrl", u"Ctrl+", u"Ctrl++", u"Meta+Left", u"Ctrl+Alt+Shift+Left", u"L"}) {
    EXPECT_EQ(findCommandForKeys(chord), nullptr) << toUtf8(chord);
  }
}

std::string writeRow(CommandS const& command) {
  return "| `" + toUtf8(command.name) + "` | " + toUtf8(command.title) + " | " + toUtf8(command.keys) +
         " | " + toUtf8(command.help) + " |" + (command.modifies ? " yes |" : " |");
}

TEST(FieldCommandTable, IsTheOneInTheDocument) {
  std::ifstream in(ZOLT_TEST_DATA "/../../docs/commands.md");
  std::vector<std::string> rows;
  for (std::string line; std::getline(in, line) && line != "## Typing";) {
    if (line.compare(0, 3, "| `") == 0) rows.push_back(line);
  }
  ASSERT_EQ(rows.size(), commands().size());
  for (std::size_t i = 0; i < rows.size(); ++i) EXPECT_EQ(rows[i], writeRow(commands()[i]));
}

TEST(FieldClipboard, WritesWhatIsIncompleteAsFarAsItCan) {
  std::pair<char const*, char const*> const cases[] = {
      {"[\"⚑2∙‸x\"]", "2*"},
      {"[\"⚑\", /<[\"a+b\"] ; [\"\"]>, \"‸\"]", "(a+b)/"},
      {"[\"⚑x\", P[\"\"], \"≤ॠ−1‸\"]", "x^<=pi-1"},
      {"[\"⚑\", nthroot<[\"3\"] ; [\"\"]>, \"‸\"]", "nthroot(,3)"},
      {"[\"⚑f\", (, \"x\", P[\"n+1\"], \"‸\", ), \"\"]", "f(x^(n+1))"}};
  for (auto const& [tree, text] : cases) {
    EXPECT_EQ(toUtf8(StageC(tree).refField().copy().plainText), text) << tree;
  }
}

TEST(FieldClipboard, TellsWhyATextIsRefused) {
  StageC stage("[\"a⚑b‸c\"]");
  ClipboardContentS content;
  content.plainText = u"x/(y";
  math::common::ReadErrorS error;
  EXPECT_EQ(stage.refField().paste(content, &error), PASTE_REFUSED);
  EXPECT_EQ(error.cause, math::common::READ_ERROR_MISSING_CLOSE);
  EXPECT_EQ(stage.notation(), "[\"a⚑b‸c\"]");
  content.plainText = u"x+";
  EXPECT_EQ(stage.refField().paste(content, &error), PASTE_AS_CHARACTERS);
}

// What web pages and programs have beside the formulas that they show.
TEST(FieldClipboard, FindsTheFormulasOfOthers) {
  auto const pasted = [](wstring ClipboardContentS::*form, wstring const& text, MathmlReaderT reader) {
    StageC stage("[\"‸\"]");
    stage.refField().setMathmlReader(reader);
    ClipboardContentS content;
    content.plainText = u"plain";
    content.*form = text;
    stage.refField().paste(content);
    return describe(stage.refField().getExpression());
  };
  MathmlReaderT const finds = [](wstring const&, auto, auto*) {
    return AlgebraicExpressionC::fromPrefixString(u"found");
  };
  MathmlReaderT const fails = [](wstring const&, auto, auto*) {
    return oss::PointerTC<AlgebraicExpressionC>();
  };
  auto const html = &ClipboardContentS::html;
  auto const text = &ClipboardContentS::plainText;
  wstring const page =
      u"<p>a<br></p><!-- <b> --><math display='block'><semantics><mi>x</mi><annotation encoding=\"TeX\">"
      u"\\begin{matrix}a &amp; b\\end{matrix}&lt;&#x78;</annotation></semantics></math>";
  for (auto const form : {html, &ClipboardContentS::mathml}) {
    EXPECT_EQ(pasted(form, page, finds), "found");
    EXPECT_EQ(pasted(form, u"<p>no formula</p>", finds), "plain");
    EXPECT_EQ(pasted(form, u"<m:math/>", finds), "found");
  }
  EXPECT_EQ(pasted(text, u"<math>\n\t<mi>x</mi></math>", finds), "found");
  EXPECT_EQ(pasted(html, page, fails), "<(matrix(list(a,b)),x)");
  EXPECT_EQ(pasted(html, page, nullptr), "<(matrix(list(a,b)),x)");
  EXPECT_EQ(pasted(html, page + page, nullptr), "plain");
  EXPECT_EQ(pasted(html, u"<script type=\"math/tex; mode=display\">a<\\frac b2</script>", nullptr),
            "<(a,/(b,2))");
  EXPECT_EQ(pasted(html, u"<img title=\"a>b\" alt = '{\\displaystyle x^{2}}'/>", nullptr), "^(x,2)");
  EXPECT_EQ(pasted(html, u"<math alttext='a&amp;'/><img alt=\"A picture\">", nullptr), "plain");
  EXPECT_EQ(pasted(&ClipboardContentS::latex, u"x_1", nullptr), "x_1");
  EXPECT_EQ(pasted(text, u"\\begin{bmatrix}\n\ta\n\\end{bmatrix}", nullptr), "matrix(list(a))");

  // Where there is nothing else, its fault is told.
  StageC stage("[\"‸\"]");
  ClipboardContentS content;
  content.latex = u"\\fracc12";
  math::common::ReadErrorS error;
  EXPECT_EQ(stage.refField().paste(content, &error), PASTE_REFUSED);
  EXPECT_EQ(error.cause, math::common::READ_ERROR_UNKNOWN_COMMAND);
}

TEST(FieldDecimalComma, IsShownAndCopied) {
  oss::PointerTC<surfaces::RecordingGraphicsC> const graphics(
      (standardOperators(), new surfaces::RecordingGraphicsC));
  FormulaFieldC field(graphics);
  InputOptionsS options;
  options.decimalComma = true;
  field.setOptions(options);
  ASSERT_TRUE(field.setNotation(u"[\"x+\", sqrt<[\"3.5\"]>, \"\u2038\"]"));
  field.refView().display(0, 0);
  EXPECT_NE(graphics->getText().find("drawText \"3,5\""), std::string::npos);
  EXPECT_NE(graphics->getText().find("drawText \"x+\""), std::string::npos);
  ClipboardContentS const content = field.copy(field.crefView().getWhole());
  EXPECT_EQ(toUtf8(content.plainText), "x+sqrt(3,5)");
  EXPECT_EQ(toUtf8(content.prefix), "+(x,sqrt(3.5))");
}

TEST(FieldDecimalComma, IsMeasuredAgain) {
  FormulaFieldC field((standardOperators(), new UnevenGraphicsC));
  field.insertText(u"f(1.5)+2.25");
  for (bool const comma : {true, false}) {
    field.refView().getExpressionSize();
    InputOptionsS options = field.getOptions();
    options.decimalComma = comma;
    field.setOptions(options);
    PointS const size = field.refView().getExpressionSize();
    field.refView().measureAgain();
    EXPECT_EQ(size.x, field.refView().getExpressionSize().x) << comma;
  }
}

TEST(FieldErrors, TellWhere) {
  StageC stage("[\"2x 3 4‸\"]");
  FormulaErrorS error;
  EXPECT_FALSE(stage.refField().getExpression());
  EXPECT_EQ(stage.notation(), "[\"2x 3 4‸\"]");
  EXPECT_FALSE(stage.refField().getExpression(&error));
  EXPECT_EQ(error.cause, math::common::READ_ERROR_MISPLACED);
  EXPECT_EQ(writeBox(error.box), "30,0-37,10");
  EXPECT_EQ(error.range.anchor.pos, 5u);
  EXPECT_EQ(error.range.caret.pos, 6u);
}

// Whatever is handed out is what is shown, implied products included, locked or not.
TEST(FieldExpressions, AreWhatIsShown) {
  for (std::string const lock : {"", "lock\n"}) {
    StageC stage;
    stage.refField().setExpression(AlgebraicExpressionC::fromPrefixString(u"+(a,1.50)"));
    EXPECT_TRUE(stage.play("command end type \"1x\"\n" + lock + "command select-all"));
    EXPECT_EQ(describe(stage.refField().getExpression()), "+(a,*(1.501,x))");
    ClipboardContentS const content = stage.refField().copy();
    EXPECT_EQ(toUtf8(content.prefix), "+(a,*(1.501,x))");
    EXPECT_EQ(toUtf8(content.plainText), "a+1.501*x");
    EXPECT_TRUE(stage.play("command end") && stage.refField().copy().isEmpty());
    StageC other;
    EXPECT_EQ(other.refField().paste({content.bytes, {}, {}}), PASTE_DONE);
    EXPECT_EQ(other.tree(), stage.tree());
  }
}

oss::PointerTC<RuleC> rejectAnythingWith(std::string const& name) {
  return new RuleC([=](std::string const& prefix) { return prefix.find(name) == std::string::npos; });
}

// A clipboard may change the field that it is called by: then nothing is deleted but what was copied.
TEST(FieldClipboard, MayChangeTheFormulaMeanwhile) {
  struct ClipboardC : ClipboardABC {
    std::function<void()> act;
    void write(ClipboardContentS const&) override { act(); }
    ClipboardContentS read() const override { return {}; }
    bool hasContent() const override { return true; }
  };
  for (std::string const script : {"undo", "key left", "command select-all char z", "op sqrt", "lock"}) {
    StageC alone("[\"a\u2691b\u2038c\"]");
    alone.play(script);
    StageC stage("[\"a\u2691b\u2038c\"]");
    oss::PointerTC<ClipboardC> const clipboard = new ClipboardC;
    clipboard->act = [&] { stage.play(script); };
    stage.refField().setClipboard(clipboard);
    EXPECT_FALSE(stage.refField().run(COMMAND_CUT)) << script;
    EXPECT_EQ(stage.notation(), alone.notation()) << script;
    EXPECT_EQ(stage.findFault(), "");
  }
}

// Constraints do not judge an incomplete formula.
TEST(FieldConstraints, JudgeWholeActs) {
  struct CaseS {
    char const *forbidden, *script, *end;
  };
  for (CaseS const& one :
       {CaseS{"^(x,2)", "type \"²\"", "[\"x‸\"]"}, CaseS{"xx", "type \"²\"", "[\"x\", P[\"2\"], \"‸\"]"},
        CaseS{"α", "type \"+alpha!\"", "[\"x+alpha!‸\"]"}, CaseS{"+(x,1)", "insert \"+1\"", "[\"x‸\"]"},
        CaseS{"+(x,1)", "insert \"+12\"", "[\"x+12‸\"]"}}) {
    SCOPED_TRACE(one.script);
    StageC stage;
    stage.show("x", rejectAnythingWith(one.forbidden));
    stage.play("command end");
    stage.play(one.script);
    EXPECT_EQ(stage.notation(), one.end);
    EXPECT_EQ(stage.findFault(), "");
  }
}

TEST(FieldConstraints, AnswerForWhatTheyReject) {
  StageC stage;
  stage.show("x", rejectAnythingWith("xy"));
  stage.play("command end");
  EXPECT_FALSE(stage.refField().typeCharacter(u'y'));
  EXPECT_FALSE(stage.refField().insertText(u"y"));
  EXPECT_FALSE(stage.refField().refView().insertText(u"y"));
  EXPECT_FALSE(stage.refField().setPlainText(u"xy+1"));
  EXPECT_TRUE(stage.refField().typeCharacter(u'z'));
  EXPECT_EQ(stage.notation(), "[\"xz‸\"]");
  EXPECT_TRUE(stage.refField().setPlainText(u"x"));
  EXPECT_FALSE(stage.play("command end char y"));
}

// Products without a sign are products, and a name that was just typed is its letter.
TEST(FieldConstraints, JudgeWhatIsHandedOut) {
  for (std::string const typed : {"2y", "2sin(x)", "(x+1)y", "3!x", "alpha", "1+alpha"}) {
    StageC stage;
    stage.show("", new RuleC([](std::string const& prefix) {
                 return prefix.find('*') == std::string::npos && prefix.find("α") == std::string::npos;
               }));
    stage.play("type \"" + typed + "\"");
    std::string const handed = describe(stage.refField().diagnose().expression);
    EXPECT_EQ(handed.find('*'), std::string::npos) << handed;
    EXPECT_EQ(handed.find("α"), std::string::npos) << handed;
    EXPECT_EQ(describe(stage.refField().getExpression()), handed);
    EXPECT_EQ(stage.findFault(), "");
  }
}

// Nor while the field asks outside of an edit: for an expression of the program's, for a name that was just
// typed, and for the reason.
TEST(FieldConstraints, MayNotChangeTheFieldThatAsks) {
  struct MeddlerC : math::algexpr::ConstraintsBC {
    StageC& stage;
    mutable int calls = 0;
    explicit MeddlerC(StageC& asking) : stage(asking) {}
    void meddle() const {
      ++calls;
      stage.refField().setConstraints(nullptr);
      EXPECT_FALSE(stage.refField().typeCharacter(u'z') || stage.refField().run(COMMAND_UNDO));
      EXPECT_FALSE(stage.refField().setPlainText(u"z"));
    }
    bool check(oss::PointerTC<AlgebraicExpressionC> expression) const override {
      bool const accepts = expression->toPrefixString().find_first_of(u"q\u03B1") == wstring::npos;
      return meddle(), accepts;
    }
    wstring explain(AlgebraicExpressionC const&) const override { return meddle(), u"no"; }
  };
  StageC stage("[\"a\u2038\"]");
  oss::PointerTC<MeddlerC> const meddler = new MeddlerC(stage);
  stage.refField().setConstraints(meddler);
  math::common::ReadErrorS error;
  EXPECT_FALSE(stage.refField().setPlainText(u"q", &error));
  EXPECT_EQ(toUtf8(error.message), "no");
  EXPECT_EQ(meddler->calls, 2);
  EXPECT_TRUE(stage.play("command select-all type \"alpha\""));
  meddler->calls = 0;
  EXPECT_EQ(describe(stage.refField().diagnose().expression), "alpha");
  EXPECT_EQ(meddler->calls, 1);
  EXPECT_EQ(stage.notation(), "[\"alpha\u2038\"]");
  EXPECT_EQ(stage.findFault(), "");
}

// A program may always empty the field.
TEST(FieldConstraints, LetTheProgramClear) {
  for (std::string const lock : {"", "lock"}) {
    StageC stage;
    stage.show("x", rejectAnythingWith(""));
    stage.play(lock);
    stage.refField().clear();
    EXPECT_EQ(stage.tree(), "[\"\"]") << lock;
  }
}

TEST(FieldPainting, ShowsASelectionInBands) {
  auto const bands = [](char const* notation) {
    std::string text;
    for (RectangleS const& band : StageC(notation).refField().getSelectionRectangles()) {
      text += writeBox(band) + " ";
    }
    return text;
  };
  EXPECT_EQ(bands("[\"ab‸c\"]"), "");
  EXPECT_EQ(bands("[\"a⚑bc‸d\"]"), "6,0-18,10 ");
  EXPECT_EQ(bands("[\"a‸bc⚑d\"]"), "6,0-18,10 ");
  std::string const mixed = bands("[\"a⚑b\", /<[\"x\"] ; [\"y\"]>, \"c‸d\"]");
  EXPECT_EQ(std::count(mixed.begin(), mixed.end(), ' '), 3);
  EXPECT_EQ(bands("[\"⚑ab‸\"]"), "0,0-12,10 ");
}

/// Everything after an underscore is an index.
class IndexingGraphicsC final : public surfaces::RecordingGraphicsC {
 public:
  long getIndexWidth(wstring const& text) const override {
    std::size_t const mark = text.find(u'_');
    return mark == text.npos ? 0 : getTextWidth(text.substr(mark));
  }
};

TEST(FieldPainting, PutsAnExponentAboveAnIndex) {
  for (wstring const notation : {u"[\"b+a_max\", P[\"2\"], \"+x\", P[\"2\"], \"‸\"]",
                                 u"[\"a_i\", P[\"n+1\"], \"+x\", P[\"2\"], \"‸\"]"}) {
    FormulaFieldC field(oss::PointerTC<GraphicsABC>(new IndexingGraphicsC));
    ASSERT_TRUE(field.setNotation(notation));
    Node4C const& row = *field.refView().crefRoot().child(0);
    Node4C const &base = *row.child(0), &power = *row.child(1);
    field.refView().getExpressionSize();
    EXPECT_EQ(power.getDX(),
              base.getWidth() - field.crefView().crefGraphics().getIndexWidth(base.crefText()) + 2);
    EXPECT_EQ(exponentAbove(base), &power);
    EXPECT_EQ(exponentAbove(*row.child(2)), nullptr);
    EXPECT_GE(row.child(2)->getDX(), std::max(rightEnd(row, 0), rightEnd(row, 1)));
    // Each place is found where its caret is.
    for (Node4C const* text = base.crefText().empty() ? nullptr : &base; text; text = nextText(*text)) {
      for (unsigned pos = 0; pos <= text->sizeText(); ++pos) {
        RectangleS const box = field.refView().getRectangle({{text, pos}, {text, pos}});
        EXPECT_EQ(field.findPlace(box.right, (box.top + box.bottom) / 2), (PlaceS{text, pos})) << pos;
      }
    }
  }
}

// A host says why input was refused, and where.
TEST(FieldRefusals, NameTheCharacterAndThePlace) {
  StageC stage("[\"a‸b\"]");
  FormulaFieldC& field = stage.refField();
  RefusalS refusal;
  auto const whyRefused = [&](bool taken) {
    EXPECT_FALSE(taken);
    EXPECT_TRUE(field.takeRefusal(refusal));
    EXPECT_EQ(writeBox(refusal.box), "5,0-6,10");
    std::string const why = toUtf8(refusal.character + u"|" + refusal.message);
    EXPECT_FALSE(field.takeRefusal(refusal));
    return why;
  };
  EXPECT_EQ(whyRefused(field.typeCharacter(u'#')), "#|“#” has no meaning in a formula");
  EXPECT_EQ(whyRefused(field.typeCharacter(u'\b')), "\b|U+0008 has no meaning in a formula");
  EXPECT_EQ(whyRefused(field.insertText(u"x$y")), "$|“$” has no meaning in a formula, after “x”");
  EXPECT_EQ(whyRefused(field.insertText(wstring(5000, u'x') + u"~")),
            "~|“~” has no meaning in a formula, after “…xxxxxxxxxxxx”");
  auto const paste = [&](wstring const& text) { return field.paste({{}, {}, text}) != PASTE_REFUSED; };
  EXPECT_EQ(whyRefused(paste(u"3 # 4")), "#|“#” has no meaning in a formula, after “3”");
  EXPECT_EQ(whyRefused(paste(u"(a+b)/+")), "|An operand is missing, after “(a+b)/+”");
  EXPECT_EQ(whyRefused(field.insertOperator(u"error")), "|This does not fit here");
  field.setConstraints(new RuleC([](std::string const& prefix) { return prefix == "ab"; }));
  EXPECT_EQ(whyRefused(field.typeCharacter(u'c')), "|This formula is not allowed here");
  EXPECT_TRUE(field.run(COMMAND_LEFT));
  EXPECT_FALSE(field.takeRefusal(refusal));
}

TEST(FieldConstraints, AnswerTheCases) {
  for (CaseS const& line : readCases(ZOLT_TEST_DATA "/constraints.cases")) {
    SCOPED_TRACE(line.where + ": " + line.input);
    std::size_t const colon = line.input.find(": ");
    std::size_t fault = 0;
    wstring const rules = toText(line.input.substr(0, colon));
    auto const constraints = constraints::fromText(rules, &fault);
    if (!constraints) {
      EXPECT_EQ("fault " + std::to_string(fault), line.expected);
      continue;
    }
    field::FormulaFieldC field((standardOperators(), new surfaces::RecordingGraphicsC));
    field.setConstraints(constraints);
    math::common::ReadErrorS error;
    bool const isAllowed = field.setPlainText(toText(line.input.substr(colon + 2)), &error);
    EXPECT_EQ(isAllowed ? "yes" : toUtf8(error.message), line.expected);
  }
}

// A refused key says what the constraints say, and nothing of an earlier refusal.
TEST(FieldConstraints, SayWhyWhileOneTypes) {
  field::FormulaFieldC field((standardOperators(), new surfaces::RecordingGraphicsC));
  field.setConstraints(constraints::fromText(u"names x rate; nodes 4", nullptr));
  for (char16_t const c : wstring(u"x+sin(rat")) EXPECT_TRUE(field.typeCharacter(c)) << c;
  RefusalS refusal;
  EXPECT_FALSE(field.typeCharacter(u'z'));
  ASSERT_TRUE(field.takeRefusal(refusal));
  EXPECT_EQ(toUtf8(refusal.message), "Only these names are allowed here: rate, x; not “ratz”");
  EXPECT_FALSE(field.typeCharacter(u'#'));
  ASSERT_TRUE(field.takeRefusal(refusal));
  EXPECT_EQ(toUtf8(refusal.message), "“#” has no meaning in a formula");
}

// Whatever part of its expression an engine names, the field selects just what it was written as.
TEST(FieldExpression, IsSelectedByParts) {
  field::FormulaFieldC field((standardOperators(), new surfaces::RecordingGraphicsC));
  for (char const* const text :
       {"1/(x-x)+2", "-3+a*b*c-d", "sqrt(nthroot(x,3)!)^(y+1)", "sum(k,1,1,k^2)+sum(k,1,1,k)", "int(a,a,x,x)",
        "f(x,g(y))=2 and not x<1", "diff(x,x)+where(x,x,2)", "log(abs(x),2)-90°", "((a+b))*c", "a:=b/2"}) {
    ASSERT_TRUE(field.setPlainText(toText(text))) << text;
    auto const expression = field.getExpression();
    unsigned long number = 0;
    for (; auto const part = math::algexpr::findPart(*expression, number); ++number) {
      ASSERT_TRUE(field.selectPart(number)) << text << ' ' << number;
      EXPECT_EQ(toUtf8(field.copy().prefix), toUtf8(AlgebraicExpressionC(part, nullptr).toPrefixString()))
          << text << ' ' << number;
    }
    EXPECT_FALSE(field.selectPart(number));
  }
  // Signs that are not shown belong to what they join.
  EXPECT_TRUE(field.setNotation(u"[\"1+2xy sin z‸\"]"));
  EXPECT_TRUE(field.selectPart(2));
  EXPECT_EQ(toUtf8(field.writeNotation()), "[\"1+⚑2xy sin z‸\"]");
  EXPECT_TRUE(field.setNotation(u"[\"1+\", /<[\"2\"] ; [\"x\"]>, \"+‸\"]"));
  EXPECT_FALSE(field.selectPart(0));
}

// What is kept and copied has the letter of a name that may still grow.
TEST(FieldNames, AreCompleteInWhatIsHandedOut) {
  StageC stage;
  stage.play("type \"2*(a+pi\"");
  EXPECT_EQ(toUtf8(stage.refField().writeTree()), "[\"2∙\", (, \"a+ॠ\", AC, \"\"]");
  EXPECT_EQ(toUtf8(stage.refField().copy(stage.refView().getWhole()).plainText), "2*(a+pi)");
  EXPECT_EQ(stage.notation(), "[\"2∙\", (, \"a+pi‸\", AC, \"\"]");
}

TEST(FieldPainting, TellsOnceWhatChanged) {
  StageC stage("[\"ab‸c\"]");
  FormulaFieldC& field = stage.refField();
  auto const changes = [&](std::string const& script) {
    stage.play(script);
    bool const changed = field.takeChange();
    EXPECT_FALSE(field.takeChange()) << script;
    return changed;
  };
  EXPECT_TRUE(field.takeChange());
  for (char const* const script : {"char x", "op sqrt", "undo", "redo", "command select-all char y"}) {
    EXPECT_TRUE(changes(script)) << script;
  }
  for (char const* const script : {"key left", "command select-all", "copy", "char x undo", "paint"}) {
    EXPECT_FALSE(changes(script)) << script;
  }
}

TEST(FieldPainting, AsksOnceToShowTheCaret) {
  StageC stage("[\"ab‸c\"]");
  RectangleS box;
  EXPECT_TRUE(stage.refField().takeRevealRequest(box));
  EXPECT_FALSE(stage.refField().takeRevealRequest(box));
  stage.play("command end");
  EXPECT_TRUE(stage.refField().takeRevealRequest(box));
  EXPECT_EQ(writeBox(box), "17,0-18,10");
  stage.play("paint");
  EXPECT_FALSE(stage.refField().takeRevealRequest(box));
}

// What is composed takes the place that it will have when it is typed, and leaves no trace.
TEST(FieldComposition, IsShownInTheLayoutOnly) {
  for (std::string const start : {"[\"a‸b\"]", "[\"‸\"]", "[\"x\", P[\"‸\"], \"+1\"]",
                                  "[\"\", /<[\"a+‸\"] ; [\"b\"]>, \"\"]", "[\"a⚑b‸\"]"}) {
    SCOPED_TRACE(start);
    StageC typed(start);
    oss::PointerTC<surfaces::RecordingGraphicsC> const graphics(new surfaces::RecordingGraphicsC);
    FormulaFieldC field(graphics);
    ASSERT_TRUE(field.setNotation(fromUtf8(start)));
    auto const draw = [&] {
      graphics->clear();
      field.refView().display(0, 0);
      return graphics->getText();
    };
    field.takeChange();
    typed.refField().run(COMMAND_DROP_SELECTION);
    typed.refView().insertText(u"uvw");
    std::string const drawn = draw();
    EventScriptT recorded;
    field.record(&recorded);
    std::string const words = describe(field.diagnose().expression);
    ASSERT_TRUE(field.compose(u"uvw", 2));
    EXPECT_EQ(toUtf8(field.writeNotation()), start);
    EXPECT_EQ(describe(field.diagnose().expression), words);
    EXPECT_FALSE(field.takeChange());
    PointS const size = field.crefView().getExpressionSize();
    EXPECT_EQ(size.x, typed.refView().getExpressionSize().x);
    EXPECT_EQ(size.y, typed.refView().getExpressionSize().y);
    EXPECT_NE(draw().find("drawText \"uvw\""), std::string::npos);
    RectangleS const box = field.getComposedRectangle(0, 3);
    EXPECT_EQ(box.right, typed.refField().getCaretRectangle().right);
    EXPECT_LT(field.getCaretRectangle().right, box.right);
    EXPECT_EQ(field.getCaretRectangle().right, field.getComposedRectangle(0, 2).right);
    // A point in it is at the caret's place, and one after it where it is without the composition.
    PlaceS const caret = field.crefView().getSelection().caret;
    EXPECT_EQ(field.findPlace(box.left + 2, box.top + 1), caret);
    EXPECT_TRUE(field.compose({}, 0));
    EXPECT_EQ(draw(), drawn);
    EXPECT_TRUE(recorded.empty());
    // Any input ends it, also one that is refused.
    EXPECT_TRUE(field.compose(u"uvw", 3));
    EXPECT_FALSE(field.typeCharacter(u'`'));
    EXPECT_EQ(draw(), drawn);
    EXPECT_TRUE(field.compose(u"z", 1) && field.insertText(u"z") && field.run(COMMAND_UNDO));
    EXPECT_EQ(toUtf8(field.writeNotation()), start);
    field.setEditable(false);
    EXPECT_FALSE(field.compose(u"uvw", 3));
  }
}

TEST(FieldComposition, CostsTheSameInALongFormula) {
  StageC stage;
  std::string text = "x";
  for (int i = 0; i < 2000; ++i) text += "+sqrt(y)";
  ASSERT_TRUE(stage.refField().setPlainText(fromUtf8(text)));
  stage.play("command end key left");
  stage.refView().getExpressionSize();
  stage.refGraphics().resetCounts();
  for (wstring const& composed : {wstring(u"a"), wstring(u"ab"), wstring()}) {
    EXPECT_TRUE(stage.refField().compose(composed, 1));
    stage.refField().getCaretRectangle();
    EXPECT_LE(makeSurroundingText(stage.refView(), 20).text.size(), 40u);
  }
  stage.play("type \"\\\\al\"");
  EXPECT_LT(stage.refGraphics().getMeasureCount(), 1000u);
}

// Asking where the pointer would put the caret gives the same place as pressing it there.
TEST(FieldComposition, LeavesTheHitTestAsItIs) {
  StageC stage("[\"ab\", /<[\"c+d‸\"] ; [\"e\"]>, \"f\", P[\"2\"], \"\"]");
  FormulaFieldC& field = stage.refField();
  std::string const before = stage.notation();
  for (long y = -5; y < 40; y += 3) {
    for (long x = -5; x < 90; x += 2) {
      PlaceS const place = field.findPlace(x, y);
      EXPECT_EQ(stage.notation(), before);
      field.pressPointer(x, y);
      field.releasePointer();
      EXPECT_EQ(field.crefView().getSelection().caret, place) << x << " " << y;
      stage.play(
          "tree \"" +
          std::string("[\\\"ab\\\", /<[\\\"c+d‸\\\"] ; [\\\"e\\\"]>, \\\"f\\\", P[\\\"2\\\"], \\\"\\\"]") +
          "\"");
    }
  }
}

TEST(FieldSurroundings, AreTheRowOfTheCaret) {
  std::tuple<char const*, char const*, unsigned long, unsigned long> const cases[] = {
      {"[\"ab‸c\"]", "abc", 2, 2},
      {"[\"ab\", /<[\"x\"] ; [\"y\"]>, \"c‸d\", (, \"e\", ), \"f\"]", "ab\uFFFCcd(e)", 4, 4},
      {"[\"a⚑b\", P[\"2\"], \"c‸d\"]", "ab\uFFFCcd", 1, 4},
      {"[\"a‸b\", P[\"2\"], \"c⚑d\"]", "ab\uFFFCcd", 4, 1},
      {"[\"a\", /<[\"x⚑\"] ; [\"y‸\"]>, \"b\"]", "a\uFFFCb", 1, 2},
      {"[\"⚑abcdefghij‸kl\"]", "ghijkl", 0, 4}};
  for (auto const& [tree, text, anchor, caret] : cases) {
    StageC stage(tree);
    SurroundingTextS const around = makeSurroundingText(stage.refView(), 4);
    EXPECT_EQ(toUtf8(around.text), text) << tree;
    EXPECT_EQ(around.anchor, anchor) << tree;
    EXPECT_EQ(around.caret, caret) << tree;
    PlaceS const at = inOneRow(stage.refView().getSelection()).anchor;
    for (long i = 0; i < 2; ++i) EXPECT_EQ(placeAtDistance(placeAtDistance(at, i), -i), at) << tree;
  }
}

}  // namespace
}  // namespace zolt::tests
