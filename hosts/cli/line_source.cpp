#include "hosts/cli/line_source.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <cstring>

#include "hosts/cli/message.h"

namespace zolt::cli {

namespace {

constexpr std::size_t buffer_bytes = 64u << 10;
constexpr char byte_order_mark[] = "\xEF\xBB\xBF";

}  // namespace

LineSourceC::LineSourceC(InputS const& input) {
  bool const isDash = input.expressions.size() == 1 && input.expressions[0] == "-";
  if (input.file.empty() && !input.expressions.empty() && !isDash) {
    expressions_ = input.expressions;
    return;
  }
  buffer_.resize(buffer_bytes);
  if (input.file.empty() || input.file == "-") {
    name_ = "standard input";
    descriptor_ = STDIN_FILENO;
    if (isatty(STDIN_FILENO) != 0 && isatty(STDERR_FILENO) != 0)
      printMessage("type expressions, one a line, and Ctrl-D after the last one");
    return;
  }
  name_ = input.file;
  descriptor_ = open(name_.c_str(), O_RDONLY | O_CLOEXEC);
  if (descriptor_ < 0) error_ = errno;
}

LineSourceC::~LineSourceC() {
  if (descriptor_ > STDIN_FILENO) close(descriptor_);
}

bool LineSourceC::next(LineS& line) {
  line.tooLong = false;
  if (areArguments()) {
    if (number_ == expressions_.size()) return false;
    line.bytes = expressions_[number_++];
    line.number = number_;
    return true;
  }
  return nextLine(line);
}

bool LineSourceC::hasNext() {
  if (areArguments()) return number_ < expressions_.size();
  return begin_ < end_ || fill();
}

bool LineSourceC::nextLine(LineS& line) {
  if (!hasNext()) return false;
  line.bytes.clear();
  bool ended = false;
  do {
    char const* const first = buffer_.data() + begin_;
    auto const* const lineEnd = static_cast<char const*>(std::memchr(first, '\n', end_ - begin_));
    std::size_t const count = lineEnd ? static_cast<std::size_t>(lineEnd - first) : end_ - begin_;
    std::size_t const taken = std::min(count, max_line_bytes - line.bytes.size());
    line.bytes.append(first, taken);
    line.tooLong = line.tooLong || taken < count;
    ended = lineEnd != nullptr;
    begin_ += count + (ended ? 1 : 0);
  } while (!ended && hasNext());
  // Half a line from a failing disk is not what the author wrote.
  if (!ended && error_ != 0) return false;
  if (!line.bytes.empty() && line.bytes.back() == '\r') line.bytes.pop_back();
  line.number = ++number_;
  if (number_ == 1 && line.bytes.compare(0, 3, byte_order_mark) == 0) line.bytes.erase(0, 3);
  line.place = name_ + ':' + std::to_string(number_);
  return true;
}

bool LineSourceC::fill() {
  if (descriptor_ < 0 || error_ != 0 || isAtEnd_) return false;
  if (wait_) wait_();
  ssize_t count = 0;
  do {
    count = read(descriptor_, buffer_.data(), buffer_.size());
  } while (count < 0 && errno == EINTR);
  if (count < 0) error_ = errno;
  isAtEnd_ = count <= 0;
  begin_ = 0;
  end_ = count > 0 ? static_cast<std::size_t>(count) : 0;
  return end_ > 0;
}

bool LineSourceC::finish() const {
  if (error_ != 0) printMessage("cannot read " + name_ + ": " + describeSystemError(error_));
  return error_ == 0;
}

}  // namespace zolt::cli
