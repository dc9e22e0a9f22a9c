#include <gtest/gtest.h>

#include "tests/exchange/random_notation.h"
#include "tests/support/cases.h"
#include "zolt/exchange/latex.h"
#include "zolt/mathjson/mathjson.h"

namespace zolt::exchange {
namespace {

struct NotationS {
  wstring (*write)(AlgebraicExpressionC const&);
  PointerTC<AlgebraicExpressionC> (*read)(wstring const&, PointerTC<CASSessionBC>, ReadErrorS*);
};

TEST(Notations, RandomExpressionsReadBack) {
  tests::RandomNotationC maker(20);
  for (unsigned i = 0; i < 8000; ++i) {
    AlgebraicExpressionC const expression(maker.make(1 + i % 24), nullptr);
    for (NotationS const& notation :
         {NotationS{toLatex, fromLatex}, NotationS{mathjson::toMathJson, mathjson::fromMathJson}}) {
      wstring const text = notation.write(expression);
      auto const read = notation.read(text, nullptr, nullptr);
      ASSERT_TRUE(read && read->equals(expression)) << tests::toUtf8(expression.toPrefixString()) << "\n"
                                                    << tests::toUtf8(text) << "\n"
                                                    << (read ? tests::toUtf8(read->toPrefixString()) : "");
    }
  }
}

}  // namespace
}  // namespace zolt::exchange
