#include "zolt/surfaces/typeset/outline.h"

#include <tuple>

#include "zolt/surfaces/typeset/bracket_shape.h"
#include "zolt/surfaces/typeset/detail/brush.h"
#include "zolt/surfaces/typeset/detail/sign_shape.h"
#include "zolt/ved/geometry/graphics.h"

namespace zolt::surfaces {

bool OutlineS::operator<(OutlineS const& other) const {
  return std::tie(shape, width, height, shift, depth) <
         std::tie(other.shape, other.width, other.height, other.shift, other.depth);
}

void appendOutline(PathC& path, OutlineS const& outline, double x, double y) {
  using namespace math::ved;
  FontSizeS const& size = getFontSize(outline.depth);
  double const width = double(outline.width), height = double(outline.height), shift = outline.shift;
  auto const appendSide = [&](BracketSideE side, BracketPlaceE place) {
    appendBracket(path, side, place, x + shift, y, height, size);
  };
  switch (outline.shape) {
    case OUTLINE_OPENS_IN_ROW:
      return appendSide(BRACKET_OPEN, BRACKET_IN_ROW);
    case OUTLINE_CLOSES_IN_ROW:
      return appendSide(BRACKET_CLOSE, BRACKET_IN_ROW);
    case OUTLINE_OPENS_AROUND_BOX:
      return appendSide(BRACKET_OPEN, BRACKET_AROUND_BOX);
    case OUTLINE_CLOSES_AROUND_BOX:
      return appendSide(BRACKET_CLOSE, BRACKET_AROUND_BOX);
    case SIGN_RADICAL:
    case SIGN_INDEXED_RADICAL:
      return appendRadical(path, x, y, height, shift, outline.shape == SIGN_INDEXED_RADICAL, size);
    case SIGN_INTEGRAL:
      return appendIntegral(path, x, y, width, height);
    case SIGN_SUM:
      return appendSum(path, x, y, width, height);
    case SIGN_PRODUCT:
      return appendProduct(path, x, y, width, height);
    case SIGN_OPEN_SQUARE:
    case SIGN_CLOSE_SQUARE:
      return appendSquareBracket(path, outline.shape == SIGN_OPEN_SQUARE ? SIDE_LEFT : SIDE_RIGHT, x, y,
                                 width, height, size);
    case SIGN_OPEN_BRACE:
    case SIGN_CLOSE_BRACE:
      return appendBrace(path, outline.shape == SIGN_OPEN_BRACE ? SIDE_LEFT : SIDE_RIGHT, x, y, width, height,
                         size);
    case SIGN_HAT:
      return appendHat(path, x, y + shift, width, height, size);
    case SIGN_ARROW:
      return appendArrow(path, x, y + shift, width, height, size);
    case SIGN_DOT:
      return appendDisc(path, x + width / 2 + 0.4, y + shift + height / 2, 0.058 * size.em);
    default:
      return;
  }
}

}  // namespace zolt::surfaces
