#pragma once

#include <string_view>

#include "zolt/oss/wstring.h"

namespace zolt::math::algexpr::detail {

enum CoreTraitE : unsigned {
  CORE_FUNCTION = 1,
  CORE_CONSTANT = 2,
  /// Of several operands it is a binary operation nested to the left.
  CORE_CHAIN = 4,
  /// With an exponent after it, it would read back differently (the exponent of a power would get the new
  /// one) or be read differently by a person (the last part of a fraction or an integral would seem to get
  /// it).
  CORE_GUARDED = 8
};

/// A name that the library knows: the nodes of that name point at this one record.
struct CoreNameS {
  oss::wstring name;
  unsigned traits;  ///< of `CoreTraitE`
};

/// The record of `name`, alive as long as the process; null when the library does not know it.
CoreNameS const* findCoreName(std::u16string_view name);

inline bool hasTrait(std::u16string_view name, CoreTraitE trait) {
  CoreNameS const* const core = findCoreName(name);
  return core && (core->traits & trait) != 0;
}

}  // namespace zolt::math::algexpr::detail
