#pragma once

#include <memory>
#include <vector>

#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/place.h"

namespace zolt::math::ved {
class OperatorListC;
}

namespace zolt::field::detail {

using math::ved::PlaceS;

/// A copy of a formula with a sign of multiplication wherever two operands stand side by side: "2x",
/// "3(a+b)", "x²y", a number before a construct. A name before a bracket stays a call, and a name of several
/// letters one name.
class ImpliedProductsC {
 public:
  ImpliedProductsC(math::ved::Node4C const& root, math::ved::OperatorListC const& operators);

  /// Whether there was anything to add.
  bool hasAdded() const { return !added_.empty(); }
  math::ved::Node4C& refRoot() { return *root_; }
  /// The place in the formula that corresponds to one in the copy.
  PlaceS toOriginal(math::ved::Node4C const& node, unsigned int pos) const;

 private:
  enum EndE {
    END_NOTHING,  ///< no operand ends here
    END_NUMBER,
    END_NAME,
    END_FUNCTION,  ///< a name that needs arguments
    END_OTHER
  };

  void addToRow(math::ved::Node4C& row);
  void addToText(math::ved::Node4C& text, EndE& end);
  /// Puts the sign into `text` at `pos`.
  void add(math::ved::Node4C& text, std::size_t pos);

  math::ved::Node4C const& original_;
  math::ved::OperatorListC const& operators_;
  std::unique_ptr<math::ved::Node4C> root_;
  std::vector<PlaceS> added_;  // in the copy
};

}  // namespace zolt::field::detail
