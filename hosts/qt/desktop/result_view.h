#pragma once

#include <QBasicTimer>
#include <QString>
#include <QWidget>

#include "hosts/qt/desktop/result_layout.h"
#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/oss/pointer.h"

class QMenu;
class QToolButton;

namespace zolt::qt {
class FormulaEdit;
}

namespace zolt::desktop {

/// What is to be seen under a formula.
struct ShownResult {
  using Expression = oss::PointerTC<math::algexpr::AlgebraicExpressionC>;

  Expression value;            ///< null: not shown
  Expression number;           ///< null: not shown
  bool isNumberExact = false;  ///< all digits are there
  bool isImplied = false;      ///< the value follows from the formula, and is not equal to it
  QString reason;              ///< why there is no value
  bool isError = false;        ///< there is none, whoever computes
  unsigned long part = 0;      ///< of the expression, that the reason is about

  ResultSign valueSign() const { return isImplied ? ResultSign::Implies : ResultSign::Equals; }
  ResultSign numberSign() const { return isNumberExact ? ResultSign::Equals : ResultSign::IsAbout; }
  bool isEmpty() const { return !value && !number && reason.isEmpty(); }
};

inline bool operator==(ShownResult const& a, ShownResult const& b) {
  return a.value == b.value && a.number == b.number && a.isNumberExact == b.isNumberExact &&
         a.isImplied == b.isImplied && a.reason == b.reason && a.isError == b.isError && a.part == b.part;
}

/// The results of a formula, below it: its exact value and a decimal number, or why there is none. Both are
/// formulas that can be selected from and copied. While a new result is computed, an old one is pale.
class ResultView final : public QWidget {
  Q_OBJECT
  Q_MOC_INCLUDE(<QMenu>)

 public:
  explicit ResultView(QWidget* parent);
  ~ResultView() override;

  void setResult(ShownResult const& result);
  ShownResult const& result() const { return result_; }
  void setStale(bool stale);
  bool isStale() const { return stale_; }
  /// Shows that something is computed, and a button that ends it.
  void setBusy(bool busy);
  bool isBusy() const { return busy_; }
  /// In sizes of the widget's font, as that of the formula.
  void setZoom(qreal zoom);
  void setDecimalComma(bool decimalComma);
  /// Null where nothing is shown.
  qt::FormulaEdit* valueEdit() const { return value_; }
  qt::FormulaEdit* numberEdit() const { return number_; }

 signals:
  /// The reason was pressed: what it is about is to be shown.
  void faultChosen();
  void stopChosen();
  /// The menu of the right button on a result is about to be shown.
  void contextMenuMade(QMenu* menu);
  /// What is selected in a result has changed.
  void selectionChanged();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void timerEvent(QTimerEvent* event) override;

 private:
  void showIn(qt::FormulaEdit*& edit, ShownResult::Expression const& expression, QString const& name);
  QToolButton* makeButton();
  void fit();
  void setColours();
  int em() const;

  ShownResult result_;
  qt::FormulaEdit* value_ = nullptr;
  qt::FormulaEdit* number_ = nullptr;
  QToolButton* reason_ = nullptr;
  QToolButton* stop_ = nullptr;
  QPoint valueSign_, numberSign_;  // where the signs before them begin, on their axes
  QPoint spinner_;
  QBasicTimer turning_;
  int turn_ = 0;
  qreal zoom_ = 1;
  bool decimalComma_ = false;
  bool stale_ = false;
  bool busy_ = false;
};

}  // namespace zolt::desktop
