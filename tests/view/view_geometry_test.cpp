#include <gtest/gtest.h>

#include <cstdlib>

#include "tests/support/cases.h"
#include "tests/support/view_stage.h"

namespace zolt::tests {
namespace {

using namespace math::ved;

EventScriptT toScript(wstring const& text) {
  EventScriptT script;
  unsigned long position = 0;
  EXPECT_TRUE(readEventScript(text, script, position)) << toUtf8(text.substr(position));
  return script;
}

bool play(ViewStageC& stage, wstring const& script) { return stage.play(toScript(script)); }

// ---- Pointer --------------------------------------------------------------------------------------------

/// The nearest text and boundary, found by looking at everything.
class NearestPlaceC {
 public:
  NearestPlaceC(ViewStageC& stage, long x, long y) : stage_(stage), x_(x), y_(y) {
    auto& view = stage.refView();
    node_ = view.getCaretNode();
    left_ = node_->getAbsolutePosition().x;
    width_ = node_->getWidth();
    visit(*view.crefRoot().child(0), 0, 0);
    pos_ = findBoundary();
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
    long const w = node.getWidth();
    long const h = node.getHeight();
    bool const inside = ax <= x_ && x_ < ax + w && ay <= y_ && y_ < ay + h;
    long dx = 0;
    if (x_ < ax) dx = ax - x_;
    if (x_ >= ax + w) dx = x_ - w - ax;
    long dy = 0;
    if (y_ < ay) dy = ay - y_;
    if (y_ >= ay + h) dy = y_ - h - ay;
    if (!inside && dx * dx + dy * dy >= best_) return false;
    best_ = dx * dx + dy * dy;
    node_ = &node;
    left_ = ax;
    width_ = w;
    return inside;
  }

  unsigned int findBoundary() const {
    auto const size = static_cast<unsigned int>(node_->sizeText());
    if (x_ < left_) return 0;
    if (x_ >= left_ + width_) return size;
    auto const& graphics = stage_.refGraphics();
    node_->selectFont(graphics);
    unsigned int pos = 0;
    long best = stage_.refView().crefRoot().getWidth();
    for (unsigned int i = 0; i <= size; ++i) {
      long const d = std::labs(graphics.getTextWidth(node_->crefText().substr(0, i)) + left_ - x_);
      if (d > best) break;
      pos = i;
      best = d;
    }
    return pos;
  }

  ViewStageC& stage_;
  long x_;
  long y_;
  long best_ = 160000;
  Node4C const* node_ = nullptr;
  long left_ = 0;
  long width_ = 0;
  unsigned int pos_ = 0;
};

wstring manyFractions(int count) {
  wstring row = u"[\"a\u2038\"";
  for (int i = 0; i < count; ++i) row += u", /<[\"b\"] ; [\"cd\"]>, \"+\"";
  return row + u"]";
}

TEST(Pointer, FindsTheNearestText) {
  wstring const formulas[] = {
      u"[\"\u2038\"]",
      u"[\"abc\u2038def\"]",
      u"[\"\", (, \"\", (, \"a\u2038\", ), \"\", ), \"b\"]",
      u"[\"\", AO, \"a\", ), \"\u2038\"]",
      u"[\"x\", P[\"2\"], \"\", P[\"ab\"], \"y\u2038\"]",
      u"[\"a\u2038\", /<[\"b\", sqrt<[\"c\"]>, \"\"] ; [\"\", nthroot<[\"3\"] ; [\"\"]>, \"d\"]>, \"\"]",
      u"[\"\u2038\", integral<[\"a\"] ; [\"b\"] ; [\"f\", P[\"2\"], \"\"] ; [\"x\"]>, \"+\", "
      u"sum<[\"k\"] ; [\"1\"] ; [\"n\"] ; [\"\", log<[\"2\"] ; [\"k\"]>, \"\"]>, \"\"]",
      u"[\"\u2038\", where<[\"f\"] ; [\"x\"] ; [\"1\"]>, \"\", abs<[\"\", floor<[\"\"]>, \"\"]>, \"\", "
      u"diff<[\"x\"] ; [\"\", ceil<[\"y\"]>, \"\"]>, \"\", error<[\"p\"] ; [\"q\"]>, \"\"]",
      manyFractions(40),
  };
  for (wstring const& formula : formulas) {
    SCOPED_TRACE(toUtf8(formula));
    ViewStageC stage;
    ASSERT_TRUE(stage.setUp(formula));
    auto& view = stage.refView();
    PointS const size = view.getExpressionSize();
    for (long y = -25; y <= size.y + 25; y += 3) {
      for (long x = -25; x <= size.x + 25; ++x) {
        NearestPlaceC const expected(stage, x, y);
        view.addEvent(EVENT_PEN_DOWN, 0, false, false, false, x, y);
        ASSERT_TRUE(view.getCaretNode() == expected.node() && view.getCaretPos() == expected.pos())
            << x << "," << y << ": " << toUtf8(stage.notation());
      }
    }
  }
}

TEST(Pointer, SurvivesFarAwayPlaces) {
  ViewStageC stage;
  ASSERT_TRUE(stage.setUp(u"[\"ab\u2038c\"]"));
  for (long far : {2147483647L, -2147483647L}) {
    stage.refView().addEvent(EVENT_PEN_DOWN, 0, false, false, false, 0, far);
    EXPECT_EQ(stage.refView().getCaretPos(), 0u);
  }
}

TEST(Pointer, MeasuresLittleInALongText) {
  ViewStageC stage;
  stage.refView().insertText(wstring(20000, u'x'));
  stage.refView().display(0, 0);
  stage.refGraphics().resetCounts();
  play(stage, u"pen down 60003 5");
  EXPECT_EQ(stage.refView().getCaretPos(), 10001u);
  EXPECT_LT(stage.refGraphics().getMeasureCount(), 100u);
}

// ---- Rectangles -------------------------------------------------------------------------------------------

std::string toText(RectangleS const& box) {
  return std::to_string(box.left) + " " + std::to_string(box.top) + " " + std::to_string(box.right) + " " +
         std::to_string(box.bottom);
}

TEST(Rectangles, BoundTheCaretAndTheSelection) {
  struct {
    wstring formula;
    char const* caret;
    char const* selection;
  } const cases[] = {
      {u"[\"\u2038abc\"]", "-1 0 0 10", "0 0 0 0"},
      {u"[\"ab\u2038c\"]", "11 0 12 10", "0 0 0 0"},
      {u"[\"a\u2691b\u2038c\"]", "11 0 12 10", "6 0 13 10"},
      {u"[\"a\u2038b\u2691c\"]", "5 0 6 10", "6 0 13 10"},
      {u"[\"\u2691abc\u2038\"]", "17 0 18 10", "0 0 19 10"},
      {u"[\"x\", P[\"\u20382\"], \"\"]", "7 0 8 8", "0 0 0 0"},
      {u"[\"x\u2691\", P[\"2\"], \"\u2038\"]", "13 3 14 13", "6 0 15 13"},
      {u"[\"\u2691a\u2038\", /<[\"b\"] ; [\"c\"]>, \"\"]", "5 7 6 17", "0 7 7 17"},
      {u"[\"a\", (, \"\u2691b\u2038\", ), \"\"]", "17 1 18 11", "12 1 19 11"},
      {u"[\"a\", sqrt<[\"\u2691b\"]>, \"\u2038\"]", "21 5 22 15", "7 0 23 17"},
  };
  for (auto const& one : cases) {
    SCOPED_TRACE(toUtf8(one.formula));
    ViewStageC stage;
    ASSERT_TRUE(stage.setUp(one.formula));
    EXPECT_EQ(toText(stage.refView().getCaretRectangle()), one.caret);
    EXPECT_EQ(toText(stage.refView().getCurrentNodeRectangle()), one.selection);
    EXPECT_EQ(stage.refView().getCurrentNodeRectangle().isNull(), std::string(one.selection) == "0 0 0 0");
  }
}

TEST(Rectangles, AreLaidOutFirst) {
  ViewStageC stage;
  ASSERT_TRUE(stage.setUp(u"[\"a\u2691b\u2038c\"]"));
  stage.refPlayer().play(toScript(u"op sqrt key right key left shift"));
  RectangleS const fresh = stage.refView().getCurrentNodeRectangle();
  stage.refView().display(0, 0);
  EXPECT_EQ(toText(stage.refView().getCurrentNodeRectangle()), toText(fresh));
  EXPECT_FALSE(fresh.isNull());
}

}  // namespace
}  // namespace zolt::tests
