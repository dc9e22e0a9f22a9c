// The walk over a subtree in tree order, without recursion and without a stack: the way back up leads over
// parent pointers and child numbers.
//
// When to walk, and when to recurse: a tree is as deep as its rows nest, which limits::max_nested_rows
// bounds. Layout, drawing and reading from a stream recurse, because each level of theirs has values of its
// own and takes little of the machine's stack. Whatever only visits nodes uses this walk, and so does
// whatever may meet a tree that nobody has checked yet. Expressions are as deep as they are long: nothing
// recurses over them.
#pragma once

#include <type_traits>

namespace zolt::math::ved {

class Node4C;

/// What a visit answers.
enum WalkE : int {
  WALK_INTO,  ///< the children are next
  WALK_PAST,  ///< the node is left out: neither its children nor its end are visited
  WALK_STOP   ///< the walk ends here
};

namespace detail {

/// Calls a visitor; one that returns nothing never skips and never stops.
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

/// The next child from `next` on, `next` moved past it; null when there is none. Null slots are passed over.
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
/// Both take the node, and return nothing or a WalkE; of `after`, only WALK_STOP has an effect. `nextChild`
/// takes the place of EveryChildS where a walk finds its children faster than one by one. A visitor may
/// change the node that it is given and what is below that, but not the list which the node is in. False when
/// the walk was stopped.
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
