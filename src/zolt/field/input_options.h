#pragma once

#include <utility>
#include <vector>

#include "zolt/oss/wstring.h"

namespace zolt::field {

using oss::wstring;

/// Names of functions that many engines know: "max", "gcd", "arcsin", …
std::vector<wstring> const& getCommonNames();

/// What a field does beyond inserting typed characters at the caret. Each rule can be switched off, and one
/// undo takes back what a rule did.
struct InputOptionsS {
  /// "sqrt(" becomes the construct, "log(x," the logarithm to a base.
  bool constructs = true;
  /// "alpha" and "pi" become the letters once the name is complete; "<=" becomes "≤".
  bool letters = true;
  /// A blank or relation typed at the end of an exponent or fraction leaves it; a closing bracket or comma
  /// typed at the end of a construct's row leaves the construct or the row.
  bool leaving = true;
  /// A sign between operands that is typed at the end of a complete exponent leaves it, as in "x^2+1" and
  /// "x^2/2"; a letter or digit goes on with it. A selection that
  /// is raised becomes the base.
  bool exponents = true;
  /// The same at the end of a denominator, as in "1/2+1/3"; and "/" divides the whole product before it, as
  /// in "n*(n+1)/2".
  bool fractions = true;
  /// Brackets that only hold an exponent or a denominator together vanish when they are closed, and the caret
  /// leaves it, as in "x^(n+1)". They come back when what is typed next applies to the group.
  bool grouping = true;
  /// What is pasted, dropped or put in from a palette, and what Backspace frees from an exponent, never joins
  /// a name or number beside it: a blank or a times sign comes between.
  bool separation = true;
  /// A backslash opens a list that completes the name that is typed after it.
  bool completion = true;
  /// Names are also suggested, after a pause, for the letters that are typed without a backslash.
  bool suggestions = true;
  /// The decimal sign is shown and typed as ",", and the sign between arguments as ";".
  bool decimalComma = false;
  /// A typed name is a product of its letters once it is complete, as in "4ac", but for functions, Greek
  /// names and `names`. What is pasted or shown by a program keeps its names.
  bool singleLetters = false;
  std::vector<wstring> names = getCommonNames();
  /// When the formula is asked for, "2x" and "(a+b)c" are read as products, and "3 1/2" as the sum 3 + 1/2.
  bool impliedProducts = true;
  /// "sin x" and "sin²x" are read as sin(x) and (sin(x))² when the formula is asked for.
  bool impliedBrackets = true;
};

/// The character that a typed `c` means: signs that look alike become one sign, full-width forms become
/// narrow, blanks of any width become " ", and a decimal comma becomes ".".
char16_t foldTyped(char16_t c, InputOptionsS const& options);

/// Sets an option by the name that scripts and settings use for it, such as "decimal-comma". False when there
/// is no such option.
bool setOption(InputOptionsS& options, wstring const& name, bool on);

/// The names of the options that differ, each with its value in `to`.
std::vector<std::pair<wstring, bool>> listChanges(InputOptionsS const& from, InputOptionsS const& to);

}  // namespace zolt::field
