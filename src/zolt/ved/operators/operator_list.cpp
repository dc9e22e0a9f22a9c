#include "zolt/ved/operators/operator_list.h"

#include <algorithm>

namespace zolt::math::ved {

namespace {

thread_local char const thread_mark = 0;

template <class Map, class Key>
PointerTC<OperatorBC> find(Map const& map, Key const& key) {
  auto const entry = map.find(key);
  return entry == map.end() ? nullptr : entry->second;
}

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
  byText_[op->getText()] = op;
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
PointerTC<OperatorBC> OperatorListC::lookupKey(unsigned long key) const {
  return noteReader(), find(byKey_, key);
}

}  // namespace zolt::math::ved
