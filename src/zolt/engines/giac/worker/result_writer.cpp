// SPDX-License-Identifier: GPL-3.0-or-later
#include "zolt/engines/giac/worker/result_writer.h"

#include <mpfr.h>

#include <algorithm>
#include <utility>
#include <vector>

#include "zolt/algexpr/make_node.h"
#include "zolt/common/decimal_text.h"
#include "zolt/common/signs.h"
#include "zolt/engines/giac/worker/evaluator.h"

namespace zolt::giac_worker {

using namespace giac;
using namespace math::algexpr;

namespace {

constexpr unsigned long most_nodes = 200000;
wstring const minus = {math::common::minus_sign};

wstring widen(char const* text) { return {text, text + std::char_traits<char>::length(text)}; }

}  // namespace

wstring writeWhole(gen const& value) {
  if (value.type == _INT_) {
    wstring const text =
        widen(std::to_string(value.val < 0 ? -static_cast<long>(value.val) : value.val).c_str());
    return value.val < 0 ? minus + text : text;
  }
  mpz_t const& number = *value._ZINTptr;
  std::vector<char> text(mpz_sizeinbase(number, 10) + 2);
  mpz_get_str(text.data(), 10, number);
  return text[0] == '-' ? minus + widen(text.data() + 1) : widen(text.data());
}

bool isDecimal(gen const& value, unsigned long mostDigits, wstring& text) {
  if (value.is_integer()) {
    text = writeWhole(value);
    std::size_t const last = text.find_last_not_of(u'0');
    return last == text.npos || last < mostDigits;
  }
  gen rest = value._FRACptr->den, above = value._FRACptr->num;
  std::int64_t places = 0;
  for (int const prime : {2, 5}) {
    std::int64_t count = 0;
    for (gen quotient; is_zero(irem(rest, prime, quotient)); ++count) rest = iquo(rest, prime);
    if (count > places) {
      if (static_cast<unsigned long>(count) > mostDigits + 1000) return false;
      places = count;
    }
  }
  if (!is_one(rest)) return false;
  above = above * pow(gen(10), static_cast<int>(places));
  above = iquo(above, value._FRACptr->den);
  bool const isNegative = !is_positive(above, nullptr);
  wstring digits = writeWhole(isNegative ? -above : above);
  if (digits.size() > mostDigits) return false;
  std::int64_t const exponent = static_cast<std::int64_t>(digits.size()) - places;
  text = math::common::writeDecimal({std::move(digits), exponent});
  if (isNegative) text = minus + text;
  return true;
}

wstring writeRounded(gen const& value, unsigned digits) {
  mpfr_t number;
  if (value.type == _REAL) {
    mpfr_init2(number, mpfr_get_prec(value._REALptr->inf));
    mpfr_set(number, value._REALptr->inf, MPFR_RNDN);
  } else {
    mpfr_init2(number, 53);
    mpfr_set_d(number, value._DOUBLE_val, MPFR_RNDN);
  }
  mpfr_exp_t exponent = 0;
  wstring text = u"0";
  if (mpfr_number_p(number) && !mpfr_zero_p(number)) {
    char* const all = mpfr_get_str(nullptr, &exponent, 10, digits < 2 ? 2 : digits, number, MPFR_RNDN);
    math::common::DecimalS decimal{widen(all[0] == '-' ? all + 1 : all), exponent};
    math::common::roundDecimal(decimal, digits);
    text = math::common::writeDecimal(std::move(decimal));
    if (all[0] == '-') text = minus + text;
    mpfr_free_str(all);
  }
  mpfr_clear(number);
  // A rounded number shows that it is one.
  return text.find_first_of(u".E") == text.npos ? text + u".0" : text;
}

ResultWriterC::NodeP ResultWriterC::write(gen const& value) {
  left_ = most_nodes;
  return writeNode(value);
}

ResultWriterC::NodeP ResultWriterC::writeNode(gen const& value) {
  if (left_ == 0) return nullptr;
  --left_;
  if (value == plus_inf) return makeNamed({math::common::infinity_sign});
  if (value == minus_inf) return makeFunction(u"_neg", {makeNamed({math::common::infinity_sign})});
  switch (value.type) {
    case _INT_:
    case _ZINT:
      return makeNumber(writeWhole(value));
    case _FRAC:
      return writeFraction(value);
    case _CPLX: {
      gen const real = *value._CPLXptr, imaginary = *(value._CPLXptr + 1);
      NodeP const part = makeFunction(u"*", {writeNode(imaginary), makeNamed(u"i")});
      return is_zero(real) ? part : makeFunction(u"+", {writeNode(real), part});
    }
    case _IDNT:
      return writeIdentifier(value);
    case _SYMB:
      return writeFunction(value);
    case _VECT:
      return writeList(value);
    default:
      return nullptr;
  }
}

ResultWriterC::NodeP ResultWriterC::writeFraction(gen const& value) {
  constexpr unsigned long most_digits = 10000;
  if (!isExactReal(value)) {
    NodeP const below = makeFunction(u"_inv", {writeNode(value._FRACptr->den)});
    return makeFunction(u"*", {writeNode(value._FRACptr->num), below});
  }
  wstring text;
  if (fractions_ == FRACTIONS_AS_DECIMALS && isDecimal(value, most_digits, text)) return makeNumber(text);
  return makeFunction(u"/", {writeNode(value._FRACptr->num), writeNode(value._FRACptr->den)});
}

ResultWriterC::NodeP ResultWriterC::writeIdentifier(gen const& value) {
  if (value == cst_pi) return makeNamed(u"_PI");
  if (isTruth(value, true) || isTruth(value, false))
    return makeNamed(isTruth(value, true) ? u"true" : u"false");
  wstring name;
  return names_.findName(value, name) ? makeNamed(name) : nullptr;
}

ResultWriterC::NodeP ResultWriterC::writeCall(wstring const& name, vecteur const& arguments) {
  std::vector<NodeP> nodes;
  for (gen const& argument : arguments) {
    nodes.push_back(writeNode(argument));
    if (!nodes.back()) return nullptr;
  }
  return makeFunction(name, std::move(nodes));
}

// A whole power of a root is one power, and one of a negative is that of its size; null for any other.
ResultWriterC::NodeP ResultWriterC::writePowerOf(gen const& base, gen const& exponent) {
  if (base.type != _SYMB || exponent.type != _INT_) return nullptr;
  gen const& inside = base._SYMBptr->feuille;
  if (base._SYMBptr->sommet == at_neg) {
    NodeP const power = writeCall(u"^", makevecteur(inside, exponent));
    return exponent.val % 2 == 0 ? power : makeFunction(u"_neg", {power});
  }
  bool const isRoot = base._SYMBptr->sommet == at_pow && inside.type == _VECT &&
                      inside._VECTptr->size() == 2 && inside._VECTptr->back().type == _FRAC;
  if (!isRoot) return nullptr;
  gen const product = inside._VECTptr->back() * exponent;
  return product.type == _FRAC ? writeCall(u"^", makevecteur(inside._VECTptr->front(), product)) : nullptr;
}

namespace {

struct PowerS {
  gen base;
  gen exponent;
};

PowerS readPower(gen const& factor) {
  if (factor.type == _SYMB && factor._SYMBptr->sommet == at_inv) {
    PowerS const below = readPower(factor._SYMBptr->feuille);
    return {below.base, -below.exponent};
  }
  bool const isPower = factor.type == _SYMB && factor._SYMBptr->sommet == at_pow &&
                       factor._SYMBptr->feuille.type == _VECT &&
                       factor._SYMBptr->feuille._VECTptr->size() == 2;
  if (!isPower) return {factor, 1};
  vecteur const& parts = *factor._SYMBptr->feuille._VECTptr;
  // A power of a root is one of a power.
  PowerS const inside = readPower(parts[0]);
  bool const isOfRoot = parts[1].type == _INT_ && inside.exponent.type == _FRAC;
  return isOfRoot ? PowerS{inside.base, inside.exponent * parts[1]} : PowerS{parts[0], parts[1]};
}

// The algebra system splits x^(5/3) into x·x^(2/3). A square root stays a root, and numbers stay out of it.
void joinPowers(vecteur& factors) {
  for (gen& factor : factors) {
    PowerS const root = readPower(factor);
    bool const isRoot =
        root.exponent.type == _FRAC && root.exponent._FRACptr->den != gen(2) && isExactReal(root.exponent);
    if (!isRoot || isExactReal(root.base)) continue;
    bool const isAbove = is_positive(root.exponent, nullptr);
    auto const whole = std::find_if(factors.begin(), factors.end(), [&](gen const& other) {
      PowerS const power = readPower(other);
      return power.exponent.type == _INT_ && (power.exponent.val > 0) == isAbove && power.base == root.base;
    });
    if (whole == factors.end()) continue;
    gen const exponent = root.exponent + readPower(*whole).exponent;
    factor = symbolic(at_pow, gen(makevecteur(root.base, exponent), _SEQ__VECT));
    factors.erase(whole);
    return joinPowers(factors);
  }
}

bool isNegative(gen const& term) {
  if (isExactReal(term)) return is_strictly_positive(-term, nullptr);
  if (term.type != _SYMB) return false;
  gen const& operand = term._SYMBptr->feuille;
  if (term._SYMBptr->sommet == at_neg) return true;
  return term._SYMBptr->sommet == at_prod && operand.type == _VECT && !operand._VECTptr->empty() &&
         isNegative(operand._VECTptr->front());
}

// Makes a sum of negative terms one of positive terms. False, with nothing changed, for anything else, and
// for one with roots, which as a solution is written beside the one with the other root.
bool dropSign(gen& factor) {
  bool const isSum =
      factor.type == _SYMB && factor._SYMBptr->sommet == at_plus && factor._SYMBptr->feuille.type == _VECT;
  if (!isSum || hasRoot(factor)) return false;
  vecteur terms = *factor._SYMBptr->feuille._VECTptr;
  if (!std::all_of(terms.begin(), terms.end(), isNegative)) return false;
  for (gen& term : terms) term = -term;
  factor = symbolic(at_plus, gen(terms, _SEQ__VECT));
  return true;
}

}  // namespace

ResultWriterC::NodeP ResultWriterC::writeFunction(gen const& value) {
  unary_function_ptr const& function = value._SYMBptr->sommet;
  gen const& operand = value._SYMBptr->feuille;
  vecteur arguments =
      operand.type == _VECT && operand.subtype != _MATRIX__VECT && operand.subtype != _SET__VECT
          ? *operand._VECTptr
          : vecteur(1, operand);
  if (function == at_of && arguments.size() == 2 && arguments[0].type == _IDNT) {
    wstring name;
    if (!names_.findName(arguments[0], name)) return nullptr;
    gen const& inside = arguments[1];
    bool const isSequence = inside.type == _VECT && inside.subtype == _SEQ__VECT;
    return writeCall(name, isSequence ? *inside._VECTptr : vecteur(1, inside));
  }
  if (function == at_derive) {
    bool const isFirst = arguments.size() == 2;
    return isFirst || arguments.size() == 3 ? writeCall(isFirst ? u"diff" : u"diffn", arguments) : nullptr;
  }
  if (function == at_pow && arguments.size() == 2) {
    if (NodeP const power = writePowerOf(arguments[0], arguments[1])) return power;
  }
  if (function == at_prod) {
    joinPowers(arguments);
    auto const negative = std::find_if(arguments.begin(), arguments.end(), dropSign);
    if (negative != arguments.end()) {
      NodeP const product = writeNode(symbolic(at_prod, gen(arguments, _SEQ__VECT)));
      return product ? makeFunction(u"_neg", {product}) : nullptr;
    }
  }
  if (function == at_prod && arguments.size() == 1) return writeNode(arguments[0]);
  bool const isInDegrees = angle_ == CAS_DEGREES && arguments.size() == 1;
  bool const takesAngle = function == at_sin || function == at_cos || function == at_tan ||
                          function == at_cot || function == at_sec || function == at_csc;
  if (isInDegrees && takesAngle) arguments[0] = normal(arguments[0] * gen(180) / cst_pi, nullptr);
  char16_t const* const name = findName(function);
  if (!name) return nullptr;
  // This one has its index first.
  if (function == at_NTHROOT && arguments.size() == 2) std::swap(arguments[0], arguments[1]);
  return writeCall(name, arguments);
}

ResultWriterC::NodeP ResultWriterC::writeList(gen const& value) {
  vecteur const& all = *value._VECTptr;
  if (value.subtype == _SET__VECT && all.empty()) return makeNamed(u"∅");
  if (all.empty()) return nullptr;
  bool const isTable = value.subtype != _SET__VECT && value.subtype != _LIST__VECT && ckmatrix(value);
  if (!isTable) return writeCall(value.subtype == _SET__VECT ? u"set" : u"list", all);
  std::vector<NodeP> rows;
  for (gen const& row : all) {
    rows.push_back(writeCall(u"list", *row._VECTptr));
    if (!rows.back()) return nullptr;
  }
  return makeFunction(u"matrix", std::move(rows));
}

}  // namespace zolt::giac_worker
