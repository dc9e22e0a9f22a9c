#include "hosts/qt/desktop/sheet_view.h"

#include <QAction>
#include <QApplication>
#include <QKeyEvent>
#include <QMenu>
#include <QScrollBar>
#include <QVBoxLayout>
#include <QWheelEvent>
#include <algorithm>

#include "hosts/qt/desktop/result_view.h"
#include "hosts/qt/desktop/sheet_commands.h"
#include "hosts/qt/desktop/text_line.h"
#include "zolt/qt/formula_edit.h"
#include "zolt/sheet/sheet_text.h"

namespace zolt::desktop {

using qt::FormulaEdit;

namespace {

constexpr int page_margin = 14;
constexpr int reveal_margin = 24;
constexpr qreal least_zoom = 0.5;
constexpr qreal most_zoom = 4;

/// Discards the steps that could be redone, and adds no step itself.
class ForgetRedoCommand final : public QUndoCommand {
 public:
  ForgetRedoCommand() { setObsolete(true); }
};

void applyTyping(FormulaEdit& edit, field::InputOptionsS const& typing) {
  field::InputOptionsS options = edit.inputOptions();
  options.singleLetters = typing.singleLetters;
  options.suggestions = typing.suggestions;
  edit.setInputOptions(options);
}

}  // namespace

SheetView::SheetView(QWidget* parent)
    : QScrollArea(parent), page_(new QWidget), layout_(new QVBoxLayout(page_)) {
  layout_->setContentsMargins(0, page_margin, 0, page_margin);
  layout_->setSpacing(0);
  layout_->addStretch(1);
  page_->setBackgroundRole(QPalette::Base);
  page_->setAutoFillBackground(true);
  setWidget(page_);
  setWidgetResizable(true);
  setFrameShape(QFrame::NoFrame);
  setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  setFocusPolicy(Qt::NoFocus);
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) { onFocusChanged(now); });
  connect(&history_, &QUndoStack::cleanChanged, this, [this](bool clean) { emit modifiedChanged(!clean); });
  connect(&history_, &QUndoStack::indexChanged, this, &SheetView::edited);
  setSheet({});
}

SheetView::~SheetView() {
  // The steps of the history refer to rows.
  disconnect(qApp, nullptr, this, nullptr);
  history_.disconnect(this);
  history_.clear();
}

bool SheetView::setSheet(Sheet const& sheet, Progress const& goOn) {
  QList<SheetRow*> rows;
  for (SheetLine const& line : sheet.isEmpty() ? Sheet{SheetLine()} : sheet) {
    if (goOn && !goOn(rows.size())) {
      qDeleteAll(rows);
      return false;
    }
    rows.push_back(makeRow(line));
  }
  // If rows were shown one by one, each would cause a layout of all of them.
  page_->hide();
  history_.clear();
  current_ = nullptr;
  rows_.swap(rows);
  qDeleteAll(rows);
  for (qsizetype i = 0; i < rows_.size(); ++i) {
    layout_->insertWidget(int(i), rows_[i]);
    rows_[i]->show();
  }
  renumber();
  setCurrent(rows_.front());
  page_->show();
  verticalScrollBar()->setValue(0);
  return true;
}

Sheet SheetView::sheet() const {
  Sheet lines;
  for (SheetRow* const row : rows_) lines.push_back(row->line());
  return lines;
}

Sheet SheetView::draft() const {
  Sheet lines;
  lines.reserve(rows_.size());
  for (SheetRow* const row : rows_) lines.push_back(row->draft());
  return lines;
}

FormulaEdit* SheetView::currentFormula() const { return current_->formula(); }

FormulaEdit* SheetView::focusedFormula() const {
  auto* const focused = qobject_cast<FormulaEdit*>(window()->focusWidget());
  return focused && current_->isAncestorOf(focused) ? focused : currentFormula();
}

void SheetView::setZoom(qreal zoom) {
  zoom_ = std::clamp(zoom, least_zoom, most_zoom);
  QPoint const place = placeToKeep();
  keepPlace([&] {
    SheetRow* const kept = rowAt(page_->mapFromGlobal(place).y());
    for (SheetRow* const row : rows_) row->setZoom(zoom_, row == kept && zoomedAt_ ? &place : nullptr);
    return rows_;
  });
}

SheetRow* SheetView::rowAt(int y) const {
  auto const found = std::partition_point(rows_.begin(), rows_.end(),
                                          [y](SheetRow const* row) { return row->geometry().bottom() < y; });
  return found == rows_.end() ? rows_.back() : *found;
}

qsizetype SheetView::firstVisible() const { return rows_.indexOf(rowAt(verticalScrollBar()->value())); }

void SheetView::keepPlace(std::function<QList<SheetRow*>()> const& change) {
  QPoint const place = placeToKeep();
  int const y = page_->mapFromGlobal(place).y();
  SheetRow* const kept = rowAt(y);
  QWidget* const editor = kept->formula();
  // Of a formula with results it is the formula that stays.
  auto const top = [&] { return kept->y() + (editor ? editor->y() : 0); };
  auto const height = [&] { return std::max(1, editor ? editor->height() : kept->height()); };
  double const part = double(y - top()) / height();
  settleLayout(change());
  int const now = top() + qRound(part * height());
  verticalScrollBar()->setValue(now - viewport()->mapFromGlobal(place).y());
}

QPoint SheetView::placeToKeep() const {
  if (zoomedAt_) return *zoomedAt_;
  QPoint const caret = current_->caretOnScreen().center(), middle = viewport()->rect().center();
  bool const seen = viewport()->rect().contains(viewport()->mapFromGlobal(caret));
  return seen ? caret : viewport()->mapToGlobal(middle);
}

void SheetView::settleLayout(QList<SheetRow*> const& changed) {
  // The page learns of a change only when the layout of the line has been made.
  for (SheetRow* const row : changed) row->layout()->activate();
  layout_->activate();
  // Makes the page as high as its lines now are.
  QEvent request(QEvent::LayoutRequest);
  QApplication::sendEvent(this, &request);
}

void SheetView::setTyping(bool field::InputOptionsS::*rule, bool on) {
  typing_.*rule = on;
  for (SheetRow* const row : rows_) {
    if (row->formula()) applyTyping(*row->formula(), typing_);
  }
}

bool SheetView::setAllowedFormulas(QString const& rules) {
  FormulaEdit probe;
  if (!probe.setAllowedFormulas(rules)) return false;
  allowedFormulas_ = probe.allowedFormulas();
  for (SheetRow* const row : rows_) {
    if (row->formula()) row->formula()->setAllowedFormulas(allowedFormulas_);
  }
  return true;
}

void SheetView::setDecimalComma(bool decimalComma) {
  decimalComma_ = decimalComma;
  for (SheetRow* const row : rows_) row->setDecimalComma(decimalComma);
}

void SheetView::setRowActions(QList<QAction*> const& actions) {
  rowActions_ = actions;
  for (SheetRow* const row : rows_) row->addActions(actions);
}

// ---- Rows -------------------------------------------------------------------------------------------------

SheetRow* SheetView::makeRow(SheetLine const& line) {
  auto* const row = new SheetRow(line, page_);
  row->addActions(rowActions_);
  row->setContextMenuPolicy(Qt::ActionsContextMenu);
  connect(row, &SheetRow::textMade, this, [this, row] { connectText(row); });
  connect(row, &SheetRow::formulaWanted, this, [this, row] { showFormula(row); });
  connectRow(row);
  return row;
}

void SheetView::connectRow(SheetRow* row) {
  row->setZoom(zoom_);
  if (row->kind() != LineKind::Formula) return;
  row->editor()->installEventFilter(this);
  if (row->formula()) connectFormula(row);
}

void SheetView::showFormula(SheetRow* row) {
  QGuiApplication::setOverrideCursor(Qt::WaitCursor);
  row->showFormula();
  connectRow(row);
  QGuiApplication::restoreOverrideCursor();
  setCurrent(row);
  row->enterAtEnd();
  emit currentChanged();
}

void SheetView::connectFormula(SheetRow* row) {
  FormulaEdit* const edit = row->formula();
  row->setDecimalComma(decimalComma_);
  edit->setAllowedFormulas(allowedFormulas_);
  applyTyping(*edit, typing_);
  auto const tell = [this, row] {
    if (row == current_) emit formulaChanged();
  };
  connect(edit, &FormulaEdit::edited, this, [this, row](FormulaEdit::Step step, unsigned long position) {
    onFormulaEdited(row, step, position);
  });
  connect(edit, &FormulaEdit::expressionChanged, this, tell);
  connect(edit, &FormulaEdit::expressionChanged, this, [this, row] { emit formulaTouched(row); });
  connect(row, &SheetRow::formulaStateChanged, this, [this, row] { emit formulaSettled(row); });
  connect(row, &SheetRow::resultsMade, this, [this, row] {
    connect(&row->results(), &ResultView::contextMenuMade, this, [this, row](QMenu* menu) {
      setCurrent(row);
      emit resultMenuMade(menu);
    });
    emit resultsMade(row);
  });
  connect(row, &SheetRow::graphMade, this, [this, row] { emit graphMade(row); });
  connect(edit, &FormulaEdit::selectionChanged, this, tell);
  connect(edit, &FormulaEdit::caretMoved, this, [this, row] {
    if (row != current_) return;
    reveal();
    emit caretMoved();
  });
  connect(edit, &FormulaEdit::errorOccurred, this,
          [this](int, QString const& text) { emit errorOccurred(text); });
  connect(edit, &FormulaEdit::contextMenuMade, this, [this, row](QMenu* menu) {
    setCurrent(row);
    emit contextMenuMade(menu);
  });
  connect(edit, &FormulaEdit::returnPressed, this, &SheetView::goOn);
  connect(edit, &FormulaEdit::returnRefused, this, &SheetView::goOn);
}

void SheetView::connectText(SheetRow* row) {
  TextLine* const edit = row->text();
  edit->installEventFilter(this);
  connect(edit, &TextLine::textChanged, this, [this, row, edit, before = edit->text()]() mutable {
    QString const text = edit->text();
    if (text == before) return;
    if (!replaying_) history_.push(new EditTextCommand(*this, row, before));
    before = text;
  });
  connect(edit, &TextLine::cursorPositionChanged, this, [this, row] {
    if (row == current_) reveal();
  });
  connect(edit, &TextLine::returnPressed, this, &SheetView::goOn);
}

void SheetView::placeRow(SheetRow* row, qsizetype index) {
  layout_->insertWidget(int(index), row);
  rows_.insert(index, row);
  row->show();
  renumber();
}

void SheetView::takeRow(SheetRow* row) {
  qsizetype const index = rows_.indexOf(row);
  rows_.removeAt(index);
  layout_->removeWidget(row);
  if (row == current_ && !rows_.isEmpty()) {
    SheetRow* const next = rows_[std::min(index, rows_.size() - 1)];
    setCurrent(next);
    next->editor()->setFocus(Qt::OtherFocusReason);
  }
  row->hide();
  renumber();
}

void SheetView::renumber() {
  int number = 0;
  byId_.clear();
  for (SheetRow* const row : rows_) {
    byId_.insert(row->id(), row);
    if (row->kind() == LineKind::Formula) row->setNumber(++number);
  }
  emit rowsChanged();
}

void SheetView::setCurrent(SheetRow* row) {
  if (row == current_) return;
  if (current_) current_->setCurrent(false);
  current_ = row;
  current_->setCurrent(true);
  emit currentChanged();
}

void SheetView::onFocusChanged(QWidget* now) {
  if (!now || !page_->isAncestorOf(now)) return;
  for (SheetRow* const row : rows_) {
    if (!row->isAncestorOf(now)) continue;
    setCurrent(row);
    reveal();
    return;
  }
}

void SheetView::onFormulaEdited(SheetRow* row, FormulaEdit::Step step, unsigned long position) {
  if (replaying_) return;
  if (step == FormulaEdit::Step::Begins) {
    history_.push(new EditFormulaCommand(*this, row, position));
    return;
  }
  // The formula's own last step has grown, and the sheet already has that step.
  if (history_.canRedo()) history_.push(new ForgetRedoCommand);
  if (history_.isClean()) history_.resetClean();
  emit edited();
}

void SheetView::enterFirstFormula() {
  auto const found = std::find_if(rows_.begin(), rows_.end(), [](SheetRow* row) { return row->formula(); });
  // The keyboard focus may come later, with the window.
  setCurrent(found == rows_.end() ? rows_.front() : *found);
  current_->enterAtEnd();
}

// ---- Edits ------------------------------------------------------------------------------------------------

void SheetView::insertBelow(SheetRow* row, SheetLine const& line) {
  if (std::size_t(rows_.size()) >= sheet::max_sheet_lines) {
    emit errorOccurred(tr("A sheet has %1 lines at most").arg(sheet::max_sheet_lines));
    return;
  }
  history_.push(new InsertRowCommand(*this, makeRow(line), rows_.indexOf(row) + 1));
}

void SheetView::duplicateCurrent() { insertBelow(current_->line()); }

void SheetView::removeCurrent() {
  bool const last = rows_.size() == 1;
  if (last && current_->formula() && current_->isEmpty()) return;
  history_.beginMacro(tr("deleting a line"));
  // A sheet always has a line.
  if (last) insertBelow(SheetLine());
  history_.push(new RemoveRowCommand(*this, last ? rows_.front() : current_));
  history_.endMacro();
}

void SheetView::moveCurrent(int distance) {
  qsizetype const target = rows_.indexOf(current_) + distance;
  if (target < 0 || target >= rows_.size()) return;
  history_.push(new MoveRowCommand(*this, current_, distance));
}

void SheetView::toggleGraph(SheetRow& row) { history_.push(new ToggleGraphCommand(*this, &row)); }

void SheetView::goOn() {
  for (qsizetype i = rows_.indexOf(current_) + 1; i < rows_.size(); ++i) {
    if (!rows_[i]->formula()) continue;
    rows_[i]->enterAtEnd();
    return;
  }
  // Two empty lines in succession are avoided.
  if (current_->formula() && current_->isEmpty()) return;
  insertBelow(SheetLine());
}

// ---- Keys and wheel ---------------------------------------------------------------------------------------

void SheetView::reveal() {
  if (current_->height() != current_->sizeHint().height()) settleLayout({current_});
  QRect const caret = current_->caretOnScreen();
  QPoint const top = page_->mapFromGlobal(caret.topLeft()), bottom = page_->mapFromGlobal(caret.bottomLeft());
  ensureVisible(0, bottom.y(), 0, reveal_margin);
  ensureVisible(0, top.y(), 0, reveal_margin);
}

void SheetView::showBelow() {
  QRect const caret = current_->caretOnScreen();
  QRect const seen = viewport()->rect();
  if (!seen.intersects(QRect(viewport()->mapFromGlobal(caret.topLeft()), caret.size()))) return;
  QScrollBar& bar = *verticalScrollBar();
  int const caretTop = page_->mapFromGlobal(caret.topLeft()).y();
  int const wanted = std::min(current_->geometry().bottom() + 1 - seen.height(), caretTop - reveal_margin);
  if (wanted > bar.value()) bar.setValue(wanted);
}

bool SheetView::enterNeighbour(int distance) {
  qsizetype const target = rows_.indexOf(current_) + distance;
  if (target < 0 || target >= rows_.size()) return false;
  SheetRow* const row = rows_[target];
  int const x = current_->caretOnScreen().center().x();
  QRect const box = row->editor()->rect();
  int const y = row->editor()->mapToGlobal(distance < 0 ? box.bottomLeft() : box.topLeft()).y();
  row->enterAt({x, y});
  return true;
}

void SheetView::keyPressEvent(QKeyEvent* event) {
  // Only keys that the current line did not use arrive here.
  switch (event->key()) {
    case Qt::Key_Up:
      event->setAccepted(enterNeighbour(-1));
      break;
    case Qt::Key_Down:
      event->setAccepted(enterNeighbour(1));
      break;
    case Qt::Key_Escape:
      if (focusedFormula() != currentFormula()) {
        currentFormula()->setFocus(Qt::OtherFocusReason);
      } else {
        emit stopWanted();
      }
      break;
    case Qt::Key_PageUp:
    case Qt::Key_PageDown:
      QScrollArea::keyPressEvent(event);
      break;
    default:
      event->ignore();
  }
}

void SheetView::wheelEvent(QWheelEvent* event) {
  if (event->modifiers() & Qt::ControlModifier) {
    if (event->angleDelta().y() != 0) {
      zoomedAt_ = event->globalPosition().toPoint();
      emit zoomRequested(event->angleDelta().y() > 0 ? 1 : -1);
      zoomedAt_.reset();
    }
    event->accept();
    return;
  }
  QScrollArea::wheelEvent(event);
}

bool SheetView::focusNextPrevChild(bool next) {
  qsizetype const target = rows_.indexOf(current_) + (next ? 1 : -1);
  if (!page_->isAncestorOf(QApplication::focusWidget()) || target < 0 || target >= rows_.size()) {
    return QScrollArea::focusNextPrevChild(next);
  }
  // The reason would make a formula select itself, so that the next key would replace it.
  rows_[target]->editor()->setFocus(Qt::OtherFocusReason);
  return true;
}

bool SheetView::removeEmptyRow(int key) {
  if (!current_->isEmpty() || rows_.size() == 1) return false;
  qsizetype const index = rows_.indexOf(current_);
  bool const back = key == Qt::Key_Backspace;
  if (back && index == 0) return false;
  history_.push(new RemoveRowCommand(*this, current_));
  if (back) rows_[index - 1]->enterAtEnd();
  return true;
}

bool SheetView::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() == QEvent::KeyPress) {
    auto const* const key = static_cast<QKeyEvent*>(event);
    bool const deletes = key->key() == Qt::Key_Backspace || key->key() == Qt::Key_Delete;
    if (deletes && !key->modifiers() && watched == current_->editor() && removeEmptyRow(key->key()))
      return true;
  }
  return QScrollArea::eventFilter(watched, event);
}

}  // namespace zolt::desktop
