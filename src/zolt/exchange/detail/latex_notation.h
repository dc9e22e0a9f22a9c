#pragma once

#include <string>
#include <string_view>
#include <utility>

#include "zolt/exchange/detail/notation.h"

namespace zolt::exchange::detail {

/// The shape in which LaTeX has an operator.
enum LatexKindE {
  LATEX_INFIX,
  LATEX_PREFIX,
  LATEX_POSTFIX,
  LATEX_CONSTANT,
  LATEX_FUNCTION,    ///< a name before its argument
  LATEX_INDEXED,     ///< a function whose last operand is the index of its name: "\log_{#2}"
  LATEX_COMMAND,     ///< a command with its operands in braces, an optional one in brackets before:
                     ///< "\frac{#1}{#2}"
  LATEX_BRACKETS,    ///< between delimiters: "\lfloor #1\rfloor"
  LATEX_RANGE,       ///< a sign with bounds before its operand: "\sum_{#1=#2}^{#3} #4"
  LATEX_LIMIT,       ///< "\lim_{#2\to #3} #1"
  LATEX_INTEGRAL,    ///< with both bounds
  LATEX_PRIMITIVE,   ///< an integral without bounds
  LATEX_DERIVATIVE,  ///< the sign before the operand and the variable: "\mathrm{d}"
  LATEX_WHERE,
  LATEX_OVER,      ///< a sign between everything before and after it in braces: "{a \over b}"
  LATEX_TABLE,     ///< the environment of a table, which is the function of the rows: "{bmatrix}"
  LATEX_SET,       ///< operands in braces that are signs
  LATEX_INTERVAL,  ///< two operands between brackets of any kind
  LATEX_INDEX      ///< operands below the first one
};

/// How LaTeX writes an operator of the expression library: the row of this table for an operator.
struct LatexNotationS {
  std::u16string_view name;  ///< the name in the expression library
  LatexKindE kind;
  unsigned long arity;  ///< 0: one or more
  /// A sign or a command; for commands and delimiters the whole form, "#1" being the first operand. Empty:
  /// the row is for reading only.
  std::u16string_view written;
  /// What else is read as it, with a blank after each but the last. Words without a backslash are names as in
  /// "\operatorname{arsinh}".
  std::u16string_view read = {};
  std::u16string_view inverse = {};  ///< the operator that "^{-1}" after the name means
  RuleE rule = RULE_ATOM;            ///< of the whole; of its operands for signs
  RuleE leftRule = RULE_ATOM;
  RuleE rightRule = RULE_ATOM;
};

/// The row that an operator with so many operands is written with; null when there is none.
LatexNotationS const* findLatex(std::u16string_view name, unsigned long numOperands);
/// The first row of that kind; null when there is none.
LatexNotationS const* findLatex(LatexKindE kind);

struct LatexReadingS {
  std::u16string_view text;
  LatexNotationS const* notation;
};

using LatexReadingsT = std::pair<LatexReadingS const*, LatexReadingS const*>;

/// The meanings of a command, a sign or a name, from the first to before the second; none: both are equal.
LatexReadingsT findLatexReadings(std::u16string_view text);
/// The meaning of that kind; null when there is none.
LatexNotationS const* findLatexReading(std::u16string_view text, LatexKindE kind);
/// The command with an operand in brackets before the others; null when this one has no such form.
LatexNotationS const* findLatexWithOption(std::u16string_view command);
/// The function with this name and number of operands; null when there is none.
LatexNotationS const* findLatexFunction(std::u16string_view text, unsigned long numOperands);

/// The letter that a command (without its backslash) or a name such as "alpha" means; empty for any other.
std::u16string_view findLatexLetter(std::u16string_view command);
/// The command (without its backslash) for a letter that is not ASCII; empty when there is none.
std::u16string_view findLetterCommand(std::u16string_view letter);
/// The letter with double strokes of a capital, ℝ for R, and the other way round; U+0000 when there is none.
char16_t toDoubleStruck(char16_t letter);
char16_t fromDoubleStruck(char16_t letter);

/// The sign after an operand that is raised and that `text` begins with, as degrees are.
LatexNotationS const* findRaisedSign(std::u16string_view text);
/// The row of the function between these brackets; null when they only group.
LatexNotationS const* findLatexBrackets(char16_t open);
/// The bracket that closes `open`.
char16_t findClosing(char16_t open);

/// The known command (with its backslash) that is written most like this one, empty when none is like it.
std::u16string findNearestCommand(std::u16string_view command);

}  // namespace zolt::exchange::detail
