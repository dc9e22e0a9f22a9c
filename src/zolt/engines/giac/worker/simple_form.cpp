// SPDX-License-Identifier: GPL-3.0-or-later
#include "zolt/engines/giac/worker/simple_form.h"

#include <algorithm>

#include "zolt/engines/giac/worker/evaluator.h"

namespace zolt::giac_worker {

using namespace giac;

namespace {

/// Whether terms of a sum, or factors of a product, are the same.
bool hasEqualTerms(gen const& value) {
  gen const& operand = value._SYMBptr->feuille;
  unary_function_ptr const& function = value._SYMBptr->sommet;
  if ((function != at_plus && function != at_prod) || operand.type != _VECT) return false;
  vecteur const& terms = *operand._VECTptr;
  constexpr std::size_t most_compared = 30;
  if (terms.size() > most_compared) return false;
  for (std::size_t i = 0; i < terms.size(); ++i) {
    if (std::find(terms.begin() + static_cast<std::ptrdiff_t>(i) + 1, terms.end(), terms[i]) != terms.end())
      return true;
  }
  return false;
}

bool hasRootInSum(gen const& value) {
  if (value.type == _VECT) return std::any_of(value._VECTptr->begin(), value._VECTptr->end(), hasRootInSum);
  if (value.type == _FRAC) return hasRootInSum(value._FRACptr->num) || hasRootInSum(value._FRACptr->den);
  if (value.type != _SYMB) return false;
  gen const& operand = value._SYMBptr->feuille;
  return value._SYMBptr->sommet == at_plus ? hasRoot(operand) : hasRootInSum(operand);
}

}  // namespace

int measureForm(gen const& value) {
  constexpr int root_below = 10, quotient_below = 12, equal_terms = 3;
  if (value.type == _VECT) {
    int size = 1;
    for (gen const& one : *value._VECTptr) size += measureForm(one);
    return size;
  }
  if (isExactReal(value)) return value.type == _FRAC ? 2 : 1;
  if (value.type == _FRAC) {
    gen const& below = value._FRACptr->den;
    return 2 + measureForm(value._FRACptr->num) + measureForm(below) +
           (hasRootInSum(below) || below.type == _CPLX ? root_below : 0);
  }
  if (value.type != _SYMB) return 1;
  unary_function_ptr const& function = value._SYMBptr->sommet;
  gen const& operand = value._SYMBptr->feuille;
  bool const hasPower = function == at_inv && (hasFunction(operand, at_sqrt) || hasFunction(operand, at_pow));
  bool const isBelow = hasPower && (lidnt(operand).empty() || hasRootInSum(operand));
  bool const isNested = function == at_inv && hasFunction(operand, at_inv);
  return 1 + measureForm(operand) + (isBelow ? root_below : 0) + (isNested ? quotient_below : 0) +
         (hasEqualTerms(value) ? equal_terms : 0);
}

bool hasLongPower(gen const& value) {
  constexpr int most_expanded = 8;
  if (value.type == _VECT) {
    return std::any_of(value._VECTptr->begin(), value._VECTptr->end(), hasLongPower);
  }
  if (value.type != _SYMB) return false;
  gen const& operand = value._SYMBptr->feuille;
  bool const isPower =
      value._SYMBptr->sommet == at_pow && operand.type == _VECT && operand._VECTptr->size() == 2;
  if (isPower && operand._VECTptr->front().type == _SYMB) {
    gen const& exponent = operand._VECTptr->back();
    bool const isLong =
        exponent.type == _ZINT || (exponent.type == _INT_ && std::abs(exponent.val) > most_expanded);
    if (isLong) return true;
  }
  return hasLongPower(operand);
}

DenominatorCountS countDenominators(vecteur const& terms, context* context) {
  DenominatorCountS count;
  vecteur different;
  for (gen const& term : terms) {
    gen const below = hasFunction(term, at_inv) ? _denom(term, context) : gen(1);
    if (lidnt(below).empty()) continue;
    ++count.quotients;
    if (std::find(different.begin(), different.end(), below) == different.end()) different.push_back(below);
  }
  count.denominators = different.size();
  return count;
}

gen withPowersBelow(gen const& value, context* context) {
  return replaced(value, at_inv, [&](gen const& quotient) {
    gen const& below = quotient._SYMBptr->feuille;
    bool const isSum = below.type == _SYMB && below._SYMBptr->sommet == at_plus;
    gen const factors = isSum && !hasRoot(below) ? factor(below, false, context) : below;
    bool const isShorter = hasFunction(factors, at_pow) && measureForm(factors) < measureForm(below);
    return isShorter ? symbolic(at_inv, factors) : quotient;
  });
}

gen withOneLogarithm(gen const& value, context* context) {
  constexpr int most_bits = 14;
  bool isLong = false;
  gen const joined = replaced(_lncollect(value, context), at_ln, [&](gen const& logarithm) {
    gen const& number = logarithm._SYMBptr->feuille;
    isLong |= number.type == _ZINT || (number.type == _INT_ && sizeinbase2(number) > most_bits);
    return logarithm;
  });
  return isLong ? value : joined;
}

gen collected(gen const& value, context* context) {
  gen const simple = replaced(value, at_pow, [&](gen const& power) {
    if (power._SYMBptr->feuille.type != _VECT) return power;
    vecteur const& parts = *power._SYMBptr->feuille._VECTptr;
    bool const isWhole = parts.size() == 2 && parts[0].type == _SYMB && parts[1].type == _INT_;
    if (!isWhole) return power;
    gen const& inside = parts[0]._SYMBptr->feuille;
    if (parts[0]._SYMBptr->sommet == at_inv) return inv(pow(inside, parts[1], context), context);
    if (parts[0]._SYMBptr->sommet != at_neg) return power;
    gen const size = pow(inside, parts[1], context);
    return parts[1].val % 2 == 0 ? size : -size;
  });
  gen const sum = eval(simple, 1, context);
  gen const joined = hasFunction(sum, at_inv) ? sum : normal(sum, context);
  return measureForm(joined) < measureForm(sum) ? joined : sum;
}

}  // namespace zolt::giac_worker
