#pragma once

#include <QDockWidget>
#include <memory>
#include <vector>

#include "zolt/field/palette_model.h"

class QGridLayout;
class QLabel;
class QLineEdit;
class QToolButton;

namespace zolt::qt {
class FormulaEdit;
class FormulaFonts;
}  // namespace zolt::qt

namespace zolt::desktop {

/// Everything that can be put into a formula, as pictures in groups. A button's tool tip says what to type
/// instead.
class PaletteDock final : public QDockWidget {
  Q_OBJECT

 public:
  /// `fonts` must not be null.
  PaletteDock(std::shared_ptr<qt::FormulaFonts> fonts, QWidget* parent);
  ~PaletteDock() override;

  std::vector<field::PaletteGroupS> const& groups() const { return groups_; }
  /// Enables what can be inserted into `formula` now; nothing without one (null).
  void follow(qt::FormulaEdit const* formula);

 public slots:
  /// Moves the keyboard focus to the search field.
  void search();

 signals:
  void picked(field::PaletteEntryS const& entry);

 private:
  struct SectionS {
    QLabel* title;
    QGridLayout* grid;
    std::vector<QToolButton*> buttons;
  };

  QToolButton* makeButton(field::PaletteEntryS const& entry);
  void arrange(SectionS const& section, std::vector<field::PaletteEntryS> const& entries,
               QString const& wanted);
  void filter(QString const& wanted);
  void pickFirst();

  std::shared_ptr<qt::FormulaFonts> fonts_;
  std::vector<field::PaletteGroupS> groups_;
  std::vector<SectionS> sections_;
  QLineEdit* search_;
  QLabel* nothing_;
};

}  // namespace zolt::desktop
