#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string_view>
#include <vector>

#include "zolt/algexpr/node.h"
#include "zolt/exchange/detail/notation.h"
#include "zolt/exchange/detail/plain_lexer.h"
#include "zolt/exchange/plain_text.h"

namespace zolt::exchange::detail {

/// Reads plain text into expression nodes, with its own stack instead of recursion.
class PlainParserC {
 public:
  /// `text` must outlive the parser.
  explicit PlainParserC(std::u16string_view text) : lexer_(text) {}

  /// The node of the whole text. Null when the text is malformed; `crefError` then says where and why.
  PointerTC<math::algexpr::NodeABC> read();
  /// The message is left to the caller.
  ReadErrorS const& crefError() const { return error_; }

 private:
  using NodeT = PointerTC<math::algexpr::NodeABC>;

  enum PendingE : std::uint8_t {
    PENDING_PREFIX,       ///< a sign or "not" before its operand
    PENDING_INFIX,        ///< a sign or word between its operands
    PENDING_ROOT,         ///< a radical sign
    PENDING_APPLICATION,  ///< a function without brackets
    PENDING_BODY,         ///< a function after its bounds, as in "sum_(k=1)^n k"
    PENDING_INTEGRAL,     ///< an integral before its "dx"
    PENDING_DERIVATIVE,   ///< "d/dx"
    PENDING_CALL,         ///< a function with brackets
    PENDING_GROUP         ///< any other brackets, or bars
  };

  /// An operation that was begun and whose next operand is being read. Hostile text has one for each
  /// character: the small members are side by side and leave no gaps.
  struct FrameS {
    RuleE operandRule;
    PendingE kind;
    char16_t close = u'\0';           // of brackets only
    bool takesSign = false;           // the operand may start with a sign, even if its rule is tighter
    bool isWritten = false;           // `name` is as people write it, not as the expression library does
    bool isTable = false;             // ";" has ended a row
    bool isIndexed = false;           // a name that ends with "_", or "^", is right before the bracket
    bool inIntegral = false;          // of an integral, and of what is pending in it without brackets
    unsigned commas = 0;              // in a call, so far
    wstring name = {};                // empty: brackets that only group
    NotationS const* sign = nullptr;  // of an infix operation, or what is a name when no operand follows
    NodeT exponent = {};  // of a function, as in sin²x, or its upper bound; of a root, its index; an order
    NodeT second = {};    // the argument in the name, as in log_2(x), log_(a+1)(x), or the lower bound
    NodeT side = {};      // what a sign after an argument tells, as in lim(x->0+,f), or the variable in "dx"
    std::size_t firstOperand = 0;
    std::size_t rowStart = 0;  // of a table: the first operand of its last row
    std::size_t begin = 0;     // what an error in the arguments marks
    std::size_t end = 0;

    bool isGroup() const { return kind == PENDING_GROUP && name.empty(); }
  };

  struct OperandS {
    NodeT node;
    bool bracketed = false;   // it was in brackets that leave no trace
    bool literal = false;     // it is a number as written in the text
    bool assignment = false;  // it is an assignment that is not in brackets
  };

  /// What the parser expects next.
  enum NextE { NEXT_OPERAND, NEXT_SIGN, NEXT_NOTHING, NEXT_FAILED };

  NextE readOperand();
  NextE readNumber();
  NodeT readMixedNumber(NodeT const& whole);
  NextE readNoOperand();
  NextE readWordAsName();
  NextE readPrefix(NotationS const& sign, RuleE operandRule);
  NextE readSignBeforeOperand();
  NextE readRoot();
  NextE readName();
  NextE readMarkedName(FrameS&& frame);
  void takeMark(FrameS& frame);
  NextE readQuotedName();
  NextE readWordCall(std::u16string_view name);
  NextE readFunction(FrameS&& frame);
  NextE beginApplication(FrameS&& frame);
  bool readFunctionExponent(FrameS& frame);
  FrameS startCall(std::u16string_view name);
  NextE beginGroup(char16_t close);
  NextE beginBracket(FrameS&& frame);
  NextE begin(FrameS&& frame);
  void push(FrameS&& frame);

  NextE readSign();
  bool startsFactor() const;
  bool isPartOfQuotient() const;
  bool readSide();
  bool endsList() const;
  NextE readInfix(NotationS const& sign);
  NextE readBar();
  bool separates() const;
  NextE readPostfix();
  NextE readProduct();
  NextE readBracketEnd();
  NextE readComma();
  NextE finishGroup();
  NextE finishArguments(PlainListS const* list);
  NextE readRowEnd();
  void finishRow();
  NextE finishTable();
  /// Takes the innermost bracket off the stack.
  FrameS takeBracket();
  /// Takes the operands from number `first` off the stack.
  std::vector<NodeT> takeOperands(std::size_t first);

  /// Reduces the operations on top of the stack that bind tighter than `rule`; stops at brackets.
  void finishTighterThan(int rule);
  void finishTop();
  void keepShownBrackets();
  void finish(FrameS const& frame);
  NodeT makeCall(FrameS const& frame, std::vector<NodeT> arguments);
  bool beginMarkedCall(FrameS const& frame, std::vector<NodeT> const& arguments);
  bool isDoubled(FrameS const& bars, std::vector<NodeT> const& arguments) const;

  bool beginBody(FrameS const& frame, std::vector<NodeT> const& arguments);
  bool beginIntegrand(FrameS const& frame, std::vector<NodeT> const& arguments);
  void pushBody(FrameS&& body);
  bool readUpperBound(FrameS& body);
  NodeT readBound();
  NodeT takeBound(NodeT bound);
  NextE readIntegral(FrameS&& frame);
  NextE readDifferentialFirst();
  bool readDifferential();
  NextE readDerivative();
  static NodeT makeDerivative(FrameS const& frame, NodeT operand);
  NodeT makeIntegral(FrameS const& frame, NodeT integrand);

  NextE takeToken(NodeT node, bool literal = false);
  NextE keep(NodeT node, bool literal = false);
  NodeT takeOperand();

  RuleE currentRule() const { return frames_.empty() ? RULE_ASSIGNMENT : frames_.back().operandRule; }
  bool opensCall() const;
  bool opensBraces() const { return token().type == PLAIN_TOKEN_OPEN && token().bracket == u'}'; }
  PlainTokenS const& token() const { return lexer_.crefToken(); }
  NextE fail(math::common::ReadErrorE cause);
  NextE failAt(std::size_t begin, std::size_t end, math::common::ReadErrorE cause);

  PlainLexerC lexer_;
  std::deque<FrameS> frames_;     // which takes no more room than it has frames
  std::vector<char16_t> closes_;  // of the brackets among the frames
  std::deque<OperandS> operands_;
  ReadErrorS error_;
};

}  // namespace zolt::exchange::detail
