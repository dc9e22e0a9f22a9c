#pragma once

#include "hosts/cli/command.h"

namespace CLI {
class App;
}

namespace zolt::cli {

/// `ved help`: the help of a subcommand, or the manual page. It is made from the program's own description,
/// so this command must be added last.
void addHelpCommand(CLI::App& program, ActionT& action);

}  // namespace zolt::cli
