#pragma once

#include "zolt/oss/pointer.h"
#include "zolt/oss/ref_counted.h"
#include "zolt/oss/wstring.h"

namespace zolt::math::algexpr {

using oss::PointerTC;
using oss::wstring;

class NodeVisitorABC;
class ParentNodeABC;

/// A node of an expression. Nodes never change once made (`make_node.h`), so one node may be a child of
/// several, and an expression may be a graph without cycles in which whole parts are shared.
class NodeABC : public oss::RefCountedBC {
 public:
  NodeABC(NodeABC const&) = delete;
  NodeABC& operator=(NodeABC const&) = delete;

  /// The name of a function, constant or symbol; of a number, its text as written, a minus being U+2212.
  wstring getName() const { return crefName(); }
  /// The same without a copy, alive as long as the node.
  virtual wstring const& crefName() const = 0;

  static char16_t const* getCastableId();
  virtual char16_t const* qCastableId() const = 0;
  /// This node when `id` is its class's id or that of one of its bases, else null.
  virtual NodeABC const* lookUpBase(char16_t const* id) const;

  /// This node when it is one with children, else null: the short form of a cast to that class.
  virtual ParentNodeABC* asParent() { return nullptr; }
  virtual ParentNodeABC const* asParent() const { return nullptr; }

  /// Calls the visit operation of this node's class for this node alone.
  virtual void visit(NodeVisitorABC& visitor) = 0;

 protected:
  NodeABC() = default;
};

/// `node` as a `T`; null when it is not a `T`.
template <class T>
T const* castNode(NodeABC const& node) {
  return static_cast<T const*>(node.lookUpBase(T::getCastableId()));
}

}  // namespace zolt::math::algexpr
