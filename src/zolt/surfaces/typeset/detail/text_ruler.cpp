#include "zolt/surfaces/typeset/detail/text_ruler.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "zolt/oss/code_point.h"

namespace zolt::surfaces {

namespace {

// These spaces are in thousandths of an em: the traditional medium and thick space of printed formulas, and a
// narrower one for products, which are written out here much more often than in print and should still look
// closer than sums.
constexpr int binary_space = 222, product_space = 150, relation_space = 278, comma_space = 167;
constexpr int tight_binary_space = 40, tight_relation_space = 60, tight_comma_space = 50;
// A sign that starts a text may follow a construct (then it is binary) or start the row (then it is a prefix,
// and all of this space is before it). A minus is equally often either, and a plus is mostly binary.
constexpr int leading_minus_space = 120, leading_plus_space = 185;

// Where an underscore is not shown, there is a caret place of this width before the index, which begins in
// it.
constexpr int mark_space = 83, index_distance = 33, prime_distance = 30;

constexpr int scaled(int thousandths) { return thousandths * (em_parts / 1000); }

}  // namespace

int TextRulerC::advanceOf(FaceGlyphS const& glyph) const {
  return current_.lowered ? glyph.advance / 100 * index_percent : glyph.advance;
}

void TextRulerC::add(int left, int right) {
  current_.origin = current_.start + std::exchange(owed_, 0) + left;
  current_.after = right;
  current_.end = std::max(current_.start, current_.origin + advanceOf(current_.look.upright) + right);
}

bool TextRulerC::joinPair(char16_t c) {
  if (high_ == 0 || !oss::isLowSurrogate(c)) return false;
  // The first half has already taken the room of a missing character; the pair is shown from its start.
  std::int64_t const pairStart = current_.start, used = current_.end;
  bool const lowered = current_.lowered;
  current_ = RuledCharS();
  current_.look = characters_.find(oss::joinSurrogates(high_, c));
  current_.lowered = lowered;
  current_.start = used;
  current_.origin = pairStart;
  current_.end = std::max(used, pairStart + advanceOf(current_.look.upright));
  return true;
}

RuledCharS const& TextRulerC::read(char16_t c) {
  if (joinPair(c)) {
    high_ = 0;
    before_ = BEFORE_OPERAND;
    return current_;
  }
  high_ = oss::isHighSurrogate(c) ? c : char16_t(0);

  std::int64_t const start = current_.end;
  bool const afterMark = current_.marksIndex, runGoesOn = current_.inRun, indexGoesOn = current_.lowered;
  std::int64_t const markStart = current_.start;
  LetterStyleC::RangeS const runNames = current_.names;
  unsigned const runLetters = current_.letters;
  current_ = RuledCharS();
  current_.look = characters_.find(c);
  current_.start = start;
  CharClassE const charClass = current_.look.charClass;
  std::int64_t const blanks = charClass == CLASS_SPACE ? blanks_ : std::exchange(blanks_, 0);
  if (charClass == CLASS_INDEX_MARK && readIndexMark()) return current_;

  bool const isLetter = charClass == CLASS_LETTER, isDigit = charClass == CLASS_DIGIT;
  bool const fitsIndex = isLetter || isDigit || charClass == CLASS_ORDINARY || charClass == CLASS_INDEX_MARK;
  inIndex_ = inIndex_ && fitsIndex;
  current_.lowered = inIndex_ || charClass == CLASS_LOWERED;
  hasIndex_ = hasIndex_ || current_.lowered;
  if (current_.lowered && !indexGoesOn) indexStart_ = afterMark ? markStart : start;
  int left = 0;
  if (afterMark && inIndex_) {
    left = scaled(index_distance - mark_space);
    owed_ = 0;
  }
  // A prime is as high as what leans over the end of a letter.
  if (charClass == CLASS_PRIME && runGoesOn) left = runOverhang_ + scaled(prime_distance);

  bool const exponentMark = token_ == TOKEN_NUMBER && (c == 'E' || c == 'e');
  if ((isLetter && !exponentMark) || (isDigit && runGoesOn)) {
    if (!runGoesOn) {
      runStart_ = start + std::exchange(owed_, 0) + left;
      runUpright_ = runItalic_ = runWord_ = 0;
    }
    current_.origin = runGoesOn ? start : runStart_;
    current_.names = runGoesOn ? runNames : names_.all();
    current_.letters = runLetters + (isLetter ? 1 : 0);
    readInRun(c);
    token_ = TOKEN_NAME;
    before_ = BEFORE_OPERAND;
    trailing_ = 0;
    return current_;
  }

  int space = 0;
  switch (charClass) {
    case CLASS_PLUS_MINUS:
    case CLASS_BINARY:
    case CLASS_RELATION:
    case CLASS_COLON:
      readSign(static_cast<int>(blanks));
      return current_;
    case CLASS_COMMA:
      space = scaled(tight_ ? tight_comma_space : comma_space);
      [[fallthrough]];
    case CLASS_OPEN:
      token_ = TOKEN_NONE;
      before_ = BEFORE_SIGN;
      break;
    case CLASS_SPACE:
      readBlank();
      return current_;
    case CLASS_DIGIT:
      if (token_ == TOKEN_NONE) token_ = TOKEN_NUMBER;
      if (token_ == TOKEN_EXPONENT_MARK) token_ = TOKEN_EXPONENT;
      before_ = BEFORE_OPERAND;
      if (token_ != TOKEN_EXPONENT || look_ == NUMBERS_AS_TYPED) break;
      trailing_ = 0;
      readPowerDigit();
      return current_;
    case CLASS_STOP:
      token_ = TOKEN_NONE;
      before_ = BEFORE_OPERAND;
      break;
    default:
      token_ = exponentMark ? TOKEN_EXPONENT_MARK : TOKEN_NAME;
      current_.marksPower = exponentMark;
      power_ = start;
      powerSign_ = 0;
      powerHasDigits_ = false;
      before_ = BEFORE_OPERAND;
      break;
  }
  trailing_ = space;
  add(left, trailing_);
  return current_;
}

/// Whether the underscore just read can begin an index: it is the first in a name.
bool TextRulerC::readIndexMark() {
  if (token_ != TOKEN_NAME || inIndex_) return false;
  inIndex_ = current_.marksIndex = true;
  current_.lowered = true;
  current_.origin = current_.start;
  current_.end = current_.start + scaled(mark_space);
  owed_ = std::max(0, advanceOf(current_.look.upright) - scaled(mark_space));
  current_.lowered = false;
  trailing_ = 0;
  return true;
}

// A blank that is typed beside a sign is no wider than the space that the sign has anyway: "a + b" is set as
// "a+b" is.
void TextRulerC::readBlank() {
  token_ = TOKEN_NONE;
  if (trailing_ == 0) {
    add(0, 0);
    blanks_ += current_.end - current_.start;
    return;
  }
  if (before_ == BEFORE_RELATION) before_ = BEFORE_SIGN;
  current_.origin = current_.end = current_.start;
  current_.after = trailing_;
}

int TextRulerC::getFactorSpace() const { return scaled(tight_ ? tight_binary_space : product_space); }

// Until a digit follows, the mark is shown as it is: it may become part of a name.
void TextRulerC::readPowerDigit() {
  current_.raised = true;
  current_.startsPower = !powerHasDigits_;
  current_.origin = current_.start;
  if (current_.startsPower) {
    current_.power = power_;
    current_.origin = power_ + 2 * getFactorSpace() + powerSign_ / 100 * index_percent;
    for (std::size_t i = 0; i < std::size(factor); ++i) current_.origin += getFactor(i).advance;
  }
  powerHasDigits_ = true;
  current_.end =
      std::max(current_.start, current_.origin + current_.look.upright.advance / 100 * index_percent);
}

void TextRulerC::readInRun(char16_t c) {
  current_.inRun = true;
  names_.narrow(current_.names, c);
  runUpright_ += advanceOf(current_.look.upright);
  runItalic_ += advanceOf(current_.look.italic);
  runWord_ += advanceOf(current_.look.word);
  bool const upright = names_.mayBecomeUpright(current_.names), word = current_.letters > 1;
  std::int64_t const width = upright ? runUpright_ : word ? runWord_ : runItalic_;
  CharLookS const& look = current_.look;
  runOverhang_ = (upright ? look.upright : word ? look.word : look.italic).overhang;
  current_.end = std::max(current_.start, runStart_ + width);
}

void TextRulerC::readSign(int blanks) {
  CharClassE const charClass = current_.look.charClass;
  bool const relation = charClass == CLASS_RELATION || charClass == CLASS_COLON;
  if (relation && before_ == BEFORE_RELATION) {
    // Two relation signs in a row are one relation: the second moves up into the space after the first.
    int const space = charClass == CLASS_COLON ? 0 : scaled(tight_ ? tight_relation_space : relation_space);
    add(-trailing_, space);
    current_.joined = true;
    trailing_ = int(current_.end - current_.origin) - current_.look.upright.advance;
    return;
  }
  int left = 0, right = 0;
  if (relation) {
    left = right = tight_ ? tight_relation_space : relation_space;
    if (charClass == CLASS_COLON) right = 0;
  } else if (charClass == CLASS_BINARY) {
    left = right = tight_ ? tight_binary_space : product_space;
  } else if (token_ == TOKEN_EXPONENT_MARK || before_ == BEFORE_SIGN || before_ == BEFORE_RELATION) {
    left = right = 0;
  } else if (before_ == BEFORE_OPERAND || blanks > 0) {
    left = right = tight_ ? tight_binary_space : binary_space;
  } else if (!tight_) {
    constexpr char32_t plus = '+';
    left = right = current_.look.upright.codePoint == plus ? leading_plus_space : leading_minus_space;
  }
  trailing_ = scaled(right);
  add(scaled(left) - blanks, trailing_);
  if (token_ == TOKEN_EXPONENT_MARK) powerSign_ = current_.look.upright.advance;
  token_ = token_ == TOKEN_EXPONENT_MARK ? TOKEN_EXPONENT : TOKEN_NONE;
  before_ = relation ? BEFORE_RELATION : token_ == TOKEN_EXPONENT ? BEFORE_OPERAND : BEFORE_SIGN;
}

}  // namespace zolt::surfaces
