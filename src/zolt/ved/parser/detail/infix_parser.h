#pragma once

#include <climits>
#include <deque>
#include <forward_list>
#include <string_view>
#include <utility>
#include <vector>

#include "zolt/oss/wstring.h"
#include "zolt/ved/parser/detail/prefix_builder.h"
#include "zolt/ved/parser/lexical_analyser.h"

namespace zolt::math::ved {
enum ErrorCauseE : int;
}

namespace zolt::math::ved::detail {

/// A rule of the grammar: the rule for an operator reads that operator and anything that binds tighter. Rules
/// compare like tightness, and between those of two operators of different precedence there is one more,
/// which leaves out the looser of them.
using RuleT = int;

constexpr RuleT ruleOf(int precedence) { return -2 * precedence; }
constexpr RuleT tighterThan(RuleT rule) { return rule + 1; }

/// The rules of the operators that the grammar itself knows.
enum RuleE : RuleT {
  RULE_ASSIGNMENT = ruleOf(90),
  RULE_OR = ruleOf(80),
  RULE_AND = ruleOf(70),
  RULE_NOT = ruleOf(60),
  RULE_RELATION = ruleOf(50),
  RULE_SUM = ruleOf(40),
  RULE_PRODUCT = ruleOf(30),
  RULE_SIGN = ruleOf(20),
  RULE_POWER = ruleOf(10),
  RULE_FACTORIAL = ruleOf(5),
  RULE_IN_BRACKETS = tighterThan(RULE_ASSIGNMENT)
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
  /// Unless `parts` is null, what is written is appended there.
  bool read(wstring& output, unsigned int& start, unsigned int& end, ErrorCauseE& cause,
            std::vector<PrefixPartS>* parts);

 private:
  using PartT = PrefixBuilderC::PartT;

  enum PendingE { PENDING_PREFIX, PENDING_INFIX, PENDING_GROUP, PENDING_CALL };

  /// Something begun whose next operand is being read.
  struct FrameS {
    PendingE kind;
    RuleT operandRule;
    PartT part;
    std::u16string_view alone = {};  // what it is when no operand follows: the sign as a name; may be empty
    unsigned int wordStart = 0;      // of a call or such a sign
    unsigned int wordEnd = 0;
    // of a call:
    unsigned int arity = 0;  // 0: any number of arguments
    unsigned int numArguments = 0;
  };

  /// A sign or word that follows an operand.
  struct SignS {
    TokenTypeE token;
    RuleT rule;                ///< the rule that reads it
    RuleT rightRule;           ///< the rule that reads its right operand; `no_operand`: there is none
    std::u16string_view name;  ///< empty: this is no sign
  };
  static constexpr RuleT no_operand = INT_MAX;

  /// What comes after something that was read.
  enum NextE { NEXT_OPERAND, NEXT_SIGN, NEXT_NOTHING, NEXT_FAILED };

  NextE readOperand();
  NextE readName();
  NextE readNumber();
  NextE readSign();
  NextE readBracketEnd();
  void finishOperation();

  RuleT currentRule() const { return frames_.empty() ? outermostRule_ : frames_.back().operandRule; }
  SignS findSign();
  NextE begin(FrameS const& frame);
  NextE beginPrefix(std::u16string_view name, RuleT operandRule);
  NextE readPrefix();
  NextE readNoOperand(ErrorCauseE cause);
  std::u16string_view keep(wstring name) { return operatorNames_.emplace_front(std::move(name)); }
  PartT addFunction(std::u16string_view name);
  NextE takeLeaf(std::u16string_view text);
  NextE fail(ErrorCauseE cause);
  NextE failAt(unsigned int start, unsigned int end, ErrorCauseE cause);

  LexicalAnalyserC& lexer_;
  RuleT outermostRule_ = RULE_ASSIGNMENT;
  PrefixBuilderC builder_;
  std::deque<FrameS> frames_;                 // which takes no more room than it has frames
  std::forward_list<wstring> operatorNames_;  // the builder keeps slices of them
  PartT operand_ = 0;                         // the operand read last
  unsigned int errorStart_ = 0;
  unsigned int errorEnd_ = 0;
  ErrorCauseE errorCause_{};
};

}  // namespace zolt::math::ved::detail
