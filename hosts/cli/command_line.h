#pragma once

#include <functional>
#include <string>
#include <vector>

#include "hosts/cli/command.h"

namespace CLI {
class App;
}

namespace zolt::cli {

/// An option or argument as people and shells see it.
struct WordS {
  std::vector<std::string> names;  ///< with their dashes; none for an argument
  std::string help;
  std::string value;  ///< what its value is called, e.g. "FILE", "DIR" or "svg|png"; empty when it takes none
  std::string initial;               ///< the default, if it has one
  std::vector<std::string> choices;  ///< the words that the value can be, if only these
};

struct CommandS {
  std::string name;
  std::string help;
  std::string footer;  ///< what its help says after the options
  std::string usage;   ///< the line of its help that shows its form
  std::vector<WordS> words;
};

/// The program, and its subcommands in the order in which they were added.
struct ProgramS {
  CommandS program;
  std::vector<CommandS> commands;
};

ProgramS describe(CLI::App const& program);
/// The help of a subcommand or, with an empty name, of the program; empty when there is no such subcommand.
std::string getHelp(CLI::App const& program, std::string const& command);

/// Reads the command line, with the subcommands that `add` adds, and does what it asks for. Wrong usage and
/// its correction are printed.
int runCommandLine(int argc, char** argv, char const* footer,
                   std::function<void(CLI::App& program, ActionT& action)> const& add);

}  // namespace zolt::cli
