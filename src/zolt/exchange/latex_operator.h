#pragma once

#include <vector>

#include "zolt/oss/wstring.h"

namespace zolt::exchange {

using oss::wstring;

/// Where LaTeX writes an operator.
enum LatexPlaceE {
  LATEX_BEFORE,    ///< before one operand, as "\lnot"
  LATEX_BETWEEN,   ///< between two operands, read from the left, as "\leq"
  LATEX_AFTER,     ///< after one operand, as "!" or "^{\circ}"
  LATEX_ALONE,     ///< a constant, as "\pi"
  LATEX_ARGUMENT,  ///< a function's name before its argument, as "\sin"
  LATEX_BRACES     ///< a command with its operands in braces, as "\frac"
};

/// How LaTeX writes and reads an operator that a host adds. A function of any number of arguments needs none
/// of this: without it, it is "\operatorname{f}(x, y)".
struct LatexOperatorS {
  wstring name;  ///< in expressions
  LatexPlaceE place;
  int precedence;  ///< that of the editor's operator (`ved::OperatorBC`), larger binds looser; of signs only
  unsigned long arity;  ///< of functions and commands; of a function, 0 means one or more
  /// A sign or command; after an operand perhaps raised, "^{\dagger}"; with braces the whole form, the first
  /// operand being "#1": "\binom{#1}{#2}", "\root[#2]{#1}".
  wstring written;
  std::vector<wstring>
      read;  ///< further commands, signs of one character, and names as in "\operatorname{…}"
};

/// Adds it for the whole process, for everything that is read or written from now on; the last one with a
/// name, or with something that is read, wins over earlier ones and over the standard operators. Call it
/// before other threads read or write LaTeX.
void registerLatexOperator(LatexOperatorS op);

}  // namespace zolt::exchange
