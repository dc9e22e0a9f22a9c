#include <gtest/gtest.h>

#include <set>

#include "tests/field/field_stage.h"
#include "zolt/catalogue/standard_operators.h"
#include "zolt/field/palette_model.h"

namespace zolt::tests {
namespace {

using namespace field;

std::vector<PaletteEntryS> allEntries() {
  FieldStageC stage;
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
    FieldStageC stage;
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

// What the tool tip tells to type gives the same, once what is around it has been typed.
TEST(Palette, ShortcutsDoTheSame) {
  for (PaletteEntryS const& entry : allEntries()) {
    if (entry.shortcut.empty()) continue;
    SCOPED_TRACE(toUtf8(entry.toolTip));
    EXPECT_NE(entry.toolTip.find(entry.shortcut), wstring::npos);
    FieldStageC typed;
    typed.play("char a");
    bool const call = entry.shortcut.back() == u'(';
    bool const name = !call && entry.shortcut.size() > 1 && entry.shortcut[0] >= u'A';
    typed.play("char +");
    for (char16_t const c : entry.shortcut) EXPECT_TRUE(typed.refField().typeCharacter(c));
    std::string const typedTree = typed.tree();
    typed.refField().getExpression();  // ends a name

    FieldStageC inserted;
    inserted.play("type \"a+\"");
    if (entry.insert == u"log") inserted.play("char x key left shift");
    EXPECT_TRUE(runEntry(entry, inserted.refField()));
    std::string expected = inserted.tree();
    if (typedTree.find("AC") != std::string::npos) {
      std::string const closed = "), \"\"]";
      std::size_t const at = expected.rfind(closed);
      ASSERT_NE(at, std::string::npos);
      expected.replace(at, 1, "AC");
    }
    // Words between operands need the blanks that the palette brings.
    std::string const found = typed.tree();
    if (name && found != expected) {
      EXPECT_EQ(expected,
                "[\"a+" + (entry.insert == u"not" ? "" : std::string(" ")) + toUtf8(entry.shortcut) + " \"]");
    } else {
      EXPECT_EQ(found, expected);
    }
  }
}

}  // namespace
}  // namespace zolt::tests
