// SPDX-License-Identifier: GPL-3.0-or-later
#include "zolt/engines/giac/worker/certain_digits.h"

#include <algorithm>
#include <iterator>

namespace zolt::giac_worker {

using namespace giac;

bool hasAllDigits(gen const& value) {
  static unary_function_ptr const* const* const known[] = {
      &at_plus, &at_prod, &at_neg,  &at_inv,   &at_pow,  &at_sqrt, &at_exp,      &at_ln,
      &at_sin,  &at_cos,  &at_tan,  &at_asin,  &at_acos, &at_atan, &at_sinh,     &at_cosh,
      &at_tanh, &at_abs,  &at_sign, &at_floor, &at_ceil, &at_surd, &at_factorial};
  if (value.type == _VECT) {
    return std::all_of(value._VECTptr->begin(), value._VECTptr->end(), hasAllDigits);
  }
  if (value.type != _SYMB) return value.type != _DOUBLE_ && value.type != _REAL;
  bool const isKnown = std::any_of(std::begin(known), std::end(known),
                                   [&](auto const* one) { return value._SYMBptr->sommet == *one; });
  return isKnown && hasAllDigits(value._SYMBptr->feuille);
}

int countCommonDigits(gen const& a, gen const& b, context* context) {
  constexpr int most = 20000;
  gen const size = abs(b, context), distance = abs(a - b, context);
  if (is_zero(size, context)) return 0;
  if (is_zero(distance, context)) return most;
  gen const ratio = distance / size;
  bool const isNumber = ratio.type == _REAL || ratio.type == _DOUBLE_ || isExactReal(ratio);
  if (!isNumber) return 0;
  gen const digits = evalf_double(-ln(ratio, context) / ln(gen(10), context), 1, context);
  if (digits.type != _DOUBLE_ || !(digits._DOUBLE_val > 1)) return 0;
  return static_cast<int>(digits._DOUBLE_val) - 1;
}

}  // namespace zolt::giac_worker
