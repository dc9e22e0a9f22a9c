#include <gtest/gtest.h>

#include <algorithm>
#include <cstdio>
#include <set>
#include <vector>

#include "tests/formula/formula_support.h"
#include "tests/support/cases.h"
#include "tests/support/operators.h"
#include "tests/support/uneven_graphics.h"
#include "zolt/algexpr/number_display_format.h"
#include "zolt/algexpr/parent_node.h"
#include "zolt/surfaces/recording/recording_graphics.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/operators/operator_list.h"
#include "zolt/ved/tree/validate_tree.h"

namespace zolt::tests {

namespace {

using namespace math::ved;
using math::algexpr::AlgebraicExpressionC;
using math::algexpr::NodeABC;
using surfaces::RecordingGraphicsC;
using NamesT = std::set<wstring>;

class FormulaCases : public testing::Test {
 protected:
  FormulaCases() { standardOperators(); }
};

void collectNames(NodeABC const& node, NamesT& names) {
  names.insert(node.getName());
  if (auto const* parent = node.asParent()) {
    for (unsigned long i = 0; i < parent->numChildren(); ++i) collectNames(parent->child(i), names);
  }
}

void collectNames(Node4C const& node, NamesT& names) {
  if (auto const* op = node.crefOperator()) names.insert(op->getName());
  for (unsigned long i = 0; i < node.numChildren(); ++i) collectNames(*node.child(i), names);
}

void expectOperators(NamesT const& names, bool constructsOnly) {
  for (auto const& [name, op] : standardOperators().crefByName()) {
    EXPECT_TRUE((constructsOnly && !op->isConstruct()) || names.count(name) > 0)
        << "no case for " << toUtf8(name);
  }
}

TEST_F(FormulaCases, ToTree) {
  NamesT names;
  for (CaseS const& one : readCases(ZOLT_TEST_DATA "/to_tree.cases")) {
    SCOPED_TRACE(one.where);
    std::string prefix = one.input;
    unsigned precision = 0;
    int format = math::algexpr::NUMBER_FORMAT_AUTOMATIC;
    int behind = 0;
    if (std::sscanf(prefix.c_str(), "{%u %d} %n", &precision, &format, &behind) == 2)
      prefix.erase(0, static_cast<std::size_t>(behind));
    auto const expression = AlgebraicExpressionC::fromPrefixString(tests::fromUtf8(prefix));
    ASSERT_TRUE(expression);
    collectNames(*expression->getNode(), names);
    TreeT const tree(Node4C::fromAlgebraicExpression(
        expression, precision, static_cast<math::algexpr::NumberDisplayFormatE>(format)));
    EXPECT_EQ(one.expected, describe(*tree));
    EXPECT_EQ(TREE_VALID, validateTree(*tree).invariant);
  }
  expectOperators(names, false);
}

TEST_F(FormulaCases, EmptyExpressionsAreASlot) {
  EXPECT_EQ("[\"\"]", describe(*showTree(nullptr)));
  EXPECT_EQ("[\"\"]", describe(*showTree(new AlgebraicExpressionC(nullptr, nullptr))));
}

std::string toPrefix(Node4C& root) {
  Node4C& row = *root.child(0);
  ErrorSelectionS error;
  auto const expression = root.getAlgebraicExpression(&error);
  std::string const result = expression ? describe(expression) : describe(error, row);

  // The same from the row, with and without the record; and its prefix text without the library.
  ErrorSelectionS rowError;
  EXPECT_EQ(result, row.getAlgebraicExpression(&rowError) ? result : describe(rowError, row));
  EXPECT_EQ(bool(expression), bool(row.getAlgebraicExpression(nullptr)));
  wstring prefix = u"untouched";
  ErrorSelectionS textError;
  if (row.getExpressionString(prefix, textError)) {
    EXPECT_TRUE(!expression || result == toUtf8(prefix)) << toUtf8(prefix);
  } else {
    EXPECT_EQ(result, describe(textError, row));
    EXPECT_EQ(u"untouched", prefix);
  }
  return result;
}

TEST_F(FormulaCases, ToPrefix) {
  NamesT names;
  for (CaseS const& one : readCases(ZOLT_TEST_DATA "/to_prefix.cases")) {
    SCOPED_TRACE(one.where);
    TreeNotationS const tree = readTree(one.input);
    EXPECT_EQ(one.expected, toPrefix(*tree.root));
    EXPECT_EQ(one.input, describe(*tree.root));
    if (auto const expression = tree.root->getAlgebraicExpression(nullptr))
      collectNames(*expression->getNode(), names);
  }
  expectOperators(names, false);
}

std::string describeBox(Node4C const& node) {
  std::string text;
  for (long value : {node.getDX(), node.getDY(), node.getWidth(), node.getHeight(), node.getMidHeight()})
    text += " " + std::to_string(value);
  if (node.getFontDepth() > 0) text += " @" + std::to_string(node.getFontDepth());
  return text;
}

/// The layout in the words of a case, for the nodes that it names, and those of its drawing calls that are in
/// `lines`.
std::string describeLayout(Node4C const& root, std::string const& expected,
                           std::vector<std::string> const& lines) {
  Node4C const& row = *root.child(0);
  EXPECT_EQ(describeBox(row), describeBox(root));
  std::string text;
  for (std::string const& part : split(expected, " ; ")) {
    std::string const name = part.substr(0, part.find(' '));
    if (name[0] == '/') {
      Node4C const* const node = findNode(row, name);
      text += " ; " + name + (node ? describeBox(*node) : " is no node");
    } else if (name.compare(0, 4, "draw") == 0) {
      text += (std::count(lines.begin(), lines.end(), part) > 0 ? " ; " : " ; no ") + part;
    } else {
      text += describeBox(row).substr(5);
    }
  }
  return text;
}

TEST_F(FormulaCases, Layout) {
  for (CaseS const& one : readCases(ZOLT_TEST_DATA "/layout.cases")) {
    SCOPED_TRACE(one.where);
    TreeNotationS const tree = readTree(one.input);
    RecordingGraphicsC const graphics;
    // The second layout keeps nothing of the first one, in particular no font depths.
    for (int i = 0; i < 2; ++i) {
      EXPECT_TRUE(tree.root->layout(graphics));
      EXPECT_EQ(one.expected, describeLayout(*tree.root, one.expected, graphics.getLines()));
    }
    EXPECT_TRUE(graphics.getLines().empty());
  }
}

TEST_F(FormulaCases, RenderingOnASurfaceOfOddSizes) {
  for (CaseS const& one : readCases(ZOLT_TEST_DATA "/uneven.cases")) {
    SCOPED_TRACE(one.where);
    TreeNotationS const tree = readTree(one.input);
    UnevenGraphicsC const graphics;
    tree.root->layout(graphics);
    tree.root->display(graphics, 0, 0, nullptr);
    EXPECT_EQ(one.expected, describeLayout(*tree.root, one.expected, graphics.getLines()));
  }
}

// A node that is laid out by itself is at depth 0; one that is laid out in its place keeps its depth.
TEST_F(FormulaCases, FontDepthsCountFromTheTopOfWhatIsLaidOut) {
  TreeNotationS const tree = readTree(R"(["x", P["y", P["z"], ""], ""])");
  RecordingGraphicsC const graphics;
  tree.root->layout(graphics);
  Node4C& power = *tree.root->child(0)->child(1);
  Node4C& row = *power.child(0);
  std::string const inPlace = describeBox(row);
  row.layout(graphics);
  EXPECT_EQ(inPlace, describeBox(row));
  power.removeChild(0);
  TreeT const alone(&row);
  row.layout(graphics);
  EXPECT_EQ(0u, row.getFontDepth());
  EXPECT_EQ(1u, row.child(1)->child(0)->getFontDepth());
  EXPECT_EQ(12, row.getWidth());
  power.insertChild(0, showTree(nullptr)->child(0)->clone());
}

TEST_F(FormulaCases, Drawing) {
  NamesT names;
  for (CaseS const& one : readCases(ZOLT_TEST_DATA "/drawing.cases")) {
    SCOPED_TRACE(one.where);
    long x = 0;
    long y = 0;
    int behind = 0;
    std::sscanf(one.input.c_str(), "%ld %ld: %n", &x, &y, &behind);
    TreeNotationS const tree = readTree(one.input.substr(static_cast<std::size_t>(behind)));
    collectNames(*tree.root, names);
    RecordingGraphicsC graphics;
    tree.root->layout(graphics);
    EXPECT_TRUE(tree.root->display(graphics, x, y, tree.selection.caret.node));
    std::string drawn = graphics.getText();
    for (std::size_t at; (at = drawn.find('\n')) + 1 < drawn.size();) drawn.replace(at, 1, " ; ");
    EXPECT_EQ(one.expected + "\n", drawn);
    EXPECT_EQ(0u, graphics.getInvalidateCount());
    expectClippedDrawings(*tree.root);
  }
  expectOperators(names, true);
}

TEST_F(FormulaCases, WhatIsHigherThanItsConstructIsSeen) {
  std::string tower = "[\"a\"]";
  for (int i = 0; i < 7; ++i) tower = "[\"\", /<" + tower + " ; [\"b\"]>, \"\"]";
  std::string const integral = "integral<[\"0\"] ; [\"1\"] ; [\"x\"] ; " + tower + ">";
  expectClippedDrawings(*readTree("[\"\", " + integral + ", \"\", /<" + tower + " ; [\"c\"]>, \"\"]").root);
}

TEST_F(FormulaCases, DrawingCostsWhatIsSeen) {
  UnevenGraphicsC const graphics;
  auto const countCalls = [&](int terms) {
    std::string row = "[";
    for (int i = 0; i < terms; ++i) row += "\"+\", /<[\"a\", P[\"2\"], \"\"] ; [\"b\"]>, ";
    TreeNotationS const tree = readTree(row + "\"\"]");
    tree.root->layout(graphics);
    long const middle = tree.root->getWidth() / 2;
    return countDrawingCalls(*tree.root, RectangleS(middle, 0, middle + 200, 40));
  };
  EXPECT_GT(countCalls(100), 20u);
  EXPECT_LE(countCalls(10000), countCalls(100) + 10);
}

}  // namespace

}  // namespace zolt::tests
