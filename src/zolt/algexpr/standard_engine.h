#pragma once

#include "zolt/algexpr/cas_engine.h"

namespace zolt::math::algexpr {

/// The engine of the default session: knows the library's own table of names and computes nothing.
class StandardEngineC : public CASEngineABC {
 public:
  wstring getName() const override;
};

}  // namespace zolt::math::algexpr
