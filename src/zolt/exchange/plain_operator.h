#pragma once

#include <vector>

#include "zolt/oss/wstring.h"

namespace zolt::exchange {

using oss::wstring;

/// Where plain text writes an operator.
enum PlainPlaceE {
  PLAIN_BEFORE,   ///< before one operand, as "not"
  PLAIN_BETWEEN,  ///< between two operands, read from the left, as "<"
  PLAIN_AFTER,    ///< after one operand, as "!"; it binds as tightly as that
  PLAIN_ALONE     ///< a constant, as "pi"
};

/// How plain text writes and reads an operator that a host adds. A function by name needs none of this.
struct PlainOperatorS {
  wstring name;  ///< in expressions
  PlainPlaceE place;
  int precedence;             ///< that of the editor's operator (`ved::OperatorBC`): larger binds looser
  wstring written;            ///< with the blanks around it: " in "
  std::vector<wstring> read;  ///< names, and signs of one to three characters: "in", "\u2208"
  bool isName =
      false;  ///< before one operand: where none follows, the sign is a name by itself, as ∇ in "∇*F"
};

/// Adds it for the whole process, for every text that is read or written from now on; the last one with a
/// name, or with something that is read, wins over earlier ones and over the standard operators. Call it
/// before other threads read or write plain text.
void registerPlainOperator(PlainOperatorS op);

/// A function whose arguments are lists, the rows of a table: matrix(list(a,b),list(c,d)).
struct PlainTableS {
  wstring name;  ///< in expressions
  /// The brackets that stand for the name, as in "[a,b;c,d]"; U+0000: it is a call, "det(a,b;c,d)".
  char16_t open = u'\0';
  char16_t close = u'\0';
};

/// Adds it for the whole process, as `registerPlainOperator` does. From then on ";" ends a row there; one
/// after the last row, which a single row needs, changes nothing.
void registerPlainTable(PlainTableS table);

}  // namespace zolt::exchange
