#pragma once

#include <string_view>

namespace zolt::cli {

/// Standard output, buffered. After a failed write (a full disk, for example) all further output is dropped,
/// and `finish` reports it. When the reader goes away, the program ends silently, as is usual for pipes.
class StandardOutputC {
 public:
  void write(std::string_view bytes);
  /// Writes a line that holds names of files: as they are, but for terminals.
  void writeNames(std::string const& line);
  /// Writes out the buffer, so that the reader at the other end sees it.
  void flush();
  /// Returns false from the first failed write on.
  bool isGood() const { return error_ == 0; }
  /// Flushes. Returns false, and prints the reason, when not everything could be written.
  bool finish();

 private:
  int error_ = 0;
};

}  // namespace zolt::cli
