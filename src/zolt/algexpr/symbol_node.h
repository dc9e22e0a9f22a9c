#pragma once

#include <utility>

#include "zolt/algexpr/node.h"

namespace zolt::math::algexpr {

namespace detail {
struct NodeAccessS;
}  // namespace detail

/// A name that stands for itself: a variable, or anything else the library does not know.
class SymbolNodeC : public NodeABC {
 public:
  wstring const& crefName() const override { return name_; }
  static char16_t const* getCastableId();
  char16_t const* qCastableId() const override;
  NodeABC const* lookUpBase(char16_t const* id) const override;
  void visit(NodeVisitorABC& visitor) override;

 private:
  friend struct detail::NodeAccessS;
  explicit SymbolNodeC(wstring name) : name_(std::move(name)) {}

  wstring name_;
};

}  // namespace zolt::math::algexpr
