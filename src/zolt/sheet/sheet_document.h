#pragma once

#include "zolt/sheet/sheet_text.h"

namespace zolt::sheet {

// Sheets as documents of others: headings, paragraphs and displayed formulas in LaTeX. docs/sheet-format.md
// says what becomes what.

enum DocumentKindE {
  DOCUMENT_LATEX,    ///< a whole document of the class "article", with amsmath
  DOCUMENT_MARKDOWN  ///< formulas between "$$"
};

/// The sheet as a document. An incomplete formula is in a comment, in tree notation.
wstring writeDocument(SheetT const& sheet, DocumentKindE kind);

/// What a sheet can hold of a document, which `writeDocument` need not have written: headings, paragraphs
/// (each as one text) and displayed formulas. A formula that cannot be read becomes a text with the same
/// characters, and so does everything else, so that nothing but comments and layout is lost. False, with
/// `sheet` untouched, when the sheet would be larger than sheets may be.
[[nodiscard]] bool readDocument(wstring const& text, DocumentKindE kind, SheetT& sheet);

}  // namespace zolt::sheet
