#include "hosts/qt/desktop/recovery_keeper.h"

#include "hosts/qt/desktop/sheet_view.h"

namespace zolt::desktop {

namespace {

/// Never destroyed: it is needed while the process ends.
QList<RecoveryKeeper*>& keepers() {
  static auto& all = *new QList<RecoveryKeeper*>;
  return all;
}

}  // namespace

RecoveryKeeper::RecoveryKeeper(SheetView& view, QString folder, QObject* parent)
    : QObject(parent), view_(view), file_(RecoveryFile::create(folder)) {
  keepers().push_back(this);
  worker_.setMaxThreadCount(1);
  for (QTimer* const timer : {&quiet_, &deadline_}) {
    timer->setSingleShot(true);
    connect(timer, &QTimer::timeout, this, &RecoveryKeeper::writeSoon);
  }
  connect(&view, &SheetView::edited, this, &RecoveryKeeper::noteChange);
}

RecoveryKeeper::~RecoveryKeeper() {
  keepers().removeOne(this);
  worker_.waitForDone();
}

void RecoveryKeeper::adopt(std::unique_ptr<RecoveryFile> file) {
  forget();
  file_ = std::move(file);
}

void RecoveryKeeper::forget() {
  quiet_.stop();
  deadline_.stop();
  worker_.waitForDone();
  file_->remove();
}

void RecoveryKeeper::noteChange() {
  quiet_.start(quiet_time);
  if (!deadline_.isActive()) deadline_.start(longest_time);
}

void RecoveryKeeper::writeSoon() {
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

void RecoveryKeeper::takeResult(QString const& error) {
  working_ = false;
  bool const fails = !error.isEmpty();
  if (fails && !hasFailed_) emit failed(error);
  hasFailed_ = fails;
}

void RecoveryKeeper::writeNow() {
  bool const pending = quiet_.isActive() || deadline_.isActive() || hasFailed_;
  quiet_.stop();
  deadline_.stop();
  worker_.waitForDone();
  QString error;
  if (pending && view_.isModified()) file_->write(path_, view_.draft(), error);
}

void RecoveryKeeper::writeAllNow() {
  for (RecoveryKeeper* const keeper : keepers()) keeper->writeNow();
}

}  // namespace zolt::desktop
