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
  PLAIN_ALONE,    ///< a constant, as "pi"
  PLAIN_CALL      ///< a function by another name than its own, or with its arguments in another form
};

/// How plain text writes and reads an operator that a host adds. A function by its own name needs none of
/// this.
struct PlainOperatorS {
  wstring name;  ///< in expressions
  PlainPlaceE place;
  int precedence;  ///< that of the editor's operator (`ved::OperatorBC`): larger binds looser; of signs only
  /// With the blanks around it: " in ". Of a call its name, "prod", and perhaps what the arguments in
  /// brackets are made of: "lim(#2->#3,#1)", where #2 is the second argument and signs are between two of
  /// them; in "lim(#2->#3#4,#1)" #4 is a "+" for 1 or a "-" for −1. A call whose arguments have not that form
  /// is one by the name that is written.
  wstring written;
  /// Names, and signs of one to three characters: "in", "\u2208". An operator between or after operands that
  /// has both is shown as a sign, and its name is a variable where no operand is before it. Of a call, "_" is
  /// an underscore between a name, the first argument, and the others in brackets: "a_(i)".
  std::vector<wstring> read;
  bool isName =
      false;  ///< before one operand: where none follows, the sign is a name by itself, as ∇ in "∇*F"
  unsigned long arity =
      0;  ///< of calls: the number of arguments; calls with other numbers may share the name
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

/// What some formulas between brackets mean, in plain text: a set, an interval.
struct PlainListS {
  wstring name;                ///< of the function in expressions
  char16_t open;               ///< "(", "[" or "{", or "]" as in "]a,b["
  char16_t close;              ///< ")", "]" or "}", or "["; it need not match
  unsigned long count;         ///< how many formulas there are, with commas between them; 0: one or more
  std::vector<wstring> added;  ///< further arguments, numbers: whether the ends belong to an interval
};

/// The same for it. Of what is between brackets that fits no list, one formula is grouped by brackets that
/// match, and more are an error.
void registerPlainList(PlainListS list);

/// The same for the function of one operand that is between two bars on each side, "||x||"; without one these
/// are an absolute value of an absolute value.
void registerPlainDoubleBars(wstring name);

}  // namespace zolt::exchange
