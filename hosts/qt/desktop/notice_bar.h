#pragma once

#include <QFrame>

class QLabel;

namespace zolt::desktop {

/// A strip that tells something of importance for longer than a message in the status line, until it is
/// closed. Hidden while there is nothing to tell.
class NoticeBar final : public QFrame {
  Q_OBJECT

 public:
  explicit NoticeBar(QWidget* parent = nullptr);

  QString text() const;
  /// Adds a line to what is shown.
  void tell(QString const& text);

 private:
  QLabel* label_;
};

}  // namespace zolt::desktop
