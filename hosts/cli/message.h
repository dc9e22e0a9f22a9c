#pragma once

#include <cstddef>
#include <string>

#include "zolt/oss/wstring.h"

namespace zolt::cli {

/// What is wrong with a text: the cause as a sentence without a full stop and, where known, the characters
/// from `begin` to `end` that cause it.
struct FaultS {
  std::string message;
  bool located = false;
  std::size_t begin = 0;
  std::size_t end = 0;
};

/// Prints "ved: …" as one line on standard error, and `advice`, a text of the program's own, on further ones.
void printMessage(std::string const& message, std::string const& advice = {});

/// Prints where (may be empty) and what is wrong and, below it, the text with a marker under the faulty part.
void printFault(std::string const& place, oss::wstring const& text, FaultS const& fault);

/// An `errno` in words.
std::string describeSystemError(int error);

}  // namespace zolt::cli
