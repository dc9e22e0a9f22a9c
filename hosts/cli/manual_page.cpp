#include "hosts/cli/manual_page.h"

#include <sstream>

#include "hosts/cli/command_line.h"

namespace zolt::cli {

namespace {

constexpr char environment[] = R"(.SH ENVIRONMENT
.TP
.B ZOLT_FONT_DIR
A folder with the fonts of formulas, searched before those of the system.
.SH SEE ALSO
.BR ved\-desktop ,
a program with a window for sheets of formulas, where it is installed.
)";

/// A text as it is, on a line of its own: no sign in it is an instruction, and hyphens can be copied.
std::string escape(std::string const& text) {
  std::string out;
  for (char const c : text) {
    if (c == '-' || c == '\\') out += '\\';
    out += c == '\\' ? 'e' : c;
  }
  return !out.empty() && (out[0] == '.' || out[0] == '\'') ? "\\&" + out : out;
}

/// Paragraphs; indented lines keep their form.
std::string writeParagraphs(std::string const& text) {
  std::string out;
  std::istringstream lines(text);
  bool isExample = false;
  for (std::string line; std::getline(lines, line);) {
    bool const isIndented = line.compare(0, 2, "  ") == 0;
    if (isIndented != isExample) out += isIndented ? ".PP\n.nf\n" : ".fi\n";
    isExample = isIndented;
    out += line.empty() ? ".PP\n" : escape(isIndented ? line.substr(2) : line) + '\n';
  }
  return out + (isExample ? ".fi\n" : "");
}

std::string writeWord(WordS const& word) {
  std::string head;
  for (std::string const& name : word.names)
    head += (head.empty() ? "\\fB" : ", \\fB") + escape(name) + "\\fR";
  if (!word.value.empty()) head += (head.empty() ? "\\fI" : " \\fI") + escape(word.value) + "\\fR";
  std::string const initial = word.initial.empty() ? "" : " [" + word.initial + ']';
  return ".TP\n" + head + '\n' + escape(word.help + initial) + '\n';
}

std::string writeWords(CommandS const& command) {
  std::string out;
  for (WordS const& word : command.words) out += writeWord(word);
  return out;
}

}  // namespace

std::string writeManualPage(ProgramS const& described) {
  std::string out = ".TH VED 1 \"\" \"ved " ZOLT_VERSION "\" \"User Commands\"\n.SH NAME\nved \\- ";
  out += escape(described.program.help) + "\n.SH SYNOPSIS\n";
  for (CommandS const& command : described.commands)
    out += (&command == &described.commands.front() ? "" : ".br\n") + escape(command.usage) + '\n';
  out += ".SH OPTIONS\n" + writeWords(described.program) + ".SH COMMANDS\n";
  for (CommandS const& command : described.commands)
    out += ".SS " + command.name + '\n' + escape(command.help) + ".\n" + writeWords(command) + ".PP\n" +
           writeParagraphs(command.footer);
  return out + ".SH NOTES\n" + writeParagraphs(described.program.footer) + environment;
}

}  // namespace zolt::cli
