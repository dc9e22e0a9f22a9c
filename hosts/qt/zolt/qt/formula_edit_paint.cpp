#include <QEvent>
#include <QFontInfo>
#include <QGuiApplication>
#include <QImage>
#include <QPaintEvent>
#include <QPainter>
#include <QPainterPath>
#include <QStyle>
#include <QStyleHints>
#include <QTextFormat>
#include <QTimerEvent>
#include <algorithm>
#include <cmath>
#include <vector>

#include "zolt/qt/formula_edit_state.h"
#include "zolt/surfaces/typeset/font_size.h"

namespace zolt::qt {

namespace {

constexpr float band_opacity = 0.30F;
constexpr QRgb fault_colour = 0xffe04848;
constexpr float fault_opacity = 0.22F;
constexpr float caret_clearance = 0.7F;

/// A box on whole device pixels at every zoom.
QRect toWholePixels(QRectF const& box) {
  int const left = qRound(box.left()), top = qRound(box.top());
  return {left, top, std::max(1, qRound(box.right()) - left), std::max(1, qRound(box.bottom()) - top)};
}

}  // namespace

// ---- Geometry ---------------------------------------------------------------------------------------------

qreal FormulaEdit::StateS::scale() const {
  // Letters are `zoom` times as large as those of the widget's font, within what is legible and paintable.
  return std::clamp(zoom * fontSize / surfaces::getFontSize(0).em, min_zoom / 2, 2 * max_zoom);
}

QSize FormulaEdit::StateS::contentSize() {
  math::ved::PointS const size = field->refView().getExpressionSize();
  return {qCeil(double(size.x) * scale()) + 2 * side_margin,
          qCeil(double(size.y) * scale()) + 2 * top_margin};
}

QPoint FormulaEdit::StateS::origin() {
  QRect const area = viewport();
  QSize const content = contentSize();
  QPoint at = area.topLeft();
  int const spareX = area.width() - content.width(), spareY = area.height() - content.height();
  Qt::Alignment const side = QStyle::visualAlignment(edit.layoutDirection(), edit.alignment());
  if (spareX > 0 && side & Qt::AlignHCenter) at.rx() += spareX / 2;
  if (spareX > 0 && side & Qt::AlignRight) at.rx() += spareX;
  if (spareY > 0 && edit.alignment() & Qt::AlignVCenter) at.ry() += spareY / 2;
  if (spareY > 0 && edit.alignment() & Qt::AlignBottom) at.ry() += spareY;
  return at + QPoint(side_margin, top_margin) - scroll;
}

QPoint FormulaEdit::StateS::toUnits(QPointF pos) {
  QPointF const inside = (pos - QPointF(origin())) / scale();
  return {int(std::floor(inside.x())), int(std::floor(inside.y()))};
}

QRect FormulaEdit::StateS::toPixels(math::ved::RectangleS const& box) {
  QRectF const units(QPointF(double(box.left), double(box.top)),
                     QPointF(double(box.right), double(box.bottom)));
  QPointF const at = origin();
  qreal const unit = scale();
  return toWholePixels({units.topLeft() * unit + at, units.bottomRight() * unit + at});
}

QSize FormulaEdit::sizeHint() const {
  ensurePolished();
  QSize content = state_->contentSize();
  if (isEmpty() && !placeholderText().isEmpty()) {
    int const text = fontMetrics().horizontalAdvance(placeholderText()) + 2 * StateS::side_margin;
    content.setWidth(std::max(content.width(), text));
  }
  content.setWidth(std::max(content.width(), fontMetrics().averageCharWidth() * 17));
  return content.grownBy(aroundContents());
}

QSize FormulaEdit::minimumSizeHint() const {
  ensurePolished();
  int const letters = qCeil(double(surfaces::getFontSize(0).height) * state_->scale());
  QSize const least(letters + 2 * StateS::side_margin, letters + 2 * StateS::top_margin);
  return least.grownBy(aroundContents());
}

QSize FormulaEdit::formulaSize() const {
  ensurePolished();
  return state_->contentSize();
}

int FormulaEdit::axis() const {
  ensurePolished();
  state_->contentSize();  // lays out
  return state_->toPixels({0, state_->field->crefView().crefRoot().getMidHeight(), 0, 0}).top();
}

QRect FormulaEdit::caretRectangle() const { return state_->toPixels(state_->field->getCaretRectangle()); }

void FormulaEdit::onAreaChanged() { state_->clampScroll(); }

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
    int const reach = state_->caretReach() + 2;
    update(caretRectangle().adjusted(-reach, -2, reach, 2));
  } else if (event->timerId() == state_->scrollTimer.timerId()) {
    state_->dragTo(state_->pointer);
  } else if (event->timerId() == state_->suggestionTimer.timerId()) {
    state_->suggest();
  } else {
    EditField::timerEvent(event);
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
  QColor const colour = edit.palette().color(QPalette::Text);
  if (dropCaret) return painter.fillRect(dropCaret->adjusted(0, -1, 0, 1), colour);
  // The caret is at least as wide as the platform's, and grows with the letters so that it stays visible.
  // Letters that are still beside it are paled there, so that it cannot be taken for a stroke of theirs.
  int const platform = edit.style()->pixelMetric(QStyle::PM_TextCursorWidth, nullptr, &edit);
  double const pixel = 1 / edit.devicePixelRatioF();
  QRectF const caret = findClearCaret(edit.caretRectangle(), std::max(platform, int(0.7 * scale())));
  if (!field->crefView().isSelected()) {
    QColor paper = edit.palette().color(edit.hasFrame() ? QPalette::Base : edit.backgroundRole());
    paper.setAlphaF(caret_clearance);
    painter.fillRect(caret.adjusted(-pixel, 0, pixel, 0), paper);
  }
  painter.fillRect(caret.adjusted(0, -1, 0, 1), colour);
}

int FormulaEdit::StateS::caretReach() const { return qCeil(0.2 * surfaces::getFontSize(0).em * scale()); }

QRectF FormulaEdit::StateS::findClearCaret(QRect const& caret, int width) {
  double const ratio = edit.devicePixelRatioF();
  int const reach = caretReach() + 1, thickness = std::max(1, int(std::round(width * ratio)));
  QRect const around = caret.adjusted(-reach, 0, reach, 0);
  QImage drawn(around.size() * ratio, QImage::Format_ARGB32_Premultiplied);
  drawn.setDevicePixelRatio(ratio);
  drawn.fill(Qt::transparent);
  QPainter painter(&drawn);
  painter.setClipRect(QRect(QPoint(), around.size()));
  painter.translate(origin() - around.topLeft());
  painter.scale(scale(), scale());
  graphics->begin(painter, Qt::black);
  field->crefView().display(0, 0);
  graphics->end();
  painter.end();

  std::vector<double> ink(std::size_t(drawn.width()), 0.0);  // of each column, in pixels
  for (int y = 0; y < drawn.height(); ++y) {
    auto const* const row = reinterpret_cast<QRgb const*>(drawn.constScanLine(y));
    for (int x = 0; x < drawn.width(); ++x) ink[std::size_t(x)] += qAlpha(row[x]) / 255.0;
  }
  double const middle = double(drawn.width() - thickness) / 2;
  int best = int(middle);
  double least = 1e9;
  for (int x = 1; x + thickness < drawn.width(); ++x) {
    // Ink under the caret counts three times as much as ink beside it or a pixel of way.
    double cost = std::fabs(x - middle);
    for (int i = x - 1; i <= x + thickness; ++i) {
      bool const isUnder = i >= x && i < x + thickness;
      cost += (isUnder ? 3 : 1) * ink[std::size_t(i)];
    }
    if (cost >= least) continue;
    least = cost;
    best = x;
  }
  return {around.left() + best / ratio, double(around.top()), thickness / ratio, double(around.height())};
}

void FormulaEdit::StateS::paintComposed(QPainter& painter) {
  std::size_t const size = field->crefView().crefComposition().text.size();
  if (size == 0) return;
  QColor const colour = edit.palette().color(QPalette::Text);
  QColor band = edit.palette().color(QPalette::Highlight);
  band.setAlphaF(band_opacity);
  int const thin = std::max(1, qRound(scale() / 2));
  auto const underline = [&](QRect const& box, int thickness) {
    painter.fillRect(QRect(box.left(), box.bottom() + 1, box.width(), thickness), colour);
  };
  underline(toPixels(field->getComposedRectangle(0, size)), thin);
  // What is being completed comes first.
  field::CompletionC const& completion = field->crefCompletion();
  bool const isCommand = completion.getKind() == field::COMPLETION_OF_COMMAND;
  std::size_t const first = isCommand ? completion.crefQuery().size() + 1 : 0;
  for (QInputMethodEvent::Attribute const& clause : composedFormats) {
    // The clause that the input method is about has a background or a thick line.
    QTextFormat const look = clause.value.value<QTextFormat>();
    bool const inBounds = clause.start >= 0 && clause.length > 0 && first + std::size_t(clause.start) < size;
    if (!inBounds || !look.hasProperty(QTextFormat::BackgroundBrush)) continue;
    auto const begin = static_cast<unsigned long>(first + std::size_t(clause.start));
    QRect const box = toPixels(
        field->getComposedRectangle(begin, std::min<std::size_t>(size, begin + std::size_t(clause.length))));
    painter.fillRect(box, band);
    underline(box, 2 * thin);
  }
}

void FormulaEdit::paintEvent(QPaintEvent* event) {
  QPainter painter(this);
  paintFrame(painter, isReadOnly());
  painter.setClipRect(state_->viewport() & event->rect());
  if (!state_->graphics) {
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(state_->viewport(), Qt::AlignCenter | Qt::TextWordWrap, state_->fontError);
    return;
  }
  QPoint const at = state_->origin();
  state_->paintSelection(painter);
  state_->paintFault(painter);
  if (isEmpty() && !placeholderText().isEmpty() && !hasFocus()) {
    painter.setPen(palette().color(QPalette::PlaceholderText));
    painter.drawText(state_->viewport().adjusted(StateS::side_margin, 0, -StateS::side_margin, 0),
                     int(QStyle::visualAlignment(layoutDirection(), alignment())), placeholderText());
  } else {
    painter.save();
    painter.translate(at);
    painter.scale(state_->scale(), state_->scale());
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
  if (event->type() == QEvent::FontChange) {
    state_->resize([&] { state_->fontSize = QFontInfo(font()).pixelSize(); }, state_->focus());
  }
  EditField::changeEvent(event);
}

}  // namespace zolt::qt
