#include "zolt/engines/basic/detail/term_integral.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "zolt/engines/basic/detail/term_calculus.h"
#include "zolt/engines/basic/detail/term_functions.h"
#include "zolt/engines/basic/detail/term_plan.h"

namespace zolt::engine_basic::detail {

namespace {

class IntegratorC {
 public:
  IntegratorC(TermPoolC& pool, TermT variable) : pool_(pool), variable_(variable) {}

  bool run(TermT term, TermT* antiderivative, ReachE* reach) {
    TermT const expanded = expand(pool_, term);
    if (pool_.refWatch().hasFailed()) return false;
    std::vector<SummandS> summands = pool_.cref(expanded).summands;
    if (summands.empty()) summands.push_back({expanded, 1});
    for (SummandS& summand : summands) {
      if (!integrateProduct(summand.term, &summand.term)) return false;
    }
    *antiderivative = pool_.sum(std::move(summands));
    *reach = reach_;
    return !pool_.refWatch().hasFailed();
  }

 private:
  TermT number(RationalC const& value) { return pool_.number(value); }
  TermT call(OpE op, TermT argument) { return apply(pool_, op, {argument}); }
  TermT logarithm(TermT size) { return call(OP_LN, call(OP_ABS, size)); }
  void limit(ReachE reach) { reach_ = std::max(reach_, reach); }

  /// What an angle of 1 is in radians.
  TermT unit() {
    return pool_.getAngle() == CAS_RADIANS ? TermPoolC::one : pool_.scale(pool_.pi(), RationalC(1, 180));
  }

  /// The coefficients when the term is a polynomial of this degree.
  bool readPolynomial(TermT term, std::size_t degree, std::vector<TermT>& coefficients) {
    TermT const expanded = expand(pool_, term);
    if (pool_.refWatch().hasFailed()) return false;
    if (!findCoefficients(pool_, expanded, variable_, degree, coefficients)) return false;
    if (coefficients.size() != degree + 1) return false;
    // A name may be 0, for which another rule holds.
    if (pool_.cref(coefficients[degree]).hasNames) limit(REACH_UNKNOWN);
    return true;
  }

  bool integrateProduct(TermT term, TermT* result) {
    std::vector<FactorS> factors{{term, TermPoolC::one}}, constant;
    if (pool_.cref(term).kind == TERM_PRODUCT) factors = pool_.cref(term).factors;
    RationalC power = 0;
    FactorS other;
    unsigned others = 0;
    for (FactorS const& factor : factors) {
      bool const isInExponent = dependsOn(pool_, factor.exponent, variable_);
      if (!isInExponent && !dependsOn(pool_, factor.base, variable_)) {
        constant.push_back(factor);
      } else if (factor.base == variable_ && pool_.isNumber(factor.exponent)) {
        power = pool_.numberOf(factor.exponent);
      } else {
        other = factor;
        ++others;
      }
    }
    TermT inner = TermPoolC::zero;
    bool const isDone = others == 0   ? integratePower(power, &inner)
                        : others == 1 ? integrateFactor(power, other, &inner)
                                      : false;
    if (!isDone) return false;
    constant.push_back({inner, TermPoolC::one});
    *result = pool_.product(std::move(constant));
    return !pool_.refWatch().hasFailed();
  }

  bool integratePower(RationalC const& power, TermT* result) {
    RationalC const next = power + 1;
    if (next.isZero()) {
      limit(REACH_ABOVE_ZERO);
      *result = logarithm(variable_);
      return true;
    }
    bool const isWhole = power.isInteger() && power.sign() >= 0;
    if (!isWhole) limit(next.sign() > 0 ? REACH_FROM_ZERO : REACH_ABOVE_ZERO);
    *result = pool_.scale(pool_.power(variable_, number(next)), next.inverse());
    return true;
  }

  bool integrateFactor(RationalC const& power, FactorS const& factor, TermT* result) {
    TermS const base = pool_.cref(factor.base);
    bool const isFunction = base.kind == TERM_FUNCTION && base.arguments.size() == 1;
    if (isFunction && factor.exponent == TermPoolC::one) {
      return integrateFunction(power, base.op, base.arguments[0], result);
    }
    bool const isSquare = factor.exponent == TermPoolC::two && (base.op == OP_SIN || base.op == OP_COS);
    if (isFunction && isSquare && power.isZero()) {
      return integrateSquare(base.op, base.arguments[0], result);
    }
    if (!pool_.isNumber(factor.exponent)) {
      return power.isZero() && integrateExponential(factor.base, factor.exponent, result);
    }
    return integratePowerOf(power, factor.base, pool_.numberOf(factor.exponent), result);
  }

  // By parts: a power of the variable times a function whose antiderivatives are all known.
  bool integrateFunction(RationalC const& power, OpE op, TermT argument, TermT* result) {
    constexpr std::int64_t most = 100;
    std::vector<TermT> linear;
    bool const isHalfway =
        op == OP_EXP && power.isOne() && readPolynomial(argument, 2, linear) && linear[1] == TermPoolC::zero;
    if (isHalfway) {
      *result = pool_.divide(call(op, argument), pool_.scale(linear[2], 2));
      return true;
    }
    if (!readPolynomial(argument, 1, linear)) return false;
    bool const isAngle = op == OP_SIN || op == OP_COS;
    TermT const slope = isAngle ? pool_.multiply(linear[1], unit()) : linear[1];
    if (power.isZero() && integrateAlone(op, argument, linear[1], result)) return true;
    bool const isRepeated = isAngle || op == OP_EXP || op == OP_SINH || op == OP_COSH;
    bool const isWhole = power.isInteger() && power.sign() >= 0 && RationalC::compare(power, most) <= 0;
    if (!isRepeated || !isWhole) return false;
    std::vector<SummandS> summands;
    RationalC factor = 1;
    TermT scale = TermPoolC::one;
    OpE current = op;
    for (std::int64_t left = power.toSmall(); left >= 0; --left) {
      // The antiderivative of a sine is a negative cosine.
      if (current == OP_SIN) factor = -factor;
      current = turned(current);
      scale = pool_.divide(scale, slope);
      TermT const rest = pool_.multiply(pool_.power(variable_, number(left)), call(current, argument));
      summands.push_back({pool_.multiply(rest, scale), factor});
      factor = factor * RationalC(-left);
      if (pool_.refWatch().hasFailed()) return false;
    }
    *result = pool_.sum(std::move(summands));
    return true;
  }
  static OpE turned(OpE op) {
    return op == OP_SIN    ? OP_COS
           : op == OP_COS  ? OP_SIN
           : op == OP_SINH ? OP_COSH
           : op == OP_COSH ? OP_SINH
                           : op;
  }

  bool integrateAlone(OpE op, TermT argument, TermT slope, TermT* result) {
    if (op == OP_TAN) {
      limit(REACH_UNKNOWN);
      TermT const size = logarithm(call(OP_COS, argument));
      *result = pool_.scale(pool_.divide(size, pool_.multiply(slope, unit())), -1);
    } else if (op == OP_TANH) {
      *result = pool_.divide(call(OP_LN, call(OP_COSH, argument)), slope);
    } else if (op == OP_LN) {
      limit(REACH_UNKNOWN);
      TermT const product = pool_.multiply(argument, call(OP_LN, argument));
      *result = pool_.divide(pool_.subtract(product, argument), slope);
    } else {
      return false;
    }
    return true;
  }

  bool integrateSquare(OpE op, TermT argument, TermT* result) {
    std::vector<TermT> linear;
    if (!readPolynomial(argument, 1, linear)) return false;
    TermT const wave =
        pool_.divide(call(OP_SIN, pool_.scale(argument, 2)), pool_.multiply(linear[1], unit()));
    *result = pool_.sum({{variable_, RationalC(1, 2)}, {wave, RationalC(op == OP_COS ? 1 : -1, 4)}});
    return true;
  }

  bool integrateExponential(TermT base, TermT exponent, TermT* result) {
    std::vector<TermT> linear;
    bool const isPower = !dependsOn(pool_, base, variable_) && base != TermPoolC::one &&
                         findSign(pool_, base) == 1 && readPolynomial(exponent, 1, linear);
    if (!isPower) return false;
    *result = pool_.divide(pool_.power(base, exponent), pool_.multiply(linear[1], call(OP_LN, base)));
    return true;
  }

  // A power of the variable times a power of a linear or quadratic term. The exponent is a copy, since the
  // numbers of the pool move when it grows.
  bool integratePowerOf(RationalC const& power, TermT base, RationalC const exponent, TermT* result) {
    std::vector<TermT> coefficients;
    RationalC const next = exponent + 1;
    auto const raise = [&] {
      return next.isZero() ? logarithm(base) : pool_.scale(pool_.power(base, number(next)), next.inverse());
    };
    if (power.isZero() && readPolynomial(base, 1, coefficients)) {
      limit(REACH_UNKNOWN);
      *result = pool_.divide(raise(), coefficients[1]);
      return true;
    }
    if (!readPolynomial(base, 2, coefficients)) return false;
    TermT const c = coefficients[0], b = coefficients[1], a = coefficients[2];
    if (power.isOne() && b == TermPoolC::zero) {
      limit(REACH_UNKNOWN);
      *result = pool_.divide(raise(), pool_.scale(a, 2));
      return true;
    }
    if (!power.isZero()) return false;
    TermT const square = pool_.power(b, TermPoolC::two);
    TermT const rest = pool_.subtract(pool_.scale(pool_.multiply(a, c), 4), square);
    if (exponent == RationalC(-1) && findSign(pool_, rest) == 1) {
      TermT const root = apply(pool_, OP_SQRT, {rest});
      TermT const inside = pool_.divide(pool_.sum({{pool_.multiply(a, variable_), 2}, {b, 1}}), root);
      *result = pool_.scale(pool_.divide(pool_.multiply(call(OP_ATAN, inside), unit()), root), 2);
      return true;
    }
    bool const isArc = exponent == RationalC(-1, 2) && b == TermPoolC::zero && findSign(pool_, a) == -1 &&
                       findSign(pool_, c) == 1;
    if (!isArc) return false;
    limit(REACH_UNKNOWN);
    TermT const size = pool_.scale(a, -1);
    TermT const inside = pool_.multiply(variable_, apply(pool_, OP_SQRT, {pool_.divide(size, c)}));
    *result = pool_.divide(pool_.multiply(call(OP_ASIN, inside), unit()), apply(pool_, OP_SQRT, {size}));
    return true;
  }

  TermPoolC& pool_;
  TermT const variable_;
  ReachE reach_ = REACH_EVERYWHERE;
};

}  // namespace

bool integrateTerm(TermPoolC& pool, TermT term, TermT variable, TermT* antiderivative, ReachE* reach) {
  return IntegratorC(pool, variable).run(term, antiderivative, reach);
}

}  // namespace zolt::engine_basic::detail
