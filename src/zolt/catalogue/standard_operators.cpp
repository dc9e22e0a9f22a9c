#include "zolt/catalogue/standard_operators.h"

#include <utility>

#include "zolt/common/signs.h"
#include "zolt/ved/operators/operator_bars.h"
#include "zolt/ved/operators/operator_binary_infix.h"
#include "zolt/ved/operators/operator_diff.h"
#include "zolt/ved/operators/operator_div.h"
#include "zolt/ved/operators/operator_error.h"
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
using namespace math::common;
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
constexpr bool core = true;

constexpr char16_t const* arithmetic = u"Arithmetic";
constexpr char16_t const* structures = u"Structures";
constexpr char16_t const* calculus = u"Calculus";
constexpr char16_t const* functions = u"Functions";
constexpr char16_t const* relations = u"Relations";
constexpr char16_t const* logic = u"Logic";

/// An operator's words, built in one expression.
struct WordsS : OperatorWordsS {
  WordsS(wstring groupTitle, wstring what) {
    group = std::move(groupTitle);
    title = std::move(what);
  }
  WordsS shown(wstring text) && { return label = std::move(text), std::move(*this); }
  WordsS typed(wstring text) && { return shortcut = std::move(text), std::move(*this); }
  WordsS known(std::vector<wstring> as) && { return aliases = std::move(as), std::move(*this); }
  WordsS indexed(wstring const& other) && { return indexedName = other, std::move(*this); }
  WordsS called(std::vector<NameS> others) && { return names = std::move(others), std::move(*this); }
  WordsS inserted(wstring by) && { return signs = std::move(by), std::move(*this); }
  WordsS made(std::vector<wstring> of) && { return signRuns = std::move(of), std::move(*this); }
  WordsS closed(char16_t by) && { return closingSign = by, std::move(*this); }
  WordsS equated(unsigned long row) && { return valueRow = row, std::move(*this); }
  WordsS bounded(unsigned long below) && {
    lowerRows = below;
    hasUpperRow = true;
    return std::move(*this);
  }
};

/// Takes the rows of the table in their order: registers the operators, gives each a code (its number in the
/// table, counted from 1) and lists those that can be inserted.
class TableC {
 public:
  TableC(OperatorListC& operators, std::vector<StandardOperatorS>& listed)
      : operators_(operators), listed_(listed) {
    fill();
  }

 private:
  void fill();

  int code() { return ++code_; }
  PointerTC<OperatorBC> infix(wstring const& name, wstring const& text, int precedence, bool isSpaced = false,
                              bool isAssociative = false) {
    return new OperatorBinaryInfixC(name, text, precedence, isSpaced, isAssociative, core, code());
  }
  PointerTC<OperatorBC> prefix(wstring const& name, wstring const& text, int precedence,
                               bool isSpaced = false) {
    return new OperatorUnaryPrefixC(name, text, precedence, isSpaced, core, code());
  }
  PointerTC<OperatorBC> power(wstring const& name, wstring const& exponent = {}) {
    return new OperatorPowerC(name, name, PRECEDENCE_POWER, exponent, !exponent.empty(), core, code());
  }
  PointerTC<OperatorBC> call(wstring const& name, wstring const& text, unsigned long arity) {
    return new OperatorBC(name, text, arity, PRECEDENCE_TIGHTEST, false, core, code());
  }
  template <class OperatorT>
  PointerTC<OperatorBC> construct(wstring const& name, wstring const& text) {
    return new OperatorT(name, text, core, code());
  }
  template <class OperatorT>
  PointerTC<OperatorBC> construct(wstring const& name, wstring const& text, int precedence) {
    return new OperatorT(name, text, precedence, core, code());
  }

  void add(StandardKeyE key, PointerTC<OperatorBC> op, OperatorWordsS words) {
    op->setWords(std::move(words));
    listed_.push_back({op->getName(), key});
    operators_.add(op);
    operators_.addKey(key, std::move(op));
  }
  void relation(StandardKeyE key, wstring const& name, wstring const& sign, OperatorWordsS words) {
    add(key, infix(name, sign, PRECEDENCE_RELATION), std::move(words));
  }
  void function(StandardKeyE key, wstring const& name, wstring const& title, wstring const& alias = {}) {
    std::vector<wstring> aliases;
    if (!alias.empty()) aliases.push_back(alias);
    add(key, call(name, name, 1), WordsS(functions, title).known(std::move(aliases)));
  }

  OperatorListC& operators_;
  std::vector<StandardOperatorS>& listed_;
  int code_ = 0;
};

void TableC::fill() {
  wstring const minus = {minus_sign};

  add(KEY_PLUS, infix(u"+", u"+", PRECEDENCE_SUM, !spaced, associative),
      WordsS(arithmetic, u"plus").known({u"add"}));
  add(KEY_MINUS, infix(u"-", minus, PRECEDENCE_SUM), WordsS(arithmetic, u"minus").known({u"subtract"}));
  // Products are associative, but a∙(b div c) must keep its brackets, so the operator is registered as not
  // associative.
  add(KEY_TIMES, infix(u"*", {times_sign}, PRECEDENCE_PRODUCT),
      WordsS(arithmetic, u"times").known({u"cdot", u"multiply", u"product"}).shown(u"·"));
  add(KEY_FRACTION, construct<OperatorDivC>(u"/", u"/"),
      WordsS(arithmetic, u"fraction").known({u"frac", u"dfrac", u"tfrac", u"over", u"divide"}).shown(u"a/b"));
  add(KEY_DIV, infix(u"div", u"div", PRECEDENCE_PRODUCT, spaced),
      WordsS(arithmetic, u"integer division").known({u"quotient"}));
  add(KEY_MOD, infix(u"mod", u"mod", PRECEDENCE_PRODUCT, spaced),
      WordsS(arithmetic, u"remainder").known({u"modulo", u"bmod"}));
  // These texts are read as the signs before an operand; the grammar knows the signs between two operands.
  add(KEY_POS, prefix(u"_pos", u"+", PRECEDENCE_SIGN),
      WordsS(arithmetic, u"plus sign").known({u"positive"}).typed(u"+"));
  add(KEY_NEG, prefix(u"_neg", minus, PRECEDENCE_SIGN),
      WordsS(arithmetic, u"minus sign").known({u"negative"}).typed(u"-"));
  add(KEY_FACTORIAL, new OperatorUnaryPostfixC(u"!", u"!", PRECEDENCE_FACTORIAL, core, code()),
      WordsS(arithmetic, u"factorial"));
  add(KEY_PI, call(u"_PI", {pi_sign}, 0), WordsS(arithmetic, u"pi").shown(u"π").typed(u"pi"));

  add(KEY_POWER, power(u"^"),
      WordsS(structures, u"power")
          .known({u"exponent", u"superscript"})
          .shown(u"xⁿ")
          .made({{times_sign, times_sign}}));
  add(KEY_SQRT, construct<OperatorSqrtC>(u"sqrt", u"√"),
      WordsS(structures, u"square root").known({u"radical"}).inserted(u"√").indexed(u"nthroot"));
  add(KEY_NTH_ROOT, construct<OperatorNthRootC>(u"nthroot", u"nthroot"),
      WordsS(structures, u"n-th root")
          .shown(u"ⁿ√")
          .typed(u"root(")
          .called({{u"root", {}}, {u"cbrt", u"3"}, {u"∛", u"3"}, {u"∜", u"4"}}));
  add(KEY_ABS, construct<OperatorAbsC>(u"abs", u"abs"),
      WordsS(structures, u"absolute value")
          .known({u"modulus", u"vert"})
          .shown(u"|x|")
          .typed(u"|")
          .inserted(u"|")
          .closed(u'|'));
  add(KEY_FLOOR, construct<OperatorFloorC>(u"floor", u"floor"),
      WordsS(structures, u"rounded down")
          .known({u"lfloor", u"rfloor"})
          .shown(u"⌊x⌋")
          .inserted(u"⌊")
          .closed(u'⌋'));
  add(KEY_CEIL, construct<OperatorCeilC>(u"ceil", u"ceil"),
      WordsS(structures, u"rounded up")
          .known({u"lceil", u"rceil"})
          .shown(u"⌈x⌉")
          .called({{u"ceiling", {}}})
          .inserted(u"⌈")
          .closed(u'⌉'));
  add(KEY_RAD, power(u"_rad", u"r"),
      WordsS(structures, u"radians").known({u"rad"}).shown(u"ʳ").typed(u"ʳ").inserted(u"ʳ"));
  add(KEY_DEG, power(u"_deg", u"o"),
      WordsS(structures, u"degrees").known({u"degree", u"circ"}).shown(u"°").typed(u"°").inserted(u"°"));
  add(KEY_LOG, construct<OperatorLogC>(u"log", u"log", PRECEDENCE_TIGHTEST),
      WordsS(structures, u"logarithm to a base").shown(u"logₙ").typed(u"log(x,"));

  add(KEY_DIFF, construct<OperatorDiffC>(u"diff", u"d", PRECEDENCE_DIFF),
      WordsS(calculus, u"derivative").shown(u"d/dx"));
  operators_.add(call(u"d", u"d", 0));
  add(KEY_INTEGRAL, construct<OperatorIntegralC>(u"integral", u"integral"),
      WordsS(calculus, u"definite integral")
          .shown(u"∫")
          .typed(u"int(")
          .called({{u"int", {}}, {u"integrate", {}}})
          .inserted(u"∫")
          .bounded(1));
  add(KEY_SUM, construct<OperatorSigmaC>(u"sum", u"sum"),
      WordsS(calculus, u"sum").known({u"sigma sign"}).shown(u"∑").inserted(u"∑").equated(1).bounded(2));
  add(KEY_WHERE, construct<OperatorWhereC>(u"where", u"where"),
      WordsS(calculus, u"value of a variable").known({u"at", u"substitute"}).shown(u"f|ₓ").equated(2));

  function(KEY_SIN, u"sin", u"sine");
  function(KEY_COS, u"cos", u"cosine");
  function(KEY_TAN, u"tan", u"tangent");
  function(KEY_ASIN, u"asin", u"arc sine", u"arcsin");
  function(KEY_ACOS, u"acos", u"arc cosine", u"arccos");
  function(KEY_ATAN, u"atan", u"arc tangent", u"arctan");
  function(KEY_SINH, u"sinh", u"hyperbolic sine");
  function(KEY_COSH, u"cosh", u"hyperbolic cosine");
  function(KEY_TANH, u"tanh", u"hyperbolic tangent");
  function(KEY_LN, u"ln", u"natural logarithm");
  add(KEY_LOG10, call(u"log10", u"log", 1),
      WordsS(functions, u"decimal logarithm").known({u"lg"}).typed(u"log("));
  function(KEY_EXP, u"exp", u"exponential function");

  relation(KEY_EQUAL, u"=", u"=", WordsS(relations, u"equal").known({u"eq"}).made({u"=="}));
  relation(KEY_NOT_EQUAL, u"<>", {not_equal_sign},
           WordsS(relations, u"not equal").known({u"ne", u"neq", u"unequal"}).made({u"<>", u"!="}));
  relation(KEY_LESS, u"<", u"<", WordsS(relations, u"less").known({u"lt"}));
  relation(KEY_GREATER, u">", u">", WordsS(relations, u"greater").known({u"gt"}));
  relation(KEY_LESS_OR_EQUAL, u"<=", {less_or_equal_sign},
           WordsS(relations, u"less or equal").known({u"le", u"leq", u"at most"}).made({u"<="}));
  relation(KEY_GREATER_OR_EQUAL, u">=", {greater_or_equal_sign},
           WordsS(relations, u"greater or equal").known({u"ge", u"geq", u"at least"}).made({u">="}));
  add(KEY_ASSIGN, infix(u":=", u":=", PRECEDENCE_ASSIGNMENT),
      WordsS(relations, u"assignment").known({u"define", u"coloneq"}).inserted(u"≔"));
  add(KEY_STORE, infix(u":>", {store_sign}, PRECEDENCE_ASSIGNMENT),
      WordsS(relations, u"store into")
          .known({u"to", u"arrow", u"rightarrow"})
          .made({u":>", {minus_sign, u'>'}})
          .inserted(u"→"));

  add(KEY_NOT, prefix(u"not", u"not", PRECEDENCE_NOT, spaced),
      WordsS(logic, u"not").known({u"neg", u"lnot"}).inserted(u"¬"));
  add(KEY_AND, infix(u"and", u"and", PRECEDENCE_AND, spaced, associative),
      WordsS(logic, u"and").known({u"land", u"wedge"}).inserted(u"∧&"));
  add(KEY_OR, infix(u"or", u"or", PRECEDENCE_OR, spaced, associative),
      WordsS(logic, u"or").known({u"lor", u"vee"}).inserted(u"∨"));

  // These are typed brackets: a call without a name shows them once and can be read back.
  operators_.add(call(u"_quietpos", {}, 1));
  operators_.add(construct<OperatorErrorC>(u"error", u"error"));

  add(KEY_INFINITY, call({infinity_sign}, {infinity_sign}, 0),
      WordsS(arithmetic, u"infinity").known({u"inf", u"infty", u"oo"}).typed(u"infinity"));
  // The text is one of two operators, like "+"; the one between operands is what a key inserts for both.
  operators_.add(prefix(u"_posneg", {plus_minus_sign}, PRECEDENCE_SIGN));
  add(KEY_PLUS_MINUS, infix(u"+-", {plus_minus_sign}, PRECEDENCE_SUM),
      WordsS(arithmetic, u"plus or minus").known({u"pm", u"plusminus"}).made({{u'+', minus_sign}}));
}

}  // namespace

std::vector<StandardOperatorS> const& standardOperators() {
  static std::vector<StandardOperatorS> const listed = [] {
    OperatorListC operators;
    std::vector<StandardOperatorS> rows;
    TableC(operators, rows);
    return rows;
  }();
  return listed;
}

void registerStandardOperators(OperatorListC& operators) {
  std::vector<StandardOperatorS> listed;
  TableC(operators, listed);
}

}  // namespace zolt::catalogue
