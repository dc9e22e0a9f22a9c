#include "zolt/ved/tree/node4.h"

#include <algorithm>
#include <memory>
#include <vector>

#include "zolt/ved/operators/operator.h"
#include "zolt/ved/tree/detail/node_pool.h"
#include "zolt/ved/tree/tree_walk.h"

namespace zolt::math::ved {

Node4C::Node4C() = default;

Node4C::Node4C(Node4TypeE type, PointerTC<OperatorBC> const& op, wstring const& text,
               unsigned long nbChildren)
    : Node4C(type, nbChildren) {
  op_ = op;
  text_ = op ? op->getName() : text;
}

Node4C::Node4C(Node4TypeE type, unsigned long nbChildren) : type_(static_cast<std::int16_t>(type)) {
  if (nbChildren > 0) children_.resize(nbChildren);
}

void* Node4C::operator new(std::size_t size) {
  return size == sizeof(Node4C) ? NodePoolC::allocate() : ::operator new(size);
}

void Node4C::operator delete(void* node, std::size_t size) {
  if (size == sizeof(Node4C)) {
    NodePoolC::release(node);
  } else {
    ::operator delete(node);
  }
}

// Neither recurses nor allocates: the nodes that are still to be destroyed form a list, linked by their
// parent pointers.
Node4C::~Node4C() {
  Node4C* dying = nullptr;
  auto const takeChildren = [&dying](Node4C& node) {
    for (std::size_t i = node.children_.size(); i-- > 0;) {
      Node4C* const child = node.children_[i];
      if (!child) continue;
      child->parent_ = dying;
      dying = child;
    }
    node.children_.clear();
  };
  takeChildren(*this);
  while (dying) {
    std::unique_ptr<Node4C> const node(dying);
    dying = node->parent_;
    takeChildren(*node);
  }
}

Node4C* Node4C::cloneNode() const {
  auto node = std::make_unique<Node4C>(getType(), op_, text_, children_.size());
  node->text_ = text_;
  return node.release();
}

Node4C* Node4C::clone() const {
  std::unique_ptr<Node4C> copy;
  Node4C* last = nullptr;  // the copy of the node that the walk is in
  auto const begin = [&](Node4C const& node) {
    Node4C* const made = node.cloneNode();
    if (last) {
      last->setChild(node.findChildNumber(), made);
    } else {
      copy.reset(made);
    }
    last = made;
  };
  walkTree(*this, begin, [&](Node4C const&) { last = last->parent_; });
  return copy.release();
}

/// The children of this node will be others. The rows of a table are other stretches then.
void Node4C::noteNewShape() {
  touch(STALE_ALL);
  if (type_ == NODE4_OPERATOR) dropIndex();
}

/// The kind of this node has changed, which may also change the meaning of its neighbours.
void Node4C::noteNewKind() {
  touch(STALE_ALL);
  if (state_.stretch) parent_->state_.index->noteChanged(findChildNumber(), STALE_ALL);
}

void Node4C::setType(Node4TypeE type) {
  noteNewKind();
  type_ = static_cast<std::int16_t>(type);
  if (type != NODE4_OPERATOR) op_.reset();
}

void Node4C::setText(wstring const& text) {
  noteNewKind();
  text_ = text;
  type_ = NODE4_TEXT;
}

PointerTC<OperatorBC> Node4C::getOperator() const { return op_; }

void Node4C::setOperator(PointerTC<OperatorBC> const& op) {
  noteNewKind();
  dropIndex();
  type_ = NODE4_OPERATOR;
  op_ = op;
}

int Node4C::getPrecedence() const { return op_ ? op_->getPrecedence() : 0; }

void Node4C::adopt(unsigned long i, Node4C* node) {
  children_[i] = node;
  if (!node) return;
  node->parent_ = this;
  if (node->state_.overflows) noteOverflow();
  node->state_.stretch = state_.index ? &state_.index->at(i) : nullptr;
  node->state_.slotHint = static_cast<std::uint32_t>(state_.index ? i - node->state_.stretch->first : i);
}

void Node4C::setChild(unsigned long i, Node4C* node) {
  touch(STALE_ALL);
  if (state_.index) state_.index->noteChanged(i, STALE_ALL);
  adopt(i, node);
}

void Node4C::replaceChild(unsigned long i, Node4C* node) {
  Node4C* const old = children_[i];
  if (old == node) return;
  setChild(i, node);
  delete old;
}

/// Whether these children are whole rows of a table, which come or go with their stretches.
bool Node4C::keepsIndex(unsigned long i, unsigned long count) const {
  unsigned long const columns = state_.index && type_ == NODE4_OPERATOR ? op_->getColumns() : 0;
  return columns > 0 && i % columns == 0 && count % columns == 0;
}

void Node4C::insertChild(unsigned long i, Node4C* node) {
  std::unique_ptr<Node4C> held(node);
  noteNewShape();
  children_.insertSlots(i, 1);
  if (state_.index) state_.index->noteInserted(i, 1, STALE_ALL);
  adopt(i, held.release());
}

void Node4C::removeChild(unsigned long i) {
  noteNewShape();
  children_[i]->parent_ = nullptr;
  children_[i]->state_.stretch = nullptr;
  if (state_.index) state_.index->noteRemoved(i, 1, STALE_ALL);
  children_.erase(i);
}

void Node4C::deleteChild(unsigned long i) { deleteChildren(i, 1); }

void Node4C::deleteChildren(unsigned long i, unsigned long count) {
  if (keepsIndex(i, count) && 2 * (children_.size() - count) >= RowIndexC::leastItems()) {
    unsigned long const columns = op_->getColumns();
    touch(STALE_ALL);
    state_.index->noteRowsRemoved(*this, i / columns, count / columns);
  } else {
    noteNewShape();
    if (state_.index) state_.index->noteRemoved(i, count, STALE_ALL);
  }
  for (unsigned long k = i; k < i + count; ++k) delete children_[k];
  children_.erase(i, count);
}

Node4C* Node4C::cutChild(unsigned long i) {
  Node4C* const node = children_[i];
  touch(STALE_ALL);
  if (state_.index) state_.index->noteChanged(i, STALE_ALL);
  if (node) {
    node->state_.stale |= STALE_ALL;
    node->state_.stretch = nullptr;
  }
  children_[i] = nullptr;
  return node;
}

void Node4C::spliceChildren(unsigned long i, Node4C* row) {
  std::unique_ptr<Node4C> const held(row);
  unsigned long const count = row->numChildren();
  bool const areRows = keepsIndex(i, count);
  if (areRows) {
    touch(STALE_ALL);
  } else {
    noteNewShape();
  }
  children_.insertSlots(i, count);
  if (areRows) {
    state_.index->noteRowsInserted(i / op_->getColumns(), count / op_->getColumns());
  } else if (state_.index) {
    state_.index->noteInserted(i, count, STALE_ALL);
  }
  for (unsigned long k = 0; k < count; ++k) adopt(i + k, row->children_[k]);
  row->children_.clear();
}

void Node4C::insertColumns(PointerTC<OperatorBC> const& op, unsigned long column,
                           std::vector<std::unique_ptr<Node4C>> cells) {
  unsigned long const columns = op_->getColumns();
  noteNewKind();
  op_ = op;
  putColumns(columns, column, std::move(cells));
}

void Node4C::deleteColumns(PointerTC<OperatorBC> const& op, unsigned long column, unsigned long count) {
  unsigned long const columns = op_->getColumns();
  noteNewKind();
  op_ = op;
  takeColumns(columns, column, count);
}

/// Inserts cells, given row by row, into the rows of `columns` cells each.
void Node4C::putColumns(unsigned long columns, unsigned long column,
                        std::vector<std::unique_ptr<Node4C>> cells) {
  unsigned long const count = cells.size() / (children_.size() / columns);
  children_.insertInRuns(columns, column, count);
  if (state_.index) state_.index->noteColumnsInserted(column, count);
  for (unsigned long i = 0; i < cells.size(); ++i) {
    adopt(i / count * (columns + count) + column + i % count, cells[i].release());
  }
}

void Node4C::takeColumns(unsigned long columns, unsigned long column, unsigned long count) {
  children_.straighten();  // nothing may fail between the end of a cell and that of its slot
  if (2 * (children_.size() / columns * (columns - count)) < RowIndexC::leastItems()) dropIndex();
  if (state_.index) state_.index->noteColumnsRemoved(*this, column, count);
  for (unsigned long i = column; i < children_.size(); i += columns) {
    for (unsigned long k = i; k < i + count; ++k) delete children_[k];
  }
  children_.eraseInRuns(columns, column, count);
}

void Node4C::rotateRows(unsigned long first, unsigned long middle, unsigned long last) {
  unsigned long const columns = op_->getColumns();
  touch(STALE_ALL);
  rotateCells(first * columns, middle * columns, last * columns);
  if (state_.index) state_.index->noteRowsRotated(first, middle, last);
}

void Node4C::rotateColumns(unsigned long first, unsigned long middle, unsigned long last) {
  unsigned long const columns = op_->getColumns();
  touch(STALE_ALL);
  for (unsigned long row = 0; row < children_.size(); row += columns) {
    rotateCells(row + first, row + middle, row + last);
  }
  if (state_.index) state_.index->noteColumnsRotated(first, middle, last);
}

void Node4C::rotateCells(unsigned long first, unsigned long middle, unsigned long last) {
  std::vector<Node4C*> moved;
  moved.reserve(last - first);
  for (unsigned long i = middle; i < last; ++i) moved.push_back(children_[i]);
  for (unsigned long i = first; i < middle; ++i) moved.push_back(children_[i]);
  for (Node4C* const cell : moved) children_[first++] = cell;
}

// Siblings move when a row is edited, so the last known slot of a node is only a hint. It is exact in an
// unchanged row and near after a few edits. When it is far off, the row was built or changed as a whole; then
// the hints of all siblings are set at once, since the next sibling would need an equally long search.
//
// In a long row the hint is the number within the stretch, which moves as a whole.
unsigned long Node4C::findChildNumber() const {
  constexpr std::size_t farthest = 8;
  if (!parent_) return 0;
  ChildArrayC const& siblings = parent_->children_;
  std::size_t const base = state_.stretch ? state_.stretch->first : 0;
  std::size_t const count = state_.stretch ? state_.stretch->count : siblings.size();
  auto const isThere = [&](std::size_t i) { return i < count && siblings[base + i] == this; };
  std::size_t const hint = state_.slotHint;
  if (isThere(hint)) return base + hint;
  for (std::size_t i = hint - std::min(hint, farthest); i <= hint + farthest; ++i) {
    if (!isThere(i)) continue;
    state_.slotHint = static_cast<std::uint32_t>(i);
    return base + i;
  }
  for (std::size_t i = 0; i < count; ++i) {
    if (siblings[base + i]) siblings[base + i]->state_.slotHint = static_cast<std::uint32_t>(i);
  }
  return isThere(state_.slotHint) ? base + state_.slotHint : base;
}

Node4C* Node4C::goLeft() const {
  if (!parent_) return nullptr;
  unsigned long const i = findChildNumber();
  return i > 0 ? parent_->children_[i - 1] : nullptr;
}

Node4C* Node4C::goRight() const {
  if (!parent_) return nullptr;
  unsigned long const i = findChildNumber() + 1;
  return i < parent_->numChildren() ? parent_->children_[i] : nullptr;
}

Node4C* Node4C::goLeftLeaf() const {
  Node4C const* node = this;
  Node4C* left = nullptr;
  while (node && !(left = node->goLeft())) node = node->parent_;
  while (left && left->numChildren() > 0) left = left->child(left->numChildren() - 1);
  return left;
}

Node4C* Node4C::goRightLeaf() const {
  Node4C const* node = this;
  Node4C* right = nullptr;
  while (node && !(right = node->goRight())) node = node->parent_;
  while (right && right->numChildren() > 0) right = right->child(0);
  return right;
}

PointS Node4C::getAbsolutePosition() const {
  PointS position;
  for (Node4C const* node = this; node; node = node->parent_) {
    position.x += node->getDX();
    position.y += node->getDY();
  }
  return position;
}

// ---- Marks and stretches --------------------------------------------------------------------------------

void Node4C::touch(std::uint8_t stale) {
  for (Node4C* node = this; node && (node->state_.stale & stale) != stale; node = node->parent_) {
    node->state_.stale |= stale;
    if (node->state_.stretch) node->state_.stretch->stale |= stale;
  }
}

void Node4C::dropIndex() {
  if (!state_.index) return;
  for (Node4C* item : children_) {
    if (!item || !item->state_.stretch) continue;
    NodeStateS& state = item->state_;
    item->dx_ += static_cast<std::int32_t>(item->getShift());
    state.slotHint += state.stretch->first;
    item->dy_ += state.stretch->dy;
    state.stretch = nullptr;
  }
  state_.index.reset();
}

/// Makes each row of a large table a stretch.
void Node4C::indexTable() {
  std::size_t const columns = op_ ? op_->getColumns() : 0;
  if (columns == 0 || state_.index || children_.size() < RowIndexC::leastItems()) return;
  state_.index = std::make_unique<RowIndexC>(children_.size());
  state_.index->replace(
      0, 1, std::vector<std::uint32_t>(children_.size() / columns, static_cast<std::uint32_t>(columns)));
  for (std::size_t i = 0; i < children_.size(); ++i) {
    NodeStateS& state = children_[i]->state_;
    state.stretch = &(*state_.index)[i / columns];
    state.slotHint = static_cast<std::uint32_t>(i % columns);
  }
}

Node4C* Node4C::findMarked(unsigned long& next, StaleE mark) const {
  unsigned long const count = children_.size();
  std::size_t stretch = state_.index && next < count ? state_.index->find(next) : 0;
  while (next < count) {
    unsigned long last = count;
    unsigned long end = count;
    if (state_.index) {
      stretch = state_.index->findMarkedStretch(stretch, mark);
      if (stretch == state_.index->size()) break;
      auto const [first, after] = state_.index->findMarkedCells(stretch, mark);
      RowStretchS const& current = (*state_.index)[stretch++];
      next = std::max<unsigned long>(next, current.first + first);
      last = current.first + after;
      end = current.first + current.count;
    }
    while (next < last) {
      Node4C* const child = children_[next++];
      if (child && (child->state_.stale & mark)) return child;
    }
    next = end;
  }
  next = count;
  return nullptr;
}

/// The number of the column that the cell of a large table is in.
std::uint32_t Node4C::findColumn() const {
  return static_cast<std::uint32_t>(findChildNumber() - state_.stretch->first);
}

}  // namespace zolt::math::ved
