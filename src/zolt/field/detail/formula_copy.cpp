#include "zolt/field/detail/formula_copy.h"

#include <algorithm>
#include <utility>

#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/operators/operator_list.h"
#include "zolt/ved/operators/row_building.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/tree_path.h"

namespace zolt::field::detail {

using namespace math::ved;

// As when the replacement is typed, the name of a constant becomes its text.
FormulaCopyC::FormulaCopyC(Node4C const& formula, OperatorListC const& operators,
                           ReplacementS const& completion)
    : original_(formula), completion_(completion), root_(formula.clone()) {
  if (!completion_.begin) return;
  auto const op = operators.lookup(completion_.text);
  wstring const letter = op ? op->getText() : completion_.text;
  unsigned int const begin = completion_.begin.pos;
  nodeAt(*root_, pathOf(*completion_.begin.node))
      ->refText()
      .replace(begin, completion_.end.pos - begin, letter);
  completedEnd_ = begin + static_cast<unsigned int>(letter.size());
}

FormulaCopyC::~FormulaCopyC() = default;

PlaceS FormulaCopyC::toCopy(PlaceS place) const {
  PlaceS found{nodeAt(*root_, pathOf(*place.node)), place.pos};
  if (place.node == completion_.begin.node && place.pos > completion_.begin.pos) {
    found.pos = std::max(place.pos, completion_.end.pos) - completion_.end.pos + completedEnd_;
  }
  return found;
}

// The row is built anew, since each edit in place would move everything after it.
void FormulaCopyC::edit(Node4C& row, std::vector<EditS> const& edits) {
  using ItemT = std::unique_ptr<Node4C>;
  rememberItems(row);
  std::unordered_map<Node4C const*, ItemT> moved;
  for (EditS const& edit : edits) {
    if (edit.item) moved[edit.item];
  }
  std::vector<ItemT> items(row.numChildren());
  for (std::size_t i = items.size(); i-- > 0;) {
    auto const at = moved.find(row.child(i));
    (at == moved.end() ? items[i] : at->second).reset(row.child(i));
    row.removeChild(i);
  }
  std::vector<Node4C*> targets{&row};  // the rows that get what comes next: that of the call begun last
  auto const append = [&](ItemT item) {
    targets.back()->insertChild(targets.back()->numChildren(), item.release());
  };

  auto next = std::find_if(edits.begin(), edits.end(), [](EditS const& edit) { return bool{edit.place}; });
  for (ItemT& item : items) {
    if (!item) continue;
    Node4C const* const place = item.get();
    if (next == edits.end() || next->place.node != place) {
      append(std::move(item));
      continue;
    }
    wstring const text = item->crefText();
    OriginS const origin = std::exchange(origins_[place], {});
    OriginS piece{origin.node, origin.start, {}};
    wstring written;
    unsigned int taken = 0;
    auto old = origin.added.begin();
    auto const take = [&](unsigned int end) {
      auto const shift = static_cast<unsigned int>(written.size()) - taken;
      for (; old != origin.added.end() && *old < end; ++old) piece.added.push_back(*old + shift);
      written.append(text, taken, end - taken);
      taken = end;
    };
    auto const finish = [&] {
      item->refText() = std::move(written);
      origins_[item.get()] = std::move(piece);
      append(std::move(item));
    };
    for (; next != edits.end() && next->place.node == place; ++next) {
      take(next->place.pos);
      if (next->sign) {
        piece.added.push_back(static_cast<unsigned int>(written.size()));
        written += next->sign;
        continue;
      }
      finish();
      taken += next->length;
      unsigned int const start = origin.start + taken - static_cast<unsigned int>(old - origin.added.begin());
      if (next->item) append(std::move(moved[next->item]));
      if (next->call.op) {
        ItemT call = makeCall(next->call, {origin.node, start});
        Node4C* const argument = call->child(argumentRows(*next->call.op, call->numChildren()).front());
        append(std::move(call));
        targets.push_back(argument);
      }
      if (next->endsCall) targets.pop_back();
      item = std::make_unique<Node4C>(NODE4_TEXT, nullptr, wstring(), 0);
      piece = {origin.node, start, {}};
      written.clear();
    }
    take(static_cast<unsigned int>(text.size()));
    finish();
  }
}

// All items of a row are known when its first one is, and a call's row has no original.
void FormulaCopyC::rememberItems(Node4C const& row) {
  if (row.numChildren() > 0 && origins_.count(row.child(0)) > 0) return;
  Node4C const& original = *findOriginal(row);
  for (unsigned long i = 0; i < row.numChildren(); ++i) origins_[row.child(i)] = {original.child(i), 0, {}};
}

/// A construct with its mark and an argument that is still empty; `end` is where its name ends in the
/// formula.
std::unique_ptr<Node4C> FormulaCopyC::makeCall(ConstructNameS const& name, PlaceS end) {
  std::vector<std::unique_ptr<Node4C>> rows(name.op->getInsertedRows());
  auto const order = argumentRows(*name.op, static_cast<unsigned long>(rows.size()));
  auto const make = [&](unsigned long row, wstring const& text) {
    rows[row] = math::ved::rows::makeText(text);
    origins_[rows[row].get()] = {end.node, end.pos - static_cast<unsigned int>(text.size()), {}};
  };
  make(order.front(), {});
  // The mark is the end of the name, as in "log_2", or belongs to the name as a whole, as in "cbrt".
  if (order.size() > 1) make(order[1], name.mark);
  return math::ved::rows::makeConstruct(*name.op, std::move(rows));
}

DiagnosisS FormulaCopyC::diagnose(std::vector<SelectionS>* parts) const {
  DiagnosisS found = math::ved::diagnose(*root_);
  found.range = {toOriginal(found.range.anchor), toOriginal(found.range.caret)};
  if (!found.expression || !parts) return found;
  *parts = math::ved::findParts(*root_);
  for (SelectionS& part : *parts) part = {toOriginal(part.anchor), toOriginal(part.caret)};
  return found;
}

Node4C const* FormulaCopyC::findOriginal(Node4C const& node) const {
  auto const known = origins_.find(&node);
  if (known != origins_.end()) return known->second.node;
  if (!node.getParent()) return &original_;
  return findOriginal(*node.getParent())->child(node.findChildNumber());
}

PlaceS FormulaCopyC::toOriginal(PlaceS place) const {
  if (!place) return place;
  PlaceS found{findOriginal(*place.node), place.pos};
  auto const known = origins_.find(place.node);
  if (known != origins_.end()) {
    auto const& added = known->second.added;
    auto const before = std::lower_bound(added.begin(), added.end(), place.pos) - added.begin();
    found.pos = known->second.start + place.pos - static_cast<unsigned int>(before);
  }
  if (found.node == completion_.begin.node && found.pos > completion_.begin.pos) {
    found.pos = std::max(found.pos, completedEnd_) - completedEnd_ + completion_.end.pos;
  }
  return found;
}

}  // namespace zolt::field::detail
