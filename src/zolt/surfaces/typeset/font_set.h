#pragma once

#include <string>
#include <vector>

#include "zolt/oss/pointer.h"
#include "zolt/oss/ref_counted.h"
#include "zolt/surfaces/typeset/sfnt_font.h"

namespace zolt::surfaces {

/// Index of a face in a `FontSetC`; the fallbacks count up from `FACE_FALLBACK`.
enum FaceE : unsigned { FACE_MAIN = 0, FACE_MATH = 1, FACE_FALLBACK = 2 };

/// What a face is for.
enum FaceUseE {
  FACE_FOR_ALL,     ///< for all that the faces before it lack
  FACE_FOR_WORDS,   ///< an italic for words, whose letters are closer than those of a product
  FACE_FOR_DOUBLED  ///< its capitals are those with doubled strokes, as in ℝ
};

/// The faces that formulas are set in: KaTeX Main (upright), KaTeX Math (italic), an italic for words, one of
/// letters with doubled strokes, and fallbacks for what these lack. Immutable.
class FontSetC final : public oss::RefCountedBC {
 public:
  /// Name of a face and the bytes of its file.
  struct FileS {
    std::string name, bytes;
    FaceUseE use = FACE_FOR_ALL;
  };

  /// The folders named by the environment variable `ZOLT_FONT_DIR` (separated as in `PATH`), followed by
  /// those that the library was built with.
  static std::vector<std::string> getDefaultFolders();

  /// Reads `KaTeX_Main-Regular.ttf`, `KaTeX_Math-Italic.ttf` and, where present and usable,
  /// `DejaVuSerif.ttf`, `DejaVuSans.ttf`, `KaTeX_Main-Italic.ttf` and `KaTeX_AMS-Regular.ttf`, each from the
  /// first folder that holds it. Returns null, with `error` naming the file and the folders, when one of the
  /// first two is missing or unusable.
  [[nodiscard]] static oss::PointerTC<FontSetC> load(std::vector<std::string> const& folders,
                                                     std::string& error);

  /// Makes the set from bytes in memory: main, math, then the fallbacks in order of preference. Returns null,
  /// with `error`, when there are fewer than two or one is unusable.
  [[nodiscard]] static oss::PointerTC<FontSetC> fromMemory(std::vector<FileS> files, std::string& error);

  unsigned getFaceCount() const { return unsigned(faces_.size()); }
  SfntFontC const& getFont(unsigned face) const { return faces_[face].font; }
  /// "KaTeX_Main", "KaTeX_Math", "DejaVu Serif", …
  std::string const& getFaceName(unsigned face) const { return faces_[face].name; }
  /// The face of names of several letters; `FACE_MATH` when the set has none for them.
  unsigned getWordFace() const { return wordFace_; }
  /// The face whose capitals have doubled strokes; `FACE_MAIN` when there is none.
  unsigned getDoubledFace() const { return doubledFace_; }
  /// Whether it is the italic of the family of its name.
  bool isItalic(unsigned face) const { return face == FACE_MATH || face == wordFace_; }

 private:
  struct LoadedFaceS {
    std::string name;
    SfntFontC font;
  };

  FontSetC() = default;

  std::vector<LoadedFaceS> faces_;
  unsigned wordFace_ = FACE_MATH;
  unsigned doubledFace_ = FACE_MAIN;
};

}  // namespace zolt::surfaces
