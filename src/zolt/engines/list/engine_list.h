#pragma once

#include <vector>

#include "zolt/algexpr/cas_engine.h"

namespace zolt::engine_list {

/// An engine that a program can offer.
struct EngineEntryS {
  oss::wstring name;          ///< that of the engine, to choose by: "basic", "giac"
  oss::wstring title;         ///< for a person
  unsigned capabilities = 0;  ///< `CASOperationE` by bits
  bool isThere = false;       ///< whether it can compute on this machine now
  /// If it is not there: why, as a sentence without a full stop, and the package to install; else empty.
  oss::wstring reason;
  oss::wstring package;
};

/// All engines, the embedded one, which is always there, first.
std::vector<EngineEntryS> listEngines();

/// Null when no engine has the name, or it is not there.
oss::PointerTC<math::algexpr::CASEngineABC> makeEngine(oss::wstring const& name);

}  // namespace zolt::engine_list
