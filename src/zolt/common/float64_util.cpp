#include "zolt/common/float64_util.h"

#include <cmath>
#include <cstdlib>
#include <limits>
#include <string>

#include "zolt/common/decimal_text.h"

namespace zolt::math::common {

double Float64UtilC::fromString(wstring const& text) {
  DecimalTextS parts;
  if (!readDecimalText(text, parts)) return std::numeric_limits<double>::quiet_NaN();
  DecimalS decimal;
  if (!toDecimal(parts, decimal)) {
    // Every exponent beyond 32 bits means the same: nothing or too large, except with zeros before it.
    parts.exponentDigits = u"999999999";
    if (!toDecimal(parts, decimal)) return std::numeric_limits<double>::quiet_NaN();
  }
  // A whole number with an exponent is written alike in all locales, on which the C library's reader depends.
  std::string whole(decimal.digits.begin(), decimal.digits.end());
  whole += "0E" + std::to_string(decimal.exponent - static_cast<std::int64_t>(decimal.digits.size()) - 1);
  return std::strtod(whole.c_str(), nullptr);
}

bool Float64UtilC::isFinite(double value) { return std::isfinite(value); }

}  // namespace zolt::math::common
