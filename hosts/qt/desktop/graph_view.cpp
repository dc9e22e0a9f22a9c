#include "hosts/qt/desktop/graph_view.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QThreadPool>
#include <QWheelEvent>
#include <algorithm>
#include <atomic>
#include <cmath>

#include "zolt/engines/basic/real_function.h"
#include "zolt/qt/text.h"

namespace zolt::desktop {

using qt::toQString;

namespace {

constexpr int view_height = 300;  // pixels
constexpr int most_width = 760;
constexpr int margin = 4;
constexpr int poll_interval = 8;    // ms
constexpr double wheel_step = 1.2;  // of a notch
constexpr double key_step = 0.1;    // of the window
constexpr double trace_step = 8;    // pixels
constexpr double least_span = 1e-9, most_span = 1e12;

QString noFunction() { return GraphView::tr("A graph needs an expression in one variable"); }

}  // namespace

/// What the thread and the widget share.
struct GraphView::WorkS {
  oss::PointerTC<math::algexpr::CASStopC> stop{new math::algexpr::CASStopC};
  Graph graph;
  std::atomic<bool> isDone{false};
};

GraphView::GraphView(sheet::GraphWindowS const& window, QWidget* parent)
    : QWidget(parent), hasWindow_(window.isShown()) {
  if (hasWindow_) {
    shown_.left = window.left;
    shown_.right = window.right;
    shown_.bottom = window.bottom;
    shown_.top = window.top;
  }
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  setFixedHeight(view_height);
  setFocusPolicy(Qt::ClickFocus);
  setMouseTracking(true);
  setCursor(Qt::CrossCursor);
  setAccessibleName(tr("Graph"));
  timer_.setInterval(poll_interval);
  connect(&timer_, &QTimer::timeout, this, &GraphView::takeSamples);
}

GraphView::~GraphView() {
  if (work_) work_->stop->stop();
}

QRectF GraphView::box() const {
  return QRectF(margin, margin, std::min(width(), most_width) - 2 * margin, height() - 2 * margin);
}

void GraphView::setFunction(std::optional<GraphedFunction> const& function) {
  if (!function) {
    if (work_) work_->stop->stop();
    work_.reset();
    timer_.stop();
    function_ = {};
    graph_.curve.clear();
    setAccessibleDescription(noFunction());
    return update();
  }
  if (function_.equals(*function)) return;
  bool const isOther = function_.expression && function_.isTrigonometric != function->isTrigonometric;
  function_ = *function;
  sampleAnew(!hasWindow_ || isOther);
}

void GraphView::setDecimalComma(bool decimalComma) {
  decimalComma_ = decimalComma;
  describe();
  update();
}

QString GraphView::written(double value, double step) const {
  return writeLabel(plot::writeValue(value, step), decimalComma_);
}

Graph GraphView::graph() const {
  Graph graph = graph_;
  graph.window = shown_;
  graph.decimalComma = decimalComma_;
  return graph;
}

void GraphView::sampleAnew(bool choosesWindow) {
  if (!function_.expression || box().width() < 10) return;
  if (work_) work_->stop->stop();
  shown_.width = box().width();
  shown_.height = box().height();
  auto const work = std::make_shared<WorkS>();
  work_ = work;
  QThreadPool::globalInstance()->start([work, function = function_, window = shown_, choosesWindow] {
    work->graph = sampleGraph(function, window, choosesWindow, work->stop);
    work->isDone = true;
  });
  timer_.start();
  update();
}

void GraphView::takeSamples() {
  if (!work_ || !work_->isDone) return;
  graph_ = std::move(work_->graph);
  if (!hasWindow_ || graph_.window.left != shown_.left || graph_.window.right != shown_.right) {
    shown_ = graph_.window;
  }
  hasWindow_ = true;
  shown_ = graph_.window;
  work_.reset();
  timer_.stop();
  describe();
  update();
}

void GraphView::describe() {
  if (!function_.expression) return;
  double const step = (shown_.right - shown_.left) / 100;
  setAccessibleDescription(tr("A curve of %1 from %2 to %3, with values from %4 to %5 in sight")
                               .arg(toQString(function_.variable), written(shown_.left, step),
                                    written(shown_.right, step),
                                    written(shown_.bottom, (shown_.top - shown_.bottom) / 100),
                                    written(shown_.top, (shown_.top - shown_.bottom) / 100)));
}

void GraphView::zoom(QPointF at, double factor) {
  QRectF const inside = box();
  double const px = (at.x() - inside.left()) / inside.width(), py = (at.y() - inside.top()) / inside.height();
  double const width = (shown_.right - shown_.left) / factor, height = (shown_.top - shown_.bottom) / factor;
  if (std::min(width, height) < least_span || std::max(width, height) > most_span) return;
  double const x = shown_.left + px * (shown_.right - shown_.left);
  double const y = shown_.top - py * (shown_.top - shown_.bottom);
  shown_.left = x - px * width;
  shown_.right = shown_.left + width;
  shown_.top = y + py * height;
  shown_.bottom = shown_.top - height;
  sampleAnew(false);
}

void GraphView::move(double dx, double dy) {
  double const x = dx * (shown_.right - shown_.left), y = dy * (shown_.top - shown_.bottom);
  shown_.left += x;
  shown_.right += x;
  shown_.bottom += y;
  shown_.top += y;
  sampleAnew(false);
}

void GraphView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  GraphColours const colours = GraphColours::of(palette());
  if (hasWindow_) {
    QFont small = font();
    small.setPointSizeF(0.85 * small.pointSizeF());
    painter.setFont(small);
    Graph shown = graph_;
    shown.decimalComma = decimalComma_;
    paintGraph(painter, box(), shown, shown_, colours);
  }
  if (!function_.expression) {
    painter.setPen(colours.text);
    painter.drawText(box(), Qt::AlignCenter, noFunction());
  } else if (hasWindow_ && pointer_ && !dragged_) {
    paintValue(painter, colours);
  }
  painter.setPen(QPen(hasFocus() ? palette().color(QPalette::Highlight) : colours.grid, 1));
  painter.setBrush(Qt::NoBrush);
  painter.drawRoundedRect(box().adjusted(-0.5, -0.5, 0.5, 0.5), 3, 3);
}

void GraphView::paintValue(QPainter& painter, GraphColours const& colours) {
  QRectF const inside = box();
  double const xStep = (shown_.right - shown_.left) / inside.width();
  double const yStep = (shown_.top - shown_.bottom) / inside.height();
  double const x = shown_.left + (pointer_->x() - inside.left()) * xStep;
  engine_basic::RealFunctionC real(*function_.expression, function_.variable, function_.definitions,
                                   function_.angle, std::chrono::milliseconds(20));
  double y = 0;
  bool const isDefined = real.evaluate(x, &y);
  QString text = QStringLiteral("%1 = %2").arg(toQString(function_.variable), written(x, xStep));
  if (isDefined) text += QStringLiteral("    %1").arg(written(y, yStep));
  painter.setPen(QPen(colours.axis, 1, Qt::DotLine));
  painter.drawLine(QPointF(pointer_->x(), inside.top()), QPointF(pointer_->x(), inside.bottom()));
  if (isDefined) {
    QPointF const at(pointer_->x(), inside.top() + (shown_.top - y) / yStep);
    painter.setPen(QPen(colours.paper, 1.5));
    painter.setBrush(colours.curve);
    if (inside.contains(at)) painter.drawEllipse(at, 4, 4);
  }
  QRectF where = painter.fontMetrics().boundingRect(text).adjusted(-6, -3, 6, 3);
  where.moveTopRight(inside.topRight() + QPointF(-6, 6));
  painter.setPen(Qt::NoPen);
  QColor veil = colours.paper;
  veil.setAlphaF(0.9F);
  painter.setBrush(veil);
  painter.drawRoundedRect(where, 3, 3);
  painter.setPen(colours.text);
  painter.drawText(where, Qt::AlignCenter, text);
}

void GraphView::resizeEvent(QResizeEvent*) { sampleAnew(!hasWindow_); }

void GraphView::wheelEvent(QWheelEvent* event) {
  // Without the focus the sheet scrolls over it; with Ctrl the sheet zooms.
  if (!hasFocus() || event->modifiers() & Qt::ControlModifier || !hasWindow_) return event->ignore();
  zoom(event->position(), std::pow(wheel_step, event->angleDelta().y() / 120.0));
  event->accept();
}

void GraphView::mousePressEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return event->ignore();
  dragged_ = event->position();
  setCursor(Qt::ClosedHandCursor);
}

void GraphView::mouseMoveEvent(QMouseEvent* event) {
  pointer_ = event->position();
  if (!box().contains(*pointer_)) pointer_.reset();
  if (dragged_ && hasWindow_) {
    QPointF const by = event->position() - *dragged_;
    dragged_ = event->position();
    move(-by.x() / box().width(), by.y() / box().height());
  }
  update();
}

void GraphView::mouseReleaseEvent(QMouseEvent* event) {
  if (event->button() != Qt::LeftButton) return event->ignore();
  dragged_.reset();
  setCursor(Qt::CrossCursor);
  update();
}

void GraphView::mouseDoubleClickEvent(QMouseEvent*) { sampleAnew(true); }

void GraphView::leaveEvent(QEvent*) {
  pointer_.reset();
  update();
}

void GraphView::trace(double pixels) {
  QRectF const inside = box();
  if (pointer_) pointer_->rx() = std::clamp(pointer_->x() + pixels, inside.left(), inside.right());
  if (!pointer_) pointer_ = inside.center();
  update();
}

void GraphView::keyPressEvent(QKeyEvent* event) {
  QPointF const middle = box().center();
  switch (event->key()) {
    case Qt::Key_Left:
    case Qt::Key_Right: {
      double const side = event->key() == Qt::Key_Left ? -1 : 1;
      if (event->modifiers() & Qt::ShiftModifier) return trace(side * trace_step);
      return move(side * key_step, 0);
    }
    case Qt::Key_Up:
      return move(0, key_step);
    case Qt::Key_Down:
      return move(0, -key_step);
    case Qt::Key_Plus:
    case Qt::Key_Equal:
      return zoom(middle, wheel_step);
    case Qt::Key_Minus:
      return zoom(middle, 1 / wheel_step);
    case Qt::Key_Home:
      return sampleAnew(true);
    case Qt::Key_Escape:
      emit left();
      return;
    default:
      QWidget::keyPressEvent(event);
  }
}

}  // namespace zolt::desktop
