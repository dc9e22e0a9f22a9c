#include "zolt/common/read_error.h"

#include <iterator>

namespace zolt::math::common {

oss::wstring describe(ReadErrorE cause) {
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
      u"A second assignment must stand in brackets",
      u"A comma or a closing bracket is missing",
      u"The expression has already ended",
      u"This place is still to be filled in",
      u"This does not fit here",
      u"This formula is not allowed here",
      u"This command is not known",
      u"A second exponent or index needs brackets or braces",
      u"These bounds are incomplete",
      u"The \"dx\" of an integral is missing",
      u"This has no meaning that an expression could hold",
      u"This is not well-formed MathML",
      u"This element has no meaning here",
      u"A table has at most 100 columns and 10,000 cells"};
  static_assert(std::size(sentences) == READ_ERROR_TABLE_SIZE + 1);
  return sentences[cause];
}

}  // namespace zolt::math::common
