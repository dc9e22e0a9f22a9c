#pragma once

namespace zolt::engine_basic::detail {

/// A real number that is known to be within `error` of `middle`. Every operation answers with a ball in which
/// the exact result is, whatever numbers of its operands' balls are meant. An infinite middle has no error.
/// Operations that are not defined on all of their operands answer with an undefined ball, or with one that
/// says it may be undefined.
struct BallS {
  double middle = 0;
  double error = 0;

  bool isExact() const { return error == 0; }
  double low() const;
  double high() const;
  bool mayBeZero() const { return middle - error <= 0 && middle + error >= 0; }
};

/// Whether an operation has a value.
enum DefinedE {
  DEFINED,
  DEFINED_PERHAPS,   ///< for a part of the ball only: nothing is certain
  DEFINED_NOT_REAL,  ///< the value is a complex number
  DEFINED_DIVIDES_BY_ZERO,
  DEFINED_NOWHERE,
  DEFINED_TOO_LARGE,  ///< beyond the range of a double
  DEFINED_WRONG_ARGUMENT
};

BallS addBalls(BallS a, BallS b);
inline BallS negateBall(BallS a) { return {-a.middle, a.error}; }
BallS multiplyBalls(BallS a, BallS b);
DefinedE divideBalls(BallS a, BallS b, BallS& result);
DefinedE raiseBall(BallS base, BallS exponent, BallS& result);
/// The real root; of a negative number where `index` is odd.
DefinedE rootOfBall(BallS a, BallS index, BallS& result);
DefinedE logarithmOfBall(BallS a, BallS& result);
DefinedE floorOfBall(BallS a, BallS& result);
DefinedE factorialOfBall(BallS a, BallS& result);
/// The whole quotient `q` for which `a - q·b` is at least 0 and less than |b|.
DefinedE wholeQuotient(BallS a, BallS b, BallS& result);
/// -1, 0 or 1 in `*order` when it is certain.
bool compareBalls(BallS a, BallS b, int* order);

BallS sineOfBall(BallS a);
BallS cosineOfBall(BallS a);
DefinedE tangentOfBall(BallS a, BallS& result);
/// `asin` and `acos`.
DefinedE arcOfBall(double (*function)(double), BallS a, BallS& result);
/// Of a function that rises everywhere.
BallS risingOfBall(double (*function)(double), BallS a);
BallS coshOfBall(BallS a);

/// How many significant digits of a number that is not exact are certain: with so many, the number that is
/// written is less than one unit of its last digit away from the exact one.
unsigned countCertainDigits(BallS a);

}  // namespace zolt::engine_basic::detail
