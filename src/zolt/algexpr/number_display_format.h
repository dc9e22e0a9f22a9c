#pragma once

namespace zolt::math::algexpr {

/// How a decimal number is shown.
enum NumberDisplayFormatE : int {
  NUMBER_FORMAT_AUTOMATIC = 0,   ///< as written; rounded, the plainer of the next two
  NUMBER_FORMAT_FIXED = 1,       ///< without an exponent
  NUMBER_FORMAT_SCIENTIFIC = 2,  ///< one digit before the point
  NUMBER_FORMAT_ENGINEERING = 3  ///< one to three digits before the point, the exponent a multiple of 3
};

}  // namespace zolt::math::algexpr
