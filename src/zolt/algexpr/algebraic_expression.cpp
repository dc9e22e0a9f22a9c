#include "zolt/algexpr/algebraic_expression.h"

#include <set>
#include <utility>
#include <vector>

#include "zolt/algexpr/detail/prefix_reader.h"
#include "zolt/algexpr/node_visitor.h"
#include "zolt/algexpr/parent_node.h"
#include "zolt/oss/castable_id.h"

namespace zolt::math::algexpr {

namespace {

// A node on the way of a walk; `parent` is the same node when it has children.
struct StepS {
  NodeABC* node;
  ParentNodeABC* parent;
  unsigned long nextChild;
};

// Calls `enter` on the way down, `between` between two children and `leave` on the way up.
template <class EnterF, class BetweenF, class LeaveF>
void walk(NodeABC& root, EnterF enter, BetweenF between, LeaveF leave) {
  std::vector<StepS> path;
  auto const go = [&](NodeABC& node) {
    ParentNodeABC* const parent = node.asParent();
    enter(node, parent != nullptr);
    path.push_back({&node, parent, 0});
  };
  go(root);
  while (!path.empty()) {
    StepS& step = path.back();
    if (step.parent && step.nextChild < step.parent->numChildren()) {
      if (step.nextChild > 0) between();
      go(step.parent->child(step.nextChild++));
    } else {
      leave(*step.node, step.parent != nullptr);
      path.pop_back();
    }
  }
}

bool sameKindAndName(NodeABC const& a, NodeABC const& b) {
  return oss::equalCastableIds(a.qCastableId(), b.qCastableId()) && a.crefName() == b.crefName();
}

using PairT = std::pair<NodeABC const*, NodeABC const*>;

bool equalNodes(NodeABC const* first, NodeABC const* second) {
  std::vector<PairT> pending{{first, second}};
  // Where parts are shared on both sides, the same two would otherwise meet once for every way down to them.
  std::set<PairT> met;
  while (!pending.empty()) {
    auto const [a, b] = pending.back();
    pending.pop_back();
    if (a == b) continue;
    if (!sameKindAndName(*a, *b)) return false;
    ParentNodeABC const* const parent = a->asParent();
    ParentNodeABC const* const other = b->asParent();
    if (!parent) continue;
    if (parent->numChildren() != other->numChildren()) return false;
    if (a->isShared() && b->isShared() && !met.insert({a, b}).second) continue;
    for (unsigned long i = 0; i < parent->numChildren(); ++i) {
      pending.emplace_back(&parent->child(i), &other->child(i));
    }
  }
  return true;
}

}  // namespace

AlgebraicExpressionC::AlgebraicExpressionC(PointerTC<NodeABC> node, PointerTC<CASSessionBC> session)
    : node_(std::move(node)), session_(std::move(session)) {}

PointerTC<AlgebraicExpressionC> AlgebraicExpressionC::fromPrefixString(wstring const& prefix,
                                                                       PointerTC<CASSessionBC> session,
                                                                       common::ReadErrorS* error) {
  detail::PrefixReaderC reader(prefix);
  PointerTC<NodeABC> node = reader.read();
  if (!node) {
    if (error) *error = reader.getError(), error->message = describe(error->cause);
    return nullptr;
  }
  return new AlgebraicExpressionC(std::move(node), std::move(session));
}

PointerTC<AlgebraicExpressionC> AlgebraicExpressionC::fromPrefixString(wstring const& prefix) {
  return fromPrefixString(prefix, CASSessionBC::getSession());
}

wstring AlgebraicExpressionC::toPrefixString() const {
  wstring text;
  if (!node_) return text;
  walk(
      *node_,
      [&](NodeABC const& node, bool isParent) {
        text += node.crefName();
        if (isParent) text += u'(';
      },
      [&] { text += u','; },
      [&](NodeABC const&, bool isParent) {
        if (isParent) text += u')';
      });
  return text;
}

CASEngineABC const& AlgebraicExpressionC::getCASEngine() const {
  return (session_ ? session_ : CASSessionBC::getSession())->getEngine();
}

void AlgebraicExpressionC::accept(NodeVisitorABC& visitor) const {
  PointerTC<NodeABC> const alive = node_;
  if (!alive) return;
  bool const parentFirst = visitor.getOrder() == VISIT_PARENT_FIRST;
  auto const visit = [&](NodeABC& node) { node.visit(visitor); };
  walk(
      *alive,
      [&](NodeABC& node, bool) {
        if (parentFirst) visit(node);
      },
      [] {},
      [&](NodeABC& node, bool) {
        if (!parentFirst) visit(node);
      });
}

bool AlgebraicExpressionC::equals(AlgebraicExpressionC const& other) const {
  if (!node_ || !other.node_) return node_ == other.node_;
  return equalNodes(node_.get(), other.node_.get());
}

}  // namespace zolt::math::algexpr
