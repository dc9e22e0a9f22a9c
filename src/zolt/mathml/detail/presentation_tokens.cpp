#include <algorithm>

#include "zolt/common/decimal_text.h"
#include "zolt/common/signs.h"
#include "zolt/exchange/latex.h"
#include "zolt/mathml/detail/presentation_reader.h"
#include "zolt/mathml/detail/presentation_table.h"

// Names, numbers and signs.
namespace zolt::mathml::detail {

using namespace math::common;
using TextT = std::u16string_view;

namespace {

bool isWord(TextT text) {
  auto const isPart = [](char16_t c) { return isAsciiLetter(c) || isDigit(c); };
  return text.size() > 1 && isAsciiLetter(text[0]) && std::all_of(text.begin(), text.end(), isPart);
}

bool isSpaceInNumber(char16_t c) { return c == u' ' || c == u'\u2009' || c == u'\u202F' || c == u'\u2006'; }

/// Whether the comma or space at `place` is followed by three digits and no more.
bool startsGroup(TextT number, std::size_t place) {
  std::size_t digits = 0;
  while (place + 1 + digits < number.size() && isDigit(number[place + 1 + digits])) ++digits;
  return digits == 3;
}

}  // namespace

wstring PresentationReaderC::letters(MathmlIdT id) const {
  TextT const text = tree_.text(id);
  wstring plain;
  for (std::size_t i = 0; i < text.size();) appendPlainLetter(text, i, plain);
  if (plain.size() == 1 && tree_.attribute(id, u"mathvariant") == u"double-struck") {
    char16_t const sign = findDoubleStruck(plain[0]);
    if (sign != u'\0') plain = sign;
  }
  return plain;
}

void PresentationReaderC::readToken(MathmlIdT id) {
  if (TextT const sign = tree_.attribute(id, u"data-sign"); !sign.empty()) return put(sign, id);
  if (TextT const name = tree_.attribute(id, u"data-name"); !name.empty())
    return put(u"\\operatorname{" + exchange::toLatexText(name) + u'}', id);
  switch (at(id).tag) {
    case MATHML_MN:
      return readNumber(id, letters(id));
    case MATHML_MO:
      return readSign(id, letters(id));
    case MATHML_MI:
      return readIdentifier(id, letters(id));
    default:
      if (!tree_.text(id).empty()) put(exchange::toLatexText(tree_.text(id)), id);
  }
}

void PresentationReaderC::readIdentifier(MathmlIdT id, wstring const& name) {
  if (name.empty()) return;
  if (char16_t const bar = asBar(name); bar != u'\0') return readBar(id, bar);
  if (name.size() == 1) {
    bool const isUpright = tree_.attribute(id, u"mathvariant") == u"normal" && isAsciiLetter(name[0]);
    if (isUpright) return put(u"\\mathrm{" + name + u'}', id);
    return isAsciiLetter(name[0]) ? put(name, id) : readSign(id, name);
  }
  // "dx" after an integral sign or in a fraction is two factors.
  if (name.size() == 2 && name[0] == u'd') {
    MathmlIdT parent = at(id).parent;
    for (int levels = 0; levels < 2 && parent != no_element && isRow(parent); ++levels)
      parent = at(parent).parent;
    bool const inFraction = parent != no_element && at(parent).tag == MATHML_MFRAC;
    if (inIntegral_ || inFraction) return put(name, id);
  }
  if (!findSignCommand(name).empty() || name == u":=") return readSign(id, name);
  if (isWord(name)) {
    // Some write an upright name in a row of its own, which brackets after it do not make a function.
    MathmlIdT const parent = at(id).parent;
    bool const isAlone = at(parent).tag == MATHML_MROW && at(parent).first == id && at(id).next == no_element;
    return put((isAlone ? u"\\mathrm{" : u"\\operatorname{") + name + u'}', id);
  }
  if (countPrimes(name.back()) > 0) {
    // Some write the prime into the name.
    std::size_t const end = name.find_first_of(u"'′″‴’");
    put(isWord(name.substr(0, end)) ? u"\\mathrm{" + name.substr(0, end) + u'}' : name.substr(0, end), id);
    for (std::size_t i = end; i < name.size(); ++i) put(wstring(countPrimes(name[i]), u'\''), id);
    return;
  }
  put(exchange::toLatexText(name), id);
}

void PresentationReaderC::readNumber(MathmlIdT id, wstring const& number) {
  // Between brackets the comma of a number is one of a list.
  bool const isListed = !latex_.empty() && TextT(u"([{").find(latex_.back()) != TextT::npos &&
                        at(id).next != no_element && fenceOf(at(id).next) != u'\0';
  if (isListed && number.find(u',') != wstring::npos) return put(number, id);
  wstring digits;
  for (std::size_t i = 0; i < number.size(); ++i) {
    char16_t const c = number[i];
    if (c == u',') {
      // Nobody can tell whether 1,234 is more than a thousand.
      if (startsGroup(number, i) || number.find(u',', i + 1) != wstring::npos ||
          number.find(u'.') != wstring::npos)
        return fail(id, READ_ERROR_BAD_NUMBER);
      digits += u'.';
    } else if (!isSpaceInNumber(c) || !startsGroup(number, i)) {
      digits += c;
    }
  }
  bool const isNegative = isMinus(digits[0]);
  if (isNegative) put(u"-", id);
  TextT const unsignedPart = TextT(digits).substr(isNegative ? 1 : 0);
  bool const isPlain = std::all_of(unsignedPart.begin(), unsignedPart.end(),
                                   [](char16_t c) { return isDigit(c) || c == u'.'; });
  DecimalTextS parts;
  if (isPlain && !unsignedPart.empty() && unsignedPart.back() != u'.') return put(unsignedPart, id);
  if (readDecimalText(unsignedPart, parts)) return put(exchange::toLatexText(unsignedPart), id);
  if (isPlain || isDigit(unsignedPart.empty() ? u'0' : unsignedPart[0]))
    return fail(id, READ_ERROR_BAD_NUMBER);
  readIdentifier(id, wstring(unsignedPart));
}

namespace {

/// Whether the sign of a condition is an operator, as in the extended catalogue, and not only a bar.
bool knowsConditions() { return bool{exchange::fromLatex(u"a∣b", nullptr)}; }

}  // namespace

void PresentationReaderC::readSign(MathmlIdT id, wstring const& sign) {
  if (sign.empty()) return put(isEmptyFence(id) && needsDelimiter() ? u"." : u"", id);
  if (sign == u"∫") inIntegral_ = true;
  TextT const command = findSignCommand(sign);
  if (char16_t const bar = asBar(sign); bar != u'\0') {
    bool const isSide =
        tree_.attribute(id, u"fence") == u"true" || tree_.hasAttribute(id, u"form") || needsDelimiter();
    // Bars that some write with the sign of a condition do not stretch, or begin their row.
    MathmlIdT const parent = at(id).parent;
    bool const isCondition = sign == u"∣" && knowsConditions() && at(id).tag == MATHML_MO &&
                             !tree_.hasAttribute(id, u"stretchy") && parent != no_element &&
                             tree_.text(at(parent).first) != sign;
    if (isSide || !(sign == u"∥" || isCondition)) return readBar(id, bar);
  }
  if (!command.empty()) return put(command, id);
  if (std::size_t const primes = countPrimesOf(id); primes > 0) return laterPrimes(primes, id);
  if (isWord(sign)) {
    // Some write the name of a function as a sign.
    MathmlIdT const next = at(id).next;
    bool const isFunction = next != no_element && tree_.text(next) == u"(" && !isLooseSign(sign);
    MathmlIdT const inside = next != no_element && isRow(next) ? at(next).first : no_element;
    bool const isBeforeRow = inside != no_element && tree_.text(inside) == u"(" && !isLooseSign(sign);
    return put((isFunction || isBeforeRow ? u"\\operatorname{" : u"\\mathrm{") + sign + u'}', id);
  }
  if (sign == u"\\" || sign == u"~") return fail(id, READ_ERROR_BAD_CHARACTER);
  put(sign, id);
}

// After "\left" and "\right" the side is known.
void PresentationReaderC::readBar(MathmlIdT id, char16_t bar) {
  bool const isSingle = bar == u'|';
  TextT const form = tree_.attribute(id, u"form");
  if (needsDelimiter() || (form != u"prefix" && form != u"postfix")) return put(isSingle ? u"|" : u"\\|", id);
  if (form == u"prefix") return put(isSingle ? u"\\lvert" : u"\\lVert", id);
  put(isSingle ? u"\\rvert" : u"\\rVert", id);
}

bool PresentationReaderC::needsDelimiter() const {
  TextT const latex = latex_;
  auto const endsWith = [&](TextT text) {
    return latex.size() >= text.size() && latex.substr(latex.size() - text.size()) == text;
  };
  return endsWith(u"\\left") || endsWith(u"\\right");
}

// Programs that know no words write each letter of an upright one by itself.
std::size_t PresentationReaderC::countUpright(std::vector<MathmlIdT> const& row, std::size_t first) const {
  std::size_t count = 0;
  for (; first + count < row.size(); ++count) {
    MathmlIdT const id = row[first + count];
    // Some set the style of the whole word.
    MathmlIdT const styled = tree_.hasAttribute(id, u"mathvariant") ? id : at(id).parent;
    bool const isUpright = at(id).tag == MATHML_MI && styled != no_element &&
                           tree_.attribute(styled, u"mathvariant") == u"normal";
    TextT const text = isUpright ? tree_.text(id) : TextT();
    if (text.size() != 1 || !isAsciiLetter(text[0])) break;
  }
  return count;
}

void PresentationReaderC::readUprightRun(MathmlIdT id, std::size_t count) {
  wstring word = u"\\mathrm{";
  MathmlIdT const first = id;
  for (; count > 0; id = at(id).next) {
    if (isSpace(id)) continue;
    word += tree_.text(id);
    --count;
  }
  put(word + u'}', first);
}

}  // namespace zolt::mathml::detail
