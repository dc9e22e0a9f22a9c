#include <QApplication>
#include <QCommandLineParser>
#include <QPixmap>
#include <QSettings>
#include <QStandardPaths>
#include <QTimer>
#include <cstdio>
#include <cstring>
#include <memory>
#include <vector>

#include "hosts/qt/desktop/icons.h"
#include "hosts/qt/desktop/main_window.h"
#include "hosts/qt/desktop/plain_message_box.h"
#include "hosts/qt/desktop/recovery_at_exit.h"
#include "hosts/qt/desktop/recovery_dialog.h"
#include "hosts/qt/desktop/recovery_writer.h"
#include "hosts/qt/desktop/sheet_file.h"
#include "hosts/support/terminal_text.h"
#include "zolt/qt/formula_edit.h"
#include "zolt/qt/formula_fonts.h"

namespace {

using namespace zolt;

constexpr int exit_failure = 1;
constexpr int paint_time = 200;  // ms, for everything to be laid out and painted

bool hasArgument(int argc, char** argv, char const* start) {
  for (int i = 1; i < argc; ++i) {
    if (std::strncmp(argv[i], start, std::strlen(start)) == 0) return true;
  }
  return false;
}

/// Without a display, Qt ends the program without an explanation.
bool findPlatform(int argc, char** argv) {
#if defined(Q_OS_UNIX) && !defined(Q_OS_MACOS)
  bool const chosen = qEnvironmentVariableIsSet("QT_QPA_PLATFORM") || hasArgument(argc, argv, "-platform");
  bool const display =
      !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY");
  if (chosen || display) return true;
  for (char const* const option : {"--screenshot", "--help", "-h", "--version", "-v"}) {
    if (!hasArgument(argc, argv, option)) continue;
    qputenv("QT_QPA_PLATFORM", "offscreen");
    return true;
  }
  std::fputs(
      "ved-desktop: there is no display; ved-desktop --screenshot FILE draws the window into a picture\n",
      stderr);
  return false;
#else
  (void)argc;
  (void)argv;
  return true;
#endif
}

void complain(QString const& text, bool inWindow) {
  QString const shown = QString::fromStdU16String(support::getShown(text.toStdU16String()));
  std::fprintf(stderr, "ved-desktop: %s\n", qPrintable(shown));
  if (!inWindow) return;
  desktop::PlainMessageBox(QMessageBox::Critical, QStringLiteral("zolt ved"), text, QMessageBox::Ok).exec();
}

int takeScreenshot(desktop::MainWindow& window, QString const& file) {
  QTimer::singleShot(paint_time, &window, [&window, file] {
    bool const done = window.grab().save(file);
    if (!done) complain(QApplication::translate("main", "%1 could not be written").arg(file), false);
    QApplication::exit(done ? 0 : exit_failure);
  });
  return QApplication::exec();
}

QString recoveryFolder() {
  return QStandardPaths::writableLocation(QStandardPaths::AppDataLocation) + QStringLiteral("/recovery");
}

/// The program's windows: one, and one more for each further recovered sheet. They are destroyed last.
class Windows {
 public:
  Windows(std::shared_ptr<qt::FormulaFonts> fonts, QSettings* settings, QString recoveryFolder)
      : fonts_(std::move(fonts)), settings_(settings), recoveryFolder_(std::move(recoveryFolder)) {}

  desktop::MainWindow& add() {
    all_.push_back(std::make_unique<desktop::MainWindow>(fonts_, settings_, recoveryFolder_));
    return *all_.back();
  }

  void offerRecovery() {
    auto const recover = [this](desktop::RecoveredSheet const& sheet,
                                std::unique_ptr<desktop::RecoveryFile> file) {
      desktop::MainWindow& last = *all_.back();
      desktop::MainWindow& window = last.isUntouched() ? last : add();
      window.show();
      window.showRecovered(sheet, std::move(file));
    };
    desktop::RecoveryDialog::offer(recoveryFolder_, recover, all_.front().get());
  }

 private:
  std::shared_ptr<qt::FormulaFonts> fonts_;
  QSettings* settings_;
  QString recoveryFolder_;
  std::vector<std::unique_ptr<desktop::MainWindow>> all_;
};

}  // namespace

int main(int argc, char** argv) {
  if (!findPlatform(argc, argv)) return exit_failure;
  QApplication app(argc, argv);
  QApplication::setOrganizationName(QStringLiteral("zolt"));
  QApplication::setApplicationName(QStringLiteral("ved-desktop"));
  QApplication::setApplicationVersion(QStringLiteral(ZOLT_VERSION));
  QApplication::setApplicationDisplayName(QStringLiteral("zolt ved"));

  QCommandLineParser parser;
  parser.setApplicationDescription(
      QApplication::translate("main", "A sheet of formulas in their textbook form."));
  parser.addHelpOption();
  parser.addVersionOption();
  QCommandLineOption const screenshot(
      QStringLiteral("screenshot"),
      QApplication::translate("main", "Draw the window with the sheet (else the sample) into FILE and end."),
      QStringLiteral("FILE"));
  QCommandLineOption const appearance(QStringLiteral("appearance"),
                                      QApplication::translate("main", "Colours: system, light or dark."),
                                      QStringLiteral("NAME"));
  QCommandLineOption const sample(QStringLiteral("sample"),
                                  QApplication::translate("main", "Open the sample sheet."));
  QCommandLineOption const catalogue(
      QStringLiteral("catalogue"),
      QApplication::translate("main", "Operators of formulas: extended (else), or standard."),
      QStringLiteral("NAME"));
  parser.addOptions({screenshot, appearance, sample, catalogue});
  parser.addPositionalArgument(QStringLiteral("sheet"), QApplication::translate("main", "The sheet to open."),
                               QStringLiteral("[sheet]"));
  if (!parser.parse(QApplication::arguments())) {
    complain(parser.errorText(), false);
    return exit_failure;
  }
  parser.process(app);  // help and version

  if (parser.value(catalogue) == QStringLiteral("standard")) {
    qt::FormulaEdit::setCatalogue(qt::FormulaEdit::Catalogue::Standard);
  } else if (parser.isSet(catalogue) && parser.value(catalogue) != QStringLiteral("extended")) {
    complain(QApplication::translate("main", "There is no catalogue \"%1\".").arg(parser.value(catalogue)),
             false);
    return exit_failure;
  }

  bool const pictured = parser.isSet(screenshot);
  QString fontError;
  auto const fonts = qt::FormulaFonts::share(fontError);
  if (!fonts) {
    complain(fontError, !pictured);
    return exit_failure;
  }
  QApplication::setWindowIcon(desktop::programIcon(fonts));

  QSettings settings;
  bool const firstTime = settings.allKeys().isEmpty();
  // A screenshot uses neither settings nor unsaved sheets, so it is the same for every user.
  Windows windows(fonts, pictured ? nullptr : &settings, pictured ? QString() : recoveryFolder());
  desktop::RecoveryAtExit const recoveryAtExit;
  desktop::MainWindow& window = windows.add();
  if (parser.isSet(appearance)) window.setAppearance(desktop::appearanceOf(parser.value(appearance)));
  if (!fonts->substitution().isEmpty()) {
    QString const text =
        QApplication::translate("main", "Formulas are shown in another font than they should: %1.")
            .arg(fonts->substitution());
    complain(text, false);
    window.tell(text);
  }
  window.show();

  QStringList const files = parser.positionalArguments();
  if (pictured) {
    QString error;
    if (!files.isEmpty() && !desktop::loadSheet(files.constFirst(), error)) {
      complain(files.constFirst() + QStringLiteral(": ") + error, false);
      return exit_failure;
    }
  }
  if (!files.isEmpty()) {
    window.open(files.constFirst());
  } else if (pictured || firstTime || parser.isSet(sample)) {
    window.openSample();
  }
  // Opening a sheet processes events; a signal that came then has not ended an event loop that was yet to
  // come.
  if (int const status = desktop::RecoveryAtExit::requestedStatus()) {
    desktop::RecoveryWriter::writeAllNow();
    return status;
  }
  if (pictured) return takeScreenshot(window, parser.value(screenshot));
  QTimer::singleShot(0, &window, [&windows] { windows.offerRecovery(); });
  return QApplication::exec();
}
