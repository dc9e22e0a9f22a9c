#include <algorithm>
#include <iterator>
#include <map>
#include <set>

#include "zolt/algexpr/cas_engine.h"
#include "zolt/engines/basic/detail/plan.h"

namespace zolt::engine_basic::detail {

namespace {

constexpr FunctionS functions[] = {{u"^", OP_POWER, 2, TYPE_NUMBER, TYPE_NUMBER},
                                   {u"sqrt", OP_SQRT, 1, TYPE_NUMBER, TYPE_NUMBER},
                                   {u"nthroot", OP_ROOT, 2, TYPE_NUMBER, TYPE_NUMBER},
                                   {u"div", OP_DIV, 2, TYPE_NUMBER, TYPE_NUMBER},
                                   {u"mod", OP_MOD, 2, TYPE_NUMBER, TYPE_NUMBER},
                                   {u"!", OP_FACTORIAL, 1, TYPE_NUMBER, TYPE_NUMBER},
                                   {u"abs", OP_ABS, 1, TYPE_NUMBER, TYPE_NUMBER},
                                   {u"floor", OP_FLOOR, 1, TYPE_NUMBER, TYPE_NUMBER},
                                   {u"ceil", OP_CEIL, 1, TYPE_NUMBER, TYPE_NUMBER},
                                   {u"log", OP_LOG, 2, TYPE_NUMBER, TYPE_NUMBER},
                                   {u"log10", OP_LOG10, 1, TYPE_NUMBER, TYPE_NUMBER},
                                   {u"ln", OP_LN, 1, TYPE_NUMBER, TYPE_NUMBER},
                                   {u"exp", OP_EXP, 1, TYPE_NUMBER, TYPE_NUMBER},
                                   {u"sin", OP_SIN, 1, TYPE_NUMBER, TYPE_NUMBER},
                                   {u"cos", OP_COS, 1, TYPE_NUMBER, TYPE_NUMBER},
                                   {u"tan", OP_TAN, 1, TYPE_NUMBER, TYPE_NUMBER},
                                   {u"asin", OP_ASIN, 1, TYPE_NUMBER, TYPE_NUMBER},
                                   {u"acos", OP_ACOS, 1, TYPE_NUMBER, TYPE_NUMBER},
                                   {u"atan", OP_ATAN, 1, TYPE_NUMBER, TYPE_NUMBER},
                                   {u"sinh", OP_SINH, 1, TYPE_NUMBER, TYPE_NUMBER},
                                   {u"cosh", OP_COSH, 1, TYPE_NUMBER, TYPE_NUMBER},
                                   {u"tanh", OP_TANH, 1, TYPE_NUMBER, TYPE_NUMBER},
                                   {u"_rad", OP_RAD, 1, TYPE_NUMBER, TYPE_NUMBER},
                                   {u"_deg", OP_DEG, 1, TYPE_NUMBER, TYPE_NUMBER},
                                   {u"=", OP_EQUAL, 2, TYPE_NUMBER, TYPE_TRUTH},
                                   {u"<>", OP_NOT_EQUAL, 2, TYPE_NUMBER, TYPE_TRUTH},
                                   {u"<", OP_LESS, 2, TYPE_NUMBER, TYPE_TRUTH},
                                   {u">", OP_GREATER, 2, TYPE_NUMBER, TYPE_TRUTH},
                                   {u"<=", OP_LESS_OR_EQUAL, 2, TYPE_NUMBER, TYPE_TRUTH},
                                   {u">=", OP_GREATER_OR_EQUAL, 2, TYPE_NUMBER, TYPE_TRUTH},
                                   {u"not", OP_NOT, 1, TYPE_TRUTH, TYPE_TRUTH},
                                   {u"and", OP_AND, 0, TYPE_TRUTH, TYPE_TRUTH},
                                   {u"or", OP_OR, 0, TYPE_TRUTH, TYPE_TRUTH},
                                   {u"sum", OP_TOTAL, 4, TYPE_NUMBER, TYPE_NUMBER},
                                   {u"integral", OP_INTEGRAL, 4, TYPE_NUMBER, TYPE_NUMBER},
                                   {u"diff", OP_DIFF, 2, TYPE_NUMBER, TYPE_NUMBER},
                                   {u"antiderivative", OP_ANTIDERIVATIVE, 2, TYPE_NUMBER, TYPE_NUMBER}};

}  // namespace

FunctionS const* findFunction(wstring const& name) {
  static auto const& byName = *new auto([] {
    std::map<wstring, FunctionS const*> known;
    for (FunctionS const& function : functions) known[function.name] = &function;
    return known;
  }());
  auto const found = byName.find(name);
  return found == byName.end() ? nullptr : found->second;
}

FunctionS const* findFunction(OpE op) {
  auto const* const found = std::find_if(std::begin(functions), std::end(functions),
                                         [op](FunctionS const& function) { return function.op == op; });
  return found == std::end(functions) ? nullptr : found;
}

bool isKnownFunction(wstring const& name) {
  static auto const& named = *new std::set<wstring>{
      u"asinh",    u"acosh",  u"atanh",     u"cot",     u"sec",      u"csc",    u"re",       u"im",
      u"arg",      u"sign",   u"sgn",       u"gcd",     u"lcm",      u"min",    u"max",      u"Gamma",
      u"erf",      u"erfc",   u"Si",        u"Ci",      u"Ei",       u"Beta",   u"Zeta",     u"Psi",
      u"LambertW", u"conj",   u"norm",      u"det",     u"percent",  u"limit",  u"pdiff",    u"diffn",
      u"pdiffn",   u"iff",    u"implies",   u"set",     u"binomial", u"cases",  u"matrix",   u"product",
      u"union",    u"in",     u"intersect", u"notin",   u"setminus", u"subset", u"permille", u"subseteq",
      u"interval", u"list",   u"to",        u"approx",  u"equiv",    u"propto", u"parallel", u"perp",
      u"sim",      u"simeq",  u"cong",      u"ll",      u"gg",       u"mapsto", u"supset",   u"supseteq",
      u"oplus",    u"otimes", u"given",     u"partial", u"nabla",    u"-+",     u"_negpos",  u"vec",
      u"hat",      u"dot",    u"index"};
  return named.count(name) > 0 || StandardEngineC().isCoreFunction(name);
}

}  // namespace zolt::engine_basic::detail
