// Reads plain text, as people write formulas.

#include "fuzzing/bytes_text.h"
#include "fuzzing/trip.h"
#include "zolt/exchange/plain_text.h"

namespace zolt::fuzz {

using namespace exchange;

namespace {

/// The text of `prefix` without the brackets that are only shown.
wstring withoutQuietBrackets(wstring const& prefix) {
  static wstring const quiet = u"_quietpos(";
  wstring result;
  std::vector<bool> dropped;
  for (std::size_t i = 0; i < prefix.size();) {
    bool const nameStarts = i == 0 || prefix[i - 1] == u'(' || prefix[i - 1] == u',';
    if (nameStarts && prefix.compare(i, quiet.size(), quiet) == 0) {
      dropped.push_back(true);
      i += quiet.size();
      continue;
    }
    char16_t const c = prefix[i++];
    if (c == u'(') dropped.push_back(false);
    if (c == u')') {
      bool const drop = dropped.back();
      dropped.pop_back();
      if (drop) continue;
    }
    result += c;
  }
  return result;
}

}  // namespace

std::string checkPlain(std::uint8_t const* data, std::size_t size) {
  prepare();
  wstring const text = toText(data, size);
  math::common::ReadErrorS error;
  startMeter();
  auto const expression = fromPlainText(text, nullptr, &error);
  if (auto fault = checkMeter(text.size()); !fault.empty()) return fault;
  if (static_cast<bool>(expression) != (error.cause == math::common::READ_ERROR_NONE)) {
    return "neither read nor refused";
  }
  if (!expression) {
    if (error.message.empty()) return "a fault without a sentence";
    return error.begin <= error.end && error.end <= text.size() ? "" : "the fault is not in the text";
  }

  if (auto fault = checkTexts(*expression); !fault.empty()) return fault;
  wstring const readable = toPlainText(*expression, PLAIN_TEXT_READABLE);
  auto const again = fromPlainText(readable, nullptr);
  if (!again) return "the readable text does not read: " + toBytes(readable);
  if (withoutQuietBrackets(again->toPrefixString()) != withoutQuietBrackets(expression->toPrefixString())) {
    return "the readable text means something else: " + toBytes(readable);
  }
  return checkTrips(expression, false);
}

}  // namespace zolt::fuzz
