#include "hosts/web/bridge/display_list.h"

#include <cmath>
#include <cstring>

#include "hosts/web/bridge/bridge.h"
#include "zolt/surfaces/typeset/font_size.h"

namespace zolt::web {

namespace {

/// Places are on a grid so fine that nobody sees it, on which the last digits of a computation, which differ
/// from one library of mathematics to the next, are no more.
constexpr double grid = 1024;

/// Letters of scripts that have square ones are that much wider than others.
constexpr double narrow = 0.55, wide = 1;
constexpr char16_t first_wide = 0x2E80;

}  // namespace

std::int32_t toWord(double value) {
  // The sum turns a negative zero into a positive one.
  float const rounded = static_cast<float>(std::floor(value * grid + 0.5) / grid + 0.0);
  std::int32_t word;
  static_assert(sizeof word == sizeof rounded);
  std::memcpy(&word, &rounded, sizeof word);
  return word;
}

void DisplayListC::begin(std::vector<std::int32_t>& words, std::optional<math::ved::RectangleS> const& clip) {
  words_ = &words;
  showOnly(clip);
}

void DisplayListC::end() {
  words_ = nullptr;
  showOnly(std::nullopt);
}

void DisplayListC::addFloat(double value) const { add(toWord(value)); }

long DisplayListC::getComposedWidth(oss::wstring const& text) const {
  double width = 0;
  for (char16_t const c : text) width += c >= first_wide ? wide : narrow;
  return static_cast<long>(std::ceil(width * fontSize().em));
}

void DisplayListC::drawComposed(oss::wstring const& text, long x, long y) const {
  if (!words_) return;
  add(ZOLT_ITEM_TEXT);
  addFloat(fontSize().em);
  addFloat(static_cast<double>(x));
  addFloat(static_cast<double>(y) + fontSize().baseline);
  addFloat(static_cast<double>(getComposedWidth(text)));
  add(static_cast<std::int32_t>(text.size()));
  for (char16_t const c : text) add(c);
}

void DisplayListC::fillGlyphs(surfaces::GlyphRunS const& run) const {
  if (!words_) return;
  add(ZOLT_ITEM_GLYPHS);
  add(static_cast<std::int32_t>(run.face));
  addFloat(run.em);
  addFloat(run.baseline);
  add(static_cast<std::int32_t>(run.count));
  for (std::size_t i = 0; i < run.count; ++i) {
    add(static_cast<std::int32_t>(run.glyphs[i].codePoint));
    addFloat(run.x + run.glyphs[i].x);
  }
}

void DisplayListC::addPath(surfaces::PathC const& path) const {
  std::size_t const start = words_->size();
  add(0);
  for (surfaces::PathStepS const& step : path.getSteps()) {
    add(step.verb);
    for (int i = 0; i < step.countPoints(); ++i) {
      addFloat(step.points[i].x);
      addFloat(step.points[i].y);
    }
  }
  (*words_)[start] = static_cast<std::int32_t>(words_->size() - start - 1);
}

void DisplayListC::fillPath(surfaces::PathC const& path, surfaces::InkE ink) const {
  if (!words_) return;
  add(ZOLT_ITEM_FILL);
  add(ink);
  addPath(path);
}

void DisplayListC::strokePath(surfaces::PathC const& path, double thickness, surfaces::InkE ink) const {
  if (!words_) return;
  add(ZOLT_ITEM_STROKE);
  add(ink);
  addFloat(thickness);
  addPath(path);
}

void DisplayListC::fillRule(surfaces::RuleS const& rule, surfaces::InkE ink) const {
  if (!words_) return;
  add(ZOLT_ITEM_RULE);
  add(ink);
  for (double const value : {rule.x1, rule.y1, rule.x2, rule.y2, rule.thickness}) addFloat(value);
}

}  // namespace zolt::web
