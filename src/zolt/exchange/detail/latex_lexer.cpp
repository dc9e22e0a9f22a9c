#include "zolt/exchange/detail/latex_lexer.h"

#include <algorithm>
#include <iterator>

#include "zolt/algexpr/make_node.h"
#include "zolt/common/decimal_text.h"
#include "zolt/common/signs.h"
#include "zolt/exchange/detail/latex_names.h"
#include "zolt/exchange/detail/latex_words.h"
#include "zolt/exchange/detail/plain_lexer.h"

namespace zolt::exchange::detail {

using namespace math::common;

namespace {

constexpr std::u16string_view opening_signs = u"([⌊⌈";
constexpr std::u16string_view closing_signs = u")]⌋⌉";
constexpr char16_t partial_letter = u'\u2202';
constexpr char16_t apply_sign = u'\u2061';
constexpr char16_t invisible_times = u'\u2062';
constexpr char16_t invisible_comma = u'\u2063';

// Most characters are letters and digits, and this is called before each of them.
bool isBlank(char16_t c) {
  if (c == apply_sign || c == invisible_comma) return c == invisible_comma;
  return c == u'~' || ((c <= u' ' || c >= u'\u00A0') && foldLookAlike(c, LOOK_ALIKE_PASTED) == u' ');
}

}  // namespace

LatexLexerC::LatexLexerC(std::u16string_view text) : text_(text) {
  unwrapLatex(text_, position_);
  readNextToken();
}

char16_t LatexLexerC::peek(std::size_t ahead) const {
  return ahead < text_.size() - position_ ? text_[position_ + ahead] : u'\0';
}

LatexTokenS LatexLexerC::peekToken() const {
  LatexLexerC ahead = *this;
  ahead.readNextToken();
  return ahead.token_;
}

bool LatexLexerC::isSignAheadInCell() const {
  LatexLexerC ahead = *this;
  ahead.readNextToken();
  return ahead.token_.type == LATEX_TOKEN_INFIX && ahead.peekToken().type == LATEX_TOKEN_CELL;
}

bool LatexLexerC::isCellAhead() const {
  constexpr std::size_t farthest = 1000;
  LatexLexerC ahead = *this;
  int depth = 0;
  while (ahead.position_ < position_ + farthest) {
    ahead.readNextToken();
    LatexTokenE const type = ahead.token_.type;
    if (type == LATEX_TOKEN_TABLE) ++depth;
    if (type == LATEX_TOKEN_TABLE_END && depth-- == 0) return false;
    if (depth == 0 && type == LATEX_TOKEN_CELL) return true;
    if (type == LATEX_TOKEN_END || type == LATEX_TOKEN_BAD || (depth == 0 && type == LATEX_TOKEN_ROW))
      return false;
  }
  return false;
}

void LatexLexerC::set(LatexTokenE type, std::u16string_view text) {
  token_.type = type;
  token_.text = text;
}

void LatexLexerC::setName(std::u16string_view name, unsigned kind) {
  set(LATEX_TOKEN_NAME, name);
  token_.name = kind;
}

void LatexLexerC::setError(ReadErrorE error) {
  token_.type = LATEX_TOKEN_BAD;
  token_.error = error;
}

void LatexLexerC::skipBlanks() {
  for (;; ++position_) {
    if (peek() == u'%') position_ = std::min(text_.find(u'\n', position_), text_.size());
    if (position_ == text_.size() || !isBlank(peek())) return;
  }
}

void LatexLexerC::readNextToken(LatexTokenLengthE length) {
  do {
    skipBlanks();
    token_.text.clear();
    token_.side = LATEX_SIDE_ANY;
    token_.inBraces = false;
    token_.name = 0;
    token_.notation = nullptr;
    token_.begin = position_;
    skipped_ = false;
    readToken(length);
  } while (skipped_);
  if (token_.type == LATEX_TOKEN_NAME && length == LATEX_TOKEN_WHOLE) readNameScripts();
  token_.end = position_;
}

void LatexLexerC::readToken(LatexTokenLengthE length) {
  char16_t const c = peek();
  if (position_ == text_.size()) return set(LATEX_TOKEN_END);
  if (isDigit(c) || (c == u'.' && isDigit(peek(1)))) return readNumber(length);
  if (c == u'\\') return readCommand();
  if (c == opening_brace) return readBrace();
  if (isAsciiLetter(c)) return readLetter();
  ++position_;
  switch (c) {
    case closing_brace:
      return set(LATEX_TOKEN_BRACE_CLOSE);
    case u'^':
      return set(LATEX_TOKEN_UPPER);
    case u'_':
      return set(LATEX_TOKEN_LOWER);
    case u',':
      return set(LATEX_TOKEN_COMMA);
    case u'&': {
      std::size_t const after = position_;
      skipEmptyBraces();
      token_.inBraces = position_ != after;
      return set(LATEX_TOKEN_CELL);
    }
    case apply_sign:
      return set(LATEX_TOKEN_APPLY);
    case invisible_times:
      return set(LATEX_TOKEN_TIMES);
    default:
      if (!readDelimiter(c)) readSign(c);
  }
}

// ---- Braces and delimiters --------------------------------------------------------------------------------

// A sign alone in braces is the sign; a word in an old style is a name.
void LatexLexerC::readBrace() {
  std::size_t const inside = ++position_;
  skipBlanks();
  LatexWordE const word = peek() == u'\\' ? findLatexWord(readCommandWord()) : LATEX_WORD_UNKNOWN;
  std::size_t end = position_;
  wstring name;
  if (word == LATEX_WORD_NOTHING && readLatexWord(text_, end, name) && !name.empty()) {
    position_ = end;
    if (setNamed(name, LATEX_WORD_NAME)) return;
  }
  position_ = inside;
  skipBlanks();
  char16_t const c = peek();
  if (c != opening_brace && c != closing_brace && !isDigit(c) && !isAsciiLetter(c)) {
    readToken(LATEX_TOKEN_SINGLE);
    bool const isLetter =
        token_.type == LATEX_TOKEN_NAME && token_.notation && token_.notation->kind == LATEX_PREFIX;
    bool const isSign = token_.type == LATEX_TOKEN_INFIX || token_.type == LATEX_TOKEN_PREFIX || isLetter;
    skipBlanks();
    if (!skipped_ && isSign && peek() == closing_brace) {
      ++position_;
      token_.inBraces = true;
      return;
    }
  }
  skipped_ = false;
  position_ = inside;
  set(LATEX_TOKEN_BRACE_OPEN);
}

bool LatexLexerC::readDelimiter(char16_t c) {
  token_.bracket = c;
  if (c == u'|' || c == u'‖') {
    set(LATEX_TOKEN_BAR);
  } else if (opening_signs.find(c) != opening_signs.npos) {
    set(LATEX_TOKEN_OPEN);
  } else if (closing_signs.find(c) != closing_signs.npos) {
    set(LATEX_TOKEN_CLOSE);
  } else {
    return false;
  }
  return true;
}

void LatexLexerC::readSized(LatexWordE word) {
  std::size_t const after = position_;
  skipBlanks();
  char16_t c = peek();
  bool const isBrace = c == opening_brace || c == closing_brace;
  if (c == u'\\') {
    std::u16string_view const command = readCommandWord();
    c = findDelimiter(command);
    token_.side = findDelimiterSide(command);
  } else if (position_ < text_.size()) {
    ++position_;
  }
  bool const isDelimiter = (c == u'.' && (word == LATEX_WORD_LEFT || word == LATEX_WORD_RIGHT)) ||
                           (!isBrace && (c == opening_brace || c == closing_brace)) || readDelimiter(c);
  if (!isDelimiter) {
    if (word == LATEX_WORD_LEFT || word == LATEX_WORD_RIGHT) return setError(READ_ERROR_BAD_CHARACTER);
    position_ = after;
    skipped_ = true;
    return;
  }
  token_.bracket = c;
  bool const isBar = c == u'|' || c == u'‖';
  if (word == LATEX_WORD_LEFT) {
    token_.side = LATEX_SIDE_LEFT;
    if (!isBar) set(LATEX_TOKEN_OPEN);
  } else if (word == LATEX_WORD_RIGHT) {
    token_.side = LATEX_SIDE_RIGHT;
    if (!isBar) set(LATEX_TOKEN_CLOSE);
  } else {
    if (token_.side == LATEX_SIDE_ANY) token_.side = LATEX_SIDE_SIZED;
    if (!isBar && (c == opening_brace || c == closing_brace))
      set(c == opening_brace ? LATEX_TOKEN_OPEN : LATEX_TOKEN_CLOSE);
  }
}

// ---- Commands ---------------------------------------------------------------------------------------------

std::u16string_view LatexLexerC::readCommandWord() {
  std::size_t const begin = position_++;
  if (!isAsciiLetter(peek())) {
    position_ = std::min(position_ + 1, text_.size());
    return text_.substr(begin, position_ - begin);
  }
  while (isAsciiLetter(peek())) ++position_;
  bool const starred = peek() == u'*' && findLatexWord(text_.substr(begin, position_ + 1 - begin)) != 0;
  if (starred) ++position_;
  return text_.substr(begin, position_ - begin);
}

void LatexLexerC::readCommand() {
  std::u16string_view const command = readCommandWord();
  LatexWordE const word = findLatexWord(command);
  switch (word) {
    case LATEX_WORD_NOTHING:
      skipEmptyBraces();
      skipped_ = true;
      return;
    case LATEX_WORD_SKIPPED:
      skipLatexLength(text_, position_);
      skipped_ = true;
      return;
    case LATEX_WORD_SIZE:
    case LATEX_WORD_LEFT:
    case LATEX_WORD_RIGHT:
      return readSized(word);
    case LATEX_WORD_NAME:
    case LATEX_WORD_OPERATOR:
    case LATEX_WORD_FUNCTION:
    case LATEX_WORD_TEXT:
    case LATEX_WORD_DOUBLE_STRUCK:
      return readNamed(word);
    case LATEX_WORD_DELIMITER: {
      char16_t const c = findDelimiter(command);
      token_.side = findDelimiterSide(command);
      if (readDelimiter(c)) return;
      return set(c == opening_brace ? LATEX_TOKEN_OPEN : LATEX_TOKEN_CLOSE);
    }
    case LATEX_WORD_BEGIN:
    case LATEX_WORD_END:
      return readEnvironment(word);
    case LATEX_WORD_ROW:
      skipRowSpace();
      return set(LATEX_TOKEN_ROW);
    case LATEX_WORD_MEANINGLESS:
    case LATEX_WORD_UNKNOWN:
      break;
  }
  if (setMeaning(command)) return;
  std::u16string_view const letter = findLatexLetter(command.substr(1));
  if (!letter.empty()) return setName(letter, letter[0] == partial_letter ? LATEX_NAME_D : 0u);
  std::size_t const after = position_;
  skipBlanks();
  if (command == u"\\not" && peek() == u'=') {
    ++position_;
    setMeaning(u"\\neq");
    return;
  }
  position_ = after;
  setError(word == LATEX_WORD_MEANINGLESS ? READ_ERROR_NO_MEANING : READ_ERROR_UNKNOWN_COMMAND);
}

void LatexLexerC::skipEmptyBraces() {
  std::size_t const after = position_;
  skipBlanks();
  if (peek() == opening_brace) {
    ++position_;
    skipBlanks();
    if (peek() == closing_brace) {
      ++position_;
      return;
    }
  }
  position_ = after;
}

// Sets the token for a command, sign or name of the table. Returns false when it is not there.
bool LatexLexerC::setMeaning(std::u16string_view text) {
  auto const [first, last] = findLatexReadings(text);
  if (first == last) return false;
  // A command with braces may also be a sign between operands, and a function one with an index.
  token_.notation = first->notation;
  token_.word = first->text;
  switch (first->notation->kind) {
    case LATEX_INFIX:
    case LATEX_OVER:
      set(LATEX_TOKEN_INFIX);
      break;
    case LATEX_PREFIX: {
      // A letter that is also a sign before operands is a name where there is none.
      std::u16string_view const letter = text[0] == u'\\'                  ? findLatexLetter(text.substr(1))
                                         : findLetterCommand(text).empty() ? std::u16string_view()
                                                                           : text;
      set(LATEX_TOKEN_PREFIX);
      if (!letter.empty()) setName(letter, letter[0] == partial_letter ? LATEX_NAME_D : 0u);
      break;
    }
    case LATEX_TABLE:
      set(LATEX_TOKEN_TABLE);
      break;
    case LATEX_POSTFIX:
      set(LATEX_TOKEN_POSTFIX);
      break;
    case LATEX_CONSTANT:
      setName(first->notation->name, 0);
      break;
    case LATEX_COMMAND:
      set(LATEX_TOKEN_COMMAND);
      break;
    case LATEX_FUNCTION:
    case LATEX_INDEXED:
      set(LATEX_TOKEN_FUNCTION);
      break;
    default:
      set(LATEX_TOKEN_BIG);
      break;
  }
  return true;
}

void LatexLexerC::readNamed(LatexWordE word) {
  std::size_t const after = position_;
  skipBlanks();
  wstring name;
  if (peek() != opening_brace) {
    if (isAsciiLetter(peek()) && word != LATEX_WORD_TEXT) {
      name = peek();
      ++position_;
      setNamed(name, word);
      return;
    }
    position_ = after;
    return setError(READ_ERROR_BAD_NAME);
  }
  std::size_t const inside = position_ + 1;
  std::size_t end = inside;
  if (word == LATEX_WORD_OPERATOR && readStyledLatexWord(text_, end, name) && end < text_.size() &&
      text_[end] == closing_brace) {
    position_ = end + 1;
    if (setNamed(name, word)) return;
  }
  end = inside;
  name.clear();
  bool const isText = word == LATEX_WORD_TEXT || startsLatexText(text_, end);
  if (isText ? readLatexText(text_, end, name, word == LATEX_WORD_TEXT ? 1 : 2)
             : readLatexWord(text_, end, name)) {
    position_ = end;
    bool const isDone = isText ? setVerbatim(name, word) : setNamed(name, word);
    if (isDone) return;
  } else if (!isText && word != LATEX_WORD_FUNCTION) {
    // It is the style of a formula.
    position_ = after;
    skipEmptyBraces();
    skipped_ = true;
    return;
  }
  position_ = std::min(findBraceEnd(text_, after), text_.size());
  setError(READ_ERROR_BAD_NAME);
}

// Sets the token for a name in an upright style, which may be that of a function or an operator.
bool LatexLexerC::setNamed(wstring const& name, LatexWordE word) {
  if (word == LATEX_WORD_DOUBLE_STRUCK) {
    char16_t const letter = name.size() == 1 ? toDoubleStruck(name[0]) : u'\0';
    setName(letter == u'\0' ? name : wstring(1, letter), 0);
    return true;
  }
  if (setMeaning(name)) return true;
  if (name == u"d") {
    setName(name, LATEX_NAME_D | LATEX_NAME_UPRIGHT);
    return true;
  }
  return setVerbatim(name, word == LATEX_WORD_OPERATOR ? LATEX_WORD_FUNCTION : word);
}

// Sets the token for a name as it is written, a number included.
bool LatexLexerC::setVerbatim(wstring const& name, LatexWordE word) {
  if (word == LATEX_WORD_TEXT && isLatexOperatorWord(name)) return setMeaning(name);
  if (math::algexpr::isWritableName(name)) {
    setName(name, word == LATEX_WORD_FUNCTION ? LATEX_NAME_CALLS
                  : word == LATEX_WORD_TEXT   ? LATEX_NAME_TEXT
                                              : 0u);
    return true;
  }
  set(LATEX_TOKEN_NUMBER, name);
  return word != LATEX_WORD_FUNCTION && math::algexpr::makeNumber(name);
}

// ---- Numbers, letters and signs ---------------------------------------------------------------------------

void LatexLexerC::readNumber(LatexTokenLengthE length) {
  std::size_t const begin = position_;
  if (length == LATEX_TOKEN_SINGLE && isDigit(peek())) {
    ++position_;
    return set(LATEX_TOKEN_NUMBER, text_.substr(begin, 1));
  }
  while (isDigit(peek()) || peek() == u'.') ++position_;
  wstring number(text_.substr(begin, position_ - begin));
  DecimalTextS parts;
  if (!readDecimalText(number, parts)) return setError(READ_ERROR_BAD_NUMBER);
  // A full stop ends the sentence. Thin spaces stand between groups of three digits.
  if (number.back() == u'.') number.pop_back();
  constexpr std::size_t group = 3;
  auto const isGroup = [&] {
    return peek() == u'\\' && peek(1) == u',' && isDigit(peek(2)) && isDigit(peek(3)) && isDigit(peek(4)) &&
           !isDigit(peek(5)) && peek(5) != u'.';
  };
  if (position_ - begin <= group && parts.isInteger()) {
    for (; isGroup(); position_ += group + 2) number += text_.substr(position_ + 2, group);
  }
  readLatexExponent(text_, position_, number);
  set(LATEX_TOKEN_NUMBER, number);
}

void LatexLexerC::readLetter() {
  char16_t const c = peek();
  ++position_;
  unsigned const kind = c == u'd' ? LATEX_NAME_D : 0u;
  setName({&c, 1}, function_letters.find(c) == function_letters.npos ? kind : kind | LATEX_NAME_CALLS);
}

void LatexLexerC::readSign(char16_t c) {
  std::size_t const begin = position_ - 1;
  std::u16string_view const two = text_.substr(begin, 2);
  bool const isPair = two == u":=" || two == u"<=" || two == u">=" || two == u"<>";
  if (isPair && setMeaning(two)) {
    ++position_;
    return;
  }
  if (setMeaning(text_.substr(begin, 1))) return;
  char16_t const sign = foldLookAlike(c, LOOK_ALIKE_PASTED);
  if (sign != c && setMeaning({&sign, 1})) return;
  char16_t const raised = loweredSign(c);
  if (isDigit(raised) || raised == u'n') return set(LATEX_TOKEN_RAISED, {&raised, 1});
  position_ = findLatexLetterEnd(text_, begin);
  std::u16string_view const letter = text_.substr(begin, position_ - begin);
  if (!letter.empty()) return setName(letter, c == partial_letter ? LATEX_NAME_D : 0u);
  position_ = begin + 1;
  setError(READ_ERROR_BAD_CHARACTER);
}

}  // namespace zolt::exchange::detail
