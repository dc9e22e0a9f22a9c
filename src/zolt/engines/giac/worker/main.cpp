// SPDX-License-Identifier: GPL-3.0-or-later
//
// Reads requests from its standard input and writes the answers to its standard output, until the input ends.
#include <fcntl.h>
#include <pthread.h>
#include <sys/resource.h>
#include <sys/time.h>
#include <unistd.h>

#include <cstdint>

#include "zolt/engines/giac/worker/computation.h"

namespace {

using namespace zolt;
using namespace zolt::engine_giac::detail;

constexpr std::size_t stack_size = std::size_t{256} << 20;

bool readAll(int file, void* to, std::size_t size) {
  for (auto* at = static_cast<char*>(to); size > 0;) {
    ssize_t const count = read(file, at, size);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    at += count;
    size -= static_cast<std::size_t>(count);
  }
  return true;
}

bool writeAll(int file, void const* from, std::size_t size) {
  for (auto const* at = static_cast<char const*>(from); size > 0;) {
    ssize_t const count = write(file, at, size);
    if (count < 0 && errno == EINTR) continue;
    if (count <= 0) return false;
    at += count;
    size -= static_cast<std::size_t>(count);
  }
  return true;
}

// Ends the process some time after the deadline, should nobody be there any more to do so.
void limitTime(std::chrono::milliseconds deadline) {
  rusage used{};
  getrusage(RUSAGE_SELF, &used);
  rlim_t const seconds = static_cast<rlim_t>(used.ru_utime.tv_sec + used.ru_stime.tv_sec) +
                         static_cast<rlim_t>(deadline.count() / 1000) + 5;
  rlimit limit{};
  getrlimit(RLIMIT_CPU, &limit);
  limit.rlim_cur = limit.rlim_max == RLIM_INFINITY || seconds < limit.rlim_max ? seconds : limit.rlim_max;
  setrlimit(RLIMIT_CPU, &limit);
}

int out = 1;

void* work(void*) {
  for (;;) {
    std::uint32_t size = 0;
    if (!readAll(0, &size, sizeof size) || size > most_message_units) return nullptr;
    oss::wstring message(size, u'\0');
    if (!readAll(0, message.data(), size * sizeof(char16_t))) return nullptr;
    AnswerS answer;
    QuestionS question;
    if (readQuestion(message, question)) {
      limitTime(question.deadline);
      answer = giac_worker::ComputationC(question).run();
    }
    oss::wstring const text = writeAnswer(answer);
    size = static_cast<std::uint32_t>(text.size());
    if (!writeAll(out, &size, sizeof size) || !writeAll(out, text.data(), size * sizeof(char16_t)))
      return nullptr;
  }
}

}  // namespace

int main() {
  // What the library prints must not get between the answers.
  out = dup(1);
  int const nowhere = open("/dev/null", O_WRONLY);
  dup2(nowhere, 1);
  dup2(nowhere, 2);
  // The library recurses with the depth of an expression.
  pthread_attr_t attributes;
  pthread_attr_init(&attributes);
  pthread_attr_setstacksize(&attributes, stack_size);
  pthread_t thread{};
  if (pthread_create(&thread, &attributes, &work, nullptr) != 0) return 1;
  pthread_join(thread, nullptr);
  _exit(0);
}
