#pragma once

#include "zolt/script/event_script.h"
#include "zolt/ved/view/view.h"

namespace zolt::fuzz {

using field::EventScriptT;
using field::ScriptStepS;
using field::ScriptWordE;
using oss::wstring;
using script::readEventScript;
using script::writeEventScript;

/// Plays scripts on a bare view with its own clipboard. Steps that need a field around the view are refused.
class ScriptPlayerC {
 public:
  explicit ScriptPlayerC(math::ved::ViewZNT4C& view) : view_(view) {}

  /// True when the view took the (last) event, and for steps without an answer.
  bool play(ScriptStepS const& step);
  bool play(EventScriptT const& script);

  oss::bytestring const& crefClipboard() const { return clipboard_; }
  void setClipboard(oss::bytestring bytes) { clipboard_ = std::move(bytes); }
  /// The expression that the last `copy` or `cut` produced, which may be null.
  oss::PointerTC<math::algexpr::AlgebraicExpressionC> getCopied() const { return copied_; }

 private:
  bool key(unsigned long code, bool shift);
  bool character(unsigned long code);
  bool pointer(math::ved::EventE event, ScriptStepS const& step);

  math::ved::ViewZNT4C& view_;
  oss::bytestring clipboard_;
  oss::PointerTC<math::algexpr::AlgebraicExpressionC> copied_;
};

}  // namespace zolt::fuzz
