#pragma once

#include <QWidget>

namespace zolt::desktop {

/// A text that nobody edits, wrapped as `TextLine` wraps it. A sheet has thousands of lines and one caret; an
/// editor in each would take time and memory.
class TextPreview final : public QWidget {
  Q_OBJECT

 public:
  /// An empty text is shown as `placeholder`.
  TextPreview(QString const& text, QString const& placeholder, QWidget* parent);
  ~TextPreview() override;

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;

 private:
  /// Returns the height, and with a painter paints the text.
  qreal layOut(QPainter* painter) const;
  void fit();
  void fitOneLine();

  QString text_;
  QString placeholder_;
  bool hasWidth_ = false;
};

}  // namespace zolt::desktop
