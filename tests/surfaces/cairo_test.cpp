#include <cairo.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <numeric>
#include <vector>

#include "tests/support/cases.h"
#include "tests/support/operators.h"
#include "tests/surfaces/probe_graphics.h"
#include "zolt/field/formula_field.h"
#include "zolt/surfaces/cairo/cairo_graphics.h"

namespace zolt::surfaces {
namespace {

/// The pixels of a PNG picture, as opacity 0 to 255.
struct PixelsS {
  int width = 0, height = 0;
  std::vector<unsigned> opacity;

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
        opacity.push_back(pixel >> 24);
      }
    }
    cairo_surface_destroy(surface);
  }

  /// The share of ink in each of sixteen bands of rows, then of columns, from 0 to 1.
  std::vector<double> bands() const {
    std::vector<double> all;
    for (bool const columns : {false, true}) {
      int const size = columns ? width : height, across = columns ? height : width;
      std::vector<double> upTo{0};  // the ink before each line of pixels
      for (int i = 0; i < size; ++i) {
        double line = 0;
        for (int j = 0; j < across; ++j)
          line += opacity[std::size_t(columns ? j * width + i : i * width + j)];
        upTo.push_back(upTo.back() + line / across / 255);
      }
      upTo.push_back(upTo.back());
      double before = 0;
      for (int band = 1; band <= 16; ++band) {
        double const end = band * size / 16.0, part = end - std::floor(end);
        auto const line = std::size_t(end);
        double const ink = upTo[line] + part * (upTo[line + 1] - upTo[line]);
        all.push_back((ink - before) * 16 / size);
        before = ink;
      }
    }
    return all;
  }
  double ink() const {
    return double(std::accumulate(opacity.begin(), opacity.end(), 0ul)) / 255 / width / height;
  }
};

/// What another program makes of a picture.
PixelsS seenBy(std::string const& program, std::string const& picture) {
  std::string const path = testing::TempDir() + "zolt_picture_" + std::to_string(getpid());
  std::ofstream(path, std::ios::binary) << picture;
  EXPECT_EQ(std::system((program + " " + path + " " + path + "-seen").c_str()), 0) << program;
  std::ifstream seen(path + "-seen.png", std::ios::binary);
  std::string const png(std::istreambuf_iterator<char>(seen), {});
  for (auto const* const end : {"", "-seen.png"}) std::remove((path + end).c_str());
  return PixelsS(png);
}

PixelsS seenInSvg(std::string const& svg, std::string const& options) {
  return seenBy("f() { rsvg-convert " + options + " \"$1\" -o \"$2.png\"; }; f", svg);
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
    for (unsigned const opacity : png.opacity) ASSERT_TRUE(opacity == 0 || opacity == 255) << zoom;
    EXPECT_GT(png.ink(), ink / 2) << zoom;
  }
  options.background = {1, 1, 1, 1};
  EXPECT_EQ(PixelsS(render(PICTURE_PNG)).ink(), 1);
}

TEST_F(CairoPictures, LookTheSameInEveryFormat) {
  tests::standardOperators();
  for (oss::wstring const typed :
       {u"(sqrt(x²+1)+root(3,2y))/2", u"int(0,1,x²,x)", u"sum(k,1,n,k!)", u"|a|+⌊b⌋+⌈c⌉", u"diff(x,sin x)",
        u"log(x,2)≤pi", u"30°≠αΓ", u"((a/b)", u"nthroot(", u"mod and »Ж", u"where(f,x,1)"}) {
    oss::PointerTC<CairoGraphicsC> const surface(new CairoGraphicsC(makeTypesetter()));
    field::FormulaFieldC field(surface);
    EXPECT_TRUE(field.insertText(typed)) << tests::toUtf8(typed);
    math::ved::PointS const size = field.refView().getExpressionSize();
    field.refView().display(0, 0);
    options.zoom = 8;
    options.margin = 1.5;
    std::string error, pictures[3];
    for (auto const format : {PICTURE_PNG, PICTURE_SVG, PICTURE_PDF}) {
      ASSERT_TRUE(surface->render(format, size.x, size.y, options, pictures[format], error)) << error;
    }
    PixelsS const png(pictures[PICTURE_PNG]);
    EXPECT_EQ(png.width, (size.x + 3) * 8);
    EXPECT_EQ(png.height, (size.y + 3) * 8);
    PixelsS const svg = seenInSvg(pictures[PICTURE_SVG], "");
    PixelsS const pdf = seenBy("pdftocairo -png -transp -r 96 -singlefile", pictures[PICTURE_PDF]);
    std::vector<double> const ink = png.bands();
    for (PixelsS const& other : {svg, pdf}) {
      EXPECT_EQ(other.width, png.width);
      EXPECT_EQ(other.height, png.height);
      std::vector<double> const seen = other.bands();
      for (std::size_t i = 0; i < ink.size(); ++i) {
        EXPECT_NEAR(seen[i], ink[i], 0.03) << tests::toUtf8(typed) << " " << (&other == &svg) << " " << i;
      }
    }
  }
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
