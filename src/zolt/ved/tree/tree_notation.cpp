#include "zolt/ved/tree/tree_notation.h"

#include <string_view>

#include "zolt/oss/quoted_text.h"
#include "zolt/ved/limits.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/operators/operator_list.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/tree_walk.h"

namespace zolt::math::ved {

namespace {

constexpr char16_t caret_mark = u'\u2038';
constexpr char16_t anchor_mark = u'\u2691';

class NotationWriterC {
 public:
  explicit NotationWriterC(SelectionS const& selection) : selection_(selection) {}

  wstring write(Node4C const& top) {
    walkTree(
        top, [this](Node4C const& node) { open(node); }, [this](Node4C const& node) { close(node); },
        [this](Node4C const& node, unsigned long& next) { return nextChild(node, next); });
    return std::move(out_);
  }

 private:
  Node4C const* nextChild(Node4C const& node, unsigned long& next) {
    while (next < node.numChildren()) {
      if (next > 0) out_ += node.getType() == NODE4_OPERATOR ? u" ; " : u", ";
      if (Node4C const* const child = node.child(next++)) return child;
      out_ += u"null";
    }
    return nullptr;
  }

  void open(Node4C const& node) {
    switch (node.getType()) {
      case NODE4_ROOT:
        break;
      case NODE4_LINE:
        out_ += u'[';
        break;
      case NODE4_TEXT:
        writeText(node);
        break;
      case NODE4_OPERATOR:
        out_ += node.crefText();
        out_ += u'<';
        break;
      case NODE4_POWER:
        out_ += u'P';
        break;
      case NODE4_OPEN:
        out_ += u'(';
        break;
      case NODE4_CLOSE:
        out_ += u')';
        break;
      case NODE4_AUTO_OPEN:
        out_ += u"AO";
        break;
      case NODE4_AUTO_CLOSE:
        out_ += u"AC";
        break;
    }
  }

  void close(Node4C const& node) {
    if (node.getType() == NODE4_LINE) out_ += u']';
    if (node.getType() == NODE4_OPERATOR) out_ += u'>';
  }

  void writeText(Node4C const& node) {
    out_ += u'"';
    wstring const& text = node.crefText();
    for (unsigned int i = 0;; ++i) {
      if (selection_.anchor == PlaceS{&node, i}) out_ += anchor_mark;
      if (selection_.caret == PlaceS{&node, i}) out_ += caret_mark;
      if (i >= text.size()) break;
      writeCharacter(text[i]);
    }
    out_ += u'"';
  }

  void writeCharacter(char16_t c) {
    if (c == caret_mark || c == anchor_mark) out_ += u'\\';
    oss::appendQuoted(out_, c);
  }

  SelectionS selection_;
  wstring out_;
};

class NotationReaderC {
 public:
  NotationReaderC(wstring const& text, OperatorListC const& operators) : text_(text), operators_(operators) {}

  bool read(TreeNotationS& tree) {
    tree_.root = std::make_unique<Node4C>(NODE4_ROOT, nullptr, wstring(), 0);
    skipBlanks();
    Node4C* node = beginRow(*tree_.root);
    if (!node) return false;
    while (node != tree_.root.get()) {
      skipBlanks();
      if (!(node->getType() == NODE4_OPERATOR ? readRow(node) : readItem(node))) return false;
    }
    skipBlanks();
    if (position_ != text_.size()) return false;
    tree = std::move(tree_);
    return true;
  }

  unsigned long getPosition() const { return position_; }

 private:
  bool take(char16_t c) {
    if (position_ >= text_.size() || text_[position_] != c) return false;
    ++position_;
    return true;
  }
  bool isNext(std::u16string_view word) const { return text_.compare(position_, word.size(), word) == 0; }
  bool take(std::u16string_view word) {
    if (!isNext(word)) return false;
    position_ += word.size();
    return true;
  }
  void skipBlanks() {
    while (take(u' ')) {
    }
  }

  static Node4C* begin(Node4C& parent, Node4TypeE type) {
    auto* node = new Node4C(type, nullptr, wstring(), 0);
    parent.insertChild(parent.numChildren(), node);
    return node;
  }

  /// Null when no row starts here or when it would be nested too deep.
  Node4C* beginRow(Node4C& parent) {
    if (rows_ == limits::max_nested_rows || !take(u'[')) return nullptr;
    ++rows_;
    return begin(parent, NODE4_LINE);
  }

  /// Continues in a new row of `parent`.
  bool enterRow(Node4C*& node, Node4C& parent) {
    Node4C* const row = beginRow(parent);
    if (row) node = row;
    return row != nullptr;
  }

  // Inside a row: the next item, or the row's end, which also ends the exponent around it.
  bool readItem(Node4C*& row) {
    if (take(u']')) {
      --rows_;
      row = row->getParent();
      if (row->getType() == NODE4_POWER) row = row->getParent();
      return true;
    }
    if (row->numChildren() > 0 && !take(u',')) return false;
    skipBlanks();
    if (take(u'"')) return readText(*begin(*row, NODE4_TEXT));
    if (take(u'(')) return begin(*row, NODE4_OPEN) != nullptr;
    if (take(u')')) return begin(*row, NODE4_CLOSE) != nullptr;
    if (take(u"AO")) return begin(*row, NODE4_AUTO_OPEN) != nullptr;
    if (take(u"AC")) return begin(*row, NODE4_AUTO_CLOSE) != nullptr;
    if (isNext(u"P[")) {
      ++position_;
      return enterRow(row, *begin(*row, NODE4_POWER));
    }
    if (isNext(u"[")) return enterRow(row, *row);
    std::size_t const end = text_.find(u'<', position_);
    if (end == wstring::npos) return false;
    PointerTC<OperatorBC> const op = operators_.lookup(text_.substr(position_, end - position_));
    if (!op) return false;
    position_ = end + 1;
    row = begin(*row, NODE4_OPERATOR);
    row->setOperator(op);
    row->refText() = op->getName();
    return true;
  }

  // Inside a construct: its next row or its end.
  bool readRow(Node4C*& construct) {
    if (take(u'>')) {
      construct = construct->getParent();
      return true;
    }
    if (construct->numChildren() > 0 && !take(u';')) return false;
    skipBlanks();
    return enterRow(construct, *construct);
  }

  bool readText(Node4C& node) {
    wstring& text = node.refText();
    while (position_ < text_.size()) {
      char16_t c = text_[position_++];
      if (c == u'"') return true;
      if (c == caret_mark) {
        tree_.selection.caret = endOf(&node);
      } else if (c == anchor_mark) {
        tree_.selection.anchor = endOf(&node);
      } else {
        if (c == u'\\' && !oss::readEscaped(text_, position_, c)) return false;
        text += c;
      }
    }
    return false;
  }

  wstring const& text_;
  OperatorListC const& operators_;
  TreeNotationS tree_;
  std::size_t position_ = 0;
  unsigned long rows_ = 0;  // the number of rows that have begun and not ended
};

}  // namespace

wstring writeTreeNotation(Node4C const& node, SelectionS const& selection) {
  return NotationWriterC(selection).write(node);
}

bool readTreeNotation(wstring const& text, OperatorListC const& operators, TreeNotationS& tree,
                      unsigned long& position) {
  NotationReaderC reader(text, operators);
  if (reader.read(tree)) return true;
  position = reader.getPosition();
  return false;
}

}  // namespace zolt::math::ved
