#include "hosts/qt/desktop/size_grid.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QMenu>
#include <QMouseEvent>
#include <QPainter>
#include <QWidgetAction>
#include <algorithm>

namespace zolt::desktop {

namespace {

constexpr int most_rows = 8, most_columns = 8;
constexpr int cell = 20, gap = 2, margin = 6;

}  // namespace

SizeGrid::SizeGrid(QWidget* parent) : QWidget(parent) {
  setMouseTracking(true);
  setFocusPolicy(Qt::StrongFocus);
  mark(1, 1);
}

SizeGrid* SizeGrid::addTo(QMenu& menu) {
  auto* const grid = new SizeGrid(&menu);
  auto* const action = new QWidgetAction(&menu);
  action->setDefaultWidget(grid);
  menu.addAction(action);
  connect(&menu, &QMenu::aboutToShow, grid, [&menu, action] { menu.setActiveAction(action); });
  connect(grid, &SizeGrid::picked, &menu, [&menu] {
    // A menu that the grid's one was opened from closes, too.
    for (QWidget* widget = &menu; auto* const open = qobject_cast<QMenu*>(widget);
         widget = widget->parentWidget()) {
      open->close();
    }
  });
  return grid;
}

QSize SizeGrid::sizeHint() const {
  return {2 * margin + most_columns * (cell + gap) - gap,
          2 * margin + most_rows * (cell + gap) + fontMetrics().height()};
}

void SizeGrid::mark(int rows, int columns) {
  rows_ = std::clamp(rows, 1, most_rows);
  columns_ = std::clamp(columns, 1, most_columns);
  setAccessibleName(tr("%1 rows, %2 columns").arg(rows_).arg(columns_));
  QAccessibleEvent changed(this, QAccessible::NameChanged);
  QAccessible::updateAccessibility(&changed);
  update();
}

void SizeGrid::markAt(QPointF pos) {
  auto const numberAt = [](qreal at) { return int(at - margin) / (cell + gap) + 1; };
  mark(numberAt(pos.y()), numberAt(pos.x()));
}

void SizeGrid::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  QColor const line = palette().color(QPalette::Mid);
  for (int row = 0; row < most_rows; ++row) {
    for (int column = 0; column < most_columns; ++column) {
      bool const isMarked = row < rows_ && column < columns_;
      painter.setPen(isMarked ? palette().color(QPalette::Highlight) : line);
      painter.setBrush(isMarked ? palette().color(QPalette::Highlight) : palette().color(QPalette::Base));
      painter.drawRect(margin + column * (cell + gap), margin + row * (cell + gap), cell - 1, cell - 1);
    }
  }
  painter.setPen(palette().color(QPalette::Text));
  int const top = margin + most_rows * (cell + gap);
  painter.drawText(QRect(0, top, width(), height() - top), Qt::AlignCenter,
                   QStringLiteral("%1 \u00D7 %2").arg(rows_).arg(columns_));
}

void SizeGrid::mouseMoveEvent(QMouseEvent* event) { markAt(event->position()); }

void SizeGrid::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton || !rect().contains(event->position().toPoint())) return;
  markAt(event->position());
  emit picked(rows_, columns_);
}

void SizeGrid::keyPressEvent(QKeyEvent* event) {
  switch (event->key()) {
    case Qt::Key_Left:
      // It leads out of the grid, to the menu that it belongs to.
      return columns_ > 1 ? mark(rows_, columns_ - 1) : QWidget::keyPressEvent(event);
    case Qt::Key_Right:
      return mark(rows_, columns_ + 1);
    case Qt::Key_Up:
      return mark(rows_ - 1, columns_);
    case Qt::Key_Down:
      return mark(rows_ + 1, columns_);
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
      emit picked(rows_, columns_);
      return;
    default:
      QWidget::keyPressEvent(event);
  }
}

void SizeGrid::showEvent(QShowEvent* event) {
  QWidget::showEvent(event);
  mark(1, 1);
  setFocus(Qt::PopupFocusReason);
}

}  // namespace zolt::desktop
