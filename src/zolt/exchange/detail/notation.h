#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace zolt::math::algexpr {
class ParentNodeABC;
}
namespace zolt::exchange {
struct PlainListS;
}

#include "zolt/exchange/plain_operator.h"

namespace zolt::exchange::detail {

/// How tightly a part of a formula in one line binds; the loosest comes first. The operators of hosts have
/// rules in between.
enum RuleE : std::int16_t {
  RULE_ASSIGNMENT = -180,
  RULE_OR = -160,
  RULE_AND = -140,
  RULE_NOT = -120,
  RULE_RELATION = -100,
  RULE_SUM = -80,
  RULE_PRODUCT = -60,
  RULE_SIGN = -40,
  RULE_ARGUMENT = -30,  ///< the argument of a function without brackets: "2x" in "sin 2x"
  RULE_POWER = -20,
  RULE_POSTFIX = -10,
  RULE_ATOM = 0,
  RULE_BRACKETS = 1  ///< always in brackets
};

/// The rule of an operator that has this precedence in the editor, and the one for what binds tighter.
constexpr RuleE ruleOf(int precedence) { return static_cast<RuleE>(-2 * precedence); }
constexpr RuleE tighterThan(RuleE rule) { return static_cast<RuleE>(rule + 1); }
/// Of the operand before a sign: operations lean to the left, but one assignment is all that a formula has.
constexpr RuleE beforeSign(RuleE rule) { return rule == RULE_ASSIGNMENT ? tighterThan(rule) : rule; }

/// Where an operator is written.
enum FormE { FORM_FUNCTION, FORM_INFIX, FORM_PREFIX, FORM_POSTFIX, FORM_BRACKETS, FORM_CONSTANT };

/// An operator in plain text.
struct PlainFormS {
  std::u16string_view written;  ///< with the blanks around it
  /// The names and signs that are read as the operator, with a blank after each but the last. In "cbrt:3" the
  /// reader adds 3 as the last argument.
  std::u16string_view read;
  std::u16string_view brackets = {};  ///< two signs that mean the function and its brackets: "⌊⌋"
  std::u16string_view inverse = {};   ///< the written name of the function that "^-1" after this name means
};

/// The arguments of a call as they are written, each of which is one of the operation or two with a sign
/// between them. The numbers count from 1.
struct CallPatternS {
  struct ArgumentS {
    unsigned long first;
    std::u16string_view sign;  ///< empty: only the first
    unsigned long second;
    unsigned long side = 0;  ///< what a "+" or "-" right after it tells, 1 or −1; 0: none is there
  };
  ArgumentS const* arguments;
  std::size_t count;

  /// The argument that has a sign after it; null: none.
  ArgumentS const* findSide() const;
};

/// How other notations write an operator of the expression library: first what all of them need, then a part
/// for each notation.
struct NotationS {
  std::u16string_view name;  ///< the name in the expression library
  FormE form;
  unsigned long arity;  ///< 0: one or more
  PlainFormS plain;
  RuleE rule = RULE_ATOM;       ///< of the whole
  RuleE leftRule = RULE_ATOM;   ///< of the operand before the sign
  RuleE rightRule = RULE_ATOM;  ///< of the operand after the sign
  char16_t sign = u'\0';        ///< the editor's own character for it, which every notation reads
  bool isName = false;          ///< what is read is a name where the operand that it needs is missing
  CallPatternS const* pattern = nullptr;  ///< null: the arguments are written in their order

  unsigned long countWritten() const { return pattern ? pattern->count : arity; }
};

/// The operator of that name; null when there is none.
NotationS const* findNotation(std::u16string_view name);
/// The same for a function with that number of arguments, where hosts write it in several ways.
NotationS const* findCall(std::u16string_view name, unsigned long numArguments);
/// The same for an operator between two operands only.
NotationS const* findInfix(std::u16string_view name);

/// The operator that is written before its operand with the sign of that one between two; null: none.
NotationS const* findPrefix(NotationS const& infix);

/// Whether a sign of the operation is right before its last operand and in one line with it. A textbook puts
/// that operand in brackets when it begins with a sign.
inline bool endsAfterSign(NotationS const& notation) {
  return notation.rule == RULE_SUM || (notation.rule == RULE_PRODUCT && notation.name != u"/") ||
         (notation.form == FORM_PREFIX && notation.rule == RULE_SIGN);
}

/// The meaning of a name or sign in plain text.
struct ReadingS {
  std::u16string_view text;
  NotationS const* notation;
  std::u16string_view addedArgument;  ///< an integer that the reader adds as the last argument; empty: none
};

/// The meaning of a text; null when it has none by itself. When functions share the name, the result is any
/// of them.
ReadingS const* findReading(std::u16string_view text);
/// The function with this written name and number of arguments; null when there is none.
ReadingS const* findFunction(std::u16string_view text, unsigned long numArguments);
/// Whether `text` is a function's name, for any number of arguments.
bool isFunction(std::u16string_view text);
/// Whether hosts alone made it one: with other arguments it is a name as any other.
bool isAddedFunction(std::u16string_view text);
/// The function with this written name whose arguments have a "+" or "-" among them that is no operation;
/// null when there is none.
ReadingS const* findSidedFunction(std::u16string_view text);
/// Where a function's name ends in a name that goes on with "_" and the second argument, as "log_2", or with
/// "_" alone, after which that argument comes in brackets; npos in any other name.
std::size_t findMark(std::u16string_view name);
/// The function that so many arguments in brackets after "_" make of a name, as in "a_(i+1)"; null: none.
ReadingS const* findIndexing(std::u16string_view name, unsigned long numArguments);

/// Whether a name is that of the integral, perhaps with a bound: "int", "int_0".
bool isIntegral(std::u16string_view name);
/// Whether a name is a "d" and a variable of one letter: "dx", "dtheta", "dx_1", "dt′".
bool isDifferential(std::u16string_view name);

/// The function that two bars on each side mean; empty: none.
wstring const& findDoubleBars();

/// The list of so many formulas between two brackets; null when there is none.
PlainListS const* findList(char16_t open, char16_t close, unsigned long count);
/// Whether a list of any number of formulas may begin with a bracket, and end with another one.
bool opensList(char16_t open);
bool closesList(char16_t open, char16_t close);
/// The list that an operation is written as; null when there is none.
PlainListS const* findListOf(math::algexpr::ParentNodeABC const& node);

/// The function to whose brackets `sign` belongs; null when there is none.
NotationS const* findBrackets(char16_t sign);

/// The name that a written name means: the Greek letter for "alpha" or "Omega", also as the part before or
/// after an underscore, "θ_max" for "theta_max".
std::u16string toLetters(std::u16string_view name);

/// The same before the brackets of a call, "φ" for "phi". Of the functions that have a Greek letter's name
/// those that engines know by it keep it: "Gamma".
std::u16string toCalledLetters(std::u16string_view name);

struct LetterS {
  std::u16string_view name;
  std::u16string_view letter;
};

/// The Greek letters, from the first to before the second.
std::pair<LetterS const*, LetterS const*> greekLetters();

constexpr std::u16string_view bracket_name = u"_quietpos";
constexpr char16_t bar = u'|';
/// The operator of a host that a single bar means, "P(A|B)", and how many tokens a condition may have then.
constexpr std::u16string_view condition_name = u"given";
constexpr unsigned most_condition = 64;
constexpr std::u16string_view pi_name = u"_PI";
/// The letter, which is only a part of names; alone it is the constant.
constexpr char16_t greek_pi = u'\u03C0';

/// The table that is written between these brackets, or as a call of that name; null: none.
PlainTableS const* findTable(char16_t close);
PlainTableS const* findTable(std::u16string_view name);
/// Whether there are any.
bool hasTables();

}  // namespace zolt::exchange::detail
