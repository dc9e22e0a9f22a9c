#pragma once

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QInputMethodEvent>
#include <QList>
#include <QPoint>
#include <QPointer>
#include <QRect>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

#include "zolt/field/caret_speech.h"
#include "zolt/field/formula_field.h"
#include "zolt/field/readable_text.h"
#include "zolt/qt/formula_edit.h"
#include "zolt/qt/formula_fonts.h"
#include "zolt/qt/qt_graphics.h"
#include "zolt/qt/system_clipboard.h"

// Internal to FormulaEdit: the state that its source files share.

namespace zolt::qt {

class CompletionList;

struct FormulaEdit::StateS {
  // In logical pixels.
  static constexpr int side_margin = 6, top_margin = 4;

  enum class Actor { User, Program };
  struct StepS {
    Step step;
    unsigned long position;
  };

  explicit StateS(FormulaEdit& owner);
  ~StateS();

  // ---- Acts (formula_edit.cpp) ---------------------------------------------------------------------------
  /// Runs what `actor` does to the field, and then everything that follows: layout, scrolling, repainting,
  /// signals. The widget may have been deleted afterwards, since slots can do anything.
  bool act(std::function<bool()> const& action, Actor actor = Actor::User);
  /// Runs an `action` that takes what the user types; tells when it is refused.
  bool take(std::function<bool()> const& action);
  /// Runs an `action` of the host's that always succeeds.
  void change(std::function<void()> const& action);
  /// Runs an `action` of the host's that shows another formula; reports `error` when it is refused.
  bool show(std::function<bool()> const& action, math::common::ReadErrorS const& error);
  using ReaderT = std::function<Expression(oss::wstring const&, oss::PointerTC<math::algexpr::CASSessionBC>,
                                           math::common::ReadErrorS*)>;
  /// Shows the expression that `read` makes of the text; reports what is wrong with one that it refuses.
  bool showText(QString const& text, ReaderT const& read);
  /// Emits what has changed of the properties that follow the history. `before` is where that was.
  void followHistory(unsigned long before);
  /// Emits `errorOccurred`, or keeps the error until somebody listens.
  void report(math::common::ReadErrorS const& error);
  /// The steps that `edited` has to report after an act that began with the history at `position`.
  std::vector<StepS> stepsSince(unsigned long position, bool changed) const;

  QMimeData* createMimeData(math::ved::SelectionS const& range) const;

  // ---- Completion (formula_edit_completion.cpp) ----------------------------------------------------------
  /// Shows the list as it is now, or hides it.
  void showCompletion();
  /// Suggests names for what has been typed, after a pause or at once.
  void suggestLater();
  void suggest();
  /// Whether a key is for the open list, which then gets it.
  bool isForCompletion(QKeyEvent const& event) const;
  void giveToCompletion(QKeyEvent const& event);
  /// The command of a key, unless it is one for tables and the caret is in none.
  std::optional<field::CommandE> commandFor(QKeyEvent const& event) const;

  // ---- Input methods (formula_edit_keys.cpp) -------------------------------------------------------------
  bool takeComposed(QInputMethodEvent const& event);

  // ---- Speech (formula_edit_places.cpp) ------------------------------------------------------------------
  /// In the language of the widget's locale, where we have it.
  exchange::SpeechStyleS speechStyle() const;
  field::ReadableTextS readableText() const;
  /// Tells assistive technology what has changed since the last call.
  void notifyListener(bool formulaChanged);

  // ---- Geometry (formula_edit_paint.cpp) -----------------------------------------------------------------
  /// The part of the widget that shows the formula.
  QRect viewport() const { return edit.contentsArea(); }
  /// Logical pixels per surface unit.
  qreal scale() const;
  QSize contentSize();
  /// The place of the formula's top-left corner, in widget coordinates.
  QPoint origin();
  QPoint toUnits(QPointF pos);
  QRect toPixels(math::ved::RectangleS const& box);

  // ---- Scrolling (formula_edit_scroll.cpp) ---------------------------------------------------------------
  /// A thin bar at an edge, which says how much of the formula is seen and which part.
  struct BarS {
    QRect zone;                 // where the pointer takes hold of it
    QRect thumb;                // at rest
    int length = 0, shown = 0;  // of the formula, and how much of it is seen
  };
  /// No value when the formula does not go on in that direction.
  std::optional<BarS> bar(Qt::Orientation orientation);
  /// Keeps the formula in view after a change of size.
  void clampScroll();
  void reveal(math::ved::RectangleS const& box);
  /// Makes `change` to what sizes are shown in; what was at `place` then is there again if scrolling allows.
  void resize(std::function<void()> const& change, QPointF place);
  /// What the user looks at: the caret, or the left edge when it is out of sight.
  QPointF focus();
  /// Whether the press is on a bar, which then follows the pointer.
  bool pressBar(QPoint pos);
  void dragBar(QPoint pos);
  /// Notes over which bar the pointer is. True when it is over one.
  bool hoverBar(QPoint pos);
  /// Fades the formula out at edges beyond which it continues, and paints the bars.
  void paintEdges(QPainter& painter);

  // ---- Caret (formula_edit_paint.cpp) --------------------------------------------------------------------
  void restartBlinking();
  void paintSelection(QPainter& painter);
  void paintFault(QPainter& painter);
  void paintCaret(QPainter& painter);
  /// Where the caret is painted. It may move by as much as `caretReach` to where it covers least of the
  /// formula.
  int caretReach() const;
  QRectF findClearCaret(QRect const& caret, int width);
  /// Underlines what an input method composes.
  void paintComposed(QPainter& painter);

  // ---- Pointer (formula_edit_pointer.cpp) ----------------------------------------------------------------
  void press(QMouseEvent const& event);
  bool isOverSelection(QPointF pos);
  void startDrag();
  void dragTo(QPointF pos);
  /// The place where a press at `pos` would put the caret; the formula does not change.
  math::ved::PlaceS placeNear(QPointF pos);
  bool paste(field::ClipboardContentS const& content);
  void offerPrimarySelection();

  FormulaEdit& edit;
  std::shared_ptr<FormulaFonts> fonts;  // null without font files
  QString fontError;
  oss::PointerTC<QtGraphicsC> graphics;  // null without fonts
  std::unique_ptr<field::FormulaFieldC> field;
  oss::PointerTC<SystemClipboardC> clipboard;
  oss::PointerTC<SystemClipboardC> primary;  // what was selected last, on platforms that have it

  SpeechVerbosity speechVerbosity = SpeechVerbosity::Medium;
  qreal zoom = default_zoom;
  bool powersOfTen = false;
  qreal fontSize = 0;  // logical pixels
  unsigned long precision = 0;
  QString allowed;  // the text of the constraints, when it was text
  math::algexpr::NumberDisplayFormatE format = math::algexpr::NUMBER_FORMAT_AUTOMATIC;

  std::optional<unsigned long> unmodifiedAt = 0;  // in the history; no value when that cannot be reached
  bool redoing = false;
  std::optional<math::common::ReadErrorS> untold;

  QPoint scroll;  // how much is scrolled out of sight on the left and at the top
  QBasicTimer blinkTimer;
  bool caretShown = true;
  QList<QInputMethodEvent::Attribute> composedFormats;  // of what an input method composes
  bool composedCaretShown = true;
  CompletionList* completions = nullptr;  // null until the first is shown
  QBasicTimer suggestionTimer;

  // The state that the signals and events have reported.
  field::CaretSpeechC speech;
  QString announced;  // the last thing that only a listener needs to be told
  math::ved::SelectionS selectionSeen;
  QSize contentSeen;
  bool modifiedSeen = false, undoSeen = false, redoSeen = false;

  std::optional<math::ved::RectangleS> faultyBox;  // marked until the next act

  unsigned clicks = 0;
  QElapsedTimer sinceClick;
  QPoint clickedAt;
  bool selecting = false;  // the pointer is down in the field
  bool mayDrag = false;    // the pointer went down on the selection
  QPointF pointer;         // for scrolling while it rests outside
  QBasicTimer scrollTimer;
  std::optional<Qt::Orientation> barHovered, barDragged;
  int barGrip = 0;                 // from the start of the thumb to where it was pressed
  bool draggingHere = false;       // our own selection is under way
  std::optional<QRect> dropCaret;  // where a drop at the pointer would insert
};

}  // namespace zolt::qt
