// The walk over a subtree in tree order, without recursion and without a stack: it returns to a parent by the
// parent pointer and the child number.
//
// When to walk, and when to recurse: a tree is as deep as its rows nest, which limits::max_nested_rows
// bounds. Layout, drawing and reading from a stream recurse, because each level has values of its own and
// takes little stack. Code that only visits nodes uses this walk, and so does code that may meet an unchecked
// tree. Expressions can be as deep as they are long: no code recurses over them.
#pragma once

#include <type_traits>

namespace zolt::math::ved {

class Node4C;

/// The answer of a visitor.
enum WalkE : int {
  WALK_INTO,  ///< the children are next
  WALK_PAST,  ///< the node is left out: neither its children nor its end are visited
  WALK_STOP   ///< the walk ends here
};

namespace detail {

/// Calls a visitor. A visitor without a result neither skips nor stops.
template <class NodeT, class VisitT>
WalkE visitNode(VisitT& visit, NodeT& node) {
  if constexpr (std::is_void_v<decltype(visit(node))>) {
    visit(node);
    return WALK_INTO;
  } else {
    return visit(node);
  }
}

}  // namespace detail

/// Returns the next child from `next` on and moves `next` past it; null when there is none. Skips null slots.
struct EveryChildS {
  template <class NodeT>
  NodeT* operator()(NodeT& node, unsigned long& next) const {
    while (next < node.numChildren()) {
      if (NodeT* const child = node.child(next++)) return child;
    }
    return nullptr;
  }
};

/// Visits `top` (a Node4C, const or not) and everything in it: `before` a node's children and `after` them.
/// Both take the node and return void or a WalkE; from `after`, only WALK_STOP has an effect. A walk that
/// finds children faster than one by one passes its own `nextChild` instead of EveryChildS. A visitor may
/// change its node and what is below that node, but not the list that holds the node. False when the walk was
/// stopped.
template <class NodeT, class BeforeT, class AfterT, class NextChildT = EveryChildS>
bool walkTree(NodeT& top, BeforeT&& before, AfterT&& after, NextChildT&& nextChild = NextChildT()) {
  WalkE const first = detail::visitNode(before, top);
  if (first != WALK_INTO) return first == WALK_PAST;
  NodeT* node = &top;
  unsigned long next = 0;
  for (;;) {
    if (NodeT* const child = nextChild(*node, next)) {
      WalkE const step = detail::visitNode(before, *child);
      if (step == WALK_STOP) return false;
      if (step == WALK_PAST) continue;
      if (child->numChildren() > 0) {
        node = child;
        next = 0;
      } else if (detail::visitNode(after, *child) == WALK_STOP) {
        return false;
      }
      continue;
    }
    if (detail::visitNode(after, *node) == WALK_STOP) return false;
    if (node == &top) return true;
    next = node->findChildNumber() + 1;
    node = node->getParent();
  }
}

template <class NodeT, class BeforeT>
bool walkTree(NodeT& top, BeforeT&& before) {
  return walkTree(top, before, [](NodeT&) {});
}

}  // namespace zolt::math::ved
