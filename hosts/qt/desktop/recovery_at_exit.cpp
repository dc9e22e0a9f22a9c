#include "hosts/qt/desktop/recovery_at_exit.h"

#include <QGuiApplication>
#include <QSocketNotifier>
#include <cstdlib>

#include "hosts/qt/desktop/recovery_writer.h"

#ifdef Q_OS_UNIX
#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#endif

namespace zolt::desktop {

#ifdef Q_OS_UNIX

namespace {

constexpr int ending_signals[] = {SIGTERM, SIGHUP, SIGINT};
constexpr int signalled_exit = 128;

/// What a signal handler, which may do very little, uses to notify the event loop.
int wakeEnd = -1;

volatile std::sig_atomic_t received = 0;

void wake(int number) {
  int const cause = errno;
  received = number;
  auto const byte = static_cast<unsigned char>(number);
  [[maybe_unused]] ssize_t const written = ::write(wakeEnd, &byte, 1);
  errno = cause;
}

}  // namespace

struct RecoveryAtExit::SignalsS {
  ~SignalsS() {
    for (int const number : ending_signals) std::signal(number, SIG_DFL);
    wakeEnd = -1;
    for (int const end : ends) ::close(end);
  }

  int ends[2] = {-1, -1};
  std::unique_ptr<QSocketNotifier> notifier;
};

#else

struct RecoveryAtExit::SignalsS {};

#endif

RecoveryAtExit::RecoveryAtExit() {
#ifdef Q_OS_UNIX
  std::signal(SIGXFSZ, SIG_IGN);
  std::signal(SIGPIPE, SIG_IGN);
  auto made = std::make_unique<SignalsS>();
  if (::pipe2(made->ends, O_CLOEXEC | O_NONBLOCK) == 0) {
    wakeEnd = made->ends[1];
    made->notifier = std::make_unique<QSocketNotifier>(made->ends[0], QSocketNotifier::Read);
    connect(made->notifier.get(), &QSocketNotifier::activated, this, [from = made->ends[0]] {
      unsigned char number = 0;
      if (::read(from, &number, 1) != 1) return;
      RecoveryWriter::writeAllNow();
      QCoreApplication::exit(requestedStatus());
    });
    struct sigaction action {};
    action.sa_handler = wake;
    action.sa_flags = SA_RESTART;
    for (int const number : ending_signals) {
      struct sigaction before {};
      // A signal that the parent process had ignored (as nohup does) stays ignored.
      if (::sigaction(number, nullptr, &before) == 0 && before.sa_handler == SIG_IGN) continue;
      ::sigaction(number, &action, nullptr);
    }
    signals_ = std::move(made);
  }
#endif
  // The end of the session asks no questions: unsaved sheets are offered in the next one.
  connect(
      qApp, &QGuiApplication::commitDataRequest, this, [] { RecoveryWriter::writeAllNow(); },
      Qt::DirectConnection);
  // When the display is lost, the toolkit calls `exit` while all objects still exist.
  std::atexit(RecoveryWriter::writeAllNow);
}

RecoveryAtExit::~RecoveryAtExit() = default;

int RecoveryAtExit::requestedStatus() {
#ifdef Q_OS_UNIX
  return received ? signalled_exit + received : 0;
#else
  return 0;
#endif
}

}  // namespace zolt::desktop
