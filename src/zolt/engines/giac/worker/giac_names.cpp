// SPDX-License-Identifier: GPL-3.0-or-later
#include "zolt/engines/giac/worker/giac_names.h"

namespace zolt::giac_worker {

using namespace giac;

namespace {

struct FunctionS {
  char16_t const* name;
  unary_function_ptr const* const* function;
  unsigned long arity;
  bool takesMore = false;
};

// Constructs and signs are the evaluator's.
FunctionS const functions[] = {{u"abs", &at_abs, 1},
                               {u"floor", &at_floor, 1},
                               {u"ceil", &at_ceil, 1},
                               {u"ln", &at_ln, 1},
                               {u"exp", &at_exp, 1},
                               {u"sin", &at_sin, 1},
                               {u"cos", &at_cos, 1},
                               {u"tan", &at_tan, 1},
                               {u"asin", &at_asin, 1},
                               {u"acos", &at_acos, 1},
                               {u"atan", &at_atan, 1},
                               {u"sinh", &at_sinh, 1},
                               {u"cosh", &at_cosh, 1},
                               {u"tanh", &at_tanh, 1},
                               {u"asinh", &at_asinh, 1},
                               {u"acosh", &at_acosh, 1},
                               {u"atanh", &at_atanh, 1},
                               {u"cot", &at_cot, 1},
                               {u"sec", &at_sec, 1},
                               {u"csc", &at_csc, 1},
                               {u"!", &at_factorial, 1},
                               {u"log10", &at_log10, 1},
                               {u"conj", &at_conj, 1},
                               {u"re", &at_re, 1},
                               {u"im", &at_im, 1},
                               {u"arg", &at_arg, 1},
                               {u"sign", &at_sign, 1},
                               {u"sgn", &at_sign, 1},
                               {u"gcd", &at_gcd, 2, true},
                               {u"lcm", &at_lcm, 2, true},
                               {u"min", &at_min, 2, true},
                               {u"max", &at_max, 2, true},
                               {u"binomial", &at_comb, 2},
                               {u"Gamma", &at_Gamma, 1},
                               {u"erf", &at_erf, 1},
                               {u"erfc", &at_erfc, 1},
                               {u"Si", &at_Si, 1},
                               {u"Ci", &at_Ci, 1},
                               {u"Ei", &at_Ei, 1},
                               {u"Beta", &at_Beta, 2},
                               {u"Zeta", &at_Zeta, 1},
                               {u"Psi", &at_Psi, 1},
                               {u"LambertW", &at_LambertW, 1}};

// What only results have.
FunctionS const written[] = {{u"=", &at_equal, 2},
                             {u"<>", &at_different, 2},
                             {u"<", &at_inferieur_strict, 2},
                             {u"<=", &at_inferieur_egal, 2},
                             {u">", &at_superieur_strict, 2},
                             {u">=", &at_superieur_egal, 2},
                             {u"and", &at_and, 0},
                             {u"or", &at_ou, 0},
                             {u"not", &at_not, 1},
                             {u"+", &at_plus, 0},
                             {u"*", &at_prod, 0},
                             {u"-", &at_binary_minus, 2},
                             {u"/", &at_division, 2},
                             {u"_neg", &at_neg, 1},
                             {u"_inv", &at_inv, 1},
                             {u"^", &at_pow, 2},
                             {u"sqrt", &at_sqrt, 1},
                             {u"nthroot", &at_surd, 2},
                             {u"nthroot", &at_NTHROOT, 2}};

std::string encode(wstring const& name) {
  static char const digits[] = "0123456789abcdef";
  std::string text;
  for (char16_t const c : name) {
    bool const isPlain = (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Y') || (c >= u'0' && c <= u'9');
    if (isPlain) {
      text += static_cast<char>(c);
      continue;
    }
    text += 'Z';
    for (int shift = 12; shift >= 0; shift -= 4) text += digits[(c >> shift) & 15];
  }
  return text;
}

gen const& truthOf(bool isTrue) {
  static gen const yes(identificateur("zv_true")), no(identificateur("zv_false"));
  return isTrue ? yes : no;
}

enum PartE { QUOTIENT, REMAINDER };

// a = b·(a div b) + a mod b, and a mod b is at least 0 and less than |b|.
gen divide(gen const& arguments, PartE part, unary_function_ptr const& function, context const* context) {
  if (arguments.type != _VECT || arguments._VECTptr->size() != 2) return gensizeerr(context);
  gen const a = eval(arguments._VECTptr->front(), 1, context),
            b = eval(arguments._VECTptr->back(), 1, context);
  if (!isReal(a) || !isReal(b)) return symbolic(function, gen(makevecteur(a, b), _SEQ__VECT));
  if (is_zero(b, context)) return undef;
  gen const size = abs(b, context);
  gen const quotient = _floor(rdiv(a, size, context), context);
  if (part == REMAINDER) return a - size * quotient;
  return is_positive(b, context) ? quotient : -quotient;
}

gen mod(gen const& arguments, context const* context) {
  return divide(arguments, REMAINDER, mod_function, context);
}
gen div(gen const& arguments, context const* context) {
  return divide(arguments, QUOTIENT, div_function, context);
}

unary_function_eval mod_evaluation(0, &mod, "zf_mod");
unary_function_eval div_evaluation(0, &div, "zf_div");

}  // namespace

unary_function_ptr const mod_function(&mod_evaluation, 0, false);
unary_function_ptr const div_function(&div_evaluation, 0, false);

gen GiacNamesC::find(wstring const& name) {
  auto const [found, isNew] = identifiers_.emplace(name, gen());
  if (isNew) {
    std::string const text = "zv" + encode(name);
    found->second = identificateur(text);
    names_[text] = name;
  }
  return found->second;
}

gen GiacNamesC::makeBound(wstring const& name) {
  // Terms are sorted by the names: that of the variable comes first.
  std::string const text = "zv" + encode(name) + "_" + std::to_string(++bound_);
  names_[text] = name;
  return identificateur(text);
}

bool GiacNamesC::findName(gen const& identifier, wstring& name) const {
  auto const found = names_.find(identifier._IDNTptr->id_name);
  if (found == names_.end()) return false;
  name = found->second;
  return true;
}

unary_function_ptr const* findFunction(wstring const& name, unsigned long arity) {
  static std::map<wstring, FunctionS const*> const byName = [] {
    std::map<wstring, FunctionS const*> all;
    for (FunctionS const& row : functions) all[row.name] = &row;
    return all;
  }();
  auto const found = byName.find(name);
  if (found == byName.end()) return nullptr;
  FunctionS const& row = *found->second;
  return row.arity == arity || (row.takesMore && arity > row.arity) ? *row.function : nullptr;
}

char16_t const* findName(unary_function_ptr const& function) {
  if (function == mod_function) return u"mod";
  if (function == div_function) return u"div";
  for (FunctionS const& row : written) {
    if (function == *row.function) return row.name;
  }
  for (FunctionS const& row : functions) {
    if (function == *row.function) return row.name;
  }
  return nullptr;
}

gen makeTruth(bool isTrue) { return truthOf(isTrue); }
bool isTruth(gen const& value, bool isTrue) { return value == truthOf(isTrue); }

bool isTruthValued(gen const& value) {
  if (isTruth(value, true) || isTruth(value, false)) return true;
  if (value.type != _SYMB) return false;
  unary_function_ptr const& function = value._SYMBptr->sommet;
  return function == at_equal || function == at_different || function == at_inferieur_strict ||
         function == at_inferieur_egal || function == at_superieur_strict || function == at_superieur_egal ||
         function == at_and || function == at_ou || function == at_not;
}

bool isExactReal(gen const& value) {
  bool const isFraction = value.type == _FRAC && value._FRACptr->num.is_integer();
  return value.is_integer() || (isFraction && value._FRACptr->den.is_integer());
}

bool isReal(gen const& value) { return isExactReal(value) || value.type == _DOUBLE_ || value.type == _REAL; }

}  // namespace zolt::giac_worker
