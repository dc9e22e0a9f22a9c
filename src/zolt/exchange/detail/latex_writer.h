#pragma once

#include <string_view>
#include <utility>
#include <vector>

#include "zolt/algexpr/parent_node.h"
#include "zolt/exchange/detail/latex_notation.h"

namespace zolt::exchange::detail {

using oss::wstring;

enum LatexSignsE {
  LATEX_SIGNS_VISIBLE,
  LATEX_SIGNS_ALL  ///< the invisible ones, too, of products and functions
};

/// Writes expression nodes as LaTeX, with its own stack instead of recursion.
class LatexWriterC {
 public:
  explicit LatexWriterC(LatexSignsE signs) : signs_(signs) {}

  wstring write(math::algexpr::NodeABC const& node);

 private:
  using NodeABC = math::algexpr::NodeABC;
  using ParentNodeABC = math::algexpr::ParentNodeABC;

  /// What a part of the text begins or ends with, for the sign of a product between two parts.
  enum EdgeE {
    EDGE_SIGN,  ///< no operand
    EDGE_NUMBER,
    EDGE_NEGATIVE,
    EDGE_NAME,
    EDGE_CALLS,   ///< a name that brackets after it would make a function
    EDGE_D,       ///< a name that would make a differential of a name after it
    EDGE_PREFIX,  ///< a name that would be a sign before an operand after it
    EDGE_BRACKET,
    EDGE_FRACTION,
    EDGE_FUNCTION,  ///< also sums and integrals
    EDGE_ARGUMENT,  ///< an end to which factors would belong
    EDGE_INTEGRAL,
    EDGE_OTHER
  };

  enum TaskE {
    TASK_NODE,
    TASK_TEXT,
    TASK_SIGN,
    TASK_TIMES,
    TASK_OPEN,
    TASK_CLOSE,
    TASK_ROW,
    TASK_INDEX,
    TASK_INDEX_END
  };

  /// What is still to be written.
  struct TaskS {
    TaskE kind;
    NodeABC const* node = nullptr;
    RuleE rule = RULE_ASSIGNMENT;    ///< a node that binds looser gets brackets
    RuleE follow = RULE_ASSIGNMENT;  ///< how tightly the sign after the node binds
    std::u16string_view text = {};
    EdgeE first = EDGE_SIGN;
    EdgeE last = EDGE_SIGN;
  };

  /// A bracket that grows when something tall is written inside.
  struct OpenS {
    std::size_t position;
    bool isTall;
  };

  void run(TaskS const& task);
  void writeNode(TaskS const& task);
  void writeLeaf(NodeABC const& node, RuleE rule);
  void writeNumber(wstring const& number, RuleE rule);
  void writeInfix(ParentNodeABC const& node, LatexNotationS const& notation, TaskS const& task);
  void writePrefix(ParentNodeABC const& node, LatexNotationS const& notation, TaskS const& task);
  void writePostfix(ParentNodeABC const& node, LatexNotationS const& notation, TaskS const& task);
  void writePower(ParentNodeABC const& node, TaskS const& task);
  void writeFunction(ParentNodeABC const& node, LatexNotationS const& notation, RuleE rule,
                     NodeABC const* exponent);
  void writeDerivative(ParentNodeABC const& node, LatexNotationS const& notation, TaskS const& task);
  void writeTable(ParentNodeABC const& node, LatexNotationS const& notation, TaskS const& task);
  void writeList(ParentNodeABC const& node, LatexNotationS const& notation);
  void writeIndex(ParentNodeABC const& node);
  void closeIndex();
  void writeForm(ParentNodeABC const& node, LatexNotationS const& notation, TaskS const& task);
  void writeCall(ParentNodeABC const& node);

  // What is planned last is written first.
  void later(NodeABC const& node, RuleE rule = RULE_ASSIGNMENT, RuleE follow = RULE_ASSIGNMENT) {
    tasks_.push_back({TASK_NODE, &node, rule, follow});
  }
  void later(std::u16string_view text, EdgeE first, EdgeE last) {
    tasks_.push_back({TASK_TEXT, nullptr, RULE_ASSIGNMENT, RULE_ASSIGNMENT, text, first, last});
  }
  void later(TaskE kind, std::u16string_view text = {}, EdgeE last = EDGE_OTHER) {
    tasks_.push_back({kind, nullptr, RULE_ASSIGNMENT, RULE_ASSIGNMENT, text, EDGE_BRACKET, last});
  }
  /// Writes "(" and plans the ")" when brackets are `needed`, which is the result.
  bool open(bool needed);

  void put(std::u16string_view text, EdgeE first, EdgeE last);
  void putSign(std::u16string_view sign);
  void append(std::u16string_view text);
  void settleMinus(bool binds);
  void setTall();
  bool isImplied(EdgeE first) const;
  /// The sign between a function and its argument.
  std::u16string_view applySign() const { return signs_ == LATEX_SIGNS_ALL ? u"\u2061" : u""; }

  LatexSignsE signs_;
  wstring output_;
  std::vector<TaskS> tasks_;  // the next task is the last element
  std::vector<OpenS> opens_;
  std::vector<std::pair<std::size_t, std::u16string_view>> growths_;  // what goes in where in the end
  EdgeE last_ = EDGE_SIGN;
  bool isFresh_ = true;               // a sign may follow
  bool hasTimes_ = false;             // a sign of a product is due before the next part
  bool endsCommand_ = false;          // a letter after the output needs a blank
  std::size_t startsRow_ = 0;         // the place after the last end of a row
  std::vector<std::size_t> indices_;  // the places where indices begin
  std::size_t minus_ = 0;             // the place after the last sign before an operand, 0: none
  bool minusNumber_ = false;          // a number is all that follows it
};

}  // namespace zolt::exchange::detail
