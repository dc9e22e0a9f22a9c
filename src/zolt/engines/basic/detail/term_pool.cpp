#include "zolt/engines/basic/detail/term_pool.h"

#include <algorithm>
#include <utility>

namespace zolt::engine_basic::detail {

namespace {

constexpr TermT none = ~TermT{0};

std::size_t mix(std::size_t hash, std::size_t value) { return (hash ^ value) * 16777619U + (hash >> 7); }

}  // namespace

TermPoolC::TermPoolC(WatchC& watch, CASAngleE angle) : watch_(watch), angle_(angle) {
  for (std::int64_t value : {0, 1, 2}) number(value);
}

void TermPoolC::release(std::size_t size) {
  while (terms_.size() > size) {
    std::size_t const hash = hashOf(terms_.back());
    if (older_.back() == none) {
      newest_.erase(hash);
    } else {
      newest_[hash] = older_.back();
    }
    older_.pop_back();
    terms_.pop_back();
  }
}

std::size_t TermPoolC::hashOf(TermS const& term) {
  std::size_t hash = mix(term.kind, term.op);
  hash = mix(hash, term.index);
  if (term.kind == TERM_NUMBER) return mix(hash, term.number.hash());
  for (SummandS const& summand : term.summands) hash = mix(mix(hash, summand.term), summand.factor.hash());
  for (FactorS const& factor : term.factors) hash = mix(mix(hash, factor.base), factor.exponent);
  for (TermT argument : term.arguments) hash = mix(hash, argument);
  return hash;
}

bool TermPoolC::equals(TermS const& a, TermS const& b) const {
  auto const sameSummands = [](SummandS const& x, SummandS const& y) {
    return x.term == y.term && x.factor == y.factor;
  };
  auto const sameFactors = [](FactorS const& x, FactorS const& y) {
    return x.base == y.base && x.exponent == y.exponent;
  };
  return a.kind == b.kind && a.op == b.op && a.index == b.index && a.number == b.number &&
         a.arguments == b.arguments &&
         std::equal(a.summands.begin(), a.summands.end(), b.summands.begin(), b.summands.end(),
                    sameSummands) &&
         std::equal(a.factors.begin(), a.factors.end(), b.factors.begin(), b.factors.end(), sameFactors);
}

TermT TermPoolC::intern(TermS term) {
  if (terms_.size() > two) {
    std::size_t const cost = 1 + term.summands.size() + term.factors.size() + term.arguments.size();
    if (!watch_.goOn(static_cast<unsigned>(cost))) return zero;
  }
  std::size_t const hash = hashOf(term);
  auto const found = newest_.find(hash);
  for (TermT old = found == newest_.end() ? none : found->second; old != none; old = older_[old]) {
    if (equals(terms_[old], term)) return old;
  }
  if (terms_.size() == max_terms) {
    watch_.fail(CAS_CAUSE_TOO_LARGE);
    return zero;
  }
  TermT const id = static_cast<TermT>(terms_.size());
  older_.push_back(found == newest_.end() ? none : found->second);
  newest_[hash] = id;
  terms_.push_back(std::move(term));
  TermS& made = terms_.back();
  made.hasNames = made.kind == TERM_NAME || made.kind == TERM_SLOT;
  forEachPart(id, [&](TermT part) { made.hasNames |= terms_[part].hasNames; });
  if (made.hasNames && made.kind != TERM_FUNCTION) made.degree = 1;
  if (made.kind == TERM_SUM) {
    made.degree = 0;
    for (SummandS const& summand : made.summands) {
      made.degree = std::max(made.degree, terms_[summand.term].degree);
    }
  } else if (made.kind == TERM_PRODUCT) {
    made.degree = 0;
    for (FactorS const& factor : made.factors) {
      bool const isPlain = isNumber(factor.exponent);
      made.degree += terms_[factor.base].degree * (isPlain ? terms_[factor.exponent].number.toDouble() : 1);
    }
  } else if (made.kind == TERM_FUNCTION && made.hasNames) {
    made.degree = 0.5;
  }
  return id;
}

TermT TermPoolC::number(RationalC value) {
  TermS term;
  term.number = std::move(value);
  return intern(std::move(term));
}

TermT TermPoolC::name(wstring const& name) {
  auto const [found, isNew] = nameIndex_.emplace(name, static_cast<std::uint32_t>(names_.size()));
  if (isNew) names_.push_back(name);
  TermS term;
  term.kind = TERM_NAME;
  term.index = found->second;
  return intern(std::move(term));
}

TermT TermPoolC::slot(std::uint32_t index) {
  TermS term;
  term.kind = TERM_SLOT;
  term.index = index;
  return intern(std::move(term));
}

TermT TermPoolC::function(OpE op, std::vector<TermT> arguments) {
  TermS term;
  term.kind = TERM_FUNCTION;
  term.op = op;
  term.arguments = std::move(arguments);
  return intern(std::move(term));
}

TermT TermPoolC::sum(std::vector<SummandS> summands) {
  if (watch_.hasFailed()) return zero;
  std::vector<SummandS> flat;
  RationalC constant = 0;
  for (SummandS const& summand : summands) {
    TermS const& term = terms_[summand.term];
    if (term.kind == TERM_NUMBER) {
      constant = constant + term.number * summand.factor;
    } else if (term.kind == TERM_SUM) {
      for (SummandS const& inner : term.summands) {
        if (inner.term == one) {
          constant = constant + inner.factor * summand.factor;
        } else {
          flat.push_back({inner.term, inner.factor * summand.factor});
        }
      }
    } else {
      flat.push_back(summand);
    }
    if (!watch_.goOn()) return zero;
  }
  std::stable_sort(flat.begin(), flat.end(),
                   [](SummandS const& a, SummandS const& b) { return a.term < b.term; });
  TermS merged;
  merged.kind = TERM_SUM;
  if (!constant.isZero()) merged.summands.push_back({one, std::move(constant)});
  for (std::size_t i = 0; i < flat.size();) {
    RationalC factor = std::move(flat[i].factor);
    std::size_t next = i + 1;
    for (; next < flat.size() && flat[next].term == flat[i].term; ++next) factor = factor + flat[next].factor;
    if (!factor.isZero()) merged.summands.push_back({flat[i].term, std::move(factor)});
    i = next;
  }
  for (SummandS const& summand : merged.summands) {
    if (summand.factor.isTooLong()) watch_.fail(CAS_CAUSE_TOO_LARGE);
  }
  if (watch_.hasFailed() || merged.summands.empty()) return zero;
  if (merged.summands.size() == 1) {
    SummandS const& only = merged.summands[0];
    if (only.term == one) return number(only.factor);
    if (only.factor.isOne()) return only.term;
  }
  return intern(std::move(merged));
}

std::vector<TermT> TermPoolC::partsOf(TermT top) const {
  std::vector<bool> isPart(top + std::size_t{1});
  isPart[top] = true;
  std::vector<TermT> parts;
  for (TermT term = top + 1; term-- > 0;) {
    if (!isPart[term]) continue;
    parts.push_back(term);
    forEachPart(term, [&](TermT part) { isPart[part] = true; });
  }
  std::reverse(parts.begin(), parts.end());
  return parts;
}

// ---- Products
// ----------------------------------------------------------------------------------------------

/// Collects the factors of one product: a number, and powers by their bases.
class TermPoolC::MultiplierC {
 public:
  MultiplierC(TermPoolC& pool, RationalC factor) : pool_(pool), factor_(std::move(factor)) {}

  TermT run(std::vector<FactorS> factors) {
    waiting_ = std::move(factors);
    std::reverse(waiting_.begin(), waiting_.end());
    do {
      while (!waiting_.empty()) {
        FactorS const next = waiting_.back();
        waiting_.pop_back();
        if (!pool_.watch_.goOn() || !take(next)) return zero;
      }
      if (!merge()) return zero;
    } while (!waiting_.empty());
    return finish();
  }

 private:
  bool fail(CASCauseE cause) { return pool_.watch_.fail(cause); }

  bool raiseNumber(RationalC const& base, std::int64_t exponent) {
    if (base.isZero() && exponent < 0) return fail(CAS_CAUSE_DIVISION_BY_ZERO);
    RationalC power;
    if (!base.power(exponent, power)) return fail(CAS_CAUSE_TOO_LARGE);
    factor_ = factor_ * power;
    return !factor_.isTooLong() || fail(CAS_CAUSE_TOO_LARGE);
  }

  bool take(FactorS next) {
    TermS const& base = pool_.cref(next.base);
    bool const isNumeric = pool_.isNumber(next.exponent);
    RationalC const exponent = pool_.numberOf(next.exponent);
    if (isNumeric && exponent.isZero()) {
      return next.base != zero || fail(CAS_CAUSE_UNDEFINED);
    }
    bool const isWhole = isNumeric && exponent.isSmall();
    switch (base.kind) {
      case TERM_NUMBER:
        if (base.number.isOne()) return true;
        if (isWhole) return raiseNumber(base.number, exponent.toSmall());
        if (isNumeric && exponent.isInteger()) return fail(CAS_CAUSE_TOO_LARGE);
        return isNumeric ? takeRadical(base.number, exponent) : keep(next);
      case TERM_PRODUCT:
        if (!isWhole && !isPositive(base)) return keep(next);
        if (!isNumeric) return keep(next);
        for (FactorS const& inner : std::vector<FactorS>(base.factors)) {
          TermT const product = pool_.multiply(inner.exponent, next.exponent);
          if (pool_.watch_.hasFailed()) return false;
          waiting_.push_back({inner.base, product});
        }
        return true;
      case TERM_SUM:
        return takeSum(next, isNumeric, isWhole, exponent);
      case TERM_FUNCTION:
        if (base.op == OP_EXP && isNumeric) {
          exponents_.push_back({base.arguments[0], exponent});
          return true;
        }
        return keep(next);
      default:
        return keep(next);
    }
  }

  // Takes the factor that all summands share out of a sum; where the exponent is not whole, it must be
  // positive.
  bool takeSum(FactorS next, bool isNumeric, bool isWhole, RationalC const& exponent) {
    std::vector<SummandS> summands = pool_.cref(next.base).summands;
    RationalC content = contentOf(summands);
    if (!isWhole) content = content.abs();
    if (!isNumeric || content.isOne()) return keep(next);
    for (SummandS& summand : summands) summand.factor = summand.factor / content;
    TermT const rest = pool_.sum(std::move(summands));
    TermT const factor = pool_.number(content);
    if (pool_.watch_.hasFailed()) return false;
    if (isWhole && !raiseNumber(content, exponent.toSmall())) return false;
    if (!isWhole) waiting_.push_back({factor, next.exponent});
    waiting_.push_back({rest, next.exponent});
    return true;
  }

  static RationalC contentOf(std::vector<SummandS> const& summands) {
    BigIntegerC top = summands[0].factor.crefNumerator().abs();
    BigIntegerC bottom = summands[0].factor.crefDenominator();
    for (SummandS const& summand : summands) {
      top = BigIntegerC::gcd(top, summand.factor.crefNumerator());
      BigIntegerC const& next = summand.factor.crefDenominator();
      if (next.isOne()) continue;
      BigIntegerC quotient, rest;
      BigIntegerC::divide(next, BigIntegerC::gcd(bottom, next), quotient, rest);
      bottom = bottom * quotient;
    }
    // The constant comes first and says nothing about the sign.
    SummandS const& leading = summands[summands.size() > 1 && summands[0].term == one ? 1 : 0];
    RationalC const content(std::move(top), std::move(bottom));
    return leading.factor.sign() < 0 ? -content : content;
  }

  // Whether all bases are numbers, which are positive then.
  bool isPositive(TermS const& product) const {
    return std::all_of(product.factors.begin(), product.factors.end(),
                       [&](FactorS const& factor) { return pool_.isNumber(factor.base); });
  }

  bool takeRadical(RationalC const base, RationalC const& exponent) {
    if (base.sign() < 0) return fail(CAS_CAUSE_NOT_REAL);
    if (base.isZero()) {
      if (exponent.sign() < 0) return fail(CAS_CAUSE_DIVISION_BY_ZERO);
      factor_ = 0;
      return true;
    }
    return takePrimes(base.crefNumerator(), exponent) && takePrimes(base.crefDenominator(), -exponent);
  }

  // Powers of small primes, and of what is left, with exponents from 0 to 1.
  bool takePrimes(BigIntegerC rest, RationalC const& exponent) {
    constexpr std::uint32_t last_prime = 2000;
    for (std::uint32_t prime = 2; prime < last_prime && !rest.isOne(); prime += prime == 2 ? 1 : 2) {
      std::int64_t count = 0;
      while (rest.remainderBy(prime) == 0) {
        BigIntegerC quotient, remainder;
        BigIntegerC::divide(rest, prime, quotient, remainder);
        rest = std::move(quotient);
        ++count;
        if (!pool_.watch_.goOn()) return false;
      }
      if (count > 0 && !keepRadical(BigIntegerC(prime), exponent * RationalC(count))) return false;
    }
    if (rest.isOne()) return true;
    constexpr std::uint32_t roots[] = {2, 3, 5, 7};
    std::int64_t count = 1;
    for (std::uint32_t const n : roots) {
      for (;;) {
        BigIntegerC const root = rest.root(n);
        BigIntegerC power;
        if (!BigIntegerC::power(root, n, power) || power != rest) break;
        rest = root;
        count *= n;
      }
    }
    return keepRadical(std::move(rest), exponent * RationalC(count));
  }
  bool keepRadical(BigIntegerC base, RationalC const& exponent) {
    RationalC const whole = exponent.floor();
    if (!whole.isSmall()) return fail(CAS_CAUSE_TOO_LARGE);
    if (!raiseNumber(RationalC(base), whole.toSmall())) return false;
    if (whole == exponent) return true;
    return keep({pool_.number(std::move(base)), pool_.number(exponent - whole)});
  }

  bool keep(FactorS factor) {
    kept_.push_back(factor);
    return !pool_.watch_.hasFailed();
  }

  // Adds the exponents of equal bases. What then can be taken apart waits again.
  bool merge() {
    std::stable_sort(kept_.begin(), kept_.end(),
                     [](FactorS const& a, FactorS const& b) { return a.base < b.base; });
    std::vector<FactorS> merged;
    for (std::size_t i = 0; i < kept_.size();) {
      std::size_t next = i + 1;
      std::vector<SummandS> exponents{{kept_[i].exponent, 1}};
      for (; next < kept_.size() && kept_[next].base == kept_[i].base; ++next) {
        exponents.push_back({kept_[next].exponent, 1});
      }
      FactorS const factor{kept_[i].base, next == i + 1 ? kept_[i].exponent : pool_.sum(exponents)};
      if (pool_.watch_.hasFailed()) return false;
      bool const hasChanged = next > i + 1;
      (hasChanged ? waiting_ : merged).push_back(factor);
      i = next;
    }
    kept_ = std::move(merged);
    return true;
  }

  TermT finish() {
    if (!exponents_.empty()) {
      TermT const exponent = pool_.sum(std::move(exponents_));
      if (exponent != zero) {
        TermT const power = pool_.function(OP_EXP, {exponent});
        if (!keep({power, one})) return zero;
        std::sort(kept_.begin(), kept_.end(),
                  [](FactorS const& a, FactorS const& b) { return a.base < b.base; });
      }
    }
    if (pool_.watch_.hasFailed()) return zero;
    if (factor_.isZero() || kept_.empty()) return pool_.number(std::move(factor_));
    TermT term = kept_[0].base;
    if (kept_.size() > 1 || kept_[0].exponent != one) {
      TermS product;
      product.kind = TERM_PRODUCT;
      product.factors = std::move(kept_);
      term = pool_.intern(std::move(product));
    }
    return factor_.isOne() ? term : pool_.scale(term, factor_);
  }

  TermPoolC& pool_;
  RationalC factor_;
  std::vector<FactorS> waiting_;
  std::vector<FactorS> kept_;
  std::vector<SummandS> exponents_;  // of the exponential function
};

TermT TermPoolC::product(std::vector<FactorS> factors, RationalC factor) {
  if (watch_.hasFailed()) return zero;
  return MultiplierC(*this, std::move(factor)).run(std::move(factors));
}

}  // namespace zolt::engine_basic::detail
