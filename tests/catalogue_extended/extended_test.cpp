#include <gtest/gtest.h>

#include "tests/support/construct_cases.h"
#include "tests/support/stage.h"
#include "zolt/catalogue_extended/extended_operators.h"
#include "zolt/field/palette_model.h"
#include "zolt/ved/operators/operator.h"

namespace zolt::tests {
namespace {

using namespace math::ved;

class Extended : public testing::Test {
 protected:
  Extended() {
    [[maybe_unused]] static bool const registered =
        (catalogue_extended::registerExtendedOperators(standardOperators()), true);
  }
};

TEST_F(Extended, ConstructsAreShownTypedCopiedAndWritten) {
  checkConstructs(ZOLT_TEST_DATA "/extended.cases");
}

TEST_F(Extended, DrawingsAreTheseLines) {
  for (CaseS const& one : readCases(ZOLT_TEST_DATA "/drawing.cases")) {
    SCOPED_TRACE(one.where);
    StageC stage;
    stage.show(one.input);
    stage.refView().getExpressionSize();
    surfaces::RecordingGraphicsC surface;
    stage.crefRoot().display(surface, 0, 0, nullptr);
    std::string log = surface.getText();
    for (char& c : log) c = c == '\n' ? ';' : c;
    if (!log.empty()) log.pop_back();
    EXPECT_EQ(log, one.expected);
  }
}

TEST_F(Extended, EveryPaletteEntryInsertsWhatItsPictureShows) {
  StageC stage;
  for (OperatorBC const* const op : stage.refView().crefOperatorList().crefInOrder()) {
    OperatorWordsS const& words = op->crefWords();
    EXPECT_EQ(words.group.empty(), words.title.empty()) << toUtf8(op->getName());
  }
  for (auto const& group : field::makePalette(stage.refField().crefView())) {
    if (group.title == u"Matrices") continue;  // some of these need a table to act on
    for (auto const& entry : group.entries) {
      StageC empty;
      EXPECT_TRUE(runEntry(entry, empty.refField())) << toUtf8(entry.title);
      EXPECT_EQ(empty.findFault(), "") << toUtf8(entry.title);
    }
  }
}

TEST_F(Extended, BytesOfUnknownVariantsAreRefused) {
  StageC stage;
  for (char16_t const* tree :
       {u"[\"\", limit x<[\"\"] ; [\"\"] ; [\"\"]>, \"\"]", u"[\"\", interval 2<[\"\"] ; [\"\"]>, \"\"]",
        u"[\"\", index 2<[\"\"] ; [\"\"]>, \"\"]", u"[\"\", norm<[\"\"] ; [\"\"]>, \"\"]"}) {
    EXPECT_FALSE(stage.refField().setNotation(tree)) << toUtf8(tree);
  }
}

}  // namespace
}  // namespace zolt::tests
