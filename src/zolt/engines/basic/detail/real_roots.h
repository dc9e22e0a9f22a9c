#pragma once

#include <vector>

#include "zolt/engines/basic/detail/rational.h"
#include "zolt/engines/basic/detail/watch.h"

namespace zolt::engine_basic::detail {

/// A polynomial with whole coefficients by degree; the last one is not 0, and nothing divides them all.
using PolynomialT = std::vector<BigIntegerC>;

/// A root is greater than `low` and not greater than `high`; of a known rational one both are the root.
struct RootS {
  RationalC low;
  RationalC high;

  bool isExact() const { return low == high; }
  RationalC middle() const { return (low + high) * RationalC(1, 2); }
};

// What takes long ends with the watch's fault: then a bool is false, and a polynomial is any one.

/// A multiple of the polynomial with these coefficients, the last of which is not 0.
PolynomialT makePolynomial(std::vector<RationalC> const& coefficients);
PolynomialT findCommonDivisor(PolynomialT a, PolynomialT b, WatchC& watch);
/// `a` divided by one of its divisors.
PolynomialT divideBy(PolynomialT a, PolynomialT const& divisor, WatchC& watch);
/// The polynomial with the same roots, each once. Of a degree of at least 1.
PolynomialT withoutMultiples(PolynomialT const& polynomial, WatchC& watch);

// Of polynomials without multiple roots:

/// All real roots in their order, by the theorem of Sturm; each interval has one.
[[nodiscard]] bool isolateRoots(PolynomialT const& polynomial, WatchC& watch, std::vector<RootS>& roots);
/// Narrows the interval until so many significant digits of the root are certain.
[[nodiscard]] bool refineRoot(PolynomialT const& polynomial, unsigned digits, WatchC& watch, RootS& root);
/// Narrows the interval until the root is known to be rational, and which one it is, or not to be.
[[nodiscard]] bool decideRational(PolynomialT const& polynomial, WatchC& watch, RootS& root);

}  // namespace zolt::engine_basic::detail
