#pragma once

#include <cstdint>
#include <memory>
#include <utility>
#include <vector>

#include "hosts/web/bridge/bridge.h"
#include "hosts/web/bridge/buffers.h"
#include "hosts/web/bridge/display_list.h"
#include "hosts/web/bridge/memory_reserve.h"
#include "zolt/field/caret_speech.h"
#include "zolt/field/formula_field.h"
#include "zolt/mathml/mathml_tree.h"

// Internal to the bridge: what its calls share.

namespace zolt::web {

using oss::PointerTC;
using oss::wstring;
using ExpressionT = PointerTC<math::algexpr::AlgebraicExpressionC>;

/// A field of the page and what the page wants it to be.
struct FieldS {
  explicit FieldS(PointerTC<field::ClipboardABC> const& clipboard);

  PointerTC<DisplayListC> surface;
  field::FormulaFieldC field;
  field::CaretSpeechC speech;
  bool announcesEdit = false;  // the formula has changed since the last announcement
  std::size_t weight = 0;      // at least as many characters as the formula has
  std::int32_t revision = 0;
  std::int32_t moves = 0;
  math::ved::SelectionS seen;  // only to be compared with, since its nodes may be gone
  FrameS frame;
  FrameS handedOver;  // the frame of the last call for changes
  std::vector<std::int32_t> changes;
  unsigned long precision = 0;
  math::algexpr::NumberDisplayFormatE format = math::algexpr::NUMBER_FORMAT_AUTOMATIC;
  // What was set last, and what came of it, so that setting it once more costs nothing.
  wstring setText;
  std::int32_t setForm = -1;
  std::int32_t setRevision = -1;
};

/// The clipboard of the module, and what the last copy or paste is about.
class ModuleC {
 public:
  static ModuleC& get();

  /// Null when there is none of that number. Fills the table of operators, if that has not been done.
  FieldS* find(std::int32_t number);
  /// The same for what needs no operators, so that a first field is there before the table.
  FieldS* findShown(std::int32_t number) const;
  std::int32_t open();
  void close(std::int32_t number);

  PointerTC<field::MemoryClipboardC> const& getClipboard() const { return clipboard_; }
  PointerTC<surfaces::TypesetterC> const& getTypesetter() const { return typesetter_; }
  PointerTC<surfaces::TypesetterC> const& getPowersTypesetter();
  /// A field for questions that are about none of the page's.
  FieldS& refScratch();

  /// Chooses the operators; false when they have been chosen.
  bool start(bool extended);
  /// Fills the table of operators with those that were chosen, once.
  void prepare();
  void noteShortage() { hadShortage_ = true; }
  bool takeShortage() { return std::exchange(hadShortage_, false); }

 private:
  ModuleC();

  std::vector<std::unique_ptr<FieldS>> fields_;  // the number of a field is its place here, from 1 on
  std::unique_ptr<FieldS> scratch_;
  PointerTC<field::MemoryClipboardC> clipboard_;
  PointerTC<surfaces::TypesetterC> typesetter_, powersTypesetter_;  // the second when it is needed
  enum {
    OPERATORS_NOT_CHOSEN,
    OPERATORS_STANDARD,
    OPERATORS_EXTENDED,
    OPERATORS_THERE
  } operators_ = OPERATORS_NOT_CHOSEN;
  bool hadShortage_ = false;
};

inline ModuleC& module() { return ModuleC::get(); }

/// Notes what an act has changed, or takes it back when memory ran out; true when it stays. `position` is
/// where the history was before.
bool settle(FieldS& field, unsigned long position);

/// Whether a call may begin that works on so many characters. False, with the shortage noted, when there is
/// not enough memory for what that may take.
bool mayBegin(std::size_t characters = 0);

/// Runs `act`, which brings in so many characters, on the field; false, when it is null.
template <class ActT>
std::int32_t change(FieldS* field, ActT act, std::int32_t characters = 0) {
  if (!field) return 0;
  std::size_t const judged = field->field.getConstraints() ? field->weight : 0;
  if (!mayBegin(toCount(characters) + judged)) return 0;
  field->weight += toCount(characters) + 1;
  unsigned long const position = field->field.crefView().getHistoryPosition();
  bool const done = act(*field);
  return settle(*field, position) && done ? 1 : 0;
}
template <class ActT>
std::int32_t withField(std::int32_t number, ActT act, std::int32_t characters = 0) {
  return change(module().find(number), act, characters);
}

/// Asks the field, which stays as it is; `none` when there is no such field.
template <class AskT>
std::int32_t askField(std::int32_t number, std::int32_t none, AskT ask) {
  FieldS* const field = module().find(number);
  return field ? ask(*field) : none;
}
/// The same for what goes through the whole formula.
template <class AskT>
std::int32_t askAll(std::int32_t number, std::int32_t none, AskT ask) {
  return askField(number, none, [&](FieldS& field) { return mayBegin(field.weight) ? ask(field) : none; });
}

/// Answers with a fault of a formula or of a text; returns its cause.
std::int32_t answerError(math::common::ReadErrorS const& error, math::ved::RectangleS const& box = {});
/// The expression in that form; -1 when it has none.
std::int32_t answerExpression(ExpressionT const& expression, std::int32_t form, FieldS const& field);
/// Reads MathML from the buffers.
[[nodiscard]] ExpressionT readMathml(std::int32_t length, std::int32_t numbers,
                                     math::common::ReadErrorS& error);

void append(std::vector<std::int32_t>& words, math::ved::RectangleS const& box);

}  // namespace zolt::web
