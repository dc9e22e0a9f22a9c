#include "hosts/qt/desktop/result_layout.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>

namespace zolt::desktop {

namespace {

// In letters' sizes.
constexpr qreal sign_width = 0.7;
constexpr qreal sign_gap = 0.32;
constexpr qreal number_gap = 1.1;
constexpr qreal stroke = 0.055;

}  // namespace

qreal widestResult(qreal letter, qreal room) {
  return std::max(1.0, room - (result_indent + sign_width + sign_gap) * letter);
}

ResultLayout layOutResult(ResultPart const& value, ResultPart const& number, qreal letter, qreal room) {
  ResultLayout layout;
  qreal const left = result_indent * letter, sign = (sign_width + sign_gap) * letter,
              gap = number_gap * letter;
  layout.end = {left, 0};
  qreal const both = value.size.width() + gap + sign + number.size.width();
  bool const isBeside = value.isThere() && number.isThere() && both <= widestResult(letter, room);
  qreal const common = std::max(value.axis, number.axis);
  auto const place = [&](ResultPart const& part, qreal x, qreal y, QPointF& at, QPointF& signAt) {
    qreal const top = isBeside ? common - part.axis : y;
    at = {x + sign, top};
    signAt = {x, top + part.axis};
    layout.end = {at.x() + part.size.width(), signAt.y()};
    layout.height = std::max(layout.height, top + part.size.height());
  };
  if (value.isThere()) place(value, left, 0, layout.value, layout.valueSign);
  if (!number.isThere()) return layout;
  qreal const x = isBeside ? layout.end.x() + gap : left;
  place(number, x, layout.height, layout.number, layout.numberSign);
  return layout;
}

void paintResultSign(QPainter& painter, QPointF at, qreal letter, ResultSign sign) {
  qreal const width = sign_width * letter, gap = 0.13 * letter, rise = 0.16 * letter;
  painter.save();
  painter.setPen(QPen(painter.pen().color(), stroke * letter, Qt::SolidLine, Qt::RoundCap));
  painter.setBrush(Qt::NoBrush);
  painter.translate(at);
  for (qreal const y : {-gap, gap}) {
    QPainterPath line;
    line.moveTo(0, y);
    if (sign == ResultSign::IsAbout) {
      line.cubicTo(0.30 * width, y - 1.4 * rise, 0.66 * width, y + 1.4 * rise, width, y);
    } else {
      line.lineTo(sign == ResultSign::Implies ? width - gap : width, y);
    }
    painter.drawPath(line);
  }
  if (sign == ResultSign::Implies) {
    qreal const arm = 1.9 * gap;
    QPainterPath tip;
    tip.moveTo(width - arm, -arm);
    tip.quadTo(width - 0.6 * gap, -0.5 * gap, width, 0);
    tip.quadTo(width - 0.6 * gap, 0.5 * gap, width - arm, arm);
    painter.drawPath(tip);
  }
  painter.restore();
}

}  // namespace zolt::desktop
