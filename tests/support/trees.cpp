#include "tests/support/trees.h"

#include <gtest/gtest.h>

#include "tests/support/cases.h"
#include "tests/support/operators.h"
#include "zolt/algexpr/number_display_format.h"
#include "zolt/oss/binary_stream.h"
#include "zolt/oss/binary_string_stream.h"

namespace zolt::tests {

using namespace math::ved;

TreeNotationS readTree(std::string const& notation) {
  TreeNotationS tree;
  unsigned long position = 0;
  if (!readTreeNotation(fromUtf8(notation), standardOperators(), tree, position)) {
    ADD_FAILURE() << notation << " does not read at " << position;
    tree.root = showTree(nullptr);
  }
  return tree;
}

TreeT showTree(ExpressionT const& expression) {
  return TreeT(Node4C::fromAlgebraicExpression(expression, 0, math::algexpr::NUMBER_FORMAT_AUTOMATIC));
}

std::string describe(Node4C const& tree) { return toUtf8(writeTreeNotation(tree)); }

std::string describe(ExpressionT const& expression) {
  return expression ? toUtf8(expression->toPrefixString()) : "no expression";
}

std::string describeBoxes(Node4C const& node) {
  std::string text;
  for (long value : {node.getDX(), node.getDY(), node.getWidth(), node.getHeight(), node.getMidHeight(),
                     static_cast<long>(node.getFontDepth())}) {
    text += std::to_string(value) + " ";
  }
  for (unsigned long i = 0; i < node.numChildren(); ++i) text += describeBoxes(*node.child(i));
  return text;
}

bool readBytes(oss::bytestring const& bytes, Node4C& node) {
  oss::PointerTC<oss::ObjectInputStreamABC> in(
      new oss::BinaryInputStreamC(new oss::BinaryStringInputStreamC(bytes)));
  return node.readObject(in);
}

}  // namespace zolt::tests
