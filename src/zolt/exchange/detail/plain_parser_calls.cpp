#include <algorithm>
#include <iterator>
#include <utility>

#include "zolt/algexpr/make_node.h"
#include "zolt/algexpr/make_operation.h"
#include "zolt/algexpr/parent_node.h"
#include "zolt/algexpr/written_operand.h"
#include "zolt/common/signs.h"
#include "zolt/exchange/detail/plain_parser.h"
#include "zolt/exchange/plain_operator.h"

namespace zolt::exchange::detail {

namespace common = math::common;
using namespace math::common;
using math::algexpr::childrenOf;
using math::algexpr::makeFunction;
using math::algexpr::makeNamed;
using math::algexpr::makeNumber;
using math::algexpr::makePower;

namespace {

/// Whether people write the arguments of the function as a set: "max{a,b}".
bool isOfSet(std::u16string_view name) {
  constexpr std::u16string_view functions[] = {u"max", u"min", u"sup", u"gcd", u"lcm"};
  return std::find(std::begin(functions), std::end(functions), name) != std::end(functions);
}

/// Puts the arguments of a call, as they are written, into the order of the operation. False, with nothing
/// changed, when one of them has another form.
bool arrange(NotationS const& call, std::vector<PointerTC<math::algexpr::NodeABC>>& arguments,
             PointerTC<math::algexpr::NodeABC> const& side) {
  if (arguments.size() != call.pattern->count) return false;
  std::vector<PointerTC<math::algexpr::NodeABC>> ordered(call.arity);
  for (std::size_t i = 0; i < arguments.size(); ++i) {
    CallPatternS::ArgumentS const& form = call.pattern->arguments[i];
    if (form.side > 0) ordered[form.side - 1] = side;
    if (form.sign.empty()) {
      ordered[form.first - 1] = arguments[i];
      continue;
    }
    ReadingS const* const sign = findReading(form.sign);
    auto const* const operation = arguments[i]->asParent();
    bool const fits =
        sign && operation && operation->numChildren() == 2 && operation->crefName() == sign->notation->name;
    if (!fits) return false;
    auto operands = childrenOf(*operation);
    ordered[form.first - 1] = std::move(operands[0]);
    ordered[form.second - 1] = std::move(operands[1]);
  }
  arguments = std::move(ordered);
  return true;
}

/// Whether a node is letters and digits, so that it can be a part of a name.
bool isWord(math::algexpr::NodeABC const& node) {
  wstring const& name = node.crefName();
  return !node.asParent() && isBareName(u'a' + name) && name.find(common::prime_sign) == name.npos;
}

}  // namespace

PlainParserC::NextE PlainParserC::readName() {
  if (NextE const next = readDerivative(); next != NEXT_NOTHING) return next;
  if (NextE const next = readDifferentialFirst(); next != NEXT_NOTHING) return next;
  FrameS frame = startCall(token().text);
  if (isIntegral(frame.name)) return readIntegral(std::move(frame));
  if (isFunction(frame.name)) {
    frame.isWritten = true;
    return readFunction(std::move(frame));
  }
  // After a blank, brackets are a factor: "a (b+c)".
  frame.isIndexed = frame.name.back() == u'_';
  bool const takesBraces = frame.isIndexed || isOfSet(frame.name);
  if ((opensCall() || (takesBraces && opensBraces())) && token().begin == frame.end) {
    frame.close = token().bracket;
    if (!frame.isIndexed) takeMark(frame);
    if (!frame.isIndexed && !frame.isWritten) frame.name = toCalledLetters(frame.name);
    return beginBracket(std::move(frame));
  }
  if (isBigSign(frame.name[0])) return failAt(frame.begin, frame.end, READ_ERROR_BAD_BOUNDS);
  return readMarkedName(std::move(frame));
}

// Reads "log_2 x" and "log_2^2(x)", as "ln x" and "ln^2(x)"; any other name is a name.
PlainParserC::NextE PlainParserC::readMarkedName(FrameS&& frame) {
  NodeT const name = makeNamed(toLetters(frame.name));
  if (findMark(frame.name) == wstring::npos || frame.name.back() == u'_') return keep(name);
  PlainLexerC const before = lexer_;
  takeMark(frame);
  bool const isReadable = readFunctionExponent(frame);
  if (isReadable && frame.exponent && opensCall()) return beginBracket(std::move(frame));
  if (isReadable && token().startsOperand() && !opensCall()) return beginApplication(std::move(frame));
  lexer_ = before;
  return keep(name);
}

PlainParserC::NextE PlainParserC::beginApplication(FrameS&& frame) {
  frame.kind = PENDING_APPLICATION;
  frame.operandRule = RULE_ARGUMENT;
  frame.close = u'\0';
  push(std::move(frame));
  return NEXT_OPERAND;
}

/// Takes the base out of a name such as "log_2"; does nothing when it has none.
void PlainParserC::takeMark(FrameS& frame) {
  std::size_t const end = findMark(frame.name);
  if (end == wstring::npos) return;
  wstring const mark = frame.name.substr(end + 1);
  frame.second = makeNumber(mark);
  if (!frame.second) frame.second = makeNamed(mark);
  frame.name.erase(end);
  frame.isWritten = true;
}

/// Whether the brackets that have just been read hold the base of a logarithm, "log_(a+1)(x)", whose
/// argument then begins.
bool PlainParserC::beginMarkedCall(FrameS const& frame, std::vector<NodeT> const& arguments) {
  bool const isMarked =
      frame.isIndexed && arguments.size() == 1 && findMark(frame.name) + 1 == frame.name.size();
  bool const isApplied = frame.close == u'}' && token().startsOperand();
  if (!isMarked || !(opensCall() || isApplied)) return false;
  FrameS call{RULE_ASSIGNMENT, PENDING_CALL, u')'};
  call.name = frame.name.substr(0, frame.name.size() - 1);
  call.isWritten = true;
  call.second = arguments[0];
  call.begin = frame.begin;
  call.end = frame.end;
  if (opensCall()) {
    beginBracket(std::move(call));
  } else {
    beginApplication(std::move(call));
  }
  return true;
}

/// Whether the bars that the current token closes are the outer ones of "||x||", which hosts have a function
/// for.
bool PlainParserC::isDoubled(FrameS const& bars, std::vector<NodeT> const& arguments) const {
  auto const* const inner = arguments.size() == 1 ? arguments[0]->asParent() : nullptr;
  if (!inner || findDoubleBars().empty() || inner->crefName() != bars.name) return false;
  return lexer_.isBar(bars.begin + 1) && lexer_.isBar(token().begin - 1);
}

// A bar that no other one closes is the sign of a condition: "P(A|B)".
bool PlainParserC::separates() const {
  unsigned depth = 0, bars = 1;
  PlainLexerC ahead = lexer_;
  for (unsigned left = most_condition; left > 0; --left) {
    ahead.readNextToken();
    PlainTokenE const type = ahead.crefToken().type;
    if (type == PLAIN_TOKEN_END || (depth == 0 && (type == PLAIN_TOKEN_CLOSE || type == PLAIN_TOKEN_COMMA)))
      return bars % 2 == 1;
    if (type == PLAIN_TOKEN_BAD) return false;
    if (type == PLAIN_TOKEN_OPEN) ++depth;
    if (type == PLAIN_TOKEN_CLOSE) --depth;
    if (type == PLAIN_TOKEN_BAR && depth == 0) ++bars;
  }
  return false;
}

PlainParserC::NextE PlainParserC::readBar() {
  if (!closes_.empty() && closes_.back() == bar) return readBracketEnd();
  ReadingS const* const condition = findReading(condition_name);
  return condition && separates() ? readInfix(*condition->notation) : readProduct();
}

PlainParserC::NextE PlainParserC::readQuotedName() {
  FrameS frame = startCall(token().text);
  if (opensCall()) return beginBracket(std::move(frame));
  return keep(makeNamed(frame.name));
}

PlainParserC::NextE PlainParserC::readWordCall(std::u16string_view name) {
  FrameS frame = startCall(name);
  if (opensCall()) return beginBracket(std::move(frame));
  // After a relation, "not" applies to what the relation does.
  if (name != u"not" || currentRule() != tighterThan(RULE_RELATION)) {
    return failAt(frame.begin, frame.end, READ_ERROR_MISSING_OPERAND);
  }
  FrameS prefix{tighterThan(RULE_RELATION), PENDING_PREFIX};
  prefix.takesSign = true;
  prefix.name = frame.name;
  push(std::move(prefix));
  return NEXT_OPERAND;
}

PlainParserC::NextE PlainParserC::readFunction(FrameS&& frame) {
  if (opensCall()) return beginBracket(std::move(frame));
  if (isAddedFunction(frame.name)) return keep(makeNamed(frame.name));
  ReadingS const* const unary = findFunction(frame.name, 1);
  if (unary && unary->notation->arity == 0) return keep(makeNamed(frame.name));
  if (unary && readFunctionExponent(frame)) {
    if (opensCall()) return beginBracket(std::move(frame));
    if (token().startsOperand()) return beginApplication(std::move(frame));
  }
  return failAt(frame.begin, frame.end, READ_ERROR_MISSING_ARGUMENTS);
}

// Reads the exponent between a function's name and its argument, as in "sin^2 x", if there is one.
bool PlainParserC::readFunctionExponent(FrameS& frame) {
  wstring exponent;
  if (token().type == PLAIN_TOKEN_SUPERSCRIPT) {
    exponent = token().text;
  } else if (token().type == PLAIN_TOKEN_INFIX && token().infix->name == u"^") {
    lexer_.readNextToken();
    if (token().type == PLAIN_TOKEN_INFIX && token().infix->name == u"-") {
      exponent = common::minus_sign;
      lexer_.readNextToken();
    }
    if (token().type != PLAIN_TOKEN_NUMBER && token().type != PLAIN_TOKEN_NAME) return false;
    exponent += token().text;
  } else {
    return true;
  }
  lexer_.readNextToken();
  if (exponent[0] != common::minus_sign) {
    frame.exponent = common::isDigit(exponent[0]) ? makeNumber(exponent) : makeNamed(exponent);
    return true;
  }
  if (frame.second) {
    frame.exponent = makeNumber(exponent);
    return bool{frame.exponent};
  }
  ReadingS const* const function = findFunction(frame.name, 1);
  std::u16string_view const inverse = function->notation->plain.inverse;
  if (inverse.empty() || exponent.compare(1, wstring::npos, u"1") != 0) return false;
  frame.name = inverse;
  return true;
}

// Reads the name of a function, after which its brackets or its operand may begin.
PlainParserC::FrameS PlainParserC::startCall(std::u16string_view name) {
  FrameS frame{RULE_ASSIGNMENT, PENDING_CALL, u')'};
  frame.name = name;
  frame.begin = token().begin;
  frame.end = token().end;
  lexer_.readNextToken();
  return frame;
}

/// Reads the sign after an argument that is no operation, "+" in "lim(x->0+,f)" or "lim(x->0^+,f)". False,
/// with nothing read, when there is none.
bool PlainParserC::readSide() {
  // What comes next is looked at first: the search for the call would be long in a row of powers.
  PlainLexerC ahead = lexer_;
  bool const isRaised = token().type == PLAIN_TOKEN_INFIX && token().infix->rule == RULE_POWER;
  if (isRaised) ahead.readNextToken();
  std::u16string_view const written = ahead.viewToken();
  char16_t const raised = written.size() == 1 && !isRaised ? common::loweredSign(written[0]) : u'\0';
  char16_t const sign = written.size() != 1 ? u'\0' : raised != u'\0' ? raised : written[0];
  if (sign != u'+' && !common::isMinus(sign)) return false;
  ahead.readNextToken();
  bool const ends = ahead.crefToken().type == PLAIN_TOKEN_CLOSE;
  if (!ends && ahead.crefToken().type != PLAIN_TOKEN_COMMA) return false;
  auto const call =
      std::find_if(frames_.rbegin(), frames_.rend(), [](FrameS const& one) { return one.close != u'\0'; });
  if (call == frames_.rend() || call->kind != PENDING_CALL || call->side) return false;
  // "lim_(x->0+) f"
  if (ends ? !call->isIndexed || call->isWritten : !call->isWritten) return false;
  ReadingS const* const sided =
      findSidedFunction(ends ? call->name.substr(0, call->name.size() - 1) : call->name);
  CallPatternS const* const pattern = sided ? sided->notation->pattern : nullptr;
  if (!pattern || pattern->findSide() != pattern->arguments + call->commas) return false;
  call->side = makeNumber(sign == u'+' ? wstring(u"1") : wstring{common::minus_sign, u'1'});
  lexer_ = std::move(ahead);
  return true;
}

PlainParserC::NodeT PlainParserC::makeCall(FrameS const& frame, std::vector<NodeT> arguments) {
  if (frame.isIndexed && (frame.second || frame.side)) return nullptr;
  if (!frame.isWritten && isBigSign(frame.name[0])) return nullptr;
  if (!frame.isWritten) {
    // "x_{max}"
    if (frame.isIndexed && frame.close == u'}' && arguments.size() == 1 && isWord(*arguments[0]))
      return makeNamed(toLetters(frame.name) + arguments[0]->getName());
    ReadingS const* const indexing = frame.isIndexed ? findIndexing(frame.name, arguments.size()) : nullptr;
    if (!indexing) return makeFunction(frame.name, std::move(arguments));
    arguments.insert(arguments.begin(), makeNamed(toLetters(frame.name.substr(0, frame.name.size() - 1))));
    return makeFunction(wstring(indexing->notation->name), std::move(arguments));
  }
  if (frame.second) arguments.push_back(frame.second);
  ReadingS const* const function =
      frame.side ? findSidedFunction(frame.name) : findFunction(frame.name, arguments.size());
  bool const fits =
      function && (!function->notation->pattern || arrange(*function->notation, arguments, frame.side));
  if (!fits && (isAddedFunction(frame.name) && !frame.side))
    return makeFunction(frame.name, std::move(arguments));
  if (!fits) return nullptr;
  if (!function->addedArgument.empty()) arguments.push_back(makeNumber(wstring(function->addedArgument)));
  NodeT call = makeFunction(wstring(function->notation->name), std::move(arguments));
  return frame.exponent ? makePower(std::move(call), frame.exponent) : call;
}

}  // namespace zolt::exchange::detail
