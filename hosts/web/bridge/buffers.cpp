#include "hosts/web/bridge/buffers.h"

#include <algorithm>

#include "hosts/web/bridge/bridge_buffers.h"

namespace zolt::web {

namespace {

/// A buffer of more units than this is given back when little of it is used.
constexpr std::size_t largest_kept = 1 << 16;

template <class VectorT>
auto* makeRoom(VectorT& buffer, std::int32_t room) {
  std::size_t const wanted = toCount(room);
  if (wanted > buffer.size()) buffer.resize(wanted);
  return buffer.data();
}

}  // namespace

BuffersC& BuffersC::get() {
  static BuffersC& buffers = *new BuffersC;
  return buffers;
}

std::u16string_view BuffersC::viewText(std::int32_t from, std::int32_t length) const {
  std::u16string_view const all(text_.data(), text_.size());
  return all.substr(std::min<std::size_t>(toCount(from), all.size()), toCount(length));
}

std::int32_t BuffersC::answer(std::u16string_view text) {
  if (text_.size() > largest_kept && text.size() <= largest_kept) std::vector<char16_t>().swap(text_);
  if (text_.size() < text.size()) text_.resize(text.size());
  std::copy(text.begin(), text.end(), text_.begin());
  return textLength_ = toNumber(text.size());
}

char16_t* BuffersC::roomForText(std::int32_t room) { return makeRoom(text_, room); }
std::int32_t* BuffersC::roomForNumbers(std::int32_t room) { return makeRoom(numbers_, room); }

}  // namespace zolt::web

using zolt::web::buffers;

char16_t* zolt_text(std::int32_t room) { return buffers().roomForText(room); }
std::int32_t* zolt_numbers(std::int32_t room) { return buffers().roomForNumbers(room); }
std::int32_t zolt_text_length(void) { return buffers().getTextLength(); }
