#include "zolt/engines/basic/detail/term_functions.h"

#include <cmath>

#include "zolt/engines/basic/detail/term_plan.h"

namespace zolt::engine_basic::detail {

namespace {

class FunctionC {
 public:
  FunctionC(TermPoolC& pool, OpE op, std::vector<TermT> const& arguments)
      : pool_(pool), op_(op), arguments_(arguments) {}

  TermT run() {
    TermT const a = arguments_.empty() ? TermPoolC::zero : arguments_[0];
    TermT const b = arguments_.size() < 2 ? TermPoolC::zero : arguments_[1];
    switch (op_) {
      case OP_POWER:
        return pool_.power(a, b);
      case OP_SQRT:
        return pool_.power(a, half());
      case OP_ROOT:
        return root(a, b);
      case OP_DIV:
      case OP_MOD:
        return wholeQuotient(a, b);
      case OP_FACTORIAL:
        return factorial(a);
      case OP_ABS:
        return absolute(a);
      case OP_FLOOR:
      case OP_CEIL:
        return rounded(a);
      case OP_LOG:
        return logarithm(a, b);
      case OP_LOG10:
        return logarithm(a, pool_.number(10));
      case OP_LN:
        return naturalLogarithm(a);
      case OP_EXP:
        return exponential(a);
      case OP_SIN:
      case OP_COS:
      case OP_TAN:
        return trigonometric(a);
      case OP_ASIN:
      case OP_ACOS:
      case OP_ATAN:
        return arc(a);
      case OP_SINH:
      case OP_TANH:
        return a == TermPoolC::zero ? a : odd(a);
      case OP_COSH:
        return a == TermPoolC::zero ? TermPoolC::one : same();
      case OP_RAD: {
        if (pool_.getAngle() == CAS_RADIANS) return a;
        TermT const halfTurns = pool_.scale(a, 180);
        return pool_.divide(halfTurns, pool_.pi());
      }
      case OP_DEG:
        return pool_.getAngle() == CAS_DEGREES ? a : pool_.multiply(a, inTurns(RationalC(1, 180)));
      case OP_NOT:
      case OP_AND:
      case OP_OR:
        return decide();
      case OP_EQUAL:
      case OP_NOT_EQUAL:
      case OP_LESS:
      case OP_GREATER:
      case OP_LESS_OR_EQUAL:
      case OP_GREATER_OR_EQUAL:
        return compare(a, b);
      default:
        return same();
    }
  }

 private:
  TermT same() { return pool_.function(op_, arguments_); }
  TermT fail(CASCauseE cause) {
    pool_.refWatch().fail(cause);
    return TermPoolC::zero;
  }
  TermT half() { return pool_.number(RationalC(1, 2)); }
  TermT truth(bool isTrue) { return pool_.function(isTrue ? OP_TRUE : OP_FALSE, {}); }
  TermT negate(TermT a) { return pool_.scale(a, -1); }
  /// So many half turns as a number.
  TermT inTurns(RationalC const& halfTurns) { return pool_.scale(pool_.pi(), halfTurns); }
  /// So many half turns as an angle in the unit of this computation.
  TermT angle(RationalC const& halfTurns) {
    if (pool_.getAngle() == CAS_RADIANS) return inTurns(halfTurns);
    return pool_.number(halfTurns * RationalC(180));
  }

  // A sum of one negative term.
  bool isNegative(TermT a) const {
    TermS const& term = pool_.cref(a);
    if (term.kind == TERM_NUMBER) return term.number.sign() < 0;
    return term.kind == TERM_SUM && term.summands.size() == 1 && term.summands[0].factor.sign() < 0;
  }
  // A function that changes its sign with its argument.
  TermT odd(TermT a) {
    if (!isNegative(a)) return same();
    return negate(pool_.function(op_, {negate(a)}));
  }

  TermT root(TermT a, TermT index) {
    if (!pool_.isNumber(index)) return same();
    RationalC const n = pool_.numberOf(index);
    if (n.isZero()) return fail(CAS_CAUSE_DIVISION_BY_ZERO);
    bool const isOdd = n.isInteger() && n.crefNumerator().isOdd();
    if (isOdd && n.sign() < 0) {
      TermT const inverse = apply(pool_, OP_ROOT, {a, pool_.number(-n)});
      return pool_.power(inverse, pool_.number(-1));
    }
    TermT const exponent = pool_.number(n.inverse());
    if (n.isOne() || !isOdd) return pool_.power(a, exponent);
    int const sign = findSign(pool_, a);
    if (sign == 2) return same();
    return sign < 0 ? negate(pool_.power(negate(a), exponent)) : pool_.power(a, exponent);
  }

  TermT wholeQuotient(TermT a, TermT b) {
    if (!pool_.isNumber(a) || !pool_.isNumber(b)) return same();
    RationalC const divided = pool_.numberOf(a), divisor = pool_.numberOf(b);
    if (divisor.isZero()) return fail(CAS_CAUSE_DIVISION_BY_ZERO);
    RationalC const floor = (divided / divisor.abs()).floor();
    RationalC const quotient = divisor.sign() < 0 ? -floor : floor;
    return pool_.number(op_ == OP_DIV ? quotient : divided - quotient * divisor);
  }

  TermT factorial(TermT a) {
    constexpr std::int64_t greatest = 30000;
    if (!pool_.isNumber(a)) return same();
    RationalC const n = pool_.numberOf(a);
    if (!n.isInteger() || n.sign() < 0) return fail(CAS_CAUSE_WRONG_ARGUMENT);
    if (!n.isSmall() || n.toSmall() > greatest) return fail(CAS_CAUSE_TOO_LARGE);
    // Numbers of like length are multiplied, which long products are quick at.
    std::vector<BigIntegerC> factors{1};
    for (std::int64_t k = 2; k <= n.toSmall(); ++k) factors.emplace_back(k);
    while (factors.size() > 1) {
      std::size_t const pairs = factors.size() / 2;
      for (std::size_t i = 0; i < pairs; ++i) {
        if (!pool_.refWatch().goOn()) return TermPoolC::zero;
        factors[i] = factors[2 * i] * factors[2 * i + 1];
      }
      if (factors.size() % 2 == 1) factors[pairs] = factors.back();
      factors.resize((factors.size() + 1) / 2);
    }
    return pool_.number(factors[0]);
  }

  TermT absolute(TermT a) {
    int const sign = findSign(pool_, a);
    if (sign != 2) return sign < 0 ? negate(a) : a;
    if (pool_.isFunction(a, OP_ABS)) return a;
    TermS const& term = pool_.cref(a);
    if (term.kind != TERM_SUM || term.summands.size() != 1) return same();
    SummandS const only = term.summands[0];
    return pool_.scale(apply(pool_, OP_ABS, {only.term}), only.factor.abs());
  }

  TermT rounded(TermT a) {
    bool const isCeil = op_ == OP_CEIL;
    if (pool_.isNumber(a)) {
      RationalC const number = pool_.numberOf(a);
      return pool_.number(isCeil ? -(-number).floor() : number.floor());
    }
    BallS value, floor;
    bool const isKnown = findValue(pool_, a, &value) &&
                         floorOfBall(isCeil ? negateBall(value) : value, floor) == DEFINED &&
                         std::fabs(floor.middle) < 1e15;
    if (!isKnown) return same();
    auto const whole = static_cast<std::int64_t>(floor.middle);
    return pool_.number(isCeil ? -whole : whole);
  }

  // Whether the logarithm of `a` exists, as far as is known.
  bool checkPositive(TermT a) {
    int const sign = findSign(pool_, a);
    if (sign == 2 || sign == 1) return true;
    fail(sign == 0 ? CAS_CAUSE_UNDEFINED : CAS_CAUSE_NOT_REAL);
    return false;
  }

  TermT logarithm(TermT a, TermT base) {
    if (!checkPositive(a) || !checkPositive(base)) return TermPoolC::zero;
    if (base == TermPoolC::one) return fail(CAS_CAUSE_DIVISION_BY_ZERO);
    if (a == TermPoolC::one) return TermPoolC::zero;
    if (a == base) return TermPoolC::one;
    if (!pool_.isNumber(a) || !pool_.isNumber(base)) return same();
    RationalC const number = pool_.numberOf(a), of = pool_.numberOf(base);
    double const ratio = logarithmOf(number) / logarithmOf(of);
    for (std::int64_t q = 1; q <= 6; ++q) {
      double const p = std::round(ratio * static_cast<double>(q));
      RationalC left, right;
      bool const isPower = std::fabs(p) < 1e6 && number.power(q, left) &&
                           of.power(static_cast<std::int64_t>(p), right) && left == right;
      if (isPower) return pool_.number(RationalC(BigIntegerC(static_cast<std::int64_t>(p)), BigIntegerC(q)));
    }
    return same();
  }
  // Near enough to find a candidate, for numbers of any length.
  static double logarithmOf(RationalC const& number) {
    std::int64_t up = 0, down = 0;
    double const top = static_cast<double>(number.crefNumerator().highestBits(&up));
    double const bottom = static_cast<double>(number.crefDenominator().highestBits(&down));
    return std::log(top / bottom) + static_cast<double>(up - down) * 0.69314718055994531;
  }

  TermT naturalLogarithm(TermT a) {
    if (!checkPositive(a)) return TermPoolC::zero;
    if (a == TermPoolC::one) return TermPoolC::zero;
    return pool_.isFunction(a, OP_EXP) ? pool_.cref(a).arguments[0] : same();
  }

  TermT exponential(TermT a) {
    if (a == TermPoolC::zero) return TermPoolC::one;
    if (pool_.isFunction(a, OP_LN)) return pool_.cref(a).arguments[0];
    TermS const& term = pool_.cref(a);
    if (term.kind == TERM_SUM && term.summands.size() == 1 &&
        pool_.isFunction(term.summands[0].term, OP_LN)) {
      SummandS const only = term.summands[0];
      return pool_.power(pool_.cref(only.term).arguments[0], pool_.number(only.factor));
    }
    return same();
  }

  // ---- Angles
  // ----------------------------------------------------------------------------------------------

  // Whether the argument is a rational number of half turns.
  bool findHalfTurns(TermT a, RationalC* halfTurns) {
    TermS const& term = pool_.cref(a);
    if (pool_.getAngle() == CAS_DEGREES) {
      if (term.kind != TERM_NUMBER) return false;
      *halfTurns = term.number * RationalC(1, 180);
      return true;
    }
    bool const isMultiple =
        term.kind == TERM_SUM && term.summands.size() == 1 && pool_.isFunction(term.summands[0].term, OP_PI);
    *halfTurns = isMultiple ? term.summands[0].factor : RationalC(pool_.isFunction(a, OP_PI) ? 1 : 0);
    return isMultiple || a == TermPoolC::zero || pool_.isFunction(a, OP_PI);
  }

  // The sine of that many half turns between 0 and 1/2; false when it is no simple number.
  bool findSine(RationalC const& halfTurns, TermT* sine) {
    struct KnownS {
      std::int64_t twelfths;
      std::int64_t square;  // of twice the sine
    };
    constexpr KnownS known[] = {{0, 0}, {2, 1}, {3, 2}, {4, 3}, {6, 4}};
    RationalC const twelfths = halfTurns * RationalC(12);
    for (KnownS const& entry : known) {
      if (!(twelfths == RationalC(entry.twelfths))) continue;
      *sine = pool_.scale(pool_.power(pool_.number(entry.square), half()), RationalC(1, 2));
      return true;
    }
    return false;
  }
  bool findSineAnywhere(RationalC halfTurns, TermT* sine) {
    halfTurns = halfTurns - RationalC(2) * (halfTurns * RationalC(1, 2)).floor();
    bool const isBelow = RationalC::compare(halfTurns, 1) >= 0;
    if (isBelow) halfTurns = halfTurns - 1;
    if (RationalC::compare(halfTurns, RationalC(1, 2)) > 0) halfTurns = RationalC(1) - halfTurns;
    if (!findSine(halfTurns, sine)) return false;
    if (isBelow) *sine = negate(*sine);
    return true;
  }

  TermT trigonometric(TermT a) {
    RationalC halfTurns;
    TermT sine = 0, cosine = 0;
    bool const isKnown = findHalfTurns(a, &halfTurns) && findSineAnywhere(halfTurns, &sine) &&
                         findSineAnywhere(halfTurns + RationalC(1, 2), &cosine);
    if (isKnown) {
      if (op_ == OP_TAN && cosine == TermPoolC::zero) return fail(CAS_CAUSE_UNDEFINED);
      return op_ == OP_SIN ? sine : op_ == OP_COS ? cosine : pool_.divide(sine, cosine);
    }
    if (op_ != OP_COS) return odd(a);
    return isNegative(a) ? pool_.function(op_, {negate(a)}) : same();
  }

  TermT arc(TermT a) {
    if (op_ != OP_ATAN && pool_.isNumber(a) && RationalC::compare(pool_.numberOf(a).abs(), 1) > 0) {
      return fail(CAS_CAUSE_NOT_REAL);
    }
    for (std::int64_t const twelfths : {0, 2, 3, 4, 6}) {
      if (op_ == OP_ATAN && twelfths == 6) continue;
      RationalC const halfTurns(twelfths, 12);
      TermT value = 0, cosine = 0;
      if (!findSine(halfTurns, &value) || !findSine(RationalC(1, 2) - halfTurns, &cosine)) continue;
      if (op_ == OP_ATAN) value = pool_.divide(value, cosine);
      bool const isNegated = a == negate(value);
      if (a != value && !isNegated) continue;
      RationalC const found = isNegated ? -halfTurns : halfTurns;
      return angle(op_ == OP_ACOS ? RationalC(1, 2) - found : found);
    }
    return op_ == OP_ACOS ? same() : odd(a);
  }

  // ---- Truth
  // -----------------------------------------------------------------------------------------------

  TermT decide() {
    if (op_ == OP_NOT) {
      bool const isTrue = pool_.isFunction(arguments_[0], OP_TRUE);
      return isTrue || pool_.isFunction(arguments_[0], OP_FALSE) ? truth(!isTrue) : same();
    }
    // One such operand decides; the other constants say nothing.
    OpE const deciding = op_ == OP_AND ? OP_FALSE : OP_TRUE;
    OpE const neutral = op_ == OP_AND ? OP_TRUE : OP_FALSE;
    std::vector<TermT> rest;
    for (TermT operand : arguments_) {
      if (pool_.isFunction(operand, deciding)) return operand;
      if (!pool_.isFunction(operand, neutral)) rest.push_back(operand);
    }
    if (rest.empty()) return truth(op_ == OP_AND);
    return rest.size() == 1 ? rest[0] : pool_.function(op_, rest);
  }

  TermT compare(TermT a, TermT b) {
    TermT const difference = pool_.subtract(a, b);
    if (pool_.refWatch().hasFailed()) return TermPoolC::zero;
    int const sign = findSign(pool_, difference);
    if (sign == 2) return same();
    return truth(op_ == OP_EQUAL           ? sign == 0
                 : op_ == OP_NOT_EQUAL     ? sign != 0
                 : op_ == OP_LESS          ? sign < 0
                 : op_ == OP_GREATER       ? sign > 0
                 : op_ == OP_LESS_OR_EQUAL ? sign <= 0
                                           : sign >= 0);
  }

  TermPoolC& pool_;
  OpE const op_;
  std::vector<TermT> const& arguments_;
};

}  // namespace

TermT apply(TermPoolC& pool, OpE op, std::vector<TermT> const& arguments) {
  if (pool.refWatch().hasFailed()) return TermPoolC::zero;
  return FunctionC(pool, op, arguments).run();
}

}  // namespace zolt::engine_basic::detail
