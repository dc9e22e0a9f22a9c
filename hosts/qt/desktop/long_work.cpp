#include "hosts/qt/desktop/long_work.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QProgressDialog>
#include <QSemaphore>
#include <QThreadPool>
#include <QTimer>
#include <algorithm>
#include <atomic>
#include <memory>

#include "hosts/qt/desktop/recovery_at_exit.h"

namespace zolt::desktop {

namespace {

constexpr int progress_delay = 500;  // ms
constexpr int progress_pause = 50;   // ms

}  // namespace

Progress showProgress(QWidget* window, QString const& what, qsizetype all) {
  constexpr double steps = 1000;
  auto const dialog = std::make_shared<QProgressDialog>(
      what, QCoreApplication::translate("zolt::desktop::LongWork", "&Cancel"), 0, int(steps), window);
  dialog->setWindowModality(Qt::WindowModal);
  dialog->setMinimumDuration(progress_delay);
  return [dialog, all](qsizetype done) {
    int const value = int(steps * double(done) / double(std::max<qsizetype>(1, all)));
    if (value != dialog->value()) dialog->setValue(value);
    return !dialog->wasCanceled() && !RecoveryAtExit::requestedStatus();
  };
}

bool runLongWork(QWidget* window, QString const& what, qsizetype all,
                 std::function<void(Progress const&)> const& work) {
  struct StateS {
    std::atomic<qsizetype> done{0};
    std::atomic<bool> isStopped{false};
    QSemaphore finished;
  };
  auto const state = std::make_shared<StateS>();
  QThreadPool::globalInstance()->start([state, work] {
    work([&state](qsizetype done) {
      state->done = done;
      return !state->isStopped;
    });
    state->finished.release();
  });
  if (state->finished.tryAcquire(1, progress_delay)) return true;

  Progress const show = showProgress(window, what, all);
  QEventLoop loop;
  QTimer timer;
  bool isFinished = false;
  QObject::connect(&timer, &QTimer::timeout, &loop, [&] {
    isFinished = state->finished.tryAcquire();
    if (isFinished || !show(state->done)) loop.quit();
  });
  timer.start(progress_pause);
  // The loop also ends when the program does.
  loop.exec();
  state->isStopped = !isFinished;
  return isFinished;
}

}  // namespace zolt::desktop
