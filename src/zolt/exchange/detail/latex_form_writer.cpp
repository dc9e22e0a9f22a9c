#include <algorithm>

#include "zolt/algexpr/nodes.h"
#include "zolt/algexpr/written_operand.h"
#include "zolt/common/signs.h"
#include "zolt/exchange/detail/latex_brackets.h"
#include "zolt/exchange/detail/latex_differential.h"
#include "zolt/exchange/detail/latex_names.h"
#include "zolt/exchange/detail/latex_writer.h"

// How the writer writes operations that have a form of their own.
namespace zolt::exchange::detail {

using math::algexpr::asTable;
using math::algexpr::castNode;
using math::algexpr::countColumns;
using math::algexpr::IntegerNodeC;
using math::algexpr::isName;

namespace {

bool isInteger(math::algexpr::NodeABC const& node, std::u16string_view digits) {
  return castNode<IntegerNodeC>(node) && node.crefName() == digits;
}

/// Whether an expression may be written twice: it is small, and has no derivative in it, whose order would be
/// written four times.
bool isShort(math::algexpr::NodeABC const& node) {
  constexpr std::size_t most = 16;
  std::vector<math::algexpr::NodeABC const*> nodes{&node};
  for (std::size_t i = 0; i < nodes.size(); ++i) {
    math::algexpr::ParentNodeABC const* const parent = nodes[i]->asParent();
    if (!parent) continue;
    LatexNotationS const* const notation = findLatex(parent->crefName(), parent->numChildren());
    bool const repeats = notation && notation->kind == LATEX_DERIVATIVE && notation->arity > 2;
    if (repeats || nodes.size() + parent->numChildren() > most) return false;
    for (unsigned long k = 0; k < parent->numChildren(); ++k) nodes.push_back(&parent->child(k));
  }
  return true;
}

}  // namespace

// Writes d/dx, with an exponent for derivatives of derivatives.
void LatexWriterC::writeDerivative(ParentNodeABC const& node, LatexNotationS const& notation,
                                   TaskS const& task) {
  static constexpr unsigned max_exponent = 20;
  static constexpr std::u16string_view exponents[max_exponent + 1] = {
      u"",      u"",      u"^{2}",  u"^{3}",  u"^{4}",  u"^{5}",  u"^{6}",
      u"^{7}",  u"^{8}",  u"^{9}",  u"^{10}", u"^{11}", u"^{12}", u"^{13}",
      u"^{14}", u"^{15}", u"^{16}", u"^{17}", u"^{18}", u"^{19}", u"^{20}"};
  NodeABC const& variable = node.child(1);
  NodeABC const* const order = notation.arity > 2 ? &node.child(2) : nullptr;
  if (!isName(variable) || (order && !isShort(*order))) return writeCall(node);
  NodeABC const* operand = &node.child(0);
  unsigned times = 1;
  for (; !order && times < max_exponent; ++times) {
    ParentNodeABC const* const inner = operand->asParent();
    bool const isSame = inner && inner->numChildren() == 2 && inner->crefName() == notation.name &&
                        isName(inner->child(1)) && inner->child(1).crefName() == variable.crefName();
    if (!isSame) break;
    operand = &inner->child(0);
  }
  // A number as the order is in braces of its own, or it would be so many derivatives. A unit of angles gets
  // brackets from the reader of exponents, which are taken off again.
  bool const isCount = order && countDerivatives(order) > 0;
  bool const isUnit = order && asBracketedUnit(*order);
  auto const laterExponent = [&] {
    if (!order) return later(exponents[times], EDGE_SIGN, EDGE_SIGN);
    later(isCount ? u"}}" : isUnit ? u")}}" : u"}", EDGE_SIGN, EDGE_SIGN);
    later(*order);
    later(isCount ? u"^{{" : isUnit ? u"^{\\mathord{(" : u"^{", EDGE_SIGN, EDGE_SIGN);
  };
  bool const isClosed = isName(*operand);
  bool const bracketed = open(task.rule >= RULE_POWER || (!isClosed && task.follow >= RULE_PRODUCT));
  if (!isClosed) later(*operand, RULE_PRODUCT, bracketed ? RULE_ASSIGNMENT : task.follow);
  later(u"}", EDGE_SIGN, isClosed ? EDGE_OTHER : EDGE_SIGN);
  laterExponent();
  later(variable);
  later(notation.written, EDGE_SIGN, EDGE_SIGN);
  later(u"}{", EDGE_SIGN, EDGE_SIGN);
  if (isClosed) later(*operand);
  laterExponent();
  later(notation.written, EDGE_SIGN, EDGE_SIGN);
  later(u"\\frac{", EDGE_FRACTION, EDGE_SIGN);
  setTall();
}

// Writes an operation by the form in the table.
void LatexWriterC::writeForm(ParentNodeABC const& node, LatexNotationS const& notation, TaskS const& task) {
  LatexKindE const kind = notation.kind;
  bool const isFraction = notation.name == u"/";
  bool const isOpen = kind == LATEX_RANGE || kind == LATEX_LIMIT;
  bool const isIntegral = kind == LATEX_INTEGRAL || kind == LATEX_PRIMITIVE;
  unsigned long const variable = kind == LATEX_RANGE ? 0 : kind == LATEX_INTEGRAL ? 3 : 1;
  bool const hasVariable = isOpen || isIntegral || kind == LATEX_WHERE;
  if (hasVariable && !isName(node.child(variable))) return writeCall(node);
  bool const hasSide = kind == LATEX_LIMIT && notation.arity > 3;
  bool const fromBelow = hasSide && isMinusOne(node.child(3));
  if (hasSide && !fromBelow && !isInteger(node.child(3), u"1")) return writeCall(node);
  bool const isTall = isFraction || hasVariable || notation.name == u"binomial";
  bool const bracketed = open((isTall && task.rule >= RULE_POWER) || (isOpen && task.follow >= RULE_PRODUCT));
  if (isTall) setTall();

  std::vector<TaskS> parts;
  std::u16string_view rest = notation.written;
  EdgeE const first = isFraction ? EDGE_FRACTION : isOpen || isIntegral ? EDGE_FUNCTION : EDGE_OTHER;
  while (!rest.empty()) {
    std::size_t const end = std::min(rest.find(u'#'), rest.size());
    bool const isSide = fromBelow && rest.substr(0, end) == u"^{+}}";
    std::u16string_view const text = isSide ? u"^{-}}" : rest.substr(0, end);
    EdgeE const last = end < rest.size() ? EDGE_SIGN : EDGE_OTHER;
    if (kind == LATEX_BRACKETS) {
      parts.push_back(
          {last == EDGE_OTHER ? TASK_CLOSE : TASK_OPEN, nullptr, {}, {}, text, EDGE_SIGN, EDGE_OTHER});
    } else if (notation.name == bracket_name) {
      parts.push_back({TASK_TEXT,
                       nullptr,
                       {},
                       {},
                       last == EDGE_OTHER ? text.substr(1) : text.substr(0, text.size() - 1),
                       last == EDGE_OTHER ? EDGE_SIGN : first,
                       last});
      parts.insert(
          parts.end() - (last == EDGE_OTHER ? 1 : 0),
          {last == EDGE_OTHER ? TASK_CLOSE : TASK_OPEN, nullptr, {}, {}, last == EDGE_OTHER ? u")" : u"("});
    } else if (!text.empty()) {
      parts.push_back({TASK_TEXT, nullptr, {}, {}, text, parts.empty() ? first : EDGE_SIGN, last});
    }
    if (end == rest.size()) break;
    NodeABC const& operand = node.child(static_cast<unsigned long>(rest[end + 1] - u'1'));
    rest.remove_prefix(end + 2);
    bool const endsForm = rest.empty();
    bool const isValue = !text.empty() && (text.back() == u'=' || text.back() == u' ');
    bool const isIntegrand = isIntegral && rest.substr(0, 2) == u"\\,";
    // An index that looks like another one, or has brackets of its own, is in braces.
    bool const isIndex = !text.empty() && text.back() == u'[';
    bool const needsBraces = isIndex && (operand.asParent() || operand.crefName() == u"2");
    if (needsBraces) parts.push_back({TASK_TEXT, nullptr, {}, {}, u"{", EDGE_SIGN, EDGE_SIGN});
    parts.push_back({TASK_NODE, &operand,
                     endsForm && isOpen ? RULE_PRODUCT
                     : isIntegrand      ? RULE_PRODUCT
                     : isValue          ? (hasSide ? RULE_POSTFIX : RULE_SUM)
                                        : RULE_ASSIGNMENT,
                     endsForm && isOpen && !bracketed ? task.follow : RULE_ASSIGNMENT});
    if (needsBraces) parts.push_back({TASK_TEXT, nullptr, {}, {}, u"}", EDGE_SIGN, EDGE_SIGN});
    if (endsForm && isIntegral) parts.push_back({TASK_TEXT, nullptr, {}, {}, {}, EDGE_SIGN, EDGE_INTEGRAL});
  }
  tasks_.insert(tasks_.end(), parts.rbegin(), parts.rend());
}

// Writes rows of cells.
void LatexWriterC::writeTable(ParentNodeABC const& node, LatexNotationS const& notation, TaskS const& task) {
  unsigned long const columns = countColumns(node);
  bool const isCases = notation.name == u"cases";
  if (columns == 0 || (isCases && columns != 2)) {
    LatexNotationS const* const function =
        node.numChildren() == 1 ? findLatexFunction(notation.name, 1) : nullptr;
    bool const isOther = function && !asTable(node.child(0));
    return isOther ? writeFunction(node, *function, task.rule, nullptr) : writeCall(node);
  }
  // A brace on the left only seems to take everything after it.
  open(isCases && (task.rule >= RULE_PRODUCT || task.follow >= RULE_SUM));
  later(u"}", EDGE_SIGN, EDGE_OTHER);
  later(notation.written.substr(0, notation.written.size() - 1), EDGE_SIGN, EDGE_SIGN);
  later(u"\\end", EDGE_SIGN, EDGE_SIGN);
  for (unsigned long i = node.numChildren(); i-- > 0;) {
    ParentNodeABC const& row = *node.child(i).asParent();
    for (unsigned long k = columns; k-- > 0;) {
      later(row.child(k));
      if (k > 0) later(TASK_SIGN, u"&");
    }
    if (i > 0) later(TASK_ROW, u"\\\\");
  }
  later(notation.written, EDGE_SIGN, EDGE_SIGN);
  later(u"\\begin", EDGE_OTHER, EDGE_SIGN);
  setTall();
}

// Writes a set or an interval.
void LatexWriterC::writeList(ParentNodeABC const& node, LatexNotationS const& notation) {
  bool const isSet = notation.kind == LATEX_SET;
  unsigned long const count = isSet ? node.numChildren() : 2;
  bool const isSingle = isSet && count == 1;
  auto const isEnd = [&](unsigned long i) {
    return isInteger(node.child(i), u"0") || isInteger(node.child(i), u"1");
  };
  if (!isSet && (!isEnd(2) || !isEnd(3))) return writeCall(node);
  bool const left = !isSet && node.child(2).crefName() == u"1";
  bool const right = !isSet && node.child(3).crefName() == u"1";
  // Braces around one thing only group, and "(a, b)" may be anything.
  if (isSingle) later(u"}", EDGE_SIGN, EDGE_OTHER);
  later(TASK_CLOSE, isSet ? u"\\}" : right ? u"]" : left ? u")" : u"[");
  for (unsigned long i = count; i-- > 0;) {
    later(node.child(i));
    if (i > 0) later(TASK_SIGN, u",");
  }
  later(TASK_OPEN, isSet ? u"\\{" : left ? u"[" : right ? u"(" : u"]");
  if (isSingle) later(u"\\mathord{", EDGE_OTHER, EDGE_SIGN);
}

// Writes an operand with others below it.
void LatexWriterC::writeIndex(ParentNodeABC const& node) {
  if (node.numChildren() < 2) return writeCall(node);
  static constexpr char16_t scripts[] = {u'_', math::common::prime_sign, u'\0'};
  NodeABC const& base = node.child(0);
  bool const isBare = isName(base) && !isPrefixLetter(base.crefName());
  // TeX takes primes as an exponent.
  bool const hasIndex =
      isBare && base.crefName() != pi_name && base.crefName().find_first_of(scripts) != wstring::npos;
  bool const calls = isBare && writeLatexName(base.crefName()).kind != LATEX_NAME_PLAIN;
  later(u"}", EDGE_SIGN, calls ? EDGE_CALLS : EDGE_OTHER);
  later(TASK_INDEX_END);
  for (unsigned long i = node.numChildren(); --i > 0;) {
    later(node.child(i));
    if (i > 1) later(TASK_SIGN, u",");
  }
  later(TASK_INDEX);
  later(u"_{", EDGE_SIGN, EDGE_SIGN);
  if (hasIndex) later(u"}", EDGE_SIGN, EDGE_SIGN);
  if (!isBare) later(TASK_CLOSE, u")");
  later(base);
  if (!isBare) later(TASK_OPEN, u"(");
  if (hasIndex) later(u"{", EDGE_NAME, EDGE_SIGN);
}

// An index that would be a part of the name is in braces of its own.
void LatexWriterC::closeIndex() {
  settleMinus(false);
  std::size_t const begin = indices_.back();
  indices_.pop_back();
  wstring const braced = output_.substr(begin - 1) + u'}';
  std::size_t position = 0;
  wstring index;
  // A double-struck letter is one character in other notations, and a part of the name there.
  bool const isLetter = braced.compare(1, 8, u"\\mathbb{") == 0 && braced.find(u'}') + 2 == braced.size();
  if (!isLetter && !readLatexIndex(braced, position, index)) return;
  output_.insert(begin, 1, u'{');
  append(u"}");
}

}  // namespace zolt::exchange::detail
