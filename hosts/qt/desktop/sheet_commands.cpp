#include "hosts/qt/desktop/sheet_commands.h"

#include <QCoreApplication>

#include "hosts/qt/desktop/graph_view.h"
#include "hosts/qt/desktop/text_line.h"
#include "zolt/qt/formula_edit.h"

namespace zolt::desktop {

namespace {

QString tr(char const* text) { return QCoreApplication::translate("zolt::desktop::SheetCommand", text); }

}  // namespace

void SheetCommand::place(qsizetype index) {
  view_.placeRow(row_, index);
  enter();
}

void SheetCommand::take() { view_.takeRow(row_); }

void SheetCommand::enter() {
  view_.setCurrent(row_);
  row_->editor()->setFocus(Qt::OtherFocusReason);
  view_.reveal();
}

void SheetCommand::loseBeginning() {
  if (view_.history_.cleanIndex() < view_.history_.index()) view_.history_.resetClean();
}

// ---- Rows -------------------------------------------------------------------------------------------------

InsertRowCommand::InsertRowCommand(SheetView& view, SheetRow* row, qsizetype index)
    : SheetCommand(view, row, tr("inserting a line")), index_(index) {}

InsertRowCommand::~InsertRowCommand() {
  if (!done_) delete row();
}

void InsertRowCommand::redo() {
  done_ = true;
  place(index_);
}

void InsertRowCommand::undo() {
  done_ = false;
  take();
}

RemoveRowCommand::RemoveRowCommand(SheetView& view, SheetRow* row)
    : SheetCommand(view, row, tr("deleting a line")), index_(index()) {}

RemoveRowCommand::~RemoveRowCommand() {
  if (done_) delete row();
}

void RemoveRowCommand::redo() {
  done_ = true;
  take();
}

void RemoveRowCommand::undo() {
  done_ = false;
  place(index_);
}

MoveRowCommand::MoveRowCommand(SheetView& view, SheetRow* row, int distance)
    : SheetCommand(view, row, tr("moving a line")), distance_(distance) {}

void MoveRowCommand::redo() { move(distance_); }
void MoveRowCommand::undo() { move(-distance_); }

void MoveRowCommand::move(int distance) {
  qsizetype const target = index() + distance;
  take();
  place(target);
}

ToggleGraphCommand::ToggleGraphCommand(SheetView& view, SheetRow* row)
    : SheetCommand(view, row, row->graph() ? tr("hiding a graph") : tr("showing a graph")) {}

void ToggleGraphCommand::toggle() {
  bool const isShown = row()->graph();
  view().keepPlace([&] {
    if (isShown) {
      window_ = row()->graph()->window();
      row()->hideGraph();
    } else {
      row()->showGraph(window_);
    }
    return QList<SheetRow*>{row()};
  });
  enter();
  if (!isShown) view().showBelow();
}

// ---- Edits ------------------------------------------------------------------------------------------------

EditFormulaCommand::EditFormulaCommand(SheetView& view, SheetRow* row, unsigned long begin)
    : SheetCommand(view, row, tr("editing a formula")), begin_(begin) {}

void EditFormulaCommand::redo() {
  if (!fresh_) run(field::COMMAND_REDO, end_);
  fresh_ = false;
}

void EditFormulaCommand::undo() {
  end_ = position();
  run(field::COMMAND_UNDO, begin_);
  // A very long history drops its oldest steps.
  if (position() > begin_) loseBeginning();
}

void EditFormulaCommand::run(field::CommandE command, unsigned long target) {
  unsigned long const start = position();
  auto const isDue = [&] {
    return command == field::COMMAND_UNDO ? position() > target : position() < target;
  };
  replay([&] {
    while (isDue() && row()->formula()->runCommand(command)) {
    }
  });
  setObsolete(position() == start);
  enter();
}

unsigned long EditFormulaCommand::position() const { return row()->formula()->historyPosition(); }

EditTextCommand::EditTextCommand(SheetView& view, SheetRow* row, QString before)
    : SheetCommand(view, row, tr("editing a text")),
      before_(std::move(before)),
      after_(row->text()->text()) {}

bool EditTextCommand::mergeWith(QUndoCommand const* other) {
  auto const* const next = static_cast<EditTextCommand const*>(other);
  if (next->row() != row()) return false;
  after_ = next->after_;
  return true;
}

void EditTextCommand::redo() {
  if (!fresh_) show(after_);
  fresh_ = false;
}

void EditTextCommand::undo() { show(before_); }

void EditTextCommand::show(QString const& text) {
  replay([&] { row()->text()->setText(text); });
  enter();
}

}  // namespace zolt::desktop
