// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "zolt/algexpr/cas_request.h"
#include "zolt/engines/giac/worker/giac_names.h"

namespace zolt::giac_worker {

namespace algexpr = math::algexpr;

/// Values as expressions, node by node: sums and products of any number of operands, `_inv` and `_neg` where
/// the value has them. The client writes them as a person does.
class ResultWriterC {
 public:
  using NodeP = oss::PointerTC<algexpr::NodeABC>;

  enum FractionsE { FRACTIONS_AS_QUOTIENTS, FRACTIONS_AS_DECIMALS };

  ResultWriterC(GiacNamesC const& names, algexpr::CASAngleE angle, FractionsE fractions)
      : names_(names), angle_(angle), fractions_(fractions) {}

  /// Null when the value has something that the catalogue has no name for, or too much of it.
  NodeP write(gen const& value);

 private:
  NodeP writeNode(gen const& value);
  NodeP writeFraction(gen const& value);
  NodeP writeIdentifier(gen const& value);
  NodeP writePowerOf(gen const& base, gen const& exponent);
  NodeP writeFunction(gen const& value);
  NodeP writeCall(wstring const& name, giac::vecteur const& arguments);
  NodeP writeList(gen const& value);

  GiacNamesC const& names_;
  algexpr::CASAngleE angle_;
  FractionsE fractions_;
  unsigned long left_ = 0;
};

/// The text of a rounded real number with so many digits.
wstring writeRounded(gen const& value, unsigned digits);
/// The text of a whole number.
wstring writeWhole(gen const& value);
/// Whether a fraction has a decimal text that ends, then with at most so many significant digits.
bool isDecimal(gen const& value, unsigned long mostDigits, wstring& text);

}  // namespace zolt::giac_worker
