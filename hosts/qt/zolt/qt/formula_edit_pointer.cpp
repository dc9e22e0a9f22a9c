#include <QApplication>
#include <QContextMenuEvent>
#include <QDrag>
#include <QDragEnterEvent>
#include <QGuiApplication>
#include <QInputMethod>
#include <QMenu>
#include <QMouseEvent>
#include <QPixmap>
#include <QStyleHints>
#include <algorithm>

#include "zolt/exchange/plain_text.h"
#include "zolt/qt/formula_edit_state.h"
#include "zolt/qt/formula_mime.h"
#include "zolt/qt/formula_picture.h"
#include "zolt/qt/text.h"

namespace zolt::qt {

namespace {

constexpr int scroll_interval = 40;  // ms
constexpr unsigned most_clicks = 4;

int beyond(int pos, int low, int high) { return pos < low ? pos - low : pos > high ? pos - high : 0; }

}  // namespace

// ---- Selecting --------------------------------------------------------------------------------------------

bool FormulaEdit::StateS::isOverSelection(QPointF pos) {
  for (math::ved::RectangleS const& box : field->getSelectionRectangles()) {
    if (toPixels(box).contains(pos.toPoint())) return true;
  }
  return false;
}

void FormulaEdit::StateS::press(QMouseEvent const& event) {
  QStyleHints const& hints = *QGuiApplication::styleHints();
  QPoint const at = event.position().toPoint();
  bool const again = clicks > 0 && sinceClick.isValid() &&
                     sinceClick.elapsed() < hints.mouseDoubleClickInterval() &&
                     (at - clickedAt).manhattanLength() <= hints.mouseDoubleClickDistance();
  clicks = again ? std::min(clicks + 1, most_clicks) : 1;
  clickedAt = at;
  sinceClick.start();
  bool const extend = event.modifiers() & Qt::ShiftModifier;
  if (clicks == 1 && !extend && edit.dragEnabled() && isOverSelection(event.position())) {
    mayDrag = true;
    return;
  }
  selecting = true;
  QPoint const units = toUnits(event.position());
  act([&] { return field->pressPointer(units.x(), units.y(), clicks, extend); });
}

void FormulaEdit::mousePressEvent(QMouseEvent* event) {
  if (state_->field->crefView().crefComposition().place) QGuiApplication::inputMethod()->commit();
  if (event->button() == Qt::LeftButton) {
    if (!state_->pressBar(event->position().toPoint())) state_->press(*event);
  } else if (event->button() == Qt::MiddleButton && state_->primary->hasContent() && !isReadOnly() &&
             QGuiApplication::clipboard()->supportsSelection()) {
    field::ClipboardContentS const content = state_->primary->read();
    QPointer<FormulaEdit> const alive(this);
    setCaretNear(event->position().toPoint());
    if (alive) state_->paste(content);
  } else {
    event->ignore();
  }
}

void FormulaEdit::mouseDoubleClickEvent(QMouseEvent* event) { mousePressEvent(event); }

void FormulaEdit::mouseMoveEvent(QMouseEvent* event) {
  if (!(event->buttons() & Qt::LeftButton)) {
    bool const over = state_->hoverBar(event->position().toPoint()) ||
                      (dragEnabled() && hasSelection() && state_->isOverSelection(event->position()));
    setCursor(over ? Qt::ArrowCursor : Qt::IBeamCursor);
    return;
  }
  if (state_->barDragged) {
    state_->dragBar(event->position().toPoint());
    return;
  }
  if (state_->mayDrag) {
    if ((event->position().toPoint() - state_->clickedAt).manhattanLength() >=
        QApplication::startDragDistance()) {
      state_->mayDrag = false;
      state_->startDrag();
    }
    return;
  }
  if (!state_->selecting) return;
  state_->dragTo(event->position());
}

void FormulaEdit::StateS::dragTo(QPointF pos) {
  QRect const area = viewport();
  pointer = pos;
  QPoint const at = pos.toPoint();
  QPoint const outside(beyond(at.x(), area.left(), area.right()), beyond(at.y(), area.top(), area.bottom()));
  if (outside.isNull()) {
    scrollTimer.stop();
  } else {
    // The farther outside the pointer is, the faster the formula scrolls.
    scroll += outside / 2 + QPoint(outside.x() > 0 ? 1 : 0, outside.y() > 0 ? 1 : 0);
    clampScroll();
    if (!scrollTimer.isActive()) scrollTimer.start(scroll_interval, &edit);
  }
  QPoint const units = toUnits({double(std::clamp(at.x(), area.left(), area.right())),
                                double(std::clamp(at.y(), area.top(), area.bottom()))});
  act([&] { return field->movePointer(units.x(), units.y()); });
}

void FormulaEdit::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) {
    event->ignore();
    return;
  }
  state_->scrollTimer.stop();
  state_->barDragged.reset();
  if (state_->mayDrag) {
    state_->mayDrag = false;
    setCaretNear(event->position().toPoint());
  } else if (state_->selecting) {
    state_->selecting = false;
    QPointer<FormulaEdit> const alive(this);
    state_->act([&] { return state_->field->releasePointer(); });
    if (alive) state_->offerPrimarySelection();
  }
}

void FormulaEdit::StateS::offerPrimarySelection() {
  if (QGuiApplication::clipboard()->supportsSelection()) primary->write(field->copy());
}

void FormulaEdit::contextMenuEvent(QContextMenuEvent* event) {
  bool const byMouse = event->reason() == QContextMenuEvent::Mouse;
  QPointer<FormulaEdit> const alive(this);
  if (byMouse && !state_->isOverSelection(event->pos())) setCaretNear(event->pos());
  if (!alive) return;
  QMenu* const menu = createStandardContextMenu();
  menu->setAttribute(Qt::WA_DeleteOnClose);
  emit contextMenuMade(menu);
  menu->popup(byMouse ? event->globalPos() : mapToGlobal(caretRectangle().bottomLeft()));
}

// ---- Drag and drop ----------------------------------------------------------------------------------------

void FormulaEdit::StateS::startDrag() {
  field::ClipboardContentS const content = field->copy();
  if (content.isEmpty()) return;
  auto* const drag = new QDrag(&edit);
  drag->setMimeData(new FormulaMimeData(content, fonts, edit.decimalComma()));
  if (fonts) {
    FormulaPicture picture(fonts, edit.decimalComma());
    qreal const ratio = edit.devicePixelRatioF();
    if (picture.setContent(content)) {
      QImage image =
          picture.toImage(scale() * ratio, 2, edit.palette().color(QPalette::Text), Qt::transparent);
      image.setDevicePixelRatio(ratio);
      drag->setPixmap(QPixmap::fromImage(std::move(image)));
    }
  }
  draggingHere = true;
  QPointer<FormulaEdit> const alive(&edit);
  Qt::DropActions const offered = edit.isReadOnly() ? Qt::CopyAction : Qt::CopyAction | Qt::MoveAction;
  Qt::DropAction const done = drag->exec(offered, Qt::MoveAction);
  if (!alive) return;
  draggingHere = false;
  // When the formula was dropped on this field, the drop has moved it already.
  if (done == Qt::MoveAction && drag->target() != &edit && !edit.isReadOnly()) {
    act([&] { return field->run(field::COMMAND_DELETE_LEFT); });
  }
}

bool FormulaEdit::StateS::paste(field::ClipboardContentS const& content) {
  math::common::ReadErrorS error;
  QPointer<FormulaEdit> const alive(&edit);
  bool const done = act([&] { return field->paste(content, &error) != field::PASTE_REFUSED; });
  if (!done && alive && !content.isEmpty()) {
    QString const why =
        error.message.empty() ? FormulaEdit::tr("This cannot go here") : toQString(error.message);
    QString const told = FormulaEdit::tr("Not pasted: %1").arg(why);
    error.message = toWstring(told);
    report(error);
    if (alive) emit alive->inputRejected(told);
  }
  return done;
}

void FormulaEdit::dragEnterEvent(QDragEnterEvent* event) {
  if (!isReadOnly() && FormulaMimeData::canRead(event->mimeData())) event->acceptProposedAction();
}

void FormulaEdit::dragMoveEvent(QDragMoveEvent* event) {
  math::ved::PlaceS const place = state_->placeNear(event->position());
  state_->dropCaret = state_->toPixels(state_->field->crefView().getRectangle({place, place}));
  update();
  event->acceptProposedAction();
}

void FormulaEdit::dragLeaveEvent(QDragLeaveEvent*) {
  state_->dropCaret.reset();
  update();
}

void FormulaEdit::dropEvent(QDropEvent* event) {
  state_->dropCaret.reset();
  field::ClipboardContentS const content = FormulaMimeData::read(*event->mimeData());
  bool const moves = event->source() == this && event->dropAction() == Qt::MoveAction;
  QPointer<FormulaEdit> const alive(this);
  // A field that loses the focus may cause any change here, even the end of this widget.
  setFocus(Qt::MouseFocusReason);
  if (!alive) return;
  bool done = false;
  if (moves) {
    math::ved::PlaceS const place = state_->placeNear(event->position());
    done = state_->act([&] { return state_->field->moveSelection(place); });
  } else {
    setCaretNear(event->position().toPoint());
    done = alive && state_->paste(content);
  }
  if (done) event->acceptProposedAction();
}

}  // namespace zolt::qt
