#include "zolt/algexpr/detail/prefix_reader.h"

#include <utility>

namespace zolt::math::algexpr::detail {

PointerTC<NodeABC> PrefixReaderC::read() {
  for (;;) {
    skipBlanks();
    if (!operandExpected_ && calls_.empty()) {
      if (atEnd()) return std::move(operands_.back());
      failHere(PREFIX_ERROR_TRAILING_TEXT);
      return nullptr;
    }
    if (!(operandExpected_ ? readOperand() : readSeparator())) return nullptr;
  }
}

bool PrefixReaderC::readOperand() {
  std::size_t const start = at_;
  while (!atEnd() && !endsName(text_[at_]) && !isForbidden(text_[at_])) ++at_;
  wstring_view const token = text_.substr(start, at_ - start);
  if (token.empty()) return failHere(PREFIX_ERROR_MISSING_OPERAND);
  PointerTC<NodeABC> leaf;
  if (startsLikeNumber(token)) {
    std::size_t breakPosition = 0;
    leaf = NodeAccessS::makeNumber(token, &breakPosition);
    if (!leaf) return fail(start + breakPosition, PREFIX_ERROR_BAD_NUMBER);
  }
  skipBlanks();
  if (!atEnd() && text_[at_] == u'(') {
    if (leaf) return fail(at_, PREFIX_ERROR_BAD_NUMBER);
    calls_.push_back({token, operands_.size()});
    ++at_;
    return true;
  }
  operands_.push_back(leaf ? std::move(leaf) : NodeAccessS::makeNamed(token));
  operandExpected_ = false;
  return true;
}

bool PrefixReaderC::readSeparator() {
  if (atEnd()) return failHere(PREFIX_ERROR_NOT_CLOSED);
  switch (text_[at_]) {
    case u',':
      operandExpected_ = true;
      break;
    case u')':
      closeCall();
      break;
    default:
      return failHere(PREFIX_ERROR_MISSING_COMMA);
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

bool PrefixReaderC::fail(std::size_t position, PrefixErrorE cause) {
  error_ = {static_cast<unsigned long>(position), cause};
  return false;
}

bool PrefixReaderC::failHere(PrefixErrorE cause) {
  if (atEnd()) return fail(at_, calls_.empty() ? PREFIX_ERROR_MISSING_OPERAND : PREFIX_ERROR_NOT_CLOSED);
  return fail(at_, isForbidden(text_[at_]) ? PREFIX_ERROR_BAD_CHARACTER : cause);
}

}  // namespace zolt::math::algexpr::detail
