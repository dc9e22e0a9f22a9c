// Computes what is hostile: a few formulas of one session, the last one by one of the engine's operations.

#include <algorithm>
#include <chrono>

#include "fuzzing/bytes_text.h"
#include "fuzzing/step_count.h"
#include "fuzzing/trip.h"
#include "zolt/algexpr/cas_request.h"
#include "zolt/algexpr/cas_session.h"
#include "zolt/engines/basic/basic_engine.h"
#include "zolt/exchange/plain_text.h"

namespace zolt::fuzz {

using namespace math::algexpr;
using engine_basic::BasicEngineC;

namespace {

constexpr std::chrono::milliseconds deadline(10);
// No processor takes so many steps in a hundred times the deadline.
constexpr unsigned long steps_to_deadline = 2000000000;
// What has been stopped before it begins looks at its expression and its definitions once.
constexpr unsigned long steps_per_character = 2000;
constexpr unsigned long steps_for_nothing = 100000;

std::string check(CASRequestS const& request, CASResultS const& result) {
  bool const hasValue = result.outcome == CAS_VALUE;
  if (static_cast<bool>(result.value) != hasValue) return "an outcome that does not fit its value";
  if (hasValue != (result.cause == CAS_CAUSE_NONE)) return "an outcome that does not fit its cause";
  if (hasValue != describe(result).empty()) return "an outcome that does not fit its sentence";
  bool const isWhole = result.part == CASResultS::no_part;
  if (!isWhole && !findPart(*request.expression, result.part)) return "a part that is not there";
  if (!hasValue) return {};
  if (auto fault = checkTexts(*result.value); !fault.empty()) return fault;
  return checkTrips(result.value, false);
}

/// Checks that a computation that was stopped before it began ends at once.
std::string checkStopped(CASRequestS const& request, std::size_t size) {
  PointerTC<CASStopC> const stop(new CASStopC);
  stop->stop();
  unsigned long const start = countedSteps;
  BasicEngineC().compute(request, stop.get());
  unsigned long const steps = countedSteps - start;
  if (steps <= steps_for_nothing + steps_per_character * size) return {};
  return "takes " + std::to_string(steps) + " steps after it was stopped";
}

/// Checks that the exact value is the numeric one, as far as digits are certain.
std::string checkNumber(CASRequestS request, PointerTC<AlgebraicExpressionC> const& exact) {
  BasicEngineC const engine;
  request.operation = CAS_APPROXIMATE;
  CASResultS const direct = engine.compute(request);
  request.expression = exact;
  CASResultS const fromExact = engine.compute(request);
  unsigned const digits = std::min({direct.certainDigits, fromExact.certainDigits, request.digits});
  if (direct.outcome != CAS_VALUE || fromExact.outcome != CAS_VALUE || digits < 3) return {};
  wstring const a = exchange::toPlainText(*direct.value);
  wstring const b = exchange::toPlainText(*fromExact.value);
  request.operation = CAS_EVALUATE;
  std::string const tolerance = "10^(-" + std::to_string(digits - 2) + ")";
  request.expression = exchange::fromPlainText(
      u"abs((" + a + u")-(" + b + u"))<=abs(" + a + u")*" + toText(tolerance), nullptr);
  if (!request.expression) return {};
  CASResultS const compared = engine.compute(request);
  if (compared.outcome != CAS_VALUE || exchange::toPlainText(*compared.value) != u"false") return {};
  return "the exact value " + toBytes(exchange::toPlainText(*exact)) + " is " + toBytes(b) + " and not " +
         toBytes(a);
}

}  // namespace

// The first byte chooses the operation, the second one the angle and the digits; the rest is plain text.
std::string checkEngine(std::uint8_t const* data, std::size_t size) {
  prepare();
  if (size < 2) return {};
  CASSessionBC session(new BasicEngineC);
  CASRequestS request;
  request.angle = data[1] % 2 == 1 ? CAS_DEGREES : CAS_RADIANS;
  request.digits = 1U + data[1] / 2;
  request.variable = u"x";
  request.value = exchange::fromPlainText(u"y+1", nullptr);
  request.deadline = deadline;
  wstring const text = toText(data + 2, size - 2);
  std::size_t begin = 0;
  for (std::size_t end = 0; end != text.npos; begin = end + 1) {
    end = text.find(u';', begin);
    request.operation = static_cast<CASOperationE>(end == text.npos ? 1U << data[0] % 9 : CAS_EVALUATE);
    request.expression = exchange::fromPlainText(text.substr(begin, end - begin), nullptr);
    if (!request.expression) return {};
    request.definitions = session.getDefinitions();
    if (auto fault = checkStopped(request, size); !fault.empty()) return fault;
    unsigned long const start = countedSteps;
    CASResultS const result = session.compute(request);
    if (countedSteps - start > steps_to_deadline) return "goes on after its deadline";
    if (auto fault = check(request, result); !fault.empty()) return fault;
    if (!result.value || !result.definition.name.empty()) continue;
    auto const value = result.value;
    if (request.operation == CAS_EVALUATE || request.operation == CAS_SIMPLIFY ||
        request.operation == CAS_EXPAND || request.operation == CAS_FACTOR) {
      if (auto fault = checkNumber(request, value); !fault.empty()) return fault;
    }
  }
  return {};
}

}  // namespace zolt::fuzz
