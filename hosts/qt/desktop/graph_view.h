#pragma once

#include <QTimer>
#include <QWidget>
#include <memory>
#include <optional>

#include "hosts/qt/desktop/graph.h"
#include "zolt/sheet/sheet_text.h"

namespace zolt::desktop {

/// The graph of a line's function, below it. The wheel zooms about the pointer, dragging moves, and so do the
/// keys: arrows, plus and minus, Home for the first view, Escape to leave. The value at the pointer is shown,
/// which Shift with arrows moves too.
/// Curves are sampled on another thread; until a new one is there, the old one moves along.
class GraphView final : public QWidget {
  Q_OBJECT

 public:
  /// Shows that part of the plane or, if it is none, one that suits the first function.
  explicit GraphView(sheet::GraphWindowS const& window, QWidget* parent);
  ~GraphView() override;

  /// Shows another function, in the same window of the plane, if there was one. No value: none, with the
  /// reason.
  void setFunction(std::optional<GraphedFunction> const& function);
  GraphedFunction const& function() const { return function_; }
  /// As it is seen now.
  Graph graph() const;
  /// What it shows of the plane, for the next time.
  sheet::GraphWindowS window() const { return {shown_.left, shown_.right, shown_.bottom, shown_.top}; }
  void setDecimalComma(bool decimalComma);
  bool isSampling() const { return bool(work_); }

 signals:
  /// The user wants to go back to the formula.
  void left();

 protected:
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void leaveEvent(QEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;

 private:
  struct WorkS;

  void zoom(QPointF at, double factor);
  void move(double dx, double dy);
  /// Moves the place whose value is shown.
  void trace(double pixels);
  void sampleAnew(bool choosesWindow);
  void takeSamples();
  QRectF box() const;
  void paintValue(QPainter& painter, GraphColours const& colours);
  void describe();
  QString written(double value, double step) const;

  GraphedFunction function_;
  Graph graph_;
  plot::WindowS shown_;
  bool hasWindow_ = false;
  bool decimalComma_ = false;
  std::shared_ptr<WorkS> work_;  // under way; null: none
  QTimer timer_;
  std::optional<QPointF> pointer_;
  std::optional<QPointF> dragged_;
};

}  // namespace zolt::desktop
