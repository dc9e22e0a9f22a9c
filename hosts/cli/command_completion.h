#pragma once

#include "hosts/cli/command.h"

namespace CLI {
class App;
}

namespace zolt::cli {

/// `ved completion`: a script that makes a shell complete the words of a `ved` command. It is made from the
/// program's own description.
void addCompletionCommand(CLI::App& program, ActionT& action);

}  // namespace zolt::cli
