#include "zolt/ved/operators/operator_list.h"

#include <algorithm>

namespace zolt::math::ved {

namespace {

template <class Map, class Key>
PointerTC<OperatorBC> find(Map const& map, Key const& key) {
  auto const entry = map.find(key);
  return entry == map.end() ? nullptr : entry->second;
}

}  // namespace

OperatorListC::OperatorListC() = default;
OperatorListC::OperatorListC(OperatorListC const&) = default;

// Only the tables are assigned: the count of this list's holders does not change.
OperatorListC& OperatorListC::operator=(OperatorListC const& other) {
  byName_ = other.byName_;
  inOrder_ = other.inOrder_;
  byText_ = other.byText_;
  byKey_ = other.byKey_;
  return *this;
}

OperatorListC::~OperatorListC() = default;

void OperatorListC::add(PointerTC<OperatorBC> op) {
  PointerTC<OperatorBC>& named = byName_[op->getName()];
  if (named) {
    *std::find(inOrder_.begin(), inOrder_.end(), named.get()) = op.get();
  } else {
    inOrder_.push_back(op.get());
  }
  named = op;
  byText_[op->getText()] = op;
}

void OperatorListC::addKey(unsigned long key, PointerTC<OperatorBC> op) { byKey_[key] = std::move(op); }

void OperatorListC::remove(wstring const& name) {
  auto const entry = byName_.find(name);
  if (entry == byName_.end()) return;
  inOrder_.erase(std::find(inOrder_.begin(), inOrder_.end(), entry->second.get()));
  byName_.erase(entry);
}

PointerTC<OperatorBC> OperatorListC::lookup(wstring const& name) const { return find(byName_, name); }
PointerTC<OperatorBC> OperatorListC::lookupText(wstring const& text) const { return find(byText_, text); }
PointerTC<OperatorBC> OperatorListC::lookupKey(unsigned long key) const { return find(byKey_, key); }

}  // namespace zolt::math::ved
