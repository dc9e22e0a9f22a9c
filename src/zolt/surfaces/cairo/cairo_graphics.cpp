#include "zolt/surfaces/cairo/cairo_graphics.h"

#include <cairo-pdf.h>

#include <algorithm>
#include <cmath>

#include "zolt/surfaces/cairo/detail/cairo_faces.h"
#include "zolt/surfaces/cairo/detail/cairo_painter.h"
#include "zolt/surfaces/cairo/detail/png_text.h"
#include "zolt/surfaces/typeset/svg_picture.h"

namespace zolt::surfaces {

namespace {

constexpr double most_pixels_a_side = 30000;
constexpr double points_per_pixel = 0.75;

cairo_status_t appendBytes(void* out, unsigned char const* data, unsigned length) {
  static_cast<std::string*>(out)->append(reinterpret_cast<char const*>(data), length);
  return CAIRO_STATUS_SUCCESS;
}

bool failed(cairo_status_t status, std::string& error) {
  if (status == CAIRO_STATUS_SUCCESS) return false;
  error = std::string("the picture cannot be made: ") + cairo_status_to_string(status);
  return true;
}

/// Paints background and drawing; `scale` is target units per surface unit.
void paintPicture(cairo_surface_t* surface, PictureJobS const& job, CairoFacesC const& faces, double scale,
                  PaintTargetE target) {
  ContextT const context(cairo_create(surface));
  ColourS const& background = job.options.background;
  if (background.opacity > 0) {
    cairo_set_source_rgba(context.get(), background.red, background.green, background.blue,
                          background.opacity);
    cairo_paint(context.get());
  }
  cairo_scale(context.get(), scale, scale);
  cairo_translate(context.get(), -job.left, -job.top);
  paintDrawing(context.get(), job, faces, target);
}

bool makePng(PictureJobS const& job, CairoFacesC const& faces, std::string& bytes, std::string& error) {
  int const width = int(std::ceil(job.width * job.options.zoom));
  int const height = int(std::ceil(job.height * job.options.zoom));
  SurfaceT const surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, width, height));
  if (failed(cairo_surface_status(surface.get()), error)) return false;
  paintPicture(surface.get(), job, faces, job.options.zoom, PAINT_PIXELS);
  if (failed(cairo_surface_status(surface.get()), error)) return false;
  if (failed(cairo_surface_write_to_png_stream(surface.get(), appendBytes, &bytes), error)) return false;
  return job.options.expression.empty() ||
         insertPngText(bytes, "zolt:expression", toCleanUtf8(job.options.expression));
}

bool makePdf(PictureJobS const& job, CairoFacesC const& faces, std::string& bytes, std::string& error) {
  double const scale = job.options.zoom * points_per_pixel;
  SurfaceT const surface(
      cairo_pdf_surface_create_for_stream(appendBytes, &bytes, job.width * scale, job.height * scale));
  if (failed(cairo_surface_status(surface.get()), error)) return false;
  cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_CREATOR, "zolt ved");
  // Without it the file would hold the time of its creation, and the same formula other bytes each time.
  cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_CREATE_DATE, "");
  if (!job.options.expression.empty()) {
    cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_SUBJECT,
                                   toCleanUtf8(job.options.expression).c_str());
  }
  if (!job.options.spokenText.empty()) {
    cairo_pdf_surface_set_metadata(surface.get(), CAIRO_PDF_METADATA_TITLE,
                                   toCleanUtf8(job.options.spokenText).c_str());
  }
  paintPicture(surface.get(), job, faces, scale, PAINT_PAPER);
  cairo_surface_finish(surface.get());
  return !failed(cairo_surface_status(surface.get()), error);
}

}  // namespace

struct CairoGraphicsC::StateS {
  explicit StateS(FontSetC const& fonts) : faces(oss::PointerTC<FontSetC const>(&fonts)) {}

  CairoFacesC faces;
  DrawingC drawing;
};

CairoGraphicsC::CairoGraphicsC(oss::PointerTC<TypesetterC> typesetter)
    : TypesetGraphicsABC(typesetter), state_(std::make_unique<StateS>(typesetter->getFonts())) {}
CairoGraphicsC::~CairoGraphicsC() = default;

void CairoGraphicsC::clear() { state_->drawing.clear(); }

PictureSizeS CairoGraphicsC::measure(PictureFormatE format, long width, long height,
                                     PictureOptionsS const& options) {
  double const margin = std::fmax(0, options.margin);
  bool const isEm = format == PICTURE_SVG && options.svgUnit == SVG_UNIT_EM;
  bool const isPdf = format == PICTURE_PDF;
  double const scale = options.zoom * (isPdf  ? points_per_pixel
                                       : isEm ? 1 / PictureOptionsS::pixels_per_em
                                              : 1);
  PictureSizeS size{(double(std::max(width, 0L)) + 2 * margin) * scale,
                    (double(std::max(height, 0L)) + 2 * margin) * scale, 0,
                    isPdf  ? "pt"
                    : isEm ? "em"
                           : "px"};
  if (format == PICTURE_PNG) {
    size.width = std::ceil(size.width);
    size.height = std::ceil(size.height);
  }
  if (options.baseline) {
    double const line = (*options.baseline + margin) * scale;
    // Letters of pixels stand on a row of these.
    size.depth = size.height - (format == PICTURE_PNG ? std::round(line) : line);
  }
  return size;
}

bool CairoGraphicsC::render(PictureFormatE format, long width, long height, PictureOptionsS const& options,
                            std::string& bytes, std::string& error) const {
  PictureJobS const job = makeJob(state_->drawing, state_->faces, options, width, height);
  double const longest = std::fmax(job.width, job.height) * options.zoom;
  double const shortest = std::fmin(job.width, job.height) * options.zoom;
  if (!(options.zoom > 0) || !(shortest > 0)) {
    error = "the picture is empty";
    return false;
  }
  if (!(longest <= most_pixels_a_side)) {
    error = "the picture is larger than " + std::to_string(int(most_pixels_a_side)) + " pixels on a side";
    return false;
  }
  if (!state_->faces.open()) {
    error = "the fonts cannot be opened for drawing";
    return false;
  }
  std::string made;
  switch (format) {
    case PICTURE_PNG:
      if (!makePng(job, state_->faces, made, error)) return false;
      break;
    case PICTURE_SVG:
      made = writeSvg(job);
      break;
    case PICTURE_PDF:
      if (!makePdf(job, state_->faces, made, error)) return false;
      break;
  }
  bytes = std::move(made);
  return true;
}

void CairoGraphicsC::fillGlyphs(GlyphRunS const& run) const { state_->drawing.addGlyphs(run); }

void CairoGraphicsC::fillPath(PathC const& path, InkE ink) const { state_->drawing.addFill(path, ink); }

void CairoGraphicsC::strokePath(PathC const& path, double thickness, InkE ink) const {
  state_->drawing.addStroke(path, thickness, ink);
}

void CairoGraphicsC::fillRule(RuleS const& rule, InkE ink) const { state_->drawing.addRule(rule, ink); }

}  // namespace zolt::surfaces
