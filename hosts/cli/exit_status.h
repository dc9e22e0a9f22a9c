#pragma once

namespace zolt::cli {

enum ExitStatusE : int {
  EXIT_STATUS_OK = 0,
  EXIT_STATUS_FAILED = 1,  ///< an expression was wrong, or a file could not be read or written
  EXIT_STATUS_USAGE = 2    ///< the command line was wrong; nothing was done
};

}  // namespace zolt::cli
