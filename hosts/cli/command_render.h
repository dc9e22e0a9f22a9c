#pragma once

#include "hosts/cli/command.h"

namespace CLI {
class App;
}

namespace zolt::cli {

/// `ved render`: draws expressions as pictures.
void addRenderCommand(CLI::App& program, ActionT& action);

}  // namespace zolt::cli
