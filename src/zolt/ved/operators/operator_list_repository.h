#pragma once

#include "zolt/oss/pointer.h"
#include "zolt/ved/operators/operator_list.h"

namespace zolt::math::algexpr {
class CASEngineABC;
}

namespace zolt::math::ved {

/// Holds the only operator table of the process. The table is made empty on first use and exists until the
/// process ends.
class OperatorListRepositoryC {
 public:
  /// The shared table; the same one for every engine.
  static PointerTC<OperatorListC> lookup(algexpr::CASEngineABC const& engine);
  /// Whether the character is a sign of the shared table (`OperatorListC::isSign`).
  static bool isSign(char16_t c);
  /// Does nothing: the shared table serves every engine until the process ends.
  static void remove(algexpr::CASEngineABC const& engine);

 private:
  OperatorListRepositoryC();
  ~OperatorListRepositoryC();

  static OperatorListRepositoryC* instance_cls;
  PointerTC<OperatorListC> list_;
};

}  // namespace zolt::math::ved
