#include "hosts/cli/error_text.h"

namespace zolt::cli {

std::string describeCause(math::ved::ErrorCauseE cause) {
  using namespace math::ved;
  switch (cause) {
    case ERROR_CAUSE_SYNTAX:
      return "This does not fit here";
    case ERROR_CAUSE_PLACEHOLDER:
      return "An empty place is still to be filled in";
    case ERROR_CAUSE_EMPTY:
      return "There is no expression";
    case ERROR_CAUSE_UNEXPECTED_END:
      return "The expression ends where something should follow";
    case ERROR_CAUSE_BAD_NUMBER:
      return "This is no number, or too large a one";
    case ERROR_CAUSE_MISSING_OPEN:
      return "This function needs its arguments in brackets";
    case ERROR_CAUSE_CALL_NOT_CLOSED:
      return "A \",\" or \")\" is missing in the argument list";
    case ERROR_CAUSE_ARGUMENT_COUNT:
      return "This function takes another number of arguments";
    case ERROR_CAUSE_PAREN_NOT_CLOSED:
      return "A \")\" is missing";
  }
  return "This cannot be read";
}

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
