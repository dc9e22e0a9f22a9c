#include <algorithm>
#include <limits>
#include <vector>

#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/ved/convert/diagnosis.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/tree_walk.h"

namespace zolt::math::ved {

/// Writes a row, and the rows inside it, as text. A row starts when a construct or an exponent needs its
/// prefix text, and hands that text to the row around it when it ends.
class RowWriterC {
 public:
  explicit RowWriterC(ErrorSelectionS& error) : error_(error) {}

  /// The infix text of `row`.
  bool writeInfix(Node4C& row, wstring& infix) {
    if (!writeItems(row)) return false;
    infix = std::move(rows_.back().infix);
    return true;
  }

  /// The prefix text of `row`.
  bool writePrefix(Node4C& row, wstring& prefix) {
    if (!writeItems(row)) return false;
    return convert(rows_.back(), prefix);
  }

 private:
  /// From `start` on, the row's infix text stems from `node`.
  struct RunS {
    unsigned int start;
    Node4C* node;
  };

  struct RowS {
    explicit RowS(Node4C& node) : row(&node) {}

    Node4C* row;
    wstring infix;
    std::vector<RunS> runs;
    std::vector<wstring> arguments;  // of the construct under way, its rows that are written
  };

  /// Leaves the finished infix text of `top` in the last entry of the stack.
  bool writeItems(Node4C& top) {
    return walkTree(
        top, [&](Node4C& node) { return begin(node, top); }, [&](Node4C& node) { return end(node, top); });
  }

  WalkE begin(Node4C& node, Node4C const& top) {
    if (&node == &top || node.getParent()->getType() != NODE4_LINE) {
      rows_.emplace_back(node);
      return WALK_INTO;
    }
    return beginItem(rows_.back(), node);
  }

  WalkE end(Node4C const& node, Node4C const& top) {
    if (&node == &top) return WALK_INTO;
    if (node.getParent()->getType() == NODE4_LINE) {
      endItem(rows_.back(), node);
      return WALK_INTO;
    }
    wstring prefix;
    if (!convert(rows_.back(), prefix)) return WALK_STOP;
    rows_.pop_back();
    rows_.back().arguments.push_back(std::move(prefix));
    return WALK_INTO;
  }

  WalkE beginItem(RowS& current, Node4C& item) {
    if (item.getType() == NODE4_ROOT || item.getType() == NODE4_LINE) return WALK_PAST;
    current.runs.push_back({static_cast<unsigned int>(current.infix.size()), &item});
    switch (item.getType()) {
      case NODE4_OPERATOR:
        if (item.numChildren() == 0) {
          current.infix += item.crefOperator()->getName();
          return WALK_PAST;
        }
        current.infix += Node4C::PREFIX_C;
        current.infix += item.crefOperator()->getName();
        current.infix += Node4C::OPEN_C;
        return WALK_INTO;
      case NODE4_POWER:
        current.infix += Node4C::POWER_C;
        current.infix += Node4C::PREFIX_C;
        return WALK_INTO;
      case NODE4_OPEN:
      case NODE4_AUTO_OPEN:
        current.infix += Node4C::OPEN_C;
        return WALK_PAST;
      case NODE4_CLOSE:
      case NODE4_AUTO_CLOSE:
        current.infix += Node4C::CLOSE_C;
        return WALK_PAST;
      default:
        if (item.isPlaceholder()) {
          error_ = {&item, 0, &item, 0, ERROR_CAUSE_PLACEHOLDER};
          return WALK_STOP;
        }
        current.infix += item.crefText();
        return WALK_PAST;
    }
  }

  static void endItem(RowS& current, Node4C const& item) {
    if (item.getType() == NODE4_POWER) {
      current.infix += current.arguments.front();
    } else {
      current.infix += item.crefOperator()->arrangeArgumentList(current.arguments);
      current.infix += Node4C::CLOSE_C;
    }
    current.infix += Node4C::PREFIX_C;
    current.arguments.clear();
  }

  bool convert(RowS const& current, wstring& prefix) {
    constexpr unsigned int not_set = std::numeric_limits<unsigned int>::max();
    unsigned int first = not_set;
    unsigned int second = not_set;
    ErrorCauseE cause = ERROR_CAUSE_SYNTAX;
    if (Node4C::convertInfixToPrefix(current.infix, prefix, first, second, cause)) return true;
    error_ = ErrorSelectionS();
    error_.cause = cause;
    findPlace(current, first, error_.firstNode, error_.firstIndex);
    findPlace(current, second, error_.secondNode, error_.secondIndex);
    return false;
  }

  /// The node and index that a position of the row's infix text came from; the row itself at the text's end.
  static void findPlace(RowS const& current, unsigned int position, Node4C*& node, unsigned int& index) {
    if (position > current.infix.size()) return;
    if (position == current.infix.size()) {
      node = current.row;
      index = static_cast<unsigned int>(current.row->numChildren());
      return;
    }
    // Of several runs that start here all but the last are empty.
    auto const after = std::upper_bound(current.runs.begin(), current.runs.end(), position,
                                        [](unsigned int p, RunS const& run) { return p < run.start; });
    node = std::prev(after)->node;
    index = position - std::prev(after)->start;
  }

  ErrorSelectionS& error_;
  std::vector<RowS> rows_;
};

bool Node4C::getInfixString(wstring& infix, ErrorSelectionS& error) {
  return RowWriterC(error).writeInfix(*this, infix);
}

bool Node4C::getExpressionString(wstring& prefix, ErrorSelectionS& error) {
  return RowWriterC(error).writePrefix(*this, prefix);
}

PointerTC<algexpr::AlgebraicExpressionC> Node4C::getAlgebraicExpression(ErrorSelectionS* error) {
  ErrorSelectionS unwanted;
  ErrorSelectionS& fault = error ? *error : unwanted;
  fault = ErrorSelectionS();

  Node4C* row = this;
  if (type_ == NODE4_ROOT && numChildren() == 1) row = child(0);
  if (!row || row->type_ != NODE4_LINE) return nullptr;

  wstring prefix;
  if (!row->getExpressionString(prefix, fault)) return nullptr;
  auto expression = algexpr::AlgebraicExpressionC::fromPrefixString(prefix);
  if (!expression) {
    fault = {row->child(0), 0, row, static_cast<unsigned int>(row->numChildren()), ERROR_CAUSE_SYNTAX};
  }
  return expression;
}

DiagnosisS diagnose(Node4C const& root) {
  DiagnosisS diagnosis;
  ErrorSelectionS error;
  // The conversion changes nothing; it only reports the nodes for others to change.
  diagnosis.expression = const_cast<Node4C&>(root).getAlgebraicExpression(&error);
  bool const empty = error.cause == ERROR_CAUSE_PLACEHOLDER && root.child(0)->numChildren() == 1;
  diagnosis.cause = empty ? ERROR_CAUSE_EMPTY : error.cause;
  diagnosis.range = {faultStart({error.firstNode, error.firstIndex}),
                     faultEnd({error.secondNode, error.secondIndex})};
  return diagnosis;
}

}  // namespace zolt::math::ved
