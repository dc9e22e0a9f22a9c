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

/// Whether it is more than sums, products and powers of names and numbers.
bool hasCall(NodeABC const& node) {
  static char16_t const* const plain[] = {u"+", u"-", u"*", u"/", u"^", u"_neg", u"_quietpos"};
  ParentNodeABC const* const parent = node.asParent();
  if (!parent) return false;
  if (std::find(std::begin(plain), std::end(plain), node.crefName()) == std::end(plain)) return true;
  for (unsigned long i = 0; i < parent->numChildren(); ++i) {
    if (hasCall(parent->child(i))) return true;
  }
  return false;
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
    if (terms[0].isNegative && (terms.size() == 2 || isConstant(*terms[0].size) || hasCall(*terms[0].size))) {
      auto const first =
          std::find_if(terms.begin(), terms.end(), [](auto const& term) { return !term.isNegative; });
      if (first != terms.end()) std::rotate(terms.begin(), first, first + 1);
    }
    // A root comes after what is beside it: −b−√(b²−4ac).
    bool const isBoth = terms.size() == 2 && terms[0].isNegative && terms[1].isNegative;
    if (isBoth && hasCall(*terms[0].size) && !hasCall(*terms[1].size)) std::swap(terms[0], terms[1]);
    // Nor does a number, unless what comes next would begin with a minus.
    // Among constants it does: 1+√5.
    if (terms.size() == 2 && !terms[1].isNegative && isNumber(*terms[1].size) && isConstant(*terms[0].size)) {
      std::swap(terms[0], terms[1]);
    }
    bool const isNumberFirst = terms.size() > 1 && !terms[0].isNegative && !terms[1].isNegative &&
                               isConstant(*terms[0].size) && !isConstant(*terms[1].size);
    if (isNumberFirst) std::rotate(terms.begin(), terms.begin() + 1, terms.end());
    NodeP total = terms[0].isNegative ? negate(terms[0].size) : terms[0].size;
    for (std::size_t i = 1; i < terms.size(); ++i) {
      total = makeOperation(terms[i].isNegative ? u"-" : u"+", {total, terms[i].size});
    }
    return total;
  }

  // The negative of a difference of two, or of one divided; null for all else.
  static NodeP turn(NodeABC const& size) {
    if (isCall(size, u"/", 2)) {
      ParentNodeABC const& quotient = *size.asParent();
      NodeP const above = isCall(quotient.child(0), u"-", 2) ? turn(quotient.child(0)) : NodeP();
      return above ? makeFunction(u"/", {above, quotient.childPointer(1)}) : nullptr;
    }
    if (!isCall(size, u"-", 2)) return nullptr;
    NodeP const first = size.asParent()->childPointer(0), second = size.asParent()->childPointer(1);
    bool const isOfTwo =
        !isCall(*first, u"+", 2) && !isCall(*first, u"-", 2) && !beginsWithSign(*listFactors(first).front());
    return isOfTwo ? makeOperation(u"-", {second, first}) : nullptr;
  }

  // The sign of a product is that of its first factor.
  static NodeP negate(NodeP const& size) {
    if (isNumber(*size)) return makeNumber(minus + size->crefName());
    if (NodeP const turned = turn(*size)) return turned;
    if (!isCall(*size, u"*", 2)) return makeOperation(u"_neg", {size});
    std::vector<NodeP> const factors = listFactors(size);
    NodeP product = negate(factors[0]);
    for (std::size_t i = 1; i < factors.size(); ++i) product = makeFunction(u"*", {product, factors[i]});
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
    NodeP const under = power.childPointer(0), degree = power.childPointer(1);
    bool const isOfExponential = isCall(*under, u"exp", 1) && castNode<IntegerNodeC>(*degree);
    if (isOfExponential) {
      NodeP const exponent = makeFunction(u"*", {degree, under->asParent()->childPointer(0)});
      NodeP const joined = write(makeFunction(u"exp", {exponent}));
      product.isFine = product.isFine && joined;
      if (joined) addFactor(joined, isBelow, product);
      return;
    }
    NodeP const base = write(under);
    TermS const exponent = split(degree);
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

  // 2^(n+1)/2 is 2^n.
  static void lowerExponent(ProductS& product) {
    for (auto below = product.below.begin(); below != product.below.end(); ++below) {
      auto const above = std::find_if(product.above.begin(), product.above.end(), [&](NodeP const& factor) {
        if (!isNumber(**below) || !isCall(*factor, u"^", 2)) return false;
        NodeABC const &base = factor->asParent()->child(0), &exponent = factor->asParent()->child(1);
        return isNumber(base) && base.crefName() == (*below)->crefName() && isCall(exponent, u"+", 2) &&
               isOne(exponent.asParent()->child(1));
      });
      if (above == product.above.end()) continue;
      ParentNodeABC const& power = *(*above)->asParent();
      NodeP const base = power.childPointer(0), exponent = power.child(1).asParent()->childPointer(0);
      *above = makeOperation(u"^", {base, exponent});
      product.below.erase(below);
      return;
    }
  }

  // Of what is written already.
  static std::vector<NodeP> listFactors(NodeP const& product) {
    std::vector<NodeP> factors;
    NodeP first = product;
    for (; isCall(*first, u"*", 2); first = first->asParent()->childPointer(0)) {
      factors.push_back(first->asParent()->childPointer(1));
    }
    factors.push_back(first);
    std::reverse(factors.begin(), factors.end());
    return factors;
  }

  // √2·√(ab) is √(2ab).
  static void joinRoots(std::vector<NodeP>& factors) {
    auto const findRoot = [&](bool ofNumber) {
      return std::find_if(factors.begin(), factors.end(), [&](NodeP const& factor) {
        if (!isCall(*factor, u"sqrt", 1)) return false;
        NodeP const inside = listFactors(factor->asParent()->childPointer(0)).front();
        bool const isPlain = !inside->asParent() || isCall(*inside, u"^", 2);
        return ofNumber ? isNumber(factor->asParent()->child(0)) : isPlain && !isNumber(*inside);
      });
    };
    auto const number = findRoot(true), other = findRoot(false);
    if (number == factors.end() || other == factors.end()) return;
    NodeP joined = (*number)->asParent()->childPointer(0);
    for (NodeP const& factor : listFactors((*other)->asParent()->childPointer(0))) {
      joined = makeFunction(u"*", {joined, factor});
    }
    *other = makeFunction(u"sqrt", {joined});
    factors.erase(number);
  }

  TermS product(NodeP const& node) {
    ProductS product;
    collectFactors(node, false, product);
    if (!product.isFine) return {};
    joinLogarithms(product);
    lowerExponent(product);
    joinRoots(product.above);
    joinRoots(product.below);
    for (auto* const side : {&product.above, &product.below}) {
      std::stable_sort(side->begin(), side->end(),
                       [](NodeP const& a, NodeP const& b) { return rankFactor(*a) < rankFactor(*b); });
    }
    NodeP const above = multiply(product.above);
    NodeP const size = product.below.empty() ? above : makeFunction(u"/", {above, multiply(product.below)});
    return {product.isNegative, size};
  }

  // Numbers come first, then other constants, names, all else, and functions that need no brackets around
  // them.
  static int rankFactor(NodeABC const& factor) {
    enum RankE { RANK_NUMBER, RANK_CONSTANT, RANK_NAME, RANK_OTHER, RANK_SINE, RANK_FUNCTION };
    static char16_t const* const last[] = {u"cos",  u"tan",  u"cot",  u"arcsin", u"arccos", u"arctan",
                                           u"cosh", u"sinh", u"tanh", u"ln",     u"log",    u"log10"};
    bool const isPower = isCall(factor, u"^", 2);
    NodeABC const& base = isPower ? factor.asParent()->child(0) : factor;
    // Powers of numbers are what whole numbers are factored into.
    if (isNumber(base) && (!isPower || isNumber(factor.asParent()->child(1)))) return RANK_NUMBER;
    if (isConstant(factor)) return RANK_CONSTANT;
    if (!base.asParent()) return isNumber(base) ? RANK_OTHER : RANK_NAME;
    if (base.crefName() == u"sin") return RANK_SINE;
    bool const isLast = std::find(std::begin(last), std::end(last), base.crefName()) != std::end(last);
    return isLast ? RANK_FUNCTION : RANK_OTHER;
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
