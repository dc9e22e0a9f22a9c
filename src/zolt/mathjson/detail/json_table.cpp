#include "zolt/mathjson/detail/json_table.h"

#include <algorithm>
#include <deque>
#include <map>
#include <vector>

#include "zolt/mathjson/mathjson_operator.h"

namespace zolt::mathjson::detail {

namespace {

// The table has one row for each form of an operator; the first of an operator is the one that is written.
constexpr JsonRowS rows[] = {{u"+", JSON_CHAIN, 2, u"Add"},
                             {u"-", JSON_CHAIN, 2, u"Subtract"},
                             {u"*", JSON_CHAIN, 2, u"Multiply", u"InvisibleOperator"},
                             {u"/", JSON_CHAIN, 2, u"Divide", u"Rational"},
                             {u"div", JSON_PLAIN, 2, u"Quotient"},
                             {u"mod", JSON_PLAIN, 2, u"Mod"},
                             {u"_neg", JSON_PLAIN, 1, u"Negate"},
                             {u"+-", JSON_PLAIN, 2, u"PlusMinus"},
                             {u"_posneg", JSON_PLAIN, 1, u"PlusMinus"},
                             {u"-+", JSON_PLAIN, 2, u"MinusPlus"},
                             {u"_negpos", JSON_PLAIN, 1, u"MinusPlus"},
                             {u"^", JSON_PLAIN, 2, u"Power"},
                             {u"!", JSON_PLAIN, 1, u"Factorial"},
                             {u"_deg", JSON_PLAIN, 1, u"Degrees", u"Degree"},
                             {u"_rad", JSON_PLAIN, 1, u"Radians"},
                             {u"percent", JSON_PLAIN, 1, u"Percent"},
                             {u"permille", JSON_PLAIN, 1, u"PerMille"},
                             {u"=", JSON_CHAIN, 2, u"Equal"},
                             {u"<>", JSON_CHAIN, 2, u"NotEqual", u"Unequal"},
                             {u"<", JSON_CHAIN, 2, u"Less"},
                             {u"<=", JSON_CHAIN, 2, u"LessEqual"},
                             {u">", JSON_CHAIN, 2, u"Greater"},
                             {u">=", JSON_CHAIN, 2, u"GreaterEqual"},
                             {u"approx", JSON_CHAIN, 2, u"ApproxEqual", u"Approx"},
                             {u"equiv", JSON_CHAIN, 2, u"Congruent"},
                             {u"propto", JSON_PLAIN, 2, u"Proportional"},
                             {u"parallel", JSON_PLAIN, 2, u"Parallel"},
                             {u"perp", JSON_PLAIN, 2, u"Perpendicular"},
                             {u"to", JSON_PLAIN, 2, u"To"},
                             {u"in", JSON_PLAIN, 2, u"Element"},
                             {u"notin", JSON_PLAIN, 2, u"NotElement"},
                             {u"subset", JSON_CHAIN, 2, u"Subset"},
                             {u"subseteq", JSON_CHAIN, 2, u"SubsetEqual"},
                             {u"union", JSON_CHAIN, 2, u"Union"},
                             {u"intersect", JSON_CHAIN, 2, u"Intersection"},
                             {u"setminus", JSON_CHAIN, 2, u"SetMinus"},
                             {u"not", JSON_PLAIN, 1, u"Not"},
                             {u"and", JSON_CHAIN, 2, u"And"},
                             {u"or", JSON_CHAIN, 2, u"Or"},
                             {u"implies", JSON_CHAIN, 2, u"Implies"},
                             {u"iff", JSON_CHAIN, 2, u"Equivalent"},
                             {u":=", JSON_PLAIN, 2, u"Assign"},
                             {u":>", JSON_PLAIN, 2, u"Store"},
                             {u"_quietpos", JSON_PLAIN, 1, u"Delimiter"},
                             {u"_PI", JSON_CONSTANT, 0, u"Pi", u"π"},
                             {u"∞", JSON_CONSTANT, 0, u"PositiveInfinity"},
                             {u"∅", JSON_CONSTANT, 0, u"EmptySet"},
                             {u"ℝ", JSON_CONSTANT, 0, u"RealNumbers"},
                             {u"ℂ", JSON_CONSTANT, 0, u"ComplexNumbers"},
                             {u"ℕ", JSON_CONSTANT, 0, u"NonNegativeIntegers"},
                             {u"ℤ", JSON_CONSTANT, 0, u"Integers"},
                             {u"ℚ", JSON_CONSTANT, 0, u"RationalNumbers"},
                             {u"_neg(∞)", JSON_READ_AS, 0, {}, u"NegativeInfinity"},
                             {u"e", JSON_READ_AS, 0, {}, u"ExponentialE"},
                             {u"i", JSON_READ_AS, 0, {}, u"ImaginaryUnit"},
                             {u"/(1,2)", JSON_READ_AS, 0, {}, u"Half"},
                             {u"^(#,2)", JSON_READ_AS, 1, {}, u"Square"},
                             {u"log(#,2)", JSON_READ_AS, 1, {}, u"Lb"},
                             {u"sqrt", JSON_PLAIN, 1, u"Sqrt"},
                             {u"nthroot", JSON_PLAIN, 2, u"Root"},
                             {u"abs", JSON_PLAIN, 1, u"Abs"},
                             {u"floor", JSON_PLAIN, 1, u"Floor"},
                             {u"ceil", JSON_PLAIN, 1, u"Ceil"},
                             {u"norm", JSON_PLAIN, 1, u"Norm"},
                             {u"log10", JSON_PLAIN, 1, u"Log"},
                             {u"log", JSON_PLAIN, 2, u"Log"},
                             {u"ln", JSON_PLAIN, 1, u"Ln"},
                             {u"exp", JSON_PLAIN, 1, u"Exp"},
                             {u"sin", JSON_PLAIN, 1, u"Sin"},
                             {u"cos", JSON_PLAIN, 1, u"Cos"},
                             {u"tan", JSON_PLAIN, 1, u"Tan"},
                             {u"cot", JSON_PLAIN, 1, u"Cot"},
                             {u"sec", JSON_PLAIN, 1, u"Sec"},
                             {u"csc", JSON_PLAIN, 1, u"Csc"},
                             {u"asin", JSON_PLAIN, 1, u"Arcsin"},
                             {u"acos", JSON_PLAIN, 1, u"Arccos"},
                             {u"atan", JSON_PLAIN, 1, u"Arctan"},
                             {u"acot", JSON_PLAIN, 1, u"Arccot"},
                             {u"asec", JSON_PLAIN, 1, u"Arcsec"},
                             {u"acsc", JSON_PLAIN, 1, u"Arccsc"},
                             {u"sinh", JSON_PLAIN, 1, u"Sinh"},
                             {u"cosh", JSON_PLAIN, 1, u"Cosh"},
                             {u"tanh", JSON_PLAIN, 1, u"Tanh"},
                             {u"coth", JSON_PLAIN, 1, u"Coth"},
                             {u"sech", JSON_PLAIN, 1, u"Sech"},
                             {u"csch", JSON_PLAIN, 1, u"Csch"},
                             {u"asinh", JSON_PLAIN, 1, u"Arsinh"},
                             {u"acosh", JSON_PLAIN, 1, u"Arcosh"},
                             {u"atanh", JSON_PLAIN, 1, u"Artanh"},
                             {u"acoth", JSON_PLAIN, 1, u"Arcoth"},
                             {u"asech", JSON_PLAIN, 1, u"Arsech"},
                             {u"acsch", JSON_PLAIN, 1, u"Arcsch"},
                             {u"gcd", JSON_PLAIN, 0, u"GCD"},
                             {u"lcm", JSON_PLAIN, 0, u"LCM"},
                             {u"min", JSON_PLAIN, 0, u"Min"},
                             {u"max", JSON_PLAIN, 0, u"Max"},
                             {u"sup", JSON_PLAIN, 0, u"Supremum"},
                             {u"inf", JSON_PLAIN, 0, u"Infimum"},
                             {u"arg", JSON_PLAIN, 1, u"Arg", u"Argument"},
                             {u"Re", JSON_PLAIN, 1, u"Real"},
                             {u"Im", JSON_PLAIN, 1, u"Imaginary"},
                             {u"sum", JSON_SUM, 4, u"Sum"},
                             {u"product", JSON_SUM, 4, u"Product"},
                             {u"integral", JSON_INTEGRAL, 4, u"Integrate"},
                             {u"antiderivative", JSON_PRIMITIVE, 2, u"Integrate"},
                             {u"limit", JSON_LIMIT, 3, u"Limit"},
                             {u"limit", JSON_LIMIT, 4, u"Limit"},
                             {u"where", JSON_WHERE, 3, u"EvaluateAt"},
                             {u"diff", JSON_DERIVATIVE, 2, u"D"},
                             {u"diffn", JSON_ORDER, 3, u"D"},
                             {u"pdiff", JSON_DERIVATIVE, 2, u"PartialDerivative"},
                             {u"pdiffn", JSON_ORDER, 3, u"PartialDerivative"},
                             {u"nabla", JSON_PLAIN, 1, u"Nabla", u"Gradient"},
                             {u"partial", JSON_PLAIN, 1, u"Partial"},
                             {u"binomial", JSON_PLAIN, 2, u"Binomial", u"Choose"},
                             {u"index", JSON_PLAIN, 0, u"At", u"Subscript"},
                             {u"conj", JSON_PLAIN, 1, u"Conjugate", u"OverBar"},
                             {u"vec", JSON_PLAIN, 1, u"OverVector"},
                             {u"hat", JSON_PLAIN, 1, u"OverHat"},
                             {u"dot", JSON_PLAIN, 1, u"OverDot"},
                             {u"list", JSON_PLAIN, 0, u"List"},
                             {u"matrix", JSON_MATRIX, 0, u"Matrix"},
                             {u"det", JSON_ROWS, 0, u"Determinant"},
                             {u"cases", JSON_CASES, 0, u"Which"},
                             {u"set", JSON_PLAIN, 0, u"Set"},
                             {u"interval", JSON_INTERVAL, 4, u"Interval"}};

struct ReadingS {
  std::u16string_view text;
  JsonRowS const* row;
};

/// The tables, sorted for looking up.
struct IndexS {
  IndexS() {
    for (JsonRowS const& row : rows) {
      if (!row.written.empty()) byName[row.name].push_back(&row);
      add(row);
    }
  }

  void add(JsonRowS const& row) {
    if (!row.written.empty()) byText[row.written].push_back(&row);
    std::u16string_view rest = row.read;
    while (!rest.empty()) {
      std::u16string_view const text = rest.substr(0, rest.find(u' '));
      byText[text].push_back(&row);
      rest.remove_prefix(std::min(text.size() + 1, rest.size()));
    }
  }

  using RowsT = std::vector<JsonRowS const*>;
  std::map<std::u16string_view, RowsT> byName;
  std::map<std::u16string_view, RowsT> byText;
  std::deque<MathJsonOperatorS> added;
  std::deque<JsonRowS> addedRows;
};

IndexS& index() {
  static IndexS tables;
  return tables;
}

}  // namespace

JsonRowS const* findJson(std::u16string_view name, unsigned long numOperands) {
  auto const found = index().byName.find(name);
  if (found == index().byName.end()) return nullptr;
  for (JsonRowS const* const row : found->second) {
    bool const isAny = row->arity == 0 && row->shape != JSON_CONSTANT;
    if (isAny ? numOperands > 0 : row->arity == numOperands) return row;
  }
  return nullptr;
}

JsonRowS const* findJsonReading(std::u16string_view text, JsonRowS const* after) {
  auto const found = index().byText.find(text);
  if (found == index().byText.end()) return nullptr;
  auto next = found->second.begin();
  if (after) next = std::find(next, found->second.end(), after) + 1;
  return next == found->second.end() ? nullptr : *next;
}

bool needsJsonPrefix(std::u16string_view name) {
  return findJsonReading(name) || name.substr(0, verbatim_prefix.size()) == verbatim_prefix;
}

}  // namespace zolt::mathjson::detail

namespace zolt::mathjson {

using namespace detail;

void registerMathJsonOperator(MathJsonOperatorS op) {
  IndexS& all = index();
  MathJsonOperatorS const& kept = all.added.emplace_back(std::move(op));
  JsonShapeE const shape = kept.arity == 0 ? JSON_CONSTANT : JSON_PLAIN;
  JsonRowS const& row = all.addedRows.emplace_back(JsonRowS{kept.name, shape, kept.arity, kept.written});
  auto const putFirst = [&](IndexS::RowsT& known) { known.insert(known.begin(), &row); };
  putFirst(all.byName[row.name]);
  putFirst(all.byText[row.written]);
  for (oss::wstring const& text : kept.read) putFirst(all.byText[text]);
}

}  // namespace zolt::mathjson
