#pragma once

#include "zolt/ved/operators/construct.h"

namespace zolt::catalogue_extended {

/// A row with a mark above it.
class OperatorAccentBC : public math::ved::ConstructBC {
 public:
  void layoutNode4(math::ved::Node4C* node, math::ved::GraphicsABC const& graphics) const override;
  void displayNode4(math::ved::Node4C* node, math::ved::GraphicsABC const& graphics, long x, long y,
                    long width, long height, long midHeight) const override;
  /// A call of another number of arguments stays one.
  unsigned long getCallArity() const override { return 0; }

 protected:
  enum AccentE { ACCENT_BAR, ACCENT_ARROW, ACCENT_HAT, ACCENT_DOT };
  OperatorAccentBC(math::ved::wstring const& name, AccentE accent, math::ved::OperatorWordsS words);

 private:
  AccentE accent_;
};

/// The complex conjugate, or a mean: a bar above, conj(x).
class OperatorConjC : public OperatorAccentBC {
 public:
  OperatorConjC();
};

/// A vector: an arrow above, vec(x).
class OperatorVecC : public OperatorAccentBC {
 public:
  OperatorVecC();
};

/// An estimate, an operator or a unit vector: hat(x).
class OperatorHatC : public OperatorAccentBC {
 public:
  OperatorHatC();
};

/// The derivative by time: a dot above, dot(x).
class OperatorDotC : public OperatorAccentBC {
 public:
  OperatorDotC();
};

}  // namespace zolt::catalogue_extended
