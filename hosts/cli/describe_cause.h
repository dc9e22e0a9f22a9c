#pragma once

#include <string>

#include "zolt/algexpr/prefix_error.h"
#include "zolt/ved/convert/error_selection.h"

namespace zolt::cli {

// Describes every cause in a sentence about the marked place, without a full stop.

std::string describeCause(math::ved::ErrorCauseE cause);
std::string describeCause(math::algexpr::PrefixErrorE cause);

}  // namespace zolt::cli
