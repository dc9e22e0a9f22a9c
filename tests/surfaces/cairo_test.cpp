#include <cairo.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <memory>
#include <numeric>
#include <vector>

#include "tests/support/cases.h"
#include "tests/support/operators.h"
#include "tests/surfaces/probe_graphics.h"
#include "zolt/algexpr/cas_session.h"
#include "zolt/catalogue_extended/extended_operators.h"
#include "zolt/exchange/plain_text.h"
#include "zolt/field/formula_field.h"
#include "zolt/surfaces/cairo/cairo_graphics.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::surfaces {
namespace {

/// The pixels of a PNG picture, as opacity 0 to 255.
struct PixelsS {
  int width = 0, height = 0;
  std::vector<std::uint8_t> opacity;

  explicit PixelsS(std::string png) {
    auto const read = [](void* data, unsigned char* out, unsigned length) {
      auto& left = *static_cast<std::string*>(data);
      if (left.size() < length) return CAIRO_STATUS_READ_ERROR;
      std::memcpy(out, left.data(), length);
      left.erase(0, length);
      return CAIRO_STATUS_SUCCESS;
    };
    cairo_surface_t* const surface = cairo_image_surface_create_from_png_stream(read, &png);
    EXPECT_EQ(cairo_surface_status(surface), CAIRO_STATUS_SUCCESS);
    width = cairo_image_surface_get_width(surface);
    height = cairo_image_surface_get_height(surface);
    for (int y = 0; y < height; ++y) {
      auto const* row = cairo_image_surface_get_data(surface) + y * cairo_image_surface_get_stride(surface);
      for (int x = 0; x < width; ++x) {
        std::uint32_t pixel;
        std::memcpy(&pixel, row + 4 * x, 4);
        opacity.push_back(std::uint8_t(pixel >> 24));
      }
    }
    cairo_surface_destroy(surface);
  }

  /// The share of this picture's ink in a box of it that `other` has nowhere within a pixel.
  double missingIn(PixelsS const& other, math::ved::RectangleS const& box) const {
    double missing = 0, all = 0;
    for (long y = std::max(box.top, 1L); y < std::min<long>(box.bottom, height - 1); ++y) {
      for (long x = std::max(box.left, 1L); x < std::min<long>(box.right, width - 1); ++x) {
        int const wanted = opacity[std::size_t(y * width + x)];
        int found = 0;
        for (long v = y - 1; wanted > found && v <= y + 1; ++v) {
          auto const* const near = other.opacity.data() + v * width + x;
          found = std::max({found, int(near[-1]), int(near[0]), int(near[1])});
        }
        missing += std::max(0, wanted - found);
        all += wanted;
      }
    }
    return all > 0 ? missing / all : 1;
  }
  double ink() const {
    return double(std::accumulate(opacity.begin(), opacity.end(), 0ul)) / 255 / width / height;
  }
};

/// What another program writes when it gets the names of a picture's file and of its own.
std::string madeBy(std::string const& program, std::string const& picture) {
  std::string const path = testing::TempDir() + "zolt_picture_" + std::to_string(getpid()),
                    made = path + "-made";
  std::ofstream(path, std::ios::binary) << picture;
  EXPECT_EQ(std::system(("f() { " + program + "; }; f " + path + " " + made).c_str()), 0) << program;
  std::ifstream file(made, std::ios::binary);
  std::string bytes(std::istreambuf_iterator<char>(file), {});
  for (std::string const& name : {path, made}) std::remove(name.c_str());
  return bytes;
}

PixelsS seenInSvg(std::string const& svg, std::string const& options) {
  return PixelsS(madeBy("rsvg-convert " + options + " $1 -o $2", svg));
}

class CairoPictures : public ::testing::Test {
 protected:
  CairoPictures() {
    options.expression = u"<(\u2212a,\"b&c\xD800\u0001\")";
    graphics.drawText(u"x<1", 0, 0);
    graphics.selectFont(1);
    graphics.drawText(u"f'", 40, 0);
    graphics.selectFont(0);
    graphics.drawHorizontalLine(0, 20, 30);
    graphics.drawOpenBracket(60, 0, 40, true);
    graphics.drawLine(70, 0, 80, 9);
    graphics.drawTextAs(math::ved::TEXT_IS_SLOT, u"\u25CF", 85, 0);
  }
  std::string render(PictureFormatE format) {
    std::string bytes, error;
    EXPECT_TRUE(graphics.render(format, 100, 40, options, bytes, error)) << error;
    return bytes;
  }
  /// Cairo's own cache of fonts, which holds the faces that it was given.
  struct CairoCacheS {
    ~CairoCacheS() { cairo_debug_reset_static_data(); }
  } cache;
  CairoGraphicsC graphics{makeTypesetter()};
  PictureOptionsS options;
};

// A fraction without its bar is another formula.
TEST_F(CairoPictures, KeepTheirBarsAtAnySize) {
  graphics.clear();
  graphics.drawHorizontalLine(3, 8, 25);
  graphics.drawHorizontalLine(0, 30, 39);
  graphics.drawVerticalLine(30, 2, 20);
  std::string const svg = render(PICTURE_SVG);
  double const ink = seenInSvg(svg, "-h 1000").ink();
  EXPECT_GT(ink, 0.008);
  for (int const height : {12, 17, 24, 31, 40, 48, 50, 64, 77, 120}) {
    EXPECT_NEAR(seenInSvg(svg, "-h " + std::to_string(height)).ink(), ink, ink / 10) << height;
  }
  // Where the pixels are known, bars are crisp.
  for (double const zoom : {0.7, 1.0, 1.25, 1.75, 2.0, 3.0}) {
    options.zoom = zoom;
    PixelsS const png(render(PICTURE_PNG));
    for (int const opacity : png.opacity) ASSERT_TRUE(opacity == 0 || opacity == 255) << zoom;
    EXPECT_GT(png.ink(), ink / 2) << zoom;
  }
  options.background = {1, 1, 1, 1};
  EXPECT_EQ(PixelsS(render(PICTURE_PNG)).ink(), 1);
}

/// One sheet of formulas, drawn below one another.
class SheetC {
 public:
  void add(std::string const& name, field::FormulaFieldC& field) {
    math::ved::PointS const size = field.refView().getExpressionSize();
    math::ved::Node4C const& root = field.crefView().crefRoot();
    root.display(*surface, gap, height_, &root);
    boxes_.push_back(
        {name, math::ved::RectangleS(0, height_ - gap / 2, size.x + 2 * gap, height_ + size.y + gap / 2)});
    width_ = std::max(width_, size.x + 2 * gap);
    height_ += size.y + gap;
  }
  void addStrokes() {
    using namespace math::ved;
    for (StrokeE const kind : {STROKE_WITH_CORNERS, STROKE_SMOOTH}) {
      surface->drawStroke(kind, {{gap, height_ + 9}, {gap + 5, height_}, {gap + 14, height_ + 4}});
      boxes_.push_back({"stroke", RectangleS(0, height_ - gap / 2, 14 + 2 * gap, height_ + 9 + gap / 2)});
      height_ += 9 + gap;
    }
  }
  void compare(double tolerance) const {
    PictureOptionsS options;
    // Letters are too large here to be moved onto whole pixels.
    options.zoom = 7;
    options.margin = 0;
    std::string error, pictures[3];
    for (auto const format : {PICTURE_PNG, PICTURE_SVG, PICTURE_PDF}) {
      ASSERT_TRUE(surface->render(format, width_, height_, options, pictures[format], error)) << error;
    }
    PixelsS const png(pictures[PICTURE_PNG]), svg = seenInSvg(pictures[PICTURE_SVG], "");
    PixelsS const pdf(
        madeBy("pdftocairo -png -transp -r 96 -singlefile $1 $2 && mv $2.png $2", pictures[PICTURE_PDF]));
    for (PixelsS const* const other : {&svg, &pdf}) {
      ASSERT_EQ(other->width, png.width);
      ASSERT_EQ(other->height, png.height);
      for (auto const& [name, box] : boxes_) {
        auto const pixels = [&](long units) { return units * long(options.zoom); };
        math::ved::RectangleS const part(pixels(box.left), pixels(box.top), pixels(box.right),
                                         pixels(box.bottom));
        EXPECT_LT(png.missingIn(*other, part), tolerance) << name << (other == &svg ? " in SVG" : " in PDF");
        EXPECT_LT(other->missingIn(png, part), tolerance) << name << (other == &svg ? " in SVG" : " in PDF");
      }
    }
  }

  oss::PointerTC<CairoGraphicsC> const surface{new CairoGraphicsC(makeTypesetter())};

 private:
  static constexpr long gap = 8;
  std::vector<std::pair<std::string, math::ved::RectangleS>> boxes_;
  long width_ = 0, height_ = gap;
};

// A picture without one of its letters or bars is another formula.
TEST_F(CairoPictures, LookTheSameInEveryFormat) {
  catalogue_extended::registerExtendedOperators(tests::standardOperators());
  SheetC typed;
  for (oss::wstring const text : {u"log(x,2)\u2264pi", u"30\u00B0\u2260\u03B1\u0393", u"((a/b", u"nthroot(",
                                  u"mod and \u00BB\u0416", u"where(f,x,1)", u"x_1+index"}) {
    field::FormulaFieldC field(typed.surface);
    EXPECT_TRUE(field.insertText(text)) << tests::toUtf8(text);
    typed.add(tests::toUtf8(text), field);
  }
  typed.addStrokes();
  typed.compare(0.015);  // empty places are soft
  std::ifstream gallery(ZOLT_GALLERY);
  std::unique_ptr<SheetC> section;
  int count = 0;
  for (std::string line; std::getline(gallery, line);) {
    std::size_t const colon = line.find(": ");
    if (line[0] == '#' || (line[0] != '[' && colon == line.npos)) continue;
    if (line[0] == '[') {
      if (section) section->compare(0.004);
      section = std::make_unique<SheetC>();
      continue;
    }
    auto const expression = exchange::fromPlainText(tests::fromUtf8(line.substr(colon + 2)),
                                                    math::algexpr::CASSessionBC::getSession());
    ASSERT_TRUE(expression) << line;
    field::FormulaFieldC field(section->surface);
    field.setExpression(expression);
    section->add(line, field);
    ++count;
  }
  section->compare(0.004);
  EXPECT_GT(count, 100);
}

TEST_F(CairoPictures, SayWhatTheyShow) {
  options.spokenText = u"x less than 1, \"f\" & more";
  options.plainText = u"x<1 f'(\u03B1)";
  std::string const svg = render(PICTURE_SVG), escaped = "x less than 1, &quot;f&quot; &amp; more";
  EXPECT_NE(svg.find("<title>" + escaped + "</title>"), std::string::npos);
  EXPECT_NE(svg.find(" role=\"img\" aria-label=\"" + escaped + "\">"), std::string::npos);
  std::string const pdf = render(PICTURE_PDF);
  EXPECT_EQ(madeBy("pdftotext $1 $2", pdf), "x<1 f'(\xCE\xB1)\n\n\f");
  EXPECT_NE(madeBy("pdfinfo $1 > $2", pdf).find("x less than 1"), std::string::npos);
  options.spokenText.clear();
  options.plainText.clear();
  EXPECT_EQ(render(PICTURE_SVG).find("title"), std::string::npos);
  EXPECT_EQ(madeBy("pdftotext $1 $2", render(PICTURE_PDF)).substr(0, 3), "x<1");
}

TEST_F(CairoPictures, KeepTheExpression) {
  std::string const png = render(PICTURE_PNG);
  EXPECT_NE(png.find("zolt:expression"), std::string::npos);
  EXPECT_NE(png.find("<(\xE2\x88\x92"
                     "a,\"b&c"),
            std::string::npos);
  EXPECT_GT(PixelsS(png).width, 0) << "still a picture";
  std::string const svg = render(PICTURE_SVG);
  EXPECT_NE(svg.find("<expression xmlns=\"urn:zolt:ved\">&lt;(\xE2\x88\x92"
                     "a,&quot;b&amp;c\xEF\xBF\xBD\xEF\xBF\xBD&quot;)</"),
            std::string::npos);
  options.expression.clear();
  EXPECT_EQ(render(PICTURE_PNG).find("zolt:"), std::string::npos);
  EXPECT_EQ(render(PICTURE_SVG).find("<metadata>"), std::string::npos);
}

TEST_F(CairoPictures, SvgHasTextAsAsked) {
  EXPECT_EQ(render(PICTURE_SVG).find("<text"), std::string::npos);
  options.svgText = SVG_TEXT_NAMED;
  std::string const named = render(PICTURE_SVG);
  EXPECT_NE(named.find("font-family=\"'KaTeX_Main', serif\""), std::string::npos);
  EXPECT_NE(named.find(">&lt;</tspan>"), std::string::npos);
  EXPECT_EQ(named.find("@font-face"), std::string::npos);

  options.svgText = SVG_TEXT_EMBEDDED;
  std::string const embedded = render(PICTURE_SVG);
  EXPECT_NE(embedded.find(
                "@font-face{font-family:'KaTeX_Math';font-style:italic;src:url(data:font/ttf;base64,AAEAAAA"),
            std::string::npos);
  EXPECT_EQ(embedded.find("DejaVu"), std::string::npos) << "only fonts that are used";
  EXPECT_LT(embedded.size(), 10000u) << "and of these only the letters";
}

TEST_F(CairoPictures, RefuseImpossibleSizes) {
  std::string bytes = "before", error;
  EXPECT_FALSE(graphics.render(PICTURE_PNG, 100000, 40, options, bytes, error));
  EXPECT_FALSE(error.empty());
  options.zoom = 0;
  EXPECT_FALSE(graphics.render(PICTURE_SVG, 100, 40, options, bytes, error));
  options.zoom = 1;
  options.margin = 0;
  EXPECT_FALSE(graphics.render(PICTURE_PDF, 0, 40, options, bytes, error));
  EXPECT_EQ(bytes, "before");
}

TEST_F(CairoPictures, DoNotDependOnOtherSurfaces) {
  std::string const before = render(PICTURE_PNG);
  for (int i = 0; i < 3; ++i) {
    CairoGraphicsC other(makeTypesetter());
    other.drawText(u"y", 0, 0);
    std::string bytes, error;
    EXPECT_TRUE(other.render(PICTURE_PNG, 20, 20, options, bytes, error)) << error;
  }
  EXPECT_EQ(render(PICTURE_PNG), before);
  std::string const pdf = render(PICTURE_PDF);
  EXPECT_NE(pdf.find("/Subject"), std::string::npos);
  EXPECT_EQ(pdf.find("Date"), std::string::npos) << "the same bytes at any time";
  graphics.clear();
  EXPECT_NE(render(PICTURE_PNG), before);
}

}  // namespace
}  // namespace zolt::surfaces
