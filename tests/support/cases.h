#pragma once

#include <string>
#include <vector>

#include "zolt/oss/utf8.h"
#include "zolt/oss/wstring.h"

namespace zolt::tests {

/// A line `input ⇒ expected` of a case file; empty lines and lines that start with "# " are left out.
struct CaseS {
  std::string where;  ///< file name and line, for messages
  std::string input;
  std::string expected;
  bool isBoth;  ///< `input ⇔ expected`
};

/// Reads a case file. A file that is missing, empty or has a line without an arrow fails the running test.
std::vector<CaseS> readCases(std::string const& path);

/// UTF-8, in which `\0`, `\t` and `\uXXXX` (four hexadecimal digits, unpaired surrogates too) stand for one
/// character.
oss::wstring toText(std::string const& utf8);
// UTF-8 unchanged: tree notation and scripts have escapes of their own.
using oss::fromUtf8;
using oss::toUtf8;

/// The parts of `text` between the separators, of which there is one more than there are separators.
std::vector<std::string> split(std::string const& text, std::string const& separator);

/// `text` so many times.
oss::wstring repeat(unsigned long count, oss::wstring const& text);
/// `inside` between so many `before` and as many `after`.
oss::wstring nest(unsigned long count, oss::wstring const& before, oss::wstring const& inside,
                  oss::wstring const& after);

}  // namespace zolt::tests
