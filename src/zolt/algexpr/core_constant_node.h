#pragma once

#include "zolt/algexpr/node.h"

namespace zolt::math::algexpr {

namespace detail {
struct CoreNameS;
struct NodeAccessS;
}  // namespace detail

/// A constant of the library's own table of names, such as "_PI".
class CoreConstantNodeC : public NodeABC {
 public:
  wstring const& crefName() const override;
  static char16_t const* getCastableId();
  char16_t const* qCastableId() const override;
  NodeABC const* lookUpBase(char16_t const* id) const override;
  void visit(NodeVisitorABC& visitor) override;

 private:
  friend struct detail::NodeAccessS;
  explicit CoreConstantNodeC(detail::CoreNameS const& name) : name_(&name) {}

  detail::CoreNameS const* name_;
};

}  // namespace zolt::math::algexpr
