#include <QAction>
#include <QDir>
#include <QFile>
#include <QFileDialog>
#include <QFileInfo>
#include <QMenu>
#include <QPrintDialog>
#include <QPrinter>
#include <QPushButton>
#include <QRegularExpression>
#include <QSettings>
#include <QStandardPaths>
#include <QStatusBar>
#include <QTextDocument>
#include <memory>

#include "hosts/qt/desktop/graph_view.h"
#include "hosts/qt/desktop/long_work.h"
#include "hosts/qt/desktop/main_window.h"
#include "hosts/qt/desktop/plain_message_box.h"
#include "hosts/qt/desktop/recorder.h"
#include "hosts/qt/desktop/recovery_writer.h"
#include "hosts/qt/desktop/result_view.h"
#include "hosts/qt/desktop/sheet_file.h"
#include "hosts/qt/desktop/sheet_view.h"
#include "hosts/qt/desktop/write_file.h"
#include "zolt/qt/text.h"

namespace zolt::desktop {

namespace {

constexpr qsizetype most_recent_files = 8;
constexpr int message_time = 4000;  // ms

/// What is shown under a formula now; null while that is out of date.
ShownResult const* currentResult(SheetRow const& row) {
  ResultView const* const view = row.resultView();
  return view && !view->isStale() ? &view->result() : nullptr;
}

QString recentKey() { return QStringLiteral("recentFiles"); }

}  // namespace

// ---- Opening ----------------------------------------------------------------------------------------------

bool MainWindow::open(QString const& path) {
  struct ReadS {
    std::optional<Sheet> sheet, readable;
    QString error;
  };
  auto const read = std::make_shared<ReadS>();
  FileStamp stamp;
  if (auto const bytes = readSheetFile(path, stamp, read->error)) {
    auto const work = [read, bytes = *bytes](Progress const& goOn) {
      read->sheet = readSheet(bytes, read->error, goOn);
      if (!read->sheet) read->readable = salvageSheet(bytes, goOn);
    };
    if (!runLongWork(this, tr("Reading the sheet…"), bytes->size(), work)) return false;
  }
  if (read->readable) return openDamaged(path, *read->readable, read->error);
  if (!read->sheet) {
    complain(tr("%1 could not be opened.").arg(QDir::toNativeSeparators(path)), read->error);
    return false;
  }
  if (!showSheet(*read->sheet, path)) return false;
  savedAt_ = stamp;
  addRecentFile(path);
  return true;
}

bool MainWindow::openDamaged(QString const& path, Sheet const& readable, QString const& why) {
  PlainMessageBox question(QMessageBox::Warning, tr("Damaged Sheet"),
                           tr("%1 is damaged.").arg(QDir::toNativeSeparators(path)), QMessageBox::Cancel,
                           this);
  question.setInformativeText(
      tr("%1.\n\nWhat is readable can be opened as a new sheet, the rest as lines of text. The file stays "
         "as it is.")
          .arg(why));
  question.setDefaultButton(question.addButton(tr("&Open What Is Readable"), QMessageBox::AcceptRole));
  question.exec();
  if (question.buttonRole(question.clickedButton()) != QMessageBox::AcceptRole) return false;
  if (!showSheet(readable, {})) return false;
  view_->setUnsaved();
  return true;
}

void MainWindow::openSample() {
  QFile file(QStringLiteral(":/sample.zved"));
  QString error;
  std::optional<Sheet> sheet;
  if (file.open(QIODevice::ReadOnly)) sheet = readSheet(file.readAll(), error);
  showSheet(sheet.value_or(Sheet()), {});
}

QString MainWindow::folder() const {
  QString const own = QFileInfo(path_).path();
  return !path_.isEmpty() && QFileInfo(own).isDir()
             ? own
             : QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation);
}

void MainWindow::newSheet() {
  if (mayLeave()) showSheet({}, {});
}

void MainWindow::openAsked() {
  if (!mayLeave()) return;
  QString const path = QFileDialog::getOpenFileName(
      this, tr("Open"), folder(), tr("Sheets (*.%1);;All files (*)").arg(QLatin1String(sheet_suffix)));
  if (!path.isEmpty()) open(path);
}

bool MainWindow::importDocument(QString const& path) {
  QString error;
  FileStamp ignored;
  std::optional<sheet::DocumentKindE> const kind = documentKindOf(path);
  std::optional<QByteArray> const bytes = readSheetFile(path, ignored, error);
  std::optional<Sheet> const sheet =
      bytes ? readDocument(*bytes, kind.value_or(sheet::DOCUMENT_MARKDOWN), error) : std::nullopt;
  if (!sheet) {
    complain(tr("%1 could not be imported.").arg(QDir::toNativeSeparators(path)), error);
    return false;
  }
  if (!showSheet(*sheet, {})) return false;
  view_->setUnsaved();
  return true;
}

void MainWindow::importAsked() {
  if (!mayLeave()) return;
  QString const path = QFileDialog::getOpenFileName(
      this, tr("Import"), folder(), tr("Documents (*.tex *.md);;LaTeX (*.tex);;Markdown (*.md)"));
  if (!path.isEmpty()) importDocument(path);
}

bool MainWindow::showSheet(Sheet const& sheet, QString const& path) {
  if (!view_->setSheet(sheet, showProgress(this, tr("Opening the sheet…"), sheet.size()))) return false;
  if (recovery_) recovery_->forget();
  setPath(path);
  view_->enterFirstFormula();
  updateActions();
  updateStatus();
  return true;
}

void MainWindow::showRecovered(RecoveredSheet const& recovered, std::unique_ptr<RecoveryFile> file) {
  if (!showSheet(recovered.sheet, recovered.path)) return;
  savedAt_ = {};
  if (recovery_ && file) recovery_->adopt(std::move(file));
  view_->setUnsaved();
}

bool MainWindow::isUntouched() const { return path_.isEmpty() && !view_->isModified(); }

// ---- Saving -----------------------------------------------------------------------------------------------

bool MainWindow::save() { return path_.isEmpty() ? saveAs() : saveTo(path_); }

bool MainWindow::saveAs() {
  QString const path = askPathToWrite(tr("Save As"), tr("Sheets (*.%1)").arg(QLatin1String(sheet_suffix)),
                                      QLatin1String(sheet_suffix));
  return !path.isEmpty() && saveTo(path);
}

bool MainWindow::mayReplace(QString const& path) {
  bool const known = path == path_ && savedAt_.changed.isValid();
  if (!known || !QFileInfo(path).isFile() || stampOf(path) == savedAt_) return true;
  PlainMessageBox question(
      QMessageBox::Warning, tr("Changed Meanwhile"),
      tr("%1 has been changed by another program or window.").arg(QDir::toNativeSeparators(path)),
      QMessageBox::Cancel, this);
  question.setInformativeText(tr("Replacing it gives up what was changed there."));
  question.addButton(tr("&Replace"), QMessageBox::DestructiveRole);
  question.setDefaultButton(QMessageBox::Cancel);
  question.exec();
  return question.buttonRole(question.clickedButton()) == QMessageBox::DestructiveRole;
}

bool MainWindow::saveTo(QString const& path) {
  if (!mayReplace(path)) return false;
  QString error;
  if (!saveSheet(path, view_->sheet(), error)) {
    PlainMessageBox message(QMessageBox::Warning, tr("Not Saved"),
                            tr("The sheet could not be saved to %1.").arg(QDir::toNativeSeparators(path)),
                            QMessageBox::Retry | QMessageBox::Cancel, this);
    message.setInformativeText(tr("%1.\n\nThe sheet is still open, and nothing in it is lost.").arg(error));
    QPushButton* const elsewhere = message.addButton(tr("Save &As…"), QMessageBox::AcceptRole);
    message.setDefaultButton(elsewhere);
    int const answer = message.exec();
    if (message.clickedButton() == elsewhere) return saveAs();
    return answer == QMessageBox::Retry && saveTo(path);
  }
  setPath(path);
  view_->setSaved();
  if (recovery_) recovery_->forget();
  addRecentFile(path);
  statusBar()->showMessage(tr("Saved"), message_time);
  return true;
}

bool MainWindow::mayLeave() {
  if (!view_->isModified()) return true;
  PlainMessageBox question(
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
  QFileDialog dialog(this, title, folder(), filter);
  dialog.setAcceptMode(QFileDialog::AcceptSave);
  dialog.setDefaultSuffix(suffix);
  dialog.selectFile(name);
  // The extension follows the chosen file type.
  connect(&dialog, &QFileDialog::filterSelected, &dialog, [&dialog](QString const& chosen) {
    dialog.setDefaultSuffix(chosen.section(QStringLiteral("*."), 1).section(u')', 0, 0));
  });
  if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return {};
  return dialog.selectedFiles().constFirst();
}

void MainWindow::setPath(QString const& path) {
  path_ = path;
  savedAt_ = path.isEmpty() ? FileStamp() : stampOf(path);
  if (recovery_) recovery_->setPath(path.isEmpty() ? path : QFileInfo(path).absoluteFilePath());
  QString const name = path.isEmpty() ? tr("Untitled") : QFileInfo(path).fileName();
  setWindowTitle(tr("%1[*] – zolt ved").arg(name));
  setWindowModified(view_->isModified());
}

void MainWindow::complain(QString const& what, QString const& why) {
  PlainMessageBox message(QMessageBox::Warning, tr("zolt ved"), what, QMessageBox::Ok, this);
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
    action->setToolTip(Qt::convertFromPlainText(QDir::toNativeSeparators(path)));
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

QString MainWindow::askExportPath(QString const& title, QString const& others) {
  return askPathToWrite(title, tr("PNG picture (*.png);;SVG picture (*.svg);;PDF (*.pdf)") + others,
                        QStringLiteral("png"));
}

Exporter MainWindow::makeExporter() const {
  QHash<qsizetype, ShownBelow> below;
  for (qsizetype i = 0; i < view_->rows().size(); ++i) {
    SheetRow const& row = *view_->rows()[i];
    ShownBelow shown;
    if (ShownResult const* const result = currentResult(row)) shown.result = *result;
    if (row.graph()) shown.graph = row.graph()->graph();
    if (!shown.result.isEmpty() || shown.graph) below.insert(i, std::move(shown));
  }
  Exporter exporter(fonts_, font(), decimalComma_);
  exporter.setBelow(std::move(below));
  return exporter;
}

void MainWindow::exportDocument(QString const& path, sheet::DocumentKindE kind) {
  std::vector<sheet::WrittenResultS> results;
  // Documents have pictures only as files, whose names must not need escapes.
  QFileInfo const file(path);
  QString const name = file.completeBaseName().replace(QRegularExpression(QStringLiteral("[^A-Za-z0-9_-]")),
                                                       QStringLiteral("-"));
  Exporter const exporter = makeExporter();
  int graphs = 0;
  auto const write = [](ShownResult::Expression const& expression) {
    return expression ? expression->toPrefixString() : oss::wstring();
  };
  for (SheetRow const* const row : view_->rows()) {
    results.emplace_back();
    if (ShownResult const* const result = currentResult(*row)) {
      results.back() = {write(result->value), write(result->number), result->isNumberExact,
                        result->isImplied};
    }
    if (!row->graph()) continue;
    QString const picture = QStringLiteral("%1-graph-%2.png").arg(name).arg(++graphs);
    if (!writeExport(file.dir().filePath(picture), exporter.exportGraph(row->graph()->graph()))) return;
    results.back().graph = qt::toWstring(picture);
  }
  writeExport(path, writeDocument(view_->sheet(), kind, results));
}

void MainWindow::exportSheet() {
  QString const path =
      askExportPath(tr("Export Sheet"), tr(";;LaTeX document (*.tex);;Markdown document (*.md)"));
  if (path.isEmpty()) return;
  if (auto const kind = documentKindOf(path)) return exportDocument(path, *kind);
  QString const title = QFileInfo(path_).completeBaseName();
  Exporter const exporter = makeExporter();
  writeExport(path, exporter.exportSheet(view_->sheet(), pictureFormatOf(path), title));
}

void MainWindow::exportFormula() {
  QString const path = askExportPath(tr("Export Formula"));
  if (path.isEmpty()) return;
  Exporter const exporter = makeExporter();
  writeExport(path, exporter.exportFormula(view_->currentRow()->line(), pictureFormatOf(path)));
}

bool MainWindow::writeExport(QString const& path, QByteArray const& bytes) {
  QString error = tr("The picture would be too large.");
  if (bytes.isEmpty() || !writeFile(path, bytes, error)) {
    complain(tr("%1 could not be written.").arg(QDir::toNativeSeparators(path)), error);
    return false;
  }
  statusBar()->showMessage(tr("Exported to %1").arg(QDir::toNativeSeparators(path)), message_time);
  return true;
}

void MainWindow::printAsked() {
  QPrinter printer(QPrinter::HighResolution);
  printer.setDocName(path_.isEmpty() ? tr("Sheet") : QFileInfo(path_).completeBaseName());
  QPrintDialog dialog(&printer, this);
  if (dialog.exec() != QDialog::Accepted) return;
  Exporter const exporter = makeExporter();
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
