// Internal to convert/: the walk that builds a tree from an expression.
#pragma once

#include <set>
#include <vector>

#include "zolt/algexpr/node.h"
#include "zolt/algexpr/node_visitor.h"
#include "zolt/algexpr/number_display_format.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/operators/operator_list.h"

namespace zolt::math::ved {

/// Builds the tree of an expression from the leaves up: the walk calls each visit after those of the node's
/// children, whose subtrees then are the topmost entries of the stack.
class AlgebraicToNode4VisitorC : public algexpr::NodeVisitorABC {
 public:
  /// Nodes of `asText` (may be null) are shown as prefix text between grave accents.
  AlgebraicToNode4VisitorC(PointerTC<OperatorListC> operators, unsigned long precision,
                           algexpr::NumberDisplayFormatE format,
                           std::set<algexpr::NodeABC const*> const* asText);
  ~AlgebraicToNode4VisitorC() override;

  void visitCoreFunction(algexpr::CoreFunctionNodeC& node) override;
  void visitUserFunction(algexpr::UserFunctionNodeC& node) override;
  void visitCoreConstant(algexpr::CoreConstantNodeC& node) override;
  void visitInteger(algexpr::IntegerNodeC& node) override;
  void visitFloat(algexpr::FloatNodeC& node) override;
  void visitSymbol(algexpr::SymbolNodeC& node) override;

  /// The finished subtree, the caller's from now on.
  Node4C* takeResult();
  /// How deep rows nest in the finished subtree, its own row not counted.
  unsigned long getRowDepth() const { return rowDepths_.back(); }

 private:
  void visitNamed(algexpr::NodeABC& node, unsigned long numChildren);
  void makeNode(algexpr::NodeABC& node, OperatorBC const* op, unsigned long numChildren);
  void push(Node4C* node, int precedence, unsigned long rowDepth);
  unsigned long popRowDepths(OperatorBC const* op, unsigned long numChildren);

  ConversionStackT stack_;
  std::vector<unsigned long> rowDepths_;  // beside each entry of the stack, how deep rows nest in it
  PointerTC<OperatorListC> operators_;
  unsigned long precision_;
  algexpr::NumberDisplayFormatE format_;
  std::set<algexpr::NodeABC const*> const* asText_;
};

}  // namespace zolt::math::ved
