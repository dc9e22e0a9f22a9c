#pragma once

#include <functional>
#include <string>
#include <vector>

namespace zolt::cli {

/// Where a subcommand takes its expressions from.
struct InputS {
  std::vector<std::string> expressions;  ///< none, or only "-": standard input
  std::string file;                      ///< empty: none; "-": standard input
};

struct LineS {
  std::string bytes;         ///< without the line end
  unsigned long number = 0;  ///< from 1
  bool tooLong = false;      ///< longer than `LineSourceC::max_line_bytes`; `bytes` is its beginning
  std::string place;         ///< for messages; empty for the arguments of a command line
};

/// The expressions of an input, one by one: either arguments or lines, which are read as they arrive, in
/// constant memory.
class LineSourceC {
 public:
  static constexpr std::size_t max_line_bytes = 16u << 20;

  explicit LineSourceC(InputS const& input);
  ~LineSourceC();
  LineSourceC(LineSourceC const&) = delete;
  LineSourceC& operator=(LineSourceC const&) = delete;

  /// Calls `action` whenever the next line has to be waited for, so that a program that writes to us and
  /// reads from us gets the answers to what it has sent.
  void onWait(std::function<void()> action) { wait_ = std::move(action); }

  /// Reads the next expression. Returns false at the end, and when the input cannot be read (see `finish`).
  bool next(LineS& line);
  /// Whether another expression follows.
  bool hasNext();
  /// Returns false, and prints the reason, when the input could not be read to its end.
  bool finish() const;

  bool areArguments() const { return descriptor_ < 0 && error_ == 0; }

 private:
  bool nextLine(LineS& line);
  bool fill();

  std::vector<std::string> expressions_;
  std::function<void()> wait_;
  std::string name_;
  int descriptor_ = -1;
  int error_ = 0;
  bool isAtEnd_ = false;
  unsigned long number_ = 0;
  std::vector<char> buffer_;
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
};

}  // namespace zolt::cli
