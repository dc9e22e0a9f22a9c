#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

#include "zolt/common/read_error.h"
#include "zolt/exchange/detail/latex_notation.h"
#include "zolt/exchange/detail/latex_words.h"

namespace zolt::exchange::detail {

using math::common::ReadErrorE;
using oss::wstring;

enum LatexTokenE : std::uint8_t {
  // These start an operand.
  LATEX_TOKEN_NUMBER,
  LATEX_TOKEN_NAME,
  LATEX_TOKEN_FUNCTION,
  LATEX_TOKEN_COMMAND,  ///< operands in braces follow
  LATEX_TOKEN_BIG,      ///< a sum, an integral, a limit
  LATEX_TOKEN_OPEN,
  LATEX_TOKEN_BAR,
  LATEX_TOKEN_BRACE_OPEN,
  LATEX_TOKEN_TABLE,  ///< the beginning of a table
  // These do not.
  LATEX_TOKEN_END,
  LATEX_TOKEN_INFIX,
  LATEX_TOKEN_PREFIX,
  LATEX_TOKEN_POSTFIX,
  LATEX_TOKEN_RAISED,  ///< text: the number or letter of "²"
  LATEX_TOKEN_UPPER,
  LATEX_TOKEN_LOWER,
  LATEX_TOKEN_CLOSE,
  LATEX_TOKEN_BRACE_CLOSE,
  LATEX_TOKEN_COMMA,
  LATEX_TOKEN_CELL,       ///< between two cells of a row
  LATEX_TOKEN_ROW,        ///< between two rows
  LATEX_TOKEN_TABLE_END,  ///< word: the name of the environment in braces
  LATEX_TOKEN_APPLY,      ///< the invisible sign between a function and its argument
  LATEX_TOKEN_TIMES,      ///< the invisible sign between factors
  LATEX_TOKEN_BAD         ///< `error` says why
};

/// What kind of name it is.
enum LatexNameE : unsigned {
  LATEX_NAME_CALLS = 1,  ///< brackets after it are a call
  LATEX_NAME_D = 2,      ///< it may begin a differential
  LATEX_NAME_UPRIGHT = 4,
  LATEX_NAME_TEXT = 8  ///< it is in "\text"
};

struct LatexTokenS {
  LatexTokenE type = LATEX_TOKEN_END;
  LatexSideE side = LATEX_SIDE_ANY;
  bool inBraces = false;  ///< of a sign: "{-}"; of a name that is one before an operand; of "&": "&{}"
  unsigned name = 0;      ///< of `LatexNameE`
  std::size_t begin = 0;
  std::size_t end = 0;
  wstring text;
  LatexNotationS const* notation = nullptr;
  std::u16string_view word;  ///< by which the table knows the notation
  /// The delimiter itself, "." for none.
  char16_t bracket = u'\0';
  ReadErrorE error = math::common::READ_ERROR_NONE;

  bool startsOperand() const { return type < LATEX_TOKEN_END; }
};

/// Whether the next token is what may be an argument without braces.
enum LatexTokenLengthE {
  LATEX_TOKEN_WHOLE,
  LATEX_TOKEN_SINGLE  ///< of a number only one digit, of a name no index
};

/// Cuts LaTeX into tokens. Spaces, sizes, styles and comments are left out.
class LatexLexerC {
 public:
  /// `text` must outlive the lexer. The first token is read at once.
  explicit LatexLexerC(std::u16string_view text);

  /// At the end of the text every further read gives the end token again.
  void readNextToken(LatexTokenLengthE length = LATEX_TOKEN_WHOLE);
  LatexTokenS const& crefToken() const { return token_; }
  /// The token after the current one.
  LatexTokenS peekToken() const;
  /// Whether a sign comes next and "&" after it.
  bool isSignAheadInCell() const;
  /// Whether the rest of this row of a table, as far as a limited look goes, has a further "&".
  bool isCellAhead() const;

  /// After "_": reads an index that is a part of a name, letters and digits in braces or a single one, up to
  /// its end. False, with nothing changed, when another index is there.
  [[nodiscard]] bool readIndex(wstring& index);
  /// After "^": reads the "+" or "-" with which the bound of a limit ends. U+0000, with nothing changed, when
  /// something else is there.
  char16_t readSide();
  /// After "^": reads an exponent that is a sign after an operand, as of degrees. Null, with nothing changed,
  /// when another exponent is there.
  LatexNotationS const* readRaisedSign();
  /// After "^": reads primes.
  [[nodiscard]] bool readRaisedPrimes(wstring& primes);

 private:
  char16_t peek(std::size_t ahead = 0) const;
  void skipBlanks();
  void skipEmptyBraces();
  void readToken(LatexTokenLengthE length);
  void readBrace();
  bool readDelimiter(char16_t c);
  void readSized(LatexWordE word);
  void readEnvironment(LatexWordE word);
  void skipRowSpace();
  std::u16string_view readCommandWord();
  void readCommand();
  void readNamed(LatexWordE word);
  void readNumber(LatexTokenLengthE length);
  void readLetter();
  void readSign(char16_t c);
  void readNameScripts();
  bool setMeaning(std::u16string_view text);
  bool setNamed(wstring const& name, LatexWordE word);
  bool setVerbatim(wstring const& name, LatexWordE word);
  void set(LatexTokenE type, std::u16string_view text = {});
  void setName(std::u16string_view name, unsigned kind);
  void setError(ReadErrorE error);

  std::u16string_view text_;
  std::size_t position_ = 0;
  bool skipped_ = false;  // what was read last means nothing
  LatexTokenS token_;
};

}  // namespace zolt::exchange::detail
