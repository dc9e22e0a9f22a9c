#include "zolt/ved/operators/operator_list.h"

#include <algorithm>

#include "zolt/algexpr/make_operation.h"
#include "zolt/common/signs.h"

namespace zolt::math::ved {

namespace {

thread_local char const thread_mark = 0;

template <class Map, class Key>
PointerTC<OperatorBC> find(Map const& map, Key const& key) {
  auto const entry = map.find(key);
  return entry == map.end() ? nullptr : entry->second;
}

bool isAsciiWord(char16_t c) { return common::isDigit(c) || common::isAsciiLetter(c); }

}  // namespace

OperatorListC::OperatorListC() : maker_(&thread_mark) {}

OperatorListC::OperatorListC(OperatorListC const& other) : RefCountedBC(other), maker_(&thread_mark) {
  *this = other;
}

// Only the tables are assigned: the count of this list's holders does not change.
OperatorListC& OperatorListC::operator=(OperatorListC const& other) {
  byName_ = other.byName_;
  inOrder_ = other.inOrder_;
  byText_ = other.byText_;
  byPlace_ = other.byPlace_;
  signs_ = other.signs_;
  byKey_ = other.byKey_;
  return *this;
}

OperatorListC::~OperatorListC() = default;

void OperatorListC::noteReader() const {
  if (maker_ != &thread_mark && !isFrozen()) frozen_.store(true, std::memory_order_relaxed);
}

void OperatorListC::add(PointerTC<OperatorBC> op) {
  if (isFrozen()) return;
  PointerTC<OperatorBC>& named = byName_[op->getName()];
  if (named) {
    *std::find(inOrder_.begin(), inOrder_.end(), named.get()) = op.get();
  } else {
    inOrder_.push_back(op.get());
  }
  named = op;
  wstring const text = op->getText();
  if (op->isAmbiguousBase()) algexpr::guardBeforeExponent(op->getName());
  if (op->getPlace() == OPERATOR_AFTER) algexpr::guardBeforeSign(op->getName());
  if (op->getPlace() != OPERATOR_BY_NAME) {
    byPlace_[{op->getPlace(), text}] = op;
    if (text.size() == 1 && !isAsciiWord(text[0])) {
      auto const at = std::lower_bound(signs_.begin(), signs_.end(), text[0]);
      if (at == signs_.end() || *at != text[0]) signs_.insert(at, text[0]);
    }
  }
  byText_[text] = std::move(op);
}

void OperatorListC::addKey(unsigned long key, PointerTC<OperatorBC> op) {
  if (!isFrozen()) byKey_[key] = std::move(op);
}

void OperatorListC::remove(wstring const& name) {
  auto const entry = byName_.find(name);
  if (entry == byName_.end() || isFrozen()) return;
  inOrder_.erase(std::find(inOrder_.begin(), inOrder_.end(), entry->second.get()));
  byName_.erase(entry);
}

PointerTC<OperatorBC> OperatorListC::lookup(wstring const& name) const {
  return noteReader(), find(byName_, name);
}
PointerTC<OperatorBC> OperatorListC::lookupText(wstring const& text) const {
  return noteReader(), find(byText_, text);
}
PointerTC<OperatorBC> OperatorListC::lookupText(wstring const& text, OperatorPlaceE place) const {
  return noteReader(), find(byPlace_, std::make_pair(place, text));
}
PointerTC<OperatorBC> OperatorListC::lookupStored(wstring const& name) const {
  std::size_t const blank = name.find(u' ');
  if (blank == wstring::npos) return lookup(name);
  auto const op = lookup(name.substr(0, blank));
  return op ? op->findVariant(name.substr(blank + 1)) : nullptr;
}
bool OperatorListC::isSign(char16_t c) const {
  return noteReader(), std::binary_search(signs_.begin(), signs_.end(), c);
}
PointerTC<OperatorBC> OperatorListC::lookupKey(unsigned long key) const {
  return noteReader(), find(byKey_, key);
}

}  // namespace zolt::math::ved
