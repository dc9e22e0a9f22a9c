#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/ved/convert/diagnosis.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/parser/prefix_part.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/tree_walk.h"

namespace zolt::math::ved {

/// Writes a row, and the rows inside it, as text. A row starts when a construct or an exponent needs its
/// prefix text, and hands that text to the row around it when it ends.
class RowWriterC {
 public:
  /// Unless `parts` is null, `writePrefix` leaves there where each node of the prefix text came from.
  explicit RowWriterC(ErrorSelectionS& error, std::vector<SelectionS>* parts = nullptr)
      : error_(error), parts_(parts) {}

  /// The infix text of `row`.
  bool writeInfix(Node4C& row, wstring& infix) {
    if (!writeItems(row)) return false;
    infix = std::move(rows_.back().infix);
    return true;
  }

  /// The prefix text of `row`.
  bool writePrefix(Node4C& row, wstring& prefix) {
    if (!writeItems(row)) return false;
    return convert(rows_.back(), prefix, parts_);
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
    std::vector<std::vector<SelectionS>> argumentParts;
    std::vector<std::vector<SelectionS>> runParts;  // of constructs' prefix texts, as far as runs have any
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
      if (parts_) collectParts(rows_.back(), node);
      endItem(rows_.back(), node);
      return WALK_INTO;
    }
    wstring prefix;
    std::vector<SelectionS> parts;
    if (!convert(rows_.back(), prefix, parts_ ? &parts : nullptr)) return WALK_STOP;
    rows_.pop_back();
    rows_.back().arguments.push_back(std::move(prefix));
    if (parts_) rows_.back().argumentParts.push_back(std::move(parts));
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

  /// How many nodes a prefix text has: one for each run of characters that are no brackets or commas.
  template <class TakeT>
  static void forEachName(wstring const& prefix, TakeT const& take) {
    constexpr char16_t const* between = u"(),";
    for (std::size_t at = prefix.find_first_not_of(between); at != prefix.npos;) {
      std::size_t const end = std::min(prefix.find_first_of(between, at), prefix.size());
      take(prefix.substr(at, end - at));
      at = prefix.find_first_not_of(between, end);
    }
  }

  /// Which rows of a construct the nodes of its prefix text came from. A construct may write its rows in
  /// another order and names of its own between them, so it is asked where it writes some other texts.
  static void collectParts(RowS& current, Node4C const& item) {
    current.runParts.resize(current.runs.size());
    std::vector<SelectionS>& parts = current.runParts.back();
    SelectionS const whole{placeBefore(item), placeAfter(item)};
    std::vector<std::vector<SelectionS>> rows = std::exchange(current.argumentParts, {});
    if (item.getType() == NODE4_POWER) {
      parts = std::move(rows.front());
      return;
    }
    std::vector<wstring> marks;
    constexpr char16_t first_mark = 0xE000;
    for (std::size_t i = 0; i < rows.size(); ++i) {
      marks.push_back(wstring(2, static_cast<char16_t>(first_mark + i % 0x1000)));
      marks.back()[1] = static_cast<char16_t>(first_mark + i / 0x1000);
    }
    std::size_t found = 0;
    parts.push_back(whole);
    forEachName(item.crefOperator()->arrangeArgumentList(marks), [&](wstring const& name) {
      auto const mark = std::find(marks.begin(), marks.end(), name);
      if (mark == marks.end()) {
        parts.push_back(whole);
        return;
      }
      auto const& row = rows[static_cast<std::size_t>(mark - marks.begin())];
      parts.insert(parts.end(), row.begin(), row.end());
      ++found;
    });
    if (found == rows.size()) return;
    // It reads its rows; then it is one part as a whole.
    parts.assign(1, whole);
    forEachName(item.crefOperator()->arrangeArgumentList(current.arguments),
                [&](wstring const&) { parts.push_back(whole); });
  }

  /// Where the nodes of the row's prefix text came from.
  static void placeParts(RowS const& current, std::vector<PrefixPartS> const& written,
                         std::vector<SelectionS>& parts) {
    for (PrefixPartS const& part : written) {
      bool const isFinished = !part.isFunction && current.infix[part.start] == Node4C::PREFIX_C;
      if (!isFinished) {
        parts.push_back(selectionOf(current, part.start, part.end));
        continue;
      }
      auto const run = static_cast<std::size_t>(findRun(current, part.start) - current.runs.begin());
      if (run < current.runParts.size() && !current.runParts[run].empty()) {
        auto const& inside = current.runParts[run];
        parts.insert(parts.end(), inside.begin(), inside.end());
        continue;
      }
      SelectionS const whole = selectionOf(current, part.start, part.end);
      forEachName(current.infix.substr(part.start + 1, part.end - part.start - 2),
                  [&](wstring const&) { parts.push_back(whole); });
    }
  }
  static SelectionS selectionOf(RowS const& current, unsigned int start, unsigned int end) {
    ErrorSelectionS places;
    findPlace(current, start, places.firstNode, places.firstIndex);
    findPlace(current, end, places.secondNode, places.secondIndex);
    return {faultStart({places.firstNode, places.firstIndex}),
            faultEnd({places.secondNode, places.secondIndex})};
  }

  bool convert(RowS const& current, wstring& prefix, std::vector<SelectionS>* parts) {
    constexpr unsigned int not_set = std::numeric_limits<unsigned int>::max();
    unsigned int first = not_set;
    unsigned int second = not_set;
    ErrorCauseE cause = ERROR_CAUSE_SYNTAX;
    std::vector<PrefixPartS> written;
    bool const isConverted =
        convertInfixToParts(current.infix, prefix, first, second, cause, parts ? &written : nullptr);
    if (isConverted && parts) placeParts(current, written, *parts);
    if (isConverted) return true;
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
    auto const run = findRun(current, position);
    node = run->node;
    index = position - run->start;
  }
  static std::vector<RunS>::const_iterator findRun(RowS const& current, unsigned int position) {
    // Of several runs that start here all but the last are empty.
    return std::prev(std::upper_bound(current.runs.begin(), current.runs.end(), position,
                                      [](unsigned int p, RunS const& run) { return p < run.start; }));
  }

  ErrorSelectionS& error_;
  std::vector<SelectionS>* parts_;
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

std::vector<SelectionS> findParts(Node4C const& root) {
  ErrorSelectionS error;
  std::vector<SelectionS> parts;
  wstring prefix;
  bool const isExpression =
      RowWriterC(error, &parts).writePrefix(*const_cast<Node4C&>(root).child(0), prefix);
  return isExpression ? parts : std::vector<SelectionS>();
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
