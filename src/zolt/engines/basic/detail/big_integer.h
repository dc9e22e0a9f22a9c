#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "zolt/oss/wstring.h"

namespace zolt::engine_basic::detail {

using oss::wstring;

/// A whole number of any size; those of 62 bits take no memory of their own. Products of long numbers take
/// fewer than quadratic steps; quotients and decimal digits take quadratic ones, which is why numbers in
/// computations are limited to `max_bits`. Nothing here checks that but `power`. `LongWorkC` ends long ones.
class BigIntegerC {
 public:
  /// About 300,000 decimal digits.
  static constexpr std::size_t max_bits = 1000000;

  BigIntegerC() = default;
  BigIntegerC(std::int64_t value);
  /// From decimal digits and nothing else.
  static BigIntegerC fromDigits(std::u16string_view digits);
  /// 2 to the `exponent`.
  static BigIntegerC powerOfTwo(std::size_t exponent);

  /// The decimal digits, without a sign.
  wstring toDigits() const;
  /// The value when it is `isSmall`.
  std::int64_t toSmall() const { return small_; }
  bool isSmall() const { return limbs_.empty(); }
  bool isZero() const { return isSmall() && small_ == 0; }
  bool isOne() const { return isSmall() && small_ == 1; }
  bool isOdd() const;
  int sign() const;
  std::size_t bitLength() const;
  /// The 64 highest bits, and in `*exponent` by how many bits they are shifted; the rest is cut off.
  std::uint64_t highestBits(std::int64_t* exponent) const;
  /// The rest of the magnitude divided by a number other than 0.
  std::uint32_t remainderBy(std::uint32_t divisor) const;
  std::size_t hash() const;

  BigIntegerC operator-() const;
  BigIntegerC abs() const { return sign() < 0 ? -*this : *this; }
  friend BigIntegerC operator+(BigIntegerC const& a, BigIntegerC const& b);
  friend BigIntegerC operator-(BigIntegerC const& a, BigIntegerC const& b) { return a + -b; }
  friend BigIntegerC operator*(BigIntegerC const& a, BigIntegerC const& b);
  friend bool operator==(BigIntegerC const& a, BigIntegerC const& b) { return compare(a, b) == 0; }
  friend bool operator!=(BigIntegerC const& a, BigIntegerC const& b) { return compare(a, b) != 0; }
  static int compare(BigIntegerC const& a, BigIntegerC const& b);

  /// a = quotient * b + remainder, the quotient rounded towards 0; b is not 0.
  static void divide(BigIntegerC const& a, BigIntegerC const& b, BigIntegerC& quotient,
                     BigIntegerC& remainder);
  /// The quotient rounded down.
  static BigIntegerC floorQuotient(BigIntegerC const& a, BigIntegerC const& b);
  /// The greatest common divisor, not negative.
  static BigIntegerC gcd(BigIntegerC a, BigIntegerC b);
  /// False, with nothing changed, when the power would be longer than `max_bits`.
  [[nodiscard]] static bool power(BigIntegerC const& base, std::uint64_t exponent, BigIntegerC& result);
  /// The greatest whole number whose n-th power is at most this one, which is not negative; n is not 0.
  BigIntegerC root(std::uint32_t n) const;

 private:
  using LimbsT = std::vector<std::uint32_t>;

  LimbsT magnitude() const;
  static BigIntegerC make(LimbsT limbs, bool isNegative);

  std::int64_t small_ = 0;  // when there are no limbs
  LimbsT limbs_;            // of the magnitude, the lowest first
  bool isNegative_ = false;
};

}  // namespace zolt::engine_basic::detail
