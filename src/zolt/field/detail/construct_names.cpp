#include "zolt/field/detail/construct_names.h"

#include <algorithm>

#include "zolt/common/signs.h"
#include "zolt/field/detail/word_bounds.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/operators/operator_list.h"

namespace zolt::field::detail {

namespace {

/// Whether an operator can be typed as a name and "(".
bool isTypedAsCall(OperatorBC const& op) {
  return op.isConstruct() && op.getInsertedRows() > 0 && isWrittenAsCall(op);
}

/// Whether its own name is one of these.
bool isTypedByName(OperatorBC const& op) { return isTypedAsCall(op) && op.crefWords().typedRows.empty(); }

PointerTC<OperatorBC> findByName(OperatorListC const& operators, wstring const& name) {
  auto op = operators.lookup(name);
  return op && isTypedByName(*op) ? op : nullptr;
}

/// The last registered operator that passes the test; null: none.
template <class TestT>
PointerTC<OperatorBC> findLast(OperatorListC const& operators, TestT test) {
  auto const& all = operators.crefInOrder();
  auto const found = std::find_if(all.rbegin(), all.rend(), [&](OperatorBC const* op) { return test(*op); });
  return found == all.rend() ? nullptr : *found;
}

bool isPlainFunction(OperatorListC const& operators, wstring const& name) {
  auto const op = operators.lookupText(name);
  return op && !op->isConstruct();
}

}  // namespace

ConstructNameS findConstruct(OperatorListC const& operators, wstring const& name) {
  wstring second;
  auto const known = findLast(operators, [&](OperatorBC const& op) {
    for (auto const& other : op.crefWords().names) {
      if (other.name != name) continue;
      second = other.second;
      return isTypedAsCall(op);
    }
    return false;
  });
  if (known) return {known, second};
  std::size_t const underscore = name.find(u'_');
  if (underscore != wstring::npos && underscore + 1 < name.size()) {
    return {findMarkable(operators, name.substr(0, underscore + 1)), name.substr(underscore + 1)};
  }
  if (isPlainFunction(operators, name)) return {};
  return {findByName(operators, name), wstring()};
}

PointerTC<OperatorBC> findMarkable(OperatorListC const& operators, wstring const& name) {
  if (name.size() < 2 || name.back() != u'_') return nullptr;
  auto op = findByName(operators, name.substr(0, name.size() - 1));
  return op && op->getArity() == 2 ? op : nullptr;
}

PointerTC<OperatorBC> findSharing(OperatorListC const& operators, OperatorBC const& op,
                                  std::size_t numArguments) {
  return findLast(operators, [&](OperatorBC const& other) {
    return other.crefWords().sharedName == op.getName() &&
           argumentRows(other, other.getInsertedRows()).size() == numArguments;
  });
}

PointerTC<OperatorBC> findConstructOfPair(OperatorListC const& operators, wstring const& name) {
  if (!isPlainFunction(operators, name)) return nullptr;
  auto op = findByName(operators, name);
  return op && (op->getArity() == 2 || op->getColumns() > 0) ? op : nullptr;
}

// Letters and digits never insert an operator, and people type them most.
PointerTC<OperatorBC> findBySign(OperatorListC const& operators, char16_t sign) {
  if (sign < 0x7B && isWordCharacter(sign)) return nullptr;
  return findLast(operators,
                  [&](OperatorBC const& op) { return op.crefWords().signs.find(sign) != wstring::npos; });
}

PointerTC<OperatorBC> findSignByName(OperatorListC const& operators, wstring const& name) {
  if (name.empty() || name[0] == u'_') return nullptr;
  auto const isShownOtherwise = [&](OperatorBC const& op) {
    bool const isPlaced = op.getPlace() != math::ved::OPERATOR_BY_NAME || op.getArity() == 0;
    return !op.isConstruct() && isPlaced && op.getText() != name;
  };
  if (auto op = operators.lookup(name)) return isShownOtherwise(*op) ? op : nullptr;
  return findLast(operators, [&](OperatorBC const& op) {
    auto const& others = op.crefWords().names;
    return std::any_of(others.begin(), others.end(), [&](auto const& other) { return other.name == name; }) &&
           isShownOtherwise(op);
  });
}

SignRunS findBySignRun(OperatorListC const& operators, wstring const& text, unsigned int pos) {
  SignRunS found;
  // "..." ends like a number.
  if (pos == 0 || (isWordCharacter(text[pos - 1]) && text[pos - 1] != u'.')) return found;
  found.op = findLast(operators, [&](OperatorBC const& op) {
    for (wstring const& run : op.crefWords().signRuns) {
      found.length = static_cast<unsigned int>(run.size());
      if (pos >= run.size() && text.compare(pos - run.size(), run.size(), run) == 0) return true;
    }
    return false;
  });
  return found;
}

wstring typedForm(OperatorBC const& op) {
  if (!op.crefWords().shortcut.empty()) return op.crefWords().shortcut;
  bool const called = isWrittenAsCall(op) && (op.isConstruct() || (!op.isLinear() && op.getArity() > 0));
  return called ? op.getName() + u"(" : op.getName();
}

bool isCalled(OperatorBC const& op) { return !op.isConstruct() && !op.isLinear() && op.getArity() > 0; }

bool isWrittenAsCall(OperatorBC const& op) {
  wstring const name = op.getName();
  return !name.empty() && isWordCharacter(name[0]) && !math::common::isDigit(name[0]);
}

std::vector<unsigned long> argumentRows(OperatorBC const& op, unsigned long numRows) {
  if (auto const& typed = op.crefWords().typedRows; !typed.empty()) return typed;
  // Each row's text is its own index, as a character that no name has; a construct may write more around
  // them.
  constexpr char16_t first = 0xE000;
  std::vector<wstring> rows;
  for (unsigned long i = 0; i < numRows; ++i) {
    rows.emplace_back(1, static_cast<char16_t>(first + i));
  }
  std::vector<unsigned long> order;
  for (char16_t const c : op.arrangeArgumentList(rows)) {
    if (c >= first && c - first < static_cast<int>(rows.size())) {
      order.push_back(static_cast<unsigned long>(c - first));
    }
  }
  return order;
}

}  // namespace zolt::field::detail
