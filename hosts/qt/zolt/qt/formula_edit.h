#pragma once

#include <QString>
#include <memory>

#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/algexpr/constraints.h"
#include "zolt/algexpr/number_display_format.h"
#include "zolt/common/read_error.h"
#include "zolt/field/commands.h"
#include "zolt/field/input_options.h"
#include "zolt/field/script_step.h"
#include "zolt/oss/pointer.h"
#include "zolt/qt/edit_field.h"

class QMenu;
class QMimeData;

namespace zolt::field {
class FormulaFieldC;
struct PaletteEntryS;
}  // namespace zolt::field

namespace zolt::qt {

/// A widget for one formula in its textbook form, as `QLineEdit` is one for a line of text.
/// docs/qt-widget.md goes through both, row by row.
///
/// The first widget of a process fills the operator table with the operators of the chosen catalogue
/// (`setCatalogue`) if the host has not filled it. Without its font files (`fontError`) it keeps its formula,
/// but shows that message instead.
class FormulaEdit : public EditField {
  Q_OBJECT
  /// The formula as people type it, "sqrt(x^2+1)/2". It is empty when the formula is incomplete.
  Q_PROPERTY(QString expression READ expression WRITE setExpression NOTIFY expressionChanged USER true)
  /// The same in prefix notation, as an algebra engine reads it: "/(sqrt(+(^(x,2),1)),2)".
  Q_PROPERTY(QString prefix READ prefix WRITE setPrefix NOTIFY expressionChanged)
  /// The same in LaTeX: "\\frac{\\sqrt{x^{2}+1}}{2}".
  Q_PROPERTY(QString latex READ latex WRITE setLatex NOTIFY expressionChanged)
  /// The same in MathML; read are presentation and content.
  Q_PROPERTY(QString mathMl READ mathMl WRITE setMathMl NOTIFY expressionChanged)
  /// The same in MathJSON: ["Divide",["Sqrt",["Add",["Power","x",2],1]],2].
  Q_PROPERTY(QString mathJson READ mathJson WRITE setMathJson NOTIFY expressionChanged)
  /// The same in Typst: "frac(sqrt(x^(2) + 1), 2)".
  Q_PROPERTY(QString typst READ typst NOTIFY expressionChanged)
  /// The current formula, complete or not, in tree notation.
  Q_PROPERTY(QString tree READ tree WRITE setTree NOTIFY expressionChanged)
  Q_PROPERTY(bool complete READ isComplete NOTIFY expressionChanged)
  Q_PROPERTY(bool readOnly READ isReadOnly WRITE setReadOnly NOTIFY readOnlyChanged)
  /// The size of the formula's letters in sizes of the widget's font: 1.75 is that of displayed formulas.
  Q_PROPERTY(qreal zoom READ zoom WRITE setZoom NOTIFY zoomChanged)
  /// Restricts what may be entered from now on; null: everything is allowed.
  Q_PROPERTY(Constraints constraints READ constraints WRITE setConstraints NOTIFY constraintsChanged)
  /// The same in words, "number or names x y; nodes 50" (`zolt/constraints/constraints.h`); empty:
  /// everything. Text that is not understood changes nothing. Empty, too, while other constraints are set.
  Q_PROPERTY(QString allowedFormulas READ allowedFormulas WRITE setAllowedFormulas NOTIFY constraintsChanged)
  /// Whether 6.02e23 is shown as 6.02·10²³; the text stays.
  Q_PROPERTY(bool powersOfTen READ powersOfTen WRITE setPowersOfTen NOTIFY powersOfTenChanged)
  /// The decimal sign is shown and typed as ",", and the separator of arguments as ";".
  Q_PROPERTY(bool decimalComma READ decimalComma WRITE setDecimalComma NOTIFY decimalCommaChanged)
  /// How much of a formula's structure is said. The words are German where the widget's locale is, else
  /// English.
  Q_PROPERTY(SpeechVerbosity speechVerbosity READ speechVerbosity WRITE setSpeechVerbosity NOTIFY
                 speechVerbosityChanged)
  /// Whether the formula differs in its history from when it, or this flag, was set.
  Q_PROPERTY(bool modified READ isModified WRITE setModified NOTIFY modifiedChanged DESIGNABLE false)
  Q_PROPERTY(bool undoAvailable READ isUndoAvailable NOTIFY undoAvailableChanged)
  Q_PROPERTY(bool redoAvailable READ isRedoAvailable NOTIFY redoAvailableChanged)
  Q_PROPERTY(int cursorPosition READ cursorPosition WRITE setCursorPosition NOTIFY caretMoved)
  Q_PROPERTY(bool hasSelectedFormula READ hasSelection NOTIFY selectionChanged)
  Q_PROPERTY(QString selectedText READ selectedText NOTIFY selectionChanged)

 public:
  /// Whether a change is an undo step of its own, or the user typed on, which is one step with the last one.
  enum class Step { Begins, Continues };
  Q_ENUM(Step)
  /// docs/speech.md
  enum class SpeechVerbosity { Brief, Medium, Full };
  Q_ENUM(SpeechVerbosity)

  using Expression = oss::PointerTC<math::algexpr::AlgebraicExpressionC>;
  using Constraints = oss::PointerTC<math::algexpr::ConstraintsBC>;

  /// What may be in a formula: the standard operators, or more of mathematics, too.
  enum class Catalogue { Standard, Extended };
  /// Chooses for the whole process, before its first widget; without a choice it is the extended one.
  static void setCatalogue(Catalogue catalogue);

  static constexpr qreal default_zoom = 1.75;
  static constexpr qreal min_zoom = 0.5;
  static constexpr qreal max_zoom = 10;

  explicit FormulaEdit(QWidget* parent = nullptr);
  explicit FormulaEdit(QString const& expression, QWidget* parent = nullptr);
  ~FormulaEdit() override;

  // The setters of the formula return false, with nothing changed and `errorOccurred` emitted, when the text
  // is not a formula or the constraints reject it.
  QString expression() const;
  QString prefix() const;
  bool setPrefix(QString const& prefix);
  QString latex() const;
  bool setLatex(QString const& latex);
  QString mathMl() const;
  bool setMathMl(QString const& mathMl);
  QString mathJson() const;
  bool setMathJson(QString const& mathJson);
  QString typst() const;
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
  /// The value is clamped to what is legible and paintable. The caret stays in place as far as scrolling can
  /// keep it, or what is at `place` (widget coordinates).
  void setZoom(qreal zoom);
  void setZoomAround(qreal zoom, QPoint place);
  Constraints constraints() const;
  void setConstraints(Constraints const& constraints);
  QString allowedFormulas() const;
  bool setAllowedFormulas(QString const& rules);
  bool powersOfTen() const;
  void setPowersOfTen(bool powersOfTen);
  bool decimalComma() const;
  void setDecimalComma(bool decimalComma);
  /// The rules of typing.
  field::InputOptionsS inputOptions() const;
  void setInputOptions(field::InputOptionsS const& options);
  SpeechVerbosity speechVerbosity() const;
  void setSpeechVerbosity(SpeechVerbosity verbosity);
  bool isModified() const;
  void setModified(bool modified);
  bool isUndoAvailable() const;
  bool isRedoAvailable() const;
  /// Every change raises it, and undo restores the earlier value. It stays when a long history is shortened.
  unsigned long historyPosition() const;
  QString fontError() const;  ///< empty when the fonts have been found

  bool isCommandEnabled(field::CommandE command) const;
  bool runCommand(field::CommandE command);
  bool insertOperator(QString const& name);
  bool insertText(QString const& text);
  bool insertEntry(field::PaletteEntryS const& entry);
  bool isEntryEnabled(field::PaletteEntryS const& entry) const;
  void setCaretNear(QPoint pos);  ///< at the place nearest to it, in widget coordinates
  // As of a `QLineEdit`, -1 without a selection. A position counts the places of the caret in reading order.
  int cursorPosition() const;
  void setCursorPosition(int position) { setSelection(position, 0); }
  int cursorPositionAt(QPoint pos) const;
  void cursorForward(bool mark, int steps = 1);
  void cursorBackward(bool mark, int steps = 1) { cursorForward(mark, -steps); }
  void cursorWordForward(bool mark);
  void cursorWordBackward(bool mark);
  void home(bool mark);
  void end(bool mark);
  void backspace();
  void del();
  bool hasSelection() const;
  QString selectedText() const;
  int selectionStart() const;
  int selectionEnd() const;
  int selectionLength() const;
  void setSelection(int start, int length);
  void deselect();

  /// The formula, or the selection, in the form for a clipboard; the caller owns it. Null when it is empty.
  QMimeData* createMimeData() const;
  QMimeData* createMimeDataFromSelection() const;
  QMenu* createStandardContextMenu();  ///< the caller owns it
  /// Selects what a node of the expression came from, counted as results of engines do. False: there is none.
  bool selectPart(unsigned long number);

  QRect caretRectangle() const;  ///< the caret's box in widget coordinates
  /// The room that all of the formula takes, with a small margin, and how far below the top of the widget its
  /// axis is, on which the signs beside it are centred.
  QSize formulaSize() const;
  int axis() const;

  /// The formula in words, "x plus 1 over 2", as assistive technology reads it.
  QString readableText() const;
  QString selectedWords() const;  ///< the selection in words

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
  /// Shows the formula with the caret at its end and a new history.
  bool setExpression(QString const& expression);
  /// Inserts the formula that the text means, as pasting it does.
  void insert(QString const& text);
  /// When the formula is incomplete, selects the faulty part, emits `errorOccurred` and returns false.
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
  /// The user changed the formula. Emitted for each step that undo would take back: one key may make two,
  /// what it types and what that completes. `position` is `historyPosition` before the step.
  void edited(zolt::qt::FormulaEdit::Step step, unsigned long position);
  void selectionChanged();
  void caretMoved();
  /// What a person who listens hears of what was just done: "plus", "into the denominator", "x deleted".
  void spoken(QString const& words);
  /// `cause` is READ_ERROR_NONE when no reader refused a text; `text` is a sentence without a full stop;
  /// `begin` and `end` are the faulty characters of a given text, and 0 when the formula itself is faulty,
  /// whose place is marked. An error before anybody listens is told to the first who does.
  void errorOccurred(zolt::math::common::ReadErrorE cause, QString const& text, int begin, int end);
  /// The field refused what the user typed or pasted. `reason` is a sentence without a full stop.
  void inputRejected(QString const& reason);
  /// The Enter key was pressed on a complete or empty formula. It goes on to the parent, such as a dialog.
  void returnPressed();
  /// The Enter key was pressed on an incomplete formula, whose fault is marked. The field keeps the key.
  void returnRefused();
  void editingFinished();
  void readOnlyChanged(bool readOnly);
  void zoomChanged(qreal zoom);
  void constraintsChanged();
  void powersOfTenChanged(bool powersOfTen);
  void decimalCommaChanged(bool decimalComma);
  void speechVerbosityChanged(zolt::qt::FormulaEdit::SpeechVerbosity verbosity);
  void modifiedChanged(bool modified);
  void undoAvailableChanged(bool available);
  void redoAvailableChanged(bool available);

 protected:
  void onClearButton() override;
  void onAreaChanged() override;
  void connectNotify(QMetaMethod const& signal) override;
  bool event(QEvent* event) override;
  void paintEvent(QPaintEvent* event) override;
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
  friend class SpokenFormula;
  struct StateS;

  std::unique_ptr<StateS> state_;
};

}  // namespace zolt::qt
