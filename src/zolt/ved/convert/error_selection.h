#pragma once

namespace zolt::math::ved {

class Node4C;

/// Why a tree could not be turned into an expression.
enum ErrorCauseE : int {
  ERROR_CAUSE_SYNTAX = 0,            ///< an operand or an operator is needed where something else was found
  ERROR_CAUSE_PLACEHOLDER = 1,       ///< an empty slot
  ERROR_CAUSE_EMPTY = 2,             ///< the whole expression is empty (set by the view)
  ERROR_CAUSE_UNEXPECTED_END = 3,    ///< the text ends where an operand is needed
  ERROR_CAUSE_BAD_NUMBER = 4,        ///< a malformed or too large number
  ERROR_CAUSE_MISSING_OPEN = 5,      ///< a function's name without "(" after it
  ERROR_CAUSE_CALL_NOT_CLOSED = 6,   ///< an argument list without ")"
  ERROR_CAUSE_ARGUMENT_COUNT = 7,    ///< a function with too few or too many arguments
  ERROR_CAUSE_PAREN_NOT_CLOSED = 12  ///< "(" without ")"
};

/// Where and why a conversion failed: two places in the tree, as (node, index) pairs, and the cause.
///
/// The places are raw: a node may be a row, a bracket or a construct, and an index then counts the characters
/// that the node contributes to the row's text. `diagnose` (diagnosis.h) turns them into caret places. Nodes
/// are null while nothing failed.
struct ErrorSelectionS {
  Node4C* firstNode = nullptr;
  unsigned int firstIndex = 0;
  Node4C* secondNode = nullptr;
  unsigned int secondIndex = 0;
  ErrorCauseE cause = ERROR_CAUSE_SYNTAX;
};

}  // namespace zolt::math::ved
