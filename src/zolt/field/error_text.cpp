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

/// A character as people can read it.
wstring nameOf(wstring const& character) {
  bool const isVisible = character[0] > u' ' && (character[0] < 0x7F || character[0] > 0xA0);
  if (isVisible) return u"\u201C" + character + u"\u201D";
  constexpr std::u16string_view digits = u"0123456789ABCDEF";
  wstring name = u"U+";
  for (int shift = 12; shift >= 0; shift -= 4) name += digits[(character[0] >> shift) & 0xF];
  return name;
}

}  // namespace

wstring describe(ErrorCauseE cause) { return sentenceOf(cause).sentence; }

ReadErrorE toReadError(ErrorCauseE cause) { return sentenceOf(cause).error; }

wstring describeRefusal(ReadErrorS const& error, wstring const& text) {
  constexpr std::size_t most_shown = 12;
  wstring sentence = math::common::describe(error.cause);
  if (error.cause == READ_ERROR_BAD_CHARACTER) {
    sentence = nameOf(text.substr(error.begin, error.end - error.begin)) + u" has no meaning in a formula";
  }
  if (error.cause == READ_ERROR_BAD_NAME && !text.empty() && text[0] == u'\\') {
    sentence = u"Nothing is called " + nameOf(text);
  }
  std::size_t const end = text.find_last_not_of(u" \t\r\n", error.begin - 1) + 1;
  if (error.begin == 0 || end == 0) return sentence;
  std::size_t const begin = end > most_shown ? end - most_shown : 0;
  return sentence + u", after \u201C" + (begin > 0 ? u"\u2026" : u"") + text.substr(begin, end - begin) +
         u"\u201D";
}

}  // namespace zolt::field
