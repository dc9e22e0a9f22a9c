#include "zolt/exchange/latex.h"

#include <cstddef>
#include <utility>

#include "zolt/exchange/detail/latex_names.h"
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
  return node ? detail::LatexWriterC(detail::LATEX_SIGNS_VISIBLE).write(*node) : wstring();
}

wstring toMarkedLatex(AlgebraicExpressionC const& expression) {
  PointerTC<math::algexpr::NodeABC> const node = expression.getNode();
  return node ? detail::LatexWriterC(detail::LATEX_SIGNS_ALL).write(*node) : wstring();
}

wstring fromLatexText(std::u16string_view written) {
  wstring const closed = wstring(written) + u'}';
  wstring text;
  std::size_t position = 0;
  return detail::readLatexText(closed, position, text, 1) ? text : wstring(written);
}

}  // namespace zolt::exchange
