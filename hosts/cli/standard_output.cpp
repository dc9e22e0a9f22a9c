#include "hosts/cli/standard_output.h"

#include <cerrno>
#include <cstdio>

#include "hosts/cli/message.h"

namespace zolt::cli {

void StandardOutputC::write(std::string_view bytes) {
  if (isGood() && std::fwrite(bytes.data(), 1, bytes.size(), stdout) != bytes.size()) error_ = errno;
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
