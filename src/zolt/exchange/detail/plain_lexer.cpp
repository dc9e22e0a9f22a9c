#include "zolt/exchange/detail/plain_lexer.h"

#include <algorithm>

#include "zolt/algexpr/make_node.h"
#include "zolt/common/decimal_text.h"
#include "zolt/common/signs.h"

namespace zolt::exchange::detail {

namespace common = math::common;
using namespace math::common;

namespace {

constexpr char16_t quote = u'"', factorial = u'!';
constexpr std::u16string_view opening_brackets = u"([{";
constexpr std::u16string_view closing_brackets = u")]}";

struct RangeS {
  char16_t first;
  char16_t last;
};

// Marks, letters and digits of all scripts in rough ranges. Signs, punctuation, arrows and shapes are left
// out, so that a sign without a meaning here is not read as a variable.
constexpr RangeS name_ranges[] = {
    {u'A', u'Z'},           {u'_', u'_'},           {u'a', u'z'},           {u'\u00AA', u'\u00AA'},
    {u'\u00B5', u'\u00B5'}, {u'\u00C0', u'\u00D6'}, {u'\u00D8', u'\u00F6'}, {u'\u00F8', u'\u02B2'},
    {u'\u02B4', u'\u03BF'}, {u'\u03C1', u'\u095F'}, {u'\u0961', u'\u167F'}, {u'\u1681', u'\u1FFF'},
    {u'\u2080', u'\u2089'}, {u'\u2090', u'\u209C'}, {u'\u20D0', u'\u20FF'}, {u'\u2100', u'\u214F'},
    {u'\u2C00', u'\u2DFF'}, {u'\u2E80', u'\u2FFF'}, {u'\u3040', u'\uFDFF'}, {u'\uFE00', u'\uFE0F'},
    {u'\uFE70', u'\uFEFE'}, {u'\uFF66', u'\uFFDC'}};

bool isNameCharacter(char16_t c) {
  if (c >= 0xD800 && c <= 0xDFFF) return true;
  for (RangeS const& range : name_ranges) {
    if (c <= range.last) return c >= range.first;
  }
  return false;
}

/// Signs that are names by themselves, and parts of a name next to its underscore.
bool isPartOfName(char16_t c) { return c == greek_pi || c == common::infinity_sign; }

/// Of the letters, those that no mark or digit of an index looks like.
bool isLetter(char16_t c) { return isNameCharacter(c) && (c < 0x0300 || (c >= 0x0370 && c < 0x2000)); }

/// Whether a number that is all of an index ends just before `end`, as in "v_0".
bool endsCounted(std::u16string_view text, std::size_t begin, std::size_t end) {
  std::size_t digits = end;
  while (digits > begin && common::isDigit(text[digits - 1])) --digits;
  return digits < end && digits > begin + 1 && text[digits - 1] == u'_';
}

/// A name is letters and digits, then primes, and the same again after each underscore. After a number as
/// index another name begins: "v_0t" is v_0∙t.
std::size_t findNameEnd(std::u16string_view text, std::size_t begin) {
  std::size_t end = begin;
  bool partEnded = false;
  for (; end < text.size(); ++end) {
    char16_t const c = text[end];
    if (end > begin && common::countPrimes(c) > 0) {
      partEnded = true;
    } else if (isPartOfName(c)) {
      bool const startsIndexed = end == begin && end + 1 < text.size() && text[end + 1] == u'_';
      if (!startsIndexed && (end < begin + 2 || text[end - 1] != u'_')) break;
      partEnded = true;
    } else if (c == u'_') {
      partEnded = false;
    } else if (partEnded || !(isNameCharacter(c) || (end > begin && common::isDigit(c)))) {
      break;
    } else if (isLetter(c) && endsCounted(text, begin, end)) {
      break;
    }
  }
  return end;
}

// Most characters are letters and digits, and this is called before each of them.
bool isBlank(char16_t c) {
  return (c <= u' ' || c >= u'\u00A0') && common::foldLookAlike(c, common::LOOK_ALIKE_PASTED) == u' ';
}

/// The character that the superscript `c` raises, a digit, a minus or "n"; U+0000 for any other `c`.
char16_t lowered(char16_t c) {
  char16_t const sign = common::loweredSign(c);
  if (sign == u'-') return common::minus_sign;
  return common::isDigit(sign) || sign == u'n' ? sign : u'\0';
}

constexpr char16_t first_subscript = u'\u2080';

bool isSubscriptDigit(char16_t c) { return c >= first_subscript && c <= u'\u2089'; }

}  // namespace

bool isBareName(std::u16string_view name) {
  bool const isRead = !name.empty() && !common::isDigit(name[0]) && findNameEnd(name, 0) == name.size();
  return isRead && std::all_of(name.begin(), name.end(), [](char16_t c) {
           return c == common::prime_sign || common::countPrimes(c) == 0;
         });
}

PlainLexerC::PlainLexerC(std::u16string_view text) : text_(text) { readNextToken(); }

char16_t PlainLexerC::peek(std::size_t ahead) const {
  return ahead < text_.size() - position_ ? text_[position_ + ahead] : u'\0';
}

void PlainLexerC::set(PlainTokenE type, std::u16string_view text) {
  token_.type = type;
  token_.text = text;
}

void PlainLexerC::setOperator(ReadingS const& reading) {
  NotationS const& notation = *reading.notation;
  switch (notation.form) {
    case FORM_INFIX:
      token_.infix = &notation;
      return set(PLAIN_TOKEN_INFIX);
    case FORM_PREFIX:
      token_.infix = &notation;
      return set(PLAIN_TOKEN_PREFIX);
    case FORM_POSTFIX:
      return set(PLAIN_TOKEN_POSTFIX, notation.name);
    case FORM_CONSTANT:
      return set(PLAIN_TOKEN_CONSTANT, notation.name);
    default:
      return set(PLAIN_TOKEN_ROOT, reading.addedArgument);
  }
}

void PlainLexerC::setBracket(PlainTokenE type, char16_t bracket, std::u16string_view function) {
  set(type, function);
  token_.bracket = bracket;
}

void PlainLexerC::setError(ReadErrorE error) {
  token_.type = PLAIN_TOKEN_BAD;
  token_.error = error;
}

void PlainLexerC::readNextToken() {
  while (isBlank(peek())) ++position_;
  token_.begin = position_;
  token_.text.clear();
  token_.infix = nullptr;
  char16_t const c = peek();
  if (position_ == text_.size()) {
    set(PLAIN_TOKEN_END);
  } else if (common::isDigit(c) || (c == u'.' && common::isDigit(peek(1)))) {
    readNumber();
  } else if (findNameEnd(text_, position_) > position_) {
    readName();
  } else if (isBigSign(c) && isFunction({&c, 1})) {
    readBigSign();
  } else if (c == quote) {
    readQuotedName();
  } else if (lowered(c) != u'\0') {
    readSuperscript();
  } else {
    ++position_;
    readSign(c);
  }
  token_.end = position_;
}

void PlainLexerC::readSign(char16_t c) {
  if (c == u',') return set(PLAIN_TOKEN_COMMA);
  if (c == u';' && hasTables()) return set(PLAIN_TOKEN_ROW_END);
  if (closing_brackets.find(c) != closing_brackets.npos) return setBracket(PLAIN_TOKEN_CLOSE, c);
  std::size_t const opening = opening_brackets.find(c);
  if (opening != opening_brackets.npos) return setBracket(PLAIN_TOKEN_OPEN, closing_brackets[opening]);
  bool const isRightAfter = token_.end == token_.begin;
  bool const isCounted = token_.type == PLAIN_TOKEN_NUMBER ||
                         (token_.type == PLAIN_TOKEN_POSTFIX && text_[token_.end - 1] == factorial);
  // The longest sign wins: "<=>".
  std::size_t length = 3;
  ReadingS const* reading = findReading(text_.substr(token_.begin, length));
  if (!reading) reading = findReading(text_.substr(token_.begin, --length));
  // "5!=120" is an equation.
  bool const isFactorial = c == factorial && isRightAfter && isCounted;
  if (reading && !isFactorial) {
    position_ = std::min(token_.begin + length, text_.size());
    return setOperator(*reading);
  }
  char16_t const sign = common::foldLookAlike(c, common::LOOK_ALIKE_PASTED);
  if (ReadingS const* const single = findReading({&sign, 1})) return setOperator(*single);
  NotationS const* const function = findBrackets(c);
  if (!function) return setError(READ_ERROR_BAD_CHARACTER);
  std::u16string_view const brackets = function->plain.brackets;
  if (brackets[0] == brackets[1]) return set(PLAIN_TOKEN_BAR, function->name);
  if (c == brackets[1]) return setBracket(PLAIN_TOKEN_CLOSE, c);
  setBracket(PLAIN_TOKEN_OPEN, brackets[1], function->name);
}

void PlainLexerC::readNumber() {
  position_ = common::findNumberEnd(text_, token_.begin, common::LONE_EXPONENT_LEFT);
  std::u16string_view const run = text_.substr(token_.begin, position_ - token_.begin);
  common::DecimalTextS parts;
  if (!common::readDecimalText(run, parts)) return setError(READ_ERROR_BAD_NUMBER);
  set(PLAIN_TOKEN_NUMBER, run);
}

void PlainLexerC::readName() {
  position_ = findNameEnd(text_, position_);
  std::u16string_view const name = text_.substr(token_.begin, position_ - token_.begin);
  ReadingS const* const reading = findReading(name);
  if (reading && reading->notation->form != FORM_FUNCTION) return setOperator(*reading);
  set(PLAIN_TOKEN_NAME);
  for (char16_t const c : name) {
    unsigned const primes = common::countPrimes(c);
    token_.text.append(std::max(primes, 1u), primes > 0 ? common::prime_sign : c);
  }
}

/// Reads a big sign with the bound that is right after it, "∫_0" or "∫₀".
void PlainLexerC::readBigSign() {
  token_.text = peek();
  ++position_;
  if (peek() == u'_') {
    std::size_t const end = findNameEnd(text_, position_);
    token_.text += text_.substr(position_, end - position_);
    position_ = end;
  } else if (isSubscriptDigit(peek())) {
    token_.text += u'_';
    for (; isSubscriptDigit(peek()); ++position_)
      token_.text += static_cast<char16_t>(peek() - first_subscript + u'0');
  }
  token_.type = PLAIN_TOKEN_NAME;
}

void PlainLexerC::readQuotedName() {
  ++position_;
  for (; position_ < text_.size(); ++position_) {
    if (peek() == quote) {
      ++position_;
      if (peek() != quote) {
        if (!math::algexpr::isWritableName(token_.text)) return setError(READ_ERROR_BAD_NAME);
        token_.type = PLAIN_TOKEN_QUOTED_NAME;
        return;
      }
    }
    token_.text += peek();
  }
  setError(READ_ERROR_MISSING_CLOSE);
}

void PlainLexerC::readSuperscript() {
  for (; lowered(peek()) != u'\0'; ++position_) token_.text += lowered(peek());
  if (token_.text != u"n" && !math::algexpr::makeNumber(token_.text)) {
    return setError(READ_ERROR_BAD_NUMBER);
  }
  token_.type = PLAIN_TOKEN_SUPERSCRIPT;
}

}  // namespace zolt::exchange::detail
