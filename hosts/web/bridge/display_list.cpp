#include "hosts/web/bridge/display_list.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <map>

#include "hosts/web/bridge/bridge.h"
#include "hosts/web/bridge/buffers.h"
#include "zolt/surfaces/typeset/font_size.h"

namespace zolt::web {

namespace {

/// Places are on a grid so fine that nobody sees it, on which the last digits of a computation, which differ
/// from one library of mathematics to the next, are no more.
constexpr double grid = 1024;

/// Letters of scripts that have square ones are that much wider than others.
constexpr double narrow = 0.55, wide = 1;
constexpr char16_t first_wide = 0x2E80;

double toGrid(double value) { return std::floor(value * grid + 0.5) / grid; }

std::int32_t wordOf(float value) {
  std::int32_t word;
  static_assert(sizeof word == sizeof value);
  std::memcpy(&word, &value, sizeof word);
  return word;
}

struct KeptStepS {
  std::int32_t verb;
  int numPoints;
  surfaces::PathPointS points[3];
};

/// An outline with its box at the origin, on the grid.
struct KeptOutlineS {
  std::vector<KeptStepS> steps;
  std::size_t numWords = 0;
  double left = HUGE_VAL, right = -HUGE_VAL;
};

/// The outlines that were drawn last, for all fields.
KeptOutlineS const& findOutline(surfaces::OutlineS const& outline) {
  constexpr std::size_t most_kept = 100;
  static std::map<surfaces::OutlineS, KeptOutlineS>& all = *new std::map<surfaces::OutlineS, KeptOutlineS>;
  auto const found = all.find(outline);
  if (found != all.end()) return found->second;
  if (all.size() >= most_kept) all.clear();
  surfaces::PathC path;
  appendOutline(path, outline, 0, 0);
  KeptOutlineS& kept = all[outline];
  for (surfaces::PathStepS const& step : path.getSteps()) {
    KeptStepS on{step.verb, step.countPoints(), {}};
    for (int i = 0; i < on.numPoints; ++i) {
      on.points[i] = {toGrid(step.points[i].x), toGrid(step.points[i].y)};
      kept.left = std::min(kept.left, on.points[i].x);
      kept.right = std::max(kept.right, on.points[i].x);
    }
    kept.steps.push_back(on);
    kept.numWords += 1 + 2 * static_cast<std::size_t>(on.numPoints);
  }
  return kept;
}

bool areAlike(FrameS const& a, std::size_t i, FrameS const& b, std::size_t j) {
  return std::equal(a.at(i), a.at(i) + a.sizeOf(i), b.at(j), b.at(j) + b.sizeOf(j));
}

void addItems(SpanS& span, FrameS const& frame, std::size_t first, std::size_t end) {
  for (; first < end; ++first) span.add(frame.items[first].left, frame.items[first].right);
}

struct BandsS {
  std::int32_t const *begin, *end;
};

BandsS bandsOf(FrameS const& frame) {
  if (frame.words.empty()) return {nullptr, nullptr};
  std::int32_t const* const words = frame.words.data();
  return {words + words[ZOLT_FRAME_BANDS], words + words[ZOLT_FRAME_LIST]};
}

}  // namespace

void SpanS::add(std::int32_t from, std::int32_t to) {
  bool const isFirst = right < left;
  left = isFirst ? from : std::min(left, from);
  right = isFirst ? to : std::max(right, to);
}

void addChanges(SpanS& span, FrameS const& before, FrameS const& now) {
  BandsS const old = bandsOf(before), bands = bandsOf(now);
  if (!std::equal(old.begin, old.end, bands.begin, bands.end)) {
    for (BandsS const& some : {old, bands}) {
      for (std::int32_t const* box = some.begin; box < some.end; box += 4) span.add(box[0], box[2]);
    }
  }
  std::size_t begin = 0, oldEnd = before.items.size(), end = now.items.size();
  while (begin < oldEnd && begin < end && areAlike(before, begin, now, begin)) ++begin;
  while (begin < oldEnd && begin < end && areAlike(before, oldEnd - 1, now, end - 1)) --oldEnd, --end;
  addItems(span, before, begin, oldEnd);
  addItems(span, now, begin, end);
}

std::int32_t toWord(double value) {
  // The sum turns a negative zero into a positive one.
  return wordOf(static_cast<float>(toGrid(value) + 0.0));
}

void DisplayListC::begin(FrameS& frame, std::optional<math::ved::RectangleS> const& clip) {
  frame_ = &frame;
  showOnly(clip);
}

void DisplayListC::end() {
  frame_ = nullptr;
  showOnly(std::nullopt);
}

void DisplayListC::beginItem(std::int32_t item) const {
  frame_->items.push_back({frame_->words.size(), 0, 0});
  add(item);
}

void DisplayListC::setEdges(double left, double right) const {
  frame_->items.back().left = static_cast<std::int32_t>(std::floor(left));
  frame_->items.back().right = static_cast<std::int32_t>(std::ceil(right));
}

void DisplayListC::addFloat(double value) const { add(toWord(value)); }

long DisplayListC::getComposedWidth(oss::wstring const& text) const {
  double width = 0;
  for (char16_t const c : text) width += c >= first_wide ? wide : narrow;
  return static_cast<long>(std::ceil(width * fontSize().em));
}

void DisplayListC::drawComposed(oss::wstring const& text, long x, long y) const {
  if (!frame_) return;
  double const left = static_cast<double>(x), width = static_cast<double>(getComposedWidth(text));
  beginItem(ZOLT_ITEM_TEXT);
  setEdges(left - fontSize().em, left + width + fontSize().em);
  addFloat(fontSize().em);
  addFloat(left);
  addFloat(static_cast<double>(y) + fontSize().baseline);
  addFloat(width);
  add(static_cast<std::int32_t>(text.size()));
  for (char16_t const c : text) add(c);
}

void DisplayListC::fillGlyphs(surfaces::GlyphRunS const& run) const {
  if (!frame_) return;
  // The ink of a letter goes some way beyond its place on the line.
  surfaces::PlacedGlyphS const& last = run.glyphs[run.count - 1];
  beginItem(ZOLT_ITEM_GLYPHS);
  setEdges(run.x + run.glyphs[0].x - run.em / 2, run.x + last.x + last.width + run.em / 2);
  add(static_cast<std::int32_t>(run.face));
  addFloat(run.em);
  addFloat(run.baseline);
  add(static_cast<std::int32_t>(run.count));
  for (std::size_t i = 0; i < run.count; ++i) {
    add(static_cast<std::int32_t>(run.glyphs[i].codePoint));
    addFloat(run.x + run.glyphs[i].x);
  }
}

void DisplayListC::addPath(surfaces::PathC const& path, double spare) const {
  std::vector<std::int32_t>& words = frame_->words;
  std::size_t const start = words.size();
  double left = HUGE_VAL, right = -HUGE_VAL;
  add(0);
  for (surfaces::PathStepS const& step : path.getSteps()) {
    add(step.verb);
    for (int i = 0; i < step.countPoints(); ++i) {
      left = std::fmin(left, step.points[i].x);
      right = std::fmax(right, step.points[i].x);
      addFloat(step.points[i].x);
      addFloat(step.points[i].y);
    }
  }
  words[start] = static_cast<std::int32_t>(words.size() - start - 1);
  if (left <= right) setEdges(left - spare, right + spare);
}

void DisplayListC::fillPath(surfaces::PathC const& path, surfaces::InkE ink) const {
  if (!frame_) return;
  beginItem(ZOLT_ITEM_FILL);
  add(ink);
  addPath(path, 0);
}

void DisplayListC::fillOutline(surfaces::OutlineS const& outline, long x, long y, surfaces::InkE ink) const {
  if (!frame_) return;
  KeptOutlineS const& kept = findOutline(outline);
  if (kept.steps.empty()) return;
  beginItem(ZOLT_ITEM_FILL);
  add(ink);
  double const left = static_cast<double>(x), top = static_cast<double>(y);
  setEdges(kept.left + left, kept.right + left);
  add(toNumber(kept.numWords));
  std::vector<std::int32_t>& words = frame_->words;
  words.resize(words.size() + kept.numWords);
  std::int32_t* word = words.data() + words.size() - kept.numWords;
  for (KeptStepS const& step : kept.steps) {
    *word++ = step.verb;
    for (int i = 0; i < step.numPoints; ++i) {
      *word++ = wordOf(static_cast<float>(step.points[i].x + left));
      *word++ = wordOf(static_cast<float>(step.points[i].y + top));
    }
  }
}

void DisplayListC::strokePath(surfaces::PathC const& path, double thickness, surfaces::InkE ink) const {
  if (!frame_) return;
  beginItem(ZOLT_ITEM_STROKE);
  add(ink);
  addFloat(thickness);
  addPath(path, thickness);
}

void DisplayListC::fillRule(surfaces::RuleS const& rule, surfaces::InkE ink) const {
  if (!frame_) return;
  beginItem(ZOLT_ITEM_RULE);
  setEdges(std::fmin(rule.x1, rule.x2) - rule.thickness, std::fmax(rule.x1, rule.x2) + rule.thickness);
  add(ink);
  for (double const value : {rule.x1, rule.y1, rule.x2, rule.y2, rule.thickness}) addFloat(value);
}

}  // namespace zolt::web
