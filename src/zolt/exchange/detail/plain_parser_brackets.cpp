#include <algorithm>
#include <utility>

#include "zolt/algexpr/make_node.h"
#include "zolt/algexpr/written_operand.h"
#include "zolt/exchange/detail/plain_parser.h"

namespace zolt::exchange::detail {

using namespace math::common;
using math::algexpr::childrenOf;
using math::algexpr::makeFunction;
using math::algexpr::makeNumber;

namespace {

char16_t openingOf(char16_t close) {
  return close == u')' ? u'(' : close == u']' ? u'[' : close == u'[' ? u']' : u'{';
}

constexpr int no_rule = RULE_ASSIGNMENT - 1;  // looser than any rule

}  // namespace

PlainParserC::NextE PlainParserC::beginGroup(char16_t close) {
  FrameS frame{RULE_ASSIGNMENT, PENDING_GROUP, close};
  frame.name = token().text;
  frame.begin = token().begin;
  // The braces in "x^{n+1}" only group.
  frame.isIndexed = close == u'}' && !frames_.empty() && frames_.back().kind == PENDING_INFIX &&
                    frames_.back().sign->rule == RULE_POWER;
  return beginBracket(std::move(frame));
}

PlainParserC::NextE PlainParserC::beginBracket(FrameS&& frame) {
  frame.firstOperand = frame.rowStart = operands_.size();
  closes_.push_back(frame.close);
  return begin(std::move(frame));
}

/// Whether "[" ends an interval, as in "[a,b[": no operand comes after it.
bool PlainParserC::endsList() const {
  if (token().bracket != u']' || !token().text.empty() || closes_.empty()) return false;
  auto const group =
      std::find_if(frames_.rbegin(), frames_.rend(), [](FrameS const& one) { return one.close != u'\0'; });
  if (group->kind != PENDING_GROUP || group->end == 0 || !closesList(openingOf(group->close), u'['))
    return false;
  PlainLexerC ahead = lexer_;
  ahead.readNextToken();
  return !ahead.crefToken().startsOperand();
}

/// A comma or a closing bracket, which end what has been read since the bracket opened or the last comma.
PlainParserC::NextE PlainParserC::readBracketEnd() {
  finishTighterThan(no_rule);
  PlainTokenE const type = token().type;
  if (frames_.empty()) {
    if (type == PLAIN_TOKEN_END) return NEXT_NOTHING;
    return fail(type == PLAIN_TOKEN_COMMA ? READ_ERROR_UNEXPECTED_COMMA : READ_ERROR_UNEXPECTED_CLOSE);
  }
  if (type == PLAIN_TOKEN_COMMA) return readComma();
  FrameS const& current = frames_.back();
  bool const isGroup = current.isGroup();
  char16_t const opened = isGroup ? openingOf(current.close) : u'\0';
  char16_t const close = type == PLAIN_TOKEN_OPEN ? u'[' : token().bracket;
  bool const matches = close == closes_.back();
  bool const fits = type == PLAIN_TOKEN_BAR || ((type == PLAIN_TOKEN_CLOSE || type == PLAIN_TOKEN_OPEN) &&
                                                (matches || closesList(opened, close)));
  if (!fits) return fail(READ_ERROR_MISSING_CLOSE);
  if (current.isTable) return matches ? finishTable() : fail(READ_ERROR_MISSING_CLOSE);
  std::size_t const numOperands = operands_.size() - current.firstOperand;
  bool const isList = isGroup && !(current.isIndexed && numOperands == 1);
  PlainListS const* const list = isList ? findList(opened, close, numOperands) : nullptr;
  if (!isGroup || list) return finishArguments(list);
  if (current.end > 0) {
    if (matches && findTable(current.close)) return finishTable();
    return failAt(current.begin, current.end, READ_ERROR_UNEXPECTED_COMMA);
  }
  return matches ? finishGroup() : fail(READ_ERROR_MISSING_CLOSE);
}

PlainParserC::NextE PlainParserC::readComma() {
  FrameS& current = frames_.back();
  bool const isGroup = current.isGroup();
  bool const isListed = isGroup && (opensList(openingOf(current.close)) || findTable(current.close));
  if (current.kind != PENDING_CALL && !isListed) return fail(READ_ERROR_UNEXPECTED_COMMA);
  ++current.commas;
  // Only the bracket that closes tells whether it is a list.
  if (isGroup && current.end == 0) {
    current.begin = token().begin;
    current.end = token().end;
  }
  lexer_.readNextToken();
  return NEXT_OPERAND;
}

PlainParserC::FrameS PlainParserC::takeBracket() {
  FrameS frame = std::move(frames_.back());
  frames_.pop_back();
  closes_.pop_back();
  return frame;
}

std::vector<PlainParserC::NodeT> PlainParserC::takeOperands(std::size_t first) {
  std::vector<NodeT> nodes;
  for (std::size_t i = first; i < operands_.size(); ++i) nodes.push_back(std::move(operands_[i].node));
  operands_.resize(first);
  return nodes;
}

/// Ends brackets that only group: a second pair of them is shown.
PlainParserC::NextE PlainParserC::finishGroup() {
  takeBracket();
  OperandS& operand = operands_.back();
  if (operand.bracketed) operand.node = makeFunction(wstring(bracket_name), {operand.node});
  operand = {operand.node, true};
  lexer_.readNextToken();
  return NEXT_SIGN;
}

/// Ends the arguments of a call, or of a `list` unless that is null, and makes a node of them, or begins what
/// has further operands.
PlainParserC::NextE PlainParserC::finishArguments(PlainListS const* list) {
  FrameS const frame = takeBracket();
  std::vector<NodeT> arguments = takeOperands(frame.firstOperand);
  for (std::size_t i = 0; list && i < list->added.size(); ++i) {
    arguments.push_back(makeNumber(list->added[i]));
  }
  std::size_t const end = token().end;
  bool const doubled = token().type == PLAIN_TOKEN_BAR && isDoubled(frame, arguments);
  lexer_.readNextToken();
  bool const isJoined = token().begin == end || frame.close == u'}';
  if ((isJoined && beginMarkedCall(frame, arguments)) || beginBody(frame, arguments)) return NEXT_OPERAND;
  if (beginIntegrand(frame, arguments)) {
    operands_.push_back({arguments[0], true});
    return NEXT_SIGN;
  }
  NodeT node = list      ? makeFunction(list->name, std::move(arguments))
               : doubled ? makeFunction(findDoubleBars(), childrenOf(*arguments[0]->asParent()))
                         : makeCall(frame, std::move(arguments));
  if (!node) {
    bool const isBounded = !frame.name.empty() && isBigSign(frame.name[0]) && frame.isIndexed;
    return failAt(frame.begin, frame.end, isBounded ? READ_ERROR_BAD_BOUNDS : READ_ERROR_ARGUMENT_COUNT);
  }
  operands_.push_back({std::move(node)});
  return NEXT_SIGN;
}

/// ";" ends a row of cells in the brackets or the call of a table.
PlainParserC::NextE PlainParserC::readRowEnd() {
  finishTighterThan(no_rule);
  bool const isCall = !frames_.empty() && frames_.back().kind == PENDING_CALL;
  PlainTableS const* const table = frames_.empty() ? nullptr
                                   : isCall        ? findTable(frames_.back().name)
                                                   : findTable(frames_.back().close);
  if (!table || (!isCall && !frames_.back().name.empty())) return fail(READ_ERROR_BAD_CHARACTER);
  finishRow();
  lexer_.readNextToken();
  return token().type == PLAIN_TOKEN_CLOSE ? NEXT_SIGN : NEXT_OPERAND;
}

/// Makes a list of the operands of a row.
void PlainParserC::finishRow() {
  FrameS& frame = frames_.back();
  frame.isTable = true;
  std::vector<NodeT> cells = takeOperands(frame.rowStart);
  if (cells.empty()) return;  // after the last ";"
  ++frame.rowStart;
  operands_.push_back({makeFunction(wstring(math::algexpr::list_name), std::move(cells))});
}

PlainParserC::NextE PlainParserC::finishTable() {
  finishRow();
  FrameS const frame = takeBracket();
  std::vector<NodeT> rows = takeOperands(frame.firstOperand);
  wstring const name = frame.kind == PENDING_CALL ? frame.name : findTable(frame.close)->name;
  return takeToken(makeFunction(name, std::move(rows)));
}

}  // namespace zolt::exchange::detail
