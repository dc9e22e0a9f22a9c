// Matrices, determinants and cases: what they are read as and how they are edited.

#include <gtest/gtest.h>

#include <algorithm>
#include <random>

#include "tests/formula/formula_support.h"
#include "tests/support/stage.h"
#include "zolt/catalogue_extended/extended_operators.h"
#include "zolt/exchange/plain_text.h"
#include "zolt/field/caret_speech.h"
#include "zolt/field/detail/cell_html.h"
#include "zolt/ved/tree/detail/row_index.h"
#include "zolt/ved/ved.h"

namespace zolt::tests {
namespace {

using namespace math::ved;
using math::algexpr::AlgebraicExpressionC;

OperatorListC& extendedOperators() {
  static OperatorListC& operators = []() -> OperatorListC& {
    catalogue_extended::registerExtendedOperators(standardOperators());
    return standardOperators();
  }();
  return operators;
}

// A case is an expression, which comes back through tree, bytes and notation, and its tree; or a tree, a
// script and what the script makes of it, which undo takes back.
using oss::wstring;

void playCases() {
  extendedOperators();
  for (CaseS const& one : readCases(ZOLT_TEST_DATA "/tables.cases")) {
    SCOPED_TRACE(one.where);
    std::size_t const script = one.input.find(" :: ");
    if (script == std::string::npos) {
      auto const expression = AlgebraicExpressionC::fromPrefixString(fromUtf8(one.input));
      StageC stage;
      ASSERT_TRUE(stage.refField().setExpression(expression));
      EXPECT_EQ(stage.tree(), one.expected);
      EXPECT_EQ(stage.prefix(), one.input);
      EXPECT_EQ(stage.findFault(), "");
      StageC pasted;
      EXPECT_TRUE(pasted.refField().paste(stage.refField().copy()) == field::PASTE_DONE);
      EXPECT_EQ(pasted.tree(), one.expected);
      wstring const text = exchange::toPlainText(*expression);
      auto const read = exchange::fromPlainText(text, nullptr);
      EXPECT_TRUE(read && read->equals(*expression)) << toUtf8(text);
      StageC exported, imported;
      exported.play("set decimal-comma on");
      imported.play("set decimal-comma on");
      exported.refField().setExpression(expression);
      exported.refField().run(field::COMMAND_SELECT_ALL);
      field::ClipboardContentS plain;
      plain.plainText = exported.refField().copy().plainText;
      EXPECT_TRUE(imported.refField().paste(plain) == field::PASTE_DONE);
      EXPECT_EQ(imported.tree(), one.expected) << toUtf8(plain.plainText);
      continue;
    }
    StageC stage(one.input.substr(0, script));
    std::string const before = stage.tree();
    stage.play(one.input.substr(script + 4));
    EXPECT_EQ(stage.notation(), one.expected);
    EXPECT_EQ(stage.findFault(), "");
    std::string const after = stage.tree();
    while (stage.tree() != before && stage.refField().run(field::COMMAND_UNDO)) {
    }
    EXPECT_EQ(stage.tree(), before);
    while (stage.refField().run(field::COMMAND_REDO)) {
    }
    EXPECT_EQ(stage.tree(), after);
  }
}

// Plain text and the expression that it is read as; "error" where it is refused.
TEST(Tables, AreReadFromPlainText) {
  extendedOperators();
  for (auto const& [text, prefix] : std::vector<std::pair<std::string, std::string>>{
           {"[a,b;c,d]", "matrix(list(a,b),list(c,d))"},
           {"2[1;-x]^2", "*(2,^(matrix(list(1),list(_neg(x))),2))"},
           {"[a,b,c;]+[1;2;]", "+(matrix(list(a,b,c)),matrix(list(1),list(2)))"},
           {"[[1;2],f(x,y);g(a;b)]", "error"},
           {"[a;b", "error"},
           {"(a;b)", "error"},
           {"[;a]", "error"},
           {"f(a;b)", "error"},
           {"det(a,b;c,d)", "det(list(a,b),list(c,d))"},
           {"det(A)", "det(A)"},
           {"cases(x,x>=0;-x,x<0)", "cases(list(x,>=(x,0)),list(_neg(x),<(x,0)))"},
           {"matrix(a,b;c)", "matrix(list(a,b),list(c))"},
           {"[a+b]c", "*(+(a,b),c)"}}) {
    auto const read = exchange::fromPlainText(fromUtf8(text), nullptr);
    EXPECT_EQ(read ? toUtf8(read->toPrefixString()) : "error", prefix) << text;
  }
}

TEST(Tables, SayWhichCellTheCaretIsIn) {
  extendedOperators();
  for (auto const& [tree, script, heard] : std::vector<std::tuple<std::string, std::string, std::string>>{
           {"[\"\", matrix 3<[\"a\"] ; [\"\"] ; [\"c\"] ; [\"d\u2038\"] ; [\"\"] ; [\"e\"]>, \"\"]",
            "command next-slot", "empty cell, row 2, column 2"},
           {"[\"\", cases<[\"a\"] ; [\"b\"] ; [\"c\"] ; [\"d\u2038\"]>, \"\"]", "command previous-slot",
            "into the value, row 2"}}) {
    StageC stage(tree);
    field::CaretSpeechC speech(exchange::SpeechStyleS{});
    speech.listen(stage.refView());
    stage.play(script);
    EXPECT_EQ(toUtf8(speech.tellMove(stage.refView()).said), heard);
  }
}

// A page and the cells of its first table, with "|" for tabs.
TEST(Tables, AreReadFromHtml) {
  for (auto const& [html, cells] : std::vector<std::pair<std::string, std::string>>{
           {"<p>x</p><TABLE border=1><tr><th>a<th> b &lt;\n "
            "c</tr><tr><td>x<sup>2</sup></td><td>&#x3C0;&nbsp;</td>"
            "</table><table><tr><td>1</td><td>2</td></tr></table>",
            "a|b < c\nx^(2)|\u03C0"},
           {"<table><tr><td rowspan=2>1<td colspan=\"2\">2<tr><td>3<td>4<tr><td>5</table>",
            "1|2|\n|3|4\n5||"},
           {"<table><tr><td>1<table><tr><td>2</table>3<style>td{}</style><td><!-- <td> -->&amp;&x;4",
            "1 2 3|&&x;4"},
           {"<table><tr><td>alone</td></tr></table>", ""},
           {"<table><tr><td colspan=101>1<tr><td>2</table>", ""},
           {"<table><TR><TD height=17 title='a>b' SDVAL=\"1234.5\" sdnum='1033;'>1.234,50<td x:num>2"
            "<tr><td sdval=\"1E+20\">1E+20</td><td align=left><br></td></tr></table>",
            "1234.5|2\n1e+20|"},
           {"a<b & c", ""}}) {
    wstring read = field::detail::cellsFromHtml(fromUtf8(html));
    std::replace(read.begin(), read.end(), u'\t', u'|');
    EXPECT_EQ(toUtf8(read), cells) << html;
  }
  wstring const text = u"a<b\tc & d\n\"e\"\t";
  EXPECT_EQ(toUtf8(field::detail::cellsFromHtml(field::detail::cellsToHtml(text))),
            toUtf8(u"a<b\tc & d\ne\t"));
  EXPECT_EQ(field::detail::cellsToHtml(u"a+b"), u"");
  EXPECT_EQ(toUtf8(field::detail::cellsFromHtml(u"<table><tr><td>\"e\"<tr><td>x</table>")),
            toUtf8(u"\"\"\"e\"\"\"\nx"));

  // A single column is a table where it was one.
  extendedOperators();
  StageC stage;
  field::ClipboardContentS column;
  column.plainText = u"1,50\nx";
  column.html = u"<table><tr><td sdval=\"1.5\">1,50</td></tr><tr><td>x</td></tr></table>";
  EXPECT_EQ(stage.refField().paste(column), field::PASTE_DONE);
  EXPECT_EQ(stage.prefix(), "matrix(list(1.5),list(x))");

  // Words with tabs are worth more than a page with what is shown of them.
  StageC other;
  field::ClipboardContentS words;
  words.plainText = u"1/2\tx";
  words.html = u"<table><tr><td>0.5</td><td>x</td></tr></table>";
  EXPECT_EQ(other.refField().paste(words), field::PASTE_DONE);
  EXPECT_EQ(other.prefix(), "matrix(list(/(1,2),x))");
}

TEST(Tables, AreShownAndEdited) { playCases(); }

TEST(Tables, TakeNoMoreCellsThanTheyMayHave) {
  extendedOperators();
  wstring const wide = wstring(math::ved::limits::max_table_columns, u'\t') + u"1";
  // In the second column there is no room for as many.
  for (bool const isInside : {false, true}) {
    StageC stage(isInside ? "[\"\", matrix<[\"a\"] ; [\"b\u2038\"]>, \"\"]" : "[\"a\u2038\"]");
    std::string const before = stage.tree();
    field::ClipboardContentS content;
    content.plainText = wide;
    math::common::ReadErrorS error;
    EXPECT_EQ(stage.refField().paste(content, &error), field::PASTE_REFUSED);
    EXPECT_EQ(error.cause, math::common::READ_ERROR_TABLE_SIZE);
    content.plainText.erase(0, 1);
    EXPECT_EQ(stage.refField().paste(content), isInside ? field::PASTE_REFUSED : field::PASTE_DONE);
    EXPECT_EQ(stage.tree() == before, isInside);
  }
}

// Small tables then keep their rows as stretches, as large ones do.
TEST(Tables, AreEditedAlikeWhenTheyAreLarge) {
  if (!RowIndexC::setLeastLength(4)) GTEST_SKIP() << "this build has stretches of one length";
  playCases();
  static_cast<void>(RowIndexC::setLeastLength(0));
}

// A pointer finds the same place whether all cells are looked at or only those within reach, and a part of
// the picture has the same calls.
TEST(Tables, AreFoundAndDrawnAlikeWhenTheyAreLarge) {
  extendedOperators();
  std::string found[2], drawn[2];
  for (std::size_t const large : {std::size_t{0}, std::size_t{1}}) {
    if (!RowIndexC::setLeastLength(large > 0 ? 4 : 1000))
      GTEST_SKIP() << "this build has stretches of one length";
    StageC stage;
    stage.play("op matrix:60x3 type \"1/2\" command next-row command next-row type \"abcdefgh\"");
    for (long y = -500; y < 1600; y += 97) {
      for (long x = -450; x < 700; x += 89) {
        stage.refField().pressPointer(x, y);
        stage.refField().releasePointer();
        PlacePathS const path = pathOf(stage.refField().crefView().getSelection().caret);
        for (unsigned long const step : path.path) found[large] += std::to_string(step) + '/';
        found[large] += std::to_string(path.pos) + ' ';
      }
      drawn[large] += std::to_string(countDrawingCalls(stage.crefRoot(), {40, y, 60, y + 90})) + ' ';
    }
  }
  EXPECT_EQ(found[0], found[1]);
  EXPECT_EQ(drawn[0], drawn[1]);
  static_cast<void>(RowIndexC::setLeastLength(0));
}

// Whatever is done to a table leaves a sound tree and layout, and undo takes it back.
TEST(Tables, StaySoundWhateverIsDone) {
  extendedOperators();
  std::minstd_rand random(7);
  auto const any = [&](unsigned long count) { return static_cast<unsigned long>(random() % count); };
  for (unsigned long session = 0; session < 60; ++session) {
    static_cast<void>(RowIndexC::setLeastLength(session % 2 == 0 ? 4 : 0));
    StageC stage(
        session % 3 == 0
            ? "[\"\", cases<[\"a\"] ; [\"b\"] ; [\"\"] ; [\"c\u2038\"]>, \"\"]"
            : "[\"\", matrix 3<[\"a\"] ; [\"b\u2038\"] ; [\"\"] ; [\"c\"] ; [\"d\"] ; [\"\"]>, \"\"]");
    std::string const start = stage.tree();
    std::string done;
    for (int step = 0; step < 60; ++step) {
      wstring const signs = u"x1,;)/+^(2";
      switch (any(4)) {
        case 0:
          stage.refField().typeCharacter(signs[any(signs.size())]);
          break;
        case 1:
          stage.refField().pressPointer(static_cast<long>(any(80)), static_cast<long>(any(50)));
          stage.refField().movePointer(static_cast<long>(any(80)), static_cast<long>(any(50)));
          stage.refField().releasePointer();
          break;
        default: {
          auto const command = static_cast<field::CommandE>(any(field::COMMAND_COUNT));
          bool const clears = command == field::COMMAND_CLEAR || command == field::COMMAND_UNDO;
          if (!clears) stage.refField().run(command);
          done += toUtf8(field::commands()[command].name) + ' ';
        }
      }
      ASSERT_EQ(stage.findFault(), "") << done;
    }
    while (stage.tree() != start && stage.refField().run(field::COMMAND_UNDO)) {
    }
    EXPECT_EQ(stage.tree(), start) << done;
  }
  static_cast<void>(RowIndexC::setLeastLength(0));
}

}  // namespace
}  // namespace zolt::tests
