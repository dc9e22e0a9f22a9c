#include "zolt/field/error_text.h"

namespace zolt::field {

using namespace math::common;
using namespace math::ved;

namespace {

struct SentenceS {
  ErrorCauseE cause;
  ReadErrorE error;
  char16_t const* sentence;
};

constexpr SentenceS sentences[] = {
    {ERROR_CAUSE_SYNTAX, READ_ERROR_MISPLACED, u"This does not fit here"},
    {ERROR_CAUSE_PLACEHOLDER, READ_ERROR_EMPTY_SLOT, u"This place is still to be filled in"},
    {ERROR_CAUSE_EMPTY, READ_ERROR_EMPTY, u"The formula is empty"},
    {ERROR_CAUSE_UNEXPECTED_END, READ_ERROR_MISSING_OPERAND, u"Something is missing at the end"},
    {ERROR_CAUSE_BAD_NUMBER, READ_ERROR_BAD_NUMBER, u"This is no number, or too large a one"},
    {ERROR_CAUSE_MISSING_OPEN, READ_ERROR_MISSING_ARGUMENTS,
     u"This function needs its arguments in brackets"},
    {ERROR_CAUSE_CALL_NOT_CLOSED, READ_ERROR_MISSING_CLOSE,
     u"A comma or a closing bracket is missing behind the argument"},
    {ERROR_CAUSE_ARGUMENT_COUNT, READ_ERROR_ARGUMENT_COUNT,
     u"This function takes another number of arguments"},
    {ERROR_CAUSE_PAREN_NOT_CLOSED, READ_ERROR_MISSING_CLOSE, u"A closing bracket is missing"}};

SentenceS const& sentenceOf(ErrorCauseE cause) {
  static constexpr SentenceS unknown = {ERROR_CAUSE_SYNTAX, READ_ERROR_MISPLACED, u"This cannot be read"};
  for (SentenceS const& known : sentences) {
    if (known.cause == cause) return known;
  }
  return unknown;
}

}  // namespace

wstring describe(ErrorCauseE cause) { return sentenceOf(cause).sentence; }

ReadErrorE toReadError(ErrorCauseE cause) { return sentenceOf(cause).error; }

}  // namespace zolt::field
