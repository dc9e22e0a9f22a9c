#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>
#include <vector>

#include "zolt/oss/pointer.h"
#include "zolt/oss/wstring.h"

namespace zolt::math::ved {

using oss::PointerTC;
using oss::wstring;

class NodeRecordC;
class OperatorBC;

/// Shared ownership of a record. Records nest as deep as rows; the last holder lets go of one without
/// recursion.
class NodeRecordPointerC {
 public:
  NodeRecordPointerC() noexcept = default;
  explicit NodeRecordPointerC(NodeRecordC const* record) noexcept;
  NodeRecordPointerC(NodeRecordPointerC const& other) noexcept : NodeRecordPointerC(other.record_) {}
  NodeRecordPointerC(NodeRecordPointerC&& other) noexcept : record_(std::exchange(other.record_, nullptr)) {}
  ~NodeRecordPointerC() {
    if (record_) release();
  }
  NodeRecordPointerC& operator=(NodeRecordPointerC other) noexcept {
    std::swap(record_, other.record_);
    return *this;
  }

  NodeRecordC const* get() const { return record_; }
  NodeRecordC const& operator*() const { return *record_; }
  NodeRecordC const* operator->() const { return record_; }
  explicit operator bool() const { return record_ != nullptr; }
  friend bool operator==(NodeRecordPointerC const& a, NodeRecordPointerC const& b) {
    return a.record_ == b.record_;
  }

 private:
  void release() noexcept;

  NodeRecordC const* record_ = nullptr;
};

/// What a record is the copy of: a node, by its `Node4TypeE`, or a part of a long one.
enum NodeRecordE : std::uint8_t {
  NODE_RECORD_STRETCH = 9,
  NODE_RECORD_BLOCK = 10,
  NODE_RECORD_TEXT_PART = 11
};

/// An immutable copy of a node and everything in it (`Node4C::makeRecord`). The records of two states of a
/// tree share what is the same in both, so that a state costs what changed since the one before. For the same
/// reason long rows are kept in stretches of blocks, and long texts in parts. Operators are kept by identity.
class NodeRecordC {
 public:
  using ChildrenT = std::vector<NodeRecordPointerC>;

  [[nodiscard]] static NodeRecordPointerC make(std::uint8_t kind, PointerTC<OperatorBC> const& op,
                                               wstring text, ChildrenT children);
  ~NodeRecordC();
  NodeRecordC(NodeRecordC const&) = delete;
  NodeRecordC& operator=(NodeRecordC const&) = delete;

  /// A `Node4TypeE` or `NodeRecordE`.
  std::uint8_t getKind() const { return kind_; }
  PointerTC<OperatorBC> const& getOperator() const { return op_; }
  /// Of a text that is kept whole, and of a part.
  wstring const& crefText() const { return text_; }
  /// The text, put together from its parts.
  wstring getText() const;
  bool hasTextOf(NodeRecordC const& other) const;
  ChildrenT const& crefChildren() const { return children_; }
  /// Whether it stands for several neighbouring nodes: a stretch or a block.
  bool holdsItems() const { return kind_ == NODE_RECORD_STRETCH || kind_ == NODE_RECORD_BLOCK; }
  /// How many nodes it stands for.
  std::size_t countItems() const { return holdsItems() ? items_ : 1; }
  /// Appends the records of the children, of all stretches.
  void appendItems(std::vector<NodeRecordC const*>& items) const;
  /// What the record takes, without and with everything in it, in bytes.
  std::size_t getOwnSize() const;
  std::size_t getSize() const { return size_; }

  /// Whether a node of the one can be turned into the other by what is in it.
  static bool isAlike(NodeRecordC const& a, NodeRecordC const& b);

 private:
  friend class NodeRecordPointerC;

  NodeRecordC(std::uint8_t kind, PointerTC<OperatorBC> const& op, wstring text, ChildrenT children);
  explicit NodeRecordC(std::uint8_t kind);
  static NodeRecordC const* findConstant(std::uint8_t kind);

  mutable std::uint32_t holders_ = 0;
  std::uint32_t items_ = 0;  // that the children stand for
  std::uint8_t kind_;
  bool constant_ = false;  // holders are not counted: any number of threads may have some
  union {
    std::size_t size_ = 0;
    mutable NodeRecordC const* nextReleased_;  // when nobody holds it any more
  };
  PointerTC<OperatorBC> op_;
  wstring text_;
  ChildrenT children_;
};

/// Neighbouring children of a node in one state of a tree, and what is in their place in another state;
/// either may be none.
struct RecordGapS {
  std::size_t place;  ///< of the first of the others among all children in the other state
  std::size_t first;  ///< in `NodeDifferenceS::items`
  std::size_t end;
  std::size_t otherFirst;  ///< in `NodeDifferenceS::otherItems`
  std::size_t otherEnd;
};

/// How a node in one state differs from the same node in another, without what is inside its children. The
/// sizes are those of the two records, of their stretches and of their blocks, as far as these are not
/// shared, in bytes.
struct NodeDifferenceS {
  std::vector<NodeRecordC const*> items;  ///< of all gaps
  std::vector<NodeRecordC const*> otherItems;
  std::vector<RecordGapS> gaps;  ///< in order
  std::size_t size = 0;
  std::size_t otherSize = 0;
};

/// Overwrites `found`, whose lists keep their memory for the next comparison.
void compareNodes(NodeRecordC const& one, NodeRecordC const& other, NodeDifferenceS& found);

/// How two states of a tree differ.
struct StateDifferenceS {
  bool differs = false;
  std::size_t size = 0;  ///< in bytes, of what the one or the other has for itself, whichever is more
};

/// Walks both states side by side, down to what they share: the cost follows what is different, and how deep
/// in the tree it is.
[[nodiscard]] StateDifferenceS compareStates(NodeRecordC const& one, NodeRecordC const& other);

}  // namespace zolt::math::ved
