#include "hosts/cli/standard_output.h"

#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "hosts/cli/message.h"
#include "hosts/cli/utf8_text.h"

namespace zolt::cli {

void StandardOutputC::write(std::string_view bytes) {
  if (isGood() && std::fwrite(bytes.data(), 1, bytes.size(), stdout) != bytes.size()) error_ = errno;
}

void StandardOutputC::writeNames(std::string const& line) {
  write((isatty(STDOUT_FILENO) != 0 ? toShown(line) : line) + '\n');
}

void StandardOutputC::flush() {
  if (isGood() && std::fflush(stdout) != 0) error_ = errno;
}

bool StandardOutputC::finish() {
  flush();
  if (!isGood()) printMessage("cannot write to standard output: " + describeSystemError(error_));
  return isGood();
}

}  // namespace zolt::cli
