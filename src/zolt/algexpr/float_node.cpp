#include "zolt/algexpr/float_node.h"

#include "zolt/common/decimal_text.h"
#include "zolt/common/float64_util.h"
#include "zolt/common/signs.h"

namespace zolt::math::algexpr {

namespace {

using common::DecimalS;

// Enough for every value of a 64-bit floating-point number.
constexpr std::int64_t max_added_zeros = 400;
// Rounded numbers smaller than 0.00001 are shown scientific where the format is left to us.
constexpr std::int64_t min_plain_exponent = -4;

std::int64_t sizeOf(wstring const& digits) { return static_cast<std::int64_t>(digits.size()); }

bool isPlainTooLong(DecimalS const& decimal) {
  return -decimal.exponent > max_added_zeros || decimal.exponent - sizeOf(decimal.digits) > max_added_zeros;
}

// The first `integerLength` digits, filled up with zeros, a point where digits follow, and the others.
wstring pointed(wstring const& digits, std::int64_t integerLength) {
  auto const length = static_cast<std::size_t>(integerLength);
  if (digits.size() <= length) return digits + wstring(length - digits.size(), u'0');
  return digits.substr(0, length) + u'.' + digits.substr(length);
}

// A number without a fraction ends in its point, so that it still reads as a decimal and not as an integer.
wstring plain(DecimalS const& decimal) {
  if (decimal.digits.empty()) return u"0.";
  if (decimal.exponent <= 0) {
    return u"0." + wstring(static_cast<std::size_t>(-decimal.exponent), u'0') + decimal.digits;
  }
  wstring text = pointed(decimal.digits, decimal.exponent);
  if (sizeOf(decimal.digits) <= decimal.exponent) text += u'.';
  return text;
}

wstring withExponent(DecimalS const& decimal, std::int64_t multipleOf) {
  if (decimal.digits.empty()) return u"0E0";
  std::int64_t const highest = decimal.exponent - 1;
  std::int64_t const above = (highest % multipleOf + multipleOf) % multipleOf;
  std::int64_t exponent = highest - above;
  wstring text = pointed(decimal.digits, above + 1) + u'E';
  if (exponent < 0) {
    text += common::minus_sign;
    exponent = -exponent;
  }
  wstring reversed;
  do {
    reversed += static_cast<char16_t>(u'0' + exponent % 10);
    exponent /= 10;
  } while (exponent > 0);
  return text.append(reversed.rbegin(), reversed.rend());
}

}  // namespace

wstring FloatNodeC::toString(unsigned long precision, NumberDisplayFormatE format) const {
  bool const negative = text_[0] == common::minus_sign;
  common::DecimalTextS parts;
  DecimalS decimal;
  bool const readable =
      common::readDecimalText(common::wstring_view(text_).substr(negative ? 1 : 0), parts) &&
      common::toDecimal(parts, decimal);
  if (!readable) return text_;

  bool const rounded = precision > 0 && precision < common::Float64UtilC::max_display_precision &&
                       decimal.digits.size() > precision;
  if (rounded) common::roundDecimal(decimal, precision);

  wstring const sign(negative ? 1 : 0, common::minus_sign);
  switch (format) {
    case NUMBER_FORMAT_SCIENTIFIC:
      return sign + withExponent(decimal, 1);
    case NUMBER_FORMAT_ENGINEERING:
      return sign + withExponent(decimal, 3);
    case NUMBER_FORMAT_FIXED:
      if (!rounded && !parts.hasExponent()) return text_;
      return sign + (isPlainTooLong(decimal) ? withExponent(decimal, 1) : plain(decimal));
    default: {
      if (!rounded) return text_;
      bool const isPlain =
          decimal.exponent >= min_plain_exponent && decimal.exponent <= static_cast<std::int64_t>(precision);
      return sign + (isPlain ? plain(decimal) : withExponent(decimal, 1));
    }
  }
}

}  // namespace zolt::math::algexpr
