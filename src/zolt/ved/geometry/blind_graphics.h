#pragma once

#include "zolt/ved/geometry/graphics.h"

namespace zolt::math::ved {

/// A surface on which everything has size 0, for formulas that are not shown.
class BlindGraphicsC final : public GraphicsABC {
 public:
  void invalidate() const override {}
  void getTextExtent(oss::wstring const&, long& width, long& height, long& midHeight) const override {
    width = height = midHeight = 0;
  }
  long getTextWidth(oss::wstring const&) const override { return 0; }
  long getTextHeight(oss::wstring const&) const override { return 0; }
  long getTextMidHeight(oss::wstring const&) const override { return 0; }
  long getMetric(long) const override { return 0; }
  void drawText(oss::wstring const&, long, long) const override {}
  void drawLine(long, long, long, long) const override {}
  void drawHorizontalLine(long, long, long) const override {}
  void drawVerticalLine(long, long, long) const override {}
  void drawOpenBracket(long, long, long, bool) const override {}
  void drawCloseBracket(long, long, long, bool) const override {}
  void drawBracketPair(long, long, long, long, bool) const override {}
  void selectFont(unsigned long) const override {}
};

}  // namespace zolt::math::ved
