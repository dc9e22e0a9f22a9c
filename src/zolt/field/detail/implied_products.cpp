#include "zolt/field/detail/implied_products.h"

#include <algorithm>
#include <utility>

#include "zolt/common/decimal_text.h"
#include "zolt/common/signs.h"
#include "zolt/field/detail/tree_walk.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/operators/operator_list.h"
#include "zolt/ved/tree/tree_path.h"
#include "zolt/ved/tree/tree_walk.h"

namespace zolt::field::detail {

using namespace math::ved;
namespace common = math::common;

ImpliedProductsC::ImpliedProductsC(Node4C const& root, OperatorListC const& operators)
    : original_(root), operators_(operators), root_(root.clone()) {
  walkTree(*root_, [this](Node4C& node) {
    if (node.getType() == NODE4_LINE) addToRow(node);
  });
}

PlaceS ImpliedProductsC::toOriginal(Node4C const& node, unsigned int pos) const {
  unsigned int before = 0;
  for (PlaceS const place : added_) {
    if (place.node == &node && place.pos < pos) ++before;
  }
  return {nodeAt(original_, pathOf(node)), pos - before};
}

void ImpliedProductsC::add(Node4C& text, std::size_t pos) {
  text.refText().insert(pos, 1, common::times_sign);
  added_.push_back({&text, static_cast<unsigned int>(pos)});
}

void ImpliedProductsC::addToRow(Node4C& row) {
  EndE end = END_NOTHING;
  for (unsigned long i = 0; i < row.numChildren(); ++i) {
    Node4C& item = *row.child(i);
    bool const operandBefore = end == END_NUMBER || end == END_OTHER;
    if (item.getType() == NODE4_TEXT) {
      addToText(item, end);
    } else if (isOpen(item)) {
      if (operandBefore) add(*row.child(i - 1), row.child(i - 1)->sizeText());
      end = END_NOTHING;
    } else if (item.getType() == NODE4_OPERATOR) {
      if (operandBefore || end == END_NAME) add(*row.child(i - 1), row.child(i - 1)->sizeText());
      end = END_OTHER;
    } else if (end != END_FUNCTION) {
      end = END_OTHER;
    }
  }
}

// The text is put together anew: signs inserted one by one would each move all that stands behind.
void ImpliedProductsC::addToText(Node4C& node, EndE& end) {
  wstring const& text = node.crefText();
  wstring joined;
  std::size_t taken = 0;  // of `text` into `joined`
  auto const addSign = [&](std::size_t pos) {
    joined.append(text, taken, pos - taken);
    taken = pos;
    added_.push_back({&node, static_cast<unsigned int>(joined.size())});
    joined += common::times_sign;
  };
  for (std::size_t pos = 0; pos < text.size();) {
    char16_t const c = text[pos];
    if (c == Node4C::PREFIX_C) {
      // Finished prefix text is an operand as a construct is.
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

}  // namespace zolt::field::detail
