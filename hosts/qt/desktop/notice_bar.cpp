#include "hosts/qt/desktop/notice_bar.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QStyle>
#include <QToolButton>

namespace zolt::desktop {

NoticeBar::NoticeBar(QWidget* parent) : QFrame(parent), label_(new QLabel(this)) {
  setFrameShape(QFrame::StyledPanel);
  setBackgroundRole(QPalette::ToolTipBase);
  setForegroundRole(QPalette::ToolTipText);
  setAutoFillBackground(true);
  auto* const layout = new QHBoxLayout(this);
  layout->setContentsMargins(12, 6, 6, 6);
  auto* const sign = new QLabel(this);
  int const size = style()->pixelMetric(QStyle::PM_SmallIconSize, nullptr, this);
  sign->setPixmap(style()->standardIcon(QStyle::SP_MessageBoxWarning, nullptr, this).pixmap(size));
  label_->setWordWrap(true);
  label_->setForegroundRole(QPalette::ToolTipText);
  label_->setTextFormat(Qt::PlainText);
  label_->setTextInteractionFlags(Qt::TextSelectableByMouse);
  auto* const close = new QToolButton(this);
  close->setText(tr("Close"));
  close->setIcon(style()->standardIcon(QStyle::SP_TitleBarCloseButton, nullptr, this));
  close->setAutoRaise(true);
  close->setFocusPolicy(Qt::NoFocus);
  connect(close, &QToolButton::clicked, this, [this] {
    label_->clear();
    hide();
  });
  layout->addWidget(sign);
  layout->addWidget(label_, 1);
  layout->addWidget(close);
  hide();
}

QString NoticeBar::text() const { return label_->text(); }

void NoticeBar::tell(QString const& text) {
  if (label_->text().contains(text)) return;
  label_->setText(label_->text().isEmpty() ? text : label_->text() + u'\n' + text);
  setAccessibleName(label_->text());
  show();
}

}  // namespace zolt::desktop
