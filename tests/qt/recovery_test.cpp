// The fate of sheets after failures: files that cannot be written, programs that are killed, and what is
// offered at the next start.

#include <QDir>
#include <QFile>
#include <QListWidget>
#include <QTemporaryDir>
#include <QTest>
#include <csignal>
#include <map>

#include "hosts/qt/desktop/main_window.h"
#include "hosts/qt/desktop/notice_bar.h"
#include "hosts/qt/desktop/recovery_dialog.h"
#include "hosts/qt/desktop/recovery_writer.h"
#include "hosts/qt/desktop/sheet_file.h"
#include "hosts/qt/desktop/sheet_view.h"
#include "hosts/qt/desktop/write_file.h"
#include "tests/qt/desktop_stage.h"
#include "zolt/qt/formula_edit.h"
#include "zolt/ved/limits.h"

#ifdef Q_OS_UNIX
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

using namespace zolt;
using namespace zolt::desktop;

namespace {

QByteArray contents(QString const& path) {
  QFile file(path);
  return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
}

QStringList entries(QString const& folder) {
  return QDir(folder).entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
}

#ifdef Q_OS_UNIX
/// Simulates a disk that takes only some bytes of a file from this process.
class FullDisk {
 public:
  FullDisk() {
    std::signal(SIGXFSZ, SIG_IGN);
    getrlimit(RLIMIT_FSIZE, &before_);
    rlimit const small{64, before_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
  }
  ~FullDisk() { setrlimit(RLIMIT_FSIZE, &before_); }

 private:
  rlimit before_{};
};

#endif

}  // namespace

class RecoveryTest final : public QObject {
  Q_OBJECT

 private slots:
  void initTestCase() {
    QApplication::setApplicationName(QStringLiteral("recovery-test"));
    qt::FormulaEdit provider;  // the operators
  }

  // ---- The window -----------------------------------------------------------------------------------------

  void theWindowKeepsItsSheetWhateverFails() {
    QTemporaryDir folder;
    auto const place = [&](char const* name) { return folder.filePath(QLatin1String(name)); };
    QString const path = place("sub/a.zved");
    QString error;
    QVERIFY(QDir().mkdir(place("sub")) && writeFile(path, sampleBytes(), error));
    QVERIFY(writeFile(place("damaged"), sampleBytes().chopped(8), error));
    MainWindow window(fonts(), nullptr);
    window.show();
    QVERIFY(window.open(path));
#ifdef Q_OS_UNIX
    QCOMPARE(::mkfifo(QFile::encodeName(place("pipe")), 0666), 0);
#endif
    for (auto const& [file, button] :
         {std::pair{"damaged", "Cancel"}, {"missing", "OK"}, {"sub", "OK"}, {"pipe", "OK"}}) {
      DialogAnswer answer(button);
      QVERIFY(!window.open(place(file)));
      QVERIFY(answer.count == 1 && answer.isPlain);
      QCOMPARE(window.path(), path);
      QCOMPARE(writeSheet(window.view().sheet()), sampleBytes());
    }

    window.view().insertBelow(formulaLine("new"));
    auto const refuses = [&](char const* why) {
      DialogAnswer answer("Cancel");
      return !window.save() && answer.count == 1 && answer.said.contains(QLatin1String(why)) &&
             answer.said.contains(QLatin1String("still open")) && window.isWindowModified() &&
             window.view().rows().size() == 7;
    };
    QVERIFY(QDir().rename(place("sub"), place("aside")) && refuses("no folder"));
    QVERIFY(QDir().mkpath(path) && refuses("not a file"));
    QVERIFY(QDir().rmdir(path) && QDir().rmdir(place("sub")) && QDir().rename(place("aside"), place("sub")));
#ifdef Q_OS_UNIX
    {
      FullDisk const disk;
      QVERIFY(refuses("full"));
    }
#endif
    QCOMPARE(contents(path), sampleBytes());
    QVERIFY(window.save() && !window.isWindowModified());
    QCOMPARE(loadSheet(path, error)->size(), 7);

    // What others have saved meanwhile is not replaced unasked, even if they did it while the sheet opened.
    auto const other = connect(&window.view(), &SheetView::currentChanged, this,
                               [&] { QVERIFY(writeFile(path, sampleBytes(), error)); });
    QVERIFY(window.open(path) && disconnect(other));
    QCOMPARE(window.view().sheet().size(), 7);
    for (char const* const button : {"Cancel", "Replace"}) {
      DialogAnswer answer(button);
      QCOMPARE(window.save(), *button == 'R');
      QCOMPARE(answer.count, 1);
    }
    QVERIFY(window.save());
  }

  void whatIsReadableOfADamagedSheetOpens() {
    QTemporaryDir folder;
    MainWindow window(fonts(), nullptr);
    window.show();
    QString const path = folder.filePath(QStringLiteral("a.zved"));
    QString error;
    QVERIFY(writeFile(path, "zolt-sheet 1\nformula +(a\nformula b\nwhat is this?\nend 2\n", error));
    DialogAnswer answer("Open What Is Readable");
    QVERIFY(window.open(path));
    QVERIFY(answer.said.contains(QLatin1String("Line 2")));
    QCOMPARE(writeSheet(window.view().sheet()),
             "zolt-sheet 1\ntext formula +(a\nformula b\ntext what is this?\nend 3\n");
    // Saving the readable part must not replace what is not understood.
    QVERIFY(window.isWindowModified() && window.path().isEmpty());
  }

  void nothingReadableIsLost() {
    QByteArray const whole = sampleBytes() + "text a\0b\n";
    for (qsizetype i = 13; i < whole.size(); ++i) {
      for (QByteArray damaged : {whole.left(i), whole, whole, whole}) {
        static constexpr char changes[] = {'\n', '\0', '\xff'};
        static int turn = 0;
        if (damaged.size() == whole.size()) damaged[i] = changes[++turn % 3];
        auto const salvaged = salvageSheet(damaged);
        QVERIFY(salvaged);
        QString const all = QString::fromUtf8(writeSheet(*salvaged));
        for (QString const& line : QString::fromUtf8(damaged).split(u'\n')) {
          QVERIFY2(all.contains(line.trimmed()) || line.startsWith(QLatin1String("end")), qPrintable(line));
        }
      }
    }
    QVERIFY(!salvageSheet("%PDF-1.4\n"));
  }

  // ---- Recovery -------------------------------------------------------------------------------------------

  void unsavedSheetsAreKeptUntilTheyAreSavedOrGivenUp() {
    QTemporaryDir folder;
    QString const path = folder.filePath(QStringLiteral("a.zved")),
                  kept = folder.filePath(QStringLiteral("kept"));
    QString error;
    QVERIFY(writeFile(path, sampleBytes(), error));
    std::vector<std::unique_ptr<MainWindow>> windows;
    auto const add = [&] { windows.push_back(std::make_unique<MainWindow>(fonts(), nullptr, kept)); };
    for (int i = 0; i < 3; ++i) add();
    QVERIFY(windows[0]->open(path));
    for (auto const& window : windows) window->view().currentFormula()->insertText(QStringLiteral("2x"));
    // The file is written as soon as no change has been made for a while.
    QTRY_COMPARE_WITH_TIMEOUT(QDir(kept).entryList({QStringLiteral("*.recovery")}).size(), 3, 10000);
    QVERIFY(RecoveryFile::adoptAll(kept).empty());  // their program is running
    auto const giveUp = [](MainWindow& window) {
      window.show();
      DialogAnswer answer("Discard");
      return window.close();
    };
    QVERIFY(giveUp(*windows[2]));
    windows[1]->view().insertBelow(formulaLine("/(1,q)"));
    RecoveryWriter::writeAllNow();
    std::map<QString, Sheet> const sheets{{path, windows[0]->view().sheet()},
                                          {{}, windows[1]->view().sheet()}};
    windows.clear();  // as when a signal ends the program
    // The lock as it is after a full disk, and as another program of another computer would have left it.
    QString const left = QDir(kept).entryList({QStringLiteral("*.recovery")}).constFirst();
    QVERIFY(writeFile(kept + u'/' + left + QStringLiteral(".lock"), {}, error));

    std::map<QString, Sheet> recovered;
    auto const offer = [&](char const* button) {
      DialogAnswer answer(button);
      auto const open = [&](RecoveredSheet const& sheet, std::unique_ptr<RecoveryFile> file) {
        recovered[sheet.path] = sheet.sheet;
        add();
        windows.back()->showRecovered(sheet, std::move(file));
      };
      RecoveryDialog(RecoveryFile::adoptAll(kept), open, nullptr).exec();
      return answer.count;
    };
    QCOMPARE(offer("Decide Later"), 1);
    QVERIFY(windows.empty());
    QCOMPARE(offer("Recover"), 1);
    QVERIFY(recovered == sheets);
    QCOMPARE(contents(path), sampleBytes());
    for (auto const& window : windows) {
      QVERIFY(window->isWindowModified());
      QVERIFY(window->path().isEmpty() ? giveUp(*window) : window->path() == path && window->save());
    }
    QCOMPARE(*loadSheet(path, error), sheets.at(path));
    QCOMPARE(entries(kept), QStringList());
  }

  void whatUndoCannotTakeBackStaysKept() {
    QTemporaryDir folder;
    SheetView view;
    RecoveryWriter keeper(view, folder.path(), nullptr);
    auto const kept = [&] { return QDir(folder.path()).entryList({QStringLiteral("*.recovery")}).size(); };
    // One run of typing that is longer than the formula's history.
    QString const start(1, u'x');
    view.setSheet({SheetLine{LineKind::Formula, {}, start, {}}});
    auto const steps = int(math::ved::limits::max_history_steps);
    for (int i = 0; i < steps + 9; ++i) QTest::keyClick(view.currentFormula(), Qt::Key_X);
    while (view.history().canUndo()) view.history().undo();
    QVERIFY(view.currentFormula()->prefix().size() > start.size());
    QVERIFY(view.isModified());
    QTRY_COMPARE_WITH_TIMEOUT(kept(), 1, 10000);
  }

  void damagedRecoveryFilesAreToldAndKept() {
    QTemporaryDir folder;
    QString const path = QStringLiteral("/tmp/ä%0a\n.zved");
    QString error;
    auto file = RecoveryFile::create(folder.path());
    QString const name = file->name();
    QVERIFY(file->write(path, *readSheet(sampleBytes(), error), error));
    QCOMPARE(file->read(error)->path, path);
    QVERIFY(file->read(error)->written.secsTo(QDateTime::currentDateTimeUtc()) < 60);
    file.reset();
    QByteArray const whole = contents(name);
    for (qsizetype i = 0; i < whole.size() - 1; i += 4) {
      QVERIFY(writeFile(name, whole.left(i), error));
      auto const files = RecoveryFile::adoptAll(folder.path());
      QCOMPARE(files.size(), 1);
      QVERIFY(!files[0]->read(error));
      auto const salvaged = files[0]->salvage();
      QCOMPARE(bool(salvaged), whole.left(i).contains("zolt-sheet 1"));
      QVERIFY(!salvaged || salvaged->path.isEmpty());
    }
    int opened = 0;
    for (char const* const button : {"Recover", "Discard"}) {
      QVERIFY(QFile::exists(name));
      DialogAnswer answer(button);
      auto const open = [&](auto const&, auto kept) { opened += kept ? 100 : 1; };
      RecoveryDialog dialog(RecoveryFile::adoptAll(folder.path()), open, nullptr);
      dialog.findChild<QListWidget*>()->selectAll();
      dialog.exec();
    }
    QCOMPARE(opened, 1);
    QCOMPARE(entries(folder.path()), QStringList());
  }

  void nothingElseIsChosenWhileASheetOpens() {
    QTemporaryDir folder;
    QString error;
    for (int i = 0; i < 2; ++i) QVERIFY(RecoveryFile::create(folder.path())->write({}, Sheet(1), error));
    RecoveryDialog* shown = nullptr;
    int opened = 0;
    auto const open = [&](RecoveredSheet const&, std::unique_ptr<RecoveryFile> file) {
      QVERIFY(file);
      if (++opened > 2) return;
      for (auto* const button : shown->findChildren<QAbstractButton*>()) {
        if (button->text().contains(QLatin1String("ecover"))) button->click();
      }
    };
    RecoveryDialog dialog(RecoveryFile::adoptAll(folder.path()), open, nullptr);
    shown = &dialog;
    DialogAnswer answer("Recover");
    dialog.exec();
    QCOMPARE(opened, 2);
  }

  void recoveryThatFailsIsToldOnce() {
    QTemporaryDir folder;
    QString error;
    QString const file = folder.filePath(QStringLiteral("file"));
    QVERIFY(writeFile(file, "x", error));
    MainWindow window(fonts(), nullptr, file + QStringLiteral("/below"));
    window.show();
    window.view().insertBelow(formulaLine("x"));
    auto* const notices = window.findChild<NoticeBar*>();
    QVERIFY(!notices->isVisible());
    QTRY_VERIFY_WITH_TIMEOUT(notices->isVisible(), 10000);
    QVERIFY(notices->text().contains(QLatin1String("not protected")));
    DialogAnswer answer("Discard");
    QVERIFY(window.close());
  }
};

int main(int argc, char** argv) {
  QApplication app(argc, argv);
  RecoveryTest test;
  return QTest::qExec(&test, argc, argv);
}
#include "recovery_test.moc"
