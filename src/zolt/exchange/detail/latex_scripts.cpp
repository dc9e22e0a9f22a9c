#include <algorithm>
#include <iterator>

#include "zolt/common/signs.h"
#include "zolt/exchange/detail/latex_lexer.h"
#include "zolt/exchange/detail/latex_names.h"
#include "zolt/exchange/detail/latex_words.h"

// Scripts and environments.
namespace zolt::exchange::detail {

using namespace math::common;

// ---- Environments -----------------------------------------------------------------------------------------

void LatexLexerC::readEnvironment(LatexWordE word) {
  skipBlanks();
  std::size_t const begin = position_;
  if (peek() == opening_brace) position_ = findBraceEnd(text_, begin);
  std::u16string_view const name = text_.substr(begin, position_ - begin);
  if (word == LATEX_WORD_END) {
    set(LATEX_TOKEN_TABLE_END);
    token_.word = name;
    return;
  }
  if (!setMeaning(name)) return setError(READ_ERROR_UNKNOWN_COMMAND);
  if (name == u"{array}" || name == u"{alignedat}") {
    skipRowSpace();
    skipBlanks();
    if (peek() == opening_brace) position_ = findBraceEnd(text_, position_);
  }
}

// After the end of a row: skips a length in brackets.
void LatexLexerC::skipRowSpace() {
  if (peek() == u'*') ++position_;
  skipEmptyBraces();
  std::size_t const before = position_;
  skipBlanks();
  if (peek() == u'[') {
    auto const isPart = [](char16_t c) { return isAsciiLetter(c) || isDigit(c) || c == u'.' || c == u'-'; };
    std::size_t end = 1;
    while (isPart(peek(end))) ++end;
    if (peek(end) == u']') {
      position_ += end + 1;
      return;
    }
  }
  position_ = before;
}

// ---- Parts of names ---------------------------------------------------------------------------------------

// Reads the index and the primes of the name that is the token.
void LatexLexerC::readNameScripts() {
  for (;;) {
    std::size_t const before = position_;
    skipBlanks();
    wstring part;
    if (peek() == u'\'' || peek() == prime_sign) {
      for (; peek() == u'\'' || peek() == prime_sign; ++position_) part += prime_sign;
    } else if (peek() == u'^') {
      ++position_;
      if (!readRaisedPrimes(part)) part.clear();
    } else if (peek() == u'_') {
      ++position_;
      bool const isFirst = token_.text == pi_name || token_.text.find(u'_') == wstring::npos;
      if (isFirst && readIndex(part)) part.insert(0, 1, u'_');
    } else {
      part = readLoweredLatex(text_, position_);
      if (!part.empty()) part.insert(0, 1, u'_');
    }
    if (part.empty()) {
      position_ = before;
      return;
    }
    if (token_.text == pi_name) token_.text = greek_pi;
    token_.text += part;
    token_.name &= LATEX_NAME_CALLS;
    token_.notation = nullptr;
  }
}

bool LatexLexerC::readIndex(wstring& index) {
  std::size_t end = position_;
  if (!readLatexIndex(text_, end, index)) return false;
  position_ = end;
  return true;
}

bool LatexLexerC::readRaisedPrimes(wstring& primes) {
  static constexpr std::u16string_view written = u"\\prime";
  std::size_t const before = position_;
  skipBlanks();
  bool const inBraces = peek() == opening_brace;
  if (inBraces) ++position_;
  for (skipBlanks(); text_.compare(position_, written.size(), written) == 0; skipBlanks()) {
    position_ += written.size();
    primes += prime_sign;
    if (!inBraces) return true;
  }
  if (!primes.empty() && peek() == closing_brace) {
    ++position_;
    return true;
  }
  position_ = before;
  primes.clear();
  return false;
}

char16_t LatexLexerC::readSide() {
  std::size_t const before = position_;
  skipBlanks();
  bool const inBraces = peek() == opening_brace;
  if (inBraces) ++position_;
  skipBlanks();
  char16_t const side = isMinus(peek()) ? u'-' : peek();
  if (side == u'+' || side == u'-') {
    ++position_;
    skipBlanks();
    if (!inBraces || peek() == closing_brace) {
      if (inBraces) ++position_;
      return side;
    }
  }
  position_ = before;
  return u'\0';
}

LatexNotationS const* LatexLexerC::readRaisedSign() {
  std::size_t const before = position_;
  skipBlanks();
  bool const inBraces = peek() == opening_brace;
  if (inBraces) ++position_;
  skipBlanks();
  LatexNotationS const* const sign = findRaisedSign(text_.substr(position_));
  if (sign) {
    position_ += sign->written.size() - std::size(u"^{}") + 1;
    if (!isAsciiLetter(peek()) && !inBraces) return sign;
    skipBlanks();
    if (inBraces && peek() == closing_brace) {
      ++position_;
      return sign;
    }
  }
  position_ = before;
  return nullptr;
}

}  // namespace zolt::exchange::detail
