#pragma once

#include <QWidget>

class QMenu;

namespace zolt::desktop {

/// A grid of which one picks so many rows and columns, with the pointer or with the arrow keys and Return.
class SizeGrid final : public QWidget {
  Q_OBJECT

 public:
  explicit SizeGrid(QWidget* parent = nullptr);

  /// A menu that holds nothing but a grid. It closes when a size is picked.
  static SizeGrid* addTo(QMenu& menu);

  QSize sizeHint() const override;

 signals:
  void picked(int rows, int columns);

 protected:
  void paintEvent(QPaintEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void showEvent(QShowEvent* event) override;

 private:
  void mark(int rows, int columns);
  void markAt(QPointF pos);

  int rows_ = 1;
  int columns_ = 1;
};

}  // namespace zolt::desktop
