// The fuzzers' targets without a fuzzer: what they start from, what they once found, and damaged copies of
// both.

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>

#include "fuzzing/bytes_text.h"
#include "fuzzing/event_bytes.h"
#include "fuzzing/targets.h"

namespace zolt::fuzz {
namespace {

class Fuzz : public testing::TestWithParam<TargetS> {
 protected:
  static std::string check(BytesT const& input) { return GetParam().check(input.data(), input.size()); }
};

TEST_P(Fuzz, NothingIsFoundAgain) {
  std::filesystem::path const folder =
      std::filesystem::path(ZOLT_FUZZ_FOLDER "/regressions") / GetParam().name;
  if (!std::filesystem::exists(folder)) return;
  for (auto const& entry : std::filesystem::directory_iterator(folder)) {
    std::ifstream in(entry.path(), std::ios::binary);
    BytesT const input{std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
    EXPECT_EQ(check(input), "") << entry.path();
  }
}

TEST_P(Fuzz, WhatTheCorporaHoldIsSound) {
  auto const seeds = GetParam().seeds();
  ASSERT_GT(seeds.size(), 100u);
  for (BytesT const& seed : seeds) EXPECT_EQ(check(seed), "") << std::string(seed.begin(), seed.end());
}

TEST_P(Fuzz, DamageIsMet) {
  auto const seeds = GetParam().seeds();
  std::mt19937 random(1);
  for (int round = 0; round < 500; ++round) {
    BytesT input = seeds[random() % seeds.size()];
    BytesT const& other = seeds[random() % seeds.size()];
    std::size_t const cut = random() % (input.size() + 1);
    if (random() % 2) input.resize(cut);
    input.insert(input.end(), other.begin() + static_cast<long>(random() % (other.size() + 1)), other.end());
    for (auto edits = random() % 4; edits > 0 && !input.empty(); --edits) {
      input[random() % input.size()] = static_cast<std::uint8_t>(random());
    }
    if (input.size() > 400) input.resize(400);
    EXPECT_EQ(check(input), "") << std::string(input.begin(), input.end());
  }
}

INSTANTIATE_TEST_SUITE_P(Targets, Fuzz, testing::ValuesIn(targets),
                         [](auto const& one) { return std::string(one.param.name); });

TEST(FuzzBytes, CarryEveryText) {
  std::mt19937 random(2);
  for (int round = 0; round < 1000; ++round) {
    wstring text;
    for (auto size = random() % 12; size > 0; --size)
      text += static_cast<char16_t>(random() >> random() % 32);
    EXPECT_EQ(toText(toBytes(text)), text);
  }
}

TEST(FuzzBytes, CarryEveryEvent) {
  std::mt19937 random(3);
  for (int round = 0; round < 1000; ++round) {
    BytesT bytes(random() % 40);
    for (auto& byte : bytes) byte = static_cast<std::uint8_t>(random());
    auto const script = toEvents(bytes.data(), bytes.size());
    BytesT const again = fromEvents(script);
    EXPECT_EQ(field::writeEventScript(toEvents(again.data(), again.size())), field::writeEventScript(script));
  }
}

}  // namespace
}  // namespace zolt::fuzz
