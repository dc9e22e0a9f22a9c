#pragma once

#include <functional>
#include <vector>

#include "zolt/oss/wstring.h"

namespace zolt::sheet {

using oss::wstring;

// Sheets (formulas with texts between them) as one text. docs/sheet-format.md describes the format.

enum SheetLineKindE { SHEET_FORMULA, SHEET_TEXT, SHEET_HEADING };

/// The part of the plane that the graph of a formula shows.
struct GraphWindowS {
  double left = 0, right = 0;
  double bottom = 0, top = 0;

  /// False: there is no graph.
  bool isShown() const { return left < right && bottom < top; }
};

inline bool operator==(GraphWindowS const& a, GraphWindowS const& b) {
  return a.left == b.left && a.right == b.right && a.bottom == b.bottom && a.top == b.top;
}

/// One line of a sheet.
struct SheetLineS {
  SheetLineKindE kind = SHEET_FORMULA;
  wstring text;             ///< of a text or heading
  wstring prefix;           ///< of a formula, in prefix notation; empty when it is incomplete
  wstring tree;             ///< of a formula, in tree notation; empty when the prefix shows the same
  GraphWindowS graph = {};  ///< of a formula
};

using SheetT = std::vector<SheetLineS>;

/// The limits of a sheet; a larger one is refused before memory is allocated for it.
constexpr unsigned long max_sheet_characters = 16ul << 20;
constexpr unsigned long max_sheet_lines = 20000;
constexpr unsigned long max_sheet_text = 100'000;       ///< characters of a text or heading
constexpr unsigned long max_sheet_formula = 4ul << 20;  ///< of a formula in one of the notations

enum SheetErrorE {
  SHEET_ERROR_NONE = 0,
  SHEET_ERROR_TOO_LARGE,
  SHEET_ERROR_NO_SHEET,
  SHEET_ERROR_BAD_VERSION,
  SHEET_ERROR_NEWER_VERSION,
  SHEET_ERROR_UNKNOWN_WORD,
  SHEET_ERROR_BAD_EXPRESSION,
  SHEET_ERROR_BAD_TREE,
  SHEET_ERROR_STRAY_TREE,  ///< a tree without a formula before it
  SHEET_ERROR_TOO_MANY_LINES,
  SHEET_ERROR_LONG_LINE,
  SHEET_ERROR_WRONG_COUNT,
  SHEET_ERROR_NO_END,
  SHEET_ERROR_BEHIND_END,
  SHEET_ERROR_STOPPED  ///< by `goOn`
};

/// Why a text is no sheet, or only in parts, and where.
struct SheetErrorS {
  SheetErrorE cause = SHEET_ERROR_NONE;
  unsigned long line = 0;  ///< of the text, counted from 1; 0: the whole text
};

/// "Line 3: the expression cannot be read", without a full stop.
wstring describe(SheetErrorS const& error);

/// Called before each line with the number of characters that have been read; false: stop.
using ProgressT = std::function<bool(unsigned long)>;

/// Reads a whole sheet. False, with `sheet` untouched and `error` filled, when `text` breaks a rule of the
/// format or `goOn` (may be empty) stops it. Constructs are looked up among the current session's operators.
bool readSheet(wstring const& text, SheetT& sheet, SheetErrorS& error, ProgressT const& goOn = {});

/// Reads what can be read of a sheet that `readSheet` refuses: a line that breaks a rule becomes a text with
/// the same characters (a very long line becomes several), so that nothing is lost. For a sound sheet the
/// result is that of `readSheet`. False, with `sheet` untouched, when `text` does not start as a sheet or has
/// too many lines, or when `goOn` (may be empty) stops it.
bool salvageSheet(wstring const& text, SheetT& sheet, ProgressT const& goOn = {});

/// Whether `readSheet` accepts what `writeSheet` writes for this sheet.
bool isWithinLimits(SheetT const& sheet);

/// The text of a sheet, which reads back as the same sheet, except that a line end within a text becomes a
/// blank, since the format cannot write it.
wstring writeSheet(SheetT const& sheet);

/// The line of a formula, without `tree` when the expression alone shows the same.
SheetLineS makeFormulaLine(wstring const& prefix, wstring const& tree);

}  // namespace zolt::sheet
