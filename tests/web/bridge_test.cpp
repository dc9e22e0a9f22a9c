#include "hosts/web/bridge/bridge.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <string>
#include <vector>

#include "hosts/web/bridge/font_metrics.h"
#include "zolt/surfaces/typeset/typesetter.h"

namespace {

using namespace zolt::surfaces;

int put(std::u16string_view text) {
  std::copy(text.begin(), text.end(), zolt_text(static_cast<int>(text.size())));
  return static_cast<int>(text.size());
}

std::u16string take(int length) {
  return length < 0 ? u"none" : std::u16string(zolt_text(0), std::size_t(length));
}

std::vector<int> numbers(int count) { return {zolt_numbers(0), zolt_numbers(0) + count}; }

/// What the module keeps for good is made before the tests.
class ModuleEnvironment : public testing::Environment {
  void SetUp() override {
    zolt_start(1);
    zolt_palette();
  }
};
testing::Environment* const environment = testing::AddGlobalTestEnvironment(new ModuleEnvironment);

class BridgeTest : public testing::Test {
 protected:
  BridgeTest() : field(zolt_open()) {}
  ~BridgeTest() override { zolt_close(field); }

  int set(std::u16string_view text, ZoltFormE form = ZOLT_PLAIN) { return zolt_set(field, form, put(text)); }
  std::u16string get(ZoltFormE form = ZOLT_PLAIN) { return take(zolt_get(field, form)); }
  bool type(std::u16string_view text) {
    return std::all_of(text.begin(), text.end(), [&](char16_t c) {
      return zolt_type(field, put({&c, 1})) == 1;
    });
  }
  bool run(std::u16string_view name) { return zolt_run(field, zolt_find_command(put(name))) == 1; }
  int frameWord(int word) { return zolt_frame(field, 0, 0, 0, 0)[word]; }

  int field;
};

TEST_F(BridgeTest, FormsGoInAndOut) {
  EXPECT_EQ(get(), u"");
  EXPECT_EQ(set(u"sqrt(x+1)/2"), 1);
  EXPECT_EQ(get(ZOLT_PREFIX), u"/(sqrt(+(x,1)),2)");
  EXPECT_EQ(get(ZOLT_LATEX), u"\\frac{\\sqrt{x+1}}{2}");
  EXPECT_EQ(get(ZOLT_MATHML).substr(0, 5), u"<math");
  EXPECT_NE(get(ZOLT_WORDS).find(u"square root"), std::u16string::npos);
  EXPECT_EQ(set(u"\\frac{a}{b}", ZOLT_LATEX), 1);
  EXPECT_EQ(get(), u"a/b");
  EXPECT_EQ(set(u"[\"a‸\"]", ZOLT_TREE), 1);
  EXPECT_EQ(get(ZOLT_TREE), u"[\"a‸\"]");
  EXPECT_EQ(set(u" "), 1);
  EXPECT_EQ(get(), u"");
}

// Outlines are kept at the origin and moved to where they are.
TEST_F(BridgeTest, OutlinesAreAlikeWhereverTheyAre) {
  auto const outlines = [&](std::u16string_view text) {
    EXPECT_EQ(set(text), 1);
    std::vector<std::vector<float>> all;
    int const* const words = zolt_frame(field, 0, 0, 0, 0);
    auto const toFloat = [](int word) {
      float value;
      std::memcpy(&value, &word, sizeof value);
      return value;
    };
    for (int i = words[ZOLT_FRAME_LIST]; i < words[ZOLT_FRAME_WORDS];) {
      if (words[i] != ZOLT_ITEM_FILL) {
        i += words[i] == ZOLT_ITEM_GLYPHS ? 5 + 2 * words[i + 4] : 7;
        continue;
      }
      int const end = i + 3 + words[i + 2];
      auto& points = all.emplace_back();
      for (i += 3; i < end;) {
        int const count = words[i] == 2 ? 6 : words[i] == 3 ? 0 : 2;
        for (int k = 1; k <= count; ++k) points.push_back(toFloat(words[i + k]));
        i += 1 + count;
      }
    }
    return all;
  };
  std::u16string many = u"sqrt(x)";
  // More than are kept.
  for (int i = 0; i < 150; ++i) many = u"(" + many + u"/2)^2";
  auto const first = outlines(u"a+sqrt(x)"), high = outlines(many), second = outlines(u"sqrt(x)+sqrt(x)");
  ASSERT_EQ(first.size(), 1u);
  ASSERT_EQ(second.size(), 2u);
  EXPECT_GT(high.size(), 150u);
  for (auto const& moved : second) {
    ASSERT_EQ(moved.size(), first[0].size());
    EXPECT_NE(moved[0], first[0][0]);
    for (std::size_t i = 0; i < moved.size(); ++i)
      EXPECT_EQ(moved[i] - moved[i % 2], first[0][i] - first[0][i % 2]) << i;
    EXPECT_EQ(moved[1], first[0][1]);
  }
}

TEST_F(BridgeTest, AnEqualValueKeepsCaretAndHistory) {
  ASSERT_TRUE(type(u"a+b"));
  int const history = frameWord(ZOLT_FRAME_HISTORY), caret = frameWord(ZOLT_FRAME_CARET);
  EXPECT_EQ(set(u"a + b"), 2);
  EXPECT_EQ(set(u"+(a,b)", ZOLT_PREFIX), 2);
  EXPECT_EQ(frameWord(ZOLT_FRAME_HISTORY), history);
  EXPECT_EQ(frameWord(ZOLT_FRAME_CARET), caret);
  EXPECT_EQ(set(u"a-b"), 1);
  EXPECT_EQ(set(u"a-b"), 2);
  ASSERT_TRUE(run(u"end") && type(u"c"));
  EXPECT_EQ(set(u"a-b"), 1) << "it was edited in between";
}

TEST_F(BridgeTest, RefusalsSayWhy) {
  set(u"x");
  EXPECT_EQ(set(u"1+(2"), 0);
  EXPECT_GT(zolt_text_length(), 0);
  EXPECT_EQ(numbers(3)[ZOLT_ERROR_END], 4);
  EXPECT_EQ(get(), u"x");
  EXPECT_EQ(zolt_set_constraints(field, put(u"number")), -1);
  EXPECT_EQ(set(u"y"), 0);
  EXPECT_EQ(zolt_set_constraints(field, put(u"number nonsense")), 7);
  zolt_set_constraints(field, put(u""));
  ASSERT_TRUE(run(u"end") && type(u"/"));
  EXPECT_EQ(get(), u"none");
  EXPECT_NE(zolt_diagnose(field), 0);
  std::vector<int> const found = numbers(ZOLT_ERROR_NUMBERS);
  EXPECT_LT(found[ZOLT_ERROR_BOX], found[ZOLT_ERROR_BOX + 2]);
}

TEST_F(BridgeTest, AFrameHasAllThatIsPainted) {
  set(u"(a+b)/2");
  run(u"select-all");
  int const* const words = zolt_frame(field, 0, 0, 0, 0);
  EXPECT_EQ(words[ZOLT_FRAME_FLAGS] & ZOLT_FLAG_SELECTED, ZOLT_FLAG_SELECTED);
  EXPECT_EQ(words[ZOLT_FRAME_NUM_BANDS], 1);
  EXPECT_EQ(words[words[ZOLT_FRAME_BANDS] + 2], words[ZOLT_FRAME_WIDTH]);
  int bars = 0, letters = 0;
  for (int at = words[ZOLT_FRAME_LIST]; at < words[ZOLT_FRAME_WORDS];) {
    int const item = words[at];
    if (item == ZOLT_ITEM_GLYPHS)
      letters += words[at + 4], at += 5 + 2 * words[at + 4];
    else if (item == ZOLT_ITEM_RULE)
      ++bars, at += 7;
    else
      FAIL() << item;
  }
  EXPECT_EQ(bars, 1);
  EXPECT_EQ(letters, 4);
  std::u16string sum = u"a";
  for (int i = 0; i < 500; ++i) sum += u"+a";
  set(sum);
  EXPECT_LT(zolt_frame(field, 0, 0, 200, 20)[ZOLT_FRAME_WORDS], 500);
  EXPECT_GT(zolt_frame(field, 0, 0, 0, 0)[ZOLT_FRAME_WORDS], 2000);
}

TEST_F(BridgeTest, ChangesAreWhatAKeyHasChanged) {
  set(u"sqrt(a)+sqrt(b)+sqrt(c)");
  run(u"formula-end");
  EXPECT_EQ(zolt_changes(field, 1, 0), nullptr);
  int const whole = frameWord(ZOLT_FRAME_WORDS), edge = frameWord(ZOLT_FRAME_WIDTH);
  ASSERT_NE(zolt_changes(field, 1, 0), nullptr);
  EXPECT_LE(numbers(2)[0], 0);
  EXPECT_GE(numbers(2)[1], edge);
  EXPECT_EQ(zolt_changes(field, 1, 0), nullptr);
  zolt_frame(field, 0, 0, 0, 0);
  EXPECT_EQ(zolt_changes(field, 1, 0)[ZOLT_FRAME_WORDS], zolt_frame(field, 0, 0, 0, 0)[ZOLT_FRAME_LIST]);
  EXPECT_GT(numbers(2)[0], numbers(2)[1]);
  ASSERT_TRUE(type(u"+x"));
  zolt_frame(field, 0, 0, 0, 0);
  int const* const words = zolt_changes(field, 1, 0);
  EXPECT_LT(words[ZOLT_FRAME_WORDS], whole / 2);
  EXPECT_GT(numbers(2)[0], edge / 2);
  run(u"select-all");
  zolt_frame(field, 0, 0, 0, 0);
  zolt_changes(field, 1, 0);
  EXPECT_LE(numbers(2)[0], 0);
}

TEST_F(BridgeTest, CopiesGoFromFieldToField) {
  set(u"x^2+1");
  run(u"select-all");
  ASSERT_TRUE(run(u"copy"));
  EXPECT_EQ(take(zolt_clipboard_get(ZOLT_PLAIN)), u"x^2+1");
  EXPECT_EQ(take(zolt_clipboard_get(ZOLT_LATEX)), u"x^{2}+1");
  std::u16string const bytes = take(zolt_clipboard_get(ZOLT_BYTES));
  int const other = zolt_open();
  zolt_clipboard_set(0, 0, 0, put(bytes), 0);
  EXPECT_EQ(zolt_paste(other), 1);
  EXPECT_EQ(take(zolt_get(other, ZOLT_PREFIX)), u"+(^(x,2),1)");
  zolt_close(other);
  EXPECT_EQ(zolt_paste(other), 0) << "a closed field takes nothing";
}

TEST_F(BridgeTest, SelectionsAreData) {
  set(u"a/b");
  ASSERT_TRUE(run(u"home") && run(u"right") && run(u"select-end"));
  int const count = zolt_get_selection(field);
  std::vector<int> const places = numbers(count);
  std::u16string const tree = get(ZOLT_TREE);
  ASSERT_TRUE(run(u"drop-selection") && run(u"formula-end"));
  EXPECT_NE(get(ZOLT_TREE), tree);
  std::copy(places.begin(), places.end(), zolt_numbers(count));
  EXPECT_EQ(zolt_set_selection(field, count), 1);
  EXPECT_EQ(get(ZOLT_TREE), tree);
  zolt_numbers(1)[0] = 7;
  EXPECT_EQ(zolt_set_selection(field, 1), 0);
}

TEST_F(BridgeTest, MathmlComesAsElements) {
  int const length = put(u"mathmsupmix mn2");
  std::vector<int> const elements{0, 4, 0, 4, 0, 2, 2, 2, 3, 0, 0, 2, 2, 1, 3, 0, 3, 0, 3, 0};
  std::copy(elements.begin(), elements.end(), zolt_numbers(static_cast<int>(elements.size())));
  EXPECT_EQ(zolt_set_mathml(field, length, static_cast<int>(elements.size())), 1);
  EXPECT_EQ(get(), u"x^2");
  EXPECT_EQ(zolt_set_mathml(field, length, 4), 0);
  EXPECT_EQ(zolt_set_mathml(field, -1, 2'000'000), 0);
}

TEST_F(BridgeTest, TablesForMenusAreWhole) {
  zolt_palette();
  int const groups = numbers(1)[0];
  std::vector<int> const sizes = numbers(groups + 1);
  int all = 0;
  for (int group = 0; group < groups; ++group) {
    all += sizes[std::size_t(group) + 1];
    zolt_clear(field);
    EXPECT_EQ(zolt_run_entry(field, group, 0), 1) << group;
  }
  EXPECT_EQ(zolt_enabled_entries(field), all);
  EXPECT_EQ(zolt_search(put(u"sqrt")), all);
  zolt_clear(field);
  ASSERT_TRUE(type(u"\\sq"));
  std::u16string const list = take(zolt_completion(field));
  EXPECT_EQ(list.substr(0, 3), std::u16string(u"sq\0", 3));
  EXPECT_EQ(zolt_accept(field, 0), 1);
  EXPECT_EQ(frameWord(ZOLT_FRAME_FLAGS) & (ZOLT_FLAG_EMPTY | ZOLT_FLAG_COMPLETES), 0);
}

// The module's measures are those of the files that other hosts read, for all that it has measures of.
TEST(FontMetrics, AreThoseOfTheFiles) {
  std::string error;
  auto const make = [](auto const& fonts) {
    return zolt::oss::PointerTC<TypesetterC>(new TypesetterC(fonts));
  };
  auto const files = make(FontSetC::load(FontSetC::getDefaultFolders(), error));
  auto const module = make(FontSetC::fromMemory(zolt::web::getFontMetrics(), error));
  int compared = 0;
  for (char16_t c = 0x20; c < 0x2B00; ++c) {
    std::u16string const text{u'x', c, u'y'};
    auto const inModule = module->place(text, 0, zolt::math::ved::TEXT_STARTS_ROW);
    auto const inFiles = files->place(text, 0, zolt::math::ved::TEXT_STARTS_ROW);
    auto const &ours = inModule->glyphs, &theirs = inFiles->glyphs;
    bool const has = std::none_of(ours.begin(), ours.end(), [](auto& g) { return g.shape == SHAPE_MISSING; });
    if (!has) continue;
    ++compared;
    ASSERT_EQ(ours.size(), theirs.size()) << std::hex << int(c);
    for (std::size_t i = 0; i < ours.size(); ++i) {
      EXPECT_EQ(ours[i].face, theirs[i].face) << std::hex << int(c);
      EXPECT_EQ(ours[i].x, theirs[i].x) << std::hex << int(c);
      EXPECT_EQ(ours[i].overhang, theirs[i].overhang) << std::hex << int(c);
    }
    EXPECT_EQ(module->measure(text, 1), files->measure(text, 1)) << std::hex << int(c);
  }
  EXPECT_GT(compared, 1100);
}

}  // namespace
