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

using RecordListT = std::vector<NodeRecordC const*>;

/// A part of one list of records and the part of another that is in its place; either may be empty.
struct GapS {
  std::size_t first;
  std::size_t end;
  std::size_t otherFirst;
  std::size_t otherEnd;
};

/// Where two lists of records differ, in order.
std::vector<GapS> findGaps(RecordListT const& list, RecordListT const& other) {
  auto const isSame = [&](std::size_t i, std::size_t j) { return list[i] == other[j]; };
  std::size_t first = 0;
  std::size_t end = list.size();
  std::size_t otherEnd = other.size();
  while (first < end && first < otherEnd && isSame(first, first)) ++first;
  while (first < end && first < otherEnd && isSame(end - 1, otherEnd - 1)) {
    --end;
    --otherEnd;
  }
  std::vector<GapS> gaps;
  if (first == end && first == otherEnd) return gaps;
  if (end - first <= 1 && otherEnd - first <= 1) {
    gaps.push_back({first, end, first, otherEnd});
    return gaps;
  }

  std::unordered_map<NodeRecordC const*, std::size_t> places;
  if (first < end) {
    for (std::size_t j = first; j < otherEnd; ++j) places.emplace(other[j], j);
  }
  GapS gap{first, first, first, first};
  auto const close = [&](std::size_t i, std::size_t j) {
    gap.end = i;
    gap.otherEnd = j;
    if (gap.first < i || gap.otherFirst < j) gaps.push_back(gap);
    gap.first = i + 1;
    gap.otherFirst = j + 1;
  };
  for (std::size_t i = first; i < end; ++i) {
    auto const found = places.find(list[i]);
    if (found != places.end() && found->second >= gap.otherFirst) close(i, found->second);
  }
  close(end, otherEnd);
  return gaps;
}

}  // namespace

void NodeRecordC::appendItems(RecordListT& items) const {
  for (NodeRecordPointerC const& child : children_) {
    if (child->holdsItems()) {
      child->appendItems(items);
    } else {
      items.push_back(child.get());
    }
  }
}

NodeDifferenceS compareNodes(NodeRecordC const& one, NodeRecordC const& other) {
  NodeDifferenceS found;
  found.size = one.getOwnSize();
  found.otherSize = other.getOwnSize();
  bool opened = true;
  auto const open = [&opened](NodeRecordC const& child, RecordListT& items, std::size_t& size) {
    if (!child.holdsItems()) {
      items.push_back(&child);
      return;
    }
    opened = true;
    size += child.getOwnSize();
    for (NodeRecordPointerC const& inner : child.crefChildren()) items.push_back(inner.get());
  };
  RecordGapS all;
  for (NodeRecordPointerC const& child : one.crefChildren()) all.items.push_back(child.get());
  for (NodeRecordPointerC const& child : other.crefChildren()) all.otherItems.push_back(child.get());
  found.gaps.push_back(std::move(all));
  // An item is only looked at where stretches differ, and there where their blocks do.
  while (opened) {
    opened = false;
    std::vector<RecordGapS> finer;
    for (RecordGapS const& whole : found.gaps) {
      std::size_t place = whole.place;
      std::size_t next = 0;
      for (GapS const& gap : findGaps(whole.items, whole.otherItems)) {
        while (next < gap.otherFirst) place += whole.otherItems[next++]->countItems();
        finer.push_back({place, {}, {}});
        for (std::size_t i = gap.first; i < gap.end; ++i) {
          open(*whole.items[i], finer.back().items, found.size);
        }
        for (; next < gap.otherEnd; ++next) {
          open(*whole.otherItems[next], finer.back().otherItems, found.otherSize);
          place += whole.otherItems[next]->countItems();
        }
      }
    }
    found.gaps = std::move(finer);
  }
  return found;
}

StateDifferenceS compareStates(NodeRecordC const& one, NodeRecordC const& other) {
  StateDifferenceS found;
  if (&one == &other) return found;
  std::size_t size = 0;
  std::size_t otherSize = 0;
  std::vector<std::pair<NodeRecordC const*, NodeRecordC const*>> pairs{{&one, &other}};
  while (!pairs.empty()) {
    auto const [node, otherNode] = pairs.back();
    pairs.pop_back();
    NodeDifferenceS const difference = compareNodes(*node, *otherNode);
    size += difference.size;
    otherSize += difference.otherSize;
    // The parts of a text may be cut anew without another text.
    bool const text = node->getKind() == NODE4_TEXT;
    if (text && !node->hasTextOf(*otherNode)) found.differs = true;
    for (RecordGapS const& gap : difference.gaps) {
      std::size_t const count = std::max(gap.items.size(), gap.otherItems.size());
      for (std::size_t k = 0; k < count; ++k) {
        NodeRecordC const* const item = k < gap.items.size() ? gap.items[k] : nullptr;
        NodeRecordC const* const otherItem = k < gap.otherItems.size() ? gap.otherItems[k] : nullptr;
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
