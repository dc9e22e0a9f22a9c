#pragma once

#include <functional>

#include "hosts/cli/exit_status.h"

namespace zolt::cli {

/// What a subcommand chosen on the command line does, to be run once the whole line has been read. Each
/// subcommand has a function that adds it to the program and, when the subcommand is chosen, sets this.
using ActionT = std::function<ExitStatusE()>;

}  // namespace zolt::cli
