// Reads sheet files.

#include "fuzzing/bytes_text.h"
#include "fuzzing/trip.h"
#include "zolt/field/formula_field.h"
#include "zolt/sheet/sheet_text.h"
#include "zolt/surfaces/recording/recording_graphics.h"

namespace zolt::fuzz {

using namespace field;
using namespace sheet;
using surfaces::RecordingGraphicsC;

namespace {

/// A formula that was read can be shown, and its expression is the tree's.
std::string checkFormula(FormulaFieldC& field, SheetLineS const& line) {
  if (!line.prefix.empty() && !AlgebraicExpressionC::fromPrefixString(line.prefix))
    return "a prefix text does not read";
  if (line.tree.empty()) return {};
  field.setExpression(nullptr);
  if (!field.setNotation(line.tree)) return "a tree does not read";
  auto const expression = field.getExpression();
  bool const same = line.prefix == (expression ? expression->toPrefixString() : wstring());
  return same ? "" : "the expression is not that of the tree";
}

/// Checks that the sheet, once written, reads back and is written the same again; `written` is the text.
std::string checkRoundTrip(SheetT const& sheet, wstring& written) {
  written = writeSheet(sheet);
  SheetT again;
  SheetErrorS error;
  if (!readSheet(written, again, error)) return "what was written does not read: " + toBytes(describe(error));
  if (writeSheet(again) != written) return "what was written reads as something else";
  return again.size() == sheet.size() ? "" : "lines are missing";
}

}  // namespace

std::string checkSheet(std::uint8_t const* data, std::size_t size) {
  prepare();
  wstring const text = toText(data, size);
  SheetT sheet(1);
  SheetErrorS error;
  startMeter();
  bool const read = readSheet(text, sheet, error);
  if (auto fault = checkMeter(text.size()); !fault.empty()) return fault;

  SheetT salvaged;
  bool const saved = salvageSheet(text, salvaged);
  wstring written;
  if (!read) {
    if (sheet.size() != 1) return "a refused sheet has left lines";
    if (error.cause == SHEET_ERROR_NONE || describe(error).empty()) return "refused without a word why";
    return saved ? checkRoundTrip(salvaged, written) : "";
  }
  if (auto fault = checkRoundTrip(sheet, written); !fault.empty()) return fault;
  if (!saved || writeSheet(salvaged) != written) return "salvaging a sound sheet changes it";
  FormulaFieldC field(new RecordingGraphicsC(RecordingGraphicsC::LOG_NOTHING));
  for (SheetLineS const& line : sheet) {
    if (line.kind != SHEET_FORMULA) continue;
    if (auto fault = checkFormula(field, line); !fault.empty()) return fault + ": " + toBytes(line.tree);
  }
  return {};
}

}  // namespace zolt::fuzz
