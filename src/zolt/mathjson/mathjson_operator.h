#pragma once

#include <vector>

#include "zolt/oss/wstring.h"

namespace zolt::mathjson {

/// How MathJSON writes and reads an operator that a host adds. Without it, the name in expressions is the
/// name in MathJSON.
struct MathJsonOperatorS {
  oss::wstring name;               ///< in expressions
  unsigned long arity;             ///< 0: a constant
  oss::wstring written;            ///< "Element"
  std::vector<oss::wstring> read;  ///< further names
};

/// Adds it for the whole process, for everything that is read or written from now on; the last one with a
/// name, or with something that is read, wins over earlier ones and over the standard operators. Call it
/// before other threads read or write MathJSON.
void registerMathJsonOperator(MathJsonOperatorS op);

}  // namespace zolt::mathjson
