#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "zolt/algexpr/parent_node.h"
#include "zolt/mathml/detail/content_table.h"
#include "zolt/mathml/detail/xml_builder.h"

namespace zolt::mathml::detail {

/// Makes content MathML of expression nodes, with its own stack instead of recursion.
class ContentWriterC {
 public:
  using IdT = XmlBuilderC::IdT;

  explicit ContentWriterC(XmlBuilderC& builder) : builder_(builder) {}

  IdT write(math::algexpr::NodeABC const& node);

 private:
  using ParentNodeABC = math::algexpr::ParentNodeABC;

  IdT makeLeaf(math::algexpr::NodeABC const& node);
  IdT makeSymbol(ContentRowS const& row);
  IdT makeNumber(wstring const& number);
  /// The element of an operation on elements, in the order of its operands.
  IdT make(ParentNodeABC const& node, IdT const* operands);
  IdT makeCall(ParentNodeABC const& node, ContentRowS const* row, IdT const* operands);
  IdT makeLimit(IdT const* operands, ParentNodeABC const& node);
  IdT makeMatrix(IdT const* lists, std::size_t count);
  IdT makeCases(ParentNodeABC const& node, IdT const* lists);
  IdT makeInterval(ParentNodeABC const& node, IdT const* operands);
  IdT makeElement(std::u16string_view tag, std::vector<IdT> const& children) {
    return builder_.addElement(tag, children.data(), children.size());
  }
  IdT makeEmpty(std::u16string_view tag) { return builder_.addElement(tag, nullptr, 0); }

  XmlBuilderC& builder_;
};

}  // namespace zolt::mathml::detail
