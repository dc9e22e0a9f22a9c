#include "zolt/field/detail/act.h"
#include "zolt/field/formula_field.h"
#include "zolt/oss/quoted_text.h"

namespace zolt::field {

namespace {

ScriptStepS stepOfPaste(ClipboardContentS const& content, ClipboardFormE form) {
  switch (form) {
    case CLIPBOARD_BYTES:
      return makeStep(SCRIPT_PASTE_BYTES, oss::toHexadecimal(content.bytes));
    case CLIPBOARD_PREFIX:
      return makeStep(SCRIPT_PASTE_PREFIX, content.prefix);
    case CLIPBOARD_PLAIN_TEXT:
      break;
  }
  return makeStep(SCRIPT_PASTE_TEXT, content.plainText);
}

ClipboardFormE firstForm(ClipboardContentS const& content) {
  if (!content.bytes.empty()) return CLIPBOARD_BYTES;
  return content.prefix.empty() ? CLIPBOARD_PLAIN_TEXT : CLIPBOARD_PREFIX;
}

}  // namespace

PasteE FormulaFieldC::paste(ClipboardContentS const& content, exchange::PlainTextErrorS* error) {
  ClipboardFormE form = firstForm(content);
  ClipboardFormE const expected = form;
  ActC act(*this, recorded_ ? stepOfPaste(content, form) : ScriptStepS());
  GroupC group(*this);
  completeName();
  PasteE const result = pasteContent(view_, content, options_, error, form);
  if (result != PASTE_REFUSED && form != expected && act.isRecorded()) {
    act.recordAs(stepOfPaste(content, form));
  }
  return group.end(result != PASTE_REFUSED) ? result : PASTE_REFUSED;
}

}  // namespace zolt::field
