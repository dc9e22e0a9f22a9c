#include <gtest/gtest.h>

#include <vector>

#include "tests/formula/formula_support.h"
#include "tests/support/allocations.h"
#include "tests/support/cases.h"
#include "tests/support/operators.h"
#include "tests/support/small_stack.h"
#include "zolt/algexpr/make_node.h"
#include "zolt/surfaces/recording/recording_graphics.h"
#include "zolt/ved/limits.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/tree/validate_tree.h"

namespace zolt::tests {

namespace {

using namespace math::ved;
using math::algexpr::AlgebraicExpressionC;
using surfaces::RecordingGraphicsC;

ExpressionT readNested(unsigned long count, wstring const& before, wstring const& inside,
                       wstring const& after) {
  wstring prefix;
  for (unsigned long i = 0; i < count; ++i) prefix += before;
  prefix += inside;
  for (unsigned long i = 0; i < count; ++i) prefix += after;
  return AlgebraicExpressionC::fromPrefixString(prefix);
}

/// f(a,…,a)
ExpressionT readWide(unsigned long count) {
  wstring prefix = u"f(a";
  for (unsigned long i = 1; i < count; ++i) prefix += u",a";
  return AlgebraicExpressionC::fromPrefixString(prefix + u")");
}

struct SizeS {
  unsigned long texts = 0;
  unsigned long constructs = 0;
  unsigned long rows = 0;  // the most that stand inside one another
};

SizeS measure(Node4C const& root) {
  SizeS size;
  unsigned long rows = 0;
  Node4C const* node = &root;
  while (node) {
    if (node->getType() == NODE4_TEXT) ++size.texts;
    if (node->getType() == NODE4_OPERATOR) ++size.constructs;
    if (node->getType() == NODE4_LINE) size.rows = std::max(size.rows, ++rows);
    if (node->numChildren() > 0) {
      node = node->child(0);
      continue;
    }
    Node4C const* next = nullptr;
    while (node && !(next = node->goRight())) {
      node = node->getParent();
      if (node && node->getType() == NODE4_LINE) --rows;
    }
    node = next;
  }
  return size;
}

/// Lays out and draws: every text is measured once, a construct its own signs.
void expectLinearRendering(Node4C& root) {
  SizeS const size = measure(root);
  RecordingGraphicsC graphics(RecordingGraphicsC::LOG_NOTHING);
  root.layout(graphics);
  EXPECT_GE(graphics.getMeasureCount(), size.texts);
  EXPECT_LE(graphics.getMeasureCount(), size.texts + 2 * size.constructs);
  EXPECT_GT(root.getWidth(), 0);
  EXPECT_GT(root.getHeight(), 0);
  graphics.resetCounts();
  root.display(graphics, 0, 0, nullptr);
  EXPECT_LE(graphics.getMeasureCount(), 4 * size.constructs);
}

class FormulaScale : public testing::Test {
 protected:
  FormulaScale() { standardOperators(); }
};

/// The memory asked for on the way to the tree and back grows with `count`, the parts of the row, and no
/// faster. What does not read back as it was (it has got brackets, or nests to the left now) does so from
/// then on.
void expectLinearConversion(ExpressionT const& expression, unsigned long count, bool isReadBack) {
  constexpr unsigned long most_bytes = 4000;
  ASSERT_TRUE(expression);
  AllocationsS::reset();
  TreeT const tree = showTree(expression);
  EXPECT_LT(AllocationsS::get().bytes, most_bytes * count);
  EXPECT_EQ(TREE_VALID, validateTree(*tree).invariant);
  expectLinearRendering(*tree);

  AllocationsS::reset();
  ExpressionT const once = tree->getAlgebraicExpression(nullptr);
  EXPECT_LT(AllocationsS::get().bytes, most_bytes * count);
  ASSERT_TRUE(once);
  EXPECT_EQ(isReadBack, once->equals(*expression));
  if (isReadBack) return;
  ExpressionT const twice = showTree(once)->getAlgebraicExpression(nullptr);
  EXPECT_TRUE(twice && twice->equals(*once));
}

TEST_F(FormulaScale, LongRows) {
  constexpr unsigned long terms = 100000;
  constexpr unsigned long chain = 20000;
  struct {
    unsigned long count;
    char16_t const* before;
    char16_t const* inside;
    char16_t const* after;
    bool isReadBack;
  } const shapes[] = {
      {terms, u"+(", u"a", u",b)", true},
      {terms, u"+(a,", u"b", u")", false},
      {terms, u"-(a,", u"b", u")", false},
      {terms, u"and(a,", u"b", u")", false},
      {chain, u"*(", u"a", u",/(b,c))", true},
      {chain, u"+(", u"a", u",^(x,2))", true},
      {chain, u"_neg(", u"a", u")", true},
      {chain, u"not(", u"a", u")", true},
      {chain, u"!(", u"a", u")", true},
      {chain, u"_quietpos(", u"a", u")", true},
      {chain, u"^(_quietpos(+(a,", u"b", u")),2)", true},
      {chain, u"_deg(_quietpos(", u"a", u"))", true},
      {chain, u"f(", u"a", u")", true},
      {chain, u"sin(+(a,", u"b", u"))", true},
      {chain, u"g(a,", u"b", u",c)", true},
  };
  onSmallStack([&] {
    for (auto const& shape : shapes) {
      SCOPED_TRACE(toUtf8(shape.before));
      expectLinearConversion(readNested(shape.count, shape.before, shape.inside, shape.after), shape.count,
                             shape.isReadBack);
    }
    expectLinearConversion(readWide(terms), terms, true);
  });
}

/// Each construct, and the power, around each of its arguments.
std::vector<std::pair<wstring, wstring>> everyNesting() {
  std::vector<std::pair<wstring, wstring>> nestings;
  for (auto const& [name, op] : standardOperators().crefByName()) {
    unsigned long const arity = op->getArity() > 0 ? op->getArity() : 2;
    for (unsigned long place = 0; place < arity; ++place) {
      if (!op->hasOwnRow(place)) continue;
      wstring before = name + u"(";
      wstring after = u")";
      for (unsigned long i = 0; i < place; ++i) before += u"a,";
      for (unsigned long i = place + 1; i < arity; ++i) after.insert(0, u",b");
      nestings.emplace_back(before, after);
    }
  }
  return nestings;
}

TEST_F(FormulaScale, AThousandNestedConstructs) {
  auto const nestings = everyNesting();
  EXPECT_GT(nestings.size(), 20u);
  onSmallStack([&] {
    constexpr unsigned long depth = 1000;
    for (auto const& [before, after] : nestings) {
      SCOPED_TRACE(toUtf8(before));
      ExpressionT const expression = readNested(depth, before, u"x", after);
      TreeT const tree = showTree(expression);
      EXPECT_EQ(TREE_VALID, validateTree(*tree).invariant);
      EXPECT_EQ(depth + 1, measure(*tree).rows);
      expectLinearRendering(*tree);
      ExpressionT const once = tree->getAlgebraicExpression(nullptr);
      EXPECT_TRUE(once && once->equals(*expression));
    }
  });
}

/// The one text that begins and ends with a grave accent; null when there is none, or more than one.
Node4C const* findPrefixText(Node4C const& root) {
  Node4C const* found = nullptr;
  Node4C const* leaf = &root;
  while (leaf->numChildren() > 0) leaf = leaf->child(0);
  for (; leaf; leaf = leaf->goRightLeaf()) {
    wstring const& text = leaf->crefText();
    if (leaf->getType() != NODE4_TEXT || text.size() < 2 || text.front() != u'`' || text.back() != u'`')
      continue;
    if (found) return nullptr;
    found = leaf;
  }
  return found;
}

TEST_F(FormulaScale, WhatNestsTooDeepIsShownAsPrefixText) {
  auto const expectShown = [](unsigned long depth, wstring const& before, wstring const& after) {
    SCOPED_TRACE(toUtf8(before) + " " + std::to_string(depth));
    ExpressionT const expression = readNested(depth, before, u"−2", after);
    TreeT const tree = showTree(expression);
    EXPECT_EQ(TREE_VALID, validateTree(*tree).invariant);
    EXPECT_GE(measure(*tree).rows, limits::max_nested_rows - 1);
    EXPECT_TRUE(findPrefixText(*tree));
    expectLinearRendering(*tree);
    ExpressionT const once = tree->getAlgebraicExpression(nullptr);
    EXPECT_TRUE(once && once->equals(*expression));
  };
  auto const nestings = everyNesting();
  onSmallStack([&] {
    for (auto const& [before, after] : nestings) expectShown(1300, before, after);
    expectShown(20000, u"sqrt(", u")");
    expectShown(20000, u"^(x,", u")");
  });
}

// At the very limit, with exponents that operators bring along and parts that stand elsewhere too.
TEST_F(FormulaScale, TheLimitHoldsForWhateverIsInside) {
  std::pair<char16_t const*, bool> const insides[] = {{u"x", true},
                                                      {u"_deg(x)", true},
                                                      {u"+(a,^(_deg(x),y))", false},
                                                      {u"/(a,_rad(f(sqrt(x))))", true},
                                                      {u"error(_deg(a),sqrt(_deg(b)))", true},
                                                      {u"log(^(x,_deg(y)),^(x,/(1,2)))", true}};
  onSmallStack([&] {
    for (unsigned long depth = limits::max_nested_rows - 6; depth < limits::max_nested_rows + 3; ++depth) {
      for (auto const& [inside, converts] : insides) {
        SCOPED_TRACE(std::to_string(depth) + " " + toUtf8(inside));
        ExpressionT const expression = readNested(depth, u"sqrt(", inside, u")");
        TreeT const tree = showTree(expression);
        EXPECT_EQ(TREE_VALID, validateTree(*tree).invariant);
        ExpressionT const once = tree->getAlgebraicExpression(nullptr);
        EXPECT_TRUE(!converts || (once && once->equals(*expression)));
      }
    }

    // One node, too deep in one place and not in the other.
    auto const shared = AlgebraicExpressionC::fromPrefixString(u"sqrt(/(a,b))")->getNode();
    auto deep = shared;
    for (unsigned long i = 0; i < limits::max_nested_rows - 2; ++i)
      deep = math::algexpr::makeFunction(u"abs", {deep});
    for (bool const deepFirst : {false, true}) {
      ExpressionT const expression(new AlgebraicExpressionC(
          math::algexpr::makeFunction(u"/", {deepFirst ? deep : shared, deepFirst ? shared : deep}),
          nullptr));
      TreeT const tree = showTree(expression);
      EXPECT_EQ(TREE_VALID, validateTree(*tree).invariant);
      ExpressionT const once = tree->getAlgebraicExpression(nullptr);
      EXPECT_TRUE(once && once->equals(*expression));
    }
  });
}

}  // namespace

}  // namespace zolt::tests
