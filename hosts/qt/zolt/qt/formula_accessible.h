#pragma once

namespace zolt::qt {

class FormulaEdit;

/// Makes formula fields known to assistive technology: as editable text that reads the formula in words, with
/// the caret and the selection in it. May be called any number of times.
void installAccessibility();

/// Tells assistive technology that the caret or the selection has moved, and whether the formula is another.
void notifyAccessibility(FormulaEdit& edit, bool formulaChanged);

}  // namespace zolt::qt
