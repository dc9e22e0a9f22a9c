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
/// reason long rows are kept in stretches and long texts in parts. Operators are kept by identity.
class NodeRecordC {
 public:
  using ChildrenT = std::vector<NodeRecordPointerC>;

  static NodeRecordPointerC make(std::uint8_t kind, PointerTC<OperatorBC> const& op, wstring text,
                                 ChildrenT children);
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
  /// Appends the records of the children, of all stretches.
  void appendItems(std::vector<NodeRecordC const*>& items) const;
  /// What the record and everything in it takes, in bytes.
  std::size_t getSize() const { return size_; }

  /// Whether a node of the one can be turned into the other by what is in it.
  static bool isAlike(NodeRecordC const& a, NodeRecordC const& b) {
    return a.kind_ == b.kind_ && a.op_ == b.op_;
  }

 private:
  friend class NodeRecordPointerC;

  NodeRecordC(std::uint8_t kind, PointerTC<OperatorBC> const& op, wstring text, ChildrenT children);

  mutable std::uint32_t holders_ = 0;
  std::uint8_t kind_;
  mutable NodeRecordC const* nextReleased_ = nullptr;
  std::size_t size_;
  PointerTC<OperatorBC> op_;
  wstring text_;
  ChildrenT children_;
};

/// Neighbouring children of one node that are others in another state of the tree. Both states name the node
/// by the child numbers from the root down.
struct RecordPatchS {
  struct SideS {
    std::vector<std::uint32_t> path;
    std::uint32_t first = 0;
    NodeRecordC::ChildrenT items;
  };

  SideS before;
  SideS after;

  /// In bytes, of the one of its sides that takes more: the other one is part of a neighbouring state.
  std::size_t getSize() const;
};

/// What turns one state of a tree into another, in reading order; empty when they are the same. The cost
/// follows what is different, and how deep it stands.
std::vector<RecordPatchS> findPatches(NodeRecordC const& before, NodeRecordC const& after);

}  // namespace zolt::math::ved
