#pragma once

#include "hosts/cli/command.h"

namespace CLI {
class App;
}

namespace zolt::cli {

/// `ved gallery`: fills a folder with pictures of everything that the standard operators can look like.
void addGalleryCommand(CLI::App& program, ActionT& action);

}  // namespace zolt::cli
