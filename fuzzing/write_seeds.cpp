// fuzz_seeds <target> <folder>: writes the target's seeds into the folder.

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>

#include "fuzzing/targets.h"

int main(int argc, char** argv) {
  for (auto const& target : zolt::fuzz::targets) {
    if (argc != 3 || std::string(argv[1]) != target.name) continue;
    std::filesystem::create_directories(argv[2]);
    unsigned long number = 0;
    for (auto const& seed : target.seeds()) {
      std::ofstream out(std::string(argv[2]) + "/seed-" + std::to_string(number++), std::ios::binary);
      out.write(reinterpret_cast<char const*>(seed.data()), static_cast<std::streamsize>(seed.size()));
    }
    return 0;
  }
  std::fprintf(stderr, "usage: fuzz_seeds <target> <folder>\n");
  return 2;
}
