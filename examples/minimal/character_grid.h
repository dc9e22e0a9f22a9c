#pragma once

#include <map>
#include <string>
#include <utility>

#include "zolt/ved/ved.h"

std::string toUtf8(zolt::oss::wstring const& text);

/// A drawing surface made of characters: everything is drawn into cells of 8 by 10 units.
class CharacterGridC : public zolt::math::ved::GraphicsABC {
 public:
  /// What was drawn so far, in UTF-8, one line per row of cells.
  std::string toString() const;

  void invalidate() const override { cells_.clear(); }
  void getTextExtent(zolt::oss::wstring const& text, long& width, long& height,
                     long& midHeight) const override;
  long getTextWidth(zolt::oss::wstring const& text) const override;
  long getTextHeight(zolt::oss::wstring const& text) const override;
  long getTextMidHeight(zolt::oss::wstring const& text) const override;
  long getMetric(long index) const override;
  void drawText(zolt::oss::wstring const& text, long x, long y) const override;
  void drawLine(long x1, long y1, long x2, long y2) const override;
  void drawHorizontalLine(long x, long y, long length) const override;
  void drawVerticalLine(long x, long y, long length) const override;
  void drawOpenBracket(long x, long y, long height, bool automatic) const override;
  void drawCloseBracket(long x, long y, long height, bool automatic) const override;
  void drawBracketPair(long x, long y, long width, long height, bool automatic) const override;
  void selectFont(unsigned long) const override {}  // characters have one size

 private:
  void put(long x, long y, char16_t character) const;

  mutable std::map<std::pair<long, long>, char16_t> cells_;  // by row, then column
};
