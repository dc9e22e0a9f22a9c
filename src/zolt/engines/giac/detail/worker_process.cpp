#include "zolt/engines/giac/detail/worker_process.h"

#include <fcntl.h>
#include <poll.h>
#include <signal.h>
#include <sys/resource.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>

#include "zolt/engines/giac/detail/messages.h"

namespace zolt::engine_giac::detail {

namespace {

constexpr rlim_t most_memory = rlim_t{1536} << 20;
constexpr int last_file = 1024;
// How soon a stop that another thread asks for is noticed.
constexpr std::chrono::milliseconds interval(5);

// In the child, where only calls that are safe after a fork may be made. Does not return.
[[noreturn]] void becomeWorker(char const* path, int socket, int files) {
  char const* const arguments[] = {path, nullptr};
  char const* const environment[] = {"LC_ALL=C", nullptr};
  sigset_t none;
  sigemptyset(&none);
  sigprocmask(SIG_SETMASK, &none, nullptr);
  for (int const number : {SIGPIPE, SIGINT, SIGTERM, SIGCHLD}) signal(number, SIG_DFL);
  int const nowhere = open("/dev/null", O_WRONLY);
  dup2(nowhere, 2);
  dup2(socket, 0);
  dup2(socket, 1);
  for (int file = 3; file < files; ++file) close(file);
  rlimit const memory{most_memory, most_memory}, zero{0, 0};
  setrlimit(RLIMIT_AS, &memory);
  setrlimit(RLIMIT_CORE, &zero);
  setrlimit(RLIMIT_FSIZE, &zero);
  execve(path, const_cast<char* const*>(arguments), const_cast<char* const*>(environment));
  _exit(127);
}

}  // namespace

bool WorkerProcessC::start() {
  int ends[2];
  if (socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) != 0) return false;
  long const files = std::min<long>(sysconf(_SC_OPEN_MAX), std::max(last_file, ends[1] + 1));
  pid_t const process = fork();
  if (process == 0) becomeWorker(path_.c_str(), ends[1], static_cast<int>(files));
  close(ends[1]);
  if (process < 0) {
    close(ends[0]);
    return false;
  }
  fcntl(ends[0], F_SETFL, O_NONBLOCK);
  socket_ = ends[0];
  process_ = process;
  asked_ = 0;
  return true;
}

void WorkerProcessC::end() {
  if (process_ == 0) return;
  close(socket_);
  kill(process_, SIGKILL);
  while (waitpid(process_, nullptr, 0) < 0 && errno == EINTR) {
  }
  process_ = 0;
  socket_ = -1;
}

// One that waits for a question neither says something nor ends.
bool WorkerProcessC::isAlive() const {
  if (process_ == 0) return false;
  pollfd waited{socket_, POLLIN, 0};
  return poll(&waited, 1, 0) == 0;
}

WorkerProcessC::OutcomeE WorkerProcessC::move(DirectionE direction, void* bytes, std::size_t size, EndT last,
                                              math::algexpr::CASStopC const* stop) {
  auto* at = static_cast<char*>(bytes);
  while (size > 0) {
    if (stop && stop->isStopped()) return STOPPED;
    auto const left = std::chrono::duration_cast<std::chrono::milliseconds>(
        last - std::chrono::steady_clock::now() + std::chrono::microseconds(999));
    if (left.count() <= 0) return LATE;
    pollfd waited{socket_, static_cast<short>(direction == TO_WORKER ? POLLOUT : POLLIN), 0};
    int const ready = poll(&waited, 1, static_cast<int>(std::min(left, stop ? interval : left).count()));
    if (ready <= 0) continue;
    ssize_t const count =
        direction == TO_WORKER ? send(socket_, at, size, MSG_NOSIGNAL) : recv(socket_, at, size, 0);
    if (count < 0 && (errno == EINTR || errno == EAGAIN)) continue;
    if (count <= 0) return ENDED;
    at += count;
    size -= static_cast<std::size_t>(count);
  }
  return ANSWERED;
}

WorkerProcessC::OutcomeE WorkerProcessC::ask(wstring const& question, EndT last,
                                             math::algexpr::CASStopC const* stop, wstring& answer) {
  if (!isAlive()) {
    end();
    if (!start()) return ENDED;
  }
  ++asked_;
  wstring message = question;
  auto size = static_cast<std::uint32_t>(message.size());
  OutcomeE outcome = move(TO_WORKER, &size, sizeof size, last, stop);
  if (outcome == ANSWERED) {
    outcome = move(TO_WORKER, message.data(), message.size() * sizeof(char16_t), last, stop);
  }
  if (outcome == ANSWERED) outcome = move(FROM_WORKER, &size, sizeof size, last, stop);
  if (outcome == ANSWERED && size > most_message_units) outcome = ENDED;
  if (outcome == ANSWERED) {
    answer.resize(size);
    outcome = move(FROM_WORKER, answer.data(), size * sizeof(char16_t), last, stop);
  }
  if (outcome != ANSWERED) end();
  return outcome;
}

}  // namespace zolt::engine_giac::detail
