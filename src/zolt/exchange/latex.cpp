#include "zolt/exchange/latex.h"

#include <cstddef>
#include <string_view>
#include <utility>

#include "zolt/common/signs.h"
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

bool looksLikeLatex(wstring const& text) {
  std::u16string_view rest(text);
  auto const isBlank = [](char16_t c) { return c == u' ' || c == u'\n' || c == u'\r' || c == u'\t'; };
  while (!rest.empty() && isBlank(rest.front())) rest.remove_prefix(1);
  while (!rest.empty() && isBlank(rest.back())) rest.remove_suffix(1);
  if (rest.size() > 2 && rest.front() == u'$' && rest.back() == u'$') return true;
  for (std::size_t i = rest.find(u'\\'); i < rest.size() && i + 1 < rest.size();
       i = rest.find(u'\\', i + 1)) {
    char16_t const next = rest[i + 1];
    if (math::common::isAsciiLetter(next) || (i == 0 && (next == u'(' || next == u'['))) return true;
  }
  return false;
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
