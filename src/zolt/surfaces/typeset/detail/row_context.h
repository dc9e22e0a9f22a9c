#pragma once

#include <array>
#include <cstddef>

#include "zolt/surfaces/typeset/typesetter.h"

// Internal to the typeset library.

namespace zolt::surfaces {

/// Something drawn that a text may stand right of.
struct PieceS {
  enum KindE { KIND_TEXT, KIND_BRACKET, KIND_BAR };

  KindE kind;
  long next;         ///< where the next item of its row starts
  long top, bottom;  ///< of its box
  unsigned long depth;
  double kern;  ///< how much an exponent moves to the left
};

/// Guesses what a text follows in its row from what was drawn last: a drawing call does not say, but the
/// items of a row are drawn one after another and meet edge to edge. A wrong guess moves a sign inside its
/// room or an exponent by a fraction of a unit, nothing else.
class RowContextC {
 public:
  void add(PieceS const& piece) { pieces_[count_++ % kept] = piece; }
  void clear() { count_ = 0; }

  /// Of a text whose box starts at (x, y).
  TextStartE findStart(long x, long y, long height, unsigned long depth) const;
  /// How far to the left of its box a text is to be drawn whose box starts at x and ends above `bottom`.
  double findKern(long x, long bottom, unsigned long depth) const;

 private:
  /// Enough for the constructs that draw their last argument before the rest of their ink.
  static constexpr std::size_t kept = 4;

  bool isBound(std::size_t age, long y, long height) const;
  /// `age` 0 is the piece drawn last.
  PieceS const& piece(std::size_t age) const { return pieces_[(count_ - 1 - age) % kept]; }
  std::size_t size() const { return count_ < kept ? count_ : kept; }

  std::array<PieceS, kept> pieces_{};
  std::size_t count_ = 0;
};

}  // namespace zolt::surfaces
