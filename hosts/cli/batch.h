#pragma once

#include <deque>
#include <functional>

#include "hosts/cli/exit_status.h"
#include "hosts/cli/line_source.h"
#include "hosts/cli/message.h"
#include "hosts/cli/standard_output.h"
#include "zolt/oss/wstring.h"

namespace zolt::cli {

/// The work of one subcommand on one input, text by text. It reports a wrong text and continues with the next
/// one. When many texts come from a file or a pipe, a line on the terminal shows the progress.
class BatchC {
 public:
  /// Reports progress after every `progressStep` lines. `output` is flushed whenever the input has to be
  /// waited for, and the batch ends when it fails.
  BatchC(InputS const& input, unsigned long progressStep, StandardOutputC& output);

  /// Has `settle` called before anything is reported here and whenever the input has to be waited for, so
  /// that work on earlier texts can be finished first.
  void onSettle(std::function<void()> settle) { settle_ = std::move(settle); }

  /// Reads the input to its end, which then is in memory, and returns how many lines or arguments it has.
  unsigned long countAhead();
  /// Moves to the next line or argument. Returns false at the end.
  bool next();
  /// Whether there is something to work on. A blank line has nothing; neither has one that is not UTF-8,
  /// which has been reported.
  bool hasText() const { return hasText_; }
  oss::wstring const& getText() const { return text_; }
  /// Counts from 1, blank and wrong lines included.
  unsigned long getNumber() const { return line_.number; }
  /// Where the text comes from, for messages; empty for an argument.
  std::string const& getPlace() const { return line_.place; }
  /// Whether another line follows.
  bool hasNext() { return !ahead_.empty() || source_.hasNext(); }

  /// Reports what is wrong with the current text.
  void report(FaultS const& fault) { report(line_.place, text_, fault); }
  /// Reports what is wrong with an earlier one.
  void report(std::string const& place, oss::wstring const& text, FaultS const& fault);
  /// Reports any other failure.
  void report(std::string const& message);

  /// Reports what went wrong with input and output, and returns the exit status of the whole run.
  ExitStatusE finish();

 private:
  bool decode();
  void showProgress();
  void clearProgress();

  StandardOutputC& output_;
  LineSourceC source_;
  std::function<void()> settle_;
  std::deque<LineS> ahead_;  // read by countAhead
  LineS line_;
  oss::wstring text_;
  bool hasText_ = false;
  unsigned long faults_ = 0;
  unsigned long progressStep_;
  bool showsProgress_;
  bool isProgressShown_ = false;
};

}  // namespace zolt::cli
