#pragma once

#include <optional>
#include <string>

#include "zolt/oss/wstring.h"

namespace zolt::surfaces {

/// How the letters of an SVG picture are stored.
enum SvgTextE {
  SVG_TEXT_OUTLINES = 0,  ///< paths: the same everywhere, but no longer text
  SVG_TEXT_NAMED = 1,     ///< text in fonts named "KaTeX_Main", "KaTeX_Math", …, which the viewer must have
  SVG_TEXT_EMBEDDED = 2   ///< text, with the files of the fonts that it uses inside the picture
};

/// What the size of an SVG picture is counted in.
enum SvgUnitE {
  SVG_UNIT_PX = 0,
  SVG_UNIT_EM = 1  ///< the letters of the text around: the picture grows with these
};

/// Components from 0 to 1.
struct ColourS {
  double red = 0, green = 0, blue = 0, opacity = 1;
};

/// What a picture is to look like and hold.
struct PictureOptionsS {
  static constexpr double default_zoom = 1.75;
  /// Letters of the default zoom, which are 12 surface units.
  static constexpr double pixels_per_em = 12 * default_zoom;

  /// Device pixels (in PDF 1/96 inches) per surface unit; with `SVG_UNIT_EM` letters of the default zoom are
  /// as large as those around.
  double zoom = default_zoom;
  /// Free space around the formula, in surface units.
  double margin = 4;
  ColourS foreground;
  /// The background is transparent unless given.
  ColourS background{1, 1, 1, 0};
  SvgTextE svgText = SVG_TEXT_OUTLINES;
  SvgUnitE svgUnit = SVG_UNIT_PX;
  /// How far the line that the formula's letters stand on is below the top of the area, in surface units.
  /// An SVG picture with it stands on the line of the text that it is in.
  std::optional<double> baseline;
  /// The formula in prefix notation, stored inside the picture when not empty: in PNG as the text
  /// "zolt:expression", in SVG as `<metadata>`, in PDF as the subject.
  oss::wstring expression;
  /// The formula in words: what screen readers say for an SVG picture, and the title of SVG and PDF files.
  oss::wstring spokenText;
  /// The language of these words in an SVG picture, "de"; empty: that of the page around.
  std::string spokenLanguage;
  /// What is copied and searched for in a PDF picture; when empty, the letters one by one.
  oss::wstring plainText;
};

}  // namespace zolt::surfaces
