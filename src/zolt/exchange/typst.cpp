#include "zolt/exchange/typst.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "zolt/algexpr/written_operand.h"
#include "zolt/common/signs.h"
#include "zolt/exchange/detail/typst_table.h"

namespace zolt::exchange {

using namespace math::algexpr;
using namespace math::common;
using namespace detail;

namespace {

bool isText(NodeABC const& node, std::u16string_view text) {
  return !node.asParent() && node.crefName() == text;
}

/// Writes expression nodes, with its own stack instead of recursion.
class TypstWriterC {
 public:
  wstring write(NodeABC const& node);

 private:
  /// What is still to be written: a text, a node in brackets when it binds looser than the rule, or the sign
  /// of a product, whose second factor begins at the place.
  struct TaskS {
    NodeABC const* node = nullptr;
    RuleE rule = RULE_ASSIGNMENT;
    std::u16string_view text = {};
    bool endsProduct = false;
    std::size_t place = 0;
  };

  static RuleE ruleOfNode(NodeABC const& node);
  static bool isLimitSide(ParentNodeABC const& node);

  void writeNode(NodeABC const& node, RuleE rule);
  void writeParent(ParentNodeABC const& node);
  void writeForm(ParentNodeABC const& node, TypstRowS const& row);
  bool writeSpecial(ParentNodeABC const& node);
  void writeTable(ParentNodeABC const& node, std::u16string_view begin, std::u16string_view cell);
  void writeName(std::u16string_view name);
  void writeNumber(std::u16string_view number);
  void writeQuoted(std::u16string_view text);
  void listLater(ParentNodeABC const& node, unsigned long first = 0);

  // What is planned last is written first.
  void later(NodeABC const& node, RuleE rule = RULE_ASSIGNMENT) { tasks_.push_back({&node, rule}); }
  void later(std::u16string_view text) { tasks_.push_back({nullptr, RULE_ASSIGNMENT, text}); }

  wstring output_;
  std::vector<TaskS> tasks_;           // the next task is the last element
  std::vector<std::size_t> products_;  // where the sign of a product goes in
};

// A blank between factors is a product, but not between numbers, nor before brackets, which would be a
// call's.
wstring TypstWriterC::write(NodeABC const& node) {
  later(node);
  while (!tasks_.empty()) {
    TaskS const task = tasks_.back();
    tasks_.pop_back();
    if (task.node) {
      writeNode(*task.node, task.rule);
    } else if (task.endsProduct) {
      char16_t const c = output_[task.place];
      if (isDigit(c) || c == u'(' || c == u'{') products_.push_back(task.place);
    } else if (task.text == u"*") {
      output_ += u' ';
      TaskS& end = tasks_[tasks_.size() - 2];
      end.place = output_.size();
    } else {
      output_ += task.text;
    }
  }
  std::sort(products_.begin(), products_.end());
  wstring result;
  std::size_t from = 0;
  for (std::size_t const place : products_) {
    result.append(output_, from, place - from);
    result += u"dot.op ";
    from = place;
  }
  return result.append(output_, from, wstring::npos);
}

bool TypstWriterC::isLimitSide(ParentNodeABC const& node) {
  return node.crefName() == u"limit" && node.numChildren() == 4 &&
         (isText(node.child(3), u"1") || isText(node.child(3), u"−1"));
}

RuleE TypstWriterC::ruleOfNode(NodeABC const& node) {
  ParentNodeABC const* const parent = node.asParent();
  if (!parent) {
    bool const hasExponent = isNumber(node) && node.crefName().find_first_of(u"eE") != wstring::npos;
    return isNegativeNumber(node) ? RULE_SUM : hasExponent ? RULE_PRODUCT : RULE_ATOM;
  }
  wstring const& name = node.crefName();
  if (isLimitSide(*parent) || name == u"diffn" || name == u"pdiffn") return tighterThan(RULE_SUM);
  TypstRowS const* const row = findTypst(name, parent->numChildren());
  return row ? row->rule : RULE_ATOM;
}

void TypstWriterC::writeNode(NodeABC const& node, RuleE rule) {
  bool const isBracketed = ruleOfNode(node) < rule;
  if (isBracketed) {
    output_ += u'(';
    later(u")");
  }
  if (isNumber(node)) return writeNumber(node.crefName());
  if (ParentNodeABC const* const parent = node.asParent()) return writeParent(*parent);
  TypstRowS const* const constant = findTypst(node.crefName(), 0);
  if (constant) {
    output_ += constant->written;
  } else {
    writeName(node.crefName());
  }
}

void TypstWriterC::writeParent(ParentNodeABC const& node) {
  if (writeSpecial(node)) return;
  if (TypstRowS const* const row = findTypst(node.crefName(), node.numChildren()))
    return writeForm(node, *row);
  writeName(node.crefName());
  output_ += u'(';
  later(u")");
  listLater(node);
}

void TypstWriterC::listLater(ParentNodeABC const& node, unsigned long first) {
  for (unsigned long i = node.numChildren(); i-- > first;) {
    later(node.child(i));
    if (i > first) later(u", ");
  }
}

void TypstWriterC::writeForm(ParentNodeABC const& node, TypstRowS const& row) {
  if (row.written == u"*") {
    TaskS end;
    end.endsProduct = true;
    tasks_.push_back(end);
    later(node.child(1), tighterThan(row.rule));
    later(row.written);
    return later(node.child(0), row.rule);
  }
  std::u16string_view const form = row.written;
  std::size_t end = form.size();
  for (std::size_t i = form.size(); i-- > 0;) {
    bool const isOperand = i + 1 < form.size() && (form[i] == u'#' || form[i] == u'@' || form[i] == u'&') &&
                           (isDigit(form[i + 1]) || form[i + 1] == u'*');
    if (!isOperand) continue;
    if (i + 2 < end) later(form.substr(i + 2, end - i - 2));
    end = i;
    if (form[i + 1] == u'*') {
      listLater(node);
    } else {
      NodeABC const& operand = node.child(static_cast<unsigned long>(form[i + 1] - u'1'));
      later(operand, form[i] == u'#' ? RULE_ASSIGNMENT : form[i] == u'@' ? row.rule : tighterThan(row.rule));
    }
  }
  if (end > 0) later(form.substr(0, end));
}

// Writes what a row of the table cannot say. Returns false for anything else.
bool TypstWriterC::writeSpecial(ParentNodeABC const& node) {
  wstring const& name = node.crefName();
  unsigned long const count = node.numChildren();
  if (isLimitSide(node)) {
    later(node.child(0), RULE_PRODUCT);
    later(isText(node.child(3), u"1") ? u"^+) " : u"^-) ");
    later(node.child(2), RULE_POSTFIX);
    later(u" -> ");
    later(node.child(1));
    later(u"lim_(");
    return true;
  }
  bool const isPartial = name == u"pdiffn";
  if ((isPartial || name == u"diffn") && count == 3 && !node.child(2).asParent()) {
    std::u16string_view const sign = isPartial ? u"partial" : u"dif";
    later(node.child(0), RULE_PRODUCT);
    later(u")) ");
    later(node.child(2));
    later(u"^(");
    later(node.child(1));
    later(u" ");
    later(sign);
    later(u"), ");
    later(node.child(2));
    later(u"^(");
    later(sign);
    later(u"frac(");
    return true;
  }
  if (name == u"index" && count > 1) {
    later(u")");
    listLater(node, 1);
    later(u"_(");
    later(node.child(0), RULE_POSTFIX);
    return true;
  }
  if (name == u"interval" && count == 4) {
    later(isText(node.child(3), u"1") ? u" bracket.r" : u" paren.r");
    later(node.child(1));
    later(u"\\, ");
    later(node.child(0));
    later(isText(node.child(2), u"1") ? u"bracket.l " : u"paren.l ");
    return true;
  }
  if (countColumns(node) == 0) return false;
  if (name == u"matrix") writeTable(node, u"mat(delim: \"[\", ", u"; ");
  if (name == u"det") writeTable(node, u"mat(delim: \"|\", ", u"; ");
  if (name == u"cases") writeTable(node, u"cases(", u", ");
  return name == u"matrix" || name == u"det" || name == u"cases";
}

void TypstWriterC::writeTable(ParentNodeABC const& node, std::u16string_view begin,
                              std::u16string_view rowEnd) {
  later(u")");
  for (unsigned long i = node.numChildren(); i-- > 0;) {
    ParentNodeABC const& row = *node.child(i).asParent();
    for (unsigned long k = row.numChildren(); k-- > 0;) {
      later(row.child(k));
      if (k > 0) later(rowEnd == u", " ? u" & quad " : u", ");
    }
    if (i > 0) later(rowEnd);
  }
  later(begin);
}

void TypstWriterC::writeQuoted(std::u16string_view text) {
  output_ += u'"';
  for (char16_t const c : text) {
    if (c == u'"' || c == u'\\') output_ += u'\\';
    output_ += c;
  }
  output_ += u'"';
}

// A letter is itself, a word in quotes.
void TypstWriterC::writeName(std::u16string_view name) {
  auto const put = [&](std::u16string_view part) {
    bool const isLetter = part.size() == 1 && (isAsciiLetter(part[0]) || part[0] >= 0x80);
    bool const isIndex = !part.empty() && std::all_of(part.begin(), part.end(), isDigit);
    if (isLetter || isIndex) {
      output_ += part;
    } else {
      writeQuoted(part);
    }
  };
  std::size_t const primes = name.size() - std::min(name.size(), name.find_last_not_of(prime_sign) + 1);
  name.remove_suffix(primes);
  std::size_t const underscore = name.find(u'_');
  bool const hasIndex = underscore != name.npos && underscore > 0 && underscore + 1 < name.size();
  put(hasIndex ? name.substr(0, underscore) : name);
  if (hasIndex) {
    output_ += u"_(";
    put(name.substr(underscore + 1));
    output_ += u')';
  }
  output_.append(primes, u'\'');
}

void TypstWriterC::writeNumber(std::u16string_view number) {
  std::size_t const e = std::min(number.find_first_of(u"eE"), number.size());
  auto const put = [&](std::u16string_view digits) {
    for (char16_t const c : digits) output_ += isMinus(c) ? u'-' : c;
  };
  put(number.substr(0, e));
  if (e == number.size()) return;
  output_ += u" dot.op 10^(";
  put(number.substr(e + 1));
  output_ += u')';
}

}  // namespace

wstring toTypst(AlgebraicExpressionC const& expression) {
  PointerTC<NodeABC> const node = expression.getNode();
  return node ? TypstWriterC().write(*node) : wstring();
}

}  // namespace zolt::exchange
