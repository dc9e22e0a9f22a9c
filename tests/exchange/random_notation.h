#pragma once

#include <random>

#include "zolt/algexpr/node.h"
#include "zolt/oss/pointer.h"
#include "zolt/oss/wstring.h"

namespace zolt::tests {

/// Random expressions of what notations have a form for, in both catalogues, and of what none has: the same
/// ones for the same seed.
class RandomNotationC {
 public:
  using NodeT = oss::PointerTC<math::algexpr::NodeABC>;

  explicit RandomNotationC(unsigned seed) : random_(seed) {}

  NodeT make(unsigned size);

 private:
  unsigned below(std::size_t bound) { return static_cast<unsigned>(random_() % bound); }
  static NodeT node(oss::wstring const& text);
  NodeT leaf();
  NodeT row(unsigned columns, unsigned size);

  std::mt19937 random_;
};

}  // namespace zolt::tests
