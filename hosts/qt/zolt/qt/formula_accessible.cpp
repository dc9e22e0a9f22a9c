#include "zolt/qt/formula_accessible.h"

#include <QAccessible>
#include <QAccessibleWidget>

#include "zolt/field/readable_text.h"
#include "zolt/qt/formula_edit.h"
#include "zolt/qt/text.h"

namespace zolt::qt {

namespace {

class FormulaAccessible final : public QAccessibleWidget, public QAccessibleTextInterface {
 public:
  explicit FormulaAccessible(FormulaEdit* edit) : QAccessibleWidget(edit, QAccessible::EditableText) {}

  void* interface_cast(QAccessible::InterfaceType type) override {
    if (type == QAccessible::TextInterface) return static_cast<QAccessibleTextInterface*>(this);
    return QAccessibleWidget::interface_cast(type);
  }

  QString text(QAccessible::Text kind) const override {
    return kind == QAccessible::Value ? words() : QAccessibleWidget::text(kind);
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
    FormulaEdit::CaretOffsets const at = edit().caretOffsets();
    *startOffset = std::min(at.anchor, at.caret);
    *endOffset = std::max(at.anchor, at.caret);
  }
  int selectionCount() const override { return edit().hasSelection() ? 1 : 0; }
  void addSelection(int startOffset, int endOffset) override { edit().selectOffsets(startOffset, endOffset); }
  void removeSelection(int selectionIndex) override {
    if (selectionIndex == 0) edit().runCommand(field::COMMAND_DROP_SELECTION);
  }
  void setSelection(int selectionIndex, int startOffset, int endOffset) override {
    if (selectionIndex == 0) edit().selectOffsets(startOffset, endOffset);
  }

  int cursorPosition() const override { return edit().caretOffsets().caret; }
  void setCursorPosition(int position) override { edit().selectOffsets(position, position); }

  QString text(int startOffset, int endOffset) const override {
    return words().mid(startOffset, endOffset - startOffset);
  }
  int characterCount() const override { return int(words().size()); }

  QRect characterRect(int offset) const override {
    QRect const box = edit().placeRectangle(offset);
    return {edit().mapToGlobal(box.topLeft()), box.size()};
  }
  int offsetAtPoint(QPoint const& point) const override {
    return edit().offsetNear(edit().mapFromGlobal(point));
  }
  void scrollToSubstring(int startIndex, int) override { edit().revealOffset(startIndex); }
  QString attributes(int, int* startOffset, int* endOffset) const override {
    *startOffset = 0;
    *endOffset = characterCount();
    return {};
  }

 private:
  FormulaEdit& edit() const { return *static_cast<FormulaEdit*>(object()); }
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

void notifyAccessibility(FormulaEdit& edit, bool formulaChanged) {
  if (!QAccessible::isActive()) return;
  if (formulaChanged) {
    QAccessibleValueChangeEvent event(&edit, edit.readableText());
    QAccessible::updateAccessibility(&event);
  }
  FormulaEdit::CaretOffsets const at = edit.caretOffsets();
  if (at.anchor != at.caret) {
    QAccessibleTextSelectionEvent event(&edit, std::min(at.anchor, at.caret), std::max(at.anchor, at.caret));
    event.setCursorPosition(at.caret);
    QAccessible::updateAccessibility(&event);
  } else {
    QAccessibleTextCursorEvent event(&edit, at.caret);
    QAccessible::updateAccessibility(&event);
  }
}

}  // namespace zolt::qt
