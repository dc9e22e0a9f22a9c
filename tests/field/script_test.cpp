#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <sstream>

#include "tests/support/stage.h"

namespace zolt::tests {
namespace {

using namespace field;
using namespace script;
using math::algexpr::AlgebraicExpressionC;
using math::algexpr::NumberDisplayFormatE;

std::string roundTrip(std::string const& text) { return toUtf8(writeEventScript(toScript(text))); }

TEST(EventScript, ReadsBackAsWritten) {
  // One step a line; ";" and "'" mean a line end and a quotation mark.
  std::string script =
      "char a;char U+0;char U+2038;char ';key 280;key left;key backspace shift;type 'a b';"
      "insert '\\'\\\\\\u0007\\uD835';op sqrt;pen down 10 -5;pen down 0 0 x2;pen down 1 2 x3 shift;"
      "pen down 1 2 shift;pen move -3 4;pen up;command select-all;copy;cut;paste;paste '(a+b)/2';"
      "paste prefix '+(a,b)';paste bytes '01FF';undo;redo;show 'x';show 'x' precision 3;"
      "show '' precision 17 format engineering;show 'x' format fixed;tree '[\\'a‸\\']';"
      "set decimal-comma on;set letters off;lock;unlock;paint;complete;ask;move 0.2.1.0:3;"
      "select 0.0:0 0.4294967295:1;";
  std::replace(script.begin(), script.end(), ';', '\n');
  std::replace(script.begin(), script.end(), '\'', '"');
  EXPECT_EQ(roundTrip(script), script);
}

TEST(EventScript, TakesBlanksLinesAndComments) {
  EXPECT_EQ(roundTrip("# a comment\n\n  char a\tkey  37   shift\r\nundo # char b\nredo"),
            "char a\nkey left shift\nundo\nredo\n");
  EXPECT_EQ(roundTrip(""), "");
  EXPECT_EQ(roundTrip("paste paste \"x\" paste prefix \"y\" pen up"),
            "paste\npaste \"x\"\npaste prefix \"y\"\npen up\n");
  EXPECT_EQ(roundTrip("char # char #"), "char #\nchar #\n");
}

TEST(EventScript, TellsWhatItCannotRead) {
  // The part of each before "|" can be read, so that the fault is after it.
  std::istringstream broken(
      "undo |nothing;|char;|char ab;|char U+G;|key nothing;|type abc;|type 'abc;|type '\\u12';|pen;"
      "|pen side 1 2;|pen down 1;|pen move 1 99999999999;|show 'x' precision;|show 'x' format 1;"
      "|show 'x' precision -1;undo show 'x' format fixed |precision 3;|move 0.0;|move :1;|move 0..0:1;"
      "|move 0.:1;|move 0.0:;|move 0.0:1:2;|move 0.4294967296:1;|select 0.0:1;ask |twice;|op;|set letters;"
      "|set letters maybe;|paste prefix;copy |type");
  for (std::string text; std::getline(broken, text, ';');) {
    std::replace(text.begin(), text.end(), '\'', '"');
    std::size_t const fault = text.find('|');
    text.erase(fault, 1);
    EventScriptT script(1);
    unsigned long position = 99;
    EXPECT_FALSE(readEventScript(fromUtf8(text), script, position)) << text;
    EXPECT_EQ(position, fault) << text;
    EXPECT_EQ(script.size(), 1u);
  }
}

using ActF = std::function<void(FormulaFieldC&)>;

/// What a host may do, in all forms that are written differently.
std::vector<ActF> everyAct() {
  std::vector<ActF> acts;
  for (auto const* const prefix : {u"", u"3.14159", u"+(a,0.000125)"}) {
    for (unsigned long const precision : {0UL, 3UL, std::numeric_limits<unsigned long>::max()}) {
      auto const format = static_cast<NumberDisplayFormatE>(precision % 4);
      acts.push_back([=](FormulaFieldC& field) {
        field.setExpression(AlgebraicExpressionC::fromPrefixString(prefix), precision, format);
      });
    }
  }
  for (auto const* const text : {u"a/b", u"a+", u""}) {
    acts.push_back([=](FormulaFieldC& field) { (void)field.setPlainText(text); });
  }
  acts.push_back([](FormulaFieldC& field) { field.getExpression(); });
  acts.push_back([](FormulaFieldC& field) { field.completeName(); });
  StageC source("[\"⚑x\", P[\"2\"], \"‸\"]");
  bytestring const good = source.refField().copy().bytes;
  for (bytestring const& bytes : {bytestring(), good, good.substr(0, good.size() - 1)}) {
    for (auto const* const prefix : {u"", u"+(", u"/(a,b)"}) {
      for (auto const* const text : {u"", u"/", u"1,5", u"a\n\"\\\xD835\u2028"}) {
        ClipboardContentS const content{bytes, prefix, text};
        acts.push_back([=](FormulaFieldC& field) { field.paste(content); });
        acts.push_back([=](FormulaFieldC& field) {
          oss::PointerTC<ClipboardABC> const clipboard(new MemoryClipboardC);
          clipboard->write(content);
          field.setClipboard(clipboard);
          field.run(COMMAND_PASTE);
        });
      }
    }
  }
  // The steps lead to the places of the formula in turn, and to none.
  auto const placeIn = [](FormulaFieldC const& field, unsigned int number) {
    math::ved::Node4C const* text = field.crefView().crefRoot().child(0)->child(0);
    for (unsigned int step = 0; text && step < number / 2; ++step) text = text->goRightLeaf();
    if (!text || text->getType() != math::ved::NODE4_TEXT) return PlaceS();
    return PlaceS{text, number % 2 ? static_cast<unsigned int>(text->sizeText()) : 0};
  };
  for (unsigned int i = 0; i < 9; ++i) {
    acts.push_back([=](FormulaFieldC& field) { field.moveSelection(placeIn(field, i)); });
    for (unsigned int anchor : {0U, i, 7 - i}) {
      acts.push_back([=](FormulaFieldC& field) {
        field.setSelection({placeIn(field, anchor), placeIn(field, i)});
      });
    }
  }
  for (bool const comma : {false, true}) {
    acts.push_back([=](FormulaFieldC& field) {
      InputOptionsS options;
      options.decimalComma = comma;
      options.letters = !comma;
      field.setOptions(options);
    });
  }
  return acts;
}

TEST(Recording, PlaysToTheSameFormula) {
  InputOptionsS others;
  others.constructs = others.leaving = others.impliedProducts = false;
  others.decimalComma = true;
  std::string const afterwards[] = {
      "type \"q,5\"", "type \"x\" undo undo redo type \"q\"", "undo redo type \"q\"",
      "unlock command shrink-selection key up type \"pi+\"", "cut type \"q\" paste"};
  unsigned turn = 0;
  for (std::string const before :
       {"", "type \"ab\"", "type \"alpha\"", "type \"2alpha\" lock", "type \"(a+*b\"", "type \"2(a+)\"",
        "type \"x+yz\" key left shift", "type \"a/b\" key right type \"+c\" command grow-selection",
        "type \"a/(bc+d)+e\" command grow-selection command grow-selection command home key right shift"}) {
    for (InputOptionsS const& options : {InputOptionsS(), others}) {
      for (ActF const& act : everyAct()) {
        StageC stage;
        stage.refField().setOptions(options);
        stage.refField().setEditable(!before.empty());
        stage.play("type \"z\" command select-all copy undo");  // is nothing that a recording holds
        EventScriptT script;
        stage.refField().record(&script);
        stage.play(before);
        act(stage.refField());
        stage.play(afterwards[turn++ % 5]);
        stage.refField().record(nullptr);

        std::string const text = toUtf8(writeEventScript(script));
        StageC replayed;
        replayed.play(text);
        ASSERT_EQ(replayed.notation(), stage.notation()) << "after " << before << "\n" << text;
        ASSERT_TRUE(listChanges(replayed.refField().getOptions(), stage.refField().getOptions()).empty());
        ASSERT_EQ(replayed.refField().isEditable(), stage.refField().isEditable());
        ASSERT_EQ(roundTrip(text), text);
      }
    }
  }
}

}  // namespace
}  // namespace zolt::tests
