#include <gtest/gtest.h>

#include <cmath>
#include <random>

#include "tests/surfaces/probe_graphics.h"
#include "zolt/surfaces/typeset/font_size.h"

namespace zolt::surfaces {
namespace {

class TypesetText : public ::testing::Test {
 protected:
  std::vector<PlacedGlyphS> place(oss::wstring const& text, unsigned long depth = 0,
                                  math::ved::TextRoleE role = math::ved::TEXT_STARTS_ROW) const {
    return typesetter->place(text, depth, role)->glyphs;
  }
  /// Space between two neighbours, in thousandths of an em of depth 0.
  int gap(oss::wstring const& text, std::size_t left) const {
    std::vector<PlacedGlyphS> const glyphs = place(text);
    double const units = glyphs[left + 1].x - glyphs[left].x - glyphs[left].width;
    return int(std::lround(units * 1000 / getFontSize(0).em));
  }

  std::string gaps(oss::wstring const& text) const {
    std::string all = std::to_string(gap(text, 0));
    for (std::size_t i = 1; i + 1 < text.size(); ++i) all += ' ' + std::to_string(gap(text, i));
    return all;
  }

  oss::PointerTC<TypesetterC> const typesetter = makeTypesetter();
};

TEST_F(TypesetText, ChoosesFacesByMeaning) {
  oss::wstring const text =
      u"x sin si sinh sine 2sin asin bsin mod x1 log10 3e5 xe5 1.5E\u22123 \u03B1\u0393 \u0960 a-b f' \u00BB "
      u"\u2260 \u0416 sin2x \u03B1b";
  // Each glyph is u upright, i italic, w of a word or f of a fallback.
  std::string faces;
  for (PlacedGlyphS const& glyph : place(text)) {
    EXPECT_EQ(glyph.shape, SHAPE_GLYPH);
    faces += glyph.codePoint == ' '                               ? ' '
             : glyph.face == FACE_MAIN                            ? 'u'
             : glyph.face == FACE_MATH                            ? 'i'
             : glyph.face == typesetter->getFonts().getWordFace() ? 'w'
                                                                  : 'f';
  }
  EXPECT_EQ(faces,
            "i uuu ww uuuu wwww uuuu uuuu wwww uuu iu uuuuu uuu wwu uuuuuu iu i iui iu u uu f wwwuw iw");
  typesetter->addUprightName(u"bsin");
  EXPECT_EQ(place(u"bsin")[0].face, FACE_MAIN);
}

TEST_F(TypesetText, ShowsKeyboardSignsAsPrint) {
  oss::wstring const typed = u"-\u2013*\u2219'\u0960";
  char32_t const shown[] = {0x2212, 0x2212, 0x22C5, 0x22C5, 0x2032, 0x3C0};
  std::vector<PlacedGlyphS> const glyphs = place(typed);
  ASSERT_EQ(glyphs.size(), typed.size());
  for (std::size_t i = 0; i < glyphs.size(); ++i) EXPECT_EQ(glyphs[i].codePoint, shown[i]) << i;
  EXPECT_GT(glyphs[4].rise, 0);
  EXPECT_LT(glyphs[4].em, glyphs[0].em);
  EXPECT_EQ(place(u"\uE123")[0].shape, SHAPE_MISSING);
}

TEST_F(TypesetText, GivesSignsTheirSpace) {
  EXPECT_EQ(gaps(u"a+b"), "222 222");
  EXPECT_EQ(gaps(u"a\u2219b"), "150 150") << "products are closer than sums";
  EXPECT_EQ(gaps(u"a\u2264b"), "278 278");
  EXPECT_EQ(gaps(u"a,-b"), "0 167 0") << "a prefix clings to its operand";
  EXPECT_EQ(gaps(u"a=-b"), "278 278 0");
  EXPECT_EQ(gaps(u"(-2E-3-b"), "0 0 0 0 0 222 222") << "so does the sign of an exponent";
  EXPECT_EQ(gaps(u"a:=b"), "278 0 278") << "one relation in two characters";
  EXPECT_EQ(gaps(u"a<=b"), "278 0 278");
  EXPECT_GT(gap(u"xe-3", 1), 200) << "a name that ends in e is no number";
  // First in a text a minus may be either.
  EXPECT_GT(gap(u"-b", 0), 0);
  EXPECT_LT(gap(u"-b", 0), 222);
  for (oss::wstring const text : {u"-b", u"+b", u"=b", u"\u2219b", u":=b"}) {
    // After an item there is the row's gap, too.
    PlacedGlyphS const sign = place(text, 0, math::ved::TEXT_FOLLOWS_ITEM)[text.size() - 2];
    PlacedGlyphS const first = place(text, 0, math::ved::TEXT_FOLLOWS_ITEM)[0];
    double const left = first.x + double(getFontSize(0).metrics[0]);
    double const right = place(text, 0, math::ved::TEXT_FOLLOWS_ITEM).back().x - sign.x - sign.width;
    EXPECT_NEAR(left, right, 1e-9) << "in the middle";
    EXPECT_GT(left, 1.5);
  }
  EXPECT_LT(place(u"a+b", 1)[1].x, place(u"a+b", 0)[1].x * 0.6) << "tight in exponents";
  // A prefix is close to what is before it, whatever follows its operand.
  EXPECT_EQ(place(u"-b+c")[0].x, place(u"-b")[0].x);
  EXPECT_NEAR(gap(u"-b+c", 1), gap(u"-b+c", 2), 1);
  // A closing bracket leaves no gap after it that a sign would have to make up for.
  EXPECT_EQ(place(u"+b", 0, math::ved::TEXT_FOLLOWS_BRACKET)[0].x,
            place(u"+b", 0, math::ved::TEXT_FOLLOWS_ITEM)[0].x + double(getFontSize(0).metrics[0]) / 2);
}

TEST_F(TypesetText, SetsSignsAlikeWithAndWithoutBlanks) {
  struct {
    oss::wstring blank, tight;
  } const cases[] = {
      {u"a + b = c", u"a+b=c"}, {u"a +  b", u"a+b"}, {u"f, x", u"f,x"}, {u"2 \u2219 x", u"2\u2219x"}};
  for (auto const& [blank, tight] : cases) {
    for (unsigned long depth : {0UL, 1UL}) {
      EXPECT_EQ(typesetter->measure(blank, depth), typesetter->measure(tight, depth));
      EXPECT_EQ(place(blank, depth).back().x, place(tight, depth).back().x);
    }
  }
  // After a construct a sign is as far from it, whichever blanks are typed.
  for (auto const role : {math::ved::TEXT_FOLLOWS_ITEM, math::ved::TEXT_FOLLOWS_BRACKET}) {
    EXPECT_EQ(place(u" = x", 0, role)[1].x, place(u"=x", 0, role)[0].x);
    EXPECT_EQ(place(u"x = ", 0, role)[2].x, place(u"x=", 0, role)[1].x);
  }
  EXPECT_GT(gap(u"= =", 1), 0) << "not one relation";
}

TEST_F(TypesetText, LowersIndices) {
  for (oss::wstring const text : {u"x_1", u"x_max", u"x\u2081", u"ab_i", u"f'_1", u"x_\xD835\xDC65"}) {
    std::size_t const base = text.find_first_of(u"_\u2081");
    std::vector<PlacedGlyphS> const glyphs = place(text);
    ASSERT_GT(glyphs.size(), base);
    EXPECT_LT(glyphs[base].rise, 0);
    EXPECT_LT(glyphs[base].em, glyphs[0].em);
    EXPECT_NE(glyphs[base].codePoint, U'_');
    // The caret is before the index, on either side of the underscore that is not shown.
    EXPECT_GT(glyphs[base].x, double(typesetter->measure(text.substr(0, base), 0)) - 0.5);
    std::size_t const before = base + (text[base] == u'_' ? 1 : 0);
    EXPECT_GT(glyphs[base].x + glyphs[base].width / 2,
              double(typesetter->measure(text.substr(0, before), 0)));
  }
  for (oss::wstring const name : {u"x_1", u"2x_max", u"x\u2081"}) {
    long const base = typesetter->measure(name.substr(0, name.find_first_of(u"_\u2081")), 0);
    EXPECT_LE(std::abs(typesetter->measureIndex(name, 0) - (typesetter->measure(name, 0) - base)), 1);
  }
  for (oss::wstring const name : {u"x", u"x_", u"x_1\u2032", u"x_1+y"})
    EXPECT_EQ(typesetter->measureIndex(name, 0), 0);
  EXPECT_EQ(place(u"x_max")[1].face, FACE_MAIN);
  EXPECT_EQ(place(u"x_1_2")[2].codePoint, U'_');
  for (oss::wstring const text : {u"x_", u"x_+1", u"_x", u"1_x"}) {
    EXPECT_EQ(place(text)[text.find(u'_')].codePoint, U'_') << "no index, or no base";
  }
  EXPECT_GT(gap(u"x_+1", 1), 200);
}

/// Every width must be that of a beginning plus something, or carets would run backwards.
TEST_F(TypesetText, WidthsOfBeginningsAddUp) {
  std::vector<oss::wstring> texts = {
      u"arcsinh(x)+max-min",        u"fififi",           u"sinsi",        u"1.5E-3e", u"::=<=>=<>",
      u"\xD835\xDC65\xD835x\xDC65", u"f''+\u0960\u25CF", u"\u0301e\u0301"};
  constexpr char16_t alphabet[] =
      u"abcdefilmnosxtpg0123456789.,+-*/=<>:()!' "
      u"E\u2212\u2219\u2260\u03B1\u0393\u0416\u4E2D\u25CF\u0960\xD835\xDC65_";
  std::mt19937 random(7);
  for (int i = 0; i < 3000; ++i) {
    oss::wstring text;
    for (auto n = random() % 24; n > 0; --n) text += alphabet[random() % (std::size(alphabet) - 1)];
    texts.push_back(text);
  }
  for (std::size_t i = 0; i < texts.size(); ++i) {
    oss::wstring const& text = texts[i];
    typesetter->setNumberLook(i % 2 == 0 ? NUMBERS_AS_TYPED : NUMBERS_WITH_POWERS);
    for (unsigned long depth = 0; depth < 4; ++depth) {
      long before = 0;
      for (std::size_t length = 0; length <= text.size(); ++length) {
        long const width = typesetter->measure(text.substr(0, length), depth);
        ASSERT_GE(width, before);
        ASSERT_LE(width - before, 2 * getFontSize(depth).em) << "one character";
        before = width;
      }
      for (PlacedGlyphS const& glyph : place(text, depth)) {
        ASSERT_GT(glyph.x, -1e-9) << "the text starts a group";
        ASSERT_LT(glyph.x, double(before) + 0.5 + getFontSize(depth).em * 0.3);
      }
    }
  }
}

TEST_F(TypesetText, ShowsExponentsAsPowersOfTen) {
  auto const shown = [&](oss::wstring const& text) {
    std::string all;
    for (PlacedGlyphS const& glyph : place(text)) {
      all += glyph.codePoint == 0x22C5 ? '*' : glyph.codePoint == 0x2212 ? '-' : char(glyph.codePoint);
      if (glyph.rise > 0) all += '^';
    }
    return all;
  };
  EXPECT_EQ(shown(u"6.02e23+1"), "6.02e23+1");
  typesetter->setNumberLook(NUMBERS_WITH_POWERS);
  EXPECT_EQ(shown(u"6.02e23+1"), "6.02*102^3^+1");
  EXPECT_EQ(shown(u"a-3E-4b"), "a-3*10-^4^b");
  EXPECT_EQ(shown(u"2e-x+xe3"), "2e-x+xe3") << "no number with an exponent";
  EXPECT_EQ(shown(u"2e3+4E5"), "2*103^+4*105^");
  for (oss::wstring const text : {u"2e3", u"2e3+4E\u22125"}) {
    double end = 0;
    for (PlacedGlyphS const& glyph : place(text)) {
      EXPECT_GE(glyph.x, end - 0.1) << glyph.codePoint;
      end = glyph.x + glyph.width;
    }
    EXPECT_NEAR(end, double(typesetter->measure(text, 0)), 1);
  }
}

/// Each letter's middle lies between the caret places before and after it.
TEST_F(TypesetText, CaretsStandBetweenLetters) {
  for (oss::wstring const text :
       {u"sin", u"cosh", u"arctan", u"limit", u"xyz", u"12+34", u"a\u2264b", u"exp", u"max", u"x1y2"}) {
    std::vector<PlacedGlyphS> const glyphs = place(text);
    ASSERT_EQ(glyphs.size(), text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
      double const middle = glyphs[i].x + glyphs[i].width / 2;
      EXPECT_GT(middle, double(typesetter->measure(text.substr(0, i), 0)) - 0.5) << i;
      EXPECT_LT(middle, double(typesetter->measure(text.substr(0, i + 1), 0)) + 0.5) << i;
    }
  }
}

TEST_F(TypesetText, TakesAnyCharacter) {
  for (unsigned c = 0; c <= 0xFFFF; ++c) {
    oss::wstring const text(1, char16_t(c));
    long const width = typesetter->measure(text, 0);
    ASSERT_GE(width, 0) << c;
    ASSERT_LE(width, 60) << c;
    ASSERT_LE(place(text).size(), 2u) << c;
    ASSERT_GE(typesetter->measure(u"a" + text + u"b", 1), width / 2) << c;
  }
  EXPECT_EQ(place(u"\xD835\xDC65").size(), 1u);
  EXPECT_EQ(place(u"\xD835\xDC65")[0].codePoint, 0x1D465u);
  EXPECT_EQ(place(u"\xDC65\xD835").size(), 2u);
}

TEST(FontSet, ExplainsWhatIsMissing) {
  std::string error;
  EXPECT_FALSE(FontSetC::load({"/nowhere", "/neither"}, error));
  EXPECT_NE(error.find("KaTeX_Main-Regular.ttf"), std::string::npos) << error;
  EXPECT_NE(error.find("/nowhere"), std::string::npos) << error;
  EXPECT_NE(error.find("ZOLT_FONT_DIR"), std::string::npos) << error;
  error.clear();
  EXPECT_FALSE(FontSetC::fromMemory({{"one", ""}}, error));
  EXPECT_NE(error, "");
  EXPECT_FALSE(FontSetC::fromMemory({{"one", "no font"}, {"two", "none either"}}, error));
  EXPECT_NE(error.find("one"), std::string::npos) << error;
}

// The texts that were painted last are kept.
TEST_F(TypesetText, WhatIsKeptFollowsTheLook) {
  unsigned const word = place(u"zsin")[0].face;
  typesetter->addUprightName(u"zsin");
  EXPECT_NE(place(u"zsin")[0].face, word);
  std::size_t const typed = place(u"2e3").size();
  typesetter->setNumberLook(NUMBERS_WITH_POWERS);
  EXPECT_NE(place(u"2e3").size(), typed);
  EXPECT_NE(place(u"+x", 0, math::ved::TEXT_FOLLOWS_ITEM)[0].x, place(u"+x")[0].x);
  EXPECT_LT(place(u"+x", 1)[1].em, place(u"+x")[1].em);
  // Others take their places in time.
  for (char16_t c = 0; c < 5000; ++c) {
    oss::wstring const name{u'x', char16_t(u'a' + c % 26), char16_t(u'a' + c / 26 % 26),
                            char16_t(u'A' + c / 676)};
    ASSERT_EQ(place(name).back().codePoint, char32_t(name.back()));
  }
  EXPECT_EQ(place(oss::wstring(100, u'b')).size(), 100u);
}

}  // namespace
}  // namespace zolt::surfaces
