#include "zolt/exchange/plain_text.h"

#include <iterator>
#include <utility>

#include "zolt/exchange/detail/plain_parser.h"
#include "zolt/exchange/detail/plain_writer.h"

namespace zolt::exchange {

wstring describe(PlainTextErrorE cause) {
  static constexpr char16_t const* sentences[] = {
      u"Nothing is wrong",
      u"There is nothing to read",
      u"This character has no meaning here",
      u"This is not a number",
      u"A name cannot be empty, start like a number or contain blanks, brackets and commas",
      u"An operand is missing",
      u"An operator is missing",
      u"This function has no argument",
      u"This function takes another number of arguments",
      u"A closing bracket, bar or quote is missing",
      u"This closing bracket has no opening one",
      u"A comma can only stand between the arguments of a function",
      u"A second assignment must stand in brackets"};
  static_assert(std::size(sentences) == PLAIN_TEXT_ERROR_SECOND_ASSIGNMENT + 1);
  return sentences[cause];
}

PointerTC<AlgebraicExpressionC> fromPlainText(wstring const& text, PointerTC<CASSessionBC> session,
                                              PlainTextErrorS* error) {
  detail::PlainParserC parser(text);
  PointerTC<math::algexpr::NodeABC> node = parser.read();
  if (node) return new AlgebraicExpressionC(std::move(node), std::move(session));
  if (error) *error = parser.crefError();
  return nullptr;
}

wstring toPlainText(AlgebraicExpressionC const& expression, PlainTextStyleE style) {
  PointerTC<math::algexpr::NodeABC> const node = expression.getNode();
  return node ? detail::PlainWriterC(style).write(*node) : wstring();
}

}  // namespace zolt::exchange
