#include <algorithm>
#include <utility>

#include "zolt/algexpr/float_node.h"
#include "zolt/algexpr/make_node.h"
#include "zolt/algexpr/make_operation.h"
#include "zolt/algexpr/nodes.h"
#include "zolt/algexpr/written_operand.h"
#include "zolt/common/signs.h"
#include "zolt/exchange/detail/latex_brackets.h"
#include "zolt/exchange/detail/latex_differential.h"
#include "zolt/exchange/detail/latex_parser.h"

// What the parser makes of operands that it has read.
namespace zolt::exchange::detail {

using namespace math::common;
using namespace math::algexpr;

namespace {

/// The number with the other sign.
PointerTC<NodeABC> negated(NodeABC const& number) {
  wstring const& text = number.crefName();
  return makeNumber(text[0] == minus_sign ? text.substr(1) : minus_sign + text);
}

}  // namespace

bool isMinusOne(NodeABC const& node) { return castNode<IntegerNodeC>(node) && node.crefName() == u"−1"; }

bool takeRange(PointerTC<NodeABC> const& bound, std::u16string_view sign, PointerTC<NodeABC>& name,
               PointerTC<NodeABC>& value) {
  ParentNodeABC const* const parent = bound ? bound->asParent() : nullptr;
  if (!parent || parent->numChildren() != 2 || parent->crefName() != sign) return false;
  name = parent->childPointer(0);
  value = parent->childPointer(1);
  return !name->asParent() && !isNumber(*name);
}

LatexParserC::NextE LatexParserC::keep(NodeT node, unsigned flags) {
  if (!node) return fail(READ_ERROR_BAD_NUMBER);
  operands_.push_back({std::move(node), flags});
  while (isSingle()) {
    FrameS& top = frames_.back();
    if (top.kind == PENDING_OPERANDS && operands_.size() - top.firstOperand < top.notation->arity)
      return NEXT_SINGLE;
    FrameS const frame = std::move(top);
    frames_.pop_back();
    if (frame.kind == PENDING_OPERANDS) {
      NextE const next = makeCommand(frame);
      if (next != NEXT_SIGN) return next;
    } else if (frame.kind == PENDING_POWER) {
      bool const braced = (operands_.back().flags & OPERAND_BRACED) != 0;
      NodeT exponent = takeOperand();
      OperandS& base = operands_.back();
      unsigned power = OPERAND_POWER | (base.flags & (OPERAND_CALLS | OPERAND_INDEXED));
      if ((base.flags & OPERAND_D) != 0) power |= OPERAND_D_POWER | (braced ? OPERAND_ORDER : 0u);
      if ((base.flags & OPERAND_NAME) != 0) power |= OPERAND_NAME_POWER;
      base = {makePower(std::move(base.node), std::move(exponent)), power};
    } else {
      (frame.kind == PENDING_LOWER ? frames_.back().lower : frames_.back().upper) = takeOperand();
      return NEXT_HEAD;
    }
  }
  return NEXT_SIGN;
}

LatexParserC::NodeT LatexParserC::takeOperand() {
  NodeT node = std::move(operands_.back().node);
  operands_.pop_back();
  return node;
}

// Makes the operation of a command whose operands are the last ones, in the order of its form.
LatexParserC::NextE LatexParserC::makeCommand(FrameS const& frame) {
  LatexNotationS const& notation = *frame.notation;
  if (notation.name == u"/") return makeFraction();
  OperandS const& first = operands_[frame.firstOperand];
  std::vector<NodeT> operands(notation.arity);
  std::size_t place = 0;
  for (std::size_t i = frame.firstOperand; i < operands_.size(); ++i) {
    place = notation.written.find(u'#', place) + 1;
    operands[static_cast<std::size_t>(notation.written[place] - u'1')] = operands_[i].node;
  }
  bool const isSquare =
      notation.name == u"nthroot" && (first.flags & OPERAND_LITERAL) != 0 && first.node->crefName() == u"2";
  bool const onlyGroups = notation.name == bracket_name && (first.flags & OPERAND_BRACKETED) == 0;
  bool const isSet = notation.name == bracket_name && (first.flags & OPERAND_CURLY) != 0;
  NodeT node = isSquare     ? makeFunction(u"sqrt", {operands[0]})
               : isSet      ? makeFunction(wstring(findLatex(LATEX_SET)->name), operands)
               : onlyGroups ? operands[0]
                            : makeFunction(wstring(notation.name), operands);
  operands_.resize(frame.firstOperand);
  operands_.push_back({std::move(node)});
  return NEXT_SIGN;
}

void LatexParserC::finishTighterThan(int rule) {
  while (!frames_.empty() && frames_.back().close == u'\0' && frames_.back().operandRule > rule) {
    FrameS frame = std::move(frames_.back());
    frames_.pop_back();
    finish(frame);
  }
}

void LatexParserC::finish(FrameS& frame) {
  OperandS const last = std::move(operands_.back());
  operands_.pop_back();
  OperandS result;
  wstring const name(frame.notation ? frame.notation->name : std::u16string_view());
  switch (frame.kind) {
    case PENDING_PREFIX: {
      auto const* const parent = last.node->asParent();
      if (frame.asWritten) {
        result.node = makeFunction(name, {last.node});
      } else if (parent && parent->crefName() == u"_neg") {
        result.node = parent->childPointer(0);
      } else if (isNumber(*last.node) && last.node->crefName()[0] == minus_sign) {
        result.node = negated(*last.node);
      } else {
        result.node = makeFunction(name, {last.node});
      }
      break;
    }
    case PENDING_INFIX: {
      if (frame.notation->kind == LATEX_OVER && name == u"/") {
        operands_.push_back(last);
        return finishOver();
      }
      OperandS const left = std::move(operands_.back());
      operands_.pop_back();
      result.node = makeFunction(name, {left.node, last.node});
      if (frame.notation->rule == RULE_ASSIGNMENT) result.flags = OPERAND_ASSIGNMENT;
      if (frame.asWritten) result.flags = productFlags(left.flags, last.flags);
      break;
    }
    case PENDING_BIG:
      if (frame.notation->kind == LATEX_RANGE) {
        result.node = makeFunction(name, {frame.head, frame.lower, frame.upper, last.node});
      } else if (frame.notation->kind == LATEX_LIMIT) {
        std::vector<NodeT> parts{last.node, frame.head, frame.lower};
        if (frame.side != u'\0') parts.push_back(makeNumber(frame.side == u'-' ? u"-1" : u"1"));
        result.node = makeFunction(name, std::move(parts));
      } else {
        result.node = makeIntegral(frame, last.node);
      }
      break;
    case PENDING_DERIVATIVE:
      result.node = makeDerivative(last.node, *frame.lower, frame.asWritten ? ORDER_KEPT : ORDER_REPEATED);
      break;
    default:
      result.node = makeCall(frame, {last.node});
      break;
  }
  operands_.push_back(std::move(result));
}

unsigned LatexParserC::productFlags(unsigned left, unsigned right) {
  unsigned flags = left & OPERAND_ORDER;
  if ((left & (OPERAND_D | OPERAND_D_POWER | OPERAND_FIRST_D)) != 0) flags |= OPERAND_FIRST_D;
  if ((right & OPERAND_D) != 0) return flags | OPERAND_LAST_D;
  bool const isPair = (left & (OPERAND_D | OPERAND_LAST_D)) != 0 && (right & OPERAND_NAME) != 0;
  return isPair ? flags | OPERAND_DIFFERENTIAL : flags;
}

void LatexParserC::foldMinus() {
  while ((operands_.back().flags & OPERAND_LITERAL) != 0 && !frames_.empty()) {
    FrameS const& frame = frames_.back();
    if (frame.kind != PENDING_PREFIX || frame.asWritten) return;
    operands_.back().node = negated(*operands_.back().node);
    frames_.pop_back();
  }
}

LatexParserC::NodeT LatexParserC::makeCall(FrameS const& frame, std::vector<NodeT> operands) {
  NodeT call;
  if (!frame.notation) {
    call = makeFunction(frame.head->crefName(), std::move(operands));
  } else {
    if (frame.lower) operands.push_back(frame.lower);
    LatexNotationS const* const function = frame.lower ? findLatexReading(frame.word, LATEX_INDEXED)
                                                       : findLatexFunction(frame.word, operands.size());
    if (!function || (function->arity != 0 && function->arity != operands.size())) return nullptr;
    // A determinant has no matrix but its rows.
    ParentNodeABC const* const matrix = function->name == u"det" ? asTable(*operands[0]) : nullptr;
    if (matrix) operands = childrenOf(*matrix);
    call = makeFunction(wstring(function->name), std::move(operands));
  }
  return frame.upper ? makePower(std::move(call), frame.upper) : call;
}

std::vector<LatexParserC::NodeT> LatexParserC::takeOperands(std::size_t first) {
  std::vector<NodeT> taken;
  for (std::size_t i = first; i < operands_.size(); ++i) taken.push_back(std::move(operands_[i].node));
  operands_.resize(first);
  return taken;
}

LatexParserC::NextE LatexParserC::closeBracket() {
  FrameS const frame = std::move(frames_.back());
  frames_.pop_back();
  closes_.pop_back();
  if (frame.isOver) {
    NextE const next = makeOver();
    return advance(next == NEXT_SIGN ? keep(takeOperand(), OPERAND_BRACED) : next);
  }
  bool const isCondition = !operands_.empty() && operands_.back().node->getName() == condition_name;
  bool const isSet = frame.close == u'}' && frame.kind == PENDING_GROUP && (isCondition || isAfterSetSign());
  bool const isOpen = frame.close == u'[';
  if (frame.kind == PENDING_GROUP && (frame.comma > 0 || isSet || isOpen)) return closeList(frame);
  OperandS result;
  if (frame.kind == PENDING_CALL) {
    result.node = makeCall(frame, takeOperands(frame.firstOperand));
    if (!result.node) return failAt(frame.begin, frame.end, READ_ERROR_ARGUMENT_COUNT);
  } else if (frame.kind == PENDING_INDEX) {
    result = makeIndexed(frame);
  } else {
    result = std::move(operands_.back());
    bool const isTable = (result.flags & OPERAND_TABLE) != 0;
    if (isTable && frame.close == u'|') {
      result = {makeFunction(u"det", childrenOf(*result.node->asParent()))};
    } else if (isTable && frame.close == u'}' && token().bracket == no_bracket) {
      result = {makeCases(childrenOf(*result.node->asParent()))};
      if (!result.node) return fail(READ_ERROR_MISPLACED);
    } else if (frame.notation) {
      result = {makeFunction(wstring(frame.notation->name), {result.node})};
    } else if (!isBraceClose(frame.close)) {
      // The option of a command is the only bracket where one operand is read.
      unsigned const brackets = OPERAND_BRACKETED | (frame.close == u'}' ? OPERAND_CURLY : 0u);
      result.flags = isSingle() ? result.flags & OPERAND_LITERAL : brackets;
    } else if (isSingle()) {
      result.flags &= ~unsigned{OPERAND_LITERAL | OPERAND_POWER | OPERAND_ASSIGNMENT | OPERAND_CALLS};
    } else {
      result.flags = (result.flags & (OPERAND_NAME | OPERAND_BRACKETED | OPERAND_CURLY)) | OPERAND_BRACED;
    }
  }
  operands_.resize(frame.firstOperand);
  return advance(keep(std::move(result.node), result.flags));
}

// A bar that no other one closes is the sign of a condition: "P(A|B)".
bool LatexParserC::separates() const {
  unsigned depth = 0, bars = 1;
  LatexLexerC ahead = lexer_;
  for (unsigned left = most_condition; left > 0; --left) {
    ahead.readNextToken();
    switch (ahead.crefToken().type) {
      case LATEX_TOKEN_OPEN:
      case LATEX_TOKEN_BRACE_OPEN:
        ++depth;
        break;
      case LATEX_TOKEN_CLOSE:
      case LATEX_TOKEN_BRACE_CLOSE:
        if (depth-- == 0) return bars % 2 == 1;
        break;
      case LATEX_TOKEN_COMMA:
      case LATEX_TOKEN_CELL:
      case LATEX_TOKEN_ROW:
        if (depth == 0) return bars % 2 == 1;
        break;
      case LATEX_TOKEN_TABLE_END:
      case LATEX_TOKEN_END:
        return bars % 2 == 1;
      case LATEX_TOKEN_BAD:
        return false;
      case LATEX_TOKEN_BAR:
        if (depth == 0) ++bars;
        break;
      default:
        break;
    }
  }
  return false;
}

// ---- Differentials ----------------------------------------------------------------------------------------

// Whether the token is the "d" that ends the integral whose operand is being read.
bool LatexParserC::startsDifferential() const {
  if ((token().name & LATEX_NAME_D) == 0 || token().notation || isSingle()) return false;
  if (closes_.empty() || closes_.back() != integral_close) return false;
  LatexLexerC ahead = lexer_;
  ahead.readNextToken();
  if (ahead.crefToken().type != LATEX_TOKEN_NAME) return false;
  // In "d dx" the first one is a variable.
  bool const again = (ahead.crefToken().name & LATEX_NAME_D) != 0 && (token().name & LATEX_NAME_UPRIGHT) == 0;
  if (!again) return true;
  ahead.readNextToken();
  return ahead.crefToken().type != LATEX_TOKEN_NAME;
}

LatexParserC::NextE LatexParserC::closeIntegral() {
  FrameS const& top = frames_.back();
  // A sign before "dx" means nothing.
  if (top.kind == PENDING_INFIX && !top.asWritten && expectsOperand_) {
    if (top.notation->name != u"*") return fail(READ_ERROR_MISSING_OPERAND);
    frames_.pop_back();
  } else if (expectsOperand_) {
    if (top.kind != PENDING_INTEGRAL) return fail(READ_ERROR_MISSING_OPERAND);
    operands_.push_back({makeNumber(u"1"), OPERAND_LITERAL});
  }
  foldMinus();
  finishTighterThan(no_rule);
  FrameS frame = std::move(frames_.back());
  frames_.pop_back();
  closes_.pop_back();
  integrals_.pop_back();
  lexer_.readNextToken();
  frame.head = makeNamed(token().text);
  NodeT operand = takeOperand();
  return advance(keep(makeIntegral(frame, std::move(operand))));
}

LatexParserC::NodeT LatexParserC::makeIntegral(FrameS const& frame, NodeT operand) {
  wstring const name(frame.notation->name);
  if (!frame.lower) return makeFunction(name, {std::move(operand), frame.head});
  return makeFunction(name, {frame.lower, frame.upper, std::move(operand), frame.head});
}

// "\\over" in braces may be the sign of a derivative before its operand, or have the differential of the
// integral around, so its fraction is made when the braces close. Elsewhere no operand follows.
void LatexParserC::finishOver() {
  bool const inBraces =
      !frames_.empty() && frames_.back().kind == PENDING_GROUP && isBraceClose(frames_.back().close);
  if (inBraces) {
    frames_.back().isOver = true;
    return;
  }
  operands_[operands_.size() - 2].flags &= ~unsigned{OPERAND_D | OPERAND_D_POWER};
  makeOver();
}

LatexParserC::NextE LatexParserC::makeOver() {
  // Nothing shows before "\\over" that a "∂" is in a fraction.
  OperandS& numerator = operands_[operands_.size() - 2];
  if (separatePartials(numerator.node, operands_.back().node)) {
    numerator.flags |= numerator.node->asParent() ? OPERAND_FIRST_D : OPERAND_D;
    operands_.back().flags |= OPERAND_FIRST_D;
  }
  return makeFraction();
}

// Makes a fraction, a derivative, or a fraction with the differential of the integral around it.
LatexParserC::NextE LatexParserC::makeFraction() {
  OperandS const denominator = std::move(operands_.back());
  operands_.pop_back();
  OperandS numerator = std::move(operands_.back());
  operands_.pop_back();
  bool const isOperator = (numerator.flags & (OPERAND_D | OPERAND_D_POWER)) != 0;
  bool const mayDerive =
      (isOperator || (numerator.flags & OPERAND_FIRST_D) != 0) && (denominator.flags & OPERAND_FIRST_D) != 0;
  OrderE const order = (numerator.flags & OPERAND_ORDER) != 0 ? ORDER_KEPT : ORDER_REPEATED;
  if (mayDerive && isDerivative(*numerator.node, *denominator.node, order)) {
    if (!isOperator) {
      operands_.push_back({makeDerivative(withoutFirstFactor(*numerator.node), *denominator.node, order)});
      return NEXT_SIGN;
    }
    if (isSingle()) return fail(READ_ERROR_MISSING_OPERAND);
    FrameS frame{PENDING_DERIVATIVE, RULE_PRODUCT};
    frame.asWritten = order == ORDER_KEPT;
    frame.lower = denominator.node;
    frames_.push_back(std::move(frame));
    return NEXT_OPERAND;
  }
  bool const inIntegral = !closes_.empty() && closes_.back() == integral_close;
  if (inIntegral && (numerator.flags & OPERAND_DIFFERENTIAL) != 0) {
    // The integral now ends with its operand.
    FrameS& integral = frames_[integrals_.back()];
    integrals_.pop_back();
    closes_.pop_back();
    integral.kind = PENDING_BIG;
    integral.close = u'\0';
    integral.operandRule = RULE_PRODUCT;
    integral.head = takeDifferential(numerator.node);
  }
  operands_.push_back({makeFunction(u"/", {numerator.node, denominator.node})});
  return NEXT_SIGN;
}

}  // namespace zolt::exchange::detail
