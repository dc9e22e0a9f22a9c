#include <QAction>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenu>
#include <QMessageBox>
#include <QPrintDialog>
#include <QPrinter>
#include <QSettings>
#include <QStandardPaths>
#include <QStatusBar>

#include "hosts/qt/desktop/main_window.h"
#include "hosts/qt/desktop/recorder.h"
#include "hosts/qt/desktop/sheet_file.h"
#include "hosts/qt/desktop/sheet_view.h"

namespace zolt::desktop {

namespace {

constexpr qsizetype most_recent_files = 8;
constexpr int message_time = 4000;  // ms

QString recentKey() { return QStringLiteral("recentFiles"); }

}  // namespace

// ---- Opening ----------------------------------------------------------------------------------------------

bool MainWindow::open(QString const& path) {
  QString error;
  std::optional<Sheet> const sheet = loadSheet(path, error);
  if (!sheet) {
    complain(tr("%1 could not be opened.").arg(QDir::toNativeSeparators(path)), error);
    return false;
  }
  showSheet(*sheet, path);
  addRecentFile(path);
  return true;
}

void MainWindow::openSample() {
  QFile file(QStringLiteral(":/sample.zved"));
  QString error;
  std::optional<Sheet> sheet;
  if (file.open(QIODevice::ReadOnly)) sheet = readSheet(file.readAll(), error);
  showSheet(sheet.value_or(Sheet()), {});
}

void MainWindow::newSheet() {
  if (mayLeave()) showSheet({}, {});
}

void MainWindow::openAsked() {
  if (!mayLeave()) return;
  QString const folder = path_.isEmpty() ? QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)
                                         : QFileInfo(path_).path();
  QString const path = QFileDialog::getOpenFileName(
      this, tr("Open"), folder, tr("Sheets (*.%1);;All files (*)").arg(QLatin1String(sheet_suffix)));
  if (!path.isEmpty()) open(path);
}

void MainWindow::showSheet(Sheet const& sheet, QString const& path) {
  view_->setSheet(sheet);
  setPath(path);
  view_->enterFirstFormula();
  updateActions();
  updateStatus();
}

// ---- Saving -----------------------------------------------------------------------------------------------

bool MainWindow::save() { return path_.isEmpty() ? saveAs() : saveTo(path_); }

bool MainWindow::saveAs() {
  QString const path = askPathToWrite(tr("Save As"), tr("Sheets (*.%1)").arg(QLatin1String(sheet_suffix)),
                                      QLatin1String(sheet_suffix));
  return !path.isEmpty() && saveTo(path);
}

bool MainWindow::saveTo(QString const& path) {
  QString error;
  if (!replaceFile(path, writeSheet(view_->sheet()), error)) {
    complain(tr("The sheet could not be saved to %1. It is still open, and nothing in it is lost.")
                 .arg(QDir::toNativeSeparators(path)),
             error);
    return false;
  }
  setPath(path);
  view_->setSaved();
  addRecentFile(path);
  statusBar()->showMessage(tr("Saved"), message_time);
  return true;
}

bool MainWindow::mayLeave() {
  if (!view_->isModified()) return true;
  QMessageBox question(
      QMessageBox::Question, tr("Unsaved Changes"),
      tr("Save the changes to %1?").arg(path_.isEmpty() ? tr("the sheet") : QFileInfo(path_).fileName()),
      QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel, this);
  question.setInformativeText(tr("Without saving they are lost."));
  question.setDefaultButton(QMessageBox::Save);
  switch (question.exec()) {
    case QMessageBox::Save:
      return save();
    case QMessageBox::Discard:
      return true;
    default:
      return false;
  }
}

QString MainWindow::askPathToWrite(QString const& title, QString const& filter, QString const& suffix) {
  QString const name = path_.isEmpty() ? tr("Sheet") : QFileInfo(path_).completeBaseName();
  QString const folder = path_.isEmpty() ? QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)
                                         : QFileInfo(path_).path();
  QFileDialog dialog(this, title, folder, filter);
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setDefaultSuffix(suffix);
  dialog.selectFile(name);
  // The ending follows the kind that is chosen.
  connect(&dialog, &QFileDialog::filterSelected, &dialog, [&dialog](QString const& chosen) {
    dialog.setDefaultSuffix(chosen.section(QStringLiteral("*."), 1).section(u')', 0, 0));
  });
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
  return dialog.selectedFiles().constFirst();
}

void MainWindow::setPath(QString const& path) {
  path_ = path;
  QString const name = path.isEmpty() ? tr("Untitled") : QFileInfo(path).fileName();
  setWindowTitle(tr("%1[*] – zolt ved").arg(name));
  setWindowModified(view_->isModified());
}

void MainWindow::complain(QString const& what, QString const& why) {
  QMessageBox message(QMessageBox::Warning, tr("zolt ved"), what, QMessageBox::Ok, this);
  message.setInformativeText(why);
  message.exec();
}

// ---- Recent files -----------------------------------------------------------------------------------------

QStringList MainWindow::recentFiles() const {
  return settings_ ? settings_->value(recentKey()).toStringList() : QStringList();
}

void MainWindow::addRecentFile(QString const& path) {
  if (!settings_) return;
  QStringList files = recentFiles();
  QString const whole = QFileInfo(path).absoluteFilePath();
  files.removeAll(whole);
  files.prepend(whole);
  settings_->setValue(recentKey(), files.mid(0, most_recent_files));
}

void MainWindow::fillRecentMenu() {
  recentMenu_->clear();
  for (QString const& path : recentFiles()) {
    QAction* const action = recentMenu_->addAction(QFileInfo(path).fileName(), this, [this, path] {
      if (mayLeave()) open(path);
    });
    action->setToolTip(QDir::toNativeSeparators(path));
    action->setEnabled(QFileInfo::exists(path));
  }
  recentMenu_->setToolTipsVisible(true);
  if (recentMenu_->isEmpty()) {
    recentMenu_->addAction(tr("None yet"))->setEnabled(false);
    return;
  }
  recentMenu_->addSeparator();
  recentMenu_->addAction(tr("Forget These"), this, [this] { settings_->remove(recentKey()); });
}

// ---- Pictures, paper, recordings --------------------------------------------------------------------------

void MainWindow::exportAsked(bool wholeSheet) {
  QString const path =
      askPathToWrite(wholeSheet ? tr("Export Sheet") : tr("Export Formula"),
                     tr("PNG picture (*.png);;SVG picture (*.svg);;PDF (*.pdf)"), QStringLiteral("png"));
  if (path.isEmpty()) return;
  Exporter const exporter(fonts_, font(), decimalComma_);
  PictureFormat const format = pictureFormatOf(path);
  QByteArray const bytes =
      wholeSheet ? exporter.exportSheet(view_->sheet(), format, QFileInfo(path_).completeBaseName())
                 : exporter.exportFormula(view_->currentRow()->line(), format);
  QString error = tr("The picture would be too large.");
  if (bytes.isEmpty() || !replaceFile(path, bytes, error)) {
    complain(tr("%1 could not be written.").arg(QDir::toNativeSeparators(path)), error);
    return;
  }
  statusBar()->showMessage(tr("Exported to %1").arg(QDir::toNativeSeparators(path)), message_time);
}

void MainWindow::printAsked() {
  QPrinter printer(QPrinter::HighResolution);
  printer.setDocName(path_.isEmpty() ? tr("Sheet") : QFileInfo(path_).completeBaseName());
  QPrintDialog dialog(&printer, this);
  if (dialog.exec() != QDialog::Accepted) return;
  Exporter const exporter(fonts_, font(), decimalComma_);
  if (!exporter.print(view_->sheet(), printer, printer.resolution())) {
    complain(tr("The sheet could not be printed."), tr("The printer does not take it."));
  }
}

void MainWindow::record(bool on) {
  QString error;
  if (!on) {
    if (recorder_->isRecording() && !recorder_->stop(error)) {
      complain(tr("The recording could not be written completely."), error);
    }
    return;
  }
  QString const path =
      askPathToWrite(tr("Record Input"), tr("Event scripts (*.script)"), QStringLiteral("script"));
  recorder_->follow(view_->currentFormula());
  bool const started = !path.isEmpty() && recorder_->start(path, error);
  if (!path.isEmpty() && !started) complain(tr("The recording could not be started."), error);
  if (started) {
    statusBar()->showMessage(tr("Recording to %1").arg(QDir::toNativeSeparators(path)), message_time);
  } else {
    action(QStringLiteral("record"))->setChecked(false);
  }
}

}  // namespace zolt::desktop
