#include "hosts/cli/describe_cause.h"

#include "hosts/cli/utf8_text.h"
#include "zolt/field/error_text.h"

namespace zolt::cli {

std::string describeCause(math::ved::ErrorCauseE cause) { return toUtf8(field::describe(cause)); }

std::string describeCause(math::algexpr::PrefixErrorE cause) {
  using namespace math::algexpr;
  switch (cause) {
    case PREFIX_ERROR_NONE:
      break;
    case PREFIX_ERROR_MISSING_OPERAND:
      return "A name or a number is missing";
    case PREFIX_ERROR_BAD_NUMBER:
      return "This is no number";
    case PREFIX_ERROR_BAD_CHARACTER:
      return "No expression holds this character";
    case PREFIX_ERROR_NOT_CLOSED:
      return "A \")\" is missing";
    case PREFIX_ERROR_MISSING_COMMA:
      return "A \",\" or \")\" is missing";
    case PREFIX_ERROR_TRAILING_TEXT:
      return "The expression has already ended";
  }
  return "This cannot be read";
}

}  // namespace zolt::cli
