#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <random>

#include "tests/operators/extra_operators.h"
#include "tests/support/cases.h"
#include "tests/support/small_stack.h"
#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/algexpr/make_node.h"
#include "zolt/algexpr/number_display_format.h"
#include "zolt/algexpr/parent_node.h"
#include "zolt/ved/convert/error_selection.h"
#include "zolt/ved/operators/call_row.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/tree_notation.h"

namespace zolt::tests {
namespace {

using namespace math::ved;
using math::algexpr::AlgebraicExpressionC;
using math::algexpr::NodeABC;
using math::algexpr::ParentNodeABC;
using NodeT = std::unique_ptr<Node4C>;
using ShapeT = std::pair<Node4C*, int>;

PointerTC<NodeABC> readNode(wstring const& prefix) {
  auto const expression = AlgebraicExpressionC::fromPrefixString(prefix);
  return expression ? expression->getNode() : nullptr;
}

Node4C* makeText(wstring const& text) { return new Node4C(NODE4_TEXT, nullptr, text, 0); }
Node4C* makeItem(Node4TypeE type) { return new Node4C(type, nullptr, wstring(), 0); }

/// Builds a shape, each node by its operator and every other one as a call or a text.
class BuilderC {
 public:
  virtual ~BuilderC() = default;

  ShapeT build(NodeABC& node) {
    ConversionStackT stack;
    push(node, stack);
    EXPECT_EQ(1u, stack.size());
    return stack.top();
  }

 protected:
  virtual ShapeT apply(OperatorBC const& op, NodeABC& node, ConversionStackT& stack) {
    return op.fromAlgebraicNode(node, stack);
  }

 private:
  void push(NodeABC& node, ConversionStackT& stack) {
    ParentNodeABC* const parent = node.asParent();
    unsigned long const count = parent ? parent->numChildren() : 0;
    for (unsigned long i = 0; i < count; ++i) push(parent->child(i), stack);
    if (auto const op = allOperators().lookup(node.crefName())) {
      stack.push(apply(*op, node, stack));
    } else if (count > 0) {
      stack.emplace(makeCallRow(node.crefName(), count, stack), 0);
    } else {
      stack.emplace(makeText(node.crefName()), 0);
    }
  }
};

std::string describe(ShapeT const& shape) {
  return toUtf8(writeTreeNotation(*NodeT(shape.first))) + " " + std::to_string(shape.second);
}

TEST(OperatorShapes, Cases) {
  allOperators();
  for (CaseS const& line : readCases(ZOLT_TEST_DATA "/shapes.cases")) {
    SCOPED_TRACE(line.where);
    auto const node = readNode(toText(line.input));
    ASSERT_TRUE(node);
    EXPECT_EQ(line.expected, describe(BuilderC().build(*node)));
  }
}

/// Signs and powers put together step by step in a new row, every operand moved into it item by item.
class StepByStepC : public BuilderC {
 protected:
  ShapeT apply(OperatorBC const& op, NodeABC& node, ConversionStackT& stack) override {
    int const own = op.getPrecedence();
    auto* const row = new Node4C(NODE4_LINE, nullptr, wstring(), 1);
    wstring const name = op.getName();
    if (op.isLinear()) {
      row->setChild(0, makeText(op.getText()));
      auto const last = pop(stack);
      if (op.getArity() == 2) {
        insert(*row, 1, last.first, last.second + (name == u"+" ? 0 : 1) > own);
        auto const left = pop(stack);
        insert(*row, 0, left.first, left.second > own);
      } else {
        insert(*row, name == u"!" ? 0 : 1, last.first, last.second > own);
      }
      return {row, own};
    }
    delete row;
    if (name != u"^") return op.fromAlgebraicNode(node, stack);
    auto const exponent = pop(stack);
    auto const base = pop(stack);
    Node4C* const baseRow = base.first->inLine();
    Node4C const& first = *baseRow->child(0);
    bool const negative =
        first.getType() == NODE4_TEXT && first.sizeText() > 0 && first.crefText()[0] == u'\u2212';
    if (base.second > own || negative) {
      baseRow->insertChild(0, makeItem(NODE4_OPEN));
      baseRow->insertChild(baseRow->numChildren(), makeItem(NODE4_CLOSE));
    }
    auto* const power = new Node4C(NODE4_POWER, nullptr, wstring(), 1);
    power->setChild(0, exponent.first->inLine());
    baseRow->insertChild(baseRow->numChildren(), power);
    return {baseRow, 0};
  }

 private:
  static ShapeT pop(ConversionStackT& stack) {
    ShapeT const shape = stack.top();
    stack.pop();
    return shape;
  }

  static void insert(Node4C& row, unsigned long i, Node4C* operand, bool bracketed) {
    if (bracketed) {
      row.insertChild(i, makeItem(NODE4_OPEN));
      row.insertChild(i + 1, makeItem(NODE4_CLOSE));
      ++i;
    }
    if (operand->getType() != NODE4_LINE) {
      row.insertChild(i, operand);
      return;
    }
    for (unsigned long k = operand->numChildren(); k-- > 0;) row.insertChild(i, operand->cutChild(k));
    delete operand;
  }
};

class RandomPrefixC {
 public:
  explicit RandomPrefixC(unsigned seed) : random_(seed) {}

  wstring make(int level) {
    static wstring const leaves[] = {u"a", u"b", u"\u22122", u"3"};
    static std::pair<wstring, unsigned> const functions[] = {
        {u"+", 2}, {u"-", 2}, {u"*", 2},    {u"+", 2},   {u"-", 2}, {u"_neg", 1},
        {u"!", 1}, {u"^", 2}, {u"sqrt", 1}, {u"sin", 1}, {u"f", 3}, {u"/", 2},
    };
    if (level == 0 || random_() % 5 == 0) return leaves[random_() % std::size(leaves)];
    auto const& [name, arity] = functions[random_() % std::size(functions)];
    wstring prefix = name + u"(";
    for (unsigned i = 0; i < arity; ++i) prefix += (i > 0 ? u"," : u"") + make(level - 1);
    return prefix + u")";
  }

 private:
  std::mt19937 random_;
};

TEST(OperatorShapes, GrowOutOfTheirLargestOperandAsIfBuiltStepByStep) {
  for (unsigned seed = 0; seed < 1000; ++seed) {
    wstring const prefix = RandomPrefixC(seed).make(7);
    auto const node = readNode(prefix);
    ASSERT_TRUE(node) << toUtf8(prefix);
    ASSERT_EQ(describe(StepByStepC().build(*node)), describe(BuilderC().build(*node))) << toUtf8(prefix);
  }
}

// A row that is built anew for each term costs the square of their number.
TEST(OperatorShapes, LongRowsAreNotCopied) {
  struct {
    wstring name;
    unsigned place;  // of the growing operand
  } const cases[] = {{u"+", 0}, {u"+", 1}, {u"-", 1}, {u"_neg", 0}, {u"!", 0}, {u"sin", 0}, {u"call3", 1}};
  onSmallStack([&] {
    for (auto const& [name, place] : cases) {
      SCOPED_TRACE(toUtf8(name));
      auto const op = allOperators().lookup(name);
      unsigned long const arity = op->getArity();
      auto const node = math::algexpr::makeFunction(name, {arity, math::algexpr::makeNamed(u"x")});
      ShapeT shape(makeText(u"x"), 0);
      Node4C const* row = nullptr;
      unsigned long moves = 0;
      ConversionStackT stack;
      for (int i = 0; i < 100000; ++i) {
        for (unsigned long k = 0; k < arity; ++k) stack.push(k == place ? shape : ShapeT(makeText(u"x"), 0));
        shape = op->fromAlgebraicNode(*node, stack);
        if (shape.first != row) ++moves;
        row = shape.first;
      }
      NodeT const owner(shape.first);
      EXPECT_LE(moves, 3u);
      EXPECT_GT(row->numChildren(), 100000u);
    }
  });
}

TEST(OperatorShapes, TakeNothingFromAnEmptyStack) {
  struct {
    wstring name;
    wstring node;
    std::string shape;
  } const cases[] = {
      {u"+", u"+(a,b)", R"(["", "+", ""] 40)"},
      {u"_neg", u"_neg(a)", R"(["−", ""] 20)"},
      {u"!", u"!(a)", R"(["", "!"] 5)"},
      {u"^", u"^(a,b)", R"(["", P[""]] 0)"},
      {u"/", u"/(a,b)", R"(/<[""] ; [""]> 0)"},
      {u"sin", u"sin(a)", R"(["sin", (, "", )] 0)"},
      {u"error", u"error(a)", R"(error<[""]> 0)"},
      {u"call0", u"call0(a)", R"(["f0", (, "", )] 0)"},
      {u"+", u"x", R"(["+", (, "", ",", "", )] 40)"},
  };
  for (auto const& one : cases) {
    ConversionStackT stack;
    auto const node = readNode(one.node);
    EXPECT_EQ(one.shape, describe(allOperators().lookup(one.name)->fromAlgebraicNode(*node, stack)));
  }
}

// A sign on a node that does not have its operands is written as a call.
TEST(OperatorShapes, SignsFallBackToCalls) {
  std::pair<wstring, wstring> const cases[] = {{u"+", u"f(a,b,c)"}, {u"_neg", u"f(a,b)"}, {u"not", u"x"}};
  for (auto const& [name, prefix] : cases) {
    auto const op = allOperators().lookup(name);
    auto const node = readNode(prefix);
    ConversionStackT stack;
    for (unsigned long i = 0; i < op->getArity(); ++i) stack.emplace(makeText({char16_t(u'a' + i)}), 0);
    std::string const arguments = op->getArity() == 2 ? R"("a", ",", "b")" : R"("a")";
    EXPECT_EQ(
        "[\"" + toUtf8(op->getText()) + "\", (, " + arguments + ", )] " + std::to_string(op->getPrecedence()),
        describe(op->fromAlgebraicNode(*node, stack)));
    EXPECT_TRUE(stack.empty());
  }
}

/// The leaf with this text.
Node4C const* findLeaf(Node4C const& node, wstring const& text) {
  if (node.getType() == NODE4_TEXT && node.crefText() == text) return &node;
  for (unsigned long i = 0; i < node.numChildren(); ++i) {
    if (Node4C const* leaf = findLeaf(*node.child(i), text)) return leaf;
  }
  return nullptr;
}

TEST(OperatorShapes, TellWhichArgumentsGetTheirOwnRow) {
  for (auto const& [name, op] : allOperators().crefByName()) {
    SCOPED_TRACE(toUtf8(name));
    unsigned long const arity = op->getArity() > 0 ? op->getArity() : 2;
    std::vector<PointerTC<NodeABC>> arguments;
    for (unsigned long i = 0; i < arity; ++i)
      arguments.push_back(math::algexpr::makeNamed(u"x" + wstring(1, char16_t(u'0' + i))));
    auto const node = math::algexpr::makeFunction(name, arguments);
    ASSERT_TRUE(node);
    NodeT const top(BuilderC().build(*node).first->inLine());
    for (unsigned long i = 0; i < arity; ++i) {
      Node4C const* const leaf = findLeaf(*top, arguments[i]->getName());
      ASSERT_NE(nullptr, leaf);
      EXPECT_EQ(op->hasOwnRow(i), leaf->getParent() != top.get()) << i;
    }
    EXPECT_EQ(op->isConstruct(), top->child(0)->getType() == NODE4_OPERATOR);
  }
}

TEST(OperatorShapes, ReadBackAsTheirExpression) {
  allOperators();
  for (char16_t const* prefix :
       {u"/(a,b)", u"sqrt(a)", u"nthroot(a,n)", u"abs(a)", u"floor(a)", u"ceil(a)", u"log(a,b)", u"diff(f,x)",
        u"integral(0,1,f,x)", u"sum(k,0,n,f)", u"where(f,x,1)", u"error(a,b)", u"_quietpos(a)", u"log10(a)",
        u"nthroot(log(a,diff(f,x)),/(integral(0,1,f,x),where(f,x,1)))"}) {
    auto const expression = AlgebraicExpressionC::fromPrefixString(prefix);
    NodeT const tree(Node4C::fromAlgebraicExpression(expression, 0, math::algexpr::NUMBER_FORMAT_AUTOMATIC));
    wstring text;
    ErrorSelectionS error;
    EXPECT_TRUE(tree->child(0)->getExpressionString(text, error)) << toUtf8(prefix);
    EXPECT_EQ(toUtf8(prefix), toUtf8(text));
  }
}

}  // namespace
}  // namespace zolt::tests
