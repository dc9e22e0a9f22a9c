#pragma once

#include <vector>

#include "zolt/oss/wstring.h"
#include "zolt/ved/operators/operator_list.h"

namespace zolt::catalogue {

/// Key codes of the standard operators, for hosts that bind keys or buttons to them. They lie above every key
/// code that the view or a keyboard uses.
enum StandardKeyE : unsigned long {
  KEY_PLUS = 0x100,
  KEY_MINUS,
  KEY_TIMES,
  KEY_DIV,
  KEY_MOD,
  KEY_POS,
  KEY_NEG,
  KEY_POWER,
  KEY_RAD,
  KEY_DEG,
  KEY_FACTORIAL,
  KEY_EQUAL,
  KEY_NOT_EQUAL,
  KEY_LESS,
  KEY_GREATER,
  KEY_LESS_OR_EQUAL,
  KEY_GREATER_OR_EQUAL,
  KEY_NOT,
  KEY_AND,
  KEY_OR,
  KEY_ASSIGN,
  KEY_STORE,
  KEY_PI,
  KEY_FRACTION,
  KEY_SQRT,
  KEY_NTH_ROOT,
  KEY_ABS,
  KEY_FLOOR,
  KEY_CEIL,
  KEY_LOG,
  KEY_LOG10,
  KEY_DIFF,
  KEY_INTEGRAL,
  KEY_SUM,
  KEY_WHERE,
  KEY_SIN,
  KEY_COS,
  KEY_TAN,
  KEY_ASIN,
  KEY_ACOS,
  KEY_ATAN,
  KEY_SINH,
  KEY_COSH,
  KEY_TANH,
  KEY_LN,
  KEY_EXP,
  KEY_INFINITY,
  KEY_PLUS_MINUS,
};

/// One standard operator that a person can insert.
struct StandardOperatorS {
  oss::wstring name;  ///< key of the operator table
  StandardKeyE key;
};

/// The standard operators that a person can insert, in the order in which palettes show them.
std::vector<StandardOperatorS> const& standardOperators();

/// Registers the standard operators with their words by name, by text and, those that can be inserted, by
/// key. A larger precedence binds looser. Where two operators share a text, the text is read as the later
/// one: "log" as the decimal logarithm, "d" as a variable.
void registerStandardOperators(math::ved::OperatorListC& operators);

}  // namespace zolt::catalogue
