// Runs one target as a libFuzzer program.

#include <cstdio>
#include <cstdlib>
#include <cstring>

#include "fuzzing/targets.h"

extern "C" int LLVMFuzzerTestOneInput(std::uint8_t const* data, std::size_t size) {
  static zolt::fuzz::TargetS const* const target = [] {
    for (auto const& one : zolt::fuzz::targets) {
      if (std::strcmp(one.name, ZOLT_FUZZ_TARGET) == 0) return &one;
    }
    std::abort();
  }();
  std::string const fault = target->check(data, size);
  if (fault.empty()) return 0;
  std::fprintf(stderr, "fault: %s\n", fault.c_str());
  std::abort();
}
