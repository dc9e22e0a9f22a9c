#pragma once

#include <random>
#include <vector>

#include "tests/formula/formula_support.h"
#include "zolt/algexpr/node.h"

namespace zolt::tests {

/// Random expressions over the whole catalogue, the same ones for the same seed.
class RandomExpressionC {
 public:
  enum KindE {
    /// As engines hand them out: every operation in its arity and guarded where a power's look would be
    /// ambiguous, assignments only outermost, no word of the grammar as a symbol. They convert back.
    WELL_MADE,
    /// Anything that an expression can be.
    ANYTHING
  };

  RandomExpressionC(unsigned seed, KindE kind) : random_(seed), kind_(kind) {}

  ExpressionT make(unsigned size);

 private:
  using NodeT = PointerTC<math::algexpr::NodeABC>;

  NodeT makeNode(unsigned size, bool isTop);
  NodeT makeLeaf();
  unsigned below(std::size_t bound) { return static_cast<unsigned>(random_() % bound); }

  std::mt19937 random_;
  KindE kind_;
};

/// Random trees as a person may leave them: texts that read and texts that do not, brackets with and without
/// partner, exponents with and without base, constructs of the whole catalogue; normalised.
class RandomTreeC {
 public:
  explicit RandomTreeC(unsigned seed) : random_(seed) {}

  TreeT make();
  /// An item as rows may hold it, with whatever is inside; nothing is normalised.
  TreeT makeItem(unsigned level);

 private:
  TreeT makeRow(unsigned level);
  unsigned below(std::size_t bound) { return static_cast<unsigned>(random_() % bound); }

  std::mt19937 random_;
};

}  // namespace zolt::tests
