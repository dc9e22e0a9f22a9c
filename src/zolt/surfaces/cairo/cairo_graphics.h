#pragma once

#include <memory>
#include <optional>
#include <string>

#include "zolt/surfaces/typeset/typeset_graphics.h"

namespace zolt::surfaces {

enum PictureFormatE { PICTURE_PNG = 0, PICTURE_SVG = 1, PICTURE_PDF = 2 };

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

/// A picture's size in the unit of its format: "px", "em" or, in PDF, "pt" (1/72 inches).
struct PictureSizeS {
  double width = 0, height = 0;
  double depth = 0;  ///< from the baseline down to the lower edge; 0 when the options have no baseline
  char const* unit = "px";
};

/// A surface that keeps what is drawn on it and makes pictures of it: PNG, SVG and PDF. A picture depends
/// only on the drawing and the options.
class CairoGraphicsC final : public TypesetGraphicsABC {
 public:
  /// `typesetter` must not be null.
  explicit CairoGraphicsC(oss::PointerTC<TypesetterC> typesetter);
  ~CairoGraphicsC() override;

  /// Forgets what was drawn.
  void clear();

  /// The size of the picture that `render` makes of the same arguments.
  static PictureSizeS measure(PictureFormatE format, long width, long height, PictureOptionsS const& options);

  /// Makes a picture of the area from (0, 0) to (width, height), in surface units, with the margin around it.
  /// Returns false, with `error`, when the picture would be too large or cannot be made; `bytes` is replaced
  /// on success and untouched on failure.
  [[nodiscard]] bool render(PictureFormatE format, long width, long height, PictureOptionsS const& options,
                            std::string& bytes, std::string& error) const;

 protected:
  void fillGlyphs(GlyphRunS const& run) const override;
  void fillPath(PathC const& path, InkE ink) const override;
  void strokePath(PathC const& path, double thickness, InkE ink) const override;
  void fillRule(RuleS const& rule, InkE ink) const override;

 private:
  struct StateS;
  std::unique_ptr<StateS> state_;
};

}  // namespace zolt::surfaces
