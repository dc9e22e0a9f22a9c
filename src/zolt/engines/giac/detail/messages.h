#pragma once

#include <map>

#include "zolt/algexpr/cas_request.h"

namespace zolt::engine_giac::detail {

// What the client and the worker send each other: one text in prefix notation each way, before it its length
// as 32 bits in the machine's order, both in 16-bit units.

using namespace math::algexpr;

constexpr std::uint32_t most_message_units = 32U << 20;

/// A request with the definitions that it needs.
struct QuestionS {
  CASOperationE operation = CAS_EVALUATE;
  PointerTC<NodeABC> expression;
  wstring variable;  ///< empty: none
  std::map<wstring, CASDefinitionS> definitions;
  CASAngleE angle = CAS_RADIANS;
  unsigned digits = 15;
  std::chrono::milliseconds deadline{2000};
};

/// A result; a null value means none.
struct AnswerS {
  PointerTC<NodeABC> value;
  CASCauseE cause = CAS_CAUSE_NEEDS_ALGEBRA;
  unsigned digits = CASResultS::all_digits;
  unsigned long part = CASResultS::no_part;
  wstring subject = {};
};

wstring writeQuestion(QuestionS const& question);
[[nodiscard]] bool readQuestion(wstring const& message, QuestionS& question);
wstring writeAnswer(AnswerS const& answer);
[[nodiscard]] bool readAnswer(wstring const& message, AnswerS& answer);

}  // namespace zolt::engine_giac::detail
