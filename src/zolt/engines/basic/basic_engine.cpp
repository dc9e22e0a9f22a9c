#include "zolt/engines/basic/basic_engine.h"

#include "zolt/algexpr/cas_assignment.h"
#include "zolt/engines/basic/detail/computation.h"
#include "zolt/engines/basic/detail/long_work.h"

namespace zolt::engine_basic {

using namespace math::algexpr;
using namespace detail;

unsigned BasicEngineC::getCapabilities() const {
  return CAS_EVALUATE | CAS_APPROXIMATE | CAS_SIMPLIFY | CAS_EXPAND | CAS_FACTOR | CAS_SOLVE |
         CAS_DIFFERENTIATE | CAS_INTEGRATE | CAS_SUBSTITUTE;
}

CASResultS BasicEngineC::compute(CASRequestS const& request, CASStopC const* stop) const {
  WatchC watch(request.deadline, stop);
  auto const isReserved = [](wstring const& name) { return findFunction(name) != nullptr; };
  return computeRequest(request, isReserved, [&](CASRequestS const& asked, PointerTC<NodeABC> const& node) {
    LongWorkC const limited(watch);
    CASResultS const result = ComputationC(asked, watch).run(node);
    return watch.isOver() ? refuse(watch.crefFault().cause, watch.crefFault().part) : result;
  });
}

}  // namespace zolt::engine_basic
