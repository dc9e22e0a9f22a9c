#include "hosts/qt/desktop/mnemonics.h"

#include <QAbstractButton>
#include <QLabel>

#include "zolt/qt/mnemonics.h"

namespace zolt::desktop {

void giveMnemonics(QWidget& dialog) {
  QList<int> taken;
  for (QLabel const* const label : dialog.findChildren<QLabel*>()) {
    if (label->buddy()) taken << qt::letterOf(label->text());
  }
  qt::giveLetters(dialog.findChildren<QAbstractButton*>(), taken);
}

}  // namespace zolt::desktop
