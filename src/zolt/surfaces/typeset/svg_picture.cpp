#include "zolt/surfaces/typeset/svg_picture.h"

#include <algorithm>
#include <cmath>
#include <map>
#include <set>
#include <utility>

#include "zolt/oss/code_point.h"

namespace zolt::surfaces {

namespace {

/// The opacity below which what is drawn is not in the full ink.
constexpr double full_ink = 1;

/// Rounds to at most so many decimals, independently of the process locale.
std::string number(double value, int decimals = 3) {
  long long unit = 1;
  for (int i = 0; i < decimals; ++i) unit *= 10;
  long long const parts = std::llround(value * double(unit));
  std::string out = parts < 0 ? "-" : "";
  out += std::to_string(std::llabs(parts) / unit);
  long long const fraction = std::llabs(parts) % unit;
  if (fraction == 0) return out;
  std::string digits = std::to_string(unit + fraction).substr(1);
  digits.erase(digits.find_last_not_of('0') + 1);
  return out + '.' + digits;
}

/// Writes the steps of a path as short as SVG allows: relative to the point before, in whole multiples of a
/// grid, without the zero before a point.
class PathDataC {
 public:
  explicit PathDataC(int decimals) : decimals_(decimals), grid_(std::pow(10.0, decimals)) {}

  void add(char verb, PathPointS const* points, int count) {
    if (verb == 'Z') {
      data_ += verb_ = 'z';
      atX_ = startX_;
      atY_ = startY_;
      return;
    }
    long long x[3] = {}, y[3] = {};
    for (int i = 0; i < count; ++i) {
      x[i] = std::llround(points[i].x * grid_);
      y[i] = std::llround(points[i].y * grid_);
    }
    int const last = count - 1;
    bool const isLine = verb == 'L';
    if (isLine && x[0] == atX_ && y[0] == atY_) return;
    if (isLine && y[0] == atY_) {
      begin('h');
      append(x[0] - atX_);
    } else if (isLine && x[0] == atX_) {
      begin('v');
      append(y[0] - atY_);
    } else {
      begin(char(verb - 'A' + 'a'));
      for (int i = 0; i < count; ++i) {
        append(x[i] - atX_);
        append(y[i] - atY_);
      }
    }
    atX_ = x[last];
    atY_ = y[last];
    if (verb == 'M') {
      startX_ = atX_;
      startY_ = atY_;
    }
  }
  void add(PathC const& path) {
    for (PathStepS const& step : path.getSteps()) add("MLCZ"[step.verb], step.points, step.countPoints());
  }
  void add(BoxS const& box) {
    double const right = box.x + box.width, bottom = box.y + box.height;
    PathPointS const corners[] = {{box.x, box.y}, {right, box.y}, {right, bottom}, {box.x, bottom}};
    for (int i = 0; i < 4; ++i) add(i == 0 ? 'M' : 'L', corners + i, 1);
    add('Z', nullptr, 0);
  }

  std::string const& get() const { return data_; }

 private:
  void begin(char verb) {
    isFirst_ = verb != verb_ || verb == 'm';
    if (isFirst_) data_ += verb;
    verb_ = verb;
  }
  void append(long long parts) {
    std::string digits = number(double(parts) / grid_, decimals_);
    std::size_t const zero = digits[0] == '-' ? 1 : 0;
    if (digits[zero] == '0' && digits.size() > zero + 1) digits.erase(zero, 1);
    if (!isFirst_ && digits[0] != '-') data_ += ' ';
    isFirst_ = false;
    data_ += digits;
  }

  int decimals_;
  double grid_;
  std::string data_;
  char verb_ = 0;
  bool isFirst_ = true;
  long long atX_ = 0, atY_ = 0, startX_ = 0, startY_ = 0;
};

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

std::string colourName(ColourS const& colour) {
  constexpr char digits[] = "0123456789abcdef";
  std::string out = "#";
  for (double const share : {colour.red, colour.green, colour.blue}) {
    auto const level = std::size_t(std::lround(std::clamp(share, 0.0, 1.0) * 255));
    out += digits[level >> 4];
    out += digits[level & 0xF];
  }
  return out;
}

std::string opacity(char const* property, double share) {
  return share < full_ink ? std::string(" ") + property + "=\"" + number(share) + '"' : std::string();
}

class WriterC {
 public:
  explicit WriterC(PictureJobS const& job)
      : job_(job), options_(job.options), fonts_(job.glyphs.getFonts()) {}

  std::string write() {
    for (DrawingItemS const& item : job_.drawing.getItems()) append(item);
    endRules();
    std::string out = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n" + openTag();
    if (!options_.spokenText.empty()) {
      out += "<title>" + escape(toCleanUtf8(options_.spokenText)) + "</title>\n";
    }
    if (!options_.expression.empty()) {
      out += "<metadata><expression xmlns=\"urn:zolt:ved\">" + escape(toCleanUtf8(options_.expression)) +
             "</expression></metadata>\n";
    }
    if (options_.svgText == SVG_TEXT_EMBEDDED) out += fontRules();
    if (!definitions_.empty()) out += "<defs>\n" + definitions_ + "</defs>\n";
    if (options_.background.opacity > 0) {
      PathDataC frame(3);
      frame.add(BoxS{job_.left, job_.top, job_.width, job_.height});
      out += "<path d=\"" + frame.get() + "\" fill=\"" + colourName(options_.background) + '"' +
             opacity("fill-opacity", options_.background.opacity) + "/>\n";
    }
    return out + "<g fill=\"" + colourName(options_.foreground) + '"' +
           opacity("fill-opacity", options_.foreground.opacity) + ">\n" + body_ + "</g>\n</svg>\n";
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
    if (!options_.spokenText.empty()) {
      if (!options_.spokenLanguage.empty()) out += " lang=\"" + escape(options_.spokenLanguage) + '"';
      out += " role=\"img\" aria-label=\"" + escape(toCleanUtf8(options_.spokenText)) + '"';
    }
    return out + ">\n";
  }

  std::string length(double units) const {
    bool const isEm = options_.svgUnit == SVG_UNIT_EM;
    return number(units * options_.zoom / (isEm ? PictureOptionsS::pixels_per_em : 1)) + (isEm ? "em" : "");
  }

  /// The attribute of what is not in the ink of the whole picture.
  std::string inkOf(DrawingItemS const& item, char const* property) const {
    return item.ink == INK_TEXT ? "" : opacity(property, inkColour(options_.foreground, item.ink).opacity);
  }

  void append(DrawingItemS const& item) {
    if (item.kind == ITEM_RULE && item.ink == INK_TEXT) return rules_.add(item.rule.box());
    switch (item.kind) {
      case ITEM_GLYPHS:
        options_.svgText == SVG_TEXT_OUTLINES ? appendOutlines(item) : appendText(item);
        break;
      case ITEM_FILL:
      case ITEM_RULE: {
        PathDataC shape(2);
        item.kind == ITEM_FILL ? shape.add(item.path) : shape.add(item.rule.box());
        body_ += "<path d=\"" + shape.get() + '"' + inkOf(item, "fill-opacity") + "/>\n";
        break;
      }
      case ITEM_STROKE: {
        PathDataC line(2);
        line.add(item.path);
        body_ += "<path d=\"" + line.get() + "\" fill=\"none\" stroke=\"" + colourName(options_.foreground) +
                 "\" stroke-width=\"" + number(item.thickness) +
                 "\" stroke-linecap=\"round\" stroke-linejoin=\"round\"" +
                 opacity("stroke-opacity", inkColour(options_.foreground, item.ink).opacity) + "/>\n";
        break;
      }
    }
  }

  /// All bars are one shape, left to the viewer's smoothing: where edges are to be crisp, a bar that is
  /// thinner than a pixel may vanish, and of two equal ones one may be thicker.
  void endRules() {
    if (!rules_.get().empty()) body_ += "<path d=\"" + rules_.get() + "\"/>\n";
  }

  /// Writes one element for every run of letters that are spaced as in the font: not all viewers heed a list
  /// of positions.
  void appendText(DrawingItemS const& item) {
    std::set<char32_t>& used = usedCharacters_[item.run.face];
    body_ += "<text xml:space=\"preserve\" font-family=\"'" + escape(fonts_.getFaceName(item.run.face)) +
             "', serif\" font-size=\"" + number(item.run.em) + '"' +
             (fonts_.isItalic(item.run.face) ? " font-style=\"italic\"" : "") +
             " style=\"font-kerning:none\" y=\"" + number(item.run.baseline) + "\">";
    std::string text;
    double next = 0;
    for (PlacedGlyphS const& glyph : item.glyphs) {
      if (text.empty() || std::fabs(glyph.x - next) > 1e-3) {
        body_ += escape(text) + (text.empty() ? "" : "</tspan>") + "<tspan x=\"" +
                 number(item.run.x + glyph.x) + "\">";
        text.clear();
      }
      oss::appendUtf8(text, glyph.codePoint);
      used.insert(glyph.codePoint);
      next = glyph.x + glyph.width;
    }
    body_ += escape(text) + "</tspan></text>\n";
  }

  /// Letters are in font units inside the element of their run.
  void appendOutlines(DrawingItemS const& item) {
    double const unitsPerEm = fonts_.getFont(item.run.face).getUnitsPerEm(), scale = item.run.em / unitsPerEm;
    std::string letters;
    for (PlacedGlyphS const& glyph : item.glyphs) {
      std::string const id = define(item.run.face, glyph.glyph);
      if (id.empty()) continue;
      letters += "<use href=\"#" + id + '"';
      std::string const x = number(glyph.x / scale, 0);
      letters += x == "0" ? "/>" : " x=\"" + x + "\"/>";
    }
    if (letters.empty()) return;
    body_ += "<g transform=\"translate(" + number(item.run.x) + ' ' + number(item.run.baseline) + ")scale(" +
             number(scale, 6) + ")\">" + letters + "</g>\n";
  }

  /// The name of a glyph's outline; empty for a glyph without ink.
  std::string define(unsigned face, std::uint16_t glyph) {
    OutlineT const& outline = job_.glyphs.outline(face, glyph);
    if (outline.empty()) return {};
    std::string const id = "g" + std::to_string(face) + '-' + std::to_string(glyph);
    if (!defined_.insert(id).second) return id;
    PathDataC data(0);
    for (OutlineStepS const& step : outline) {
      PathPointS points[3];
      for (int i = 0; i < step.count; ++i) points[i] = {double(step.x[i]), double(step.y[i])};
      data.add(step.verb, points, step.count);
    }
    definitions_ += "<path id=\"" + id + "\" d=\"" + data.get() + "\"/>\n";
    return id;
  }

  std::string fontRules() const {
    std::string out = "<style>\n";
    for (auto const& [face, characters] : usedCharacters_) {
      out += "@font-face{font-family:'" + escape(fonts_.getFaceName(face)) + "';" +
             (fonts_.isItalic(face) ? "font-style:italic;" : "") + "src:url(data:font/ttf;base64," +
             encodeBase64(job_.glyphs.makeSubset(face, characters)) + ")}\n";
    }
    return out + "</style>\n";
  }

  PictureJobS const& job_;
  PictureOptionsS const& options_;
  FontSetC const& fonts_;
  std::map<unsigned, std::set<char32_t>> usedCharacters_;
  std::set<std::string> defined_;
  PathDataC rules_{3};
  std::string definitions_, body_;
};

}  // namespace

PictureJobS makeJob(DrawingC const& drawing, GlyphSourceABC const& glyphs, PictureOptionsS const& options,
                    long width, long height) {
  double const margin = std::fmax(0, options.margin);
  return {drawing,
          glyphs,
          options,
          -margin,
          -margin,
          double(std::max(width, 0L)) + 2 * margin,
          double(std::max(height, 0L)) + 2 * margin};
}

std::string toCleanUtf8(oss::wstring const& text) {
  constexpr char32_t replacement = 0xFFFD;
  std::string out;
  for (std::size_t i = 0; i < text.size();) {
    char32_t const c = oss::readCodePoint(text, i);
    bool const unfit = c < 0x20 || c == 0xFFFE || c == 0xFFFF || oss::isSurrogate(c);
    oss::appendUtf8(out, unfit ? replacement : c);
  }
  return out;
}

std::string writeSvg(PictureJobS const& job) { return WriterC(job).write(); }

}  // namespace zolt::surfaces
