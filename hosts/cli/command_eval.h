#pragma once

#include "hosts/cli/command.h"

namespace CLI {
class App;
}

namespace zolt::cli {

/// `ved eval`: computes expressions, line by line.
void addEvalCommand(CLI::App& program, ActionT& action);

}  // namespace zolt::cli
