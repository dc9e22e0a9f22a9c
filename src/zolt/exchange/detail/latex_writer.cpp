#include "zolt/exchange/detail/latex_writer.h"

#include <algorithm>

#include "zolt/algexpr/nodes.h"
#include "zolt/algexpr/written_operand.h"
#include "zolt/common/signs.h"
#include "zolt/exchange/detail/latex_brackets.h"
#include "zolt/exchange/detail/latex_names.h"

namespace zolt::exchange::detail {

using namespace math::common;
using math::algexpr::castNode;
using math::algexpr::findWrittenOperand;
using math::algexpr::IntegerNodeC;
using math::algexpr::isName;
using math::algexpr::isNegativeNumber;
using math::algexpr::isNumber;

namespace {

/// Whether a function may have the operand without brackets.
bool isArgument(math::algexpr::NodeABC const& operand) {
  math::algexpr::ParentNodeABC const* const parent = operand.asParent();
  if (!parent) return !isNegativeNumber(operand) && !isPrefixLetter(operand.crefName());
  LatexNotationS const* const notation = findLatex(parent->crefName(), parent->numChildren());
  return notation && notation->name != bracket_name &&
         (notation->kind == LATEX_COMMAND || notation->kind == LATEX_BRACKETS);
}

/// Whether a text ends with a command.
bool endsWithCommand(std::u16string_view text) {
  std::size_t begin = text.size();
  while (begin > 0 && isAsciiLetter(text[begin - 1])) --begin;
  return begin > 0 && begin < text.size() && text[begin - 1] == u'\\';
}

}  // namespace

wstring LatexWriterC::write(NodeABC const& node) {
  later(node);
  while (!tasks_.empty()) {
    TaskS const task = tasks_.back();
    tasks_.pop_back();
    run(task);
  }
  settleMinus(false);
  std::sort(growths_.begin(), growths_.end());
  wstring grown;
  std::size_t from = 0;
  for (auto const& [position, growth] : growths_) {
    grown.append(output_, from, position - from);
    grown += growth;
    from = position;
  }
  return grown.append(output_, from, wstring::npos);
}

void LatexWriterC::run(TaskS const& task) {
  switch (task.kind) {
    case TASK_NODE:
      return writeNode(task);
    case TASK_TEXT:
      return put(task.text, task.first, task.last);
    case TASK_SIGN:
      return putSign(task.text);
    case TASK_TIMES:
      hasTimes_ = true;
      return;
    case TASK_OPEN: {
      // Before other brackets a sign keeps them from being the end of an interval, after a row its space.
      bool const isInterval = task.text == u"[" || task.text == u"]";
      put({}, isInterval ? EDGE_NUMBER : EDGE_BRACKET, EDGE_SIGN);
      if (task.text == u"[" && startsRow_ > 0 && startsRow_ == output_.size()) append(u"{}");
      opens_.push_back({output_.size(), task.text == u"]"});
      append(task.text);
      isFresh_ = true;
      return;
    }
    case TASK_CLOSE: {
      settleMinus(false);
      OpenS const open = opens_.back();
      opens_.pop_back();
      if (open.isTall) {
        growths_.emplace_back(open.position, u"\\left");
        growths_.emplace_back(output_.size(), u"\\right");
        setTall();
      }
      put(task.text, EDGE_SIGN, task.last);
      return;
    }
    case TASK_ROW:
      putSign(task.text);
      startsRow_ = output_.size();
      return;
    case TASK_INDEX:
      indices_.push_back(output_.size());
      return;
    case TASK_INDEX_END:
      return closeIndex();
  }
}

// ---- Nodes ------------------------------------------------------------------------------------------------

void LatexWriterC::writeNode(TaskS const& task) {
  ParentNodeABC const* const parent = task.node->asParent();
  if (!parent) return writeLeaf(*task.node, task.rule);
  wstring const& name = parent->crefName();
  unsigned long const count = parent->numChildren();
  if (name == u"^" && count == 2) return writePower(*parent, task);
  LatexNotationS const* const notation = findLatex(name, count);
  if (!notation) return writeCall(*parent);
  switch (notation->kind) {
    case LATEX_INFIX:
      return writeInfix(*parent, *notation, task);
    case LATEX_PREFIX:
      return writePrefix(*parent, *notation, task);
    case LATEX_POSTFIX:
      return writePostfix(*parent, *notation, task);
    case LATEX_FUNCTION:
    case LATEX_INDEXED:
      return writeFunction(*parent, *notation, task.rule, nullptr);
    case LATEX_DERIVATIVE:
      return writeDerivative(*parent, *notation, task);
    case LATEX_TABLE:
      return writeTable(*parent, *notation, task);
    case LATEX_SET:
    case LATEX_INTERVAL:
      return writeList(*parent, *notation);
    case LATEX_INDEX:
      return writeIndex(*parent);
    default:
      return writeForm(*parent, *notation, task);
  }
}

void LatexWriterC::writeInfix(ParentNodeABC const& node, LatexNotationS const& notation, TaskS const& task) {
  bool const isTimes = notation.name == u"*";
  // People do not read the remainder of a product in a row as a program does.
  bool const isWord = notation.rule == RULE_PRODUCT && !isTimes;
  RuleE const follow = open((isWord ? RULE_SUM : notation.rule) < task.rule) ? RULE_ASSIGNMENT : task.follow;
  later(node.child(1), notation.rightRule, follow);
  later(isTimes ? TASK_TIMES : TASK_SIGN, notation.written);
  later(node.child(0), notation.leftRule, notation.rule);
}

void LatexWriterC::writePrefix(ParentNodeABC const& node, LatexNotationS const& notation, TaskS const& task) {
  NodeABC const& operand = node.child(0);
  bool const isLetter = notation.rule == RULE_SIGN && notation.written[0] == u'\\' &&
                        !findLatexLetter(notation.written.substr(1)).empty();
  bool const isSign = notation.rule == RULE_SIGN && !isLetter;
  RuleE const own = isSign ? RULE_SUM : isLetter ? RULE_POWER : notation.rule;
  RuleE const follow = open(own < task.rule || (isSign && !isFresh_)) ? RULE_ASSIGNMENT : task.follow;
  if (!isSign) {
    // In a fraction, the letter would be a part of ∂f/∂x, and before a "d" a name at the end of an integral.
    EdgeE const first = isLetter ? EDGE_NAME : EDGE_NUMBER;
    NodeABC const* begin = &operand;
    for (int i = 0; i < 3 && begin->asParent(); ++i) begin = &begin->asParent()->child(0);
    bool const mayBeD = begin->asParent() || begin->crefName() == u"d";
    bool const needsBraces = isLetter && (notation.written == u"\\partial" || mayBeD);
    put(needsBraces ? u"{" : u"", first, EDGE_SIGN);
    put(notation.written, EDGE_SIGN, EDGE_SIGN);
    put(needsBraces ? u"}" : u"", EDGE_SIGN, EDGE_SIGN);
    isFresh_ = true;
  } else {
    // Braces keep the reader from taking two signs together.
    bool const cancels = notation.name == u"_neg" &&
                         (isNegativeNumber(operand) || (operand.asParent() && operand.crefName() == u"_neg"));
    put(cancels ? u"{-}" : notation.written, EDGE_OTHER, EDGE_SIGN);
    isFresh_ = false;
    minus_ = notation.name == u"_neg" && !cancels ? output_.size() : 0;
  }
  later(operand, isSign ? RULE_PRODUCT : own, follow);
}

void LatexWriterC::writePostfix(ParentNodeABC const& node, LatexNotationS const& notation,
                                TaskS const& task) {
  NodeABC const* const operand = findWrittenOperand(node, 0);
  if (!operand) return writeCall(node);
  bool const isRaised = notation.written[0] == u'^';
  open(isRaised && task.rule > RULE_POWER);
  later(notation.written, EDGE_SIGN, EDGE_OTHER);
  later(*operand, RULE_POSTFIX);
}

void LatexWriterC::writePower(ParentNodeABC const& node, TaskS const& task) {
  NodeABC const* const base = findWrittenOperand(node, 0);
  NodeABC const* const exponent = findWrittenOperand(node, 1);
  if (!base || !exponent) return writeCall(node);
  ParentNodeABC const* const function = base->asParent();
  LatexNotationS const* const notation =
      function ? findLatex(function->crefName(), function->numChildren()) : nullptr;
  bool const isFunction = notation && (notation->kind == LATEX_FUNCTION || notation->kind == LATEX_INDEXED);
  if (isFunction && base == &node.child(0) && !isMinusOne(*exponent) && task.rule <= RULE_POWER) {
    return writeFunction(*function, *notation, task.rule, exponent);
  }
  open(task.rule > RULE_POWER);
  NodeABC const& named = notation && notation->kind == LATEX_INDEX ? function->child(0) : *base;
  bool const calls = isName(named) && writeLatexName(named.crefName()).kind != LATEX_NAME_PLAIN;
  later(u"}", EDGE_SIGN, calls ? EDGE_CALLS : EDGE_OTHER);
  later(*exponent);
  later(u"^{", EDGE_SIGN, EDGE_SIGN);
  later(*base, RULE_POSTFIX);
}

// Writes a function, with an exponent after its name if there is one.
void LatexWriterC::writeFunction(ParentNodeABC const& node, LatexNotationS const& notation, RuleE rule,
                                 NodeABC const* exponent) {
  NodeABC const& operand = node.child(0);
  bool const isIndexed = notation.kind == LATEX_INDEXED;
  bool const isBare = notation.arity == (isIndexed ? 2u : 1u) && isArgument(operand) && rule <= RULE_ARGUMENT;
  if (isBare) {
    later({}, EDGE_SIGN, EDGE_ARGUMENT);
    later(operand);
    later(u" ", EDGE_SIGN, EDGE_SIGN);
    later(applySign(), EDGE_SIGN, EDGE_SIGN);
  } else {
    later(TASK_CLOSE, u")");
    for (unsigned long i = isIndexed ? 1 : node.numChildren(); i-- > 0;) {
      later(node.child(i));
      if (i > 0) later(TASK_SIGN, u",");
    }
    later(TASK_OPEN, u"(");
    later(applySign(), EDGE_SIGN, EDGE_SIGN);
  }
  if (exponent) {
    later(u"}", EDGE_SIGN, EDGE_SIGN);
    later(*exponent);
    later(u"^{", EDGE_SIGN, EDGE_SIGN);
  }
  if (isIndexed) {
    later(u"}", EDGE_SIGN, EDGE_SIGN);
    later(node.child(1));
  }
  put(notation.written.substr(0, notation.written.find(u'#')), EDGE_FUNCTION, EDGE_SIGN);
  isFresh_ = true;
}

void LatexWriterC::writeCall(ParentNodeABC const& node) {
  LatexNameS const name = writeLatexFunction(node.crefName());
  later(TASK_CLOSE, u")");
  for (unsigned long i = node.numChildren(); i-- > 0;) {
    later(node.child(i));
    if (i > 0) later(TASK_SIGN, u",");
  }
  later(TASK_OPEN, u"(");
  later(applySign(), EDGE_SIGN, EDGE_SIGN);
  put(name.text, EDGE_NAME, EDGE_SIGN);
}

void LatexWriterC::writeLeaf(NodeABC const& node, RuleE rule) {
  wstring const& name = node.crefName();
  if (isNumber(node)) return writeNumber(name, rule);
  if (LatexNotationS const* const constant = findLatex(name, 0))
    return put(constant->written, EDGE_NAME, EDGE_NAME);
  LatexNameS const written = writeLatexName(name);
  bool const isD = name == u"d" || name == u"∂";
  EdgeE const last = isPrefixLetter(name)               ? EDGE_PREFIX
                     : isD                              ? EDGE_D
                     : written.kind == LATEX_NAME_PLAIN ? EDGE_NAME
                                                        : EDGE_CALLS;
  put(written.text, EDGE_NAME, last);
}

void LatexWriterC::writeNumber(wstring const& number, RuleE rule) {
  bool const negative = number[0] == minus_sign;
  LatexNameS const written = writeLatexNumber(number.substr(negative ? 1 : 0));
  bool const hasExponent = written.kind != LATEX_NAME_PLAIN;
  open((negative && (rule > RULE_SIGN || !isFresh_)) || (hasExponent && rule > RULE_POWER));
  if (negative) return put(u"-" + written.text, EDGE_NUMBER, EDGE_NEGATIVE);
  bool const afterMinus = minus_ != 0 && minus_ == output_.size();
  put(written.text, EDGE_NUMBER, EDGE_NUMBER);
  minusNumber_ = afterMinus;
}

// ---- Text -------------------------------------------------------------------------------------------------

bool LatexWriterC::open(bool needed) {
  if (!needed) return false;
  run({TASK_OPEN, nullptr, {}, {}, u"("});
  later(TASK_CLOSE, u")");
  return true;
}

void LatexWriterC::put(std::u16string_view text, EdgeE first, EdgeE last) {
  bool const isImpliedProduct = hasTimes_ && isImplied(first);
  settleMinus(isImpliedProduct || (!text.empty() && (text[0] == u'^' || text[0] == u'!')));
  if (hasTimes_) {
    hasTimes_ = false;
    if (!isImpliedProduct) putSign(u"\\cdot");
    if (isImpliedProduct && signs_ == LATEX_SIGNS_ALL) append(u"\u2062");
  }
  append(text);
  last_ = last;
  isFresh_ = last == EDGE_SIGN && !text.empty();
}

void LatexWriterC::putSign(std::u16string_view sign) {
  settleMinus(false);
  bool const isSpaced = sign != u"+" && sign != u"-" && sign != u",";
  if (isSpaced) append(u" ");
  append(sign);
  if (isSpaced || sign == u",") append(u" ");
  last_ = EDGE_SIGN;
  isFresh_ = isSpaced && sign != u"\\cdot" && sign != u"\\bmod" ? true : sign == u",";
}

void LatexWriterC::append(std::u16string_view text) {
  if (text.empty()) return;
  if (endsCommand_ && isAsciiLetter(text[0])) output_ += u' ';
  output_ += text;
  endsCommand_ = endsWithCommand(text);
}

// A number after a minus sign would become negative unless what follows binds tighter than the sign.
void LatexWriterC::settleMinus(bool binds) {
  if (minusNumber_ && !binds) {
    output_.insert(minus_, 1, u'}');
    output_.insert(minus_ - 1, 1, u'{');
  }
  minusNumber_ = false;
}

void LatexWriterC::setTall() {
  if (!opens_.empty()) opens_.back().isTall = true;
}

bool LatexWriterC::isImplied(EdgeE first) const {
  if (first == EDGE_NUMBER) return false;
  switch (last_) {
    case EDGE_NEGATIVE:
    case EDGE_INTEGRAL:
    case EDGE_PREFIX:
      return false;
    case EDGE_ARGUMENT:
      return first == EDGE_FUNCTION;
    case EDGE_NUMBER:
      return first != EDGE_FRACTION;
    case EDGE_CALLS:
      return first != EDGE_BRACKET;
    case EDGE_D:
      return first != EDGE_NAME;
    default:
      return true;
  }
}

}  // namespace zolt::exchange::detail
