#pragma once

#include <algorithm>
#include <functional>

#include "zolt/surfaces/recording/recording_graphics.h"

namespace zolt::tests {

/// A recording surface of odd sizes, on which every font depth has its own: a character is 7 wide, 11 high
/// with its axis at 4 (5, 7 and 3 at depth 1, 3, 5 and 2 below), a comma one wider; the four metrics are 2,
/// 4, 1 and 3 and one more for each depth.
class UnevenGraphicsC final : public math::ved::GraphicsABC {
 public:
  surfaces::RecordingGraphicsC const& crefRecord() const { return record_; }

  /// What the host does when it is asked for a repaint.
  std::function<void()> onInvalidate;

  void invalidate() const override {
    record_.invalidate();
    if (onInvalidate) onInvalidate();
  }
  void getTextExtent(oss::wstring const& text, long& width, long& height, long& midHeight) const override {
    width = getTextWidth(text);
    height = getTextHeight(text);
    midHeight = getTextMidHeight(text);
  }
  long getTextWidth(oss::wstring const& text) const override {
    long const commas = std::count(text.begin(), text.end(), u',');
    return static_cast<long>(text.size()) * (7 - 2 * level()) + commas;
  }
  long getTextHeight(oss::wstring const&) const override {
    return 11 - 4 * std::min(level(), 1l) - 2 * (level() / 2);
  }
  long getTextMidHeight(oss::wstring const&) const override { return 4 - level(); }
  long getMetric(long index) const override { return record_.getMetric(index) + static_cast<long>(depth_); }
  void drawText(oss::wstring const& text, long x, long y) const override { record_.drawText(text, x, y); }
  void drawLine(long x1, long y1, long x2, long y2) const override { record_.drawLine(x1, y1, x2, y2); }
  void drawHorizontalLine(long x, long y, long length) const override {
    record_.drawHorizontalLine(x, y, length);
  }
  void drawVerticalLine(long x, long y, long length) const override {
    record_.drawVerticalLine(x, y, length);
  }
  void drawOpenBracket(long x, long y, long height, bool automatic) const override {
    record_.drawOpenBracket(x, y, height, automatic);
  }
  void drawCloseBracket(long x, long y, long height, bool automatic) const override {
    record_.drawCloseBracket(x, y, height, automatic);
  }
  void drawBracketPair(long x, long y, long width, long height, bool automatic) const override {
    record_.drawBracketPair(x, y, width, height, automatic);
  }
  void selectFont(unsigned long fontDepth) const override {
    depth_ = fontDepth;
    record_.selectFont(fontDepth);
  }

 private:
  long level() const { return static_cast<long>(std::min(depth_, 2ul)); }

  surfaces::RecordingGraphicsC record_;
  mutable unsigned long depth_ = 0;
};

}  // namespace zolt::tests
