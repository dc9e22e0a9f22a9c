#pragma once

#include <string_view>

namespace zolt::cli {

/// Standard output, buffered. Once a write has failed (a full disk, say) everything further is dropped;
/// `finish` tells. A reader that went away ends the program silently, as pipes do.
class StandardOutputC {
 public:
  void write(std::string_view bytes);
  /// Hands on what is buffered, so that whoever is at the other end sees it.
  void flush();
  /// False, from the first failed write on.
  bool isGood() const { return error_ == 0; }
  /// Flushes. False, with the reason printed, when not everything could be written.
  bool finish();

 private:
  int error_ = 0;
};

}  // namespace zolt::cli
