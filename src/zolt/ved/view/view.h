#pragma once

#include <memory>
#include <utility>
#include <vector>

#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/algexpr/constraints.h"
#include "zolt/algexpr/number_display_format.h"
#include "zolt/oss/live_count.h"
#include "zolt/oss/pointer.h"
#include "zolt/oss/wstring.h"
#include "zolt/ved/convert/diagnosis.h"
#include "zolt/ved/geometry/graphics.h"
#include "zolt/ved/geometry/point.h"
#include "zolt/ved/geometry/rectangle.h"
#include "zolt/ved/operators/operator_list.h"
#include "zolt/ved/render/composition.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/view/edit_backup.h"
#include "zolt/ved/view/event.h"
#include "zolt/ved/view/key_code.h"

namespace zolt::math::ved {

class EditHistoryC;
struct SelectionPathS;
struct TableBlockS;

/// The editor: one formula, its caret and its selection, on a drawing surface of the host's.
///
/// The host feeds events through `addEvent`, calls `display` from its paint handler when the surface was
/// asked to `invalidate`, and exchanges whole expressions through `setAlgebraicExpression` and
/// `getAlgebraicExpression`. Everything happens on the caller's thread, at once; layout waits until somebody
/// asks for it. Each thread may have views of its own (docs/reliability.md). A refused input leaves
/// everything as it was. Calls that would change the view while it calls the host's code (a surface, a
/// constraints object) are refused; view_hold.h has the table of what such code may do.
///
/// When memory runs out (`std::bad_alloc`, from any call), formula, caret, selection and history are as
/// before the call, or as before the group around it. Taking back needs memory itself: the next call that
/// looks at the formula does it, and throws as long as there is none.
class ViewZNT4C : private oss::LiveCountTC<ViewZNT4C> {
 public:
  /// Starts with an empty expression. Keeps `graphics` for its lifetime; it must not be null.
  explicit ViewZNT4C(PointerTC<GraphicsABC> graphics);
  virtual ~ViewZNT4C();
  ViewZNT4C(ViewZNT4C const&) = delete;
  ViewZNT4C& operator=(ViewZNT4C const&) = delete;

  /// The box around the selection in view coordinates; null (all zero) when nothing is selected.
  virtual RectangleS getCurrentNodeRectangle();
  /// The caret's box in view coordinates: one unit wide, as high as its text.
  virtual RectangleS getCaretRectangle();
  /// What these two report when `range` is selected, or the caret where its ends are equal.
  RectangleS getRectangle(SelectionS const& range) const;

  // ---- Expression ---------------------------------------------------------------------------------------
  /// Shows `expression` (null: an empty formula), all selected, so that the first character typed replaces
  /// it. Every later edit must satisfy `constraints` (null: none), which see the whole expression: then each
  /// edit costs its conversion, in proportion to the formula. Numbers show `precision` significant
  /// digits (0: as written) in `format`.
  void setAlgebraicExpression(PointerTC<algexpr::AlgebraicExpressionC> expression,
                              PointerTC<algexpr::ConstraintsBC> constraints, unsigned long precision,
                              algexpr::NumberDisplayFormatE format);
  /// Other constraints for every later edit; the formula, its history and the caret stay. False from inside
  /// an event.
  bool setConstraints(PointerTC<algexpr::ConstraintsBC> constraints);
  PointerTC<algexpr::ConstraintsBC> const& getConstraints() const { return constraints_; }
  /// What the constraints say, once, of the last edit that they refused (`ConstraintsBC::explain`).
  wstring takeRejection() { return std::exchange(rejection_, {}); }
  /// The formula as it stands. Null when it is incomplete or wrong; then an editable view selects the faulty
  /// part and stores why in `cause` (may be null). A view that is not editable returns the expression it was
  /// given.
  PointerTC<algexpr::AlgebraicExpressionC> getAlgebraicExpression(ErrorCauseE* cause);
  /// Whether the formula, as it is shown, is an expression, and if not, why and where: what
  /// `getAlgebraicExpression` of an editable view answers and selects, with nothing changed.
  DiagnosisS diagnose() const { return ved::diagnose(crefRoot()); }
  [[nodiscard]] bool isEditable() const { return editable_; }
  bool setEditable(bool editable);

  // ---- Size and drawing -----------------------------------------------------------------------------------
  /// Width and height of the formula in surface units.
  PointS getExpressionSize() const;
  /// How far below its top the formula stands on a line of text that it is a part of: the baseline of the
  /// letters in its own row.
  double getBaseline() const;
  /// Draws the formula with its top-left corner at (x, y). Caret and selection are the host's to draw.
  void display(long x, long y) const;
  bool needLayout();
  bool needRedraw();
  /// To be called when the surface measures differently than before (another font, other metrics): the next
  /// layout measures everything again, where it otherwise visits only what changed.
  bool measureAgain();

  // ---- Input ----------------------------------------------------------------------------------------------
  /// Executes an event at once. True when it was consumed. `EventE` says what `code` is and which events have
  /// a position (`x`, `y`), in view coordinates. `shift` turns a caret move into a selection move. `control`
  /// and `alt` tell which other modifier keys are down and have no effect: what such keys do is the host's to
  /// say, or a `FormulaFieldC`'s.
  bool addEvent(EventE event, unsigned long code, bool shift, bool control, bool alt, long x, long y);
  /// A whole text as one event (input methods, plain-text paste): an operator's name inserts the operator,
  /// any other text is typed character by character. False, with nothing changed, when a character is
  /// refused or the constraints reject the result.
  bool insertText(wstring const& text);
  /// Inserts an operator, which need not be registered, as its key does. False, with nothing changed, when it
  /// refuses.
  bool insertOperator(PointerTC<OperatorBC> const& op);
  /// Where every refused input ends: does nothing and answers false.
  bool bip() const { return false; }

  // ---- Composition (view_composition.cpp) -----------------------------------------------------------------
  /// Shows `text` at the caret as part of the layout until the next event, with the caret in it after `caret`
  /// characters. Formula, selection and history stay as they are. An empty text ends it. False when the view
  /// is not editable, or in the middle of a change.
  bool compose(wstring const& text, unsigned long caret);
  /// What is being composed; nothing when its place is null.
  CompositionS const& crefComposition() const { return composition_; }
  /// The box around a part of the composed text; where the ends are equal, the caret's box there. The caret's
  /// own box when nothing is being composed.
  RectangleS getComposedRectangle(unsigned long begin, unsigned long end) const;

  // ---- Clipboard ------------------------------------------------------------------------------------------
  /// The selection as bytes for the clipboard and as an expression. Null when the selection is not a complete
  /// expression (`bytes` is filled all the same) or when nothing is selected (`bytes` is left alone).
  PointerTC<algexpr::AlgebraicExpressionC> copy(oss::bytestring& bytes) const;
  /// The same of what is shown in `range`, whatever is selected.
  PointerTC<algexpr::AlgebraicExpressionC> copy(SelectionS const& range, oss::bytestring& bytes) const;
  /// `copy`, then the backspace key: call only with a selection.
  PointerTC<algexpr::AlgebraicExpressionC> cut(oss::bytestring& bytes);
  /// Replaces the selection by what `copy` wrote. False, with nothing done, for bytes that do not read or
  /// would nest too deep, and when the view is not editable.
  bool paste(oss::bytestring const& bytes);
  bool paste(PointerTC<algexpr::AlgebraicExpressionC> expression);
  /// Puts cells, canonical rows, into the table around the caret, from the first selected cell or the caret's
  /// on. The table grows; where it may not, and outside of tables, false, with nothing changed.
  bool pasteCells(std::vector<std::unique_ptr<Node4C>> cells, unsigned long columns);

  // ---- Undo -----------------------------------------------------------------------------------------------
  /// Takes back the last event that changed the formula, or brings back the last one taken back: formula,
  /// caret and selection as they were. False when there is none or the view is not editable. Refused and
  /// rejected edits leave no step; an expression set by the host starts a new history.
  bool undo();
  bool redo();
  [[nodiscard]] bool canUndo() const;
  [[nodiscard]] bool canRedo() const;
  /// Whether the step that `undo` (`redo`) would go over next is a typed character that directly follows the
  /// step before it, so that a host which treats typing as one act goes on.
  [[nodiscard]] bool undoContinues() const;
  [[nodiscard]] bool redoContinues() const;
  /// The number of the step that would come next. `undo` lowers it by one, `redo` and every step that is made
  /// raise it; it is no other one because a long history has forgotten its beginning.
  [[nodiscard]] unsigned long getHistoryPosition() const;
  /// Whether step number `position` continues the one before it.
  [[nodiscard]] bool isContinuation(unsigned long position) const;
  /// Until `endGroup`, all edits are one: one step to undo, checked by the constraints as a whole. Undo and
  /// redo are refused meanwhile, and a refused `insertText` takes back the whole group. Groups do not nest;
  /// an expression set meanwhile begins the group anew.
  void beginGroup();
  /// Takes back what the group did until now. When the group is kept, that is a step of its own before the
  /// group's, as if it had been typed: undoing the group leaves it. At most once in a group.
  void restartGroup();
  /// False when the constraints rejected the group, which then leaves nothing behind.
  bool endGroup();
  /// Ends the group and takes everything back to where it began, caret and selection too.
  void cancelGroup();

  // ---- State, for hosts, tests and assistive technology ---------------------------------------------------
  Node4C const& crefRoot() const { return takeBackIfDue(), *root_; }
  /// The place nearest to a point, where a press of the pointer puts the caret; the caret's own when nothing
  /// is near.
  [[nodiscard]] PlaceS findPlace(long x, long y) const;
  /// How far a place is from the left edge of its text.
  [[nodiscard]] long measureStart(PlaceS place) const;
  /// From the start of the formula to its end.
  SelectionS getWhole() const { return wholeRow(*crefRoot().child(0)); }
  /// Caret and anchor; the anchor is no place when nothing is selected.
  [[nodiscard]] SelectionS getSelection() const;
  Node4C const* getCaretNode() const { return takeBackIfDue(), selection_.caret.node; }
  unsigned int getCaretPos() const { return takeBackIfDue(), selection_.caret.pos; }
  /// Null when there is no selection.
  Node4C const* getAnchorNode() const { return takeBackIfDue(), selection_.anchor.node; }
  unsigned int getAnchorPos() const { return takeBackIfDue(), selection_.anchor.pos; }
  /// Whether a non-empty selection exists. An empty one is dropped by the way, unless the pointer is down.
  bool isSelected() const;
  /// The selection as a stretch of one row, in reading order: from a position in its item `first` to one in
  /// its item `last`. Ends in different rows of a construct widen to the construct. (In a table they select
  /// a block, `findBlock`, which is what is copied and deleted.) False: no selection.
  bool getSelectionBounds(Node4C*& line, unsigned long& first, unsigned int& firstPos, unsigned long& last,
                          unsigned int& lastPos) const;
  /// Selects from the anchor to the caret; equal places only move the caret; a null anchor node drops the
  /// selection. False, with nothing changed, when one of them is not a place of this tree.
  bool selectRange(SelectionS const& range);
  bool selectRange(Node4C const* anchorNode, unsigned int anchorPos, Node4C const* caretNode,
                   unsigned int caretPos) {
    return selectRange({{anchorNode, anchorPos}, {caretNode, caretPos}});
  }
  GraphicsABC const& crefGraphics() const { return *graphics_; }
  OperatorListC const& crefOperatorList() const { return *operatorList_; }

 protected:
  /// What the constraints judge after an edit; null, for a formula that is no expression, is never rejected.
  /// Who hands out more than the tree says overrides it.
  virtual PointerTC<algexpr::AlgebraicExpressionC> getJudgedExpression() const;
  /// Whether it calls code of the host's, or is in the middle of an event: then it refuses every change.
  bool isBusy() const { return event_ || notifying_ || held_; }

 private:
  class EventC;
  friend class ViewInsertionC;
  friend class ViewHoldC;

  // view.cpp
  bool dispatchEvent(EventE event, unsigned long code, bool shift, long x, long y);
  bool dispatchKey(unsigned long code, bool shift);
  /// Ends every event: normalises the tree when the layout is pending and, outside groups, settles the edit.
  bool finishEdit();
  /// Keeps the edit as a step of the history; false when it was rejected and taken back.
  bool settleEdit();
  [[nodiscard]] bool isRejected(wstring& why) const;
  /// Makes the tree the view's own, all selected.
  void putUp(std::unique_ptr<Node4C> root);
  /// The caret's text, to be changed.
  Node4C& refCaretNode() const { return const_cast<Node4C&>(*selection_.caret.node); }
  void layoutIfPending() const;
  // view_composition.cpp
  void endComposition();
  CompositionS const* composed() const { return composition_.place ? &composition_ : nullptr; }
  // view_selection.cpp
  enum CaretStepE { STEP_LEFT, STEP_RIGHT };
  bool moveCaret(CaretStepE step);
  /// Moves the caret, with `shift` as the end of a selection.
  bool runCaretKey(CaretStepE step, bool shift);
  // view_text.cpp
  template <class EditT>
  bool insert(EditT edit);
  bool doAddText(wstring const& text);
  bool addTexts(wstring const& text);
  void addCharacter(char16_t c);
  void addBracket(Node4TypeE type);
  bool promoteAutoBracket(Node4TypeE type);
  void splitText(bool toRight);
  // view_delete.cpp
  bool deleteSelection();
  bool clearBlock(TableBlockS const& block);
  bool doDelete();
  bool doClear();
  bool doBackspace();
  bool backspaceOver(Node4C& item);
  bool backspaceOutOfRow();
  bool takeRowAway(Node4C& construct, unsigned long number);
  bool stepToEnd(Node4C const& row);
  // view_insertion.cpp
  bool doRunOperator(PointerTC<OperatorBC> op);
  // view_clipboard.cpp
  std::unique_ptr<Node4C> cutSelection();
  bool pasteRow(std::unique_ptr<Node4C> row);
  bool backupBeforeModif();
  /// Opens a step of the history, which can go back to its beginning; ignored while one is open.
  void announceEdit();
  /// Makes the tree, caret and anchor of `state` the view's own; asking for a repaint is the caller's.
  void takeOver(EditBackupC& state) const;
  // view_undo.cpp
  /// Goes over a step of the history, by its `undo` or its `redo`.
  void goOver(SelectionPathS const& (EditHistoryC::*step)(Node4C& root));
  void takeBackIfDue() const { takeBackDue_ ? takeBack() : void(); }
  /// Goes back to where the open step began, which is then no step.
  void takeBack() const;

  PointerTC<GraphicsABC> graphics_;
  PointerTC<OperatorListC> operatorList_;
  bool editable_ = true;
  PointerTC<algexpr::ConstraintsBC> constraints_;
  wstring rejection_;
  mutable bool layoutPending_ = false;
  mutable bool measurePending_ = false;  // the next layout measures everything
  bool penDown_ = false;
  bool grouping_ = false;
  EventC* event_ = nullptr;           // is under way: no layout, no drawing, no second event
  bool notifying_ = false;            // the host is being asked for a repaint: no event
  mutable bool held_ = false;         // the surface is asked about nodes: no event, no layout
  mutable bool takeBackDue_ = false;  // the tree is that of an edit which did not end
  mutable bool paintMissed_ = false;
  PointerTC<algexpr::AlgebraicExpressionC> expression_;
  mutable std::unique_ptr<Node4C> root_;
  mutable SelectionS selection_;
  mutable CompositionS composition_;
  std::unique_ptr<EditHistoryC> history_;
};

}  // namespace zolt::math::ved
