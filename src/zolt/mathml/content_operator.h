#pragma once

#include "zolt/oss/wstring.h"

namespace zolt::mathml {

/// How content MathML writes and reads an operator that a host adds. A function needs none of this: without
/// it, it is a `ci` or `csymbol` of its name before its operands. Presentation MathML has the row for LaTeX.
struct ContentOperatorS {
  oss::wstring name;        ///< in expressions
  unsigned long arity;      ///< 0: a constant
  oss::wstring element;     ///< "vectorproduct", a name in XML; with a dictionary, the symbol in it: "rank"
  oss::wstring dictionary;  ///< "linalg4", where `csymbol` has it; empty: it has an element of its own
};

/// Adds it for the whole process, for everything that is read or written from now on; the last one with a
/// name or an element, and that number of operands, wins over earlier ones and over the standard operators.
/// Call it before other threads read or write MathML.
void registerContentOperator(ContentOperatorS op);

}  // namespace zolt::mathml
