#include "zolt/exchange/detail/plain_notation.h"

#include <algorithm>
#include <array>
#include <iterator>

namespace zolt::exchange::detail {

namespace {

constexpr InfixS infixes[] = {
    {u"+", u"+", RULE_SUM, RULE_SUM, RULE_PRODUCT},
    {u"-", u"-", RULE_SUM, RULE_SUM, RULE_PRODUCT},
    {u"*", u"*", RULE_PRODUCT, RULE_PRODUCT, RULE_SIGN},
    {u"/", u"/", RULE_PRODUCT, RULE_PRODUCT, RULE_SIGN},
    {u"div", u" div ", RULE_PRODUCT, RULE_PRODUCT, RULE_SIGN},
    {u"mod", u" mod ", RULE_PRODUCT, RULE_PRODUCT, RULE_SIGN},
    {u"^", u"^", RULE_POWER, RULE_POSTFIX, RULE_POWER},
    {u"=", u" = ", RULE_RELATION, RULE_RELATION, RULE_SUM},
    {u"<>", u" <> ", RULE_RELATION, RULE_RELATION, RULE_SUM},
    {u"<", u" < ", RULE_RELATION, RULE_RELATION, RULE_SUM},
    {u"<=", u" <= ", RULE_RELATION, RULE_RELATION, RULE_SUM},
    {u">", u" > ", RULE_RELATION, RULE_RELATION, RULE_SUM},
    {u">=", u" >= ", RULE_RELATION, RULE_RELATION, RULE_SUM},
    {u"and", u" and ", RULE_AND, RULE_AND, RULE_NOT},
    {u"or", u" or ", RULE_OR, RULE_OR, RULE_AND},
    {u":=", u" := ", RULE_ASSIGNMENT, RULE_OR, RULE_OR},
    {u":>", u" :> ", RULE_ASSIGNMENT, RULE_OR, RULE_OR},
};

// Of several ways to write one function the first is preferred.
constexpr FunctionS functions[] = {
    {u"abs", 1, u"abs", {}},      {u"acos", 1, u"acos", {}},       {u"arccos", 1, u"acos", {}},
    {u"arcsin", 1, u"asin", {}},  {u"arctan", 1, u"atan", {}},     {u"asin", 1, u"asin", {}},
    {u"atan", 1, u"atan", {}},    {u"cbrt", 1, u"nthroot", u"3"},  {u"ceil", 1, u"ceil", {}},
    {u"ceiling", 1, u"ceil", {}}, {u"cos", 1, u"cos", {}},         {u"cosh", 1, u"cosh", {}},
    {u"diff", 2, u"diff", {}},    {u"error", 0, u"error", {}},     {u"exp", 1, u"exp", {}},
    {u"floor", 1, u"floor", {}},  {u"int", 4, u"integral", {}},    {u"integral", 4, u"integral", {}},
    {u"ln", 1, u"ln", {}},        {u"log", 1, u"log10", {}},       {u"log", 2, u"log", {}},
    {u"log10", 1, u"log10", {}},  {u"nthroot", 2, u"nthroot", {}}, {u"root", 2, u"nthroot", {}},
    {u"sin", 1, u"sin", {}},      {u"sinh", 1, u"sinh", {}},       {u"sqrt", 1, u"sqrt", {}},
    {u"sum", 4, u"sum", {}},      {u"tan", 1, u"tan", {}},         {u"tanh", 1, u"tanh", {}},
    {u"where", 3, u"where", {}},
};

struct PairS {
  std::u16string_view name;
  std::u16string_view other;
};

constexpr PairS inverses[] = {{u"sin", u"asin"}, {u"cos", u"acos"}, {u"tan", u"atan"}};

constexpr PairS greek_letters[] = {
    {u"alpha", u"α"},  {u"beta", u"β"},   {u"gamma", u"γ"}, {u"delta", u"δ"},   {u"epsilon", u"ε"},
    {u"zeta", u"ζ"},   {u"eta", u"η"},    {u"theta", u"θ"}, {u"iota", u"ι"},    {u"kappa", u"κ"},
    {u"lambda", u"λ"}, {u"mu", u"μ"},     {u"nu", u"ν"},    {u"xi", u"ξ"},      {u"omicron", u"ο"},
    {u"rho", u"ρ"},    {u"sigma", u"σ"},  {u"tau", u"τ"},   {u"upsilon", u"υ"}, {u"phi", u"φ"},
    {u"chi", u"χ"},    {u"psi", u"ψ"},    {u"omega", u"ω"}, {u"Gamma", u"Γ"},   {u"Delta", u"Δ"},
    {u"Theta", u"Θ"},  {u"Lambda", u"Λ"}, {u"Xi", u"Ξ"},    {u"Sigma", u"Σ"},   {u"Upsilon", u"Υ"},
    {u"Phi", u"Φ"},    {u"Psi", u"Ψ"},    {u"Omega", u"Ω"}};

constexpr std::u16string_view words[] = {u"and", u"or", u"not", u"mod", u"div"};
constexpr std::u16string_view pis[] = {u"pi", u"Pi"};

template <class TableT, class TestT>
auto find(TableT const& table, TestT test) {
  auto const* const found = std::find_if(std::begin(table), std::end(table), test);
  return found == std::end(table) ? nullptr : found;
}

std::u16string_view findOther(PairS const* pair) { return pair ? pair->other : std::u16string_view(); }

bool takes(FunctionS const& function, unsigned long numArguments) {
  return function.numArguments == 0 || function.numArguments == numArguments;
}

}  // namespace

InfixS const* findInfix(std::u16string_view name) {
  return find(infixes, [&](InfixS const& infix) { return infix.name == name; });
}

bool isFunction(std::u16string_view written) {
  return find(functions, [&](FunctionS const& function) { return function.written == written; });
}

FunctionS const* findFunction(std::u16string_view written, unsigned long numArguments) {
  return find(functions, [&](FunctionS const& function) {
    return function.written == written && takes(function, numArguments);
  });
}

FunctionS const* findWritten(std::u16string_view name, unsigned long numArguments) {
  return find(functions, [&](FunctionS const& function) {
    return function.name == name && function.addedArgument.empty() && takes(function, numArguments);
  });
}

std::u16string_view findInverse(std::u16string_view written) {
  return findOther(find(inverses, [&](PairS const& pair) { return pair.name == written; }));
}

bool isWord(std::u16string_view name) {
  return std::find(std::begin(words), std::end(words), name) != std::end(words);
}

bool isPi(std::u16string_view name) {
  return std::find(std::begin(pis), std::end(pis), name) != std::end(pis);
}

std::u16string_view findGreekLetter(std::u16string_view name) {
  return findOther(find(greek_letters, [&](PairS const& pair) { return pair.name == name; }));
}

}  // namespace zolt::exchange::detail
