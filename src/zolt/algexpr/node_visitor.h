#pragma once

namespace zolt::math::algexpr {

class CoreFunctionNodeC;
class UserFunctionNodeC;
class CoreConstantNodeC;
class IntegerNodeC;
class FloatNodeC;
class SymbolNodeC;

/// The order of a walk.
enum VisitOrderE : unsigned long {
  VISIT_PARENT_FIRST = 1,   ///< every node before its children
  VISIT_CHILDREN_FIRST = 4  ///< every node after all its children
};

/// Is called for every node of an expression (`AlgebraicExpressionC::accept`), children from left to right. A
/// part shared by several parents is visited once for each of them.
class NodeVisitorABC {
 public:
  /// `order` is a `VisitOrderE`; any other value means `VISIT_CHILDREN_FIRST`.
  explicit NodeVisitorABC(unsigned long order) : order_(order) {}
  virtual ~NodeVisitorABC() = default;

  virtual void visitCoreFunction(CoreFunctionNodeC& node) = 0;
  virtual void visitUserFunction(UserFunctionNodeC& node) = 0;
  virtual void visitCoreConstant(CoreConstantNodeC& node) = 0;
  virtual void visitInteger(IntegerNodeC& node) = 0;
  virtual void visitFloat(FloatNodeC& node) = 0;
  virtual void visitSymbol(SymbolNodeC& node) = 0;

  unsigned long getOrder() const { return order_; }

 private:
  unsigned long order_;
};

}  // namespace zolt::math::algexpr
