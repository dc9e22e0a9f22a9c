#pragma once

#include "zolt/engines/basic/detail/big_integer.h"

namespace zolt::engine_basic::detail {

/// A fraction in lowest terms whose denominator is positive.
class RationalC {
 public:
  RationalC() : denominator_(1) {}
  RationalC(std::int64_t value) : numerator_(value), denominator_(1) {}
  RationalC(BigIntegerC value) : numerator_(std::move(value)), denominator_(1) {}
  /// The denominator is not 0.
  RationalC(BigIntegerC numerator, BigIntegerC denominator);

  /// Reads a number of an expression, perhaps after a minus. False when it is longer than a number may be.
  [[nodiscard]] static bool fromText(wstring const& text, RationalC& number);
  /// The exact value of a finite double.
  static RationalC fromDouble(double value);

  BigIntegerC const& crefNumerator() const { return numerator_; }
  BigIntegerC const& crefDenominator() const { return denominator_; }
  bool isInteger() const { return denominator_.isOne(); }
  bool isZero() const { return numerator_.isZero(); }
  bool isOne() const { return numerator_.isOne() && isInteger(); }
  int sign() const { return numerator_.sign(); }
  /// Whether it is a whole number of 62 bits.
  bool isSmall() const { return isInteger() && numerator_.isSmall(); }
  std::int64_t toSmall() const { return numerator_.toSmall(); }
  bool isTooLong() const {
    return numerator_.bitLength() > BigIntegerC::max_bits || denominator_.bitLength() > BigIntegerC::max_bits;
  }
  std::size_t hash() const { return numerator_.hash() * 31 + denominator_.hash(); }
  /// The nearest double or one of its neighbours; infinite when it is too large.
  double toDouble() const;

  RationalC operator-() const;
  RationalC abs() const { return sign() < 0 ? -*this : *this; }
  /// Of a number other than 0.
  RationalC inverse() const;
  RationalC floor() const { return BigIntegerC::floorQuotient(numerator_, denominator_); }
  /// False when the power would be too long; 0 has no negative powers.
  [[nodiscard]] bool power(std::int64_t exponent, RationalC& result) const;

  friend RationalC operator+(RationalC const& a, RationalC const& b);
  friend RationalC operator-(RationalC const& a, RationalC const& b) { return a + -b; }
  friend RationalC operator*(RationalC const& a, RationalC const& b);
  friend RationalC operator/(RationalC const& a, RationalC const& b) { return a * b.inverse(); }
  static int compare(RationalC const& a, RationalC const& b);
  friend bool operator==(RationalC const& a, RationalC const& b) {
    return a.numerator_ == b.numerator_ && a.denominator_ == b.denominator_;
  }

  /// Its decimal text with at most `digits` significant digits, halves rounded away from 0, a minus being
  /// U+2212; `*isExact` tells whether that is all of it.
  wstring toDecimal(unsigned digits, bool* isExact) const;

 private:
  BigIntegerC numerator_;
  BigIntegerC denominator_;
};

}  // namespace zolt::engine_basic::detail
