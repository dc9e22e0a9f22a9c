#pragma once

#include <memory>
#include <string>
#include <vector>

#include "hosts/cli/formula.h"
#include "zolt/oss/pointer.h"
#include "zolt/surfaces/cairo/cairo_graphics.h"

namespace zolt::cli {

/// A finished picture: what was drawn, and its size in surface units.
class PictureC {
 public:
  explicit PictureC(oss::PointerTC<surfaces::TypesetterC> const& typesetter);

  /// Draws one formula. The picture has its words in `speech` and, when it is complete, its prefix notation.
  void drawFormula(FormulaC& formula, exchange::SpeechStyleS speech = {});
  /// Draws formulas in rows of the given width, spread evenly over each.
  void drawSheet(std::vector<std::unique_ptr<FormulaC>> const& formulas, long width);

  surfaces::PictureOptionsS& refOptions() { return options_; }

  /// Returns false, with `error`, when the picture cannot be made or written.
  bool write(std::string const& path, surfaces::PictureFormatE format, std::string& error) const;
  bool toBytes(surfaces::PictureFormatE format, std::string& bytes, std::string& error) const;
  /// Its width, its height and how far it goes below the line that the letters of a formula stand on, each
  /// with its unit, parted by tabs.
  std::string writeSizes(surfaces::PictureFormatE format) const;

 private:
  void drawRow(std::vector<math::ved::Node4C*> const& trees, long room);

  oss::PointerTC<surfaces::CairoGraphicsC> graphics_;
  surfaces::PictureOptionsS options_;
  long width_ = 0;
  long height_ = 0;
};

/// Finds the format that a file's extension names, in either case. Returns false when it names none.
bool findPictureFormat(std::string const& path, surfaces::PictureFormatE& format);

/// Reads a colour: "black", "white", "none" (transparent), "#rgb", "#rrggbb" or "#rrggbbaa".
bool readColour(std::string const& text, surfaces::ColourS& colour);

}  // namespace zolt::cli
