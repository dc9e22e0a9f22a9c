#include "zolt/common/decimal_text.h"

#include <algorithm>
#include <limits>
#include <string>
#include <utility>

#include "zolt/common/signs.h"

namespace zolt::math::common {

namespace {

std::size_t skipDigits(wstring_view text, std::size_t from) {
  while (from < text.size() && isDigit(text[from])) ++from;
  return from;
}

// The most digits that any 32-bit exponent has once its leading zeros are gone.
constexpr std::size_t max_exponent_digits = 10;

bool readExponent(DecimalTextS const& text, std::int64_t& exponent) {
  wstring_view digits = text.exponentDigits;
  digits.remove_prefix(std::min(digits.find_first_not_of(u'0'), digits.size()));
  if (digits.size() > max_exponent_digits) return false;
  std::int64_t value = 0;
  for (char16_t const c : digits) value = 10 * value + (c - u'0');
  if (text.exponentNegative) value = -value;
  using limits = std::numeric_limits<std::int32_t>;
  if (value < limits::min() || value > limits::max()) return false;
  exponent = value;
  return true;
}

}  // namespace

std::size_t findNumberEnd(wstring_view text, std::size_t begin, LoneExponentE loneExponent) {
  auto const skipRun = [&](std::size_t at) {
    while (at < text.size() && startsNumber(text[at])) ++at;
    return at;
  };
  std::size_t const mark = skipRun(begin);
  if (mark == text.size() || (text[mark] != u'E' && text[mark] != u'e')) return mark;
  std::size_t digits = mark + 1;
  if (digits < text.size() && (text[digits] == u'+' || isMinus(text[digits]))) ++digits;
  bool const lone = digits == text.size() || !isDigit(text[digits]);
  return lone && loneExponent == LONE_EXPONENT_LEFT ? mark : skipRun(digits);
}

bool readDecimalText(wstring_view text, DecimalTextS& decimal, std::size_t* breakPosition) {
  DecimalTextS parts;
  std::size_t at = skipDigits(text, 0);
  parts.integerDigits = text.substr(0, at);
  if (at < text.size() && text[at] == u'.') {
    parts.hasPoint = true;
    std::size_t const start = ++at;
    at = skipDigits(text, at);
    parts.fractionDigits = text.substr(start, at - start);
  }
  bool valid = !parts.integerDigits.empty() || !parts.fractionDigits.empty();
  if (valid && at < text.size() && (text[at] == u'E' || text[at] == u'e')) {
    ++at;
    if (at < text.size() && (text[at] == u'+' || isMinus(text[at]))) {
      parts.exponentNegative = text[at] != u'+';
      ++at;
    }
    std::size_t const start = at;
    at = skipDigits(text, at);
    parts.exponentDigits = text.substr(start, at - start);
    valid = parts.hasExponent();
  }
  if (!valid || at < text.size()) {
    if (breakPosition) *breakPosition = at;
    return false;
  }
  decimal = parts;
  return true;
}

bool toDecimal(DecimalTextS const& text, DecimalS& decimal) {
  std::int64_t exponent = 0;
  if (!readExponent(text, exponent)) return false;
  wstring digits;
  digits.reserve(text.integerDigits.size() + text.fractionDigits.size());
  digits.append(text.integerDigits).append(text.fractionDigits);
  std::size_t const zeros = digits.find_first_not_of(u'0');
  if (zeros == wstring::npos) {
    decimal = DecimalS();
    return true;
  }
  digits.erase(0, zeros);
  decimal.digits = std::move(digits);
  decimal.exponent =
      exponent + static_cast<std::int64_t>(text.integerDigits.size()) - static_cast<std::int64_t>(zeros);
  return true;
}

bool isMixedNumber(wstring_view whole, wstring_view numerator, wstring_view denominator) {
  for (wstring_view const part : {whole, numerator, denominator}) {
    bool const isWhole = !part.empty() && std::all_of(part.begin(), part.end(), isDigit);
    if (!isWhole || (part[0] == u'0' && part.size() > 1)) return false;
  }
  bool const isLess = numerator.size() == denominator.size() ? numerator < denominator
                                                             : numerator.size() < denominator.size();
  return isLess && numerator != u"0";
}

void roundDecimal(DecimalS& decimal, std::size_t digits) {
  wstring& all = decimal.digits;
  if (all.size() <= digits) return;
  bool const up = all[digits] >= u'5';
  all.resize(digits);
  if (up) {
    // Nines turn into zeros, which are dropped with the other trailing ones below.
    while (!all.empty() && all.back() == u'9') all.pop_back();
    if (all.empty()) {
      all.assign(1, u'1');
      ++decimal.exponent;
    } else {
      ++all.back();
    }
  }
  all.erase(all.find_last_not_of(u'0') + 1);
}

wstring writeDecimal(DecimalS decimal) {
  constexpr std::int64_t least_plain = -5;
  wstring& digits = decimal.digits;
  digits.erase(std::min(digits.find_last_not_of(u'0') + 1, digits.size()));
  if (digits.empty()) return u"0";
  auto const length = static_cast<std::int64_t>(digits.size());
  if (decimal.exponent > std::max<std::int64_t>(length, 21) || decimal.exponent <= least_plain) {
    wstring text = digits.substr(0, 1);
    if (length > 1) text += u"." + digits.substr(1);
    std::int64_t const exponent = decimal.exponent - 1;
    std::string const shown = std::to_string(exponent < 0 ? -exponent : exponent);
    return text + (exponent < 0 ? u"E\u2212" : u"E") + wstring(shown.begin(), shown.end());
  }
  if (decimal.exponent <= 0)
    return u"0." + wstring(static_cast<std::size_t>(-decimal.exponent), u'0') + digits;
  auto const whole = static_cast<std::size_t>(decimal.exponent);
  if (digits.size() < whole) digits.append(whole - digits.size(), u'0');
  if (digits.size() > whole) digits.insert(whole, 1, u'.');
  return digits;
}

}  // namespace zolt::math::common
