#include "zolt/ved/parser/detail/infix_parser.h"

#include <algorithm>
#include <iterator>
#include <limits>

#include "zolt/algexpr/make_node.h"
#include "zolt/common/decimal_text.h"
#include "zolt/common/float64_util.h"
#include "zolt/ved/convert/error_selection.h"
#include "zolt/ved/operators/operator.h"

namespace zolt::math::ved::detail {

namespace {

constexpr std::u16string_view power_name = u"^";
constexpr std::u16string_view negation_name = u"_neg";

/// Whether `text` is one number token, perhaps with blanks around it; `number` is the token then.
bool isNumberToken(std::u16string_view text, std::u16string_view& number) {
  std::size_t const begin = text.find_first_not_of(u' ');
  if (begin == text.npos || !common::startsNumber(text[begin])) return false;
  std::size_t const end = common::findNumberEnd(text, begin, common::LONE_EXPONENT_TAKEN);
  number = text.substr(begin, end - begin);
  return text.find_first_not_of(u' ', end) == text.npos;
}

}  // namespace

InfixParserC::InfixParserC(LexicalAnalyserC& lexer) : lexer_(lexer) {}

bool InfixParserC::read(wstring& output, unsigned int& start, unsigned int& end, ErrorCauseE& cause,
                        std::vector<PrefixPartS>* parts) {
  NextE next = NEXT_OPERAND;
  while (next == NEXT_OPERAND || next == NEXT_SIGN) next = next == NEXT_OPERAND ? readOperand() : readSign();
  if (next == NEXT_FAILED) {
    start = errorStart_;
    end = errorEnd_;
    cause = errorCause_;
    return false;
  }
  builder_.write(operand_, output, parts);
  return true;
}

InfixParserC::NextE InfixParserC::readOperand() {
  switch (lexer_.getCurrentTokenType()) {
    case TOKEN_END:
      return readNoOperand(ERROR_CAUSE_UNEXPECTED_END);
    case TOKEN_NAME:
      return readName();
    case TOKEN_OPERATOR_WORD:
    case TOKEN_SIGN:
      return readPrefix();
    case TOKEN_NUMBER:
      return readNumber();
    case TOKEN_PI:
      return takeLeaf(u"_PI");
    case TOKEN_VERBATIM:
      return takeLeaf(lexer_.viewCurrentToken());
    case TOKEN_OPEN:
      return begin({PENDING_GROUP, RULE_IN_BRACKETS, addFunction(u"_quietpos")});
    case TOKEN_PLUS:
      return beginPrefix(u"_pos", RULE_SIGN);
    case TOKEN_MINUS:
      return beginPrefix(negation_name, RULE_SIGN);
    default:
      return readNoOperand(ERROR_CAUSE_SYNTAX);
  }
}

/// A function whose name or sign is the current token.
InfixParserC::PartT InfixParserC::addFunction(std::u16string_view name) {
  unsigned int start = 0;
  unsigned int end = 0;
  lexer_.getCurrentTokenPosition(start, end);
  return builder_.addFunction(name, start, end);
}

/// Where an operand is needed and none begins: a sign before it may be a name by itself, as in "∇∙F".
InfixParserC::NextE InfixParserC::readNoOperand(ErrorCauseE cause) {
  if (frames_.empty() || frames_.back().alone.empty()) return fail(cause);
  FrameS const& sign = frames_.back();
  operand_ = builder_.addLeaf(sign.alone, sign.wordStart, sign.wordEnd);
  frames_.pop_back();
  return NEXT_SIGN;
}

InfixParserC::NextE InfixParserC::begin(FrameS const& frame) {
  frames_.push_back(frame);
  lexer_.readNextToken();
  return NEXT_OPERAND;
}

InfixParserC::NextE InfixParserC::beginPrefix(std::u16string_view name, RuleT operandRule) {
  if (currentRule() > operandRule) return fail(ERROR_CAUSE_SYNTAX);
  return begin({PENDING_PREFIX, operandRule, addFunction(name)});
}

/// A word or sign of the operator table where an operand is needed.
InfixParserC::NextE InfixParserC::readPrefix() {
  bool const isWord = lexer_.getCurrentTokenType() == TOKEN_OPERATOR_WORD;
  if (isWord && lexer_.viewCurrentToken() == u"not") {
    return currentRule() <= RULE_NOT ? beginPrefix(u"not", RULE_NOT) : readName();
  }
  auto const op = lexer_.findOperator(OPERATOR_BEFORE);
  if (op && currentRule() <= ruleOf(op->getPrecedence())) {
    FrameS prefix{PENDING_PREFIX, ruleOf(op->getPrecedence()), addFunction(keep(op->getName()))};
    lexer_.getCurrentTokenPosition(prefix.wordStart, prefix.wordEnd);
    if (lexer_.isNameAlone()) prefix.alone = lexer_.viewCurrentToken();
    return begin(prefix);
  }
  return isWord ? readName() : readNoOperand(ERROR_CAUSE_SYNTAX);
}

InfixParserC::NextE InfixParserC::takeLeaf(std::u16string_view text) {
  unsigned int start = 0;
  unsigned int end = 0;
  lexer_.getCurrentTokenPosition(start, end);
  operand_ = builder_.addLeaf(text, start, end);
  lexer_.readNextToken();
  return NEXT_SIGN;
}

InfixParserC::NextE InfixParserC::readName() {
  FrameS call{PENDING_CALL, RULE_IN_BRACKETS, 0};
  lexer_.getCurrentTokenPosition(call.wordStart, call.wordEnd);
  std::u16string_view name = lexer_.viewCurrentToken();
  if (PointerTC<OperatorBC> const word = lexer_.getCurrentTokenOperator()) {
    call.arity = static_cast<unsigned int>(word->getCallArity());
    name = keep(wstring(name));
  } else if (!algexpr::isWritableName(wstring(name))) {
    // A colon takes any character into its name, a tab is part of one: what prefix text cannot carry would be
    // read back as something else.
    return fail(ERROR_CAUSE_SYNTAX);
  }
  takeLeaf(name);
  if (lexer_.getCurrentTokenType() != TOKEN_OPEN) {
    if (call.arity == 0) return NEXT_SIGN;
    return failAt(call.wordStart, call.wordEnd, ERROR_CAUSE_MISSING_OPEN);
  }
  builder_.makeFunction(operand_);
  call.part = operand_;
  return begin(call);
}

InfixParserC::NextE InfixParserC::readNumber() {
  std::u16string_view const text = lexer_.viewCurrentToken();
  common::DecimalTextS parts;
  // Few numbers are long enough to be too large; only these have to be read.
  bool const plain = common::readDecimalText(text, parts) && !parts.hasExponent() &&
                     parts.integerDigits.size() < std::numeric_limits<double>::max_exponent10;
  if (!plain && !common::Float64UtilC::isFinite(common::Float64UtilC::fromString(wstring(text)))) {
    return fail(ERROR_CAUSE_BAD_NUMBER);
  }
  return takeLeaf(text);
}

InfixParserC::SignS InfixParserC::findSign() {
  static constexpr SignS signs[] = {
      {TOKEN_PLUS, RULE_SUM, tighterThan(RULE_SUM), u"+"},
      {TOKEN_MINUS, RULE_SUM, tighterThan(RULE_SUM), u"-"},
      {TOKEN_TIMES, RULE_PRODUCT, tighterThan(RULE_PRODUCT), u"*"},
      {TOKEN_OPERATOR_WORD, RULE_PRODUCT, tighterThan(RULE_PRODUCT), u"div"},
      {TOKEN_OPERATOR_WORD, RULE_PRODUCT, tighterThan(RULE_PRODUCT), u"mod"},
      {TOKEN_POWER, RULE_POWER, RULE_POWER, power_name},
      {TOKEN_FACTORIAL, RULE_FACTORIAL, no_operand, u"!"},
      {TOKEN_EQUAL, RULE_RELATION, tighterThan(RULE_RELATION), u"="},
      {TOKEN_NOT_EQUAL, RULE_RELATION, tighterThan(RULE_RELATION), u"<>"},
      {TOKEN_LESS, RULE_RELATION, tighterThan(RULE_RELATION), u"<"},
      {TOKEN_LESS_OR_EQUAL, RULE_RELATION, tighterThan(RULE_RELATION), u"<="},
      {TOKEN_GREATER, RULE_RELATION, tighterThan(RULE_RELATION), u">"},
      {TOKEN_GREATER_OR_EQUAL, RULE_RELATION, tighterThan(RULE_RELATION), u">="},
      {TOKEN_OPERATOR_WORD, RULE_AND, tighterThan(RULE_AND), u"and"},
      {TOKEN_OPERATOR_WORD, RULE_OR, tighterThan(RULE_OR), u"or"},
      {TOKEN_ASSIGNMENT, RULE_ASSIGNMENT, RULE_IN_BRACKETS, u":="},
      {TOKEN_STORE, RULE_ASSIGNMENT, RULE_IN_BRACKETS, u":>"}};
  TokenTypeE const token = lexer_.getCurrentTokenType();
  auto const* const found = std::find_if(std::begin(signs), std::end(signs), [&](SignS const& sign) {
    return sign.token == token && (token != TOKEN_OPERATOR_WORD || sign.name == lexer_.viewCurrentToken());
  });
  if (found != std::end(signs)) return *found;
  if (auto const op = lexer_.findOperator(OPERATOR_BETWEEN)) {
    RuleT const rule = ruleOf(op->getPrecedence());
    return {token, rule, tighterThan(rule), keep(op->getName())};
  }
  if (auto const op = lexer_.findOperator(OPERATOR_AFTER)) {
    return {token, ruleOf(op->getPrecedence()), no_operand, keep(op->getName())};
  }
  return {token, 0, 0, {}};
}

InfixParserC::NextE InfixParserC::readSign() {
  SignS const sign = findSign();
  bool const isSign = !sign.name.empty();
  // Whatever is read by a tighter rule than the sign's ends here.
  while (!frames_.empty() &&
         (frames_.back().kind == PENDING_PREFIX || frames_.back().kind == PENDING_INFIX) &&
         (!isSign || sign.rule < frames_.back().operandRule)) {
    finishOperation();
  }
  if (!isSign || sign.rule < currentRule()) return readBracketEnd();

  PartT const operation = addFunction(sign.name);
  builder_.addArgument(operation, operand_);
  lexer_.readNextToken();
  if (sign.rightRule == no_operand) {
    operand_ = operation;
    return NEXT_SIGN;
  }
  // There is one assignment at most, so nothing looser than its right side may follow.
  if (sign.rule == RULE_ASSIGNMENT) outermostRule_ = RULE_IN_BRACKETS;
  frames_.push_back({PENDING_INFIX, sign.rightRule, operation});
  return NEXT_OPERAND;
}

void InfixParserC::finishOperation() {
  FrameS const frame = frames_.back();
  frames_.pop_back();
  std::u16string_view const name = builder_.crefText(frame.part);
  if (builder_.isLeaf(operand_)) {
    std::u16string_view const text = builder_.crefText(operand_);
    std::u16string_view number;
    if (frame.kind == PENDING_PREFIX && name == negation_name && isNumberToken(text, number)) {
      operand_ = builder_.addNegativeNumber(number, frame.part, operand_);
      return;
    }
    if (frame.kind == PENDING_INFIX && name == power_name && (text == u"r" || text == u"o")) {
      builder_.rename(frame.part, text == u"r" ? u"_rad" : u"_deg", operand_);
      operand_ = frame.part;
      return;
    }
  }
  builder_.addArgument(frame.part, operand_);
  operand_ = frame.part;
}

InfixParserC::NextE InfixParserC::readBracketEnd() {
  if (frames_.empty()) return NEXT_NOTHING;
  FrameS& frame = frames_.back();
  TokenTypeE const type = lexer_.getCurrentTokenType();
  builder_.addArgument(frame.part, operand_);
  if (frame.kind == PENDING_GROUP) {
    if (type != TOKEN_CLOSE) return fail(ERROR_CAUSE_PAREN_NOT_CLOSED);
  } else {
    ++frame.numArguments;
    if (type == TOKEN_COMMA) {
      lexer_.readNextToken();
      return NEXT_OPERAND;
    }
    if (type != TOKEN_CLOSE) return fail(ERROR_CAUSE_CALL_NOT_CLOSED);
    if (frame.arity != 0 && frame.numArguments != frame.arity) {
      return failAt(frame.wordStart, frame.wordEnd, ERROR_CAUSE_ARGUMENT_COUNT);
    }
  }
  operand_ = frame.part;
  frames_.pop_back();
  unsigned int start = 0;
  unsigned int end = 0;
  lexer_.getCurrentTokenPosition(start, end);
  builder_.extend(operand_, end);
  lexer_.readNextToken();
  return NEXT_SIGN;
}

InfixParserC::NextE InfixParserC::fail(ErrorCauseE cause) {
  unsigned int start = 0;
  unsigned int end = 0;
  lexer_.getCurrentTokenPosition(start, end);
  return failAt(start, end, cause);
}

InfixParserC::NextE InfixParserC::failAt(unsigned int start, unsigned int end, ErrorCauseE cause) {
  errorStart_ = start;
  errorEnd_ = end;
  errorCause_ = cause;
  return NEXT_FAILED;
}

}  // namespace zolt::math::ved::detail
