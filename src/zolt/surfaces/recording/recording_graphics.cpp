#include "zolt/surfaces/recording/recording_graphics.h"

#include "zolt/oss/code_point.h"

namespace zolt::surfaces {

namespace {

constexpr long metrics[] = {2, 4, 1, 3};

void appendEscape(std::string& out, char32_t c) {
  constexpr char digits[] = "0123456789ABCDEF";
  out += "\\u";
  for (int shift = 12; shift >= 0; shift -= 4) out += digits[(c >> shift) & 0xF];
}

void appendQuoted(std::string& out, oss::wstring const& text) {
  out += '"';
  for (std::size_t i = 0; i < text.size();) {
    char32_t const c = oss::readCodePoint(text, i);
    if (c < 0x20 || (c >= 0x7F && c < 0xA0) || oss::isSurrogate(c)) {
      appendEscape(out, c);
    } else {
      if (c == '"' || c == '\\') out += '\\';
      oss::appendUtf8(out, c);
    }
  }
  out += '"';
}

void appendNumbers(std::string& line, std::initializer_list<long> numbers) {
  for (long const number : numbers) line.append(1, ' ').append(std::to_string(number));
}

}  // namespace

std::string RecordingGraphicsC::getText() const {
  std::string text;
  for (std::string const& line : lines_) text.append(line).append(1, '\n');
  return text;
}

void RecordingGraphicsC::clear() {
  lines_.clear();
  loggedDepth_ = 0;
}

void RecordingGraphicsC::resetCounts() {
  measureCount_ = 0;
  invalidateCount_ = 0;
}

RecordingGraphicsC::FontS RecordingGraphicsC::measure() const {
  ++measureCount_;
  return depth_ == 0 ? FontS{6, 10, 5} : FontS{4, 8, 4};
}

void RecordingGraphicsC::getTextExtent(oss::wstring const& text, long& width, long& height,
                                       long& midHeight) const {
  FontS const font = measure();
  width = long(text.size()) * font.characterWidth;
  height = font.height;
  midHeight = font.midHeight;
}

long RecordingGraphicsC::getTextWidth(oss::wstring const& text) const {
  return long(text.size()) * measure().characterWidth;
}

long RecordingGraphicsC::getTextHeight(oss::wstring const&) const { return measure().height; }

long RecordingGraphicsC::getTextMidHeight(oss::wstring const&) const { return measure().midHeight; }

long RecordingGraphicsC::getMetric(long index) const { return index >= 0 && index < 4 ? metrics[index] : 0; }

void RecordingGraphicsC::drawText(oss::wstring const& text, long x, long y) const {
  if (mode_ == LOG_NOTHING) return;
  logFont();
  std::string line = "drawText ";
  appendQuoted(line, text);
  appendNumbers(line, {x, y});
  lines_.push_back(std::move(line));
}

void RecordingGraphicsC::drawLine(long x1, long y1, long x2, long y2) const {
  log("drawLine", {x1, y1, x2, y2});
}

void RecordingGraphicsC::drawHorizontalLine(long x, long y, long length) const {
  log("drawHorizontalLine", {x, y, length});
}

void RecordingGraphicsC::drawVerticalLine(long x, long y, long length) const {
  log("drawVerticalLine", {x, y, length});
}

void RecordingGraphicsC::drawOpenBracket(long x, long y, long height, bool automatic) const {
  logBracket("drawOpenBracket", {x, y, height}, automatic);
}

void RecordingGraphicsC::drawCloseBracket(long x, long y, long height, bool automatic) const {
  logBracket("drawCloseBracket", {x, y, height}, automatic);
}

void RecordingGraphicsC::drawBracketPair(long x, long y, long width, long height, bool automatic) const {
  logBracket("drawBracketPair", {x, y, width, height}, automatic);
}

void RecordingGraphicsC::logFont() const {
  if (depth_ == loggedDepth_) return;
  loggedDepth_ = depth_;
  lines_.push_back("selectFont " + std::to_string(depth_));
}

void RecordingGraphicsC::log(char const* call, std::initializer_list<long> arguments) const {
  if (mode_ == LOG_NOTHING) return;
  std::string line = call;
  appendNumbers(line, arguments);
  lines_.push_back(std::move(line));
}

void RecordingGraphicsC::logBracket(char const* call, std::initializer_list<long> arguments,
                                    bool automatic) const {
  if (mode_ == LOG_NOTHING) return;
  logFont();
  log(call, arguments);
  lines_.back() += automatic ? " auto" : " user";
}

}  // namespace zolt::surfaces
