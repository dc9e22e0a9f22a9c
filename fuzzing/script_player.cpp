#include "fuzzing/script_player.h"
#include "zolt/oss/quoted_text.h"

namespace zolt::fuzz {

using namespace field;
using math::algexpr::AlgebraicExpressionC;
using namespace math::ved;

bool ScriptPlayerC::play(EventScriptT const& script) {
  bool result = true;
  for (ScriptStepS const& step : script) result = play(step);
  return result;
}

bool ScriptPlayerC::play(ScriptStepS const& step) {
  switch (step.word) {
    case SCRIPT_CHAR:
      return character(step.code);
    case SCRIPT_KEY:
      return key(step.code, step.shift);
    case SCRIPT_TYPE: {
      bool result = true;
      for (char16_t c : step.text) result = character(c);
      return result;
    }
    case SCRIPT_INSERT:
    case SCRIPT_OPERATOR:
      return view_.insertText(step.text);
    case SCRIPT_PEN_DOWN:
      return pointer(EVENT_PEN_DOWN, step);
    case SCRIPT_PEN_MOVE:
      return pointer(EVENT_PEN_MOVE, step);
    case SCRIPT_PEN_UP:
      return pointer(EVENT_PEN_UP, step);
    case SCRIPT_COPY:
      copied_ = view_.copy(clipboard_);
      return static_cast<bool>(copied_);
    case SCRIPT_CUT:
      copied_ = view_.cut(clipboard_);
      return static_cast<bool>(copied_);
    case SCRIPT_PASTE:
      view_.paste(clipboard_);
      return true;
    case SCRIPT_PASTE_PREFIX:
      view_.paste(AlgebraicExpressionC::fromPrefixString(step.text));
      return true;
    case SCRIPT_PASTE_BYTES: {
      oss::bytestring bytes;
      return oss::fromHexadecimal(step.text, bytes) && view_.paste(bytes);
    }
    case SCRIPT_UNDO:
      return view_.undo();
    case SCRIPT_REDO:
      return view_.redo();
    case SCRIPT_SHOW:
      view_.setAlgebraicExpression(AlgebraicExpressionC::fromPrefixString(step.text), nullptr, step.code,
                                   step.format);
      return true;
    case SCRIPT_LOCK:
      return view_.setEditable(false);
    case SCRIPT_UNLOCK:
      return view_.setEditable(true);
    case SCRIPT_PAINT:
      view_.display(0, 0);
      return true;
    case SCRIPT_COMMAND:
    case SCRIPT_PASTE_TEXT:
    case SCRIPT_TREE:
    case SCRIPT_SET:
    case SCRIPT_NAMES:
    case SCRIPT_COMPLETE:
    case SCRIPT_ASK:
    case SCRIPT_SUGGEST:
    case SCRIPT_ACCEPT:
    case SCRIPT_MOVE:
    case SCRIPT_SELECT:
      return false;
  }
  return false;
}

bool ScriptPlayerC::key(unsigned long code, bool shift) {
  return view_.addEvent(EVENT_KEY, code, shift, false, false, 0, 0);
}

bool ScriptPlayerC::character(unsigned long code) {
  return view_.addEvent(EVENT_CHAR, code, false, false, false, 0, 0);
}

bool ScriptPlayerC::pointer(EventE event, ScriptStepS const& step) {
  return view_.addEvent(event, 0, false, false, false, step.x, step.y);
}

}  // namespace zolt::fuzz
