#include "zolt/script/script_runner.h"

#include "zolt/oss/quoted_text.h"

namespace zolt::script {

using namespace field;
using math::algexpr::AlgebraicExpressionC;

ScriptRunnerC::ScriptRunnerC(FormulaFieldC& field) : field_(field) {
  field_.setClipboard(new MemoryClipboardC);
}

bool ScriptRunnerC::run(EventScriptT const& script) {
  bool taken = true;
  for (ScriptStepS const& step : script) taken = run(step);
  return taken;
}

bool ScriptRunnerC::run(ScriptStepS const& step) {
  switch (step.word) {
    case SCRIPT_CHAR:
      return field_.typeCharacter(static_cast<char16_t>(step.code & 0xFFFF));
    case SCRIPT_KEY:
      return field_.pressKey(step.code, step.shift);
    case SCRIPT_TYPE: {
      bool taken = true;
      for (char16_t const c : step.text) taken = field_.typeCharacter(c);
      return taken;
    }
    case SCRIPT_INSERT:
      return field_.insertText(step.text);
    case SCRIPT_OPERATOR:
      return field_.insertOperator(step.text);
    case SCRIPT_PEN_DOWN:
      return field_.pressPointer(step.x, step.y, step.clicks, step.shift);
    case SCRIPT_PEN_MOVE:
      return field_.movePointer(step.x, step.y);
    case SCRIPT_PEN_UP:
      return field_.releasePointer();
    case SCRIPT_COMMAND: {
      CommandS const* const command = findCommand(step.text);
      return command && field_.run(command->command);
    }
    case SCRIPT_COPY:
    case SCRIPT_CUT:
    case SCRIPT_PASTE:
    case SCRIPT_UNDO:
    case SCRIPT_REDO:
      for (auto const& [word, command] : script_commands) {
        if (word == step.word) return field_.run(command);
      }
      return false;
    case SCRIPT_PASTE_TEXT:
      return field_.paste({{}, {}, step.text}) != PASTE_REFUSED;
    case SCRIPT_PASTE_PREFIX:
      return field_.paste({{}, step.text, {}}) != PASTE_REFUSED;
    case SCRIPT_PASTE_BYTES: {
      oss::bytestring bytes;
      return oss::fromHexadecimal(step.text, bytes) && field_.paste({bytes, {}, {}}) != PASTE_REFUSED;
    }
    case SCRIPT_SHOW:
      return show(step);
    case SCRIPT_TREE:
      return field_.setNotation(step.text);
    case SCRIPT_SET:
      return set(step.text, step.on);
    case SCRIPT_NAMES:
      setNames(step.text);
      return true;
    case SCRIPT_LOCK:
      field_.setEditable(false);
      return true;
    case SCRIPT_UNLOCK:
      field_.setEditable(true);
      return true;
    case SCRIPT_PAINT:
      field_.refView().display(0, 0);
      return true;
    case SCRIPT_COMPLETE:
      field_.completeName();
      return true;
    case SCRIPT_SUGGEST:
      return field_.suggestNames();
    case SCRIPT_ACCEPT:
      return field_.acceptCompletion(step.code);
    case SCRIPT_ASK: {
      FormulaErrorS error;
      field_.getExpression(&error);
      return true;
    }
    case SCRIPT_MOVE:
      return field_.moveSelection(find(step, 0));
    case SCRIPT_SELECT:
      return field_.setSelection({find(step, 0), find(step, 1)});
  }
  return false;
}

StepReportS ScriptRunnerC::runAndReport(ScriptStepS const& step) {
  bool const taken = run(step);
  return {step, taken, field_.writeNotation()};
}

bool ScriptRunnerC::show(ScriptStepS const& step) {
  auto expression = AlgebraicExpressionC::fromPrefixString(step.text);
  if (!expression && !step.text.empty()) return false;
  return field_.setExpression(std::move(expression), step.code, step.format);
}

bool ScriptRunnerC::set(wstring const& option, bool on) {
  InputOptionsS options = field_.getOptions();
  if (!setOption(options, option, on)) return false;
  field_.setOptions(options);
  return true;
}

void ScriptRunnerC::setNames(wstring const& text) {
  InputOptionsS options = field_.getOptions();
  options.names.clear();
  for (std::size_t begin = 0; begin < text.size();) {
    std::size_t const end = std::min(text.find(u' ', begin), text.size());
    if (end > begin) options.names.push_back(text.substr(begin, end - begin));
    begin = end + 1;
  }
  field_.setOptions(options);
}

PlaceS ScriptRunnerC::find(ScriptStepS const& step, std::size_t number) const {
  if (number >= step.places.size()) return {};
  return placeAt(field_.crefView().crefRoot(), step.places[number]);
}

wstring writeReport(StepReportS const& report) {
  wstring line = writeScriptStep(report.step) + u" \u2192 " + report.notation;
  if (!report.taken) line += u" refused";
  return line;
}

}  // namespace zolt::script
