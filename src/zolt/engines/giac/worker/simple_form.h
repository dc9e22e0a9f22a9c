// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <cstddef>

#include "zolt/engines/giac/worker/giac_names.h"

namespace zolt::giac_worker {

/// How much there is to read in a value: its nodes, and more for what people would rather not see, roots and
/// quotients in denominators and equal terms side by side.
int measureForm(gen const& value);

/// Whether there is a power that would be long when multiplied out.
bool hasLongPower(gen const& value);

struct DenominatorCountS {
  std::size_t denominators = 0;  ///< different ones with variables in them
  std::size_t quotients = 0;     ///< terms that have one of them
};
DenominatorCountS countDenominators(giac::vecteur const& terms, giac::context* context);

/// The value with its denominators factored, where that makes powers of them and is shorter.
gen withPowersBelow(gen const& value, giac::context* context);
/// The value with ln(2)+ln(5) as ln(10); as it is where the number would be long.
gen withOneLogarithm(gen const& value, giac::context* context);
/// The value with powers of negatives and inverses as powers of what is in them, and equal terms added.
gen collected(gen const& value, giac::context* context);

}  // namespace zolt::giac_worker
