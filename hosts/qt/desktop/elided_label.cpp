#include "hosts/qt/desktop/elided_label.h"

namespace zolt::desktop {

namespace {

// A tool tip has no room for a whole page.
constexpr qsizetype most_tip = 1000;

}  // namespace

ElidedLabel::ElidedLabel(QWidget* parent) : QLabel(parent) {
  setTextFormat(Qt::PlainText);
  setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);
}

ElidedLabel::~ElidedLabel() = default;

void ElidedLabel::setFullText(QString const& text) {
  full_ = text;
  setToolTip(text.left(most_tip).toHtmlEscaped());
  elide();
}

QSize ElidedLabel::minimumSizeHint() const { return {0, QLabel::minimumSizeHint().height()}; }

void ElidedLabel::resizeEvent(QResizeEvent* event) {
  QLabel::resizeEvent(event);
  elide();
}

void ElidedLabel::elide() {
  // Only as much text is measured as can be seen.
  QString const start = full_.left(width());
  setText(
      fontMetrics().elidedText(start.size() < full_.size() ? start + u'…' : start, Qt::ElideRight, width()));
}

}  // namespace zolt::desktop
