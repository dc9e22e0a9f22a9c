#pragma once

#include <cstdint>
#include <vector>

#include "zolt/engines/basic/detail/rational.h"
#include "zolt/engines/basic/detail/watch.h"

namespace zolt::engine_basic::detail {

/// What a step computes from its operands.
enum OpE : std::uint8_t {
  OP_NUMBER,  ///< `index` in the plan's numbers
  OP_PI,
  OP_INFINITY,
  OP_TRUE,
  OP_FALSE,
  OP_NAME,     ///< without a value; `index` in the plan's names
  OP_SLOT,     ///< the variable of a loop; `index` is the slot
  OP_SUM,      ///< of any number of operands, the flagged ones subtracted
  OP_PRODUCT,  ///< the flagged ones divided by
  OP_POWER,
  OP_SQRT,
  OP_ROOT,
  OP_DIV,
  OP_MOD,
  OP_FACTORIAL,
  OP_ABS,
  OP_FLOOR,
  OP_CEIL,
  OP_LOG,
  OP_LOG10,
  OP_LN,
  OP_EXP,
  OP_SIN,
  OP_COS,
  OP_TAN,
  OP_ASIN,
  OP_ACOS,
  OP_ATAN,
  OP_SINH,
  OP_COSH,
  OP_TANH,
  OP_RAD,
  OP_DEG,
  OP_EQUAL,
  OP_NOT_EQUAL,
  OP_LESS,
  OP_GREATER,
  OP_LESS_OR_EQUAL,
  OP_GREATER_OR_EQUAL,
  OP_NOT,
  OP_AND,
  OP_OR,
  // Constructs with a variable: a step that begins the body, whose `index` is the slot and whose `end` is the
  // number of the step after the body, which has the construct itself. The operands are those of the
  // beginning, and then the body.
  OP_BEGIN,
  OP_TOTAL,     ///< from, to, body
  OP_INTEGRAL,  ///< lower, upper, body
  OP_DIFF,      ///< the variable's value outside, body
  OP_ANTIDERIVATIVE,
};

enum TypeE : std::uint8_t { TYPE_NUMBER, TYPE_TRUTH, TYPE_ANY };

struct OperandS {
  std::uint32_t step = 0;
  bool isFlagged = false;
  unsigned long part = 0;  ///< of the sign that flags it
};

struct StepS {
  OpE op = OP_NUMBER;
  TypeE type = TYPE_NUMBER;
  std::uint32_t first = 0;  ///< of its operands
  std::uint32_t count = 0;
  std::uint32_t index = 0;
  std::uint32_t end = 0;
  unsigned long part = 0;  ///< of the request's expression
};

/// An expression as steps, each after its operands: a loop over them evaluates it, without recursion. What a
/// name stands for is in the place of the name.
struct PlanS {
  std::vector<StepS> steps;
  std::vector<OperandS> operands;
  std::vector<RationalC> numbers;
  std::vector<wstring> names;
  /// The names of the loops' variables, by slot. A slot belongs to a name and to how deep its loop nests.
  std::vector<wstring> slots;
  std::uint32_t result = 0;  ///< the step that is the value of the whole
  bool hasDecimals = false;  ///< a number has a point or an exponent
  bool needsTerms = false;   ///< something in it is not computed with numbers
  bool hasInfinity = false;

  OperandS const& operand(StepS const& step, std::uint32_t i) const { return operands[step.first + i]; }
};

/// How the engine knows a function: its step, and what its operands and its value are.
struct FunctionS {
  char16_t const* name;
  OpE op;
  std::uint8_t arity;  ///< 0: one or more
  TypeE operands;
  TypeE type;
};
/// Null when the engine does not know it.
FunctionS const* findFunction(wstring const& name);
FunctionS const* findFunction(OpE op);
/// Whether an engine with more algebra, or what lowers tables and sets, has such a function: every construct
/// of the catalogues, and what mathematics has by name.
bool isKnownFunction(wstring const& name);

/// Makes the plan of an expression. False, with the watch's fault, when it is none for this engine.
[[nodiscard]] bool makePlan(NodeABC const& expression, CASDefinitionsC const* definitions, WatchC& watch,
                            PlanS& plan);

}  // namespace zolt::engine_basic::detail
