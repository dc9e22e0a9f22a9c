#include "zolt/surfaces/typeset/detail/text_ruler.h"

#include <algorithm>

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

}  // namespace

int TextRulerC::scaled(int thousandths) const { return thousandths * (em_parts / 1000); }

void TextRulerC::add(int left, int right) {
  current_.origin = current_.start + left;
  current_.after = right;
  current_.end = std::max(current_.start, current_.origin + current_.look.upright.advance + right);
}

bool TextRulerC::joinPair(char16_t c) {
  if (high_ == 0 || !oss::isLowSurrogate(c)) return false;
  // The first half has already taken the room of a missing character; the pair is shown from its start.
  std::int64_t const pairStart = current_.start, used = current_.end;
  current_ = RuledCharS();
  current_.look = characters_.find(oss::joinSurrogates(high_, c));
  current_.start = used;
  current_.origin = pairStart;
  current_.end = std::max(used, pairStart + current_.look.upright.advance);
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
  bool const runGoesOn = current_.inRun;
  LetterStyleC::RangeS const runNames = current_.names;
  current_ = RuledCharS();
  current_.look = characters_.find(c);
  current_.start = start;
  CharClassE const charClass = current_.look.charClass;

  bool const exponentMark = token_ == TOKEN_NUMBER && (c == 'E' || c == 'e');
  if (charClass == CLASS_LETTER && !exponentMark) {
    if (!runGoesOn) {
      runStart_ = start;
      runUprightWidth_ = 0;
    }
    current_.names = runGoesOn ? runNames : names_.all();
    readLetter(c);
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
      readSign();
      return current_;
    case CLASS_COMMA:
      space = scaled(tight_ ? tight_comma_space : comma_space);
      [[fallthrough]];
    case CLASS_OPEN:
      token_ = TOKEN_NONE;
      before_ = BEFORE_SIGN;
      break;
    case CLASS_SPACE:
      token_ = TOKEN_NONE;
      break;
    case CLASS_DIGIT:
      if (token_ == TOKEN_NONE) token_ = TOKEN_NUMBER;
      if (token_ == TOKEN_EXPONENT_MARK) token_ = TOKEN_EXPONENT;
      before_ = BEFORE_OPERAND;
      break;
    case CLASS_STOP:
      token_ = TOKEN_NONE;
      before_ = BEFORE_OPERAND;
      break;
    default:
      token_ = exponentMark ? TOKEN_EXPONENT_MARK : TOKEN_NAME;
      before_ = BEFORE_OPERAND;
      break;
  }
  trailing_ = space;
  add(0, trailing_);
  return current_;
}

void TextRulerC::readLetter(char16_t c) {
  current_.inRun = true;
  names_.narrow(current_.names, c);
  runUprightWidth_ += current_.look.upright.advance;
  current_.origin = current_.start;
  std::int64_t const end = names_.mayBecomeUpright(current_.names)
                               ? runStart_ + runUprightWidth_
                               : current_.start + current_.look.italic.advance;
  current_.end = std::max(current_.start, end);
}

void TextRulerC::readSign() {
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
  } else if (before_ == BEFORE_OPERAND) {
    left = right = tight_ ? tight_binary_space : binary_space;
  } else if (!tight_) {
    constexpr char32_t plus = '+';
    left = right = current_.look.upright.codePoint == plus ? leading_plus_space : leading_minus_space;
  }
  trailing_ = scaled(right);
  add(scaled(left), trailing_);
  token_ = token_ == TOKEN_EXPONENT_MARK ? TOKEN_EXPONENT : TOKEN_NONE;
  before_ = relation ? BEFORE_RELATION : token_ == TOKEN_EXPONENT ? BEFORE_OPERAND : BEFORE_SIGN;
}

}  // namespace zolt::surfaces
