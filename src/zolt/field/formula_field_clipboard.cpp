#include "zolt/field/detail/act.h"
#include "zolt/field/formula_field.h"
#include "zolt/oss/quoted_text.h"

namespace zolt::field {

namespace {

ScriptStepS stepOfPaste(ClipboardContentS const& content) {
  if (!content.bytes.empty()) return makeStep(SCRIPT_PASTE_BYTES, oss::toHexadecimal(content.bytes));
  if (!content.prefix.empty()) return makeStep(SCRIPT_PASTE_PREFIX, content.prefix);
  return makeStep(SCRIPT_PASTE_TEXT, content.plainText);
}

}  // namespace

PasteE FormulaFieldC::paste(ClipboardContentS content, exchange::PlainTextErrorS* error) {
  ActC act(*this, recorded_ ? stepOfPaste(content) : ScriptStepS());
  GroupC group(*this);
  completeName();
  PasteE const result = pasteContent(view_, content, options_, error);
  if (result != PASTE_REFUSED && act.isRecorded()) act.recordAs(stepOfPaste(content));
  return group.end(result != PASTE_REFUSED) ? result : PASTE_REFUSED;
}

}  // namespace zolt::field
