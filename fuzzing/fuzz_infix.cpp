// Reads infix text, as the grammar reads that of a row.

#include "fuzzing/bytes_text.h"
#include "fuzzing/trip.h"
#include "zolt/ved/convert/error_selection.h"

namespace zolt::fuzz {

using namespace math::ved;

std::string checkInfix(std::uint8_t const* data, std::size_t size) {
  prepare();
  wstring const text = toText(data, size);
  wstring const untouched = u"untouched";
  wstring prefix = untouched;
  unsigned int first = 0;
  unsigned int second = 0;
  auto cause = static_cast<ErrorCauseE>(-1);
  startMeter();
  bool const read = Node4C::convertInfixToPrefix(text, prefix, first, second, cause);
  if (auto fault = checkMeter(text.size()); !fault.empty()) return fault;
  if (!read) {
    if (prefix != untouched) return "a failure has left a result";
    if (cause == static_cast<ErrorCauseE>(-1)) return "a failure without a cause";
    return first <= second && second <= text.size() ? "" : "the fault is not in the text";
  }

  auto const expression = AlgebraicExpressionC::fromPrefixString(prefix);
  // Text between grave accents is passed on unread.
  bool const verbatim = text.find(Node4C::PREFIX_C) != wstring::npos;
  if (!expression) return verbatim ? "" : "the grammar wrote what does not read: " + toBytes(prefix);
  if (!verbatim && expression->toPrefixString() != prefix) return "the grammar wrote " + toBytes(prefix);
  if (auto fault = checkTexts(*expression); !fault.empty()) return fault;
  return checkTrips(expression, !verbatim);
}

}  // namespace zolt::fuzz
