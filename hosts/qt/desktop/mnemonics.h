#pragma once

class QWidget;

namespace zolt::desktop {

/// Gives each button in `dialog` that has none a letter for the keyboard, which no other button or label has.
/// Not every platform gives one to the usual buttons.
void giveMnemonics(QWidget& dialog);

}  // namespace zolt::desktop
