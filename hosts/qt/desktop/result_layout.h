#pragma once

#include <QPointF>
#include <QSizeF>

class QPainter;

namespace zolt::desktop {

/// The size of a result's letters, in those of its formula.
constexpr qreal result_scale = 0.9;
/// From where it begins, in the size of its letters.
constexpr qreal result_indent = 0.4;

/// A value or a number of a result; of no size where there is none.
struct ResultPart {
  QSizeF size;
  qreal axis = 0;  ///< from its top

  bool isThere() const { return !size.isEmpty(); }
};

/// Where the parts of a result are, on the screen and on paper: each after its sign, beside each other where
/// there is room, else one below the other.
struct ResultLayout {
  QPointF value, number;          ///< their top-left corners
  QPointF valueSign, numberSign;  ///< where their signs begin, on the axes
  QPointF end;                    ///< after the last of them, on its axis
  qreal height = 0;
};

/// How wide a part may be where there is so much room; `letter` is the size of its letters.
qreal widestResult(qreal letter, qreal room);
ResultLayout layOutResult(ResultPart const& value, ResultPart const& number, qreal letter, qreal room);

enum class ResultSign { Equals, IsAbout, Implies };

/// Paints with the colour of the painter's pen.
void paintResultSign(QPainter& painter, QPointF at, qreal letter, ResultSign sign);

}  // namespace zolt::desktop
