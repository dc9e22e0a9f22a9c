#pragma once

#include <QUndoCommand>

#include "hosts/qt/desktop/sheet_view.h"
#include "zolt/field/commands.h"

namespace zolt::desktop {

/// A step of the sheet's history. A row that is not in the sheet belongs to the step that can restore it.
class SheetCommand : public QUndoCommand {
 public:
  SheetCommand(SheetView& view, SheetRow* row, QString const& text)
      : QUndoCommand(text), view_(view), row_(row) {}

 protected:
  SheetView& view() { return view_; }
  void place(qsizetype index);
  void take();
  void enter();
  qsizetype index() const { return view_.rows_.indexOf(row_); }
  SheetRow* row() const { return row_; }
  /// Undo did not lead back to the state before this step, so the saved state of the sheet cannot return.
  void loseBeginning();
  /// Runs `action` without making a step of its changes.
  template <class ActionT>
  void replay(ActionT action) {
    view_.replaying_ = true;
    action();
    view_.replaying_ = false;
  }

 private:
  SheetView& view_;
  SheetRow* row_;
};

class InsertRowCommand final : public SheetCommand {
 public:
  InsertRowCommand(SheetView& view, SheetRow* row, qsizetype index);
  ~InsertRowCommand() override;
  void redo() override;
  void undo() override;

 private:
  qsizetype index_;
  bool done_ = false;
};

class RemoveRowCommand final : public SheetCommand {
 public:
  RemoveRowCommand(SheetView& view, SheetRow* row);
  ~RemoveRowCommand() override;
  void redo() override;
  void undo() override;

 private:
  qsizetype index_;
  bool done_ = false;
};

class MoveRowCommand final : public SheetCommand {
 public:
  MoveRowCommand(SheetView& view, SheetRow* row, int distance);
  void redo() override;
  void undo() override;

 private:
  void move(int distance);

  int distance_;
};

class ToggleGraphCommand final : public SheetCommand {
 public:
  ToggleGraphCommand(SheetView& view, SheetRow* row);
  void redo() override { toggle(); }
  void undo() override { toggle(); }

 private:
  void toggle();

  sheet::GraphWindowS window_;  // of a graph that is not shown; may be none
};

/// An edit of a formula, which has its own history: the sheet's history only knows whose turn it is, and how
/// far to go.
class EditFormulaCommand final : public SheetCommand {
 public:
  /// `begin` is the formula's `historyPosition` before the edit.
  EditFormulaCommand(SheetView& view, SheetRow* row, unsigned long begin);
  void redo() override;
  void undo() override;

 private:
  void run(field::CommandE command, unsigned long target);
  unsigned long position() const;

  unsigned long begin_;
  unsigned long end_ = 0;  // known when it is undone, since typing on makes an edit longer
  bool fresh_ = true;
};

class EditTextCommand final : public SheetCommand {
 public:
  EditTextCommand(SheetView& view, SheetRow* row, QString before);
  int id() const override { return 1; }
  bool mergeWith(QUndoCommand const* other) override;
  void redo() override;
  void undo() override;

 private:
  void show(QString const& text);

  QString before_;
  QString after_;
  bool fresh_ = true;
};

}  // namespace zolt::desktop
