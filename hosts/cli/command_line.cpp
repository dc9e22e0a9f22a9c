#include "hosts/cli/command_line.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <cstdio>
#include <sstream>

#include "hosts/cli/message.h"
#include "hosts/cli/nearest_word.h"
#include "hosts/cli/options.h"
#include "hosts/cli/standard_output.h"

namespace zolt::cli {

namespace {

/// What a value of the option can be. In the type name limits of the value follow a colon.
std::string getValueName(CLI::Option const& option) {
  std::string const name = option.get_type_name();
  return name.substr(0, name.find(':'));
}

/// Makes the help show an option's values and its default, and leave out everything else.
class HelpFormatterC final : public CLI::Formatter {
 public:
  std::string make_option_opts(CLI::Option const* option) const override {
    std::string const name = getValueName(*option);
    return name.empty() ? name : ' ' + name;
  }
  std::string make_option_desc(CLI::Option const* option) const override {
    std::string const initial = option->get_default_str();
    return option->get_description() + (initial.empty() ? initial : " [" + initial + ']');
  }
};

WordS describeOption(CLI::Option const& option) {
  WordS word;
  for (std::string const& name : option.get_snames()) word.names.push_back('-' + name);
  for (std::string const& name : option.get_lnames()) word.names.push_back("--" + name);
  word.help = option.get_description();
  word.initial = option.get_default_str();
  bool const takesValue = word.names.empty() || option.get_items_expected_max() > 0;
  if (takesValue) word.value = word.names.empty() ? option.get_name() : getValueName(option);
  std::string const type = getValueName(option);
  if (word.names.empty() && (type == "FILE" || type == "DIR")) word.value = type;
  if (type.find('|') != std::string::npos) word.choices = CLI::detail::split(type, '|');
  return word;
}

CommandS describeCommand(CLI::App const& command, std::string const& before) {
  CommandS description{command.get_name(), command.get_description(), command.get_footer(), {}, {}};
  std::istringstream help(command.help(before));
  while (std::getline(help, description.usage) && description.usage.compare(0, 7, "Usage: ") != 0) {
  }
  description.usage.erase(0, 7);
  for (CLI::Option const* option : command.get_options())
    description.words.push_back(describeOption(*option));
  return description;
}

std::vector<CLI::App const*> getCommands(CLI::App const& program) {
  return program.get_subcommands([](CLI::App const*) { return true; });
}

std::vector<std::string> getWords(int argc, char** argv) {
  // The parser takes words from the end of the list.
  std::vector<std::string> words;
  for (int i = argc - 1; i > 0; --i) words.push_back(protectWord(argv[i]));
  return words;
}

/// The first word of those left over that looks like an option, without the value behind "=".
std::string findWrongOption(std::vector<std::string> const& words) {
  for (std::string const& word : words)
    if (word.size() > 1 && word[0] == '-') return word.substr(0, word.find('='));
  return {};
}

std::vector<std::string> getOptionNames(CommandS const& command) {
  std::vector<std::string> names;
  for (WordS const& word : command.words) names.insert(names.end(), word.names.begin(), word.names.end());
  return names;
}

bool takesExpressions(CommandS const& command) {
  return std::any_of(command.words.begin(), command.words.end(),
                     [](WordS const& word) { return word.names.empty() && word.value == "EXPR"; });
}

/// Says what is wrong with the command line, and where its correct form is described.
void complain(CLI::ParseError const& error, CLI::App const& program, std::string const& firstWord) {
  ProgramS const known = describe(program);
  auto const chosen = program.get_subcommands();
  CommandS const* command = &known.program;
  for (CommandS const& one : known.commands)
    if (!chosen.empty() && one.name == chosen.front()->get_name()) command = &one;

  std::string message = error.what();
  std::string advice;
  if (chosen.empty() && firstWord[0] != '-') {
    std::vector<std::string> names;
    for (CommandS const& one : known.commands) names.push_back(one.name);
    message = "there is no command \"" + firstWord + '"' + suggest(findNearest(firstWord, names));
  } else if (chosen.empty() || dynamic_cast<CLI::ExtrasError const*>(&error)) {
    std::string const option =
        findWrongOption(chosen.empty() ? std::vector<std::string>{firstWord} : chosen.front()->remaining());
    if (!option.empty()) {
      std::string const nearest =
          option.compare(0, 2, "--") == 0 ? findNearest(option, getOptionNames(*command)) : std::string();
      message = "there is no option \"" + option + '"' + suggest(nearest);
      if (nearest.empty() && takesExpressions(*command)) {
        advice = "An expression that begins with \"-\" needs \"--\" before it.\n";
      }
    }
  }
  advice += "Try: ved " + (chosen.empty() ? "" : command->name + ' ') + "--help";
  printMessage(message, advice);
}

}  // namespace

ProgramS describe(CLI::App const& program) {
  ProgramS description{describeCommand(program, {}), {}};
  for (CLI::App const* command : getCommands(program))
    description.commands.push_back(describeCommand(*command, program.get_name()));
  return description;
}

std::string getHelp(CLI::App const& program, std::string const& command) {
  // The program itself would give the help of the subcommand that has been chosen.
  for (CLI::App const* one : getCommands(program))
    if (one->get_name() == command) return one->help(program.get_name());
  return command.empty()
             ? program.get_formatter()->make_help(&program, program.get_name(), CLI::AppFormatMode::Normal)
             : std::string();
}

int runCommandLine(int argc, char** argv, char const* footer,
                   std::function<void(CLI::App& program, ActionT& action)> const& add) {
  CLI::App program("Formulas from text to pictures and between notations", "ved");
  program.set_version_flag("-V,--version", "ved " ZOLT_VERSION, "Print the version");
  program.set_help_flag("-h,--help", "Print this help");
  program.formatter(std::make_shared<HelpFormatterC>());
  program.require_subcommand(1);
  program.footer(footer);
  ActionT action;
  add(program, action);

  if (argc < 2) {
    std::fputs(program.help().c_str(), stderr);
    return EXIT_STATUS_USAGE;
  }
  try {
    program.parse(getWords(argc, argv));
  } catch (CLI::Success const& request) {
    // The request was for help or the version.
    std::ostringstream text;
    program.exit(request, text);
    StandardOutputC output;
    output.write(text.str());
    return output.finish() ? EXIT_STATUS_OK : EXIT_STATUS_FAILED;
  } catch (CLI::ParseError const& error) {
    complain(error, program, argv[1]);
    return EXIT_STATUS_USAGE;
  }
  return action();
}

}  // namespace zolt::cli
