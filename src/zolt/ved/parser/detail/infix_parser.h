#pragma once

#include <forward_list>
#include <string_view>
#include <vector>

#include "zolt/oss/wstring.h"
#include "zolt/ved/parser/detail/prefix_builder.h"
#include "zolt/ved/parser/lexical_analyser.h"

namespace zolt::math::ved {
enum ErrorCauseE : int;
}

namespace zolt::math::ved::detail {

/// The rules of the grammar, the loosest first. Each reads what its name says or anything tighter.
enum RuleE : int {
  RULE_ASSIGNMENT,
  RULE_OR,
  RULE_AND,
  RULE_NOT,
  RULE_EQUATION,
  RULE_EXPRESSION,
  RULE_TERM,
  RULE_FACTOR,
  RULE_UNARY_TERM,
  RULE_FACT,
  RULE_ATOM
};

/// Reads infix text by the rules of the grammar, with a stack of its own in place of one call per rule and
/// bracket, so that neither nesting nor length is bounded by the thread's stack.
class InfixParserC {
 public:
  /// `lexer` is on the first token to be read and outlives the parser.
  explicit InfixParserC(LexicalAnalyserC& lexer);

  /// Appends the prefix text of an assignment, or of anything tighter, to `output` and leaves the lexer on
  /// the token after it. On failure `output` is untouched, and `start` to `end` is the offending token;
  /// otherwise these and the cause are.
  bool read(wstring& output, unsigned int& start, unsigned int& end, ErrorCauseE& cause);

 private:
  using PartT = PrefixBuilderC::PartT;

  enum PendingE { PENDING_PREFIX, PENDING_INFIX, PENDING_GROUP, PENDING_CALL };

  /// Something begun whose next operand is being read.
  struct FrameS {
    PendingE kind;
    RuleE operandRule;
    PartT part;
    // of a call:
    unsigned long arity = 0;  // 0: any number of arguments
    unsigned long numArguments = 0;
    unsigned int wordStart = 0;
    unsigned int wordEnd = 0;
  };

  struct SignS;

  /// What comes after something that was read.
  enum NextE { NEXT_OPERAND, NEXT_SIGN, NEXT_NOTHING, NEXT_FAILED };

  NextE readOperand();
  NextE readName();
  NextE readNumber();
  NextE readSign();
  NextE readBracketEnd();
  void finishOperation();

  RuleE currentRule() const { return frames_.empty() ? outermostRule_ : frames_.back().operandRule; }
  SignS const* findSign() const;
  NextE begin(FrameS const& frame);
  NextE beginPrefix(std::u16string_view name, RuleE operandRule);
  NextE takeLeaf(std::u16string_view text);
  NextE fail(ErrorCauseE cause);
  NextE failAt(unsigned int start, unsigned int end, ErrorCauseE cause);

  LexicalAnalyserC& lexer_;
  RuleE outermostRule_ = RULE_ASSIGNMENT;
  PrefixBuilderC builder_;
  std::vector<FrameS> frames_;
  std::forward_list<wstring> operatorNames_;  // the builder keeps slices of them
  PartT operand_ = 0;                         // the operand read last
  unsigned int errorStart_ = 0;
  unsigned int errorEnd_ = 0;
  ErrorCauseE errorCause_{};
};

}  // namespace zolt::math::ved::detail
