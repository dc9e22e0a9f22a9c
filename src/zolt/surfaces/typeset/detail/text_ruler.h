#pragma once

#include <cstdint>

#include "zolt/surfaces/typeset/detail/char_table.h"
#include "zolt/surfaces/typeset/detail/letter_style.h"
#include "zolt/surfaces/typeset/typesetter.h"

// Internal to the typeset library.

namespace zolt::surfaces {

/// The space that one 16-bit character of a text occupies. All distances are in `em_parts` from the start of
/// the text.
struct RuledCharS {
  CharLookS look;
  std::int64_t start = 0;      ///< where the text before it ends
  std::int64_t origin = 0;     ///< where its glyph is
  std::int64_t end = 0;        ///< where the text up to and with it ends; at least `start`
  int after = 0;               ///< the space that it keeps after itself
  bool joined = false;         ///< the second half of a relation written with two characters
  bool lowered = false;        ///< in an index: smaller, below the line
  bool marksIndex = false;     ///< an underscore that is not shown when an index follows
  bool inRun = false;          ///< a letter or digit of a run whose face is known only at its end
  LetterStyleC::RangeS names;  ///< in a run: the names that the run up to here may become
  unsigned letters = 0;        ///< in a run: how many it has up to here
  bool marksPower = false;     ///< the "e" of a number
  bool raised = false;         ///< a digit of the exponent of ten
  bool startsPower = false;    ///< the first of these: now the mark is a factor of ten
  std::int64_t power = 0;      ///< the place of that factor
};

/// Reads a text from left to right and computes where each character ends, and so the width of every
/// beginning. In a name everything after its first underscore is an index.
class TextRulerC {
 public:
  /// `tight`: signs get almost no space, as is usual in exponents and limits.
  TextRulerC(CharTableC& characters, LetterStyleC const& names, bool tight, NumberLookE look)
      : characters_(characters), names_(names), tight_(tight), look_(look) {}

  RuledCharS const& read(char16_t c);
  std::int64_t getEnd() const { return current_.end; }
  /// Whether anything was lowered so far.
  bool hasIndex() const { return hasIndex_; }
  /// How wide the index is that the text ends with; 0: there is none.
  std::int64_t getIndexWidth() const { return current_.lowered ? current_.end - indexStart_ : 0; }

  /// The size of indices, in percent of that of the text.
  static constexpr int index_percent = 75;

  /// The glyphs of the factor of ten, and the space around its dot.
  FaceGlyphS getFactor(std::size_t i) const { return characters_.find(factor[i]).upright; }
  int getFactorSpace() const;
  static constexpr char32_t factor[] = {0x22C5, '1', '0'};

 private:
  enum TokenE { TOKEN_NONE, TOKEN_NUMBER, TOKEN_EXPONENT_MARK, TOKEN_EXPONENT, TOKEN_NAME };
  enum BeforeE { BEFORE_NOTHING, BEFORE_OPERAND, BEFORE_SIGN, BEFORE_RELATION };

  bool joinPair(char16_t c);
  bool readIndexMark();
  void readInRun(char16_t c);
  void readSign(int blanks);
  void readBlank();
  void readPowerDigit();
  void add(int left, int right);
  int advanceOf(FaceGlyphS const& glyph) const;

  CharTableC& characters_;
  LetterStyleC const& names_;
  bool tight_;
  NumberLookE look_;
  std::int64_t power_ = 0,
               powerSign_ = 0;  // the place of the factor of ten; the advance of the sign after it
  bool powerHasDigits_ = false;
  TokenE token_ = TOKEN_NONE;
  BeforeE before_ = BEFORE_NOTHING;
  char16_t high_ = 0;        // a surrogate waiting for its partner
  int trailing_ = 0;         // the space that the sign just read keeps after itself
  std::int64_t blanks_ = 0;  // how wide the blanks are that were read last
  bool inIndex_ = false;     // after the underscore of a name
  bool hasIndex_ = false;
  std::int64_t indexStart_ = 0;  // where the last index begins
  int owed_ = 0;                 // what an underscore that is shown is wider than one that is not
  std::int64_t runStart_ = 0;    // where the current run of letters starts
  int runOverhang_ = 0;          // of its last letter
  std::int64_t runUpright_ = 0, runItalic_ = 0, runWord_ = 0;  // how wide it is in each face
  RuledCharS current_;
};

}  // namespace zolt::surfaces
