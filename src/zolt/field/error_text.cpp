#include "zolt/field/error_text.h"

namespace zolt::field {

using namespace math::ved;

wstring describe(ErrorCauseE cause) {
  switch (cause) {
    case ERROR_CAUSE_SYNTAX:
      return u"This does not fit here";
    case ERROR_CAUSE_PLACEHOLDER:
      return u"This place is still to be filled in";
    case ERROR_CAUSE_EMPTY:
      return u"The formula is empty";
    case ERROR_CAUSE_UNEXPECTED_END:
      return u"Something is missing at the end";
    case ERROR_CAUSE_BAD_NUMBER:
      return u"This is no number, or too large a one";
    case ERROR_CAUSE_MISSING_OPEN:
      return u"This function needs its arguments in brackets";
    case ERROR_CAUSE_CALL_NOT_CLOSED:
      return u"A comma or a closing bracket is missing behind the argument";
    case ERROR_CAUSE_ARGUMENT_COUNT:
      return u"This function takes another number of arguments";
    case ERROR_CAUSE_PAREN_NOT_CLOSED:
      return u"A closing bracket is missing";
  }
  return u"This cannot be read";
}

}  // namespace zolt::field
