#pragma once

#include <string>
#include <vector>

#include "fuzzing/targets.h"

namespace zolt::fuzz {

/// What the other targets have learnt, as inputs of the target `name`: targets that play sessions show, paste
/// or type what a reader understands, and play each other's sessions. `corpora` has a folder for each target;
/// missing folders are skipped. The result is empty for targets that can learn nothing from others.
std::vector<BytesT> sharedSeeds(std::string const& name, std::string const& corpora);

}  // namespace zolt::fuzz
