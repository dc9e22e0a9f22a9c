#pragma once

#include "hosts/cli/command.h"

namespace CLI {
class App;
}

namespace zolt::cli {

/// `ved replay`: plays event scripts on a formula field.
void addReplayCommand(CLI::App& program, ActionT& action);

}  // namespace zolt::cli
