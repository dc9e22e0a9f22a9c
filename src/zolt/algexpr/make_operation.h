#pragma once

#include <vector>

#include "zolt/algexpr/node.h"

namespace zolt::math::algexpr {

// For whoever makes expressions that a person will see and edit: importers, adapters of algebra engines. The
// textbook form writes no brackets around a power, so a power of a power, say, would be read back as another
// expression than was meant. These makers put `_quietpos`, the brackets that a person types, where that would
// happen, and nowhere else. Each answers null when an operand is null or missing.

/// `base` to the `exponent`. Guards a base that is a power, or that a person would read differently with an
/// exponent after it (a fraction, an integral, a qualified expression), and the exponents "r" and "o", which
/// in textbook form mark an angle's unit.
[[nodiscard]] PointerTC<NodeABC> makePower(PointerTC<NodeABC> base, PointerTC<NodeABC> exponent);

/// Makes the makers of powers and factorials guard functions of this name, too, as a host's own integral is.
/// For the whole process, before other threads make expressions. `ved::OperatorListC::add` does it for
/// constructs that say so.
void guardBeforeExponent(wstring const& name);

/// Makes `makeOperation` guard the operand of a sign of this name, which comes after it, as that of a
/// factorial. For the whole process, as above; `ved::OperatorListC::add` does it.
void guardBeforeSign(wstring const& name);

/// `operand`!. Guards what `makePower` guards as a base, and a negative number.
[[nodiscard]] PointerTC<NodeABC> makeFactorial(PointerTC<NodeABC> operand);

/// Whether the operand begins with a sign, so that it has brackets in a textbook after another sign: a
/// negative number, or "_neg" or "_pos" of something.
[[nodiscard]] bool beginsWithSign(NodeABC const& operand);

/// Any operation by its core name: "^" and "!" as above, "_rad" and "_deg" guard like a power's base, "+",
/// "*", "and" and "or" of several operands become binary ones nested to the left (of one operand, the operand
/// itself). Signs guard an operand after them that begins with a sign. All else is `makeFunction`.
[[nodiscard]] PointerTC<NodeABC> makeOperation(wstring const& name, std::vector<PointerTC<NodeABC>> operands);

}  // namespace zolt::math::algexpr
