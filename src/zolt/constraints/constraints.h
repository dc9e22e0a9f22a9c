#pragma once

#include <set>
#include <vector>

#include "zolt/algexpr/constraints.h"

/// Constraints that hosts use as they are, and put together. Each says in a sentence why it refuses a formula
/// (`ConstraintsBC::explain`). None recurses with the depth of an expression.
namespace zolt::constraints {

using oss::PointerTC;
using oss::wstring;
using ConstraintsT = PointerTC<math::algexpr::ConstraintsBC>;

/// A name is typed letter by letter.
enum NamesE {
  NAMES_BEGUN,  ///< the beginning of an allowed name, or of a function's, is accepted: for a field
  NAMES_WHOLE   ///< it is not: for the formula when it is done
};

/// No other names of variables and functions than these; the functions and constants of the library are
/// always allowed.
ConstraintsT onlyNames(std::set<wstring> names, NamesE which = NAMES_BEGUN);
/// One number, perhaps with a sign and in brackets.
ConstraintsT onlyNumber();
/// A polynomial in a variable: sums, products and whole powers of it. What is without it may be anything that
/// is a number, so coefficients may have names.
ConstraintsT onlyPolynomial(wstring variable);
/// At most so many numbers, names, operations and functions.
ConstraintsT atMostNodes(unsigned long most);
/// Whatever all of these accept; the sentence is that of the first one that does not.
ConstraintsT allOf(std::vector<ConstraintsT> parts);
/// Whatever one of these accepts.
ConstraintsT anyOf(std::vector<ConstraintsT> parts);

/// Constraints from text, for settings and forms: "number", "names x y", "polynomial x", "nodes 50"; "or"
/// between alternatives, ";" between what must all hold: `number or names x y; nodes 50`. Null, with `*fault`
/// the first character of what is not understood, for anything else; blank text is null without a fault,
/// which then is the text's length.
ConstraintsT fromText(wstring const& text, std::size_t* fault);

}  // namespace zolt::constraints
