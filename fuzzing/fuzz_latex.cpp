// Reads LaTeX, as from documents and other programs.

#include "fuzzing/bytes_text.h"
#include "fuzzing/trip.h"
#include "zolt/exchange/latex.h"

namespace zolt::fuzz {

std::string checkLatex(std::uint8_t const* data, std::size_t size) {
  prepare();
  wstring const text = toText(data, size);
  math::common::ReadErrorS error;
  startMeter();
  auto const expression = exchange::fromLatex(text, nullptr, &error);
  if (auto fault = checkMeter(text.size()); !fault.empty()) return fault;
  if (static_cast<bool>(expression) != (error.cause == math::common::READ_ERROR_NONE)) {
    return "neither read nor refused";
  }
  if (expression) return checkTexts(*expression);
  if (error.message.empty()) return "a fault without a sentence";
  return error.begin <= error.end && error.end <= text.size() ? "" : "the fault is not in the text";
}

}  // namespace zolt::fuzz
