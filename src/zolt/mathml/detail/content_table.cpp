#include "zolt/mathml/detail/content_table.h"

#include <algorithm>
#include <deque>
#include <map>
#include <utility>
#include <vector>

#include "zolt/mathml/content_operator.h"

namespace zolt::mathml::detail {

using TextT = std::u16string_view;

namespace {

// The first row of an operator is written, the first row of an element read.
constexpr ContentRowS rows[] = {{u"+", CONTENT_CHAIN, 2, u"plus"},
                                {u"-", CONTENT_APPLY, 2, u"minus"},
                                {u"_neg", CONTENT_APPLY, 1, u"minus"},
                                {u"*", CONTENT_CHAIN, 2, u"times"},
                                {u"/", CONTENT_APPLY, 2, u"divide"},
                                {u"^", CONTENT_APPLY, 2, u"power"},
                                {u"div", CONTENT_APPLY, 2, u"quotient"},
                                {u"mod", CONTENT_APPLY, 2, u"rem"},
                                {u"!", CONTENT_APPLY, 1, u"factorial"},
                                {u"=", CONTENT_CHAIN, 2, u"eq"},
                                {u"<>", CONTENT_APPLY, 2, u"neq"},
                                {u"<", CONTENT_CHAIN, 2, u"lt"},
                                {u"<=", CONTENT_CHAIN, 2, u"leq"},
                                {u">", CONTENT_CHAIN, 2, u"gt"},
                                {u">=", CONTENT_CHAIN, 2, u"geq"},
                                {u"not", CONTENT_APPLY, 1, u"not"},
                                {u"and", CONTENT_CHAIN, 2, u"and"},
                                {u"or", CONTENT_CHAIN, 2, u"or"},
                                {u"implies", CONTENT_APPLY, 2, u"implies"},
                                {u"iff", CONTENT_CHAIN, 2, u"equivalent"},
                                {u"approx", CONTENT_APPLY, 2, u"approx"},
                                {u"to", CONTENT_APPLY, 2, u"tendsto"},
                                {u"in", CONTENT_APPLY, 2, u"in"},
                                {u"notin", CONTENT_APPLY, 2, u"notin"},
                                {u"subset", CONTENT_CHAIN, 2, u"prsubset"},
                                {u"subseteq", CONTENT_CHAIN, 2, u"subset"},
                                {u"union", CONTENT_CHAIN, 2, u"union"},
                                {u"intersect", CONTENT_CHAIN, 2, u"intersect"},
                                {u"setminus", CONTENT_APPLY, 2, u"setdiff"},
                                {u"equiv", CONTENT_SYMBOL, 2, {}},
                                {u"propto", CONTENT_SYMBOL, 2, {}},
                                {u"sim", CONTENT_SYMBOL, 2, {}},
                                {u"simeq", CONTENT_SYMBOL, 2, {}},
                                {u"cong", CONTENT_SYMBOL, 2, {}},
                                {u"ll", CONTENT_SYMBOL, 2, {}},
                                {u"gg", CONTENT_SYMBOL, 2, {}},
                                {u"mapsto", CONTENT_SYMBOL, 2, {}},
                                {u"supset", CONTENT_SYMBOL, 2, {}},
                                {u"supseteq", CONTENT_SYMBOL, 2, {}},
                                {u"oplus", CONTENT_SYMBOL, 2, {}},
                                {u"otimes", CONTENT_SYMBOL, 2, {}},
                                {u"given", CONTENT_SYMBOL, 2, {}},
                                {u"parallel", CONTENT_SYMBOL, 2, {}},
                                {u"perp", CONTENT_SYMBOL, 2, {}},
                                {u"-+", CONTENT_SYMBOL, 2, {}},
                                {u"_negpos", CONTENT_SYMBOL, 1, {}},
                                {u"percent", CONTENT_SYMBOL, 1, {}},
                                {u"permille", CONTENT_SYMBOL, 1, {}},
                                {u"nabla", CONTENT_APPLY, 1, u"grad"},
                                {u"partial", CONTENT_SYMBOL, 1, {}},
                                {u"where", CONTENT_SYMBOL, 3, {}},
                                {u"_PI", CONTENT_CONSTANT, 0, u"pi"},
                                {u"∞", CONTENT_CONSTANT, 0, u"infinity"},
                                {u"ℝ", CONTENT_CONSTANT, 0, u"reals"},
                                {u"ℂ", CONTENT_CONSTANT, 0, u"complexes"},
                                {u"ℕ", CONTENT_CONSTANT, 0, u"naturalnumbers"},
                                {u"ℤ", CONTENT_CONSTANT, 0, u"integers"},
                                {u"ℚ", CONTENT_CONSTANT, 0, u"rationals"},
                                {u"ℙ", CONTENT_CONSTANT, 0, u"primes"},
                                {u"∅", CONTENT_CONSTANT, 0, u"emptyset"},
                                {u"sqrt", CONTENT_ROOT, 1, u"root"},
                                {u"nthroot", CONTENT_ROOT, 2, u"root"},
                                {u"log10", CONTENT_LOGARITHM, 1, u"log"},
                                {u"log", CONTENT_LOGARITHM, 2, u"log"},
                                {u"abs", CONTENT_APPLY, 1, u"abs"},
                                {u"floor", CONTENT_APPLY, 1, u"floor"},
                                {u"ceil", CONTENT_APPLY, 1, u"ceiling"},
                                {u"conj", CONTENT_APPLY, 1, u"conjugate"},
                                {u"arg", CONTENT_APPLY, 1, u"arg"},
                                {u"Re", CONTENT_APPLY, 1, u"real"},
                                {u"Im", CONTENT_APPLY, 1, u"imaginary"},
                                {u"gcd", CONTENT_APPLY, 0, u"gcd"},
                                {u"lcm", CONTENT_APPLY, 0, u"lcm"},
                                {u"min", CONTENT_APPLY, 0, u"min"},
                                {u"max", CONTENT_APPLY, 0, u"max"},
                                {u"ln", CONTENT_APPLY, 1, u"ln"},
                                {u"exp", CONTENT_APPLY, 1, u"exp"},
                                {u"sin", CONTENT_APPLY, 1, u"sin"},
                                {u"cos", CONTENT_APPLY, 1, u"cos"},
                                {u"tan", CONTENT_APPLY, 1, u"tan"},
                                {u"cot", CONTENT_APPLY, 1, u"cot"},
                                {u"sec", CONTENT_APPLY, 1, u"sec"},
                                {u"csc", CONTENT_APPLY, 1, u"csc"},
                                {u"asin", CONTENT_APPLY, 1, u"arcsin"},
                                {u"acos", CONTENT_APPLY, 1, u"arccos"},
                                {u"atan", CONTENT_APPLY, 1, u"arctan"},
                                {u"acot", CONTENT_APPLY, 1, u"arccot"},
                                {u"asec", CONTENT_APPLY, 1, u"arcsec"},
                                {u"acsc", CONTENT_APPLY, 1, u"arccsc"},
                                {u"sinh", CONTENT_APPLY, 1, u"sinh"},
                                {u"cosh", CONTENT_APPLY, 1, u"cosh"},
                                {u"tanh", CONTENT_APPLY, 1, u"tanh"},
                                {u"coth", CONTENT_APPLY, 1, u"coth"},
                                {u"sech", CONTENT_APPLY, 1, u"sech"},
                                {u"csch", CONTENT_APPLY, 1, u"csch"},
                                {u"asinh", CONTENT_APPLY, 1, u"arcsinh"},
                                {u"acosh", CONTENT_APPLY, 1, u"arccosh"},
                                {u"atanh", CONTENT_APPLY, 1, u"arctanh"},
                                {u"acoth", CONTENT_APPLY, 1, u"arccoth"},
                                {u"asech", CONTENT_APPLY, 1, u"arcsech"},
                                {u"acsch", CONTENT_APPLY, 1, u"arccsch"},
                                {u"sum", CONTENT_RANGE, 4, u"sum", u"0123"},
                                {u"product", CONTENT_RANGE, 4, u"product", u"0123"},
                                {u"integral", CONTENT_RANGE, 4, u"int", u"3012"},
                                {u"antiderivative", CONTENT_PRIMITIVE, 2, u"int"},
                                {u"limit", CONTENT_LIMIT, 3, u"limit"},
                                {u"limit", CONTENT_LIMIT, 4, u"limit"},
                                {u"diff", CONTENT_DERIVATIVE, 2, u"diff"},
                                {u"diffn", CONTENT_DERIVATIVE, 3, u"diff"},
                                {u"pdiff", CONTENT_DERIVATIVE, 2, u"partialdiff"},
                                {u"pdiffn", CONTENT_DERIVATIVE, 3, u"partialdiff"},
                                {u"binomial", CONTENT_SYMBOL, 2, u"combinat1"},
                                {u"norm", CONTENT_SYMBOL, 1, u"linalg2"},
                                {u"vec", CONTENT_SYMBOL, 1, {}},
                                {u"hat", CONTENT_SYMBOL, 1, {}},
                                {u"dot", CONTENT_SYMBOL, 1, {}},
                                {u"index", CONTENT_APPLY, 0, u"selector"},
                                {u"transpose", CONTENT_APPLY, 1, u"transpose"},
                                {u"scalarproduct", CONTENT_APPLY, 2, u"scalarproduct"},
                                {u"vectorproduct", CONTENT_APPLY, 2, u"vectorproduct"},
                                {u"outerproduct", CONTENT_APPLY, 2, u"outerproduct"},
                                {u"divergence", CONTENT_APPLY, 1, u"divergence"},
                                {u"curl", CONTENT_APPLY, 1, u"curl"},
                                {u"laplacian", CONTENT_APPLY, 1, u"laplacian"},
                                {u"card", CONTENT_APPLY, 1, u"card"},
                                {u"mean", CONTENT_APPLY, 0, u"mean"},
                                {u"median", CONTENT_APPLY, 0, u"median"},
                                {u"mode", CONTENT_APPLY, 0, u"mode"},
                                {u"sdev", CONTENT_APPLY, 0, u"sdev"},
                                {u"variance", CONTENT_APPLY, 0, u"variance"},
                                {u"xor", CONTENT_APPLY, 0, u"xor"},
                                {u"matrix", CONTENT_MATRIX, 0, u"matrix"},
                                {u"det", CONTENT_DETERMINANT, 0, u"determinant"},
                                {u"cases", CONTENT_CASES, 0, u"piecewise"},
                                {u"set", CONTENT_CONTAINER, 0, u"set"},
                                {u"list", CONTENT_CONTAINER, 0, u"list"},
                                {u"interval", CONTENT_INTERVAL, 4, u"interval"}};

// Only read.
constexpr ContentRowS others[] = {{u"e", CONTENT_CONSTANT, 0, u"exponentiale"},
                                  {u"i", CONTENT_CONSTANT, 0, u"imaginaryi"},
                                  {u"true", CONTENT_CONSTANT, 0, u"true"},
                                  {u"false", CONTENT_CONSTANT, 0, u"false"},
                                  {u"γ", CONTENT_CONSTANT, 0, u"eulergamma"}};

using RowsT = std::vector<ContentRowS const*>;

/// What is looked up, the better row first.
struct IndexS {
  IndexS() {
    for (ContentRowS const& row : rows) {
      byName[row.name].push_back(&row);
      if (row.kind == CONTENT_CONSTANT) constants[row.element].push_back(&row);
      if (row.kind != CONTENT_CONSTANT && row.kind != CONTENT_SYMBOL) operators[row.element].push_back(&row);
    }
    for (ContentRowS const& row : others) constants[row.element].push_back(&row);
  }

  std::map<TextT, RowsT> byName;
  std::map<TextT, RowsT> constants;  // by element
  std::map<TextT, RowsT> operators;  // by element
  std::map<TextT, RowsT> symbols;    // of dictionaries, by symbol
  std::deque<ContentOperatorS> added;
  std::deque<ContentRowS> addedRows;
};

IndexS& index() {
  static IndexS tables;
  return tables;
}

/// The first row of a key that fits; null when there is none.
template <class FitT>
ContentRowS const* find(std::map<TextT, RowsT> const& table, TextT key, FitT fits) {
  auto const found = table.find(key);
  if (found == table.end()) return nullptr;
  auto const row =
      std::find_if(found->second.begin(), found->second.end(), [&](auto const* one) { return fits(*one); });
  return row == found->second.end() ? nullptr : *row;
}

}  // namespace

ContentRowS const* findContent(TextT name, unsigned long numOperands) {
  return find(index().byName, name, [&](ContentRowS const& row) {
    return row.kind == CONTENT_CONSTANT ? numOperands == 0
           : row.arity == 0             ? numOperands > 0
                                        : row.arity == numOperands;
  });
}

ContentRowS const* findContentElement(TextT element, unsigned long numOperands) {
  return find(index().operators, element, [&](ContentRowS const& row) {
    bool const isChain = row.kind == CONTENT_CHAIN && numOperands > 0;
    return isChain || row.arity == 0 || row.arity == numOperands || row.kind > CONTENT_SYMBOL;
  });
}

bool isContentOperator(TextT element) { return index().operators.count(element) > 0; }

TextT findContentConstant(TextT element) {
  auto const* const row = find(index().constants, element, [](ContentRowS const&) { return true; });
  return row ? row->name : TextT();
}

TextT findContentSymbol(TextT symbol, TextT dictionary, unsigned long numOperands) {
  auto const* const row = find(index().symbols, symbol, [&](ContentRowS const& one) {
    return one.element == dictionary && one.arity == numOperands;
  });
  return row ? row->name : symbol;
}

}  // namespace zolt::mathml::detail

namespace zolt::mathml {

using namespace detail;

void registerContentOperator(ContentOperatorS op) {
  IndexS& all = index();
  ContentOperatorS const& kept = all.added.emplace_back(std::move(op));
  bool const isSymbol = !kept.dictionary.empty();
  ContentKindE const kind = kept.arity == 0 ? CONTENT_CONSTANT : isSymbol ? CONTENT_SYMBOL : CONTENT_APPLY;
  ContentRowS const& row = all.addedRows.emplace_back(ContentRowS{kept.name,
                                                                  kind,
                                                                  kept.arity,
                                                                  isSymbol ? kept.dictionary : kept.element,
                                                                  {},
                                                                  isSymbol ? kept.element : TextT()});
  auto const putFirst = [&](RowsT& known) { known.insert(known.begin(), &row); };
  putFirst(all.byName[row.name]);
  auto& table = isSymbol ? all.symbols : kept.arity == 0 ? all.constants : all.operators;
  putFirst(table[kept.element]);
}

}  // namespace zolt::mathml
