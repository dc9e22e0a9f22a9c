#pragma once

#include <vector>

#include "zolt/sheet/sheet_text.h"

namespace zolt::sheet {

// Sheets as documents of others: headings, paragraphs and displayed formulas in LaTeX. docs/sheet-format.md
// says what becomes what.

enum DocumentKindE {
  DOCUMENT_LATEX,    ///< a whole document of the class "article", with amsmath
  DOCUMENT_MARKDOWN  ///< formulas between "$$"
};

/// What is to be seen after a formula, in prefix notation; what is empty is not there.
struct WrittenResultS {
  wstring value;
  wstring number;  ///< a decimal number
  bool isNumberExact = false;
  bool isImplied = false;  ///< the value follows from the formula, and is not equal to it
  wstring graph = {};      ///< the file name of a picture: letters, digits, "-", "_" and "."
};

/// The sheet as a document. An incomplete formula is in a comment, in tree notation. `results` are those of
/// the lines, in their order; there may be fewer. `readDocument` leaves them out again.
wstring writeDocument(SheetT const& sheet, DocumentKindE kind,
                      std::vector<WrittenResultS> const& results = {});

/// What a sheet can hold of a document, which `writeDocument` need not have written: headings, paragraphs
/// (each as one text) and displayed formulas. A formula that cannot be read becomes a text with the same
/// characters, and so does everything else, so that nothing but comments and layout is lost. False, with
/// `sheet` untouched, when the sheet would be larger than sheets may be.
[[nodiscard]] bool readDocument(wstring const& text, DocumentKindE kind, SheetT& sheet);

}  // namespace zolt::sheet
