#include "zolt/engines/list/engine_list.h"

#include "zolt/engines/basic/basic_engine.h"
#ifdef ZOLT_HAS_GIAC
#include "zolt/engines/giac/giac_engine.h"
#endif

namespace zolt::engine_list {

using namespace math::algexpr;

std::vector<EngineEntryS> listEngines() {
  engine_basic::BasicEngineC const basic;
  std::vector<EngineEntryS> engines;
  engines.push_back({basic.getName(), u"Embedded", basic.getCapabilities(), true, {}, {}});
#ifdef ZOLT_HAS_GIAC
  engine_giac::GiacEngineC const giac;
  EngineEntryS entry{giac.getName(), u"Giac", giac.getCapabilities(), true, {}, {}};
  if (engine_giac::GiacEngineC::findWorker().empty()) {
    entry.isThere = false;
    entry.reason = u"The program \"ved-giac-worker\" is not there; it is built with the package libgiac-dev";
    entry.package = u"libgiac-dev";
  }
  engines.push_back(entry);
#endif
  return engines;
}

oss::PointerTC<CASEngineABC> makeEngine(oss::wstring const& name) {
  for (EngineEntryS const& engine : listEngines()) {
    if (engine.name != name || !engine.isThere) continue;
#ifdef ZOLT_HAS_GIAC
    if (name == u"giac") return new engine_giac::GiacEngineC;
#endif
    return new engine_basic::BasicEngineC;
  }
  return nullptr;
}

}  // namespace zolt::engine_list
