#include "hosts/qt/desktop/graph.h"

#include <QFontMetricsF>
#include <QPainter>
#include <QPainterPath>
#include <QPalette>
#include <algorithm>
#include <cmath>

#include "zolt/algexpr/flat_tree.h"
#include "zolt/algexpr/float_node.h"
#include "zolt/algexpr/nodes.h"
#include "zolt/engines/basic/real_function.h"
#include "zolt/qt/text.h"

namespace zolt::desktop {

using namespace math::algexpr;

namespace {

constexpr double pi = 3.14159265358979323846;
constexpr std::chrono::milliseconds sampling_deadline{3000};
constexpr double label_room_x = 74, label_room_y = 44;  // pixels for a tick, at least
constexpr qreal label_gap = 3;

class EngineFunction final : public plot::PlottedFunctionABC {
 public:
  explicit EngineFunction(engine_basic::RealFunctionC& function) : function_(function) {}
  bool evaluate(double x, double* y) override { return function_.evaluate(x, y); }
  bool isSmooth(double from, double to) override { return function_.isSmooth(from, to); }
  bool mayGoOn() const override { return !function_.isOver(); }

 private:
  engine_basic::RealFunctionC& function_;
};

/// How a part depends on a variable. An even growth is that of a rational multiple, with anything added.
enum GrowthE { GROWTH_NUMBER, GROWTH_CONSTANT, GROWTH_EVEN, GROWTH_OTHER };

GrowthE growthOf(NodeABC const& leaf, oss::wstring const& variable) {
  if (leaf.crefName() == variable) return GROWTH_EVEN;
  bool const isNumber = castNode<IntegerNodeC>(leaf) || castNode<FloatNodeC>(leaf);
  return isNumber ? GROWTH_NUMBER : GROWTH_CONSTANT;
}

GrowthE combine(oss::wstring const& name, std::vector<GrowthE> const& parts) {
  GrowthE const most = *std::max_element(parts.begin(), parts.end());
  if (most != GROWTH_EVEN || name == u"+" || name == u"-" || name == u"_neg") return most;
  if (parts.size() != 2) return GROWTH_OTHER;
  bool const isMultiple = (name == u"*" && parts[0] == GROWTH_NUMBER) ||
                          ((name == u"*" || name == u"/") && parts[1] == GROWTH_NUMBER);
  return isMultiple ? GROWTH_EVEN : GROWTH_OTHER;
}

unsigned countTicks(double length, double room) { return unsigned(std::clamp(length / room, 2.0, 40.0)); }

}  // namespace

bool isTrigonometric(NodeABC const& root, oss::wstring const& variable) {
  FlatTreeC tree;
  if (!tree.fill(root)) return false;
  bool isFound = false;
  std::vector<GrowthE> growths(tree.end(0));
  // The parts of a part have the greater numbers.
  for (std::uint32_t at = tree.end(0); at-- > 0;) {
    oss::wstring const& name = tree.crefNode(at).crefName();
    std::vector<GrowthE> parts;
    for (std::uint32_t part = at + 1; part < tree.end(at); part = tree.end(part)) {
      parts.push_back(growths[part]);
    }
    growths[at] = parts.empty() ? growthOf(tree.crefNode(at), variable) : combine(name, parts);
    bool const isAngle = name == u"sin" || name == u"cos" || name == u"tan" || name == u"cot" ||
                         name == u"sec" || name == u"csc";
    if (!isAngle || parts.size() != 1 || parts[0] < GROWTH_EVEN) continue;
    if (parts[0] == GROWTH_OTHER) return false;
    isFound = true;
  }
  return isFound;
}

bool GraphedFunction::equals(GraphedFunction const& other) const {
  if (!expression || !other.expression || !expression->equals(*other.expression)) return false;
  return variable == other.variable && angle == other.angle &&
         (definitions == other.definitions || (!definitions && !other.definitions));
}

QString writeLabel(oss::wstring const& number, bool decimalComma) {
  QString text = qt::toQString(number);
  return decimalComma ? text.replace(u'.', u',') : text;
}

Graph sampleGraph(GraphedFunction const& function, plot::WindowS window, bool choosesWindow,
                  oss::PointerTC<math::algexpr::CASStopC> const& stop) {
  engine_basic::RealFunctionC real(*function.expression, function.variable, function.definitions,
                                   function.angle, sampling_deadline, stop);
  EngineFunction plotted(real);
  bool const inRadians = function.isTrigonometric && function.angle == math::algexpr::CAS_RADIANS;
  if (choosesWindow) {
    double const reach = !function.isTrigonometric ? 5 : inRadians ? 2 * pi : 360;
    window.left = -reach;
    window.right = reach;
    plot::fitHeight(plotted, window);
  }
  return {window, plot::sampleCurve(plotted, window), inRadians ? plot::TICKS_OF_PI : plot::TICKS_OF_ONE,
          false};
}

GraphColours GraphColours::of(QPalette const& palette) {
  auto const veil = [&](float part) {
    QColor colour = palette.color(QPalette::Text);
    colour.setAlphaF(part);
    return colour;
  };
  return {palette.color(QPalette::Base), veil(0.09F), veil(0.55F), veil(0.7F),
          palette.color(QPalette::Highlight)};
}

GraphColours GraphColours::onPaper() {
  return {Qt::white, QColor(228, 230, 234), QColor(110, 114, 122), QColor(70, 74, 82), QColor(0x2f6fd0)};
}

void paintGraph(QPainter& painter, QRectF const& box, Graph const& graph, plot::WindowS const& shown,
                GraphColours const& colours) {
  painter.save();
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setClipRect(box, Qt::IntersectClip);
  painter.fillRect(box, colours.paper);
  painter.translate(box.topLeft());
  qreal const xScale = box.width() / shown.width, yScale = box.height() / shown.height;
  auto const toX = [&](double x) { return shown.toX(x) * xScale; };
  auto const toY = [&](double y) { return shown.toY(y) * yScale; };
  auto const xTicks =
      plot::makeTicks(shown.left, shown.right, countTicks(box.width(), label_room_x), graph.unit);
  auto const yTicks = plot::makeTicks(shown.bottom, shown.top, countTicks(box.height(), label_room_y));

  painter.setPen(QPen(colours.grid, 1));
  for (plot::TickS const& tick : xTicks) {
    painter.drawLine(QPointF(toX(tick.value), 0), QPointF(toX(tick.value), box.height()));
  }
  for (plot::TickS const& tick : yTicks) {
    painter.drawLine(QPointF(0, toY(tick.value)), QPointF(box.width(), toY(tick.value)));
  }
  painter.setPen(QPen(colours.axis, 1.2));
  qreal const axisX = toX(0), axisY = toY(0);
  painter.drawLine(QPointF(axisX, 0), QPointF(axisX, box.height()));
  painter.drawLine(QPointF(0, axisY), QPointF(box.width(), axisY));

  QPainterPath path;
  for (std::vector<plot::PointS> const& piece : graph.curve) {
    for (std::size_t i = 0; i < piece.size(); ++i) {
      QPointF const at(toX(piece[i].x), toY(piece[i].y));
      if (i == 0) {
        path.moveTo(at);
        if (piece.size() == 1) path.lineTo(at);
      } else {
        path.lineTo(at);
      }
    }
  }
  painter.setPen(QPen(colours.curve, 2, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  painter.setBrush(Qt::NoBrush);
  painter.drawPath(path);

  // Labels are at the axes, or at the edge beyond which an axis is; the curve does not run through them.
  QFontMetricsF const metrics(painter.font());
  auto const drawLabel = [&](QRectF const& where, QString const& label) {
    QColor veil = colours.paper;
    veil.setAlphaF(0.8F);
    painter.fillRect(where, veil);
    painter.setPen(colours.text);
    painter.drawText(where, Qt::AlignCenter, label);
  };
  qreal const height = metrics.height();
  qreal const labelY = std::clamp(axisY + label_gap, label_gap, box.height() - height - label_gap);
  for (plot::TickS const& tick : xTicks) {
    QString const label = writeLabel(tick.label, graph.decimalComma);
    qreal const width = metrics.horizontalAdvance(label) + 2;
    QRectF const where(toX(tick.value) - width / 2, labelY, width, height);
    bool const isWhole = where.left() > 0 && where.right() < box.width();
    bool const isOrigin = std::fabs(toX(tick.value) - axisX) < 1;
    if (isWhole && !isOrigin) drawLabel(where, label);
  }
  for (plot::TickS const& tick : yTicks) {
    QString const label = writeLabel(tick.label, graph.decimalComma);
    qreal const width = metrics.horizontalAdvance(label) + 2;
    qreal const left = std::clamp(axisX - width - label_gap, label_gap, box.width() - width - label_gap);
    QRectF const where(left, toY(tick.value) - height / 2, width, height);
    bool const isWhole = where.top() > 0 && where.bottom() < box.height();
    bool const isOrigin = std::fabs(toY(tick.value) - axisY) < 1;
    if (isWhole && !isOrigin) drawLabel(where, label);
  }
  painter.restore();
}

}  // namespace zolt::desktop
