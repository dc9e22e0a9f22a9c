#pragma once

#include "hosts/cli/command.h"

namespace CLI {
class App;
}

namespace zolt::cli {

/// `ved convert`: converts expressions from one notation into another, line by line.
void addConvertCommand(CLI::App& program, ActionT& action);

}  // namespace zolt::cli
