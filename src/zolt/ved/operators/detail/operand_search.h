// Internal to operators/: finding the operand beside the caret that a fraction takes.
#pragma once

namespace zolt::math::ved {
class Node4C;
}

namespace zolt::math::ved::detail {

/// The stretch from `near` (where the caret stands once the blanks beside it are gone) to `far`. Not found:
/// `far` is null, or the same place as `near`.
struct OperandStretchS {
  Node4C* near = nullptr;
  unsigned int nearPos = 0;
  Node4C* far = nullptr;
  unsigned int farPos = 0;
  bool group = false;  ///< a bracketed group, perhaps with more behind it

  bool isFound() const { return far && (far != near || farPos != nearPos); }
};

/// The operand that ends at the caret: a name or number with its exponents and factorials, a construct, a
/// bracketed group or a function call. Nothing is changed.
OperandStretchS findLeftOperand(Node4C* caretNode, unsigned int caretPos);

/// The operand that starts at the caret: the same, with one exponent.
OperandStretchS findRightOperand(Node4C* caretNode, unsigned int caretPos);

}  // namespace zolt::math::ved::detail
