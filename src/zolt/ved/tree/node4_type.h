#pragma once

namespace zolt::math::ved {

/// Kinds of node. The values are part of the clipboard format; a node of unreadable bytes may hold any other.
enum Node4TypeE : int {
  NODE4_ROOT = 0,        ///< the root of a tree; one child, a row
  NODE4_LINE = 1,        ///< a row: items (kinds 2 to 8) from left to right
  NODE4_TEXT = 2,        ///< typed characters; when empty, a place for the caret or a slot to be filled
  NODE4_OPERATOR = 3,    ///< a construct; its children are its arguments, each a row
  NODE4_POWER = 4,       ///< an exponent on what precedes it in the row; one child, a row
  NODE4_OPEN = 5,        ///< "(" that the user typed
  NODE4_CLOSE = 6,       ///< ")" that the user typed
  NODE4_AUTO_OPEN = 7,   ///< "(" supplied at the head of a row to balance it
  NODE4_AUTO_CLOSE = 8,  ///< ")" supplied at the end of a row to balance it
};

/// "(", typed or supplied.
constexpr bool isOpeningBracket(Node4TypeE type) { return type == NODE4_OPEN || type == NODE4_AUTO_OPEN; }
/// ")", typed or supplied.
constexpr bool isClosingBracket(Node4TypeE type) { return type == NODE4_CLOSE || type == NODE4_AUTO_CLOSE; }
/// A bracket that the user typed.
constexpr bool isTypedBracket(Node4TypeE type) { return type == NODE4_OPEN || type == NODE4_CLOSE; }
/// An item of a row that has rows of its own.
constexpr bool isConstruct(Node4TypeE type) { return type == NODE4_OPERATOR || type == NODE4_POWER; }

}  // namespace zolt::math::ved
