#pragma once

#include "zolt/oss/pointer.h"
#include "zolt/oss/ref_counted.h"
#include "zolt/oss/wstring.h"

namespace zolt::math::algexpr {

using oss::PointerTC;
using oss::wstring;

class CASStopC;
struct CASRequestS;
struct CASResultS;

/// What an engine can be asked to do (`cas_request.h`). The values are bits of `getCapabilities`.
enum CASOperationE : unsigned {
  CAS_EVALUATE = 1,        ///< the exact value: no number is rounded
  CAS_APPROXIMATE = 2,     ///< the value as a decimal number
  CAS_SIMPLIFY = 4,        ///< a shorter equal expression
  CAS_EXPAND = 8,          ///< products of sums multiplied out
  CAS_FACTOR = 16,         ///< a product of factors
  CAS_SOLVE = 32,          ///< an equation for a variable
  CAS_DIFFERENTIATE = 64,  ///< by a variable
  CAS_INTEGRATE = 128,     ///< an antiderivative by a variable
  CAS_SUBSTITUTE = 256     ///< a value in place of a variable
};

/// A computer-algebra engine: a name, what it knows, and how it computes. Which class a node gets never
/// depends on the engine.
class CASEngineABC : public oss::RefCountedBC {
 public:
  /// Empty for an engine that has no name.
  virtual wstring getName() const { return {}; }
  /// Whether the engine knows a function or a constant of this name; unless it says otherwise, those of the
  /// library's own table.
  virtual bool isCoreFunction(wstring const& name) const;
  virtual bool isCoreConstant(wstring const& name) const;

  /// The operations that it has, `CASOperationE` by bits. An engine that has one may still leave a particular
  /// request unevaluated.
  virtual unsigned getCapabilities() const { return 0; }
  /// Does what is asked, and waits for it: until the request's deadline, or until somebody says `stop` on
  /// another thread (null: nobody can). The request is all that the result depends on. Engines that are asked
  /// by several threads say so themselves; `EngineQueueC` asks one request after the other, on a thread of
  /// its own. The default leaves everything unevaluated.
  virtual CASResultS compute(CASRequestS const& request, CASStopC const* stop = nullptr) const;

 protected:
  CASEngineABC() = default;
};

/// The engine of the default session: it knows the library's own table of names and computes nothing.
class StandardEngineC : public CASEngineABC {
 public:
  wstring getName() const override { return u"standard"; }
};

}  // namespace zolt::math::algexpr
