#include "zolt/field/detail/name_factors.h"

#include <algorithm>

#include "zolt/algexpr/cas_session.h"
#include "zolt/algexpr/parent_node.h"
#include "zolt/common/signs.h"
#include "zolt/exchange/latex.h"
#include "zolt/exchange/plain_text.h"
#include "zolt/field/detail/construct_names.h"
#include "zolt/field/detail/word_bounds.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/operators/operator_list.h"

namespace zolt::field::detail {

namespace common = math::common;

namespace {

/// No function and no letter has a longer name.
constexpr std::size_t longest_known = 10;

bool isKnown(wstring const& name, OperatorListC const& operators, std::vector<wstring> const& names) {
  if (std::find(names.begin(), names.end(), name) != names.end()) return true;
  auto const op = operators.lookupText(name);
  if (op && !op->isLinear() && op->getArity() > 0) return true;
  if (findConstruct(operators, name).op || toMeantName(name) != name) return true;
  // Also functions that are no operators of the table, such as "sec".
  return exchange::findLatexSign(u'\\' + name) == name;
}

/// After the digits, the index and the primes that belong to what ends at `pos`.
std::size_t findFactorEnd(wstring const& name, std::size_t pos) {
  auto const skip = [&](auto const& fits) {
    while (pos < name.size() && fits(name[pos])) ++pos;
  };
  auto const isLetter = [](char16_t c) { return c != u'_' && c != common::prime_sign; };
  skip([](char16_t c) { return isContinuation(c) || common::isDigit(c); });
  while (pos + 1 < name.size() && name[pos] == u'_') {
    ++pos;
    if (common::isDigit(name[pos])) {
      skip(common::isDigit);
    } else {
      skip(isLetter);
    }
  }
  if (pos + 1 == name.size() && name[pos] == u'_') ++pos;
  skip([](char16_t c) { return c == common::prime_sign; });
  return pos;
}

}  // namespace

std::vector<wstring> findFactors(wstring const& name, OperatorListC const& operators,
                                 std::vector<wstring> const& names) {
  std::vector<wstring> factors;
  auto const word = operators.lookupText(name);
  if (name.size() >= most_split || name[0] == u'_' || (word && word->isLinear())) return {name};
  for (std::size_t begin = 0; begin < name.size();) {
    std::size_t length = std::min(longest_known, name.size() - begin);
    while (length > 1 && !isKnown(name.substr(begin, length), operators, names)) --length;
    std::size_t const end = std::max(findFactorEnd(name, begin + length), begin + 1);
    factors.push_back(name.substr(begin, end - begin));
    begin = end;
  }
  return factors;
}

// Typing must give the same as pasting, so the reader of plain text decides.
wstring toMeantName(wstring const& name) {
  auto const read = exchange::fromPlainText(name, math::algexpr::CASSessionBC::getSession());
  if (!read) return name;
  wstring const meant = read->getNode()->getName();
  return meant.find(u'(') == wstring::npos && !read->getNode()->asParent() ? meant : name;
}

wstring toCalledName(wstring const& name, OperatorListC const& operators) {
  if (operators.lookupText(name) || findConstruct(operators, name).op) return name;
  auto const read = exchange::fromPlainText(name + u"(x)", math::algexpr::CASSessionBC::getSession());
  auto const* const call = read ? read->getNode()->asParent() : nullptr;
  return call && call->numChildren() == 1 && !operators.lookup(call->getName()) ? call->getName() : name;
}

}  // namespace zolt::field::detail
