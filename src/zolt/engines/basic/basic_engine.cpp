#include "zolt/engines/basic/basic_engine.h"

#include <utility>

#include "zolt/algexpr/make_node.h"
#include "zolt/engines/basic/detail/computation.h"
#include "zolt/engines/basic/detail/flat_tree.h"

namespace zolt::engine_basic {

using namespace math::algexpr;
using namespace detail;

namespace {

CASResultS refuse(CASCauseE cause, unsigned long part, wstring subject = {}) {
  CASResultS result;
  result.outcome = CAS_ERROR;
  result.cause = cause;
  result.part = part;
  result.subject = std::move(subject);
  return result;
}

bool mentions(FlatTreeC const& tree, std::uint32_t begin, wstring const& name) {
  for (std::uint32_t i = begin; i < tree.end(begin); ++i) {
    if (tree.crefNode(i).crefName() == name) return true;
  }
  return false;
}

/// What an assignment defines and from what.
struct AssignmentS {
  CASDefinitionS definition;
  std::uint32_t target = 0;  ///< its parts
  std::uint32_t source = 0;
};

bool isName(NodeABC const& node) {
  wstring const& name = node.crefName();
  return !node.asParent() && makeNumber(name) == nullptr && name != u"_PI";
}

/// The cause of an assignment that is none.
bool readAssignment(FlatTreeC const& tree, NodeABC const& node, AssignmentS& assignment) {
  bool const isStore = node.crefName() == u":>";
  ParentNodeABC const& whole = *node.asParent();
  assignment.target = tree.child(0, isStore ? 1 : 0);
  assignment.source = tree.child(0, isStore ? 0 : 1);
  assignment.definition.value = whole.childPointer(isStore ? 0 : 1);
  NodeABC const& target = whole.child(isStore ? 1 : 0);
  assignment.definition.name = target.crefName();
  ParentNodeABC const* const call = target.asParent();
  if (!call) return isName(target);
  for (unsigned long i = 0; i < call->numChildren(); ++i) {
    if (!isName(call->child(i))) return false;
    assignment.definition.parameters.push_back(call->child(i).crefName());
  }
  return findFunction(target.crefName()) == nullptr;
}

CASResultS computeNode(CASRequestS const& request, PointerTC<NodeABC> const& node, WatchC& watch) {
  if (request.operation != CAS_SUBSTITUTE) return ComputationC(request, watch).run(node);
  PointerTC<NodeABC> const value = request.value ? request.value->getNode() : nullptr;
  PointerTC<NodeABC> const variable = makeNamed(request.variable);
  if (!value || !variable) return refuse(CAS_CAUSE_WRONG_ARGUMENT, CASResultS::no_part);
  CASResultS result = ComputationC(request, watch).run(makeFunction(u"where", {node, variable, value}));
  // The whole is one node further inside; the value is no part of it.
  FlatTreeC tree;
  bool const isInside = result.part != CASResultS::no_part && tree.fill(*node) && result.part <= tree.end(0);
  result.part = !isInside ? CASResultS::no_part : result.part == 0 ? 0 : result.part - 1;
  return result;
}

}  // namespace

unsigned BasicEngineC::getCapabilities() const {
  return CAS_EVALUATE | CAS_APPROXIMATE | CAS_SIMPLIFY | CAS_EXPAND | CAS_FACTOR | CAS_SOLVE |
         CAS_DIFFERENTIATE | CAS_INTEGRATE | CAS_SUBSTITUTE;
}

CASResultS BasicEngineC::compute(CASRequestS const& request, CASStopC const* stop) const {
  PointerTC<NodeABC> const node = request.expression ? request.expression->getNode() : nullptr;
  if (!node) return refuse(CAS_CAUSE_WRONG_ARGUMENT, CASResultS::no_part);
  WatchC watch(request.deadline, stop);
  ParentNodeABC const* const parent = node->asParent();
  bool const isAssignment =
      parent && parent->numChildren() == 2 && (node->crefName() == u":=" || node->crefName() == u":>");
  if (!isAssignment) return computeNode(request, node, watch);

  FlatTreeC tree;
  AssignmentS assignment;
  if (!tree.fill(*node) || !readAssignment(tree, *node, assignment)) {
    return refuse(CAS_CAUSE_WRONG_ARGUMENT, assignment.target);
  }
  CASDefinitionS& definition = assignment.definition;
  CASResultS result;
  if (definition.parameters.empty()) {
    result = computeNode(request, definition.value, watch);
    if (result.part != CASResultS::no_part) result.part += assignment.source;
    if (result.outcome == CAS_ERROR) return result;
    // A later line needs all digits.
    CASRequestS exact = request;
    exact.operation = CAS_EVALUATE;
    bool const isExact = result.outcome == CAS_VALUE && request.operation != CAS_APPROXIMATE;
    CASResultS const kept = isExact ? result : computeNode(exact, definition.value, watch);
    if (kept.outcome == CAS_VALUE) definition.value = kept.value->getNode();
    FlatTreeC defined;
    if (!defined.fill(*definition.value) || mentions(defined, 0, definition.name)) {
      return refuse(CAS_CAUSE_CIRCULAR, assignment.target, definition.name);
    }
  } else {
    if (mentions(tree, assignment.source, definition.name)) {
      return refuse(CAS_CAUSE_CIRCULAR, assignment.target, definition.name);
    }
    result.outcome = CAS_VALUE;
    result.cause = CAS_CAUSE_NONE;
    result.value = new AlgebraicExpressionC(definition.value, request.expression->getCASSession());
  }
  result.definition = std::move(definition);
  return result;
}

}  // namespace zolt::engine_basic
