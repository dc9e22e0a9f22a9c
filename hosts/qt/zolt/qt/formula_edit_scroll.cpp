#include <QLinearGradient>
#include <QPainter>
#include <QWheelEvent>
#include <algorithm>
#include <cstdint>

#include "zolt/qt/formula_edit_state.h"

// What shows that a formula goes on beyond the edges of its field, and what brings the rest of it into sight.

namespace zolt::qt {

namespace {

// In logical pixels.
constexpr int reveal_margin = 12;  // what is shown beyond the caret when it scrolls into sight
constexpr int edge_width = 28;
constexpr int bar_zone = 9;
constexpr int bar_width = 3, held_bar_width = 7;
constexpr int least_thumb = 24;

constexpr float bar_opacity = 0.30F, held_bar_opacity = 0.55F, groove_opacity = 0.08F;

constexpr Qt::Orientation orientations[] = {Qt::Horizontal, Qt::Vertical};

int along(Qt::Orientation orientation, QPoint pos) {
  return orientation == Qt::Horizontal ? pos.x() : pos.y();
}

int along(Qt::Orientation orientation, QSize size) {
  return orientation == Qt::Horizontal ? size.width() : size.height();
}

int& along(Qt::Orientation orientation, QPoint* pos) {
  return orientation == Qt::Horizontal ? pos->rx() : pos->ry();
}

/// The part of `area` that is `width` wide at the edge where the bar is.
QRect stripOf(Qt::Orientation orientation, QRect const& area, int width) {
  return orientation == Qt::Horizontal ? QRect(area.left(), area.bottom() + 1 - width, area.width(), width)
                                       : QRect(area.right() + 1 - width, area.top(), width, area.height());
}

}  // namespace

// ---- What is in sight -------------------------------------------------------------------------------------

void FormulaEdit::StateS::clampScroll() {
  QSize const spare = contentSize() - viewport().size();
  scroll.setX(std::clamp(scroll.x(), 0, std::max(0, spare.width())));
  scroll.setY(std::clamp(scroll.y(), 0, std::max(0, spare.height())));
}

void FormulaEdit::StateS::reveal(math::ved::RectangleS const& box) {
  QRect const area = viewport();
  QRect const wanted = toPixels(box);
  auto const shift = [](int low, int high, int areaLow, int areaHigh) {
    int const margin = std::min(reveal_margin, std::max(0, (areaHigh - areaLow - (high - low)) / 2));
    if (low - margin < areaLow) return low - margin - areaLow;
    if (high + margin > areaHigh) return high + margin - areaHigh;
    return 0;
  };
  scroll.rx() += shift(wanted.left(), wanted.right(), area.left(), area.right());
  scroll.ry() += shift(wanted.top(), wanted.bottom(), area.top(), area.bottom());
  clampScroll();
}

QPointF FormulaEdit::StateS::focus() {
  QRect const area = viewport();
  QPoint const caret = edit.caretRectangle().center();
  return area.contains(caret) ? caret : QPoint(area.left(), area.center().y());
}

void FormulaEdit::StateS::resize(std::function<void()> const& change, QPointF place) {
  QPointF const units = (place - origin()) / scale();
  change();
  contentSeen = contentSize();
  clampScroll();
  scroll += (origin() + units * scale() - place).toPoint();
  clampScroll();
  edit.updateGeometry();
  edit.update();
  edit.updateMicroFocus();
}

void FormulaEdit::wheelEvent(QWheelEvent* event) {
  bool const sideways = event->modifiers() & Qt::ShiftModifier;
  QPoint delta = event->pixelDelta().isNull() ? event->angleDelta() / 4 : event->pixelDelta();
  if (sideways && delta.x() == 0) delta = {delta.y(), 0};
  QPoint const before = state_->scroll;
  if (!(event->modifiers() & Qt::ControlModifier)) {
    state_->scroll -= delta;
    state_->clampScroll();
  }
  // Where the formula cannot go on, the wheel moves what is around it.
  event->setAccepted(state_->scroll != before);
  if (state_->scroll != before) update();
}

// ---- Bars -------------------------------------------------------------------------------------------------

std::optional<FormulaEdit::StateS::BarS> FormulaEdit::StateS::bar(Qt::Orientation orientation) {
  QRect const area = viewport();
  BarS bar;
  bar.length = along(orientation, contentSize());
  bar.shown = along(orientation, area.size());
  if (bar.length <= bar.shown || bar.shown <= least_thumb) return std::nullopt;
  bar.zone = stripOf(orientation, area, bar_zone);
  bar.thumb = stripOf(orientation, area, barHovered == orientation ? held_bar_width : bar_width);
  int const size = std::max(least_thumb, int(std::int64_t(bar.shown) * bar.shown / bar.length));
  int const free = bar.shown - size;
  int const start =
      int(std::int64_t(free) * along(orientation, scroll) / std::max(1, bar.length - bar.shown));
  if (orientation == Qt::Horizontal) {
    bar.thumb = {area.left() + start, bar.thumb.top(), size, bar.thumb.height()};
  } else {
    bar.thumb = {bar.thumb.left(), area.top() + start, bar.thumb.width(), size};
  }
  return bar;
}

bool FormulaEdit::StateS::pressBar(QPoint pos) {
  for (Qt::Orientation const orientation : orientations) {
    auto const found = bar(orientation);
    if (!found || !found->zone.contains(pos)) continue;
    int const start = along(orientation, found->thumb.topLeft()),
              size = along(orientation, found->thumb.size());
    int const at = along(orientation, pos);
    // Beside its thumb the bar takes the formula there at once.
    barGrip = at >= start && at < start + size ? at - start : size / 2;
    barDragged = barHovered = orientation;
    dragBar(pos);
    return true;
  }
  return false;
}

void FormulaEdit::StateS::dragBar(QPoint pos) {
  auto const found = bar(*barDragged);
  if (!found) return;
  int const free = found->shown - along(*barDragged, found->thumb.size());
  int const start = along(*barDragged, pos) - barGrip - along(*barDragged, viewport().topLeft());
  along(*barDragged, &scroll) = int(std::int64_t(found->length - found->shown) * start / std::max(1, free));
  clampScroll();
  edit.update();
}

bool FormulaEdit::StateS::hoverBar(QPoint pos) {
  std::optional<Qt::Orientation> over;
  for (Qt::Orientation const orientation : orientations) {
    auto const found = bar(orientation);
    if (found && found->zone.contains(pos)) over = orientation;
  }
  if (over != barHovered) edit.update();
  barHovered = over;
  return over.has_value();
}

void FormulaEdit::StateS::paintEdges(QPainter& painter) {
  QRect const area = viewport();
  QColor const base = edit.palette().color(QPalette::Base);
  QColor clear = base;
  clear.setAlpha(0);
  for (Qt::Orientation const orientation : orientations) {
    auto const found = bar(orientation);
    if (!found) continue;
    bool const flat = orientation == Qt::Horizontal;
    int const before = along(orientation, scroll), behind = found->length - found->shown - before;
    auto const fade = [&](QPoint edge, QPoint inwards) {
      QLinearGradient gradient(edge, edge + inwards);
      gradient.setColorAt(0, base);
      gradient.setColorAt(1, clear);
      QRect const across = flat ? QRect(edge.x(), area.top(), inwards.x(), area.height())
                                : QRect(area.left(), edge.y(), area.width(), inwards.y());
      painter.fillRect(across.normalized() & area, gradient);
    };
    QPoint const inwards = flat ? QPoint(edge_width, 0) : QPoint(0, edge_width);
    if (before > 0) fade(area.topLeft(), inwards);
    if (behind > 0) fade(area.bottomRight() + QPoint(1, 1), -inwards);
  }
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(Qt::NoPen);
  for (Qt::Orientation const orientation : orientations) {
    auto const found = bar(orientation);
    if (!found) continue;
    bool const held = barHovered == orientation;
    auto const paint = [&](QRect const& box, float opacity) {
      QColor colour = edit.palette().color(QPalette::Text);
      colour.setAlphaF(opacity);
      painter.setBrush(colour);
      qreal const radius = 0.5 * std::min(box.width(), box.height());
      painter.drawRoundedRect(box, radius, radius);
    };
    if (held) paint(stripOf(orientation, area, held_bar_width), groove_opacity);
    paint(found->thumb, held ? held_bar_opacity : bar_opacity);
  }
  painter.restore();
}

}  // namespace zolt::qt
