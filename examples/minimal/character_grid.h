#pragma once

#include <cstddef>
#include <cstdlib>
#include <map>
#include <string>
#include <utility>

#include "zolt/ved/ved.h"

using zolt::oss::toUtf8;
using zolt::oss::wstring;

/// A drawing surface made of characters, in cells of 5 by 20 units. A text is two cells high and stands in
/// the lower one, which leaves the upper one to what comes above it: an exponent, a bar. Strokes give way to
/// texts.
class CharacterGridC : public zolt::math::ved::GraphicsABC {
 public:
  std::string toString() const {
    wstring out;
    long row = 0;
    long column = 0;
    for (auto const& [place, character] : cells_) {
      for (; row < place.first; ++row, column = 0) out += u'\n';
      for (; column < place.second; ++column) out += u' ';
      out += character;
      ++column;
    }
    return toUtf8(out) + '\n';
  }

  void invalidate() const override { cells_.clear(); }
  void getTextExtent(wstring const& text, long& width, long& height, long& midHeight) const override {
    width = getTextWidth(text);
    height = getTextHeight(text);
    midHeight = getTextMidHeight(text);
  }
  long getTextWidth(wstring const& text) const override { return static_cast<long>(text.size()) * WIDTH; }
  long getTextHeight(wstring const&) const override { return 2 * HEIGHT; }
  long getTextMidHeight(wstring const&) const override { return HEIGHT + 2; }
  long getMetric(long index) const override {
    constexpr long metrics[] = {0, WIDTH, 0, 3};
    return metrics[index];
  }
  void drawText(wstring const& text, long x, long y) const override {
    for (std::size_t i = 0; i < text.size(); ++i)
      put(x + WIDTH - 1 + static_cast<long>(i) * WIDTH, y + HEIGHT, text[i]);
  }
  void drawLine(long x1, long y1, long x2, long y2) const override {
    long const steps = std::abs(y2 - y1) / HEIGHT + 1;
    char16_t const stroke = (x1 < x2) == (y1 < y2) ? u'\\' : u'/';
    for (long i = 0; i < steps; ++i) put(x1 + (x2 - x1) * i / steps, y1 - 5 + (y2 - y1) * i / steps, stroke);
  }
  void drawHorizontalLine(long x, long y, long length) const override {
    for (long i = 0; i < length; i += WIDTH) put(x + i, y, u'-');
  }
  void drawVerticalLine(long x, long y, long length) const override {
    for (long i = HEIGHT; i + HEIGHT <= length; i += HEIGHT) put(x, y + i, u'|');
  }
  void drawOpenBracket(long x, long y, long height, bool) const override {
    drawBracket(x + WIDTH - 1, y, height, height > 3 * HEIGHT ? u"/\\" : u"(");
  }
  void drawCloseBracket(long x, long y, long height, bool) const override {
    drawBracket(x - 1, y, height, height > 3 * HEIGHT ? u"\\/" : u")");
  }
  void drawBracketPair(long x, long y, long width, long height, bool automatic) const override {
    drawOpenBracket(x - WIDTH, y, height, automatic);
    drawCloseBracket(x + width + WIDTH, y, height, automatic);
  }
  void selectFont(unsigned long) const override {}  // characters have one size

 private:
  static constexpr long WIDTH = 5;
  static constexpr long HEIGHT = 20;

  void drawBracket(long x, long y, long height, wstring const& ends) const {
    put(x, y + HEIGHT, ends.front());
    put(x, y + height - HEIGHT, ends.back());
    drawVerticalLine(x, y, height);
  }
  void put(long x, long y, char16_t character) const { cells_.insert({{y / HEIGHT, x / WIDTH}, character}); }

  mutable std::map<std::pair<long, long>, char16_t> cells_;  // by row, then column
};
