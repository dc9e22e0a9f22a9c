#pragma once

class QWidget;

namespace zolt::desktop {

/// Gives each push button in `dialog` that has none a letter for the keyboard, which no other button has. Not
/// every platform gives one to the usual buttons.
void giveMnemonics(QWidget& dialog);

}  // namespace zolt::desktop
