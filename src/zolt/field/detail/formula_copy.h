#pragma once

#include <memory>
#include <unordered_map>
#include <vector>

#include "zolt/field/auto_replace.h"
#include "zolt/field/detail/construct_names.h"
#include "zolt/ved/convert/diagnosis.h"
#include "zolt/ved/tree/place.h"

namespace zolt::math::ved {
class Node4C;
class OperatorListC;
}  // namespace zolt::math::ved

namespace zolt::field::detail {

using math::ved::Node4C;

/// A copy of a formula that is written out more fully than the formula itself, for the conversion to an
/// expression. It knows where in the formula each of its places is.
class FormulaCopyC {
 public:
  /// `completion` is the replacement that the formula is about to get; without a beginning there is none.
  FormulaCopyC(Node4C const& formula, math::ved::OperatorListC const& operators,
               ReplacementS const& completion);
  ~FormulaCopyC();

  struct EditS {
    PlaceS place;  ///< in a text of the row; none: the item goes
    char16_t sign = u'\0';
    Node4C* item = nullptr;   ///< an item of the row that moves there, when no sign is given
    unsigned int length = 0;  ///< how many characters of the text go there
    ConstructNameS call{};    ///< a construct that begins there; all up to `endsCall` is its argument
    bool endsCall = false;    ///< the construct that began last ends there
  };

  Node4C& refRoot() { return *root_; }
  /// Where a place of the formula is in a copy without edits.
  PlaceS toCopy(PlaceS place) const;
  /// Makes the edits, which are in the order of their places, in one row. The row then may have several texts
  /// side by side.
  void edit(Node4C& row, std::vector<EditS> const& edits);
  bool isEdited() const { return !origins_.empty(); }
  /// The diagnosis of the copy; a faulty part is given by its places in the formula itself, and so are,
  /// unless `parts` is null, the parts that the nodes of an expression came from.
  math::ved::DiagnosisS diagnose(std::vector<math::ved::SelectionS>* parts) const;

 private:
  /// Where an item of an edited row comes from.
  struct OriginS {
    Node4C const* node = nullptr;
    unsigned int start = 0;           // of a text: its first character's position there
    std::vector<unsigned int> added;  // of a text: the positions of the signs that were inserted
  };

  void rememberItems(Node4C const& row);
  std::unique_ptr<Node4C> makeCall(ConstructNameS const& name, PlaceS end);
  Node4C const* findOriginal(Node4C const& node) const;
  PlaceS toOriginal(PlaceS place) const;

  Node4C const& original_;
  ReplacementS const completion_;
  std::unique_ptr<Node4C> root_;
  unsigned int completedEnd_ = 0;  // where the completed name ends
  std::unordered_map<Node4C const*, OriginS> origins_;
};

}  // namespace zolt::field::detail
