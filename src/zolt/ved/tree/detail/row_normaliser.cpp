#include "zolt/ved/tree/detail/row_normaliser.h"

#include <utility>

#include "zolt/ved/operators/operator.h"

namespace zolt::math::ved {

namespace {

bool isAutoBracket(Node4C const& node) {
  return node.getType() == NODE4_AUTO_OPEN || node.getType() == NODE4_AUTO_CLOSE;
}

}  // namespace

void RowNormaliserC::visit(Node4C& node) {
  bool const changed = node.stale_ & Node4C::STALE_CHECK;
  node.unmark(Node4C::STALE_VISIT);
  if (node.getType() != NODE4_LINE) return;
  if (!changed) {
    stepInside(node, caretNode_, caretPos_);
    stepInside(node, anchorNode_, anchorPos_);
    autoRows_.push_back(&node);  // or a row inside is one, which comes to the same
    return;
  }
  unmatched_ = supplied_ = missing_ = {};
  bool const long_ = node.index_ && normaliseStretches(node);
  if (!long_) {
    node.dropIndex();
    if (!isCanonical(node)) {
      normalise(node);
    } else if (unmatched_.opens + unmatched_.closes > 0) {
      stepInside(node, caretNode_, caretPos_);
      stepInside(node, anchorNode_, anchorPos_);
    }
  }
  if (unmatched_.opens + unmatched_.closes > 0) autoRows_.push_back(&node);
  if (!node.index_ && node.numChildren() >= RowIndexC::min_items) node.buildIndex();
  if (node.index_ && node.numChildren() < RowIndexC::min_items / 2) node.dropIndex();
}

void RowNormaliserC::leave(Node4C& node) {
  if (node.index_) node.index_->clear(Node4C::STALE_VISIT);
}

void RowNormaliserC::normalise(Node4C& row) {
  unmatched_ = {};
  collectItems(row);
  promoteAutoBrackets();
  dropAutoBracketsAndCount();
  rebuild(row);
}

/// Texts and other items alternate, texts at both ends; as many supplied brackets as the typed ones need, and
/// nothing but empty texts outside them. Counts what is unmatched.
bool RowNormaliserC::isCanonical(Node4C const& row) {
  unsigned long const count = row.numChildren();
  if (count % 2 == 0) return false;
  unmatched_ = {};
  unsigned long autoOpens = 0;
  unsigned long autoCloses = 0;
  bool outside = false;  // whether something stands outside a supplied opening bracket that would come now
  for (unsigned long i = 0; i < count; ++i) {
    Node4C const* item = row.child(i);
    if (!item || (item->getType() == NODE4_TEXT) != (i % 2 == 0)) return false;
    if (item->isEmptyText() && item->numChildren() == 0) continue;
    if (autoCloses > 0 && item->getType() != NODE4_AUTO_CLOSE) return false;
    switch (item->getType()) {
      case NODE4_TEXT:
        if (item->numChildren() > 0) return false;
        break;
      case NODE4_OPERATOR:
      case NODE4_POWER:
        break;
      case NODE4_OPEN:
        unmatched_.add(0, 1);
        break;
      case NODE4_CLOSE:
        unmatched_.add(1, 0);
        break;
      case NODE4_AUTO_OPEN:
        if (outside) return false;
        ++autoOpens;
        continue;
      case NODE4_AUTO_CLOSE:
        ++autoCloses;
        break;
      default:
        return false;
    }
    outside = true;
  }
  return autoOpens == unmatched_.closes && autoCloses == unmatched_.opens;
}

/// Takes all items out of the row: nested rows give up their items and vanish; the children of a text follow
/// it.
void RowNormaliserC::collectItems(Node4C& row) {
  items_.clear();
  pending_.clear();
  pushReversed(row);
  while (!pending_.empty()) {
    NodeT item = std::move(pending_.back());
    pending_.pop_back();
    Node4C& node = *item;
    node.stretch_ = nullptr;
    if (node.getType() == NODE4_LINE) {
      pushReversed(node);
      continue;
    }
    node.parent_ = &row;
    items_.push_back(std::move(item));
    if (node.getType() == NODE4_TEXT && node.numChildren() > 0) pushReversed(node);
  }
}

void RowNormaliserC::pushReversed(Node4C& node) {
  for (unsigned long i = node.numChildren(); i-- > 0;) {
    if (!node.child(i)) continue;
    pending_.emplace_back();
    pending_.back().reset(std::exchange(node.children_[i], nullptr));
  }
  node.children_.clear();
}

/// A supplied bracket becomes the user's own as soon as something stands outside it.
void RowNormaliserC::promoteAutoBrackets() {
  bool outside = false;
  for (NodeT const& item : items_) {
    if (item->getType() == NODE4_AUTO_OPEN) {
      if (outside) promote(*item);
    } else if (!item->isEmptyText()) {
      outside = true;
    }
  }
  outside = false;
  for (auto i = items_.rbegin(); i != items_.rend(); ++i) {
    if ((*i)->getType() == NODE4_AUTO_CLOSE) {
      if (outside) promote(**i);
    } else if (!(*i)->isEmptyText()) {
      outside = true;
    }
  }
}

void RowNormaliserC::promote(Node4C& bracket) {
  bracket.touch(Node4C::STALE_RECORD);
  bracket.type_ = bracket.type_ == NODE4_AUTO_OPEN ? NODE4_OPEN : NODE4_CLOSE;
}

void RowNormaliserC::dropAutoBracketsAndCount() {
  std::size_t kept = 0;
  for (NodeT& item : items_) {
    if (isAutoBracket(*item)) continue;
    if (item->getType() == NODE4_OPEN) unmatched_.add(0, 1);
    if (item->getType() == NODE4_CLOSE) unmatched_.add(1, 0);
    std::swap(items_[kept++], item);
  }
  items_.resize(kept);
  missing_ = {unmatched_.closes, unmatched_.opens};
}

void RowNormaliserC::rebuild(Node4C& row) {
  row_.clear();
  for (unsigned long i = 0; i < missing_.opens; ++i) append(make(NODE4_AUTO_OPEN));
  for (NodeT& item : items_) append(std::move(item));
  appendEnd();

  row.touch(Node4C::STALE_LAYOUT | Node4C::STALE_RECORD);
  row.children_.resize(row_.size());
  row.children_.shrink();
  for (std::size_t i = 0; i < row_.size(); ++i) row.adopt(i, row_[i].release());
}

void RowNormaliserC::appendEnd() {
  for (unsigned long i = 0; i < missing_.closes; ++i) append(make(NODE4_AUTO_CLOSE));
  if (row_.empty() || row_.back()->getType() != NODE4_TEXT) row_.push_back(make(NODE4_TEXT));
}

RowNormaliserC::NodeT RowNormaliserC::make(Node4TypeE type) {
  return std::make_unique<Node4C>(type, nullptr, wstring(), 0);
}

void RowNormaliserC::append(NodeT item) {
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

void RowNormaliserC::merge(Node4C& text, Node4C const& next) {
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
  text.stale_ |= Node4C::STALE_LAYOUT | Node4C::STALE_RECORD;
}

}  // namespace zolt::math::ved
