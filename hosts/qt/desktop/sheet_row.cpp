#include "hosts/qt/desktop/sheet_row.h"

#include <QApplication>
#include <QEvent>
#include <QHBoxLayout>
#include <QMouseEvent>
#include <QPainter>
#include <QPushButton>
#include <QTimer>
#include <QVBoxLayout>

#include "hosts/qt/desktop/graph_view.h"
#include "hosts/qt/desktop/result_view.h"
#include "hosts/qt/desktop/sheet_file.h"
#include "hosts/qt/desktop/text_line.h"
#include "hosts/qt/desktop/text_preview.h"
#include "zolt/qt/formula_edit.h"
#include "zolt/sheet/sheet_text.h"

namespace zolt::desktop {

using qt::FormulaEdit;

namespace {

// In logical pixels.
constexpr int margin_width = 52;
constexpr int bar_width = 3;
constexpr int dot_size = 6;

constexpr qsizetype notation_shown = 300;  // characters

constexpr int state_delay = 300;  // ms: during typing every formula is incomplete

constexpr QRgb incomplete_colour = 0xffe09a20;

unsigned long nextId() {
  static unsigned long last = 0;
  return ++last;
}

}  // namespace

SheetRow::SheetRow(SheetLine const& line, QWidget* parent)
    : QWidget(parent), kind_(line.kind), id_(nextId()) {
  auto* const layout = new QHBoxLayout(this);
  layout->setContentsMargins(margin_width, 3, 12, 3);
  if (kind_ != LineKind::Formula) {
    previewed_ = line.text;
    preview_ = new TextPreview(previewed_, placeholder(), this);
    updateFont();
  } else if (line.prefix.size() + line.tree.size() > long_formula) {
    makeNotation(line);
  } else {
    makeFormula(line);
  }
  if (formula_) {
    layout->addLayout(makeColumn());
  } else {
    layout->addWidget(shown());
  }
  if (button_) layout->addWidget(button_);
  if (!preview_) setFocusProxy(shown());
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
}

SheetRow::~SheetRow() = default;

void SheetRow::makeFormula(SheetLine const& line) {
  formula_ = new FormulaEdit(this);
  formula_->setFrame(false);
  formula_->setUndoRedoEnabled(false);
  formula_->setPlaceholderText(tr("Formula"));
  formula_->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  if (!line.tree.isEmpty()) {
    formula_->setTree(line.tree);
  } else {
    formula_->setPrefix(line.prefix);
  }
  stateTimer_ = new QTimer(this);
  stateTimer_->setSingleShot(true);
  stateTimer_->setInterval(state_delay);
  connect(stateTimer_, &QTimer::timeout, this, &SheetRow::updateState);
  connect(formula_, &FormulaEdit::expressionChanged, this, [this] {
    line_.reset();
    stateTimer_->start();
  });
  line_ = line;
  incomplete_ = line.prefix.isEmpty() && !line.tree.isEmpty();
}

QVBoxLayout* SheetRow::makeColumn() {
  column_ = new QVBoxLayout;
  column_->setContentsMargins(0, 0, 0, 0);
  column_->setSpacing(0);
  column_->addWidget(formula_);
  if (line_->graph.isShown()) showGraph(line_->graph);
  return column_;
}

ResultView& SheetRow::results() {
  if (!results_) {
    results_ = new ResultView(this);
    results_->setZoom(zoom_);
    results_->setDecimalComma(decimalComma_);
    column_->insertWidget(1, results_);
    results_->show();
    emit resultsMade();
  }
  return *results_;
}

void SheetRow::showResult(ShownResult const& result) {
  if (results_ || !result.isEmpty()) results().setResult(result);
}

void SheetRow::showGraph(sheet::GraphWindowS const& window) {
  graph_ = new GraphView(window, this);
  graph_->setDecimalComma(decimalComma_);
  column_->addWidget(graph_);
  graph_->show();
  connect(graph_, &GraphView::left, formula_, [this] { formula_->setFocus(Qt::OtherFocusReason); });
  emit graphMade();
}

void SheetRow::hideGraph() {
  delete graph_;
  graph_ = nullptr;
}

void SheetRow::makeNotation(SheetLine const& line) {
  QString const& notation = line.tree.isEmpty() ? line.prefix : line.tree;
  makeText(notation.left(notation_shown) + u'…');
  text_->setReadOnly(true);
  text_->setAccessibleName(tr("A long formula that is not shown"));
  button_ = new QPushButton(tr("Show Formula"), this);
  button_->setToolTip(tr("It has %L1 characters, and so showing it takes a while.").arg(notation.size()));
  connect(button_, &QPushButton::clicked, this, &SheetRow::formulaWanted);
  connect(text_, &TextLine::returnPressed, this, &SheetRow::formulaWanted);
  line_ = line;
}

void SheetRow::showFormula() {
  // One of them may be what called.
  for (QWidget* const widget : {static_cast<QWidget*>(text_), static_cast<QWidget*>(button_)}) {
    widget->hide();
    widget->deleteLater();
  }
  text_ = nullptr;
  button_ = nullptr;
  SheetLine const line = *line_;
  makeFormula(line);
  static_cast<QHBoxLayout*>(layout())->addLayout(makeColumn());
  setFocusProxy(formula_);
  formula_->show();
  formula_->setAccessibleName(tr("Formula %1").arg(number_));
}

void SheetRow::makeText(QString const& text) {
  text_ = new TextLine(int(sheet::max_sheet_text), this);
  text_->setText(text);
  text_->setPlaceholderText(placeholder());
  text_->setAccessibleName(text_->placeholderText());
  updateFont();
}

QString SheetRow::placeholder() const { return kind_ == LineKind::Heading ? tr("Heading") : tr("Text"); }

QWidget* SheetRow::shown() const {
  if (formula_) return formula_;
  return text_ ? static_cast<QWidget*>(text_) : preview_;
}

QWidget* SheetRow::editor() {
  text();
  return shown();
}

TextLine* SheetRow::text() {
  if (!preview_) return text_;
  makeText(previewed_);
  delete layout()->replaceWidget(preview_, text_);
  // It may be what was pressed.
  preview_->hide();
  preview_->deleteLater();
  preview_ = nullptr;
  setFocusProxy(text_);
  text_->show();
  layout()->activate();
  emit textMade();
  return text_;
}

SheetLine SheetRow::line() const {
  if (kind_ != LineKind::Formula) return {kind_, preview_ ? previewed_ : text_->text(), {}, {}};
  if (!line_) line_ = makeFormulaLine(formula_->prefix(), formula_->tree());
  return withGraph(*line_);
}

SheetLine SheetRow::draft() const {
  if (!formula_ || line_) return line();
  return withGraph({LineKind::Formula, {}, {}, formula_->tree()});
}

SheetLine SheetRow::withGraph(SheetLine line) const {
  // A formula that is not shown has the graph that it was read with.
  if (formula_) line.graph = graph_ ? graph_->window() : sheet::GraphWindowS();
  return line;
}

bool SheetRow::isEmpty() const {
  if (formula_) return formula_->isEmpty();
  return preview_ ? previewed_.isEmpty() : text_->text().isEmpty();
}

void SheetRow::setNumber(int number) {
  if (number == number_) return;
  number_ = number;
  if (formula_) formula_->setAccessibleName(tr("Formula %1").arg(number));
  update();
}

void SheetRow::setCurrent(bool current) {
  if (current == current_) return;
  current_ = current;
  update();
}

void SheetRow::setZoom(qreal zoom, QPoint const* kept) {
  zoom_ = zoom;
  if (results_) results_->setZoom(zoom);
  qreal const own = zoom * FormulaEdit::default_zoom;
  if (formula_ && kept) {
    formula_->setZoomAround(own, formula_->mapFromGlobal(*kept));
  } else if (formula_) {
    formula_->setZoom(own);
  } else {
    updateFont();
  }
}

void SheetRow::setDecimalComma(bool decimalComma) {
  decimalComma_ = decimalComma;
  if (formula_) formula_->setDecimalComma(decimalComma);
  if (results_) results_->setDecimalComma(decimalComma);
  if (graph_) graph_->setDecimalComma(decimalComma);
}

void SheetRow::updateFont() {
  QFont scaled = font();
  double const size = scaled.pointSizeF() * zoom_;
  scaled.setPointSizeF(kind_ == LineKind::Heading ? 1.35 * size : 1.05 * size);
  if (kind_ == LineKind::Heading) scaled.setWeight(QFont::DemiBold);
  shown()->setFont(scaled);
}

void SheetRow::enterAt(QPoint global) {
  editor()->setFocus(Qt::OtherFocusReason);
  QPoint const at = editor()->mapFromGlobal(global);
  if (formula_) {
    formula_->setCaretNear({at.x(), std::clamp(at.y(), 0, std::max(0, formula_->height() - 1))});
  } else {
    text_->setCaretNear(at);
  }
}

void SheetRow::enterAtEnd() {
  editor()->setFocus(Qt::OtherFocusReason);
  if (formula_) {
    formula_->runCommand(field::COMMAND_FORMULA_END);
  } else {
    text_->enterAtEnd();
  }
}

QRect SheetRow::caretOnScreen() {
  QRect const caret = formula_ ? formula_->caretRectangle() : text()->caretRectangle();
  return {editor()->mapToGlobal(caret.topLeft()), caret.size()};
}

void SheetRow::updateState() {
  bool const incomplete = !formula_->isEmpty() && !formula_->isComplete();
  if (incomplete != incomplete_) {
    incomplete_ = incomplete;
    update();
  }
  emit formulaStateChanged();
}

void SheetRow::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  painter.setRenderHint(QPainter::Antialiasing);
  if (current_) painter.fillRect(0, 0, bar_width, height(), palette().color(QPalette::Highlight));
  if (kind_ != LineKind::Formula) return;
  QFont small = font();
  small.setPointSizeF(0.85 * small.pointSizeF());
  painter.setFont(small);
  painter.setPen(palette().color(current_ ? QPalette::Text : QPalette::PlaceholderText));
  // At the formula, not at what is below it.
  QRect const beside = formula_ ? formula_->geometry() : rect();
  QRect const box(bar_width, beside.top(), margin_width - bar_width - 2 * dot_size, beside.height());
  painter.drawText(box, Qt::AlignRight | Qt::AlignVCenter, QString::number(number_));
  if (incomplete_) {
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(incomplete_colour));
    painter.drawEllipse(
        QRectF(margin_width - 1.5 * dot_size, beside.center().y() - 0.5 * dot_size, dot_size, dot_size));
  }
}

void SheetRow::mousePressEvent(QMouseEvent* event) {
  if (event->button() == Qt::LeftButton && preview_) {
    // The editor takes the press, and a selection that begins here.
    text()->setFocus(Qt::MouseFocusReason);
    grabMouse();
    passOn(*event);
  } else if (event->button() == Qt::LeftButton) {
    enterAt(event->globalPosition().toPoint());
  } else {
    editor()->setFocus(Qt::MouseFocusReason);
    event->ignore();
  }
}

void SheetRow::mouseMoveEvent(QMouseEvent* event) {
  if (mouseGrabber() == this) passOn(*event);
}

void SheetRow::mouseReleaseEvent(QMouseEvent* event) {
  if (mouseGrabber() != this) return;
  releaseMouse();
  passOn(*event);
}

void SheetRow::passOn(QMouseEvent const& event) {
  QWidget* const inside = text_->viewport();
  QMouseEvent passed(event.type(), inside->mapFromGlobal(event.globalPosition()), event.globalPosition(),
                     event.button(), event.buttons(), event.modifiers());
  QApplication::sendEvent(inside, &passed);
}

void SheetRow::changeEvent(QEvent* event) {
  if (event->type() == QEvent::FontChange && !formula_ && shown()) updateFont();
  QWidget::changeEvent(event);
}

}  // namespace zolt::desktop
