#include "zolt/engines/basic/detail/term_writer.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "zolt/algexpr/make_node.h"
#include "zolt/algexpr/make_operation.h"
#include "zolt/common/signs.h"

namespace zolt::engine_basic::detail {

namespace {

using NodeP = PointerTC<NodeABC>;

class WriterC {
 public:
  WriterC(TermPoolC& pool, FractionsE fractions, std::vector<wstring> const& slots)
      : pool_(pool), fractions_(fractions), slots_(slots) {}

  NodeP run(TermT top) {
    constexpr double largest = 2e6;
    nameSlots(top);
    for (TermT term : pool_.partsOf(top)) {
      double size = 1;
      pool_.forEachPart(term, [&](TermT part) { size += sizes_[part]; });
      sizes_[term] = size;
      if (size > largest) pool_.refWatch().fail(CAS_CAUSE_TOO_LARGE);
      if (!pool_.refWatch().goOn(4)) return nullptr;
      written_[term] = write(term);
    }
    return written_[top];
  }

 private:
  // The variable of a loop must not have the name of anything else.
  void nameSlots(TermT top) {
    std::set<wstring> used;
    std::vector<TermT> const parts = pool_.partsOf(top);
    for (TermT term : parts) {
      if (pool_.cref(term).kind == TERM_NAME) used.insert(pool_.crefName(term));
    }
    for (TermT term : parts) {
      if (pool_.cref(term).kind != TERM_SLOT) continue;
      std::uint32_t const slot = pool_.cref(term).index;
      wstring name = slots_[slot];
      for (std::int64_t i = 1; !used.insert(name).second; ++i)
        name = slots_[slot] + BigIntegerC(i).toDigits();
      slotNames_[slot] = std::move(name);
    }
  }

  NodeP write(TermT term) {
    TermS const& record = pool_.cref(term);
    switch (record.kind) {
      case TERM_NUMBER:
        return writeNumber(record.number);
      case TERM_NAME:
        return makeNamed(pool_.crefName(term));
      case TERM_SLOT:
        return makeNamed(slotNames_[record.index]);
      case TERM_SUM:
        return writeSum(record);
      case TERM_PRODUCT:
        return writeProduct(term, 1);
      case TERM_FUNCTION:
        return writeFunction(record);
    }
    return nullptr;
  }

  // ---- Numbers
  // ---------------------------------------------------------------------------------------------

  static NodeP writeInteger(BigIntegerC const& value) {
    wstring const digits = value.toDigits();
    return makeNumber(value.sign() < 0 ? math::common::minus_sign + digits : digits);
  }
  bool isDecimal(RationalC const& number) const {
    constexpr unsigned most_digits = 30;
    if (fractions_ == FRACTIONS_AS_QUOTIENTS || number.isInteger()) return false;
    bool isExact = false;
    static_cast<void>(number.toDecimal(most_digits, &isExact));
    return isExact;
  }
  NodeP writeNumber(RationalC const& number) const {
    if (number.isInteger()) return writeInteger(number.crefNumerator());
    if (isDecimal(number)) {
      bool isExact = false;
      return makeNumber(number.toDecimal(30, &isExact));
    }
    NodeP const fraction = makeOperation(
        u"/", {writeInteger(number.crefNumerator().abs()), writeInteger(number.crefDenominator())});
    return number.sign() < 0 ? makeOperation(u"_neg", {fraction}) : fraction;
  }

  // ---- Sums
  // ------------------------------------------------------------------------------------------------

  // Higher degrees come first, then what was there first; the constant comes last. A sum begins with a sign
  // only where all of it is negative.
  NodeP writeSum(TermS const& record) {
    std::vector<SummandS> summands = record.summands;
    std::stable_sort(summands.begin(), summands.end(), [&](SummandS const& a, SummandS const& b) {
      if ((a.term == TermPoolC::one) != (b.term == TermPoolC::one)) return b.term == TermPoolC::one;
      return pool_.cref(a.term).degree > pool_.cref(b.term).degree;
    });
    auto const positive = std::find_if(summands.begin(), summands.end(),
                                       [](SummandS const& summand) { return summand.factor.sign() > 0; });
    if (positive != summands.end()) std::rotate(summands.begin(), positive, positive + 1);
    NodeP sum;
    for (SummandS const& summand : summands) {
      bool const isNegative = summand.factor.sign() < 0;
      if (!sum) {
        sum = summand.term == TermPoolC::one ? writeNumber(summand.factor)
                                             : writeProduct(summand.term, summand.factor);
        continue;
      }
      RationalC const magnitude = summand.factor.abs();
      NodeP const term =
          summand.term == TermPoolC::one ? writeNumber(magnitude) : writeProduct(summand.term, magnitude);
      sum = makeOperation(isNegative ? u"-" : u"+", {sum, term});
    }
    return sum;
  }

  // ---- Products
  // --------------------------------------------------------------------------------------------

  struct PartsS {
    std::vector<NodeP> above;
    std::vector<NodeP> below;
  };

  static NodeP chain(std::vector<NodeP> factors) {
    if (factors.empty()) return makeNumber(u"1");
    return makeOperation(u"*", std::move(factors));
  }

  /// `factor` times the term, which is no sum.
  NodeP writeProduct(TermT term, RationalC const& factor) {
    std::vector<FactorS> factors{{term, TermPoolC::one}};
    if (pool_.cref(term).kind == TERM_PRODUCT) factors = pool_.cref(term).factors;
    // Numbers, then constants, then what has names.
    std::stable_sort(factors.begin(), factors.end(),
                     [&](FactorS const& a, FactorS const& b) { return rankOf(a.base) < rankOf(b.base); });
    PartsS parts;
    RationalC const magnitude = factor.abs();
    if (isDecimal(magnitude)) {
      parts.above.push_back(writeNumber(magnitude));
    } else {
      if (!magnitude.crefNumerator().isOne()) parts.above.push_back(writeInteger(magnitude.crefNumerator()));
      if (!magnitude.crefDenominator().isOne()) {
        parts.below.push_back(writeInteger(magnitude.crefDenominator()));
      }
    }
    writeRadicals(factors, parts);
    for (FactorS const& part : factors) {
      if (isRadical(part)) continue;
      bool const isBelow = pool_.isNumber(part.exponent) && pool_.numberOf(part.exponent).sign() < 0;
      (isBelow ? parts.below : parts.above).push_back(writePower(part));
    }
    bool const isNegative = factor.sign() < 0;
    if (!parts.below.empty()) {
      NodeP const fraction =
          makeOperation(u"/", {chain(std::move(parts.above)), chain(std::move(parts.below))});
      return isNegative ? makeOperation(u"_neg", {fraction}) : fraction;
    }
    if (isNegative && !magnitude.isOne()) {
      parts.above[0] = writeNumber(-magnitude);
    } else if (isNegative) {
      parts.above[0] = makeOperation(u"_neg", {parts.above[0]});
    }
    return chain(std::move(parts.above));
  }

  int rankOf(TermT base) const {
    if (pool_.isNumber(base)) return 0;
    return pool_.cref(base).hasNames ? 2 : 1;
  }

  bool isRadical(FactorS const& factor) const {
    return pool_.isInteger(factor.base) && pool_.isNumber(factor.exponent);
  }

  // Roots of numbers with the same index are one root.
  void writeRadicals(std::vector<FactorS> const& factors, PartsS& parts) {
    std::map<std::int64_t, BigIntegerC> radicands;
    for (FactorS const& factor : factors) {
      if (!isRadical(factor)) continue;
      RationalC const exponent = pool_.numberOf(factor.exponent);
      BigIntegerC power;
      bool const isShort =
          exponent.crefDenominator().isSmall() && exponent.crefNumerator().isSmall() &&
          BigIntegerC::power(pool_.numberOf(factor.base).crefNumerator(),
                             static_cast<std::uint64_t>(exponent.crefNumerator().toSmall()), power);
      if (!isShort) {
        pool_.refWatch().fail(CAS_CAUSE_TOO_LARGE);
        return;
      }
      auto const [found, isNew] = radicands.emplace(exponent.crefDenominator().toSmall(), power);
      if (!isNew) found->second = found->second * power;
    }
    for (auto const& radicand : radicands) {
      NodeP const inside = writeInteger(radicand.second);
      if (radicand.first == 2) {
        parts.above.push_back(makeOperation(u"sqrt", {inside}));
      } else {
        parts.above.push_back(makeOperation(u"nthroot", {inside, writeInteger(radicand.first)}));
      }
    }
  }

  // A base with the magnitude of its exponent when that is a number.
  NodeP writePower(FactorS const& factor) {
    NodeP const base = written_[factor.base];
    if (!pool_.isNumber(factor.exponent)) return makeOperation(u"^", {base, written_[factor.exponent]});
    RationalC const exponent = pool_.numberOf(factor.exponent).abs();
    if (exponent.isOne()) return base;
    if (exponent == RationalC(1, 2)) return makeOperation(u"sqrt", {base});
    return makeOperation(u"^", {base, writeNumber(exponent)});
  }

  NodeP writeFunction(TermS const& record) {
    if (record.op == OP_PI) return makeNamed(u"_PI");
    if (record.op == OP_INFINITY) return makeNamed({math::common::infinity_sign});
    if (record.op == OP_TRUE) return makeNamed(u"true");
    if (record.op == OP_FALSE) return makeNamed(u"false");
    FunctionS const* const function = findFunction(record.op);
    if (!function) return nullptr;
    std::vector<NodeP> arguments;
    for (TermT argument : record.arguments) arguments.push_back(written_[argument]);
    // The variable of a sum comes first.
    if (record.op == OP_TOTAL) arguments = {arguments[3], arguments[0], arguments[1], arguments[2]};
    return makeOperation(function->name, std::move(arguments));
  }

  TermPoolC& pool_;
  FractionsE const fractions_;
  std::vector<wstring> const& slots_;
  std::unordered_map<TermT, NodeP> written_;
  std::unordered_map<TermT, double> sizes_;
  std::map<std::uint32_t, wstring> slotNames_;
};

}  // namespace

PointerTC<NodeABC> writeTerm(TermPoolC& pool, TermT term, FractionsE fractions,
                             std::vector<wstring> const& slots) {
  if (pool.refWatch().hasFailed()) return nullptr;
  NodeP const node = WriterC(pool, fractions, slots).run(term);
  return pool.refWatch().hasFailed() ? nullptr : node;
}

}  // namespace zolt::engine_basic::detail
