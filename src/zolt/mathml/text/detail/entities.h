#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "zolt/oss/wstring.h"

namespace zolt::mathml::detail {

using oss::wstring;

/// The characters of a named entity of HTML and MathML, "InvisibleTimes"; empty when there is none.
std::u16string_view findEntity(std::u16string_view name);

/// A stretch of XML with its named entities as characters.
class ExpandedC {
 public:
  /// False for an entity without a meaning; `faultBegin` and `faultEnd` are then its place.
  [[nodiscard]] bool expand(std::u16string_view text);
  wstring const& crefText() const { return text_; }
  /// Where a place of it is in the text that was given.
  std::size_t toOriginal(std::size_t position) const;
  std::size_t faultBegin = 0;
  std::size_t faultEnd = 0;

 private:
  struct ShiftS {
    std::size_t position;  // from here on
    std::size_t shift;     // so much shorter
  };

  wstring text_;
  std::vector<ShiftS> shifts_;
};

}  // namespace zolt::mathml::detail
