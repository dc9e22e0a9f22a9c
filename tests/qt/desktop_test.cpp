// The desktop program without its main function: sheets as files, the open sheet and its history, the window.

#include <QAbstractButton>
#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QFile>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPdfWriter>
#include <QProcess>
#include <QSemaphore>
#include <QSettings>
#include <QSignalSpy>
#include <QStatusBar>
#include <QSvgRenderer>
#include <QTemporaryDir>
#include <QTest>
#include <QToolBar>
#include <QToolButton>
#include <QUndoStack>
#include <QWheelEvent>

#include "hosts/qt/desktop/appearance.h"
#include "hosts/qt/desktop/exporter.h"
#include "hosts/qt/desktop/help_dialog.h"
#include "hosts/qt/desktop/long_work.h"
#include "hosts/qt/desktop/main_window.h"
#include "hosts/qt/desktop/palette_dock.h"
#include "hosts/qt/desktop/recorder.h"
#include "hosts/qt/desktop/sheet_file.h"
#include "hosts/qt/desktop/sheet_view.h"
#include "hosts/qt/desktop/text_line.h"
#include "hosts/qt/desktop/write_file.h"
#include "tests/qt/desktop_stage.h"
#include "tests/qt/keys.h"
#include "zolt/qt/formula_edit.h"
#include "zolt/qt/qt_graphics.h"
#include "zolt/qt/text.h"
#include "zolt/script/script_runner.h"
#include "zolt/ved/tree/tree_notation.h"

using namespace zolt;
using namespace zolt::desktop;
using qt::FormulaEdit;

namespace {

void type(char const* keys) { press(QApplication::focusWidget(), QLatin1String(keys)); }

/// An open sheet with the keyboard in its first line.
struct StageS {
  explicit StageS(Sheet const& sheet) {
    view.setSheet(sheet);
    view.resize(500, 400);
    view.show();
    QApplication::setActiveWindow(&view);
    enter(0);
  }
  void enter(int row) { view.rows()[row]->enterAtEnd(); }
  qsizetype current() const { return view.rows().indexOf(view.currentRow()); }

  SheetView view;
};

QStringList prefixes(SheetView const& view) {
  QStringList all;
  for (SheetLine const& line : view.sheet())
    all << (line.kind == LineKind::Formula ? line.prefix : line.text);
  return all;
}

}  // namespace

class DesktopTest final : public QObject {
  Q_OBJECT

 private slots:
  void initTestCase() {
    QApplication::setOrganizationName(QStringLiteral("zolt"));
    QApplication::setApplicationName(QStringLiteral("desktop-test"));
    FormulaEdit provider;  // the operators
  }

  void sheetsComeBackAsTheyWere() {
    QString error;
    auto const sheet = readSheet(sampleBytes(), error);
    QVERIFY2(sheet, qPrintable(error));
    QCOMPARE(*readSheet(sampleBytes().replace("\n", "\r\n"), error), *sheet);
    StageS stage(*sheet);
    QCOMPARE(writeSheet(stage.view.sheet()), sampleBytes());
    QVERIFY(!stage.view.isModified());
    // What the line of text takes from a clipboard, the file can hold.
    stage.view.rows()[1]->text()->setText(QStringLiteral("two\nlines"));
    QCOMPARE(readSheet(writeSheet(stage.view.sheet()), error)->at(1).text, QStringLiteral("two lines"));
  }

  void longFormulasAreShownOnRequest() {
    QString const sum = QStringLiteral("+(").repeated(30000) + u'x' + QStringLiteral(",y)").repeated(30000);
    QString const tree = QStringLiteral("[\"") + QStringLiteral("x+").repeated(60000) + QStringLiteral("\"]");
    Sheet const sheet{{LineKind::Formula, {}, sum, {}}, {LineKind::Formula, {}, {}, tree}, formulaLine("x")};
    StageS stage(sheet);
    for (int const row : {0, 1}) {
      QVERIFY(!stage.view.rows()[row]->formula());
      QVERIFY(stage.view.rows()[row]->text()->text().size() < 2000);
      stage.enter(row);
      type("z\b");  // changes nothing
      QVERIFY(stage.view.sheet() == sheet);
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_Return);
      QVERIFY(stage.view.currentFormula() && stage.view.currentFormula()->hasFocus());
      QVERIFY(stage.view.sheet() == sheet && !stage.view.isModified());
    }
    type("z");
    QVERIFY(stage.view.sheet() != sheet);
    stage.view.history().undo();
    QCOMPARE(stage.view.sheet()[1].tree, tree);
  }

  void badFilesSayWhy() {
    QByteArray const many = QByteArray("formula\n").repeated(int(sheet::max_sheet_lines) + 1);
    for (auto const& [bytes, line] :
         {std::pair{QByteArray(), 1},
          {"zolt-sheet 2\nend 0\n", 1},
          {"zolt-sheet 1\npicture x\nend 1\n", 2},
          {"zolt-sheet 1\nformula +(a\nend 1\n", 2},
          {"zolt-sheet 1\nformula\ntree [\"\", nosuch<[\"a\"]>, \"\"]\nend 1\n", 3},
          {"zolt-sheet 1\ntext a\ntree [\"a\"]\nend 1\n", 3},
          {"zolt-sheet 1\ntree [\"a\"]\nend 0\n", 2},
          {"zolt-sheet 1\nformula a\ntree [\"a\"]\ntree [\"a\"]\nend 1\n", 4},
          {"zolt-sheet 1\nend 0\nformula a\n", 3},
          {"zolt-sheet 1\ntext \xff\xfe\nend 1\n", 0},
          {"zolt-sheet 1\ntext " + QByteArray(int(sheet::max_sheet_text) + 1, 'x') + "\nend 1\n", 2},
          {"zolt-sheet 1\n" + many + "end 20001\n", int(sheet::max_sheet_lines) + 2},
          {QByteArray(int(max_sheet_bytes) + 1, ' '), 0},
          {"zolt-sheet 1\nformula\ntree " + QByteArray("[\"\", sqrt<").repeated(5000) + "\nend 1\n", 3}}) {
      QString error;
      QVERIFY2(!readSheet(bytes, error) && !error.isEmpty(), bytes.left(100));
      QVERIFY2(error.startsWith(QStringLiteral("Line %1:").arg(line)) == (line > 0), bytes.left(100));
    }
    for (unsigned long const size : {sheet::max_sheet_text, sheet::max_sheet_text + 1}) {
      sheet::SheetT const sheet{{sheet::SHEET_TEXT, oss::wstring(size, u'x'), {}, {}}};
      QCOMPARE(sheet::isWithinLimits(sheet), size == sheet::max_sheet_text);
    }
    // One long step does not keep the button waiting.
    auto const step = std::make_shared<QSemaphore>();
    DialogAnswer answer("Cancel");
    QVERIFY(!runLongWork(nullptr, {}, 1, [step](Progress const& goOn) {
      step->acquire();
      step->release(goOn(1) ? 0 : 2);
    }));
    step->release();
    QVERIFY(step->tryAcquire(2, 10000));
    QString stopped;
    qsizetype reached = 0;
    QVERIFY(!readSheet(sampleBytes(), stopped, [&](qsizetype done) { return (reached = done) < 50; }));
    QVERIFY(reached >= 50 && reached < 70);
    // A truncated script may only lack the last line end.
    for (qsizetype length = 0; length < sampleBytes().size() - 1; ++length) {
      QString error;
      QVERIFY2(!readSheet(sampleBytes().left(length), error), qPrintable(QString::number(length)));
    }
  }

  void oneHistoryForAllLines() {
    StageS stage({formulaLine("a"), {LineKind::Text, QStringLiteral("note"), {}, {}}, formulaLine("b")});
    SheetView& view = stage.view;
    QSignalSpy modified(&view, &SheetView::modifiedChanged);
    type("+1");
    stage.enter(1);
    type("!?");
    stage.enter(2);
    type("/2");
    view.removeCurrent();
    QCOMPARE(prefixes(view), (QStringList{"+(a,1)", "note!?"}));
    QVERIFY(view.isModified());

    QList<QStringList> seen;
    for (; view.history().canUndo(); seen << prefixes(view)) view.history().undo();
    QCOMPARE(seen.first(), (QStringList{"+(a,1)", "note!?", "/(b,2)"}));
    QVERIFY(seen.contains(QStringList{"+(a,1)", "note", "b"}));
    QCOMPARE(seen.last(), (QStringList{"a", "note", "b"}));
    QVERIFY(!view.isModified());
    while (view.history().canRedo()) view.history().redo();
    QCOMPARE(prefixes(view), (QStringList{"+(a,1)", "note!?"}));
    QVERIFY(modified.count() >= 3);

    // What was undone in one line is not redone after an edit in another.
    view.history().undo();
    stage.enter(0);
    type("x");
    QVERIFY(!view.history().canRedo());
    view.setSheet({});
    QVERIFY(!view.history().canUndo());

    // Typing on after saving is a change.
    stage.enter(0);
    type("a");
    view.setSaved();
    QVERIFY(!view.isModified());
    type("b");
    QVERIFY(view.isModified());
    view.history().undo();
    QCOMPARE(prefixes(view), QStringList{QString()});
    QVERIFY(view.isModified());
  }

  void undoGoesBackToTheStartWhateverTypingCompletes() {
    for (char const* const keys : {"alpha+beta+a<=b+", "sqrt(x)", "log(2,x", "a->b!=c", "1/pi{Right}{Return}",
                                   "alpha{Ctrl+A}/{Backspace}x", "x=sqrt(y{Ctrl+A}{Del}pi+"}) {
      // The sheet is saved nowhere, at the start, and at the end.
      for (int const saved : {-1, 0, 1}) {
        StageS stage({SheetLine(), {LineKind::Text, QStringLiteral("note"), {}, {}}});
        SheetView& view = stage.view;
        if (saved < 0) view.setUnsaved();
        type(keys);
        if (saved > 0) view.setSaved();
        FormulaEdit& edit = *view.rows()[0]->formula();
        auto const state = [&] { return edit.tree() + QString::number(view.rows().size()); };
        QStringList seen{state()};
        for (int i = 0; i < 2; ++i) {
          for (; view.history().canUndo(); seen << state()) view.history().undo();
          QVERIFY2(edit.isEmpty() && !edit.isCommandEnabled(field::COMMAND_UNDO), keys);
          QCOMPARE(view.isModified(), saved != 0);
          for (; view.history().canRedo(); seen.pop_back()) {
            QCOMPARE(state(), seen.last());
            view.history().redo();
          }
          QCOMPARE(state(), seen.last());
          QVERIFY2(!edit.isCommandEnabled(field::COMMAND_REDO), keys);
          QCOMPARE(view.isModified(), saved <= 0);
        }
      }
    }
  }

  void linesMoveAndGo() {
    StageS stage({formulaLine("a"), formulaLine("b")});
    SheetView& view = stage.view;
    for (int i = 0; i < 2; ++i) view.moveCurrent(1);  // the second time there is no place farther down
    QCOMPARE(prefixes(view), (QStringList{"b", "a"}));
    view.duplicateCurrent();
    QCOMPARE(prefixes(view), (QStringList{"b", "a", "a"}));
    for (int i = 0; i < 5; ++i) view.removeCurrent();
    QCOMPARE(prefixes(view), QStringList{QString()});
    while (view.history().canUndo()) view.history().undo();
    QCOMPARE(prefixes(view), (QStringList{"a", "b"}));
    // Opening another sheet can be stopped.
    QVERIFY(!view.setSheet(Sheet(5), [](qsizetype made) { return made < 3; }));
    QCOMPARE(prefixes(view), (QStringList{"a", "b"}));
  }

  void keysLeadFromLineToLine() {
    StageS stage({formulaLine("a"), {LineKind::Heading, QStringLiteral("h"), {}, {}}, formulaLine("b")});
    QSignalSpy errors(&stage.view, &SheetView::errorOccurred);
    // A second new line is not added, and a key removes an empty one.
    for (auto const& [keys, current, count] : {std::tuple{"{Down}", 1, 3},
                                               {"{Down}", 2, 3},
                                               {"{Up}{Tab}", 2, 3},
                                               {"{Return}", 3, 4},
                                               {"{Return}", 3, 4},
                                               {"{Backspace}", 2, 3},
                                               {"{Up}{Up}{Return}", 2, 3},
                                               {"+{Return}", 3, 4}}) {
      type(keys);
      QCOMPARE(stage.current(), current);
      QCOMPARE(stage.view.rows().size(), count);
    }
    QCOMPARE(errors.count(), 1);
  }

  void unsavedChangesAreAskedAbout() {
    MainWindow window(fonts(), nullptr);
    window.show();
    window.openSample();
    QVERIFY(window.view().rows().size() > 10);
    QVERIFY(window.close());
    window.show();
    window.view().insertBelow(formulaLine("x"));
    DialogAnswer answer("Cancel");
    QVERIFY(!window.close());
    window.action(QStringLiteral("new"))->trigger();
    QCOMPARE(answer.count, 2);
    QCOMPARE(answer.letters.size(), 3);
    window.action(QStringLiteral("restrict"))->trigger();
    QCOMPARE(answer.letters, (QSet<QString>{QStringLiteral("Alt+O"), QStringLiteral("Alt+C")}));
    QVERIFY(window.view().rows().size() > 1);
    window.view().history().undo();
    QVERIFY(window.close());
  }

  void recentFilesAreRemembered() {
    QTemporaryDir folder;
    QSettings settings(folder.filePath(QStringLiteral("settings.ini")), QSettings::IniFormat);
    QString const path = folder.filePath(QStringLiteral("a.zved"));
    QString error;
    QVERIFY(writeFile(path, sampleBytes(), error));
    {
      MainWindow window(fonts(), &settings);
      window.show();
      QVERIFY(window.open(path));
      QVERIFY(window.open(path));
      window.action(QStringLiteral("zoom-in"))->trigger();
      window.close();
    }
    QCOMPARE(settings.value(QStringLiteral("recentFiles")).toStringList(), QStringList{path});
    MainWindow window(fonts(), &settings);
    QVERIFY(window.view().zoom() > 1.1);
  }

  void thePaletteInsertsAndFinds() {
    MainWindow window(fonts(), nullptr);
    window.show();
    QApplication::setActiveWindow(&window);
    window.view().currentRow()->enterAtEnd();
    auto* const palette = window.findChild<PaletteDock*>();
    for (QToolButton* const button : palette->findChildren<QToolButton*>()) {
      if (button->accessibleName() == QLatin1String("Square root")) {
        QVERIFY(button->toolTip().contains(QLatin1String("sqrt(")));
        QVERIFY(!button->icon().pixmap(button->iconSize()).isNull());
        button->click();
      }
    }
    QVERIFY(window.view().currentFormula()->hasFocus());
    type("x");
    QCOMPARE(window.view().currentFormula()->prefix(), QStringLiteral("sqrt(x)"));

    palette->search();
    auto* const search = palette->findChild<QLineEdit*>();
    QTest::keyClicks(search, "alpha");
    int shown = 0;
    for (QToolButton* const button : palette->findChildren<QToolButton*>()) {
      if (!button->accessibleName().isEmpty() && button->isVisible()) ++shown;
    }
    QVERIFY(shown >= 1 && shown < 4);
    QTest::keyClick(search, Qt::Key_Return);
    QVERIFY(window.view().currentFormula()->prefix().contains(u'α'));
    QVERIFY(search->text().isEmpty());

    for (QToolBar* const bar : window.findChildren<QToolBar*>()) {
      for (QAction* const action : bar->actions()) {
        if (!action->isSeparator()) QVERIFY2(!action->icon().pixmap(20).isNull(), qPrintable(action->text()));
      }
    }
  }

  void everyKeyIsInTheHelp() {
    MainWindow window(fonts(), nullptr);
    QList<QAction*> const actions = window.findChildren<QAction*>();
    QString const help = makeHelp(window.findChild<PaletteDock*>()->groups(), actions);
    for (field::CommandS const& command : field::commands()) {
      QVERIFY2(help.contains(qt::toQString(command.help).toHtmlEscaped()),
               qPrintable(qt::toQString(command.name)));
    }
    QHash<QString, QString> users;
    for (QAction const* const action : actions) {
      for (QKeySequence const& key : action->shortcuts()) {
        QString const chord = key.toString(QKeySequence::PortableText);
        QVERIFY2(help.contains(key.toString(QKeySequence::NativeText).toHtmlEscaped()), qPrintable(chord));
        QVERIFY2(!users.contains(chord),
                 qPrintable(chord + u' ' + users.value(chord) + u' ' + action->text()));
        users.insert(chord, action->text());
      }
    }
  }

  void noTwoEntriesOfAMenuShareALetter() {
    MainWindow window(fonts(), nullptr);
    QStringList faults;
    window.view().setSheet({formulaLine("matrix(list(a,b),list(c,d))")});
    qt::FormulaEdit* const field = window.view().currentFormula();
    field->runCommand(field::COMMAND_FORMULA_END);
    field->runCommand(field::COMMAND_LEFT);
    QMenu* const menu = field->createStandardContextMenu();
    emit field->contextMenuMade(menu);
    QList<QAction*> const fieldMenu = menu->actions();
    QCOMPARE(fieldMenu.size(), 20);  // with separators, entries for tables, and those of the window
    for (QAction const* const entry : fieldMenu) {
      if (!entry->isSeparator() && !entry->text().contains(u'&')) faults << entry->text();
    }
    QList<QList<QAction*>> menus{window.menuBar()->actions(), fieldMenu};
    while (!menus.isEmpty()) {
      QSet<QString> letters;
      for (QAction const* const entry : menus.takeFirst()) {
        if (entry->isSeparator()) continue;
        QString const letter = QKeySequence::mnemonic(entry->text()).toString();
        if (!letter.isEmpty() && letters.contains(letter)) faults << entry->text();
        letters << letter;
        if (entry->menu()) menus << entry->menu()->actions();
      }
    }
    QCOMPARE(faults.join(u'\n'), QString());
  }

  void editorsLeaveShortcutsToTheWindow() {
    MainWindow window(fonts(), nullptr);
    window.show();
    window.view().setSheet({formulaLine("+(a,b)"), {LineKind::Text, QStringLiteral("note"), {}, {}}});
    QSet<QAction*> shared;  // what both do alike
    for (char const* const name : {"cut", "copy", "paste", "select-all", "grow", "clear"}) {
      shared << window.action(QLatin1String(name));
    }
    for (SheetRow* const row : window.view().rows()) {
      for (QAction* const action : window.findChildren<QAction*>()) {
        for (QKeySequence const& keys : action->shortcuts()) {
          QKeyEvent event(QEvent::ShortcutOverride, keys[0].key(), keys[0].keyboardModifiers());
          event.ignore();
          QApplication::sendEvent(row->editor(), &event);
          QVERIFY2(!event.isAccepted() || shared.contains(action), qPrintable(keys.toString()));
        }
      }
    }
  }

  void formulasAreCopiedInEveryNotation() {
    MainWindow window(fonts(), nullptr);
    window.view().setSheet({formulaLine("<(a,/(b,2))")});
    QMenu* found = nullptr;
    for (QMenu* const menu : window.findChildren<QMenu*>()) {
      if (menu->actions().contains(window.action(QStringLiteral("copy-latex")))) found = menu;
    }
    QVERIFY(found);
    QMenu& menu = *found;
    emit menu.aboutToShow();
    for (auto const& [form, text] : {std::pair{"text", "a < b/2"},
                                     {"latex", "a < \\frac{b}{2}"},
                                     {"mathml", "<mfrac><mi>b</mi><mn>2</mn></mfrac>"},
                                     {"content-mathml", "<lt/>"},
                                     {"mathjson", "[\"Less\",\"a\",[\"Divide\",\"b\",2]]"},
                                     {"typst", "a < frac(b, 2)"},
                                     {"words", "a less than b over 2"},
                                     {"prefix", "<(a,/(b,2))"}}) {
      QAction& copy = *window.action(QLatin1String("copy-") + QLatin1String(form));
      QVERIFY2(copy.text().contains(u'\u2003'), qPrintable(copy.text()));
      copy.trigger();
      QString const copied = QGuiApplication::clipboard()->text();
      QVERIFY2(copied.contains(QLatin1String(text)), qPrintable(copied));
    }
    emit menu.aboutToHide();
    QVERIFY(!window.action(QStringLiteral("copy-latex"))->text().contains(u'\u2003'));
    // What is incomplete has no notation but text and words.
    window.view().currentFormula()->setTree(QStringLiteral("[\"a+‸\"]"));
    QGuiApplication::clipboard()->setText(QStringLiteral("before"));
    window.action(QStringLiteral("copy-latex"))->trigger();
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("before"));
    window.action(QStringLiteral("copy-words"))->trigger();
    QVERIFY(QGuiApplication::clipboard()->text().startsWith(QLatin1String("a plus")));
  }

  void theStatusLineHasTheFormula() {
    MainWindow window(fonts(), nullptr);
    window.view().setSheet({formulaLine("/(a,2)")});
    for (auto const& [form, text] :
         {std::pair{"text", "a/2"}, {"words", "a over 2"}, {"latex", "frac"}, {"prefix", "/(a,2)"}}) {
      window.action(QLatin1String("status-") + QLatin1String(form))->setChecked(true);
      bool found = false;
      for (QWidget const* const label : window.statusBar()->findChildren<QWidget*>()) {
        found = found || label->toolTip().contains(QLatin1String(text));
      }
      QVERIFY2(found, form);
    }
  }

  void zoomKeepsThePlace() {
    Sheet sheet{{LineKind::Text, QStringLiteral("several words ").repeated(40), {}, {}}};
    for (int i = 0; i < 30; ++i) sheet << formulaLine(i % 2 ? "/(a,b)" : "a");
    StageS stage(sheet);
    SheetView& view = stage.view;
    // A line of text wraps, so all of it is seen.
    QVERIFY(view.rows()[0]->height() > 2 * view.rows()[1]->height());
    connect(&view, &SheetView::zoomRequested, &view,
            [&](int steps) { view.setZoom(view.zoom() + 0.25 * steps); });
    auto const y = [&](int row) {
      return view.rows()[row]->mapTo(&view, view.rows()[row]->rect().center()).y();
    };
    // The wheel keeps what is under the pointer, a key what is at the caret.
    QPoint const pointer(200, y(4));
    for (int const turn : {120, 120, -120}) {
      QWheelEvent event(pointer, view.mapToGlobal(pointer), {}, {0, turn}, Qt::NoButton, Qt::ControlModifier,
                        Qt::NoScrollPhase, false);
      QApplication::sendEvent(view.viewport(), &event);
      QVERIFY(std::abs(y(4) - pointer.y()) <= 2);
    }
    stage.enter(12);
    int const caret = y(12);
    emit view.zoomRequested(3);
    QVERIFY(std::abs(y(12) - caret) <= 2);
  }

  void picturesAndPages() {
    QString error;
    Sheet sheet = *readSheet(sampleBytes(), error);
    Exporter const exporter(fonts(), QApplication::font(), false);
    QByteArray const png = exporter.exportSheet(sheet, PictureFormat::Png, {});
    QImage const page = QImage::fromData(png, "PNG").convertToFormat(QImage::Format_Grayscale8);
    QVERIFY(page.width() > 400);
    QByteArray const svg = exporter.exportSheet(sheet, PictureFormat::Svg, QStringLiteral("<&>"));
    auto const numFormulas = std::count_if(sheet.begin(), sheet.end(), [](SheetLine const& line) {
      return line.kind == LineKind::Formula && !(line.prefix.isEmpty() && line.tree.isEmpty());
    });
    QCOMPARE(svg.count("role=\"img\" aria-label=\""), numFormulas);
    QCOMPARE(svg.count("id=\"g1-41\""), 1);
    QImage drawn(page.size(), QImage::Format_Grayscale8);
    drawn.fill(Qt::white);
    QPainter painter(&drawn);
    QSvgRenderer(svg).render(&painter);
    painter.end();
    int dark = 0, other = 0;
    for (int y = 0; y < page.height(); ++y) {
      for (int x = 0; x < page.width(); ++x) {
        dark += page.constScanLine(y)[x] < 128 ? 1 : 0;
        other += std::abs(page.constScanLine(y)[x] - drawn.constScanLine(y)[x]) > 160 ? 1 : 0;
      }
    }
    QVERIFY2(dark > 500 && other < dark / 20, qPrintable(QStringLiteral("%1 of %2").arg(other).arg(dark)));
    QVERIFY(QSvgRenderer(exporter.exportFormula(sheet[4], PictureFormat::Svg)).isValid());
    QVERIFY(exporter.exportFormula(sheet[2], PictureFormat::Pdf).startsWith("%PDF"));
    QByteArray const onePage = exporter.exportSheet(sheet, PictureFormat::Pdf, QStringLiteral("Sheet"));
    QVERIFY(onePage.startsWith("%PDF"));
    QCOMPARE(onePage.count("/Type /Page\n"), 1);
    for (int i = 0; i < 200; ++i) sheet << formulaLine("/(a,b)");
    // A formula wider than any page is scaled down.
    QByteArray wide = "x";
    for (int i = 0; i < 300; ++i) wide = "+(" + wide + ",x)";
    sheet << formulaLine(wide.constData());
    QVERIFY(exporter.exportSheet(sheet, PictureFormat::Pdf, {}).count("/Type /Page\n") > 3);
    QVERIFY(!exporter.exportSheet({}, PictureFormat::Png, {}).isEmpty());
  }

  void formulasCanBeCopiedFromPages() {
    SheetLine const incomplete{LineKind::Formula, {}, {}, QStringLiteral(R"(["v=", /<["s"] ; [""]>, ""])")};
    Exporter const exporter(fonts(), QApplication::font(), false);
    QProcess reader;
    reader.start(QStringLiteral(PDFTOTEXT), {QStringLiteral("-"), QStringLiteral("-")});
    QByteArray wide = "x";
    for (int i = 0; i < 80; ++i) wide = "+(" + wide + ",x)";
    // The letters "ff" must not be copied as one sign.
    Sheet const sheet{formulaLine("=(/(off,2),sqrt(_PI))"), incomplete, formulaLine(wide.constData())};
    reader.write(exporter.exportSheet(sheet, PictureFormat::Pdf, {}));
    reader.closeWriteChannel();
    QVERIFY(reader.waitForFinished());
    QCOMPARE(QString::fromUtf8(reader.readAll()).simplified(),
             QStringLiteral("off/2 = sqrt(pi) (1) v=s/ (2) x") + QStringLiteral("+x").repeated(80) +
                 QStringLiteral(" (3)"));
  }

  void recordingsReplay() {
    QTemporaryDir folder;
    QString const path = folder.filePath(QStringLiteral("input.script"));
    StageS stage({formulaLine("a"), formulaLine("b")});
    SheetView& view = stage.view;
    Recorder recorder(nullptr);
    connect(&view, &SheetView::currentChanged, &recorder, [&] { recorder.follow(view.currentFormula()); });
    recorder.follow(view.currentFormula());
    QString error;
    QVERIFY(!recorder.start(folder.filePath(QStringLiteral("no/such.script")), error));
    view.currentFormula()->setDecimalComma(true);
    QTest::keyClick(view.currentFormula(), Qt::Key_Home);
    QVERIFY(recorder.start(path, error));
    type("1,5/2+");
    QStringList expected{view.currentFormula()->tree()};
    stage.enter(1);
    type("(1,5)^2{Left}");
    expected << view.currentFormula()->tree();
    QVERIFY(recorder.stop(error));
    type("9");

    QFile file(path);
    QVERIFY(file.open(QIODevice::ReadOnly));
    field::EventScriptT script;
    unsigned long position = 0;
    QVERIFY(script::readEventScript(qt::toWstring(QString::fromUtf8(file.readAll())), script, position));
    field::FormulaFieldC field(new qt::QtGraphicsC(fonts()));
    script::ScriptRunnerC runner(field);
    QStringList trees;
    for (field::ScriptStepS const& step : script) {
      if (step.word == field::SCRIPT_TREE) trees << QString();
      runner.run(step);
      if (!trees.isEmpty())
        trees.last() = qt::toQString(math::ved::writeTreeNotation(field.crefView().crefRoot()));
    }
    QCOMPARE(trees, expected);
  }

  void darkAndLight() {
    MainWindow window(fonts(), nullptr);
    window.show();
    auto const brightness = [&] { return qGray(window.view().grab().toImage().pixel(600, 5)); };
    window.setAppearance(Appearance::Light);
    int const light = brightness();
    window.setAppearance(Appearance::Dark);
    QTRY_VERIFY(light - brightness() > 150);
    window.setAppearance(Appearance::System);
  }
};

QTEST_MAIN(DesktopTest)
#include "desktop_test.moc"
