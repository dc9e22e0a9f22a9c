#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>

#include "tests/surfaces/probe_graphics.h"
#include "zolt/surfaces/recording/recording_graphics.h"
#include "zolt/surfaces/typeset/bracket_shape.h"
#include "zolt/surfaces/typeset/detail/brush.h"
#include "zolt/surfaces/typeset/font_size.h"
#include "zolt/surfaces/typeset/row_fit.h"

namespace zolt::surfaces {
namespace {

using namespace math::ved;

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

TEST_F(TypesetShapes, SignsFillTheirBoxes) {
  for (long const height : {20L, 29L, 60L, 300L}) {
    graphics.clear();
    graphics.drawSign(SIGN_INTEGRAL, 10, 5, 5, height);
    EXPECT_EQ(graphics.kinds, "f");
    // Clear of the upper bound, which starts a unit right of the box.
    expectFill(box(9, 5, 14.6, 5 + double(height)), 0.1);
  }
  graphics.clear();
  graphics.drawSign(SIGN_SUM, 3, 20, 16, 17);
  EXPECT_EQ(graphics.kinds, "f");
  // Away from the limits, of which that above may have a descender.
  expectFill(box(4, 20.75, 17.9, 34.8), 0.1);
  for (long const height : {12L, 17L, 80L}) {
    graphics.clear();
    graphics.drawSign(SIGN_RADICAL, 10, 5, 30, height);
    EXPECT_EQ(graphics.kinds, "rf");
    expectFill(box(10, 5, 14, 5 + double(height)), 0.7);
    ASSERT_EQ(graphics.rules.size(), 1u);
    EXPECT_EQ(graphics.rules[0].x1, 13.5);
    EXPECT_EQ(graphics.rules[0].x2, 39.5);
    EXPECT_EQ(graphics.rules[0].y1, 5.5);
  }
  graphics.clear();
  graphics.drawSign(SIGN_CEILING_BARS, 0, 0, 30, 16);
  graphics.drawHorizontalLine(0, 0, 0);
  graphics.drawVerticalLine(0, 0, -3);
  EXPECT_EQ(graphics.kinds, "rrrr") << "and nothing for lines without a length";
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
      EXPECT_GE(BoundsS(inRow).left, 10 - 2 * shift);
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

TEST_F(TypesetShapes, TheRoleOfATextPlacesIt) {
  auto const startOf = [&](TextRoleE role, oss::wstring const& text) {
    graphics.clear();
    graphics.drawTextAs(role, text, 50, 0);
    return graphics.glyphs.front();
  };
  // A sign is close to its operand, and what is before it close to the sign; a "d" is close to its variable.
  double const origin = startOf(TEXT_STARTS_ROW, u"\u2212b"), operand = graphics.glyphs[1];
  EXPECT_LT(operand - origin, startOf(TEXT_FOLLOWS_ITEM, u"\u2212b") + 12 - 50);
  EXPECT_NEAR(startOf(TEXT_IS_INTEGRAL_D, u"d"), 50.75, 1e-9);
  EXPECT_NEAR(startOf(TEXT_IS_LOWER_D, u"d"), 51.75, 1e-9);
  auto const reach = [&](oss::wstring const& text, auto const& draw) {
    graphics.clear();
    graphics.beginsWith(text);
    draw();
    return graphics.fills.empty() ? graphics.rules.front().x1 : graphics.fills.front().right;
  };
  auto const expectCloser = [&](auto const& draw) {
    double const alone = reach(u"b", draw), minus = reach(u"\u2212b", draw);
    EXPECT_GT(minus, alone + 1);
    EXPECT_LT(minus, alone + 2);
    EXPECT_GT(reach(u"+", draw), minus);
    draw();
    EXPECT_EQ(reach(u"", draw), alone) << "told for one sign only";
  };
  expectCloser([&] { graphics.drawOpenBracket(0, 0, 15, false); });
  expectCloser([&] { graphics.drawBracketPair(20, 0, 30, 13, true); });
  expectCloser([&] { graphics.drawSign(SIGN_ABSOLUTE_BARS, 0, 0, 30, 15); });
  expectCloser([&] { graphics.drawSign(SIGN_RADICAL, 0, 0, 30, 15); });
  expectCloser([&] { graphics.drawHorizontalLine(0, 0, 30); });
  double least = 1e9, most = -1e9;
  for (oss::wstring const base :
       {u"x", u"a", u"b", u"n", u"f", u"T", u"V", u"10", u"x1", u"1+x", u"\u03B1"}) {
    graphics.drawText(base, 50 - graphics.getTextWidth(base) - graphics.getMetric(0), 0);
    double const end = graphics.inkEnd, distance = startOf(TEXT_STARTS_EXPONENT, u"2") - end;
    least = std::min(least, distance);
    most = std::max(most, distance);
    graphics.drawText(base, 0, 0);
    EXPECT_EQ(startOf(TEXT_STARTS_ROW, u"2"), 50);
    graphics.drawText(base, 0, 0);
    graphics.drawText(u"", 0, 0);
    EXPECT_EQ(startOf(TEXT_STARTS_EXPONENT, u"2"), 50) << "on a bracket or a construct";
  }
  EXPECT_GT(least, -0.5);
  EXPECT_LT(most, 0.7);
}

// Lines on a plain surface; here a line or curve that goes through every point.
TEST_F(TypesetShapes, StrokesGoThroughTheirPoints) {
  std::vector<PointS> const points{{0, 0}, {4, 10}, {0, 20}, {4, 30}};
  RecordingGraphicsC const plain;
  plain.drawStroke(STROKE_SMOOTH, points);
  EXPECT_EQ(plain.getText(), "drawLine 0 0 4 10\ndrawLine 4 10 0 20\ndrawLine 0 20 4 30\n");
  for (StrokeE const kind : {STROKE_WITH_CORNERS, STROKE_SMOOTH}) {
    graphics.drawStroke(kind, points);
    std::vector<PathStepS> const& steps = graphics.stroked.getSteps();
    ASSERT_EQ(steps.size(), points.size());
    for (std::size_t i = 0; i < steps.size(); ++i) {
      PathPointS const target = steps[i].points[steps[i].verb == PATH_CURVE ? 2 : 0];
      EXPECT_EQ(target.x, double(points[i].x) + 0.5);
      EXPECT_EQ(target.y, double(points[i].y) + 0.5);
    }
  }
  graphics.drawStroke(STROKE_SMOOTH, {{1, 1}});
  EXPECT_EQ(graphics.kinds, "ss");
}

TEST(Brush, EndsStrokesRound) {
  BrushC brush;
  brush.moveTo({0, 0, 10});
  brush.lineTo({100, 0, 10});
  brush.lineTo({100, 100, 10});
  PathC path;
  brush.finish(path);
  int ends = 0;
  PathPointS from{};
  for (PathStepS const& step : path.getSteps()) {
    bool const isCurve = step.verb == PATH_CURVE;
    for (double const t : {0.25, 0.5, 0.75}) {
      double const u = 1 - t, b0 = u * u * u, b1 = 3 * u * u * t, b2 = 3 * u * t * t, b3 = t * t * t;
      auto const& [c1, c2, to] = step.points;
      double const x = b0 * from.x + b1 * c1.x + b2 * c2.x + b3 * to.x;
      double const y = b0 * from.y + b1 * c1.y + b2 * c2.y + b3 * to.y;
      if (!isCurve || (x > -0.1 && y < 100.1)) continue;
      ++ends;
      EXPECT_NEAR(x < 0 ? std::hypot(x, y) : std::hypot(x - 100, y - 100), 10, 0.01);
    }
    from = step.points[isCurve ? 2 : 0];
  }
  EXPECT_EQ(ends, 12);
}

TEST_F(TypesetShapes, GlyphsOutOfSightAreNotAskedFor) {
  ProbeGraphicsC probe(typesetter);
  oss::wstring const text(1000, u'x');
  probe.drawText(text, 0, 0);
  std::vector<double> const all = probe.glyphs;
  probe.clear();
  probe.showOnly(RectangleS(500, 0, 600, 13));
  probe.drawText(text, 0, 0);
  EXPECT_LT(probe.glyphs.size(), 25u);
  for (double const x : all) {
    bool const isSeen = x > 490 && x < 600;
    EXPECT_GE(std::count(probe.glyphs.begin(), probe.glyphs.end(), x), isSeen ? 1 : 0);
  }
}

/// Strokes of small letters begin and end between two rows of pixels, in their order.
TEST(RowFit, PutsStrokesOnRows) {
  for (bool const reversed : {false, true}) {
    PathC letter;  // three bars, from the lowest to the highest
    for (double const y : {0.0, -80.0, -640.0}) {
      PathPointS const corners[] = {{30, y}, {500, y}, {500, y - 44}, {30, y - 44}};
      letter.moveTo(corners[0]);
      for (int const i : {1, 2, 3}) letter.lineTo(corners[reversed ? 4 - i : i]);
      letter.close();
    }
    for (double em = 9; em < 24; em += 0.3) {
      PathC const fitted = fitToRows(letter, 1000, em / 1000);
      double above = 1;
      for (std::size_t bar = 0; bar < 3; ++bar) {
        double const bottom = fitted.getSteps()[5 * bar].points[0].y;
        double const top = fitted.getSteps()[5 * bar + 2].points[0].y;
        EXPECT_NEAR(top, std::round(top), 1e-9) << em;
        EXPECT_NEAR(bottom, std::round(bottom), 1e-9) << em;
        EXPECT_LT(top, bottom - 0.9) << em;
        EXPECT_LE(bottom, above + 1e-9) << em;
        above = top;
      }
    }
  }
}

}  // namespace
}  // namespace zolt::surfaces
