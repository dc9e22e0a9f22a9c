#pragma once

#include <QString>

#include "zolt/field/caret_speech.h"

namespace zolt::qt {

class FormulaEdit;

/// Makes formula fields known to assistive technology: as editable text that reads the formula in words, with
/// its caret and selection. It may be called any number of times.
void installAccessibility();

// Each tells assistive technology one thing about the field as it is now.

/// Its words as a whole.
void notifyValue(FormulaEdit& edit);
/// Which of its words have changed.
void notifyTextChange(FormulaEdit& edit, field::SpokenEditS const& change);
/// Where the caret or the selection is.
void notifyCaret(FormulaEdit& edit);
/// Something to be said at once, which is its `SpokenFormula::announcement`; empty: the last one no longer
/// holds.
void announce(FormulaEdit& edit, QString const& words);

}  // namespace zolt::qt
