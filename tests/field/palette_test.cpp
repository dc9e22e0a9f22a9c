#include <gtest/gtest.h>

#include <algorithm>
#include <set>

#include "tests/support/stage.h"
#include "zolt/catalogue/standard_operators.h"
#include "zolt/field/palette_model.h"
#include "zolt/ved/operators/operator_list.h"

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

TEST(Palette, HasEveryStandardOperatorOnceAndInsertsWhatItShows) {
  std::set<wstring> inserted;
  for (PaletteEntryS const& entry : allEntries()) {
    SCOPED_TRACE(toUtf8(entry.insert));
    EXPECT_TRUE(inserted.insert(entry.insert).second);
    EXPECT_FALSE(entry.title.empty() || entry.label.empty());
    StageC stage;
    EXPECT_TRUE(isEnabled(entry, stage.refField()) && runEntry(entry, stage.refField()));
    EXPECT_EQ(stage.tree(), toUtf8(entry.picture));
    EXPECT_TRUE(stage.play("undo"));
    EXPECT_EQ(stage.tree(), "[\"\"]");
    stage.refField().setEditable(false);
    EXPECT_FALSE(isEnabled(entry, stage.refField()) || runEntry(entry, stage.refField()));
  }
  for (auto const& standard : catalogue::standardOperators()) {
    EXPECT_EQ(inserted.count(standard.name), 1u) << toUtf8(standard.name);
  }
}

TEST(Palette, FindsEntriesByAllTheirNames) {
  std::vector<PaletteEntryS> const entries = allEntries();
  for (auto const& [wanted, found] : std::vector<std::pair<wstring, wstring>>{{u"inf", u"∞"},
                                                                              {u"∞", u"∞"},
                                                                              {u"Less or equal", u"<="},
                                                                              {u"LEQ", u"<="},
                                                                              {u"!=", u"<>"},
                                                                              {u"->", u":>"},
                                                                              {u"int", u"integral"},
                                                                              {u"sqrt(", u"sqrt"},
                                                                              {u"Gamma", u"Γ"},
                                                                              {u"gam", u"γ"}}) {
    auto const match = [query = wanted](auto const& entry) { return matchSearch(entry, query); };
    auto const best = std::max_element(entries.begin(), entries.end(),
                                       [&](auto const& a, auto const& b) { return match(a) < match(b); });
    EXPECT_EQ(toUtf8(best->insert), toUtf8(found)) << toUtf8(wanted);
  }
}

/// Whether typing makes the operator: the palette's picture, or a tree in which its shape or text is.
bool makes(wstring const& typed, math::ved::OperatorBC const& op, PaletteEntryS const& entry) {
  StageC stage;
  stage.refField().insertText(typed);
  if (stage.tree() == toUtf8(entry.picture)) return true;
  stage.refField().insertText(u" ");  // ends a name
  std::string const shape = op.isConstruct() ? toUtf8(op.getName()) + "<" : toUtf8(op.getText());
  return stage.tree().find(shape) != std::string::npos;
}

TEST(Palette, WhatIsTypedForEveryOperatorMakesIt) {
  for (PaletteEntryS const& entry : allEntries()) {
    StageC stage;
    auto const op = stage.refField().crefView().crefOperatorList().lookup(entry.insert);
    if (!op) continue;  // a Greek letter
    math::ved::OperatorWordsS const& words = op->crefWords();
    std::vector<wstring> typed = words.signRuns;
    typed.push_back(entry.shortcut);
    for (auto const& name : words.names) typed.push_back(name.name + u"(");
    for (char16_t const sign : words.signs) typed.emplace_back(1, sign);
    for (wstring const& text : typed) EXPECT_TRUE(makes(text, *op, entry)) << toUtf8(text);
  }
}

}  // namespace
}  // namespace zolt::tests
