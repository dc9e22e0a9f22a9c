#include "zolt/mathml/detail/presentation_table.h"

#include <algorithm>
#include <iterator>

#include "zolt/common/signs.h"
#include "zolt/oss/code_point.h"

namespace zolt::mathml::detail {

using namespace math::common;
using TextT = std::u16string_view;

namespace {

constexpr AccentS accents[] = {{u"\\overline", u"‾¯ˉ_―─\u0305\u0304", u"conjugate"},
                               {u"\\vec", u"→⃗⟶⇀", u"vector"},
                               {u"\\hat", u"^ˆ\u0302", u"hat"},
                               {u"\\dot", u"˙.\u0307", u"dot"}};

constexpr FenceS fences[] = {{u"(", u")", u'(', u')', {}, u"pmatrix"},
                             {u"[", u"]", u'[', u']', {}, u"bmatrix"},
                             {u"\\{", u"\\}", u'{', u'}', {}, u"Bmatrix"},
                             {u"\\lvert", u"\\rvert", u'|', u'|', u"absolute-value", u"vmatrix"},
                             {u"\\lVert", u"\\rVert", u'‖', u'‖', u"norm", u"Vmatrix"},
                             {u"\\lfloor", u"\\rfloor", u'⌊', u'⌋', u"floor"},
                             {u"\\lceil", u"\\rceil", u'⌈', u'⌉', u"ceiling"}};

struct SignS {
  TextT sign;
  TextT command;
};

// Of two rows with one command, the first one is written.
constexpr SignS signs[] = {{u"∘", u"\\circ"},
                           {u"∞", u"\\infty"},
                           {u"{", u"\\{"},
                           {u"}", u"\\}"},
                           {u"%", u"\\%"},
                           {u"#", u"\\#"},
                           {u"&", u"\\&"},
                           {u"$", u"\\$"},
                           {u"_", u"\\_"},
                           {u"\\", u"\\backslash"},
                           {u"†", u"\\dagger"},
                           {u"⊤", u"\\top"},
                           {u"!=", u"≠"},
                           {u"==", u"="},
                           {u"->", u"→"},
                           {u"=>", u"⇒"},
                           {u"&&", u"∧"},
                           {u"||", u"‖"},
                           {u"⁤", u"+"},
                           {u"∶", u":"},
                           {u"=\u0338", u"≠"},
                           {u"∈\u0338", u"∉"},
                           {u"ⅆ", u"\\mathrm{d}"},
                           {u"ⅅ", u"\\mathrm{d}"},
                           {u"ⅇ", u"e"},
                           {u"ⅈ", u"i"},
                           {u"ℜ", u"\\operatorname{Re}"},
                           {u"ℑ", u"\\operatorname{Im}"},
                           {u"~", u"\\sim"},
                           {u"mod", u"\\bmod"},
                           {u"div", u"\\mathbin{\\mathrm{div}}"},
                           {u"^", u"\\wedge"}};

constexpr TextT loose_signs[] = {u"+", u"-", u"−", u"–",   u"±",  u"∓",  u"=", u"<", u">", u"≤",
                                 u"≥", u"≠", u"⩽", u"⩾",   u":=", u"≔",  u"→", u"∧", u"∨", u"⇒",
                                 u"⇔", u"∈", u"∉", u"⊂",   u"⊆",  u"∪",  u"∩", u"∖", u"≈", u"≡",
                                 u"∝", u"∥", u"⊥", u"and", u"or", u"<=", u">="};

constexpr TextT limit_signs[] = {u"∑", u"∏", u"lim", u"max", u"min", u"sup", u"inf"};

/// The letters of the mathematical alphabets that have another place, in the order of their places.
constexpr TextT apart = u"ℎℬℰℱℋℐℒℳℛℯℊℴℭℌℨ";
constexpr TextT apart_meaning = u"hBEFHILMRegoCHZ";
constexpr TextT greek = u"ΑΒΓΔΕΖΗΘΙΚΛΜΝΞΟΠΡϴΣΤΥΦΧΨΩ∇αβγδεζηθικλμνξοπρςστυφχψω∂ϵϑϰϕϱϖ";
constexpr TextT struck = u"RCNZQPH";
constexpr TextT struck_signs = u"ℝℂℕℤℚℙℍ";

template <class TableT, class TestT>
auto find(TableT const& table, TestT test) {
  auto const* const found = std::find_if(std::begin(table), std::end(table), test);
  return found == std::end(table) ? nullptr : found;
}

template <class TableT>
bool holds(TableT const& table, TextT text) {
  return find(table, [&](TextT entry) { return entry == text; }) != nullptr;
}

}  // namespace

AccentS const* findAccent(TextT command) {
  return find(accents, [&](AccentS const& row) { return row.command == command; });
}

AccentS const* findAccentSign(TextT sign) {
  if (sign.size() != 1) return nullptr;
  return find(accents, [&](AccentS const& row) { return row.signs.find(sign) != TextT::npos; });
}

FenceS const* findFence(TextT delimiter) {
  return find(fences, [&](FenceS const& row) { return row.open == delimiter || row.close == delimiter; });
}

FenceS const* findFenceSign(char16_t sign) {
  return find(fences, [&](FenceS const& row) { return row.openSign == sign || row.closeSign == sign; });
}

FenceS const* findFenceOfTable(TextT environment) {
  return find(fences, [&](FenceS const& row) { return row.environment == environment; });
}

char16_t asBar(TextT text) {
  if (text == u"||") return u'‖';
  if (text.size() != 1) return u'\0';
  if (TextT(u"|∣❘│").find(text) != TextT::npos) return u'|';
  return TextT(u"‖∥").find(text) != TextT::npos ? u'‖' : u'\0';
}

bool isOnlyRoom(std::u16string_view text) {
  return std::all_of(text.begin(), text.end(), [](char16_t c) {
    return c != u'\u2061' && c != u'\u2062' && foldLookAlike(c, LOOK_ALIKE_PASTED) == u' ';
  });
}

bool isPunctuation(TextT text) { return !text.empty() && TextT(u".,;").find(text) != TextT::npos; }

TextT findSignCommand(TextT sign) {
  SignS const* const found = find(signs, [&](SignS const& row) { return row.sign == sign; });
  return found ? found->command : TextT();
}

TextT findCommandSign(TextT command) {
  SignS const* const found = find(signs, [&](SignS const& row) { return row.command == command; });
  return found ? found->sign : TextT();
}

bool takesLimits(TextT sign) { return holds(limit_signs, sign); }
bool isLooseSign(TextT sign) { return holds(loose_signs, sign); }

void appendPlainLetter(TextT text, std::size_t& position, oss::wstring& out) {
  constexpr char32_t latin = 0x1D400, latin_end = 0x1D6A4, greek_begin = 0x1D6A8, greek_end = 0x1D7CA;
  constexpr char32_t digits = 0x1D7CE, digits_end = 0x1D800, dotless = 0x1D6A4;
  constexpr char32_t alphabet = 26, doubled = 6;
  std::size_t const begin = position;
  char32_t const c = oss::readCodePoint(text, position);
  if (c >= latin && c < latin_end) {
    char32_t const place = (c - latin) % (2 * alphabet);
    auto const letter = static_cast<char16_t>(place < alphabet ? u'A' + place : u'a' + place - alphabet);
    char16_t const sign = (c - latin) / (2 * alphabet) == doubled ? findDoubleStruck(letter) : u'\0';
    out += sign != u'\0' ? sign : letter;
  } else if (c >= greek_begin && c < greek_end) {
    out += greek[(c - greek_begin) % greek.size()];
  } else if (c >= digits && c < digits_end) {
    out += static_cast<char16_t>(u'0' + (c - digits) % 10);
  } else if (c == dotless || c == dotless + 1) {
    out += c == dotless ? u'ı' : u'ȷ';
  } else if (c < 0x10000 && apart.find(static_cast<char16_t>(c)) != TextT::npos) {
    out += apart_meaning[apart.find(static_cast<char16_t>(c))];
  } else {
    out += text.substr(begin, position - begin);
  }
}

char16_t findDoubleStruck(char16_t letter) {
  std::size_t const place = struck.find(letter);
  return place == TextT::npos ? u'\0' : struck_signs[place];
}

}  // namespace zolt::mathml::detail
