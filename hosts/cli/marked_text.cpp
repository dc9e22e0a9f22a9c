#include "hosts/cli/marked_text.h"

#include <algorithm>
#include <iterator>

#include "hosts/cli/utf8_text.h"
#include "hosts/support/terminal_text.h"
#include "zolt/oss/code_point.h"

namespace zolt::cli {

namespace {

constexpr std::size_t max_columns = 76;
constexpr std::size_t room_before = 48;

struct RangeS {
  char32_t first, last;
};

constexpr RangeS combining[] = {
    {0x0300, 0x036F},   {0x0483, 0x0489}, {0x0591, 0x05BD}, {0x0610, 0x061A}, {0x064B, 0x065F},
    {0x06D6, 0x06DC},   {0x0900, 0x0902}, {0x093C, 0x093C}, {0x0941, 0x0948}, {0x0E34, 0x0E3A},
    {0x1AB0, 0x1AFF},   {0x1DC0, 0x1DFF}, {0x200B, 0x200F}, {0x202A, 0x202E}, {0x2060, 0x2064},
    {0x20D0, 0x20F0},   {0x3099, 0x309A}, {0xFE00, 0xFE0F}, {0xFE20, 0xFE2F}, {0xFEFF, 0xFEFF},
    {0xE0100, 0xE01EF},
};

constexpr RangeS wide[] = {
    {0x1100, 0x115F},   {0x231A, 0x231B},   {0x2329, 0x232A},   {0x2E80, 0x303E},
    {0x3041, 0x4DBF},   {0x4E00, 0xA4CF},   {0xA960, 0xA97C},   {0xAC00, 0xD7A3},
    {0xF900, 0xFAFF},   {0xFE30, 0xFE6F},   {0xFF01, 0xFF60},   {0xFFE0, 0xFFE6},
    {0x1F300, 0x1F64F}, {0x1F680, 0x1F6FF}, {0x1F900, 0x1F9FF}, {0x20000, 0x3FFFD},
};

template <std::size_t N>
bool isIn(RangeS const (&ranges)[N], char32_t c) {
  auto const* const range = std::lower_bound(std::begin(ranges), std::end(ranges), c,
                                             [](RangeS const& r, char32_t value) { return r.last < value; });
  return range != std::end(ranges) && range->first <= c;
}

/// How much a character counts in a line of limited length. Combining characters count too, because a text
/// may consist of them alone.
std::size_t getRoom(char32_t c) { return std::max(1u, getColumnWidth(c)); }

/// Finds where the shown part of the text begins: far enough before `marked` to fill a line with what follows
/// it.
std::size_t findBegin(std::u16string_view text, std::size_t marked) {
  std::size_t after = 0;
  for (std::size_t i = marked; i < text.size() && after < max_columns;)
    after += getRoom(oss::readCodePoint(text, i));
  std::size_t room = max_columns - std::min(after, max_columns - room_before);
  std::size_t first = marked;
  while (first > 0) {
    std::size_t i = first - (first > 1 && oss::isLowSurrogate(text[first - 1]) ? 2 : 1);
    std::size_t const previous = i;
    std::size_t const width = getRoom(oss::readCodePoint(text, i));
    // The last column is kept for the sign that marks an omission.
    if (width + (previous > 0 ? 1 : 0) > room) break;
    room -= width;
    first = previous;
  }
  return first;
}

}  // namespace

unsigned getColumnWidth(char32_t c) { return isIn(combining, c) ? 0 : isIn(wide, c) ? 2 : 1; }

std::size_t countColumn(std::u16string_view text, std::size_t index) {
  std::size_t column = 1;
  for (std::size_t i = 0; i < std::min(index, text.size()); ++column) oss::readCodePoint(text, i);
  return column;
}

MarkedTextS markText(std::u16string_view text, std::size_t begin, std::size_t end) {
  begin = std::min(begin, text.size());
  end = std::clamp(end, begin, text.size());
  std::size_t const first = findBegin(text, begin);

  std::u16string shown;
  std::size_t columns = 0;
  std::size_t room = max_columns;
  if (first > 0) {
    shown += u'…';
    ++columns;
    --room;
  }
  std::size_t markBegin = std::u16string::npos;
  std::size_t markEnd = 0;
  std::size_t i = first;
  while (i < text.size()) {
    std::size_t const start = i;
    char32_t const c = oss::readCodePoint(text, i);
    if (getRoom(c) > room) {
      i = start;
      break;
    }
    room -= getRoom(c);
    if (start >= begin && markBegin == std::u16string::npos) markBegin = columns;
    std::u16string const character = support::getShown(std::u16string(text.substr(start, i - start)));
    shown += character;
    columns += character[0] == text[start] ? getColumnWidth(c) : 1;
    if (start < end) markEnd = columns;
  }
  if (i < text.size()) shown += u'…';
  if (markBegin == std::u16string::npos) markBegin = columns;

  MarkedTextS marked;
  marked.text = toUtf8(shown);
  marked.marker.assign(markBegin, ' ');
  marked.marker += '^';
  if (markEnd > markBegin + 1) marked.marker.append(markEnd - markBegin - 1, '~');
  return marked;
}

}  // namespace zolt::cli
