#pragma once

#include <cstddef>
#include <functional>
#include <string>
#include <utility>
#include <vector>

#include "hosts/cli/formula.h"
#include "hosts/cli/line_source.h"

// The parser's own header is large, and included by few sources.
namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace zolt::cli {

/// Adds a subcommand. `footer` is what its help says after the options.
CLI::App& addCommand(CLI::App& program, char const* name, char const* help, char const* footer);
/// Has `action` called when the whole line has been read and has chosen the subcommand; it may `refuse`.
void onChosen(CLI::App& command, std::function<void()> action);
/// Ends the reading of the command line: the value of the option is wrong, as `message` says.
[[noreturn]] void refuse(std::string const& option, std::string const& message);

bool isGiven(CLI::Option const& option);
/// Makes a command line without this argument wrong usage.
CLI::Option& require(CLI::Option& option);

/// Adds an option or argument that takes a text; `type` is what help calls it.
CLI::Option& addText(CLI::App& command, std::string const& name, std::string const& type,
                     std::function<void(std::string const&)> take, std::string const& help);

CLI::Option& addFlag(CLI::App& command, std::string const& name, bool& isSet, std::string const& help);
/// Adds an option without a value that calls `choose`.
CLI::Option& addAction(CLI::App& command, std::string const& name, std::function<void()> choose,
                       std::string const& help);

/// Adds an option or argument whose value is one of `words`; `initial` is the index of the one that help
/// calls the default, or another number. The words, separated by "|", are the option's type name.
CLI::Option& addWord(CLI::App& command, std::string const& name, std::vector<std::string> const& words,
                     std::size_t initial, std::function<void(std::size_t)> take, std::string const& help);

/// Adds an option whose value is one of a few words. `value` holds the default and receives the choice.
template <class E>
CLI::Option& addChoice(CLI::App& command, std::string const& name, E& value,
                       std::vector<std::pair<std::string, E>> const& choices, std::string const& help) {
  std::vector<std::string> words;
  std::size_t initial = choices.size();
  for (auto const& [word, meaning] : choices) {
    if (meaning == value) initial = words.size();
    words.push_back(word);
  }
  auto const take = [&value, choices](std::size_t chosen) { value = choices[chosen].second; };
  return addWord(command, name, words, initial, take, help);
}

/// Adds `EXPR…`, `-i` and `--from`.
void addInputOptions(CLI::App& command, InputS& input, NotationE& from);

/// Adds `--catalogue`.
void addCatalogue(CLI::App& command, CatalogueE& catalogue);

/// Adds an option or argument that names a file or, with the type name "DIR", a folder. A `path` that is not
/// empty is the default.
CLI::Option& addPath(CLI::App& command, std::string const& name, std::string& path, std::string const& type,
                     std::string const& help);

/// Adds an option whose value is a number between `least` and `most`.
CLI::Option& addNumber(CLI::App& command, std::string const& name, double& value, double least, double most,
                       std::string const& help);
/// The same for a whole number.
CLI::Option& addCount(CLI::App& command, std::string const& name, unsigned& value, unsigned least,
                      unsigned most, std::string const& help);

/// Adds `--language` and `--verbosity` of speech; `use` is what help says the language is for.
struct SpeechOptionsS {
  CLI::Option const& language;
  CLI::Option const& verbosity;
};
SpeechOptionsS addSpeech(CLI::App& command, exchange::SpeechStyleS& style, std::string const& use);

/// CLI11 would read a word in square brackets, and so a tree, as a list of values. Words that this function
/// has changed before parsing reach `addInputOptions` and `addPath` in their original form.
std::string protectWord(std::string word);

}  // namespace zolt::cli
