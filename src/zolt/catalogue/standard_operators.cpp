#include "zolt/catalogue/standard_operators.h"

#include "zolt/ved/operators/operator_abs.h"
#include "zolt/ved/operators/operator_binary_infix.h"
#include "zolt/ved/operators/operator_ceil.h"
#include "zolt/ved/operators/operator_diff.h"
#include "zolt/ved/operators/operator_div.h"
#include "zolt/ved/operators/operator_error.h"
#include "zolt/ved/operators/operator_floor.h"
#include "zolt/ved/operators/operator_integral.h"
#include "zolt/ved/operators/operator_log.h"
#include "zolt/ved/operators/operator_nth_root.h"
#include "zolt/ved/operators/operator_power.h"
#include "zolt/ved/operators/operator_sigma.h"
#include "zolt/ved/operators/operator_sqrt.h"
#include "zolt/ved/operators/operator_unary_postfix.h"
#include "zolt/ved/operators/operator_unary_prefix.h"
#include "zolt/ved/operators/operator_where.h"

namespace zolt::catalogue {

using namespace math::ved;
using oss::wstring;

namespace {

enum PrecedenceE {
  PRECEDENCE_TIGHTEST = 0,
  PRECEDENCE_FACTORIAL = 5,
  PRECEDENCE_POWER = 10,
  PRECEDENCE_DIFF = 15,
  PRECEDENCE_SIGN = 20,
  PRECEDENCE_PRODUCT = 30,
  PRECEDENCE_SUM = 40,
  PRECEDENCE_RELATION = 50,
  PRECEDENCE_NOT = 60,
  PRECEDENCE_AND = 70,
  PRECEDENCE_OR = 80,
  PRECEDENCE_ASSIGNMENT = 90,
};

constexpr bool spaced = true;
constexpr bool associative = true;

/// Makes the operators and gives each a code: its place in the order of registration, from 1 on.
class RegistrarC {
 public:
  explicit RegistrarC(OperatorListC& operators) : operators_(operators) {}

  void infix(wstring const& name, wstring const& text, int precedence, bool isSpaced, bool isAssociative) {
    add(new OperatorBinaryInfixC(name, text, precedence, isSpaced, isAssociative, true, ++code_));
  }
  void prefix(wstring const& name, wstring const& text, int precedence, bool isSpaced) {
    add(new OperatorUnaryPrefixC(name, text, precedence, isSpaced, true, ++code_));
  }
  void postfix(wstring const& name, wstring const& text, int precedence) {
    add(new OperatorUnaryPostfixC(name, text, precedence, true, ++code_));
  }
  void power(wstring const& name, wstring const& fixedExponent) {
    add(new OperatorPowerC(name, name, PRECEDENCE_POWER, fixedExponent, !fixedExponent.empty(), true,
                           ++code_));
  }
  void call(wstring const& name, wstring const& text, unsigned long arity) {
    add(new OperatorBC(name, text, arity, PRECEDENCE_TIGHTEST, false, true, ++code_));
  }
  template <class OperatorT>
  void construct(wstring const& name, wstring const& text) {
    add(new OperatorT(name, text, true, ++code_));
  }
  template <class OperatorT>
  void construct(wstring const& name, wstring const& text, int precedence) {
    add(new OperatorT(name, text, precedence, true, ++code_));
  }

 private:
  void add(PointerTC<OperatorBC> op) { operators_.add(std::move(op)); }

  OperatorListC& operators_;
  int code_ = 0;
};

void registerSigns(RegistrarC& registrar) {
  registrar.infix(u"+", u"+", PRECEDENCE_SUM, !spaced, associative);
  registrar.infix(u"-", u"\u2212", PRECEDENCE_SUM, !spaced, !associative);
  // Not associative, although it is: a∙(b div c) must keep its brackets.
  registrar.infix(u"*", u"\u2219", PRECEDENCE_PRODUCT, !spaced, !associative);
  registrar.infix(u"div", u"div", PRECEDENCE_PRODUCT, spaced, !associative);
  registrar.infix(u"mod", u"mod", PRECEDENCE_PRODUCT, spaced, !associative);
  registrar.prefix(u"_pos", u"+", PRECEDENCE_SIGN, !spaced);
  registrar.prefix(u"_neg", u"\u2212", PRECEDENCE_SIGN, !spaced);
  registrar.power(u"^", wstring());
  registrar.power(u"_rad", u"r");
  registrar.power(u"_deg", u"o");
  registrar.postfix(u"!", u"!", PRECEDENCE_FACTORIAL);
  registrar.infix(u"=", u"=", PRECEDENCE_RELATION, !spaced, !associative);
  registrar.infix(u"<>", u"\u2260", PRECEDENCE_RELATION, !spaced, !associative);
  registrar.infix(u"<", u"<", PRECEDENCE_RELATION, !spaced, !associative);
  registrar.infix(u">", u">", PRECEDENCE_RELATION, !spaced, !associative);
  registrar.infix(u"<=", u"\u2264", PRECEDENCE_RELATION, !spaced, !associative);
  registrar.infix(u">=", u"\u2265", PRECEDENCE_RELATION, !spaced, !associative);
  registrar.prefix(u"not", u"not", PRECEDENCE_NOT, spaced);
  registrar.infix(u"and", u"and", PRECEDENCE_AND, spaced, associative);
  registrar.infix(u"or", u"or", PRECEDENCE_OR, spaced, associative);
  registrar.infix(u":=", u":=", PRECEDENCE_ASSIGNMENT, !spaced, !associative);
  registrar.infix(u":>", u"\u00BB", PRECEDENCE_ASSIGNMENT, !spaced, !associative);
}

void registerConstructs(RegistrarC& registrar) {
  // Typed brackets: a call without a name shows them once and reads back.
  registrar.call(u"_quietpos", wstring(), 1);
  registrar.call(u"_PI", u"\u0960", 0);
  registrar.construct<OperatorDivC>(u"/", u"/");
  registrar.construct<OperatorSqrtC>(u"sqrt", u"\u221A");
  registrar.construct<OperatorNthRootC>(u"nthroot", u"nthroot");
  registrar.construct<OperatorAbsC>(u"abs", u"abs");
  registrar.construct<OperatorFloorC>(u"floor", u"floor");
  registrar.construct<OperatorCeilC>(u"ceil", u"ceil");
  registrar.construct<OperatorLogC>(u"log", u"log", PRECEDENCE_TIGHTEST);
  registrar.call(u"log10", u"log", 1);
  registrar.construct<OperatorDiffC>(u"diff", u"d", PRECEDENCE_DIFF);
  registrar.call(u"d", u"d", 0);
  registrar.construct<OperatorIntegralC>(u"integral", u"integral");
  registrar.construct<OperatorSigmaC>(u"sum", u"sum");
  registrar.construct<OperatorWhereC>(u"where", u"where");
  registrar.construct<OperatorErrorC>(u"error", u"error");
  for (char16_t const* name :
       {u"sin", u"cos", u"tan", u"asin", u"acos", u"atan", u"sinh", u"cosh", u"tanh", u"ln", u"exp"}) {
    registrar.call(name, name, 1);
  }
}

}  // namespace

std::vector<StandardOperatorS> const& standardOperators() {
  static std::vector<StandardOperatorS> const operators = {
      {u"+", KEY_PLUS, GROUP_ARITHMETIC, u"plus"},
      {u"-", KEY_MINUS, GROUP_ARITHMETIC, u"minus"},
      {u"*", KEY_TIMES, GROUP_ARITHMETIC, u"times"},
      {u"/", KEY_FRACTION, GROUP_ARITHMETIC, u"fraction"},
      {u"div", KEY_DIV, GROUP_ARITHMETIC, u"integer division"},
      {u"mod", KEY_MOD, GROUP_ARITHMETIC, u"remainder"},
      {u"_pos", KEY_POS, GROUP_ARITHMETIC, u"plus sign"},
      {u"_neg", KEY_NEG, GROUP_ARITHMETIC, u"minus sign"},
      {u"!", KEY_FACTORIAL, GROUP_ARITHMETIC, u"factorial"},
      {u"_PI", KEY_PI, GROUP_ARITHMETIC, u"pi"},
      {u"^", KEY_POWER, GROUP_CONSTRUCT, u"power"},
      {u"sqrt", KEY_SQRT, GROUP_CONSTRUCT, u"square root"},
      {u"nthroot", KEY_NTH_ROOT, GROUP_CONSTRUCT, u"n-th root"},
      {u"abs", KEY_ABS, GROUP_CONSTRUCT, u"absolute value"},
      {u"floor", KEY_FLOOR, GROUP_CONSTRUCT, u"rounded down"},
      {u"ceil", KEY_CEIL, GROUP_CONSTRUCT, u"rounded up"},
      {u"_rad", KEY_RAD, GROUP_CONSTRUCT, u"radians"},
      {u"_deg", KEY_DEG, GROUP_CONSTRUCT, u"degrees"},
      {u"log", KEY_LOG, GROUP_CONSTRUCT, u"logarithm to a base"},
      {u"diff", KEY_DIFF, GROUP_CALCULUS, u"derivative"},
      {u"integral", KEY_INTEGRAL, GROUP_CALCULUS, u"definite integral"},
      {u"sum", KEY_SUM, GROUP_CALCULUS, u"sum"},
      {u"where", KEY_WHERE, GROUP_CALCULUS, u"value of a variable"},
      {u"=", KEY_EQUAL, GROUP_RELATION, u"equal"},
      {u"<>", KEY_NOT_EQUAL, GROUP_RELATION, u"not equal"},
      {u"<", KEY_LESS, GROUP_RELATION, u"less"},
      {u">", KEY_GREATER, GROUP_RELATION, u"greater"},
      {u"<=", KEY_LESS_OR_EQUAL, GROUP_RELATION, u"less or equal"},
      {u">=", KEY_GREATER_OR_EQUAL, GROUP_RELATION, u"greater or equal"},
      {u":=", KEY_ASSIGN, GROUP_RELATION, u"assignment"},
      {u":>", KEY_STORE, GROUP_RELATION, u"store into"},
      {u"not", KEY_NOT, GROUP_LOGIC, u"not"},
      {u"and", KEY_AND, GROUP_LOGIC, u"and"},
      {u"or", KEY_OR, GROUP_LOGIC, u"or"},
      {u"sin", KEY_SIN, GROUP_FUNCTION, u"sine"},
      {u"cos", KEY_COS, GROUP_FUNCTION, u"cosine"},
      {u"tan", KEY_TAN, GROUP_FUNCTION, u"tangent"},
      {u"asin", KEY_ASIN, GROUP_FUNCTION, u"arc sine"},
      {u"acos", KEY_ACOS, GROUP_FUNCTION, u"arc cosine"},
      {u"atan", KEY_ATAN, GROUP_FUNCTION, u"arc tangent"},
      {u"sinh", KEY_SINH, GROUP_FUNCTION, u"hyperbolic sine"},
      {u"cosh", KEY_COSH, GROUP_FUNCTION, u"hyperbolic cosine"},
      {u"tanh", KEY_TANH, GROUP_FUNCTION, u"hyperbolic tangent"},
      {u"ln", KEY_LN, GROUP_FUNCTION, u"natural logarithm"},
      {u"log10", KEY_LOG10, GROUP_FUNCTION, u"decimal logarithm"},
      {u"exp", KEY_EXP, GROUP_FUNCTION, u"exponential function"},
  };
  return operators;
}

void registerStandardOperators(OperatorListC& operators) {
  RegistrarC registrar(operators);
  registerSigns(registrar);
  registerConstructs(registrar);
  for (StandardOperatorS const& entry : standardOperators()) {
    operators.addKey(entry.key, operators.lookup(entry.name));
  }
}

}  // namespace zolt::catalogue
