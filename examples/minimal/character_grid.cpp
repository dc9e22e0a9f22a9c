#include "character_grid.h"

#include <algorithm>
#include <cstdlib>

using zolt::oss::wstring;

namespace {

constexpr long CELL_WIDTH = 8;
constexpr long CELL_HEIGHT = 10;

void appendUtf8(std::string& out, char16_t c) {
  if (c < 0x80) {
    out += static_cast<char>(c);
  } else if (c < 0x800) {
    out += static_cast<char>(0xC0 | c >> 6);
    out += static_cast<char>(0x80 | (c & 0x3F));
  } else {
    out += static_cast<char>(0xE0 | c >> 12);
    out += static_cast<char>(0x80 | (c >> 6 & 0x3F));
    out += static_cast<char>(0x80 | (c & 0x3F));
  }
}

}  // namespace

std::string toUtf8(wstring const& text) {
  std::string out;
  for (char16_t c : text) appendUtf8(out, c);
  return out;
}

std::string CharacterGridC::toString() const {
  std::string out;
  long row = 0;
  long column = 0;
  for (auto const& [place, character] : cells_) {
    for (; row < place.first; ++row, column = 0) out += '\n';
    for (; column < place.second; ++column) out += ' ';
    appendUtf8(out, character);
    ++column;
  }
  return out + '\n';
}

void CharacterGridC::getTextExtent(wstring const& text, long& width, long& height, long& midHeight) const {
  width = getTextWidth(text);
  height = getTextHeight(text);
  midHeight = getTextMidHeight(text);
}

long CharacterGridC::getTextWidth(wstring const& text) const {
  return static_cast<long>(text.size()) * CELL_WIDTH;
}

long CharacterGridC::getTextHeight(wstring const&) const { return CELL_HEIGHT; }

long CharacterGridC::getTextMidHeight(wstring const&) const { return CELL_HEIGHT / 2; }

long CharacterGridC::getMetric(long index) const {
  constexpr long metrics[] = {0, CELL_WIDTH, 0, 8};  // a fraction's bar gets a row of its own
  return metrics[index];
}

void CharacterGridC::drawText(wstring const& text, long x, long y) const {
  for (char16_t character : text) {
    put(x, y, character);
    x += CELL_WIDTH;
  }
}

void CharacterGridC::drawLine(long x1, long y1, long x2, long y2) const {
  char16_t const stroke = (x1 < x2) == (y1 < y2) ? u'\\' : u'/';
  for (long i = 0, steps = std::abs(y2 - y1) / CELL_HEIGHT; i <= steps; ++i)
    put(x1 + (x2 - x1) * i / (steps + 1), std::min(y1, y2) + i * CELL_HEIGHT, stroke);
}

void CharacterGridC::drawHorizontalLine(long x, long y, long length) const {
  for (long end = x + length - CELL_WIDTH / 2; x < end; x += CELL_WIDTH) put(x, y - CELL_HEIGHT / 2, u'-');
}

void CharacterGridC::drawVerticalLine(long x, long y, long length) const {
  for (long end = y + length - CELL_HEIGHT / 2; y < end; y += CELL_HEIGHT) put(x, y, u'|');
}

void CharacterGridC::drawOpenBracket(long x, long y, long height, bool) const {
  if (height <= CELL_HEIGHT) return put(x, y, u'(');
  drawVerticalLine(x, y, height);
  put(x, y, u'/');
  put(x, y + height - CELL_HEIGHT, u'\\');
}

void CharacterGridC::drawCloseBracket(long x, long y, long height, bool) const {
  x -= CELL_WIDTH;
  if (height <= CELL_HEIGHT) return put(x, y, u')');
  drawVerticalLine(x, y, height);
  put(x, y, u'\\');
  put(x, y + height - CELL_HEIGHT, u'/');
}

void CharacterGridC::drawBracketPair(long x, long y, long width, long height, bool automatic) const {
  drawOpenBracket(x - CELL_WIDTH, y, height, automatic);
  drawCloseBracket(x + width + CELL_WIDTH, y, height, automatic);
}

void CharacterGridC::put(long x, long y, char16_t character) const {
  cells_[{(y + CELL_HEIGHT / 2) / CELL_HEIGHT, (x + CELL_WIDTH / 2) / CELL_WIDTH}] = character;
}
