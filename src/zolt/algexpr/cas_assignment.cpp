#include "zolt/algexpr/cas_assignment.h"

#include <utility>

#include "zolt/algexpr/detail/rounding.h"
#include "zolt/algexpr/flat_tree.h"
#include "zolt/algexpr/make_node.h"

namespace zolt::math::algexpr {

namespace {

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

bool isVariable(NodeABC const& node) {
  wstring const& name = node.crefName();
  return !node.asParent() && makeNumber(name) == nullptr && name != u"_PI";
}

/// The cause of an assignment that is none.
bool readAssignment(FlatTreeC const& tree, NodeABC const& node, bool (*isReserved)(wstring const& name),
                    AssignmentS& assignment) {
  bool const isStore = node.crefName() == u":>";
  ParentNodeABC const& whole = *node.asParent();
  assignment.target = tree.child(0, isStore ? 1 : 0);
  assignment.source = tree.child(0, isStore ? 0 : 1);
  assignment.definition.value = whole.childPointer(isStore ? 0 : 1);
  NodeABC const& target = whole.child(isStore ? 1 : 0);
  assignment.definition.name = target.crefName();
  ParentNodeABC const* const call = target.asParent();
  if (!call) return isVariable(target);
  for (unsigned long i = 0; i < call->numChildren(); ++i) {
    if (!isVariable(call->child(i))) return false;
    assignment.definition.parameters.push_back(call->child(i).crefName());
  }
  return !isReserved(target.crefName());
}

CASResultS substitute(CASRequestS const& request, PointerTC<NodeABC> const& node,
                      CASComputeNodeT const& compute) {
  PointerTC<NodeABC> const value = request.value ? request.value->getNode() : nullptr;
  PointerTC<NodeABC> const variable = makeNamed(request.variable);
  if (!value || !variable) return refuse(CAS_CAUSE_WRONG_ARGUMENT);
  CASRequestS evaluation = request;
  evaluation.operation = CAS_EVALUATE;
  CASResultS result = compute(evaluation, makeFunction(u"where", {node, variable, value}));
  // The whole is one node further inside; the value is no part of it.
  FlatTreeC tree;
  bool const isInside = result.part != CASResultS::no_part && tree.fill(*node) && result.part <= tree.end(0);
  result.part = !isInside ? CASResultS::no_part : result.part == 0 ? 0 : result.part - 1;
  return result;
}

/// Any operation, with the constants of its result rounded when that is asked for.
CASResultS computeNode(CASRequestS const& request, PointerTC<NodeABC> const& node,
                       CASComputeNodeT const& compute) {
  CASRequestS asked = request;
  bool const isRounded = request.numbers == CAS_ROUNDED_NUMBERS;
  if (isRounded && request.operation == CAS_EVALUATE) asked.operation = CAS_APPROXIMATE;
  CASResultS const result =
      asked.operation == CAS_SUBSTITUTE ? substitute(asked, node, compute) : compute(asked, node);
  // The factors of a whole number would be its value again.
  bool const isDone = asked.operation == CAS_APPROXIMATE || asked.operation == CAS_FACTOR;
  if (!isRounded || isDone) return result;
  asked.operation = CAS_APPROXIMATE;
  asked.definitions = nullptr;
  return detail::roundConstants(result, [&](PointerTC<NodeABC> const& part) { return compute(asked, part); });
}

}  // namespace

CASResultS refuse(CASCauseE cause, unsigned long part, wstring subject) {
  CASResultS result;
  result.outcome = cause >= CAS_CAUSE_DIVISION_BY_ZERO ? CAS_ERROR : CAS_UNEVALUATED;
  result.cause = cause;
  result.part = part;
  result.subject = std::move(subject);
  return result;
}

CASResultS computeRequest(CASRequestS const& request, bool (*isReserved)(wstring const& name),
                          CASComputeNodeT const& compute) {
  PointerTC<NodeABC> const node = request.expression ? request.expression->getNode() : nullptr;
  if (!node) return refuse(CAS_CAUSE_WRONG_ARGUMENT);
  ParentNodeABC const* const parent = node->asParent();
  bool const isAssignment =
      parent && parent->numChildren() == 2 && (node->crefName() == u":=" || node->crefName() == u":>");
  if (!isAssignment) return computeNode(request, node, compute);

  FlatTreeC tree;
  AssignmentS assignment;
  if (!tree.fill(*node) || !readAssignment(tree, *node, isReserved, assignment)) {
    return refuse(CAS_CAUSE_WRONG_ARGUMENT, assignment.target);
  }
  CASDefinitionS& definition = assignment.definition;
  CASResultS result;
  if (definition.parameters.empty()) {
    result = computeNode(request, definition.value, compute);
    if (result.part != CASResultS::no_part) result.part += assignment.source;
    if (result.outcome == CAS_ERROR) return result;
    // A later line needs all digits.
    CASRequestS exact = request;
    bool const isRounded = request.operation == CAS_APPROXIMATE || request.numbers == CAS_ROUNDED_NUMBERS;
    exact.numbers = CAS_EXACT_NUMBERS;
    if (result.outcome != CAS_VALUE || request.operation == CAS_APPROXIMATE) exact.operation = CAS_EVALUATE;
    bool const isExact = result.outcome == CAS_VALUE && !isRounded;
    CASResultS const kept = isExact ? result : computeNode(exact, definition.value, compute);
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

}  // namespace zolt::math::algexpr
