#include <algorithm>
#include <cstdint>
#include <limits>

#include "zolt/ved/operators/operator.h"
#include "zolt/ved/render/composition.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/row_view.h"

namespace zolt::math::ved {

/// Draws a tree, or the part of it that is in the clip box of the surface.
class TreeDrawerC {
 public:
  TreeDrawerC(GraphicsABC const& graphics, Node4C const* current, CompositionS const* composition)
      : graphics_(graphics), current_(current), composition_(composition) {}

  void showOnly(RectangleS const& clip);
  /// (x, y) is where the parent of `node` is; `role` is that of a text.
  void drawIfSeen(Node4C const& node, long x, long y, TextRoleE role, Node4C const* next = nullptr) const {
    if (!clips_ || isSeen(node, x, y)) draw(node, x, y, role, next);
  }

 private:
  // Beyond every place of a formula, with room for margins before the ends of `long`.
  static constexpr long far_out = std::numeric_limits<std::int32_t>::max() / 2;

  bool isSeen(Node4C const& node, long x, long y) const;
  /// `next` is the item after an opening bracket.
  void draw(Node4C const& node, long x, long y, TextRoleE role, Node4C const* next) const;
  void drawChildren(Node4C const& node, long x, long y) const;
  void drawSeenItems(Node4C const& row, long x, long y) const;
  void drawSeenCells(Node4C const& table, long x, long y) const;
  static TextRoleE findFirstRole(Node4C const& row);
  static TextRoleE findRoleAfter(Node4C const& item);

  GraphicsABC const& graphics_;
  Node4C const* current_;
  CompositionS const* composition_;  // null: none
  bool clips_ = false;
  RectangleS seen_{-far_out, -far_out, far_out, far_out};  // nodes with boxes outside are not visible
};

void TreeDrawerC::showOnly(RectangleS const& clip) {
  // A sign may begin four units left of its construct, a bracket at the end of a row may end a gap to the
  // right of it, and the brackets of a derivative overhang it. The rest of the margin is for surfaces that
  // draw beyond the box.
  long margin = 4 + graphics_.getTextHeight({});
  for (long i = 0; i < 4; ++i) margin += graphics_.getMetric(i);
  clips_ = true;
  seen_.left = std::max(seen_.left, clip.left) - margin;
  seen_.top = std::max(seen_.top, clip.top) - margin;
  seen_.right = std::min(seen_.right, clip.right) + margin;
  seen_.bottom = std::min(seen_.bottom, clip.bottom) + margin;
}

bool TreeDrawerC::isSeen(Node4C const& node, long x, long y) const {
  long const left = x + node.getDX();
  long const top = y + node.getDY();
  if (left + node.width_ < seen_.left || left > seen_.right) return false;
  return node.state_.overflows || (top + node.height_ >= seen_.top && top <= seen_.bottom);
}

void TreeDrawerC::draw(Node4C const& node, long x, long y, TextRoleE role, Node4C const* next) const {
  long const left = x + node.getDX();
  long const top = y + node.getDY();
  if (!node.children_.empty()) drawChildren(node, left, top);
  node.selectFont(graphics_);
  switch (node.type_) {
    case NODE4_ROOT:
    case NODE4_LINE:
    case NODE4_POWER:
      break;
    case NODE4_OPERATOR:
      node.op_->displayNode4(const_cast<Node4C*>(&node), graphics_, left, top, node.width_, node.height_,
                             node.midHeight_);
      break;
    case NODE4_OPEN:
    case NODE4_AUTO_OPEN:
      if (next && next->type_ == NODE4_TEXT) graphics_.beginsWith(next->text_);
      graphics_.drawOpenBracket(left, top, node.height_, node.type_ == NODE4_AUTO_OPEN);
      break;
    case NODE4_CLOSE:
    case NODE4_AUTO_CLOSE:
      graphics_.drawCloseBracket(left + node.width_, top, node.height_, node.type_ == NODE4_AUTO_CLOSE);
      break;
    default:
      if (composition_ && composition_->isIn(node)) {
        drawShown(node, role, *composition_, left, top, graphics_);
      } else if (current_ && current_ != &node && node.isPlaceholder()) {
        bool const isExponent = role == TEXT_STARTS_EXPONENT;
        graphics_.drawTextAs(isExponent ? TEXT_IS_EXPONENT_SLOT : TEXT_IS_SLOT, Node4C::PLACEHOLDER_STR, left,
                             top);
      } else {
        graphics_.drawTextAs(role, node.text_, left, top);
      }
  }
}

void TreeDrawerC::drawChildren(Node4C const& node, long x, long y) const {
  if (clips_ && node.type_ == NODE4_LINE) return drawSeenItems(node, x, y);
  if (clips_ && node.state_.index) return drawSeenCells(node, x, y);
  TextRoleE role = findFirstRole(node);
  unsigned long const count = node.numChildren();
  for (unsigned long i = 0; i < count; ++i) {
    Node4C const& child = *node.child(i);
    drawIfSeen(child, x, y, role, i + 1 < count ? node.child(i + 1) : nullptr);
    role = findRoleAfter(child);
  }
}

void TreeDrawerC::drawSeenItems(Node4C const& row, long x, long y) const {
  unsigned long const count = row.numChildren();
  // Items follow one another from left to right.
  unsigned long i = 0;
  for (unsigned long end = count; i < end;) {
    unsigned long const middle = i + (end - i) / 2;
    if (x + rightEnd(row, middle) < seen_.left) {
      i = middle + 1;
    } else {
      end = middle;
    }
  }
  auto const isExponent = [&](unsigned long k) { return k < count && row.child(k)->type_ == NODE4_POWER; };
  if (i > 0 && isExponent(i)) --i;
  for (; i < count && x + leftEnd(row, i) <= seen_.right; ++i) {
    // A surface may place an exponent by the ink of the text that it is on, so that text is not left out.
    if (!isExponent(i + 1) && !isSeen(*row.child(i), x, y)) continue;
    draw(*row.child(i), x, y, i == 0 ? findFirstRole(row) : findRoleAfter(*row.child(i - 1)),
         i + 1 < count ? row.child(i + 1) : nullptr);
  }
}

void TreeDrawerC::drawSeenCells(Node4C const& table, long x, long y) const {
  RowIndexC const& index = *table.state_.index;
  unsigned long const columns = table.op_->getColumns();
  auto const [firstColumn, endColumn] = index.findColumns(seen_.left - x, seen_.right - x);
  auto rows = index.findRows(seen_.top - y, seen_.bottom - y);
  if (table.state_.overflows) rows = {0, index.size()};
  for (std::size_t row = rows.first; row < rows.second; ++row) {
    for (std::size_t column = firstColumn; column < endColumn; ++column) {
      drawIfSeen(*table.child(row * columns + column), x, y, TEXT_STARTS_ROW);
    }
  }
}

/// The role of the first item of a row, if it is a text.
TextRoleE TreeDrawerC::findFirstRole(Node4C const& row) {
  if (!row.parent_ || row.parent_->type_ != NODE4_POWER) return TEXT_STARTS_ROW;
  Node4C const& first = *row.child(0);
  if (first.getDY() + first.height_ != row.height_) return TEXT_STARTS_ROW;
  bool const isUnit = row.numChildren() == 1 && (first.text_ == u"o" || first.text_ == u"r");
  return isUnit ? TEXT_IS_UNIT : TEXT_STARTS_EXPONENT;
}

/// The role of a text after `item`.
TextRoleE TreeDrawerC::findRoleAfter(Node4C const& item) {
  if (isClosingBracket(item.getType())) return TEXT_FOLLOWS_BRACKET;
  return isOpeningBracket(item.getType()) ? TEXT_STARTS_ROW : TEXT_FOLLOWS_ITEM;
}

bool Node4C::display(GraphicsABC const& graphics, long x, long y, Node4C const* current,
                     CompositionS const* composition) const {
  TreeDrawerC drawer(graphics, current, composition);
  if (auto const clip = graphics.getClipBox()) {
    selectFont(graphics);
    drawer.showOnly(*clip);
  }
  drawer.drawIfSeen(*this, x, y, TEXT_STARTS_ROW);
  return true;
}

void Node4C::display_standard(GraphicsABC const&, long, long, long) const {}

}  // namespace zolt::math::ved
