#include "zolt/algexpr/detail/prefix_reader.h"

#include <algorithm>
#include <utility>

namespace zolt::math::algexpr::detail {

using namespace common;

PointerTC<NodeABC> PrefixReaderC::read() {
  for (;;) {
    skipBlanks();
    if (!operandExpected_ && calls_.empty()) {
      if (atEnd()) return std::move(operands_.back());
      failHere(READ_ERROR_TRAILING_TEXT);
      return nullptr;
    }
    if (!(operandExpected_ ? readOperand() : readSeparator())) return nullptr;
  }
}

bool PrefixReaderC::readOperand() {
  std::size_t const start = at_;
  while (!atEnd() && !endsName(text_[at_]) && !isForbidden(text_[at_])) ++at_;
  wstring_view const token = text_.substr(start, at_ - start);
  if (token.empty()) return failHere(READ_ERROR_MISSING_OPERAND);
  PointerTC<NodeABC> leaf;
  if (startsLikeNumber(token)) {
    std::size_t breakPosition = 0;
    leaf = NodeAccessS::makeNumber(token, &breakPosition);
    if (!leaf) return fail(start + breakPosition, READ_ERROR_BAD_NUMBER);
  }
  skipBlanks();
  if (!atEnd() && text_[at_] == u'(') {
    if (leaf) return fail(at_, READ_ERROR_BAD_NUMBER);
    calls_.push_back({token, operands_.size()});
    ++at_;
    return true;
  }
  operands_.push_back(leaf ? std::move(leaf) : NodeAccessS::makeNamed(token));
  operandExpected_ = false;
  return true;
}

bool PrefixReaderC::readSeparator() {
  if (atEnd()) return failHere(READ_ERROR_MISSING_CLOSE);
  switch (text_[at_]) {
    case u',':
      operandExpected_ = true;
      break;
    case u')':
      closeCall();
      break;
    default:
      return failHere(READ_ERROR_MISSING_COMMA);
  }
  ++at_;
  return true;
}

void PrefixReaderC::closeCall() {
  CallS const call = calls_.back();
  calls_.pop_back();
  PointerTC<NodeABC>* const first = operands_.data() + call.operandsBelow;
  PointerTC<NodeABC> function = NodeAccessS::makeFunction(
      call.name, first, static_cast<unsigned long>(operands_.size() - call.operandsBelow));
  operands_.resize(call.operandsBelow);
  operands_.push_back(std::move(function));
}

void PrefixReaderC::skipBlanks() {
  while (!atEnd() && text_[at_] == u' ') ++at_;
}

bool PrefixReaderC::fail(std::size_t position, ReadErrorE cause) {
  error_.cause = cause;
  error_.begin = static_cast<unsigned long>(position);
  error_.end = static_cast<unsigned long>(std::min(position + 1, text_.size()));
  return false;
}

bool PrefixReaderC::failHere(ReadErrorE cause) {
  if (atEnd()) return fail(at_, calls_.empty() ? READ_ERROR_MISSING_OPERAND : READ_ERROR_MISSING_CLOSE);
  return fail(at_, isForbidden(text_[at_]) ? READ_ERROR_BAD_CHARACTER : cause);
}

}  // namespace zolt::math::algexpr::detail
