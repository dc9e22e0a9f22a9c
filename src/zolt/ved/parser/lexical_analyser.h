#pragma once

#include "zolt/oss/pointer.h"
#include "zolt/oss/wstring.h"
#include "zolt/ved/parser/token_type.h"

namespace zolt::math::ved {

using oss::PointerTC;
using oss::wstring;

class OperatorBC;
class OperatorListC;

/// Cuts infix text into tokens. The current token is always read: the constructor reads the first one. At the
/// end of the text every further read gives the end again. A stored U+0000 is an ordinary stop inside the
/// text.
class LexicalAnalyserC {
 public:
  /// Copies `text`. Operator words are recognised through the operator table of the current session's engine.
  explicit LexicalAnalyserC(wstring const& text);
  ~LexicalAnalyserC();
  LexicalAnalyserC(LexicalAnalyserC const&) = delete;
  LexicalAnalyserC& operator=(LexicalAnalyserC const&) = delete;

  void readNextToken();

  TokenTypeE getCurrentTokenType() const { return tokenType_; }
  /// The text of a name, number or verbatim token (without its grave accents); an operator word's operator
  /// name.
  wstring getCurrentToken() const { return token_; }
  wstring const& crefCurrentToken() const { return token_; }
  /// The operator of an operator word; null for every other token.
  PointerTC<OperatorBC> getCurrentTokenOperator() const;
  /// The index of the token's first character and the index after its last one.
  void getCurrentTokenPosition(unsigned int& start, unsigned int& end) const;

 private:
  char16_t peek(unsigned long ahead = 0) const;
  void readNumber();
  void readName();
  void readVerbatim();

  wstring text_;
  unsigned int position_ = 0;
  unsigned int tokenStart_ = 0;
  TokenTypeE tokenType_ = TOKEN_END;
  wstring token_;
  PointerTC<OperatorBC> tokenOperator_;
  PointerTC<OperatorListC> operators_;
};

}  // namespace zolt::math::ved
