#include "zolt/mathjson/detail/json_writer.h"

#include <algorithm>

#include "zolt/algexpr/nodes.h"
#include "zolt/algexpr/written_operand.h"
#include "zolt/common/decimal_text.h"
#include "zolt/common/signs.h"
#include "zolt/mathjson/detail/json_reader.h"
#include "zolt/oss/code_point.h"

namespace zolt::mathjson::detail {

using namespace math::common;
using namespace math::algexpr;

namespace {

bool isCall(NodeABC const& node, std::u16string_view name) {
  return node.asParent() && node.crefName() == name;
}

bool isText(NodeABC const& node, std::u16string_view text) {
  return !node.asParent() && node.crefName() == text;
}

/// Whether JSON has the number as it is, and every program reads all of its digits.
bool isJsonNumber(std::u16string_view digits) {
  constexpr std::size_t longest = 15;
  std::size_t const e = std::min(digits.find_first_of(u"eE"), digits.size());
  std::u16string_view const mantissa = digits.substr(0, e);
  std::size_t const point = std::min(mantissa.find(u'.'), mantissa.size());
  bool const hasWhole = point > 0 && (mantissa[0] != u'0' || point == 1);
  bool const hasFraction = point == mantissa.size() || point + 1 < mantissa.size();
  // Larger exponents may be beyond what JSON libraries hold.
  std::u16string_view exponent = digits.substr(std::min(e + 1, digits.size()));
  if (!exponent.empty() && !isDigit(exponent[0])) exponent.remove_prefix(1);
  constexpr std::size_t longest_exponent = 2;
  return hasWhole && hasFraction && mantissa.size() <= longest && exponent.size() <= longest_exponent;
}

}  // namespace

wstring JsonWriterC::write(NodeABC const& node) {
  later(node);
  while (!tasks_.empty()) {
    TaskS const task = tasks_.back();
    tasks_.pop_back();
    if (task.node) {
      writeNode(*task.node);
    } else {
      output_ += task.text;
    }
  }
  return std::move(output_);
}

void JsonWriterC::writeNode(NodeABC const& node) {
  ParentNodeABC const* const parent = node.asParent();
  if (isNumber(node)) return writeNumber(node.crefName());
  if (!parent) {
    JsonRowS const* const constant = findJson(node.crefName(), 0);
    if (constant) return putHead(constant->written);
    return writeName(node.crefName());
  }
  JsonRowS const* const row = findJson(node.crefName(), parent->numChildren());
  if (!row || !writeRow(*parent, *row)) writeVerbatim(*parent);
}

// A number that programs would shorten is a text.
void JsonWriterC::writeNumber(wstring const& number) {
  wstring text = number;
  bool const isNegative = text[0] == minus_sign;
  if (isNegative) text[0] = u'-';
  std::size_t const e = std::min(text.find_first_of(u"eE"), text.size());
  char16_t const sign = e + 1 < text.size() ? text[e + 1] : u'\0';
  bool const isOther = isMinus(sign) && sign != u'-';
  if (isOther) text[e + 1] = u'-';
  if (!isOther && isJsonNumber(std::u16string_view(text).substr(isNegative ? 1 : 0))) {
    output_ += text;
    return;
  }
  output_ += u"{\"num\":\"" + text + u'"';
  if (isOther) output_ += wstring(u",\"minus\":\"") + sign + u'"';
  output_ += u'}';
}

void JsonWriterC::putHead(std::u16string_view head) {
  output_ += u'"';
  output_ += head;
  output_ += u'"';
}

void JsonWriterC::writeName(std::u16string_view name) {
  output_ += u'"';
  if (needsJsonPrefix(name) || name[0] == u'\'') output_ += verbatim_prefix;
  for (std::size_t i = 0; i < name.size();) {
    std::size_t const begin = i;
    char32_t const c = oss::readCodePoint(name, i);
    if (c == escape_mark || oss::isSurrogate(c)) {
      constexpr char16_t const* digits = u"0123456789ABCDEF";
      output_ += escape_mark;
      for (int shift = 12; shift >= 0; shift -= 4) output_ += digits[(c >> shift) & 0xF];
      continue;
    }
    if (c == not_read) {
      output_ += u"\\uFFFF";
      continue;
    }
    if (c == u'"' || c == u'\\') output_ += u'\\';
    output_ += name.substr(begin, i - begin);
  }
  output_ += u'"';
}

void JsonWriterC::writeVerbatim(ParentNodeABC const& node) {
  output_ += u'[';
  writeName(node.crefName());
  later(u"]");
  for (unsigned long i = node.numChildren(); i-- > 0;) {
    later(node.child(i));
    later(u",");
  }
}

// Writes a function by its row. Returns false, with nothing written, when it would be read as another one.
bool JsonWriterC::writeRow(ParentNodeABC const& node, JsonRowS const& row) {
  auto const begin = [&] {
    output_ += u'[';
    putHead(row.written);
    output_ += u',';
  };
  auto const close = [&](std::u16string_view text) { later(text); };
  switch (row.shape) {
    case JSON_PLAIN:
      return writePlain(node, row);
    case JSON_CHAIN:
      writeChain(node, row);
      return true;
    case JSON_SUM:
    case JSON_INTEGRAL: {
      bool const isSum = row.shape == JSON_SUM;
      NodeABC const& body = node.child(isSum ? 3 : 2);
      NodeABC const& from = node.child(isSum ? 1 : 0);
      NodeABC const& to = node.child(isSum ? 2 : 1);
      bool const isBare = !isSum && isText(from, u"Nothing") && isText(to, u"Nothing");
      if (isBare || isCall(body, u"Function")) return false;
      begin();
      close(u"]]");
      later(to);
      later(u",");
      later(from);
      later(u",");
      later(node.child(isSum ? 0 : 3));
      later(u",[\"Limits\",");
      later(body);
      return true;
    }
    case JSON_PRIMITIVE:
    case JSON_DERIVATIVE: {
      bool const isPlain = row.shape == JSON_DERIVATIVE || !isCall(node.child(0), u"Function");
      if (!isPlain || node.child(1).asParent()) return false;
      begin();
      close(u"]");
      later(node.child(1));
      later(u",");
      later(node.child(0));
      return true;
    }
    case JSON_LIMIT:
    case JSON_WHERE:
      begin();
      close(u"]");
      for (unsigned long i = node.numChildren(); --i > 1;) {
        later(node.child(i));
        later(u",");
      }
      later(u"]");
      later(node.child(1));
      later(u",");
      later(node.child(0));
      later(u"[\"Function\",");
      return true;
    case JSON_ORDER:
      begin();
      close(u"]]");
      later(node.child(2));
      later(u",");
      later(node.child(1));
      later(u",[\"Tuple\",");
      later(node.child(0));
      return true;
    case JSON_MATRIX:
    case JSON_ROWS:
    case JSON_CASES:
      return writeTable(node, row);
    case JSON_INTERVAL:
      return writeInterval(node, row);
    case JSON_CONSTANT:
    case JSON_READ_AS:
      break;
  }
  return false;
}

bool JsonWriterC::writePlain(ParentNodeABC const& node, JsonRowS const& row) {
  bool const isGuarded = row.name == u"^" || row.name == u"!" || row.name == u"_deg" || row.name == u"_rad";
  std::vector<NodeABC const*> operands;
  for (unsigned long i = 0; i < node.numChildren(); ++i) {
    operands.push_back(isGuarded ? findWrittenOperand(node, i) : &node.child(i));
    if (!operands.back()) return false;
  }
  output_ += u'[';
  putHead(row.written);
  later(u"]");
  for (std::size_t i = operands.size(); i-- > 0;) {
    later(*operands[i]);
    later(u",");
  }
  return true;
}

// Sums of sums, and products of products, that lean to the left are one.
void JsonWriterC::writeChain(ParentNodeABC const& node, JsonRowS const& row) {
  bool const isFlat = row.name == u"+" || row.name == u"*" || row.name == u"and" || row.name == u"or";
  output_ += u'[';
  putHead(row.written);
  output_ += u',';
  later(u"]");
  ParentNodeABC const* chain = &node;
  for (;;) {
    later(chain->child(1));
    later(u",");
    ParentNodeABC const* const left = chain->child(0).asParent();
    bool const goesOn = isFlat && left && left->numChildren() == 2 && left->crefName() == row.name;
    if (!goesOn) break;
    chain = left;
  }
  later(chain->child(0));
}

bool JsonWriterC::writeTable(ParentNodeABC const& node, JsonRowS const& row) {
  unsigned long const columns = countColumns(node);
  bool const isOther = row.shape == JSON_ROWS && node.numChildren() == 1 && columns == 0;
  if (isOther && !asTable(node.child(0))) {
    output_ += u'[';
    putHead(row.written);
    output_ += u',';
    later(u"]");
    later(node.child(0));
    return true;
  }
  bool const isCases = row.shape == JSON_CASES;
  if (columns == 0 || (isCases && columns != 2)) return false;
  output_ += u'[';
  putHead(row.written);
  output_ += isCases ? u"," : row.shape == JSON_ROWS ? u",[\"Matrix\",[\"List\"," : u",[\"List\",";
  later(isCases ? u"]" : row.shape == JSON_ROWS ? u"]]]" : u"]]");
  for (unsigned long i = node.numChildren(); i-- > 0;) {
    ParentNodeABC const& cells = *node.child(i).asParent();
    if (isCases) {
      later(cells.child(0));
      later(u",");
      later(cells.child(1));
    } else {
      later(cells);
    }
    if (i > 0) later(u",");
  }
  return true;
}

bool JsonWriterC::writeInterval(ParentNodeABC const& node, JsonRowS const& row) {
  for (unsigned long i = 0; i < 2; ++i) {
    bool const isEnd = isText(node.child(i + 2), u"0") || isText(node.child(i + 2), u"1");
    if (!isEnd || isCall(node.child(i), u"Open")) return false;
  }
  output_ += u'[';
  putHead(row.written);
  output_ += u',';
  later(u"]");
  for (unsigned long i = 2; i-- > 0;) {
    bool const isOpen = isText(node.child(i + 2), u"0");
    if (isOpen) later(u"]");
    later(node.child(i));
    if (isOpen) later(u"[\"Open\",");
    if (i > 0) later(u",");
  }
  return true;
}

}  // namespace zolt::mathjson::detail
