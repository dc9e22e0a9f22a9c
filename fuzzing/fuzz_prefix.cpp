// Reads, writes and shows prefix text.

#include "fuzzing/bytes_text.h"
#include "fuzzing/trip.h"

namespace zolt::fuzz {

using namespace math::algexpr;

std::string checkPrefix(std::uint8_t const* data, std::size_t size) {
  prepare();
  wstring const text = toText(data, size);
  math::common::ReadErrorS error;
  startMeter();
  auto const expression = AlgebraicExpressionC::fromPrefixString(text, nullptr, &error);
  if (auto fault = checkMeter(text.size()); !fault.empty()) return fault;
  if (static_cast<bool>(expression) != (error.cause == math::common::READ_ERROR_NONE))
    return "neither read nor refused";
  if (!expression) return error.end <= text.size() ? "" : "the fault is past the end of the text";

  if (auto fault = checkTexts(*expression); !fault.empty()) return fault;
  return checkTrips(expression, false);
}

}  // namespace zolt::fuzz
