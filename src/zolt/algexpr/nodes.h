#pragma once

#include <utility>

#include "zolt/algexpr/node_kind.h"
#include "zolt/algexpr/parent_node.h"

// The kinds of nodes, apart from decimal numbers (`float_node.h`).
namespace zolt::math::algexpr {

namespace detail {
struct NodeAccessS;
}  // namespace detail

/// A function of the library's own table of names, such as "+", "^" or "sin".
class CoreFunctionNodeC
    : public NodeKindTC<CoreFunctionNodeC, ParentNodeABC, &NodeVisitorABC::visitCoreFunction> {
 public:
  static constexpr char16_t const* castable_id = u"CoreFunctionNodeC";
  wstring const& crefName() const override { return name_; }

 private:
  friend struct detail::NodeAccessS;
  CoreFunctionNodeC(wstring const& name, PointerTC<NodeABC>* first, unsigned long count)
      : NodeKindTC(first, count), name_(name) {}

  wstring const& name_;  // in the table
};

/// A function whose name the library does not know, such as "f".
class UserFunctionNodeC
    : public NodeKindTC<UserFunctionNodeC, ParentNodeABC, &NodeVisitorABC::visitUserFunction> {
 public:
  static constexpr char16_t const* castable_id = u"UserFunctionNodeC";
  wstring const& crefName() const override { return name_; }

 private:
  friend struct detail::NodeAccessS;
  UserFunctionNodeC(wstring name, PointerTC<NodeABC>* first, unsigned long count)
      : NodeKindTC(first, count), name_(std::move(name)) {}

  wstring name_;
};

/// A constant of the library's own table of names, such as "_PI".
class CoreConstantNodeC : public NodeKindTC<CoreConstantNodeC, NodeABC, &NodeVisitorABC::visitCoreConstant> {
 public:
  static constexpr char16_t const* castable_id = u"CoreConstantNodeC";
  wstring const& crefName() const override { return name_; }

 private:
  friend struct detail::NodeAccessS;
  explicit CoreConstantNodeC(wstring const& name) : name_(name) {}

  wstring const& name_;  // in the table
};

/// A whole number of any size. Its name is its text, kept digit for digit ("007" too).
class IntegerNodeC : public NodeKindTC<IntegerNodeC, NodeABC, &NodeVisitorABC::visitInteger> {
 public:
  static constexpr char16_t const* castable_id = u"IntegerNodeC";
  wstring const& crefName() const override { return text_; }

 private:
  friend struct detail::NodeAccessS;
  explicit IntegerNodeC(wstring text) : text_(std::move(text)) {}

  wstring text_;
};

/// A name that stands for itself: a variable, or anything else the library does not know.
class SymbolNodeC : public NodeKindTC<SymbolNodeC, NodeABC, &NodeVisitorABC::visitSymbol> {
 public:
  static constexpr char16_t const* castable_id = u"SymbolNodeC";
  wstring const& crefName() const override { return name_; }

 private:
  friend struct detail::NodeAccessS;
  explicit SymbolNodeC(wstring name) : name_(std::move(name)) {}

  wstring name_;
};

}  // namespace zolt::math::algexpr
