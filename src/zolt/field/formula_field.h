#pragma once

#include <memory>
#include <optional>
#include <vector>

#include "zolt/algexpr/constraints.h"
#include "zolt/field/auto_replace.h"
#include "zolt/field/caret_motion.h"
#include "zolt/field/clipboard.h"
#include "zolt/field/commands.h"
#include "zolt/field/completion.h"
#include "zolt/field/formula_error.h"
#include "zolt/field/input_options.h"
#include "zolt/field/judged_view.h"
#include "zolt/field/last_input.h"
#include "zolt/field/script_step.h"
#include "zolt/ved/geometry/graphics.h"
#include "zolt/ved/tree/tree_path.h"

namespace zolt::field {

using math::common::ReadErrorS;
using math::ved::PlaceS;
using math::ved::SelectionS;
using oss::PointerTC;
using oss::wstring;

namespace detail {
class DecimalCommaGraphicsC;
struct BoundsStepS;
struct ConstructReplacementS;
}  // namespace detail

/// A formula field without a window: a view together with what people expect of a formula field on any
/// toolkit. A host translates its events into the calls below and paints the view and the rectangles.
///
/// Calls that take input return whether it was accepted; refused input changes nothing. Each action of a
/// person is one step to undo, and so is a run of typed characters. All lengths are in the surface's units.
/// A const member makes no visible change. A field is used by one thread at a time. When memory runs out
/// (`std::bad_alloc`, from any call), formula, caret, selection and history are as before the call; what the
/// call had recorded stays in the recording.
class FormulaFieldC {
 public:
  /// Keeps `surface` for its lifetime; it must not be null.
  explicit FormulaFieldC(PointerTC<math::ved::GraphicsABC> surface);
  ~FormulaFieldC();
  FormulaFieldC(FormulaFieldC const&) = delete;
  FormulaFieldC& operator=(FormulaFieldC const&) = delete;

  /// For painting, sizes and reading; input goes to the field.
  math::ved::ViewZNT4C& refView() { return view_; }
  math::ved::ViewZNT4C const& crefView() const { return view_; }

  InputOptionsS const& getOptions() const { return options_; }
  void setOptions(InputOptionsS const& options);
  bool isEditable() const { return view_.isEditable(); }
  void setEditable(bool editable);

  // ---- Expression (formula_field.cpp) -------------------------------------------------------------------
  /// Shows it as `ViewZNT4C::setAlgebraicExpression` does, all of it selected, with a new history. The
  /// constraints stay. False, with nothing changed, when they reject it; they accept null.
  bool setExpression(PointerTC<math::algexpr::AlgebraicExpressionC> expression, unsigned long precision = 0,
                     math::algexpr::NumberDisplayFormatE format = math::algexpr::NUMBER_FORMAT_AUTOMATIC);
  /// From now on, whatever the formula is handed out as after an edit must satisfy them (null: none), implied
  /// products included. The formula stays. They hold until they are set again.
  void setConstraints(PointerTC<math::algexpr::ConstraintsBC> constraints);
  PointerTC<math::algexpr::ConstraintsBC> const& getConstraints() const { return view_.getConstraints(); }
  /// Why `setExpression` refuses it: what the constraints say, or that it is not allowed.
  wstring explainRefusal(math::algexpr::AlgebraicExpressionC const& expression) const;
  /// Empties the formula for the program: also when it is locked, and whatever the constraints are. One step
  /// to undo where a person could do it, else with a new history.
  void clear();
  /// Shows plain text as a formula. False, with nothing changed, when the text is not a formula or the
  /// constraints reject it; then `error` (may be null) says why.
  [[nodiscard]] bool setPlainText(wstring const& text, ReadErrorS* error = nullptr);
  /// The expression that is shown, locked or not, implied products included, with nothing changed: a name
  /// that was just typed counts as the letter that it will be. Costs one conversion of the formula, and next
  /// to nothing when the formula is what it was at the last call.
  [[nodiscard]] FormulaDiagnosisS diagnose() const;
  /// Completes a name that was just typed, and diagnoses. Null when the formula is incomplete or wrong; with
  /// `error` (may be null) the faulty part is then selected; what is typed or pasted next comes after it.
  PointerTC<math::algexpr::AlgebraicExpressionC> getExpression(FormulaErrorS* error = nullptr);
  /// Selects what a node of `getExpression` came from: the node with this number in the order of the prefix
  /// text, every node before its children, as `CASResultS::part` counts. False, with nothing changed, when
  /// there is none, or the formula is no expression.
  bool selectPart(unsigned long number);
  /// The formula as a tree with caret and selection, for dumps and tests.
  wstring writeNotation() const;
  /// The formula as a tree to be kept: a name that was just typed counts as the letter that it will be.
  wstring writeTree() const;
  /// Shows a tree with its caret and selection, as one edit. False, with nothing changed, when the text
  /// cannot be read or is not the tree of a formula.
  [[nodiscard]] bool setNotation(wstring const& notation);

  // ---- Input (formula_field_input.cpp) --------------------------------------------------------------------
  // What they refuse, `takeRefusal` explains.
  bool typeCharacter(char16_t c);
  /// Types a text as one step. One longer than `limits::max_typed_text` is inserted without replacements.
  bool insertText(wstring const& text);
  /// Shows text that an input method composes at the caret, as part of the layout, with the caret in it after
  /// `caret` characters; an empty text takes it away. It is in no expression, copy, history or recording:
  /// `insertText` commits, and every other input cancels it. False while the field is locked.
  bool compose(wstring const& text, unsigned long caret);
  bool insertOperator(wstring const& name);  ///< as a palette button does
  /// True once after the last call that takes text, an operator or what is pasted was refused, unless the
  /// field is locked; `refusal` then says why.
  bool takeRefusal(RefusalS& refusal);
  /// Turns the name that was just typed into its letter, as when the field loses the focus, and ends a
  /// completion: a command that is there in full is accepted, and the beginning of one is dropped.
  void completeName();
  /// Inserts the operator that is bound to the key, or runs the command of a usual editing key.
  bool pressKey(unsigned long code, bool shift);

  // ---- Completion (formula_field_completion.cpp) ----------------------------------------------------------
  /// The list that a typed backslash opens, for the host to show. While it is open, typed characters and the
  /// commands `up`, `down`, `next-slot` (which accepts), `drop-selection` and `delete-left` go to it.
  CompletionC const& crefCompletion() const { return completion_; }
  /// Opens a list for the letters just typed before the caret, which a host asks for after a pause in typing.
  /// False when there are fewer than two letters, or none that a name begins with.
  bool suggestNames();
  /// Inserts an entry of the list, as one step to undo. False, with the list still open, when it is refused.
  bool acceptCompletion(std::size_t number);
  /// The box of what is being completed, to place the list at.
  math::ved::RectangleS getCompletionRectangle() const;

  // ---- Pointer (formula_field_pointer.cpp) ----------------------------------------------------------------
  /// `clicks` 2 selects the item at the pointer, 3 its row, 4 everything. `extend` keeps the selection's
  /// other end, as with Shift held.
  bool pressPointer(long x, long y, unsigned clicks = 1, bool extend = false);
  bool movePointer(long x, long y);
  bool releasePointer();
  /// Moves the selected part to another place, a block of cells into those from the place's cell on. False,
  /// with nothing changed, when nothing is selected or the place is in the selection.
  bool moveSelection(PlaceS target);
  /// Sets the selection, or the caret. False, with nothing changed, when a place is not in the formula.
  bool setSelection(SelectionS selection);

  // ---- Commands (formula_field_commands.cpp) --------------------------------------------------------------
  /// Whether `run` would have an effect now.
  bool isEnabled(CommandE command) const;
  bool run(CommandE command);

  // ---- Clipboard (formula_field_clipboard.cpp) ------------------------------------------------------------
  /// The clipboard that the commands write and read; at first it is a memory of the field. It must not be
  /// null.
  void setClipboard(PointerTC<ClipboardABC> clipboard) { clipboard_ = std::move(clipboard); }
  /// The selection's content, for hosts that receive the clipboard with an event.
  ClipboardContentS copy() const { return copy(view_.getSelection()); }
  /// The content between two places; a name that was just typed counts as the letter that it will be.
  ClipboardContentS copy(SelectionS const& range) const;
  PasteE paste(ClipboardContentS content, ReadErrorS* error = nullptr);
  /// From now on MathML is pasted, too: as such, in pages and in plain text. Null: it is not.
  void setMathmlReader(MathmlReaderT readMathml) { readMathml_ = readMathml; }

  // ---- For painting (formula_field.cpp) -------------------------------------------------------------------
  /// The caret's box; inside the text that is being composed, if there is any.
  math::ved::RectangleS getCaretRectangle() const;
  /// The box that the caret would have at the other end of the selection; the caret's where nothing is
  /// selected.
  math::ved::RectangleS getAnchorRectangle() const { return view_.getRectangle({anchor(), anchor()}); }
  /// The box around a part of the text that is being composed, for underlines.
  math::ved::RectangleS getComposedRectangle(unsigned long begin, unsigned long end) const;
  /// The place nearest to a point, where a press of the pointer would put the caret.
  PlaceS findPlace(long x, long y) const { return view_.findPlace(x, y); }
  /// The selection as bands from left to right, one for each part with a height of its own; empty when
  /// nothing is selected. `ViewZNT4C::getCurrentNodeRectangle` is the box around them.
  std::vector<math::ved::RectangleS> getSelectionRectangles() const;
  /// True once after input has moved the caret; `box` is then what the host should scroll into view.
  bool takeRevealRequest(math::ved::RectangleS& box);
  /// True when the formula differs from what it was at the last call; the first call compares with the empty
  /// formula. A moved caret or selection is not a change, nor is one that was undone since. The cost follows
  /// the size of the change.
  bool takeChange();

  // ---- Recording ------------------------------------------------------------------------------------------
  /// Appends to `script` the steps that give a new field the options of this one and, from now on, every step
  /// that changes this field, except the constraints of expressions. The caller owns `script` and keeps it
  /// alive until it passes null. The script can be played on a field with the same formula, caret and
  /// selection.
  void record(EventScriptT* script);

 private:
  class ActC;
  class GroupC;

  /// The last diagnosis and what it depended on.
  struct DiagnosedS;

  // formula_field.cpp
  PlaceS caret() const { return view_.getSelection().caret; }
  PlaceS anchor() const;  ///< the caret when nothing is selected
  bool placeCaret(PlaceS place) { return select({place, place}); }
  bool select(SelectionS const& selection) { return view_.selectRange(selection); }
  bool deleteRange(PlaceS begin, PlaceS end);
  math::ved::SelectionPathS saveSelection() const { return pathOf(SelectionS{anchor(), caret()}); }
  void restoreSelection(math::ved::SelectionPathS const& saved);
  void recordOptions(InputOptionsS const& from, InputOptionsS const& to);

  // formula_field_input.cpp
  bool actOn(InputDecisionS const& decision);
  bool endTableRow(LastInputS const& last);
  void mergeDoubled(char16_t sign);
  void closeGroup();
  void separateByBar(char16_t closing);
  bool actByRule(InputDecisionS const& decision);
  bool insert(InputDecisionS const& decision);
  bool insertFraction();
  bool moveWordOut();
  PlaceS findPower() const;
  bool runOperator(wstring const& name);
  bool selectOperand(PlaceS begin);
  bool bracketPower();
  bool makeBase();
  bool raiseSelection(InputDecisionS const& decision);
  bool typeExponent(InputDecisionS const& decision);
  bool bracketSelection();
  bool ungroup(PlaceS after);
  bool regroup();
  ReplacementS findCompletion() const;
  void replaceCompleted(InputDecisionS const& decision, char16_t c);
  bool replaceCalculus(InputDecisionS const& decision, char16_t c);
  void replaceEndedName(wstring const& by);
  bool replaceText(ReplacementS const& replacement);
  bool replaceCall(detail::ConstructReplacementS const& replacement);
  bool refuse(wstring const& text, ReadErrorS error);
  math::common::ReadErrorE findCause(char16_t typed) const;

  // formula_field_clipboard.cpp
  bool separate(PlaceS begin, PlaceS end);
  bool insertSeparator(PlaceS place);

  // formula_field_completion.cpp
  void endComposition();
  wstring pendingCommand() const;
  bool showComposed();
  void refreshNames();
  bool accept(std::size_t number);
  bool insertEntry(PaletteEntryS const& entry, wstring const& name);
  bool insertEmpty(PaletteEntryS const& entry, math::ved::OperatorBC const& op);
  void leaveCompletion();
  void cancelCompletion();
  /// What the completion does with a typed character; no value: it is typed as usual.
  std::optional<bool> typeInCompletion(char16_t typed);
  std::optional<bool> typeInCommand(char16_t typed);
  bool insertIndexed(math::ved::OperatorBC const& op);
  bool openBraces(TypedGroupS group);
  bool completeFunction(wstring const& name);
  wstring gapBeforeName() const;
  InputOptionsS nameOptions() const;
  void closeIndex();
  void strikeLetter();
  bool closeBraces(char16_t sign);
  bool leaveRow(math::ved::Node4C const& row, math::ved::Node4C const& construct);
  bool typeShortRow(char16_t c);
  PlaceS keepInBraces(PlaceS target) const;
  InputDecisionS decide(char16_t c, detail::BoundsStepS& step) const;
  std::optional<bool> runInCompletion(CommandE command, ScriptStepS step);
  bool isForCompletion(CommandE command) const;

  // formula_field_commands.cpp
  PlaceS findMotionTarget(CommandE command, long& column) const;
  bool isMotionEnabled(CommandE command) const;
  bool runMotion(CommandE command);
  bool runEdit(CommandE command);
  bool undoAct();
  bool redoAct();
  bool deleteMark();
  bool deleteLeft();
  bool deleteRight();
  bool deleteItem(CommandE motion);
  bool sendKey(unsigned long code);

  PointerTC<detail::DecimalCommaGraphicsC> surface_;
  InputOptionsS options_;
  JudgedViewC view_;
  PointerTC<ClipboardABC> clipboard_;
  MathmlReaderT readMathml_ = nullptr;
  ClipboardContentS copied_;            // what the commands copied since the recording began
  math::ved::NodeRecordPointerC seen_;  // the formula at the last `takeChange`
  std::unique_ptr<DiagnosedS> diagnosed_;
  EventScriptT* recorded_ = nullptr;
  RefusalS refusal_;  // its cause is none when nothing was refused
  wstring composed_;  // by an input method
  unsigned long composedCaret_ = 0;
  CompletionC completion_;
  bool bracesExpected_ = false;               // the next row of a construct with a row in braces was reached
  CompletedE completed_ = COMPLETED_NOTHING;  // by the last input
  unsigned acts_ = 0, groups_ = 0;            // the number of nested calls and groups in progress
  bool groupFailed_ = false, reveal_ = false;
  std::vector<TypedBoundsS> bounds_, bars_;  // outermost first; bars that their sign has opened
  std::vector<TypedGroupS> braces_;          // outermost first
  LastInputS last_;
  bool marked_ = false, markDue_ = false;  // the selection is a faulty part; was one before the act
  bool wordTyped_ = false;                 // the last input typed a letter, so a name may be unfinished
  long column_ = no_column;
  std::vector<SelectionS> grown_;  // the selection before each time it grew
};

}  // namespace zolt::field
