#include <CLI/CLI.hpp>
#include <csignal>
#include <cstdio>
#include <exception>
#include <new>
#include <sstream>
#include <string>
#include <vector>

#include "hosts/cli/command_completion.h"
#include "hosts/cli/command_convert.h"
#include "hosts/cli/command_gallery.h"
#include "hosts/cli/command_render.h"
#include "hosts/cli/command_replay.h"
#include "hosts/cli/message.h"
#include "hosts/cli/options.h"
#include "hosts/cli/standard_output.h"
#include "zolt/algexpr/cas_session.h"
#include "zolt/catalogue/standard_operators.h"
#include "zolt/ved/operators/operator_list_repository.h"

using namespace zolt;

namespace {

constexpr char footer[] = R"(Examples:
  ved render 'sqrt(x^2+1)/2'                   draw a formula into formula.svg
  ved render -o q.png 'int(0,1,x^2,x)'         or into a PNG picture
  ved convert --to prefix '(a+b)/2'            what the algebra engine gets: /(+(a,b),2)
  ved convert --to plain --from prefix < f     and back, a line for a line
  ved gallery out                              look at everything that there is
  . <(ved completion bash)                     complete words with the Tab key

Exit status: 0 all is well, 1 an expression is wrong or a file cannot be read or written, 2 wrong usage.)";

std::vector<std::string> getWords(int argc, char** argv) {
  // The parser takes words from the end of the list.
  std::vector<std::string> words;
  for (int i = argc - 1; i > 0; --i) words.push_back(cli::protectWord(argv[i]));
  return words;
}

/// Says what is wrong with the command line, and where its correct form is described.
void complain(CLI::ParseError const& error, CLI::App const& program, std::string const& firstWord) {
  auto const commands = program.get_subcommands();
  std::string advice;
  if (dynamic_cast<CLI::ExtrasError const*>(&error) && !commands.empty())
    advice = "An expression that begins with \"-\" needs \"--\" before it.\n";
  advice += "Try: ved " + (commands.empty() ? "" : commands.front()->get_name() + ' ') + "--help";
  bool const isUnknown = commands.empty() && firstWord[0] != '-';
  cli::printMessage(isUnknown ? "there is no command \"" + firstWord + '"' : error.what(), advice);
}

int run(int argc, char** argv) {
  CLI::App program("Formulas from text to pictures and between notations", "ved");
  program.set_version_flag("--version", "ved " ZOLT_VERSION, "Print the version");
  program.set_help_flag("-h,--help", "Print this help");
  program.formatter(cli::makeHelpFormatter());
  program.require_subcommand(1);
  program.footer(footer);
  cli::ActionT action;
  cli::addRenderCommand(program, action);
  cli::addConvertCommand(program, action);
  cli::addGalleryCommand(program, action);
  cli::addReplayCommand(program, action);
  cli::addCompletionCommand(program, action);

  if (argc < 2) {
    std::fputs(program.help().c_str(), stderr);
    return cli::EXIT_STATUS_USAGE;
  }
  try {
    program.parse(getWords(argc, argv));
  } catch (CLI::Success const& request) {
    // The request was for help or the version.
    std::ostringstream text;
    program.exit(request, text);
    cli::StandardOutputC output;
    output.write(text.str());
    return output.finish() ? cli::EXIT_STATUS_OK : cli::EXIT_STATUS_FAILED;
  } catch (CLI::ParseError const& error) {
    complain(error, program, argv[1]);
    return cli::EXIT_STATUS_USAGE;
  }
  auto const session = math::algexpr::CASSessionBC::getSession();
  catalogue::registerStandardOperators(*math::ved::OperatorListRepositoryC::lookup(session->getEngine()));
  return action();
}

}  // namespace

int main(int argc, char** argv) {
#ifdef SIGXFSZ
  std::signal(SIGXFSZ, SIG_IGN);  // A file that becomes too large is told about like any other failure.
#endif
  try {
    return run(argc, argv);
  } catch (std::bad_alloc const&) {
    cli::printMessage("out of memory");
  } catch (std::exception const& error) {
    cli::printMessage(error.what());
  }
  return cli::EXIT_STATUS_FAILED;
}
