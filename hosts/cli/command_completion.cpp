#include "hosts/cli/command_completion.h"

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

#include "hosts/cli/command_line.h"
#include "hosts/cli/options.h"
#include "hosts/cli/standard_output.h"

namespace zolt::cli {

namespace {

enum ShellE { SHELL_NONE, SHELL_BASH, SHELL_FISH, SHELL_ZSH };

constexpr char footer[] = R"(An installed ved has brought these scripts with it.

Examples:
  . <(ved completion bash)                                for the running shell
  ved completion bash > ~/.local/share/bash-completion/completions/ved
  ved completion fish > ~/.config/fish/completions/ved.fish
  ved completion zsh > "${fpath[1]}/_ved")";

std::string joinWords(std::vector<std::string> const& words, char const* separator = " ") {
  std::string joined;
  for (std::string const& word : words) joined += (joined.empty() ? "" : separator) + word;
  return joined;
}

bool isFile(WordS const& word) { return word.value == "FILE"; }
bool isFolder(WordS const& word) { return word.value == "DIR"; }

std::vector<std::string> collectNames(CommandS const& command) {
  std::vector<std::string> names;
  for (WordS const& word : command.words) names.insert(names.end(), word.names.begin(), word.names.end());
  return names;
}

// ---- bash -------------------------------------------------------------------------------------------------

std::string writeBashReply(WordS const& word) {
  if (isFile(word)) return "mapfile -t COMPREPLY < <(compgen -f -- \"$current\")";
  if (isFolder(word)) return "mapfile -t COMPREPLY < <(compgen -d -- \"$current\")";
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
        if (isFolder(word)) values += "    " + command.name + ":[!-]*) folders=yes ;;\n";
      } else if (!word.value.empty()) {
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
  if (isFile(word)) return ":file:_files";
  if (isFolder(word)) return ":folder:_files -/";
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
    out += "'[" + escapeZsh(word.help) + ']' + (word.value.empty() ? word.value : writeZshValue(word)) + '\'';
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

// ---- fish -------------------------------------------------------------------------------------------------

std::string quoteFish(std::string const& text) {
  std::string out = "'";
  for (char const c : text) {
    if (c == '\'' || c == '\\') out += '\\';
    out += c;
  }
  return out + '\'';
}

std::string writeFishWord(WordS const& word, std::string const& condition) {
  std::string out = "complete -c ved -n " + quoteFish(condition);
  for (std::string const& name : word.names)
    out += name[1] == '-' ? " -l " + name.substr(2) : " -s " + name.substr(1);
  if (isFile(word)) {
    out += " -F";
  } else if (isFolder(word)) {
    out += " -a '(__fish_complete_directories)'";
  } else if (!word.choices.empty()) {
    out += " -a " + quoteFish(joinWords(word.choices));
  }
  if (!word.names.empty() && !word.value.empty()) out += word.choices.empty() ? " -r" : " -x";
  return out + " -d " + quoteFish(word.help) + '\n';
}

std::string writeFish(ProgramS const& described) {
  std::string out = "# Completion of ved for fish: ved completion fish | source\ncomplete -c ved -f\n";
  for (WordS const& word : described.program.words) out += writeFishWord(word, "__fish_use_subcommand");
  for (CommandS const& command : described.commands) {
    out += "complete -c ved -n __fish_use_subcommand -a " + command.name + " -d " + quoteFish(command.help) +
           '\n';
    for (WordS const& word : command.words) {
      // An argument that can be anything has nothing to complete.
      bool const isFree = word.names.empty() && word.choices.empty() && !isFile(word) && !isFolder(word);
      if (!isFree) out += writeFishWord(word, "__fish_seen_subcommand_from " + command.name);
    }
  }
  return out;
}

ExitStatusE run(ProgramS const& described, ShellE shell) {
  StandardOutputC output;
  output.write(shell == SHELL_BASH   ? writeBash(described.commands, described.program)
               : shell == SHELL_FISH ? writeFish(described)
                                     : writeZsh(described.commands, described.program));
  return output.finish() ? EXIT_STATUS_OK : EXIT_STATUS_FAILED;
}

}  // namespace

void addCompletionCommand(CLI::App& program, ActionT& action) {
  CLI::App& command =
      addCommand(program, "completion", "Print a script that completes words in a shell", footer);
  auto const shell = std::make_shared<ShellE>(SHELL_NONE);
  require(addChoice<ShellE>(command, "SHELL", *shell,
                            {{"bash", SHELL_BASH}, {"fish", SHELL_FISH}, {"zsh", SHELL_ZSH}},
                            "Shell that the script is for"));
  onChosen(command, [&program, shell, &action] {
    action = [&program, shell] { return run(describe(program), *shell); };
  });
}

}  // namespace zolt::cli
