#pragma once

#include "zolt/oss/wstring.h"

namespace zolt::math::common {

using oss::wstring;

/// 64-bit floating-point numbers as text, the same in every locale.
class Float64UtilC {
 public:
  /// From this many significant digits on a number is shown with all it has.
  static constexpr unsigned long max_display_precision = 17;

  /// The value nearest to an unsigned decimal number (`decimal_text.h`), ties to even, however many digits it
  /// has. Not finite for any other text and for a number too large.
  static double fromString(wstring const& text);

  static bool isFinite(double value);
};

}  // namespace zolt::math::common
