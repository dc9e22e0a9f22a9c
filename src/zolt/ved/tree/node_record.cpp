#include "zolt/ved/tree/node_record.h"

#include <algorithm>
#include <numeric>
#include <unordered_map>

#include "zolt/ved/operators/operator.h"
#include "zolt/ved/tree/node4_type.h"

namespace zolt::math::ved {

NodeRecordPointerC::NodeRecordPointerC(NodeRecordC const* record) noexcept : record_(record) {
  if (record_) ++record_->holders_;
}

void NodeRecordPointerC::release() noexcept {
  NodeRecordC const* pending = nullptr;
  auto const letGo = [&pending](NodeRecordC const* record) {
    if (--record->holders_ > 0) return;
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
    : kind_(kind), size_(0), op_(op), text_(std::move(text)), children_(std::move(children)) {
  static std::size_t const inside = wstring().capacity();
  size_ = sizeof(NodeRecordC) + children_.capacity() * sizeof(NodeRecordPointerC);
  if (text_.capacity() > inside) size_ += text_.capacity() * sizeof(char16_t);
  for (NodeRecordPointerC const& child : children_) size_ += child->size_;
}

NodeRecordC::~NodeRecordC() = default;

// Brackets and empty texts, which every row has many of, have nothing of their own: all of a kind share one
// record.
NodeRecordPointerC NodeRecordC::make(std::uint8_t kind, PointerTC<OperatorBC> const& op, wstring text,
                                     ChildrenT children) {
  static NodeRecordPointerC shared[NODE4_AUTO_CLOSE + 1];
  bool const hasNothing = kind == NODE4_TEXT || (kind >= NODE4_OPEN && kind <= NODE4_AUTO_CLOSE);
  if (hasNothing && !op && text.empty() && children.empty()) {
    if (!shared[kind]) {
      auto* const record = new NodeRecordC(kind, op, wstring(), ChildrenT());
      record->size_ = 0;
      shared[kind] = NodeRecordPointerC(record);
    }
    return shared[kind];
  }
  return NodeRecordPointerC(new NodeRecordC(kind, op, std::move(text), std::move(children)));
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

/// A stretch of one list of records and the stretch of another that stands in its place; either may be empty.
struct GapS {
  std::size_t first;
  std::size_t end;
  std::size_t otherFirst;
  std::size_t otherEnd;
};

NodeRecordC const* toPointer(NodeRecordC const* record) { return record; }
NodeRecordC const* toPointer(NodeRecordPointerC const& record) { return record.get(); }

/// Where two lists of records differ, in order.
template <class ListT>
std::vector<GapS> findGaps(ListT const& list, ListT const& other) {
  auto const isSame = [&](std::size_t i, std::size_t j) { return toPointer(list[i]) == toPointer(other[j]); };
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
    for (std::size_t j = first; j < otherEnd; ++j) places.emplace(toPointer(other[j]), j);
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
    auto const found = places.find(toPointer(list[i]));
    if (found != places.end() && found->second >= gap.otherFirst) close(i, found->second);
  }
  close(end, otherEnd);
  return gaps;
}

}  // namespace

void NodeRecordC::appendItems(RecordListT& items) const {
  for (NodeRecordPointerC const& child : children_) {
    if (child->kind_ == NODE_RECORD_STRETCH) {
      child->appendItems(items);
    } else {
      items.push_back(child.get());
    }
  }
}

std::size_t RecordPatchS::getSize() const {
  std::size_t size = sizeof(RecordPatchS);
  std::size_t most = 0;
  for (SideS const* side : {&before, &after}) {
    size +=
        side->path.capacity() * sizeof(std::uint32_t) + side->items.capacity() * sizeof(NodeRecordPointerC);
    std::size_t items = 0;
    for (NodeRecordPointerC const& item : side->items) items += item->getSize();
    most = std::max(most, items);
  }
  return size + most;
}

namespace {

/// Walks two states side by side, down to where they differ.
class PatchFinderC {
 public:
  std::vector<RecordPatchS> find(NodeRecordC const& before, NodeRecordC const& after) {
    pairs_.push_back({&before, &after, 0, 0, 0});
    while (!pairs_.empty()) {
      PairS const pair = pairs_.back();
      pairs_.pop_back();
      path_.resize(pair.depth);
      otherPath_.resize(pair.depth);
      if (pair.depth > 0) {
        path_.back() = pair.place;
        otherPath_.back() = pair.otherPlace;
      }
      compareChildren(*pair.one, *pair.other);
    }
    std::sort(patches_.begin(), patches_.end(), isEarlier);
    return std::move(patches_);
  }

 private:
  struct PairS {
    NodeRecordC const* one;
    NodeRecordC const* other;
    std::size_t depth;
    std::uint32_t place;  // in the parent
    std::uint32_t otherPlace;
  };

  static bool isEarlier(RecordPatchS const& a, RecordPatchS const& b) {
    auto const& p = a.before.path;
    auto const& q = b.before.path;
    auto const [i, j] = std::mismatch(p.begin(), p.end(), q.begin(), q.end());
    std::uint32_t const first = i == p.end() ? a.before.first : *i;
    std::uint32_t const second = j == q.end() ? b.before.first : *j;
    // What is put in before an item comes before what is in it.
    return first != second ? first < second : p.size() < q.size();
  }

  // Stretch by stretch first: an item is only looked at where stretches differ.
  void compareChildren(NodeRecordC const& one, NodeRecordC const& other) {
    auto const& list = one.crefChildren();
    auto const& otherList = other.crefChildren();
    std::size_t place = 0;
    std::size_t otherPlace = 0;
    std::size_t i = 0;
    std::size_t j = 0;
    for (GapS const& gap : findGaps(list, otherList)) {
      while (i < gap.first) place += countItems(*list[i++]);
      while (j < gap.otherFirst) otherPlace += countItems(*otherList[j++]);
      RecordListT items;
      RecordListT otherItems;
      while (i < gap.end) appendOpened(items, *list[i++]);
      while (j < gap.otherEnd) appendOpened(otherItems, *otherList[j++]);
      for (GapS const& inner : findGaps(items, otherItems)) {
        compareItems(items, otherItems, inner, place, otherPlace);
      }
      place += items.size();
      otherPlace += otherItems.size();
    }
  }

  void compareItems(RecordListT const& items, RecordListT const& otherItems, GapS const& gap,
                    std::size_t place, std::size_t otherPlace) {
    std::size_t i = gap.first;
    std::size_t j = gap.otherFirst;
    std::size_t from = i;
    std::size_t otherFrom = j;
    auto const flush = [&] {
      if (from < i || otherFrom < j) addPatch(items, from, i, place, otherItems, otherFrom, j, otherPlace);
    };
    for (; i < gap.end && j < gap.otherEnd; ++i, ++j) {
      NodeRecordC const& one = *items[i];
      NodeRecordC const& other = *otherItems[j];
      if (!NodeRecordC::isAlike(one, other)) continue;
      if (one.getKind() == NODE4_TEXT && !one.hasTextOf(other)) continue;
      flush();
      from = i + 1;
      otherFrom = j + 1;
      if (one.getKind() == NODE4_TEXT) continue;
      pairs_.push_back({&one, &other, path_.size() + 1, static_cast<std::uint32_t>(place + i),
                        static_cast<std::uint32_t>(otherPlace + j)});
    }
    i = gap.end;
    j = gap.otherEnd;
    flush();
  }

  void addPatch(RecordListT const& items, std::size_t from, std::size_t end, std::size_t place,
                RecordListT const& otherItems, std::size_t otherFrom, std::size_t otherEnd,
                std::size_t otherPlace) {
    RecordPatchS patch;
    patch.before.path = path_;
    patch.after.path = otherPath_;
    patch.before.first = static_cast<std::uint32_t>(place + from);
    patch.after.first = static_cast<std::uint32_t>(otherPlace + otherFrom);
    patch.before.items.reserve(end - from);
    patch.after.items.reserve(otherEnd - otherFrom);
    for (; from < end; ++from) patch.before.items.emplace_back(items[from]);
    for (; otherFrom < otherEnd; ++otherFrom) patch.after.items.emplace_back(otherItems[otherFrom]);
    patches_.push_back(std::move(patch));
  }

  static std::size_t countItems(NodeRecordC const& record) {
    return record.getKind() == NODE_RECORD_STRETCH ? record.crefChildren().size() : 1;
  }

  static void appendOpened(RecordListT& items, NodeRecordC const& record) {
    if (record.getKind() == NODE_RECORD_STRETCH) {
      record.appendItems(items);
    } else {
      items.push_back(&record);
    }
  }

  std::vector<PairS> pairs_;
  std::vector<std::uint32_t> path_;
  std::vector<std::uint32_t> otherPath_;
  std::vector<RecordPatchS> patches_;
};

}  // namespace

std::vector<RecordPatchS> findPatches(NodeRecordC const& before, NodeRecordC const& after) {
  return &before == &after ? std::vector<RecordPatchS>() : PatchFinderC().find(before, after);
}

}  // namespace zolt::math::ved
