#include <gtest/gtest.h>

#include <cstdio>
#include <memory>
#include <sstream>

#include "tests/support/cases.h"
#include "tests/support/operators.h"
#include "zolt/surfaces/recording/recording_graphics.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::tests {
namespace {

using namespace math::ved;
using surfaces::RecordingGraphicsC;

struct LayoutCaseS {
  std::unique_ptr<Node4C> node;
  PointerTC<OperatorBC> op;
};

Node4C* makeRow(std::string const& size) {
  long width = 0;
  long height = 0;
  long axis = 0;
  EXPECT_EQ(3, std::sscanf(size.c_str(), "%ldx%ld/%ld", &width, &height, &axis)) << size;
  auto* row = new Node4C(NODE4_LINE, nullptr, wstring(), 0);
  row->setWidth(width);
  row->setHeight(height);
  row->setMidHeight(axis);
  return row;
}

LayoutCaseS makeConstruct(std::string const& text) {
  std::istringstream words(text);
  std::string word;
  words >> word;
  LayoutCaseS result;
  result.op = standardOperators().lookup(toText(word));
  result.node = std::make_unique<Node4C>(NODE4_OPERATOR, result.op, wstring(), 0);
  while (words >> word) result.node->insertChild(result.node->numChildren(), makeRow(word));
  return result;
}

std::string describeLayout(Node4C const& node) {
  std::ostringstream text;
  text << node.getWidth() << 'x' << node.getHeight() << '/' << node.getMidHeight();
  for (unsigned long i = 0; i < node.numChildren(); ++i) {
    Node4C const& row = *node.child(i);
    text << ' ' << row.getDX() << ',' << row.getDY() << (row.getFontDepth() > 0 ? "^" : "");
  }
  return text.str();
}

std::string describeDrawing(RecordingGraphicsC const& graphics) {
  std::string text;
  for (std::string const& line : graphics.getLines()) text += (text.empty() ? " " : "; ") + line;
  return text;
}

// Twice: nothing of the first layout may be left in the second.
TEST(OperatorLayout, PlacesRowsAndDrawsItsOwnInk) {
  for (CaseS const& line : readCases(ZOLT_TEST_DATA "/layout.cases")) {
    SCOPED_TRACE(line.where);
    auto const [node, op] = makeConstruct(line.input);
    ASSERT_TRUE(op);
    op->beforeChildrenLayout(node.get(), RecordingGraphicsC());
    for (int pass = 0; pass < 2; ++pass) {
      RecordingGraphicsC graphics;
      node->selectFont(graphics);
      op->layoutNode4(node.get(), graphics);
      EXPECT_TRUE(graphics.getLines().empty());
      node->selectFont(graphics);
      op->displayNode4(node.get(), graphics, 100, 200, node->getWidth(), node->getHeight(),
                       node->getMidHeight());
      EXPECT_EQ(line.expected, describeLayout(*node) + " |" + describeDrawing(graphics));
    }
  }
}

}  // namespace
}  // namespace zolt::tests
