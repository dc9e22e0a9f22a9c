#include "zolt/exchange/detail/latex_names.h"

#include <algorithm>

#include "zolt/common/decimal_text.h"
#include "zolt/common/signs.h"
#include "zolt/exchange/detail/latex_notation.h"
#include "zolt/exchange/detail/latex_words.h"
#include "zolt/exchange/detail/plain_lexer.h"

namespace zolt::exchange::detail {

using namespace math::common;
using TextT = std::u16string_view;

namespace {

constexpr TextT environments[] = {u"equation", u"equation*", u"displaymath", u"math",    u"align",
                                  u"align*",   u"aligned",   u"gather",      u"gather*", u"gathered",
                                  u"split",    u"multline",  u"multline*"};

constexpr TextT lowered_letters = u"ₐₑₒₓₕₖₗₘₙₚₛₜᵢᵣᵤᵥⱼ";
constexpr TextT lowered_meaning = u"aeoxhklmnpstiruvj";

bool isSpace(char16_t c) {
  // The sign between a function and its argument shows that a word is no part of a name.
  return c <= u' ' || (c >= u'\u00A0' && c != u'\u2061' && foldLookAlike(c, LOOK_ALIKE_PASTED) == u' ');
}
bool isMark(char16_t c) { return (c >= u'\u0300' && c <= u'\u036F') || (c >= u'\u20D0' && c <= u'\u20FF'); }
char16_t at(TextT text, std::size_t position) { return position < text.size() ? text[position] : u'\0'; }
bool startsWith(TextT text, std::size_t position, TextT what) {
  return text.compare(position, what.size(), what) == 0;
}

void skipSpaces(TextT text, std::size_t& position) {
  while (position < text.size() && isSpace(text[position])) ++position;
}

TextT readCommand(TextT text, std::size_t& position) {
  std::size_t const begin = position++;
  while (isAsciiLetter(at(text, position))) ++position;
  if (position == begin + 1 && position < text.size()) ++position;
  return text.substr(begin, position - begin);
}

bool cutEnds(TextT& text, std::size_t& position, TextT open, TextT close) {
  if (!startsWith(text, position, open) || text.size() - position < open.size() + close.size()) return false;
  if (text.substr(text.size() - close.size()) != close) return false;
  position += open.size();
  text.remove_suffix(close.size());
  return true;
}

bool cutEnvironment(TextT& text, std::size_t& position) {
  return std::any_of(std::begin(environments), std::end(environments), [&](TextT name) {
    wstring const braced = u"{" + wstring(name) + u"}";
    return cutEnds(text, position, u"\\begin" + braced, u"\\end" + braced);
  });
}

/// Reads one part of an index or a word: a letter, a digit, a Greek letter.
bool readPart(TextT text, std::size_t& position, wstring& word) {
  char16_t const c = at(text, position);
  if (isAsciiLetter(c) || isDigit(c)) {
    word += c;
    ++position;
    return true;
  }
  if (c != u'\\') {
    // The sign of a set is no letter, as its command is none.
    if (fromDoubleStruck(c) != u'\0') return false;
    std::size_t const begin = position;
    position = findLatexLetterEnd(text, begin);
    word += text.substr(begin, position - begin);
    return position > begin;
  }
  TextT const command = readCommand(text, position);
  TextT const letter = command == u"\\pi"      ? TextT(&greek_pi, 1)
                       : command == u"\\infty" ? TextT(u"∞")
                                               : findLatexLetter(command.substr(1));
  word += letter;
  return !letter.empty();
}

}  // namespace

void unwrapLatex(TextT& text, std::size_t& position) {
  bool wrapped = false;
  for (;;) {
    skipSpaces(text, position);
    while (text.size() > position && isSpace(text.back()) && at(text, text.size() - 2) != u'\\')
      text.remove_suffix(1);
    bool const cut = cutEnds(text, position, u"$$", u"$$") || cutEnds(text, position, u"$", u"$") ||
                     cutEnds(text, position, u"\\[", u"\\]") || cutEnds(text, position, u"\\(", u"\\)") ||
                     cutEnvironment(text, position);
    if (!cut) break;
    wrapped = true;
  }
  bool const isPunctuated =
      wrapped && text.size() > position + 1 && TextT(u".,;").find(text.back()) != TextT::npos;
  if (isPunctuated && text[text.size() - 2] != u'\\') text.remove_suffix(1);
}

std::size_t findBraceEnd(TextT text, std::size_t position) {
  int depth = 0;
  for (; position < text.size(); ++position) {
    char16_t const c = text[position];
    if (c == u'\\') ++position;
    if (c == opening_brace) ++depth;
    if (c == closing_brace && --depth <= 0) return position + 1;
  }
  return text.size();
}

void skipLatexLength(TextT text, std::size_t& position) {
  skipSpaces(text, position);
  if (at(text, position) == opening_brace) {
    position = findBraceEnd(text, position);
    return;
  }
  if (at(text, position) == u'-' || at(text, position) == u'+') ++position;
  while (isDigit(at(text, position)) || at(text, position) == u'.') ++position;
  skipSpaces(text, position);
  if (isAsciiLetter(at(text, position)) && isAsciiLetter(at(text, position + 1))) position += 2;
}

std::size_t findLatexLetterEnd(TextT text, std::size_t position) {
  char16_t const c = at(text, position);
  if (c < 0x80) return position;
  bool const isPair =
      c >= 0xD800 && c <= 0xDBFF && at(text, position + 1) >= 0xDC00 && at(text, position + 1) <= 0xDFFF;
  TextT const letter = text.substr(position, isPair ? 2 : 1);
  if (!isBareName(letter) && findLetterCommand(letter).empty()) return position;
  position += letter.size();
  while (isMark(at(text, position))) ++position;
  return position;
}

bool readLatexWord(TextT text, std::size_t& position, wstring& word) {
  for (;;) {
    skipSpaces(text, position);
    if (at(text, position) == closing_brace) {
      ++position;
      return !word.empty();
    }
    std::size_t space = position;
    if (at(text, position) == u'\\' && findLatexWord(readCommand(text, space)) == LATEX_WORD_NOTHING) {
      position = space;
    } else if (!readPart(text, position, word)) {
      return false;
    }
  }
}

bool readStyledLatexWord(TextT text, std::size_t& position, wstring& word) {
  std::size_t end = position;
  LatexWordE const meaning =
      at(text, end) == u'\\' ? findLatexWord(readCommand(text, end)) : LATEX_WORD_UNKNOWN;
  bool const isStyle =
      meaning == LATEX_WORD_NAME || meaning == LATEX_WORD_FUNCTION || meaning == LATEX_WORD_TEXT;
  skipSpaces(text, end);
  if (!isStyle || at(text, end) != opening_brace) return false;
  wstring styled;
  if (!readLatexWord(text, ++end, styled)) return false;
  position = end;
  word += styled;
  return true;
}

bool startsLatexText(TextT text, std::size_t position) {
  skipSpaces(text, position);
  return at(text, position) == u'\\' && readCommand(text, position) == u"\\text";
}

bool readLatexText(TextT text, std::size_t& position, wstring& word, int braces) {
  if (braces > 1) {
    skipSpaces(text, position);
    readCommand(text, position);
    skipSpaces(text, position);
    if (at(text, position) != opening_brace) return false;
    ++position;
  }
  while (at(text, position) == u' ') ++position;
  while (position < text.size() && text[position] != closing_brace) {
    auto const* const escape =
        std::find_if(std::begin(latex_escapes), std::end(latex_escapes),
                     [&](LatexEscapeS const& entry) { return startsWith(text, position, entry.written); });
    char16_t const c = text[position];
    if (escape != std::end(latex_escapes)) {
      word += escape->meant;
      position += escape->written.size();
    } else if (c == u'\\' || c == opening_brace || c == u'$') {
      return false;
    } else {
      word += c == u'~' ? u' ' : c;
      ++position;
    }
  }
  while (!word.empty() && word.back() == u' ') word.pop_back();
  for (; braces > 0; --braces) {
    skipSpaces(text, position);
    if (at(text, position) != closing_brace) return false;
    ++position;
  }
  return true;
}

bool isLatexOperatorWord(TextT word) {
  return findLatexReading(word, LATEX_INFIX) || findLatexReading(word, LATEX_PREFIX);
}

bool readLatexIndex(TextT text, std::size_t& position, wstring& index) {
  skipSpaces(text, position);
  if (at(text, position) != opening_brace)
    return readStyledLatexWord(text, position, index) || readPart(text, position, index);
  ++position;
  for (;;) {
    skipSpaces(text, position);
    if (at(text, position) == closing_brace) {
      ++position;
      return !index.empty();
    }
    if (!readStyledLatexWord(text, position, index) && !readPart(text, position, index)) {
      index.clear();
      return false;
    }
  }
}

wstring readLoweredLatex(TextT text, std::size_t& position) {
  wstring lowered;
  for (;; ++position) {
    char16_t const c = at(text, position);
    std::size_t const letter = c < 0x80 ? TextT::npos : lowered_letters.find(c);
    if (c >= u'₀' && c <= u'₉') {
      lowered += static_cast<char16_t>(u'0' + (c - u'₀'));
    } else if (letter != TextT::npos) {
      lowered += lowered_meaning[letter];
    } else {
      return lowered;
    }
  }
}

void readLatexExponent(TextT text, std::size_t& position, wstring& number) {
  static constexpr TextT begin = u"\\mathrm{";
  static constexpr TextT middle = u"}{";
  std::size_t end = position + begin.size();
  char16_t const letter = at(text, end);
  if ((letter != u'e' && letter != u'E') || !startsWith(text, position, begin)) return;
  if (!startsWith(text, ++end, middle)) return;
  end += middle.size();
  wstring exponent(1, letter);
  // The two kinds of minus that a number may have are told apart by braces.
  if (startsWith(text, end, u"{-}")) {
    exponent += minus_sign;
    end += 3;
  } else if (at(text, end) == u'-' || at(text, end) == u'+') {
    exponent += text[end++];
  }
  for (; isDigit(at(text, end)); ++end) exponent += text[end];
  if (at(text, end) != closing_brace || !isDigit(exponent.back())) return;
  number += exponent;
  position = end + 1;
}

}  // namespace zolt::exchange::detail
