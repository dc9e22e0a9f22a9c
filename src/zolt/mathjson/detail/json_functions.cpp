#include <utility>

#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/algexpr/make_node.h"
#include "zolt/algexpr/make_operation.h"
#include "zolt/algexpr/written_operand.h"
#include "zolt/mathjson/detail/json_reader.h"

// What functions of MathJSON are as expressions.
namespace zolt::mathjson::detail {

using namespace math::algexpr;

namespace {

using NodeT = PointerTC<NodeABC>;
using OperandsT = std::vector<NodeT>;

/// The operand when it is a function of that name.
ParentNodeABC const* asCall(NodeABC const& node, std::u16string_view name) {
  ParentNodeABC const* const parent = node.asParent();
  return parent && parent->crefName() == name ? parent : nullptr;
}

ParentNodeABC const* asLimits(NodeABC const& node) {
  ParentNodeABC const* const limits = asCall(node, u"Limits");
  ParentNodeABC const* const tuple = limits ? limits : asCall(node, u"Tuple");
  return tuple ? tuple : asCall(node, u"Triple");
}

/// The body of an anonymous function; the operand itself when it is none.
NodeT bodyOf(NodeT const& operand) {
  ParentNodeABC const* const function = asCall(*operand, u"Function");
  return function ? function->childPointer(0) : operand;
}

NodeT makeChain(JsonRowS const& row, OperandsT const& operands) {
  if (operands.size() == 1 && row.name == u"-") return makeFunction(u"_neg", operands);
  bool const mayBeOne = row.name == u"+" || row.name == u"*" || row.name == u"and" || row.name == u"or";
  if (operands.empty() || (operands.size() == 1 && !mayBeOne)) return nullptr;
  NodeT chain = operands[0];
  for (std::size_t i = 1; i < operands.size(); ++i)
    chain = makeFunction(wstring(row.name), {std::move(chain), operands[i]});
  return chain;
}

// The last bounds are those of the innermost sum.
NodeT makeSum(JsonRowS const& row, OperandsT const& operands) {
  if (operands.size() < 2) return nullptr;
  NodeT result = bodyOf(operands[0]);
  for (std::size_t i = operands.size(); --i > 0;) {
    ParentNodeABC const* const limits = asLimits(*operands[i]);
    if (!limits || limits->numChildren() != 3) return nullptr;
    result = makeFunction(wstring(row.name), {limits->childPointer(0), limits->childPointer(1),
                                              limits->childPointer(2), std::move(result)});
  }
  return result;
}

bool isNothing(NodeABC const& node) { return isName(node) && node.crefName() == u"Nothing"; }

NodeT makeIntegral(OperandsT const& operands) {
  if (operands.size() < 2) return nullptr;
  NodeT result = bodyOf(operands[0]);
  for (std::size_t i = operands.size(); --i > 0;) {
    ParentNodeABC const* const limits = asLimits(*operands[i]);
    bool const isBounded =
        limits && limits->numChildren() == 3 && !(isNothing(limits->child(1)) && isNothing(limits->child(2)));
    if (limits && limits->numChildren() != 1 && limits->numChildren() != 3) return nullptr;
    NodeT variable = limits ? limits->childPointer(0) : operands[i];
    result = isBounded ? makeFunction(u"integral", {limits->childPointer(1), limits->childPointer(2),
                                                    std::move(result), std::move(variable)})
                       : makeFunction(u"antiderivative", {std::move(result), std::move(variable)});
  }
  return result;
}

/// A limit or a value: of the body and the variable of an anonymous function.
NodeT makeOfFunction(JsonRowS const& row, OperandsT const& operands) {
  if (operands.size() != row.arity - 1) return nullptr;
  ParentNodeABC const* const function = asCall(*operands[0], u"Function");
  if (!function || function->numChildren() != 2) return nullptr;
  OperandsT parts = childrenOf(*function);
  parts.insert(parts.end(), operands.begin() + 1, operands.end());
  return makeFunction(wstring(row.name), std::move(parts));
}

NodeT makeDerivative(JsonRowS const& row, OperandsT const& operands) {
  if (operands.size() < 2) return nullptr;
  NodeT result = operands[0];
  for (std::size_t i = 1; i < operands.size(); ++i) {
    ParentNodeABC const* const order = asCall(*operands[i], u"Tuple");
    if (order && order->numChildren() != 2) return nullptr;
    result = order ? makeFunction(wstring(row.name) + u'n',
                                  {std::move(result), order->childPointer(0), order->childPointer(1)})
                   : makeFunction(wstring(row.name), {std::move(result), operands[i]});
  }
  return result;
}

NodeT makeMatrix(OperandsT const& operands) {
  ParentNodeABC const* const list = operands.empty() ? nullptr : asCall(*operands[0], list_name);
  if (!list) return nullptr;
  if (countColumns(*list) > 0) return makeFunction(u"matrix", childrenOf(*list));
  // A vector is a column.
  OperandsT rows = childrenOf(*list);
  for (NodeT& row : rows) {
    if (asCall(*row, list_name)) return nullptr;
    row = makeFunction(wstring(list_name), {std::move(row)});
  }
  return makeFunction(u"matrix", std::move(rows));
}

NodeT makeDeterminant(OperandsT const& operands) {
  if (operands.size() != 1) return nullptr;
  ParentNodeABC const* const table = asTable(*operands[0]);
  return makeFunction(u"det", table ? childrenOf(*table) : operands);
}

NodeT makeCases(OperandsT const& operands) {
  if (operands.empty() || operands.size() % 2 != 0) return nullptr;
  OperandsT rows;
  for (std::size_t i = 0; i < operands.size(); i += 2)
    rows.push_back(makeFunction(wstring(list_name), {operands[i + 1], operands[i]}));
  return makeFunction(u"cases", std::move(rows));
}

NodeT makeInterval(OperandsT const& operands) {
  if (operands.size() != 2) return nullptr;
  OperandsT parts = operands;
  for (NodeT const& operand : operands) {
    ParentNodeABC const* const open = asCall(*operand, u"Open");
    if (open) parts[&operand - operands.data() == 0 ? 0 : 1] = open->childPointer(0);
    parts.push_back(makeNumber(open ? u"0" : u"1"));
  }
  return makeFunction(u"interval", std::move(parts));
}

}  // namespace

NodeT makeJsonFunction(JsonRowS const& row, OperandsT const& operands) {
  switch (row.shape) {
    case JSON_PLAIN: {
      bool const fits = row.arity == 0 ? !operands.empty() : operands.size() == row.arity;
      bool const isGuarded =
          row.name == u"^" || row.name == u"!" || row.name == u"_deg" || row.name == u"_rad";
      if (!fits) return nullptr;
      return isGuarded ? makeOperation(wstring(row.name), operands)
                       : makeFunction(wstring(row.name), operands);
    }
    case JSON_CHAIN:
      return makeChain(row, operands);
    case JSON_READ_AS: {
      if (operands.size() != 1 || row.arity != 1) return nullptr;
      auto const meant = AlgebraicExpressionC::fromPrefixString(wstring(row.name), nullptr)->getNode();
      return makeOperation(meant->crefName(), {operands[0], meant->asParent()->childPointer(1)});
    }
    case JSON_SUM:
      return makeSum(row, operands);
    case JSON_INTEGRAL:
      return makeIntegral(operands);
    case JSON_LIMIT:
    case JSON_WHERE:
      return makeOfFunction(row, operands);
    case JSON_DERIVATIVE:
      return makeDerivative(row, operands);
    case JSON_MATRIX:
      return makeMatrix(operands);
    case JSON_ROWS:
      return makeDeterminant(operands);
    case JSON_CASES:
      return makeCases(operands);
    case JSON_INTERVAL:
      return makeInterval(operands);
    case JSON_CONSTANT:
    case JSON_PRIMITIVE:
    case JSON_ORDER:
      break;
  }
  return nullptr;
}

}  // namespace zolt::mathjson::detail
