#pragma once

#include <string_view>

#include "zolt/oss/pointer.h"
#include "zolt/oss/wstring.h"
#include "zolt/ved/parser/token_type.h"

namespace zolt::math::ved {

using oss::PointerTC;
using oss::wstring;

class OperatorBC;
class OperatorListC;
enum OperatorPlaceE : int;

/// Cuts infix text into tokens. The current token is always read: the constructor reads the first one. At the
/// end of the text every further read gives the end again. A stored U+0000 stops names and numbers and is a
/// token of its own, so that nothing after it gets lost.
class LexicalAnalyserC {
 public:
  /// Copies `text`. Operator words are recognised through the operator table of the current session's engine.
  explicit LexicalAnalyserC(wstring const& text);
  ~LexicalAnalyserC();
  LexicalAnalyserC(LexicalAnalyserC const&) = delete;
  LexicalAnalyserC& operator=(LexicalAnalyserC const&) = delete;

  void readNextToken();

  TokenTypeE getCurrentTokenType() const { return tokenType_; }
  /// The text of a name, number, sign of the operator table or verbatim token (without its grave accents); an
  /// operator word's operator name; empty for every other token.
  wstring getCurrentToken() const { return wstring(token_); }
  /// The same without a copy: alive until the next read, and unless it is an operator's name as long as the
  /// analyser.
  std::u16string_view viewCurrentToken() const { return token_; }
  /// The operator of an operator word; null for every other token.
  PointerTC<OperatorBC> getCurrentTokenOperator() const;
  /// The operator that the current operator word or sign is in that place; null when it is none, and for
  /// every other token.
  PointerTC<OperatorBC> findOperator(OperatorPlaceE place) const;
  /// Whether the current token is a sign of the table that is also the name of a constant there.
  bool isNameAlone() const;
  /// The index of the token's first character and the index after its last one.
  void getCurrentTokenPosition(unsigned int& start, unsigned int& end) const;

 private:
  /// The character `ahead` of the current one; U+0000 past the end.
  char16_t peek(unsigned int ahead = 0) const;
  void takeSign(TokenTypeE type, unsigned int length);
  void takeNumber();
  void takeVerbatim();
  void takeName();
  bool stopsName(char16_t c) const;

  wstring const text_;
  unsigned int position_ = 0;
  unsigned int tokenStart_ = 0;
  TokenTypeE tokenType_ = TOKEN_END;
  std::u16string_view token_;  // in text_ or operatorName_
  PointerTC<OperatorBC> tokenOperator_;
  PointerTC<OperatorListC> operators_;
  wstring run_;  // a name on its way to the operator table, kept for its storage
  wstring operatorName_;
};

}  // namespace zolt::math::ved
