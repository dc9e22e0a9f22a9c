#include "zolt/surfaces/cairo/detail/cairo_faces.h"

#include <cairo-ft.h>
#include <ft2build.h>

#include FT_FREETYPE_H

namespace zolt::surfaces {

namespace {

struct LibraryCloserS {
  void operator()(FT_Library library) const { FT_Done_FreeType(library); }
};
using SharedLibraryT = std::shared_ptr<FT_LibraryRec_>;

/// What a Cairo face needs during its lifetime, in the order in which it must be released.
struct FaceHoldS {
  SharedLibraryT library;
  oss::PointerTC<FontSetC const> fonts;
  FT_Face face = nullptr;

  ~FaceHoldS() {
    if (face) FT_Done_Face(face);
  }
};

cairo_user_data_key_t const hold_key = {};

FontFaceT openFace(SharedLibraryT const& library, oss::PointerTC<FontSetC const> const& fonts,
                   unsigned index) {
  auto hold = std::make_unique<FaceHoldS>();
  hold->library = library;
  hold->fonts = fonts;
  std::string const& bytes = fonts->getFont(index).getBytes();
  if (FT_New_Memory_Face(library.get(), reinterpret_cast<FT_Byte const*>(bytes.data()), FT_Long(bytes.size()),
                         0, &hold->face) != 0) {
    return nullptr;
  }
  FontFaceT face(cairo_ft_font_face_create_for_ft_face(hold->face, FT_LOAD_NO_HINTING));
  auto const release = [](void* data) { delete static_cast<FaceHoldS*>(data); };
  if (cairo_font_face_set_user_data(face.get(), &hold_key, hold.get(), release) != CAIRO_STATUS_SUCCESS) {
    return nullptr;
  }
  hold.release();
  return face;
}

}  // namespace

bool CairoFacesC::open() {
  if (!faces_.empty()) return true;
  FT_Library opened = nullptr;
  if (FT_Init_FreeType(&opened) != 0) return false;
  SharedLibraryT const library(opened, LibraryCloserS());
  std::vector<FontFaceT> faces;
  for (unsigned index = 0; index < fonts_->getFaceCount(); ++index) {
    faces.push_back(openFace(library, fonts_, index));
    if (!faces.back()) return false;
  }
  faces_ = std::move(faces);
  return true;
}

void CairoFacesC::select(cairo_t* context, unsigned face, double em) const {
  cairo_set_font_face(context, faces_[face].get());
  cairo_set_font_size(context, em);
  cairo_font_options_t* const options = cairo_font_options_create();
  cairo_font_options_set_hint_style(options, CAIRO_HINT_STYLE_NONE);
  cairo_font_options_set_hint_metrics(options, CAIRO_HINT_METRICS_OFF);
  cairo_set_font_options(context, options);
  cairo_font_options_destroy(options);
}

}  // namespace zolt::surfaces
