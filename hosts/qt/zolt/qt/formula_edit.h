#pragma once

#include <QString>
#include <QWidget>
#include <memory>

#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/algexpr/constraints.h"
#include "zolt/algexpr/number_display_format.h"
#include "zolt/common/read_error.h"
#include "zolt/field/commands.h"
#include "zolt/field/script_step.h"
#include "zolt/oss/pointer.h"

class QMenu;
class QMimeData;

namespace zolt::field {
class FormulaFieldC;
struct PaletteEntryS;
}  // namespace zolt::field

namespace zolt::qt {

/// A widget in which a person reads and edits one formula in its textbook form, as `QLineEdit` is a widget
/// for a line of text.
///
///     auto* edit = new zolt::qt::FormulaEdit(parent);
///     edit->setExpression("sqrt(x^2+1)/2");
///     connect(edit, &zolt::qt::FormulaEdit::expressionChanged, this, [=] { use(edit->prefix()); });
///
/// The first widget of a process fills the operator table with the standard operators if the host has not
/// done so. Without its font files (`fontError`) it keeps its formula, but shows that message instead.
class FormulaEdit : public QWidget {
  Q_OBJECT
  /// The formula as people type it, "sqrt(x^2+1)/2". It is empty when the formula is incomplete.
  Q_PROPERTY(QString expression READ expression WRITE setExpression NOTIFY expressionChanged USER true)
  /// The formula in prefix notation, as an algebra engine reads it: "/(sqrt(+(^(x,2),1)),2)". It is empty
  /// when the formula is incomplete.
  Q_PROPERTY(QString prefix READ prefix WRITE setPrefix NOTIFY expressionChanged)
  /// The current formula, complete or not, in tree notation.
  Q_PROPERTY(QString tree READ tree WRITE setTree NOTIFY expressionChanged)
  Q_PROPERTY(bool complete READ isComplete NOTIFY expressionChanged)
  Q_PROPERTY(bool readOnly READ isReadOnly WRITE setReadOnly NOTIFY readOnlyChanged)
  /// Logical pixels per surface unit; the base size of letters is 12 units.
  Q_PROPERTY(qreal zoom READ zoom WRITE setZoom NOTIFY zoomChanged)
  /// Restricts what may be entered from now on; null: everything is allowed.
  Q_PROPERTY(zolt::qt::FormulaEdit::Constraints constraints READ constraints WRITE setConstraints)
  /// The decimal sign is shown and typed as ",", and the separator of arguments as ";".
  Q_PROPERTY(bool decimalComma READ decimalComma WRITE setDecimalComma)
  Q_PROPERTY(bool frame READ hasFrame WRITE setFrame)
  Q_PROPERTY(Qt::Alignment alignment READ alignment WRITE setAlignment)
  /// Shown in place of an empty formula.
  Q_PROPERTY(QString placeholderText READ placeholderText WRITE setPlaceholderText)
  /// When off, the keys and menu entries of undo and redo are left to the window, which runs the commands
  /// itself.
  Q_PROPERTY(bool undoRedoEnabled READ isUndoRedoEnabled WRITE setUndoRedoEnabled)
  Q_PROPERTY(bool hasSelectedFormula READ hasSelection NOTIFY selectionChanged)

 public:
  /// Whether a change is an undo step of its own, or the user typed on, so that it is one step with the
  /// previous change.
  enum class Step { Begins, Continues };
  Q_ENUM(Step)

  using Expression = oss::PointerTC<math::algexpr::AlgebraicExpressionC>;
  using Constraints = oss::PointerTC<math::algexpr::ConstraintsBC>;

  static constexpr qreal default_zoom = 1.75;
  static constexpr qreal min_zoom = 0.5;
  static constexpr qreal max_zoom = 10;

  explicit FormulaEdit(QWidget* parent = nullptr);
  explicit FormulaEdit(QString const& expression, QWidget* parent = nullptr);
  ~FormulaEdit() override;

  QString expression() const;
  /// Shows the formula with all of it selected and a new history. Like the other setters of the formula it
  /// returns false, with nothing changed and `errorOccurred` emitted, when the text is not a formula or the
  /// constraints reject it.
  bool setExpression(QString const& expression);
  QString prefix() const;
  bool setPrefix(QString const& prefix);
  QString tree() const;
  bool setTree(QString const& tree);
  /// Null when the formula is incomplete. The call does not move the caret or the selection.
  Expression algebraicExpression() const;
  /// A null expression shows an empty formula.
  bool setAlgebraicExpression(Expression const& expression);
  /// Numbers of expressions set from now on show `precision` significant digits (0: as written) in `format`.
  void setNumberFormat(unsigned long precision, math::algexpr::NumberDisplayFormatE format);
  bool isComplete() const;
  /// Why the formula is incomplete, as a sentence without a full stop; empty when it is complete.
  QString incompleteReason() const;
  bool isEmpty() const;

  bool isReadOnly() const;
  void setReadOnly(bool readOnly);
  qreal zoom() const;
  /// The value is clamped to what is legible and paintable.
  void setZoom(qreal zoom);
  Constraints constraints() const;
  void setConstraints(Constraints const& constraints);
  bool decimalComma() const;
  void setDecimalComma(bool decimalComma);
  bool hasFrame() const;
  void setFrame(bool frame);
  Qt::Alignment alignment() const;
  void setAlignment(Qt::Alignment alignment);
  QString placeholderText() const;
  void setPlaceholderText(QString const& text);
  bool isUndoRedoEnabled() const;
  void setUndoRedoEnabled(bool enabled);
  bool hasSelection() const;
  /// The position in the history of changes: every change raises it, and undo restores the earlier value. It
  /// does not fall when a long history drops its beginning.
  unsigned long historyPosition() const;
  /// Empty when the fonts have been found.
  QString fontError() const;

  bool isCommandEnabled(field::CommandE command) const;
  bool runCommand(field::CommandE command);
  bool insertOperator(QString const& name);
  bool insertText(QString const& text);
  bool insertEntry(field::PaletteEntryS const& entry);
  /// Puts the caret at the place nearest to `pos` (widget coordinates).
  void setCaretNear(QPoint pos);

  /// The formula, or the selection, in the form for a clipboard; the caller owns it. Null when it is empty.
  QMimeData* createMimeData() const;
  QMimeData* createMimeDataFromSelection() const;
  /// The caller owns the menu.
  QMenu* createStandardContextMenu();

  /// The caret's box in widget coordinates.
  QRect caretRectangle() const;

  // For assistive technology. Offsets count the characters of `readableText`.
  /// The two ends of the selection.
  struct CaretOffsets {
    int anchor = 0;
    int caret = 0;
  };
  /// The formula in words: "fraction 1 over x plus 1 end fraction".
  QString readableText() const;
  /// Both are equal when nothing is selected.
  CaretOffsets caretOffsets() const;
  /// Selects between the places of the caret that are nearest to the offsets.
  void selectOffsets(int anchor, int caret);
  /// The box that the caret would have at `offset`, in widget coordinates.
  QRect placeRectangle(int offset) const;
  /// The box around what the character at `offset` says, in widget coordinates.
  QRect characterRectangle(int offset) const;
  int offsetNear(QPoint pos) const;
  void revealOffset(int offset);

  /// Appends the current formula with its caret, every option that differs from a new field, and all input
  /// from now on to `script`, which the caller keeps alive until it passes null.
  void record(field::EventScriptT* script);

  QSize sizeHint() const override;
  QSize minimumSizeHint() const override;
  QVariant inputMethodQuery(Qt::InputMethodQuery query) const override;
  /// The same with an argument: how much of the text on either side of the caret is wanted. The text is that
  /// of the caret's row, with one U+FFFC for each construct.
  Q_INVOKABLE QVariant inputMethodQuery(Qt::InputMethodQuery query, QVariant const& argument) const;

 public slots:
  /// Checks the formula as at the end of editing: when it is incomplete, selects the faulty part, emits
  /// `errorOccurred` and returns false.
  bool check();
  void undo();
  void redo();
  void cut();
  void copy();
  void paste();
  void selectAll();
  void clear();

 signals:
  /// The formula has changed, whether by the user or by the program.
  void expressionChanged();
  /// The user changed the formula. Emitted once for each step that undo would take back, since one key may
  /// make two: what it types, and what that completes. `position` is `historyPosition` before the step.
  void edited(zolt::qt::FormulaEdit::Step step, unsigned long position);
  void selectionChanged();
  void caretMoved();
  /// `cause` is READ_ERROR_NONE when no reader refused a text; `text` is a sentence without a full stop.
  void errorOccurred(zolt::math::common::ReadErrorE cause, QString const& text);
  void returnPressed();
  void editingFinished();
  void readOnlyChanged(bool readOnly);
  void zoomChanged(qreal zoom);

 protected:
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void changeEvent(QEvent* event) override;
  void focusInEvent(QFocusEvent* event) override;
  void focusOutEvent(QFocusEvent* event) override;
  void keyPressEvent(QKeyEvent* event) override;
  void inputMethodEvent(QInputMethodEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void wheelEvent(QWheelEvent* event) override;
  void contextMenuEvent(QContextMenuEvent* event) override;
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dragLeaveEvent(QDragLeaveEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void timerEvent(QTimerEvent* event) override;

 private:
  struct StateS;

  std::unique_ptr<StateS> state_;
};

}  // namespace zolt::qt
