#include <algorithm>
#include <iterator>

#include "zolt/common/decimal_text.h"
#include "zolt/common/signs.h"
#include "zolt/exchange/detail/latex_names.h"
#include "zolt/exchange/detail/latex_notation.h"
#include "zolt/exchange/latex.h"

// How names and numbers are written.
namespace zolt::exchange::detail {

using namespace math::common;
using TextT = std::u16string_view;

bool isPrefixLetter(TextT name) {
  TextT const command = findLetterCommand(name);
  return !command.empty() && findLatexReading(u"\\" + wstring(command), LATEX_PREFIX);
}

namespace {

/// A name as its letter or word, its index and its primes.
struct PartsS {
  TextT base;
  TextT index;
  std::size_t primes = 0;
};

bool cutName(TextT name, PartsS& parts) {
  parts.primes = name.size() - std::min(name.size(), name.find_last_not_of(prime_sign) + 1);
  name.remove_suffix(parts.primes);
  std::size_t const underscore = name.find(u'_');
  parts.base = name.substr(0, underscore);
  if (underscore == TextT::npos) return true;
  parts.index = name.substr(underscore + 1);
  return !parts.index.empty();
}

/// Adds the letters of an index or a word. Returns false when one of them has no form.
bool writeLetters(TextT letters, wstring& written) {
  for (char16_t const& c : letters) {
    bool const isPlain = isAsciiLetter(c) || isDigit(c);
    TextT const command = isPlain ? TextT() : c == u'∞' ? TextT(u"infty") : findLetterCommand({&c, 1});
    if (!isPlain && command.empty()) return false;
    if (isPlain) {
      bool const follows = &c != letters.data() && !isAsciiLetter(*(&c - 1)) && !isDigit(*(&c - 1));
      if (follows) written += u' ';
      written += c;
    } else {
      written += u'\\';
      written += command;
    }
  }
  return true;
}

bool isWord(TextT text) {
  auto const isPart = [](char16_t c) { return isAsciiLetter(c) || isDigit(c); };
  return !text.empty() && isAsciiLetter(text[0]) && std::all_of(text.begin(), text.end(), isPart);
}

bool isReserved(TextT word) {
  auto const [first, last] = findLatexReadings(word);
  return first != last;
}

bool writeScripts(PartsS const& parts, wstring& written) {
  constexpr std::size_t word_length = 3;
  bool const isLong =
      parts.index.size() >= word_length && std::all_of(parts.index.begin(), parts.index.end(), isAsciiLetter);
  if (!parts.index.empty()) {
    written += isLong ? u"_{\\mathrm{" : u"_{";
    if (!writeLetters(parts.index, written)) return false;
    written += isLong ? u"}}" : u"}";
  }
  written.append(parts.primes, u'\'');
  return true;
}

bool writeParts(PartsS const& parts, LatexNameS& name) {
  TextT const base = parts.base;
  bool const isLetter = base.size() == 1;
  char16_t const doubled = isLetter ? fromDoubleStruck(base[0]) : u'\0';
  TextT const command = findLetterCommand(base);
  bool const isPi = isLetter && base[0] == greek_pi;
  bool const hasScripts = !parts.index.empty() || parts.primes > 0;
  if (isLetter && isAsciiLetter(base[0])) {
    name.text = base;
    if (function_letters.find(base[0]) != TextT::npos) name.kind = LATEX_NAME_FUNCTION;
  } else if (doubled != u'\0') {
    name.text = wstring(u"\\mathbb{") + doubled + u'}';
  } else if (!command.empty() &&
             (isPi ? hasScripts : isPrefixLetter(base) || !isReserved(u"\\" + wstring(command)))) {
    name.text = u"\\" + wstring(command);
  } else if (isWord(base) && !isReserved(base)) {
    name.text = u"\\mathrm{" + wstring(base) + u'}';
    name.kind = LATEX_NAME_FUNCTION;
  } else {
    return false;
  }
  return writeScripts(parts, name.text);
}

}  // namespace

LatexNameS writeLatexName(TextT name) {
  PartsS parts;
  LatexNameS written;
  if (cutName(name, parts) && writeParts(parts, written)) return written;
  bool const isOperator = isLatexOperatorWord(name);
  return {isOperator ? u"\\mathrm{" + toLatexText(name) + u'}' : toLatexText(name), LATEX_NAME_FUNCTION};
}

LatexNameS writeLatexFunction(TextT name) {
  PartsS parts;
  if (cutName(name, parts)) {
    LatexNameS letter;
    bool const isLetter = parts.base.size() == 1 && function_letters.find(parts.base[0]) != TextT::npos;
    if (isLetter && writeParts(parts, letter)) return letter;
    wstring word = u"\\operatorname{";
    bool const isSimple = isWord(parts.base) || !findLetterCommand(parts.base).empty();
    if (isSimple && parts.base != u"d" && !isReserved(parts.base) && writeLetters(parts.base, word)) {
      word += u'}';
      if (writeScripts(parts, word)) return {word};
    }
  }
  return {u"\\operatorname{" + toLatexText(name) + u'}'};
}

LatexNameS writeLatexNumber(TextT number) {
  std::size_t const e = number.find_first_of(u"eE");
  bool const isPlain = e == TextT::npos;
  TextT const digits = number.substr(0, e);
  if (isPlain && digits.back() != u'.') return {wstring(number)};
  TextT exponent = isPlain ? TextT() : number.substr(e + 1);
  bool const isOther =
      !exponent.empty() && isMinus(exponent[0]) && exponent[0] != u'-' && exponent[0] != minus_sign;
  if (digits.back() == u'.' || isOther) return {toLatexText(number), LATEX_NAME_FUNCTION};
  bool const isLong = exponent[0] == minus_sign;
  if (isLong) exponent.remove_prefix(1);
  wstring written(digits);
  written += u"\\mathrm{";
  written += number[e];
  written += isLong ? u"}{{-}" : u"}{";
  written += exponent;
  return {written + u'}', LATEX_NAME_FUNCTION};
}

}  // namespace zolt::exchange::detail

namespace zolt::exchange {

wstring toLatexText(std::u16string_view text) {
  wstring written = u"\\text{";
  for (char16_t const c : text) {
    auto const* const escape =
        std::find_if(std::begin(detail::latex_escapes), std::end(detail::latex_escapes),
                     [&](detail::LatexEscapeS const& entry) { return entry.meant == c; });
    if (escape != std::end(detail::latex_escapes)) {
      written += escape->written;
    } else {
      written += c;
    }
  }
  return written + u'}';
}

}  // namespace zolt::exchange
