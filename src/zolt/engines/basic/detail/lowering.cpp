#include "zolt/engines/basic/detail/lowering.h"

#include <algorithm>
#include <set>
#include <string>
#include <utility>

#include "zolt/algexpr/make_node.h"
#include "zolt/algexpr/make_operation.h"
#include "zolt/algexpr/written_operand.h"
#include "zolt/common/signs.h"

namespace zolt::engine_basic::detail {

namespace {

using NodeP = LoweringC::NodeP;

constexpr unsigned most_nested = 500;
constexpr std::int64_t most_factors = 10000;

std::set<wstring> const& extendedNames() {
  static auto const& names = *new std::set<wstring>{
      u"norm",      u"conj",     u"percent", u"permille", u"pdiff",  u"diffn",    u"pdiffn", u"implies",
      u"iff",       u"binomial", u"product", u"cases",    u"matrix", u"det",      u"set",    u"union",
      u"intersect", u"setminus", u"in",      u"notin",    u"subset", u"subseteq", u"∅"};
  return names;
}

}  // namespace

bool LoweringC::isNeeded(NodeABC const& expression, CASDefinitionsC const* definitions) {
  std::set<CASDefinitionS const*> seen;
  std::vector<NodeABC const*> waiting{&expression};
  while (!waiting.empty()) {
    FlatTreeC tree;
    NodeABC const& next = *waiting.back();
    waiting.pop_back();
    if (!tree.fill(next)) return false;
    for (std::uint32_t i = 0; i < tree.end(0); ++i) {
      wstring const& name = tree.crefNode(i).crefName();
      if (extendedNames().count(name) > 0) return true;
      CASDefinitionS const* const definition = definitions ? definitions->find(name) : nullptr;
      bool const isNew = definition && definition->parameters.empty() && seen.insert(definition).second;
      if (isNew) waiting.push_back(definition->value.get());
    }
  }
  return false;
}

bool LoweringC::run(NodeABC const& expression, LoweredS& lowered) {
  return tree_.fill(expression) ? lower(0, lowered) : watch_.fail(CAS_CAUSE_TOO_LARGE, 0, {});
}

void LoweringC::toOriginal(NodeABC const& lowered, CASResultS& result) const {
  FlatTreeC tree;
  bool const isPart = result.part != CASResultS::no_part && tree.fill(lowered) && result.part < tree.end(0);
  if (!isPart) return;
  auto const origin = origins_.find(&tree.crefNode(static_cast<std::uint32_t>(result.part)));
  result.part = origin == origins_.end() ? 0 : origin->second;
}

NodeP LoweringC::make(std::uint32_t at, wstring const& name, std::vector<NodeP> operands) {
  NodeP const node = makeFunction(name, std::move(operands));
  if (!node) return nullptr;
  kept_.push_back(node);
  origins_.emplace(node.get(), at);
  return node;
}

NodeP LoweringC::makeWhole(std::uint32_t at, std::int64_t value) {
  std::string const digits = std::to_string(value < 0 ? -value : value);
  wstring const text(digits.begin(), digits.end());
  NodeP const node = makeNumber(value < 0 ? math::common::minus_sign + text : text);
  kept_.push_back(node);
  origins_.emplace(node.get(), at);
  return node;
}

bool LoweringC::makeOne(NodeP node, LoweredS& lowered) {
  lowered = {};
  lowered.parts.push_back(std::move(node));
  return true;
}

bool LoweringC::makeTruth(std::uint32_t at, bool isTrue, LoweredS& lowered) {
  NodeP const node = makeNamed(isTrue ? u"true" : u"false");
  kept_.push_back(node);
  origins_.emplace(node.get(), at);
  return makeOne(node, lowered);
}

bool LoweringC::evaluateWhole(std::uint32_t at, NodeP const& node, std::int64_t& value) {
  CASResultS const result = evaluate_(node);
  if (result.outcome != CAS_VALUE) return fail(result.cause, at);
  wstring const& text = result.value->getNode()->crefName();
  bool const isNegative = text[0] == math::common::minus_sign;
  bool const isShort = text.size() <= 9;
  if (result.value->getNode()->asParent() || !isNumber(*result.value->getNode()) || !isShort) {
    return fail(CAS_CAUSE_NEEDS_ALGEBRA, at);
  }
  value = 0;
  for (std::size_t i = isNegative ? 1 : 0; i < text.size(); ++i) {
    if (text[i] < u'0' || text[i] > u'9') return fail(CAS_CAUSE_WRONG_ARGUMENT, at);
    value = value * 10 + (text[i] - u'0');
  }
  if (isNegative) value = -value;
  return true;
}

bool LoweringC::holds(std::uint32_t at, NodeP const& condition, bool& isTrue) {
  CASResultS const result = evaluate_(condition);
  if (result.outcome != CAS_VALUE) return fail(result.cause, at);
  wstring const& name = result.value->getNode()->crefName();
  isTrue = name == u"true";
  return isTrue || name == u"false" || fail(CAS_CAUSE_NEEDS_ALGEBRA, at);
}

// ---- Walking
// -----------------------------------------------------------------------------------------------

bool LoweringC::lower(std::uint32_t at, LoweredS& lowered) {
  if (nested_ == most_nested) return fail(CAS_CAUSE_NEEDS_ALGEBRA, at);
  if (!watch_.goOn()) return false;
  ++nested_;
  bool const isDone = tree_.numChildren(at) == 0 ? lowerName(at, lowered) : lowerCall(at, lowered);
  --nested_;
  return isDone;
}

bool LoweringC::lowerName(std::uint32_t at, LoweredS& lowered) {
  NodeABC const& node = tree_.crefNode(at);
  if (node.crefName() == u"∅") {
    lowered = {KIND_SET, 1, {}};
    return true;
  }
  CASDefinitionS const* const definition = definitions_ ? definitions_->find(node.crefName()) : nullptr;
  // A table that has been assigned; other values are put in later.
  if (definition && definition->parameters.empty() && isNeeded(*definition->value, definitions_)) {
    PointerTC<CASDefinitionsC> const others = definitions_->without(definition->name);
    LoweringC inside(others.get(), watch_, evaluate_);
    if (!inside.run(*definition->value, lowered)) return false;
    for (NodeP const& part : lowered.parts) {
      kept_.push_back(part);
      origins_.emplace(part.get(), at);
    }
    return true;
  }
  NodeP const same(const_cast<NodeABC*>(&node));
  origins_.emplace(same.get(), at);
  return makeOne(same, lowered);
}

// Names are real numbers here, but for this one, which may be no number of ours.
bool LoweringC::hasImaginaryUnit(std::uint32_t at) const {
  for (std::uint32_t part = at; part < tree_.end(at); ++part) {
    if (tree_.numChildren(part) == 0 && tree_.crefNode(part).crefName() == u"i") return true;
  }
  return false;
}

bool LoweringC::lowerCall(std::uint32_t at, LoweredS& lowered) {
  wstring const& name = tree_.crefNode(at).crefName();
  unsigned long const count = tree_.numChildren(at);
  if (name == u"matrix") return lowerTable(at, lowered);
  if (name == u"cases") return lowerCases(at, lowered);
  if (name == u"product" && count == 4) return lowerRepeated(at, lowered);
  bool const isMembership = name == u"in" || name == u"notin" || name == u"subset" || name == u"subseteq";
  if (isMembership && count == 2) return lowerMembership(at, lowered);
  bool const isOrder = (name == u"diffn" || name == u"pdiffn") && count == 3;
  if (isOrder || (name == u"pdiff" && count == 2)) return lowerDerivative(at, lowered);
  if (name == u"det" && tree_.crefNode(at + 1).crefName() == u"list") {
    LoweredS table;
    return lowerTable(at, table) && lowerDeterminant(at, table, lowered);
  }
  std::vector<LoweredS> operands(count);
  std::uint32_t child = at + 1;
  for (LoweredS& operand : operands) {
    if (!lower(child, operand)) return false;
    child = tree_.end(child);
  }
  bool const isSetAct = name == u"set" || name == u"union" || name == u"intersect" || name == u"setminus";
  if (isSetAct) return lowerSet(at, operands, lowered);
  bool const isOfTables = std::any_of(operands.begin(), operands.end(),
                                      [](LoweredS const& operand) { return operand.kind != KIND_ONE; });
  if (count == 2 && isOfTables) {
    if (name == u"+" || name == u"-") return lowerSum(at, operands[0], operands[1], lowered);
    if (name == u"*" || name == u"/") return lowerProduct(at, operands[0], operands[1], lowered);
    if (name == u"^") return lowerPower(at, operands[0], operands[1], lowered);
  }
  if (count == 1) {
    if (name == u"det") return lowerDeterminant(at, operands[0], lowered);
    if (name == u"norm") return lowerNorm(at, operands[0], lowered);
    bool const isSame = name == u"_quietpos" || name == u"_pos" || (name == u"conj" && !hasImaginaryUnit(at));
    bool const mayBeTable = isSame || name == u"_neg" || name == u"conj";
    if (mayBeTable && operands[0].kind != KIND_SET) {
      lowered = operands[0];
      for (NodeP& part : lowered.parts) part = make(at, isSame ? u"_quietpos" : name, {part});
      return true;
    }
  }
  bool const isWhere = name == u"where" && count == 3 && operands[1].kind == KIND_ONE;
  if (isWhere && isOfTables && operands[2].kind == KIND_ONE) {
    lowered = operands[0];
    for (NodeP& part : lowered.parts)
      part = make(at, name, {part, operands[1].parts[0], operands[2].parts[0]});
    return true;
  }
  if (isOfTables) return fail(CAS_CAUSE_WRONG_ARGUMENT, at);
  std::vector<NodeP> parts;
  for (LoweredS const& operand : operands) parts.push_back(operand.parts[0]);
  if (count == 1 && (name == u"percent" || name == u"permille")) {
    return makeOne(make(at, u"/", {parts[0], makeWhole(at, name == u"percent" ? 100 : 1000)}), lowered);
  }
  if (count == 2 && name == u"binomial") return lowerBinomial(at, parts[0], parts[1], lowered);
  if (count == 2 && (name == u"implies" || name == u"iff")) {
    NodeP const forward = make(at, u"or", {make(at, u"not", {parts[0]}), parts[1]});
    if (name == u"implies") return makeOne(forward, lowered);
    NodeP const back = make(at, u"or", {make(at, u"not", {parts[1]}), parts[0]});
    return makeOne(make(at, u"and", {forward, back}), lowered);
  }
  return makeOne(make(at, name, std::move(parts)), lowered);
}

// ---- Constructs
// --------------------------------------------------------------------------------------------

bool LoweringC::lowerRepeated(std::uint32_t at, LoweredS& lowered) {
  std::uint32_t const variable = tree_.child(at, 0), body = tree_.child(at, 3);
  LoweredS from, to, factor;
  if (!lower(tree_.child(at, 1), from) || !lower(tree_.child(at, 2), to) || !lower(body, factor))
    return false;
  if (from.kind != KIND_ONE || to.kind != KIND_ONE || factor.kind != KIND_ONE) {
    return fail(CAS_CAUSE_NEEDS_ALGEBRA, at);
  }
  std::int64_t first = 0, last = 0;
  if (!evaluateWhole(at, from.parts[0], first) || !evaluateWhole(at, to.parts[0], last)) return false;
  if (last - first >= most_factors) return fail(CAS_CAUSE_TOO_LARGE, at);
  NodeP product = makeWhole(at, 1);
  for (std::int64_t k = first; k <= last; ++k) {
    NodeP const name(const_cast<NodeABC*>(&tree_.crefNode(variable)));
    NodeP const one = make(body, u"where", {factor.parts[0], name, makeWhole(at, k)});
    product = k == first ? one : make(at, u"*", {product, one});
  }
  return makeOne(product, lowered);
}

bool LoweringC::lowerDerivative(std::uint32_t at, LoweredS& lowered) {
  constexpr std::int64_t most_orders = 100;
  LoweredS function, order;
  if (!lower(tree_.child(at, 0), function)) return false;
  std::int64_t times = 1;
  if (tree_.numChildren(at) == 3) {
    std::uint32_t const place = tree_.child(at, 2);
    if (!lower(place, order) || order.kind != KIND_ONE) return fail(CAS_CAUSE_WRONG_ARGUMENT, place);
    if (!evaluateWhole(place, order.parts[0], times)) return false;
    if (times < 0 || times > most_orders) return fail(CAS_CAUSE_WRONG_ARGUMENT, place);
  }
  if (function.kind == KIND_SET) return fail(CAS_CAUSE_WRONG_ARGUMENT, at);
  NodeP const variable(const_cast<NodeABC*>(&tree_.crefNode(tree_.child(at, 1))));
  lowered = function;
  for (NodeP& part : lowered.parts) {
    for (std::int64_t i = 0; i < times; ++i) part = make(at, u"diff", {part, variable});
  }
  return true;
}

bool LoweringC::lowerBinomial(std::uint32_t at, NodeP const& n, NodeP const& k, LoweredS& lowered) {
  std::int64_t count = 0;
  if (!evaluateWhole(at, k, count)) {
    if (watch_.isOver()) return false;
    watch_.takeFault();
    NodeP const rest = make(at, u"!", {make(at, u"-", {n, k})});
    NodeP const below = make(at, u"*", {make(at, u"!", {k}), rest});
    return makeOne(make(at, u"/", {make(at, u"!", {n}), below}), lowered);
  }
  if (count < 0) return makeOne(makeWhole(at, 0), lowered);
  if (count > most_factors) return fail(CAS_CAUSE_TOO_LARGE, at);
  NodeP above = makeWhole(at, 1);
  for (std::int64_t i = 0; i < count; ++i) {
    NodeP const factor = i == 0 ? n : make(at, u"-", {n, makeWhole(at, i)});
    above = i == 0 ? factor : make(at, u"*", {above, factor});
  }
  return makeOne(make(at, u"/", {above, make(at, u"!", {makeWhole(at, count)})}), lowered);
}

bool LoweringC::lowerCases(std::uint32_t at, LoweredS& lowered) {
  for (std::uint32_t row = at + 1; row < tree_.end(at); row = tree_.end(row)) {
    bool const isRow = tree_.crefNode(row).crefName() == u"list" && tree_.numChildren(row) == 2;
    if (!isRow) return fail(CAS_CAUSE_WRONG_ARGUMENT, row);
    LoweredS condition;
    bool isTrue = false;
    std::uint32_t const place = tree_.child(row, 1);
    if (!lower(place, condition) || condition.kind != KIND_ONE) return fail(CAS_CAUSE_WRONG_ARGUMENT, place);
    if (!holds(place, condition.parts[0], isTrue)) return false;
    if (isTrue) return lower(tree_.child(row, 0), lowered);
  }
  return fail(CAS_CAUSE_UNDEFINED, at);
}

// ---- Sets
// --------------------------------------------------------------------------------------------------

bool LoweringC::contains(std::uint32_t at, std::vector<NodeP> const& set, NodeP const& element,
                         bool& isInside) {
  isInside = false;
  for (std::size_t i = 0; i < set.size() && !isInside; ++i) {
    if (!watch_.goOn() || !holds(at, makeFunction(u"=", {set[i], element}), isInside)) return false;
  }
  return true;
}

bool LoweringC::lowerSet(std::uint32_t at, std::vector<LoweredS> const& operands, LoweredS& lowered) {
  wstring const& name = tree_.crefNode(at).crefName();
  KindE const wanted = name == u"set" ? KIND_ONE : KIND_SET;
  bool const fits = (wanted == KIND_ONE || operands.size() == 2) &&
                    std::all_of(operands.begin(), operands.end(),
                                [&](LoweredS const& operand) { return operand.kind == wanted; });
  if (!fits) return fail(CAS_CAUSE_NEEDS_ALGEBRA, at);
  LoweredS set{KIND_SET, 1, {}};
  if (name == u"union") set = operands[0];
  std::vector<NodeP> candidates;
  for (LoweredS const& operand : operands) {
    if (wanted == KIND_ONE) candidates.push_back(operand.parts[0]);
  }
  if (wanted == KIND_SET) candidates = operands[name == u"union" ? 1 : 0].parts;
  for (NodeP const& candidate : candidates) {
    bool const takesCommon = name == u"intersect";
    bool isInside = false;
    std::vector<NodeP> const& others = takesCommon || name == u"setminus" ? operands[1].parts : set.parts;
    if (!contains(at, others, candidate, isInside)) {
      // Names that may be equal are different elements until more is known.
      if (wanted == KIND_SET || watch_.isOver()) return false;
      watch_.takeFault();
      isInside = false;
    }
    if (isInside == takesCommon) set.parts.push_back(candidate);
  }
  lowered = std::move(set);
  return true;
}

bool LoweringC::lowerMembership(std::uint32_t at, LoweredS& lowered) {
  wstring const& name = tree_.crefNode(at).crefName();
  std::uint32_t const right = tree_.child(at, 1);
  LoweredS element, set;
  if (!lower(at + 1, element)) return false;
  bool const isWanted = name != u"notin";
  wstring const& setName = tree_.crefNode(right).crefName();
  if (element.kind == KIND_ONE && setName == u"interval" && tree_.numChildren(right) == 4) {
    LoweredS lower1, upper;
    if (!lower(tree_.child(right, 0), lower1) || !lower(tree_.child(right, 1), upper)) return false;
    if (lower1.kind != KIND_ONE || upper.kind != KIND_ONE) return fail(CAS_CAUSE_WRONG_ARGUMENT, right);
    auto const sign = [&](unsigned i) {
      return tree_.crefNode(tree_.child(right, i)).crefName() == u"1" ? u"<=" : u"<";
    };
    NodeP const above = make(at, sign(2), {lower1.parts[0], element.parts[0]});
    NodeP const inside = make(at, u"and", {above, make(at, sign(3), {element.parts[0], upper.parts[0]})});
    return makeOne(isWanted ? inside : make(at, u"not", {inside}), lowered);
  }
  if (!lower(right, set)) return false;
  bool const isOfSets = name == u"subset" || name == u"subseteq";
  if (set.kind != KIND_SET || (element.kind == KIND_SET) != isOfSets || element.kind == KIND_TABLE) {
    return fail(CAS_CAUSE_NEEDS_ALGEBRA, at);
  }
  bool isInside = true;
  for (std::size_t i = 0; i < element.parts.size() && isInside; ++i) {
    if (!contains(at, set.parts, element.parts[i], isInside)) return false;
  }
  if (name != u"subset" || !isInside) return makeTruth(at, isInside == isWanted, lowered);
  bool hasMore = false;
  for (std::size_t i = 0; i < set.parts.size() && !hasMore; ++i) {
    bool isThere = false;
    if (!contains(at, element.parts, set.parts[i], isThere)) return false;
    hasMore = !isThere;
  }
  return makeTruth(at, hasMore, lowered);
}

}  // namespace zolt::engine_basic::detail
