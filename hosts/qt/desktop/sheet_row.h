#pragma once

#include <QPoint>
#include <QWidget>
#include <optional>

#include "hosts/qt/desktop/sheet.h"

class QLineEdit;
class QTimer;

namespace zolt::qt {
class FormulaEdit;
}

namespace zolt::desktop {

/// One line of the open sheet: a formula with its number in the margin, or a text.
class SheetRow final : public QWidget {
  Q_OBJECT

 public:
  SheetRow(SheetLine const& line, QWidget* parent);
  ~SheetRow() override;

  LineKind kind() const { return kind_; }
  /// The line as it is to be saved.
  SheetLine line() const;
  /// The current line, but for an edited formula without its expression, which takes time to find out.
  SheetLine draft() const;
  bool isEmpty() const;

  /// Null for a line of text.
  qt::FormulaEdit* formula() const { return formula_; }
  /// Null for a formula.
  QLineEdit* text() const { return text_; }
  QWidget* editor() const;

  /// Sets its number among the formulas, counted from 1.
  void setNumber(int number);
  void setCurrent(bool current);
  void setZoom(qreal zoom);
  /// Gives the line the focus and puts the caret near `global`, a place on the screen.
  void enterAt(QPoint global);
  void enterAtEnd();
  /// The caret's box on the screen.
  QRect caretOnScreen() const;

 signals:
  /// Emitted some time after a change, when it is known whether the formula is complete.
  void formulaStateChanged();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void makeFormula(SheetLine const& line);
  void makeText(SheetLine const& line);
  void updateState();
  void updateFont();

  LineKind kind_;
  mutable std::optional<SheetLine> line_;  // of a formula, until it changes
  qt::FormulaEdit* formula_ = nullptr;
  QLineEdit* text_ = nullptr;
  QTimer* stateTimer_ = nullptr;
  qreal zoom_ = 1;
  int number_ = 0;
  bool current_ = false;
  bool incomplete_ = false;
};

}  // namespace zolt::desktop
