#pragma once

#include <string_view>

#include "zolt/oss/wstring.h"

namespace zolt::math::algexpr::detail {

/// A name that the library knows: the nodes of that name point at this one record.
struct CoreNameS {
  oss::wstring name;
  bool isFunction;
  bool isConstant;
};

/// The record of `name`, alive as long as the process; null when the library does not know it.
CoreNameS const* findCoreName(std::u16string_view name);

}  // namespace zolt::math::algexpr::detail
