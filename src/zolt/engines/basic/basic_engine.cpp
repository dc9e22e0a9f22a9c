#include "zolt/engines/basic/basic_engine.h"

#include <algorithm>
#include <vector>

#include "zolt/algexpr/cas_assignment.h"
#include "zolt/algexpr/make_node.h"
#include "zolt/engines/basic/detail/computation.h"
#include "zolt/engines/basic/detail/long_work.h"
#include "zolt/engines/basic/detail/lowering.h"

namespace zolt::engine_basic {

using namespace math::algexpr;
using namespace detail;

namespace {

using NodeP = PointerTC<NodeABC>;

CASResultS computeStandard(CASRequestS const& request, NodeP const& node, WatchC& watch) {
  CASResultS const result = ComputationC(request, watch).run(node);
  return watch.isOver() ? refuse(watch.crefFault().cause, watch.crefFault().part) : result;
}

// The cells of a table, or the elements of a set, each as an expression of its own.
CASResultS computeParts(CASRequestS const& request, LoweringC const& lowering,
                        LoweringC::LoweredS const& lowered, WatchC& watch) {
  if (request.operation == CAS_SOLVE || request.operation == CAS_FACTOR)
    return refuse(CAS_CAUSE_WRONG_ARGUMENT, 0);
  bool const isSet = lowered.kind == LoweringC::KIND_SET;
  CASResultS whole;
  std::vector<NodeP> parts, rows;
  for (NodeP const& part : lowered.parts) {
    CASResultS result = computeStandard(request, part, watch);
    lowering.toOriginal(*part, result);
    if (result.outcome != CAS_VALUE) return result;
    whole.certainDigits = std::min(whole.certainDigits, result.certainDigits);
    parts.push_back(result.value->getNode());
    if (isSet || parts.size() < lowered.columns) continue;
    rows.push_back(makeFunction(u"list", parts));
    parts.clear();
  }
  NodeP const node = !isSet          ? makeFunction(u"matrix", rows)
                     : parts.empty() ? makeNamed(u"∅")
                                     : makeFunction(u"set", parts);
  whole.outcome = CAS_VALUE;
  whole.cause = CAS_CAUSE_NONE;
  whole.value = new AlgebraicExpressionC(node, request.expression->getCASSession());
  return whole;
}

CASResultS computeExtended(CASRequestS const& request, NodeP const& node, WatchC& watch) {
  CASRequestS exact = request;
  exact.operation = CAS_EVALUATE;
  LoweringC lowering(request.definitions.get(), watch, [&](NodeP const& part) {
    CASResultS const value = computeStandard(exact, part, watch);
    if (!watch.isOver()) watch.takeFault();
    return value;
  });
  LoweringC::LoweredS lowered;
  if (!lowering.run(*node, lowered)) {
    FaultS const& fault = watch.crefFault();
    return refuse(fault.cause, fault.part, fault.subject);
  }
  if (lowered.kind != LoweringC::KIND_ONE) return computeParts(request, lowering, lowered, watch);
  CASResultS result = computeStandard(request, lowered.parts[0], watch);
  lowering.toOriginal(*lowered.parts[0], result);
  return result;
}

}  // namespace

unsigned BasicEngineC::getCapabilities() const {
  return CAS_EVALUATE | CAS_APPROXIMATE | CAS_SIMPLIFY | CAS_EXPAND | CAS_FACTOR | CAS_SOLVE |
         CAS_DIFFERENTIATE | CAS_INTEGRATE | CAS_SUBSTITUTE;
}

CASResultS BasicEngineC::compute(CASRequestS const& request, CASStopC const* stop) const {
  WatchC watch(request.deadline, stop);
  auto const isReserved = [](wstring const& name) { return findFunction(name) != nullptr; };
  return computeRequest(request, isReserved, [&](CASRequestS const& asked, PointerTC<NodeABC> const& node) {
    LongWorkC const limited(watch);
    CASResultS const result = computeStandard(asked, node, watch);
    bool const isExtended = (result.cause == CAS_CAUSE_NEEDS_ALGEBRA || result.cause == CAS_CAUSE_NO_VALUE) &&
                            LoweringC::isNeeded(*node, asked.definitions.get());
    if (!isExtended) return result;
    watch.takeFault();
    return computeExtended(asked, node, watch);
  });
}

}  // namespace zolt::engine_basic
