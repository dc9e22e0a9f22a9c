#include "zolt/field/error_text.h"

#include <utility>

namespace zolt::field {

using namespace math::ved;

namespace {

constexpr std::pair<ErrorCauseE, char16_t const*> sentences[] = {
    {ERROR_CAUSE_SYNTAX, u"This does not fit here"},
    {ERROR_CAUSE_PLACEHOLDER, u"This place is still to be filled in"},
    {ERROR_CAUSE_EMPTY, u"The formula is empty"},
    {ERROR_CAUSE_UNEXPECTED_END, u"Something is missing at the end"},
    {ERROR_CAUSE_BAD_NUMBER, u"This is no number, or too large a one"},
    {ERROR_CAUSE_MISSING_OPEN, u"This function needs its arguments in brackets"},
    {ERROR_CAUSE_CALL_NOT_CLOSED, u"A comma or a closing bracket is missing behind the argument"},
    {ERROR_CAUSE_ARGUMENT_COUNT, u"This function takes another number of arguments"},
    {ERROR_CAUSE_PAREN_NOT_CLOSED, u"A closing bracket is missing"}};

}  // namespace

wstring describe(ErrorCauseE cause) {
  for (auto const& [known, sentence] : sentences) {
    if (known == cause) return sentence;
  }
  return u"This cannot be read";
}

}  // namespace zolt::field
