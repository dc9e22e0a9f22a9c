#include "hosts/cli/command_completion.h"

#include <CLI/CLI.hpp>
#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "hosts/cli/options.h"
#include "hosts/cli/standard_output.h"

namespace zolt::cli {

namespace {

enum ShellE { SHELL_NONE, SHELL_BASH, SHELL_ZSH };

constexpr char footer[] = R"(Examples:
  . <(ved completion bash)                                for the running shell
  ved completion bash > ~/.local/share/bash-completion/completions/ved
  ved completion zsh > "${fpath[1]}/_ved")";

/// An option or argument as a shell sees it.
struct WordS {
  std::vector<std::string> names;  ///< with their dashes; none for an argument
  std::string help;
  bool takesValue = false;
  bool isFile = false;
  bool isFolder = false;
  std::vector<std::string> choices;
};

struct CommandS {
  std::string name;
  std::string help;
  std::vector<WordS> words;
};

std::string joinWords(std::vector<std::string> const& words, char const* separator = " ") {
  std::string joined;
  for (std::string const& word : words) joined += (joined.empty() ? "" : separator) + word;
  return joined;
}

/// A type name says what a value can be: see `addChoice` and `addPath`.
WordS describe(CLI::Option const& option) {
  WordS word;
  for (std::string const& name : option.get_snames()) word.names.push_back('-' + name);
  for (std::string const& name : option.get_lnames()) word.names.push_back("--" + name);
  word.help = option.get_description();
  word.takesValue = option.get_items_expected_max() > 0;
  std::string const type = getValueName(option);
  word.isFile = type == "FILE";
  word.isFolder = type == "DIR";
  if (type.find('|') != std::string::npos) word.choices = CLI::detail::split(type, '|');
  return word;
}

CommandS describe(CLI::App const& command) {
  CommandS description{command.get_name(), command.get_description(), {}};
  for (CLI::Option const* option : command.get_options()) description.words.push_back(describe(*option));
  return description;
}

std::vector<std::string> collectNames(CommandS const& command) {
  std::vector<std::string> names;
  for (WordS const& word : command.words) names.insert(names.end(), word.names.begin(), word.names.end());
  return names;
}

// ---- bash -------------------------------------------------------------------------------------------------

std::string writeBashReply(WordS const& word) {
  if (word.isFile) return "mapfile -t COMPREPLY < <(compgen -f -- \"$current\")";
  if (word.isFolder) return "mapfile -t COMPREPLY < <(compgen -d -- \"$current\")";
  return "mapfile -t COMPREPLY < <(compgen -W '" + joinWords(word.choices) + "' -- \"$current\")";
}

std::string writeBash(std::vector<CommandS> const& commands, CommandS const& program) {
  std::vector<std::string> names(commands.size());
  std::transform(commands.begin(), commands.end(), names.begin(), [](CommandS const& c) { return c.name; });
  std::string values;
  std::string words =
      "    '') words='" + joinWords(names) + ' ' + joinWords(collectNames(program)) + "' ;;\n";
  for (CommandS const& command : commands) {
    std::vector<std::string> offered = collectNames(command);
    for (WordS const& word : command.words) {
      if (word.names.empty()) {
        offered.insert(offered.end(), word.choices.begin(), word.choices.end());
        if (word.isFolder) values += "    " + command.name + ":[!-]*) folders=yes ;;\n";
      } else if (word.takesValue) {
        std::vector<std::string> patterns;
        for (std::string const& name : word.names) patterns.push_back(command.name + ':' + name);
        values += "    " + joinWords(patterns, "|") + ") " + writeBashReply(word) + "; return ;;\n";
      }
    }
    words += "    " + command.name + ") words='" + joinWords(offered) + "' ;;\n";
  }
  return R"(# Completion of ved for bash: . <(ved completion bash)
_ved() {
  local current=${COMP_WORDS[COMP_CWORD]} previous=${COMP_WORDS[COMP_CWORD-1]} command='' word words folders=''
  for word in "${COMP_WORDS[@]:1:COMP_CWORD-1}"; do
    case $word in
    )" + joinWords(names, "|") +
         R"() command=$word; break ;;
    esac
  done
  COMPREPLY=()
  case $command:$previous in
)" + values +
         R"(  esac
  case $command in
)" + words +
         R"(  esac
  if [ -n "$folders" ]; then
    mapfile -t COMPREPLY < <(compgen -d -- "$current")
  else
    mapfile -t COMPREPLY < <(compgen -W "$words" -- "$current")
  fi
}
complete -o filenames -F _ved ved
)";
}

// ---- zsh --------------------------------------------------------------------------------------------------

/// Escapes a text for single quotes in which `_arguments` itself interprets brackets and colons.
std::string escapeZsh(std::string const& text) {
  std::string out;
  for (char const c : text) {
    if (c == '[' || c == ']' || c == ':' || c == '\\') out += '\\';
    if (c == '\'') out += "'\\'";
    out += c;
  }
  return out;
}

std::string writeZshValue(WordS const& word) {
  if (word.isFile) return ":file:_files";
  if (word.isFolder) return ":folder:_files -/";
  if (!word.choices.empty()) return ":value:(" + joinWords(word.choices) + ')';
  return ":value: ";
}

std::string writeZshArguments(CommandS const& command) {
  std::string out;
  for (WordS const& word : command.words) {
    out += " \\\n        ";
    if (word.names.empty()) {
      out += "'*" + writeZshValue(word) + '\'';
      continue;
    }
    if (word.names.size() > 1) {
      out += "'(" + joinWords(word.names) + ")'{" + joinWords(word.names, ",") + "}";
    } else {
      out += word.names.front();
    }
    out += "'[" + escapeZsh(word.help) + ']' + (word.takesValue ? writeZshValue(word) : std::string()) + '\'';
  }
  return out;
}

std::string writeZsh(std::vector<CommandS> const& commands, CommandS const& program) {
  std::string names;
  std::string cases;
  for (CommandS const& command : commands) {
    names += "    '" + command.name + ':' + escapeZsh(command.help) + "'\n";
    cases += "    " + command.name + ")\n      _arguments" + writeZshArguments(command) + "\n      ;;\n";
  }
  return "#compdef ved\n\n_ved() {\n  local -a commands\n  commands=(\n" + names +
         "  )\n  if (( CURRENT == 2 )); then\n    _describe command commands\n    _arguments" +
         writeZshArguments(program) + R"(
    return
  fi
  local command=$words[2]
  shift words
  (( CURRENT-- ))
  case $command in
)" + cases +
         R"(  esac
}

# As a file of $fpath this is the function itself, else it is read once.
if [ "$funcstack[1]" = _ved ]; then
  _ved "$@"
else
  compdef _ved ved
fi
)";
}

ExitStatusE run(CLI::App const& program, ShellE shell) {
  std::vector<CommandS> commands;
  for (CLI::App const* command : program.get_subcommands([](CLI::App const*) { return true; }))
    commands.push_back(describe(*command));
  StandardOutputC output;
  CommandS const root = describe(program);
  output.write(shell == SHELL_BASH ? writeBash(commands, root) : writeZsh(commands, root));
  return output.finish() ? EXIT_STATUS_OK : EXIT_STATUS_FAILED;
}

}  // namespace

void addCompletionCommand(CLI::App& program, ActionT& action) {
  CLI::App* const command =
      program.add_subcommand("completion", "Print a script that completes words in a shell");
  auto const shell = std::make_shared<ShellE>(SHELL_NONE);
  addChoice<ShellE>(*command, "SHELL", *shell, {{"bash", SHELL_BASH}, {"zsh", SHELL_ZSH}},
                    "Shell that the script is for")
      ->required();
  command->footer(footer);
  command->callback(
      [&program, shell, &action] { action = [&program, shell] { return run(program, *shell); }; });
}

}  // namespace zolt::cli
