#pragma once

#include <utility>

#include "zolt/algexpr/parent_node.h"

namespace zolt::math::algexpr {

namespace detail {
struct NodeAccessS;
}  // namespace detail

/// A function whose name the library does not know, such as "f".
class UserFunctionNodeC : public ParentNodeABC {
 public:
  wstring const& crefName() const override { return name_; }
  static char16_t const* getCastableId();
  char16_t const* qCastableId() const override;
  NodeABC const* lookUpBase(char16_t const* id) const override;
  void visit(NodeVisitorABC& visitor) override;

 private:
  friend struct detail::NodeAccessS;
  UserFunctionNodeC(wstring name, PointerTC<NodeABC> const* first, unsigned long count)
      : ParentNodeABC(first, count), name_(std::move(name)) {}

  wstring name_;
};

}  // namespace zolt::math::algexpr
