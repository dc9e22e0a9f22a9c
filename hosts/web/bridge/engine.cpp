#include "hosts/web/bridge/engine.h"

#include <algorithm>

#include "hosts/web/bridge/buffers.h"
#include "zolt/algexpr/cas_request.h"
#include "zolt/engines/basic/basic_engine.h"

using namespace zolt::web;
using namespace zolt::math::algexpr;

namespace {

PointerTC<CASDefinitionsC>& definitions() {
  static PointerTC<CASDefinitionsC>& known = *new PointerTC<CASDefinitionsC>(new CASDefinitionsC);
  return known;
}

PointerTC<AlgebraicExpressionC> readPart(std::int32_t from, std::int32_t length) {
  return AlgebraicExpressionC::fromPrefixString(wstring(buffers().viewText(from, length)));
}

std::int32_t tell(ZoltOutcomeE outcome, wstring const& text, std::int32_t digits, std::int32_t part) {
  buffers().answer({digits, part});
  buffers().answer(text);
  return outcome;
}

}  // namespace

std::int32_t zolt_engine_version(void) { return ZOLT_ENGINE_VERSION; }

std::int32_t zolt_compute(std::int32_t operation, std::int32_t expression, std::int32_t variable,
                          std::int32_t value, std::int32_t digits, std::int32_t degrees,
                          std::int32_t milliseconds) {
  CASRequestS request;
  request.operation = static_cast<CASOperationE>(operation);
  request.expression = readPart(0, expression);
  request.variable = buffers().viewText(expression, variable);
  if (value > 0) request.value = readPart(expression + variable, value);
  if (!request.expression || (value > 0 && !request.value)) return tell(ZOLT_MALFORMED, {}, -1, -1);
  request.definitions = definitions();
  request.angle = degrees != 0 ? CAS_DEGREES : CAS_RADIANS;
  request.digits = static_cast<unsigned>(std::clamp(digits, 1, 1000));
  request.deadline = std::chrono::milliseconds(std::max(milliseconds, 1));
  CASResultS const result = zolt::engine_basic::BasicEngineC().compute(request);
  if (!result.definition.name.empty()) definitions() = definitions()->with(result.definition);
  if (result.outcome == CAS_VALUE && result.value) {
    bool const isExact = result.certainDigits == CASResultS::all_digits;
    return tell(ZOLT_VALUE, result.value->toPrefixString(), isExact ? -1 : toNumber(result.certainDigits),
                -1);
  }
  return tell(result.outcome == CAS_ERROR ? ZOLT_NO_VALUE : ZOLT_UNEVALUATED, describe(result), -1,
              result.part == CASResultS::no_part ? -1 : toNumber(result.part));
}

void zolt_forget(void) { definitions() = new CASDefinitionsC; }
