// The formula field as a widget: keys, pointer, input methods, clipboard, drag and drop, accessibility.

#include <QAccessible>
#include <QApplication>
#include <QClipboard>
#include <QDropEvent>
#include <QImage>
#include <QInputMethodEvent>
#include <QLineEdit>
#include <QListView>
#include <QMimeData>
#include <QSignalSpy>
#include <QStyleHints>
#include <QSvgRenderer>
#include <QTemporaryDir>
#include <QTest>
#include <QVBoxLayout>
#include <memory>

#include "tests/qt/keys.h"
#include "zolt/field/formula_field.h"
#include "zolt/field/palette_model.h"
#include "zolt/qt/formula_edit.h"
#include "zolt/qt/formula_mime.h"
#include "zolt/qt/formula_picture.h"
#include "zolt/qt/qt_graphics.h"
#include "zolt/qt/text.h"

using namespace zolt;
using qt::FormulaEdit;

namespace {

/// A window with a formula field between two other fields.
struct StageS {
  explicit StageS(char const* keys = "") {
    auto* const layout = new QVBoxLayout(&window);
    layout->addWidget(before = new QLineEdit);
    layout->addWidget(edit = new FormulaEdit);
    layout->addWidget(after = new QLineEdit);
    window.resize(400, 200);
    window.show();
    QApplication::setActiveWindow(&window);
    edit->setFocus();
    [[maybe_unused]] bool const active = QTest::qWaitForWindowActive(&window);
    press(edit, QLatin1String(keys));
  }

  /// Whether the field accepts it.
  template <class EventT, class... ArgumentsT>
  bool send(ArgumentsT&&... arguments) const {
    EventT event(std::forward<ArgumentsT>(arguments)...);
    event.ignore();
    QApplication::sendEvent(edit, &event);
    return event.isAccepted();
  }

  void commit(QString const& text) const {
    QInputMethodEvent event;
    event.setCommitString(text);
    QApplication::sendEvent(edit, &event);
  }

  QWidget window;
  QLineEdit* before;
  FormulaEdit* edit;
  QLineEdit* after;
};

int countInk(QImage const& image, QColor const& background) {
  int count = 0;
  for (int y = 0; y < image.height(); ++y) {
    for (int x = 0; x < image.width(); ++x) {
      if (std::abs(qGray(image.pixel(x, y)) - qGray(background.rgb())) > 100) ++count;
    }
  }
  return count;
}

QImage grab(QWidget& widget) { return widget.grab().toImage().convertToFormat(QImage::Format_RGB32); }

class RefusesSevens final : public math::algexpr::ConstraintsBC {
 public:
  bool check(oss::PointerTC<math::algexpr::AlgebraicExpressionC> expression) const override {
    return !expression || expression->toPrefixString().find(u'7') == oss::wstring::npos;
  }
};

}  // namespace

class WidgetTest final : public QObject {
  Q_OBJECT

 private slots:
  void keysTypeAndAreTold() {
    // A menu's letter is no text, AltGr's is.
    for (auto const& [keys, prefix] : {std::pair{"sqrt(x", "sqrt(x)"},
                                       {"ab{Ctrl+Z}{Ctrl+Y}", "ab"},
                                       {"1/{Tab}{Shift+Tab}2", "/(1,2)"},
                                       {"x{Alt+I}y", "xy"},
                                       {"x{Ctrl+Alt+2}y", "x2y"}}) {
      StageS stage;
      QSignalSpy changed(stage.edit, &FormulaEdit::expressionChanged);
      QSignalSpy edited(stage.edit, &FormulaEdit::edited);
      press(stage.edit, QLatin1String(keys));
      QCOMPARE(stage.edit->prefix(), QLatin1String(prefix));
      QVERIFY(changed.count() > 1);
      // A completion is one more undo step.
      bool const completes = qstrcmp(keys, "sqrt(x") == 0;
      QCOMPARE(edited.count(), changed.count() + completes);
    }
  }

  void namesAreCompletedWhenTheFocusGoes() {
    StageS stage("number");
    QTest::keyClicks(stage.edit, "+pi");
    stage.after->setFocus();
    QCOMPARE(stage.edit->prefix(), QStringLiteral("+(number,_PI)"));
  }

  void expressionsComeAndGo() {
    FormulaEdit edit(QStringLiteral("(a+b)/2"));
    QCOMPARE(edit.prefix(), QStringLiteral("/(+(a,b),2)"));
    QCOMPARE(edit.property("expression").toString(), QStringLiteral("(a+b)/2"));
    QVERIFY(edit.setProperty("prefix", QStringLiteral("sqrt(x)")));
    QCOMPARE(edit.expression(), QStringLiteral("sqrt(x)"));

    QSignalSpy errors(&edit, &FormulaEdit::errorOccurred);
    QSignalSpy changed(&edit, &FormulaEdit::expressionChanged);
    QVERIFY(!edit.setExpression(QStringLiteral("a+*")));
    QVERIFY(!edit.setPrefix(QStringLiteral("+(a")));
    QVERIFY(!edit.setTree(QStringLiteral("[\"a")));
    QCOMPARE(errors.count(), 3);
    QCOMPARE(changed.count(), 0);
    QCOMPARE(edit.prefix(), QStringLiteral("sqrt(x)"));

    QVERIFY(edit.setTree(QStringLiteral("[\"\", /<[\"a\"] ; [\"\"]>, \"\"]")));
    QVERIFY(!edit.isComplete());
    QVERIFY(!edit.incompleteReason().isEmpty());
    QVERIFY(edit.expression().isEmpty());
    edit.setAlgebraicExpression(nullptr);
    QVERIFY(edit.isEmpty());
  }

  void fieldsCanBeReadOnly() {
    StageS stage("a+b");
    stage.edit->setReadOnly(true);
    press(stage.edit, QStringLiteral("c{Backspace}"));
    stage.commit(QStringLiteral("d"));
    stage.edit->paste();
    stage.edit->cut();
    QVERIFY(!stage.edit->insertOperator(QStringLiteral("sqrt")));
    QCOMPARE(stage.edit->prefix(), QStringLiteral("+(a,b)"));
    QVERIFY(!stage.edit->inputMethodQuery(Qt::ImEnabled).toBool());
    press(stage.edit, QStringLiteral("{Ctrl+A}{Ctrl+C}"));
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("a+b"));

    // A window may have the history.
    stage.edit->setReadOnly(false);
    stage.edit->setUndoRedoEnabled(false);
    press(stage.edit, QStringLiteral("{End}+c{Ctrl+Z}"));
    QCOMPARE(stage.edit->prefix(), QStringLiteral("+(+(a,b),c)"));
    QVERIFY(!stage.send<QKeyEvent>(QEvent::ShortcutOverride, Qt::Key_Z, Qt::ControlModifier));
  }

  void tabLeadsThroughSlotsAndThenOn() {
    StageS stage;
    stage.edit->insertOperator(QStringLiteral("/"));
    press(stage.edit, QStringLiteral("1{Tab}2{Tab}"));
    QCOMPARE(stage.edit->prefix(), QStringLiteral("/(1,2)"));
    QVERIFY(stage.edit->hasFocus());
    press(stage.edit, QStringLiteral("{Tab}"));
    QVERIFY(stage.after->hasFocus());
    press(stage.after, QStringLiteral("{Shift+Tab}"));
    QVERIFY(stage.edit->hasFocus());
  }

  void keysThatAreOfNoUseGoToTheParent() {
    StageS stage;
    stage.edit->setExpression(QStringLiteral("x/y"));
    stage.edit->runCommand(field::COMMAND_FORMULA_START);
    for (auto const& [key, taken] : {std::pair{Qt::Key_Up, true},
                                     {Qt::Key_Up, false},
                                     {Qt::Key_Down, true},
                                     {Qt::Key_Left, true},
                                     {Qt::Key_F5, false}}) {
      QCOMPARE(stage.send<QKeyEvent>(QEvent::KeyPress, key, Qt::NoModifier), taken);
    }
    QVERIFY(
        !stage.send<QKeyEvent>(QEvent::ShortcutOverride, Qt::Key_I, Qt::AltModifier, QStringLiteral("i")));
  }

  void enterChecks() {
    StageS stage;
    QSignalSpy errors(stage.edit, &FormulaEdit::errorOccurred);
    QSignalSpy returned(stage.edit, &FormulaEdit::returnPressed);
    press(stage.edit, QStringLiteral("a+*b{Return}"));
    QCOMPARE(errors.count(), 1);
    QVERIFY(!errors[0][1].toString().isEmpty());
    QVERIFY(stage.edit->hasSelection());
    QCOMPARE(returned.count(), 0);
    press(stage.edit, QStringLiteral("{Del}{Enter}"));
    QCOMPARE(errors.count(), 1);
    QCOMPARE(returned.count(), 1);
  }

  void constraintsLeaveTheFormulaAlone() {
    StageS stage("1/");
    FormulaEdit& edit = *stage.edit;
    for (bool const constrained : {true, false}) {
      auto const state = [&] {
        return std::tuple(edit.tree(), edit.cursorPosition(), edit.historyPosition());
      };
      auto const before = state();
      edit.setConstraints(constrained ? new RefusesSevens : nullptr);
      QVERIFY(state() == before);
      press(&edit, QStringLiteral("7"));
      QCOMPARE(edit.tree().contains(u'7'), !constrained);
    }
  }

  void slotsMayDeleteTheField() {
    using ActT = void (*)(FormulaEdit&);
    static auto const click = [](FormulaEdit& edit, QEvent::Type type, Qt::MouseButton button, QPointF at) {
      QMouseEvent event(type, at, edit.mapToGlobal(at), button,
                        type == QEvent::MouseButtonRelease ? Qt::NoButton : button, Qt::NoModifier);
      QApplication::sendEvent(&edit, &event);
    };
    ActT const acts[] = {
        [](FormulaEdit& edit) { edit.check(); },
        [](FormulaEdit& edit) { press(&edit, QStringLiteral("{Return}")); },
        [](FormulaEdit& edit) { press(&edit, QStringLiteral("{Home}")); },
        [](FormulaEdit& edit) { press(&edit, QStringLiteral("{Tab}")); },
        [](FormulaEdit& edit) { press(&edit, QStringLiteral("+")); },
        [](FormulaEdit& edit) { edit.setTree(QStringLiteral("[\"x\"]")); },
        [](FormulaEdit& edit) { edit.setPrefix(QStringLiteral("y")); },
        [](FormulaEdit& edit) { edit.setReadOnly(true); },
        [](FormulaEdit& edit) {
          QPointF const start(4, edit.height() / 2), end(edit.width() - 4, edit.height() / 2);
          QPointer<FormulaEdit> const alive(&edit);
          click(edit, QEvent::MouseButtonPress, Qt::LeftButton, start);
          if (alive) click(edit, QEvent::MouseMove, Qt::LeftButton, end);
          if (alive) click(edit, QEvent::MouseButtonRelease, Qt::LeftButton, end);
        },
        [](FormulaEdit& edit) {
          QContextMenuEvent event(QContextMenuEvent::Mouse, {2, 2}, edit.mapToGlobal(QPoint(2, 2)));
          QApplication::sendEvent(&edit, &event);
        },
        [](FormulaEdit& edit) {
          QMimeData data;
          data.setText(QStringLiteral("x/y"));
          QDropEvent event({2, 2}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
          QApplication::sendEvent(&edit, &event);
        },
        [](FormulaEdit& edit) {
          QFocusEvent event(QEvent::FocusOut, Qt::TabFocusReason);
          QApplication::sendEvent(&edit, &event);
        }};
    int deleted = 0;
    for (ActT const act : acts) {
      for (int i = 0; i < 8; ++i) {
        int const signal = i % 4;
        StageS stage(i < 4 ? "1/pi" : "1/a+{Ctrl+Home}");  // something to complete; incomplete
        auto const remove = [edit = stage.edit, &deleted] {
          delete edit;
          ++deleted;
        };
        if (signal == 0) connect(stage.edit, &FormulaEdit::expressionChanged, remove);
        if (signal == 1) connect(stage.edit, &FormulaEdit::edited, remove);
        if (signal == 2) connect(stage.edit, &FormulaEdit::selectionChanged, remove);
        if (signal == 3) connect(stage.edit, &FormulaEdit::caretMoved, remove);
        act(*stage.edit);
      }
    }
    QVERIFY(deleted >= 40);
  }

  void pointerPlacesAndSelects() {
    StageS stage("abc+def{End}");
    QPoint const end = stage.edit->caretRectangle().center();
    QTest::keyClick(stage.edit, Qt::Key_Home);
    QPoint const start = stage.edit->caretRectangle().center();

    QTest::mouseClick(stage.edit, Qt::LeftButton, {}, end);
    QVERIFY(std::abs(stage.edit->caretRectangle().center().x() - end.x()) <= 2);
    QVERIFY(!stage.edit->hasSelection());

    QSignalSpy selected(stage.edit, &FormulaEdit::selectionChanged);
    QTest::mousePress(stage.edit, Qt::LeftButton, {}, start);
    QTest::mouseMove(stage.edit, end);
    QTest::mouseRelease(stage.edit, Qt::LeftButton, {}, end);
    QVERIFY(selected.count() > 0);
    stage.edit->copy();
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("abc+def"));

    QPoint const inFirst = start + QPoint(8, 0);
    QTest::mouseDClick(stage.edit, Qt::LeftButton, {}, end);  // elsewhere, so that no click counts on
    QTest::mouseClick(stage.edit, Qt::LeftButton, {}, inFirst);
    QTest::mousePress(stage.edit, Qt::LeftButton, {}, inFirst);
    stage.edit->copy();
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("abc"));
    QTest::mouseRelease(stage.edit, Qt::LeftButton, {}, inFirst);
  }

  void draggingBeyondTheEdgeScrolls() {
    StageS stage;
    QStringList terms;
    for (int i = 0; i < 60; ++i) terms << QStringLiteral("x");
    stage.edit->setExpression(terms.join(u'+'));
    QTest::keyClick(stage.edit, Qt::Key_Home, Qt::ControlModifier);
    QPoint const start = stage.edit->caretRectangle().center();
    QTest::mousePress(stage.edit, Qt::LeftButton, {}, start);
    QTest::mouseMove(stage.edit, {stage.edit->width() + 60, start.y()});
    // The pointer rests while the formula moves under it.
    QTRY_COMPARE(stage.edit->cursorPosition(), stage.edit->expression().size());
    QTest::mouseRelease(stage.edit, Qt::LeftButton, {}, start);
    QCOMPARE(stage.edit->selectionStart(), 0);
  }

  void theCaretStaysInSight() {
    StageS stage(QByteArray("abc+").repeated(40));
    stage.edit->setPlaceholderText(QStringLiteral("Formula"));
    for (char const* const key : {"", "{Home}", "{End}"}) {
      press(stage.edit, QLatin1String(key));
      QVERIFY(stage.edit->rect().contains(stage.edit->caretRectangle()));
      stage.window.resize(200, 200);
    }
  }

  void inputMethodsCompose() {
    StageS stage("x");
    stage.send<QInputMethodEvent>(QStringLiteral("^"), QList<QInputMethodEvent::Attribute>());
    QCOMPARE(stage.edit->prefix(), QStringLiteral("x"));
    stage.commit(QStringLiteral("^"));
    QTest::keyClicks(stage.edit, "2");
    QCOMPARE(stage.edit->prefix(), QStringLiteral("^(x,2)"));
    // A dead key that has met the next letter.
    press(stage.edit, QStringLiteral("{End}+a"));
    stage.send<QKeyEvent>(QEvent::KeyPress, Qt::Key_Dead_Circumflex, Qt::NoModifier);
    stage.commit(QStringLiteral("ê"));
    QCOMPARE(stage.edit->prefix(), QStringLiteral("+(^(x,2),^(a,e))"));
    QRect const caret = stage.edit->inputMethodQuery(Qt::ImCursorRectangle).toRect();
    QVERIFY(stage.edit->rect().contains(caret.center()));
    // Composed text moves the caret and what is after it, in every script.
    press(stage.edit, QStringLiteral("{End}{Home}"));
    QImage const before = grab(*stage.edit);
    QRect const start = stage.edit->caretRectangle();
    QString const composed = QStringLiteral("\u05D0\u4E2D");
    stage.send<QInputMethodEvent>(composed,
                                  QList<QInputMethodEvent::Attribute>{{QInputMethodEvent::Cursor, 1, 1, {}}});
    QVERIFY(stage.edit->caretRectangle().left() > start.left() + 5);
    QVERIFY(grab(*stage.edit) != before);
    stage.commit(QString());
    QCOMPARE(stage.edit->caretRectangle(), start);
  }

  void theCaretIsClearOfLetters() {
    StageS stage("[x]=(f-lll)*11*|y|");
    for (qreal const zoom : {0.8, 1.0, 1.3, 2.5}) {
      stage.edit->setZoom(zoom);
      press(stage.edit, QStringLiteral("{Home}"));
      for (int place = 0; place < 16; ++place) {
        QImage const shown = grab(*stage.edit);
        QRect const caret = stage.edit->caretRectangle();
        // Just above the letters only the caret is dark, and beside it nothing is, on its whole height.
        auto const isDark = [&](int x, int y) { return qGray(shown.pixel(x, y)) < 128; };
        int x = std::max(1, caret.left() - 12);
        while (x < caret.right() + 12 && !(isDark(x, caret.top() - 1) && isDark(x, caret.bottom() + 1))) ++x;
        int end = x;
        while (isDark(end, caret.top() - 1)) ++end;
        QVERIFY(end > x && end <= x + 4);
        for (int y = caret.top(); y <= caret.bottom(); ++y) QVERIFY(!isDark(x - 1, y) && !isDark(end, y));
        press(stage.edit, QStringLiteral("{Right}"));
      }
    }
  }

  void aBackslashCompletesNames() {
    StageS stage("x+");
    QSignalSpy returned(stage.edit, &FormulaEdit::returnPressed);
    auto const list = [&] { return stage.edit->findChild<QListView*>(); };
    press(stage.edit, QStringLiteral("\\s"));
    QVERIFY(list() && list()->isVisible() && stage.edit->hasFocus());
    QCOMPARE(list()->currentIndex().row(), 0);
    // Screen readers are told what is current.
    QAccessibleInterface* const read = QAccessible::queryAccessibleInterface(list());
    QVERIFY(read->child(1)->text(QAccessible::Name).contains(QLatin1String("type ")));
    press(stage.edit, QStringLiteral("qr{Down}{Up}{Return}"));
    QVERIFY(!list()->isVisible());
    press(stage.edit, QStringLiteral("2"));
    QCOMPARE(stage.edit->prefix(), QStringLiteral("+(x,sqrt(2))"));
    QCOMPARE(returned.count(), 0);
    press(stage.edit, QStringLiteral("{Right}{Ctrl+Z}{Ctrl+Z}\\zzz"));
    QCOMPARE(list()->model()->flags(list()->model()->index(0, 0)), Qt::NoItemFlags);
    // Tab does not leave while something is half typed, and Escape closes the list alone.
    press(stage.edit, QStringLiteral("{Tab}"));
    QVERIFY(stage.edit->hasFocus());
    press(stage.edit, QStringLiteral("{Escape}y"));
    QCOMPARE(stage.edit->prefix(), QStringLiteral("+(x,y)"));
    press(stage.edit, QStringLiteral("\\be"));
    QTest::mouseClick(list()->viewport(), Qt::LeftButton, {},
                      list()->visualRect(list()->model()->index(0, 0)).center());
    QCOMPARE(stage.edit->prefix(), QStringLiteral("+(x,*(y,\u03B2))"));
    // Without a backslash after a pause; the list takes no key before Down.
    press(stage.edit, QStringLiteral("+si"));
    QTRY_VERIFY(list()->isVisible());
    QVERIFY(!list()->currentIndex().isValid());
    press(stage.edit, QStringLiteral("{Down}{Tab}z"));
    QVERIFY(stage.edit->prefix().endsWith(QLatin1String("sin(z))")));
    press(stage.edit, QStringLiteral("\\al"));
    stage.after->setFocus();
    QVERIFY(!list()->isVisible());
    QVERIFY(stage.edit->prefix().endsWith(QLatin1String("sin(z))")));
  }

  void inputMethodsKnowWhatIsAround() {
    StageS stage("x+ab*sqrt(c");
    press(stage.edit, QStringLiteral("{Right}{Left}{Home}{Home}"));
    auto const ask = [&](Qt::InputMethodQuery query) { return stage.edit->inputMethodQuery(query); };
    QCOMPARE(ask(Qt::ImSurroundingText).toString(), QStringLiteral("x+ab\u2219\uFFFC"));
    QCOMPARE(ask(Qt::ImCursorPosition).toInt(), 0);
    stage.edit->runCommand(field::COMMAND_SELECT_WORD_RIGHT);
    QCOMPARE(ask(Qt::ImAnchorPosition).toInt(), 0);
    QCOMPARE(ask(Qt::ImCursorPosition).toInt(), 1);
    QVERIFY(ask(Qt::ImAnchorRectangle).toRect().left() < ask(Qt::ImCursorRectangle).toRect().left());
    QCOMPARE(stage.edit->inputMethodQuery(Qt::ImTextAfterCursor, 3).toString(), QStringLiteral("+ab"));
    QCOMPARE(ask(Qt::ImTextBeforeCursor).toString(), QStringLiteral("x"));
    // A correction by the input method replaces what it names, in one step.
    press(stage.edit, QStringLiteral("{End}{End}"));
    QInputMethodEvent event;
    event.setCommitString(QStringLiteral("cd"), -4, 2);
    QApplication::sendEvent(stage.edit, &event);
    QCOMPARE(stage.edit->prefix(), QStringLiteral("+(x,*(cd,sqrt(c)))"));
    stage.edit->undo();
    QCOMPARE(stage.edit->prefix(), QStringLiteral("+(x,*(ab,sqrt(c)))"));
    press(stage.edit, QStringLiteral("{End}{End}"));
    event.setCommitString(QString(), -6, 2);
    QApplication::sendEvent(stage.edit, &event);
    QCOMPARE(stage.edit->prefix(), QStringLiteral("*(ab,sqrt(c))"));
  }

  void copiesComeInEveryForm() {
    StageS stage;
    stage.edit->setExpression(QStringLiteral("sqrt(x)/2"));
    stage.edit->setReadOnly(true);
    stage.edit->selectAll();
    stage.edit->copy();
    QMimeData const& data = *QGuiApplication::clipboard()->mimeData();
    QVERIFY(data.hasFormat(QLatin1String(qt::formula_mime_type)));
    QCOMPARE(data.data(QLatin1String(qt::prefix_mime_type)), QByteArray("/(sqrt(x),2)"));
    QCOMPARE(data.text(), QStringLiteral("sqrt(x)/2"));
    QByteArray const svg = data.data(QStringLiteral("image/svg+xml"));
    QVERIFY(QSvgRenderer(svg).isValid());
    QVERIFY(svg.contains(" role=\"img\" aria-label=\"") && svg.contains("<title>") &&
            svg.contains("vertical-align:-"));
    QVERIFY2(svg.size() < 3000, QByteArray::number(svg.size()));
    QImage const png = QImage::fromData(data.data(QStringLiteral("image/png")), "PNG");
    QCOMPARE(png.text(QStringLiteral("zolt:expression")), QStringLiteral("/(sqrt(x),2)"));
    QVERIFY(countInk(png, Qt::white) > 50);

    stage.edit->setReadOnly(false);

    // Pasting gives exactly what was copied, even if it is no expression.
    stage.edit->setTree(QStringLiteral("[\"a+\", /<[\"\"] ; [\"b\"]>, \"\"]"));
    QString const tree = stage.edit->tree();
    stage.edit->selectAll();
    stage.edit->cut();
    QVERIFY(stage.edit->isEmpty());
    stage.edit->paste();
    QCOMPARE(stage.edit->tree(), tree);
    QVERIFY(!QGuiApplication::clipboard()->mimeData()->hasFormat(QLatin1String(qt::prefix_mime_type)));
  }

  void pastesOrSaysWhyNot() {
    StageS stage;
    QSignalSpy errors(stage.edit, &FormulaEdit::errorOccurred);
    auto* const hostile = new QMimeData;
    hostile->setData(QLatin1String(qt::formula_mime_type), QByteArray(5000, '\x01'));
    hostile->setData(QLatin1String(qt::prefix_mime_type), QByteArray("+(a,"));
    auto* const sound = new QMimeData;
    sound->setText(QStringLiteral("(a+b)/c"));
    auto* const text = new QMimeData;
    text->setText(QStringLiteral("see §3/4 below"));
    int refused = 0;
    for (QMimeData* const data : {sound, text, hostile}) {
      QGuiApplication::clipboard()->setMimeData(data);
      press(stage.edit, QStringLiteral("{Ctrl+V}"));
      QCOMPARE(stage.edit->prefix(), QStringLiteral("/(+(a,b),c)"));
      QCOMPARE(errors.count(), refused++);
    }
  }

  void pastesFormulasOfPages() {
    StageS stage;
    auto const expectPasted = [&](char const* type, QByteArray const& text, char const* prefix) {
      auto* const data = new QMimeData;
      data->setData(QLatin1String(type), text);
      data->setText(QStringLiteral("y"));
      QGuiApplication::clipboard()->setMimeData(data);
      stage.edit->clear();
      press(stage.edit, QStringLiteral("{Ctrl+V}"));
      QCOMPARE(stage.edit->prefix(), QString::fromUtf8(prefix));
    };
    QByteArray const mathMl = "<math><msup><mi>α</mi><mn>2</mn></msup></math>";
    expectPasted("text/html", "<meta charset=\"utf-8\"><p>ä " + mathMl + "</p>", "^(α,2)");
    expectPasted("application/mathml+xml", "\xEF\xBB\xBF" + mathMl, "^(α,2)");
    expectPasted("application/x-qt-windows-mime;value=\"MathML Content\"",
                 "<?xml version=\"1.0\"?><math><apply><plus/><ci>a</ci><cn>1</cn></apply></math>", "+(a,1)");
    expectPasted("application/x-latex", "\\sqrt{x}", "sqrt(x)");
    expectPasted("text/html", "<b>bold</b>", "y");
  }

  void dropsGoWhereTheyFall() {
    StageS stage("a+b{Home}");
    QPointF const start = stage.edit->caretRectangle().center();
    press(stage.edit, QStringLiteral("{End}"));
    QMimeData data;
    data.setText(QStringLiteral("x/y"));
    auto const enters = [&] {
      return stage.send<QDragEnterEvent>(start.toPoint(), Qt::CopyAction, &data, Qt::LeftButton,
                                         Qt::NoModifier);
    };
    QVERIFY(enters());
    QString const before = stage.edit->tree();
    stage.send<QDragMoveEvent>(start.toPoint(), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCOMPARE(stage.edit->tree(), before);
    stage.send<QDropEvent>(start, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QVERIFY(stage.edit->tree().startsWith(QLatin1String("[\"\", /<[\"x\"] ; [\"y\"]>, \"a+b\"")));
    stage.edit->setReadOnly(true);
    QVERIFY(!enters());
  }

  void otherFontsStandInForMissingOnes() {
    QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("KaTeX_Main-Regular.ttf")));
    QVERIFY(file.open(QIODevice::WriteOnly) && file.write("\0\1\0\0garbage", 11) == 11 && file.flush());
    for (std::string const& place : {std::string("/nowhere"), folder.path().toStdString()}) {
      QString error;
      auto const fonts = qt::FormulaFonts::load({place}, error);
      QVERIFY2(fonts, qPrintable(error));
      QVERIFY(fonts->substitution().contains(QLatin1String("KaTeX")));
      qt::FormulaPicture picture(fonts);
      QVERIFY(picture.setPrefix(u"/(+(a,1),sqrt(x))"));
      QVERIFY(countInk(picture.toImage(2, 2, Qt::black, Qt::white), Qt::white) > 200);
    }
  }

  void sizesFollowFormulaAndZoom() {
    StageS stage;
    stage.edit->setFrame(false);
    stage.edit->setExpression(QStringLiteral("x"));
    int const flat = stage.edit->sizeHint().height();
    stage.edit->setExpression(QStringLiteral("x/(1+x/(1+x))"));
    QSize const high = stage.edit->sizeHint();
    QVERIFY(high.height() > 2 * flat);
    QSignalSpy zoomed(stage.edit, &FormulaEdit::zoomChanged);
    stage.edit->setZoom(2 * stage.edit->zoom());
    QCOMPARE(zoomed.count(), 1);
    // The margins stay; the layout is scaled, not made anew.
    QVERIFY(std::abs(stage.edit->sizeHint().height() - 2 * high.height()) <= 10);
    stage.edit->setZoom(1e9);
    QCOMPARE(stage.edit->zoom(), FormulaEdit::max_zoom);
    stage.edit->setZoom(std::numeric_limits<qreal>::quiet_NaN());
    QCOMPARE(stage.edit->zoom(), FormulaEdit::max_zoom);
    QVERIFY(grab(*stage.edit).size() == stage.edit->size());
  }

  void coloursAreThePalettes() {
    StageS stage;
    stage.edit->setExpression(QStringLiteral("(a+b)/c"));
    stage.after->setFocus();
    QImage const light = grab(*stage.edit);
    QPalette dark = stage.edit->palette();
    dark.setColor(QPalette::Base, QColor(20, 20, 24));
    dark.setColor(QPalette::Text, QColor(235, 235, 240));
    stage.edit->setPalette(dark);
    QImage const onDark = grab(*stage.edit);
    QVERIFY(countInk(light, stage.window.palette().color(QPalette::Base)) > 50);
    QVERIFY(countInk(onDark, QColor(20, 20, 24)) > 50);
    QVERIFY(qGray(onDark.pixel(onDark.width() - 20, onDark.height() / 2)) < 60);
    // A selection is a band under the ink, in the palette's colour.
    stage.edit->setFocus();
    stage.edit->selectAll();
    QVERIFY(grab(*stage.edit) != onDark);
  }

  void screenReadersReadIt() {
    StageS stage("x+1/2");
    QAccessibleInterface* const interface = QAccessible::queryAccessibleInterface(stage.edit);
    QVERIFY(interface);
    QCOMPARE(interface->role(), QAccessible::EditableText);
    QString const words = interface->text(QAccessible::Value);
    QCOMPARE(words, QStringLiteral("x plus 1 over 2"));
    QAccessibleTextInterface* const text = interface->textInterface();
    QVERIFY(text);
    QCOMPARE(text->characterCount(), int(words.size()));
    QCOMPARE(text->cursorPosition(), int(words.size()));
    text->setCursorPosition(0);
    QCOMPARE(text->cursorPosition(), 0);
    QSignalSpy spoken(stage.edit, &FormulaEdit::spoken);
    press(stage.edit, QStringLiteral("{Right}{Right}{Right}"));
    QCOMPARE(spoken.first().first(), QStringLiteral("plus"));
    QCOMPARE(interface->text(QAccessible::Description), QStringLiteral("into the numerator"));
    int begin = -1, end = -1;
    QCOMPARE(text->textAtOffset(2, QAccessible::CharBoundary, &begin, &end), QStringLiteral("plus"));
    stage.edit->setLocale(QLocale(QStringLiteral("de")));
    QCOMPARE(interface->text(QAccessible::Value), QStringLiteral("x plus 1 durch 2"));
    stage.edit->setLocale(QLocale::c());
    text->setCursorPosition(0);
    QVERIFY(text->characterRect(0).isValid());
    QCOMPARE(text->offsetAtPoint(text->characterRect(0).center()), 0);
    text->setSelection(0, 0, 1);
    int from = -1, to = -1;
    text->selection(0, &from, &to);
    QCOMPARE(from, 0);
    QCOMPARE(to, int(words.indexOf(QLatin1String("plus"))));
    QTest::keyClick(stage.edit, Qt::Key_Delete);
    QVERIFY(interface->text(QAccessible::Value).startsWith(QLatin1String("plus")));
    QAccessibleEditableTextInterface* const editor = interface->editableTextInterface();
    QVERIFY(editor);
    editor->insertText(0, QStringLiteral("yz"));
    QCOMPARE(stage.edit->prefix(), QStringLiteral("+(yz,/(1,2))"));
    QVERIFY(text->characterRect(1).left() >= text->characterRect(0).right());
    editor->replaceText(0, 1, QStringLiteral("a"));
    editor->deleteText(1, 2);
    QCOMPARE(stage.edit->prefix(), QStringLiteral("+(a,/(1,2))"));
    stage.edit->setReadOnly(true);
    editor->deleteText(0, 1);
    QCOMPARE(stage.edit->prefix(), QStringLiteral("+(a,/(1,2))"));
    QVERIFY(interface->state().readOnly);
  }
};

QTEST_MAIN(WidgetTest)
#include "widget_test.moc"
