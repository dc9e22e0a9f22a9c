#pragma once

#include <cstddef>
#include <cstdlib>
#include <map>
#include <string>
#include <utility>

#include "zolt/ved/ved.h"

using zolt::oss::wstring;

inline std::string toUtf8(wstring const& text) {
  std::string out;
  for (char16_t c : text) {
    if (c >= 0x800)
      out += {static_cast<char>(0xE0 | c >> 12), static_cast<char>(0x80 | (c >> 6 & 0x3F))};
    else if (c >= 0x80)
      out += static_cast<char>(0xC0 | c >> 6);
    out += static_cast<char>(c >= 0x80 ? 0x80 | (c & 0x3F) : c);
  }
  return out;
}

/// A drawing surface made of characters: everything goes into cells of 8 by 10 units.
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
    height = CELL_HEIGHT;
    midHeight = CELL_HEIGHT / 2;
  }
  long getTextWidth(wstring const& text) const override {
    return static_cast<long>(text.size()) * CELL_WIDTH;
  }
  long getTextHeight(wstring const&) const override { return CELL_HEIGHT; }
  long getTextMidHeight(wstring const&) const override { return CELL_HEIGHT / 2; }
  long getMetric(long index) const override {
    constexpr long metrics[] = {0, CELL_WIDTH, 0, 8};  // 8: a fraction's bar gets a row of its own
    return metrics[index];
  }
  void drawText(wstring const& text, long x, long y) const override {
    for (std::size_t i = 0; i < text.size(); ++i) put(x + static_cast<long>(i) * CELL_WIDTH, y, text[i]);
  }
  void drawLine(long x1, long y1, long x2, long y2) const override {
    char16_t const stroke = (x1 < x2) == (y1 < y2) ? u'\\' : u'/';
    long const rows = std::abs(y2 - y1) / CELL_HEIGHT + 1;
    for (long i = 0; i < rows; ++i) put(x1 + (x2 - x1) * i / rows, y1 + (y2 - y1) * i / rows, stroke);
  }
  void drawHorizontalLine(long x, long y, long length) const override {
    for (long i = 0; i < length / CELL_WIDTH; ++i) put(x + i * CELL_WIDTH, y - CELL_HEIGHT / 2, u'-');
  }
  void drawVerticalLine(long x, long y, long length) const override {
    for (long i = 0; i < length / CELL_HEIGHT; ++i) put(x, y + i * CELL_HEIGHT, u'|');
  }
  void drawOpenBracket(long x, long y, long height, bool) const override {
    drawVerticalLine(x, y, height);
    put(x, y, height > CELL_HEIGHT ? u'/' : u'(');
    if (height > CELL_HEIGHT) put(x, y + height - CELL_HEIGHT, u'\\');
  }
  void drawCloseBracket(long x, long y, long height, bool) const override {
    drawVerticalLine(x - CELL_WIDTH, y, height);
    put(x - CELL_WIDTH, y, height > CELL_HEIGHT ? u'\\' : u')');
    if (height > CELL_HEIGHT) put(x - CELL_WIDTH, y + height - CELL_HEIGHT, u'/');
  }
  void drawBracketPair(long x, long y, long width, long height, bool automatic) const override {
    drawOpenBracket(x - CELL_WIDTH, y, height, automatic);
    drawCloseBracket(x + width + CELL_WIDTH, y, height, automatic);
  }
  void selectFont(unsigned long) const override {}  // characters have one size

 private:
  static constexpr long CELL_WIDTH = 8;
  static constexpr long CELL_HEIGHT = 10;

  void put(long x, long y, char16_t character) const {
    cells_[{(y + CELL_HEIGHT / 2) / CELL_HEIGHT, (x + CELL_WIDTH / 2) / CELL_WIDTH}] = character;
  }

  mutable std::map<std::pair<long, long>, char16_t> cells_;  // by row, then column
};
