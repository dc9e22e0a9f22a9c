#pragma once

// What is too large for one formula and its editor. Limits of a file format or of a picture stand with it
// (zolt/sheet/sheet_text.h, zolt/surfaces/cairo/cairo_graphics.h).
namespace zolt::math::ved::limits {

/// How many rows may stand inside one another, the root's row included. An edit that would nest deeper is
/// refused; bytes that nest deeper are unreadable; an expression that nests deeper shows its too-deep parts
/// as prefix text between grave accents. Every walk of a tree within this limit fits a 1 MiB stack.
constexpr unsigned long max_nested_rows = 1200;

/// How many columns and how many cells a table may have, such as a matrix. What is larger is shown as the
/// call that it is, and no edit makes a table larger.
constexpr unsigned long max_table_columns = 100;
constexpr unsigned long max_table_cells = 10000;

/// How many rows a construct has at most that takes any number of them, such as a set. An edit of one costs
/// something for each of the others, unlike in a table, so what is larger stays the call that it is.
constexpr unsigned long max_listed_rows = 1000;

/// How many steps can be undone, and how many bytes they may take together.
constexpr unsigned long max_history_steps = 10000;
constexpr unsigned long max_history_bytes = 64ul << 20;

/// How many characters of a text that arrives as one event, as from an input method, follow the rules of
/// typing; a longer text comes in as it stands. Each character that follows them may look at the whole row.
constexpr unsigned long max_typed_text = 1000;

/// Radius of the pointer hit test in surface units: a pointer farther from every text moves the caret only
/// within the text where it is.
constexpr long hit_radius = 400;

}  // namespace zolt::math::ved::limits
