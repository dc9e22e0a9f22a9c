#include <algorithm>
#include <iterator>
#include <utility>

#include "zolt/algexpr/make_node.h"
#include "zolt/algexpr/make_operation.h"
#include "zolt/algexpr/parent_node.h"
#include "zolt/algexpr/written_operand.h"
#include "zolt/exchange/detail/latex_brackets.h"
#include "zolt/exchange/detail/latex_parser.h"

// How the parser reads what has several operands of its own: tables, sets, intervals, indices.
namespace zolt::exchange::detail {

using namespace math::common;
using namespace math::algexpr;

namespace {

constexpr std::u16string_view bare_tables[] = {u"{matrix}", u"{smallmatrix}", u"{array}"};
constexpr std::u16string_view aligned_tables[] = {u"{aligned}", u"{gathered}", u"{alignedat}"};
constexpr std::u16string_view set_signs[] = {u"in",    u"notin",     u"subset",  u"subseteq",
                                             u"union", u"intersect", u"setminus"};
/// What is said before a condition.
constexpr std::u16string_view condition_words[] = {u"if", u"for", u"when"};

template <class TableT>
bool contains(TableT const& table, std::u16string_view text) {
  return std::find(std::begin(table), std::end(table), text) != std::end(table);
}

}  // namespace

// ---- Brackets ---------------------------------------------------------------------------------------------

LatexParserC::NextE LatexParserC::beginBrackets() {
  char16_t const bracket = token().bracket;
  LatexTokenS const next = bracket == u'{' || bracket == u']' ? lexer_.peekToken() : LatexTokenS();
  if (bracket == u'{' && next.type == LATEX_TOKEN_CLOSE && next.bracket == u'}') {
    lexer_.readNextToken();
    return advance(keep(makeNamed(u"∅")));
  }
  if (token().type == LATEX_TOKEN_OPEN && bracket != u']') {
    return beginGroup(findClosing(bracket), findLatexBrackets(bracket));
  }
  // "]a, b["
  bool const isSign = next.type == LATEX_TOKEN_INFIX || next.type == LATEX_TOKEN_PREFIX;
  bool const opens = bracket == u']' && !isSingle() && (next.startsOperand() || isSign);
  return opens ? beginGroup(u'[') : fail(READ_ERROR_MISSING_OPERAND);
}

LatexParserC::NextE LatexParserC::readComma() {
  foldMinus();
  finishTighterThan(no_rule);
  if (frames_.empty()) return fail(READ_ERROR_UNEXPECTED_COMMA);
  FrameS& frame = frames_.back();
  if (frame.kind == PENDING_INTEGRAL) return failAt(frame.begin, frame.end, READ_ERROR_NO_DIFFERENTIAL);
  LatexTokenE const next = lexer_.peekToken().type;
  // Punctuation at the end of a cell.
  bool const endsCell = next == LATEX_TOKEN_CELL || next == LATEX_TOKEN_ROW || next == LATEX_TOKEN_TABLE_END;
  if (frame.kind == PENDING_TABLE && endsCell) return advance(NEXT_SIGN);
  bool const isOption = frame.kind == PENDING_GROUP && frames_.size() > 1 &&
                        frames_[frames_.size() - 2].kind >= PENDING_OPERANDS &&
                        frames_[frames_.size() - 2].kind <= PENDING_UPPER;
  bool const isList = frame.kind == PENDING_GROUP && !frame.notation && !isOption &&
                      (frame.close == u'}' || isIntervalEnd(frame.close));
  if (isList && frame.comma == 0) {
    frame.comma = token().end;
    if (frame.close != u'}') closes_.back() = list_close;
  }
  bool const mayFollow = isList || frame.kind == PENDING_CALL || frame.kind == PENDING_INDEX;
  return mayFollow ? advance(NEXT_OPERAND) : fail(READ_ERROR_UNEXPECTED_COMMA);
}

// Makes a set or an interval.
LatexParserC::NextE LatexParserC::closeList(FrameS const& frame) {
  std::size_t const count = operands_.size() - frame.firstOperand;
  bool const isSet = frame.close == u'}' && token().bracket == u'}';
  bool const isOpen = frame.close == u')' && token().bracket == u')' && !isAfterSetSign();
  if (!isSet && (count != 2 || isOpen || !isIntervalEnd(token().bracket))) {
    if (frame.comma == 0) return fail(READ_ERROR_MISPLACED);
    return failAt(frame.comma - 1, frame.comma, READ_ERROR_UNEXPECTED_COMMA);
  }
  std::vector<NodeT> operands = takeOperands(frame.firstOperand);
  if (!isSet) {
    operands.push_back(makeNumber(frame.close == u']' ? u"1" : u"0"));
    operands.push_back(makeNumber(token().bracket == u']' ? u"1" : u"0"));
  }
  LatexNotationS const* const notation = findLatex(isSet ? LATEX_SET : LATEX_INTERVAL);
  return advance(keep(makeFunction(wstring(notation->name), std::move(operands))));
}

bool LatexParserC::isAfterSetSign() const {
  return !frames_.empty() && frames_.back().kind == PENDING_INFIX &&
         contains(set_signs, frames_.back().notation->name);
}

// ---- Tables -----------------------------------------------------------------------------------------------

LatexParserC::NextE LatexParserC::beginTable() {
  FrameS frame{PENDING_TABLE};
  frame.notation = token().notation;
  frame.word = token().word;
  frame.isAligned = contains(aligned_tables, frame.word);
  frame.close = table_close;
  frame.firstOperand = operands_.size();
  frame.begin = token().begin;
  frame.end = token().end;
  frames_.push_back(std::move(frame));
  closes_.push_back(table_close);
  return beginCell();
}

LatexParserC::NextE LatexParserC::beginCell() {
  lexer_.readNextToken();
  bool const isWord = (token().name & LATEX_NAME_TEXT) != 0 && contains(condition_words, token().text);
  if (isWord) lexer_.readNextToken();
  return NEXT_OPERAND;
}

// Ends a cell, perhaps its row and the table.
LatexParserC::NextE LatexParserC::readCell() {
  foldMinus();
  finishTighterThan(no_rule);
  LatexTokenE const type = token().type;
  if (frames_.empty()) {
    if (type == LATEX_TOKEN_CELL && skipsAlignment()) return advance(NEXT_SIGN);
    return fail(type == LATEX_TOKEN_TABLE_END ? READ_ERROR_UNEXPECTED_CLOSE : READ_ERROR_BAD_CHARACTER);
  }
  FrameS& table = frames_.back();
  if (table.kind == PENDING_INTEGRAL) return failAt(table.begin, table.end, READ_ERROR_NO_DIFFERENTIAL);
  if (table.kind != PENDING_TABLE) return fail(READ_ERROR_MISSING_CLOSE);
  std::size_t const count = operands_.size() - table.firstOperand;
  bool const endsRow = table.columns > 0 && count % table.columns == 0;
  if (type == LATEX_TOKEN_CELL && skipsAlignment()) return advance(NEXT_SIGN);
  if (type == LATEX_TOKEN_CELL) return endsRow ? fail(READ_ERROR_MISPLACED) : beginCell();
  if (table.columns == 0) {
    table.columns = count;
  } else if (!endsRow) {
    return fail(READ_ERROR_MISSING_OPERAND);
  }
  if (type == LATEX_TOKEN_ROW) {
    beginCell();
    if (token().type != LATEX_TOKEN_TABLE_END) return NEXT_OPERAND;
  }
  return token().word == table.word ? closeTable() : fail(READ_ERROR_MISSING_CLOSE);
}

// "x &= 1", "x =& 1", "2x &{}+ y", "2x &+& y": what is only aligned is no cell.
bool LatexParserC::skipsAlignment() {
  if (expectsOperand_) return !frames_.empty() && frames_.back().kind == PENDING_INFIX;
  bool const isTable = !frames_.empty() && frames_.back().kind == PENDING_TABLE;
  bool& isAligned = isTable ? frames_.back().isAligned : isAlignedLine_;
  LatexTokenS const next = lexer_.peekToken();
  if (next.type == LATEX_TOKEN_CELL || next.type == LATEX_TOKEN_ROW || next.type == LATEX_TOKEN_TABLE_END)
    return isAligned;
  if (next.type != LATEX_TOKEN_INFIX || next.inBraces) return false;
  if (next.notation->rule == RULE_RELATION || token().inBraces || lexer_.isSignAheadInCell()) {
    isAligned = isAligned || next.notation->rule != RULE_RELATION;
    return true;
  }
  // No condition begins with "+". A value and its condition have one "&" between them.
  bool const isCases = isTable && frames_.back().columns == 0 && frames_.back().notation->name == u"cases";
  bool const isSum = next.notation->rule == RULE_SUM;
  if (isCases && isSum) isAligned = isAligned || next.notation->name == u"+" || lexer_.isCellAhead();
  return isAligned;
}

// Of one column they are a system: all that is below each other holds.
LatexParserC::NodeT LatexParserC::makeCases(std::vector<NodeT> rows) {
  unsigned long const columns = rows[0]->asParent()->numChildren();
  if (columns == 2) return makeFunction(u"cases", std::move(rows));
  if (columns != 1) return nullptr;
  NodeT system;
  for (NodeT const& row : rows) {
    NodeT const line = row->asParent()->childPointer(0);
    ParentNodeABC const* const parent = line->asParent();
    LatexNotationS const* const sign =
        parent ? findLatex(parent->crefName(), parent->numChildren()) : nullptr;
    bool const isStatement =
        sign && (sign->rule == RULE_RELATION || sign->rule == RULE_AND || sign->rule == RULE_OR);
    if (!isStatement) return nullptr;
    system = system ? makeFunction(u"and", {std::move(system), line}) : line;
  }
  return system;
}

LatexParserC::NextE LatexParserC::closeTable() {
  FrameS const frame = std::move(frames_.back());
  frames_.pop_back();
  closes_.pop_back();
  std::vector<NodeT> const cells = takeOperands(frame.firstOperand);
  std::vector<NodeT> rows;
  for (auto cell = cells.begin(); cell != cells.end(); cell += static_cast<std::ptrdiff_t>(frame.columns)) {
    rows.push_back(makeFunction(wstring(list_name),
                                std::vector<NodeT>(cell, cell + static_cast<std::ptrdiff_t>(frame.columns))));
  }
  bool const isNorm = frame.notation->name == u"norm";
  bool const isCases = frame.notation->name == u"cases";
  NodeT node =
      isCases ? makeCases(std::move(rows))
              : makeFunction(isNorm ? wstring(u"matrix") : wstring(frame.notation->name), std::move(rows));
  // Lines that are only aligned mean something as a system after a brace.
  bool const isAligned = contains(aligned_tables, frame.word);
  bool const isSystem =
      !frames_.empty() && frames_.back().kind == PENDING_GROUP && frames_.back().close == u'}';
  if (!node || (isAligned && !isSystem)) return failAt(frame.begin, frame.end, READ_ERROR_MISPLACED);
  if (isNorm) node = makeFunction(u"norm", {std::move(node)});
  return advance(
      keep(std::move(node), isAligned || contains(bare_tables, frame.word) ? unsigned{OPERAND_TABLE} : 0u));
}

// ---- Indices and sides ------------------------------------------------------------------------------------

// An index that is an expression, of the last operand.
LatexParserC::NextE LatexParserC::beginIndex() {
  FrameS frame{PENDING_INDEX};
  frame.close = brace_close;
  frame.firstOperand = operands_.size() - 1;
  frame.begin = token().begin;
  lexer_.readNextToken(LATEX_TOKEN_SINGLE);
  frame.end = token().end;
  LatexTokenE const type = token().type;
  if (type == LATEX_TOKEN_BRACE_OPEN) {
    frames_.push_back(std::move(frame));
    closes_.push_back(brace_close);
    return advance(NEXT_OPERAND);
  }
  if (type != LATEX_TOKEN_NUMBER && type != LATEX_TOKEN_NAME) return fail(READ_ERROR_MISPLACED);
  operands_.push_back({type == LATEX_TOKEN_NUMBER ? makeNumber(token().text) : makeNamed(token().text)});
  OperandS indexed = makeIndexed(frame);
  return advance(keep(std::move(indexed.node), indexed.flags));
}

LatexParserC::OperandS LatexParserC::makeIndexed(FrameS const& frame) {
  unsigned const flags = operands_[frame.firstOperand].flags;
  std::vector<NodeT> operands = takeOperands(frame.firstOperand);
  NodeT exponent;
  if ((flags & OPERAND_NAME_POWER) != 0) {
    ParentNodeABC const& power = *operands[0]->asParent();
    exponent = power.childPointer(1);
    operands[0] = power.childPointer(0);
  }
  NodeT node = makeFunction(wstring(findLatex(LATEX_INDEX)->name), std::move(operands));
  unsigned const indexed = OPERAND_INDEXED | (flags & OPERAND_CALLS);
  if (!exponent) return {std::move(node), indexed};
  return {makePower(std::move(node), std::move(exponent)), indexed | OPERAND_POWER};
}

bool LatexParserC::isInLimit() const { return !closes_.empty() && closes_.back() == limit_close; }

LatexParserC::NextE LatexParserC::readSide(char16_t side) {
  foldMinus();
  finishTighterThan(no_rule);
  bool const isBound = frames_.back().close == limit_close && token().type == LATEX_TOKEN_BRACE_CLOSE;
  if (!isBound) return fail(READ_ERROR_MISPLACED);
  frames_[frames_.size() - 3].side = side;
  return NEXT_SIGN;
}

}  // namespace zolt::exchange::detail
