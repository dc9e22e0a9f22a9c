#include "hosts/cli/command_help.h"

#include <memory>

#include "hosts/cli/command_line.h"
#include "hosts/cli/manual_page.h"
#include "hosts/cli/options.h"
#include "hosts/cli/standard_output.h"

namespace zolt::cli {

namespace {

constexpr char footer[] = R"(Examples:
  ved help render                  what "ved render --help" prints
  ved help --man | man -l -        all of it as a manual page)";

struct SettingsS {
  std::string command;
  bool isManual = false;
};

}  // namespace

void addHelpCommand(CLI::App& program, ActionT& action) {
  CLI::App& command = addCommand(program, "help", "Print the help of the program or of a command", footer);
  auto const settings = std::make_shared<SettingsS>();
  std::vector<std::string> names;
  for (CommandS const& one : describe(program).commands) names.push_back(one.name);
  CLI::Option const& name = addWord(
      command, "COMMAND", names, names.size(),
      [settings, names](std::size_t chosen) { settings->command = names[chosen]; }, "Command to tell about");
  addFlag(command, "--man", settings->isManual, "Print the manual page of all commands, for man(1)");
  onChosen(command, [settings, &name, &program, &action] {
    if (settings->isManual && isGiven(name)) refuse("--man", "the manual page is of all commands");
    action = [settings, &program] {
      StandardOutputC output;
      output.write(settings->isManual ? writeManualPage(describe(program))
                                      : getHelp(program, settings->command));
      return output.finish() ? EXIT_STATUS_OK : EXIT_STATUS_FAILED;
    };
  });
}

}  // namespace zolt::cli
