#pragma once

#include <QString>
#include <optional>

namespace zolt::qt {

class FormulaEdit;

/// Makes formula fields known to assistive technology: as editable text that reads the formula in words, with
/// its caret and selection. It may be called any number of times.
void installAccessibility();

/// Notifies assistive technology that the caret or the selection has moved, and whether the formula has
/// changed. `words` is what the last call has told of it; no value: nothing.
void notifyAccessibility(FormulaEdit& edit, bool formulaChanged, std::optional<QString>& words);

}  // namespace zolt::qt
