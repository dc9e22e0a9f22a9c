#include "zolt/ved/convert/error_selection.h"
#include "zolt/ved/parser/detail/infix_parser.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved {

using detail::InfixParserC;

bool Node4C::convertInfixToPrefix(wstring const& infix, wstring& prefix, unsigned int& first,
                                  unsigned int& second, ErrorCauseE& cause) {
  LexicalAnalyserC lexer(infix);
  wstring result;
  if (!readAssignment(result, lexer, first, second, cause)) return false;
  if (lexer.getCurrentTokenType() != TOKEN_END) {
    lexer.getCurrentTokenPosition(first, second);
    cause = ERROR_CAUSE_SYNTAX;
    return false;
  }
  prefix = std::move(result);
  return true;
}

bool Node4C::readAssignment(wstring& output, LexicalAnalyserC& lexer, unsigned int& first,
                            unsigned int& second, ErrorCauseE& cause) {
  return InfixParserC(lexer).read(detail::RULE_ASSIGNMENT, output, first, second, cause);
}

bool Node4C::readOR(wstring& output, LexicalAnalyserC& lexer, unsigned int& first, unsigned int& second,
                    ErrorCauseE& cause) {
  return InfixParserC(lexer).read(detail::RULE_OR, output, first, second, cause);
}

bool Node4C::readAND(wstring& output, LexicalAnalyserC& lexer, unsigned int& first, unsigned int& second,
                     ErrorCauseE& cause) {
  return InfixParserC(lexer).read(detail::RULE_AND, output, first, second, cause);
}

bool Node4C::readNOT(wstring& output, LexicalAnalyserC& lexer, unsigned int& first, unsigned int& second,
                     ErrorCauseE& cause) {
  return InfixParserC(lexer).read(detail::RULE_NOT, output, first, second, cause);
}

bool Node4C::readEquation(wstring& output, LexicalAnalyserC& lexer, unsigned int& first, unsigned int& second,
                          ErrorCauseE& cause) {
  return InfixParserC(lexer).read(detail::RULE_EQUATION, output, first, second, cause);
}

bool Node4C::readExpression(wstring& output, LexicalAnalyserC& lexer, unsigned int& first,
                            unsigned int& second, ErrorCauseE& cause) {
  return InfixParserC(lexer).read(detail::RULE_EXPRESSION, output, first, second, cause);
}

bool Node4C::readTerm(wstring& output, LexicalAnalyserC& lexer, unsigned int& first, unsigned int& second,
                      ErrorCauseE& cause) {
  return InfixParserC(lexer).read(detail::RULE_TERM, output, first, second, cause);
}

bool Node4C::readFactor(wstring& output, LexicalAnalyserC& lexer, unsigned int& first, unsigned int& second,
                        ErrorCauseE& cause) {
  return InfixParserC(lexer).read(detail::RULE_FACTOR, output, first, second, cause);
}

bool Node4C::readUnaryTerm(wstring& output, LexicalAnalyserC& lexer, unsigned int& first,
                           unsigned int& second, ErrorCauseE& cause) {
  return InfixParserC(lexer).read(detail::RULE_UNARY_TERM, output, first, second, cause);
}

bool Node4C::readFact(wstring& output, LexicalAnalyserC& lexer, unsigned int& first, unsigned int& second,
                      ErrorCauseE& cause) {
  return InfixParserC(lexer).read(detail::RULE_FACT, output, first, second, cause);
}

bool Node4C::readAtom(wstring& output, LexicalAnalyserC& lexer, unsigned int& first, unsigned int& second,
                      ErrorCauseE& cause) {
  return InfixParserC(lexer).read(detail::RULE_ATOM, output, first, second, cause);
}

}  // namespace zolt::math::ved
