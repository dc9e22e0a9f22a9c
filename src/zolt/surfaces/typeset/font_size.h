#pragma once

namespace zolt::surfaces {

/// The measures of a font depth, in surface units.
struct FontSizeS {
  int em;           ///< size of the letters
  double baseline;  ///< from the top of a text box down to the baseline
  long height;      ///< of every text box
  long midHeight;   ///< from the top of a text box down to its axis
  long metrics[4];  ///< `GraphicsABC::getMetric`
};

/// Depth 0 is 12 units per em; 1 and 2 are three quarters and seven twelfths of it, and deeper levels keep
/// that size, so that nothing becomes illegible.
///
/// The boxes are tight around the letters, since exponents overlap a box by a fixed amount, and their axis
/// row is centred on the minus sign, so that fraction bars and signs lie on one line.
inline FontSizeS const& getFontSize(unsigned long depth) {
  static constexpr FontSizeS sizes[] = {
      {12, 9.5, 13, 6, {1, 5, 1, 1}},
      {9, 6.75, 8, 4, {1, 4, 1, 1}},
      {7, 5.25, 7, 3, {1, 3, 1, 1}},
  };
  return sizes[depth < 2 ? depth : 2];
}

}  // namespace zolt::surfaces
