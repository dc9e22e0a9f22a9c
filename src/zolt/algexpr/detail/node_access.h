#pragma once

#include <string_view>

#include "zolt/algexpr/node.h"

namespace zolt::math::algexpr::detail {

using wstring_view = std::u16string_view;

/// Whether `text` is to be a number or nothing: a digit, ".", or a minus and one of these at its start.
bool startsLikeNumber(wstring_view text);

/// What no name has in it, apart from the brackets, comma and blank that end it: grave accent and control
/// characters.
bool isForbidden(char16_t c);
/// "(", ")", "," or a blank.
bool endsName(char16_t c);

/// The makers of nodes, the only friend of their classes. Arguments are trusted to be what the public makers
/// check.
struct NodeAccessS {
  /// Takes the `count` nodes, at least 1, from `first` on; the pointers are null afterwards.
  static PointerTC<NodeABC> makeFunction(wstring_view name, PointerTC<NodeABC>* first, unsigned long count);
  static PointerTC<NodeABC> makeNamed(wstring_view name);
  /// Null when `text` is no number; `*breakPosition` then is the first character that breaks its form.
  static PointerTC<NodeABC> makeNumber(wstring_view text, std::size_t* breakPosition);
};

}  // namespace zolt::math::algexpr::detail
