#pragma once

#include <string_view>
#include <vector>

#include "zolt/algexpr/parent_node.h"
#include "zolt/mathjson/detail/json_table.h"

namespace zolt::mathjson::detail {

/// Writes expression nodes as MathJSON, with its own stack instead of recursion.
class JsonWriterC {
 public:
  wstring write(math::algexpr::NodeABC const& node);

 private:
  using NodeABC = math::algexpr::NodeABC;
  using ParentNodeABC = math::algexpr::ParentNodeABC;

  /// What is still to be written: a text, or a node when there is one.
  struct TaskS {
    NodeABC const* node;
    std::u16string_view text;
  };

  void writeNode(NodeABC const& node);
  void writeNumber(wstring const& number);
  void writeName(std::u16string_view name);
  void writeVerbatim(ParentNodeABC const& node);
  bool writeRow(ParentNodeABC const& node, JsonRowS const& row);
  bool writePlain(ParentNodeABC const& node, JsonRowS const& row);
  void writeChain(ParentNodeABC const& node, JsonRowS const& row);
  bool writeTable(ParentNodeABC const& node, JsonRowS const& row);
  bool writeInterval(ParentNodeABC const& node, JsonRowS const& row);
  void putHead(std::u16string_view head);

  // What is planned last is written first.
  void later(NodeABC const& node) { tasks_.push_back({&node, {}}); }
  void later(std::u16string_view text) { tasks_.push_back({nullptr, text}); }

  wstring output_;
  std::vector<TaskS> tasks_;  // the next task is the last element
};

}  // namespace zolt::mathjson::detail
