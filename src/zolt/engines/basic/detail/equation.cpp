#include "zolt/engines/basic/detail/equation.h"

#include <algorithm>
#include <map>
#include <numeric>
#include <utility>

#include "zolt/engines/basic/detail/real_roots.h"
#include "zolt/engines/basic/detail/term_calculus.h"
#include "zolt/engines/basic/detail/term_functions.h"
#include "zolt/engines/basic/detail/term_plan.h"

namespace zolt::engine_basic::detail {

namespace {

constexpr std::size_t highest_degree = 1000;

class SolverC {
 public:
  SolverC(TermPoolC& pool, TermT unknown, unsigned digits, SolutionsS& solutions)
      : pool_(pool), watch_(pool.refWatch()), unknown_(unknown), digits_(digits), solutions_(solutions) {}

  bool run(TermT term) {
    FractionS const whole = bringTogether(pool_, term, unknown_);
    below_ = whole.below;
    std::vector<TermT> coefficients;
    if (watch_.hasFailed()) return false;
    if (!findCoefficients(pool_, whole.above, unknown_, highest_degree, coefficients)) {
      return watch_.fail(CAS_CAUSE_NEEDS_ALGEBRA, 0, {});
    }
    if (coefficients.size() == 1) return decide(coefficients[0]);
    bool const isRational =
        std::all_of(coefficients.begin(), coefficients.end(), [&](TermT one) { return pool_.isNumber(one); });
    bool const isLong = coefficients.size() > 3 || digits_ > 0;
    if (isRational && isLong) return solveRational(coefficients);
    return solveByPower(coefficients) && keepDefined() && sort();
  }

 private:
  bool decide(TermT constant) {
    int const sign = findSign(pool_, constant);
    bool const isAlways = constant == TermPoolC::zero && below_ == TermPoolC::one;
    if (!isAlways && sign != 1 && sign != -1) return watch_.fail(CAS_CAUSE_NEEDS_ALGEBRA, 0, {});
    solutions_.kind = isAlways ? SolutionsS::ALL : SolutionsS::NONE;
    return true;
  }

  // An equation that is linear or quadratic in a power of the unknown.
  bool solveByPower(std::vector<TermT> const& coefficients) {
    std::size_t step = 0;
    for (std::size_t i = 1; i < coefficients.size(); ++i) {
      if (coefficients[i] != TermPoolC::zero) step = std::gcd(step, i);
    }
    std::vector<TermT> inner;
    for (std::size_t i = 0; i < coefficients.size(); i += step) inner.push_back(coefficients[i]);
    if (inner.size() > 3) return watch_.fail(CAS_CAUSE_NEEDS_ALGEBRA, 0, {});
    if (inner.size() == 2) {
      addRoots(pool_.scale(pool_.divide(inner[0], inner[1]), -1), step);
    } else if (!solveQuadratic(inner, step)) {
      return false;
    }
    return !watch_.hasFailed();
  }

  bool solveQuadratic(std::vector<TermT> const& coefficients, std::size_t step) {
    TermT const c = coefficients[0], b = coefficients[1], a = coefficients[2];
    TermT const square = pool_.power(b, TermPoolC::two);
    TermT const discriminant = expand(pool_, pool_.subtract(square, pool_.scale(pool_.multiply(a, c), 4)));
    if (findSign(pool_, discriminant) == -1) return watch_.fail(CAS_CAUSE_NO_REAL_SOLUTION, 0, {});
    TermT const root = apply(pool_, OP_SQRT, {discriminant});
    TermT const twice = pool_.scale(a, 2);
    TermT last = TermPoolC::zero;
    for (std::int64_t const sign : {-1, 1}) {
      TermT const top = pool_.sum({{b, -1}, {root, sign}});
      TermT const solution = expand(pool_, pool_.divide(top, twice));
      if (sign == -1 || solution != last) addRoots(solution, step);
      last = solution;
    }
    return true;
  }

  // The numbers whose power is `value`.
  void addRoots(TermT value, std::size_t exponent) {
    std::vector<TermT>& all = solutions_.exact;
    TermT const index = pool_.number(static_cast<std::int64_t>(exponent));
    if (exponent % 2 == 1) {
      all.push_back(exponent == 1 ? value : apply(pool_, OP_ROOT, {value, index}));
      return;
    }
    int const sign = findSign(pool_, value);
    if (sign == -1) return;
    TermT const root = apply(pool_, OP_ROOT, {value, index});
    if (sign != 0) all.push_back(pool_.scale(root, -1));
    all.push_back(root);
  }

  bool keepDefined() {
    auto const isPole = [&](TermT solution) {
      TermT const there = expand(pool_, substitute(pool_, below_, unknown_, solution));
      if (there == TermPoolC::zero && !watch_.isOver()) watch_.takeFault();
      return there == TermPoolC::zero;
    };
    bool const hadNone = solutions_.exact.empty();
    auto const end = std::remove_if(solutions_.exact.begin(), solutions_.exact.end(), isPole);
    solutions_.exact.erase(end, solutions_.exact.end());
    return hadNone ? watch_.fail(CAS_CAUSE_NO_REAL_SOLUTION, 0, {}) : finish();
  }

  bool finish() {
    if (solutions_.exact.empty() && solutions_.rounded.empty()) solutions_.kind = SolutionsS::NONE;
    return !watch_.hasFailed();
  }

  bool sort() {
    std::stable_sort(solutions_.exact.begin(), solutions_.exact.end(),
                     [&](TermT a, TermT b) { return a != b && findSign(pool_, pool_.subtract(b, a)) == 1; });
    return !watch_.hasFailed();
  }

  // ---- Polynomials with rational coefficients
  // --------------------------------------------------------------

  bool solveRational(std::vector<TermT> const& coefficients) {
    std::vector<RationalC> numbers;
    for (TermT one : coefficients) numbers.push_back(pool_.numberOf(one));
    PolynomialT polynomial = withoutMultiples(makePolynomial(numbers), watch_);
    if (watch_.hasFailed() || !withoutPoles(polynomial)) return false;
    std::vector<RootS> roots;
    if (!isolateRoots(polynomial, watch_, roots)) return false;
    if (roots.empty()) {
      if (polynomial.size() > 1) return watch_.fail(CAS_CAUSE_NO_REAL_SOLUTION, 0, {});
      solutions_.kind = SolutionsS::NONE;
      return true;
    }
    for (RootS& root : roots) {
      if (!decideRational(polynomial, watch_, root)) return false;
    }
    return digits_ > 0 ? round(polynomial, roots) : writeRational(polynomial, roots);
  }

  bool withoutPoles(PolynomialT& polynomial) {
    if (below_ == TermPoolC::one) return true;
    std::vector<TermT> coefficients;
    bool isRational = findCoefficients(pool_, expand(pool_, below_), unknown_, highest_degree, coefficients);
    std::vector<RationalC> numbers;
    for (TermT one : coefficients) {
      isRational = isRational && pool_.isNumber(one);
      if (isRational) numbers.push_back(pool_.numberOf(one));
    }
    if (watch_.hasFailed()) return false;
    if (!isRational) return watch_.fail(CAS_CAUSE_NEEDS_ALGEBRA, 0, {});
    PolynomialT const common = findCommonDivisor(polynomial, makePolynomial(numbers), watch_);
    if (common.size() > 1) polynomial = divideBy(polynomial, common, watch_);
    return !watch_.hasFailed();
  }

  bool round(PolynomialT const& polynomial, std::vector<RootS>& roots) {
    for (RootS& root : roots) {
      if (!refineRoot(polynomial, digits_, watch_, root)) return false;
      solutions_.rounded.push_back(root.middle());
      solutions_.isRoundedExact.push_back(root.isExact());
    }
    return true;
  }

  // The rational ones, and then those of what is left.
  bool writeRational(PolynomialT polynomial, std::vector<RootS> const& roots) {
    for (RootS const& root : roots) {
      if (!root.isExact()) continue;
      solutions_.exact.push_back(pool_.number(root.low));
      BigIntegerC const& below = root.low.crefDenominator();
      polynomial = divideBy(polynomial, {-root.low.crefNumerator(), below}, watch_);
    }
    if (solutions_.exact.size() == roots.size()) return sort();
    std::vector<TermT> coefficients;
    for (BigIntegerC const& one : polynomial) coefficients.push_back(pool_.number(one));
    bool const isKnown = !watch_.hasFailed() && solveByPower(coefficients);
    if (!isKnown && watch_.crefFault().cause == CAS_CAUSE_NEEDS_ALGEBRA) {
      watch_.takeFault();
      return watch_.fail(CAS_CAUSE_ONLY_ROUNDED, 0, {});
    }
    return isKnown && sort();
  }

  TermPoolC& pool_;
  WatchC& watch_;
  TermT const unknown_;
  unsigned const digits_;
  SolutionsS& solutions_;
  TermT below_ = TermPoolC::one;
};

}  // namespace

FractionS bringTogether(TermPoolC& pool, TermT term, TermT variable) {
  TermT const expanded = expand(pool, term);
  std::map<TermT, RationalC> highest;  // powers of what is in denominators
  for (TermT part : pool.partsOf(expanded)) {
    for (FactorS const& factor : pool.cref(part).factors) {
      bool const isBelow = pool.isInteger(factor.exponent) && pool.numberOf(factor.exponent).sign() < 0;
      if (!isBelow || !dependsOn(pool, factor.base, variable)) continue;
      RationalC const power = -pool.numberOf(factor.exponent);
      RationalC& most = highest[factor.base];
      if (RationalC::compare(power, most) > 0) most = power;
    }
  }
  FractionS fraction{expanded, TermPoolC::one};
  for (auto const& pole : highest) {
    fraction.below = pool.multiply(fraction.below, pool.power(pole.first, pool.number(pole.second)));
  }
  if (fraction.below == TermPoolC::one) return fraction;
  std::vector<SummandS> summands = pool.cref(expanded).summands;
  if (summands.empty()) summands.push_back({expanded, 1});
  for (SummandS& summand : summands) {
    summand.term = expand(pool, pool.multiply(summand.term, fraction.below));
  }
  fraction.above = expand(pool, pool.sum(std::move(summands)));
  return fraction;
}

bool solveEquation(TermPoolC& pool, TermT term, TermT unknown, unsigned digits, SolutionsS& solutions) {
  return SolverC(pool, unknown, digits, solutions).run(term);
}

}  // namespace zolt::engine_basic::detail
