#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

#include "zolt/oss/wstring.h"

namespace zolt::math::ved::detail {

/// Prefix text in the making. Parts are kept as slices of other texts, which must outlive the builder, and
/// joined once at the end: text written in front of what is there already would make long sums quadratic.
class PrefixBuilderC {
 public:
  using PartT = std::uint32_t;

  PrefixBuilderC();

  /// Text that is copied as it is: a name, a number, finished prefix text.
  PartT addLeaf(std::u16string_view text);
  /// The number -`digits`.
  PartT addNegativeNumber(std::u16string_view digits);
  /// A function that has no arguments yet.
  PartT addFunction(std::u16string_view name);
  /// Appends the function's next argument, a part that is no argument yet.
  void addArgument(PartT function, PartT argument);

  /// Whether the part is `crefText` and nothing else.
  bool isLeaf(PartT part) const { return parts_[part].kind == KIND_LEAF; }
  std::u16string_view crefText(PartT part) const { return parts_[part].text; }
  /// Makes a leaf that was added without arguments a function.
  void makeFunction(PartT leaf) { parts_[leaf].kind = KIND_FUNCTION; }
  void rename(PartT function, std::u16string_view name) { parts_[function].text = name; }

  /// Appends the text of `part` to `output`.
  void write(PartT part, oss::wstring& output) const;

 private:
  enum KindE : std::uint8_t { KIND_LEAF, KIND_NEGATIVE_NUMBER, KIND_FUNCTION };
  static constexpr PartT none = UINT32_MAX;

  struct PartS {
    std::u16string_view text;
    PartT firstArgument;
    PartT lastArgument;
    PartT next;  // argument of the same function
    KindE kind;
  };

  PartT add(KindE kind, std::u16string_view text);

  std::vector<PartS> parts_;
  std::size_t size_ = 0;  // characters that all parts take at most
};

}  // namespace zolt::math::ved::detail
