// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <deque>
#include <functional>
#include <set>
#include <vector>

#include "zolt/algexpr/cas_request.h"
#include "zolt/algexpr/flat_tree.h"
#include "zolt/engines/giac/worker/giac_names.h"

namespace zolt::giac_worker {

namespace algexpr = math::algexpr;

/// Thrown where there is no value: the reason, and the part of the request's expression.
struct FaultS {
  algexpr::CASCauseE cause = algexpr::CAS_CAUSE_NEEDS_ALGEBRA;
  unsigned long part = algexpr::CASResultS::no_part;
  wstring subject = {};
};

/// The values of expressions, every node after its operands: what definitions and `where` put in is there
/// before anything is done with it, and a fault belongs to the node at which it shows.
class EvaluatorC {
 public:
  using DefinitionsT = std::map<wstring, algexpr::CASDefinitionS>;

  EvaluatorC(DefinitionsT const& definitions, algexpr::CASAngleE angle, GiacNamesC& names,
             giac::context* context);

  /// The value of the request's expression; throws `FaultS`. The tree stays as long as the evaluator. A name
  /// that is the `variable` is nothing else.
  gen evaluate(algexpr::FlatTreeC const& tree, wstring const& variable);

  /// Whether a number with a point or an exponent has been read.
  bool hasDecimals() const { return hasDecimals_; }
  /// Whether the names that are left all stand for known numbers.
  bool isConstant(gen const& value) const;
  /// -1, 0 or 1, and 2 when it is not known.
  int findSign(gen const& value) const;
  /// The part that was left open, as an integral that nobody knows is.
  unsigned long getOpenPart() const { return openPart_; }

 private:
  struct PlaceS {
    algexpr::FlatTreeC const* tree;
    std::uint32_t at;
  };
  using MeaningsT = std::map<wstring, gen>;
  using HandlerT = gen (EvaluatorC::*)(PlaceS);

  static std::map<wstring, HandlerT> const& handlers();
  algexpr::NodeABC const& nodeOf(PlaceS place) const { return place.tree->crefNode(place.at); }
  unsigned long partOf(PlaceS place) const;
  PlaceS child(PlaceS place, unsigned index) const {
    return {place.tree, place.tree->child(place.at, index)};
  }
  unsigned long countChildren(PlaceS place) const { return place.tree->numChildren(place.at); }
  [[noreturn]] void fail(algexpr::CASCauseE cause, PlaceS place, wstring subject = {}) const;

  gen evaluate(PlaceS place);
  gen evaluateNode(PlaceS place);
  gen evaluateNumber(PlaceS place, wstring const& text);
  gen evaluateName(PlaceS place, wstring const& name);
  gen evaluateCall(PlaceS place, wstring const& name);
  gen evaluateDefinition(PlaceS place, algexpr::CASDefinitionS const& definition,
                         giac::vecteur const& arguments);
  gen evaluateNumberAt(PlaceS place, unsigned index);  ///< a child that is no truth value
  gen evaluateWith(PlaceS place, wstring const& variable, gen const& value);
  giac::vecteur evaluateChildren(PlaceS place);
  /// Throws when a result is undefined, or infinite without an infinite operand.
  gen checked(gen const& result, PlaceS place, bool mayBeInfinite) const;
  gen exponential(gen const& exponent) const;
  gen withoutLogarithm(gen const& result) const;
  gen openAt(gen const& result, giac::unary_function_ptr const* function, PlaceS place);
  wstring const& variableAt(PlaceS place, unsigned index) const;
  gen outerValue(PlaceS place, unsigned index);

  gen evaluateSum(PlaceS place);
  gen evaluateProduct(PlaceS place);
  gen evaluateQuotient(PlaceS place);
  gen evaluatePower(PlaceS place);
  gen evaluateNegative(PlaceS place);
  gen evaluateSame(PlaceS place);
  gen evaluateSqrt(PlaceS place);
  gen evaluateRoot(PlaceS place);
  gen evaluateLog(PlaceS place);
  gen evaluateDivMod(PlaceS place);
  gen evaluateFactorial(PlaceS place);
  gen evaluatePercent(PlaceS place);
  gen evaluateAngle(PlaceS place);
  gen evaluateRelation(PlaceS place);
  gen evaluateLogic(PlaceS place);
  gen evaluateSeries(PlaceS place);
  gen evaluateIntegral(PlaceS place);
  gen evaluateAntiderivative(PlaceS place);
  gen evaluateDerivative(PlaceS place);
  gen evaluateLimit(PlaceS place);
  gen evaluateWhere(PlaceS place);
  gen evaluateCases(PlaceS place);
  gen evaluateTable(PlaceS place);
  gen evaluateNorm(PlaceS place);
  gen evaluateSet(PlaceS place);
  gen evaluateSetOperation(PlaceS place);
  gen evaluateMembership(PlaceS place);
  gen refuseSign(PlaceS place);

  void checkPoles(gen const& body, gen const& variable, gen const& lower, gen const& upper, PlaceS place);
  gen multiply(gen const& a, gen const& b, PlaceS place);
  /// Of numbers, tables and sets; throws when it is not known.
  bool areEqual(gen const& a, gen const& b, PlaceS place) const;
  bool hasElement(gen const& set, gen const& element, PlaceS place) const;
  bool hasAll(gen const& set, gen const& elements, PlaceS place) const;

  DefinitionsT const& definitions_;
  algexpr::CASAngleE angle_;
  GiacNamesC& names_;
  giac::context* context_;
  algexpr::FlatTreeC const* whole_ = nullptr;
  std::deque<algexpr::FlatTreeC> trees_;
  std::map<wstring, algexpr::FlatTreeC const*> bodies_;
  std::map<wstring, gen> computed_;
  std::set<wstring> expanding_;
  MeaningsT meanings_;
  unsigned depth_ = 0;
  unsigned long outerPart_ = algexpr::CASResultS::no_part;
  unsigned long openPart_ = algexpr::CASResultS::no_part;
  bool hasDecimals_ = false;
};

/// Rounded to so many digits.
gen approximate(gen const& value, int digits, giac::context* context);
/// Whether the function is anywhere in the value.
bool hasFunction(gen const& value, giac::unary_function_ptr const* function);
/// Whether there is a root, which to the algebra system is a power.
bool hasRoot(gen const& value);
/// The derivative of the order, from 1.
gen derived(gen const& value, gen const& variable, gen const& order, giac::context* context);
/// With every operation of the function in the value changed.
gen replaced(gen const& value, giac::unary_function_ptr const* function,
             std::function<gen(gen const& operation)> const& change);
bool isMatrix(gen const& value);
bool haveSameSize(gen const& a, gen const& b);  ///< of matrices
bool isSet(gen const& value);

}  // namespace zolt::giac_worker
