#pragma once

#include <cairo.h>

#include <vector>

#include "zolt/oss/pointer.h"
#include "zolt/surfaces/typeset/font_set.h"

// Internal to the Cairo library.

namespace zolt::surfaces {

/// The faces of a font set for Cairo. Cairo may keep a face in its own caches for longer than this object
/// lives, so each face holds a reference to the bytes of its file.
class CairoFacesC {
 public:
  explicit CairoFacesC(oss::PointerTC<FontSetC const> fonts) : fonts_(fonts) {}
  ~CairoFacesC();
  CairoFacesC(CairoFacesC const&) = delete;
  CairoFacesC& operator=(CairoFacesC const&) = delete;

  /// Opens every face on the first call. Returns false when FreeType refuses one.
  [[nodiscard]] bool open();

  /// Makes a face current in `context`, without hinting. `open` must have succeeded before.
  void select(cairo_t* context, unsigned face, double em) const;

 private:
  oss::PointerTC<FontSetC const> fonts_;
  std::vector<cairo_font_face_t*> faces_;
};

}  // namespace zolt::surfaces
