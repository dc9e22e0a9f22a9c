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

/// Cuts `size` elements into records of at most `most` elements. At both ends it reuses the records of
/// `before` as long as the elements are the same. Small records next to the change are merged into its
/// record, or typing would leave a record for each character. `isAt` tells whether the elements from an index
/// on are those of a record, `make` makes a record of the elements from an index on.
template <class IsAtT, class MakeT>
ChildrenT cut(std::size_t size, ChildrenT const& before, std::size_t most, IsAtT isAt, MakeT make) {
  auto const sizeOf = [](NodeRecordC const& record) {
    return std::max(record.crefText().size(), record.crefChildren().size());
  };
  std::size_t from = 0;
  std::size_t end = size;
  std::size_t front = 0;
  for (; front < before.size(); ++front) {
    std::size_t const count = sizeOf(*before[front]);
    if (count > end - from || !isAt(from, *before[front])) break;
    from += count;
  }
  std::size_t back = before.size();
  for (; back > front; --back) {
    std::size_t const count = sizeOf(*before[back - 1]);
    if (count > end - from || !isAt(end - count, *before[back - 1])) break;
    end -= count;
  }
  auto const fits = [&](std::size_t i) { return sizeOf(*before[i]) + (end - from) <= most; };
  while (front > 0 && fits(front - 1)) from -= sizeOf(*before[--front]);
  while (back < before.size() && fits(back)) end += sizeOf(*before[back++]);

  auto const at = [&before](std::size_t i) { return before.begin() + static_cast<std::ptrdiff_t>(i); };
  ChildrenT records;
  records.reserve(front + (end - from + most - 1) / most + (before.size() - back));
  records.insert(records.end(), before.begin(), at(front));
  for (; from < end; from += most) records.push_back(make(from, std::min(end - from, most)));
  records.insert(records.end(), at(back), before.end());
  return records;
}

ChildrenT const& childrenOf(NodeRecordPointerC const& record) {
  static ChildrenT const none;
  return record ? record->crefChildren() : none;
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
    auto const isAt = [this](std::size_t i, NodeRecordC const& part) {
      return part.getKind() == NODE_RECORD_TEXT_PART &&
             std::equal(part.crefText().begin(), part.crefText().end(),
                        text_.begin() + static_cast<std::ptrdiff_t>(i));
    };
    auto const makePart = [&](std::size_t i, std::size_t count) {
      return NodeRecordC::make(NODE_RECORD_TEXT_PART, nullptr, text_.substr(i, count), {});
    };
    return NodeRecordC::make(kind, op_, {},
                             cut(text_.size(), childrenOf(state_.record), part_size, isAt, makePart));
  }
  auto const collect = [this](unsigned long first, unsigned long count) {
    ChildrenT records;
    records.reserve(count);
    for (unsigned long i = first; i < first + count; ++i) records.push_back(children_[i]->state_.record);
    return records;
  };
  wstring text = op_ ? wstring() : text_;
  if (!state_.index) return NodeRecordC::make(kind, op_, std::move(text), collect(0, numChildren()));
  ChildrenT records;
  records.reserve(state_.index->size());
  ColumnMarkS const columns = state_.index->crefColumnMark(STALE_RECORD);
  for (std::size_t k = 0; k < state_.index->size(); ++k) {
    RowStretchS& stretch = (*state_.index)[k];
    bool const isMarked = !stretch.record || (stretch.stale & STALE_RECORD);
    if (isMarked || columns.isSet()) {
      auto const isAt = [&](std::size_t i, NodeRecordC const& block) {
        if (!isMarked) {
          return i + block.crefChildren().size() <= columns.front || i + columns.back >= stretch.count;
        }
        auto const isThere = [&](NodeRecordPointerC const& item) {
          return children_[stretch.first + i++]->state_.record == item;
        };
        return std::all_of(block.crefChildren().begin(), block.crefChildren().end(), isThere);
      };
      auto const makeBlock = [&](std::size_t i, std::size_t count) {
        return NodeRecordC::make(NODE_RECORD_BLOCK, nullptr, {}, collect(stretch.first + i, count));
      };
      stretch.record =
          NodeRecordC::make(NODE_RECORD_STRETCH, nullptr, {},
                            cut(stretch.count, childrenOf(stretch.record), block_size, isAt, makeBlock));
      stretch.stale &= static_cast<std::uint8_t>(~STALE_RECORD);
    }
    records.push_back(stretch.record);
  }
  state_.index->clearColumnMark(STALE_RECORD);
  return NodeRecordC::make(kind, op_, std::move(text), std::move(records));
}

// ---- Going back to a record -------------------------------------------------------------------------------

std::unique_ptr<Node4C> Node4C::fromRecord(NodeRecordC const& record) {
  struct SlotS {
    Node4C* parent;
    unsigned long slot;
    NodeRecordC const* record;
  };
  std::unique_ptr<Node4C> top;
  std::vector<SlotS> slots{{nullptr, 0, &record}};
  std::vector<NodeRecordC const*> children;
  while (!slots.empty()) {
    auto const [parent, slot, copy] = slots.back();
    slots.pop_back();
    children.clear();
    auto const type = static_cast<Node4TypeE>(copy->getKind());
    if (type != NODE4_TEXT) copy->appendItems(children);
    wstring const text = type == NODE4_TEXT ? copy->getText() : copy->crefText();
    auto node = std::make_unique<Node4C>(type, copy->getOperator(), text, children.size());
    node->state_.record = NodeRecordPointerC(copy);
    node->unmark(STALE_RECORD);
    for (std::size_t i = children.size(); i-- > 0;) slots.push_back({node.get(), i, children[i]});
    if (parent) {
      parent->adopt(slot, node.release());
    } else {
      top = std::move(node);
    }
  }
  return top;
}

void Node4C::turnInto(NodeRecordC const& state) {
  struct PairS {
    Node4C* node;
    NodeRecordC const* wanted;
  };
  std::vector<PairS> pairs;
  NodeDifferenceS difference;
  if (makeRecord().get() != &state) pairs.push_back({this, &state});
  for (std::size_t next = 0; next < pairs.size(); ++next) {
    auto const [node, wanted] = pairs[next];
    if (node->type_ == NODE4_TEXT) {
      if (!node->state_.record->hasTextOf(*wanted)) node->refText() = wanted->getText();
      continue;
    }
    compareNodes(*node->state_.record, *wanted, difference);
    if (node->op_ && node->op_->getColumns() > 0 && node->turnColumnsInto(*wanted, difference)) continue;
    if (node->op_ != wanted->getOperator()) {
      node->parent_->replaceChild(node->findChildNumber(), fromRecord(*wanted).release());
      pairs[next].node = nullptr;
      continue;
    }
    for (RecordGapS const& gap : difference.gaps) {
      unsigned long place = gap.place;  // everything before it is already as wanted
      std::size_t i = gap.first;
      std::size_t j = gap.otherFirst;
      for (; i < gap.end && j < gap.otherEnd; ++i, ++j, ++place) {
        NodeRecordC const& item = *difference.otherItems[j];
        if (NodeRecordC::isAlike(*difference.items[i], item)) {
          pairs.push_back({node->child(place), &item});
        } else {
          node->replaceChild(place, fromRecord(item).release());
        }
      }
      if (i < gap.end) node->deleteChildren(place, gap.end - i);
      if (j == gap.otherEnd) continue;
      // They are inserted at once, since each single insertion would move all children after it.
      auto row = std::make_unique<Node4C>(NODE4_LINE, gap.otherEnd - j);
      for (std::size_t k = j; k < gap.otherEnd; ++k) {
        row->setChild(k - j, fromRecord(*difference.otherItems[k]).release());
      }
      node->spliceChildren(place, row.release());
    }
  }
  // The next state will share unchanged parts with this one.
  for (PairS const& pair : pairs) {
    if (!pair.node) continue;
    pair.node->state_.record = NodeRecordPointerC(pair.wanted);
    pair.node->unmark(STALE_RECORD);
  }
}

/// Inserts and deletes the columns by which a table differs from another state of it. False, with nothing
/// changed, when it differs in anything else.
bool Node4C::turnColumnsInto(NodeRecordC const& state, NodeDifferenceS const& difference) {
  unsigned long columns = op_->getColumns();
  unsigned long const wanted = state.getOperator()->getColumns();
  unsigned long const rows = numChildren() / columns;
  std::size_t const count = difference.gaps.size() / rows;  // in each row
  if (count == 0 || difference.gaps.size() % rows != 0) return false;
  auto const removed = [](RecordGapS const& gap) { return gap.end - gap.first; };
  auto const added = [](RecordGapS const& gap) { return gap.otherEnd - gap.otherFirst; };
  unsigned long result = columns;
  for (std::size_t i = 0; i < difference.gaps.size(); ++i) {
    RecordGapS const& gap = difference.gaps[i];
    RecordGapS const& first = difference.gaps[i % count];
    bool const isSame = gap.place == i / count * wanted + first.place && removed(gap) == removed(first) &&
                        added(gap) == added(first);
    bool const isOneWay = removed(gap) == 0 || added(gap) == 0;
    if (!isSame || !isOneWay) return false;
    if (i >= count) continue;
    if (removed(gap) >= result) return false;
    result = result + added(gap) - removed(gap);
  }
  if (result != wanted) return false;
  noteNewKind();
  op_ = state.getOperator();
  for (std::size_t i = 0; i < count; ++i) {
    RecordGapS const& first = difference.gaps[i];
    if (removed(first) > 0) {
      takeColumns(columns, first.place, removed(first));
      columns -= removed(first);
      continue;
    }
    std::vector<std::unique_ptr<Node4C>> cells;
    for (std::size_t k = i; k < difference.gaps.size(); k += count) {
      for (std::size_t item = difference.gaps[k].otherFirst; item < difference.gaps[k].otherEnd; ++item) {
        cells.push_back(fromRecord(*difference.otherItems[item]));
      }
    }
    putColumns(columns, first.place, std::move(cells));
    columns += added(first);
  }
  return true;
}

}  // namespace zolt::math::ved
