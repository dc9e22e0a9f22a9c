#pragma once

#include <vector>

#include "zolt/algexpr/detail/node_access.h"
#include "zolt/common/read_error.h"

namespace zolt::math::algexpr::detail {

/// Reads prefix text in one pass from left to right. Open calls wait on a stack, finished operands on
/// another: a call takes all operands that are above the height at which it was opened.
class PrefixReaderC {
 public:
  explicit PrefixReaderC(wstring_view text) : text_(text) {}

  /// The whole text as one expression; null when it is malformed.
  PointerTC<NodeABC> read();
  /// Where and why it is malformed; the message is left to the caller.
  common::ReadErrorS const& getError() const { return error_; }

 private:
  struct CallS {
    wstring_view name;
    std::size_t operandsBelow;
  };

  bool readOperand();
  bool readSeparator();
  void closeCall();

  void skipBlanks();
  bool atEnd() const { return at_ == text_.size(); }
  bool fail(std::size_t position, common::ReadErrorE cause);
  /// Notes an error where something else was needed. When the text ends there, or holds a character that is
  /// allowed nowhere, that is reported instead, being the better reason.
  bool failHere(common::ReadErrorE cause);

  wstring_view text_;
  std::size_t at_ = 0;
  std::vector<CallS> calls_;
  std::vector<PointerTC<NodeABC>> operands_;
  bool operandExpected_ = true;
  common::ReadErrorS error_;
};

}  // namespace zolt::math::algexpr::detail
