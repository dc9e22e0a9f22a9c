#include "hosts/qt/desktop/recovery_writer.h"

#include "hosts/qt/desktop/sheet_view.h"

namespace zolt::desktop {

namespace {

/// It is never destroyed, because it is needed while the process ends.
QList<RecoveryWriter*>& keepers() {
  static auto& all = *new QList<RecoveryWriter*>;
  return all;
}

}  // namespace

RecoveryWriter::RecoveryWriter(SheetView& view, QString folder, QObject* parent)
    : QObject(parent), view_(view), file_(RecoveryFile::create(folder)) {
  keepers().push_back(this);
  worker_.setMaxThreadCount(1);
  for (QTimer* const timer : {&quiet_, &deadline_}) {
    timer->setSingleShot(true);
    connect(timer, &QTimer::timeout, this, &RecoveryWriter::writeSoon);
  }
  connect(&view, &SheetView::edited, this, &RecoveryWriter::noteChange);
}

RecoveryWriter::~RecoveryWriter() {
  keepers().removeOne(this);
  worker_.waitForDone();
}

void RecoveryWriter::adopt(std::unique_ptr<RecoveryFile> file) {
  forget();
  file_ = std::move(file);
}

void RecoveryWriter::forget() {
  quiet_.stop();
  deadline_.stop();
  worker_.waitForDone();
  file_->remove();
}

void RecoveryWriter::noteChange() {
  quiet_.start(quiet_time);
  if (!deadline_.isActive()) deadline_.start(longest_time);
}

void RecoveryWriter::writeSoon() {
  quiet_.stop();
  deadline_.stop();
  if (!view_.isModified()) {
    forget();
    return;
  }
  if (working_) {
    noteChange();
    return;
  }
  working_ = true;
  worker_.start([this, path = path_, sheet = view_.draft()] {
    QString error;
    file_->write(path, sheet, error);
    QMetaObject::invokeMethod(
        this, [this, error] { takeResult(error); }, Qt::QueuedConnection);
  });
}

void RecoveryWriter::takeResult(QString const& error) {
  working_ = false;
  bool const fails = !error.isEmpty();
  if (fails && !hasFailed_) emit failed(error);
  hasFailed_ = fails;
}

void RecoveryWriter::writeNow() {
  bool const pending = quiet_.isActive() || deadline_.isActive() || hasFailed_;
  quiet_.stop();
  deadline_.stop();
  worker_.waitForDone();
  QString error;
  if (pending && view_.isModified()) file_->write(path_, view_.draft(), error);
}

void RecoveryWriter::writeAllNow() {
  for (RecoveryWriter* const keeper : keepers()) keeper->writeNow();
}

}  // namespace zolt::desktop
