#pragma once

#include <atomic>

namespace zolt::oss {

/// Base of the classes whose living objects are counted in builds with `ZOLT_COUNT_OBJECTS`, so that tests
/// find what is never destroyed. Each `T` has a count of its own. In all other builds the class is empty and
/// the count 0.
template <class T>
class LiveCountTC {
 public:
#ifndef ZOLT_COUNT_OBJECTS
  static constexpr long get() { return 0; }
#else
  static long get() { return count_; }

 protected:
  LiveCountTC() { ++count_; }
  LiveCountTC(LiveCountTC const&) { ++count_; }
  LiveCountTC& operator=(LiveCountTC const&) = default;
  ~LiveCountTC() { --count_; }

 private:
  inline static std::atomic<long> count_ = 0;  // threads make objects of one class
#endif
};

}  // namespace zolt::oss
