#pragma once

#include <vector>

#include "zolt/oss/wstring.h"

namespace zolt::sheet {

using oss::wstring;

// A sheet, formulas with texts between them, as one text. docs/sheet-format.md describes the format.

enum SheetLineKindE { SHEET_FORMULA, SHEET_TEXT, SHEET_HEADING };

struct SheetLineS {
  SheetLineKindE kind = SHEET_FORMULA;
  wstring text;    ///< of a text or heading
  wstring prefix;  ///< of a formula, in prefix notation; empty when it is incomplete
  wstring tree;    ///< of a formula, as it stands, in tree notation; empty when its expression tells all
};

using SheetT = std::vector<SheetLineS>;

/// What a sheet may hold at most; more is refused before it takes memory.
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
  SHEET_ERROR_STRAY_TREE,  ///< without a formula before it
  SHEET_ERROR_TOO_MANY_LINES,
  SHEET_ERROR_LONG_LINE,
  SHEET_ERROR_WRONG_COUNT,
  SHEET_ERROR_NO_END,
  SHEET_ERROR_BEHIND_END
};

struct SheetErrorS {
  SheetErrorE cause = SHEET_ERROR_NONE;
  unsigned long line = 0;  ///< of the text, from 1 on; 0: the text as a whole
};

/// "Line 3: the expression cannot be read", without a full stop.
wstring describe(SheetErrorS const& error);

/// Reads a whole sheet. False, with `sheet` untouched and `error` filled, when `text` breaks a rule of the
/// format. Constructs are those that the current session's operators know.
bool readSheet(wstring const& text, SheetT& sheet, SheetErrorS& error);

/// Reads what can be read of a sheet that `readSheet` refuses: a line that breaks a rule comes back as a text
/// that holds it as it stands (a very long one as several), so that nothing is missing. A sound sheet comes
/// back as `readSheet` gives it. False, with `sheet` untouched, when `text` does not start as a sheet or has
/// too many lines.
bool salvageSheet(wstring const& text, SheetT& sheet);

/// Whether the sheet will be read again when it has been written.
bool isWithinLimits(SheetT const& sheet);

/// Reads back as the same sheet; a line end within a text becomes a blank, for want of a way to write it.
wstring writeSheet(SheetT const& sheet);

/// The line of a formula: `tree` is left out when the expression alone would show the same.
SheetLineS makeFormulaLine(wstring const& prefix, wstring const& tree);

}  // namespace zolt::sheet
