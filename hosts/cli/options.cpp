#include "hosts/cli/options.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <sstream>
#include <type_traits>

#include "hosts/cli/nearest_word.h"

namespace zolt::cli {

namespace {

constexpr char guard = '\x01';

std::string unprotectWord(std::string word) {
  if (!word.empty() && word.front() == guard) word.erase(0, 1);
  return word;
}

template <class T>
std::string toText(T value) {
  std::ostringstream text;
  text << value;
  return text.str();
}

template <class T>
CLI::Option& addLimited(CLI::App& command, std::string const& name, T& value, T least, T most,
                        std::string const& help) {
  auto const take = [&value, name, least, most](T given) {
    // The condition is negated so that NaN is refused, too.
    if (!(given >= least && given <= most))
      refuse(name, "the value is not between " + toText(least) + " and " + toText(most));
    value = given;
  };
  auto const findFault = [](std::string const& text) {
    T given;
    if (CLI::detail::lexical_cast(text, given)) return std::string();
    return '"' + text + (std::is_integral_v<T> ? "\" is no count" : "\" is no number");
  };
  CLI::Option* const option = command.add_option_function<T>(name, take, help)->check(findFault);
  return *option->type_name("N")->default_str(toText(value));
}

}  // namespace

CLI::App& addCommand(CLI::App& program, char const* name, char const* help, char const* footer) {
  CLI::App* const command = program.add_subcommand(name, help);
  command->footer(footer);
  return *command;
}

void onChosen(CLI::App& command, std::function<void()> action) { command.callback(std::move(action)); }

void refuse(std::string const& option, std::string const& message) {
  throw CLI::ValidationError(option, message);
}

bool isGiven(CLI::Option const& option) { return option.count() > 0; }

CLI::Option& require(CLI::Option& option) { return *option.required(); }

CLI::Option& addText(CLI::App& command, std::string const& name, std::string const& type,
                     std::function<void(std::string const&)> take, std::string const& help) {
  return *command.add_option_function<std::string>(name, take, help)->type_name(type);
}

CLI::Option& addFlag(CLI::App& command, std::string const& name, bool& isSet, std::string const& help) {
  return *command.add_flag(name, isSet, help);
}

CLI::Option& addAction(CLI::App& command, std::string const& name, std::function<void()> choose,
                       std::string const& help) {
  return *command.add_flag_callback(name, std::move(choose), help);
}

CLI::Option& addWord(CLI::App& command, std::string const& name, std::vector<std::string> const& words,
                     std::size_t initial, std::function<void(std::size_t)> take, std::string const& help) {
  std::string const type = CLI::detail::join(words, "|");
  auto const choose = [take, words, name, type](std::string const& given) {
    auto const found = std::find(words.begin(), words.end(), given);
    if (found == words.end())
      refuse(name, '"' + given + "\" is not one of " + type + suggest(findNearest(given, words)));
    take(static_cast<std::size_t>(found - words.begin()));
  };
  CLI::Option& option = addText(command, name, type, choose, help);
  return initial < words.size() ? *option.default_str(words[initial]) : option;
}

CLI::Option& addPath(CLI::App& command, std::string const& name, std::string& path, std::string const& type,
                     std::string const& help) {
  auto const take = [&path](std::string const& given) { path = unprotectWord(given); };
  return *addText(command, name, type, take, help).default_str(path);
}

CLI::Option& addNumber(CLI::App& command, std::string const& name, double& value, double least, double most,
                       std::string const& help) {
  return addLimited(command, name, value, least, most, help);
}

CLI::Option& addCount(CLI::App& command, std::string const& name, unsigned& value, unsigned least,
                      unsigned most, std::string const& help) {
  return addLimited(command, name, value, least, most, help);
}

void addInputOptions(CLI::App& command, InputS& input, NotationE& from) {
  auto const take = [&input](std::vector<std::string> const& given) {
    for (std::string const& word : given) input.expressions.push_back(unprotectWord(word));
  };
  CLI::Option* const expressions = command.add_option_function<std::vector<std::string>>(
      "EXPR", take, "Expressions; none, or \"-\": one a line from standard input");
  expressions->type_name("");
  addPath(command, "-i,--input", input.file, "FILE", "Read expressions from a file, one a line")
      .excludes(expressions);
  addChoice<NotationE>(command, "--from", from,
                       {{"plain", NOTATION_PLAIN},
                        {"latex", NOTATION_LATEX},
                        {"mathml", NOTATION_MATHML},
                        {"content-mathml", NOTATION_MATHML},
                        {"mathjson", NOTATION_MATHJSON},
                        {"infix", NOTATION_INFIX},
                        {"prefix", NOTATION_PREFIX},
                        {"tree", NOTATION_TREE}},
                       "Notation of the expressions");
}

void addCatalogue(CLI::App& command, CatalogueE& catalogue) {
  addChoice<CatalogueE>(command, "--catalogue", catalogue,
                        {{"standard", CATALOGUE_STANDARD}, {"extended", CATALOGUE_EXTENDED}},
                        "Operators that formulas may have: the standard ones, or more of mathematics too");
}

SpeechOptionsS addSpeech(CLI::App& command, exchange::SpeechStyleS& style, std::string const& use) {
  CLI::Option const& language = addChoice<exchange::SpeechLanguageE>(
      command, "--language", style.language,
      {{"english", exchange::SPEECH_ENGLISH}, {"german", exchange::SPEECH_GERMAN}}, "Language of " + use);
  CLI::Option const& verbosity = addChoice<exchange::SpeechVerbosityE>(
      command, "--verbosity", style.verbosity,
      {{"brief", exchange::SPEECH_BRIEF},
       {"medium", exchange::SPEECH_MEDIUM},
       {"full", exchange::SPEECH_FULL}},
      "How many words speech has; different formulas never sound the same in "
      "full ones");
  return {language, verbosity};
}

std::string protectWord(std::string word) {
  if (!word.empty() && (word.front() == '[' || word.front() == '{')) word.insert(0, 1, guard);
  return word;
}

}  // namespace zolt::cli
