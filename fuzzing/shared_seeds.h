#pragma once

#include <string>
#include <vector>

#include "fuzzing/targets.h"

namespace zolt::fuzz {

/// What the other targets have learnt, as inputs of the target `name`: what a reader understands is shown,
/// pasted or typed by those that play sessions, and sessions are played by one another. `corpora` has a
/// folder for each target; those that are missing are passed over. Empty for targets that can learn nothing
/// from others.
std::vector<BytesT> sharedSeeds(std::string const& name, std::string const& corpora);

}  // namespace zolt::fuzz
