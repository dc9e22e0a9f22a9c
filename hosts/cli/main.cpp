#include <csignal>
#include <exception>
#include <new>

#include "hosts/cli/command_completion.h"
#include "hosts/cli/command_convert.h"
#include "hosts/cli/command_eval.h"
#include "hosts/cli/command_gallery.h"
#include "hosts/cli/command_help.h"
#include "hosts/cli/command_line.h"
#include "hosts/cli/command_render.h"
#include "hosts/cli/command_replay.h"
#include "hosts/cli/message.h"

using namespace zolt;

namespace {

constexpr char footer[] = R"(Examples:
  ved render 'sqrt(x^2+1)/2'                   draw a formula into formula.svg
  ved render -o q.png 'int(0,1,x^2,x)'         or into a PNG picture
  ved convert --to prefix '(a+b)/2'            what the algebra engine gets: /(+(a,b),2)
  ved convert --to plain --from prefix < f     and back, a line for a line
  ved eval --numeric 'sqrt(2)+1/3'             compute
  ved gallery out                              look at everything that there is
  . <(ved completion bash)                     complete words with the Tab key

Exit status: 0 all is well, 1 an expression is wrong or a file cannot be read or written, 2 wrong usage.)";

int run(int argc, char** argv) {
  return cli::runCommandLine(argc, argv, footer, [](CLI::App& program, cli::ActionT& action) {
    cli::addRenderCommand(program, action);
    cli::addConvertCommand(program, action);
    cli::addEvalCommand(program, action);
    cli::addGalleryCommand(program, action);
    cli::addReplayCommand(program, action);
    cli::addCompletionCommand(program, action);
    cli::addHelpCommand(program, action);
  });
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
