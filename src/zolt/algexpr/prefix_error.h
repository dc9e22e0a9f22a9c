#pragma once

namespace zolt::math::algexpr {

/// Why prefix text was refused.
enum PrefixErrorE {
  PREFIX_ERROR_NONE = 0,
  PREFIX_ERROR_MISSING_OPERAND,  ///< nothing where a name or number is required: empty text, "f()", "f(a,)",
                                 ///< "(a)"
  PREFIX_ERROR_BAD_NUMBER,       ///< starts like a number but is not one, or is a number with arguments
  PREFIX_ERROR_BAD_CHARACTER,    ///< a grave accent or a control character
  PREFIX_ERROR_NOT_CLOSED,       ///< the text ends inside brackets
  PREFIX_ERROR_MISSING_COMMA,    ///< an argument is followed by neither "," nor ")"
  PREFIX_ERROR_TRAILING_TEXT     ///< something follows the whole expression
};

struct PrefixErrorS {
  /// Index of the offending 16-bit character; the length of the text when the end came too early.
  unsigned long position = 0;
  PrefixErrorE cause = PREFIX_ERROR_NONE;
};

}  // namespace zolt::math::algexpr
