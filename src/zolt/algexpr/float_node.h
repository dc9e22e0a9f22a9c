#pragma once

#include <utility>

#include "zolt/algexpr/node_kind.h"
#include "zolt/algexpr/number_display_format.h"

namespace zolt::math::algexpr {

namespace detail {
struct NodeAccessS;
}  // namespace detail

/// A number with a point or an exponent. Its text is kept as it was read; there is no binary value.
class FloatNodeC : public NodeKindTC<FloatNodeC, NodeABC, &NodeVisitorABC::visitFloat> {
 public:
  static constexpr char16_t const* castable_id = u"FloatNodeC";
  wstring const& crefName() const override { return text_; }

  /// The number's text in a format, rounded to at most `precision` significant digits, exactly on the decimal
  /// digits and halves away from zero. 0 and `Float64UtilC::max_display_precision` and more mean all digits
  /// that are written. Minus signs made here are U+2212, exponents read "E3". A number whose plain form would
  /// need hundreds of zeros is shown scientific instead; one whose exponent does not fit 32 bits, as written.
  /// A number without an exponent and without digits after the point keeps its point ("150."), so that it
  /// reads back as a decimal, never as an integer.
  wstring toString(unsigned long precision, NumberDisplayFormatE format) const;

 private:
  friend struct detail::NodeAccessS;
  explicit FloatNodeC(wstring text) : text_(std::move(text)) {}

  wstring text_;
};

}  // namespace zolt::math::algexpr
