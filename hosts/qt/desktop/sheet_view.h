#pragma once

#include <QList>
#include <QPointer>
#include <QScrollArea>
#include <QUndoStack>
#include <functional>

#include "hosts/qt/desktop/sheet.h"
#include "hosts/qt/desktop/sheet_row.h"

class QVBoxLayout;

namespace zolt::desktop {

/// The open sheet: its lines one below the other, one of them current, and one history for all of them.
class SheetView final : public QScrollArea {
  Q_OBJECT

 public:
  explicit SheetView(QWidget* parent = nullptr);
  ~SheetView() override;

  /// Asked before each line with the number of lines that are made; false: stop.
  using Progress = std::function<bool(qsizetype)>;

  /// Shows another sheet, never without a line, with a new history. False, with nothing changed, when
  /// `goOn` (may be empty) stops it.
  bool setSheet(Sheet const& sheet, Progress const& goOn = {});
  Sheet sheet() const;
  /// The sheet without what is yet to be found out: an edited formula may lack its expression. For large
  /// sheets, and while somebody is typing.
  Sheet draft() const;
  bool isModified() const { return !history_.isClean(); }
  /// The sheet as it stands is what is in the file.
  void setSaved() { history_.setClean(); }
  /// What is in the file is another sheet.
  void setUnsaved() { history_.resetClean(); }
  QUndoStack& history() { return history_; }

  QList<SheetRow*> const& rows() const { return rows_; }
  /// Never null.
  SheetRow* currentRow() const { return current_; }
  /// Null on a line of text.
  qt::FormulaEdit* currentFormula() const;

  qreal zoom() const { return zoom_; }
  void setZoom(qreal zoom);
  void setDecimalComma(bool decimalComma);
  /// What the margin's context menu offers.
  void setRowActions(QList<QAction*> const& actions);

  /// Gives the keyboard to the first formula, else to the first line.
  void enterFirstFormula();

  // ---- Edits, each a step to undo ------------------------------------------------------------------------
  void insertBelow(SheetLine const& line);
  void duplicateCurrent();
  void removeCurrent();
  void moveCurrent(int distance);

 public slots:
  /// To the next formula; when there is none, to a new one.
  void goOn();

 signals:
  void currentChanged();
  /// The current formula, its selection or its caret is another one.
  void formulaChanged();
  void modifiedChanged(bool modified);
  /// Some line is another one, whoever changed it.
  void edited();
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
  void connectFormula(SheetRow* row);
  void connectText(SheetRow* row);
  void placeRow(SheetRow* row, qsizetype index);
  void takeRow(SheetRow* row);
  void renumber();
  void setCurrent(SheetRow* row);
  void onFocusChanged(QWidget* now);
  void onFormulaEdited(SheetRow* row, bool continued, unsigned long position);
  void reveal();
  bool enterNeighbour(int distance);
  bool removeEmptyRow(int key);

  QUndoStack history_;
  QWidget* page_;
  QVBoxLayout* layout_;
  QList<SheetRow*> rows_;
  SheetRow* current_ = nullptr;
  QList<QAction*> rowActions_;
  qreal zoom_ = 1;
  bool decimalComma_ = false;
  bool replaying_ = false;  // history is at work; what changes is no new step
};

}  // namespace zolt::desktop
