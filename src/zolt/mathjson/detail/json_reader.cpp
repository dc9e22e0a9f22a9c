#include "zolt/mathjson/detail/json_reader.h"

#include <algorithm>
#include <utility>

#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/algexpr/make_node.h"
#include "zolt/algexpr/written_operand.h"
#include "zolt/common/signs.h"

namespace zolt::mathjson::detail {

using namespace math::common;
using namespace math::algexpr;

namespace {

bool isSeparator(char16_t c) { return c <= u' ' || c == u',' || c == u':' || c == u'\uFEFF'; }

bool isWordPart(char16_t c) { return isDigit(c) || isAsciiLetter(c) || c == u'-' || c == u'+' || c == u'.'; }

/// The value of four hexadecimal digits; negative when there are none.
int readHex(std::u16string_view digits) {
  if (digits.size() < 4) return -1;
  int value = 0;
  for (char16_t const c : digits.substr(0, 4)) {
    int const digit = isDigit(c) ? c - u'0' : c >= u'A' && c <= u'F' ? c - u'A' + 10 : -1;
    if (digit < 0) return -1;
    value = value * 16 + digit;
  }
  return value;
}

wstring withoutEscapes(wstring const& written) {
  wstring name;
  for (std::size_t i = 0; i < written.size(); ++i) {
    std::u16string_view const rest = std::u16string_view(written).substr(i + 1);
    int const meant = written[i] == escape_mark ? readHex(rest) : -1;
    name += meant < 0 ? written[i] : static_cast<char16_t>(meant);
    if (meant >= 0) i += 4;
  }
  return name;
}

bool startsWith(std::u16string_view text, std::u16string_view what) {
  return text.substr(0, what.size()) == what;
}

/// The number with another minus in its exponent.
PointerTC<NodeABC> withMinus(PointerTC<NodeABC> const& number, char16_t minus) {
  wstring text = number->crefName();
  std::size_t const place = text.find(u'-');
  if (place != wstring::npos) text[place] = minus;
  return makeNumber(text);
}

}  // namespace

// The current token is the next one of the text, which the parser has found to be JSON up to its end.
void JsonReaderC::findToken() {
  begin_ = end_;
  while (begin_ < text_.size() && isSeparator(text_[begin_])) ++begin_;
  end_ = std::min(begin_ + 1, text_.size());
  if (begin_ == text_.size()) return;
  if (text_[begin_] == u'"') {
    while (end_ < text_.size() && text_[end_] != u'"') end_ += text_[end_] == u'\\' ? 2u : 1u;
    end_ = std::min(end_ + 1, text_.size());
  } else if (isWordPart(text_[begin_])) {
    while (end_ < text_.size() && isWordPart(text_[end_])) ++end_;
  }
}

bool JsonReaderC::fail(ReadErrorE cause) { return failAt(begin_, cause); }

bool JsonReaderC::failAt(std::size_t begin, ReadErrorE cause) {
  error_ = {cause, static_cast<unsigned long>(begin), static_cast<unsigned long>(end_), describe(cause)};
  return false;
}

bool JsonReaderC::refuseText() {
  findToken();
  bool const isEmpty = frames_.empty() && operands_.empty();
  if (begin_ == text_.size()) return fail(isEmpty ? READ_ERROR_EMPTY : READ_ERROR_MISSING_CLOSE);
  bool const isValue = isEmpty || !frames_.empty();
  if (isValue && (isDigit(text_[begin_]) || text_[begin_] == u'-')) return fail(READ_ERROR_BAD_NUMBER);
  return fail(isValue ? READ_ERROR_MISPLACED : READ_ERROR_TRAILING_TEXT);
}

bool JsonReaderC::isSkipped() const {
  return skippedDepth_ > 0 ||
         (!frames_.empty() && !frames_.back().isArray && frames_.back().key == KEY_OTHER);
}

bool JsonReaderC::push(NodeT node, ReadErrorE cause) {
  if (!node) return fail(cause);
  operands_.push_back(std::move(node));
  return true;
}

bool JsonReaderC::takeWord() {
  findToken();
  return isSkipped() || fail(READ_ERROR_NO_MEANING);
}

bool JsonReaderC::takeNumber() {
  findToken();
  if (isSkipped()) return true;
  bool const isHead = !frames_.empty() && frames_.back().isArray && !frames_.back().head;
  bool const isValue = !frames_.empty() && !frames_.back().isArray && frames_.back().key != KEY_NUMBER;
  if (isHead || isValue) return fail(READ_ERROR_MISPLACED);
  return push(makeNumber(wstring(text_.substr(begin_, end_ - begin_))), READ_ERROR_BAD_NUMBER);
}

bool JsonReaderC::takeString(wstring const& value) {
  findToken();
  if (isSkipped()) return true;
  FrameS* const frame = frames_.empty() ? nullptr : &frames_.back();
  if (frame && frame->isArray && !frame->head) {
    frame->head = makeNamed(value);
    return frame->head || fail(READ_ERROR_BAD_NAME);
  }
  KeyE const key = frame && !frame->isArray ? frame->key : KEY_SYMBOL;
  switch (key) {
    case KEY_NUMBER: {
      if (value == u"+Infinity") return push(makeNamed(u"∞"), READ_ERROR_BAD_NUMBER);
      if (value == u"-Infinity") return push(makeFunction(u"_neg", {makeNamed(u"∞")}), READ_ERROR_BAD_NUMBER);
      return push(makeNumber(value), READ_ERROR_BAD_NUMBER);
    }
    case KEY_MINUS:
      if (value.size() != 1 || !isMinus(value[0])) return fail(READ_ERROR_BAD_NUMBER);
      frame->minus = value[0];
      return true;
    case KEY_SYMBOL:
      break;
    default:
      return fail(READ_ERROR_MISPLACED);
  }
  // "'…'" is a text.
  if (!value.empty() && value[0] == u'\'') return fail(READ_ERROR_NO_MEANING);
  return push(makeSymbol(value), READ_ERROR_BAD_NAME);
}

JsonReaderC::NodeT JsonReaderC::makeSymbol(wstring const& name) {
  if (startsWith(name, verbatim_prefix)) {
    return makeNamed(withoutEscapes(name.substr(verbatim_prefix.size())));
  }
  for (JsonRowS const* row = findJsonReading(name); row; row = findJsonReading(name, row)) {
    bool const isMeant = row->shape == JSON_READ_AS && row->arity == 0;
    if (isMeant) return AlgebraicExpressionC::fromPrefixString(wstring(row->name), nullptr)->getNode();
    if (row->shape == JSON_CONSTANT) return makeNamed(wstring(row->name));
  }
  NodeT const named = makeNamed(withoutEscapes(name));
  return named ? named : makeNumber(name);
}

bool JsonReaderC::mayBegin() const {
  if (frames_.empty()) return true;
  FrameS const& frame = frames_.back();
  return frame.isArray ? static_cast<bool>(frame.head) : frame.key == KEY_FUNCTION;
}

bool JsonReaderC::beginArray() {
  findToken();
  if (isSkipped()) return ++skippedDepth_ > 0;
  if (!mayBegin()) return fail(READ_ERROR_MISPLACED);
  frames_.push_back({true, KEY_NONE, u'\0', {}, begin_, operands_.size()});
  return true;
}

bool JsonReaderC::beginObject() {
  findToken();
  if (isSkipped()) return ++skippedDepth_ > 0;
  bool const isValue = !frames_.empty() && !frames_.back().isArray;
  if (isValue || !mayBegin()) return fail(READ_ERROR_MISPLACED);
  frames_.push_back({false, KEY_NONE, u'\0', {}, begin_, operands_.size()});
  return true;
}

bool JsonReaderC::takeKey(wstring const& key) {
  findToken();
  if (skippedDepth_ > 0) return true;
  frames_.back().key = key == u"num"     ? KEY_NUMBER
                       : key == u"sym"   ? KEY_SYMBOL
                       : key == u"fn"    ? KEY_FUNCTION
                       : key == u"minus" ? KEY_MINUS
                                         : KEY_OTHER;
  return true;
}

std::optional<JsonReaderC::FrameS> JsonReaderC::endFrame() {
  findToken();
  if (skippedDepth_ > 0) {
    --skippedDepth_;
    return std::nullopt;
  }
  std::optional<FrameS> frame = std::move(frames_.back());
  frames_.pop_back();
  return frame;
}

bool JsonReaderC::endObject() {
  std::optional<FrameS> const frame = endFrame();
  if (!frame) return true;
  if (operands_.size() != frame->firstOperand + 1) return failAt(frame->begin, READ_ERROR_NO_MEANING);
  NodeT& value = operands_.back();
  if (frame->minus != u'\0' && isNumber(*value)) value = withMinus(value, frame->minus);
  return true;
}

bool JsonReaderC::endArray() {
  std::optional<FrameS> const frame = endFrame();
  if (!frame) return true;
  if (!frame->head) return failAt(frame->begin, READ_ERROR_MISSING_OPERAND);
  auto const first = operands_.begin() + static_cast<std::ptrdiff_t>(frame->firstOperand);
  std::vector<NodeT> const operands(first, operands_.end());
  operands_.resize(frame->firstOperand);
  NodeT node = makeCall(frame->head->crefName(), operands);
  if (!node) {
    return failAt(frame->begin, operands.empty() ? READ_ERROR_MISSING_ARGUMENTS : READ_ERROR_ARGUMENT_COUNT);
  }
  operands_.push_back(std::move(node));
  return true;
}

JsonReaderC::NodeT JsonReaderC::makeCall(wstring const& head, std::vector<NodeT> const& operands) {
  if (startsWith(head, verbatim_prefix)) {
    return makeFunction(withoutEscapes(head.substr(verbatim_prefix.size())), operands);
  }
  JsonRowS const* row = findJsonReading(head);
  if (!row) return makeFunction(withoutEscapes(head), operands);
  for (; row; row = findJsonReading(head, row)) {
    if (NodeT node = makeJsonFunction(*row, operands)) return node;
  }
  return nullptr;
}

JsonReaderC::NodeT JsonReaderC::takeNode() { return operands_.size() == 1 ? operands_[0] : nullptr; }

}  // namespace zolt::mathjson::detail
