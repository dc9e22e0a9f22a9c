#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>
#include <string>
#include <vector>

#include "zolt/surfaces/typeset/font_set.h"
#include "zolt/surfaces/typeset/typeset_graphics.h"

namespace zolt::surfaces {

/// A typesetter on the installed fonts. A machine without them fails the test instead of skipping it.
inline oss::PointerTC<TypesetterC> makeTypesetter() {
  std::string error;
  oss::PointerTC<FontSetC> const fonts = FontSetC::load(FontSetC::getDefaultFolders(), error);
  if (!fonts) {
    ADD_FAILURE() << error;
    std::abort();
  }
  return new TypesetterC(fonts);
}

/// Smallest box around all points of a path, controls included.
struct BoundsS {
  double left = 1e9, top = 1e9, right = -1e9, bottom = -1e9;

  explicit BoundsS(PathC const& path) {
    for (PathStepS const& step : path.getSteps()) {
      for (int i = 0; i < step.countPoints(); ++i) {
        left = std::min(left, step.points[i].x), right = std::max(right, step.points[i].x);
        top = std::min(top, step.points[i].y), bottom = std::max(bottom, step.points[i].y);
      }
    }
  }
};

/// Keeps the primitives that the shared look asks for.
class ProbeGraphicsC final : public TypesetGraphicsABC {
 public:
  using TypesetGraphicsABC::showOnly;
  using TypesetGraphicsABC::TypesetGraphicsABC;

  /// Kinds in order: 'g' glyphs, 'f' fill, 's' stroke, 'r' rule.
  mutable std::string kinds;
  mutable std::vector<BoundsS> fills;
  mutable std::vector<RuleS> rules;
  mutable std::vector<InkE> inks;
  mutable std::vector<double> glyphs;  ///< their positions
  mutable PathC stroked;               ///< the last stroke
  mutable double inkEnd = 0;           ///< of the last glyph

  void clear() const {
    kinds.clear();
    fills.clear(), rules.clear(), inks.clear(), glyphs.clear();
  }

 protected:
  void fillGlyphs(GlyphRunS const& run) const override {
    kinds += 'g';
    for (std::size_t i = 0; i < run.count; ++i) glyphs.push_back(run.x + run.glyphs[i].x);
    PlacedGlyphS const& last = run.glyphs[run.count - 1];
    inkEnd = glyphs.back() + last.width + last.overhang;
  }
  void fillPath(PathC const& path, InkE ink) const override {
    kinds += 'f';
    fills.emplace_back(path);
    inks.push_back(ink);
  }
  void strokePath(PathC const& path, double, InkE) const override {
    kinds += 's';
    stroked = path;
  }
  void fillRule(RuleS const& rule, InkE) const override {
    kinds += 'r';
    rules.push_back(rule);
  }
};

}  // namespace zolt::surfaces
