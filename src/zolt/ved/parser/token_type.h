#pragma once

namespace zolt::math::ved {

/// Kinds of token in infix text.
enum TokenTypeE {
  TOKEN_END = 0,
  TOKEN_NAME = 1,
  TOKEN_OPERATOR_WORD = 2,  ///< a run that the operator table knows as a text
  TOKEN_NUMBER = 3,
  TOKEN_PI = 4,
  TOKEN_OPEN = 5,
  TOKEN_CLOSE = 6,
  TOKEN_COMMA = 7,
  TOKEN_PLUS = 8,
  TOKEN_MINUS = 9,
  TOKEN_TIMES = 10,
  TOKEN_POWER = 11,
  TOKEN_FACTORIAL = 12,
  TOKEN_EQUAL = 13,
  TOKEN_NOT_EQUAL = 14,
  TOKEN_LESS = 15,
  TOKEN_LESS_OR_EQUAL = 16,
  TOKEN_GREATER = 17,
  TOKEN_GREATER_OR_EQUAL = 18,
  TOKEN_STORE = 19,
  TOKEN_ASSIGNMENT = 20,
  TOKEN_VERBATIM = 21,  ///< text between grave accents
  TOKEN_NUL = 22,       ///< a U+0000 that is stored in the text: part of no expression, and not its end
  TOKEN_SIGN = 23,  ///< one character that only the operator table knows as a sign (`OperatorListC::isSign`)
};

}  // namespace zolt::math::ved
