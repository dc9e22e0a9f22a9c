#include "hosts/qt/desktop/text_preview.h"

#include <QEvent>
#include <QPainter>
#include <QResizeEvent>
#include <QTextLayout>
#include <cmath>

#include "hosts/qt/desktop/text_line.h"

namespace zolt::desktop {

TextPreview::TextPreview(QString const& text, QString const& placeholder, QWidget* parent)
    : QWidget(parent), text_(text), placeholder_(placeholder) {
  setAccessibleName(text.isEmpty() ? placeholder : text);
  setCursor(Qt::IBeamCursor);
  setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
  fitOneLine();
}

TextPreview::~TextPreview() = default;

qreal TextPreview::layOut(QPainter* painter) const {
  QTextLayout layout(text_.isEmpty() ? placeholder_ : text_, font());
  QTextOption option;
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  layout.setTextOption(option);
  layout.setCacheEnabled(true);
  layout.beginLayout();
  qreal y = 0;
  for (QTextLine line = layout.createLine(); line.isValid(); line = layout.createLine()) {
    line.setLeadingIncluded(true);
    line.setLineWidth(width() - 2 * TextLine::margin);
    line.setPosition({0, y});
    y += line.height();
  }
  layout.endLayout();
  if (painter) {
    painter->setPen(palette().color(text_.isEmpty() ? QPalette::PlaceholderText : QPalette::Text));
    layout.draw(painter, {TextLine::margin, TextLine::margin});
  }
  return y + 2 * TextLine::margin;
}

void TextPreview::fit() { setFixedHeight(int(std::ceil(layOut(nullptr)))); }

// Lines are made and get their font before the sheet has given them a width: a sheet has thousands of them.
void TextPreview::fitOneLine() { setFixedHeight(fontMetrics().height() + 2 * TextLine::margin); }

void TextPreview::paintEvent(QPaintEvent*) {
  QPainter painter(this);
  layOut(&painter);
}

void TextPreview::resizeEvent(QResizeEvent* event) {
  if (hasWidth_ && event->size().width() == event->oldSize().width()) return;
  hasWidth_ = true;
  fit();
}

void TextPreview::changeEvent(QEvent* event) {
  if (event->type() == QEvent::FontChange) hasWidth_ ? fit() : fitOneLine();
  QWidget::changeEvent(event);
}

}  // namespace zolt::desktop
