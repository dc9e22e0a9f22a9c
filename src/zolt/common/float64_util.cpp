#include "zolt/common/float64_util.h"

#include <algorithm>
#include <array>
#include <cfloat>
#include <cmath>
#include <limits>

#include "zolt/common/decimal_text.h"
#include "zolt/common/detail/big_integer.h"

namespace zolt::math::common {

namespace {

using detail::BigIntegerC;

constexpr int mantissa_bits = 53;
constexpr int min_exponent = -1022;  // of the smallest normal number, 2^-1022

// A decimal number that lies exactly half-way between two neighbours has at most 767 significant digits. What
// comes after these only says "a little more", which one further digit 1 says as well.
constexpr std::size_t max_exact_digits = 768;

// Powers of ten up to here, and whole numbers of up to 15 digits, are exact, so one operation on them rounds
// once.
constexpr std::array<double, 23> exact_powers = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                 1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                 1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};
constexpr std::size_t max_exact_double_digits = 15;

bool fromFewDigits(wstring const& digits, std::int64_t power, double& value) {
  // Wider intermediate results would round twice.
  if (FLT_EVAL_METHOD != 0 || digits.size() > max_exact_double_digits) return false;
  if (power <= -static_cast<std::int64_t>(exact_powers.size()) ||
      power >= static_cast<std::int64_t>(exact_powers.size())) {
    return false;
  }
  std::int64_t whole = 0;
  for (char16_t const c : digits) whole = 10 * whole + (c - u'0');
  double const factor = exact_powers[static_cast<std::size_t>(power < 0 ? -power : power)];
  value = power < 0 ? static_cast<double>(whole) / factor : static_cast<double>(whole) * factor;
  return true;
}

// `number` times 2^`scale`, and a little more when `inexact`, rounded to nearest, ties to even.
double roundToDouble(BigIntegerC const& number, int scale, bool inexact) {
  int const top = static_cast<int>(number.bitLength()) - 1 + scale;
  // Below the normal range fewer bits are left, down to none.
  int const kept = top >= min_exponent ? mantissa_bits : mantissa_bits - (min_exponent - top);
  int const dropped = static_cast<int>(number.bitLength()) - kept;
  if (kept < 0) return 0.0;
  if (dropped <= 0) return std::ldexp(static_cast<double>(number.from(0)), scale);
  auto const cut = static_cast<std::size_t>(dropped);
  std::uint64_t mantissa = number.from(cut);
  bool const half = number.bit(cut - 1);
  bool const beyondHalf = half && (inexact || number.anyBelow(cut - 1));
  if (beyondHalf || (half && mantissa % 2 != 0)) ++mantissa;
  return std::ldexp(static_cast<double>(mantissa), scale + dropped);
}

// Exact for any number whose size is within a power of ten or so of what a double can hold.
double fromManyDigits(wstring const& digits, std::int64_t power) {
  BigIntegerC number;
  for (char16_t const c : digits) number.multiplyAdd(10, static_cast<std::uint32_t>(c - u'0'));
  if (power >= 0) {
    for (std::int64_t i = 0; i < power; ++i) number.multiplyAdd(10, 0);
    return roundToDouble(number, 0, false);
  }
  // Dividing by 5 and shifting by 1 for each power of ten. The quotient keeps at least two bits more than the
  // mantissa; that something was left over is all that matters of the rest.
  constexpr std::uint32_t five_to_13 = 1220703125;
  auto fives = static_cast<std::size_t>(-power);
  std::size_t const divisorBits = fives * 7 / 3 + 1;  // log2(5) = 2.3219…
  std::size_t const wanted = divisorBits + mantissa_bits + 2;
  std::size_t const shift = wanted > number.bitLength() ? wanted - number.bitLength() : 0;
  number.shiftLeft(shift);
  bool inexact = false;
  for (; fives >= 13; fives -= 13) inexact |= number.divide(five_to_13);
  for (; fives > 0; --fives) inexact |= number.divide(5);
  return roundToDouble(number, static_cast<int>(power) - static_cast<int>(shift), inexact);
}

}  // namespace

double Float64UtilC::fromString(wstring const& text) {
  constexpr double no_number = std::numeric_limits<double>::quiet_NaN();
  constexpr double too_large = std::numeric_limits<double>::infinity();

  DecimalTextS parts;
  if (!readDecimalText(text, parts)) return no_number;
  DecimalS decimal;
  bool const hugeExponent = !toDecimal(parts, decimal);
  if (hugeExponent) {
    bool const zero = parts.integerDigits.find_first_not_of(u'0') == wstring_view::npos &&
                      parts.fractionDigits.find_first_not_of(u'0') == wstring_view::npos;
    return zero || parts.exponentNegative ? 0.0 : too_large;
  }
  wstring& digits = decimal.digits;
  digits.erase(digits.find_last_not_of(u'0') + 1);
  if (digits.empty()) return 0.0;
  if (decimal.exponent > std::numeric_limits<double>::max_exponent10 + 1) return too_large;
  if (decimal.exponent < std::numeric_limits<double>::min_exponent10 - mantissa_bits) return 0.0;
  if (digits.size() > max_exact_digits) {
    digits.resize(max_exact_digits);
    digits.push_back(u'1');
  }
  std::int64_t const power = decimal.exponent - static_cast<std::int64_t>(digits.size());
  double value = 0.0;
  if (fromFewDigits(digits, power, value)) return value;
  return fromManyDigits(digits, power);
}

bool Float64UtilC::isFinite(double value) { return std::isfinite(value); }

}  // namespace zolt::math::common
