#pragma once

#include <algorithm>

#include "zolt/engines/basic/detail/watch.h"

namespace zolt::engine_basic::detail {

/// While there is one on a thread, operations on long numbers end soon when its watch is over, with 0 in
/// place of the value: whoever made it drops what has been computed.
class LongWorkC {
 public:
  explicit LongWorkC(WatchC& watch) : outer_(current) { current = &watch; }
  ~LongWorkC() { current = outer_; }
  LongWorkC(LongWorkC const&) = delete;
  LongWorkC& operator=(LongWorkC const&) = delete;

  /// False when the work is to end. A step is about one product of two 32-bit numbers.
  [[nodiscard]] static bool goOn(std::size_t steps) {
    constexpr std::size_t steps_at_once = 16, most = 1000000;
    if (!current) return true;
    static_cast<void>(current->goOn(static_cast<unsigned>(std::min(steps / steps_at_once, most)) + 1));
    return !current->isOver();
  }

 private:
  inline static thread_local WatchC* current = nullptr;

  WatchC* const outer_;
};

}  // namespace zolt::engine_basic::detail
