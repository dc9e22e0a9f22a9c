#pragma once

#include "zolt/oss/pointer.h"
#include "zolt/oss/ref_counted.h"
#include "zolt/oss/wstring.h"

namespace zolt::math::algexpr {

using oss::PointerTC;
using oss::wstring;

/// A computer-algebra engine as the expression library sees it: a name, and what it knows how to compute.
/// Which class a node gets never depends on the engine.
class CASEngineABC : public oss::RefCountedBC {
 public:
  virtual wstring getName() const = 0;
  virtual bool isCoreFunction(wstring const& name) const = 0;
  virtual bool isCoreConstant(wstring const& name) const = 0;
};

}  // namespace zolt::math::algexpr
