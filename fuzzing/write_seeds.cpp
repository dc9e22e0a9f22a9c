// fuzz_seeds <target> <folder> [<corpora>]: writes the target's seeds into the folder. <corpora> has a folder
// for each target with the inputs that it has learnt, from which seeds for this target are made, too.

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <string>
#include <utility>

#include "fuzzing/shared_seeds.h"
#include "fuzzing/targets.h"

int main(int argc, char** argv) {
  for (auto const& target : zolt::fuzz::targets) {
    if (argc < 3 || argc > 4 || std::string(argv[1]) != target.name) continue;
    auto seeds = target.seeds();
    if (argc == 4) {
      for (auto& seed : zolt::fuzz::sharedSeeds(target.name, argv[3])) seeds.push_back(std::move(seed));
    }
    std::filesystem::create_directories(argv[2]);
    unsigned long number = 0;
    for (auto const& seed : seeds) {
      std::ofstream out(std::string(argv[2]) + "/seed-" + std::to_string(number++), std::ios::binary);
      out.write(reinterpret_cast<char const*>(seed.data()), static_cast<std::streamsize>(seed.size()));
    }
    return 0;
  }
  std::fprintf(stderr, "usage: fuzz_seeds <target> <folder> [<corpora>]\n");
  return 2;
}
