#include "zolt/surfaces/cairo/detail/cairo_painter.h"

#include "zolt/oss/code_point.h"
#include "zolt/surfaces/cairo/detail/cairo_faces.h"

namespace zolt::surfaces {

namespace {

class PainterC {
 public:
  PainterC(cairo_t* context, PictureJobS const& job, PaintTargetE target)
      : context_(context), job_(job), target_(target) {}

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
  void trace(PathC const& path) {
    for (PathStepS const& step : path.getSteps()) {
      PathPointS const* const p = step.points;
      switch (step.verb) {
        case PATH_MOVE:
          cairo_move_to(context_, p[0].x, p[0].y);
          break;
        case PATH_LINE:
          cairo_line_to(context_, p[0].x, p[0].y);
          break;
        case PATH_CURVE:
          cairo_curve_to(context_, p[0].x, p[0].y, p[1].x, p[1].y, p[2].x, p[2].y);
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
    job_.faces.select(context_, item.run.face, item.run.em);
    glyphs_.clear();
    for (PlacedGlyphS const& glyph : item.glyphs) {
      glyphs_.push_back({glyph.glyph, item.run.x + glyph.x, item.run.baseline});
    }
    if (target_ == PAINT_PIXELS) {
      // Painted as text, each glyph would be moved to whole pixels, and the spacing would be uneven.
      cairo_glyph_path(context_, glyphs_.data(), int(glyphs_.size()));
      cairo_fill(context_);
      return;
    }
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

  cairo_t* context_;
  PictureJobS const& job_;
  PaintTargetE target_;
  std::vector<cairo_glyph_t> glyphs_;
};

}  // namespace

void paintDrawing(cairo_t* context, PictureJobS const& job, PaintTargetE target) {
  PainterC painter(context, job, target);
  for (DrawingItemS const& item : job.drawing) painter.paint(item);
}

}  // namespace zolt::surfaces
