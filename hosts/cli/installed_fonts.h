#pragma once

#include <string>

#include "zolt/oss/pointer.h"
#include "zolt/surfaces/typeset/typeset_graphics.h"

namespace zolt::cli {

/// The shared look with the installed fonts. Returns null, with `error`, when they cannot be found.
oss::PointerTC<surfaces::TypesetterC> makeTypesetter(std::string& error);

/// Measures as the shared look does, and draws nothing.
class MeasuringGraphicsC final : public surfaces::TypesetGraphicsABC {
 public:
  using TypesetGraphicsABC::TypesetGraphicsABC;

 protected:
  void fillGlyphs(surfaces::GlyphRunS const&) const override {}
  void fillPath(surfaces::PathC const&, surfaces::InkE) const override {}
  void strokePath(surfaces::PathC const&, double, surfaces::InkE) const override {}
  void fillRule(surfaces::RuleS const&, surfaces::InkE) const override {}
};

}  // namespace zolt::cli
