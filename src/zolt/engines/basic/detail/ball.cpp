#include "zolt/engines/basic/detail/ball.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace zolt::engine_basic::detail {

namespace {

constexpr double infinity = std::numeric_limits<double>::infinity();
constexpr double unit = std::numeric_limits<double>::epsilon();  // twice what rounding to nearest loses
constexpr double tiny = std::numeric_limits<double>::denorm_min();
// The mathematical functions of the libraries that we build with are exact to less than two units in the last
// place.
constexpr double library_error = 4 * unit;
// Errors are computed with rounding themselves, of which there are few steps each.
constexpr double margin = 1 + 16 * unit;

BallS within(double middle, double error) {
  return {middle, std::isfinite(middle) ? error * margin + (error > 0 ? tiny : 0) : 0};
}

// The ball of a function between the values at its ends, which came from the library.
BallS between(double middle, double a, double b) {
  if (!std::isfinite(middle)) return {middle, 0};
  double const spread = std::max(std::fabs(a - middle), std::fabs(b - middle));
  double const largest = std::max({std::fabs(middle), std::fabs(a), std::fabs(b)});
  if (!std::isfinite(spread)) return {middle, infinity};
  return within(middle, spread + largest * library_error + 4 * tiny);
}

bool isWhole(double value) { return std::floor(value) == value; }

DefinedE finite(BallS result, bool isInfiniteAllowed) {
  if (std::isnan(result.middle)) return DEFINED_NOWHERE;
  if (std::isinf(result.middle) && !isInfiniteAllowed) return DEFINED_TOO_LARGE;
  return DEFINED;
}

double reduce(double value, double index) {
  double const magnitude = std::pow(std::fabs(value), 1 / index);
  return value < 0 ? -magnitude : magnitude;
}

}  // namespace

double BallS::low() const { return error == 0 ? middle : std::nextafter(middle - error, -infinity); }
double BallS::high() const { return error == 0 ? middle : std::nextafter(middle + error, infinity); }

BallS addBalls(BallS a, BallS b) {
  double const sum = a.middle + b.middle;
  if (!std::isfinite(sum)) return {sum, 0};
  // What rounding lost, exactly.
  double const part = sum - a.middle;
  double const lost = (a.middle - (sum - part)) + (b.middle - part);
  return within(sum, a.error + b.error + std::fabs(lost));
}

BallS multiplyBalls(BallS a, BallS b) {
  double const product = a.middle * b.middle;
  if (!std::isfinite(product)) return {product, 0};
  double error = std::fabs(a.middle) * b.error + std::fabs(b.middle) * a.error + a.error * b.error;
  bool const isSafe = std::fabs(product) > 1e-280 && std::fabs(product) < 1e300;
  if (error != 0 || !isSafe) {
    error += std::fabs(product) * unit + (a.middle == 0 || b.middle == 0 ? 0 : tiny);
  } else {
    error = std::fabs(std::fma(a.middle, b.middle, -product));
  }
  return within(product, error);
}

DefinedE divideBalls(BallS a, BallS b, BallS& result) {
  if (b.middle == 0 && b.isExact()) return DEFINED_DIVIDES_BY_ZERO;
  if (b.mayBeZero()) return DEFINED_PERHAPS;
  bool const isInfinite = std::isinf(a.middle);
  double const quotient = a.middle / b.middle;
  if (!std::isfinite(quotient) || std::isinf(b.middle)) {
    result = {quotient, 0};
    return finite(result, isInfinite);
  }
  double const least = std::fabs(b.middle) - b.error;
  double error = (a.error + std::fabs(quotient) * b.error) / least;
  // An exact quotient leaves no rest.
  bool const isExact =
      a.isExact() && b.isExact() && std::fabs(quotient) < 1e250 &&
      (quotient == 0 ? a.middle == 0
                     : std::fabs(a.middle) > 1e-250 && std::fabs(b.middle) > 1e-250 &&
                           std::fabs(b.middle) < 1e250 && std::fma(quotient, b.middle, -a.middle) == 0);
  if (!isExact) error += std::fabs(quotient) * unit + tiny;
  result = within(quotient, error);
  return DEFINED;
}

DefinedE raiseBall(BallS base, BallS exponent, BallS& result) {
  bool const isWholePower = exponent.isExact() && isWhole(exponent.middle);
  bool const isZero = base.middle == 0 && base.isExact();
  if (isZero && exponent.isExact()) {
    if (exponent.middle == 0) return DEFINED_NOWHERE;
    if (exponent.middle < 0) return DEFINED_DIVIDES_BY_ZERO;
    result = {};
    return DEFINED;
  }
  if (!std::isfinite(base.middle) || !std::isfinite(exponent.middle)) {
    double const value = std::pow(base.middle, exponent.middle);
    bool const isKnown = base.middle > 0 && base.middle != 1 && exponent.middle != 0;
    result = {value, 0};
    return isKnown ? DEFINED : DEFINED_NOWHERE;
  }
  if (isWholePower && exponent.middle == 0 && !base.mayBeZero()) {
    result = {1, 0};
    return DEFINED;
  }
  if (isWholePower && exponent.middle > 0 && exponent.middle <= 64) {
    // Products are sharper than the library, and exact as long as they can be.
    unsigned n = static_cast<unsigned>(exponent.middle);
    BallS power{1, 0};
    for (BallS square = base;; square = multiplyBalls(square, square)) {
      if (n % 2 == 1) power = multiplyBalls(power, square);
      n /= 2;
      if (n == 0) break;
    }
    // The error of a square of a ball around 0 is no less than that of the power, so this stays a bound.
    result = power;
    return finite(result, false);
  }
  if (base.mayBeZero() && !(isWholePower && exponent.middle > 0)) return DEFINED_PERHAPS;
  if (base.middle < 0 && !isWholePower) return exponent.isExact() ? DEFINED_NOT_REAL : DEFINED_PERHAPS;
  if (base.low() <= 0 && base.middle > 0) return DEFINED_PERHAPS;
  // In each of its operands a power rises or falls, so its extremes are at the corners.
  double const middle = std::pow(base.middle, exponent.middle);
  double lowest = middle, highest = middle;
  if (!base.isExact() || !exponent.isExact()) {
    for (double const x : {base.low(), base.high()}) {
      for (double const y : {exponent.low(), exponent.high()}) {
        double const corner = std::pow(x, y);
        lowest = std::min(lowest, corner);
        highest = std::max(highest, corner);
      }
    }
  }
  if (base.mayBeZero()) {
    lowest = std::min(lowest, 0.0);
    highest = std::max(highest, 0.0);
  }
  result = between(middle, lowest, highest);
  return finite(result, false);
}

DefinedE rootOfBall(BallS a, BallS index, BallS& result) {
  if (index.middle == 2 && index.isExact()) {
    if (a.middle < 0 && !a.mayBeZero()) return DEFINED_NOT_REAL;
    if (a.middle - a.error < 0) return DEFINED_PERHAPS;
    double const root = std::sqrt(a.middle);
    // A square root is rounded correctly, and exact where its square is.
    if (a.isExact() && std::fma(root, root, -a.middle) == 0 && (root == 0 || root > 1e-100)) {
      result = {root, 0};
    } else {
      result = between(root, std::sqrt(std::max(0.0, a.low())), std::sqrt(a.high()));
    }
    return finite(result, std::isinf(a.middle));
  }
  if (!index.isExact() || !isWhole(index.middle)) {
    BallS inverse;
    DefinedE const defined = divideBalls({1, 0}, index, inverse);
    return defined == DEFINED ? raiseBall(a, inverse, result) : defined;
  }
  if (index.middle == 0) return DEFINED_DIVIDES_BY_ZERO;
  bool const isOdd = std::fmod(index.middle, 2) != 0;
  if (!isOdd && a.middle < 0 && !a.mayBeZero()) return DEFINED_NOT_REAL;
  if (!isOdd && a.middle - a.error < 0) return DEFINED_PERHAPS;
  if (index.middle < 0) {
    BallS root;
    DefinedE const defined = rootOfBall(a, {-index.middle, 0}, root);
    return defined == DEFINED ? divideBalls({1, 0}, root, result) : defined;
  }
  // The exponent 1/n is rounded, which counts as much as the logarithm is large.
  double const root = reduce(a.middle, index.middle);
  BallS const ball = between(root, reduce(a.low(), index.middle), reduce(a.high(), index.middle));
  double const steepness = a.middle == 0 ? 0 : std::fabs(std::log(std::fabs(a.middle))) / index.middle;
  result = within(ball.middle, ball.error + (std::fabs(root) + ball.error) * unit * (1 + steepness));
  double const whole = std::round(root);
  if (a.isExact() && std::fabs(whole) < 1e15) {
    BallS power;
    bool const isPower = raiseBall({whole, 0}, index, power) == DEFINED && power.isExact();
    if (isPower && power.middle == a.middle) result = {whole, 0};
  }
  return finite(result, std::isinf(a.middle));
}

DefinedE logarithmOfBall(BallS a, BallS& result) {
  if (a.middle == 0 && a.isExact()) return DEFINED_NOWHERE;
  if (a.middle < 0 && !a.mayBeZero()) return DEFINED_NOT_REAL;
  if (a.middle - a.error <= 0) return DEFINED_PERHAPS;
  if (a.middle == 1 && a.isExact()) {
    result = {};
  } else {
    result = risingOfBall(std::log, a);
  }
  return finite(result, std::isinf(a.middle));
}

DefinedE floorOfBall(BallS a, BallS& result) {
  if (std::isinf(a.middle)) return DEFINED_NOWHERE;
  double const lowest = std::floor(a.low());
  if (lowest != std::floor(a.high())) return DEFINED_PERHAPS;
  result = {lowest, 0};
  return DEFINED;
}

DefinedE factorialOfBall(BallS a, BallS& result) {
  if (!a.isExact()) return DEFINED_PERHAPS;
  if (!isWhole(a.middle) || a.middle < 0) return DEFINED_WRONG_ARGUMENT;
  if (a.middle > 170) return DEFINED_TOO_LARGE;
  result = {1, 0};
  for (double k = 2; k <= a.middle; ++k) result = multiplyBalls(result, {k, 0});
  return DEFINED;
}

DefinedE wholeQuotient(BallS a, BallS b, BallS& result) {
  if (std::isinf(a.middle) || std::isinf(b.middle)) return DEFINED_NOWHERE;
  BallS quotient;
  DefinedE defined = divideBalls(a, b, quotient);
  if (defined != DEFINED) return defined;
  bool const isTurned = b.middle < 0;
  defined = floorOfBall(isTurned ? negateBall(quotient) : quotient, result);
  if (isTurned) result = negateBall(result);
  return defined;
}

bool compareBalls(BallS a, BallS b, int* order) {
  if (a.isExact() && b.isExact()) {
    *order = (a.middle > b.middle) - (a.middle < b.middle);
    return true;
  }
  if (a.high() < b.low()) {
    *order = -1;
  } else if (a.low() > b.high()) {
    *order = 1;
  } else {
    return false;
  }
  return true;
}

BallS sineOfBall(BallS a) {
  if (a.middle == 0 && a.isExact()) return a;
  double const value = std::sin(a.middle);
  return within(value, std::min(2.0, a.error + library_error * std::fabs(value) + tiny));
}

BallS cosineOfBall(BallS a) {
  if (a.middle == 0 && a.isExact()) return {1, 0};
  double const value = std::cos(a.middle);
  return within(value, std::min(2.0, a.error + library_error * std::fabs(value) + tiny));
}

DefinedE tangentOfBall(BallS a, BallS& result) {
  if (a.error > 0.5) return DEFINED_PERHAPS;
  double const first = std::cos(a.low()), last = std::cos(a.high());
  bool const mayHavePole = first * last <= 0 || std::fabs(first) < unit || std::fabs(last) < unit;
  if (mayHavePole) return DEFINED_PERHAPS;
  result = risingOfBall(std::tan, a);
  return finite(result, false);
}

DefinedE arcOfBall(double (*function)(double), BallS a, BallS& result) {
  bool const isOutside = a.low() > 1 || a.high() < -1;
  if (isOutside) return DEFINED_NOT_REAL;
  if (a.middle + a.error > 1 || a.middle - a.error < -1) return DEFINED_PERHAPS;
  double const low = std::max(-1.0, a.low()), high = std::min(1.0, a.high());
  result = between(function(a.middle), function(low), function(high));
  return DEFINED;
}

BallS risingOfBall(double (*function)(double), BallS a) {
  double const value = function(a.middle);
  if (a.isExact()) return value == 0 && a.middle == 0 ? BallS{} : between(value, value, value);
  return between(value, function(a.low()), function(a.high()));
}

BallS coshOfBall(BallS a) {
  double const value = std::cosh(a.middle);
  double const far = std::cosh(std::fabs(a.middle) + a.error);
  return between(value, value, a.isExact() ? value : far);
}

unsigned countCertainDigits(BallS a) {
  constexpr unsigned most = 17;
  if (a.middle == 0 || a.mayBeZero() || !std::isfinite(a.middle)) return 0;
  // The first digit's place is that of the middle; rounding adds half a unit of the last place.
  int const place = static_cast<int>(std::floor(std::log10(std::fabs(a.middle))));
  unsigned digits = 0;
  while (digits < most && 2.001 * a.error < std::pow(10.0, place - static_cast<int>(digits))) ++digits;
  return digits;
}

}  // namespace zolt::engine_basic::detail
