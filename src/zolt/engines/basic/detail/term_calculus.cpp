#include "zolt/engines/basic/detail/term_calculus.h"

#include <algorithm>
#include <array>
#include <utility>

#include "zolt/engines/basic/detail/term_functions.h"

namespace zolt::engine_basic::detail {

namespace {

using MadeT = std::unordered_map<TermT, TermT>;

bool isLoop(TermS const& term) { return term.op == OP_TOTAL || term.op == OP_INTEGRAL; }

// The term with other parts in the places of its own.
TermT rebuild(TermPoolC& pool, TermT term, MadeT const& made) {
  TermS const record = pool.cref(term);
  auto const newOf = [&](TermT part) { return made.at(part); };
  if (record.kind == TERM_SUM) {
    std::vector<SummandS> summands = record.summands;
    for (SummandS& summand : summands) summand.term = newOf(summand.term);
    return pool.sum(std::move(summands));
  }
  if (record.kind == TERM_PRODUCT) {
    std::vector<FactorS> factors = record.factors;
    for (FactorS& factor : factors) factor = {newOf(factor.base), newOf(factor.exponent)};
    return pool.product(std::move(factors));
  }
  std::vector<TermT> arguments;
  for (TermT argument : record.arguments) arguments.push_back(newOf(argument));
  return isLoop(record) ? pool.function(record.op, std::move(arguments)) : apply(pool, record.op, arguments);
}

class DerivativeC {
 public:
  DerivativeC(TermPoolC& pool, TermT variable) : pool_(pool), variable_(variable) {}

  TermT run(TermT top) {
    std::vector<bool> depends(top + std::size_t{1});
    for (TermT term : pool_.partsOf(top)) {
      bool isDependent = term == variable_;
      pool_.forEachPart(term, [&](TermT part) { isDependent |= depends[part]; });
      depends[term] = isDependent;
      derivatives_[term] = TermPoolC::zero;
      if (isDependent) derivatives_[term] = term == variable_ ? TermPoolC::one : derive(term, depends);
      if (pool_.refWatch().hasFailed()) return TermPoolC::zero;
    }
    return derivatives_[top];
  }

 private:
  TermT derive(TermT term, std::vector<bool> const& depends) {
    TermS const record = pool_.cref(term);
    if (record.kind == TERM_SUM) {
      std::vector<SummandS> summands = record.summands;
      for (SummandS& summand : summands) summand.term = derivatives_[summand.term];
      return pool_.sum(std::move(summands));
    }
    if (record.kind == TERM_PRODUCT) return deriveProduct(record, depends);
    if (record.op == OP_TOTAL) return deriveSum(record);
    if (record.op == OP_INTEGRAL) return deriveIntegral(record);
    return deriveFunction(term, record, depends);
  }

  TermT number(std::int64_t value) { return pool_.number(value); }
  TermT square(TermT term) { return pool_.power(term, TermPoolC::two); }
  TermT inverse(TermT term) { return pool_.power(term, number(-1)); }
  TermT call(OpE op, TermT argument) { return apply(pool_, op, {argument}); }

  // The sum over the factors, each derived alone.
  TermT deriveProduct(TermS const& record, std::vector<bool> const& depends) {
    std::vector<SummandS> summands;
    for (std::size_t i = 0; i < record.factors.size(); ++i) {
      auto const [base, exponent] = record.factors[i];
      if (!depends[base] && !depends[exponent]) continue;
      std::vector<FactorS> factors = record.factors;
      if (!depends[exponent]) {
        factors[i].exponent = pool_.sum({{exponent, 1}, {TermPoolC::one, -1}});
        factors.push_back({exponent, TermPoolC::one});
        factors.push_back({derivatives_[base], TermPoolC::one});
      } else {
        TermT const steepness = pool_.multiply(derivatives_[exponent], call(OP_LN, base));
        TermT const growth = pool_.product(
            {{exponent, TermPoolC::one}, {derivatives_[base], TermPoolC::one}, {base, number(-1)}});
        factors.push_back({pool_.add(steepness, growth), TermPoolC::one});
      }
      summands.push_back({pool_.product(std::move(factors)), 1});
      if (pool_.refWatch().hasFailed()) return TermPoolC::zero;
    }
    return pool_.sum(std::move(summands));
  }

  TermT deriveSum(TermS const& record) {
    bool const isInBounds =
        dependsOn(pool_, record.arguments[0], variable_) || dependsOn(pool_, record.arguments[1], variable_);
    if (isInBounds) return fail();
    std::vector<TermT> arguments = record.arguments;
    arguments[2] = derivatives_[arguments[2]];
    return arguments[2] == TermPoolC::zero ? TermPoolC::zero : pool_.function(OP_TOTAL, std::move(arguments));
  }

  TermT deriveIntegral(TermS const& record) {
    auto const [lower, upper, body, slot] = std::array<TermT, 4>{record.arguments[0], record.arguments[1],
                                                                 record.arguments[2], record.arguments[3]};
    TermT const atUpper = pool_.multiply(substitute(pool_, body, slot, upper), derivatives_[upper]);
    TermT const atLower = pool_.multiply(substitute(pool_, body, slot, lower), derivatives_[lower]);
    TermT const inside = derivatives_[body];
    TermT const integral =
        inside == TermPoolC::zero ? inside : pool_.function(OP_INTEGRAL, {lower, upper, inside, slot});
    return pool_.sum({{atUpper, 1}, {atLower, -1}, {integral, 1}});
  }

  TermT fail() {
    pool_.refWatch().fail(CAS_CAUSE_NEEDS_ALGEBRA);
    return TermPoolC::zero;
  }

  TermT deriveFunction(TermT term, TermS const& record, std::vector<bool> const& depends) {
    TermT const u = record.arguments.empty() ? TermPoolC::zero : record.arguments[0];
    bool const isLogarithm = record.op == OP_LOG && !depends[record.arguments[1]];
    bool const isRoot = record.op == OP_ROOT && !depends[record.arguments[1]];
    if (record.arguments.size() != 1 && !isLogarithm && !isRoot) return fail();
    TermT const du = derivatives_[u];
    // In degrees, an angle is that part of the angle which the rules are about.
    TermT const unit =
        pool_.getAngle() == CAS_RADIANS ? TermPoolC::one : pool_.scale(pool_.pi(), RationalC(1, 180));
    TermT const inUnits = pool_.multiply(du, unit);
    TermT const fromUnits = pool_.divide(du, unit);
    switch (record.op) {
      case OP_SIN:
        return pool_.multiply(inUnits, call(OP_COS, u));
      case OP_COS:
        return pool_.scale(pool_.multiply(inUnits, call(OP_SIN, u)), -1);
      case OP_TAN:
        return pool_.multiply(inUnits, pool_.add(TermPoolC::one, square(term)));
      case OP_ASIN:
      case OP_ACOS: {
        TermT const rest = pool_.subtract(TermPoolC::one, square(u));
        TermT const slope = pool_.multiply(fromUnits, pool_.power(rest, pool_.number(RationalC(-1, 2))));
        return record.op == OP_ASIN ? slope : pool_.scale(slope, -1);
      }
      case OP_ATAN:
        return pool_.divide(fromUnits, pool_.add(TermPoolC::one, square(u)));
      case OP_SINH:
        return pool_.multiply(du, call(OP_COSH, u));
      case OP_COSH:
        return pool_.multiply(du, call(OP_SINH, u));
      case OP_TANH:
        return pool_.multiply(du, pool_.subtract(TermPoolC::one, square(term)));
      case OP_EXP:
        return pool_.multiply(du, term);
      case OP_LN:
        return pool_.divide(du, u);
      case OP_LOG10:
        return pool_.divide(du, pool_.multiply(u, call(OP_LN, number(10))));
      case OP_LOG:
        return pool_.divide(du, pool_.multiply(u, call(OP_LN, record.arguments[1])));
      case OP_ROOT:
        return pool_.product({{du, TermPoolC::one},
                              {term, TermPoolC::one},
                              {u, number(-1)},
                              {record.arguments[1], number(-1)}});
      case OP_ABS:
        return pool_.divide(pool_.multiply(du, u), term);
      default:
        return fail();
    }
  }

  TermPoolC& pool_;
  TermT const variable_;
  MadeT derivatives_;
};

class ExpanderC {
 public:
  explicit ExpanderC(TermPoolC& pool) : pool_(pool) {}

  TermT run(TermT top) {
    MadeT made;
    for (TermT term : pool_.partsOf(top)) {
      bool const isLeaf = pool_.cref(term).kind < TERM_SUM;
      TermT const rebuilt = isLeaf ? term : rebuild(pool_, term, made);
      made[term] = multiplyOut(rebuilt);
      if (pool_.refWatch().hasFailed()) return TermPoolC::zero;
    }
    return made[top];
  }

 private:
  TermT multiplyOut(TermT term) {
    TermS const record = pool_.cref(term);
    if (record.kind == TERM_SUM && record.summands.size() == 1) {
      return pool_.scale(multiplyOut(record.summands[0].term), record.summands[0].factor);
    }
    if (record.kind != TERM_PRODUCT) return term;
    std::vector<SummandS> result{{TermPoolC::one, 1}};
    std::vector<FactorS> rest;
    for (FactorS const& factor : record.factors) {
      bool const isSum = pool_.cref(factor.base).kind == TERM_SUM && pool_.isInteger(factor.exponent) &&
                         pool_.numberOf(factor.exponent).isSmall();
      std::int64_t const count = isSum ? pool_.numberOf(factor.exponent).toSmall() : 0;
      if (count <= 0) {
        rest.push_back(factor);
        continue;
      }
      std::vector<SummandS> const summands = pool_.cref(factor.base).summands;
      for (std::int64_t i = 0; i < count; ++i) {
        if (!multiply(result, summands)) return TermPoolC::zero;
      }
    }
    if (rest.size() == record.factors.size()) return term;
    TermT const common = pool_.product(std::move(rest));
    for (SummandS& summand : result) {
      summand.term = pool_.multiply(summand.term, common);
      if (pool_.refWatch().hasFailed()) return TermPoolC::zero;
    }
    return pool_.sum(std::move(result));
  }

  bool multiply(std::vector<SummandS>& result, std::vector<SummandS> const& by) {
    constexpr std::size_t most = 200000;
    std::vector<SummandS> product;
    if (result.size() > most / by.size()) return pool_.refWatch().fail(CAS_CAUSE_TOO_LARGE);
    for (SummandS const& left : result) {
      for (SummandS const& right : by) {
        product.push_back({pool_.multiply(left.term, right.term), left.factor * right.factor});
        if (pool_.refWatch().hasFailed()) return false;
      }
    }
    TermT const sum = pool_.sum(std::move(product));
    if (pool_.refWatch().hasFailed()) return false;
    TermS const& record = pool_.cref(sum);
    result = record.kind == TERM_SUM ? record.summands : std::vector<SummandS>{{sum, 1}};
    return true;
  }

  TermPoolC& pool_;
};

}  // namespace

bool dependsOn(TermPoolC const& pool, TermT term, TermT variable) {
  if (!pool.cref(term).hasNames || variable > term) return false;
  std::vector<TermT> const parts = pool.partsOf(term);
  return std::binary_search(parts.begin(), parts.end(), variable);
}

TermT substitute(TermPoolC& pool, TermT term, TermT variable, TermT value) {
  MadeT made;
  std::unordered_map<TermT, bool> changes;
  for (TermT part : pool.partsOf(term)) {
    bool isChanged = part == variable;
    pool.forEachPart(part, [&](TermT inner) { isChanged |= changes[inner]; });
    changes[part] = isChanged;
    made[part] = part == variable ? value : isChanged ? rebuild(pool, part, made) : part;
    if (pool.refWatch().hasFailed()) return TermPoolC::zero;
  }
  return made[term];
}

TermT differentiate(TermPoolC& pool, TermT term, TermT variable) {
  return DerivativeC(pool, variable).run(term);
}

TermT expand(TermPoolC& pool, TermT term) { return ExpanderC(pool).run(term); }

bool findCoefficients(TermPoolC& pool, TermT expanded, TermT variable, std::size_t most,
                      std::vector<TermT>& coefficients) {
  TermS const record = pool.cref(expanded);
  std::vector<SummandS> const summands =
      record.kind == TERM_SUM ? record.summands : std::vector<SummandS>{{expanded, 1}};
  std::vector<std::vector<SummandS>> sums(1);
  for (SummandS const& summand : summands) {
    TermT const term = summand.term;
    std::vector<FactorS> factors{{term, TermPoolC::one}};
    if (pool.cref(term).kind == TERM_PRODUCT) factors = pool.cref(term).factors;
    std::size_t degree = 0;
    auto const own = std::find_if(factors.begin(), factors.end(),
                                  [&](FactorS const& factor) { return factor.base == variable; });
    if (own != factors.end()) {
      if (!pool.isInteger(own->exponent)) return false;
      RationalC const exponent = pool.numberOf(own->exponent);
      if (exponent.sign() < 0 || RationalC::compare(exponent, static_cast<std::int64_t>(most)) > 0)
        return false;
      degree = static_cast<std::size_t>(exponent.toSmall());
      factors.erase(own);
    }
    TermT const rest = pool.product(std::move(factors));
    if (pool.refWatch().hasFailed() || dependsOn(pool, rest, variable)) return false;
    if (sums.size() <= degree) sums.resize(degree + 1);
    sums[degree].push_back({rest, summand.factor});
  }
  coefficients.clear();
  for (auto& sum : sums) coefficients.push_back(pool.sum(std::move(sum)));
  while (coefficients.size() > 1 && coefficients.back() == TermPoolC::zero) coefficients.pop_back();
  return !pool.refWatch().hasFailed();
}

}  // namespace zolt::engine_basic::detail
