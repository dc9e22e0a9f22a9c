#pragma once

#include <atomic>
#include <chrono>
#include <map>
#include <utility>
#include <vector>

#include "zolt/algexpr/algebraic_expression.h"

namespace zolt::math::algexpr {

/// A name that stands for an expression, or a function by its parameters: `a := 2`, `f(x) := x^2`.
struct CASDefinitionS {
  wstring name;
  std::vector<wstring> parameters;  ///< empty: `name` is a variable
  PointerTC<NodeABC> value;
};

/// Definitions by name. Never changes once others hold it, so requests on several threads share one.
class CASDefinitionsC : public oss::RefCountedBC {
 public:
  CASDefinitionsC() = default;
  explicit CASDefinitionsC(std::map<wstring, CASDefinitionS> all) : all_(std::move(all)) {}

  /// A copy in which the name of `added` has that definition, and no other.
  [[nodiscard]] PointerTC<CASDefinitionsC> with(CASDefinitionS added) const;
  /// A copy in which the name has none.
  [[nodiscard]] PointerTC<CASDefinitionsC> without(wstring const& name) const;
  /// Null when the name has none; alive as long as this object.
  CASDefinitionS const* find(wstring const& name) const;
  std::map<wstring, CASDefinitionS> const& crefAll() const { return all_; }

 private:
  std::map<wstring, CASDefinitionS> all_;
};

/// Ends a computation from another thread.
class CASStopC : public oss::RefCountedBC {
 public:
  void stop() { stopped_.store(true, std::memory_order_relaxed); }
  bool isStopped() const { return stopped_.load(std::memory_order_relaxed); }

 private:
  std::atomic<bool> stopped_{false};
};

/// What a number without a unit is as an angle, and what functions that answer with an angle answer in.
enum CASAngleE { CAS_RADIANS, CAS_DEGREES };

/// What the numbers of a result are.
enum CASNumbersE { CAS_EXACT_NUMBERS, CAS_ROUNDED_NUMBERS };

/// All that an engine needs to know, as a value.
struct CASRequestS {
  CASOperationE operation = CAS_EVALUATE;
  /// An equation to be solved may be an expression, which is then to be 0. `:=` and `:>` define what they
  /// name, whatever the operation; the operation is done on the other side.
  PointerTC<AlgebraicExpressionC> expression;
  wstring variable;                        ///< of solving, derivatives, integrals and substitution
  PointerTC<AlgebraicExpressionC> value;   ///< what is substituted
  PointerTC<CASDefinitionsC> definitions;  ///< null: none
  CASAngleE angle = CAS_RADIANS;
  unsigned digits = 15;  ///< significant ones of an approximate value
  std::chrono::milliseconds deadline{2000};
  /// Rounded ones have `digits`. The solutions of an equation may be known only so.
  CASNumbersE numbers = CAS_EXACT_NUMBERS;
};

enum CASOutcomeE {
  CAS_VALUE,
  CAS_UNEVALUATED,  ///< perhaps there is a value, which this engine does not find
  CAS_ERROR         ///< there is no value
};

/// Why there is no value.
enum CASCauseE {
  CAS_CAUSE_NONE,
  // unevaluated:
  CAS_CAUSE_NEEDS_ALGEBRA,  ///< an engine with more algebra may know
  CAS_CAUSE_NOT_FOUND,      ///< the algebra system does not know
  CAS_CAUSE_ONLY_ROUNDED,   ///< there are solutions, which only rounded numbers can tell
  CAS_CAUSE_NO_REAL_SOLUTION,
  CAS_CAUSE_NO_FUNCTION,  ///< `subject` is a function that nothing defines
  CAS_CAUSE_NOT_REAL,     ///< the value is no real number, or is known to exist only as a complex one
  CAS_CAUSE_NO_VALUE,     ///< a numeric value was asked for, and `subject` is a name without one
  CAS_CAUSE_NOT_CERTAIN,  ///< rounding leaves no digit, or no truth value, that is certain
  CAS_CAUSE_TOO_LARGE,    ///< numbers, terms or steps beyond the engine's limits
  CAS_CAUSE_DEADLINE,
  CAS_CAUSE_STOPPED,
  CAS_CAUSE_ENGINE_LOST,  ///< the engine's process ended, or could not be started
  // errors:
  CAS_CAUSE_DIVISION_BY_ZERO,
  CAS_CAUSE_UNDEFINED,       ///< outside of what a function is defined for: ln(0), a tangent at its pole
  CAS_CAUSE_WRONG_ARGUMENT,  ///< the factorial of 1/2, "and" of numbers, a bound variable that is no name
  CAS_CAUSE_CIRCULAR         ///< `subject` is defined by itself
};

/// The answer to a request, as a value.
struct CASResultS {
  static constexpr unsigned long no_part = ~0UL;
  static constexpr unsigned all_digits = ~0U;

  CASOutcomeE outcome = CAS_UNEVALUATED;
  CASCauseE cause = CAS_CAUSE_NEEDS_ALGEBRA;
  PointerTC<AlgebraicExpressionC> value;  ///< null unless the outcome is `CAS_VALUE`
  /// How many significant digits of an approximate value are certain; `all_digits`: the value is exact.
  unsigned certainDigits = all_digits;
  wstring subject;  ///< the name that the cause is about; perhaps empty
  /// The part of the request's expression that the cause belongs to: its number in the order of the prefix
  /// text, every node before its children and a shared part once for each place, the whole being 0.
  unsigned long part = no_part;
  /// What an assignment has defined; without a name when the request was none.
  CASDefinitionS definition = {};
};

/// Why there is no value, as one English sentence for a person, without a full stop.
wstring describe(CASResultS const& result);

/// The part of an expression that `CASResultS::part` numbers; null when there are fewer.
PointerTC<NodeABC> findPart(AlgebraicExpressionC const& expression, unsigned long number);

}  // namespace zolt::math::algexpr
