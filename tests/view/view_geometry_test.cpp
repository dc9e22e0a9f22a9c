#include <gtest/gtest.h>

#include <tuple>

#include <cstdlib>

#include "tests/support/stage.h"

namespace zolt::tests {
namespace {

using namespace math::ved;

/// The nearest text and boundary, found by an exhaustive search.
class NearestPlaceC {
 public:
  NearestPlaceC(StageC& stage, long x, long y) : x_(x), y_(y) {
    node_ = stage.refView().getCaretNode();
    left_ = node_->getAbsolutePosition().x;
    visit(*stage.crefRoot().child(0), 0, 0);
    findBoundary(stage);
  }

  Node4C const* node() const { return node_; }
  unsigned int pos() const { return pos_; }

 private:
  bool visit(Node4C const& node, long px, long py) {
    long const ax = px + node.getDX();
    long const ay = py + node.getDY();
    for (unsigned long i = 0; i < node.numChildren(); ++i) {
      if (visit(*node.child(i), ax, ay)) return true;
    }
    if (node.numChildren() > 0 || node.getType() != NODE4_TEXT) return false;
    auto const distance = [](long at, long start, long size) {
      return at < start ? start - at : std::max(at - size - start, 0L);
    };
    long const dx = distance(x_, ax, node.getWidth());
    long const dy = distance(y_, ay, node.getHeight());
    bool const inside = ax <= x_ && x_ < ax + node.getWidth() && ay <= y_ && y_ < ay + node.getHeight();
    if (!inside && dx * dx + dy * dy >= best_) return false;
    best_ = dx * dx + dy * dy;
    node_ = &node;
    left_ = ax;
    return inside;
  }

  void findBoundary(StageC& stage) {
    if (x_ < left_) return;
    auto const size = static_cast<unsigned int>(node_->sizeText());
    if (x_ >= left_ + node_->getWidth()) {
      pos_ = size;
      return;
    }
    node_->selectFont(stage.refGraphics());
    long best = stage.crefRoot().getWidth();
    for (unsigned int i = 0; i <= size; ++i) {
      long const d = std::labs(stage.refGraphics().getTextWidth(node_->crefText().substr(0, i)) + left_ - x_);
      if (d > best) break;
      pos_ = i;
      best = d;
    }
  }

  long x_;
  long y_;
  long best_ = 160000;
  Node4C const* node_ = nullptr;
  long left_ = 0;
  unsigned int pos_ = 0;
};

TEST(Pointer, FindsTheNearestText) {
  std::string fractions = "[\"a‸\"";
  for (int i = 0; i < 40; ++i) fractions += ", /<[\"b\"] ; [\"cd\"]>, \"+\"";
  std::string const formulas[] = {
      "[\"abc‸def\"]",
      "[\"\", AO, \"a\", ), \"‸\"]",
      "[\"x\", P[\"2\"], \"\", P[\"ab\"], \"y‸\"]",
      "[\"a‸\", /<[\"b\", sqrt<[\"c\"]>, \"\"] ; [\"\", nthroot<[\"3\"] ; [\"\"]>, \"d\"]>, \"\"]",
      "[\"‸\", integral<[\"a\"] ; [\"b\"] ; [\"f\", P[\"2\"], \"\"] ; [\"x\"]>, \"+\", "
      "sum<[\"k\"] ; [\"1\"] ; [\"n\"] ; [\"\", log<[\"2\"] ; [\"k\"]>, \"\"]>, \"\"]",
      fractions + "]",
  };
  for (std::string const& formula : formulas) {
    SCOPED_TRACE(formula);
    StageC stage(formula);
    auto& view = stage.refView();
    PointS const size = view.getExpressionSize();
    for (long y = -25; y <= size.y + 25; y += 3) {
      for (long x = -25; x <= size.x + 25; ++x) {
        NearestPlaceC const expected(stage, x, y);
        view.addEvent(EVENT_PEN_DOWN, 0, false, false, false, x, y);
        ASSERT_TRUE(view.getCaretNode() == expected.node() && view.getCaretPos() == expected.pos())
            << x << "," << y << ": " << stage.notation();
      }
    }
  }
}

TEST(Pointer, MeasuresLittleInALongText) {
  StageC stage;
  stage.refView().insertText(wstring(20000, u'x'));
  stage.refView().display(0, 0);
  stage.refGraphics().resetCounts();
  stage.play("pen down 60003 5");
  EXPECT_EQ(stage.refView().getCaretPos(), 10001u);
  EXPECT_LT(stage.refGraphics().getMeasureCount(), 100u);
  for (long far : {2147483647L, -2147483647L}) {
    stage.refView().addEvent(EVENT_PEN_DOWN, 0, false, false, false, 0, far);
    EXPECT_EQ(stage.refView().getCaretPos(), 0u);
  }
}

std::string toText(RectangleS const& box) {
  return std::to_string(box.left) + " " + std::to_string(box.top) + " " + std::to_string(box.right) + " " +
         std::to_string(box.bottom);
}

TEST(Rectangles, BoundTheCaretAndTheSelection) {
  struct {
    char const* formula;
    char const* caret;
    char const* selection;
  } const cases[] = {
      {"[\"‸abc\"]", "-1 0 0 10", "0 0 0 0"},
      {"[\"a⚑b‸c\"]", "11 0 12 10", "6 0 13 10"},
      {"[\"a‸b⚑c\"]", "5 0 6 10", "6 0 13 10"},
      {"[\"x\", P[\"‸2\"], \"\"]", "7 0 8 8", "0 0 0 0"},
      {"[\"x⚑\", P[\"2\"], \"‸\"]", "13 3 14 13", "6 0 15 13"},
      {"[\"⚑a‸\", /<[\"b\"] ; [\"c\"]>, \"\"]", "5 7 6 17", "0 7 7 17"},
      {"[\"a\", sqrt<[\"⚑b\"]>, \"‸\"]", "21 5 22 15", "7 0 23 17"},
  };
  for (auto const& one : cases) {
    SCOPED_TRACE(one.formula);
    StageC stage(one.formula);
    EXPECT_EQ(toText(stage.refView().getCaretRectangle()), one.caret);
    EXPECT_EQ(toText(stage.refView().getCurrentNodeRectangle()), one.selection);
    EXPECT_EQ(stage.refView().getCurrentNodeRectangle().isNull(), std::string(one.selection) == "0 0 0 0");
  }
}

TEST(Selection, IsGivenAsPlacesOfARow) {
  StageC stage("[\"\", sqrt<[\"a⚑b\", /<[\"c\"] ; [\"d\"]>, \"e‸f\"]>, \"\"]");
  Node4C* row = nullptr;
  unsigned long first = 0, last = 0;
  unsigned firstPos = 0, lastPos = 0;
  EXPECT_TRUE(stage.refView().getSelectionBounds(row, first, firstPos, last, lastPos));
  EXPECT_EQ(row, stage.crefRoot().child(0)->child(1)->child(0));
  EXPECT_EQ(std::make_tuple(first, firstPos, last, lastPos), std::make_tuple(0UL, 1U, 2UL, 1U));
}

TEST(Rectangles, AreLaidOutFirst) {
  StageC stage("[\"a⚑b‸c\"]");
  stage.refField().insertOperator(u"sqrt");
  stage.refField().pressKey(KEY_LEFT, true);
  RectangleS const fresh = stage.refView().getCurrentNodeRectangle();
  stage.refView().display(0, 0);
  EXPECT_EQ(toText(stage.refView().getCurrentNodeRectangle()), toText(fresh));
  EXPECT_FALSE(fresh.isNull());
}

}  // namespace
}  // namespace zolt::tests
