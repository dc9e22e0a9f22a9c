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

/// A sign that follows an operand.
struct InfixParserC::SignS {
  TokenTypeE token;
  RuleE rule;       ///< the rule that reads the sign
  RuleE rightRule;  ///< the rule that reads its right operand
  std::u16string_view name;
};

InfixParserC::InfixParserC(LexicalAnalyserC& lexer) : lexer_(lexer) { frames_.reserve(8); }

bool InfixParserC::read(wstring& output, unsigned int& start, unsigned int& end, ErrorCauseE& cause) {
  NextE next = NEXT_OPERAND;
  while (next == NEXT_OPERAND || next == NEXT_SIGN) next = next == NEXT_OPERAND ? readOperand() : readSign();
  if (next == NEXT_FAILED) {
    start = errorStart_;
    end = errorEnd_;
    cause = errorCause_;
    return false;
  }
  builder_.write(operand_, output);
  return true;
}

InfixParserC::NextE InfixParserC::readOperand() {
  switch (lexer_.getCurrentTokenType()) {
    case TOKEN_END:
      return fail(ERROR_CAUSE_UNEXPECTED_END);
    case TOKEN_NAME:
      return readName();
    case TOKEN_OPERATOR_WORD:
      if (currentRule() <= RULE_NOT && lexer_.viewCurrentToken() == u"not")
        return beginPrefix(u"not", RULE_NOT);
      return readName();
    case TOKEN_NUMBER:
      return readNumber();
    case TOKEN_PI:
      return takeLeaf(u"_PI");
    case TOKEN_VERBATIM:
      return takeLeaf(lexer_.viewCurrentToken());
    case TOKEN_OPEN:
      return begin({PENDING_GROUP, RULE_OR, builder_.addFunction(u"_quietpos")});
    case TOKEN_PLUS:
      return beginPrefix(u"_pos", RULE_FACTOR);
    case TOKEN_MINUS:
      return beginPrefix(negation_name, RULE_FACTOR);
    default:
      return fail(ERROR_CAUSE_SYNTAX);
  }
}

InfixParserC::NextE InfixParserC::begin(FrameS const& frame) {
  frames_.push_back(frame);
  lexer_.readNextToken();
  return NEXT_OPERAND;
}

InfixParserC::NextE InfixParserC::beginPrefix(std::u16string_view name, RuleE operandRule) {
  if (currentRule() > operandRule) return fail(ERROR_CAUSE_SYNTAX);
  return begin({PENDING_PREFIX, operandRule, builder_.addFunction(name)});
}

InfixParserC::NextE InfixParserC::takeLeaf(std::u16string_view text) {
  operand_ = builder_.addLeaf(text);
  lexer_.readNextToken();
  return NEXT_SIGN;
}

InfixParserC::NextE InfixParserC::readName() {
  FrameS call{PENDING_CALL, RULE_OR, 0};
  lexer_.getCurrentTokenPosition(call.wordStart, call.wordEnd);
  std::u16string_view name = lexer_.viewCurrentToken();
  if (PointerTC<OperatorBC> const word = lexer_.getCurrentTokenOperator()) {
    call.arity = word->getArity();
    name = operatorNames_.emplace_front(name);
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

InfixParserC::SignS const* InfixParserC::findSign() const {
  static constexpr SignS signs[] = {{TOKEN_PLUS, RULE_EXPRESSION, RULE_TERM, u"+"},
                                    {TOKEN_MINUS, RULE_EXPRESSION, RULE_TERM, u"-"},
                                    {TOKEN_TIMES, RULE_TERM, RULE_FACTOR, u"*"},
                                    {TOKEN_OPERATOR_WORD, RULE_TERM, RULE_FACTOR, u"div"},
                                    {TOKEN_OPERATOR_WORD, RULE_TERM, RULE_FACTOR, u"mod"},
                                    {TOKEN_POWER, RULE_UNARY_TERM, RULE_UNARY_TERM, power_name},
                                    {TOKEN_FACTORIAL, RULE_FACT, RULE_FACT, u"!"},
                                    {TOKEN_EQUAL, RULE_EQUATION, RULE_EXPRESSION, u"="},
                                    {TOKEN_NOT_EQUAL, RULE_EQUATION, RULE_EXPRESSION, u"<>"},
                                    {TOKEN_LESS, RULE_EQUATION, RULE_EXPRESSION, u"<"},
                                    {TOKEN_LESS_OR_EQUAL, RULE_EQUATION, RULE_EXPRESSION, u"<="},
                                    {TOKEN_GREATER, RULE_EQUATION, RULE_EXPRESSION, u">"},
                                    {TOKEN_GREATER_OR_EQUAL, RULE_EQUATION, RULE_EXPRESSION, u">="},
                                    {TOKEN_OPERATOR_WORD, RULE_AND, RULE_NOT, u"and"},
                                    {TOKEN_OPERATOR_WORD, RULE_OR, RULE_AND, u"or"},
                                    {TOKEN_ASSIGNMENT, RULE_ASSIGNMENT, RULE_OR, u":="},
                                    {TOKEN_STORE, RULE_ASSIGNMENT, RULE_OR, u":>"}};
  TokenTypeE const token = lexer_.getCurrentTokenType();
  auto const* const found = std::find_if(std::begin(signs), std::end(signs), [&](SignS const& sign) {
    return sign.token == token && (token != TOKEN_OPERATOR_WORD || sign.name == lexer_.viewCurrentToken());
  });
  return found == std::end(signs) ? nullptr : found;
}

InfixParserC::NextE InfixParserC::readSign() {
  SignS const* const sign = findSign();
  // Whatever is read by a tighter rule than the sign's ends here.
  while (!frames_.empty() &&
         (frames_.back().kind == PENDING_PREFIX || frames_.back().kind == PENDING_INFIX) &&
         (!sign || sign->rule < frames_.back().operandRule)) {
    finishOperation();
  }
  if (!sign || sign->rule < currentRule()) return readBracketEnd();

  PartT const operation = builder_.addFunction(sign->name);
  builder_.addArgument(operation, operand_);
  lexer_.readNextToken();
  if (sign->rule == RULE_FACT) {
    operand_ = operation;
    return NEXT_SIGN;
  }
  // There is one assignment at most, so nothing looser than its right side may follow.
  if (sign->rule == RULE_ASSIGNMENT) outermostRule_ = RULE_OR;
  frames_.push_back({PENDING_INFIX, sign->rightRule, operation});
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
      operand_ = builder_.addNegativeNumber(number);
      return;
    }
    if (frame.kind == PENDING_INFIX && name == power_name && (text == u"r" || text == u"o")) {
      builder_.rename(frame.part, text == u"r" ? u"_rad" : u"_deg");
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
