#pragma once

#include <cstdint>
#include <memory>

#include "zolt/algexpr/node.h"

namespace zolt::math::algexpr {

/// A function applied to one or more arguments, none of them null.
class ParentNodeABC : public NodeABC {
 public:
  /// Lets go of the children without recursion and without allocating, however deep they are nested.
  ~ParentNodeABC() override;

  unsigned long numChildren() const { return count_; }
  /// `i` is below `numChildren()`.
  NodeABC const& child(unsigned long i) const { return *pointers()[i]; }
  NodeABC& child(unsigned long i) { return *pointers()[i]; }
  PointerTC<NodeABC> childPointer(unsigned long i) const { return pointers()[i]; }

  static char16_t const* getCastableId();
  NodeABC const* lookUpBase(char16_t const* id) const override;
  ParentNodeABC* asParent() override { return this; }
  ParentNodeABC const* asParent() const override { return this; }

 protected:
  /// Takes the `count` nodes from `first` on; the pointers are null afterwards.
  ParentNodeABC(PointerTC<NodeABC>* first, unsigned long count);

 private:
  static constexpr unsigned long inline_count = 2;

  NodeABC* const* pointers() const { return many_ ? many_.get() : few_; }
  NodeABC** pointers() { return many_ ? many_.get() : few_; }

  // Plain pointers, each holding one reference: the destructor reuses the slots of dying nodes as links.
  std::uint32_t count_;
  NodeABC* few_[inline_count];
  std::unique_ptr<NodeABC*[]> many_;
};

}  // namespace zolt::math::algexpr
