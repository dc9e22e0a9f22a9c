#pragma once

#include <cstddef>
#include <string_view>

#include "zolt/exchange/detail/notation.h"
#include "zolt/exchange/plain_text.h"

namespace zolt::exchange::detail {

enum PlainTokenE {
  // These start an operand.
  PLAIN_TOKEN_NUMBER,
  PLAIN_TOKEN_NAME,  ///< a name without quotes that is not a word of the notation
  PLAIN_TOKEN_QUOTED_NAME,
  PLAIN_TOKEN_CONSTANT,  ///< text: the name of the constant
  PLAIN_TOKEN_ROOT,      ///< text: the index, empty for a square root
  PLAIN_TOKEN_OPEN,      ///< text: the function of such brackets, empty when they only group
  PLAIN_TOKEN_BAR,       ///< text: the function of bars
  // These do not.
  PLAIN_TOKEN_END,
  PLAIN_TOKEN_INFIX,
  PLAIN_TOKEN_PREFIX,
  PLAIN_TOKEN_POSTFIX,      ///< text: the name of the operation
  PLAIN_TOKEN_SUPERSCRIPT,  ///< text: the number or name that is raised
  PLAIN_TOKEN_CLOSE,
  PLAIN_TOKEN_COMMA,
  PLAIN_TOKEN_ROW_END,  ///< ";" in tables
  PLAIN_TOKEN_BAD       ///< `error` says why
};

struct PlainTokenS {
  PlainTokenE type = PLAIN_TOKEN_END;
  std::size_t begin = 0;
  std::size_t end = 0;
  /// The number, the name without its quotes, or what the comment of the token's kind says.
  wstring text;
  NotationS const* infix = nullptr;
  /// For an opening bracket the closing one that matches, for a closing bracket the bracket itself.
  char16_t bracket = u'\0';
  math::common::ReadErrorE error = math::common::READ_ERROR_NONE;

  bool startsOperand() const { return type < PLAIN_TOKEN_END; }
};

/// Cuts plain text into tokens.
class PlainLexerC {
 public:
  /// `text` must outlive the lexer. The first token is read at once.
  explicit PlainLexerC(std::u16string_view text);

  /// At the end of the text every further read gives the end token again.
  void readNextToken();
  /// Whether the character at that place of the text is "|".
  bool isBar(std::size_t at) const { return text_[at] == u'|'; }
  PlainTokenS const& crefToken() const { return token_; }
  /// The token as it is in the text.
  std::u16string_view viewToken() const { return text_.substr(token_.begin, token_.end - token_.begin); }

 private:
  char16_t peek(std::size_t ahead = 0) const;
  void readSign(char16_t c);
  void readNumber();
  void readName();
  void readBigSign();
  void readQuotedName();
  void readSuperscript();
  void setOperator(ReadingS const& reading);
  void set(PlainTokenE type, std::u16string_view text = {});
  void setBracket(PlainTokenE type, char16_t bracket, std::u16string_view function = {});
  void setError(math::common::ReadErrorE error);

  std::u16string_view text_;
  std::size_t position_ = 0;
  PlainTokenS token_;
};

/// Whether the sign is a name of a function with bounds: ∫, ∑, ∏.
inline bool isBigSign(char16_t c) { return c == u'∫' || c == u'∑' || c == u'∏'; }

/// Whether the characters of `name` allow it to be written without quotes; primes are then written as "'".
bool isBareName(std::u16string_view name);

}  // namespace zolt::exchange::detail
