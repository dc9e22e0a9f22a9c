#include "zolt/field/detail/implied_products.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/common/decimal_text.h"
#include "zolt/common/signs.h"
#include "zolt/field/detail/word_bounds.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/operators/operator_list.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/tree_path.h"
#include "zolt/ved/tree/tree_walk.h"

namespace zolt::field::detail {

using namespace math::ved;
namespace common = math::common;

namespace {

/// A copy of a formula with what people leave out.
class ImpliedProductsC {
 public:
  ImpliedProductsC(Node4C const& root, OperatorListC const& operators, ReplacementS const& completion);

  /// Adds the signs. False when there were none to add.
  bool addSigns();
  /// The diagnosis of the copy; a faulty part is given by its places in the formula itself.
  DiagnosisS diagnose() const;

 private:
  enum EndE {
    END_NOTHING,  ///< no operand ends here
    END_NUMBER,
    END_NAME,
    END_FUNCTION,  ///< a name that needs arguments
    END_OTHER
  };

  void addToRow(Node4C& row);
  void addToText(Node4C& text, EndE& end);
  /// Adds the sign at the end of the text before `item`.
  void addBefore(Node4C const& item);

  void complete();
  /// The place in the formula that corresponds to one in the copy.
  PlaceS toOriginal(PlaceS place) const;

  Node4C const& original_;
  OperatorListC const& operators_;
  ReplacementS const completion_;
  std::unique_ptr<Node4C> root_;
  Node4C* completed_ = nullptr;    // the text of the copy that holds the completed name
  unsigned int completedEnd_ = 0;  // where that name ended before signs were added
  std::vector<PlaceS> added_;      // the signs, by their places in the copy
};

ImpliedProductsC::ImpliedProductsC(Node4C const& root, OperatorListC const& operators,
                                   ReplacementS const& completion)
    : original_(root), operators_(operators), completion_(completion), root_(root.clone()) {
  if (completion_.begin) complete();
}

/// As when the replacement is typed, the name of a constant becomes its text.
void ImpliedProductsC::complete() {
  completed_ = nodeAt(*root_, pathOf(*completion_.begin.node));
  auto const op = operators_.lookup(completion_.text);
  wstring const letter = op ? op->getText() : completion_.text;
  unsigned int const begin = completion_.begin.pos;
  completed_->refText().replace(begin, completion_.end.pos - begin, letter);
  completedEnd_ = begin + static_cast<unsigned int>(letter.size());
}

bool ImpliedProductsC::addSigns() {
  walkTree(*root_, [this](Node4C& node) {
    if (node.getType() == NODE4_LINE) addToRow(node);
  });
  return !added_.empty();
}

DiagnosisS ImpliedProductsC::diagnose() const {
  DiagnosisS found = math::ved::diagnose(*root_);
  found.range = {toOriginal(found.range.anchor), toOriginal(found.range.caret)};
  return found;
}

PlaceS ImpliedProductsC::toOriginal(PlaceS place) const {
  if (!place) return place;
  auto pos = place.pos;
  for (PlaceS const sign : added_) {
    if (sign.node == place.node && sign.pos < place.pos) --pos;
  }
  if (place.node == completed_ && pos > completion_.begin.pos) {
    pos = std::max(pos, completedEnd_) - completedEnd_ + completion_.end.pos;
  }
  return {nodeAt(original_, pathOf(*place.node)), pos};
}

void ImpliedProductsC::addBefore(Node4C const& item) {
  Node4C& text = *item.goLeft();
  added_.push_back(endOf(&text));
  text.refText() += common::times_sign;
}

void ImpliedProductsC::addToRow(Node4C& row) {
  EndE end = END_NOTHING;
  for (unsigned long i = 0; i < row.numChildren(); ++i) {
    Node4C& item = *row.child(i);
    bool const operandBefore = end == END_NUMBER || end == END_OTHER;
    if (item.getType() == NODE4_TEXT) {
      addToText(item, end);
    } else if (isOpeningBracket(item.getType())) {
      if (operandBefore) addBefore(item);
      end = END_NOTHING;
    } else if (item.getType() == NODE4_OPERATOR) {
      if (operandBefore || end == END_NAME) addBefore(item);
      end = END_OTHER;
    } else if (end != END_FUNCTION) {
      end = END_OTHER;
    }
  }
}

// The text is built anew, since each sign inserted in place would move everything after it.
void ImpliedProductsC::addToText(Node4C& node, EndE& end) {
  wstring const& text = node.crefText();
  wstring joined;
  std::size_t taken = 0;  // how much of `text` is already in `joined`
  auto const addSign = [&](std::size_t pos) {
    joined.append(text, taken, pos - taken);
    taken = pos;
    added_.push_back({&node, static_cast<unsigned int>(joined.size())});
    joined += common::times_sign;
  };
  for (std::size_t pos = 0; pos < text.size();) {
    char16_t const c = text[pos];
    if (c == Node4C::PREFIX_C) {
      // Prefix text between grave accents is an operand, as a construct is.
      if (end != END_NOTHING && end != END_FUNCTION) addSign(pos);
      pos = std::min(text.find(Node4C::PREFIX_C, pos + 1), text.size() - 1) + 1;
      end = END_OTHER;
      continue;
    }
    bool const number = common::startsNumber(c);
    if (c == u' ') {
      ++pos;
      continue;
    }
    if (!number && !isWordCharacter(c)) {
      if (c != u'!') end = END_NOTHING;
      ++pos;
      continue;
    }
    std::size_t stop = pos + 1;
    EndE kind = END_OTHER;
    if (number) {
      stop = common::findNumberEnd(text, pos, common::LONE_EXPONENT_LEFT);
      kind = END_NUMBER;
    } else if (c != common::pi_sign) {
      while (stop < text.size() && text[stop] != common::pi_sign && isWordCharacter(text[stop])) ++stop;
      auto const op = operators_.lookupText(text.substr(pos, stop - pos));
      kind = op && op->getArity() > 0 ? END_FUNCTION : END_NAME;
      if (op && op->isLinear()) kind = END_NOTHING;
    }
    bool const operandBefore = end == END_OTHER || end == END_NAME || (end == END_NUMBER && !number);
    if (operandBefore && kind != END_NOTHING) addSign(pos);
    end = kind;
    pos = stop;
  }
  if (joined.empty()) return;
  joined.append(text, taken, wstring::npos);
  node.refText() = std::move(joined);
}

}  // namespace

DiagnosisS diagnoseTyped(Node4C const& formula, OperatorListC const& operators, InputOptionsS const& options,
                         ReplacementS const& completion) {
  DiagnosisS found;
  if (!completion.begin) found = math::ved::diagnose(formula);
  bool const lacksSigns = found.cause != ERROR_CAUSE_PLACEHOLDER && found.cause != ERROR_CAUSE_EMPTY;
  if (found.expression || !(completion.begin || (options.impliedProducts && lacksSigns))) return found;
  ImpliedProductsC copy(formula, operators, completion);
  if (completion.begin) found = copy.diagnose();
  if (!found.expression && options.impliedProducts && copy.addSigns()) found = copy.diagnose();
  return found;
}

}  // namespace zolt::field::detail
