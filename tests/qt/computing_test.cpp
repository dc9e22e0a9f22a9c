// What the desktop program computes, in its window.

#include <QAction>
#include <QClipboard>
#include <QDeadlineTimer>
#include <QMenu>
#include <QScrollBar>
#include <QSettings>
#include <QTemporaryDir>
#include <QTest>
#include <QThread>
#include <QWheelEvent>
#include <atomic>
#include <cmath>

#include "hosts/qt/desktop/exporter.h"
#include "hosts/qt/desktop/graph_view.h"
#include "hosts/qt/desktop/main_window.h"
#include "hosts/qt/desktop/result_view.h"
#include "hosts/qt/desktop/sheet_computer.h"
#include "hosts/qt/desktop/sheet_view.h"
#include "tests/qt/desktop_stage.h"
#include "tests/qt/keys.h"
#include "zolt/engines/basic/basic_engine.h"
#include "zolt/exchange/plain_text.h"
#include "zolt/qt/formula_edit.h"
#include "zolt/qt/text.h"

using namespace zolt;
using namespace zolt::desktop;
using namespace zolt::math::algexpr;
using qt::FormulaEdit;

namespace {

constexpr int patience = 60000;  // ms; other programs may use the machine

/// An engine that computes until it is stopped, whatever it is asked.
class SlowEngine final : public CASEngineABC {
 public:
  unsigned getCapabilities() const override { return ~0U; }
  CASResultS compute(CASRequestS const&, CASStopC const* stop) const override {
    while (!stop->isStopped()) QThread::msleep(1);
    CASResultS result;
    result.cause = CAS_CAUSE_STOPPED;
    return result;
  }
};

/// The embedded engine, which counts what it computes on the thread of the window.
class CountingEngine final : public engine_basic::BasicEngineC {
 public:
  CASResultS compute(CASRequestS const& request, CASStopC const* stop) const override {
    ++(QThread::currentThread() == qApp->thread() ? atKeys : elsewhere);
    return BasicEngineC::compute(request, stop);
  }

  mutable std::atomic<int> atKeys{0}, elsewhere{0};
};

struct StageS {
  explicit StageS(QStringList const& prefixes) : window(fonts(), nullptr) {
    Sheet sheet;
    for (QString const& prefix : prefixes) sheet << SheetLine{LineKind::Formula, {}, prefix, {}};
    window.view().setSheet(sheet);
    window.show();
    QApplication::setActiveWindow(&window);
    enter(0);
  }

  SheetView& view() { return window.view(); }
  SheetRow& row(int i) { return *view().rows()[i]; }
  void enter(int i) { row(i).enterAtEnd(); }
  void type(char const* keys) { press(QApplication::focusWidget(), QLatin1String(keys)); }
  bool finish() {
    QDeadlineTimer const deadline(20000);
    while (!window.computer().isIdle() && !deadline.hasExpired()) {
      QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents, 50);
    }
    return window.computer().isIdle();
  }

  /// What is seen under a line: "= 1/2 ~ 0.5".
  QString shown(int i) {
    if (!row(i).hasResults()) return {};
    ShownResult const& result = row(i).results().result();
    QStringList parts;
    if (result.value)
      parts << (result.isImplied ? QStringLiteral("=> ") : QStringLiteral("= ")) +
                   row(i).results().valueEdit()->expression();
    QString const sign = result.isNumberExact ? QStringLiteral("= ") : QStringLiteral("~ ");
    if (result.number) parts << sign + row(i).results().numberEdit()->expression();
    if (!result.reason.isEmpty()) parts << result.reason;
    return parts.join(u' ');
  }

  MainWindow window;
};

}  // namespace

class ComputingTest final : public QObject {
  Q_OBJECT

 private slots:
  void initTestCase() {
    FormulaEdit provider;  // the operators
  }

  void resultsFollowWhatIsTyped() {
    StageS stage({"+(/(1,3),/(1,6))", ":=(a,4)", "*(2,a)", "/(1,0)", "x"});
    QVERIFY(stage.finish());
    QCOMPARE(stage.shown(0), QStringLiteral("= 1/2 = 0.5"));
    QCOMPARE(stage.shown(2), QStringLiteral("= 8"));
    QCOMPARE(stage.shown(3), QStringLiteral("This divides by zero"));
    QVERIFY(!stage.row(4).hasResults());
    QVERIFY(!stage.view().isModified());

    stage.enter(1);
    stage.type("0");
    QTRY_VERIFY_WITH_TIMEOUT(stage.row(2).results().isStale(), patience);
    QTRY_COMPARE_WITH_TIMEOUT(stage.shown(2), QStringLiteral("= 80"), patience);
    QVERIFY(!stage.row(2).results().isStale());
    QCOMPARE(stage.row(2).results().valueEdit()->accessibleName(), QStringLiteral("Result"));
    // Results are no part of the sheet.
    QCOMPARE(stage.view().sheet()[2], formulaLine("*(2,a)"));

    QVERIFY(stage.window.computer().selectFault(stage.row(3)));
    QVERIFY(stage.row(3).formula()->hasSelection());
    stage.window.action(QStringLiteral("results"))->setChecked(false);
    QTRY_COMPARE_WITH_TIMEOUT(stage.shown(2), QString(), patience);
    QCOMPARE(stage.row(2).results().height(), 0);
  }

  void commandsMakeNewLines() {
    StageS stage({"=(^(x,2),a)", ":=(a,3)", "*(+(x,1),+(x,2))"});
    QVERIFY(stage.finish());
    stage.enter(2);
    stage.window.action(QStringLiteral("expand"))->trigger();
    QTRY_COMPARE_WITH_TIMEOUT(stage.view().rows().size(), 4, patience);
    QCOMPARE(stage.row(3).line().prefix, QStringLiteral("+(+(^(x,2),*(3,x)),2)"));
    stage.view().history().undo();
    QCOMPARE(stage.view().rows().size(), 3);

    // Two solutions are two lines and one step.
    stage.enter(0);
    QMenu& menu = *stage.window.action(QStringLiteral("solve"))->menu();
    emit menu.aboutToShow();
    QCOMPARE(menu.actions().size(), 2);
    menu.actions()[0]->trigger();
    QTRY_COMPARE_WITH_TIMEOUT(stage.view().rows().size(), 5, patience);
    QCOMPARE(stage.row(2).line().prefix, QStringLiteral("=(x,sqrt(a))"));
    stage.view().history().undo();
    QCOMPARE(stage.view().rows().size(), 3);
    QVERIFY(!stage.view().isModified());

    // Solutions that are no roots of anything are rounded.
    stage.view().insertBelow(&stage.row(2), makeFormulaLine(QStringLiteral("=(^(y,5),+(y,1))"), {}));
    emit menu.aboutToShow();
    menu.actions()[0]->trigger();
    QTRY_COMPARE_WITH_TIMEOUT(stage.view().rows().size(), 5, patience);
    QCOMPARE(stage.row(4).line().prefix, QStringLiteral("=(y,1.167303978)"));
    stage.view().history().undo();
    stage.view().history().undo();

    // Of a part of a formula, and what is shown already.
    stage.enter(2);
    QVERIFY(stage.row(2).formula()->selectPart(1));
    emit stage.window.action(QStringLiteral("differentiate"))->menu()->aboutToShow();
    stage.window.action(QStringLiteral("differentiate"))->menu()->actions()[0]->trigger();
    QTRY_COMPARE_WITH_TIMEOUT(stage.view().rows().size(), 4, patience);
    QCOMPARE(stage.row(3).line().prefix, QStringLiteral("1"));
  }

  void whatTakesLongIsMarkedAndStopped() {
    StageS stage({"+(1,1)", "+(2,2)"});
    QVERIFY(stage.finish());
    stage.window.computer().setEngine(new SlowEngine);
    QTRY_VERIFY_WITH_TIMEOUT(stage.row(0).results().isBusy(), patience);
    QVERIFY(stage.row(0).results().isStale());
    stage.enter(0);
    stage.type("1");
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Left);
    QCOMPARE(stage.row(0).formula()->prefix(), QStringLiteral("+(1,11)"));
    QTRY_VERIFY_WITH_TIMEOUT(stage.row(1).results().isBusy() || stage.row(0).results().isBusy(), patience);
    for (int i : {1, 0}) {
      stage.enter(i);
      QTRY_VERIFY_WITH_TIMEOUT(stage.window.computer().isComputing(stage.row(i)), patience);
      QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
      QTRY_COMPARE_WITH_TIMEOUT(stage.shown(i), QStringLiteral("The computation was stopped"), patience);
      QVERIFY(!stage.row(i).results().isBusy());
    }
  }

  void graphsAreMovedAndExported() {
    StageS stage({":=(a,2)", "*(a,sin(x))", "+(x,y)", "=(y,/(1,x))"});
    QVERIFY(stage.finish());
    stage.enter(2);
    QAction& action = *stage.window.action(QStringLiteral("graph"));
    action.trigger();
    QVERIFY(!stage.row(2).graph() && !action.isChecked());
    QByteArray const plain =
        Exporter(fonts(), {}, false).exportSheet(stage.view().sheet(), PictureFormat::Svg, {});
    for (int const i : {1, 3}) {
      stage.enter(i);
      action.trigger();
      QVERIFY(stage.row(i).graph() && action.isChecked());
      QTRY_VERIFY_WITH_TIMEOUT(!stage.row(i).graph()->isSampling(), patience);
    }
    GraphView& graph = *stage.row(1).graph();
    plot::WindowS const first = graph.graph().window;
    QVERIFY(first.top > 2 && first.top < 3 && first.bottom < -2);
    QCOMPARE(graph.graph().curve.size(), std::size_t(1));
    QCOMPARE(stage.row(3).graph()->graph().curve.size(), std::size_t(2));

    graph.setFocus();
    QTest::keyClick(&graph, Qt::Key_Plus);
    QTest::keyClick(&graph, Qt::Key_Right);
    QTRY_VERIFY_WITH_TIMEOUT(!graph.isSampling(), patience);
    plot::WindowS const moved = graph.graph().window;
    QVERIFY(moved.right - moved.left < first.right - first.left && moved.left > first.left);
    // A wheel keeps in place what is at the pointer.
    QPoint const at(100, 80);
    auto const under = [&] {
      plot::WindowS const now = graph.graph().window;
      return now.left + (at.x() - 4) / now.width * (now.right - now.left);
    };
    double const before = under();
    QWheelEvent wheel(at, graph.mapToGlobal(at), {}, {0, 240}, Qt::NoButton, Qt::NoModifier,
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&graph, &wheel);
    QVERIFY(std::fabs(under() - before) < 1e-9);
    QTest::keyClick(&graph, Qt::Key_Home);
    QTRY_VERIFY_WITH_TIMEOUT(!graph.isSampling(), patience);
    QCOMPARE(graph.graph().window.left, first.left);
    QTest::keyClick(&graph, Qt::Key_Escape);
    QVERIFY(stage.row(1).formula()->hasFocus());

    Exporter exporter(fonts(), {}, false);
    exporter.setBelow({{1, {{}, graph.graph()}}});
    QVERIFY(exporter.exportSheet(stage.view().sheet(), PictureFormat::Svg, {}).size() > plain.size() + 1000);
    // The graph follows its formula and what that depends on.
    stage.enter(0);
    stage.type("0");
    QTRY_VERIFY_WITH_TIMEOUT(stage.finish() && !graph.isSampling() &&
                                 graph.function().expression->toPrefixString() == u"*(20,sin(x))",
                             patience);
    // It is saved with the sheet, and hiding it is a step.
    Sheet const saved = stage.view().sheet();
    QVERIFY(saved[1].graph.isShown() && !saved[2].graph.isShown());
    stage.enter(1);
    action.trigger();
    QVERIFY(!stage.row(1).graph() && !stage.view().sheet()[1].graph.isShown());
    stage.view().history().undo();
    QCOMPARE(stage.view().sheet()[1].graph, saved[1].graph);
    QVERIFY(action.isChecked());
    stage.view().setSheet(saved);
    QTRY_VERIFY_WITH_TIMEOUT(stage.finish() && stage.row(1).graph() && !stage.row(1).graph()->isSampling(),
                             patience);
    QCOMPARE(stage.view().sheet()[1].graph, saved[1].graph);
    QVERIFY(!stage.row(1).graph()->graph().curve.empty());
  }

  void whatAppearsBelowIsInSight() {
    StageS stage(QStringList(30, QStringLiteral("x")));
    QVERIFY(stage.finish());
    SheetRow& row = stage.row(20);
    QWidget const& port = *stage.view().viewport();
    auto const edge = [&](QWidget& widget, int y) { return widget.mapTo(&port, QPoint(0, y)).y(); };
    stage.enter(20);
    // The line is the last that is seen.
    QScrollBar& bar = *stage.view().verticalScrollBar();
    bar.setValue(bar.value() + edge(row, row.height()) - port.height());
    stage.type("^2+1/3+2/3");
    QTRY_VERIFY_WITH_TIMEOUT(stage.finish() && row.hasResults() && row.results().height() > 0, patience);
    QVERIFY(edge(row, row.height()) <= port.height());
    // What is higher than the window leaves the caret where it is seen.
    stage.window.resize(stage.window.width(), stage.window.height() - port.height() + 200);
    stage.window.action(QStringLiteral("graph"))->trigger();
    QVERIFY(row.graph() && row.height() > port.height());
    int const caret = port.mapFromGlobal(row.caretOnScreen().topLeft()).y();
    QVERIFY(caret >= 0 && caret < 60);
  }

  void keysComputeNothing() {
    QStringList lines;
    for (int i = 1; i <= 1000; ++i) lines << QStringLiteral(":=(a_%1,+(a_%2,1))").arg(i).arg(i - 1);
    StageS stage(lines);
    oss::PointerTC<CountingEngine> const engine(new CountingEngine);
    stage.window.computer().setEngine(engine.get());
    QVERIFY(stage.finish());
    int const before = engine->elsewhere;
    QCOMPARE(before, 1000);
    stage.enter(500);
    stage.type("0");
    QTRY_COMPARE_WITH_TIMEOUT(engine->elsewhere.load(), before + 500, patience);
    QVERIFY(stage.finish());
    QCOMPARE(engine->elsewhere.load(), before + 500);
    QCOMPARE(engine->atKeys.load(), 0);
  }

  void settingsHoldForTheNextWindow() {
    QTemporaryDir folder;
    QSettings settings(folder.filePath(QStringLiteral("settings.ini")), QSettings::IniFormat);
    MainWindow window(fonts(), &settings);
    engine_sheet::ComputingS computing;
    computing.angle = CAS_DEGREES;
    window.computer().setComputing(computing);
    DialogAnswer const answer("OK");
    window.action(QStringLiteral("computing"))->trigger();
    MainWindow next(fonts(), &settings);
    QCOMPARE(next.computer().computing().angle, CAS_DEGREES);
  }

  void ticksAreOfPiWhereAFunctionRepeatsItself() {
    auto const isOfPi = [](char16_t const* prefix) {
      return isTrigonometric(*AlgebraicExpressionC::fromPrefixString(prefix)->getNode(), u"x");
    };
    for (char16_t const* const prefix : {u"*(a,sin(x))", u"cos(+(/(*(2,x),3),_PI))", u"tan(_neg(x))"}) {
      QVERIFY(isOfPi(prefix));
    }
    for (char16_t const* const prefix : {u"sin(/(1,x))", u"asin(x)", u"sin(*(_PI,x))", u"sin(^(x,2))",
                                         u"+(x,sin(2))", u"+(sin(x),sin(^(x,2)))"}) {
      QVERIFY(!isOfPi(prefix));
    }
  }

  void resultsAreExportedAndCopied() {
    StageS stage({"+(/(1,3),/(1,6))", "sqrt(2)"});
    QVERIFY(stage.finish());
    ShownResult const& result = stage.row(0).results().result();
    Exporter exporter(fonts(), {}, false);
    Sheet const sheet = stage.view().sheet();
    QByteArray const plain = exporter.exportSheet(sheet, PictureFormat::Svg, {});
    exporter.setBelow({{0, {result, {}}}});
    QVERIFY(exporter.exportSheet(sheet, PictureFormat::Svg, {}).count("<path") > plain.count("<path"));

    stage.enter(0);
    stage.window.action(QStringLiteral("enter-result"))->trigger();
    QVERIFY(stage.row(0).results().valueEdit()->hasFocus());
    stage.window.action(QStringLiteral("enter-result"))->trigger();
    stage.window.action(QStringLiteral("copy-result"))->trigger();
    QCOMPARE(QGuiApplication::clipboard()->text(), QStringLiteral("0.5"));
    QTest::keyClick(QApplication::focusWidget(), Qt::Key_Escape);
    QVERIFY(stage.row(0).formula()->hasFocus());
  }

  void longSheetsBeginWithWhatIsSeen() {
    QStringList prefixes;
    for (int i = 0; i < 1000; ++i) prefixes << QStringLiteral("+(%1,1)").arg(i);
    StageS stage(prefixes);
    QVERIFY(stage.finish());
    QCOMPARE(stage.shown(999), QStringLiteral("= 1000"));
    // Results that come in above do not move what is looked at.
    stage.enter(500);
    int const y = stage.row(500).mapToGlobal(QPoint()).y();
    stage.window.action(QStringLiteral("results"))->setChecked(false);
    QVERIFY(stage.finish());
    QCOMPARE(stage.shown(0), QString());
    QCOMPARE(stage.row(500).mapToGlobal(QPoint()).y(), y);
  }
};

QTEST_MAIN(ComputingTest)
#include "computing_test.moc"
