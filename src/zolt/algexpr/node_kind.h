#pragma once

#include "zolt/algexpr/node.h"
#include "zolt/algexpr/node_visitor.h"
#include "zolt/oss/castable_id.h"

namespace zolt::math::algexpr {

/// What every class of nodes has besides its data: `NodeT::castable_id`, and the visit that it gets.
template <class NodeT, class BaseT, void (NodeVisitorABC::*visitKind)(NodeT&)>
class NodeKindTC : public BaseT {
 public:
  static char16_t const* getCastableId() { return NodeT::castable_id; }
  char16_t const* qCastableId() const override { return getCastableId(); }
  NodeABC const* lookUpBase(char16_t const* id) const override {
    return oss::equalCastableIds(id, getCastableId()) ? this : BaseT::lookUpBase(id);
  }
  void visit(NodeVisitorABC& visitor) override { (visitor.*visitKind)(static_cast<NodeT&>(*this)); }

 protected:
  using BaseT::BaseT;
};

}  // namespace zolt::math::algexpr
