#include <gtest/gtest.h>

#include <set>

#include "tests/support/stage.h"
#include "zolt/catalogue/standard_operators.h"
#include "zolt/field/palette_model.h"

namespace zolt::tests {
namespace {

using namespace field;

std::vector<PaletteEntryS> allEntries() {
  StageC stage;
  std::vector<PaletteEntryS> entries;
  for (PaletteGroupS const& group : makePalette(stage.refField().crefView())) {
    EXPECT_FALSE(group.title.empty());
    entries.insert(entries.end(), group.entries.begin(), group.entries.end());
  }
  return entries;
}

TEST(Palette, HasEveryStandardOperatorOnce) {
  std::set<wstring> inserted;
  for (PaletteEntryS const& entry : allEntries()) {
    EXPECT_TRUE(inserted.insert(entry.insert).second) << toUtf8(entry.insert);
    EXPECT_FALSE(entry.title.empty() || entry.label.empty()) << toUtf8(entry.insert);
  }
  for (auto const& standard : catalogue::standardOperators()) {
    EXPECT_EQ(inserted.count(standard.name), 1u) << toUtf8(standard.name);
  }
}

TEST(Palette, InsertsWhatItShows) {
  for (PaletteEntryS const& entry : allEntries()) {
    StageC stage;
    EXPECT_TRUE(isEnabled(entry, stage.refField()));
    EXPECT_TRUE(runEntry(entry, stage.refField()));
    EXPECT_EQ(stage.tree(), toUtf8(entry.picture));
    EXPECT_TRUE(stage.play("undo"));
    EXPECT_EQ(stage.tree(), "[\"\"]");
    stage.refField().setEditable(false);
    EXPECT_FALSE(isEnabled(entry, stage.refField()));
    EXPECT_FALSE(runEntry(entry, stage.refField()));
  }
}

}  // namespace
}  // namespace zolt::tests
