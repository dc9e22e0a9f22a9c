#pragma once

#include <utility>

#include "zolt/algexpr/node.h"

namespace zolt::math::algexpr {

namespace detail {
struct NodeAccessS;
}  // namespace detail

/// A whole number of any size. Its name is its text, kept digit for digit ("007" too).
class IntegerNodeC : public NodeABC {
 public:
  wstring const& crefName() const override { return text_; }
  static char16_t const* getCastableId();
  char16_t const* qCastableId() const override;
  NodeABC const* lookUpBase(char16_t const* id) const override;
  void visit(NodeVisitorABC& visitor) override;

 private:
  friend struct detail::NodeAccessS;
  explicit IntegerNodeC(wstring text) : text_(std::move(text)) {}

  wstring text_;
};

}  // namespace zolt::math::algexpr
