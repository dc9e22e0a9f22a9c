// What several threads may do at once. The thread sanitizer judges it (preset tsan).

#include <gtest/gtest.h>

#include <optional>
#include <thread>

#include "tests/support/cases.h"
#include "tests/support/operators.h"
#include "tests/support/stage.h"
#include "zolt/algexpr/cas_request.h"
#include "zolt/engines/basic/basic_engine.h"
#include "zolt/exchange/latex.h"
#include "zolt/exchange/plain_text.h"
#include "zolt/mathjson/mathjson.h"
#include "zolt/mathml/mathml.h"
#if ZOLT_TEST_CAIRO
#include "zolt/surfaces/cairo/cairo_graphics.h"
#endif

namespace zolt::tests {
namespace {

using math::algexpr::CASSessionBC;
using math::ved::OperatorListC;
using math::ved::ViewZNT4C;

/// Runs `work` on four threads at once.
template <class WorkF>
void onThreads(WorkF work) {
  std::vector<std::thread> threads;
  for (int i = 0; i < 4; ++i) threads.emplace_back(work);
  for (std::thread& thread : threads) thread.join();
}

#if ZOLT_TEST_CAIRO
// Cairo keeps faces, and these the fonts, after the last picture.
std::string fontError;
oss::PointerTC<surfaces::FontSetC> const fonts =
    surfaces::FontSetC::load(surfaces::FontSetC::getDefaultFolders(), fontError);
#endif

std::string drawPicture([[maybe_unused]] ExpressionT const& expression) {
  std::string bytes;
#if ZOLT_TEST_CAIRO
  using namespace surfaces;
  EXPECT_TRUE(fonts) << fontError;
  if (!fonts) return bytes;
  oss::PointerTC<CairoGraphicsC> const surface = new CairoGraphicsC(new TypesetterC(fonts));
  ViewZNT4C view(surface);
  view.setAlgebraicExpression(expression, nullptr, 0, math::algexpr::NUMBER_FORMAT_AUTOMATIC);
  auto const size = view.getExpressionSize();
  view.display(0, 0);
  std::string error;
  EXPECT_TRUE(surface->render(PICTURE_SVG, size.x, size.y, {}, bytes, error)) << error;
#endif
  return bytes;
}

oss::wstring compute(math::algexpr::CASEngineABC const& engine, ExpressionT const& expression) {
  math::algexpr::CASRequestS request;
  request.expression = expression;
  math::algexpr::CASResultS const result = engine.compute(request);
  return result.value ? exchange::toPlainText(*result.value) : describe(result);
}

TEST(Threads, HaveFieldsConversionsAndPicturesOfTheirOwn) {
  standardOperators();
  oss::wstring const text = u"sqrt(x^2+1)/2 + sum(k,1,n,k!) - |a|*sin(2x) + int(0,1,x,x)";
  ExpressionT const shared = exchange::fromPlainText(text, nullptr);
  ASSERT_TRUE(shared);
  std::string const picture = drawPicture(shared);
  engine_basic::BasicEngineC const engine;
  onThreads([&] {
    for (int round = 0; round < 5; ++round) {
      StageC stage;
      EXPECT_TRUE(stage.refView().insertText(u"x+sqrt"));
      stage.refView().setAlgebraicExpression(shared, nullptr, 0, math::algexpr::NUMBER_FORMAT_AUTOMATIC);
      for (unsigned long const key : {37ul, 8ul, 39ul, 8ul}) {
        stage.refView().addEvent(math::ved::EVENT_KEY, key, false, false, false, 0, 0);
      }
      EXPECT_TRUE(stage.refView().insertText(u"y/2"));
      stage.refView().display(0, 0);
      while (stage.refView().undo()) continue;
      EXPECT_TRUE(stage.refView().getAlgebraicExpression(nullptr)->equals(*shared));
      EXPECT_TRUE(exchange::fromPlainText(exchange::toPlainText(*shared), nullptr)->equals(*shared));
      EXPECT_EQ(CASSessionBC::getSession()->getEngine().getName(), u"standard");
      CASSessionBC::setSession(nullptr);
      EXPECT_EQ(compute(engine, exchange::fromPlainText(u"sum(k,1,5,1/k)+a*0", nullptr)), u"137/60");
    }
    EXPECT_TRUE(exchange::fromLatex(exchange::toLatex(*shared), nullptr)->equals(*shared));
    EXPECT_TRUE(mathjson::fromMathJson(mathjson::toMathJson(*shared), nullptr)->equals(*shared));
    EXPECT_FALSE(mathml::toMathml(*shared).empty());
    EXPECT_TRUE(picture == drawPicture(shared));
  });
  oss::PointerTC<CASSessionBC> const session = new CASSessionBC(nullptr);
  CASSessionBC::setSession(session);
  std::thread([&] { EXPECT_EQ(CASSessionBC::getSession(), session); }).join();
  CASSessionBC::setSession(nullptr);
}

// Trees and views are handed on: the thread that made them may be gone, or be at work on others.
TEST(Threads, DestroyWhatOthersMade) {
  standardOperators();
  std::vector<TreeT> orphans;
  std::vector<TreeT> own;
  auto const fill = [](std::vector<TreeT>& trees) {
    for (int i = 0; i < 100; ++i) trees.push_back(readTree(R"(["a", /<["b"] ; ["c"]>, ""])").root);
  };
  std::optional<StageC> stage;
  std::thread([&] {
    fill(orphans);
    stage.emplace("[\"a‸\"]");
  }).join();
  fill(own);
  std::thread other([&] {
    own.clear();
    orphans.resize(50);
  });
  std::vector<TreeT> more;
  fill(more);
  other.join();
  for (TreeT const& tree : more) EXPECT_EQ(describe(*tree), describe(*orphans[0]));
  EXPECT_TRUE(stage->refView().insertText(u"+c"));
  EXPECT_EQ(stage->notation(), "[\"a+c‸\"]");
}

TEST(Threads, FreezeAListThatAnotherOneReads) {
  oss::PointerTC<OperatorListC> const list = new OperatorListC;
  list->add(standardOperators().lookup(u"sqrt"));
  std::thread([&] { EXPECT_TRUE(list->lookup(u"sqrt")); }).join();
  EXPECT_TRUE(list->isFrozen());
  list->add(standardOperators().lookup(u"abs"));
  list->addKey(1, standardOperators().lookup(u"abs"));
  list->remove(u"sqrt");
  EXPECT_TRUE(list->lookup(u"sqrt") && !list->lookup(u"abs") && !list->lookupKey(1));
  oss::PointerTC<OperatorListC> const filled = new OperatorListC;
  std::thread([&] {
    for (oss::wstring const name : {u"+", u"abs"}) filled->add(standardOperators().lookup(name));
  }).join();
  EXPECT_TRUE(filled->lookup(u"abs"));
  OperatorListC copy(*list);
  copy.remove(u"sqrt");
  EXPECT_FALSE(copy.lookup(u"sqrt"));
}

}  // namespace
}  // namespace zolt::tests
