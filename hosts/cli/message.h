#pragma once

#include <cstddef>
#include <string>

#include "zolt/oss/wstring.h"

namespace zolt::cli {

/// What is wrong with a text: the cause as a sentence without a full stop and, when it can be told, the
/// characters from `begin` to `end` that are to blame.
struct FaultS {
  std::string message;
  bool located = false;
  std::size_t begin = 0;
  std::size_t end = 0;
};

/// Prints "ved: …" as a line on standard error.
void printMessage(std::string const& message);

/// Prints where (empty: nothing to say) and what is wrong, below it the text and a marker under its faulty
/// part.
void printFault(std::string const& place, oss::wstring const& text, FaultS const& fault);

/// An `errno` in words.
std::string describeSystemError(int error);

}  // namespace zolt::cli
