#pragma once

#include <utility>
#include <vector>

#include "zolt/oss/wstring.h"

namespace zolt::field {

using oss::wstring;

/// What a field does beyond putting typed characters where the caret is. Each can be switched off; whatever a
/// rule did is taken back by one undo.
struct InputOptionsS {
  /// "sqrt(" becomes the construct, "log(x," the logarithm to a base.
  bool constructs = true;
  /// "alpha" and "pi" become the letters once the name is complete; "<=" becomes "≤".
  bool letters = true;
  /// A blank or relation at the end of an exponent or fraction leaves it, a closing bracket or comma at the
  /// end of a construct's row the construct or the row.
  bool leaving = true;
  /// The decimal sign is shown and typed as ",", and what stands between arguments as ";".
  bool decimalComma = false;
  /// "2x" and "(a+b)c" are read as products when the formula is asked for.
  bool impliedProducts = true;
};

/// The character that a typed `c` stands for: signs that look alike are one, full-width forms are narrow,
/// blanks of any width are " ", a decimal comma is ".".
char16_t foldTyped(char16_t c, InputOptionsS const& options);

/// Sets an option by the name that scripts and settings have for it, such as "decimal-comma". False when
/// there is none of that name.
bool setOption(InputOptionsS& options, wstring const& name, bool on);

/// The names of the options that differ, each with what it is in `to`.
std::vector<std::pair<wstring, bool>> listChanges(InputOptionsS const& from, InputOptionsS const& to);

}  // namespace zolt::field
