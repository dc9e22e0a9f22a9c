#include <gtest/gtest.h>

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

TEST(Recording, CountsWhatItDoesNotLog) {
  RecordingGraphicsC graphics;
  long width = 0, height = 0, midHeight = 0;
  graphics.getTextExtent(u"abc", width, height, midHeight);
  graphics.getTextWidth(u"");
  graphics.invalidate();
  EXPECT_EQ(graphics.getMeasureCount(), 2u);
  EXPECT_EQ(graphics.getInvalidateCount(), 1u);
  EXPECT_EQ(graphics.getMetric(4) + graphics.getMetric(-1), 0);
  graphics.resetCounts();
  EXPECT_EQ(graphics.getMeasureCount() + graphics.getInvalidateCount(), 0u);
  EXPECT_EQ(graphics.getText(), "");
}

}  // namespace
}  // namespace zolt::surfaces
