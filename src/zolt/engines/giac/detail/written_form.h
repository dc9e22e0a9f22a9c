#pragma once

#include "zolt/algexpr/node.h"

namespace zolt::engine_giac::detail {

/// A result of the worker as a person writes it: differences instead of sums with negative terms, fractions
/// instead of products with inverses, roots instead of powers with fractions, signs in front. Null when it is
/// nested too deeply.
oss::PointerTC<math::algexpr::NodeABC> writeForPeople(math::algexpr::NodeABC const& node);

}  // namespace zolt::engine_giac::detail
