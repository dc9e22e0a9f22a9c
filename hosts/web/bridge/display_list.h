#pragma once

#include <cstdint>
#include <vector>

#include "zolt/surfaces/typeset/typeset_graphics.h"

namespace zolt::web {

/// Where an item of a display list begins, and how far its ink may reach to the sides, in units.
struct ItemPlaceS {
  std::size_t begin;
  std::int32_t left, right;
};

/// The words of a frame, and the items of its display list.
struct FrameS {
  std::vector<std::int32_t> words;
  std::vector<ItemPlaceS> items;

  std::int32_t const* at(std::size_t item) const { return words.data() + items[item].begin; }
  std::size_t sizeOf(std::size_t item) const {
    return (item + 1 < items.size() ? items[item + 1].begin : words.size()) - items[item].begin;
  }
};

/// How far something reaches to the sides; nothing when the right side is left of the left one.
struct SpanS {
  std::int32_t left, right;

  void add(std::int32_t from, std::int32_t to);
};

/// Adds to `span` where the display lists and the bands of the selection differ.
void addChanges(SpanS& span, FrameS const& before, FrameS const& now);

/// A surface that keeps what is drawn as the words of a display list (`ZoltItemE`).
class DisplayListC final : public surfaces::TypesetGraphicsABC {
 public:
  using TypesetGraphicsABC::TypesetGraphicsABC;

  /// What is drawn from now on, the part in the clip box of it (none: all), is appended to `frame`, until
  /// `end`. Drawing at other times has no effect.
  void begin(FrameS& frame, std::optional<math::ved::RectangleS> const& clip);
  void end();

  /// Text that is being composed is shown in the font of the page, in a width that is only estimated.
  long getComposedWidth(oss::wstring const& text) const override;
  void drawComposed(oss::wstring const& text, long x, long y) const override;

 protected:
  void fillGlyphs(surfaces::GlyphRunS const& run) const override;
  void fillPath(surfaces::PathC const& path, surfaces::InkE ink) const override;
  void fillOutline(surfaces::OutlineS const& outline, long x, long y, surfaces::InkE ink) const override;
  void strokePath(surfaces::PathC const& path, double thickness, surfaces::InkE ink) const override;
  void fillRule(surfaces::RuleS const& rule, surfaces::InkE ink) const override;

 private:
  void add(std::int32_t word) const { frame_->words.push_back(word); }
  void beginItem(std::int32_t item) const;
  void setEdges(double left, double right) const;
  void addFloat(double value) const;
  void addPath(surfaces::PathC const& path, double spare) const;

  FrameS* frame_ = nullptr;
};

/// The word that holds a float32.
std::int32_t toWord(double value);

}  // namespace zolt::web
