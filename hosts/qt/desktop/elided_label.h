#pragma once

#include <QLabel>

namespace zolt::desktop {

/// A label that shows the beginning of a text that is too long, and the whole text as a tool tip.
class ElidedLabel final : public QLabel {
  Q_OBJECT

 public:
  explicit ElidedLabel(QWidget* parent = nullptr);
  ~ElidedLabel() override;

  void setFullText(QString const& text);
  QSize minimumSizeHint() const override;

 protected:
  void resizeEvent(QResizeEvent* event) override;

 private:
  void elide();

  QString full_;
};

}  // namespace zolt::desktop
