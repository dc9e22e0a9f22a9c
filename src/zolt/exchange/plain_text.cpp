#include "zolt/exchange/plain_text.h"

#include <utility>

#include "zolt/exchange/detail/plain_parser.h"
#include "zolt/exchange/detail/plain_writer.h"

namespace zolt::exchange {

wstring describe(PlainTextErrorE cause) {
  switch (cause) {
    case PLAIN_TEXT_ERROR_NONE:
      return u"Nothing is wrong";
    case PLAIN_TEXT_ERROR_EMPTY:
      return u"There is nothing to read";
    case PLAIN_TEXT_ERROR_BAD_CHARACTER:
      return u"This character has no meaning here";
    case PLAIN_TEXT_ERROR_BAD_NUMBER:
      return u"This is not a number";
    case PLAIN_TEXT_ERROR_BAD_NAME:
      return u"A name cannot be empty, start like a number or contain blanks, brackets and commas";
    case PLAIN_TEXT_ERROR_MISSING_OPERAND:
      return u"An operand is missing";
    case PLAIN_TEXT_ERROR_MISSING_OPERATOR:
      return u"An operator is missing";
    case PLAIN_TEXT_ERROR_MISSING_ARGUMENTS:
      return u"This function has no argument";
    case PLAIN_TEXT_ERROR_ARGUMENT_COUNT:
      return u"This function takes another number of arguments";
    case PLAIN_TEXT_ERROR_MISSING_CLOSE:
      return u"A closing bracket, bar or quote is missing";
    case PLAIN_TEXT_ERROR_UNEXPECTED_CLOSE:
      return u"This closing bracket has no opening one";
    case PLAIN_TEXT_ERROR_UNEXPECTED_COMMA:
      return u"A comma can only stand between the arguments of a function";
    case PLAIN_TEXT_ERROR_SECOND_ASSIGNMENT:
      return u"A second assignment must stand in brackets";
  }
  return {};
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
