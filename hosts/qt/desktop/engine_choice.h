#pragma once

#include <QString>
#include <vector>

#include "zolt/algexpr/cas_engine.h"
#include "zolt/oss/pointer.h"

namespace zolt::desktop {

/// An engine that the program could compute with.
struct EngineChoice {
  QString id;      ///< in the settings
  QString title;   ///< for people
  QString reason;  ///< why it cannot be used here, and what to do about it; empty when it can
  oss::PointerTC<math::algexpr::CASEngineABC> engine;  ///< null when it cannot be used
};

/// All of them; the first is always there.
std::vector<EngineChoice> engineChoices();

}  // namespace zolt::desktop
