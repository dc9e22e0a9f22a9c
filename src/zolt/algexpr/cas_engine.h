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
  /// Empty for an engine that has no name.
  virtual wstring getName() const { return {}; }
  /// Whether the engine knows a function or a constant of this name; unless it says otherwise, those of the
  /// library's own table.
  virtual bool isCoreFunction(wstring const& name) const;
  virtual bool isCoreConstant(wstring const& name) const;

 protected:
  CASEngineABC() = default;
};

/// The engine of the default session: it knows the library's own table of names and computes nothing.
class StandardEngineC : public CASEngineABC {
 public:
  wstring getName() const override { return u"standard"; }
};

}  // namespace zolt::math::algexpr
