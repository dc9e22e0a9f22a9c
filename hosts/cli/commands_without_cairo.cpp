#include <CLI/CLI.hpp>

#include "hosts/cli/command_gallery.h"
#include "hosts/cli/command_render.h"
#include "hosts/cli/command_replay.h"
#include "hosts/cli/message.h"

// Replaces the commands that draw when the program is built without Cairo, so that they fail with a reason.

namespace zolt::cli {

namespace {

void addMissingCommand(CLI::App& program, std::string const& name, ActionT& action) {
  CLI::App* const command = program.add_subcommand(name, "Not in this program: it was built without Cairo");
  command->allow_extras();
  command->callback([name, &action] {
    action = [name] {
      printMessage('"' + name + "\" is missing: this program was built without pictures (ZOLT_BUILD_CAIRO)");
      return EXIT_STATUS_FAILED;
    };
  });
}

}  // namespace

void addRenderCommand(CLI::App& program, ActionT& action) { addMissingCommand(program, "render", action); }
void addReplayCommand(CLI::App& program, ActionT& action) { addMissingCommand(program, "replay", action); }
void addGalleryCommand(CLI::App& program, ActionT& action) { addMissingCommand(program, "gallery", action); }

}  // namespace zolt::cli
