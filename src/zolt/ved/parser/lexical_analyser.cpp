#include "zolt/ved/parser/lexical_analyser.h"

#include "zolt/algexpr/cas_session.h"
#include "zolt/common/decimal_text.h"
#include "zolt/common/signs.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/operators/operator_list.h"
#include "zolt/ved/operators/operator_list_repository.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved {

namespace {

// A colon stops a name too, but may start one: it is not a sign by itself.
bool stopsName(char16_t c) {
  switch (c) {
    case u'\0':
    case u' ':
    case u'!':
    case Node4C::OPEN_C:
    case Node4C::CLOSE_C:
    case u'*':
    case u'+':
    case Node4C::COMMA_C:
    case u'-':
    case u':':
    case u'<':
    case u'=':
    case u'>':
    case Node4C::POWER_C:
    case Node4C::PREFIX_C:
    case common::pi_sign:
    case common::en_dash:
    case common::minus_sign:
    case common::times_sign:
    case common::not_equal_sign:
    case common::less_or_equal_sign:
    case common::greater_or_equal_sign:
    case common::store_sign:
      return true;
    default:
      return false;
  }
}

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

PointerTC<OperatorBC> LexicalAnalyserC::getCurrentTokenOperator() const { return tokenOperator_; }

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
  char16_t const next = peek(1);
  switch (c) {
    case u'\0':
      return position_ == text_.size() ? takeSign(TOKEN_END, 0) : takeSign(TOKEN_NUL);
    case common::pi_sign:
      return takeSign(TOKEN_PI);
    case Node4C::OPEN_C:
      return takeSign(TOKEN_OPEN);
    case Node4C::CLOSE_C:
      return takeSign(TOKEN_CLOSE);
    case Node4C::COMMA_C:
      return takeSign(TOKEN_COMMA);
    case u'+':
      return takeSign(TOKEN_PLUS);
    case u'-':
    case common::en_dash:
    case common::minus_sign:
      return takeSign(TOKEN_MINUS);
    case u'*':
    case common::times_sign:
      return takeSign(TOKEN_TIMES);
    case Node4C::POWER_C:
      return takeSign(TOKEN_POWER);
    case u'!':
      return takeSign(TOKEN_FACTORIAL);
    case u'=':
      return takeSign(TOKEN_EQUAL);
    case common::not_equal_sign:
      return takeSign(TOKEN_NOT_EQUAL);
    case common::less_or_equal_sign:
      return takeSign(TOKEN_LESS_OR_EQUAL);
    case common::greater_or_equal_sign:
      return takeSign(TOKEN_GREATER_OR_EQUAL);
    case common::store_sign:
      return takeSign(TOKEN_STORE);
    case u'<':
      if (next == u'=') return takeSign(TOKEN_LESS_OR_EQUAL, 2);
      if (next == u'>') return takeSign(TOKEN_NOT_EQUAL, 2);
      return takeSign(TOKEN_LESS);
    case u'>':
      return next == u'=' ? takeSign(TOKEN_GREATER_OR_EQUAL, 2) : takeSign(TOKEN_GREATER);
    case u':':
      if (next == u'=') return takeSign(TOKEN_ASSIGNMENT, 2);
      if (next == u'>') return takeSign(TOKEN_STORE, 2);
      return takeName();
    case Node4C::PREFIX_C:
      return takeVerbatim();
    default:
      return common::startsNumber(c) ? takeNumber() : takeName();
  }
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
