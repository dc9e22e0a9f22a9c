#include "zolt/surfaces/typeset/detail/row_context.h"

namespace zolt::surfaces {

TextStartE RowContextC::findStart(long x, long y, long height, unsigned long depth) const {
  for (std::size_t age = 0; age < size(); ++age) {
    PieceS const& left = piece(age);
    if (left.next != x) continue;
    bool const beside = left.top < y + height && left.bottom > y;
    // A bar may be the top of a radical, and an exponent stands high above the text when its base is high.
    if (beside || left.kind == PieceS::KIND_BAR) return TEXT_FOLLOWS_ITEM;
    if (left.depth > depth && !isBound(age, y, height)) return TEXT_FOLLOWS_ITEM;
  }
  return TEXT_STARTS_GROUP;
}

/// An upper bound ends where its integrand starts, as an exponent ends where its row goes on; but the lower
/// bound was drawn just before it.
bool RowContextC::isBound(std::size_t age, long y, long height) const {
  long const bottom = y + height;
  for (std::size_t older = age + 1; older < size(); ++older) {
    PieceS const& other = piece(older);
    if (other.depth >= piece(age).depth && other.top >= bottom) return true;
  }
  return piece(age).top >= bottom;
}

double RowContextC::findKern(long x, long bottom, unsigned long depth) const {
  // How far a row lets an exponent reach down over its base; limits and indices stand higher or lower.
  constexpr long overlap = 5;
  if (count_ == 0) return 0;
  PieceS const& base = piece(0);
  bool const isExponent = base.next == x && base.depth + 1 == depth && bottom == base.top + overlap;
  return base.kind == PieceS::KIND_TEXT && isExponent ? base.kern : 0;
}

}  // namespace zolt::surfaces
