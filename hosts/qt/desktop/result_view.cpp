#include "hosts/qt/desktop/result_view.h"

#include <QEvent>
#include <QFontInfo>
#include <QMenu>
#include <QPainter>
#include <QTimerEvent>
#include <QToolButton>
#include <QtMath>
#include <algorithm>
#include <cmath>

#include "hosts/qt/desktop/result_layout.h"
#include "zolt/qt/formula_edit.h"

namespace zolt::desktop {

using qt::FormulaEdit;

namespace {

constexpr qreal ink = 0.74;  // of the text's colour, the rest being the paper's
constexpr qreal stale_ink = 0.35;
constexpr qreal pi = 3.14159265358979323846;
constexpr int turn_period = 60;  // ms
constexpr int turns = 12;
constexpr int spinner_size = 14;
constexpr int button_gap = 6;
constexpr int bottom_gap = 3;

constexpr QRgb error_light = 0xffb3402f, error_dark = 0xffef8b7b;

QColor mix(QColor const& a, QColor const& b, qreal part) {
  auto const between = [part](qreal x, qreal y) { return float(part * x + (1 - part) * y); };
  return QColor::fromRgbF(between(a.redF(), b.redF()), between(a.greenF(), b.greenF()),
                          between(a.blueF(), b.blueF()));
}

}  // namespace

ResultView::ResultView(QWidget* parent) : QWidget(parent) {
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  setCursor(Qt::ArrowCursor);
}

ResultView::~ResultView() = default;

int ResultView::em() const {
  return std::max(1,
                  qRound(zoom_ * FormulaEdit::default_zoom * result_scale * QFontInfo(font()).pixelSize()));
}

QToolButton* ResultView::makeButton() {
  auto* const button = new QToolButton(this);
  button->setAutoRaise(true);
  button->setFocusPolicy(Qt::ClickFocus);
  button->setCursor(Qt::PointingHandCursor);
  return button;
}

void ResultView::showIn(FormulaEdit*& edit, ShownResult::Expression const& expression, QString const& name) {
  if (!expression) {
    delete edit;
    edit = nullptr;
    return;
  }
  if (!edit) {
    edit = new FormulaEdit(this);
    edit->setFrame(false);
    edit->setUndoRedoEnabled(false);
    edit->setFocusPolicy(Qt::ClickFocus);
    edit->setPowersOfTen(true);
    edit->setDecimalComma(decimalComma_);
    edit->setZoom(zoom_ * FormulaEdit::default_zoom * result_scale);
    connect(edit, &FormulaEdit::selectionChanged, this, &ResultView::selectionChanged);
    connect(edit, &FormulaEdit::contextMenuMade, this, &ResultView::contextMenuMade);
    edit->setReadOnly(true);
    edit->show();
  }
  edit->setAlgebraicExpression(expression);
  edit->setAccessibleName(name);
}

void ResultView::setResult(ShownResult const& result) {
  if (result == result_) return;
  result_ = result;
  showIn(value_, result.value, tr("Result"));
  showIn(number_, result.number,
         result.isNumberExact ? tr("Result as a decimal number") : tr("Result as an approximate number"));
  if (!reason_ && !result.reason.isEmpty()) {
    reason_ = makeButton();
    reason_->setToolTip(tr("Selects the part of the formula that this is about (F5)"));
    connect(reason_, &QToolButton::clicked, this, &ResultView::faultChosen);
  }
  if (reason_) {
    reason_->setText(result.reason);
    reason_->setVisible(!result.reason.isEmpty());
  }
  setColours();
  fit();
}

void ResultView::setStale(bool stale) {
  if (stale == stale_) return;
  stale_ = stale;
  setColours();
}

void ResultView::setBusy(bool busy) {
  if (busy == busy_) return;
  busy_ = busy;
  if (busy && !stop_) {
    stop_ = makeButton();
    stop_->setText(tr("Stop"));
    stop_->setToolTip(tr("Stop computing (Esc)"));
    connect(stop_, &QToolButton::clicked, this, &ResultView::stopChosen);
  }
  if (stop_) stop_->setVisible(busy);
  if (busy) {
    turning_.start(turn_period, this);
  } else {
    turning_.stop();
  }
  setAccessibleName(busy ? tr("Computing") : QString());
  fit();
}

void ResultView::setZoom(qreal zoom) {
  zoom_ = zoom;
  for (FormulaEdit* const edit : {value_, number_}) {
    if (edit) edit->setZoom(zoom * FormulaEdit::default_zoom * result_scale);
  }
  fit();
}

void ResultView::setDecimalComma(bool decimalComma) {
  decimalComma_ = decimalComma;
  for (FormulaEdit* const edit : {value_, number_}) {
    if (edit) edit->setDecimalComma(decimalComma);
  }
  fit();
}

void ResultView::fit() {
  int const letter = em(), margin = qRound(result_indent * letter);
  int const most = int(widestResult(letter, width()));
  auto const partOf = [&](FormulaEdit* edit) {
    if (!edit) return ResultPart();
    QSize const size = edit->formulaSize();
    edit->resize(std::min(size.width(), most), size.height());
    return ResultPart{edit->size(), qreal(edit->axis())};
  };
  ResultPart const value = partOf(value_), number = partOf(number_);
  ResultLayout const layout = layOutResult(value, number, letter, width());
  if (value_) value_->move(layout.value.toPoint());
  if (number_) number_->move(layout.number.toPoint());
  valueSign_ = layout.valueSign.toPoint();
  numberSign_ = layout.numberSign.toPoint();
  int x = qRound(layout.end.x()), y = qRound(layout.end.y()), bottom = qCeil(layout.height);
  if (reason_ && reason_->isVisibleTo(this)) {
    QSize const size = reason_->sizeHint();
    reason_->setGeometry(margin - 4, bottom, std::min(size.width(), width() - margin), size.height());
    x = reason_->geometry().right();
    y = bottom + size.height() / 2;
    bottom += size.height();
  }
  if (busy_) {
    QSize const size = stop_->sizeHint();
    bottom = std::max(bottom, size.height());
    y = std::max(y, size.height() / 2);
    int const left = std::min(x + letter, std::max(0, width() - spinner_size - button_gap - size.width()));
    spinner_ = {left + spinner_size / 2, y};
    stop_->setGeometry(left + spinner_size + button_gap, y - size.height() / 2, size.width(), size.height());
    stop_->raise();
  }
  int const height = bottom == 0 ? 0 : bottom + bottom_gap;
  if (height != this->height() || height != minimumHeight()) setFixedHeight(height);
  update();
}

void ResultView::setColours() {
  QPalette const& around = parentWidget()->palette();
  QColor const paper = around.color(QPalette::Base);
  QColor const text = mix(around.color(QPalette::Text), paper, stale_ ? stale_ink : ink);
  QPalette quiet = around;
  quiet.setColor(QPalette::Text, text);
  for (FormulaEdit* const edit : {value_, number_}) {
    if (edit) edit->setPalette(quiet);
  }
  if (reason_) {
    bool const isDark = paper.lightness() < 128;
    QColor const colour = !result_.isError ? around.color(QPalette::PlaceholderText)
                          : isDark         ? QColor(error_dark)
                                           : QColor(error_light);
    quiet.setColor(QPalette::ButtonText, stale_ ? mix(colour, paper, 0.5) : colour);
    reason_->setPalette(quiet);
  }
  update();
}

void ResultView::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  QColor const paper = palette().color(QPalette::Base);
  QColor const colour = mix(palette().color(QPalette::Text), paper, stale_ ? stale_ink : ink);
  painter.setPen(colour);
  if (value_) paintResultSign(painter, valueSign_, em(), result_.valueSign());
  if (number_) paintResultSign(painter, numberSign_, em(), result_.numberSign());
  if (!busy_) return;
  painter.setPen(Qt::NoPen);
  for (int i = 0; i < turns; ++i) {
    QColor dot = palette().color(QPalette::Highlight);
    dot.setAlphaF(float((i + 1.0) / turns));
    painter.setBrush(dot);
    qreal const angle = 2 * pi * (turn_ + i) / turns, reach = 0.5 * spinner_size - 2;
    painter.drawEllipse(spinner_ + QPointF(reach * std::cos(angle), reach * std::sin(angle)), 1.6, 1.6);
  }
}

void ResultView::resizeEvent(QResizeEvent*) { fit(); }

void ResultView::changeEvent(QEvent* event) {
  if (event->type() == QEvent::PaletteChange) setColours();
  if (event->type() == QEvent::FontChange) fit();
  QWidget::changeEvent(event);
}

void ResultView::timerEvent(QTimerEvent* event) {
  if (event->timerId() != turning_.timerId()) return QWidget::timerEvent(event);
  turn_ = (turn_ + 1) % turns;
  update();
}

}  // namespace zolt::desktop
