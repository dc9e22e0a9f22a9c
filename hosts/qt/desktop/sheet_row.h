#pragma once

#include <QPoint>
#include <QWidget>
#include <optional>

#include "hosts/qt/desktop/sheet.h"

class QPushButton;
class QTimer;
class QVBoxLayout;

namespace zolt::qt {
class FormulaEdit;
}

namespace zolt::desktop {

class GraphView;
class ResultView;
class TextLine;
class TextPreview;
struct ShownResult;

/// One line of the open sheet: a formula with its number in the margin, or a text. A very long formula, which
/// takes a while to show, is its notation and a button until the user wants to see it.
class SheetRow final : public QWidget {
  Q_OBJECT

 public:
  /// Characters of a formula's notation; more are not shown unasked.
  static constexpr qsizetype long_formula = 100'000;

  SheetRow(SheetLine const& line, QWidget* parent);
  ~SheetRow() override;

  LineKind kind() const { return kind_; }
  /// Distinguishes it from all other rows of the process; not 0.
  unsigned long id() const { return id_; }
  /// The line as it is to be saved.
  SheetLine line() const;
  /// The current line, but for an edited formula without its expression, which takes time to find out.
  SheetLine draft() const;
  bool isEmpty() const;

  /// Null for a line of text, and for a formula that is not shown.
  qt::FormulaEdit* formula() const { return formula_; }
  /// Null for a formula that is shown; else the text, or the read-only beginning of the notation. An editor
  /// of a text is made when it is first asked for.
  TextLine* text();
  QWidget* editor();

  /// Shows results under the formula; none take them away.
  void showResult(ShownResult const& result);
  /// Where results are shown. Made when it is first asked for; not for a line without a formula.
  ResultView& results();
  bool hasResults() const { return results_; }
  /// Null until it has been asked for.
  ResultView const* resultView() const { return results_; }
  /// Shows a graph below the results, of no function yet; `window` may be none.
  void showGraph(sheet::GraphWindowS const& window);
  void hideGraph();
  /// Null while none is shown.
  GraphView* graph() const { return graph_; }

  /// Sets its number among the formulas, counted from 1.
  void setNumber(int number);
  void setCurrent(bool current);
  /// Shows the formula in place of its notation. The line's other widgets are then new.
  void showFormula();
  /// `kept` (on the screen) is where the formula stays in place; null: where its caret is.
  void setZoom(qreal zoom, QPoint const* kept = nullptr);
  void setDecimalComma(bool decimalComma);
  /// Gives the line the focus and puts the caret near `global`, a place on the screen.
  void enterAt(QPoint global);
  void enterAtEnd();
  /// The caret's box on the screen.
  QRect caretOnScreen();

 signals:
  void textMade();
  /// The user wants to see the formula that is not shown.
  void formulaWanted();
  /// Emitted some time after a change, when it is known whether the formula is complete.
  void formulaStateChanged();
  void resultsMade();
  /// There is a graph that shows no function yet.
  void graphMade();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  void makeFormula(SheetLine const& line);
  QVBoxLayout* makeColumn();
  SheetLine withGraph(SheetLine line) const;
  void makeNotation(SheetLine const& line);
  void makeText(QString const& text);
  QString placeholder() const;
  QWidget* shown() const;
  /// To the editor of the text.
  void passOn(QMouseEvent const& event);
  void updateState();
  void updateFont();

  LineKind kind_;
  unsigned long id_;
  mutable std::optional<SheetLine> line_;  // of a formula, until it changes
  QPushButton* button_ = nullptr;          // of a formula that is not shown
  qt::FormulaEdit* formula_ = nullptr;
  QVBoxLayout* column_ = nullptr;  // the formula and what is below it
  ResultView* results_ = nullptr;
  GraphView* graph_ = nullptr;
  TextPreview* preview_ = nullptr;  // of a text without an editor
  QString previewed_;
  TextLine* text_ = nullptr;
  QTimer* stateTimer_ = nullptr;
  qreal zoom_ = 1;
  bool decimalComma_ = false;
  int number_ = 0;
  bool current_ = false;
  bool incomplete_ = false;
};

}  // namespace zolt::desktop
