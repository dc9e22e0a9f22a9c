#pragma once

#include <cstdint>
#include <string_view>
#include <utility>
#include <vector>

#include "zolt/oss/wstring.h"

namespace zolt::web {

/// The two buffers through which all calls of a module take and answer texts and numbers.
class BuffersC {
 public:
  static BuffersC& get();

  /// The first units of the text buffer.
  oss::wstring takeText(std::int32_t length) const { return oss::wstring(viewText(0, length)); }
  /// `length` units from `from` on, as far as there are so many; valid until the next answer.
  std::u16string_view viewText(std::int32_t from, std::int32_t length) const;
  std::int32_t answer(std::u16string_view text);
  void answer(std::vector<std::int32_t> numbers) { numbers_ = std::move(numbers); }
  std::vector<std::int32_t> const& crefNumbers() const { return numbers_; }

  char16_t* roomForText(std::int32_t room);
  std::int32_t* roomForNumbers(std::int32_t room);
  std::int32_t getTextLength() const { return textLength_; }

 private:
  BuffersC() = default;

  std::vector<char16_t> text_;
  std::int32_t textLength_ = 0;
  std::vector<std::int32_t> numbers_;
};

inline BuffersC& buffers() { return BuffersC::get(); }

inline std::int32_t toNumber(unsigned long value) { return static_cast<std::int32_t>(value); }
inline unsigned long toCount(std::int32_t value) { return value < 0 ? 0 : static_cast<unsigned long>(value); }

}  // namespace zolt::web
