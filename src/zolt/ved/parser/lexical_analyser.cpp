#include "zolt/ved/parser/lexical_analyser.h"

#include <algorithm>
#include <iterator>

#include "zolt/algexpr/cas_session.h"
#include "zolt/common/decimal_text.h"
#include "zolt/common/signs.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/operators/operator_list.h"
#include "zolt/ved/operators/operator_list_repository.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved {

namespace {

struct SignS {
  char16_t first;
  char16_t second;  // U+0000: the sign is one character
  TokenTypeE type;
};

// Longer signs come before those that they begin with.
constexpr SignS signs[] = {{u'+', 0, TOKEN_PLUS},
                           {u'-', 0, TOKEN_MINUS},
                           {common::minus_sign, 0, TOKEN_MINUS},
                           {common::en_dash, 0, TOKEN_MINUS},
                           {u'*', 0, TOKEN_TIMES},
                           {common::times_sign, 0, TOKEN_TIMES},
                           {Node4C::OPEN_C, 0, TOKEN_OPEN},
                           {Node4C::CLOSE_C, 0, TOKEN_CLOSE},
                           {Node4C::POWER_C, 0, TOKEN_POWER},
                           {Node4C::COMMA_C, 0, TOKEN_COMMA},
                           {u'!', 0, TOKEN_FACTORIAL},
                           {u'=', 0, TOKEN_EQUAL},
                           {u'<', u'=', TOKEN_LESS_OR_EQUAL},
                           {u'<', u'>', TOKEN_NOT_EQUAL},
                           {u'<', 0, TOKEN_LESS},
                           {u'>', u'=', TOKEN_GREATER_OR_EQUAL},
                           {u'>', 0, TOKEN_GREATER},
                           {u':', u'=', TOKEN_ASSIGNMENT},
                           {u':', u'>', TOKEN_STORE},
                           {common::not_equal_sign, 0, TOKEN_NOT_EQUAL},
                           {common::less_or_equal_sign, 0, TOKEN_LESS_OR_EQUAL},
                           {common::greater_or_equal_sign, 0, TOKEN_GREATER_OR_EQUAL},
                           {common::store_sign, 0, TOKEN_STORE},
                           {common::pi_sign, 0, TOKEN_PI}};

}  // namespace

LexicalAnalyserC::LexicalAnalyserC(wstring const& text)
    : text_(text),
      operators_(OperatorListRepositoryC::lookup(algexpr::CASSessionBC::getSession()->getEngine())) {
  readNextToken();
}

LexicalAnalyserC::~LexicalAnalyserC() = default;

char16_t LexicalAnalyserC::peek(unsigned int ahead) const {
  return ahead < text_.size() - position_ ? text_[position_ + ahead] : u'\0';
}

bool LexicalAnalyserC::stopsName(char16_t c) const {
  if (common::isAsciiLetter(c)) return false;
  return c == u'\0' || c == u' ' || c == Node4C::PREFIX_C ||
         std::any_of(std::begin(signs), std::end(signs),
                     [&](SignS const& sign) { return sign.first == c; }) ||
         (operators_ && operators_->isSign(c));
}

PointerTC<OperatorBC> LexicalAnalyserC::getCurrentTokenOperator() const { return tokenOperator_; }

PointerTC<OperatorBC> LexicalAnalyserC::findOperator(OperatorPlaceE place) const {
  if (tokenType_ == TOKEN_SIGN) return operators_->lookupText(wstring(token_), place);
  return tokenOperator_ ? operators_->lookupText(run_, place) : nullptr;
}

bool LexicalAnalyserC::isNameAlone() const {
  auto const named = tokenType_ == TOKEN_SIGN ? operators_->lookup(wstring(token_)) : nullptr;
  return named && named->getArity() == 0 && !named->isConstruct();
}

void LexicalAnalyserC::getCurrentTokenPosition(unsigned int& start, unsigned int& end) const {
  start = tokenStart_;
  end = position_;
}

void LexicalAnalyserC::readNextToken() {
  while (peek() == u' ') ++position_;
  tokenStart_ = position_;
  token_ = {};
  tokenOperator_.reset();

  char16_t const c = peek();
  if (c == u'\0') return position_ == text_.size() ? takeSign(TOKEN_END, 0) : takeSign(TOKEN_NUL, 1);
  if (c == Node4C::PREFIX_C) return takeVerbatim();
  if (common::startsNumber(c)) return takeNumber();
  if (common::isAsciiLetter(c)) return takeName();
  for (SignS const& sign : signs) {
    if (sign.first != c || (sign.second != u'\0' && sign.second != peek(1))) continue;
    return takeSign(sign.type, sign.second == u'\0' ? 1 : 2);
  }
  if (operators_ && operators_->isSign(c)) {
    token_ = std::u16string_view(text_).substr(position_, 1);
    return takeSign(TOKEN_SIGN, 1);
  }
  takeName();
}

void LexicalAnalyserC::takeSign(TokenTypeE type, unsigned int length) {
  tokenType_ = type;
  position_ += length;
}

void LexicalAnalyserC::takeNumber() {
  std::u16string_view const text = text_;
  tokenType_ = TOKEN_NUMBER;
  position_ =
      static_cast<unsigned int>(common::findNumberEnd(text, tokenStart_, common::LONE_EXPONENT_TAKEN));
  token_ = text.substr(tokenStart_, position_ - tokenStart_);
}

void LexicalAnalyserC::takeVerbatim() {
  std::u16string_view const text = text_;
  std::size_t const begin = tokenStart_ + 1;
  std::size_t const end = text.find(Node4C::PREFIX_C, begin);
  tokenType_ = TOKEN_VERBATIM;
  token_ = text.substr(begin, end - begin);
  position_ = static_cast<unsigned int>(end == text.npos ? text.size() : end + 1);
}

void LexicalAnalyserC::takeName() {
  std::u16string_view const text = text_;
  // Behind a colon that starts a name, the next character belongs to the name whatever it is.
  std::size_t end = tokenStart_ + (text[tokenStart_] == u':' ? 2u : 1u);
  while (end < text.size() && !stopsName(text[end])) ++end;
  token_ = text.substr(tokenStart_, end - tokenStart_);
  position_ = tokenStart_ + static_cast<unsigned int>(token_.size());

  run_.assign(token_);
  if (operators_) tokenOperator_ = operators_->lookupText(run_);
  if (tokenOperator_) {
    operatorName_ = tokenOperator_->getName();
    token_ = operatorName_;
    tokenType_ = TOKEN_OPERATOR_WORD;
  } else {
    tokenType_ = TOKEN_NAME;
  }
}

}  // namespace zolt::math::ved
