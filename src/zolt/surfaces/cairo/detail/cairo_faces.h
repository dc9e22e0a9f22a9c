#pragma once

#include <cairo.h>

#include <cstdint>
#include <map>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "zolt/oss/pointer.h"
#include "zolt/surfaces/typeset/drawing.h"
#include "zolt/surfaces/typeset/font_set.h"
#include "zolt/surfaces/typeset/path.h"

// Internal to the Cairo library.

struct FT_FaceRec_;

namespace zolt::surfaces {

/// Gives up a reference to an object of Cairo.
struct ReleaseS {
  void operator()(cairo_t* context) const { cairo_destroy(context); }
  void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
  void operator()(cairo_font_face_t* face) const { cairo_font_face_destroy(face); }
};
using ContextT = std::unique_ptr<cairo_t, ReleaseS>;
using SurfaceT = std::unique_ptr<cairo_surface_t, ReleaseS>;
using FontFaceT = std::unique_ptr<cairo_font_face_t, ReleaseS>;

/// An outline as a path.
PathC toPath(OutlineT const& outline);

/// The faces of a font set for Cairo. Cairo may keep a face in its own caches for longer than this object
/// lives, so each face holds a reference to the bytes of its file.
class CairoFacesC final : public GlyphSourceABC {
 public:
  explicit CairoFacesC(oss::PointerTC<FontSetC const> fonts) : fonts_(fonts) {}

  FontSetC const& getFonts() const override { return *fonts_; }

  /// Opens every face on the first call. Returns false when FreeType refuses one.
  [[nodiscard]] bool open();

  // `open` must have succeeded before these are called.

  /// Makes a face current in `context`, without hinting.
  void select(cairo_t* context, unsigned face, double em) const;
  OutlineT const& outline(unsigned face, std::uint16_t glyph) const override;
  /// The whole file where none with these characters alone can be made.
  std::string makeSubset(unsigned face, std::set<char32_t> const& characters) const override;

 private:
  oss::PointerTC<FontSetC const> fonts_;
  std::vector<FontFaceT> faces_;
  std::vector<FT_FaceRec_*> files_;  // the same faces, kept open by `faces_`
  mutable std::map<std::pair<unsigned, std::uint16_t>, OutlineT> outlines_;
};

}  // namespace zolt::surfaces
