#pragma once

#include <initializer_list>
#include <string>
#include <vector>

#include "zolt/ved/geometry/graphics.h"

namespace zolt::surfaces {

/// A drawing surface without a screen: it has fixed metrics and records every drawing call as one line of
/// text.
///
/// Metrics, in units: at depth 0 each 16-bit character is 6 wide, and a line is 10 high with its axis at 5;
/// at depth 1 and deeper they are 4, 8 and 4. The empty text is 0 wide and as high as any other. `getMetric`
/// 0 to 3 are 2, 4, 1 and 3 at every depth, and 0 for any other index.
///
/// A line is the name of the call and its arguments: `drawText "x" 0 3`, `drawLine 0 14 2 16`,
/// `drawOpenBracket 0 0 12 auto` (or `user`), `drawBracketPair 4 1 10 12 auto`. Texts are in UTF-8; a quote
/// and a backslash have a backslash before them, and control characters and unpaired surrogates are written
/// `\u001B`. A call whose look depends on the font (a text or a bracket) has a line `selectFont 1` before it
/// when the depth differs from that of the last such call; a fresh log starts at depth 0. Measurements and
/// repaint requests are counted, not logged.
class RecordingGraphicsC : public math::ved::GraphicsABC {
 public:
  enum LogModeE { LOG_CALLS = 0, LOG_NOTHING = 1 };

  /// With `LOG_NOTHING` no call allocates memory.
  explicit RecordingGraphicsC(LogModeE mode = LOG_CALLS) : mode_(mode) {}

  std::vector<std::string> const& getLines() const { return lines_; }
  /// The lines, each ended by "\n".
  std::string getText() const;
  /// Clears the lines and the logged font depth; the current font and the counts stay.
  void clear();

  /// How many texts have been measured (`getTextExtent` and the three single queries).
  unsigned long getMeasureCount() const { return measureCount_; }
  unsigned long getInvalidateCount() const { return invalidateCount_; }
  void resetCounts();

  void invalidate() const override { ++invalidateCount_; }
  void getTextExtent(oss::wstring const& text, long& width, long& height, long& midHeight) const override;
  long getTextWidth(oss::wstring const& text) const override;
  long getTextHeight(oss::wstring const& text) const override;
  long getTextMidHeight(oss::wstring const& text) const override;
  long getMetric(long index) const override;
  void drawText(oss::wstring const& text, long x, long y) const override;
  void drawLine(long x1, long y1, long x2, long y2) const override;
  void drawHorizontalLine(long x, long y, long length) const override;
  void drawVerticalLine(long x, long y, long length) const override;
  void drawOpenBracket(long x, long y, long height, bool automatic) const override;
  void drawCloseBracket(long x, long y, long height, bool automatic) const override;
  void drawBracketPair(long x, long y, long width, long height, bool automatic) const override;
  void selectFont(unsigned long fontDepth) const override { depth_ = fontDepth; }

 private:
  struct FontS {
    long characterWidth, height, midHeight;
  };

  /// Counts a measurement in the current font.
  FontS measure() const;
  void logFont() const;
  void log(char const* call, std::initializer_list<long> arguments) const;
  void logBracket(char const* call, std::initializer_list<long> arguments, bool automatic) const;

  LogModeE mode_;
  mutable unsigned long depth_ = 0;
  mutable unsigned long loggedDepth_ = 0;
  mutable unsigned long measureCount_ = 0;
  mutable unsigned long invalidateCount_ = 0;
  mutable std::vector<std::string> lines_;
};

}  // namespace zolt::surfaces
