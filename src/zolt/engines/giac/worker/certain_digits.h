// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zolt/engines/giac/worker/giac_names.h"

namespace zolt::giac_worker {

/// Whether the algebra system knows as many digits of the value as it is asked for: there are only functions
/// in it that it computes to any number of digits.
bool hasAllDigits(gen const& value);

/// How many digits two roundings of a number have in common; 0 when one of them is no number.
int countCommonDigits(gen const& a, gen const& b, giac::context* context);

}  // namespace zolt::giac_worker
