#include "tests/formula/reference_conversion.h"

#include <limits>
#include <stack>

#include "tests/support/operators.h"
#include "zolt/algexpr/float_node.h"
#include "zolt/algexpr/number_display_format.h"
#include "zolt/algexpr/parent_node.h"
#include "zolt/algexpr/symbol_node.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/operators/operator_list.h"

namespace zolt::tests {

using namespace math::ved;
using namespace math::algexpr;

namespace {

bool isOneOf(wstring const& name, std::initializer_list<char16_t const*> names) {
  for (char16_t const* one : names) {
    if (name == one) return true;
  }
  return false;
}

bool isSpaced(wstring const& name) { return isOneOf(name, {u"div", u"mod", u"not", u"and", u"or"}); }
bool isAssociative(wstring const& name) { return isOneOf(name, {u"+", u"and", u"or"}); }

TreeT make(Node4TypeE type, wstring const& text = wstring()) {
  return std::make_unique<Node4C>(type, nullptr, text, 0);
}

void insert(Node4C& row, unsigned long i, TreeT item) {
  if (item->getType() != NODE4_LINE) {
    row.insertChild(i, item.release());
    return;
  }
  while (item->numChildren() > 0) {
    unsigned long const last = item->numChildren() - 1;
    Node4C* const moved = item->child(last);
    item->removeChild(last);
    row.insertChild(i, moved);
  }
}

void append(Node4C& row, TreeT item) { insert(row, row.numChildren(), std::move(item)); }

TreeT toRow(TreeT node) { return TreeT(node.release()->inLine()); }

void bracket(Node4C& row) {
  insert(row, 0, make(NODE4_OPEN));
  append(row, make(NODE4_CLOSE));
}

class BuilderC {
 public:
  /// A finished part and how loosely it binds.
  struct PartS {
    TreeT node;
    int precedence;
  };

  PartS build(NodeABC const& node) {
    if (auto const* number = castNode<FloatNodeC>(node))
      return {make(NODE4_TEXT, number->toString(0, NUMBER_FORMAT_AUTOMATIC)), 0};
    if (castNode<SymbolNodeC>(node)) return {make(NODE4_TEXT, node.getName()), 0};

    std::vector<PartS> parts;
    if (auto const* parent = castNode<ParentNodeABC>(node)) {
      for (unsigned long i = 0; i < parent->numChildren(); ++i) parts.push_back(build(parent->child(i)));
    }
    auto const op = standardOperators().lookup(node.getName());
    bool const fits = op && (op->getArity() == 0 || op->getArity() == parts.size());
    if (fits) return buildOperator(*op, std::move(parts));
    if (!parts.empty()) return {buildCall(node.getName(), std::move(parts)), 0};
    return {make(NODE4_TEXT, node.getName()), 0};
  }

 private:
  static TreeT buildCall(wstring const& name, std::vector<PartS> parts) {
    TreeT row = make(NODE4_LINE);
    append(*row, make(NODE4_TEXT, name));
    append(*row, make(NODE4_OPEN));
    append(*row, make(NODE4_CLOSE));
    for (std::size_t k = parts.size(); k > 0; --k) {
      insert(*row, 2, std::move(parts[k - 1].node));
      if (k > 1) insert(*row, 2, make(NODE4_TEXT, u","));
    }
    return row;
  }

  static PartS buildOperator(OperatorBC const& op, std::vector<PartS> parts) {
    wstring const name = op.getName();
    if (op.isLinear()) return buildSign(op, std::move(parts));
    if (name == u"^" || name == u"_rad" || name == u"_deg") return {buildPower(op, std::move(parts)), 0};
    if (!op.isConstruct()) {
      if (parts.empty()) return {make(NODE4_TEXT, op.getText()), 0};
      return {buildCall(op.getText(), std::move(parts)), op.getPrecedence()};
    }
    if (isOneOf(name, {u"log", u"nthroot", u"diff"})) std::swap(parts[0], parts[1]);
    auto construct = std::make_unique<Node4C>(NODE4_OPERATOR, const_cast<OperatorBC*>(&op), wstring(), 0);
    for (auto& part : parts)
      construct->insertChild(construct->numChildren(), toRow(std::move(part.node)).release());
    return {std::move(construct), op.getPrecedence()};
  }

  static PartS buildSign(OperatorBC const& op, std::vector<PartS> parts) {
    int const own = op.getPrecedence();
    bool const infix = parts.size() == 2;
    wstring text = op.getText();
    if (isSpaced(op.getName())) text = (infix ? u" " : u"") + text + u" ";
    TreeT row = make(NODE4_LINE);
    append(*row, make(NODE4_TEXT, text));

    PartS& last = parts.back();
    bool const before = op.getName() == u"!";
    int const step = infix && !isAssociative(op.getName()) ? 1 : 0;
    insertOperand(*row, before ? 0 : 1, std::move(last.node), last.precedence + step > own);
    if (infix) insertOperand(*row, 0, std::move(parts[0].node), parts[0].precedence > own);
    return {std::move(row), own};
  }

  static void insertOperand(Node4C& row, unsigned long i, TreeT operand, bool bracketed) {
    if (bracketed) {
      insert(row, i, make(NODE4_OPEN));
      insert(row, i + 1, make(NODE4_CLOSE));
      ++i;
    }
    insert(row, i, std::move(operand));
  }

  static TreeT buildPower(OperatorBC const& op, std::vector<PartS> parts) {
    TreeT exponent;
    if (op.getName() == u"^") {
      exponent = toRow(std::move(parts[1].node));
      if (parts[1].precedence == op.getPrecedence()) bracket(*exponent);
    } else {
      exponent = toRow(make(NODE4_TEXT, op.getName() == u"_rad" ? u"r" : u"o"));
    }
    TreeT power = make(NODE4_POWER);
    power->insertChild(0, exponent.release());
    TreeT base = toRow(std::move(parts[0].node));
    Node4C const& first = *base->child(0);
    bool const negative = first.getType() == NODE4_TEXT && first.crefText().substr(0, 1) == u"\u2212";
    if (parts[0].precedence > op.getPrecedence() || negative) bracket(*base);
    append(*base, std::move(power));
    return base;
  }
};

}  // namespace

TreeT showTreeStepByStep(ExpressionT const& expression) {
  TreeT root = make(NODE4_ROOT);
  root->insertChild(0, toRow(BuilderC().build(*expression->getNode()).node).release());
  Node4C* none = nullptr;
  unsigned position = 0;
  root->checkTree(none, position, none, position);
  return root;
}

namespace {

bool isPlaceholder(Node4C const& node) {
  if (node.sizeText() > 0) return false;
  if (node.getParent()->numChildren() == 1) return true;
  if (!node.goRight() || node.goRight()->getType() != NODE4_POWER) return false;
  if (!node.goLeft()) return true;
  Node4TypeE const left = node.goLeft()->getType();
  return left != NODE4_OPERATOR && left != NODE4_CLOSE && left != NODE4_AUTO_CLOSE;
}

}  // namespace

bool writePrefixStepByStep(Node4C& row, wstring& prefix, ErrorSelectionS& error) {
  wstring infix;
  std::vector<std::pair<Node4C*, unsigned>> map;
  auto const write = [&](Node4C& node, wstring const& text) {
    unsigned const before =
        !map.empty() && map.back().first == &node ? map.back().second + 1 : 0;  // the node's running count
    for (unsigned i = 0; i < text.size(); ++i) map.emplace_back(&node, before + i);
    infix += text;
  };
  for (unsigned long i = 0; i < row.numChildren(); ++i) {
    Node4C& item = *row.child(i);
    switch (item.getType()) {
      case NODE4_TEXT:
        if (isPlaceholder(item)) {
          error = {&item, 0, &item, 0, ERROR_CAUSE_PLACEHOLDER};
          return false;
        }
        write(item, item.getText());
        break;
      case NODE4_OPERATOR: {
        auto const op = item.getOperator();
        if (item.numChildren() == 0) {
          write(item, op->getName());
          break;
        }
        std::vector<wstring> arguments(item.numChildren());
        for (unsigned long k = 0; k < item.numChildren(); ++k) {
          if (!writePrefixStepByStep(*item.child(k), arguments[k], error)) return false;
        }
        write(item, u"`" + op->getName() + u"(" + op->arrangeArgumentList(arguments) + u")`");
        break;
      }
      case NODE4_POWER: {
        wstring exponent;
        if (!writePrefixStepByStep(*item.child(0), exponent, error)) return false;
        write(item, u"^`" + exponent + u"`");
        break;
      }
      case NODE4_OPEN:
      case NODE4_AUTO_OPEN:
        write(item, u"(");
        break;
      case NODE4_CLOSE:
      case NODE4_AUTO_CLOSE:
        write(item, u")");
        break;
      default:
        break;
    }
  }
  map.emplace_back(&row, row.numChildren());
  unsigned first = std::numeric_limits<unsigned>::max();
  unsigned second = first;
  ErrorCauseE cause = ERROR_CAUSE_SYNTAX;
  if (Node4C::convertInfixToPrefix(infix, prefix, first, second, cause)) return true;
  error = {map[first].first, map[first].second, map[second].first, map[second].second, cause};
  return false;
}

}  // namespace zolt::tests
