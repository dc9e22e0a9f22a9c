#pragma once

#include "zolt/algexpr/parent_node.h"

namespace zolt::math::algexpr {

namespace detail {
struct CoreNameS;
struct NodeAccessS;
}  // namespace detail

/// A function of the library's own table of names, such as "+", "^" or "sin".
class CoreFunctionNodeC : public ParentNodeABC {
 public:
  wstring const& crefName() const override;
  static char16_t const* getCastableId();
  char16_t const* qCastableId() const override;
  NodeABC const* lookUpBase(char16_t const* id) const override;
  void visit(NodeVisitorABC& visitor) override;

 private:
  friend struct detail::NodeAccessS;
  CoreFunctionNodeC(detail::CoreNameS const& name, PointerTC<NodeABC> const* first, unsigned long count)
      : ParentNodeABC(first, count), name_(&name) {}

  detail::CoreNameS const* name_;
};

}  // namespace zolt::math::algexpr
