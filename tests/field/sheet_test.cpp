#include "zolt/sheet/sheet_document.h"

#include <gtest/gtest.h>

#include "tests/support/stage.h"

namespace zolt::tests {
namespace {

using namespace sheet;

TEST(Sheet, ReadsBackAsWritten) {
  StageC const operators;
  wstring text =
      u"zolt-sheet 1\nheading A b\ntext \nformula +(a,b)\nformula *(2,x)\ntree [\"2x\"]\nformula\n"
      u"tree [\"a+\", /<[\"b\"] ; [\"\"]>, \"\"]\nformula\nend 6\n";
  SheetT sheet;
  SheetErrorS error;
  ASSERT_TRUE(readSheet(text, sheet, error)) << toUtf8(describe(error));
  EXPECT_EQ(toUtf8(writeSheet(sheet)), toUtf8(text));
  // An expression that was changed by hand counts; a tree gives the one that is missing.
  text = u"zolt-sheet 1\nformula *(3,x)\ntree [\"2x\"]\nformula\ntree [\"2x\"]\nend 2\n";
  ASSERT_TRUE(readSheet(text, sheet, error));
  EXPECT_EQ(sheet[0].prefix, u"*(3,x)");
  EXPECT_EQ(sheet[0].tree, u"");
  EXPECT_EQ(sheet[1].prefix, u"*(2,x)");
  // A graph is the text after its formula, any other text is one.
  text =
      u"zolt-sheet 1\nformula x\ntext [graph x -6.25 5 y -1e-05 5]\ntext [graph x 1 2 y 1 2]\ntext [graph x "
      u"2 1 y "
      u"1 2]\nend 4\n";
  ASSERT_TRUE(readSheet(text, sheet, error));
  ASSERT_EQ(sheet.size(), 3U);
  EXPECT_EQ(sheet[0].graph.left, -6.25);
  EXPECT_EQ(toUtf8(writeSheet(sheet)), toUtf8(text));
  EXPECT_EQ(makeFormulaLine(u"x", u"[\"x\"]").tree, u"");
  EXPECT_TRUE(isWithinLimits({{SHEET_FORMULA, {}, {}, wstring(100, u'x')}}));
  sheet.assign(4, {SHEET_FORMULA, {}, {}, wstring(max_sheet_formula, u'x')});
  EXPECT_FALSE(isWithinLimits(sheet));
  EXPECT_FALSE(readSheet(wstring(max_sheet_characters + 1, u'\n'), sheet, error));
  EXPECT_EQ(error.cause, SHEET_ERROR_TOO_LARGE);
  EXPECT_EQ(sheet.size(), 4U) << "a sheet that cannot be read changes nothing";
}

TEST(Sheet, BecomesADocumentAndComesBack) {
  StageC const operators;
  SheetT const sheet = {{SHEET_HEADING, u"50 % of #1_a", {}, {}},
                        {SHEET_TEXT, u"A \\ ~ ^ $ & {b} `c` *d* <e> [f]", {}, {}},
                        {SHEET_FORMULA, {}, u"=(x,/(a,2))", {}},
                        {SHEET_FORMULA, {}, {}, u"[\"a+\", /<[\"b\"] ; [\"\"]>, \"\"]"},
                        {SHEET_TEXT, u"end", {}, {}}};
  for (auto const kind : {DOCUMENT_LATEX, DOCUMENT_MARKDOWN}) {
    SheetT read;
    wstring const document =
        writeDocument(sheet, kind, {{}, {}, {u"=(x,3)", u"6.02E23", false, true, u"a-1.png"}});
    EXPECT_NE(document.find(kind == DOCUMENT_LATEX ? u"{a-1.png}" : u"(a-1.png "), document.npos);
    EXPECT_NE(document.find(u"\\Rightarrow\\quad x = 3 \\approx 6.02\\cdot 10^{23}\n"), document.npos);
    ASSERT_TRUE(readDocument(document, kind, read));
    EXPECT_EQ(toUtf8(writeSheet(read)), toUtf8(writeSheet(sheet)));
  }
  // A document of others: what is no formula that we read stays as a text.
  SheetT read;
  ASSERT_TRUE(readDocument(u"# A\n\none\ntwo $x$\n\n$$x^2$$\n\n```math\n\\frac12\n```\n\n$$\\foo$$\n",
                           DOCUMENT_MARKDOWN, read));
  EXPECT_EQ(
      toUtf8(writeSheet(read)),
      "zolt-sheet 1\nheading A\ntext one two x\nformula ^(x,2)\nformula /(1,2)\ntext $$\\foo$$\nend 5\n");
  ASSERT_TRUE(
      readDocument(u"\\title{The {\\em T} $a_1$}\n\\begin{document}\n\\maketitle\n\\section{S}\\label{s}\n"
                   u"\\begin{equation}\nx\n\\end{equation} % c\nLet \\(\\frac{\\alpha}{2}\\) and $\\foo$\n"
                   u"cost $5 or $6 or \\$7$.\n\\begin{align}\n  a &= \\sqrt b \\\\\n  &= c \\\\\n"
                   u"  d &= \\begin{pmatrix}1\\\\2\\end{pmatrix}\n\\end{align}\n\\end{document}",
                   DOCUMENT_LATEX, read));
  EXPECT_EQ(
      toUtf8(writeSheet(read)),
      "zolt-sheet 1\nheading The {\\em T} a_1\nheading S\nformula x\ntext Let α/2 and $\\foo$ cost $5 or "
      "$6 or $7$.\nformula =(=(a,sqrt(b)),c)\nformula =(d,matrix(list(1),list(2)))\nend 6\n");
}

}  // namespace
}  // namespace zolt::tests
