#pragma once

#include <cairo.h>

#include <memory>
#include <vector>

#include "zolt/oss/pointer.h"
#include "zolt/surfaces/typeset/font_set.h"

// Internal to the Cairo library.

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

/// The faces of a font set for Cairo. Cairo may keep a face in its own caches for longer than this object
/// lives, so each face holds a reference to the bytes of its file.
class CairoFacesC {
 public:
  explicit CairoFacesC(oss::PointerTC<FontSetC const> fonts) : fonts_(fonts) {}

  FontSetC const& getFonts() const { return *fonts_; }

  /// Opens every face on the first call. Returns false when FreeType refuses one.
  [[nodiscard]] bool open();

  /// Makes a face current in `context`, without hinting. `open` must have succeeded before.
  void select(cairo_t* context, unsigned face, double em) const;

 private:
  oss::PointerTC<FontSetC const> fonts_;
  std::vector<FontFaceT> faces_;
};

}  // namespace zolt::surfaces
