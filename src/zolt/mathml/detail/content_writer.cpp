#include "zolt/mathml/detail/content_writer.h"

#include <cstddef>
#include <iterator>
#include <utility>

#include "zolt/algexpr/make_operation.h"
#include "zolt/algexpr/written_operand.h"
#include "zolt/common/signs.h"
#include "zolt/mathml/mathml_tree.h"

namespace zolt::mathml::detail {

using namespace math::common;
using namespace math::algexpr;
using TextT = std::u16string_view;

namespace {

bool isList(NodeABC const& node, unsigned long count) {
  ParentNodeABC const* const parent = node.asParent();
  return parent && parent->crefName() == u"list" && (count == 0 || parent->numChildren() == count);
}

bool areLists(ParentNodeABC const& node, unsigned long count) {
  for (unsigned long i = 0; i < node.numChildren(); ++i) {
    if (!isList(node.child(i), count)) return false;
  }
  return true;
}

bool isBit(NodeABC const& node) { return node.crefName() == u"0" || node.crefName() == u"1"; }

/// Whether the readers, which put brackets where a textbook needs them, make just this node of its operands.
bool isPlain(ParentNodeABC const& node) {
  std::vector<PointerTC<NodeABC>> operands;
  for (unsigned long i = 0; i < node.numChildren(); ++i) operands.push_back(node.childPointer(i));
  PointerTC<NodeABC> const made = makeOperation(node.crefName(), operands);
  ParentNodeABC const* const parent = made ? made->asParent() : nullptr;
  if (!parent || parent->numChildren() != node.numChildren()) return false;
  for (unsigned long i = 0; i < node.numChildren(); ++i) {
    if (&parent->child(i) != &node.child(i)) return false;
  }
  return true;
}

/// Whether the operation has the form that its row in the table is for.
bool fits(ParentNodeABC const& node, ContentRowS const& row) {
  switch (row.kind) {
    case CONTENT_RANGE:
      return isName(node.child(static_cast<unsigned long>(row.order[0] - u'0')));
    case CONTENT_PRIMITIVE:
    case CONTENT_DERIVATIVE:
      return isName(node.child(1));
    case CONTENT_LIMIT:
      return isName(node.child(1)) && (node.numChildren() == 3 || node.child(3).crefName() == u"1" ||
                                       node.child(3).crefName() == u"−1");
    case CONTENT_MATRIX:
      return areLists(node, 0);
    case CONTENT_DETERMINANT:
      return areLists(node, 0) || (node.numChildren() == 1 && node.child(0).crefName() != u"matrix");
    case CONTENT_CASES:
      return areLists(node, 2);
    case CONTENT_INTERVAL:
      return isBit(node.child(2)) && isBit(node.child(3));
    default:
      return isPlain(node);
  }
}

}  // namespace

ContentWriterC::IdT ContentWriterC::write(NodeABC const& root) {
  struct TaskS {
    NodeABC const* node;
    bool isDone;  // its operands have been written
  };
  std::vector<TaskS> tasks = {{&root, false}};
  std::vector<IdT> operands;
  while (!tasks.empty()) {
    TaskS const task = tasks.back();
    tasks.pop_back();
    ParentNodeABC const* const parent = task.node->asParent();
    if (!parent) {
      operands.push_back(makeLeaf(*task.node));
    } else if (task.isDone) {
      std::size_t const first = operands.size() - parent->numChildren();
      IdT const made = make(*parent, operands.data() + first);
      operands.resize(first);
      operands.push_back(made);
    } else {
      tasks.push_back({task.node, true});
      for (unsigned long i = parent->numChildren(); i-- > 0;) tasks.push_back({&parent->child(i), false});
    }
  }
  return operands.back();
}

ContentWriterC::IdT ContentWriterC::makeLeaf(NodeABC const& node) {
  if (isNumber(node)) return makeNumber(node.crefName());
  ContentRowS const* const constant = findContent(node.crefName(), 0);
  if (!constant) return builder_.addToken(u"ci", node.crefName());
  return constant->symbol.empty() ? makeEmpty(constant->element) : makeSymbol(*constant);
}

ContentWriterC::IdT ContentWriterC::makeSymbol(ContentRowS const& row) {
  IdT const id = builder_.addToken(u"csymbol", row.symbol.empty() ? row.name : row.symbol);
  if (!row.element.empty()) builder_.addAttribute(id, u"cd", row.element);
  return id;
}

// The digits stay what they are; an exponent that is written as usual gets an element of its own.
ContentWriterC::IdT ContentWriterC::makeNumber(wstring const& number) {
  wstring written = number;
  if (written[0] == minus_sign) written[0] = u'-';
  std::size_t const e = written.find(u'e');
  if (e == wstring::npos || written.find_first_of(u"-–+", e) != wstring::npos)
    return builder_.addToken(u"cn", written);
  written[e] = number_separator;
  if (written[e + 1] == minus_sign) written[e + 1] = u'-';
  IdT const id = builder_.addToken(u"cn", written);
  builder_.addAttribute(id, u"type", u"e-notation");
  return id;
}

ContentWriterC::IdT ContentWriterC::make(ParentNodeABC const& node, IdT const* operands) {
  std::size_t const count = node.numChildren();
  ContentRowS const* const row = findContent(node.crefName(), node.numChildren());
  if (!row || row->kind == CONTENT_SYMBOL || !fits(node, *row)) return makeCall(node, row, operands);
  auto const wrap = [&](TextT tag, IdT id) { return builder_.addElement(tag, &id, 1); };
  std::vector<IdT> parts;
  if (row->kind < CONTENT_CONTAINER) parts.push_back(makeEmpty(row->element));
  switch (row->kind) {
    case CONTENT_ROOT:
    case CONTENT_LOGARITHM:
      if (count > 1)
        parts.push_back(wrap(row->kind == CONTENT_ROOT ? TextT(u"degree") : TextT(u"logbase"), operands[1]));
      parts.push_back(operands[0]);
      break;
    case CONTENT_RANGE: {
      static constexpr TextT tags[] = {u"bvar", u"lowlimit", u"uplimit"};
      for (std::size_t i = 0; i < std::size(tags); ++i)
        parts.push_back(wrap(tags[i], operands[static_cast<std::size_t>(row->order[i] - u'0')]));
      parts.push_back(operands[static_cast<std::size_t>(row->order[3] - u'0')]);
      break;
    }
    case CONTENT_PRIMITIVE:
      parts.insert(parts.end(), {wrap(u"bvar", operands[1]), operands[0]});
      break;
    case CONTENT_DERIVATIVE: {
      std::vector<IdT> variable = {operands[1]};
      if (count > 2) variable.push_back(wrap(u"degree", operands[2]));
      parts.insert(parts.end(), {makeElement(u"bvar", variable), operands[0]});
      break;
    }
    case CONTENT_LIMIT:
      return makeLimit(operands, node);
    case CONTENT_CONTAINER:
      return builder_.addElement(row->element, operands, count);
    case CONTENT_MATRIX:
      return makeMatrix(operands, count);
    case CONTENT_DETERMINANT: {
      bool const hasLists = isList(node.child(0), 0);
      return makeElement(u"apply",
                         {makeEmpty(row->element), hasLists ? makeMatrix(operands, count) : operands[0]});
    }
    case CONTENT_CASES:
      return makeCases(node, operands);
    case CONTENT_INTERVAL:
      return makeInterval(node, operands);
    default:
      parts.insert(parts.end(), operands, operands + count);
      break;
  }
  return makeElement(u"apply", parts);
}

// A function that has no element is a name where people would take it for one, else a symbol.
ContentWriterC::IdT ContentWriterC::makeCall(ParentNodeABC const& node, ContentRowS const* row,
                                             IdT const* operands) {
  wstring const& name = node.crefName();
  bool const isUsers = !row && (name[0] > 0x7F || isAsciiLetter(name[0]));
  std::vector<IdT> parts = {row && row->kind == CONTENT_SYMBOL
                                ? makeSymbol(*row)
                                : builder_.addToken(isUsers ? TextT(u"ci") : TextT(u"csymbol"), name)};
  if (isUsers) builder_.addAttribute(parts[0], u"type", u"function");
  parts.insert(parts.end(), operands, operands + node.numChildren());
  return makeElement(u"apply", parts);
}

ContentWriterC::IdT ContentWriterC::makeLimit(IdT const* operands, ParentNodeABC const& node) {
  IdT const limit = makeEmpty(u"limit");
  if (node.numChildren() == 3) {
    return makeElement(u"apply", {limit, makeElement(u"bvar", {operands[1]}),
                                  makeElement(u"lowlimit", {operands[2]}), operands[0]});
  }
  IdT const tends = makeEmpty(u"tendsto");
  bool const isAbove = node.child(3).crefName() == u"1";
  builder_.addAttribute(tends, u"type", isAbove ? TextT(u"above") : TextT(u"below"));
  IdT const variable = builder_.addToken(u"ci", node.child(1).crefName());
  IdT const way = makeElement(u"apply", {tends, variable, operands[2]});
  return makeElement(
      u"apply", {limit, makeElement(u"bvar", {operands[1]}), makeElement(u"condition", {way}), operands[0]});
}

ContentWriterC::IdT ContentWriterC::makeMatrix(IdT const* lists, std::size_t count) {
  std::vector<IdT> rows;
  for (std::size_t i = 0; i < count; ++i)
    rows.push_back(makeElement(u"matrixrow", builder_.children(lists[i])));
  return makeElement(u"matrix", rows);
}

ContentWriterC::IdT ContentWriterC::makeCases(ParentNodeABC const& node, IdT const* lists) {
  std::vector<IdT> pieces;
  for (unsigned long i = 0; i < node.numChildren(); ++i) {
    std::vector<IdT> parts = builder_.children(lists[i]);
    NodeABC const& condition = node.child(i).asParent()->child(1);
    bool const isRest =
        isName(condition) && condition.crefName() == u"otherwise" && i + 1 == node.numChildren();
    if (isRest) parts.pop_back();
    pieces.push_back(makeElement(isRest ? TextT(u"otherwise") : TextT(u"piece"), parts));
  }
  return makeElement(u"piecewise", pieces);
}

ContentWriterC::IdT ContentWriterC::makeInterval(ParentNodeABC const& node, IdT const* operands) {
  static constexpr TextT closures[] = {u"open", u"open-closed", u"closed-open", u"closed"};
  IdT const interval = makeElement(u"interval", {operands[0], operands[1]});
  std::size_t const closure =
      (node.child(2).crefName() == u"1" ? 2u : 0u) + (node.child(3).crefName() == u"1" ? 1u : 0u);
  builder_.addAttribute(interval, u"closure", closures[closure]);
  return interval;
}

}  // namespace zolt::mathml::detail
