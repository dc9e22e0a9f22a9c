#include "zolt/exchange/latex.h"

#include <utility>

#include "zolt/exchange/detail/latex_parser.h"
#include "zolt/exchange/detail/latex_writer.h"

namespace zolt::exchange {

PointerTC<AlgebraicExpressionC> fromLatex(wstring const& text, PointerTC<CASSessionBC> session,
                                          ReadErrorS* error) {
  detail::LatexParserC parser(text);
  PointerTC<math::algexpr::NodeABC> node = parser.read();
  if (node) return new AlgebraicExpressionC(std::move(node), std::move(session));
  if (error) *error = parser.crefError();
  return nullptr;
}

wstring toLatex(AlgebraicExpressionC const& expression) {
  PointerTC<math::algexpr::NodeABC> const node = expression.getNode();
  return node ? detail::LatexWriterC().write(*node) : wstring();
}

}  // namespace zolt::exchange
