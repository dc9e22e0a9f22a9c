#include "zolt/sheet/sheet_text.h"

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
  EXPECT_EQ(makeFormulaLine(u"x", u"[\"x\"]").tree, u"");
  EXPECT_TRUE(isWithinLimits({{SHEET_FORMULA, {}, {}, wstring(100, u'x')}}));
  sheet.assign(4, {SHEET_FORMULA, {}, {}, wstring(max_sheet_formula, u'x')});
  EXPECT_FALSE(isWithinLimits(sheet));
}

}  // namespace
}  // namespace zolt::tests
