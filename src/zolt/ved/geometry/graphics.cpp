#include "zolt/ved/geometry/graphics.h"

namespace zolt::math::ved {

void GraphicsABC::drawTextAs(TextRoleE, oss::wstring const& text, long x, long y) const {
  drawText(text, x, y);
}

long GraphicsABC::getTickSize(SignE radical) const {
  // The gap of the row uses part of the room left of a radicand, where no index needs it.
  return radical == SIGN_INDEXED_RADICAL ? 4 : 4 - getMetric(0);
}

void GraphicsABC::drawSign(SignE sign, long x, long y, long width, long height) const {
  long const right = x + width - 1;
  long const bottom = y + height - 1;
  switch (sign) {
    case SIGN_RADICAL:
    case SIGN_INDEXED_RADICAL: {
      long const tick = getTickSize(sign);
      drawLine(x, bottom - tick, x + tick, bottom);
      drawVerticalLine(x + tick, y, height);
      drawHorizontalLine(x + tick, y, width - tick);
      break;
    }
    case SIGN_INTEGRAL: {
      long const stem = x + 2;
      drawLine(stem + 2, y + 1, stem + 1, y);
      drawLine(stem + 1, y, stem, y + 1);
      drawVerticalLine(stem, y + 1, height - 2);
      drawLine(x, bottom - 1, x + 1, bottom);
      drawLine(x + 1, bottom, stem, bottom - 1);
      break;
    }
    case SIGN_SUM: {
      long const middle = x + width / 2;
      long const axis = y + width / 2;
      drawHorizontalLine(x, y, width);
      drawHorizontalLine(x, bottom, width);
      drawLine(x, y, middle, axis);
      drawLine(middle, axis, x, bottom);
      break;
    }
    case SIGN_ABSOLUTE_BARS:
      drawVerticalLine(x, y, height);
      drawVerticalLine(right, y, height);
      break;
    case SIGN_CEILING_BARS:
    case SIGN_FLOOR_BARS: {
      long const row = sign == SIGN_CEILING_BARS ? y : bottom;
      drawVerticalLine(x, y, height);
      drawHorizontalLine(x, row, serif_length);
      drawVerticalLine(right, y, height);
      drawHorizontalLine(right + 1 - serif_length, row, serif_length);
      break;
    }
    case SIGN_NORM_BARS:
      drawSign(SIGN_ABSOLUTE_BARS, x, y, width, height);
      drawSign(SIGN_ABSOLUTE_BARS, x + norm_bar_distance, y, width - 2 * norm_bar_distance, height);
      break;
    case SIGN_PRODUCT: {
      long const inset = width / 6;
      drawHorizontalLine(x, y, width);
      drawVerticalLine(x + inset, y, height);
      drawVerticalLine(right - inset, y, height);
      break;
    }
    case SIGN_OPEN_SQUARE:
    case SIGN_CLOSE_SQUARE:
      drawVerticalLine(sign == SIGN_OPEN_SQUARE ? x + 1 : right - 1, y, height);
      drawHorizontalLine(sign == SIGN_OPEN_SQUARE ? x + 1 : x, y, width - 1);
      drawHorizontalLine(sign == SIGN_OPEN_SQUARE ? x + 1 : x, bottom, width - 1);
      break;
    case SIGN_OPEN_BRACE:
    case SIGN_CLOSE_BRACE: {
      long const tip = sign == SIGN_OPEN_BRACE ? x : right;
      long const end = sign == SIGN_OPEN_BRACE ? right : x;
      long const stem = x + (width - 1) / 2;
      long const middle = y + height / 2;
      drawStroke(STROKE_WITH_CORNERS, {{end, y},
                                       {stem, y + 1},
                                       {stem, middle - 1},
                                       {tip, middle},
                                       {stem, middle + 1},
                                       {stem, bottom - 1},
                                       {end, bottom}});
      break;
    }
    case SIGN_HAT:
      drawStroke(STROKE_WITH_CORNERS, {{x, bottom}, {x + (width - 1) / 2, y}, {right, bottom}});
      break;
    case SIGN_ARROW: {
      long const shaft = y + height / 2;
      long const head = height / 2;
      drawHorizontalLine(x, shaft, width);
      drawStroke(STROKE_WITH_CORNERS,
                 {{right - head, shaft - head}, {right, shaft}, {right - head, shaft + head}});
      break;
    }
    case SIGN_DOT:
      drawVerticalLine(x + (width - 1) / 2, y + (height - 1) / 2, 1);
      break;
  }
}

void GraphicsABC::drawStroke(StrokeE, std::vector<PointS> const& points) const {
  for (std::size_t i = 1; i < points.size(); ++i) {
    drawLine(points[i - 1].x, points[i - 1].y, points[i].x, points[i].y);
  }
}

double GraphicsABC::getTextBaseline() const {
  oss::wstring const digit = u"0";
  return 0.5 * static_cast<double>(getTextMidHeight(digit) + getTextHeight(digit));
}

}  // namespace zolt::math::ved
