// The fuzzers' targets without a fuzzer: what they start from, what they once found, damaged copies of both,
// and sessions of a user who does anything.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string_view>

#include "fuzzing/bytes_text.h"
#include "fuzzing/event_bytes.h"
#include "fuzzing/targets.h"
#include "fuzzing/view_session.h"

namespace zolt::fuzz {
namespace {

class Fuzz : public testing::TestWithParam<TargetS> {
 protected:
  static std::string check(BytesT const& input) { return GetParam().check(input.data(), input.size()); }
};

TEST_P(Fuzz, SeedsAndWhatWasFoundAreSound) {
  auto inputs = GetParam().seeds();
  ASSERT_GT(inputs.size(), 100u);
  // Something was found by each of these: a folder that is missing here or there is noticed.
  constexpr std::string_view finders[] = {"clipboard", "engine", "field",  "font", "mathml",
                                          "memory",    "prefix", "script", "sheet"};
  auto const folder = std::filesystem::path(ZOLT_FUZZ_FOLDER "/regressions") / GetParam().name;
  bool const hasFound = std::count(std::begin(finders), std::end(finders), GetParam().name) > 0;
  ASSERT_EQ(std::filesystem::exists(folder), hasFound);
  if (hasFound) {
    for (auto const& entry : std::filesystem::directory_iterator(folder)) {
      std::ifstream in(entry.path(), std::ios::binary);
      inputs.emplace_back(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }
  }
  for (BytesT const& input : inputs) EXPECT_EQ(check(input), "") << std::string(input.begin(), input.end());
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

field::EventScriptT toScript(BytesT const& bytes) { return toEvents(bytes.data(), bytes.size()); }

/// Plays random signs and keys, with other events in between.
BytesT makeEvents(std::mt19937& random, unsigned count) {
  auto const pick = [&](std::size_t bound) { return static_cast<std::uint8_t>(random() % bound); };
  BytesT bytes;
  for (; count > 0; --count) {
    switch (pick(8)) {
      case 0: {
        constexpr std::uint8_t keys[] = {0, 1, 0, 1, 4, 6};  // left, right, delete, backspace
        bytes.insert(bytes.end(), {0x80, static_cast<std::uint8_t>(keys[pick(6)] | (pick(2) << 7U))});
        break;
      }
      case 1:
        bytes.insert(bytes.end(), {0x83, pick(256)});  // an operator
        break;
      case 2:
        for (int i = 0; i < 4; ++i)
          bytes.push_back(static_cast<std::uint8_t>(i ? pick(256) : 0x80 + pick(26)));
        break;
      default:
        bytes.push_back(static_cast<std::uint8_t>("ab12()()^/+-*=, |<>!."[pick(21)]));
    }
  }
  return bytes;
}

TEST(Sessions, KeepWhatViewsAndFieldsPromise) {
  std::mt19937 random(4);
  for (int round = 0; round < 200 && !testing::Test::HasFailure(); ++round) {
    BytesT const events = makeEvents(random, 80);
    EXPECT_EQ(checkEvents(events.data(), events.size()), "");
    EXPECT_EQ(checkField(events.data(), events.size()), "");
  }
}

// Long rows are kept in stretches, which come and go where the session works.
TEST(Sessions, KeepThemInLongRows) {
  field::EventScriptT start(2);
  start[0].word = field::SCRIPT_SHOW;
  start[0].text = u"x";
  for (int i = 0; i < 70; ++i) {
    start[0].text = u"+(+(" + start[0].text + u",/(a,b)),*(^(_quietpos(+(c,sqrt(d))),2),^(y,n)))";
  }
  start[1].word = field::SCRIPT_PEN_DOWN;
  start[1].x = 2000;
  std::mt19937 random(5);
  for (unsigned round = 0; round < 12 && !testing::Test::HasFailure(); ++round) {
    chooseStretches(round);
    ViewSessionC session;
    EXPECT_EQ(session.play(start), "");
    EXPECT_EQ(session.play(toScript(makeEvents(random, 50))), "");
    EXPECT_EQ(session.finish(), "");
  }
}

// A whole text inserted at once gives the same result as when it is typed.
TEST(Sessions, EndAlikeWithWholeTexts) {
  std::mt19937 random(6);
  for (int round = 0; round < 1500 && !testing::Test::HasFailure(); ++round) {
    field::EventScriptT const start = toScript(makeEvents(random, 6));
    field::ScriptStepS text;
    for (auto size = 2 + random() % (round % 4 == 0 ? 60 : 9); size > 0; --size) {
      text.text += u"ab(()) +!/^d,"[random() % 13];
    }
    wstring ends[2];
    for (auto const word : {field::SCRIPT_TYPE, field::SCRIPT_INSERT}) {
      text.word = word;
      ViewSessionC session;
      session.play(start);
      EXPECT_EQ(session.play(text), "");
      ends[word == field::SCRIPT_TYPE] = session.notation();
    }
    EXPECT_EQ(toBytes(ends[0]), toBytes(ends[1])) << toBytes(text.text);
  }
}

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
    EXPECT_EQ(script::writeEventScript(toEvents(again.data(), again.size())),
              script::writeEventScript(script));
  }
}

}  // namespace
}  // namespace zolt::fuzz
