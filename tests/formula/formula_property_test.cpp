#include <gtest/gtest.h>

#include <map>
#include <random>

#include "tests/formula/formula_support.h"
#include "tests/formula/random_formula.h"
#include "tests/support/cases.h"
#include "tests/support/operators.h"
#include "tests/support/uneven_graphics.h"
#include "zolt/algexpr/parent_node.h"
#include "zolt/exchange/latex.h"
#include "zolt/exchange/plain_text.h"
#include "zolt/ved/tree/tree_walk.h"
#include "zolt/ved/tree/validate_tree.h"

namespace zolt::tests {

namespace {

using namespace math::ved;
using math::algexpr::AlgebraicExpressionC;
using math::algexpr::NodeABC;

class FormulaProperty : public testing::Test {
 protected:
  FormulaProperty() { standardOperators(); }
};

/// Everything that holds for any normalised tree, whether it is an expression or not.
void expectSoundTree(Node4C& root) {
  ASSERT_EQ(TREE_VALID, validateTree(root).invariant);

  std::string const notation = describe(root);
  ASSERT_EQ(notation, describe(*readTree(notation).root));
  ASSERT_EQ(notation, describe(*TreeT(root.clone())));
  Node4C copy;
  ASSERT_TRUE(readBytes(writeBytes(root), copy));
  ASSERT_EQ(notation, describe(copy));

  UnevenGraphicsC const graphics;
  ASSERT_TRUE(root.layout(graphics));
  std::string const boxes = describeBoxes(root);
  root.layout(graphics);
  ASSERT_EQ(boxes, describeBoxes(root));
  ASSERT_TRUE(root.display(graphics, 0, 0, nullptr));
  ASSERT_EQ(boxes, describeBoxes(root));
  ASSERT_NO_FATAL_FAILURE(expectClippedDrawings(root));
}

/// The expression of the tree that shows `expression`; null when that tree does not convert.
ExpressionT readBack(ExpressionT const& expression) {
  return showTree(expression)->getAlgebraicExpression(nullptr);
}

/// A second time of showing and reading changes nothing.
void expectFixpoint(ExpressionT const& once) {
  ExpressionT const twice = readBack(once);
  ASSERT_TRUE(twice) << describe(once);
  ASSERT_EQ(describe(once), describe(twice));
}

/// A number for what an expression means: sums, signs and brackets are what they are, "and" and "or" do not
/// depend on their bracketing, everything else depends on its name and on all its operands in their order.
class MeaningC {
 public:
  static std::uint64_t of(NodeABC const& node) {
    wstring const name = node.getName();
    std::vector<std::uint64_t> operands;
    if (auto const* parent = node.asParent()) {
      for (unsigned long i = 0; i < parent->numChildren(); ++i) operands.push_back(of(parent->child(i)));
    }
    if (operands.empty() && name[0] == u'\u2212') return 0 - hash(name.substr(1));
    if (operands.size() == 1 && name == u"_neg") return 0 - operands[0];
    if (operands.size() == 1 && (name == u"_pos" || name == u"_quietpos")) return operands[0];
    if (operands.size() == 2 && name == u"+") return operands[0] + operands[1];
    if (operands.size() == 2 && name == u"-") return operands[0] - operands[1];
    if (operands.size() == 2 && (name == u"+-" || name == u"-+"))
      return operands[0] + mix(hash(name), operands[1]);
    if (operands.size() == 2 && name == u"and") return (operands[0] | 1) * (operands[1] | 1);
    if (operands.size() == 2 && name == u"or") return operands[0] ^ operands[1];
    std::uint64_t result = hash(name);
    for (std::uint64_t operand : operands) result = mix(result, operand);
    return result;
  }

 private:
  static std::uint64_t mix(std::uint64_t a, std::uint64_t b) {
    std::uint64_t mixed = (a ^ (b + 0x9E3779B97F4A7C15)) * 0xBF58476D1CE4E5B9;
    return mixed ^ (mixed >> 29);
  }
  static std::uint64_t hash(wstring const& text) {
    std::uint64_t result = text.size();
    for (char16_t c : text) result = mix(result, c);
    return result;
  }
};

TEST_F(FormulaProperty, AnyExpressionIsShown) {
  for (unsigned seed = 0; seed < 1500; ++seed) {
    ExpressionT const expression = RandomExpressionC(seed, RandomExpressionC::ANYTHING).make(1 + seed % 30);
    SCOPED_TRACE("seed " + std::to_string(seed) + ": " + describe(expression));
    TreeT const tree = showTree(expression);
    ExpressionT const read = exchange::fromPlainText(exchange::toPlainText(*expression), nullptr);
    ASSERT_EQ(describe(expression), describe(read));
    wstring const latex = exchange::toLatex(*expression);
    ExpressionT const again = exchange::fromLatex(latex, nullptr);
    ASSERT_EQ(describe(expression), again ? describe(again) : toUtf8(latex));
    ASSERT_NO_FATAL_FAILURE(expectSoundTree(*tree));
  }
}

TEST_F(FormulaProperty, WellMadeExpressionsKeepTheirMeaning) {
  for (unsigned seed = 0; seed < 1500; ++seed) {
    ExpressionT const expression = RandomExpressionC(seed, RandomExpressionC::WELL_MADE).make(1 + seed % 40);
    SCOPED_TRACE("seed " + std::to_string(seed) + ": " + describe(expression));
    ExpressionT const once = readBack(expression);
    ASSERT_TRUE(once) << describe(*showTree(expression));
    ASSERT_EQ(MeaningC::of(*expression->getNode()), MeaningC::of(*once->getNode())) << describe(once);
    ASSERT_NO_FATAL_FAILURE(expectFixpoint(once));

    // What the formula says is also what its plain text says, in either style.
    for (auto const style : {exchange::PLAIN_TEXT_EXACT, exchange::PLAIN_TEXT_READABLE}) {
      wstring const plain = exchange::toPlainText(*once, style);
      ExpressionT const read = exchange::fromPlainText(plain, nullptr);
      ASSERT_TRUE(read) << toUtf8(plain);
      ASSERT_EQ(MeaningC::of(*once->getNode()), MeaningC::of(*read->getNode())) << toUtf8(plain);
    }
  }
}

TEST_F(FormulaProperty, AnyTreeIsLaidOutDrawnAndReadOrRefused) {
  std::map<int, unsigned> causes;
  for (unsigned seed = 0; seed < 1500; ++seed) {
    TreeT const tree = RandomTreeC(seed).make();
    SCOPED_TRACE("seed " + std::to_string(seed) + ": " + describe(*tree));
    ASSERT_NO_FATAL_FAILURE(expectSoundTree(*tree));
    ErrorSelectionS error;
    if (ExpressionT const expression = tree->getAlgebraicExpression(&error)) {
      ++causes[-1];
      ExpressionT const once = readBack(expression);
      EXPECT_TRUE(once) << describe(expression);
      if (once) expectFixpoint(once);
    } else {
      ++causes[error.cause];
      ASSERT_TRUE(error.firstNode && error.secondNode);
    }
  }
  for (int cause : {-1, static_cast<int>(ERROR_CAUSE_SYNTAX), static_cast<int>(ERROR_CAUSE_PLACEHOLDER),
                    static_cast<int>(ERROR_CAUSE_UNEXPECTED_END), static_cast<int>(ERROR_CAUSE_BAD_NUMBER),
                    static_cast<int>(ERROR_CAUSE_MISSING_OPEN)})
    EXPECT_GT(causes[cause], 10u) << cause;
}

/// Changes a tree in one place as editing commands do.
class RandomEditC {
 public:
  explicit RandomEditC(unsigned seed) : random_(seed), items_(seed) {}

  void edit(Node4C& root) {
    Node4C& row = pickRow(root);
    bool const isEmpty = row.numChildren() == 0;
    unsigned long const i = isEmpty ? 0 : below(row.numChildren());
    switch (isEmpty ? 0 : below(5)) {
      case 0:
        row.insertChild(below(row.numChildren() + 1), items_.makeItem(3).release());
        break;
      case 1:
        row.deleteChild(i);
        break;
      case 2: {  // to another row, unless that row is inside the item
        Node4C* const item = row.child(i);
        row.removeChild(i);
        Node4C& target = pickRow(root);
        target.insertChild(below(target.numChildren() + 1), item);
        break;
      }
      case 3:
        if (row.child(i)->getType() == NODE4_TEXT) row.child(i)->refText().assign(below(3), u'a');
        break;
      default:
        if (isOpeningBracket(row.child(i)->getType())) {
          row.child(i)->setType(NODE4_CLOSE);
        } else if (isClosingBracket(row.child(i)->getType())) {
          row.child(i)->setType(NODE4_OPEN);
        }
    }
  }

 private:
  unsigned long below(unsigned long bound) { return random_() % bound; }

  /// A row that is not empty; the root's own when it is the only one.
  Node4C& pickRow(Node4C const& root) {
    std::vector<Node4C*> rows;
    walkTree(*root.child(0), [&](Node4C& node) {
      if (node.getType() == NODE4_LINE && (rows.empty() || node.numChildren() > 0)) rows.push_back(&node);
    });
    return *rows[below(rows.size())];
  }

  std::mt19937 random_;
  RandomTreeC items_;
};

/// Brings a tree in order with caret and anchor somewhere; the same places for the same tree and number.
wstring normalise(Node4C& root, unsigned number) {
  std::vector<Node4C*> texts;
  walkTree(root, [&](Node4C& node) {
    if (node.getType() == NODE4_TEXT) texts.push_back(&node);
  });
  std::mt19937 random(number);
  SelectionS places;
  for (PlaceS* place : {&places.caret, &places.anchor}) {
    if (texts.empty()) break;
    place->node = texts[random() % texts.size()];
    place->pos = static_cast<unsigned>(random() % (place->node->sizeText() + 1));
  }
  root.checkTree(places);
  return writeTreeNotation(root, places);
}

TEST_F(FormulaProperty, EditedTreesAreNormalisedAndLaidOutAsIfNew) {
  UnevenGraphicsC const graphics;
  for (unsigned seed = 0; seed < 300; ++seed) {
    // Every other tree has the stretches of long rows in its short ones.
    [[maybe_unused]] bool const isShort = RowIndexC::setLeastLength(seed % 2 * 4);
    TreeT const tree = RandomTreeC(seed).make();
    RandomEditC edits(seed);
    for (int step = 0; step < 30; ++step) {
      SCOPED_TRACE("seed " + std::to_string(seed) + ", step " + std::to_string(step));
      for (int i = 0; i <= step % 3; ++i) edits.edit(*tree);
      TreeT const fresh(tree->clone());
      unsigned const number = 30 * seed + static_cast<unsigned>(step);
      ASSERT_EQ(toUtf8(normalise(*fresh, number)), toUtf8(normalise(*tree, number)));
      ASSERT_EQ(TREE_VALID, validateTree(*tree).invariant);
      ASSERT_TRUE(tree->layoutChanged(graphics));
      ASSERT_TRUE(fresh->layout(graphics));
      ASSERT_EQ(describeBoxes(*fresh), describeBoxes(*tree)) << describe(*tree);
      ASSERT_EQ(fresh->measureReach(), tree->measureReach()) << describe(*tree);
    }
  }
  [[maybe_unused]] bool const isUsual = RowIndexC::setLeastLength(0);
}

}  // namespace

}  // namespace zolt::tests
