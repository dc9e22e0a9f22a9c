#pragma once

#include <cstdint>
#include <vector>

#include "zolt/surfaces/typeset/typeset_graphics.h"

namespace zolt::web {

/// A surface that keeps what is drawn as the words of a display list (`ZoltItemE`).
class DisplayListC final : public surfaces::TypesetGraphicsABC {
 public:
  using TypesetGraphicsABC::TypesetGraphicsABC;

  /// What is drawn from now on, the part in the clip box of it (none: all), is appended to `words`, until
  /// `end`. Drawing at other times has no effect.
  void begin(std::vector<std::int32_t>& words, std::optional<math::ved::RectangleS> const& clip);
  void end();

  /// Text that is being composed is shown in the font of the page, in a width that is only estimated.
  long getComposedWidth(oss::wstring const& text) const override;
  void drawComposed(oss::wstring const& text, long x, long y) const override;

 protected:
  void fillGlyphs(surfaces::GlyphRunS const& run) const override;
  void fillPath(surfaces::PathC const& path, surfaces::InkE ink) const override;
  void strokePath(surfaces::PathC const& path, double thickness, surfaces::InkE ink) const override;
  void fillRule(surfaces::RuleS const& rule, surfaces::InkE ink) const override;

 private:
  void add(std::int32_t word) const { words_->push_back(word); }
  void addFloat(double value) const;
  void addPath(surfaces::PathC const& path) const;

  std::vector<std::int32_t>* words_ = nullptr;
};

/// The word that holds a float32.
std::int32_t toWord(double value);

}  // namespace zolt::web
