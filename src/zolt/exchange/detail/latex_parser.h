#pragma once

#include <cstddef>
#include <deque>
#include <string_view>
#include <vector>

#include "zolt/algexpr/node.h"
#include "zolt/exchange/detail/latex_lexer.h"
#include "zolt/exchange/latex.h"

namespace zolt::exchange::detail {

/// Reads LaTeX into expression nodes, with its own stack instead of recursion.
class LatexParserC {
 public:
  /// `text` must outlive the parser.
  explicit LatexParserC(std::u16string_view text) : text_(text), lexer_(text) {}

  /// The node of the whole text. Null when the text is malformed; `crefError` then says where and why.
  PointerTC<math::algexpr::NodeABC> read();
  ReadErrorS const& crefError() const { return error_; }

 private:
  using NodeT = PointerTC<math::algexpr::NodeABC>;

  enum PendingE : std::uint8_t {
    PENDING_PREFIX,       ///< a sign or "not" before its operand
    PENDING_INFIX,        ///< a sign or word between its operands
    PENDING_APPLICATION,  ///< a function without brackets
    PENDING_BIG,          ///< a sum or a limit, with its bounds
    PENDING_DERIVATIVE,   ///< d/dx
    // Of these the next operand is a single token or in braces.
    PENDING_OPERANDS,  ///< of a command
    PENDING_POWER,
    PENDING_LOWER,  ///< what is below the head that is next on the stack
    PENDING_UPPER,
    // These take no operand before they become something else.
    PENDING_HEAD,  ///< a function, sum or integral whose scripts are read
    // These are closed by something.
    PENDING_CALL,
    PENDING_GROUP,
    PENDING_INDEX,  ///< what is below an operand, which is the one before the first
    PENDING_TABLE,
    PENDING_INTEGRAL
  };

  /// An operation that was begun and whose next operand is being read.
  struct FrameS {
    PendingE kind;
    RuleE operandRule = RULE_ASSIGNMENT;
    char16_t close = u'\0';                    // of what is closed only
    bool asWritten = false;                    // a sign that stays what it is; a product without a sign
    bool isAligned = false;                    // of a table: "&" before a sign only aligns
    bool isOver = false;                       // of braces: their fraction is made when they close
    LatexNotationS const* notation = nullptr;  // null: brackets that only group, a call of `head`
    std::u16string_view word = {};             // the name by which the table knows a function
    NodeT head = {};                           // the name of any other function, of a variable
    NodeT lower = {};
    NodeT upper = {};
    std::size_t firstOperand = 0;
    std::size_t begin = 0;  // what an error in the operands marks
    std::size_t end = 0;
    std::size_t comma = 0;    // the end of the first comma in brackets, 0: none
    std::size_t columns = 0;  // of a table, 0 in its first row
    char16_t side = u'\0';    // from which a limit is taken
  };

  /// What an operand is beyond its node.
  enum OperandE : unsigned {
    OPERAND_BRACKETED = 1,
    OPERAND_LITERAL = 2,  ///< a number as written in the text
    OPERAND_NAME = 4,
    OPERAND_CALLS = 8,  ///< a name after which brackets are a call, perhaps with an exponent
    OPERAND_POWER = 16,
    OPERAND_ASSIGNMENT = 32,
    // A "d" as in differentials, in products without signs.
    OPERAND_D = 64,
    OPERAND_D_POWER = 128,
    OPERAND_NAME_POWER = 256,
    OPERAND_FIRST_D = 512,        ///< the first factor is a "d" or a power of it
    OPERAND_LAST_D = 1024,        ///< the last factor is a "d"
    OPERAND_DIFFERENTIAL = 2048,  ///< the last factors are a "d" and a name
    OPERAND_BRACED = 4096,        ///< in braces that are no one's argument
    OPERAND_ORDER = 8192,         ///< begins with a power of a "d" whose exponent is in braces of its own
    OPERAND_INDEXED = 16384,      ///< has an index that is an expression
    OPERAND_TABLE = 32768,        ///< a table without brackets of its own
    OPERAND_CURLY = 65536         ///< in braces that are signs
  };
  struct OperandS {
    NodeT node;
    unsigned flags = 0;
  };

  /// What the parser expects next.
  enum NextE { NEXT_OPERAND, NEXT_SINGLE, NEXT_SIGN, NEXT_HEAD, NEXT_NOTHING, NEXT_FAILED };

  // Operands.
  NextE readOperand();
  NextE readName();
  NextE readPrefix(LatexNotationS const* notation);
  bool isPrefixName() const;
  NextE readSignBeforeOperand();
  NextE readCommand();
  NextE readHead();
  NextE continueHead();
  NextE readArgument();
  NextE readBig();
  NextE beginIntegral();
  NextE readNameCall();
  NextE readApply();
  NextE beginGroup(char16_t close, LatexNotationS const* notation = nullptr);
  NextE beginScript(PendingE kind);
  NextE beginBrackets();
  NextE beginTable();
  NextE beginCell();

  // After an operand.
  NextE readSign();
  NextE readInfix(LatexNotationS const& notation);
  NextE readPostfix(LatexNotationS const* notation);
  NextE readRaised();
  NextE readUpper();
  NextE readLower();
  NextE beginIndex();
  NextE readSide(char16_t side);
  /// Whether the operand may be the bound of a limit.
  bool isInLimit() const;
  NextE readProduct();
  NextE readTimes();
  NextE readBar();
  bool separates() const;
  NextE readWhere();
  NextE readBracketEnd();
  NextE readComma();
  NextE readCell();
  NextE closeTable();
  bool skipsAlignment();
  static NodeT makeCases(std::vector<NodeT> rows);
  NextE closeBracket();
  NextE closeList(FrameS const& frame);
  OperandS makeIndexed(FrameS const& frame);
  /// Whether a set is what the operation before the current operand needs.
  bool isAfterSetSign() const;
  NextE closeIntegral();

  // Differentials.
  bool startsDifferential() const;
  NextE makeFraction();
  void finishOver();
  NextE makeOver();
  NodeT makeIntegral(FrameS const& frame, NodeT operand);
  /// Of a product without a sign.
  static unsigned productFlags(unsigned left, unsigned right);

  /// Reduces the operations on top of the stack that bind tighter than `rule`; stops at brackets.
  void finishTighterThan(int rule);
  void finish(FrameS& frame);
  /// Makes the number before the current token negative when a minus is before it.
  void foldMinus();
  NodeT makeCall(FrameS const& frame, std::vector<NodeT> operands);

  /// Takes an operand and hands it to what waits for a single one.
  NextE keep(NodeT node, unsigned flags = 0);
  NextE makeCommand(FrameS const& frame);
  std::vector<NodeT> takeOperands(std::size_t first);
  /// Reads the next token as `next` needs it.
  NextE advance(NextE next);
  NodeT takeOperand();

  bool isSingle() const {
    return !frames_.empty() && frames_.back().kind >= PENDING_OPERANDS &&
           frames_.back().kind <= PENDING_UPPER;
  }
  RuleE currentRule() const { return frames_.empty() ? RULE_ASSIGNMENT : frames_.back().operandRule; }
  bool opensCall() const;
  LatexTokenS const& token() const { return lexer_.crefToken(); }
  NextE fail(ReadErrorE cause);
  NextE failAt(std::size_t begin, std::size_t end, ReadErrorE cause);

  std::u16string_view text_;
  LatexLexerC lexer_;
  std::deque<FrameS> frames_;           // which takes no more room than it has frames
  std::vector<char16_t> closes_;        // of the frames that something closes
  std::vector<std::size_t> integrals_;  // the places of integrals among the frames
  std::deque<OperandS> operands_;
  bool expectsOperand_ = true;
  bool isAlignedLine_ = false;  // outside of tables
  ReadErrorS error_;
};

}  // namespace zolt::exchange::detail
