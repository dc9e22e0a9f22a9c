#pragma once

#include <QDialog>
#include <QList>
#include <vector>

#include "zolt/field/palette_model.h"

class QAction;

namespace zolt::desktop {

/// How to type formulas, and every key.
class HelpDialog final : public QDialog {
  Q_OBJECT

 public:
  /// `actions` are those of the window, listed with their keys.
  HelpDialog(std::vector<field::PaletteGroupS> const& palette, QList<QAction*> const& actions,
             QWidget* parent);
  ~HelpDialog() override;
};

/// The dialog's page.
QString makeHelp(std::vector<field::PaletteGroupS> const& palette, QList<QAction*> const& actions);

}  // namespace zolt::desktop
