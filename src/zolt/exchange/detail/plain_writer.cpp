#include "zolt/exchange/detail/plain_writer.h"

#include <algorithm>

#include "zolt/algexpr/make_operation.h"
#include "zolt/algexpr/parent_node.h"
#include "zolt/algexpr/written_operand.h"
#include "zolt/common/signs.h"
#include "zolt/exchange/detail/plain_lexer.h"
#include "zolt/exchange/plain_operator.h"

namespace zolt::exchange::detail {

namespace common = math::common;
using math::algexpr::asBrackets;
using math::algexpr::findWrittenOperand;
using math::algexpr::isNumber;
using math::algexpr::NodeABC;
using math::algexpr::ParentNodeABC;

namespace {

/// Whether a name without quotes would be read as something other than that name.
bool isReserved(std::u16string_view name) { return findReading(name) || isIntegral(name); }

/// The first operand of the signs that are written without brackets where `rule` is asked for.
NodeABC const& firstOperand(NodeABC const& node, RuleE rule) {
  NodeABC const* first = &node;
  while (ParentNodeABC const* const parent = first->asParent()) {
    NotationS const* const infix = parent->numChildren() == 2 ? findInfix(parent->crefName()) : nullptr;
    if (!infix || infix->rule < rule || infix->rule == RULE_POWER) break;
    rule = infix->leftRule;
    first = &parent->child(0);
  }
  return *first;
}

/// Whether the argument that is written as a sign is one for which there is a sign.
bool hasWritableSide(ParentNodeABC const& node, CallPatternS const& pattern) {
  CallPatternS::ArgumentS const* const side = pattern.findSide();
  if (!side || node.numChildren() < side->side) return true;
  wstring const& name = node.child(side->side - 1).crefName();
  return name == u"1" || name == wstring{common::minus_sign, u'1'};
}

}  // namespace

wstring PlainWriterC::write(NodeABC const& node) {
  later(node, RULE_ASSIGNMENT);
  while (!tasks_.empty()) {
    TaskS const task = tasks_.back();
    tasks_.pop_back();
    if (task.node) {
      writeNode(*task.node, task.rule);
    } else {
      output_ += task.text;
    }
  }
  return std::move(output_);
}

void PlainWriterC::writeNode(NodeABC const& node, RuleE rule) {
  ParentNodeABC const* const parent = node.asParent();
  return parent ? writeParent(*parent, rule) : writeLeaf(node, rule);
}

void PlainWriterC::writeLeaf(NodeABC const& node, RuleE rule) {
  wstring const& name = node.crefName();
  if (isNumber(node)) {
    bool const negative = name[0] == common::minus_sign;
    open(rule == RULE_BRACKETS || (negative && (rule > RULE_SIGN || !signFits())));
    if (negative) output_ += u'-';
    output_.append(name, negative ? 1 : 0, wstring::npos);
  } else if (NotationS const* const constant = findNotation(name);
             constant && constant->form == FORM_CONSTANT) {
    output_ += constant->plain.written;
  } else if (isBareName(name) && toLetters(name) == name && (!isReserved(name) || name == u"error")) {
    writeBare(name);
  } else {
    writeQuoted(name);
  }
}

void PlainWriterC::writeParent(ParentNodeABC const& node, RuleE rule) {
  wstring const& name = node.crefName();
  NotationS const* const notation = findNotation(name);
  if (!notation || notation->arity != node.numChildren()) return writeCall(node);
  switch (notation->form) {
    case FORM_INFIX:
      return writeInfix(node, *notation, rule);
    case FORM_BRACKETS:
      return writeBrackets(node.child(0));
    case FORM_PREFIX:
      return writePrefix(*notation, node.child(0), rule);
    case FORM_POSTFIX:
      if (NodeABC const* const written = findWrittenOperand(node, 0))
        return writePostfix(notation->plain.written, *written, rule);
      break;
    default:
      break;
  }
  writeCall(node);
}

void PlainWriterC::writeInfix(ParentNodeABC const& node, NotationS const& infix, RuleE rule) {
  NodeABC const* left = &node.child(0);
  NodeABC const* right = &node.child(1);
  if (infix.rule == RULE_POWER) {
    left = findWrittenOperand(node, 0);
    right = findWrittenOperand(node, 1);
    if (!left || !right) return writeCall(node);
  }
  open(infix.rule < rule);
  // "x^{a}" is read as x^a.
  PlainListS const* const list =
      infix.rule == RULE_POWER && right->asParent() ? findListOf(*right->asParent()) : nullptr;
  bool const isBraced = list && list->open == u'{' && right->asParent()->numChildren() == 1;
  if (isBraced) later(u")");
  laterAfter(infix, *right, infix.rightRule);
  if (isBraced) later(u"(");
  later(infix.plain.written);
  later(*left, infix.leftRule);
}

void PlainWriterC::writePrefix(NotationS const& prefix, NodeABC const& operand, RuleE rule) {
  bool const isSign = prefix.rule == RULE_SIGN;
  open(prefix.rule < rule || (isSign && !signFits()));
  output_ += prefix.plain.written;
  // "-2" would be read as a number.
  bool const isMinus = isSign && prefix.plain.written == u"-";
  if (isMinus && isNumber(operand) && !math::algexpr::beginsWithSign(operand)) {
    later(operand, RULE_BRACKETS);
  } else {
    laterAfter(prefix, operand, prefix.rule);
  }
}

void PlainWriterC::laterAfter(NotationS const& sign, NodeABC const& operand, RuleE rule) {
  ParentNodeABC const* const brackets = asBrackets(operand);
  NodeABC const& inner = brackets ? brackets->child(0) : operand;
  if (!endsAfterSign(sign)) return later(operand, rule);
  // The reader keeps brackets here, so those that the formula lacks are left out where the text is to be
  // exact.
  if (!math::algexpr::beginsWithSign(inner)) {
    bool const isApart =
        style_ == PLAIN_TEXT_EXACT && math::algexpr::beginsWithSign(firstOperand(operand, rule));
    later(operand, rule);
    return later(isApart ? u" " : u"");
  }
  if (brackets || style_ == PLAIN_TEXT_READABLE) return later(inner, RULE_BRACKETS);
  later(operand, std::min(rule, RULE_SIGN));
  later(u" ");
}

void PlainWriterC::writePostfix(std::u16string_view sign, NodeABC const& operand, RuleE rule) {
  open(RULE_POSTFIX < rule);
  later(sign);
  later(operand, RULE_POSTFIX);
}

void PlainWriterC::writeBrackets(NodeABC const& operand) {
  // The reader drops one of two pairs of brackets that are directly inside each other.
  NodeABC const* inner = &operand;
  open(true);
  bool const dropped = style_ == PLAIN_TEXT_EXACT;
  open(dropped);
  while (ParentNodeABC const* const brackets = asBrackets(*inner)) {
    open(true);
    inner = &brackets->child(0);
  }
  later(*inner, RULE_ASSIGNMENT);
}

bool PlainWriterC::writeTable(ParentNodeABC const& node) {
  PlainTableS const* const table = findTable(node.crefName());
  if (!table) return false;
  unsigned long const count = node.numChildren();
  for (unsigned long i = 0; i < count; ++i) {
    auto const* const row = node.child(i).asParent();
    if (!row || row->crefName() != math::algexpr::list_name) return false;
  }
  output_ += table->open == u'\0' ? table->name + u'(' : wstring(1, table->open);
  later(table->open == u'\0' ? std::u16string_view(u")") : std::u16string_view(&table->close, 1));
  if (count == 1) later(u";");
  for (unsigned long i = count; i-- > 0;) {
    ParentNodeABC const& row = *node.child(i).asParent();
    for (unsigned long k = row.numChildren(); k-- > 0;) {
      later(row.child(k), RULE_ASSIGNMENT);
      if (k > 0) later(u",");
    }
    if (i > 0) later(u";");
  }
  return true;
}

void PlainWriterC::writeCall(ParentNodeABC const& node) {
  if (writeTable(node)) return;
  if (PlainListS const* const list = findListOf(node)) return writeList(node, *list);
  wstring const& name = node.crefName();
  NotationS const* function = findCall(name, node.numChildren());
  if (function && function->pattern && !hasWritableSide(node, *function->pattern)) function = nullptr;
  bool const fits = function && (function->arity == 0 || function->arity == node.numChildren());
  if (fits && function->form == FORM_FUNCTION) {
    output_ += function->plain.written;
  } else if (isBareName(name) && toCalledLetters(name) == name && !isReserved(name) &&
             !isDifferential(name) && findMark(name) == name.npos && !findIndexing(name, 1)) {
    writeBare(name);
  } else {
    writeQuoted(name);
  }
  open(true);
  if (fits && function->pattern) return laterPattern(node, *function->pattern);
  laterArguments(node, node.numChildren());
}

void PlainWriterC::writeList(ParentNodeABC const& node, PlainListS const& list) {
  output_ += list.open;
  later({&list.close, 1});
  laterArguments(node, node.numChildren() - static_cast<unsigned long>(list.added.size()));
}

void PlainWriterC::laterArguments(ParentNodeABC const& node, unsigned long count) {
  for (unsigned long i = count; i-- > 0;) {
    later(node.child(i), RULE_ASSIGNMENT);
    if (i > 0) later(u",");
  }
}

void PlainWriterC::laterPattern(ParentNodeABC const& node, CallPatternS const& pattern) {
  for (std::size_t i = pattern.count; i-- > 0;) {
    CallPatternS::ArgumentS const& argument = pattern.arguments[i];
    ReadingS const* const sign = argument.sign.empty() ? nullptr : findReading(argument.sign);
    if (argument.side > 0) later(node.child(argument.side - 1).crefName() == u"1" ? u"+" : u"-");
    if (sign) {
      laterAfter(*sign->notation, node.child(argument.second - 1), sign->notation->rightRule);
      later(argument.sign);
    }
    later(node.child(argument.first - 1), sign ? sign->notation->leftRule : RULE_ASSIGNMENT);
    if (i > 0) later(u",");
  }
}

void PlainWriterC::writeBare(wstring const& name) {
  for (char16_t const c : name) output_ += c == common::prime_sign ? u'\'' : c;
}

void PlainWriterC::writeQuoted(wstring const& name) {
  output_ += u'"';
  for (char16_t const c : name) {
    if (c == u'"') output_ += c;
    output_ += c;
  }
  output_ += u'"';
}

void PlainWriterC::open(bool needed) {
  if (!needed) return;
  output_ += u'(';
  later(u")");
}

bool PlainWriterC::signFits() const {
  if (output_.empty()) return true;
  char16_t const last = output_.back();
  return last == u'(' || last == u'[' || last == u'{' || last == u',' || last == u' ' || last == u';';
}

}  // namespace zolt::exchange::detail
