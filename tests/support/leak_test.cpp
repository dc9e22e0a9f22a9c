// These tests all have to fail, or make the program fail, because of the objects that they leave.

#include <gtest/gtest.h>

#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/surfaces/recording/recording_graphics.h"
#include "zolt/ved/view/view.h"

namespace zolt::tests {

using namespace math::ved;

TEST(Leak, Node) { new Node4C; }
TEST(Leak, View) { new ViewZNT4C(new surfaces::RecordingGraphicsC); }
TEST(Leak, Expression) { math::algexpr::AlgebraicExpressionC::fromPrefixString(u"x")->reference(); }
TEST(Leak, Operator) { (new OperatorBC(u"f", u"f", 1, 0, false, true, 0))->reference(); }

}  // namespace zolt::tests
