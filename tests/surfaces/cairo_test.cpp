#include <cairo.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <vector>

#include "tests/surfaces/probe_graphics.h"
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
};

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

TEST_F(CairoPictures, PngHasTheSizeAskedForAndCrispBars) {
  for (int const zoom : {1, 2, 3}) {
    options.zoom = zoom;
    PixelsS const pixels(render(PICTURE_PNG));
    EXPECT_EQ(pixels.width, 108 * zoom);
    EXPECT_EQ(pixels.height, 48 * zoom);
    // Down the middle of the bar: full ink or none, and as thick as its share of a unit.
    int full = 0, partial = 0;
    for (int y = 22 * zoom; y < 28 * zoom; ++y) {
      unsigned const opacity = pixels.opacity[std::size_t(y * pixels.width + (4 + 15) * zoom)];
      full += opacity == 255;
      partial += opacity != 255 && opacity != 0;
    }
    EXPECT_EQ(full, zoom < 3 ? 1 : 2) << zoom;
    EXPECT_EQ(partial, 0) << zoom;
    EXPECT_EQ(pixels.opacity[0], 0u) << "transparent where nothing is drawn";
  }
  options.background = {1, 1, 1, 1};
  EXPECT_EQ(PixelsS(render(PICTURE_PNG)).opacity[0], 255u);
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
  std::string const outlines = render(PICTURE_SVG);
  EXPECT_EQ(outlines.find("<text"), std::string::npos);
  EXPECT_NE(outlines.find("viewBox=\"-4 -4 108 48\""), std::string::npos);
  EXPECT_EQ(outlines.find("nan"), std::string::npos);

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

TEST_F(CairoPictures, PdfIsComplete) {
  std::string const pdf = render(PICTURE_PDF);
  EXPECT_EQ(pdf.compare(0, 5, "%PDF-"), 0);
  EXPECT_NE(pdf.find("%%EOF", pdf.size() - 16), std::string::npos);
  EXPECT_NE(pdf.find("/Subject"), std::string::npos);
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
  graphics.clear();
  EXPECT_NE(render(PICTURE_PNG), before);
}

}  // namespace
}  // namespace zolt::surfaces
