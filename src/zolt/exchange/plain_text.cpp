#include "zolt/exchange/plain_text.h"

#include <utility>

#include "zolt/exchange/detail/plain_parser.h"
#include "zolt/exchange/detail/plain_writer.h"

namespace zolt::exchange {

PointerTC<AlgebraicExpressionC> fromPlainText(wstring const& text, PointerTC<CASSessionBC> session,
                                              ReadErrorS* error) {
  detail::PlainParserC parser(text);
  PointerTC<math::algexpr::NodeABC> node = parser.read();
  if (node) return new AlgebraicExpressionC(std::move(node), std::move(session));
  if (error) *error = parser.crefError(), error->message = describe(error->cause);
  return nullptr;
}

wstring toPlainText(AlgebraicExpressionC const& expression, PlainTextStyleE style) {
  PointerTC<math::algexpr::NodeABC> const node = expression.getNode();
  return node ? detail::PlainWriterC(style).write(*node) : wstring();
}

}  // namespace zolt::exchange
