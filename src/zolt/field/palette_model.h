#pragma once

#include <vector>

#include "zolt/oss/wstring.h"

namespace zolt::math::ved {
class ViewZNT4C;
}

namespace zolt::field {

using oss::wstring;

class FormulaFieldC;

/// One button of a palette.
struct PaletteEntryS {
  wstring insert;    ///< an operator's name, perhaps with a table's size, or else the letter to be typed
  wstring title;     ///< for menus and screen readers: "Square root"
  wstring label;     ///< a few characters for a button that shows no picture: "√"
  wstring shortcut;  ///< what can be typed instead: "sqrt("; may be empty
  wstring toolTip;   ///< title and shortcut in one line
  /// Everything by which people look for it: its names, those of other notations, its signs, what is typed.
  std::vector<wstring> keywords;
  /// What it inserts, in tree notation without a caret, from which hosts draw a small picture. Empty for what
  /// acts on the construct around the caret, which has the label.
  wstring picture;
  bool takesSize = false;  ///< a table, which `withSize` gives other numbers of rows and columns
};

/// Entries that belong together, under a title.
struct PaletteGroupS {
  wstring title;
  std::vector<PaletteEntryS> entries;
};

/// The groups of a palette for a view: the operators of its table whose words name a group, in the order of
/// registration, then the Greek letters. Each picture is made by an insertion, so call this once and keep the
/// result.
std::vector<PaletteGroupS> makePalette(math::ved::ViewZNT4C const& view);

/// How well an entry answers a search.
enum SearchMatchE {
  SEARCH_MATCH_NONE,
  SEARCH_MATCH_PART,   ///< a part of the title or the beginning of a keyword, in large or small letters
  SEARCH_MATCH_WHOLE,  ///< a whole keyword or title in other letters
  SEARCH_MATCH_EXACT   ///< the same with large and small letters told apart: "Gamma"
};
SearchMatchE matchSearch(PaletteEntryS const& entry, wstring const& wanted);

/// The entry of a table with so many rows and columns; it keeps the picture.
PaletteEntryS withSize(PaletteEntryS entry, unsigned long rows, unsigned long columns);
/// Whether the entry could be inserted now. What acts on the rows and columns of a table needs one around the
/// caret.
bool isEnabled(PaletteEntryS const& entry, FormulaFieldC const& field);
/// Inserts it at the field's caret, as one step to undo.
bool runEntry(PaletteEntryS const& entry, FormulaFieldC& field);

}  // namespace zolt::field
