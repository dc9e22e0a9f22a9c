// What a line edit can do, the formula field can: position by position, property by property, key by key.

#include <QAction>
#include <QApplication>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLineEdit>
#include <QMetaProperty>
#include <QSignalSpy>
#include <QStyle>
#include <QTest>
#include <QToolButton>
#include <QVBoxLayout>
#include <QWheelEvent>

#include "tests/qt/keys.h"
#include "zolt/qt/formula_edit.h"

using namespace zolt;
using qt::FormulaEdit;

namespace {

class Anything final : public math::algexpr::ConstraintsBC {
 public:
  bool check(oss::PointerTC<math::algexpr::AlgebraicExpressionC>) const override { return true; }
};

/// A long formula in a narrow field, scrolled to its start.
struct LongS {
  LongS() : edit(QStringLiteral("x+").repeated(80) + u'x') {
    edit.resize(300, edit.sizeHint().height());
    edit.show();
    edit.setFocus();
    edit.home(false);
  }
  FormulaEdit edit;
};

}  // namespace

class LineEditTest final : public QObject {
  Q_OBJECT

 private slots:
  void caretAndSelectionHavePositions() {
    FormulaEdit edit(QStringLiteral("ab+cd"));
    QCOMPARE(edit.cursorPosition(), 5);
    QVERIFY(!edit.hasSelection());
    QCOMPARE(edit.selectionStart(), -1);
    edit.home(false);
    edit.cursorForward(false, 2);
    edit.cursorForward(true);
    QCOMPARE(edit.selectedText(), QStringLiteral("+"));
    edit.setSelection(1, 2);
    QCOMPARE(edit.selectedText(), QStringLiteral("b+"));
    QCOMPARE(edit.selectionStart(), 1);
    QCOMPARE(edit.selectionEnd(), 3);
    edit.setSelection(4, -3);
    QCOMPARE(edit.selectionLength(), 3);
    QCOMPARE(edit.cursorPosition(), 1);
    edit.insert(QStringLiteral("(x+y)/2"));
    QVERIFY(edit.tree().contains(QLatin1String("/<")));
    edit.undo();
    QCOMPARE(edit.expression(), QStringLiteral("ab+cd"));
    edit.deselect();
    QCOMPARE(edit.selectionLength(), 0);
    edit.setCursorPosition(1000);
    edit.backspace();
    edit.setCursorPosition(-5);
    edit.del();
    QCOMPARE(edit.expression(), QStringLiteral("b+c"));
    edit.cursorWordForward(true);
    QCOMPARE(edit.selectedText(), QStringLiteral("b"));
    edit.end(false);
    QCOMPARE(edit.cursorPositionAt(edit.caretRectangle().center()), 3);
    // Every step of the caret is one position, inside constructs, too.
    edit.setExpression(QStringLiteral("a/b^2"));
    edit.home(false);
    for (int position = 0; !edit.hasSelection() && edit.isCommandEnabled(field::COMMAND_RIGHT); ++position) {
      QCOMPARE(edit.cursorPosition(), position);
      edit.cursorForward(false);
    }
  }

  void modifiedFollowsTheHistory() {
    FormulaEdit edit(QStringLiteral("a"));
    QSignalSpy modified(&edit, &FormulaEdit::modifiedChanged);
    QSignalSpy undo(&edit, &FormulaEdit::undoAvailableChanged);
    QSignalSpy redo(&edit, &FormulaEdit::redoAvailableChanged);
    // Each line: keys, and whether the formula is then modified. "S" is where it is saved.
    for (auto const& [keys, expected] : {std::pair{"", false},
                                         {"b", true},
                                         {"{Ctrl+Z}", false},
                                         {"{Ctrl+Y}", true},
                                         {"S", false},
                                         {"{Ctrl+Z}", true},
                                         {"{Ctrl+Y}", false},
                                         {"{Ctrl+Z}", true},
                                         {"c", true},  // what was saved can no longer be reached
                                         {"{Ctrl+Z}{Ctrl+Z}{Ctrl+Z}", true}}) {
      if (*keys == 'S') {
        edit.setModified(false);
      } else {
        press(&edit, QLatin1String(keys));
      }
      QVERIFY2(edit.isModified() == expected, keys);
      QCOMPARE(edit.property("undoAvailable").toBool(), edit.isCommandEnabled(field::COMMAND_UNDO));
    }
    QCOMPARE(modified.count(), 7);
    QVERIFY(undo.count() >= 4 && redo.count() >= 4);
    edit.setExpression(QStringLiteral("z"));
    QVERIFY(!edit.isModified() && !edit.isUndoAvailable() && !edit.isRedoAvailable());
  }

  void everyPropertyTellsItsChanges() {
    FormulaEdit edit;
    QMetaObject const& meta = *edit.metaObject();
    int told = 0;
    for (int i = QWidget::staticMetaObject.propertyCount(); i < meta.propertyCount(); ++i) {
      QMetaProperty const property = meta.property(i);
      QVERIFY2(property.hasNotifySignal(), property.name());
      if (!property.isWritable() || qstrcmp(property.name(), "cursorPosition") == 0) continue;
      QVariant value = property.read(&edit);
      if (value.metaType() == QMetaType::fromType<bool>()) value = !value.toBool();
      if (value.metaType() == QMetaType::fromType<qreal>()) value = value.toReal() + 1;
      if (qstrcmp(property.name(), "tree") == 0) value = QStringLiteral("[\"q\"]");
      if (property.isEnumType()) value = property.enumerator().value(0);
      if (qstrcmp(property.name(), "alignment") == 0)
        value = QVariant::fromValue<Qt::Alignment>(Qt::AlignRight);
      if (value.metaType() == QMetaType::fromType<FormulaEdit::Constraints>()) {
        value = QVariant::fromValue<FormulaEdit::Constraints>(new Anything);
      } else if (value.metaType() == QMetaType::fromType<QString>() &&
                 !property.read(&edit).toString().startsWith(u'[')) {
        value = QStringLiteral("v%1").arg(i);
        if (qstrcmp(property.name(), "mathMl") == 0) value = QStringLiteral("<math><mi>m</mi></math>");
        if (qstrcmp(property.name(), "mathJson") == 0) value = QStringLiteral("\"j\"");
      }
      if (qstrcmp(property.name(), "allowedFormulas") == 0) value = QStringLiteral("nodes 9");
      edit.setReadOnly(false);
      QSignalSpy spy(&edit, property.notifySignal());
      for (int again = 0; again < 2; ++again) {
        QVERIFY2(property.write(&edit, value), property.name());
        QVERIFY2(spy.count() == 1, property.name());
      }
      ++told;
    }
    QVERIFY(told >= 14);
  }

  void dialogsReactToTheirKeys() {
    for (auto const& [keys, result] : {std::pair{"a+b{Return}", int(QDialog::Accepted)},
                                       {"a+{Return}", -1},
                                       {"a+b{Ctrl+A}{Esc}", int(QDialog::Rejected)}}) {
      QDialog dialog;
      auto* const layout = new QVBoxLayout(&dialog);
      auto* const before = new QLineEdit;
      auto* const edit = new FormulaEdit;
      auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel);
      connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
      for (QWidget* const widget :
           {static_cast<QWidget*>(before), static_cast<QWidget*>(edit), static_cast<QWidget*>(buttons)}) {
        layout->addWidget(widget);
      }
      QSignalSpy finished(&dialog, &QDialog::finished);
      dialog.show();
      QApplication::setActiveWindow(&dialog);
      before->setFocus();
      edit->setExpression(QStringLiteral("old"));
      // What Tab leads to is selected, so typing replaces it.
      press(before, QStringLiteral("{Tab}"));
      QVERIFY(edit->hasFocus());
      QCOMPARE(edit->selectedText(), QStringLiteral("old"));
      press(edit, QLatin1String(keys));
      QCOMPARE(finished.isEmpty() ? -1 : finished[0][0].toInt(), result);
      QCOMPARE(dialog.isVisible(), result == -1);
    }
  }

  void errorsHavePlacesAndWaitForListeners() {
    FormulaEdit edit(QStringLiteral("1+2)"));
    QVERIFY(edit.isEmpty());
    QSignalSpy errors(&edit, &FormulaEdit::errorOccurred);
    QTRY_COMPARE(errors.count(), 1);
    QCOMPARE(errors[0][2].toInt(), 3);
    QCOMPARE(errors[0][3].toInt(), 4);
    QVERIFY(!edit.setPrefix(QStringLiteral("+(a")));
    QCOMPARE(errors.count(), 2);
    QCOMPARE(errors[1][2].toInt(), 3);
    QSignalSpy rejected(&edit, &FormulaEdit::inputRejected);
    edit.setExpression(QStringLiteral("x"));
    press(&edit, QStringLiteral("y"));
    QCOMPARE(rejected.count(), 0);
    edit.insert(QStringLiteral("§/"));
    QCOMPARE(rejected.count(), 1);
  }

  void buttonsStandAtTheSides() {
    FormulaEdit edit(QStringLiteral("x"));
    edit.resize(300, 60);
    edit.show();
    edit.home(false);
    int const x = edit.caretRectangle().x(), least = edit.minimumSizeHint().width();
    QVERIFY(least < 60);
    QAction* const action =
        edit.addAction(edit.style()->standardIcon(QStyle::SP_FileIcon), FormulaEdit::LeadingPosition);
    QSignalSpy triggered(action, &QAction::triggered);
    auto const buttons = [&] { return edit.findChildren<QToolButton*>(); };
    QTest::mouseClick(buttons().constFirst(), Qt::LeftButton);
    QCOMPARE(triggered.count(), 1);
    int const width = edit.caretRectangle().x() - x;
    QVERIFY(width >= 16 && edit.minimumSizeHint().width() == least + width);
    edit.setLayoutDirection(Qt::RightToLeft);
    QVERIFY(buttons().constFirst()->x() > 200);
    edit.setLayoutDirection(Qt::LeftToRight);
    edit.removeAction(action);
    QCOMPARE(edit.caretRectangle().x(), x);
    edit.setTextMargins(11, 0, 0, 0);
    QCOMPARE(edit.caretRectangle().x(), x + 11);

    edit.setClearButtonEnabled(true);
    QToolButton* const clear = buttons().constLast();
    QVERIFY(clear->isVisible() && clear->x() > 200);
    edit.setReadOnly(true);
    QVERIFY(!clear->isVisible());
    edit.setReadOnly(false);
    QTest::mouseClick(clear, Qt::LeftButton);
    QVERIFY(edit.isEmpty() && !clear->isVisible());
    edit.undo();
    QVERIFY(!edit.isEmpty() && clear->isVisible());
  }

  void largeFontsMakeLargeFormulas() {
    FormulaEdit edit(QStringLiteral("x/2"));
    QFont font = edit.font();
    font.setPixelSize(12);
    edit.setFont(font);
    int const height = edit.sizeHint().height();
    font.setPixelSize(36);
    edit.setFont(font);
    QVERIFY(std::abs(edit.sizeHint().height() - 3 * height) <= 24);
    QCOMPARE(edit.zoom(), FormulaEdit::default_zoom);
  }

  void longFormulasShowThatTheyGoOn() {
    LongS stage;
    FormulaEdit& edit = stage.edit;
    QImage const before = edit.grab().toImage();
    int const y = edit.height() - 6;
    auto const caret = [&] { return edit.caretRectangle().x(); };
    int const start = caret();
    // The bar is dragged to the end and to the middle, and the wheel goes back to the start.
    QTest::mousePress(&edit, Qt::LeftButton, {}, {10, y});
    QTest::mouseMove(&edit, {295, y});
    int const end = caret();
    QVERIFY(end < -2000);
    QTest::mouseMove(&edit, {150, y});
    QVERIFY(caret() > end + 500 && caret() < -500);
    QTest::mouseRelease(&edit, Qt::LeftButton, {}, {150, y});
    QCOMPARE(edit.cursorPosition(), 0);
    QVERIFY(edit.grab().toImage() != before);
    QWheelEvent wheel({50, 10}, edit.mapToGlobal(QPointF(50, 10)), {}, {40000, 0}, Qt::NoButton,
                      Qt::NoModifier, Qt::NoScrollPhase, false);
    QApplication::sendEvent(&edit, &wheel);
    QCOMPARE(caret(), start);
  }

  void zoomKeepsThePlace() {
    LongS stage;
    FormulaEdit& edit = stage.edit;
    edit.setCursorPosition(80);
    int const caret = edit.caretRectangle().center().x();
    edit.setZoom(1.3 * edit.zoom());
    QVERIFY(std::abs(edit.caretRectangle().center().x() - caret) <= 2);
    QPoint const place(60, edit.height() / 2);
    int const there = edit.cursorPositionAt(place);
    for (qreal const factor : {1.5, 0.5}) {
      edit.setZoomAround(factor * edit.zoom(), place);
      QVERIFY(std::abs(edit.cursorPositionAt(place) - there) <= 1);
    }
  }
};

QTEST_MAIN(LineEditTest)
#include "line_edit_test.moc"
