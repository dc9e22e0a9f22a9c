#include "zolt/ved/tree/tree_notation.h"

#include <string_view>
#include <utility>

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
constexpr std::pair<Node4TypeE, std::u16string_view> bracket_words[] = {
    {NODE4_OPEN, u"("}, {NODE4_CLOSE, u")"}, {NODE4_AUTO_OPEN, u"AO"}, {NODE4_AUTO_CLOSE, u"AC"}};

/// A node that could not be read from a stream has no operator.
wstring nameOf(Node4C const& construct) {
  OperatorBC const* const op = construct.crefOperator();
  return op ? op->getStoredName() : construct.crefText();
}

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
    if (node.getType() == NODE4_LINE) out_ += u'[';
    if (node.getType() == NODE4_TEXT) writeText(node);
    if (node.getType() == NODE4_OPERATOR) out_ += nameOf(node) + u'<';
    if (node.getType() == NODE4_POWER) out_ += u'P';
    for (auto const& [type, word] : bracket_words) {
      if (node.getType() == type) out_ += word;
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
    tree_.root = std::make_unique<Node4C>(NODE4_ROOT);
    node_ = tree_.root.get();
    skipBlanks();
    if (!beginRow()) return false;
    while (node_ != tree_.root.get()) {
      skipBlanks();
      if (!(node_->getType() == NODE4_OPERATOR ? readRow() : readItem())) return false;
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
  void skipBlanks() {
    while (take(u' ')) {
    }
  }

  void begin(Node4TypeE type) {
    auto* const node = new Node4C(type);
    node_->insertChild(node_->numChildren(), node);
    node_ = node;
  }
  bool end() {
    node_ = node_->getParent();
    return true;
  }

  /// False when no row starts here or when it would be nested too deep.
  bool beginRow() {
    if (rows_ == limits::max_nested_rows || !take(u'[')) return false;
    ++rows_;
    begin(NODE4_LINE);
    return true;
  }

  // Inside a row: the next item, or the row's end, which also ends the exponent around it.
  bool readItem() {
    if (take(u']')) {
      --rows_;
      end();
      return node_->getType() != NODE4_POWER || end();
    }
    if (node_->numChildren() > 0 && !take(u',')) return false;
    skipBlanks();
    if (isNext(u"[")) return beginRow();
    if (isNext(u"P[")) {
      ++position_;
      begin(NODE4_POWER);
      return beginRow();
    }
    if (take(u'"')) {
      begin(NODE4_TEXT);
      return readText() && end();
    }
    for (auto const& [type, word] : bracket_words) {
      if (!isNext(word)) continue;
      position_ += word.size();
      begin(type);
      return end();
    }
    std::size_t const nameEnd = text_.find(u'<', position_);
    if (nameEnd == wstring::npos) return false;
    PointerTC<OperatorBC> const op = operators_.lookupStored(text_.substr(position_, nameEnd - position_));
    if (!op) return false;
    position_ = nameEnd + 1;
    begin(NODE4_OPERATOR);
    node_->setOperator(op);
    node_->refText() = op->getName();
    return true;
  }

  // Inside a construct: its next row or its end.
  bool readRow() {
    if (take(u'>')) return end();
    if (node_->numChildren() > 0 && !take(u';')) return false;
    skipBlanks();
    return beginRow();
  }

  bool readText() {
    wstring& text = node_->refText();
    while (position_ < text_.size()) {
      char16_t c = text_[position_++];
      if (c == u'"') return true;
      if (c == caret_mark) {
        tree_.selection.caret = endOf(node_);
      } else if (c == anchor_mark) {
        tree_.selection.anchor = endOf(node_);
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
  Node4C* node_ = nullptr;  // the row or construct that is being read
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
