#pragma once

#include <memory>
#include <string>

#include "zolt/surfaces/typeset/picture_options.h"
#include "zolt/surfaces/typeset/typeset_graphics.h"

namespace zolt::surfaces {

enum PictureFormatE { PICTURE_PNG = 0, PICTURE_SVG = 1, PICTURE_PDF = 2 };

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
