#pragma once

#include <QFrame>

class QLabel;

namespace zolt::desktop {

/// A strip that shows important information for longer than a message in the status line, until it is closed.
/// It is hidden while there is nothing to show.
class NoticeBar final : public QFrame {
  Q_OBJECT

 public:
  explicit NoticeBar(QWidget* parent = nullptr);

  QString text() const;
  /// Adds a line to the text.
  void tell(QString const& text);

 private:
  QLabel* label_;
};

}  // namespace zolt::desktop
