#include "zolt/exchange/detail/latex_differential.h"

#include <utility>
#include <vector>

#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/algexpr/float_node.h"
#include "zolt/algexpr/make_node.h"
#include "zolt/algexpr/nodes.h"
#include "zolt/algexpr/written_operand.h"

namespace zolt::exchange::detail {

using namespace math::algexpr;

namespace {

/// So many times at most a derivative is repeated as such.
constexpr unsigned max_repeated = 20;

ParentNodeABC const* asBinary(NodeABC const& node, std::u16string_view name) {
  ParentNodeABC const* const parent = node.asParent();
  return parent && parent->numChildren() == 2 && parent->crefName() == name ? parent : nullptr;
}

/// The factors of a product that leans to the left and begins with a "d" or a power of it.
std::vector<NodeABC const*> factorsOf(NodeABC const& product) {
  std::vector<NodeABC const*> factors;
  NodeABC const* node = &product;
  while (ParentNodeABC const* const parent = asBinary(*node, u"*")) {
    factors.push_back(&parent->child(1));
    node = &parent->child(0);
  }
  factors.push_back(node);
  return {factors.rbegin(), factors.rend()};
}

constexpr std::u16string_view partial_sign = u"∂";

bool isPartial(NodeABC const& node) {
  ParentNodeABC const* const parent = node.asParent();
  return parent && parent->numChildren() == 1 && parent->crefName() == u"partial";
}

/// The product of the factors, at least one.
NodeT makeProduct(std::vector<NodeT> const& factors) {
  NodeT product = factors[0];
  for (std::size_t i = 1; i < factors.size(); ++i)
    product = makeFunction(u"*", {std::move(product), factors[i]});
  return product;
}

NodeT separated(NodeT const& product) {
  std::vector<NodeT> factors;
  auto const add = [&factors](NodeT const& factor) {
    if (isPartial(*factor)) factors.push_back(factor->asParent()->childPointer(0));
    factors.push_back(isPartial(*factor) ? makeNamed(wstring(partial_sign)) : factor);
  };
  NodeT node = product;
  for (; asBinary(*node, u"*"); node = node->asParent()->childPointer(0))
    add(node->asParent()->childPointer(1));
  add(node);
  return makeProduct({factors.rbegin(), factors.rend()});
}

/// A factor with an exponent, which is null when there is none.
struct PowerS {
  NodeABC const* base;
  NodeABC const* exponent = nullptr;
};

PowerS asPower(NodeABC const& factor) {
  ParentNodeABC const* const power = asBinary(factor, u"^");
  return power ? PowerS{&power->child(0), &power->child(1)} : PowerS{&factor};
}

/// Whether both are the same expression.
bool isEqual(PointerTC<NodeABC> const& a, PointerTC<NodeABC> const& b) {
  return AlgebraicExpressionC(a, nullptr).equals(AlgebraicExpressionC(b, nullptr));
}

}  // namespace

bool separatePartials(NodeT& numerator, NodeT& denominator) {
  NodeABC const& first = *factorsOf(*numerator)[0];
  bool const isSign = isPartial(first) || asPower(first).base->crefName() == partial_sign;
  if (!isSign || !isPartial(*factorsOf(*denominator)[0])) return false;
  numerator = separated(numerator);
  denominator = separated(denominator);
  return true;
}

unsigned countDerivatives(NodeABC const* exponent) {
  if (!exponent) return 1;
  wstring const& digits = exponent->crefName();
  if (!castNode<IntegerNodeC>(*exponent) || digits.size() > 2 || digits[0] > u'9') return 0;
  unsigned count = 0;
  for (char16_t const c : digits) count = count * 10 + static_cast<unsigned>(c - u'0');
  return count <= max_repeated ? count : 0;
}

ParentNodeABC const* asBracketedUnit(NodeABC const& exponent) {
  ParentNodeABC const* const outer = asBrackets(exponent);
  ParentNodeABC const* inner = outer;
  while (inner && asBrackets(inner->child(0))) inner = asBrackets(inner->child(0));
  return inner && isAngleUnit(inner->child(0)) ? outer : nullptr;
}

bool isDerivative(NodeABC const& numerator, NodeABC const& denominator, OrderE order) {
  std::vector<NodeABC const*> const by = factorsOf(denominator);
  if (by.size() % 2 != 0) return false;
  NodeABC const* first = &numerator;
  while (ParentNodeABC const* const parent = asBinary(*first, u"*")) first = &parent->child(0);
  PowerS const sign = asPower(*first);
  wstring const& d = by[0]->crefName();
  if (sign.base->crefName() != d) return false;
  unsigned total = 0;
  bool counted = order == ORDER_REPEATED;
  for (std::size_t i = 0; i < by.size(); i += 2) {
    PowerS const variable = asPower(*by[i + 1]);
    bool const isName = !variable.base->asParent() && !castNode<IntegerNodeC>(*variable.base) &&
                        !castNode<FloatNodeC>(*variable.base);
    if (by[i]->asParent() || by[i]->crefName() != d || !isName) return false;
    unsigned const count = countDerivatives(variable.exponent);
    counted = counted && count > 0;
    total += count;
  }
  if (counted) return countDerivatives(sign.exponent) == total;
  ParentNodeABC const* const power = asBinary(*by[1], u"^");
  return by.size() == 2 && sign.exponent && power &&
         isEqual(power->childPointer(1), first->asParent()->childPointer(1));
}

NodeT makeDerivative(NodeT operand, NodeABC const& denominator, OrderE order) {
  std::vector<NodeABC const*> const by = factorsOf(denominator);
  wstring const prefix = by[0]->crefName() == u"d" ? u"" : u"p";
  for (std::size_t i = by.size(); i > 0; i -= 2) {
    PowerS const variable = asPower(*by[i - 1]);
    NodeT const name = makeNamed(variable.base->crefName());
    unsigned const count = order == ORDER_KEPT ? 0 : countDerivatives(variable.exponent);
    if (count == 0) {
      NodeT taken = by[i - 1]->asParent()->childPointer(1);
      if (ParentNodeABC const* const brackets = asBracketedUnit(*taken)) taken = brackets->childPointer(0);
      operand = makeFunction(prefix + u"diffn", {std::move(operand), name, std::move(taken)});
    }
    for (unsigned n = 0; n < count; ++n) operand = makeFunction(prefix + u"diff", {std::move(operand), name});
  }
  return operand;
}

NodeT withoutFirstFactor(NodeABC const& product) {
  std::vector<NodeT> factors;
  ParentNodeABC const* parent = asBinary(product, u"*");
  while (parent) {
    factors.push_back(parent->childPointer(1));
    parent = asBinary(parent->child(0), u"*");
  }
  return makeProduct({factors.rbegin(), factors.rend()});
}

NodeT takeDifferential(NodeT& product) {
  ParentNodeABC const& pair = *product->asParent();
  NodeT name = pair.childPointer(1);
  ParentNodeABC const* const rest = asBinary(pair.child(0), u"*");
  product = rest ? rest->childPointer(0) : makeNumber(u"1");
  return name;
}

}  // namespace zolt::exchange::detail
