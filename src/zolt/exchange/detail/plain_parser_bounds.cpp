#include <algorithm>
#include <utility>

#include "zolt/algexpr/make_node.h"
#include "zolt/algexpr/parent_node.h"
#include "zolt/common/signs.h"
#include "zolt/exchange/detail/latex_differential.h"
#include "zolt/exchange/detail/plain_parser.h"

// Functions whose bounds and variables are written around them, as in textbooks: "sum_(k=1)^n f",
// "int_0^1 f dx", "d/dx f".

namespace zolt::exchange::detail {

namespace common = math::common;
using namespace math::common;
using math::algexpr::makeFunction;
using math::algexpr::makeNamed;
using math::algexpr::makeNumber;

namespace {

/// Whether a call's first argument has the form that is written there, such as x->0, and the others are as
/// they are.
bool isFirstArgument(CallPatternS const& call, math::algexpr::NodeABC const& node) {
  ReadingS const* const sign = call.arguments[0].sign.empty() ? nullptr : findReading(call.arguments[0].sign);
  for (std::size_t i = 1; i < call.count; ++i) {
    if (!call.arguments[i].sign.empty() || call.arguments[i].side > 0) return false;
  }
  auto const* const operation = node.asParent();
  return sign && operation && operation->numChildren() == 2 && operation->crefName() == sign->notation->name;
}

bool isDifferential(PlainTokenS const& token) {
  return token.type == PLAIN_TOKEN_NAME && detail::isDifferential(token.text);
}

PointerTC<math::algexpr::NodeABC> variableOf(PlainTokenS const& differential) {
  return makeNamed(toLetters(differential.text.substr(1)));
}

bool isPower(PlainTokenS const& token) {
  return token.type == PLAIN_TOKEN_INFIX && token.infix->rule == RULE_POWER;
}

/// Reads an exponent that is a number or a name, if there is one, which ends at `end`.
PointerTC<math::algexpr::NodeABC> readOrder(PlainLexerC& lexer, std::size_t& end) {
  if (lexer.crefToken().type != PLAIN_TOKEN_SUPERSCRIPT) {
    if (!isPower(lexer.crefToken())) return nullptr;
    lexer.readNextToken();
  }
  wstring const order = lexer.crefToken().text;
  end = lexer.crefToken().end;
  lexer.readNextToken();
  auto number = makeNumber(order);
  return number ? number : makeNamed(order);
}

}  // namespace

/// Whether the brackets that have just been read hold a bound of a function whose operand then begins, as in
/// "lim_(x->0) f", "sum_(k=1)^n f", "prod_(k=1)^(n+1) f". Where hosts make no indices of such brackets, they
/// are a call's.
bool PlainParserC::beginBody(FrameS const& frame, std::vector<NodeT> const& arguments) {
  if (!frame.isIndexed || arguments.size() != 1) return false;
  FrameS body{RULE_PRODUCT, PENDING_BODY};
  body.takesSign = body.isWritten = true;
  body.begin = frame.begin;
  body.end = frame.end;
  body.side = frame.side;
  body.name = frame.name;
  if (frame.second) {
    body.second = frame.second;
    body.exponent = arguments[0];
    pushBody(std::move(body));
    return true;
  }
  body.name.pop_back();
  if (body.name.empty()) return false;
  if (isIntegral(body.name)) {
    body.second = arguments[0];
    return readUpperBound(body);
  }
  for (unsigned long const count : {2ul, 3ul}) {
    ReadingS const* const function =
        frame.side ? findSidedFunction(body.name) : findFunction(body.name, count);
    CallPatternS const* const pattern = function ? function->notation->pattern : nullptr;
    bool const fits = pattern && pattern->count == count &&
                      (isBigSign(body.name[0]) || findIndexing(frame.name, 1)) &&
                      isFirstArgument(*pattern, *arguments[0]);
    if (!fits) continue;
    body.second = arguments[0];
    if (count == 3) return readUpperBound(body);
    pushBody(std::move(body));
    return true;
  }
  return false;
}

void PlainParserC::pushBody(FrameS&& body) {
  if (isIntegral(body.name)) {
    body.kind = PENDING_INTEGRAL;
    body.operandRule = RULE_SUM;
  }
  push(std::move(body));
}

/// Reads what follows "sum_(k=1)" up to the operand, which then begins, or to the bracket of the upper bound.
/// False, with nothing read, when it is no bound.
bool PlainParserC::readUpperBound(FrameS& body) {
  PlainLexerC const before = lexer_;
  if (token().type == PLAIN_TOKEN_SUPERSCRIPT) {
    std::size_t end = 0;
    body.exponent = readOrder(lexer_, end);
    pushBody(std::move(body));
    return true;
  }
  if (!isPower(token())) return false;
  lexer_.readNextToken();
  if (opensCall() || opensBraces()) {
    body.kind = PENDING_CALL;
    body.operandRule = RULE_ASSIGNMENT;
    body.close = token().bracket;
    body.isIndexed = true;
    beginBracket(std::move(body));
    return true;
  }
  body.exponent = readBound();
  if (!body.exponent) {
    lexer_ = before;
    return false;
  }
  pushBody(std::move(body));
  return true;
}

/// Reads a bound without brackets: a number, a name or a constant, perhaps with a minus. Null, perhaps with
/// the minus read, when there is none.
PlainParserC::NodeT PlainParserC::readBound() {
  bool const isNegative = token().type == PLAIN_TOKEN_INFIX && token().infix->name == u"-";
  if (isNegative) lexer_.readNextToken();
  NodeT bound;
  if (token().type == PLAIN_TOKEN_NUMBER)
    return takeBound(makeNumber((isNegative ? wstring(1, common::minus_sign) : wstring()) + token().text));
  if (token().type == PLAIN_TOKEN_NAME && !isFunction(token().text))
    bound = makeNamed(toLetters(token().text));
  if (token().type == PLAIN_TOKEN_CONSTANT) bound = makeNamed(token().text);
  if (bound && isNegative) bound = makeFunction(u"_neg", {std::move(bound)});
  return takeBound(std::move(bound));
}

PlainParserC::NodeT PlainParserC::takeBound(NodeT bound) {
  if (bound) lexer_.readNextToken();
  return bound;
}

// Reads what follows "int", "int_0" or "int_" up to the integrand, which then begins, or to a bracket.
PlainParserC::NextE PlainParserC::readIntegral(FrameS&& frame) {
  FrameS body{RULE_PRODUCT, PENDING_BODY};
  body.takesSign = body.isWritten = true;
  body.begin = frame.begin;
  body.end = frame.end;
  std::size_t const mark = frame.name.find(u'_');
  body.name = frame.name.substr(0, mark);
  if (mark == frame.name.npos) {
    bool const isCall = opensCall() || !findFunction(frame.name, 2) || !token().startsOperand();
    frame.isWritten = true;
    if (isCall) return readFunction(std::move(frame));
    pushBody(std::move(body));
    return NEXT_OPERAND;
  }
  PlainLexerC const before = lexer_;
  wstring const lower = frame.name.substr(mark + 1);
  if (lower.empty() && (opensCall() || opensBraces()) && token().begin == frame.end) {
    frame.isIndexed = true;
    frame.close = token().bracket;
    return beginBracket(std::move(frame));
  }
  body.second = lower.empty() ? readBound() : makeNumber(lower);
  if (!body.second && !lower.empty()) body.second = makeNamed(toLetters(lower));
  std::size_t const numFrames = frames_.size();
  if (body.second && readUpperBound(body)) {
    // "int_0^2+1" is about a variable.
    if (token().startsOperand() || isBigSign(frame.name[0]) || frames_.back().close != u'\0')
      return NEXT_OPERAND;
    frames_.resize(numFrames);
  }
  lexer_ = before;
  if (isBigSign(frame.name[0])) return failAt(frame.begin, frame.end, READ_ERROR_BAD_BOUNDS);
  return keep(makeNamed(toLetters(frame.name)));
}

/// Takes up the brackets that have just been read, "int (x+1) dx", as the beginning of an integrand. False
/// when they are a call's.
bool PlainParserC::beginIntegrand(FrameS const& frame, std::vector<NodeT> const& arguments) {
  bool const fits = frame.kind == PENDING_CALL && !frame.isIndexed && !frame.second && frame.isWritten &&
                    arguments.size() == 1 && isIntegral(frame.name) && findFunction(frame.name, 2);
  if (!fits) return false;
  FrameS body{RULE_PRODUCT, PENDING_BODY};
  body.takesSign = body.isWritten = true;
  body.begin = frame.begin;
  body.end = frame.end;
  body.name = frame.name;
  pushBody(std::move(body));
  return true;
}

// Reads the differential of an integral whose integrand begins with it: "int_0^1 dx", "int_1^2 dx/x".
PlainParserC::NextE PlainParserC::readDifferentialFirst() {
  bool const isFirst = !frames_.empty() && frames_.back().kind == PENDING_INTEGRAL && isDifferential(token());
  if (!isFirst) return NEXT_NOTHING;
  NodeT variable = variableOf(token());
  lexer_.readNextToken();
  keep(makeNumber(u"1"));
  frames_.back().side = std::move(variable);
  // What is above it is the numerator, and the integral ends as a product does.
  bool const isNumerator = token().type == PLAIN_TOKEN_INFIX && token().infix->name == u"/";
  if (isNumerator) {
    frames_.back().operandRule = RULE_PRODUCT;
  } else {
    finishTop();
  }
  return NEXT_SIGN;
}

/// Whether the token is the differential that ends the integral around it, which is then finished.
bool PlainParserC::readDifferential() {
  if (frames_.empty() || !frames_.back().inIntegral || !isDifferential(token())) return false;
  auto frame = frames_.rbegin();
  while (frame->kind != PENDING_INTEGRAL) ++frame;
  if (frame->side) return false;
  frame->side = variableOf(token());
  lexer_.readNextToken();
  auto const depth = static_cast<std::size_t>(frames_.rend() - frame);
  while (frames_.size() >= depth) finishTop();
  return true;
}

PlainParserC::NodeT PlainParserC::makeIntegral(FrameS const& frame, NodeT integrand) {
  if (!frame.side) {
    failAt(frame.begin, frame.end, READ_ERROR_NO_DIFFERENTIAL);
    return integrand;
  }
  if (frame.second) return makeFunction(u"integral", {frame.second, frame.exponent, integrand, frame.side});
  return makeFunction(wstring(findFunction(frame.name, 2)->notation->name), {integrand, frame.side});
}

// Reads "d/dx" and "d^2/dx^2" before an operand, and the same with "∂".
PlainParserC::NextE PlainParserC::readDerivative() {
  bool const isPartial = token().type == PLAIN_TOKEN_PREFIX && token().infix->name == u"partial";
  if (!isPartial && token().text != u"d") return NEXT_NOTHING;
  bool const isDivisor =
      !frames_.empty() && frames_.back().kind == PENDING_INFIX && frames_.back().sign->name == u"/";
  if (isDivisor) return NEXT_NOTHING;
  PlainLexerC ahead = lexer_;
  ahead.readNextToken();
  std::size_t end = 0;
  NodeT const order = readOrder(ahead, end);
  if (ahead.crefToken().type != PLAIN_TOKEN_INFIX || ahead.crefToken().infix->name != u"/")
    return NEXT_NOTHING;
  ahead.readNextToken();
  NodeT variable;
  if (isPartial && ahead.crefToken().infix == token().infix) {
    ahead.readNextToken();
    if (ahead.crefToken().type == PLAIN_TOKEN_NAME && !isFunction(ahead.crefToken().text))
      variable = makeNamed(toLetters(ahead.crefToken().text));
  } else if (!isPartial && isDifferential(ahead.crefToken())) {
    variable = variableOf(ahead.crefToken());
  }
  if (!variable) return NEXT_NOTHING;
  end = ahead.crefToken().end;
  ahead.readNextToken();
  NodeT const again = readOrder(ahead, end);
  bool const isSame = order ? again && order->crefName() == again->crefName() : !again;
  if (!isSame || (order && order->asParent()) || !ahead.crefToken().startsOperand()) return NEXT_NOTHING;
  // "d/dx(x+1)" takes only the brackets, as "sin(x+1)" does.
  bool const isCall = ahead.crefToken().bracket == u')' && ahead.crefToken().begin == end;
  FrameS body{isCall ? RULE_ATOM : RULE_PRODUCT, PENDING_DERIVATIVE};
  body.name = isPartial ? u"pdiff" : u"diff";
  body.second = std::move(variable);
  body.exponent = order;
  lexer_ = std::move(ahead);
  push(std::move(body));
  return NEXT_OPERAND;
}

PlainParserC::NodeT PlainParserC::makeDerivative(FrameS const& frame, NodeT operand) {
  unsigned const count = countDerivatives(frame.exponent.get());
  // Where hosts have a derivative of an order, it is shown as it is written.
  bool const isWhole = count == 0 || (frame.exponent && findFunction(frame.name, 3));
  if (isWhole) return makeFunction(frame.name + u'n', {std::move(operand), frame.second, frame.exponent});
  for (unsigned i = 0; i < count; ++i) operand = makeFunction(frame.name, {std::move(operand), frame.second});
  return operand;
}

}  // namespace zolt::exchange::detail
