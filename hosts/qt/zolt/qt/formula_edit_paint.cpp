#include <QEvent>
#include <QGuiApplication>
#include <QLinearGradient>
#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>
#include <QStyle>
#include <QStyleHints>
#include <QStyleOptionFrame>
#include <QTextFormat>
#include <QTimerEvent>
#include <algorithm>
#include <cmath>

#include "zolt/qt/formula_edit_state.h"
#include "zolt/surfaces/typeset/font_size.h"

namespace zolt::qt {

namespace {

// In logical pixels.
constexpr int side_margin = 6;
constexpr int top_margin = 4;
constexpr int reveal_margin = 12;  // what is shown beyond the caret when it scrolls into sight
constexpr int edge_width = 28;

constexpr float band_opacity = 0.30F;
constexpr QRgb fault_colour = 0xffe04848;
constexpr float fault_opacity = 0.22F;

/// A box on whole device pixels at every zoom.
QRect toWholePixels(QRectF const& box) {
  int const left = qRound(box.left()), top = qRound(box.top());
  return {left, top, std::max(1, qRound(box.right()) - left), std::max(1, qRound(box.bottom()) - top)};
}

}  // namespace

// ---- Geometry ---------------------------------------------------------------------------------------------

int FormulaEdit::StateS::frameWidth() const {
  if (!frame) return 0;
  QStyleOptionFrame option;
  option.initFrom(&edit);
  return edit.style()->pixelMetric(QStyle::PM_DefaultFrameWidth, &option, &edit);
}

QRect FormulaEdit::StateS::viewport() const {
  int const width = frameWidth();
  return edit.contentsRect().adjusted(width, width, -width, -width);
}

QSize FormulaEdit::StateS::contentSize() {
  math::ved::PointS const size = field->refView().getExpressionSize();
  return {qCeil(double(size.x) * zoom) + 2 * side_margin, qCeil(double(size.y) * zoom) + 2 * top_margin};
}

QPoint FormulaEdit::StateS::origin() {
  QRect const area = viewport();
  QSize const content = contentSize();
  QPoint at = area.topLeft();
  int const spareX = area.width() - content.width(), spareY = area.height() - content.height();
  Qt::Alignment const side = QStyle::visualAlignment(edit.layoutDirection(), alignment);
  if (spareX > 0 && side & Qt::AlignHCenter) at.rx() += spareX / 2;
  if (spareX > 0 && side & Qt::AlignRight) at.rx() += spareX;
  if (spareY > 0 && alignment & Qt::AlignVCenter) at.ry() += spareY / 2;
  if (spareY > 0 && alignment & Qt::AlignBottom) at.ry() += spareY;
  return at + QPoint(side_margin, top_margin) - scroll;
}

QPoint FormulaEdit::StateS::toUnits(QPointF pos) {
  QPointF const inside = (pos - QPointF(origin())) / zoom;
  return {int(std::floor(inside.x())), int(std::floor(inside.y()))};
}

QRect FormulaEdit::StateS::toPixels(math::ved::RectangleS const& box) {
  QRectF const units(QPointF(double(box.left), double(box.top)),
                     QPointF(double(box.right), double(box.bottom)));
  QPointF const at = origin();
  return toWholePixels({units.topLeft() * zoom + at, units.bottomRight() * zoom + at});
}

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

QSize FormulaEdit::sizeHint() const {
  ensurePolished();
  int const around = 2 * state_->frameWidth();
  QMargins const margins = contentsMargins();
  QSize content = state_->contentSize();
  if (isEmpty() && !state_->placeholder.isEmpty()) {
    int const text = fontMetrics().horizontalAdvance(state_->placeholder) + 2 * side_margin;
    content.setWidth(std::max(content.width(), text));
  }
  content.setWidth(std::max(content.width(), fontMetrics().averageCharWidth() * 17));
  return content.grownBy(margins) + QSize(around, around);
}

QSize FormulaEdit::minimumSizeHint() const {
  ensurePolished();
  int const around = 2 * state_->frameWidth();
  int const letters = qCeil(double(surfaces::getFontSize(0).height) * state_->zoom);
  QSize const least(4 * letters, letters + 2 * top_margin);
  return least.grownBy(contentsMargins()) + QSize(around, around);
}

QRect FormulaEdit::caretRectangle() const { return state_->toPixels(state_->field->getCaretRectangle()); }

void FormulaEdit::resizeEvent(QResizeEvent*) { state_->clampScroll(); }

// ---- Caret ------------------------------------------------------------------------------------------------

void FormulaEdit::StateS::restartBlinking() {
  caretShown = true;
  int const period = QGuiApplication::styleHints()->cursorFlashTime();
  if (edit.hasFocus() && period >= 2) {
    blinkTimer.start(period / 2, &edit);
  } else {
    blinkTimer.stop();
  }
}

void FormulaEdit::timerEvent(QTimerEvent* event) {
  if (event->timerId() == state_->blinkTimer.timerId()) {
    state_->caretShown = !state_->caretShown;
    update(caretRectangle().adjusted(-2, -2, 2, 2));
  } else if (event->timerId() == state_->scrollTimer.timerId()) {
    state_->dragTo(state_->pointer);
  } else {
    QWidget::timerEvent(event);
  }
}

// ---- Painting ---------------------------------------------------------------------------------------------

void FormulaEdit::StateS::paintSelection(QPainter& painter) {
  // Without the focus a selection means nothing, and beside other fields it would mislead.
  if (!edit.hasFocus() && edit.window()->focusWidget() != &edit) return;
  QColor band = edit.palette().color(QPalette::Highlight);
  band.setAlphaF(band_opacity);
  for (math::ved::RectangleS const& box : field->getSelectionRectangles()) {
    QRect const pixels = toPixels(box);
    painter.fillRect(pixels, band);
  }
}

void FormulaEdit::StateS::paintFault(QPainter& painter) {
  if (!faultyBox) return;
  QRect const box = toPixels(*faultyBox);
  // The box of a missing part is no wider than the caret.
  int const spare = std::max(2, (box.height() / 2 - box.width()) / 2);
  QPainterPath path;
  path.addRoundedRect(QRectF(box.adjusted(-spare, -2, spare, 2)), 3, 3);
  QColor colour(fault_colour);
  colour.setAlphaF(fault_opacity);
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.fillPath(path, colour);
  painter.restore();
}

void FormulaEdit::StateS::paintCaret(QPainter& painter) {
  if (!dropCaret && (!edit.hasFocus() || !caretShown || !composedCaretShown)) return;
  QRect caret = dropCaret ? *dropCaret : edit.caretRectangle();
  // The caret is at least as wide as the platform's, and grows with the letters so that it stays visible.
  int const platform = edit.style()->pixelMetric(QStyle::PM_TextCursorWidth, nullptr, &edit);
  caret.setWidth(std::max(platform, qRound(zoom)));
  painter.fillRect(caret.adjusted(0, -1, 0, 1), edit.palette().color(QPalette::Text));
}

void FormulaEdit::StateS::paintComposed(QPainter& painter) {
  std::size_t const size = field->crefView().crefComposition().text.size();
  if (size == 0) return;
  QColor const colour = edit.palette().color(QPalette::Text);
  QColor band = edit.palette().color(QPalette::Highlight);
  band.setAlphaF(band_opacity);
  int const thin = std::max(1, qRound(zoom / 2));
  auto const underline = [&](QRect const& box, int thickness) {
    painter.fillRect(QRect(box.left(), box.bottom() + 1, box.width(), thickness), colour);
  };
  underline(toPixels(field->getComposedRectangle(0, size)), thin);
  for (QInputMethodEvent::Attribute const& clause : composedFormats) {
    // The clause that the input method is about has a background or a thick line.
    QTextFormat const look = clause.value.value<QTextFormat>();
    bool const inBounds = clause.start >= 0 && clause.length > 0 && std::size_t(clause.start) < size;
    if (!inBounds || !look.hasProperty(QTextFormat::BackgroundBrush)) continue;
    auto const begin = static_cast<unsigned long>(clause.start);
    QRect const box = toPixels(
        field->getComposedRectangle(begin, std::min<std::size_t>(size, begin + std::size_t(clause.length))));
    painter.fillRect(box, band);
    underline(box, 2 * thin);
  }
}

void FormulaEdit::StateS::paintEdges(QPainter& painter) {
  QRect const area = viewport();
  QColor const base = edit.palette().color(QPalette::Base);
  QColor clear = base;
  clear.setAlpha(0);
  auto const fade = [&](int from, int to) {
    QLinearGradient gradient(from, 0, to, 0);
    gradient.setColorAt(0, base);
    gradient.setColorAt(1, clear);
    painter.fillRect(QRect(std::min(from, to), area.top(), edge_width, area.height()), gradient);
  };
  if (scroll.x() > side_margin) fade(area.left(), area.left() + edge_width);
  int const hidden = contentSize().width() - area.width() - scroll.x();
  if (hidden > side_margin) fade(area.right() + 1, area.right() + 1 - edge_width);
}

void FormulaEdit::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  if (state_->frame) {
    QStyleOptionFrame option;
    option.initFrom(this);
    option.rect = contentsRect();
    option.lineWidth = state_->frameWidth();
    option.state |= QStyle::State_Sunken;
    option.state.setFlag(QStyle::State_ReadOnly, isReadOnly());
    style()->drawPrimitive(QStyle::PE_PanelLineEdit, &option, &painter, this);
  } else if (autoFillBackground() || backgroundRole() != QPalette::NoRole) {
    painter.fillRect(contentsRect(), palette().brush(backgroundRole()));
  }
  painter.setClipRect(state_->viewport() & event->rect());
  if (!state_->graphics) {
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(state_->viewport(), Qt::AlignCenter | Qt::TextWordWrap, state_->fontError);
    return;
  }
  QPoint const at = state_->origin();
  state_->paintSelection(painter);
  state_->paintFault(painter);
  if (isEmpty() && !state_->placeholder.isEmpty() && !hasFocus()) {
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(state_->viewport().adjusted(side_margin, 0, -side_margin, 0),
                     int(QStyle::visualAlignment(layoutDirection(), state_->alignment)), state_->placeholder);
  } else {
    painter.save();
    painter.translate(at);
    painter.scale(state_->zoom, state_->zoom);
    state_->graphics->begin(painter, palette().color(QPalette::Text));
    math::ved::ViewZNT4C const& view = state_->field->crefView();
    if (hasFocus()) {
      view.display(0, 0);
    } else {
      // The field has no focus, so the empty place at the caret is shown too.
      view.crefRoot().display(view.crefGraphics(), 0, 0, &view.crefRoot());
    }
    state_->graphics->end();
    painter.restore();
  }
  state_->paintEdges(painter);
  state_->paintComposed(painter);
  state_->paintCaret(painter);
}

void FormulaEdit::changeEvent(QEvent* event) {
  switch (event->type()) {
    case QEvent::StyleChange:
    case QEvent::FontChange:
    case QEvent::ContentsRectChange:
      updateGeometry();
      [[fallthrough]];
    case QEvent::PaletteChange:
    case QEvent::EnabledChange:
    case QEvent::ActivationChange:
    case QEvent::LayoutDirectionChange:
      update();
      break;
    default:
      break;
  }
  QWidget::changeEvent(event);
}

}  // namespace zolt::qt
