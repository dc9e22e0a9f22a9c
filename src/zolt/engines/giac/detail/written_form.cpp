#include "zolt/engines/giac/detail/written_form.h"

#include <algorithm>
#include <utility>
#include <vector>

#include "zolt/algexpr/make_node.h"
#include "zolt/algexpr/make_operation.h"
#include "zolt/algexpr/nodes.h"
#include "zolt/algexpr/written_operand.h"
#include "zolt/common/signs.h"

namespace zolt::engine_giac::detail {

using namespace math::algexpr;

namespace {

using NodeP = PointerTC<NodeABC>;

constexpr unsigned most_nested = 1000;
wstring const minus = {math::common::minus_sign};

bool isCall(NodeABC const& node, char16_t const* name, unsigned long children) {
  ParentNodeABC const* const parent = node.asParent();
  return parent && parent->numChildren() == children && node.crefName() == name;
}

bool isNegativeNumber(NodeABC const& node) { return isNumber(node) && node.crefName()[0] == minus[0]; }
bool isOne(NodeABC const& node) { return castNode<IntegerNodeC>(node) && node.crefName() == u"1"; }

NodeP withoutSign(NodeP const& number) { return makeNumber(number->crefName().substr(1)); }

/// Whether it is a number, or an operation on numbers.
bool isConstant(NodeABC const& node) {
  ParentNodeABC const* const parent = node.asParent();
  if (!parent) return isNumber(node) || node.crefName() == u"_PI" || node.crefName() == u"i";
  for (unsigned long i = 0; i < parent->numChildren(); ++i) {
    if (!isConstant(parent->child(i))) return false;
  }
  return true;
}

/// A term without its sign.
struct TermS {
  bool isNegative = false;
  NodeP size;  ///< null: it is nested too deeply
};

class FormC {
 public:
  NodeP write(NodeP const& node) {
    if (nested_ == most_nested) return nullptr;
    ++nested_;
    TermS const term = split(node);
    --nested_;
    if (!term.isNegative) return term.size;
    return negate(term.size);
  }

 private:
  TermS split(NodeP const& node) {
    if (isNegativeNumber(*node)) return {true, withoutSign(node)};
    if (isCall(*node, u"+", node->asParent() ? node->asParent()->numChildren() : 0))
      return {false, sum(*node)};
    bool const isOfFactors = isCall(*node, u"_neg", 1) || isCall(*node, u"_inv", 1) ||
                             isCall(*node, u"/", 2) || isCall(*node, u"^", 2) ||
                             isCall(*node, u"*", node->asParent() ? node->asParent()->numChildren() : 0);
    return isOfFactors ? product(node) : TermS{false, call(node)};
  }

  NodeP call(NodeP const& node) {
    ParentNodeABC const* const parent = node->asParent();
    if (!parent) return node;
    std::vector<NodeP> operands;
    for (unsigned long i = 0; i < parent->numChildren(); ++i) {
      operands.push_back(write(parent->childPointer(i)));
      if (!operands.back()) return nullptr;
    }
    // What has its unknown on the left is read more easily.
    static std::pair<char16_t const*, char16_t const*> const turned[] = {
        {u"<", u">"}, {u">", u"<"}, {u"<=", u">="}, {u">=", u"<="}};
    bool const isTurned = operands.size() == 2 && isConstant(*operands[0]) && !isConstant(*operands[1]);
    for (auto const& [name, other] : turned) {
      if (isTurned && node->crefName() == name) return makeOperation(other, {operands[1], operands[0]});
    }
    return makeOperation(node->crefName(), std::move(operands));
  }

  // ---- Sums
  // -----------------------------------------------------------------------------------------------

  NodeP sum(NodeABC const& node) {
    std::vector<TermS> terms;
    collectTerms(node, terms);
    auto const isFine = [](TermS const& term) { return bool(term.size); };
    if (terms.empty() || !std::all_of(terms.begin(), terms.end(), isFine)) return nullptr;
    // What has a minus does not come first where it need not.
    if (terms[0].isNegative && (terms.size() == 2 || isConstant(*terms[0].size))) {
      auto const first =
          std::find_if(terms.begin(), terms.end(), [](auto const& term) { return !term.isNegative; });
      if (first != terms.end()) std::rotate(terms.begin(), first, first + 1);
    }
    // Nor does a number, unless what comes next would begin with a minus.
    bool const isNumberFirst = terms.size() > 1 && !terms[0].isNegative && !terms[1].isNegative &&
                               isConstant(*terms[0].size) && !isConstant(*terms[1].size);
    if (isNumberFirst) std::rotate(terms.begin(), terms.begin() + 1, terms.end());
    NodeP total = terms[0].isNegative ? negate(terms[0].size) : terms[0].size;
    for (std::size_t i = 1; i < terms.size(); ++i) {
      total = makeOperation(terms[i].isNegative ? u"-" : u"+", {total, terms[i].size});
    }
    return total;
  }

  // The sign of a product is that of its first factor.
  static NodeP negate(NodeP const& size) {
    if (isNumber(*size)) return makeNumber(minus + size->crefName());
    if (!isCall(*size, u"*", 2)) return makeOperation(u"_neg", {size});
    std::vector<NodeP> factors;
    NodeP first = size;
    for (; isCall(*first, u"*", 2); first = first->asParent()->childPointer(0)) {
      factors.push_back(first->asParent()->childPointer(1));
    }
    NodeP product = negate(first);
    for (auto factor = factors.rbegin(); factor != factors.rend(); ++factor) {
      product = makeFunction(u"*", {product, *factor});
    }
    return product;
  }

  void collectTerms(NodeABC const& node, std::vector<TermS>& terms) {
    ParentNodeABC const& parent = *node.asParent();
    for (unsigned long i = 0; i < parent.numChildren(); ++i) {
      NodeP const child = parent.childPointer(i);
      if (child->asParent() && child->crefName() == u"+") {
        collectTerms(*child, terms);
      } else if (nested_ < most_nested) {
        ++nested_;
        terms.push_back(split(child));
        --nested_;
      } else {
        terms.push_back({});
      }
    }
  }

  // ---- Products
  // -------------------------------------------------------------------------------------------

  struct ProductS {
    bool isNegative = false;
    bool isFine = true;
    std::vector<NodeP> above, below;
  };

  // Factors of the node, turned over when it is below a line.
  void collectFactors(NodeP const& node, bool isBelow, ProductS& product) {
    if (nested_ == most_nested) {
      product.isFine = false;
      return;
    }
    ++nested_;
    ParentNodeABC const* const parent = node->asParent();
    unsigned long const count = parent ? parent->numChildren() : 0;
    if (isNegativeNumber(*node)) {
      product.isNegative = !product.isNegative;
      addFactor(withoutSign(node), isBelow, product);
    } else if (isCall(*node, u"_neg", 1)) {
      product.isNegative = !product.isNegative;
      collectFactors(parent->childPointer(0), isBelow, product);
    } else if (isCall(*node, u"_inv", 1)) {
      collectFactors(parent->childPointer(0), !isBelow, product);
    } else if (count > 0 && node->crefName() == u"*") {
      for (unsigned long i = 0; i < count; ++i) collectFactors(parent->childPointer(i), isBelow, product);
    } else if (isCall(*node, u"/", 2)) {
      collectFactors(parent->childPointer(0), isBelow, product);
      collectFactors(parent->childPointer(1), !isBelow, product);
    } else if (isCall(*node, u"^", 2)) {
      addPower(*parent, isBelow, product);
    } else {
      NodeP const factor = write(node);
      if (factor) {
        addFactor(factor, isBelow, product);
      } else {
        product.isFine = false;
      }
    }
    --nested_;
  }

  static void addFactor(NodeP const& factor, bool isBelow, ProductS& product) {
    if (isOne(*factor)) return;
    // What a quotient has below the line comes out below that of the whole.
    (isBelow ? product.below : product.above).push_back(factor);
  }

  void addPower(ParentNodeABC const& power, bool isBelow, ProductS& product) {
    NodeP const base = write(power.childPointer(0));
    TermS const exponent = split(power.childPointer(1));
    if (!base || !exponent.size) {
      product.isFine = false;
      return;
    }
    bool const isNumeric = isConstant(*exponent.size);
    bool const isTurned = exponent.isNegative && isNumeric;
    NodeP const written = exponent.isNegative && !isNumeric ? negate(exponent.size) : exponent.size;
    addFactor(makeRoot(base, written), isBelow != isTurned, product);
  }

  // The roots of what may be negative are others than the powers when the degree is odd.
  static NodeP makeRoot(NodeP const& base, NodeP const& exponent) {
    if (isOne(*exponent)) return base;
    bool const isInverse = isCall(*exponent, u"/", 2) && isOne(exponent->asParent()->child(0)) &&
                           castNode<IntegerNodeC>(exponent->asParent()->child(1));
    if (!isInverse) return makeOperation(u"^", {base, exponent});
    NodeP const degree = exponent->asParent()->childPointer(1);
    if (degree->crefName() == u"2") return makeFunction(u"sqrt", {base});
    bool const isEven = (degree->crefName().back() - u'0') % 2 == 0;
    bool const isPositive = isNumber(*base) && !isNegativeNumber(*base);
    return isEven || isPositive ? makeFunction(u"nthroot", {base, degree})
                                : makeOperation(u"^", {base, exponent});
  }

  // ln(x)/ln(2) is a logarithm by its base.
  static void joinLogarithms(ProductS& product) {
    auto const isLogarithm = [](NodeP const& factor) { return isCall(*factor, u"ln", 1); };
    auto const isOfBase = [&](NodeP const& factor) {
      return isLogarithm(factor) && castNode<IntegerNodeC>(factor->asParent()->child(0));
    };
    auto const above = std::find_if(product.above.begin(), product.above.end(), isLogarithm);
    auto const below = std::find_if(product.below.begin(), product.below.end(), isOfBase);
    if (above == product.above.end() || below == product.below.end()) return;
    NodeP const base = (*below)->asParent()->childPointer(0),
                argument = (*above)->asParent()->childPointer(0);
    product.below.erase(below);
    *above = base->crefName() == u"10" ? makeFunction(u"log10", {argument})
                                       : makeFunction(u"log", {argument, base});
  }

  TermS product(NodeP const& node) {
    ProductS product;
    collectFactors(node, false, product);
    if (!product.isFine) return {};
    joinLogarithms(product);
    for (auto* const side : {&product.above, &product.below}) {
      std::stable_partition(side->begin(), side->end(), isCoefficient);
    }
    NodeP const above = multiply(product.above);
    NodeP const size = product.below.empty() ? above : makeFunction(u"/", {above, multiply(product.below)});
    return {product.isNegative, size};
  }

  // Powers of numbers are what whole numbers are factored into.
  static bool isCoefficient(NodeP const& factor) {
    if (!isCall(*factor, u"^", 2)) return isNumber(*factor);
    return isNumber(factor->asParent()->child(0)) && isNumber(factor->asParent()->child(1));
  }

  static NodeP multiply(std::vector<NodeP> const& factors) {
    return factors.empty() ? makeNumber(u"1") : makeOperation(u"*", factors);
  }

  unsigned nested_ = 0;
};

}  // namespace

PointerTC<NodeABC> writeForPeople(NodeABC const& node) {
  return FormC().write(PointerTC<NodeABC>(const_cast<NodeABC*>(&node)));
}

}  // namespace zolt::engine_giac::detail
