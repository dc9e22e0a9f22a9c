#include "zolt/field/caret_motion.h"

#include <cstdint>
#include <initializer_list>

#include "zolt/field/detail/word_bounds.h"
#include "zolt/ved/tree/row_view.h"
#include "zolt/ved/tree/table_view.h"
#include "zolt/ved/tree/tree_walk.h"
#include "zolt/ved/view/view_hold.h"

namespace zolt::field {

using namespace detail;
using namespace math::ved;

namespace {

PlaceS leftOf(PlaceS from) {
  if (from.pos == 0) return endOf(previousText(*from.node));
  do {
    --from.pos;
  } while (from.pos > 0 && isContinuation(from.node->crefText()[from.pos]));
  return from;
}

PlaceS rightOf(PlaceS from) {
  wstring const& text = from.node->crefText();
  if (from.pos == text.size()) return startOf(nextText(*from.node));
  do {
    ++from.pos;
  } while (from.pos < text.size() && isContinuation(text[from.pos]));
  return from;
}

PlaceS outLeft(PlaceS from) {
  Node4C const* const item = enclosingItem(*from.node);
  return item ? placeBefore(*item) : PlaceS();
}

PlaceS outRight(PlaceS from) {
  Node4C const* const item = enclosingItem(*from.node);
  return item ? placeAfter(*item) : PlaceS();
}

PlaceS wordLeft(PlaceS from) {
  if (from.pos == 0) {
    Node4C const* const item = from.node->goLeft();
    return item ? placeBefore(*item) : outLeft(from);
  }
  wstring const& text = from.node->crefText();
  while (from.pos > 0 && text[from.pos - 1] == u' ') --from.pos;
  if (from.pos == 0) return from;
  unsigned int const start = wordStart(text, from.pos);
  return {from.node, start < from.pos ? start : from.pos - 1};
}

PlaceS wordRight(PlaceS from) {
  wstring const& text = from.node->crefText();
  if (from.pos == text.size()) {
    Node4C const* const item = from.node->goRight();
    return item ? placeAfter(*item) : outRight(from);
  }
  while (from.pos < text.size() && text[from.pos] == u' ') ++from.pos;
  if (from.pos == text.size()) return from;
  unsigned int const end = wordEnd(text, from.pos);
  return {from.node, end > from.pos ? end : from.pos + 1};
}

/// Whether `text` is in another cell of a table that has `from` in it.
bool isInNextCell(Node4C const& text, TableBlockS const& from) {
  Node4C const& row = *text.getParent();
  return from && row.getParent() == from.table &&
         &row != cellAt(*from.table, from.firstRow, from.firstColumn);
}

/// The next empty slot or cell in one direction, else the place out of the construct.
PlaceS slotFrom(PlaceS from, Node4C const* (*step)(Node4C const&), PlaceS (*out)(PlaceS)) {
  TableBlockS const cell = findCell(from);
  Node4C const* text = from.node;
  do {
    text = step(*text);
    if (text && isInNextCell(*text, cell)) return rowEnd(*text->getParent());
  } while (text && !isSlot(*text));
  return text ? startOf(text) : out(from);
}

long measure(Node4C const& text, unsigned int count, GraphicsABC const& graphics) {
  return graphics.getTextWidth(text.crefText().substr(0, count));
}

/// The boundary between characters nearest to `x`, which is measured from the start of the text. A longer
/// text is never narrower.
unsigned int findBoundary(Node4C const& text, long x, GraphicsABC const& graphics) {
  text.selectFont(graphics);
  unsigned int low = 0;
  auto high = static_cast<unsigned int>(text.sizeText());
  while (low < high) {
    unsigned int const middle = low + (high - low) / 2;
    if (measure(text, middle + 1, graphics) <= x) {
      low = middle + 1;
    } else {
      high = middle;
    }
  }
  if (low < text.sizeText() && measure(text, low + 1, graphics) - x < x - measure(text, low, graphics)) ++low;
  while (low > 0 && low < text.sizeText() && isContinuation(text.crefText()[low])) --low;
  return low;
}

PointS offsetOf(Node4C const& node) { return {node.getDX(), node.getDY()}; }

class VerticalSearchC {
 public:
  VerticalSearchC(PlaceS from, RectangleS caret, bool up, long column)
      : up_(up), column_(column), edge_(up ? caret.top : caret.bottom) {
    axis_ = caret.top + from.node->getMidHeight();
  }

  /// Compares the texts of a subtree with the best place so far. `at` is where its parent is.
  void search(Node4C const& top, PointS at) {
    auto const enter = [&](Node4C const& node) {
      at += offsetOf(node);
      if (node.getType() == NODE4_TEXT) examine(node, at);
    };
    walkTree(top, enter, [&](Node4C const& node) { at -= offsetOf(node); });
  }

  void examine(Node4C const& text, PointS at) {
    long const axis = at.y + text.getMidHeight();
    if (up_ ? axis >= axis_ : axis <= axis_) return;
    std::int64_t const h = outside(column_, at.x, at.x + text.getWidth());
    std::int64_t const v = up_ ? edge_ - (at.y + text.getHeight()) : at.y - edge_;
    std::int64_t const distance = h * h + (v > 0 ? v * v : 0);
    if (best_ && distance >= bestDistance_) return;
    best_ = &text;
    bestLeft_ = at.x;
    bestDistance_ = distance;
  }

  bool hasFound() const { return best_; }
  PlaceS place(GraphicsABC const& graphics) const {
    return {best_, findBoundary(*best_, column_ - bestLeft_, graphics)};
  }

 private:
  static long outside(long at, long low, long high) {
    if (at < low) return low - at;
    return at > high ? at - high : 0;
  }

  bool up_;
  long column_;
  long edge_;
  long axis_ = 0;
  Node4C const* best_ = nullptr;
  long bestLeft_ = 0;
  std::int64_t bestDistance_ = 0;
};

/// The cell above or below the one that `text` is in; null at the edge of the table.
Node4C const* cellBeside(Node4C const& text, bool up) {
  TableBlockS const cell = findCell(startOf(&text));
  if (up ? cell.firstRow == 0 : cell.firstRow + 1 == countTableRows(*cell.table)) return nullptr;
  return cellAt(*cell.table, up ? cell.firstRow - 1 : cell.firstRow + 1, cell.firstColumn);
}

/// The text place above or below `from` that is nearest to `column`. The search begins in the constructs
/// beside the place and continues outwards, with the other rows of each construct around it and the row that
/// this construct is in.
PlaceS findVertical(ViewZNT4C const& view, PlaceS from, CommandE motion, long& column) {
  view.getExpressionSize();  // lays out
  bool const up = motion == COMMAND_UP;
  ViewHoldC const hold(view);
  GraphicsABC const& graphics = view.crefGraphics();
  PointS at = from.node->getAbsolutePosition();
  from.node->selectFont(graphics);
  RectangleS const caret{0, at.y, at.x + measure(*from.node, from.pos, graphics),
                         at.y + from.node->getHeight()};
  if (column == no_column) column = caret.right;

  VerticalSearchC search(from, caret, up, column);
  Node4C const* const left = from.pos == 0 ? from.node->goLeft() : nullptr;
  Node4C const* const right = from.pos == from.node->sizeText() ? from.node->goRight() : nullptr;
  at -= offsetOf(*from.node);
  for (Node4C const* const item : {left, right}) {
    if (item && isConstruct(item->getType())) search.search(*item, at);
  }
  Node4C const* text = from.node;  // in the row at `at`
  while (!search.hasFound()) {
    Node4C const* const item = enclosingItem(*text);
    if (!item) return {};
    at -= offsetOf(*text->getParent());
    if (countColumns(*item) > 0) {
      if (Node4C const* const cell = cellBeside(*text, up)) search.search(*cell, at);
    } else {
      for (unsigned long i = 0; i < item->numChildren(); ++i) {
        if (item->child(i) != text->getParent()) search.search(*item->child(i), at);
      }
    }
    at -= offsetOf(*item);
    text = placeBefore(*item).node;
    if (search.hasFound()) break;
    search.search(*text, at);
    search.search(*placeAfter(*item).node, at);
  }
  return search.place(graphics);
}

PlaceS search(CommandE motion, ViewZNT4C const& view, PlaceS from, long& column) {
  auto const [formulaStart, formulaEnd] = view.getWhole();
  auto const [start, end] = wholeRow(*from.node->getParent());
  switch (motion) {
    case COMMAND_LEFT:
      return leftOf(from);
    case COMMAND_RIGHT:
      return rightOf(from);
    case COMMAND_UP:
    case COMMAND_DOWN:
      return findVertical(view, from, motion, column);
    case COMMAND_WORD_LEFT:
      return wordLeft(from);
    case COMMAND_WORD_RIGHT:
      return wordRight(from);
    case COMMAND_HOME:
      return from != start ? start : formulaStart;
    case COMMAND_END:
      return from != end ? end : formulaEnd;
    case COMMAND_FORMULA_START:
      return formulaStart;
    case COMMAND_FORMULA_END:
      return formulaEnd;
    case COMMAND_NEXT_SLOT:
      return slotFrom(from, nextText, outRight);
    case COMMAND_PREVIOUS_SLOT:
      return slotFrom(from, previousText, outLeft);
    case COMMAND_OUT_LEFT:
      return outLeft(from);
    case COMMAND_OUT_RIGHT:
      return outRight(from);
    default:
      return {};
  }
}

}  // namespace

namespace {

/// Where a motion leads from a cell as a whole: to a cell beside it, or out of the table.
PlaceS stepFromCell(CommandE motion, TableBlockS const& cell) {
  Node4C const& table = *cell.table;
  unsigned long const lastColumn = countColumns(table) - 1;
  unsigned long row = cell.firstRow;
  unsigned long column = cell.firstColumn;
  switch (motion) {
    case COMMAND_LEFT:
    case COMMAND_WORD_LEFT:
      if (column-- == 0) return placeBefore(table);
      break;
    case COMMAND_RIGHT:
    case COMMAND_WORD_RIGHT:
      if (column++ == lastColumn) return placeAfter(table);
      break;
    case COMMAND_UP:
      if (row-- == 0) return placeBefore(table);
      break;
    case COMMAND_DOWN:
      if (++row == countTableRows(table)) return placeAfter(table);
      break;
    case COMMAND_HOME:
      column = 0;
      break;
    case COMMAND_END:
      column = lastColumn;
      break;
    default:
      return {};
  }
  return rowEnd(*cellAt(table, row, column));
}

}  // namespace

PlaceS findSelectionTarget(CommandE motion, ViewZNT4C const& view, SelectionS const& selection,
                           long& column) {
  PlaceS const target = findTarget(motion, view, selection.caret, column);
  TableBlockS const block = findBlock(selection);
  PlaceS const anchor = selection.anchor ? selection.anchor : selection.caret;
  TableBlockS const entered = block ? block : findBlock({anchor, target});
  if (!entered) return target;
  Node4C const* row = selection.caret.node->getParent();
  while (row && row->getParent() != entered.table) row = row->getParent();
  if (!row) return target;  // it comes back into the table
  unsigned long const number = row->findChildNumber();
  unsigned long const columns = countColumns(*entered.table);
  PlaceS const stepped = stepFromCell(
      motion, {entered.table, number / columns, number / columns, number % columns, number % columns});
  return stepped == selection.caret ? PlaceS() : stepped ? stepped : target;
}

PlaceS findTarget(CommandE motion, ViewZNT4C const& view, PlaceS from, long& column) {
  PlaceS const target = search(motion, view, from, column);
  return target == from ? PlaceS() : target;
}

}  // namespace zolt::field
