#pragma once

#include <QHash>
#include <QList>
#include <QPointer>
#include <QScrollArea>
#include <QUndoStack>
#include <functional>
#include <optional>

#include "hosts/qt/desktop/sheet_file.h"
#include "hosts/qt/desktop/sheet_row.h"
#include "zolt/field/input_options.h"
#include "zolt/qt/formula_edit.h"

class QMenu;
class QVBoxLayout;

namespace zolt::desktop {

/// The open sheet: its lines one below the other, one of which is current, and one history for all of them.
class SheetView final : public QScrollArea {
  Q_OBJECT
  Q_MOC_INCLUDE(<QMenu>)

 public:
  explicit SheetView(QWidget* parent = nullptr);
  ~SheetView() override;

  /// Shows another sheet, which always gets at least one line, with a new history. Returns false, with
  /// nothing changed, when `goOn` (may be empty), which is told the number of lines made, stops it.
  bool setSheet(Sheet const& sheet, Progress const& goOn = {});
  Sheet sheet() const;
  /// The sheet without what is not known yet: an edited formula may lack its expression. Meant for large
  /// sheets, and for use while the user is typing.
  Sheet draft() const;
  bool isModified() const { return !history_.isClean(); }
  /// The current sheet is what the file holds.
  void setSaved() { history_.setClean(); }
  /// The file holds something different from the current sheet.
  void setUnsaved() { history_.resetClean(); }
  QUndoStack& history() { return history_; }

  QList<SheetRow*> const& rows() const { return rows_; }
  /// It is never null.
  SheetRow* currentRow() const { return current_; }
  /// Null when the current line is a text.
  qt::FormulaEdit* currentFormula() const;
  /// The one that has the keyboard: the current formula, or a result of it. Null as above.
  qt::FormulaEdit* focusedFormula() const;
  /// The row of that number; null when it is not in the sheet.
  SheetRow* findRow(unsigned long id) const { return byId_.value(id); }
  /// The index of the first row that can be seen.
  qsizetype firstVisible() const;

  qreal zoom() const { return zoom_; }
  /// What is under the pointer stays in place while the wheel zooms, else what is at the caret.
  void setZoom(qreal zoom);
  void setDecimalComma(bool decimalComma);
  /// Which formulas may be entered (`FormulaEdit::allowedFormulas`). False, with nothing changed, when the
  /// text is not understood.
  bool setAllowedFormulas(QString const& rules);
  QString const& allowedFormulas() const { return allowedFormulas_; }
  /// Switches a rule of typing in all formulas: `singleLetters` or `suggestions`.
  void setTyping(bool field::InputOptionsS::*rule, bool on);
  field::InputOptionsS const& typing() const { return typing_; }
  /// Sets the actions that the margin's context menu offers.
  void setRowActions(QList<QAction*> const& actions);

  /// Runs what changes the heights of rows, which it returns; what is looked at stays in place.
  void keepPlace(std::function<QList<SheetRow*>()> const& change);

  /// Scrolls what is below the current formula into sight, as far as its caret stays in sight. Does nothing
  /// when the caret is out of sight.
  void showBelow();

  /// Gives the keyboard focus to the first formula or, without one, to the first line.
  void enterFirstFormula();

  // ---- Edits, each a step to undo ------------------------------------------------------------------------
  void insertBelow(SheetLine const& line) { insertBelow(current_, line); }
  void insertBelow(SheetRow* row, SheetLine const& line);
  void duplicateCurrent();
  void removeCurrent();
  void moveCurrent(int distance);
  /// Shows a graph below the row, or takes it away. The row has a formula.
  void toggleGraph(SheetRow& row);

 public slots:
  /// Moves to the next formula, and makes a new one when there is none.
  void goOn();

 signals:
  void currentChanged();
  /// The current formula, its selection or its caret has changed.
  void formulaChanged();
  /// Within the current formula.
  void caretMoved();
  void modifiedChanged(bool modified);
  /// A line has changed, whether by the user or by the program.
  void edited();
  /// There are other rows, or in another order.
  void rowsChanged();
  /// A formula is being edited; `formulaSettled` comes some time later.
  void formulaTouched(zolt::desktop::SheetRow* row);
  void formulaSettled(zolt::desktop::SheetRow* row);
  void resultsMade(zolt::desktop::SheetRow* row);
  void graphMade(zolt::desktop::SheetRow* row);
  /// The menu of the right button on the current formula is about to be shown.
  void contextMenuMade(QMenu* menu);
  /// The same on a result of it.
  void resultMenuMade(QMenu* menu);
  /// The Escape key was pressed, and the line had no use for it.
  void stopWanted();
  void errorOccurred(QString const& text);
  void zoomRequested(int steps);

 protected:
  void keyPressEvent(QKeyEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  bool focusNextPrevChild(bool next) override;
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  friend class SheetCommand;

  SheetRow* makeRow(SheetLine const& line);
  void connectRow(SheetRow* row);
  void showFormula(SheetRow* row);
  void connectFormula(SheetRow* row);
  void connectText(SheetRow* row);
  void placeRow(SheetRow* row, qsizetype index);
  void takeRow(SheetRow* row);
  void renumber();
  void setCurrent(SheetRow* row);
  void onFocusChanged(QWidget* now);
  void onFormulaEdited(SheetRow* row, qt::FormulaEdit::Step step, unsigned long position);
  void reveal();
  void settleLayout(QList<SheetRow*> const& changed);
  QPoint placeToKeep() const;
  SheetRow* rowAt(int y) const;
  bool enterNeighbour(int distance);
  bool removeEmptyRow(int key);

  QUndoStack history_;
  QWidget* page_;
  QVBoxLayout* layout_;
  QList<SheetRow*> rows_;
  QHash<unsigned long, SheetRow*> byId_;
  SheetRow* current_ = nullptr;
  QList<QAction*> rowActions_;
  qreal zoom_ = 1;
  std::optional<QPoint> zoomedAt_;  // on the screen, while the wheel zooms
  bool decimalComma_ = false;
  QString allowedFormulas_;
  field::InputOptionsS typing_;
  bool replaying_ = false;  // the history is running; changes make no new step
};

}  // namespace zolt::desktop
