#include <memory>
#include <utility>
#include <vector>

#include "zolt/ved/operators/operator.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved {

namespace {

using NodeT = std::unique_ptr<Node4C>;

bool isAutoBracket(Node4C const& node) {
  return node.getType() == NODE4_AUTO_OPEN || node.getType() == NODE4_AUTO_CLOSE;
}

bool isEmptyText(Node4C const& node) { return node.getType() == NODE4_TEXT && node.crefText().empty(); }

}  // namespace

/// Brings one row into canonical form in a single pass over its items, collecting them in a new order instead
/// of moving them about in the row, so that the cost is linear whatever has to be repaired.
class RowNormaliserC {
 public:
  RowNormaliserC(Node4C*& caretNode, unsigned& caretPos, Node4C*& anchorNode, unsigned& anchorPos)
      : caretNode_(caretNode), caretPos_(caretPos), anchorNode_(anchorNode), anchorPos_(anchorPos) {}

  /// Takes the mark off the node; a row is normalised.
  void visit(Node4C& node) {
    node.stale_ &= static_cast<std::uint8_t>(~Node4C::STALE_CHECK);
    if (node.getType() == NODE4_LINE && !isCanonical(node)) normalise(node);
  }

  /// Supplied brackets are made anew on every pass, so their rows are never done with.
  void markRowsWithAutoBrackets() {
    for (Node4C* row : autoRows_) row->touch(Node4C::STALE_CHECK);
  }

 private:
  void normalise(Node4C& row) {
    collectItems(row);
    promoteAutoBrackets();
    dropAutoBracketsAndCount();
    rebuild(row);
    if (unmatchedOpen_ + unmatchedClose_ > 0) autoRows_.push_back(&row);
  }

  /// Texts and other items alternate, texts at both ends, typed brackets balanced, none supplied. (Supplied
  /// brackets are made anew on every pass, so a row that has some is never left alone.)
  static bool isCanonical(Node4C const& row) {
    unsigned long const count = row.numChildren();
    if (count % 2 == 0) return false;
    long depth = 0;
    for (unsigned long i = 0; i < count; ++i) {
      Node4C const* item = row.child(i);
      if (!item || (item->getType() == NODE4_TEXT) != (i % 2 == 0)) return false;
      switch (item->getType()) {
        case NODE4_TEXT:
          if (item->numChildren() > 0) return false;
          break;
        case NODE4_OPERATOR:
        case NODE4_POWER:
          break;
        case NODE4_OPEN:
          ++depth;
          break;
        case NODE4_CLOSE:
          if (--depth < 0) return false;
          break;
        default:
          return false;
      }
    }
    return depth == 0;
  }

  /// Takes all items out of the row: nested rows give up their items and vanish; the children of a text
  /// follow it.
  void collectItems(Node4C& row) {
    items_.clear();
    pending_.clear();
    pushReversed(row);
    while (!pending_.empty()) {
      NodeT item = std::move(pending_.back());
      pending_.pop_back();
      Node4C& node = *item;
      if (node.getType() == NODE4_LINE) {
        pushReversed(node);
        continue;
      }
      node.parent_ = &row;
      items_.push_back(std::move(item));
      if (node.getType() == NODE4_TEXT && node.numChildren() > 0) pushReversed(node);
    }
  }

  void pushReversed(Node4C& node) {
    for (unsigned long i = node.numChildren(); i-- > 0;) {
      if (!node.child(i)) continue;
      pending_.emplace_back();
      pending_.back().reset(std::exchange(node.children_[i], nullptr));
    }
    node.children_.clear();
  }

  /// A supplied bracket becomes the user's own as soon as something stands outside it.
  void promoteAutoBrackets() {
    bool outside = false;
    for (NodeT const& item : items_) {
      if (item->getType() == NODE4_AUTO_OPEN) {
        if (outside) item->type_ = NODE4_OPEN;
      } else if (!isEmptyText(*item)) {
        outside = true;
      }
    }
    outside = false;
    for (auto i = items_.rbegin(); i != items_.rend(); ++i) {
      if ((*i)->getType() == NODE4_AUTO_CLOSE) {
        if (outside) (*i)->type_ = NODE4_CLOSE;
      } else if (!isEmptyText(**i)) {
        outside = true;
      }
    }
  }

  void dropAutoBracketsAndCount() {
    unmatchedOpen_ = unmatchedClose_ = 0;
    std::size_t kept = 0;
    for (NodeT& item : items_) {
      if (isAutoBracket(*item)) continue;
      if (item->getType() == NODE4_OPEN) ++unmatchedOpen_;
      if (item->getType() == NODE4_CLOSE) {
        if (unmatchedOpen_ > 0) {
          --unmatchedOpen_;
        } else {
          ++unmatchedClose_;
        }
      }
      std::swap(items_[kept++], item);
    }
    items_.resize(kept);
  }

  void rebuild(Node4C& row) {
    row_.clear();
    for (unsigned long i = 0; i < unmatchedClose_; ++i) append(make(NODE4_AUTO_OPEN));
    for (NodeT& item : items_) append(std::move(item));
    for (unsigned long i = 0; i < unmatchedOpen_; ++i) append(make(NODE4_AUTO_CLOSE));
    if (row_.empty() || row_.back()->getType() != NODE4_TEXT) row_.push_back(make(NODE4_TEXT));

    row.touch(Node4C::STALE_LAYOUT);
    row.children_.resize(row_.size());
    row.children_.shrink();
    for (std::size_t i = 0; i < row_.size(); ++i) row.adopt(i, row_[i].release());
  }

  void append(NodeT item) {
    bool const afterText = !row_.empty() && row_.back()->getType() == NODE4_TEXT;
    if (item->getType() != NODE4_TEXT) {
      if (!afterText) row_.push_back(make(NODE4_TEXT));
      row_.push_back(std::move(item));
    } else if (!afterText) {
      row_.push_back(std::move(item));
    } else {
      merge(*row_.back(), *item);
    }
  }

  void merge(Node4C& text, Node4C const& next) {
    auto const offset = static_cast<unsigned>(text.sizeText());
    if (caretNode_ == &next) {
      caretNode_ = &text;
      caretPos_ += offset;
    }
    if (anchorNode_ == &next) {
      anchorNode_ = &text;
      anchorPos_ += offset;
    }
    text.text_ += next.text_;
    text.stale_ |= Node4C::STALE_LAYOUT;
  }

  static NodeT make(Node4TypeE type) { return std::make_unique<Node4C>(type, nullptr, wstring(), 0); }

  Node4C*& caretNode_;
  unsigned& caretPos_;
  Node4C*& anchorNode_;
  unsigned& anchorPos_;
  // A node is in one of these or in its row. Where memory runs out they go, and the row is left with less.
  std::vector<NodeT> items_;
  std::vector<NodeT> pending_;
  std::vector<NodeT> row_;
  std::vector<Node4C*> autoRows_;
  unsigned long unmatchedOpen_ = 0;
  unsigned long unmatchedClose_ = 0;
};

void Node4C::checkTree(Node4C*& caretNode, unsigned& caretPos, Node4C*& anchorNode, unsigned& anchorPos) {
  if (!(stale_ & STALE_CHECK)) return;
  RowNormaliserC normaliser(caretNode, caretPos, anchorNode, anchorPos);
  Node4C* node = this;
  unsigned long next = 0;  // the child of `node` to visit next
  normaliser.visit(*node);
  for (;;) {
    if (next < node->numChildren()) {
      Node4C* const child = node->child(next++);
      if (!child || !(child->stale_ & STALE_CHECK)) continue;
      normaliser.visit(*child);
      if (child->numChildren() == 0) continue;
      node = child;
      next = 0;
    } else {
      if (node == this) break;
      next = node->findChildNumber() + 1;
      node = node->parent_;
    }
  }
  normaliser.markRowsWithAutoBrackets();
}

Node4C* Node4C::inLine() {
  if (type_ == NODE4_LINE) return this;
  auto* row = new Node4C(NODE4_LINE, nullptr, wstring(), 1);
  row->setChild(0, this);
  return row;
}

bool Node4C::isPlaceholder() const {
  if (!text_.empty() || !parent_) return false;
  if (parent_->numChildren() == 1) return true;
  Node4C const* right = goRight();
  if (!right || right->type_ != NODE4_POWER) return false;
  Node4C const* left = goLeft();
  if (!left) return true;
  return left->type_ != NODE4_OPERATOR && left->type_ != NODE4_CLOSE && left->type_ != NODE4_AUTO_CLOSE;
}

}  // namespace zolt::math::ved
