#include "zolt/engines/basic/detail/big_integer.h"

#include <algorithm>
#include <numeric>
#include <utility>

#include "zolt/engines/basic/detail/long_work.h"

namespace zolt::engine_basic::detail {

namespace {

using LimbsT = std::vector<std::uint32_t>;

constexpr std::int64_t small_limit = std::int64_t{1} << 62;
constexpr std::size_t karatsuba_limbs = 40;
constexpr std::uint32_t chunk = 1000000000;
constexpr std::size_t chunk_digits = 9;

constexpr std::uint32_t low(std::uint64_t value) { return static_cast<std::uint32_t>(value & 0xFFFFFFFFU); }

std::uint64_t magnitudeOf(std::int64_t value) {
  return value < 0 ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
}

void trim(LimbsT& limbs) {
  while (!limbs.empty() && limbs.back() == 0) limbs.pop_back();
}

int compareLimbs(LimbsT const& a, LimbsT const& b) {
  if (a.size() != b.size()) return a.size() < b.size() ? -1 : 1;
  for (std::size_t i = a.size(); i > 0; --i) {
    if (a[i - 1] != b[i - 1]) return a[i - 1] < b[i - 1] ? -1 : 1;
  }
  return 0;
}

// target += added, from the limb `at` on; the target is long enough for the sum.
void addInto(LimbsT& target, LimbsT const& added, std::size_t at) {
  std::uint64_t carry = 0;
  for (std::size_t i = 0; i < added.size() || carry != 0; ++i) {
    carry += std::uint64_t{target[at + i]} + (i < added.size() ? added[i] : 0);
    target[at + i] = low(carry);
    carry >>= 32;
  }
}

LimbsT addLimbs(LimbsT const& a, LimbsT const& b) {
  LimbsT sum(std::max(a.size(), b.size()) + 1);
  std::copy(a.begin(), a.end(), sum.begin());
  addInto(sum, b, 0);
  trim(sum);
  return sum;
}

// a -= b, which is not greater.
void subtractFrom(LimbsT& a, LimbsT const& b) {
  std::int64_t borrow = 0;
  for (std::size_t i = 0; i < b.size() || borrow != 0; ++i) {
    std::int64_t const difference = std::int64_t{a[i]} - (i < b.size() ? b[i] : 0) + borrow;
    a[i] = low(static_cast<std::uint64_t>(difference));
    borrow = difference < 0 ? -1 : 0;
  }
  trim(a);
}

LimbsT slice(LimbsT const& limbs, std::size_t begin, std::size_t end) {
  auto const at = [&](std::size_t i) {
    return limbs.begin() + static_cast<std::ptrdiff_t>(std::min(i, limbs.size()));
  };
  LimbsT part(at(begin), at(end));
  trim(part);
  return part;
}

LimbsT multiplyLimbs(LimbsT const& a, LimbsT const& b) {
  if (a.empty() || b.empty()) return {};
  if (std::min(a.size(), b.size()) < karatsuba_limbs) {
    if (!LongWorkC::goOn(a.size() * b.size())) return {};
    LimbsT product(a.size() + b.size());
    for (std::size_t i = 0; i < a.size(); ++i) {
      std::uint64_t carry = 0;
      for (std::size_t k = 0; k < b.size(); ++k) {
        carry += std::uint64_t{a[i]} * b[k] + product[i + k];
        product[i + k] = low(carry);
        carry >>= 32;
      }
      product[i + b.size()] = low(carry);
    }
    trim(product);
    return product;
  }
  // Karatsuba: three products of halves in place of four. It nests by the logarithm of the length.
  std::size_t const half = (std::max(a.size(), b.size()) + 1) / 2;
  LimbsT const a0 = slice(a, 0, half), a1 = slice(a, half, a.size());
  LimbsT const b0 = slice(b, 0, half), b1 = slice(b, half, b.size());
  LimbsT const lowest = multiplyLimbs(a0, b0), highest = multiplyLimbs(a1, b1);
  LimbsT middle = multiplyLimbs(addLimbs(a0, a1), addLimbs(b0, b1));
  // Each of them may have ended early.
  if (!LongWorkC::goOn(half)) return {};
  subtractFrom(middle, lowest);
  subtractFrom(middle, highest);
  LimbsT product(a.size() + b.size() + 1);
  addInto(product, lowest, 0);
  addInto(product, middle, half);
  addInto(product, highest, 2 * half);
  trim(product);
  return product;
}

std::uint32_t divideBySmall(LimbsT& limbs, std::uint32_t divisor) {
  std::uint64_t rest = 0;
  for (std::size_t i = limbs.size(); i > 0; --i) {
    rest = (rest << 32) | limbs[i - 1];
    limbs[i - 1] = static_cast<std::uint32_t>(rest / divisor);
    rest %= divisor;
  }
  trim(limbs);
  return static_cast<std::uint32_t>(rest);
}

LimbsT shiftLeft(LimbsT const& limbs, unsigned bits) {
  LimbsT shifted(limbs.size() + 1);
  std::uint64_t carry = 0;
  for (std::size_t i = 0; i < limbs.size(); ++i) {
    carry |= std::uint64_t{limbs[i]} << bits;
    shifted[i] = low(carry);
    carry >>= 32;
  }
  shifted[limbs.size()] = low(carry);
  return shifted;
}

// Knuth's algorithm D: `a` becomes the remainder.
LimbsT divideLimbs(LimbsT& a, LimbsT const& b) {
  if (compareLimbs(a, b) < 0) return {};
  if (b.size() == 1) {
    std::uint32_t const rest = divideBySmall(a, b[0]);
    LimbsT quotient = std::move(a);
    a = rest == 0 ? LimbsT{} : LimbsT{rest};
    return quotient;
  }
  unsigned shift = 0;
  while (((b.back() << shift) & 0x80000000U) == 0) ++shift;
  LimbsT divisor = shiftLeft(b, shift);
  trim(divisor);
  LimbsT rest = shiftLeft(a, shift);
  std::size_t const n = divisor.size();
  std::size_t const count = rest.size() - n;
  LimbsT quotient(count);
  for (std::size_t j = count; j > 0; --j) {
    std::size_t const at = j - 1;
    if (!LongWorkC::goOn(n)) {
      a.clear();
      return {};
    }
    std::uint64_t const high = (std::uint64_t{rest[at + n]} << 32) | rest[at + n - 1];
    std::uint64_t guess = high / divisor[n - 1];
    std::uint64_t left = high % divisor[n - 1];
    while (guess > 0xFFFFFFFFU || guess * divisor[n - 2] > ((left << 32) | rest[at + n - 2])) {
      --guess;
      left += divisor[n - 1];
      if (left > 0xFFFFFFFFU) break;
    }
    std::int64_t borrow = 0;
    std::uint64_t carry = 0;
    for (std::size_t i = 0; i < n; ++i) {
      carry += guess * divisor[i];
      std::int64_t const difference = std::int64_t{rest[at + i]} - std::int64_t{low(carry)} + borrow;
      rest[at + i] = low(static_cast<std::uint64_t>(difference));
      borrow = difference < 0 ? -1 : 0;
      carry >>= 32;
    }
    std::int64_t const difference = std::int64_t{rest[at + n]} - static_cast<std::int64_t>(carry) + borrow;
    rest[at + n] = low(static_cast<std::uint64_t>(difference));
    if (difference < 0) {
      --guess;
      std::uint64_t sum = 0;
      for (std::size_t i = 0; i < n; ++i) {
        sum += std::uint64_t{rest[at + i]} + divisor[i];
        rest[at + i] = low(sum);
        sum >>= 32;
      }
      rest[at + n] = low(rest[at + n] + sum);
    }
    quotient[at] = low(guess);
  }
  for (std::size_t i = 0; i + 1 < rest.size(); ++i) {
    rest[i] = low((std::uint64_t{rest[i + 1]} << 32 | rest[i]) >> shift);
  }
  rest.back() >>= shift;
  trim(rest);
  trim(quotient);
  a = std::move(rest);
  return quotient;
}

}  // namespace

BigIntegerC::BigIntegerC(std::int64_t value) : small_(value) {
  if (value > -small_limit && value < small_limit) return;
  std::uint64_t const magnitude = magnitudeOf(value);
  small_ = 0;
  limbs_ = {low(magnitude), low(magnitude >> 32)};
  isNegative_ = value < 0;
}

BigIntegerC BigIntegerC::fromDigits(std::u16string_view digits) {
  LimbsT limbs;
  for (std::size_t at = 0; at < digits.size();) {
    std::size_t const count =
        (digits.size() - at) % chunk_digits == 0 ? chunk_digits : (digits.size() - at) % chunk_digits;
    if (!LongWorkC::goOn(limbs.size())) return {};
    std::uint64_t carry = 0;
    for (std::size_t i = 0; i < count; ++i) carry = carry * 10 + (digits[at + i] - u'0');
    for (std::uint32_t& limb : limbs) {
      carry += std::uint64_t{limb} * chunk;
      limb = low(carry);
      carry >>= 32;
    }
    if (carry != 0) limbs.push_back(low(carry));
    at += count;
  }
  return make(std::move(limbs), false);
}

BigIntegerC BigIntegerC::powerOfTwo(std::size_t exponent) {
  LimbsT limbs(exponent / 32 + 1);
  limbs.back() = std::uint32_t{1} << exponent % 32;
  return make(std::move(limbs), false);
}

wstring BigIntegerC::toDigits() const {
  constexpr std::size_t few_limbs = 60;
  LimbsT limbs = magnitude();
  if (limbs.size() > few_limbs) {
    // Half of the digits each; it nests by the logarithm of the length.
    std::size_t const half = limbs.size() * 963 / 200;
    BigIntegerC scale, above, below;
    static_cast<void>(power(10, half, scale));
    divide(abs(), scale, above, below);
    wstring const digits = below.toDigits();
    return above.toDigits() + wstring(std::max(half, digits.size()) - digits.size(), u'0') + digits;
  }
  wstring reversed;
  while (!limbs.empty()) {
    std::uint32_t rest = divideBySmall(limbs, chunk);
    for (std::size_t i = 0; i < chunk_digits && (rest != 0 || !limbs.empty()); ++i, rest /= 10) {
      reversed += static_cast<char16_t>(u'0' + rest % 10);
    }
  }
  if (reversed.empty()) return u"0";
  std::reverse(reversed.begin(), reversed.end());
  return reversed;
}

BigIntegerC::LimbsT BigIntegerC::magnitude() const {
  if (!isSmall()) return limbs_;
  std::uint64_t const value = magnitudeOf(small_);
  LimbsT limbs{low(value), low(value >> 32)};
  trim(limbs);
  return limbs;
}

BigIntegerC BigIntegerC::make(LimbsT limbs, bool isNegative) {
  trim(limbs);
  BigIntegerC number;
  if (limbs.size() <= 2) {
    std::uint64_t value = 0;
    for (std::size_t i = limbs.size(); i > 0; --i) value = (value << 32) | limbs[i - 1];
    if (value < static_cast<std::uint64_t>(small_limit)) {
      number.small_ = isNegative ? -static_cast<std::int64_t>(value) : static_cast<std::int64_t>(value);
      return number;
    }
  }
  number.limbs_ = std::move(limbs);
  number.isNegative_ = isNegative;
  return number;
}

bool BigIntegerC::isOdd() const { return ((isSmall() ? low(magnitudeOf(small_)) : limbs_[0]) & 1U) != 0; }

int BigIntegerC::sign() const {
  if (!isSmall()) return isNegative_ ? -1 : 1;
  return (small_ > 0) - (small_ < 0);
}

std::size_t BigIntegerC::bitLength() const {
  LimbsT const limbs = isSmall() ? magnitude() : LimbsT();
  LimbsT const& all = isSmall() ? limbs : limbs_;
  if (all.empty()) return 0;
  std::size_t bits = 32 * all.size();
  for (std::uint32_t top = all.back(); (top & 0x80000000U) == 0; top <<= 1) --bits;
  return bits;
}

std::uint64_t BigIntegerC::highestBits(std::int64_t* exponent) const {
  *exponent = 0;
  if (isSmall()) return magnitudeOf(small_);
  std::size_t const bits = bitLength();
  std::size_t const shift = bits > 64 ? bits - 64 : 0;
  *exponent = static_cast<std::int64_t>(shift);
  std::uint64_t value = 0;
  for (std::size_t i = 0; i < 3; ++i) {
    std::size_t const at = shift / 32 + i;
    std::uint64_t const limb = at < limbs_.size() ? limbs_[at] : 0;
    std::size_t const position = 32 * i;
    std::size_t const cut = shift % 32;
    if (position >= cut) {
      if (position - cut < 64) value |= limb << (position - cut);
    } else {
      value |= limb >> (cut - position);
    }
  }
  return value;
}

std::uint32_t BigIntegerC::remainderBy(std::uint32_t divisor) const {
  if (isSmall()) return static_cast<std::uint32_t>(magnitudeOf(small_) % divisor);
  if (!LongWorkC::goOn(limbs_.size())) return 0;
  std::uint64_t rest = 0;
  for (std::size_t i = limbs_.size(); i > 0; --i) rest = ((rest << 32) | limbs_[i - 1]) % divisor;
  return static_cast<std::uint32_t>(rest);
}

std::size_t BigIntegerC::hash() const {
  std::size_t value = isSmall() ? static_cast<std::size_t>(magnitudeOf(small_)) : std::size_t{isNegative_};
  if (isSmall() && small_ < 0) value = ~value;
  for (std::uint32_t limb : limbs_) value = value * 31 + limb;
  return value;
}

BigIntegerC BigIntegerC::operator-() const {
  BigIntegerC negated = *this;
  negated.small_ = -small_;
  negated.isNegative_ = !isSmall() && !isNegative_;
  return negated;
}

int BigIntegerC::compare(BigIntegerC const& a, BigIntegerC const& b) {
  if (a.isSmall() && b.isSmall()) return (a.small_ > b.small_) - (a.small_ < b.small_);
  if (a.sign() != b.sign()) return a.sign() < b.sign() ? -1 : 1;
  return a.sign() * compareLimbs(a.magnitude(), b.magnitude());
}

BigIntegerC operator+(BigIntegerC const& a, BigIntegerC const& b) {
  if (a.isSmall() && b.isSmall()) return {a.small_ + b.small_};
  bool const isNegative = a.sign() < 0;
  if (isNegative == (b.sign() < 0)) {
    return BigIntegerC::make(addLimbs(a.magnitude(), b.magnitude()), isNegative);
  }
  BigIntegerC::LimbsT left = a.magnitude(), right = b.magnitude();
  bool const isTurned = compareLimbs(left, right) < 0;
  if (isTurned) left.swap(right);
  subtractFrom(left, right);
  return BigIntegerC::make(std::move(left), isNegative != isTurned);
}

BigIntegerC operator*(BigIntegerC const& a, BigIntegerC const& b) {
  constexpr std::int64_t factor_limit = std::int64_t{1} << 31;
  auto const isShort = [](BigIntegerC const& c) {
    return c.isSmall() && c.small_ > -factor_limit && c.small_ < factor_limit;
  };
  if (isShort(a) && isShort(b)) return {a.small_ * b.small_};
  return BigIntegerC::make(multiplyLimbs(a.magnitude(), b.magnitude()), (a.sign() < 0) != (b.sign() < 0));
}

void BigIntegerC::divide(BigIntegerC const& a, BigIntegerC const& b, BigIntegerC& quotient,
                         BigIntegerC& remainder) {
  if (b.isZero()) {  // only where the divisor's computation has ended early
    quotient = remainder = {};
    return;
  }
  if (a.isSmall() && b.isSmall()) {
    std::int64_t const rest = a.small_ % b.small_;
    quotient = a.small_ / b.small_;
    remainder = rest;
    return;
  }
  LimbsT rest = a.magnitude();
  LimbsT found = divideLimbs(rest, b.magnitude());
  bool const isNegative = a.sign() < 0;
  bool const differs = isNegative != (b.sign() < 0);
  quotient = make(std::move(found), differs);
  remainder = make(std::move(rest), isNegative);
}

BigIntegerC BigIntegerC::floorQuotient(BigIntegerC const& a, BigIntegerC const& b) {
  BigIntegerC quotient, remainder;
  divide(a, b, quotient, remainder);
  bool const isBelow = !remainder.isZero() && (remainder.sign() < 0) != (b.sign() < 0);
  return isBelow ? quotient - 1 : quotient;
}

// Lehmer's algorithm: the quotients are found from the highest bits, and long numbers are touched once for
// many of them.
BigIntegerC BigIntegerC::gcd(BigIntegerC a, BigIntegerC b) {
  a = a.abs();
  b = b.abs();
  if (compare(a, b) < 0) std::swap(a, b);
  while (!b.isSmall()) {
    std::int64_t shiftA = 0, shiftB = 0;
    std::int64_t x = static_cast<std::int64_t>(a.highestBits(&shiftA) >> 33);
    std::int64_t y = static_cast<std::int64_t>(b.highestBits(&shiftB) >> 33);
    std::int64_t const gap = shiftA - shiftB;
    std::int64_t p = 1, q = 0, r = 0, s = 1;
    // Numbers that the deadline has cut short are in any order.
    if (shiftA > 0 && gap >= 0 && gap < 31) {
      y >>= gap;
      while (y + r != 0 && y + s != 0) {
        std::int64_t const t = (x + p) / (y + r);
        if (t != (x + q) / (y + s)) break;
        p = std::exchange(r, p - t * r);
        q = std::exchange(s, q - t * s);
        x = std::exchange(y, x - t * y);
      }
    }
    if (q == 0) {
      BigIntegerC quotient, remainder;
      divide(a, b, quotient, remainder);
      a = std::exchange(b, std::move(remainder));
    } else {
      BigIntegerC next = BigIntegerC(p) * a + BigIntegerC(q) * b;
      b = BigIntegerC(r) * a + BigIntegerC(s) * b;
      a = std::move(next);
    }
  }
  if (b.isZero()) return a;
  if (!a.isSmall()) {
    BigIntegerC quotient, remainder;
    divide(a, b, quotient, remainder);
    a = std::exchange(b, std::move(remainder));
  }
  return {std::gcd(a.small_, b.small_)};
}

bool BigIntegerC::power(BigIntegerC const& base, std::uint64_t exponent, BigIntegerC& result) {
  std::size_t const bits = base.bitLength();
  if (bits > 1 && exponent > max_bits / (bits - 1)) return false;
  BigIntegerC power = 1;
  BigIntegerC square = base;
  if (bits <= 1) exponent = exponent == 0 ? 0 : 2 - exponent % 2;  // of 0, 1 and -1
  for (; exponent > 0; exponent /= 2) {
    if (exponent % 2 == 1) power = power * square;
    if (exponent > 1) square = square * square;
  }
  result = std::move(power);
  return true;
}

BigIntegerC BigIntegerC::root(std::uint32_t n) const {
  if (n == 1 || isZero()) return *this;
  // Newton's iteration from above falls until it has arrived.
  BigIntegerC guess = powerOfTwo(bitLength() / n + 1);
  for (;;) {
    if (!LongWorkC::goOn(1)) return 1;
    BigIntegerC below;
    if (!power(guess, n - 1, below)) return 1;  // 2^n alone is longer than this number
    BigIntegerC quotient, rest;
    divide(*this, below, quotient, rest);
    BigIntegerC next;
    divide(BigIntegerC(n - 1) * guess + quotient, BigIntegerC(n), next, rest);
    if (compare(next, guess) >= 0) return guess;
    guess = std::move(next);
  }
}

}  // namespace zolt::engine_basic::detail
