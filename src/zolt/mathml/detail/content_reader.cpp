#include "zolt/mathml/detail/content_reader.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "zolt/algexpr/make_node.h"
#include "zolt/algexpr/make_operation.h"
#include "zolt/algexpr/parent_node.h"
#include "zolt/common/signs.h"

namespace zolt::mathml::detail {

using namespace math::common;
using math::algexpr::makeFunction;
using math::algexpr::makeNamed;
using math::algexpr::makeNumber;
using math::algexpr::makeOperation;
using TextT = std::u16string_view;

namespace {

constexpr TextT containers[] = {u"apply", u"reln",      u"interval", u"list",   u"matrix",   u"matrixrow",
                                u"piece", u"piecewise", u"set",      u"vector", u"otherwise"};

struct RoleNameS {
  TextT element;
  int role;
};

constexpr RoleNameS roles[] = {{u"bvar", 1},
                               {u"degree", 2},
                               {u"logbase", 3},
                               {u"lowlimit", 4},
                               {u"uplimit", 5},
                               {u"condition", 6},
                               {u"domainofapplication", 0}};

RoleNameS const* findRole(TextT element) {
  auto const* const found = std::find_if(std::begin(roles), std::end(roles),
                                         [&](RoleNameS const& entry) { return entry.element == element; });
  return found == std::end(roles) ? nullptr : found;
}

}  // namespace

bool ContentReaderC::isContent(MathmlTreeC const& tree, MathmlIdT id) {
  MathmlTagE const tag = tree.cref(id).tag;
  if (tag == MATHML_CI || tag == MATHML_CN || tag == MATHML_CSYMBOL || tag == MATHML_CS) return true;
  if (tag != MATHML_OTHER) return false;
  TextT const name = tree.name(id);
  return std::find(std::begin(containers), std::end(containers), name) != std::end(containers) ||
         isContentOperator(name) || !findContentConstant(name).empty();
}

ContentReaderC::NodeT ContentReaderC::read(MathmlIdT id) {
  begin(id);
  while (!frames_.empty() && fault_ == READ_ERROR_NONE) {
    FrameS& frame = frames_.back();
    if (frame.child == no_element) {
      FrameS const done = frame;
      frames_.pop_back();
      end(done);
    } else {
      MathmlIdT const child = frame.child;
      frame.child = tree_.cref(child).next;
      begin(child);
    }
  }
  return fault_ == READ_ERROR_NONE ? parts_.back().node : nullptr;
}

void ContentReaderC::fail(MathmlIdT id, ReadErrorE cause) {
  if (fault_ != READ_ERROR_NONE) return;
  fault_ = cause;
  faultElement_ = id;
}

void ContentReaderC::put(NodeT node, RoleE role, MathmlIdT id) {
  if (!node) return fail(id, READ_ERROR_ARGUMENT_COUNT);
  parts_.push_back({std::move(node), role});
}

void ContentReaderC::begin(MathmlIdT id) {
  if (readLeaf(id)) return;
  MathmlElementS const& element = tree_.cref(id);
  if (!tree_.text(id).empty()) return fail(id, READ_ERROR_BAD_MARKUP);
  TextT const name = tree_.name(id);
  bool const isApply = name == u"apply" || name == u"reln";
  bool const isWrapper = element.tag == MATHML_MATH || element.tag == MATHML_MROW ||
                         element.tag == MATHML_MSTYLE || element.tag == MATHML_SEMANTICS;
  bool const isContainer =
      std::find(std::begin(containers), std::end(containers), name) != std::end(containers);
  if (!isWrapper && !isContainer && !findRole(name)) return fail(id, READ_ERROR_UNKNOWN_ELEMENT);
  if (element.first == no_element) return fail(id, READ_ERROR_MISSING_OPERAND);
  MathmlIdT child = element.first;
  // The head of an application says what is made of the rest.
  if (isApply) child = tree_.cref(child).next;
  frames_.push_back({id, child, parts_.size()});
}

bool ContentReaderC::readLeaf(MathmlIdT id) {
  MathmlElementS const& element = tree_.cref(id);
  NodeT node;
  switch (element.tag) {
    case MATHML_CN:
      node = readNumber(id);
      if (!node) fail(id, READ_ERROR_BAD_NUMBER);
      break;
    case MATHML_CI:
    case MATHML_CS:
    case MATHML_CSYMBOL:
      node = makeNamed(nameOf(id, 0));
      if (!node) fail(id, READ_ERROR_BAD_NAME);
      break;
    case MATHML_OTHER: {
      TextT const constant = findContentConstant(tree_.name(id));
      if (constant.empty()) return false;
      node = makeNamed(wstring(constant));
      break;
    }
    default:
      return false;
  }
  if (node) put(std::move(node), ROLE_OPERAND, id);
  return true;
}

ContentReaderC::NodeT ContentReaderC::readNumber(MathmlIdT id) {
  wstring text(tree_.text(id));
  TextT const type = tree_.attribute(id, u"type");
  TextT const base = tree_.attribute(id, u"base");
  if (!base.empty() && base != u"10") return nullptr;
  auto const trimmed = [](wstring part) {
    part.erase(0, part.find_first_not_of(u' '));
    part.erase(part.find_last_not_of(u' ') + 1);
    return part;
  };
  std::size_t const separator = text.find(number_separator);
  if (separator != wstring::npos)
    return readPair(id, type, trimmed(text.substr(0, separator)), trimmed(text.substr(separator + 1)));
  if (type == u"constant") {
    return text == u"π" ? makeNamed(u"_PI") : makeNamed(text);
  }
  return makeNumber(text);
}

ContentReaderC::NodeT ContentReaderC::readPair(MathmlIdT, TextT type, wstring const& first,
                                               wstring const& second) {
  if (type == u"e-notation") {
    wstring exponent = second;
    if (!exponent.empty() && exponent[0] == u'-') exponent[0] = minus_sign;
    return makeNumber(first + u'e' + exponent);
  }
  NodeT const a = makeNumber(first);
  NodeT const b = makeNumber(second);
  if (!a || !b) return nullptr;
  if (type == u"rational") return makeFunction(u"/", {a, b});
  NodeT const i = makeNamed(u"i");
  if (type == u"complex-cartesian") return makeFunction(u"+", {a, makeFunction(u"*", {b, i})});
  if (type != u"complex-polar") return nullptr;
  return makeFunction(u"*", {a, makeFunction(u"^", {makeNamed(u"e"), makeFunction(u"*", {b, i})})});
}

void ContentReaderC::end(FrameS const& frame) {
  MathmlIdT const id = frame.element;
  PartsS parts;
  for (std::size_t i = frame.firstPart; i < parts_.size(); ++i) {
    PartS const& part = parts_[i];
    parts.of[part.role] = &part;
    if (part.role == ROLE_OPERAND) parts.operands.push_back(part.node);
    if (part.role == ROLE_VARIABLE) parts.variables.push_back(&part);
  }
  TextT const name = tree_.name(id);
  PartS result;
  if (name == u"apply" || name == u"reln") {
    result.node = apply(id, parts);
  } else if (RoleNameS const* const role = findRole(name)) {
    result.role = static_cast<RoleE>(role->role);
    if (parts.operands.size() == 1) result.node = parts.operands[0];
    if (parts.of[ROLE_DEGREE]) result.degree = parts.of[ROLE_DEGREE]->node;
    if (result.role == ROLE_CONDITION) {
      MathmlIdT const inner = tree_.cref(id).first;
      MathmlIdT const way = inner == no_element ? no_element : tree_.cref(inner).first;
      TextT const type = way == no_element ? TextT() : tree_.attribute(way, u"type");
      result.side = type == u"above" ? 1 : type == u"below" ? -1 : 0;
    }
  } else if (tree_.cref(id).tag == MATHML_SEMANTICS || parts.operands.empty()) {
    if (!parts.operands.empty()) result.node = parts.operands[0];
  } else if (tree_.cref(id).tag != MATHML_OTHER) {
    if (parts.operands.size() == 1) result.node = parts.operands[0];
  } else {
    result.node = makeContainer(id, name, std::move(parts.operands));
  }
  if (!result.node) return fail(id, READ_ERROR_ARGUMENT_COUNT);
  parts_.resize(frame.firstPart);
  parts_.push_back(std::move(result));
}

ContentReaderC::NodeT ContentReaderC::makeContainer(MathmlIdT id, TextT name, std::vector<NodeT>&& operands) {
  if (name == u"matrixrow") return makeFunction(u"list", std::move(operands));
  if (name == u"piece") return operands.size() == 2 ? makeFunction(u"list", std::move(operands)) : nullptr;
  if (name == u"otherwise") {
    operands.push_back(makeNamed(u"otherwise"));
    return operands.size() == 2 ? makeFunction(u"list", std::move(operands)) : nullptr;
  }
  if (name == u"vector") {
    for (NodeT& operand : operands) operand = makeFunction(u"list", {operand});
    return makeFunction(u"matrix", std::move(operands));
  }
  if (name == u"interval") {
    TextT const closure = tree_.attribute(id, u"closure");
    bool const isOpenLeft = closure == u"open" || closure == u"open-closed";
    bool const isOpenRight = closure == u"open" || closure == u"closed-open";
    if (operands.size() != 2) return nullptr;
    operands.push_back(makeNumber(isOpenLeft ? u"0" : u"1"));
    operands.push_back(makeNumber(isOpenRight ? u"0" : u"1"));
  }
  ContentRowS const* const row = findContentElement(name, operands.size());
  return row ? makeFunction(wstring(row->name), std::move(operands)) : nullptr;
}

// ---- Applications -----------------------------------------------------------------------------------------

ContentReaderC::NodeT ContentReaderC::apply(MathmlIdT id, PartsS& parts) {
  MathmlIdT head = tree_.cref(id).first;
  while (tree_.cref(head).tag == MATHML_SEMANTICS && tree_.cref(head).first != no_element)
    head = tree_.cref(head).first;
  MathmlTagE const tag = tree_.cref(head).tag;
  if (tag == MATHML_CI || tag == MATHML_CSYMBOL)
    return applyNamed(nameOf(head, parts.operands.size()), parts);
  TextT const element = tree_.name(head);
  if (tag != MATHML_OTHER || !isContentOperator(element)) {
    fail(head, READ_ERROR_UNKNOWN_ELEMENT);
    return nullptr;
  }
  std::vector<NodeT>& operands = parts.operands;
  bool const isDegree = element == u"root" && parts.of[ROLE_DEGREE];
  bool const isBased = element == u"log" && parts.of[ROLE_BASE];
  if (isDegree) operands.push_back(parts.of[ROLE_DEGREE]->node);
  if (isBased) operands.push_back(parts.of[ROLE_BASE]->node);
  if (operands.empty()) return nullptr;
  ContentRowS const* const row = findContentElement(element, operands.size());
  if (!row) return nullptr;
  switch (row->kind) {
    case CONTENT_RANGE:
      return applyRange(*row, parts);
    case CONTENT_DERIVATIVE:
      return applyDerivative(*row, parts);
    case CONTENT_LIMIT:
      return applyLimit(parts);
    case CONTENT_DETERMINANT: {
      auto const* const matrix = operands.size() == 1 ? operands[0]->asParent() : nullptr;
      if (!matrix || matrix->crefName() != u"matrix") break;
      std::vector<NodeT> lists;
      for (unsigned long i = 0; i < matrix->numChildren(); ++i) lists.push_back(matrix->childPointer(i));
      operands = std::move(lists);
      break;
    }
    case CONTENT_ROOT:
    case CONTENT_LOGARITHM: {
      bool const hasSecond = isDegree || isBased;
      if (operands.size() != (hasSecond ? 2u : 1u)) return nullptr;
      // A root of degree 2 that somebody wrote is a square root to people, but not the same to programs.
      TextT const name = row->kind == CONTENT_ROOT ? (hasSecond ? TextT(u"nthroot") : TextT(u"sqrt"))
                                                   : (hasSecond ? TextT(u"log") : TextT(u"log10"));
      return makeFunction(wstring(name), std::move(operands));
    }
    case CONTENT_CHAIN: {
      NodeT node = operands[0];
      for (std::size_t i = 1; i < operands.size(); ++i)
        node = makeOperation(wstring(row->name), {node, operands[i]});
      bool const isSum = row->name == u"+" || row->name == u"*" || row->name == u"and" || row->name == u"or";
      return operands.size() == 1 && !isSum ? nullptr : node;
    }
    case CONTENT_CASES:
    case CONTENT_CONTAINER:
    case CONTENT_INTERVAL:
    case CONTENT_MATRIX:
      return nullptr;
    default:
      break;
  }
  if (row->arity != 0 && row->arity != operands.size()) return nullptr;
  return makeOperation(wstring(row->name), std::move(operands));
}

/// What a name, or a symbol before so many operands, is called in expressions.
wstring ContentReaderC::nameOf(MathmlIdT id, std::size_t numOperands) const {
  bool const isSymbol = tree_.cref(id).tag == MATHML_CSYMBOL;
  TextT const text = tree_.text(id);
  return wstring(isSymbol ? findContentSymbol(text, tree_.attribute(id, u"cd"), numOperands) : text);
}

ContentReaderC::NodeT ContentReaderC::applyNamed(wstring const& name, PartsS const& parts) {
  bool const isPlain =
      std::all_of(std::begin(parts.of) + 1, std::end(parts.of), [](auto const* part) { return !part; });
  return isPlain && !parts.operands.empty() ? makeFunction(name, parts.operands) : nullptr;
}

// A sum, a product or an integral, its bounds perhaps as an interval.
ContentReaderC::NodeT ContentReaderC::applyRange(ContentRowS const& row, PartsS& parts) {
  std::vector<NodeT>& operands = parts.operands;
  PartS const* const lower = parts.of[ROLE_LOWER];
  PartS const* const upper = parts.of[ROLE_UPPER];
  NodeT from = lower ? lower->node : nullptr;
  NodeT to = upper ? upper->node : nullptr;
  if (parts.variables.size() != 1) return nullptr;
  auto const* const interval = operands.size() == 2 ? operands[0]->asParent() : nullptr;
  if (interval && interval->crefName() == u"interval" && !from && !to) {
    from = interval->childPointer(0);
    to = interval->childPointer(1);
    operands.erase(operands.begin());
  }
  if (operands.size() != 1 || static_cast<bool>(from) != static_cast<bool>(to)) return nullptr;
  NodeT const variable = parts.variables[0]->node;
  if (!from)
    return row.element == u"int" ? makeFunction(u"antiderivative", {operands[0], variable}) : nullptr;
  NodeT const ordered[] = {variable, from, to, operands[0]};
  std::vector<NodeT> arguments(std::size(ordered));
  for (std::size_t i = 0; i < std::size(ordered); ++i)
    arguments[static_cast<std::size_t>(row.order[i] - u'0')] = ordered[i];
  return makeFunction(wstring(row.name), std::move(arguments));
}

ContentReaderC::NodeT ContentReaderC::applyDerivative(ContentRowS const& row, PartsS const& parts) {
  if (parts.operands.size() != 1 || parts.variables.empty()) return nullptr;
  NodeT node = parts.operands[0];
  wstring const name(row.element == u"diff" ? u"diff" : u"pdiff");
  for (std::size_t i = parts.variables.size(); i-- > 0;) {
    PartS const& variable = *parts.variables[i];
    node = variable.degree ? makeFunction(name + u'n', {node, variable.node, variable.degree})
                           : makeFunction(name, {node, variable.node});
  }
  return node;
}

ContentReaderC::NodeT ContentReaderC::applyLimit(PartsS const& parts) {
  if (parts.operands.size() != 1 || parts.variables.size() != 1) return nullptr;
  NodeT const& variable = parts.variables[0]->node;
  if (PartS const* const lower = parts.of[ROLE_LOWER])
    return makeFunction(u"limit", {parts.operands[0], variable, lower->node});
  PartS const* const condition = parts.of[ROLE_CONDITION];
  auto const* const way = condition ? condition->node->asParent() : nullptr;
  if (!way || way->crefName() != u"to" || way->numChildren() != 2) return nullptr;
  std::vector<NodeT> operands = {parts.operands[0], variable, way->childPointer(1)};
  if (condition->side != 0) operands.push_back(makeNumber(condition->side > 0 ? u"1" : u"\u22121"));
  return makeFunction(u"limit", std::move(operands));
}

}  // namespace zolt::mathml::detail
