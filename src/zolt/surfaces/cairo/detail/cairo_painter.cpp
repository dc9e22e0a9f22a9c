#include "zolt/surfaces/cairo/detail/cairo_painter.h"

#include <cmath>
#include <map>
#include <tuple>

#include "zolt/oss/code_point.h"
#include "zolt/surfaces/cairo/detail/cairo_faces.h"
#include "zolt/surfaces/typeset/row_fit.h"

namespace zolt::surfaces {

namespace {

PathC scaled(PathC const& path, double scale) {
  PathC result;
  for (PathStepS step : path.getSteps()) {
    for (PathPointS& p : step.points) p = {p.x * scale, p.y * scale};
    result.append(step);
  }
  return result;
}

class PainterC {
 public:
  PainterC(cairo_t* context, PictureJobS const& job, CairoFacesC const& faces, PaintTargetE target)
      : context_(context),
        job_(job),
        faces_(faces),
        target_(target),
        isText_(!job.options.plainText.empty()),
        text_(toCleanUtf8(job.options.plainText)) {}

  void paint(DrawingItemS const& item) {
    ColourS const colour = inkColour(job_.options.foreground, item.ink);
    cairo_set_source_rgba(context_, colour.red, colour.green, colour.blue, colour.opacity);
    switch (item.kind) {
      case ITEM_GLYPHS:
        paintGlyphs(item);
        break;
      case ITEM_FILL:
        trace(item.path);
        cairo_fill(context_);
        break;
      case ITEM_STROKE:
        trace(item.path);
        cairo_set_line_width(context_, item.thickness);
        cairo_set_line_cap(context_, CAIRO_LINE_CAP_ROUND);
        cairo_set_line_join(context_, CAIRO_LINE_JOIN_ROUND);
        cairo_stroke(context_);
        break;
      case ITEM_RULE:
        paintRule(item.rule);
        break;
    }
  }

 private:
  void trace(PathC const& path, double dx = 0, double dy = 0) {
    for (PathStepS const& step : path.getSteps()) {
      PathPointS const* const p = step.points;
      switch (step.verb) {
        case PATH_MOVE:
          cairo_move_to(context_, p[0].x + dx, p[0].y + dy);
          break;
        case PATH_LINE:
          cairo_line_to(context_, p[0].x + dx, p[0].y + dy);
          break;
        case PATH_CURVE:
          cairo_curve_to(context_, p[0].x + dx, p[0].y + dy, p[1].x + dx, p[1].y + dy, p[2].x + dx,
                         p[2].y + dy);
          break;
        case PATH_CLOSE:
          cairo_close_path(context_);
          break;
      }
    }
  }

  void paintRule(RuleS const& rule) {
    if (target_ == PAINT_PAPER) {
      cairo_move_to(context_, rule.x1, rule.y1);
      cairo_line_to(context_, rule.x2, rule.y2);
      cairo_set_line_width(context_, rule.thickness);
      cairo_set_line_cap(context_, CAIRO_LINE_CAP_SQUARE);
      cairo_stroke(context_);
      return;
    }
    cairo_matrix_t matrix;
    cairo_get_matrix(context_, &matrix);
    BoxS const box = snapRule(rule, matrix.xx, matrix.x0, matrix.y0);
    cairo_save(context_);
    cairo_identity_matrix(context_);
    cairo_rectangle(context_, box.x, box.y, box.width, box.height);
    cairo_fill(context_);
    cairo_restore(context_);
  }

  void paintGlyphs(DrawingItemS const& item) {
    if (target_ == PAINT_PIXELS) return paintGlyphsInPixels(item);
    faces_.select(context_, item.run.face, item.run.em);
    glyphs_.clear();
    for (PlacedGlyphS const& glyph : item.glyphs) {
      glyphs_.push_back({glyph.glyph, item.run.x + glyph.x, item.run.baseline});
    }
    if (isText_) return showWithText(item.run.face);
    std::string text;
    std::vector<cairo_text_cluster_t> clusters;
    for (PlacedGlyphS const& glyph : item.glyphs) {
      std::size_t const before = text.size();
      oss::appendUtf8(text, glyph.codePoint);
      clusters.push_back({int(text.size() - before), 1});
    }
    cairo_show_text_glyphs(context_, text.data(), int(text.size()), glyphs_.data(), int(glyphs_.size()),
                           clusters.data(), int(clusters.size()), cairo_text_cluster_flags_t(0));
  }

  // Painted as text, each glyph would be moved to whole pixels, and the spacing would be uneven.
  void paintGlyphsInPixels(DrawingItemS const& item) {
    GlyphRunS const& run = item.run;
    cairo_matrix_t matrix;
    cairo_get_matrix(context_, &matrix);
    double const unitsPerEm = faces_.getFonts().getFont(run.face).getUnitsPerEm();
    double const exact = matrix.y0 + run.baseline * matrix.yy;
    bool const fits = run.em * matrix.yy <= largest_fitted_em;
    cairo_save(context_);
    cairo_identity_matrix(context_);
    for (PlacedGlyphS const& glyph : item.glyphs) {
      auto const [place, isNew] = letters_.try_emplace({run.face, glyph.glyph, run.em});
      if (isNew) {
        PathC const outline = toPath(faces_.outline(run.face, glyph.glyph));
        double const scale = run.em * matrix.yy / unitsPerEm;
        place->second = fits ? fitToRows(outline, unitsPerEm, scale) : scaled(outline, scale);
      }
      trace(place->second, matrix.x0 + (run.x + glyph.x) * matrix.xx, fits ? std::round(exact) : exact);
    }
    cairo_fill(context_);
    cairo_restore(context_);
  }

  /// The first letters stand for the whole text, and all others for nothing.
  void showWithText(unsigned face) {
    // A single glyph would be taken for a letter with that text wherever it occurs, so a blank goes with it.
    if (auto const blank = faces_.getFonts().getFont(face).findGlyph(' ')) {
      glyphs_.insert(glyphs_.begin(), {blank, glyphs_.front().x, glyphs_.front().y});
    }
    cairo_text_cluster_t const all = {int(text_.size()), int(glyphs_.size())};
    cairo_show_text_glyphs(context_, text_.data(), int(text_.size()), glyphs_.data(), all.num_glyphs, &all, 1,
                           cairo_text_cluster_flags_t(0));
    text_.clear();
  }

  cairo_t* context_;
  PictureJobS const& job_;
  CairoFacesC const& faces_;
  PaintTargetE target_;
  bool isText_;
  std::string text_;  // what copies of the whole are to have, until it is written
  std::vector<cairo_glyph_t> glyphs_;
  std::map<std::tuple<unsigned, std::uint16_t, double>, PathC> letters_;
};

}  // namespace

void paintDrawing(cairo_t* context, PictureJobS const& job, CairoFacesC const& faces, PaintTargetE target) {
  PainterC painter(context, job, faces, target);
  for (DrawingItemS const& item : job.drawing.getItems()) painter.paint(item);
}

}  // namespace zolt::surfaces
