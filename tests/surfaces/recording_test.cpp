#include <gtest/gtest.h>

#include <array>

#include "zolt/surfaces/recording/recording_graphics.h"

namespace zolt::surfaces {
namespace {

TEST(Recording, WritesOneLinePerDrawingCall) {
  RecordingGraphicsC const graphics;
  graphics.drawText(u"a\"b\\c\u2212\u25CF\n\U0001D465\xD835|", 0, 3);
  graphics.drawLine(0, 14, 2, 16);
  graphics.drawHorizontalLine(2, 0, 12);
  graphics.drawVerticalLine(-2, 0, 17);
  graphics.drawOpenBracket(0, 0, 12, true);
  graphics.drawCloseBracket(30, 0, 12, false);
  graphics.drawBracketPair(4, 1, 10, 12, true);
  EXPECT_EQ(graphics.getText(),
            "drawText \"a\\\"b\\\\c−●\\u000A𝑥\\uD835|\" 0 3\n"
            "drawLine 0 14 2 16\n"
            "drawHorizontalLine 2 0 12\n"
            "drawVerticalLine -2 0 17\n"
            "drawOpenBracket 0 0 12 auto\n"
            "drawCloseBracket 30 0 12 user\n"
            "drawBracketPair 4 1 10 12 auto\n");
  EXPECT_EQ(graphics.getLines().size(), 7u);
}

TEST(Recording, NamesTheFontOnlyWhereItMatters) {
  RecordingGraphicsC graphics;
  graphics.selectFont(1);
  graphics.drawHorizontalLine(0, 0, 5);
  graphics.selectFont(0);
  graphics.drawText(u"a", 0, 0);
  graphics.selectFont(2);
  graphics.selectFont(1);
  graphics.drawOpenBracket(0, 0, 8, false);
  graphics.drawText(u"b", 0, 0);
  EXPECT_EQ(graphics.getText(),
            "drawHorizontalLine 0 0 5\ndrawText \"a\" 0 0\nselectFont 1\n"
            "drawOpenBracket 0 0 8 user\ndrawText \"b\" 0 0\n");
  graphics.clear();
  graphics.drawText(u"c", 0, 0);
  EXPECT_EQ(graphics.getText(), "selectFont 1\ndrawText \"c\" 0 0\n") << "a log stands for itself";
}

TEST(Recording, MeasuresByFixedMetricsAndCounts) {
  RecordingGraphicsC graphics;
  long width = -1, height = -1, midHeight = -1;
  graphics.getTextExtent(u"abc", width, height, midHeight);
  EXPECT_EQ((std::array{width, height, midHeight}), (std::array{18L, 10L, 5L}));
  EXPECT_EQ(graphics.getTextWidth(u""), 0);
  EXPECT_EQ(graphics.getTextHeight(u""), 10);
  EXPECT_EQ(graphics.getTextMidHeight(u""), 5);
  for (unsigned long const depth : {1ul, 2ul, 50ul}) {
    graphics.selectFont(depth);
    graphics.getTextExtent(u"abc", width, height, midHeight);
    EXPECT_EQ((std::array{width, height, midHeight}), (std::array{12L, 8L, 4L}));
  }
  EXPECT_EQ((std::array{graphics.getMetric(0), graphics.getMetric(1), graphics.getMetric(2),
                        graphics.getMetric(3), graphics.getMetric(4), graphics.getMetric(-1)}),
            (std::array{2L, 4L, 1L, 3L, 0L, 0L}));
  graphics.invalidate();
  EXPECT_EQ(graphics.getMeasureCount(), 7u);
  EXPECT_EQ(graphics.getInvalidateCount(), 1u);
  graphics.resetCounts();
  EXPECT_EQ(graphics.getMeasureCount() + graphics.getInvalidateCount(), 0u);
}

}  // namespace
}  // namespace zolt::surfaces
