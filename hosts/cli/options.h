#pragma once

#include <CLI/CLI.hpp>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "hosts/cli/formula.h"
#include "hosts/cli/line_source.h"

namespace zolt::cli {

/// Adds an option whose value is one of a few words. `value` holds the default and receives the choice. The
/// words, separated by "|", are the option's type name, which the completion scripts read.
template <class E>
CLI::Option* addChoice(CLI::App& command, std::string const& name, E& value,
                       std::vector<std::pair<std::string, E>> const& choices, std::string const& help) {
  std::string words;
  std::string chosen;
  for (auto const& [word, meaning] : choices) {
    words += (words.empty() ? "" : "|") + word;
    if (meaning == value) chosen = word;
  }
  auto const take = [&value, choices, name, words](std::string const& given) {
    for (auto const& [word, meaning] : choices) {
      if (word != given) continue;
      value = meaning;
      return;
    }
    throw CLI::ValidationError(name, '"' + given + "\" is not one of " + words);
  };
  CLI::Option* const option = command.add_option_function<std::string>(name, take, help);
  option->type_name(words);
  option->default_str(chosen);
  return option;
}

/// Adds `EXPR…`, `-i` and `--from`.
void addInputOptions(CLI::App& command, InputS& input, NotationE& from);

/// Adds an option or argument that names a file or, with the type name "DIR", a folder.
CLI::Option* addPath(CLI::App& command, std::string const& name, std::string& path, std::string const& type,
                     std::string const& help);

/// Adds an option whose value is a number between `least` and `most`.
CLI::Option* addNumber(CLI::App& command, std::string const& name, double& value, double least, double most,
                       std::string const& help);

/// Makes the help show an option's values and its default, and leave out everything else.
std::shared_ptr<CLI::FormatterBase> makeHelpFormatter();

/// What a value of the option can be: "FILE", "DIR", words separated by "|", or a name for human readers.
std::string getValueName(CLI::Option const& option);

/// CLI11 would read a word in square brackets, and so a tree, as a list of values. Words that this function
/// has changed before parsing reach `addInputOptions` and `addPath` in their original form.
std::string protectWord(std::string word);

}  // namespace zolt::cli
