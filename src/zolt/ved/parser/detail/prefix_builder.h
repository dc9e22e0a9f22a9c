#pragma once

#include <cstdint>
#include <deque>
#include <string_view>
#include <vector>

#include "zolt/oss/wstring.h"

namespace zolt::math::ved {
struct PrefixPartS;
}

namespace zolt::math::ved::detail {

/// Prefix text in the making. Parts are kept as slices of other texts, which must outlive the builder, and
/// joined once at the end: text written in front of what is there already would make long sums quadratic.
class PrefixBuilderC {
 public:
  using PartT = std::uint32_t;

  /// Text that is copied as it is: a name, a number, finished prefix text.
  PartT addLeaf(std::u16string_view text, unsigned int start, unsigned int end);
  /// The number -`digits`, of a function that is the sign and its operand.
  PartT addNegativeNumber(std::u16string_view digits, PartT sign, PartT operand);
  /// A function that has no arguments yet.
  PartT addFunction(std::u16string_view name, unsigned int start, unsigned int end);
  /// Appends the function's next argument, a part that is no argument yet.
  void addArgument(PartT function, PartT argument);

  /// Whether the part is `crefText` and nothing else.
  bool isLeaf(PartT part) const { return parts_[part].kind == KIND_LEAF; }
  std::u16string_view crefText(PartT part) const { return parts_[part].text; }
  /// Makes a leaf that was added without arguments a function.
  void makeFunction(PartT leaf) { parts_[leaf].kind = KIND_FUNCTION; }
  /// Gives a function another name, which stands for its next argument, too.
  void rename(PartT function, std::u16string_view name, PartT argument) {
    parts_[function].text = name;
    parts_[function].end = parts_[argument].end;
  }
  /// More characters belong to the part.
  void extend(PartT part, unsigned int end) { parts_[part].end = end; }

  /// Appends the text of `part` to `output` and, unless `written` is null, what is in it from where to that.
  void write(PartT part, oss::wstring& output, std::vector<PrefixPartS>* written) const;

 private:
  enum KindE : std::uint8_t { KIND_LEAF, KIND_NEGATIVE_NUMBER, KIND_FUNCTION };
  static constexpr PartT none = UINT32_MAX;

  struct PartS {
    std::u16string_view text;
    PartT firstArgument;
    PartT lastArgument;
    PartT next;  // argument of the same function
    std::uint32_t start;
    std::uint32_t end;
    KindE kind;
  };

  PartT add(KindE kind, std::u16string_view text, unsigned int start, unsigned int end);

  std::deque<PartS> parts_;  // which takes no more room than it has parts
  std::size_t size_ = 0;     // characters that all parts take at most
};

}  // namespace zolt::math::ved::detail
