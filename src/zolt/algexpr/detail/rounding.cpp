#include "zolt/algexpr/detail/rounding.h"

#include <algorithm>
#include <utility>

#include "zolt/algexpr/flat_tree.h"
#include "zolt/algexpr/make_node.h"
#include "zolt/algexpr/make_operation.h"
#include "zolt/algexpr/written_operand.h"
#include "zolt/common/signs.h"

namespace zolt::math::algexpr::detail {

namespace {

using NodeP = PointerTC<NodeABC>;

/// What a part is: a constant times what has names. Either may be missing.
struct PartS {
  NodeP constant{};
  NodeP rest{};
  NodeP complex{};  ///< all of it, when its only name is that of the imaginary unit
};

// What has constants for operands and is one.
bool isArithmetic(wstring const& name) {
  static wstring const names[] = {u"+",   u"-",    u"*",    u"/",    u"^",   u"_neg", u"_quietpos", u"sqrt",
                                  u"ln",  u"exp",  u"sin",  u"cos",  u"tan", u"asin", u"acos",      u"atan",
                                  u"log", u"sinh", u"cosh", u"tanh", u"abs", u"!",    u"nthroot",   u"log10"};
  return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

class RounderC {
 public:
  RounderC(RoundT const& round, CASResultS& result) : round_(round), result_(result) {}

  /// The parts of the tree from its end, so that each comes after its own.
  NodeP run(NodeABC const& root) {
    FlatTreeC tree;
    if (!tree.fill(root)) return nullptr;
    std::vector<PartS> parts(tree.end(0));
    for (std::uint32_t i = tree.end(0); i-- > 0;) {
      std::vector<PartS> operands;
      for (std::uint32_t child = i + 1; child < tree.end(i); child = tree.end(child)) {
        operands.push_back(std::move(parts[child]));
      }
      parts[i] = combine(tree.crefNode(i), std::move(operands));
      if (!parts[i].constant && !parts[i].rest) return nullptr;
    }
    return write(parts[0]);
  }

 private:
  PartS combine(NodeABC const& node, std::vector<PartS> operands) {
    wstring const& name = node.crefName();
    NodeP const same(const_cast<NodeABC*>(&node));
    if (operands.empty()) {
      if (isNumber(node) || name == u"_PI") return {same};
      return {nullptr, same, name == u"i" ? same : nullptr};
    }
    bool const isPlain = isArithmetic(name);
    auto const all = [&](auto const& test) { return std::all_of(operands.begin(), operands.end(), test); };
    if (isPlain && all([](PartS const& part) { return !part.rest; })) return {same};
    PartS part = combineNamed(node, operands);
    if (isPlain && all([](PartS const& one) { return !one.rest || one.complex; })) part.complex = same;
    return part;
  }

  PartS combineNamed(NodeABC const& node, std::vector<PartS> const& operands) {
    wstring const& name = node.crefName();
    if (name == u"_neg") return {multiply(makeNumber(u"-1"), operands[0].constant), operands[0].rest};
    if (name == u"_quietpos" && operands[0].rest) return operands[0];
    if (name == u"*" && operands.size() == 2) {
      return {multiply(operands[0].constant, operands[1].constant),
              multiply(operands[0].rest, operands[1].rest)};
    }
    if (name == u"/" && operands.size() == 2) {
      PartS const &above = operands[0], &below = operands[1];
      NodeP const constant = below.constant ? divide(above.constant, below.constant) : above.constant;
      return {constant, below.rest ? divide(above.rest, below.rest) : above.rest};
    }
    std::vector<NodeP> written;
    bool const isSum = operands.size() == 2 && (name == u"+" || name == u"-");
    bool isTurned = false;
    for (PartS const& operand : operands) {
      SignedS const one = writeSigned(operand);
      // What is negative after a sign turns it.
      isTurned = isSum && !written.empty() && one.isNegative;
      written.push_back(isTurned ? one.size : withSign(one));
    }
    if (isTurned) return {nullptr, makeOperation(name == u"+" ? u"-" : u"+", std::move(written))};
    return {nullptr, makeOperation(name, std::move(written))};
  }

  static NodeP multiply(NodeP const& a, NodeP const& b) {
    return a && b ? makeOperation(u"*", {a, b}) : a ? a : b;
  }
  static NodeP divide(NodeP const& a, NodeP const& b) {
    return makeOperation(u"/", {a ? a : makeNumber(u"1"), b});
  }

  NodeP round(NodeP const& constant) {
    NodeP const number = tryRound(constant);
    return number ? number : constant;
  }
  NodeP tryRound(NodeP const& constant) {
    CASResultS const rounded = round_(constant);
    if (rounded.outcome != CAS_VALUE) return nullptr;
    result_.certainDigits = std::min(result_.certainDigits, rounded.certainDigits);
    return rounded.value->getNode();
  }

  /// `size` is without the sign.
  struct SignedS {
    NodeP number;
    NodeP size;
    bool isNegative;
  };

  SignedS writeSigned(PartS const& part) {
    if (NodeP const number = part.complex ? tryRound(part.complex) : nullptr) return {nullptr, number, false};
    if (!part.constant) return {nullptr, part.rest, false};
    NodeP const number = round(part.constant);
    bool const isNegative = !number->asParent() && common::isMinus(number->crefName()[0]);
    NodeP const size = isNegative ? makeNumber(number->crefName().substr(1)) : number;
    return {number, part.rest ? timesNumber(size, part.rest) : size, isNegative};
  }

  static NodeP makeFirst(NodeP const& number, NodeP const& product) {
    std::vector<NodeP> factors;
    NodeP first = product;
    for (; first->crefName() == u"*" && first->asParent()->numChildren() == 2;
         first = first->asParent()->childPointer(0)) {
      factors.push_back(first->asParent()->childPointer(1));
    }
    NodeP all = makeOperation(u"*", {number, first});
    for (auto factor = factors.rbegin(); factor != factors.rend(); ++factor) {
      all = makeOperation(u"*", {all, *factor});
    }
    return all;
  }

  static NodeP timesNumber(NodeP const& number, NodeP const& rest) {
    wstring const& text = number->crefName();
    if (!number->asParent() && (text == u"1" || text == u"1.0")) return rest;
    ParentNodeABC const* const quotient = rest->crefName() == u"/" ? rest->asParent() : nullptr;
    if (!quotient || quotient->numChildren() != 2) return makeFirst(number, rest);
    NodeP const above = quotient->childPointer(0);
    return makeOperation(
        u"/", {above->crefName() == u"1" ? number : timesNumber(number, above), quotient->childPointer(1)});
  }

  static NodeP withSign(SignedS const& one) {
    if (!one.isNegative) return one.size;
    bool const isNumberAlone = one.size && isNumber(*one.size);
    return isNumberAlone ? one.number : makeOperation(u"_neg", {one.size});
  }

  NodeP write(PartS const& part) { return withSign(writeSigned(part)); }

  RoundT const& round_;
  CASResultS& result_;
};

}  // namespace

CASResultS roundConstants(CASResultS const& result, RoundT const& round) {
  bool const isRounded = result.certainDigits != CASResultS::all_digits;
  if (result.outcome != CAS_VALUE || isRounded) return result;
  CASResultS rounded = result;
  NodeP const node = RounderC(round, rounded).run(*result.value->getNode());
  if (node) rounded.value = new AlgebraicExpressionC(node, result.value->getCASSession());
  return rounded;
}

}  // namespace zolt::math::algexpr::detail
