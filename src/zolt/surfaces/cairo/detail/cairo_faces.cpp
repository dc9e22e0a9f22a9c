#include "zolt/surfaces/cairo/detail/cairo_faces.h"

#include <cairo-ft.h>
#include <ft2build.h>
#include <hb-subset.h>

#include FT_FREETYPE_H
#include FT_OUTLINE_H

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

FontFaceT openFace(SharedLibraryT const& library, oss::PointerTC<FontSetC const> const& fonts, unsigned index,
                   FT_Face& file) {
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
  file = hold->face;
  hold.release();
  return face;
}

/// Takes the steps of an outline from FreeType.
struct StepTakerS {
  OutlineT steps;
  bool isOpen = false;

  void close() {
    if (isOpen) steps.push_back({'Z', 0, {}, {}});
    isOpen = false;
  }
  int take(char verb, std::initializer_list<FT_Vector const*> points) {
    if (verb == 'M') close();
    isOpen = true;
    OutlineStepS step{verb, 0, {}, {}};
    for (FT_Vector const* const point : points) {
      step.x[step.count] = point->x;
      step.y[step.count++] = -point->y;
    }
    steps.push_back(step);
    return 0;
  }
  static StepTakerS& of(void* user) { return *static_cast<StepTakerS*>(user); }
};

constexpr FT_Outline_Funcs step_functions = {
    [](FT_Vector const* to, void* user) { return StepTakerS::of(user).take('M', {to}); },
    [](FT_Vector const* to, void* user) { return StepTakerS::of(user).take('L', {to}); },
    [](FT_Vector const* control, FT_Vector const* to, void* user) {
      return StepTakerS::of(user).take('Q', {control, to});
    },
    [](FT_Vector const* c1, FT_Vector const* c2, FT_Vector const* to, void* user) {
      return StepTakerS::of(user).take('C', {c1, c2, to});
    },
    0,
    0};

struct SubsetReleaseS {
  void operator()(hb_blob_t* blob) const { hb_blob_destroy(blob); }
  void operator()(hb_face_t* face) const { hb_face_destroy(face); }
  void operator()(hb_subset_input_t* input) const { hb_subset_input_destroy(input); }
};
template <class T>
using SubsetT = std::unique_ptr<T, SubsetReleaseS>;

}  // namespace

PathC toPath(OutlineT const& outline) {
  PathC path;
  PathPointS at;
  for (OutlineStepS const& step : outline) {
    PathPointS p[3];
    for (int i = 0; i < step.count; ++i) p[i] = {double(step.x[i]), double(step.y[i])};
    auto const towards = [](PathPointS from, PathPointS control) {
      return PathPointS{from.x + (control.x - from.x) * 2 / 3, from.y + (control.y - from.y) * 2 / 3};
    };
    switch (step.verb) {
      case 'M':
        path.moveTo(p[0]);
        break;
      case 'L':
        path.lineTo(p[0]);
        break;
      case 'Q':
        path.curveTo(towards(at, p[0]), towards(p[1], p[0]), p[1]);
        break;
      case 'C':
        path.curveTo(p[0], p[1], p[2]);
        break;
      default:
        path.close();
    }
    if (step.count > 0) at = p[step.count - 1];
  }
  return path;
}

bool CairoFacesC::open() {
  if (!faces_.empty()) return true;
  FT_Library opened = nullptr;
  if (FT_Init_FreeType(&opened) != 0) return false;
  SharedLibraryT const library(opened, LibraryCloserS());
  std::vector<FontFaceT> faces;
  std::vector<FT_FaceRec_*> files(fonts_->getFaceCount());
  for (unsigned index = 0; index < fonts_->getFaceCount(); ++index) {
    faces.push_back(openFace(library, fonts_, index, files[index]));
    if (!faces.back()) return false;
  }
  faces_ = std::move(faces);
  files_ = std::move(files);
  return true;
}

OutlineT const& CairoFacesC::outline(unsigned face, std::uint16_t glyph) const {
  auto const [place, isNew] = outlines_.try_emplace({face, glyph});
  if (isNew && FT_Load_Glyph(files_[face], glyph, FT_LOAD_NO_SCALE | FT_LOAD_NO_BITMAP) == 0) {
    StepTakerS taker;
    FT_Outline_Decompose(&files_[face]->glyph->outline, &step_functions, &taker);
    taker.close();
    place->second = std::move(taker.steps);
  }
  return place->second;
}

std::string CairoFacesC::makeSubset(unsigned face, std::set<char32_t> const& characters) const {
  std::string const& whole = fonts_->getFont(face).getBytes();
  SubsetT<hb_blob_t> const bytes(
      hb_blob_create(whole.data(), unsigned(whole.size()), HB_MEMORY_MODE_READONLY, nullptr, nullptr));
  SubsetT<hb_face_t> const source(hb_face_create(bytes.get(), 0));
  SubsetT<hb_subset_input_t> const input(hb_subset_input_create_or_fail());
  if (!input) return whole;
  for (char32_t const c : characters) hb_set_add(hb_subset_input_unicode_set(input.get()), c);
  hb_subset_input_set_flags(input.get(), HB_SUBSET_FLAGS_NO_HINTING);
  // Letters stand where they are placed, whatever the font would do with neighbours.
  hb_set_clear(hb_subset_input_set(input.get(), HB_SUBSET_SETS_LAYOUT_FEATURE_TAG));
  SubsetT<hb_face_t> const made(hb_subset_or_fail(source.get(), input.get()));
  if (!made) return whole;
  SubsetT<hb_blob_t> const subset(hb_face_reference_blob(made.get()));
  unsigned length = 0;
  char const* const data = hb_blob_get_data(subset.get(), &length);
  return length > 0 ? std::string(data, length) : whole;
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
