#include "zolt/ved/convert/error_selection.h"
#include "zolt/ved/parser/detail/infix_parser.h"
#include "zolt/ved/parser/prefix_part.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved {

bool Node4C::convertInfixToPrefix(wstring const& infix, wstring& prefix, unsigned int& first,
                                  unsigned int& second, ErrorCauseE& cause) {
  return convertInfixToParts(infix, prefix, first, second, cause, nullptr);
}

bool convertInfixToParts(wstring const& infix, wstring& prefix, unsigned int& first, unsigned int& second,
                         ErrorCauseE& cause, std::vector<PrefixPartS>* parts) {
  LexicalAnalyserC lexer(infix);
  wstring result;
  if (!detail::InfixParserC(lexer).read(result, first, second, cause, parts)) return false;
  if (lexer.getCurrentTokenType() != TOKEN_END) {
    lexer.getCurrentTokenPosition(first, second);
    cause = ERROR_CAUSE_SYNTAX;
    return false;
  }
  prefix = std::move(result);
  return true;
}

}  // namespace zolt::math::ved
