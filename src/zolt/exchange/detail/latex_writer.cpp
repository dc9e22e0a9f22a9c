#include "zolt/exchange/detail/latex_writer.h"

#include <algorithm>

#include "zolt/algexpr/nodes.h"
#include "zolt/common/signs.h"
#include "zolt/exchange/detail/latex_brackets.h"
#include "zolt/exchange/detail/latex_names.h"
#include "zolt/exchange/detail/written_operand.h"

namespace zolt::exchange::detail {

using namespace math::common;
using math::algexpr::castNode;
using math::algexpr::IntegerNodeC;

namespace {

bool isAsciiLetter(char16_t c) { return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z'); }
bool isName(math::algexpr::NodeABC const& node) { return !node.asParent() && !isNumber(node); }
bool isNegative(math::algexpr::NodeABC const& node) {
  return isNumber(node) && node.crefName()[0] == minus_sign;
}

/// Whether a function may have the operand without brackets.
bool isArgument(math::algexpr::NodeABC const& operand) {
  math::algexpr::ParentNodeABC const* const parent = operand.asParent();
  if (!parent) return !isNegative(operand);
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
    case TASK_OPEN:
      put({}, EDGE_BRACKET, EDGE_SIGN);
      opens_.push_back({output_.size(), false});
      append(task.text);
      isFresh_ = true;
      return;
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
      return isName(parent->child(1)) ? writeDerivative(*parent, task) : writeCall(*parent);
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
  bool const isSign = notation.rule == RULE_SIGN;
  RuleE const own = isSign ? RULE_SUM : notation.rule;
  RuleE const follow = open(own < task.rule || (isSign && !isFresh_)) ? RULE_ASSIGNMENT : task.follow;
  if (!isSign) {
    put(notation.written, EDGE_NUMBER, EDGE_SIGN);
    isFresh_ = true;
  } else {
    // Braces keep the reader from taking two signs together.
    bool const cancels = notation.name == u"_neg" &&
                         (isNegative(operand) || (operand.asParent() && operand.crefName() == u"_neg"));
    put(cancels ? u"{-}" : notation.written, EDGE_OTHER, EDGE_SIGN);
    isFresh_ = false;
    minus_ = notation.name == u"_neg" && !cancels ? output_.size() : 0;
  }
  later(operand, isSign ? RULE_PRODUCT : notation.rule, follow);
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
  bool const calls = isName(*base) && writeLatexName(base->crefName()).kind != LATEX_NAME_PLAIN;
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
  } else {
    later(TASK_CLOSE, u")");
    for (unsigned long i = isIndexed ? 1 : node.numChildren(); i-- > 0;) {
      later(node.child(i));
      if (i > 0) later(TASK_SIGN, u",");
    }
    later(TASK_OPEN, u"(");
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

// Writes d/dx, with an exponent for derivatives of derivatives.
void LatexWriterC::writeDerivative(ParentNodeABC const& node, TaskS const& task) {
  static constexpr unsigned max_exponent = 20;
  static constexpr std::u16string_view exponents[max_exponent + 1] = {
      u"",      u"",      u"^{2}",  u"^{3}",  u"^{4}",  u"^{5}",  u"^{6}",
      u"^{7}",  u"^{8}",  u"^{9}",  u"^{10}", u"^{11}", u"^{12}", u"^{13}",
      u"^{14}", u"^{15}", u"^{16}", u"^{17}", u"^{18}", u"^{19}", u"^{20}"};
  NodeABC const& variable = node.child(1);
  NodeABC const* operand = &node.child(0);
  unsigned times = 1;
  for (; times < max_exponent; ++times) {
    ParentNodeABC const* const inner = operand->asParent();
    bool const isSame = inner && inner->numChildren() == 2 && inner->crefName() == u"diff" &&
                        isName(inner->child(1)) && inner->child(1).crefName() == variable.crefName();
    if (!isSame) break;
    operand = &inner->child(0);
  }
  bool const isClosed = isName(*operand);
  bool const bracketed = open(task.rule >= RULE_POWER || (!isClosed && task.follow >= RULE_PRODUCT));
  if (!isClosed) later(*operand, RULE_PRODUCT, bracketed ? RULE_ASSIGNMENT : task.follow);
  later(u"}", EDGE_SIGN, isClosed ? EDGE_OTHER : EDGE_SIGN);
  later(exponents[times], EDGE_SIGN, EDGE_SIGN);
  later(variable);
  later(u"}{\\mathrm{d}", EDGE_SIGN, EDGE_SIGN);
  if (isClosed) later(*operand);
  later(exponents[times], EDGE_SIGN, EDGE_SIGN);
  later(u"\\frac{\\mathrm{d}", EDGE_FRACTION, EDGE_SIGN);
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
  bool const isTall = isFraction || hasVariable || notation.name == u"binomial";
  bool const bracketed = open((isTall && task.rule >= RULE_POWER) || (isOpen && task.follow >= RULE_PRODUCT));
  if (isTall) setTall();

  std::vector<TaskS> parts;
  std::u16string_view rest = notation.written;
  EdgeE const first = isFraction ? EDGE_FRACTION : isOpen || isIntegral ? EDGE_FUNCTION : EDGE_OTHER;
  while (!rest.empty()) {
    std::size_t const end = std::min(rest.find(u'#'), rest.size());
    std::u16string_view const text = rest.substr(0, end);
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
                     : isValue          ? RULE_SUM
                                        : RULE_ASSIGNMENT,
                     endsForm && isOpen && !bracketed ? task.follow : RULE_ASSIGNMENT});
    if (needsBraces) parts.push_back({TASK_TEXT, nullptr, {}, {}, u"}", EDGE_SIGN, EDGE_SIGN});
    if (endsForm && isIntegral) parts.push_back({TASK_TEXT, nullptr, {}, {}, {}, EDGE_SIGN, EDGE_INTEGRAL});
  }
  tasks_.insert(tasks_.end(), parts.rbegin(), parts.rend());
}

void LatexWriterC::writeCall(ParentNodeABC const& node) {
  LatexNameS const name = writeLatexFunction(node.crefName());
  later(TASK_CLOSE, u")");
  for (unsigned long i = node.numChildren(); i-- > 0;) {
    later(node.child(i));
    if (i > 0) later(TASK_SIGN, u",");
  }
  later(TASK_OPEN, u"(");
  put(name.text, EDGE_NAME, EDGE_SIGN);
}

void LatexWriterC::writeLeaf(NodeABC const& node, RuleE rule) {
  wstring const& name = node.crefName();
  if (isNumber(node)) return writeNumber(name, rule);
  if (LatexNotationS const* const constant = findLatex(name, 0))
    return put(constant->written, EDGE_NAME, EDGE_NAME);
  LatexNameS const written = writeLatexName(name);
  bool const isD = name == u"d" || name == u"∂";
  EdgeE const last = isD ? EDGE_D : written.kind == LATEX_NAME_PLAIN ? EDGE_NAME : EDGE_CALLS;
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
