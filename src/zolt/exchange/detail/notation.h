#pragma once

#include <string_view>

namespace zolt::exchange::detail {

/// How tightly a part of a formula written in one line holds together, the loosest first.
enum RuleE : int {
  RULE_ASSIGNMENT,
  RULE_OR,
  RULE_AND,
  RULE_NOT,
  RULE_RELATION,
  RULE_SUM,
  RULE_PRODUCT,
  RULE_SIGN,
  RULE_ARGUMENT,  ///< what a function without brackets takes: "2x" in "sin 2x"
  RULE_POWER,
  RULE_POSTFIX,
  RULE_ATOM,
  RULE_BRACKETS  ///< in brackets whatever it is
};

/// Where an operator is written.
enum FormE { FORM_FUNCTION, FORM_INFIX, FORM_PREFIX, FORM_POSTFIX, FORM_BRACKETS, FORM_CONSTANT };

/// An operator in plain text.
struct PlainFormS {
  std::u16string_view written;  ///< with the blanks around it
  /// The names and signs that are read as the operator, with a blank after each but the last. In "cbrt:3" the
  /// reader adds 3 as the last argument.
  std::u16string_view read;
  std::u16string_view brackets = {};  ///< two signs that stand for the function and its brackets: "⌊⌋"
  std::u16string_view inverse = {};   ///< the function that "^-1" after the name means, as it is written
};

/// An operator of the expression library in the notations of others: what all of them need, then a part for
/// each notation.
struct NotationS {
  std::u16string_view name;  ///< the expression library's
  FormE form;
  unsigned long arity;  ///< 0: one or more
  PlainFormS plain;
  RuleE rule = RULE_ATOM;       ///< of the whole
  RuleE leftRule = RULE_ATOM;   ///< of the operand before the sign
  RuleE rightRule = RULE_ATOM;  ///< of the operand after the sign
  char16_t sign = u'\0';        ///< the editor's own character for it, which every notation reads
};

/// Null when `name` is that of no operator.
NotationS const* findNotation(std::u16string_view name);
/// The same for an operator between two operands only.
NotationS const* findInfix(std::u16string_view name);

/// What a name or sign of plain text is read as.
struct ReadingS {
  std::u16string_view text;
  NotationS const* notation;
  std::u16string_view addedArgument;  ///< a whole number that the reader adds as last argument; empty: none
};

/// Null when the text means nothing by itself. Of functions that share a name, any.
ReadingS const* findReading(std::u16string_view text);
/// The function written so with so many arguments; null when there is none.
ReadingS const* findFunction(std::u16string_view text, unsigned long numArguments);
/// Whether `text` is a function's name, with whatever number of arguments.
bool isFunction(std::u16string_view text);

/// The function whose brackets, or closing bracket, `sign` is; null when there is none.
NotationS const* findBrackets(char16_t sign);

/// The letter that "alpha", "Omega" and so on stand for; empty for any other name.
std::u16string_view findGreekLetter(std::u16string_view name);

constexpr std::u16string_view bracket_name = u"_quietpos";
constexpr std::u16string_view pi_name = u"_PI";

}  // namespace zolt::exchange::detail
