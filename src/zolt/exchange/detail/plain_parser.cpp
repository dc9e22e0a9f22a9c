#include "zolt/exchange/detail/plain_parser.h"

#include <algorithm>
#include <utility>

#include "zolt/algexpr/make_node.h"
#include "zolt/algexpr/make_operation.h"
#include "zolt/algexpr/written_operand.h"
#include "zolt/common/decimal_text.h"
#include "zolt/common/signs.h"
#include "zolt/exchange/plain_operator.h"

namespace zolt::exchange::detail {

namespace common = math::common;
using namespace math::common;
using math::algexpr::makeFunction;
using math::algexpr::makeNamed;
using math::algexpr::makeNumber;
using math::algexpr::makeOperation;
using math::algexpr::makePower;

namespace {

/// Whether an operator's sign is that of a quotient or of a power.
bool hasBareOperand(NotationS const& infix) { return infix.name == u"/" || infix.rule == RULE_POWER; }

}  // namespace

PointerTC<math::algexpr::NodeABC> PlainParserC::read() {
  if (token().type == PLAIN_TOKEN_END) {
    fail(READ_ERROR_EMPTY);
    return nullptr;
  }
  NextE next = NEXT_OPERAND;
  // What is missing of an operation may only be found where it ends.
  while ((next == NEXT_OPERAND || next == NEXT_SIGN) && error_.cause == READ_ERROR_NONE)
    next = next == NEXT_OPERAND ? readOperand() : readSign();
  return error_.cause == READ_ERROR_NONE ? takeOperand() : nullptr;
}

// ---- Operands ---------------------------------------------------------------------------------------------

PlainParserC::NextE PlainParserC::readOperand() {
  switch (token().type) {
    case PLAIN_TOKEN_NUMBER:
      return readNumber();
    case PLAIN_TOKEN_NAME:
      return readName();
    case PLAIN_TOKEN_QUOTED_NAME:
      return readQuotedName();
    case PLAIN_TOKEN_CONSTANT:
      return takeToken(makeNamed(token().text));
    case PLAIN_TOKEN_OPEN:
      return beginGroup(token().bracket);
    case PLAIN_TOKEN_BAR:
      return beginGroup(bar);
    case PLAIN_TOKEN_ROOT:
      return readRoot();
    case PLAIN_TOKEN_PREFIX: {
      if (NextE const next = readDerivative(); next != NEXT_NOTHING) return next;
      NotationS const& op = *token().infix;
      if (currentRule() <= op.rule) {
        return readPrefix(op, op.rule);
      }
      return isBareName(op.name) ? readWordCall(op.name) : fail(READ_ERROR_MISSING_OPERAND);
    }
    case PLAIN_TOKEN_INFIX:
      if (token().infix->isName && isBareName(lexer_.viewToken())) return readWordAsName();
      if (isBareName(token().infix->name)) return readWordCall(token().infix->name);
      return readSignBeforeOperand();
    case PLAIN_TOKEN_POSTFIX:
      return isBareName(lexer_.viewToken()) ? readWordAsName() : readNoOperand();
    case PLAIN_TOKEN_CLOSE:
      // "]a,b[" is an interval.
      return opensList(token().bracket) && (closes_.empty() || closes_.back() != token().bracket)
                 ? beginGroup(u'[')
                 : readNoOperand();
    case PLAIN_TOKEN_BAD:
      return fail(token().error);
    default:
      return readNoOperand();
  }
}

PlainParserC::NextE PlainParserC::readNumber() {
  NodeT number = makeNumber(token().text);
  if (!number) return fail(READ_ERROR_BAD_NUMBER);
  lexer_.readNextToken();
  NodeT mixed = token().type == PLAIN_TOKEN_NUMBER ? readMixedNumber(number) : nullptr;
  return mixed ? keep(std::move(mixed)) : keep(std::move(number), true);
}

/// Reads the fraction after a whole number, "1/2" after "3", which is to be added to it. Null, with nothing
/// read, when the two are no mixed number.
PlainParserC::NodeT PlainParserC::readMixedNumber(NodeT const& whole) {
  bool const isBare =
      !frames_.empty() && frames_.back().kind == PENDING_INFIX && hasBareOperand(*frames_.back().sign);
  if (isBare || (!frames_.empty() && frames_.back().kind == PENDING_ROOT)) return nullptr;
  PlainLexerC ahead = lexer_;
  wstring const numerator = ahead.crefToken().text;
  ahead.readNextToken();
  if (ahead.crefToken().type != PLAIN_TOKEN_INFIX || ahead.crefToken().infix->name != u"/") return nullptr;
  ahead.readNextToken();
  wstring const denominator = ahead.crefToken().text;
  if (ahead.crefToken().type != PLAIN_TOKEN_NUMBER ||
      !common::isMixedNumber(whole->getName(), numerator, denominator)) {
    return nullptr;
  }
  ahead.readNextToken();
  PlainTokenS const& next = ahead.crefToken();
  if (next.type == PLAIN_TOKEN_SUPERSCRIPT || next.type == PLAIN_TOKEN_POSTFIX ||
      (next.type == PLAIN_TOKEN_INFIX && next.infix->rule == RULE_POWER)) {
    return nullptr;
  }
  lexer_ = std::move(ahead);
  return makeFunction(u"+", {whole, makeFunction(u"/", {makeNumber(numerator), makeNumber(denominator)})});
}

/// Where an operand is needed, a word that is shown as a sign beside its operands is a name.
PlainParserC::NextE PlainParserC::readWordAsName() {
  wstring const word(lexer_.viewToken());
  FrameS frame = startCall(word);
  if (opensCall() && token().begin == frame.end) return beginBracket(std::move(frame));
  return keep(makeNamed(word));
}

/// Where an operand is needed and none begins: a sign before it may be a name by itself.
PlainParserC::NextE PlainParserC::readNoOperand() {
  NotationS const* const sign =
      !frames_.empty() && frames_.back().kind == PENDING_PREFIX ? frames_.back().sign : nullptr;
  if (!sign || !sign->isName || sign->plain.written.empty()) return fail(READ_ERROR_MISSING_OPERAND);
  NodeT name = makeNamed(wstring(sign->plain.written));
  frames_.pop_back();
  return keep(std::move(name));
}

PlainParserC::NextE PlainParserC::readPrefix(NotationS const& sign, RuleE operandRule) {
  FrameS frame{operandRule, PENDING_PREFIX};
  frame.takesSign = true;
  frame.name = sign.name;
  frame.sign = &sign;
  return begin(std::move(frame));
}

PlainParserC::NextE PlainParserC::readSignBeforeOperand() {
  NotationS const* const prefix = findPrefix(*token().infix);
  bool const tight = currentRule() > RULE_SIGN;
  bool const allowed = !tight || frames_.back().takesSign;
  if (!allowed || !prefix) return readNoOperand();
  return readPrefix(*prefix, tight ? currentRule() : RULE_SIGN);
}

PlainParserC::NextE PlainParserC::readRoot() {
  FrameS frame{RULE_ATOM, PENDING_ROOT};
  if (!token().text.empty()) frame.exponent = makeNumber(token().text);
  return begin(std::move(frame));
}

PlainParserC::NextE PlainParserC::begin(FrameS&& frame) {
  push(std::move(frame));
  lexer_.readNextToken();
  return NEXT_OPERAND;
}

void PlainParserC::push(FrameS&& frame) {
  frame.inIntegral = frame.kind == PENDING_INTEGRAL ||
                     (frame.close == u'\0' && !frames_.empty() && frames_.back().inIntegral);
  frames_.push_back(std::move(frame));
}

bool PlainParserC::opensCall() const { return token().type == PLAIN_TOKEN_OPEN && token().bracket == u')'; }

// ---- Behind an operand ------------------------------------------------------------------------------------

PlainParserC::NextE PlainParserC::readSign() {
  switch (token().type) {
    case PLAIN_TOKEN_INFIX:
      return readSide() ? NEXT_SIGN : readInfix(*token().infix);
    case PLAIN_TOKEN_POSTFIX:
    case PLAIN_TOKEN_SUPERSCRIPT:
      return readPostfix();
    case PLAIN_TOKEN_OPEN:
      return endsList() ? readBracketEnd() : readProduct();
    case PLAIN_TOKEN_BAR:
      return readBar();
    case PLAIN_TOKEN_END:
    case PLAIN_TOKEN_CLOSE:
    case PLAIN_TOKEN_COMMA:
      return readBracketEnd();
    case PLAIN_TOKEN_ROW_END:
      return readRowEnd();
    case PLAIN_TOKEN_BAD:
      return readSide() ? NEXT_SIGN : fail(token().error);
    case PLAIN_TOKEN_NUMBER:
      // Of two numbers side by side nobody knows whether a sign is missing.
      return isPartOfQuotient() ? readProduct() : fail(READ_ERROR_MISSING_OPERATOR);
    default:
      if (readDifferential()) return NEXT_SIGN;
      return startsFactor() ? readProduct() : fail(READ_ERROR_MISSING_OPERATOR);
  }
}

bool PlainParserC::startsFactor() const {
  return token().startsOperand() || (token().type == PLAIN_TOKEN_PREFIX && token().infix->rule >= RULE_SIGN);
}

/// Whether the operand before the token is no number by itself, but ends a quotient or a power: "2/3 4".
bool PlainParserC::isPartOfQuotient() const {
  if (!operands_.back().literal) return true;
  auto frame = frames_.rbegin();
  while (frame != frames_.rend() && frame->kind == PENDING_PREFIX) ++frame;
  return frame != frames_.rend() && frame->kind == PENDING_INFIX && hasBareOperand(*frame->sign);
}

PlainParserC::NextE PlainParserC::readInfix(NotationS const& sign) {
  FrameS frame{sign.rightRule, PENDING_INFIX};
  frame.sign = &sign;
  frame.takesSign = true;
  finishTighterThan(frame.sign->rule);
  if (frame.sign->rule != RULE_POWER) keepShownBrackets();
  if (frame.sign->rule == RULE_ASSIGNMENT && operands_.back().assignment) {
    return fail(READ_ERROR_SECOND_ASSIGNMENT);
  }
  return begin(std::move(frame));
}

PlainParserC::NextE PlainParserC::readPostfix() {
  finishTighterThan(RULE_POSTFIX);
  NodeT operand = takeOperand();
  wstring const& text = token().text;
  if (token().type == PLAIN_TOKEN_POSTFIX) return takeToken(makeOperation(text, {std::move(operand)}));
  return takeToken(makePower(std::move(operand), text == u"n" ? makeNamed(text) : makeNumber(text)));
}

PlainParserC::NextE PlainParserC::readProduct() {
  static NotationS const* const times = findInfix(u"*");
  // After a function without brackets, factors belong to its argument, up to the next function.
  finishTighterThan(RULE_ARGUMENT);
  bool const isCall = token().type == PLAIN_TOKEN_NAME &&
                      (isFunction(token().text) || findMark(token().text) != wstring::npos);
  bool const inArgument = !frames_.empty() && frames_.back().kind == PENDING_APPLICATION && !isCall;
  if (!inArgument) finishTighterThan(times->rule);
  keepShownBrackets();
  FrameS frame{token().type == PLAIN_TOKEN_PREFIX ? token().infix->rule : RULE_POWER, PENDING_INFIX};
  frame.sign = times;
  push(std::move(frame));
  return NEXT_OPERAND;
}

void PlainParserC::finishTighterThan(int rule) {
  while (!frames_.empty() && frames_.back().close == u'\0' && frames_.back().operandRule > rule) {
    finishTop();
  }
}

void PlainParserC::finishTop() {
  keepShownBrackets();
  FrameS const frame = std::move(frames_.back());
  frames_.pop_back();
  finish(frame);
}

/// Brackets around a sign after another sign, before the last operand, are not only there to group: a
/// textbook shows them, too.
void PlainParserC::keepShownBrackets() {
  if (frames_.empty()) return;
  FrameS const& frame = frames_.back();
  NotationS const* const sign = frame.kind == PENDING_INFIX    ? frame.sign
                                : frame.kind == PENDING_PREFIX ? findNotation(frame.name)
                                                               : nullptr;
  OperandS& operand = operands_.back();
  bool const showsBrackets =
      sign && endsAfterSign(*sign) && operand.bracketed && math::algexpr::beginsWithSign(*operand.node);
  if (showsBrackets) operand = {makeFunction(wstring(bracket_name), {std::move(operand.node)})};
}

void PlainParserC::finish(FrameS const& frame) {
  bool const isNumber = operands_.back().literal;
  NodeT operand = takeOperand();
  OperandS result;
  switch (frame.kind) {
    case PENDING_PREFIX:
      if (isNumber && frame.name == u"_neg") {
        result.node = makeNumber(common::minus_sign + operand->getName());
      } else {
        result.node = makeFunction(frame.name, {std::move(operand)});
      }
      break;
    case PENDING_ROOT:
      result.node = frame.exponent ? makeFunction(u"nthroot", {std::move(operand), frame.exponent})
                                   : makeFunction(u"sqrt", {std::move(operand)});
      break;
    case PENDING_INFIX:
      result.assignment = frame.sign->rule == RULE_ASSIGNMENT;
      result.node = frame.sign->rule == RULE_POWER
                        ? makePower(takeOperand(), std::move(operand))
                        : makeFunction(wstring(frame.sign->name), {takeOperand(), std::move(operand)});
      break;
    case PENDING_INTEGRAL:
      result.node = makeIntegral(frame, std::move(operand));
      break;
    case PENDING_DERIVATIVE:
      result.node = makeDerivative(frame, std::move(operand));
      break;
    case PENDING_BODY: {
      FrameS call = frame;
      std::vector<NodeT> arguments{std::move(call.second)};
      if (call.exponent) arguments.push_back(std::move(call.exponent));
      arguments.push_back(std::move(operand));
      call.second = call.exponent = nullptr;
      result.node = makeCall(call, std::move(arguments));
      break;
    }
    default:
      result.node = makeCall(frame, {std::move(operand)});
      break;
  }
  operands_.push_back(std::move(result));
}

// ---- Operands read ----------------------------------------------------------------------------------------

// Takes the operand that ends with the current token.
PlainParserC::NextE PlainParserC::takeToken(NodeT node, bool literal) {
  if (!node) return fail(READ_ERROR_BAD_NUMBER);
  lexer_.readNextToken();
  return keep(std::move(node), literal);
}

// Takes the operand that ends before the current token.
PlainParserC::NextE PlainParserC::keep(NodeT node, bool literal) {
  operands_.push_back({std::move(node), false, literal});
  return NEXT_SIGN;
}

PlainParserC::NodeT PlainParserC::takeOperand() {
  NodeT node = std::move(operands_.back().node);
  operands_.pop_back();
  return node;
}

PlainParserC::NextE PlainParserC::fail(ReadErrorE cause) { return failAt(token().begin, token().end, cause); }

PlainParserC::NextE PlainParserC::failAt(std::size_t begin, std::size_t end, ReadErrorE cause) {
  error_ = {cause, static_cast<unsigned long>(begin), static_cast<unsigned long>(end)};
  return NEXT_FAILED;
}

}  // namespace zolt::exchange::detail
