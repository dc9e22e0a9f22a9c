#include <algorithm>
#include <cstring>
#include <memory>

#include "zolt/ved/operators/operator.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/tree_walk.h"

namespace zolt::math::ved {

namespace {

// Texts longer than a part are kept in parts.
constexpr std::size_t part_size = 512;

using ChildrenT = NodeRecordC::ChildrenT;

void appendParts(ChildrenT& parts, wstring const& text, std::size_t from, std::size_t end) {
  while (from < end) {
    std::size_t const size = std::min(part_size, end - from);
    parts.push_back(NodeRecordC::make(NODE_RECORD_TEXT_PART, nullptr, text.substr(from, size), {}));
    from += size;
  }
}

/// The parts of a text: those of the text as it was, `before`, at both ends as far as they are the same.
/// Small ones beside the change go into its part, or typing would leave a part for each character.
ChildrenT makeParts(wstring const& text, ChildrenT const& before) {
  std::size_t from = 0;
  std::size_t end = text.size();
  auto const isAt = [&](std::size_t at, wstring const& part) {
    return std::memcmp(text.data() + at, part.data(), part.size() * sizeof(char16_t)) == 0;
  };
  auto const startsWith = [&](wstring const& part) { return part.size() <= end - from && isAt(from, part); };
  auto const endsIn = [&](wstring const& part) {
    return part.size() <= end - from && isAt(end - part.size(), part);
  };
  std::size_t front = 0;
  while (front < before.size() && startsWith(before[front]->crefText())) {
    from += before[front++]->crefText().size();
  }
  std::size_t back = before.size();
  while (back > front && endsIn(before[back - 1]->crefText())) end -= before[--back]->crefText().size();
  auto const fits = [&](std::size_t part) {
    return before[part]->crefText().size() + (end - from) <= part_size;
  };
  while (front > 0 && fits(front - 1)) from -= before[--front]->crefText().size();
  while (back < before.size() && fits(back)) end += before[back++]->crefText().size();

  ChildrenT parts(before.begin(), before.begin() + static_cast<std::ptrdiff_t>(front));
  appendParts(parts, text, from, end);
  parts.insert(parts.end(), before.begin() + static_cast<std::ptrdiff_t>(back), before.end());
  return parts;
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

/// The record of this node alone, made of those of its children.
NodeRecordPointerC Node4C::recordNode() const {
  auto const kind = static_cast<std::uint8_t>(type_);
  if (type_ == NODE4_TEXT && text_.size() > part_size) {
    return NodeRecordC::make(kind, op_, wstring(),
                             makeParts(text_, state_.record ? state_.record->crefChildren() : ChildrenT()));
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
        stretch.record =
            NodeRecordC::make(NODE_RECORD_STRETCH, nullptr, wstring(), collect(stretch.first, stretch.count));
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

/// Changes a tree from the last place to the first, so that the other places stay what they are.
class PatcherC {
 public:
  static void apply(Node4C& root, RecordPatchS::SideS const& present, RecordPatchS::SideS const& wanted) {
    Node4C* node = &root;
    for (std::uint32_t const i : present.path) node = node->child(i);
    std::size_t const shared = std::min(present.items.size(), wanted.items.size());
    unsigned long place = present.first;
    for (std::size_t k = 0; k < shared; ++k) turnInto(*node, place++, *wanted.items[k]);
    if (shared < present.items.size()) node->deleteChildren(place, present.items.size() - shared);
    if (shared == wanted.items.size()) return;
    // All at once: each alone would move all children behind it.
    auto row = std::make_unique<Node4C>(NODE4_LINE, nullptr, wstring(), wanted.items.size() - shared);
    for (std::size_t k = shared; k < wanted.items.size(); ++k) {
      row->setChild(k - shared, build(*wanted.items[k]).release());
    }
    node->spliceChildren(place, row.release());
  }

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
  static void turnInto(Node4C& parent, unsigned long i, NodeRecordC const& wanted) {
    Node4C& node = *parent.child(i);
    if (node.getType() == NODE4_TEXT && wanted.getKind() == NODE4_TEXT) {
      node.refText() = wanted.getText();
    } else {
      parent.replaceChild(i, build(wanted).release());
    }
  }

  /// The node without its children, whose records come out.
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

std::unique_ptr<Node4C> Node4C::fromRecord(NodeRecordC const& record) { return PatcherC::build(record); }

void Node4C::apply(std::vector<RecordPatchS> const& patches, bool backwards) {
  for (auto patch = patches.rbegin(); patch != patches.rend(); ++patch) {
    PatcherC::apply(*this, backwards ? patch->after : patch->before,
                    backwards ? patch->before : patch->after);
  }
}

}  // namespace zolt::math::ved
