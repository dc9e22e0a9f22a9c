#pragma once

#include <cstdint>
#include <string_view>

namespace zolt::mathml::detail {

/// The shape in which content MathML has an operator.
enum ContentKindE : std::uint8_t {
  CONTENT_APPLY,     ///< the element before its operands
  CONTENT_CHAIN,     ///< the same; more than two operands are read from the left
  CONTENT_CONSTANT,  ///< the element alone
  CONTENT_SYMBOL,    ///< a "csymbol" before its operands
  CONTENT_ROOT,
  CONTENT_LOGARITHM,
  CONTENT_RANGE,  ///< with a variable and bounds: a sum, an integral
  CONTENT_PRIMITIVE,
  CONTENT_LIMIT,
  CONTENT_DERIVATIVE,
  CONTENT_CONTAINER,  ///< the element around its members
  CONTENT_MATRIX,
  CONTENT_DETERMINANT,
  CONTENT_CASES,
  CONTENT_INTERVAL
};

/// How content MathML writes an operator of the expression library: the row of this table for an operator.
struct ContentRowS {
  std::u16string_view name;  ///< the name in the expression library
  ContentKindE kind;
  unsigned long arity;          ///< 0: one or more; of kinds with rules of their own, all that they may have
  std::u16string_view element;  ///< of a symbol, its content dictionary, perhaps none
  std::u16string_view order = {};   ///< which operand is the variable, the bounds and the rest: "0123"
  std::u16string_view symbol = {};  ///< of a symbol or constant with a dictionary; empty: the name
};

/// The row that an operator with so many operands is written with; null when there is none.
ContentRowS const* findContent(std::u16string_view name, unsigned long numOperands);
/// The row that an element with so many operands means; null when there is none.
ContentRowS const* findContentElement(std::u16string_view element, unsigned long numOperands);
/// Whether the element is an operator of content MathML.
bool isContentOperator(std::u16string_view element);
/// The name that an element without operands means, ∞ for "infinity"; empty for any other.
std::u16string_view findContentConstant(std::u16string_view element);
/// The name that a symbol of a dictionary before so many operands, perhaps none, means: its own where no row
/// has it.
std::u16string_view findContentSymbol(std::u16string_view symbol, std::u16string_view dictionary,
                                      unsigned long numOperands);

}  // namespace zolt::mathml::detail
