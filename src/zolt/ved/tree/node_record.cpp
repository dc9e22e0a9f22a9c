#include "zolt/ved/tree/node_record.h"

#include <algorithm>
#include <numeric>
#include <unordered_map>

#include "zolt/ved/operators/operator.h"
#include "zolt/ved/tree/node4_type.h"

namespace zolt::math::ved {

NodeRecordPointerC::NodeRecordPointerC(NodeRecordC const* record) noexcept : record_(record) {
  if (record_ && !record_->constant_) ++record_->holders_;
}

void NodeRecordPointerC::release() noexcept {
  NodeRecordC const* pending = nullptr;
  auto const letGo = [&pending](NodeRecordC const* record) {
    if (record->constant_ || --record->holders_ > 0) return;
    record->nextReleased_ = pending;
    pending = record;
  };
  letGo(std::exchange(record_, nullptr));
  while (pending) {
    auto* const record = const_cast<NodeRecordC*>(pending);
    pending = record->nextReleased_;
    for (NodeRecordPointerC& child : record->children_) letGo(std::exchange(child.record_, nullptr));
    delete record;
  }
}

NodeRecordC::NodeRecordC(std::uint8_t kind, PointerTC<OperatorBC> const& op, wstring text, ChildrenT children)
    : kind_(kind), op_(op), text_(std::move(text)), children_(std::move(children)) {
  size_ = getOwnSize();
  for (NodeRecordPointerC const& child : children_) {
    size_ += child->size_;
    items_ += static_cast<std::uint32_t>(child->countItems());
  }
}

std::size_t NodeRecordC::getOwnSize() const {
  static std::size_t const inside = wstring().capacity();
  if (constant_) return 0;
  std::size_t const text = text_.capacity() > inside ? text_.capacity() * sizeof(char16_t) : 0;
  return sizeof(NodeRecordC) + text + children_.capacity() * sizeof(NodeRecordPointerC);
}

NodeRecordC::NodeRecordC(std::uint8_t kind) : kind_(kind), constant_(true) {}

NodeRecordC::~NodeRecordC() = default;

// Brackets and empty texts, which every row has many of, have nothing of their own: one record of each kind
// is enough for all trees.
NodeRecordC const* NodeRecordC::findConstant(std::uint8_t kind) {
  static NodeRecordC const constants[] = {NodeRecordC(NODE4_TEXT), NodeRecordC(NODE4_OPEN),
                                          NodeRecordC(NODE4_CLOSE), NodeRecordC(NODE4_AUTO_OPEN),
                                          NodeRecordC(NODE4_AUTO_CLOSE)};
  for (NodeRecordC const& record : constants) {
    if (record.kind_ == kind) return &record;
  }
  return nullptr;
}

NodeRecordPointerC NodeRecordC::make(std::uint8_t kind, PointerTC<OperatorBC> const& op, wstring text,
                                     ChildrenT children) {
  NodeRecordC const* const constant = !op && text.empty() && children.empty() ? findConstant(kind) : nullptr;
  return NodeRecordPointerC(constant ? constant
                                     : new NodeRecordC(kind, op, std::move(text), std::move(children)));
}

// A table may become one of another number of columns.
bool NodeRecordC::isAlike(NodeRecordC const& a, NodeRecordC const& b) {
  if (a.kind_ != b.kind_ || a.op_ == b.op_) return a.kind_ == b.kind_;
  auto const columns = [](NodeRecordC const& record) { return record.op_ ? record.op_->getColumns() : 0; };
  return columns(a) > 0 && columns(b) > 0 && a.op_->getName() == b.op_->getName();
}

wstring NodeRecordC::getText() const {
  if (children_.empty()) return text_;
  wstring text;
  for (NodeRecordPointerC const& part : children_) text += part->text_;
  return text;
}

bool NodeRecordC::hasTextOf(NodeRecordC const& other) const {
  auto part = children_.begin();
  auto otherPart = other.children_.begin();
  auto const isPartShared = [&] {
    return part != children_.end() && otherPart != other.children_.end() && part->get() == otherPart->get();
  };
  for (; isPartShared(); ++part) ++otherPart;
  if (part == children_.end() && otherPart == other.children_.end()) return text_ == other.text_;
  // Parts are cut anew where a text was changed, seldom into the same text.
  std::size_t const size = children_.empty() ? text_.size() : 0;
  std::size_t const otherSize = other.children_.empty() ? other.text_.size() : 0;
  auto const length = [](std::size_t sum, NodeRecordPointerC const& p) { return sum + p->text_.size(); };
  return std::accumulate(part, children_.end(), size, length) ==
             std::accumulate(otherPart, other.children_.end(), otherSize, length) &&
         getText() == other.getText();
}

namespace {

NodeRecordC const* toPointer(NodeRecordC const* record) { return record; }
NodeRecordC const* toPointer(NodeRecordPointerC const& record) { return record.get(); }

/// Appends where two lists of records differ within a gap, in order. The places in `gaps` are indices in the
/// lists.
template <class ListT>
void findGaps(ListT const& list, ListT const& other, RecordGapS const& within,
              std::vector<RecordGapS>& gaps) {
  auto const isSame = [&](std::size_t i, std::size_t j) { return toPointer(list[i]) == toPointer(other[j]); };
  RecordGapS gap = within;
  auto const skip = [&](std::size_t to) {
    while (gap.otherFirst < to) gap.place += toPointer(other[gap.otherFirst++])->countItems();
  };
  while (gap.first < gap.end && gap.otherFirst < gap.otherEnd && isSame(gap.first, gap.otherFirst)) {
    ++gap.first;
    skip(gap.otherFirst + 1);
  }
  while (gap.first < gap.end && gap.otherFirst < gap.otherEnd && isSame(gap.end - 1, gap.otherEnd - 1)) {
    --gap.end;
    --gap.otherEnd;
  }
  if (gap.first == gap.end && gap.otherFirst == gap.otherEnd) return;
  if (gap.end - gap.first <= 1 && gap.otherEnd - gap.otherFirst <= 1) {
    gaps.push_back(gap);
    return;
  }

  std::size_t const last = gap.end;
  std::size_t const otherLast = gap.otherEnd;
  std::unordered_map<NodeRecordC const*, std::size_t> places;
  if (gap.first < last) {
    for (std::size_t j = gap.otherFirst; j < otherLast; ++j) places.emplace(toPointer(other[j]), j);
  }
  auto const close = [&](std::size_t i, std::size_t j) {
    gap.end = i;
    gap.otherEnd = j;
    if (gap.first < gap.end || gap.otherFirst < gap.otherEnd) gaps.push_back(gap);
    gap.first = i + 1;
    skip(std::min(j + 1, otherLast));
  };
  for (std::size_t i = gap.first; i < last; ++i) {
    auto const found = places.find(toPointer(list[i]));
    if (found != places.end() && found->second >= gap.otherFirst) close(i, found->second);
  }
  close(last, otherLast);
}

/// Finds what differs within these gaps of two lists. False when there are stretches or blocks in it, which
/// are opened then: what differs in them is still to be found.
template <class ListT, class GapsT>
bool refine(ListT const& list, ListT const& other, GapsT const& wholes, NodeDifferenceS& found) {
  found.items.clear();
  found.otherItems.clear();
  found.gaps.clear();
  for (RecordGapS const& whole : wholes) findGaps(list, other, whole, found.gaps);
  bool done = true;
  auto const open = [&done](NodeRecordC const& child, std::vector<NodeRecordC const*>& items,
                            std::size_t& size) {
    if (!child.holdsItems()) {
      items.push_back(&child);
      return;
    }
    done = false;
    size += child.getOwnSize();
    for (NodeRecordPointerC const& inner : child.crefChildren()) items.push_back(inner.get());
  };
  for (RecordGapS& gap : found.gaps) {
    RecordGapS const whole = gap;
    gap.first = found.items.size();
    for (std::size_t i = whole.first; i < whole.end; ++i) open(*toPointer(list[i]), found.items, found.size);
    gap.end = found.items.size();
    gap.otherFirst = found.otherItems.size();
    for (std::size_t j = whole.otherFirst; j < whole.otherEnd; ++j) {
      open(*toPointer(other[j]), found.otherItems, found.otherSize);
    }
    gap.otherEnd = found.otherItems.size();
  }
  return done;
}

}  // namespace

void NodeRecordC::appendItems(std::vector<NodeRecordC const*>& items) const {
  for (NodeRecordPointerC const& child : children_) {
    if (child->holdsItems()) {
      child->appendItems(items);
    } else {
      items.push_back(child.get());
    }
  }
}

void compareNodes(NodeRecordC const& one, NodeRecordC const& other, NodeDifferenceS& found) {
  found.size = one.getOwnSize();
  found.otherSize = other.getOwnSize();
  NodeRecordC::ChildrenT const& items = one.crefChildren();
  NodeRecordC::ChildrenT const& otherItems = other.crefChildren();
  RecordGapS const whole[] = {{0, 0, items.size(), 0, otherItems.size()}};
  // An item is only looked at where stretches differ, and there where their blocks do.
  for (bool done = refine(items, otherItems, whole, found); !done;) {
    NodeDifferenceS const opened{std::move(found.items), std::move(found.otherItems), std::move(found.gaps)};
    done = refine(opened.items, opened.otherItems, opened.gaps, found);
  }
}

StateDifferenceS compareStates(NodeRecordC const& one, NodeRecordC const& other) {
  StateDifferenceS found;
  if (&one == &other) return found;
  std::size_t size = 0;
  std::size_t otherSize = 0;
  std::vector<std::pair<NodeRecordC const*, NodeRecordC const*>> pairs{{&one, &other}};
  NodeDifferenceS difference;
  while (!pairs.empty()) {
    auto const [node, otherNode] = pairs.back();
    pairs.pop_back();
    compareNodes(*node, *otherNode, difference);
    size += difference.size;
    otherSize += difference.otherSize;
    // The parts of a text may be cut anew without another text.
    bool const text = node->getKind() == NODE4_TEXT;
    if (text ? !node->hasTextOf(*otherNode) : node->getOperator() != otherNode->getOperator()) {
      found.differs = true;
    }
    for (RecordGapS const& gap : difference.gaps) {
      for (std::size_t i = gap.first, j = gap.otherFirst; i < gap.end || j < gap.otherEnd; ++i, ++j) {
        NodeRecordC const* const item = i < gap.end ? difference.items[i] : nullptr;
        NodeRecordC const* const otherItem = j < gap.otherEnd ? difference.otherItems[j] : nullptr;
        if (item && otherItem && NodeRecordC::isAlike(*item, *otherItem)) {
          pairs.emplace_back(item, otherItem);
          continue;
        }
        if (!text) found.differs = true;
        if (item) size += item->getSize();
        if (otherItem) otherSize += otherItem->getSize();
      }
    }
  }
  found.size = std::max(size, otherSize);
  return found;
}

}  // namespace zolt::math::ved
