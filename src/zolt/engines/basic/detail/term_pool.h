#pragma once

#include <unordered_map>
#include <vector>

#include "zolt/engines/basic/detail/plan.h"

namespace zolt::engine_basic::detail {

/// A term by its number in its pool. The numbers of its parts are lower, so whatever goes over terms is a
/// loop over numbers, however deep they nest.
using TermT = std::uint32_t;

enum TermKindE : std::uint8_t {
  TERM_NUMBER,
  TERM_NAME,
  TERM_SLOT,     ///< the variable of a loop
  TERM_SUM,      ///< of multiples of terms that are no sums, by their numbers; 1 is that of the constant
  TERM_PRODUCT,  ///< of powers of terms, by their numbers; its factor is in the sum around it
  TERM_FUNCTION  ///< an `OpE` of arguments; of a loop: bounds, body, slot
};

struct SummandS {
  TermT term = 0;
  RationalC factor = 1;
};
struct FactorS {
  TermT base = 0;
  TermT exponent = 0;
};

struct TermS {
  TermKindE kind = TERM_NUMBER;
  OpE op = OP_NUMBER;
  bool hasNames = false;    ///< or slots
  std::uint32_t index = 0;  ///< of a name, or the slot
  double degree = 0;        ///< for the order in which sums are written
  RationalC number = 0;
  std::vector<SummandS> summands;
  std::vector<FactorS> factors;
  std::vector<TermT> arguments;
};

/// Terms in a normal form: two that are equal by collecting and cancelling are the same term. Operations
/// answer with term 0 when the watch has a fault.
class TermPoolC {
 public:
  static constexpr std::size_t max_terms = 2000000;
  static constexpr TermT zero = 0;
  static constexpr TermT one = 1;
  static constexpr TermT two = 2;

  TermPoolC(WatchC& watch, CASAngleE angle);

  WatchC& refWatch() { return watch_; }
  CASAngleE getAngle() const { return angle_; }
  TermS const& cref(TermT term) const { return terms_[term]; }
  wstring const& crefName(TermT term) const { return names_[terms_[term].index]; }
  std::size_t size() const { return terms_.size(); }
  /// Forgets all terms from this number on, which no term before it uses.
  void release(std::size_t size);

  bool isNumber(TermT term) const { return terms_[term].kind == TERM_NUMBER; }
  bool isFunction(TermT term, OpE op) const {
    return terms_[term].kind == TERM_FUNCTION && terms_[term].op == op;
  }
  bool isInteger(TermT term) const { return isNumber(term) && terms_[term].number.isInteger(); }
  RationalC const& numberOf(TermT term) const { return terms_[term].number; }

  TermT number(RationalC value);
  TermT name(wstring const& name);
  TermT slot(std::uint32_t index);
  TermT pi() { return function(OP_PI, {}); }
  /// The function as it is; `apply` in term_functions.h evaluates it.
  TermT function(OpE op, std::vector<TermT> arguments);

  TermT sum(std::vector<SummandS> summands);
  TermT product(std::vector<FactorS> factors, RationalC factor = 1);
  TermT add(TermT a, TermT b) { return sum({{a, 1}, {b, 1}}); }
  TermT subtract(TermT a, TermT b) { return sum({{a, 1}, {b, -1}}); }
  TermT scale(TermT a, RationalC const& factor) { return sum({{a, factor}}); }
  TermT multiply(TermT a, TermT b) { return product({{a, one}, {b, one}}); }
  TermT divide(TermT a, TermT b) { return product({{a, one}, {b, number(-1)}}); }
  TermT power(TermT base, TermT exponent) { return product({{base, exponent}}); }

  /// The parts of a term that are terms.
  template <class VisitT>
  void forEachPart(TermT term, VisitT const& visit) const {
    TermS const& record = terms_[term];
    for (SummandS const& summand : record.summands) visit(summand.term);
    for (FactorS const& factor : record.factors) {
      visit(factor.base);
      visit(factor.exponent);
    }
    for (TermT argument : record.arguments) visit(argument);
  }
  /// The terms that `top` is made of, itself included, each after its parts.
  std::vector<TermT> partsOf(TermT top) const;

 private:
  class MultiplierC;

  TermT intern(TermS term);
  bool equals(TermS const& a, TermS const& b) const;
  static std::size_t hashOf(TermS const& term);

  WatchC& watch_;
  CASAngleE angle_;
  std::vector<TermS> terms_;
  std::vector<wstring> names_;
  std::unordered_map<wstring, std::uint32_t> nameIndex_;
  std::unordered_map<std::size_t, TermT> newest_;  // by hash; the older ones of that hash follow
  std::vector<TermT> older_;
};

}  // namespace zolt::engine_basic::detail
