#pragma once

#include <string_view>

namespace zolt::exchange::detail {

/// How tightly a part of plain text holds together, the loosest first.
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

/// A sign or word between two operands.
struct InfixS {
  std::u16string_view name;     ///< the expression library's
  std::u16string_view written;  ///< with the blanks around it
  RuleE rule;                   ///< of the whole
  RuleE leftRule;
  RuleE rightRule;
};

/// Null when `name` is that of no infix operation.
InfixS const* findInfix(std::u16string_view name);

/// A function by the name that people write.
struct FunctionS {
  std::u16string_view written;
  unsigned long numArguments;  ///< 0: one or more
  std::u16string_view name;    ///< the expression library's
  /// A whole number that the reader adds as last argument; empty for none.
  std::u16string_view addedArgument;
};

/// Whether `written` is a function's name, with whatever number of arguments.
bool isFunction(std::u16string_view written);
/// The function written so with so many arguments; null when there is none.
FunctionS const* findFunction(std::u16string_view written, unsigned long numArguments);
/// The other way round, preferring what most people write.
FunctionS const* findWritten(std::u16string_view name, unsigned long numArguments);
/// The name of the function that undoes the function written so: "asin" for "sin"; empty when `f^-1` means
/// nothing.
std::u16string_view findInverse(std::u16string_view written);

/// "and", "or", "not", "mod", "div".
bool isWord(std::u16string_view name);
/// Whether `name` stands for π.
bool isPi(std::u16string_view name);
/// The letter that "alpha", "Omega" and so on stand for; empty for any other name.
std::u16string_view findGreekLetter(std::u16string_view name);

constexpr std::u16string_view bracket_name = u"_quietpos";
constexpr std::u16string_view pi_name = u"_PI";

}  // namespace zolt::exchange::detail
