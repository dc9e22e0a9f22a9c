#include <gtest/gtest.h>

#include <array>
#include <cstdlib>
#include <new>

#include "zolt/surfaces/recording/recording_graphics.h"

namespace {

unsigned long allocations = 0;

}  // namespace

// Not inline: a compiler that sees through only one of the three takes them for a mismatch.
[[gnu::noinline]] void* operator new(std::size_t size) {
  ++allocations;
  if (void* const memory = std::malloc(size)) return memory;
  throw std::bad_alloc();
}
[[gnu::noinline]] void operator delete(void* memory) noexcept { std::free(memory); }
[[gnu::noinline]] void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }

namespace zolt::surfaces {
namespace {

void drawOneOfEach(math::ved::GraphicsABC const& graphics) {
  graphics.drawText(u"x", 0, 3);
  graphics.drawLine(0, 14, 2, 16);
  graphics.drawHorizontalLine(2, 0, 12);
  graphics.drawVerticalLine(-2, 0, 17);
  graphics.drawOpenBracket(0, 0, 12, true);
  graphics.drawOpenBracket(4, 1, 10, false);
  graphics.drawCloseBracket(30, 0, 12, false);
  graphics.drawBracketPair(4, 1, 10, 12, true);
}

TEST(Recording, WritesOneLinePerDrawingCall) {
  RecordingGraphicsC const graphics;
  drawOneOfEach(graphics);
  EXPECT_EQ(graphics.getText(),
            "drawText \"x\" 0 3\n"
            "drawLine 0 14 2 16\n"
            "drawHorizontalLine 2 0 12\n"
            "drawVerticalLine -2 0 17\n"
            "drawOpenBracket 0 0 12 auto\n"
            "drawOpenBracket 4 1 10 user\n"
            "drawCloseBracket 30 0 12 user\n"
            "drawBracketPair 4 1 10 12 auto\n");
  EXPECT_EQ(graphics.getLines().size(), 8u);
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

TEST(Recording, WritesTextsThatReadBack) {
  RecordingGraphicsC const graphics;
  graphics.drawText(u"a\"b\\c\u2212\u03B1\u25CF", 0, 0);
  graphics.drawText(oss::wstring(u"\u0000\n\u007F\u0085", 4), 0, 0);
  graphics.drawText(u"\xD835\xDC65|\xD835|\xDC65", 0, 0);
  graphics.drawText(u"", 0, 0);
  EXPECT_EQ(graphics.getText(),
            "drawText \"a\\\"b\\\\c\xE2\x88\x92\xCE\xB1\xE2\x97\x8F\" 0 0\n"
            "drawText \"\\u0000\\u000A\\u007F\\u0085\" 0 0\n"
            "drawText \"\xF0\x9D\x91\xA5|\\uD835|\\uDC65\" 0 0\n"
            "drawText \"\" 0 0\n");
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

TEST(Recording, LogsNothingWithoutAllocating) {
  RecordingGraphicsC const graphics(RecordingGraphicsC::LOG_NOTHING);
  oss::wstring const text(100, u'x');
  unsigned long const before = allocations;
  for (unsigned long depth = 0; depth < 3; ++depth) {
    graphics.selectFont(depth);
    graphics.drawText(text, 0, 0);
    graphics.getTextWidth(text);
    drawOneOfEach(graphics);
  }
  // The one-letter text of each round fits into the string object itself.
  EXPECT_EQ(allocations, before);
  EXPECT_TRUE(graphics.getLines().empty());
  EXPECT_EQ(graphics.getMeasureCount(), 3u);
}

}  // namespace
}  // namespace zolt::surfaces
