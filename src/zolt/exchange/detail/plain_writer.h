#pragma once

#include <string_view>
#include <vector>

#include "zolt/algexpr/node.h"
#include "zolt/exchange/detail/notation.h"
#include "zolt/exchange/plain_text.h"

namespace zolt::exchange::detail {

/// Writes expression nodes as plain text, with its own stack instead of recursion.
class PlainWriterC {
 public:
  explicit PlainWriterC(PlainTextStyleE style) : style_(style) {}

  wstring write(math::algexpr::NodeABC const& node);

 private:
  /// A part to be written: a node, in brackets when it binds looser than `rule`, or a text.
  struct TaskS {
    math::algexpr::NodeABC const* node;
    RuleE rule;
    std::u16string_view text;
  };

  void writeNode(math::algexpr::NodeABC const& node, RuleE rule);
  void writeLeaf(math::algexpr::NodeABC const& node, RuleE rule);
  void writeParent(math::algexpr::ParentNodeABC const& node, RuleE rule);
  void writeInfix(math::algexpr::ParentNodeABC const& node, NotationS const& infix, RuleE rule);
  void writePrefix(NotationS const& prefix, math::algexpr::NodeABC const& operand, RuleE rule);
  /// Plans the operand after the sign of an operation.
  void laterAfter(NotationS const& sign, math::algexpr::NodeABC const& operand, RuleE rule);
  void writePostfix(std::u16string_view sign, math::algexpr::NodeABC const& operand, RuleE rule);
  void writeBrackets(math::algexpr::NodeABC const& operand);
  void writeList(math::algexpr::ParentNodeABC const& node, PlainListS const& list);
  void laterArguments(math::algexpr::ParentNodeABC const& node, unsigned long count);
  void laterPattern(math::algexpr::ParentNodeABC const& node, CallPatternS const& pattern);
  void writeCall(math::algexpr::ParentNodeABC const& node);
  /// Writes rows of cells; false for what is no table.
  bool writeTable(math::algexpr::ParentNodeABC const& node);
  void writeBare(wstring const& name);
  void writeQuoted(wstring const& name);

  /// Writes "(" and plans the ")" when brackets are `needed`.
  void open(bool needed);
  void later(math::algexpr::NodeABC const& node, RuleE rule) { tasks_.push_back({&node, rule, {}}); }
  void later(std::u16string_view text) { tasks_.push_back({nullptr, RULE_ASSIGNMENT, text}); }
  /// Whether a sign may follow the text so far without being read as a part of it.
  bool signFits() const;

  PlainTextStyleE style_;
  wstring output_;
  std::vector<TaskS> tasks_;  // the next task is the last element
};

}  // namespace zolt::exchange::detail
