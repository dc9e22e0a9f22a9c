#pragma once

#include <memory>
#include <vector>

#include "zolt/field/auto_replace.h"
#include "zolt/ved/convert/diagnosis.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/place.h"

namespace zolt::math::ved {
class OperatorListC;
}

namespace zolt::field::detail {

using math::ved::PlaceS;

/// A copy of a formula with what people leave out: a multiplication sign between two operands side by side
/// ("2x", "3(a+b)", "x²y"), and the letter that a name just typed will become. A name before a bracket
/// remains a call, and a name of several letters remains one name.
class ImpliedProductsC {
 public:
  /// `completion` is the replacement that the formula is about to get; without a beginning there is none.
  ImpliedProductsC(math::ved::Node4C const& root, math::ved::OperatorListC const& operators,
                   ReplacementS const& completion);

  /// Adds the signs. False when there were none to add.
  bool addSigns();
  /// The diagnosis of the copy; a faulty part is given by its places in the formula itself.
  math::ved::DiagnosisS diagnose() const;

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
  /// Adds the sign at the end of the text before `item`.
  void addBefore(math::ved::Node4C const& item);

  void complete();
  /// The place in the formula that corresponds to one in the copy.
  PlaceS toOriginal(PlaceS place) const;

  math::ved::Node4C const& original_;
  math::ved::OperatorListC const& operators_;
  ReplacementS const completion_;
  std::unique_ptr<math::ved::Node4C> root_;
  math::ved::Node4C* completed_ = nullptr;  // the text of the copy that holds the completed name
  unsigned int completedEnd_ = 0;           // where that name ended before signs were added
  std::vector<PlaceS> added_;               // the signs, by their places in the copy
};

}  // namespace zolt::field::detail
