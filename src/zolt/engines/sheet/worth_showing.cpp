#include "zolt/engines/sheet/worth_showing.h"

#include <algorithm>
#include <set>

#include "zolt/algexpr/make_node.h"
#include "zolt/algexpr/nodes.h"
#include "zolt/common/signs.h"
#include "zolt/engines/sheet/detail/line_names.h"
#include "zolt/engines/sheet/variables.h"

namespace zolt::engine_sheet {

using namespace math::algexpr;

namespace {

/// What is said by an expression, apart from brackets and from where in products minuses are.
struct GistS {
  std::vector<wstring> parts;        ///< in the order of the prefix text
  std::multiset<wstring> functions;  ///< each call of one, but for those of plain arithmetic
  unsigned long minuses = 0;
  unsigned long symbols = 0;
  unsigned long leaves = 0;
  bool hasNested = false;  ///< whether there are quotients in quotients
};

bool isBracket(wstring const& name) { return name == u"_quietpos" || name == u"_pos"; }

bool isArithmetic(wstring const& name) {
  static std::set<wstring> const names{u"+", u"-", u"*", u"/", u"^", u"_neg", u"_quietpos", u"_pos", u"="};
  return names.count(name) != 0;
}

GistS findGist(PointerTC<NodeABC> const& root) {
  GistS gist;
  struct PlaceS {
    NodeABC const* node;
    bool isInQuotient;
  };
  std::vector<PlaceS> waiting{{root.get(), false}};
  while (!waiting.empty()) {
    NodeABC const& node = *waiting.back().node;
    bool const isAround = waiting.back().isInQuotient;
    waiting.pop_back();
    ParentNodeABC const* const parent = node.asParent();
    wstring const& name = node.crefName();
    bool const isQuotient = parent && name == u"/";
    if (isQuotient && isAround) gist.hasNested = true;
    for (unsigned long i = parent ? parent->numChildren() : 0; i > 0; --i) {
      waiting.push_back({&parent->child(i - 1), isQuotient || isAround});
    }
    if (parent && isBracket(name)) continue;
    // A minus is where the writer of a fraction puts it.
    bool const isNegative = !parent && makeNumber(name) && name[0] == math::common::minus_sign;
    if (isNegative || (parent && name == u"_neg")) ++gist.minuses;
    if (!parent || name != u"_neg") gist.parts.push_back(isNegative ? name.substr(1) : name);
    if (parent) {
      if (!isArithmetic(name)) gist.functions.insert(name);
      continue;
    }
    ++gist.leaves;
    if (castNode<SymbolNodeC>(node) && !isValueName(name)) ++gist.symbols;
  }
  return gist;
}

bool saysMore(NodeABC const& formula, CASResultS const& result, bool usesDefinitions) {
  CASDefinitionS const assigned = detail::readDefinition(formula);
  PointerTC<NodeABC> const before =
      assigned.value ? assigned.value : PointerTC<NodeABC>(const_cast<NodeABC*>(&formula));
  GistS const asked = findGist(before), found = findGist(result.value->getNode());
  if (asked.parts == found.parts && asked.minuses == found.minuses) return false;
  if (usesDefinitions || found.symbols == 0 || found.symbols < asked.symbols) return true;
  if (found.symbols == asked.symbols && found.leaves < asked.leaves) return true;
  if (asked.hasNested && !found.hasNested) return true;
  return !std::includes(found.functions.begin(), found.functions.end(), asked.functions.begin(),
                        asked.functions.end());
}

bool isShortNumber(NodeABC const& node, unsigned digits) {
  NodeABC const* number = &node;
  if (number->crefName() == u"_neg" && number->asParent()) number = &number->asParent()->child(0);
  if (number->asParent() || !makeNumber(number->crefName())) return false;
  return number->crefName().size() <= digits + 2;
}

/// Whether the decimal form of a fraction ends: nothing but twos and fives divide its denominator.
bool isDecimalFraction(NodeABC const& node) {
  NodeABC const* fraction = &node;
  if (fraction->crefName() == u"_neg" && fraction->asParent()) fraction = &fraction->asParent()->child(0);
  ParentNodeABC const* const parent = fraction->asParent();
  if (!parent || parent->crefName() != u"/" || !castNode<IntegerNodeC>(parent->child(0))) return false;
  if (!castNode<IntegerNodeC>(parent->child(1))) return false;
  wstring const& digits = parent->child(1).crefName();
  if (digits.size() > 18) return false;
  unsigned long long rest = 0;
  for (char16_t const digit : digits) rest = 10 * rest + static_cast<unsigned>(digit - u'0');
  for (unsigned const prime : {2U, 5U}) {
    while (rest != 0 && rest % prime == 0) rest /= prime;
  }
  return rest == 1;
}

/// Whether a number has fewer digits than it could have, so that none have been rounded away.
bool hasSpareDigits(NodeABC const& node, unsigned digits) {
  NodeABC const* number = &node;
  if (number->crefName() == u"_neg" && number->asParent()) number = &number->asParent()->child(0);
  wstring const& text = number->crefName();
  auto const isDigit = [](char16_t c) { return math::common::isDigit(c); };
  return !number->asParent() &&
         std::count_if(text.begin(), text.end(), isDigit) + 1 < static_cast<long>(digits);
}

bool isRelation(NodeABC const& node) {
  static std::set<wstring> const relations{u"=", u"<>", u"<", u"<=", u">", u">="};
  ParentNodeABC const* const parent = node.asParent();
  return parent && relations.count(parent->crefName()) != 0;
}

}  // namespace

bool wantsNumber(CASResultS const& value, unsigned digits) {
  if (value.outcome == CAS_ERROR) return false;
  if (value.outcome == CAS_UNEVALUATED) return value.cause != CAS_CAUSE_STOPPED;
  NodeABC const& node = *value.value->getNode();
  if (isShortNumber(node, digits)) return false;
  if (findGist(value.value->getNode()).symbols != 0) return false;
  std::vector<wstring> const names = detail::findNames(node);
  return std::none_of(names.begin(), names.end(), isValueName);
}

ShownS findShown(AlgebraicExpressionC const& expression, LineResultS const& result, unsigned digits) {
  ShownS shown;
  shown.isNumber = result.number.outcome == CAS_VALUE && result.number.value;
  shown.isNumberExact = shown.isNumber && result.number.certainDigits == CASResultS::all_digits;
  if (result.value.outcome == CAS_VALUE) {
    bool const isEndless = !shown.isNumber || !isDecimalFraction(*result.value.value->getNode());
    if (!isEndless && hasSpareDigits(*result.number.value->getNode(), digits)) shown.isNumberExact = true;
    NodeABC const& formula = *expression.getNode();
    bool const isFunction = !detail::readDefinition(formula).parameters.empty();
    shown.isValue = !isFunction && saysMore(formula, result.value, result.usesDefinitions);
    shown.isImplied = isRelation(formula);
    return shown;
  }
  if (shown.isNumber) return shown;
  CASResultS const& number = result.number;
  bool const isUnknown =
      result.value.cause == CAS_CAUSE_NEEDS_ALGEBRA || result.value.cause == CAS_CAUSE_NOT_FOUND;
  bool const isOpen = number.cause == CAS_CAUSE_NO_VALUE && isUnknown;
  if (isOpen) return shown;
  shown.reason = number.outcome == CAS_ERROR && number.cause != CAS_CAUSE_NONE ? &number : &result.value;
  return shown;
}

}  // namespace zolt::engine_sheet
