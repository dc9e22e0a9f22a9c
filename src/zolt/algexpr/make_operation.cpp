#include "zolt/algexpr/make_operation.h"

#include <set>
#include <utility>

#include "zolt/algexpr/detail/core_names.h"
#include "zolt/algexpr/make_node.h"
#include "zolt/algexpr/written_operand.h"

namespace zolt::math::algexpr {

namespace {

using OperandsT = std::vector<PointerTC<NodeABC>>;

/// The names that hosts added.
std::set<wstring>& guardedNames() {
  // Never destroyed: expressions that static objects make may come after any static set.
  static auto& names = *new std::set<wstring>;
  return names;
}

/// The names of signs that hosts added, which come after their operands.
std::set<wstring>& signsAfter() {
  static auto& names = *new std::set<wstring>;
  return names;
}

bool needsGuardBeforeExponent(NodeABC const& node) {
  if (!node.asParent()) return false;
  return detail::hasTrait(node.crefName(), detail::CORE_GUARDED) || guardedNames().count(node.crefName()) > 0;
}

PointerTC<NodeABC> guarded(PointerTC<NodeABC> operand, bool needed) {
  if (!needed) return operand;
  return makeFunction(u"_quietpos", {std::move(operand)});
}

// The operand in front of an exponent or "!".
PointerTC<NodeABC> guardedPower(PointerTC<NodeABC> operand) {
  return guarded(operand, operand && needsGuardBeforeExponent(*operand));
}

// The operand after a sign.
PointerTC<NodeABC> guardedSign(PointerTC<NodeABC> operand) {
  return guarded(operand, operand && beginsWithSign(*operand));
}

PointerTC<NodeABC> makeChain(wstring const& name, OperandsT operands) {
  if (operands.empty()) return nullptr;
  bool const isSign = name == u"+" || name == u"*";
  PointerTC<NodeABC> chain = std::move(operands[0]);
  for (std::size_t i = 1; i < operands.size(); ++i) {
    PointerTC<NodeABC> operand = isSign ? guardedSign(std::move(operands[i])) : std::move(operands[i]);
    chain = makeFunction(name, {std::move(chain), std::move(operand)});
  }
  return chain;
}

}  // namespace

void guardBeforeExponent(wstring const& name) {
  if (!detail::hasTrait(name, detail::CORE_GUARDED)) guardedNames().insert(name);
}

PointerTC<NodeABC> makePower(PointerTC<NodeABC> base, PointerTC<NodeABC> exponent) {
  bool const unit = exponent && isAngleUnit(*exponent);
  return makeFunction(u"^", {guardedPower(std::move(base)), guarded(std::move(exponent), unit)});
}

void guardBeforeSign(wstring const& name) { signsAfter().insert(name); }

PointerTC<NodeABC> makeFactorial(PointerTC<NodeABC> operand) {
  return makeOperation(u"!", {std::move(operand)});
}

bool beginsWithSign(NodeABC const& operand) {
  bool const isSigned =
      operand.asParent() && (operand.crefName() == u"_neg" || operand.crefName() == u"_pos");
  return isSigned || isNegativeNumber(operand);
}

PointerTC<NodeABC> makeOperation(wstring const& name, std::vector<PointerTC<NodeABC>> operands) {
  if (detail::hasTrait(name, detail::CORE_CHAIN)) return makeChain(name, std::move(operands));
  if (name == u"^" && operands.size() == 2) return makePower(std::move(operands[0]), std::move(operands[1]));
  if (operands.size() == 2 && (name == u"-" || name == u"div" || name == u"mod")) {
    operands[1] = guardedSign(std::move(operands[1]));
  }
  if (operands.size() == 1) {
    if (name == u"_neg" || name == u"_pos") return makeFunction(name, {guardedSign(std::move(operands[0]))});
    if (name == u"!" || signsAfter().count(name) > 0) {
      bool const ambiguous =
          operands[0] && (needsGuardBeforeExponent(*operands[0]) || isNegativeNumber(*operands[0]));
      return makeFunction(name, {guarded(std::move(operands[0]), ambiguous)});
    }
    if (name == u"_rad" || name == u"_deg") return makeFunction(name, {guardedPower(std::move(operands[0]))});
  }
  return makeFunction(name, std::move(operands));
}

}  // namespace zolt::math::algexpr
