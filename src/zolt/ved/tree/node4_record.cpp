#include <algorithm>
#include <memory>

#include "zolt/ved/operators/operator.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/tree_walk.h"

namespace zolt::math::ved {

namespace {

// The characters in a part; longer texts are kept in several parts.
constexpr std::size_t part_size = 512;
// The items in a block: about as many as a stretch has blocks.
constexpr std::size_t block_size = 16;

using ChildrenT = NodeRecordC::ChildrenT;

/// Cuts a sequence into records of at most `most` elements. At both ends it reuses the records of `before` as
/// long as the elements are the same. Small records next to the change are merged into its record, or typing
/// would leave a record for each character. `contentOf` returns the elements of a record, `make` makes a
/// record of elements.
template <class SequenceT, class ContentT, class MakeT>
ChildrenT cut(SequenceT const& all, ChildrenT const& before, std::size_t most, ContentT contentOf,
              MakeT make) {
  auto const at = [](auto const& list, std::size_t i) {
    return list.begin() + static_cast<std::ptrdiff_t>(i);
  };
  std::size_t from = 0;
  std::size_t end = all.size();
  auto const isAt = [&](std::size_t place, SequenceT const& part) {
    return std::equal(part.begin(), part.end(), at(all, place));
  };
  std::size_t front = 0;
  for (; front < before.size(); ++front) {
    SequenceT const& part = contentOf(*before[front]);
    if (part.size() > end - from || !isAt(from, part)) break;
    from += part.size();
  }
  std::size_t back = before.size();
  for (; back > front; --back) {
    SequenceT const& part = contentOf(*before[back - 1]);
    if (part.size() > end - from || !isAt(end - part.size(), part)) break;
    end -= part.size();
  }
  auto const fits = [&](std::size_t i) { return contentOf(*before[i]).size() + (end - from) <= most; };
  while (front > 0 && fits(front - 1)) from -= contentOf(*before[--front]).size();
  while (back < before.size() && fits(back)) end += contentOf(*before[back++]).size();

  ChildrenT records;
  records.reserve(front + (end - from + most - 1) / most + (before.size() - back));
  records.insert(records.end(), before.begin(), at(before, front));
  for (; from < end; from += most) {
    records.push_back(make(SequenceT(at(all, from), at(all, std::min(end, from + most)))));
  }
  records.insert(records.end(), at(before, back), before.end());
  return records;
}

ChildrenT cutText(wstring const& text, ChildrenT const& before) {
  return cut(
      text, before, part_size, [](NodeRecordC const& part) -> wstring const& { return part.crefText(); },
      [](wstring part) { return NodeRecordC::make(NODE_RECORD_TEXT_PART, nullptr, std::move(part), {}); });
}

ChildrenT cutItems(ChildrenT const& items, ChildrenT const& before) {
  return cut(
      items, before, block_size,
      [](NodeRecordC const& block) -> ChildrenT const& { return block.crefChildren(); },
      [](ChildrenT block) {
        return NodeRecordC::make(NODE_RECORD_BLOCK, nullptr, wstring(), std::move(block));
      });
}

}  // namespace

// ---- Making a record --------------------------------------------------------------------------------------

NodeRecordPointerC Node4C::makeRecord() const {
  if (!(state_.stale & STALE_RECORD)) return state_.record;
  auto const record = [](Node4C const& node) {
    node.state_.record = node.recordNode();
    node.unmark(STALE_RECORD);
  };
  auto const nextMarked = [](Node4C const& node, unsigned long& next) -> Node4C const* {
    return node.findMarked(next, STALE_RECORD);
  };
  walkTree(
      *this, [](Node4C const&) {}, record, nextMarked);
  return state_.record;
}

/// Makes the record of this node from those of its children.
NodeRecordPointerC Node4C::recordNode() const {
  auto const kind = static_cast<std::uint8_t>(type_);
  if (type_ == NODE4_TEXT && text_.size() > part_size) {
    return NodeRecordC::make(kind, op_, wstring(),
                             cutText(text_, state_.record ? state_.record->crefChildren() : ChildrenT()));
  }
  auto const collect = [this](unsigned long first, unsigned long count) {
    ChildrenT records;
    records.reserve(count);
    for (unsigned long i = first; i < first + count; ++i) records.push_back(children_[i]->state_.record);
    return records;
  };
  ChildrenT records;
  if (state_.index) {
    records.reserve(state_.index->size());
    for (std::size_t k = 0; k < state_.index->size(); ++k) {
      RowStretchS& stretch = (*state_.index)[k];
      if (!stretch.record || (stretch.stale & STALE_RECORD)) {
        ChildrenT const before = stretch.record ? stretch.record->crefChildren() : ChildrenT();
        stretch.record = NodeRecordC::make(NODE_RECORD_STRETCH, nullptr, wstring(),
                                           cutItems(collect(stretch.first, stretch.count), before));
        stretch.stale &= static_cast<std::uint8_t>(~STALE_RECORD);
      }
      records.push_back(stretch.record);
    }
  } else {
    records = collect(0, numChildren());
  }
  return NodeRecordC::make(kind, op_, op_ ? wstring() : text_, std::move(records));
}

// ---- Going back to a record -------------------------------------------------------------------------------

/// Makes nodes from records.
class RecordReaderC {
 public:
  static std::unique_ptr<Node4C> build(NodeRecordC const& record) {
    struct SlotS {
      Node4C* parent;
      unsigned long slot;
      NodeRecordC const* record;
    };
    std::vector<SlotS> slots;
    std::vector<NodeRecordC const*> children;
    auto const open = [&](Node4C* node) {
      for (std::size_t i = children.size(); i-- > 0;) slots.push_back({node, i, children[i]});
    };
    std::unique_ptr<Node4C> top = make(record, children);
    open(top.get());
    while (!slots.empty()) {
      SlotS const slot = slots.back();
      slots.pop_back();
      std::unique_ptr<Node4C> node = make(*slot.record, children);
      open(node.get());
      slot.parent->adopt(slot.slot, node.release());
    }
    return top;
  }

 private:
  /// The node without its children, whose records are put into `children`.
  static std::unique_ptr<Node4C> make(NodeRecordC const& record, std::vector<NodeRecordC const*>& children) {
    children.clear();
    auto const type = static_cast<Node4TypeE>(record.getKind());
    if (type != NODE4_TEXT) record.appendItems(children);
    wstring const text = type == NODE4_TEXT ? record.getText() : record.crefText();
    auto node = std::make_unique<Node4C>(type, record.getOperator(), text, children.size());
    node->state_.record = NodeRecordPointerC(&record);
    node->unmark(STALE_RECORD);
    return node;
  }
};

std::unique_ptr<Node4C> Node4C::fromRecord(NodeRecordC const& record) { return RecordReaderC::build(record); }

void Node4C::turnInto(NodeRecordC const& state) {
  struct PairS {
    Node4C* node;
    NodeRecordC const* wanted;
  };
  std::vector<PairS> pairs;
  if (makeRecord().get() != &state) pairs.push_back({this, &state});
  for (std::size_t i = 0; i < pairs.size(); ++i) {
    auto const [node, wanted] = pairs[i];
    if (node->type_ == NODE4_TEXT) {
      if (!node->state_.record->hasTextOf(*wanted)) node->refText() = wanted->getText();
      continue;
    }
    for (RecordGapS const& gap : compareNodes(*node->state_.record, *wanted).gaps) {
      std::size_t const shared = std::min(gap.items.size(), gap.otherItems.size());
      unsigned long place = gap.place;  // everything before it is already as wanted
      for (std::size_t k = 0; k < shared; ++k, ++place) {
        NodeRecordC const& item = *gap.otherItems[k];
        if (NodeRecordC::isAlike(*gap.items[k], item)) {
          pairs.push_back({node->child(place), &item});
        } else {
          node->replaceChild(place, RecordReaderC::build(item).release());
        }
      }
      if (shared < gap.items.size()) node->deleteChildren(place, gap.items.size() - shared);
      if (shared == gap.otherItems.size()) continue;
      // They are inserted at once, since each single insertion would move all children after it.
      auto row = std::make_unique<Node4C>(NODE4_LINE, nullptr, wstring(), gap.otherItems.size() - shared);
      for (std::size_t k = shared; k < gap.otherItems.size(); ++k) {
        row->setChild(k - shared, RecordReaderC::build(*gap.otherItems[k]).release());
      }
      node->spliceChildren(place, row.release());
    }
  }
  // The next state will share unchanged parts with this one.
  for (PairS const& pair : pairs) {
    pair.node->state_.record = NodeRecordPointerC(pair.wanted);
    pair.node->unmark(STALE_RECORD);
  }
}

}  // namespace zolt::math::ved
