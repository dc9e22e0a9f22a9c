#include "zolt/field/detail/act.h"
#include "zolt/field/detail/formula_copy.h"
#include "zolt/field/detail/word_bounds.h"
#include "zolt/field/formula_field.h"
#include "zolt/oss/quoted_text.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/operators/operator_list.h"
#include "zolt/ved/tree/row_view.h"

namespace zolt::field {

using namespace detail;
using namespace math::common;
using namespace math::ved;

namespace {

ScriptStepS stepOfPaste(ClipboardContentS const& content) {
  if (!content.bytes.empty()) return makeStep(SCRIPT_PASTE_BYTES, oss::toHexadecimal(content.bytes));
  if (!content.prefix.empty()) return makeStep(SCRIPT_PASTE_PREFIX, content.prefix);
  return makeStep(SCRIPT_PASTE_TEXT, content.plainText);
}

}  // namespace

ClipboardContentS FormulaFieldC::copy(SelectionS const& range) const {
  ReplacementS const completion = findCompletion();
  if (!completion.begin || !range.anchor || range.anchor == range.caret) {
    return copyRange(view_, range, options_);
  }
  FormulaCopyC copy(view_.crefRoot(), view_.crefOperatorList(), completion);
  return copyRange(view_, {copy.toCopy(range.anchor), copy.toCopy(range.caret)}, options_);
}

PasteE FormulaFieldC::paste(ClipboardContentS content, ReadErrorS* error) {
  ActC act(*this, recorded_ ? stepOfPaste(content) : ScriptStepS());
  if (isEditable()) act.dropMark();
  GroupC group(*this);
  completeName();
  wstring const text = content.plainText;
  PlacePathS const begin = pathOf(inOneRow(view_.getSelection()).anchor);
  ReadErrorS found;
  PasteE const result = pasteContent(view_, content, options_, readMathml_, &found);
  if (result != PASTE_REFUSED && recorded_) act.recordAs(stepOfPaste(content));
  bool const done = group.end(result != PASTE_REFUSED && separate(placeAt(view_.crefRoot(), begin), caret()));
  if (done) return result;
  act.restoreMark();
  if (found.cause == READ_ERROR_NONE) found.cause = findCause(u'x');
  refuse(text, std::move(found));
  if (error && isEditable()) *error = refusal_;
  return PASTE_REFUSED;
}

// ---- What must not join ----------------------------------------------------------------------------------

/// Keeps what is between two places, the caret among them, from joining names and numbers beside it.
bool FormulaFieldC::separate(PlaceS begin, PlaceS end) {
  if (!options_.separation || !begin || !end) return true;
  Node4C const& root = view_.crefRoot();
  PlacePathS const last = pathOf(end, COUNT_FROM_END);
  PlacePathS const place = pathOf(caret(), COUNT_FROM_END);
  GroupC group(*this);
  bool done = begin == end || insertSeparator(begin);
  PlacePathS const placeNow = pathOf(placeAt(root, place, COUNT_FROM_END));
  done = done && insertSeparator(placeAt(root, last, COUNT_FROM_END));
  return group.end(done && placeCaret(placeAt(root, placeNow)));
}

bool FormulaFieldC::insertSeparator(PlaceS place) {
  if (!place) return true;
  wstring const sign = separatorAt(place.node->crefText(), place.pos, view_.crefOperatorList());
  return sign.empty() || (placeCaret(place) && view_.insertText(sign));
}

}  // namespace zolt::field
