#include "zolt/engines/basic/detail/real_roots.h"

#include <algorithm>
#include <utility>

namespace zolt::engine_basic::detail {

namespace {

void trim(PolynomialT& polynomial) {
  while (polynomial.size() > 1 && polynomial.back().isZero()) polynomial.pop_back();
}

bool isZero(PolynomialT const& polynomial) { return polynomial.size() == 1 && polynomial[0].isZero(); }

// Divided by a positive number, so that no sign changes.
void makePrimitive(PolynomialT& polynomial) {
  BigIntegerC common;
  for (BigIntegerC const& coefficient : polynomial) {
    common = BigIntegerC::gcd(common, coefficient);
    if (common.isOne()) return;
  }
  if (common.isZero()) return;
  BigIntegerC rest;
  for (BigIntegerC& coefficient : polynomial) {
    BigIntegerC const whole = coefficient;
    BigIntegerC::divide(whole, common, coefficient, rest);
  }
}

PolynomialT derive(PolynomialT const& polynomial) {
  PolynomialT derivative{0};
  if (polynomial.size() > 1) derivative.clear();
  for (std::size_t i = 1; i < polynomial.size(); ++i) {
    derivative.push_back(polynomial[i] * BigIntegerC(static_cast<std::int64_t>(i)));
  }
  return derivative;
}

// A positive multiple of the remainder of `a` divided by `b`.
PolynomialT findRemainder(PolynomialT a, PolynomialT const& b, WatchC& watch) {
  BigIntegerC const size = b.back().abs();
  while (a.size() >= b.size() && !isZero(a) && watch.goOn(static_cast<unsigned>(b.size()))) {
    BigIntegerC const factor = b.back().sign() < 0 ? -a.back() : a.back();
    std::size_t const shift = a.size() - b.size();
    for (BigIntegerC& coefficient : a) coefficient = coefficient * size;
    for (std::size_t i = 0; i < b.size(); ++i) a[i + shift] = a[i + shift] - factor * b[i];
    trim(a);
    makePrimitive(a);
  }
  return a;
}

// The value at a fraction, times a power of its positive denominator.
BigIntegerC evaluateAt(PolynomialT const& polynomial, RationalC const& x, WatchC& watch) {
  BigIntegerC const &above = x.crefNumerator(), &below = x.crefDenominator();
  BigIntegerC value, power = 1;
  for (std::size_t i = polynomial.size(); i-- > 0;) {
    if (!watch.goOn(1 + static_cast<unsigned>(power.bitLength() / 256))) return {};
    value = value * above + polynomial[i] * power;
    power = power * below;
  }
  return value;
}

using ChainT = std::vector<PolynomialT>;

ChainT makeSturmChain(PolynomialT const& polynomial, WatchC& watch) {
  ChainT chain{polynomial, derive(polynomial)};
  makePrimitive(chain[1]);
  while (chain.back().size() > 1 && !watch.hasFailed()) {
    PolynomialT next = findRemainder(chain[chain.size() - 2], chain.back(), watch);
    for (BigIntegerC& coefficient : next) coefficient = -coefficient;
    if (isZero(next)) break;
    chain.push_back(std::move(next));
  }
  return chain;
}

// The roots between two numbers, the greater one included, are as many as this is less at the greater one.
int countChanges(ChainT const& chain, RationalC const& x, WatchC& watch) {
  int changes = 0, last = 0;
  for (PolynomialT const& polynomial : chain) {
    int const sign = evaluateAt(polynomial, x, watch).sign();
    if (sign == 0) continue;
    if (sign == -last) ++changes;
    last = sign;
  }
  return changes;
}

// A number, not 0, is about 2 to this.
std::int64_t exponentOf(RationalC const& number) {
  return static_cast<std::int64_t>(number.crefNumerator().bitLength()) -
         static_cast<std::int64_t>(number.crefDenominator().bitLength());
}

RationalC powerOfTwo(std::int64_t exponent) {
  BigIntegerC const power =
      BigIntegerC::powerOfTwo(static_cast<std::size_t>(exponent < 0 ? -exponent : exponent));
  return exponent < 0 ? RationalC(1, power) : RationalC(power);
}

/// Takes the intervals of one polynomial's roots apart.
class NarrowingC {
 public:
  NarrowingC(PolynomialT const& polynomial, WatchC& watch)
      : polynomial_(polynomial), derivative_(derive(polynomial)), watch_(watch) {}

  /// Makes the interval much narrower when the derivative tells where to, or else half as wide.
  bool narrow(RootS& root) {
    if (signAbove_ == 0) signAbove_ = signAt(root.high);
    return signAbove_ == 0 ? setExact(root, root.high) : approach(root) || halve(root);
  }

 private:
  int signAt(RationalC const& x) { return evaluateAt(polynomial_, x, watch_).sign(); }
  bool setExact(RootS& root, RationalC const& x) {
    root = {x, x};
    return !watch_.hasFailed();
  }

  // The sign is another one on the other side of the root.
  bool halve(RootS& root) {
    RationalC const middle = root.middle();
    int const sign = signAt(middle);
    if (watch_.hasFailed()) return false;
    if (sign == 0) return setExact(root, middle);
    (sign == signAbove_ ? root.high : root.low) = middle;
    return true;
  }

  bool approach(RootS& root) {
    std::int64_t const width = -exponentOf(root.high - root.low);
    constexpr std::int64_t narrow_enough = 4;
    if (width < narrow_enough) return false;
    RationalC const middle = root.middle();
    BigIntegerC const &above = middle.crefNumerator(), &below = middle.crefDenominator();
    BigIntegerC const value = evaluateAt(polynomial_, middle, watch_),
                      slope = evaluateAt(derivative_, middle, watch_);
    if (slope.isZero() || watch_.hasFailed()) return false;
    std::int64_t const places = width + width / 2;
    BigIntegerC const scale = BigIntegerC::powerOfTwo(static_cast<std::size_t>(places));
    BigIntegerC const near = BigIntegerC::floorQuotient((above * slope - value) * scale, below * slope);
    RationalC low(near - BigIntegerC(1), scale), high(near + BigIntegerC(2), scale);
    if (RationalC::compare(low, root.low) < 0) low = root.low;
    if (RationalC::compare(high, root.high) > 0) high = root.high;
    if (RationalC::compare(low, high) >= 0) return false;
    int const signBelow = signAt(low), signAbove = signAt(high);
    bool const isBetween = signBelow == -signAbove_ && signAbove == signAbove_ && !watch_.hasFailed();
    if (isBetween) root = {low, high};
    return isBetween;
  }

  PolynomialT const& polynomial_;
  PolynomialT const derivative_;
  WatchC& watch_;
  int signAbove_ = 0;
};

}  // namespace

PolynomialT makePolynomial(std::vector<RationalC> const& coefficients) {
  BigIntegerC common = 1;
  for (RationalC const& coefficient : coefficients) {
    BigIntegerC const& below = coefficient.crefDenominator();
    common = BigIntegerC::floorQuotient(common * below, BigIntegerC::gcd(common, below));
  }
  PolynomialT polynomial;
  for (RationalC const& coefficient : coefficients) {
    polynomial.push_back((coefficient * RationalC(common)).crefNumerator());
  }
  makePrimitive(polynomial);
  return polynomial;
}

PolynomialT findCommonDivisor(PolynomialT a, PolynomialT b, WatchC& watch) {
  while (!isZero(b) && !watch.hasFailed()) {
    PolynomialT rest = findRemainder(std::move(a), b, watch);
    a = std::move(b);
    b = std::move(rest);
  }
  makePrimitive(a);
  return a;
}

PolynomialT divideBy(PolynomialT a, PolynomialT const& divisor, WatchC& watch) {
  std::vector<RationalC> quotient;
  std::vector<RationalC> rest(a.begin(), a.end());
  while (rest.size() >= divisor.size() && watch.goOn(static_cast<unsigned>(divisor.size()))) {
    RationalC const factor = rest.back() / RationalC(divisor.back());
    std::size_t const shift = rest.size() - divisor.size();
    for (std::size_t i = 0; i < divisor.size(); ++i) {
      rest[i + shift] = rest[i + shift] - factor * RationalC(divisor[i]);
    }
    rest.pop_back();
    quotient.push_back(factor);
  }
  std::reverse(quotient.begin(), quotient.end());
  return quotient.empty() ? PolynomialT{1} : makePolynomial(quotient);
}

PolynomialT withoutMultiples(PolynomialT const& polynomial, WatchC& watch) {
  PolynomialT const common = findCommonDivisor(polynomial, derive(polynomial), watch);
  return common.size() > 1 && !watch.hasFailed() ? divideBy(polynomial, common, watch) : polynomial;
}

bool isolateRoots(PolynomialT const& polynomial, WatchC& watch, std::vector<RootS>& roots) {
  struct StretchS {
    RootS interval;
    int below, above;  // changes of sign at its ends
  };
  roots.clear();
  if (polynomial.size() < 2) return true;
  // All roots are nearer to 0 than this.
  std::int64_t bound = 1;
  for (BigIntegerC const& coefficient : polynomial) {
    bound =
        std::max(bound, exponentOf(RationalC(coefficient)) - exponentOf(RationalC(polynomial.back())) + 2);
  }
  ChainT const chain = makeSturmChain(polynomial, watch);
  RationalC const limit = powerOfTwo(bound);
  std::vector<StretchS> waiting{
      {{-limit, limit}, countChanges(chain, -limit, watch), countChanges(chain, limit, watch)}};
  while (!waiting.empty() && !watch.hasFailed()) {
    StretchS const stretch = waiting.back();
    waiting.pop_back();
    if (stretch.below == stretch.above) continue;
    if (stretch.below - stretch.above == 1) {
      roots.push_back(stretch.interval);
      continue;
    }
    RationalC const middle = stretch.interval.middle();
    int const changes = countChanges(chain, middle, watch);
    waiting.push_back({{middle, stretch.interval.high}, changes, stretch.above});
    waiting.push_back({{stretch.interval.low, middle}, stretch.below, changes});
  }
  return !watch.hasFailed();
}

bool refineRoot(PolynomialT const& polynomial, unsigned digits, WatchC& watch, RootS& root) {
  NarrowingC narrowing(polynomial, watch);
  std::int64_t const bits = static_cast<std::int64_t>(digits) * 10 / 3 + 8;
  auto const isNarrow = [&] {
    if (root.isExact()) return true;
    if (root.low.sign() * root.high.sign() <= 0) return false;
    std::int64_t const size = std::min(exponentOf(root.low), exponentOf(root.high));
    return exponentOf(root.high - root.low) < size - bits;
  };
  // A root at 0 has no digits.
  if (polynomial[0].isZero() && root.low.sign() < 0 && root.high.sign() >= 0) root = {0, 0};
  while (!isNarrow()) {
    if (!narrowing.narrow(root)) return false;
  }
  return true;
}

// Whole multiples of one part in the leading coefficient are the only candidates.
bool decideRational(PolynomialT const& polynomial, WatchC& watch, RootS& root) {
  constexpr std::size_t most_bits = 2000;
  BigIntegerC const last = polynomial.back().abs();
  if (last.bitLength() > most_bits) return true;
  NarrowingC narrowing(polynomial, watch);
  while (!root.isExact() && RationalC::compare((root.high - root.low) * RationalC(last), 1) >= 0) {
    if (!narrowing.narrow(root)) return false;
  }
  if (root.isExact()) return true;
  RationalC const candidate((root.high * RationalC(last)).floor().crefNumerator(), last);
  bool const isInside = RationalC::compare(candidate, root.low) > 0;
  if (isInside && evaluateAt(polynomial, candidate, watch).isZero()) root = {candidate, candidate};
  return !watch.hasFailed();
}

}  // namespace zolt::engine_basic::detail
