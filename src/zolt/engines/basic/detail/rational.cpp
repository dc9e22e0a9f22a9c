#include "zolt/engines/basic/detail/rational.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "zolt/common/decimal_text.h"
#include "zolt/common/signs.h"

namespace zolt::engine_basic::detail {

namespace {

BigIntegerC powerOfTen(std::uint64_t exponent) {
  BigIntegerC power;
  if (!BigIntegerC::power(10, exponent, power)) return 1;
  return power;
}

}  // namespace

RationalC::RationalC(BigIntegerC numerator, BigIntegerC denominator)
    : numerator_(std::move(numerator)), denominator_(std::move(denominator)) {
  if (denominator_.sign() < 0) {
    numerator_ = -numerator_;
    denominator_ = -denominator_;
  }
  if (denominator_.isOne()) return;
  BigIntegerC const common = BigIntegerC::gcd(numerator_, denominator_);
  if (common.isOne()) return;
  BigIntegerC rest, quotient;
  BigIntegerC::divide(numerator_, common, quotient, rest);
  numerator_ = std::move(quotient);
  BigIntegerC::divide(denominator_, common, quotient, rest);
  denominator_ = std::move(quotient);
}

bool RationalC::fromText(wstring const& text, RationalC& number) {
  constexpr std::size_t most_digits = BigIntegerC::max_bits / 8;
  bool const isNegative = !text.empty() && math::common::isMinus(text[0]);
  math::common::DecimalTextS parts;
  if (!math::common::readDecimalText(std::u16string_view(text).substr(isNegative ? 1 : 0), parts))
    return false;
  if (parts.integerDigits.size() + parts.fractionDigits.size() > most_digits) return false;
  if (parts.exponentDigits.size() > 9) return false;
  std::int64_t exponent = BigIntegerC::fromDigits(parts.exponentDigits).toSmall();
  if (exponent > static_cast<std::int64_t>(most_digits)) return false;
  if (parts.exponentNegative) exponent = -exponent;
  exponent -= static_cast<std::int64_t>(parts.fractionDigits.size());
  if (std::abs(exponent) > static_cast<std::int64_t>(most_digits)) return false;
  wstring const digits = wstring(parts.integerDigits) + wstring(parts.fractionDigits);
  BigIntegerC value = BigIntegerC::fromDigits(digits);
  if (isNegative) value = -value;
  BigIntegerC const scale = powerOfTen(static_cast<std::uint64_t>(std::abs(exponent)));
  number = exponent >= 0 ? RationalC(value * scale) : RationalC(std::move(value), scale);
  return true;
}

RationalC RationalC::fromDouble(double value) {
  int exponent = 0;
  double const mantissa = std::frexp(value, &exponent);
  BigIntegerC const whole = static_cast<std::int64_t>(std::ldexp(mantissa, 53));
  exponent -= 53;
  if (exponent >= 0) return whole * BigIntegerC::powerOfTwo(static_cast<std::size_t>(exponent));
  return {whole, BigIntegerC::powerOfTwo(static_cast<std::size_t>(-exponent))};
}

double RationalC::toDouble() const {
  constexpr std::int64_t beyond = 20000;
  std::int64_t up = 0, down = 0;
  double const top = static_cast<double>(numerator_.highestBits(&up));
  double const bottom = static_cast<double>(denominator_.highestBits(&down));
  std::int64_t const exponent = std::clamp(up - down, -beyond, beyond);
  double const magnitude = std::ldexp(top / bottom, static_cast<int>(exponent));
  return sign() < 0 ? -magnitude : magnitude;
}

RationalC RationalC::operator-() const {
  RationalC negated = *this;
  negated.numerator_ = -numerator_;
  return negated;
}

RationalC RationalC::inverse() const {
  RationalC inverted;
  inverted.numerator_ = sign() < 0 ? -denominator_ : denominator_;
  inverted.denominator_ = numerator_.abs();
  return inverted;
}

bool RationalC::power(std::int64_t exponent, RationalC& result) const {
  RationalC const base = exponent < 0 ? inverse() : *this;
  std::uint64_t const n = static_cast<std::uint64_t>(exponent < 0 ? -exponent : exponent);
  RationalC raised;
  if (!BigIntegerC::power(base.numerator_, n, raised.numerator_)) return false;
  if (!BigIntegerC::power(base.denominator_, n, raised.denominator_)) return false;
  result = std::move(raised);
  return true;
}

RationalC operator+(RationalC const& a, RationalC const& b) {
  if (a.isInteger() && b.isInteger()) return a.numerator_ + b.numerator_;
  return {a.numerator_ * b.denominator_ + b.numerator_ * a.denominator_, a.denominator_ * b.denominator_};
}

RationalC operator*(RationalC const& a, RationalC const& b) {
  if (a.isInteger() && b.isInteger()) return a.numerator_ * b.numerator_;
  return {a.numerator_ * b.numerator_, a.denominator_ * b.denominator_};
}

int RationalC::compare(RationalC const& a, RationalC const& b) {
  return BigIntegerC::compare(a.numerator_ * b.denominator_, b.numerator_ * a.denominator_);
}

wstring RationalC::toDecimal(unsigned digits, bool* isExact) const {
  *isExact = true;
  if (isZero()) return u"0";
  // The exponent of the first digit is that of the bits, or one more.
  double const bits =
      static_cast<double>(numerator_.bitLength()) - static_cast<double>(denominator_.bitLength());
  std::int64_t exponent = static_cast<std::int64_t>(std::floor(bits * 0.30102999566398120)) - 1;
  BigIntegerC const magnitude = numerator_.abs();
  wstring text;
  for (;; ++exponent) {
    std::int64_t const scale = static_cast<std::int64_t>(digits) - exponent;
    BigIntegerC const factor = powerOfTen(static_cast<std::uint64_t>(std::abs(scale)));
    BigIntegerC const divided = scale >= 0 ? magnitude * factor : magnitude;
    BigIntegerC const divisor = scale >= 0 ? denominator_ : denominator_ * factor;
    BigIntegerC quotient, rest;
    BigIntegerC::divide(divided, divisor, quotient, rest);
    *isExact = rest.isZero();
    if (BigIntegerC::compare(rest + rest, divisor) >= 0) quotient = quotient + 1;
    text = quotient.toDigits();
    if (text.size() <= digits) break;
  }
  exponent += static_cast<std::int64_t>(text.size()) - static_cast<std::int64_t>(digits);
  wstring const written = math::common::writeDecimal({std::move(text), exponent});
  return sign() < 0 ? math::common::minus_sign + written : written;
}

}  // namespace zolt::engine_basic::detail
