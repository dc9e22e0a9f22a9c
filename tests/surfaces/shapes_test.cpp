#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <iterator>

#include "tests/surfaces/probe_graphics.h"
#include "zolt/surfaces/typeset/font_size.h"

namespace zolt::surfaces {
namespace {

class TypesetShapes : public ::testing::Test {
 protected:
  void expectFill(BoundsS const& room, double slack) const {
    ASSERT_EQ(graphics.fills.size(), 1u);
    BoundsS const& ink = graphics.fills[0];
    EXPECT_GE(ink.left, room.left - slack);
    EXPECT_GE(ink.top, room.top - slack);
    EXPECT_LE(ink.right, room.right + slack);
    EXPECT_LE(ink.bottom, room.bottom + slack);
    // And it fills the room that the strokes were given.
    EXPECT_LT(ink.left, room.left + 1);
    EXPECT_LT(ink.top, room.top + 1);
    EXPECT_GT(ink.right, room.right - 1);
    EXPECT_GT(ink.bottom, room.bottom - 1.5);
  }

  static BoundsS box(double left, double top, double right, double bottom) {
    PathC path;
    path.moveTo({left, top});
    path.lineTo({right, bottom});
    return BoundsS(path);
  }

  oss::PointerTC<TypesetterC> const typesetter = makeTypesetter();
  ProbeGraphicsC const graphics{typesetter};
};

TEST_F(TypesetShapes, IntegralIsOneOutline) {
  for (long const height : {20L, 29L, 60L, 300L}) {
    graphics.clear();
    graphics.drawLine(14, 6, 13, 5);
    graphics.drawLine(13, 5, 12, 6);
    graphics.drawVerticalLine(12, 6, height - 2);
    graphics.drawLine(10, 5 + height - 2, 11, 5 + height - 1);
    graphics.drawLine(11, 5 + height - 1, 12, 5 + height - 2);
    EXPECT_EQ(graphics.kinds, "") << "held back until nothing can be added";
    graphics.drawText(u"d", 40, 12);
    EXPECT_EQ(graphics.kinds, "fg");
    expectFill(box(10, 5, 15, 5 + double(height)), 0.5);
  }
}

TEST_F(TypesetShapes, SumIsOneOutline) {
  long const size = 16, left = 3, top = 20, middle = top + size / 2, bottom = top + size;
  graphics.drawHorizontalLine(left, top, size);
  graphics.drawHorizontalLine(left, bottom, size);
  graphics.drawLine(left, top, left + size / 2, middle);
  graphics.drawLine(left + size / 2, middle, left, bottom);
  graphics.finish();
  EXPECT_EQ(graphics.kinds, "f");
  // A unit away from the limit above, which may have a descender, and half a unit from that below.
  expectFill(box(left, top + 1, left + size, bottom - 0.5), 1e-9);
}

TEST_F(TypesetShapes, RadicalIsAnOutlineUnderAStraightBar) {
  long const x = 10, y = 5, width = 30;
  for (long const height : {12L, 17L, 80L}) {
    graphics.clear();
    graphics.drawLine(x, y + height - 4, x + 3, y + height - 1);
    graphics.drawVerticalLine(x + 3, y, height);
    graphics.drawHorizontalLine(x + 3, y, width - 3);
    graphics.finish();
    EXPECT_EQ(graphics.kinds, "fr");
    expectFill(box(x, y, x + 4, double(y + height)), 0.7);
    ASSERT_EQ(graphics.rules.size(), 1u);
    EXPECT_EQ(graphics.rules[0].x1, x + 3.5);
    EXPECT_EQ(graphics.rules[0].x2, x + width - 0.5);
    EXPECT_EQ(graphics.rules[0].y1, y + 0.5);
  }
  // With an index above it the tick stays in the rows that it was drawn in.
  graphics.clear();
  graphics.drawLine(10, 95, 14, 99);
  graphics.drawVerticalLine(14, 20, 80);
  graphics.drawHorizontalLine(14, 20, 30);
  graphics.finish();
  EXPECT_EQ(graphics.kinds, "fr");
}

TEST_F(TypesetShapes, StraightLinesStayBars) {
  graphics.drawHorizontalLine(2, 7, 30);
  graphics.selectFont(0);
  ASSERT_EQ(graphics.rules.size(), 1u);
  RuleS const bar = graphics.rules[0];
  EXPECT_EQ(bar.x1, 2.5);
  EXPECT_EQ(bar.x2, 31.5);
  EXPECT_EQ(bar.y1, 7.5);
  EXPECT_EQ(bar.y2, 7.5);
  graphics.clear();
  // A ceiling: four bars in two corners, no smooth strokes.
  graphics.drawVerticalLine(0, 0, 16);
  graphics.drawHorizontalLine(0, 0, 5);
  graphics.drawVerticalLine(29, 0, 16);
  graphics.drawHorizontalLine(25, 0, 5);
  graphics.finish();
  EXPECT_EQ(graphics.kinds, "rrrr");
  graphics.clear();
  graphics.drawHorizontalLine(0, 0, 0);
  graphics.drawVerticalLine(0, 0, -3);
  graphics.finish();
  EXPECT_EQ(graphics.kinds, "") << "nothing to draw";
}

TEST_F(TypesetShapes, OtherStrokesAreJoinedWhereTheyMeet) {
  // Three sides of a zigzag in scrambled order and direction, and a line apart from them.
  graphics.drawLine(10, 0, 20, 10);
  graphics.drawLine(40, 0, 30, 10);
  graphics.drawLine(100, 100, 110, 105);
  graphics.drawLine(20, 10, 30, 10);
  graphics.finish();
  ASSERT_EQ(graphics.kinds, "ss");
  std::vector<std::size_t> sizes;
  for (PathC const& path : graphics.strokes) sizes.push_back(path.getSteps().size());
  std::sort(sizes.begin(), sizes.end());
  EXPECT_EQ(sizes, (std::vector<std::size_t>{2, 4}));
  graphics.clear();
  graphics.drawLine(0, 0, 5, 5);
  graphics.selectFont(1);
  graphics.drawLine(5, 5, 10, 0);
  graphics.finish();
  EXPECT_EQ(graphics.kinds, "ss") << "another operator's strokes are not joined on";
  graphics.clear();
  for (long i = 0; i < 100000; ++i) graphics.drawLine(i, i % 2, i + 1, (i + 1) % 2);
  graphics.finish();
  EXPECT_LT(graphics.kinds.size(), 5000u);
}

TEST_F(TypesetShapes, BracketsGrowInsideTheirCells) {
  for (unsigned long depth = 0; depth < 3; ++depth) {
    FontSizeS const& size = getFontSize(depth);
    double const cell = double(size.metrics[1]), shift = 0.5 * double(size.metrics[0]);
    double narrowest = 1e9, widest = 0;
    for (long const height : {1L, 5L, 9L, 15L, 30L, 45L, 90L, 500L}) {
      PathC openPath, closePath;
      appendBracket(openPath, BRACKET_OPEN, BRACKET_AROUND_BOX, 10, 3, double(height), size);
      appendBracket(closePath, BRACKET_CLOSE, BRACKET_AROUND_BOX, 10, 3, double(height), size);
      BoundsS const open(openPath), close(closePath);
      EXPECT_GE(open.left, 10);
      EXPECT_LE(open.right, 10 + cell);
      EXPECT_GE(open.top, 3);
      EXPECT_LE(open.bottom, 3 + height);
      EXPECT_GT(open.bottom - open.top, 0.75 * double(height)) << height;
      EXPECT_NEAR(open.left - 10, 10 + cell - close.right, 1e-9) << "mirror images";
      EXPECT_NEAR(open.top - 3, 3 + double(height) - open.bottom, 1e-6) << "upside down the same";
      narrowest = std::min(narrowest, open.right - open.left);
      widest = std::max(widest, open.right - open.left);
      PathC inRow;
      appendBracket(inRow, BRACKET_OPEN, BRACKET_IN_ROW, 10, 3, double(height), size);
      EXPECT_GE(BoundsS(inRow).left, 10 - shift);
    }
    EXPECT_GT(widest, narrowest * 1.15) << "higher ones bend further out";
  }
  PathC none;
  appendBracket(none, BRACKET_OPEN, BRACKET_IN_ROW, 0, 0, 0, getFontSize(0));
  EXPECT_TRUE(none.getSteps().empty());
}

TEST_F(TypesetShapes, SuppliedBracketsAreLighterAndThoseOfConstructsOverhang) {
  graphics.drawOpenBracket(0, 0, 15, false);
  graphics.drawCloseBracket(40, 0, 15, true);
  graphics.drawBracketPair(20, 10, 30, 13, true);
  ASSERT_EQ(graphics.kinds, "ffff");
  EXPECT_EQ(graphics.inks, (std::vector{INK_TEXT, INK_SUPPLIED, INK_TEXT, INK_TEXT}));
  EXPECT_LT(getInkStrength(INK_SUPPLIED), getInkStrength(INK_TEXT));
  long const cell = graphics.getMetric(1);
  BoundsS const& open = graphics.fills[2];
  BoundsS const& close = graphics.fills[3];
  EXPECT_GE(open.left, 20 - cell);
  EXPECT_LE(open.right, 20);
  EXPECT_GE(close.left, 50);
  EXPECT_LE(close.right, 50 + cell);
  EXPECT_LE(open.top, 10);
  EXPECT_GE(open.bottom, 23);
}

/// The drawing calls of a row follow one another edge to edge; what stands left of a sign tells what it is.
TEST_F(TypesetShapes, WhatStandsLeftOfASignPlacesIt) {
  long const gap = graphics.getMetric(0), cell = graphics.getMetric(1);
  auto const shiftOfMinus = [&](long x) {
    graphics.drawText(u"\u2212b", x, 0);
    double const shift = graphics.glyphs.front() - double(x);
    graphics.clear();
    graphics.finish();
    return shift;
  };
  auto const drawAtDepth = [&](oss::wstring const& text, long x, long y, unsigned long depth) {
    graphics.selectFont(depth);
    graphics.drawText(text, x, y);
    graphics.selectFont(0);
    graphics.clear();
  };
  double const prefix = shiftOfMinus(50);
  graphics.drawCloseBracket(50, -1, 15, false);
  graphics.clear();
  double const binary = shiftOfMinus(50);
  EXPECT_LT(binary, prefix - 1) << "a prefix stands close to its operand";
  EXPECT_EQ(shiftOfMinus(50), prefix) << "another drawing";
  graphics.drawOpenBracket(50 - cell, -1, 15, false);
  graphics.clear();
  EXPECT_EQ(shiftOfMinus(50), prefix);
  graphics.drawBracketPair(20, 0, 50 - gap - cell - 20, 13, true);
  graphics.clear();
  EXPECT_EQ(shiftOfMinus(50), binary);
  graphics.drawHorizontalLine(20, -12, 50 - gap - 20);
  EXPECT_EQ(shiftOfMinus(50), binary) << "the bar of a radical";

  graphics.selectFont(1);
  long const width = graphics.getTextWidth(u"10");
  long const height = graphics.getTextHeight(u"");
  graphics.selectFont(0);
  drawAtDepth(u"10", 50 - gap - width, -30, 1);
  EXPECT_EQ(shiftOfMinus(50), binary) << "the exponent of something high";
  drawAtDepth(u"0", 50 - gap - width, 20, 1);
  drawAtDepth(u"10", 50 - gap - width, -height, 1);
  EXPECT_EQ(shiftOfMinus(50), prefix) << "the bounds of an integral";
  drawAtDepth(u"a", 50 - gap - graphics.getTextWidth(u"a"), -20, 0);
  EXPECT_EQ(shiftOfMinus(50), prefix) << "another row";
}

TEST_F(TypesetShapes, ExponentsStandCloseWhateverTheirBaseRoundsTo) {
  constexpr long overlap = 5;
  double least = 1e9, most = -1e9;
  for (oss::wstring const base :
       {u"x", u"a", u"b", u"n", u"f", u"T", u"V", u"10", u"x1", u"1+x", u"\u03B1"}) {
    graphics.finish();
    graphics.drawText(base, 0, 0);
    long const x = graphics.getTextWidth(base) + graphics.getMetric(0);
    double const end = graphics.inkEnd;
    graphics.selectFont(1);
    graphics.clear();
    graphics.drawText(u"2", x, overlap - graphics.getTextHeight(u""));
    double const distance = graphics.glyphs[0] - end;
    least = std::min(least, distance);
    most = std::max(most, distance);
    graphics.clear();
    graphics.drawText(u"2", x, 3);
    EXPECT_EQ(graphics.glyphs[0], double(x)) << "a limit or an index is no exponent";
    graphics.selectFont(0);
    graphics.clear();
  }
  EXPECT_GT(least, -0.5);
  EXPECT_LT(most, 0.7);
}

TEST_F(TypesetShapes, WhatStandsFarOutIsNotAskedFor) {
  ProbeGraphicsC probe(typesetter);
  auto const isSeen = [](double x) { return x >= 0 && x <= 300; };
  auto const draw = [&] {
    probe.clear();
    for (long x = -5000; x < 5000; x += 30) {
      probe.drawText(u"f+", x, x / 30 % 2 == 0 ? 0 : 4000);
      probe.drawOpenBracket(x + 20, 0, 13, false);
    }
    probe.finish();
  };
  auto const seen = [&] {
    std::vector<double> places;
    std::copy_if(probe.glyphs.begin(), probe.glyphs.end(), std::back_inserter(places), isSeen);
    for (BoundsS const& fill : probe.fills) {
      if (isSeen(fill.left)) places.push_back(fill.left);
    }
    return places;
  };
  draw();
  std::size_t const all = probe.kinds.size();
  std::vector<double> const whole = seen();
  probe.showOnly({0, -4000}, {300, 4100});
  draw();
  EXPECT_EQ(seen(), whole);
  EXPECT_LT(probe.kinds.size(), all / 10);
  std::size_t const withFar = probe.kinds.size();
  probe.showOnly({0, 0}, {300, 20});
  draw();
  EXPECT_LT(probe.kinds.size(), withFar * 3 / 4);
  probe.showAll();
  draw();
  EXPECT_EQ(probe.kinds.size(), all);
}

TEST(Rules, CoverWholePixels) {
  for (double const scale : {0.7, 1.0, 1.25, 1.75, 2.0, 3.0}) {
    RuleS const bar{3.5, 7.5, 20.5, 7.5, 0.55}, stem{3.5, 7.5, 3.5, 30.5, 0.55};
    PixelBoxS const a = snapRule(bar, scale, 0.3, 0.6), b = snapRule(stem, scale, 0.3, 0.6);
    for (double const edge : {a.x, a.y, a.width, a.height, b.x, b.y, b.width, b.height}) {
      EXPECT_EQ(edge, std::round(edge)) << scale;
    }
    EXPECT_GE(a.height, 1);
    EXPECT_EQ(a.height, b.width);
    EXPECT_EQ(a.x, b.x) << "a sharp corner";
    EXPECT_EQ(a.y, b.y);
  }
}

}  // namespace
}  // namespace zolt::surfaces
