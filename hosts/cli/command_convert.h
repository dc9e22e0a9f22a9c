#pragma once

#include "hosts/cli/command.h"

namespace CLI {
class App;
}

namespace zolt::cli {

/// `ved convert`: expressions from one notation into another, a line for a line.
void addConvertCommand(CLI::App& program, ActionT& action);

}  // namespace zolt::cli
