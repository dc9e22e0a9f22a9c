#pragma once

#include "zolt/ved/operators/construct.h"

namespace zolt::math::ved {

/// One row between vertical bars.
class OperatorBarsBC : public ConstructBC {
 public:
  void layoutNode4(Node4C* node, GraphicsABC const& graphics) const override;
  void displayNode4(Node4C* node, GraphicsABC const& graphics, long x, long y, long width, long height,
                    long midHeight) const override;

 protected:
  OperatorBarsBC(wstring const& name, wstring const& text, bool coreElement, int code, SignE bars);

 private:
  SignE bars_;
};

/// The absolute value.
class OperatorAbsC : public OperatorBarsBC {
 public:
  OperatorAbsC(wstring const& name, wstring const& text, bool coreElement, int code)
      : OperatorBarsBC(name, text, coreElement, code, SIGN_ABSOLUTE_BARS) {}
};

/// The ceiling, with serifs at the top of its bars.
class OperatorCeilC : public OperatorBarsBC {
 public:
  OperatorCeilC(wstring const& name, wstring const& text, bool coreElement, int code)
      : OperatorBarsBC(name, text, coreElement, code, SIGN_CEILING_BARS) {}
};

/// The floor, with serifs at the bottom of its bars.
class OperatorFloorC : public OperatorBarsBC {
 public:
  OperatorFloorC(wstring const& name, wstring const& text, bool coreElement, int code)
      : OperatorBarsBC(name, text, coreElement, code, SIGN_FLOOR_BARS) {}
};

}  // namespace zolt::math::ved
