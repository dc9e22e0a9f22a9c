#include "zolt/qt/formula_accessible.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include "zolt/field/readable_text.h"
#include "zolt/qt/formula_edit.h"
#include "zolt/qt/spoken_formula.h"
#include "zolt/qt/text.h"

namespace zolt::qt {

namespace {

class FormulaAccessible final : public QAccessibleWidget,
                                public QAccessibleTextInterface,
                                public QAccessibleEditableTextInterface {
 public:
  explicit FormulaAccessible(FormulaEdit* edit) : QAccessibleWidget(edit, QAccessible::EditableText) {}

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::TextInterface) return static_cast<QAccessibleTextInterface*>(this);
    if (type == QAccessible::EditableTextInterface)
      return static_cast<QAccessibleEditableTextInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
  }

  QString text(QAccessible::Text kind) const override {
    if (kind == QAccessible::Value) return words();
    if (kind == QAccessible::Description && !formula().announcement().isEmpty())
      return formula().announcement();
    return QAccessibleWidget::text(kind);
  }

  QAccessible::State state() const override {
    QAccessible::State state = QAccessibleWidget::state();
    state.editable = !edit().isReadOnly();
    state.readOnly = edit().isReadOnly();
    state.selectableText = true;
    return state;
  }

  void selection(int selectionIndex, int* startOffset, int* endOffset) const override {
    *startOffset = *endOffset = 0;
    if (selectionIndex != 0) return;
    SpokenFormula::Offsets const at = formula().caretOffsets();
    *startOffset = std::min(at.anchor, at.caret);
    *endOffset = std::max(at.anchor, at.caret);
  }
  int selectionCount() const override { return edit().hasSelection() ? 1 : 0; }
  void addSelection(int startOffset, int endOffset) override { formula().select(startOffset, endOffset); }
  void removeSelection(int selectionIndex) override {
    if (selectionIndex == 0) edit().runCommand(field::COMMAND_DROP_SELECTION);
  }
  void setSelection(int selectionIndex, int startOffset, int endOffset) override {
    if (selectionIndex == 0) formula().select(startOffset, endOffset);
  }

  int cursorPosition() const override { return formula().caretOffsets().caret; }
  void setCursorPosition(int position) override { formula().select(position, position); }

  QString text(int startOffset, int endOffset) const override {
    return words().mid(startOffset, endOffset - startOffset);
  }
  int characterCount() const override { return int(words().size()); }
  /// A "character" is what Right would go over: a whole word where the formula has a sign.
  QString textAtOffset(int offset, QAccessible::TextBoundaryType boundary, int* startOffset,
                       int* endOffset) const override {
    if (boundary != QAccessible::CharBoundary) {
      return QAccessibleTextInterface::textAtOffset(offset, boundary, startOffset, endOffset);
    }
    SpokenFormula::Offsets const step = formula().stepAt(offset);
    *startOffset = step.anchor;
    *endOffset = step.caret;
    return text(step.anchor, step.caret).trimmed();
  }

  QRect characterRect(int offset) const override {
    QRect const box = formula().characterRectangle(offset);
    return {edit().mapToGlobal(box.topLeft()), box.size()};
  }
  int offsetAtPoint(QPoint const& point) const override {
    // The caret's nearest place may be the one after the character.
    int const offset = formula().offsetNear(edit().mapFromGlobal(point));
    bool const isBefore = offset > 0 && characterRect(offset - 1).contains(point);
    return isBefore ? offset - 1 : offset;
  }
  void scrollToSubstring(int startIndex, int) override { formula().reveal(startIndex); }
  QString attributes(int, int* startOffset, int* endOffset) const override {
    *startOffset = 0;
    *endOffset = characterCount();
    return {};
  }

  void deleteText(int startOffset, int endOffset) override {
    if (edit().isReadOnly()) return;
    formula().select(startOffset, endOffset);
    if (edit().hasSelection()) edit().runCommand(field::COMMAND_DELETE_LEFT);
  }
  void insertText(int offset, QString const& text) override { replaceText(offset, offset, text); }
  void replaceText(int startOffset, int endOffset, QString const& text) override {
    if (edit().isReadOnly()) return;
    formula().select(startOffset, endOffset);
    edit().insertText(text);
  }

 private:
  FormulaEdit& edit() const { return *static_cast<FormulaEdit*>(object()); }
  SpokenFormula formula() const { return SpokenFormula(edit()); }
  QString words() const { return edit().readableText(); }
};

QAccessibleInterface* makeAccessible(QString const&, QObject* object) {
  auto* const edit = qobject_cast<FormulaEdit*>(object);
  return edit ? new FormulaAccessible(edit) : nullptr;
}

}  // namespace

void installAccessibility() {
  static bool const installed = [] {
    QAccessible::installFactory(makeAccessible);
    return true;
  }();
  (void)installed;
}

void notifyValue([[maybe_unused]] FormulaEdit& edit) {
  // On a bus of AT-SPI values are numbers, and Qt complains about others.
#if !defined(Q_OS_UNIX) || defined(Q_OS_DARWIN)
  QAccessibleValueChangeEvent event(&edit, edit.readableText());
  QAccessible::updateAccessibility(&event);
#endif
}

void notifyTextChange(FormulaEdit& edit, field::SpokenEditS const& change) {
  if (change.removed.empty() && change.inserted.empty()) return;
  QAccessibleTextUpdateEvent event(&edit, int(change.offset), toQString(change.removed),
                                   toQString(change.inserted));
  QAccessible::updateAccessibility(&event);
}

void notifyCaret(FormulaEdit& edit) {
  SpokenFormula::Offsets const at = SpokenFormula(edit).caretOffsets();
  if (at.anchor != at.caret) {
    QAccessibleTextSelectionEvent event(&edit, std::min(at.anchor, at.caret), std::max(at.anchor, at.caret));
    event.setCursorPosition(at.caret);
    QAccessible::updateAccessibility(&event);
  } else {
    QAccessibleTextCursorEvent event(&edit, at.caret);
    QAccessible::updateAccessibility(&event);
  }
}

void announce(FormulaEdit& edit, QString const& words) {
#if QT_VERSION >= QT_VERSION_CHECK(6, 8, 0)
  if (words.isEmpty()) return;
  QAccessibleAnnouncementEvent event(&edit, words);
  event.setPoliteness(QAccessible::AnnouncementPoliteness::Assertive);
#else
  // Screen readers say the new description of what has the focus.
  (void)words;
  QAccessibleEvent event(&edit, QAccessible::DescriptionChanged);
#endif
  QAccessible::updateAccessibility(&event);
}

}  // namespace zolt::qt
