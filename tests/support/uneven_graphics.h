#pragma once

#include <algorithm>
#include <functional>

#include "zolt/surfaces/recording/recording_graphics.h"

namespace zolt::tests {

/// A recording surface of odd sizes, on which every font depth has its own: a character is 7 wide, 11 high
/// with its axis at 4 (5, 7 and 3 at depth 1, 3, 5 and 2 below), a comma one wider; the four metrics are 2,
/// 4, 1 and 3 and one more for each depth.
class UnevenGraphicsC : public surfaces::RecordingGraphicsC {
 public:
  /// What the host does when it is asked for a repaint.
  std::function<void()> onInvalidate;
  /// What it does when the surface measures or draws a text or changes the font.
  std::function<void()> onUse;

  void invalidate() const override {
    RecordingGraphicsC::invalidate();
    if (onInvalidate) onInvalidate();
  }
  void getTextExtent(oss::wstring const& text, long& width, long& height, long& midHeight) const override {
    width = getTextWidth(text);
    height = getTextHeight(text);
    midHeight = getTextMidHeight(text);
  }
  long getTextWidth(oss::wstring const& text) const override {
    if (onUse) onUse();
    long const commas = std::count(text.begin(), text.end(), u',');
    return static_cast<long>(text.size()) * (7 - 2 * level()) + commas;
  }
  long getTextHeight(oss::wstring const&) const override {
    return 11 - 4 * std::min(level(), 1l) - 2 * (level() / 2);
  }
  long getTextMidHeight(oss::wstring const&) const override { return 4 - level(); }
  long getMetric(long index) const override {
    return RecordingGraphicsC::getMetric(index) + static_cast<long>(depth_);
  }
  void selectFont(unsigned long fontDepth) const override {
    if (onUse) onUse();
    depth_ = fontDepth;
    RecordingGraphicsC::selectFont(fontDepth);
  }
  void drawText(oss::wstring const& text, long x, long y) const override {
    if (onUse) onUse();
    RecordingGraphicsC::drawText(text, x, y);
  }

 private:
  long level() const { return static_cast<long>(std::min(depth_, 2ul)); }

  mutable unsigned long depth_ = 0;
};

}  // namespace zolt::tests
