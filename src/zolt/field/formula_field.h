#pragma once

#include <vector>

#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/algexpr/constraints.h"
#include "zolt/exchange/plain_text.h"
#include "zolt/field/auto_replace.h"
#include "zolt/field/caret_motion.h"
#include "zolt/field/clipboard.h"
#include "zolt/field/commands.h"
#include "zolt/field/input_options.h"
#include "zolt/field/script_step.h"
#include "zolt/oss/pointer.h"
#include "zolt/oss/wstring.h"
#include "zolt/ved/convert/error_selection.h"
#include "zolt/ved/geometry/graphics.h"
#include "zolt/ved/geometry/rectangle.h"
#include "zolt/ved/tree/tree_path.h"
#include "zolt/ved/view/view.h"

namespace zolt::field {

using math::ved::PlaceS;
using math::ved::SelectionS;
using oss::PointerTC;
using oss::wstring;

namespace detail {
class DecimalCommaGraphicsC;
}

/// Why a formula is not an expression yet, and which part of it is to blame.
struct FormulaErrorS {
  math::ved::ErrorCauseE cause = math::ved::ERROR_CAUSE_SYNTAX;
  wstring text;               ///< the cause as a sentence, without a full stop
  SelectionS range;           ///< its ends are equal where something is missing
  math::ved::RectangleS box;  ///< around the range, in view coordinates
};

/// What a formula is: an expression, or why it is none yet.
struct FormulaDiagnosisS {
  PointerTC<math::algexpr::AlgebraicExpressionC> expression;
  FormulaErrorS error;  ///< without an expression
};

/// A formula field without a window: one view, and around it what people expect of a formula field on any
/// toolkit. A host translates its events into the calls below, paints the view and the rectangles, and shows
/// what is asked of it.
///
/// Calls that take input answer whether it was taken; what is refused changes nothing. One thing that a
/// person does is one step to undo, a run of typed characters too. Everything is in the surface's units.
///
/// Whatever is const answers from the formula as it is and changes nothing that anybody sees. A program uses
/// all its fields on one thread. When memory runs out (`std::bad_alloc`, from any call), formula, caret,
/// selection and history are as before the call; what the call had recorded stays in the recording.
class FormulaFieldC {
 public:
  /// Keeps `surface` for its lifetime; it must not be null.
  explicit FormulaFieldC(PointerTC<math::ved::GraphicsABC> surface);
  ~FormulaFieldC();
  FormulaFieldC(FormulaFieldC const&) = delete;
  FormulaFieldC& operator=(FormulaFieldC const&) = delete;

  /// For painting, sizes and whatever only reads. Input goes through the field.
  math::ved::ViewZNT4C& refView() { return view_; }
  math::ved::ViewZNT4C const& crefView() const { return view_; }

  InputOptionsS const& getOptions() const { return options_; }
  void setOptions(InputOptionsS const& options);
  bool isEditable() const { return view_.isEditable(); }
  void setEditable(bool editable);

  // ---- Expression (formula_field.cpp) -------------------------------------------------------------------
  /// As `ViewZNT4C::setAlgebraicExpression`: shown all selected, with a new history.
  void setExpression(PointerTC<math::algexpr::AlgebraicExpressionC> expression,
                     PointerTC<math::algexpr::ConstraintsBC> constraints = nullptr,
                     unsigned long precision = 0,
                     math::algexpr::NumberDisplayFormatE format = math::algexpr::NUMBER_FORMAT_AUTOMATIC);
  /// As `ViewZNT4C::setConstraints`: for every later edit; the formula stays.
  void setConstraints(PointerTC<math::algexpr::ConstraintsBC> constraints) {
    view_.setConstraints(std::move(constraints));
  }
  /// Shows plain text as a formula. False, with nothing changed, when it is none; `error` may be null.
  [[nodiscard]] bool setPlainText(wstring const& text, exchange::PlainTextErrorS* error = nullptr);
  /// The expression that is shown, locked or not, implied products included, with nothing changed: a name
  /// that was just typed counts as the letter that it will be. Costs one conversion of the formula, and next
  /// to nothing when the formula is what it was at the last call.
  [[nodiscard]] FormulaDiagnosisS diagnose() const;
  /// Completes a name that was just typed, and diagnoses. Null when the formula is incomplete or wrong; with
  /// `error` (may be null) the faulty part is then selected.
  PointerTC<math::algexpr::AlgebraicExpressionC> getExpression(FormulaErrorS* error = nullptr);
  /// The formula as a tree with caret and selection, for dumps and tests.
  wstring writeNotation() const;
  /// Puts up a tree with its caret and selection as one edit. False when the text does not read or is no tree
  /// of a formula.
  [[nodiscard]] bool setNotation(wstring const& notation);

  // ---- Input (formula_field_input.cpp) --------------------------------------------------------------------
  /// One typed character, by the rules of typing.
  bool typeCharacter(char16_t c);
  /// A text from an input method: typed as one act; one longer than `limits::max_typed_text` comes in as it
  /// stands.
  bool insertText(wstring const& text);
  /// Inserts the operator of that name, as a palette does.
  bool insertOperator(wstring const& name);
  /// Turns the name that was just typed into its letter, as going on with something else does. For hosts
  /// whose field loses the focus.
  void completeName();
  /// A key by its code: the operator that is bound to it, or the command of the usual editing keys.
  bool pressKey(unsigned long code, bool shift);

  // ---- Pointer (formula_field_pointer.cpp) ----------------------------------------------------------------
  /// `clicks` 2 selects the item at the pointer, 3 its row, 4 everything. `extend` keeps the selection's
  /// other end, as with Shift held.
  bool pressPointer(long x, long y, unsigned clicks = 1, bool extend = false);
  bool movePointer(long x, long y);
  bool releasePointer();
  /// Moves the selection to another place, as a drag within the field does. False, with nothing changed, when
  /// nothing is selected or the place is in the selection.
  bool moveSelection(PlaceS target);
  /// Puts the selection's ends, or the caret, to other places, as assistive technology does. False, with
  /// nothing changed, when one of them is no place of the formula.
  bool setSelection(SelectionS selection);

  // ---- Commands (formula_field_commands.cpp) --------------------------------------------------------------
  /// Whether `run` would do anything now.
  bool isEnabled(CommandE command) const;
  bool run(CommandE command);

  // ---- Clipboard (formula_field_clipboard.cpp) ------------------------------------------------------------
  /// Where the clipboard commands put and find content; at first a memory of the field's own. Not null.
  void setClipboard(PointerTC<ClipboardABC> clipboard) { clipboard_ = std::move(clipboard); }
  /// The selection, for hosts that are handed the clipboard with the event.
  ClipboardContentS copy() const { return copy(view_.getSelection()); }
  /// What is shown between two places.
  ClipboardContentS copy(SelectionS const& range) const { return copyRange(view_, range, options_); }
  PasteE paste(ClipboardContentS const& content, exchange::PlainTextErrorS* error = nullptr);

  // ---- For painting (formula_field.cpp) -------------------------------------------------------------------
  math::ved::RectangleS getCaretRectangle() const { return view_.getRectangle({caret(), caret()}); }
  /// The selection as bands, one for each part that has a height of its own, from left to right; none when
  /// nothing is selected. `ViewZNT4C::getCurrentNodeRectangle` is the box around them.
  std::vector<math::ved::RectangleS> getSelectionRectangles() const;
  /// True, once, when input has moved the caret: `box` is then what should be brought into sight.
  bool takeRevealRequest(math::ved::RectangleS& box);
  /// True when the formula is another one than at the last call, or at first: than the empty one. In time
  /// that follows the change. What only moved caret and selection, or came back to what it was, is none.
  bool takeChange();

  // ---- Recording ------------------------------------------------------------------------------------------
  /// Appends what sets a new field's options as they are here, and from now on all that changes the field
  /// but for the constraints of expressions, to `script`, which the caller keeps alive until it passes null.
  /// It plays on a field with the same formula, caret and selection.
  void record(EventScriptT* script);

 private:
  class ActC;
  class GroupC;

  /// All that a diagnosis depends on.
  struct QuestionS {
    math::ved::NodeRecordPointerC formula;
    PointerTC<math::algexpr::CASSessionBC> session;
    math::ved::SelectionPathS completed;  ///< the name that was just typed
    bool impliedProducts = false;

    bool operator==(QuestionS const& other) const;
  };

  /// The last question and its answer. Places are kept by their paths, since undo brings an earlier formula
  /// back in other nodes.
  struct DiagnosedS {
    QuestionS question;
    PointerTC<math::algexpr::AlgebraicExpressionC> expression;
    math::ved::ErrorCauseE cause = math::ved::ERROR_CAUSE_SYNTAX;
    math::ved::SelectionPathS range;
  };

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
  bool runOperator(wstring const& name);
  bool typeExponent(InputDecisionS const& decision);
  bool bracketSelection();
  /// What `completeName` would do; without a beginning, nothing.
  ReplacementS findCompletion() const;
  void replaceCompleted(InputDecisionS const& decision, bool wordBefore);
  bool replaceText(ReplacementS const& replacement);
  bool replaceCall(ConstructReplacementS const& replacement);

  // formula_field_commands.cpp
  bool isMotionEnabled(CaretMotionE motion, MoveE move) const;
  bool runMotion(CaretMotionE motion, MoveE move);
  bool runSelection(CommandE command);
  bool runEdit(CommandE command);
  bool undoAct();
  bool redoAct();
  bool deleteLeft();
  bool deleteRight();
  bool deleteItem(CaretMotionE motion);
  bool sendKey(unsigned long code);

  PointerTC<detail::DecimalCommaGraphicsC> surface_;
  math::ved::ViewZNT4C view_;
  InputOptionsS options_;
  PointerTC<ClipboardABC> clipboard_;
  ClipboardContentS copied_;            // by the commands, since the recording began
  math::ved::NodeRecordPointerC seen_;  // the formula at the last `takeChange`
  mutable DiagnosedS diagnosed_;
  EventScriptT* recorded_ = nullptr;
  unsigned acts_ = 0;  // calls under way, one inside another
  unsigned groups_ = 0;
  bool groupFailed_ = false;
  bool reveal_ = false;
  bool wordTyped_ = false;  // the last input typed a letter, so that a name may be on its way
  long column_ = no_column;
  std::vector<SelectionS> grown_;  // the selections before each growth
};

}  // namespace zolt::field
