#include "zolt/surfaces/cairo/detail/svg_writer.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <utility>

#include "zolt/oss/code_point.h"
#include "zolt/surfaces/cairo/detail/cairo_faces.h"

namespace zolt::surfaces {

namespace {

constexpr double outline_em = 1000;

/// Rounds to at most so many decimals, independently of the process locale.
void appendNumber(std::string& out, double value, int decimals = 3) {
  long long unit = 1;
  for (int i = 0; i < decimals; ++i) unit *= 10;
  long long const parts = std::llround(value * double(unit));
  if (parts < 0) out += '-';
  out += std::to_string(std::llabs(parts) / unit);
  long long const fraction = std::llabs(parts) % unit;
  if (fraction == 0) return;
  std::string digits = std::to_string(unit + fraction).substr(1);
  digits.erase(digits.find_last_not_of('0') + 1);
  out += '.' + digits;
}

std::string number(double value) {
  std::string out;
  appendNumber(out, value);
  return out;
}

void appendPoint(std::string& out, double x, double y) {
  appendNumber(out, x);
  out += ' ';
  appendNumber(out, y);
}

std::string escape(std::string const& text) {
  constexpr std::pair<char, char const*> entities[] = {
      {'&', "&amp;"}, {'<', "&lt;"}, {'>', "&gt;"}, {'"', "&quot;"}};
  std::string out;
  for (char const c : text) {
    auto const* const found = std::find_if(std::begin(entities), std::end(entities),
                                           [&](auto const& entity) { return entity.first == c; });
    found == std::end(entities) ? out += c : out += found->second;
  }
  return out;
}

std::string encodeBase64(std::string const& bytes) {
  constexpr char digits[] = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::string out;
  out.reserve((bytes.size() + 2) / 3 * 4);
  for (std::size_t i = 0; i < bytes.size(); i += 3) {
    unsigned group = 0;
    for (std::size_t k = 0; k < 3; ++k) {
      group = group << 8 | (i + k < bytes.size() ? static_cast<unsigned char>(bytes[i + k]) : 0u);
    }
    for (std::size_t k = 0; k < 4; ++k) {
      out += i + k > bytes.size() ? '=' : digits[group >> (18 - 6 * k) & 0x3F];
    }
  }
  return out;
}

std::string paint(char const* property, ColourS const& colour) {
  auto const level = [](double share) {
    return std::to_string(std::lround(std::clamp(share, 0.0, 1.0) * 255));
  };
  std::string out = std::string(" ") + property + "=\"rgb(" + level(colour.red) + ',' + level(colour.green) +
                    ',' + level(colour.blue) + ")\"";
  if (colour.opacity < 1) out += std::string(" ") + property + "-opacity=\"" + number(colour.opacity) + '"';
  return out;
}

std::string pathData(PathC const& path) {
  std::string out;
  for (PathStepS const& step : path.getSteps()) {
    out += "MLCZ"[step.verb];
    for (int i = 0; i < step.countPoints(); ++i) {
      if (i > 0) out += ' ';
      appendPoint(out, step.points[i].x, step.points[i].y);
    }
  }
  return out;
}

// Left to the viewer's smoothing: where edges are to be crisp, a bar that is thinner than a pixel may vanish.
std::string rectangle(BoxS const& box, ColourS const& colour) {
  return "<rect x=\"" + number(box.x) + "\" y=\"" + number(box.y) + "\" width=\"" + number(box.width) +
         "\" height=\"" + number(box.height) + '"' + paint("fill", colour) + "/>\n";
}

PathC copyOutline(cairo_path_t const& path) {
  static_assert(int{PATH_MOVE} == CAIRO_PATH_MOVE_TO && int{PATH_LINE} == CAIRO_PATH_LINE_TO);
  static_assert(int{PATH_CURVE} == CAIRO_PATH_CURVE_TO && int{PATH_CLOSE} == CAIRO_PATH_CLOSE_PATH);
  PathC outline;
  for (int i = 0, next = 0; i < path.num_data; i = next) {
    cairo_path_data_t const* const data = path.data + i;
    next = i + data->header.length;
    PathStepS step{static_cast<PathVerbE>(data->header.type), {}};
    // Cairo starts a new piece after every closed one, even if none follows.
    bool const ends = next == path.num_data || path.data[next].header.type == CAIRO_PATH_MOVE_TO;
    if (step.verb == PATH_MOVE && ends) continue;
    for (int k = 0; k < step.countPoints(); ++k) step.points[k] = {data[k + 1].point.x, data[k + 1].point.y};
    outline.append(step);
  }
  return outline;
}

class WriterC {
 public:
  explicit WriterC(PictureJobS const& job) : job_(job), options_(job.options), fonts_(job.faces.getFonts()) {}

  std::string write() {
    for (DrawingItemS const& item : job_.drawing) append(item);
    std::string out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + openTag();
    if (!options_.expression.empty()) {
      out += "<metadata><expression xmlns=\"urn:zolt:ved\">" + escape(toCleanUtf8(options_.expression)) +
             "</expression></metadata>\n";
    }
    if (options_.svgText == SVG_TEXT_EMBEDDED) out += fontRules();
    if (!definitions_.empty()) out += "<defs>\n" + definitions_ + "</defs>\n";
    if (options_.background.opacity > 0) {
      out += rectangle({job_.left, job_.top, job_.width, job_.height}, options_.background);
    }
    return out + body_ + "</svg>\n";
  }

 private:
  std::string openTag() const {
    std::string out = "<svg xmlns=\"http://www.w3.org/2000/svg\" width=\"" + length(job_.width) +
                      "\" height=\"" + length(job_.height) + "\" viewBox=\"" + number(job_.left) + ' ' +
                      number(job_.top) + ' ' + number(job_.width) + ' ' + number(job_.height) + '"';
    // A style with a unit, since only the size may be a bare number of pixels.
    if (options_.baseline) {
      out += " style=\"vertical-align:" + length(*options_.baseline - job_.top - job_.height) +
             (options_.svgUnit == SVG_UNIT_PX ? "px" : "") + '"';
    }
    return out + ">\n";
  }

  std::string length(double units) const {
    bool const isEm = options_.svgUnit == SVG_UNIT_EM;
    return number(units * options_.zoom / (isEm ? pixels_per_em : 1)) + (isEm ? "em" : "");
  }

  void append(DrawingItemS const& item) {
    ColourS const colour = inkColour(options_.foreground, item.ink);
    switch (item.kind) {
      case ITEM_GLYPHS:
        if (options_.svgText == SVG_TEXT_OUTLINES) {
          appendOutlines(item, colour);
        } else {
          appendText(item, colour);
        }
        break;
      case ITEM_FILL:
        body_ += "<path d=\"" + pathData(item.path) + '"' + paint("fill", colour) + "/>\n";
        break;
      case ITEM_STROKE:
        body_ += "<path d=\"" + pathData(item.path) + "\" fill=\"none\" stroke-width=\"" +
                 number(item.thickness) + "\" stroke-linecap=\"round\" stroke-linejoin=\"round\"" +
                 paint("stroke", colour) + "/>\n";
        break;
      case ITEM_RULE:
        body_ += rectangle(item.rule.box(), colour);
        break;
    }
  }

  /// Writes one element for every run of letters that are spaced as in the font: not all viewers heed a list
  /// of positions.
  void appendText(DrawingItemS const& item, ColourS const& colour) {
    usedFaces_.insert(item.run.face);
    body_ += "<text xml:space=\"preserve\" font-family=\"'" + escape(fonts_.getFaceName(item.run.face)) +
             "', serif\" font-size=\"" + number(item.run.em) + '"' +
             (fonts_.isItalic(item.run.face) ? " font-style=\"italic\"" : "") +
             " style=\"font-kerning:none\" y=\"" + number(item.run.baseline) + '"' + paint("fill", colour) +
             '>';
    std::string text;
    double next = 0;
    for (PlacedGlyphS const& glyph : item.glyphs) {
      if (text.empty() || std::fabs(glyph.x - next) > 1e-3) {
        body_ += escape(text) + (text.empty() ? "" : "</tspan>") + "<tspan x=\"" +
                 number(item.run.x + glyph.x) + "\">";
        text.clear();
      }
      oss::appendUtf8(text, glyph.codePoint);
      next = glyph.x + glyph.width;
    }
    body_ += escape(text) + "</tspan></text>\n";
  }

  void appendOutlines(DrawingItemS const& item, ColourS const& colour) {
    body_ += "<g" + paint("fill", colour) + ">";
    for (PlacedGlyphS const& glyph : item.glyphs) {
      std::string const id = define(item.run.face, glyph.glyph);
      if (id.empty()) continue;
      body_ += "<use href=\"#" + id + "\" transform=\"translate(";
      appendPoint(body_, item.run.x + glyph.x, item.run.baseline);
      body_ += ") scale(";
      appendNumber(body_, item.run.em / outline_em, 6);
      body_ += ")\"/>";
    }
    body_ += "</g>\n";
  }

  /// The name of a glyph's outline; empty for a glyph without ink.
  std::string define(unsigned face, std::uint16_t glyph) {
    auto const [place, isNew] = outlines_.try_emplace({face, glyph});
    if (!isNew) return place->second;
    job_.faces.select(scratch_.get(), face, outline_em);
    cairo_glyph_t const drawn = {glyph, 0, 0};
    cairo_new_path(scratch_.get());
    cairo_glyph_path(scratch_.get(), &drawn, 1);
    cairo_path_t* const path = cairo_copy_path(scratch_.get());
    PathC const outline = copyOutline(*path);
    cairo_path_destroy(path);
    if (outline.getSteps().empty()) return {};
    place->second = "g" + std::to_string(face) + '-' + std::to_string(glyph);
    definitions_ += "<path id=\"" + place->second + "\" d=\"" + pathData(outline) + "\"/>\n";
    return place->second;
  }

  std::string fontRules() const {
    std::string out = "<style>\n";
    for (unsigned const face : usedFaces_) {
      out += "@font-face{font-family:'" + escape(fonts_.getFaceName(face)) + "';" +
             (fonts_.isItalic(face) ? "font-style:italic;" : "") + "src:url(data:font/ttf;base64," +
             encodeBase64(fonts_.getFont(face).getBytes()) + ")}\n";
    }
    return out + "</style>\n";
  }

  PictureJobS const& job_;
  PictureOptionsS const& options_;
  FontSetC const& fonts_;
  SurfaceT const scratchSurface_{cairo_image_surface_create(CAIRO_FORMAT_A8, 1, 1)};
  ContextT const scratch_{cairo_create(scratchSurface_.get())};
  std::map<std::pair<unsigned, std::uint16_t>, std::string> outlines_;
  std::set<unsigned> usedFaces_;
  std::string definitions_, body_;
};

}  // namespace

std::string writeSvg(PictureJobS const& job) { return WriterC(job).write(); }

}  // namespace zolt::surfaces
