#pragma once

#include <string_view>

#include "zolt/oss/wstring.h"

namespace zolt::mathjson::detail {

using oss::wstring;

/// In which order MathJSON has the operands of a function.
enum JsonShapeE {
  JSON_PLAIN,       ///< as the expression
  JSON_CHAIN,       ///< two, and more of them lean to the left
  JSON_CONSTANT,    ///< none: a symbol
  JSON_READ_AS,     ///< read only: the symbol or the function is that prefix text, "#" being the operand
  JSON_SUM,         ///< ["Sum", f, ["Limits", "k", 1, "n"]]
  JSON_INTEGRAL,    ///< ["Integrate", f, ["Limits", "x", 0, 1]]
  JSON_PRIMITIVE,   ///< ["Integrate", f, "x"]
  JSON_LIMIT,       ///< ["Limit", ["Function", f, "x"], 0], perhaps with a side
  JSON_WHERE,       ///< ["EvaluateAt", ["Function", f, "x"], 3]
  JSON_DERIVATIVE,  ///< ["D", f, "x"]
  JSON_ORDER,       ///< ["D", f, ["Tuple", "x", "n"]]
  JSON_MATRIX,      ///< ["Matrix", ["List", ["List", 1, 2], …]]
  JSON_ROWS,        ///< ["Determinant", ["Matrix", …]]
  JSON_CASES,       ///< ["Which", condition, value, …]
  JSON_INTERVAL     ///< ["Interval", ["Open", 0], 1]
};

/// How MathJSON has an operator of the expression library.
struct JsonRowS {
  std::u16string_view name;  ///< in expressions
  JsonShapeE shape;
  unsigned long arity;            ///< 0: one or more
  std::u16string_view written;    ///< empty: the row is for reading only
  std::u16string_view read = {};  ///< what else is read as it, with a blank after each but the last
};

/// The row that an operator with so many operands is written with; null when there is none.
JsonRowS const* findJson(std::u16string_view name, unsigned long numOperands);
/// The rows of a name in MathJSON, one after the other: the first, and the next one after a row. Null when
/// there are no more.
JsonRowS const* findJsonReading(std::u16string_view text, JsonRowS const* after = nullptr);

/// Before a name that would be read as something else.
constexpr std::u16string_view verbatim_prefix = u"zolt:";

/// Whether the name needs the prefix.
bool needsJsonPrefix(std::u16string_view name);

}  // namespace zolt::mathjson::detail
