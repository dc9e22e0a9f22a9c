#include "hosts/cli/batch.h"

#include <unistd.h>

#include <cstdio>

#include "hosts/cli/utf8_text.h"
#include "zolt/field/error_text.h"

namespace zolt::cli {

namespace {

bool isBlank(std::string const& bytes) { return bytes.find_first_not_of(" \t\r") == std::string::npos; }

}  // namespace

BatchC::BatchC(InputS const& input, unsigned long progressStep, StandardOutputC& output)
    : output_(output),
      source_(input),
      progressStep_(progressStep),
      // Results that appear on the terminal show the progress themselves.
      showsProgress_(!source_.areArguments() && isatty(STDERR_FILENO) != 0 && isatty(STDOUT_FILENO) == 0) {
  source_.onWait([this] {
    if (settle_) settle_();
    output_.flush();
  });
}

bool BatchC::next() {
  if (!output_.isGood()) return false;
  if (!ahead_.empty()) {
    line_ = std::move(ahead_.front());
    ahead_.pop_front();
  } else if (!source_.next(line_)) {
    return false;
  }
  if (line_.number % progressStep_ == 0) showProgress();
  // An empty argument is a mistake; an empty line only separates others.
  hasText_ = (source_.areArguments() || !isBlank(line_.bytes)) && decode();
  return true;
}

unsigned long BatchC::countAhead() {
  for (LineS line; source_.next(line);) ahead_.push_back(line);
  return ahead_.empty() ? 0 : ahead_.back().number;
}

bool BatchC::decode() {
  oss::Utf8FaultS bad;
  bool const isUtf8 = fromUtf8(line_.bytes, text_, &bad);
  FaultS fault;
  if (line_.tooLong) {
    fault.message =
        "This line is longer than " + std::to_string(LineSourceC::max_line_bytes >> 20) + " megabytes";
  } else if (!isUtf8) {
    fault = {"Byte " + std::to_string(bad.byte + 1) + " is not UTF-8", true, bad.character,
             bad.character + 1};
  } else if (isBlank(line_.bytes)) {
    fault = {toUtf8(field::describe(math::ved::ERROR_CAUSE_EMPTY)), true, 0, 0};
  } else {
    return true;
  }
  if (settle_) settle_();
  report(fault);
  return false;
}

void BatchC::report(std::string const& place, oss::wstring const& text, FaultS const& fault) {
  ++faults_;
  clearProgress();
  output_.flush();
  printFault(place, text, fault);
}

void BatchC::report(std::string const& message) {
  ++faults_;
  clearProgress();
  output_.flush();
  printMessage(message);
}

ExitStatusE BatchC::finish() {
  clearProgress();
  bool const wasRead = source_.finish();
  bool const wasWritten = output_.finish();
  return wasRead && wasWritten && faults_ == 0 ? EXIT_STATUS_OK : EXIT_STATUS_FAILED;
}

void BatchC::showProgress() {
  if (!showsProgress_) return;
  std::fprintf(stderr, "\r%lu lines, %lu wrong", line_.number, faults_);
  std::fflush(stderr);
  isProgressShown_ = true;
}

void BatchC::clearProgress() {
  if (!isProgressShown_) return;
  std::fputs("\r\x1b[K", stderr);
  isProgressShown_ = false;
}

}  // namespace zolt::cli
