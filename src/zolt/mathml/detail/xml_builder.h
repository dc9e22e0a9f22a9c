#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>
#include <vector>

#include "zolt/oss/wstring.h"

namespace zolt::mathml::detail {

using oss::wstring;

/// Elements that are made children first, and their text.
class XmlBuilderC {
 public:
  using IdT = std::uint32_t;

  /// An element with text. `tag` lives as long as the builder.
  IdT addToken(std::u16string_view tag, std::u16string_view text);
  /// An element with these children, of which none has a parent yet.
  IdT addElement(std::u16string_view tag, IdT const* children, std::size_t count);
  void addAttribute(IdT id, std::u16string_view name, std::u16string_view value);
  /// Puts the element into a place where one is needed: alone it is itself, others get an "mrow".
  IdT addRow(IdT const* children, std::size_t count);

  std::u16string_view tag(IdT id) const { return items_[id].tag; }
  std::u16string_view text(IdT id) const {
    return std::u16string_view(pool_).substr(items_[id].text, items_[id].size);
  }
  /// The children, in their order.
  std::vector<IdT> children(IdT id) const;

  /// The text of the element.
  wstring write(IdT root) const;

 private:
  static constexpr IdT none = 0xFFFFFFFF;
  struct ItemS {
    std::u16string_view tag;
    std::size_t text = 0;
    std::size_t size = 0;
    IdT first = none;
    IdT next = none;
    IdT attribute = none;  // the last one
  };
  struct AttributeS {
    wstring text;
    IdT next;
  };

  void writeOpening(ItemS const& item, wstring& out) const;

  std::vector<ItemS> items_;
  std::vector<AttributeS> attributes_;
  wstring pool_;  // all texts, with the characters escaped that XML reserves
};

}  // namespace zolt::mathml::detail
