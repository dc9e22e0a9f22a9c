#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

#include "zolt/oss/live_count.h"
#include "zolt/oss/pointer.h"
#include "zolt/oss/serializable.h"
#include "zolt/oss/wstring.h"
#include "zolt/ved/geometry/graphics.h"
#include "zolt/ved/geometry/point.h"
#include "zolt/ved/tree/detail/child_array.h"
#include "zolt/ved/tree/detail/node_state.h"
#include "zolt/ved/tree/node4_type.h"
#include "zolt/ved/tree/node_characters.h"
#include "zolt/ved/tree/place.h"

namespace zolt::math::algexpr {
class AlgebraicExpressionC;
enum NumberDisplayFormatE : int;
}  // namespace zolt::math::algexpr

namespace zolt::math::ved {

class OperatorBC;
enum ErrorCauseE : int;
struct CompositionS;
struct ErrorSelectionS;

/// The one node class of the editable two-dimensional expression.
///
/// A well-formed tree is a NODE4_ROOT with one NODE4_LINE; docs/invariants.md says what nodes may hold, and
/// what the canonical form of a row is, into which `checkTree` brings all rows.
///
/// A node owns its children; one that is in no parent's list belongs to its holder. Indices are not checked.
/// Destruction, like every walk, is safe for any depth of nesting.
///
/// Metrics (position, size, axis) are in surface units, of signed 32 bits, relative to the parent's top-left
/// corner; they are meaningless before layout writes them.
class Node4C : public oss::SerializableABC, public NodeCharactersBC, private oss::LiveCountTC<Node4C> {
 public:
  static constexpr unsigned long max_nb_args_error_cls = 4;
  static constexpr char16_t TheCastableId[] = u"Node4C";

  /// A text without characters; for reading from a stream.
  Node4C();
  /// A detached node with `nbChildren` null slots. With an operator, the text becomes the operator's name.
  Node4C(Node4TypeE type, PointerTC<OperatorBC> const& op, wstring const& text, unsigned long nbChildren);
  explicit Node4C(Node4TypeE type, unsigned long nbChildren = 0);
  ~Node4C() override;
  Node4C(Node4C const&) = delete;
  Node4C& operator=(Node4C const&) = delete;
  static void* operator new(std::size_t size);
  static void operator delete(void* node, std::size_t size);

  /// A detached node of the same kind, operator and text with as many null slots as this one has children.
  Node4C* cloneNode() const;
  /// A detached deep copy; metrics and font depths are not copied.
  Node4C* clone() const;

  // ---- Record -------------------------------------------------------------------------------------------
  Node4TypeE getType() const { return static_cast<Node4TypeE>(type_); }
  /// Changes the kind; any kind but NODE4_OPERATOR drops the operator.
  void setType(Node4TypeE type);
  /// The text, for an immediate change: do not write to the reference after the next normalisation or layout.
  wstring& refText() { return touch(STALE_ALL), text_; }
  wstring const& crefText() const { return text_; }
  wstring getText() const { return text_; }
  unsigned long sizeText() const { return text_.size(); }
  /// Whether it is a text without characters, like those between other items.
  bool isEmptyText() const { return type_ == NODE4_TEXT && text_.empty(); }
  /// Sets the text and makes the node a NODE4_TEXT. Only for nodes without an operator, which it would keep.
  void setText(wstring const& text);
  PointerTC<OperatorBC> getOperator() const;
  OperatorBC const* crefOperator() const { return op_.get(); }
  /// Makes the node a NODE4_OPERATOR of `op`; the text stays.
  void setOperator(PointerTC<OperatorBC> const& op);
  int getPrecedence() const;  ///< the operator's, 0 without one

  // ---- Metrics ------------------------------------------------------------------------------------------
  long getWidth() const { return width_; }
  void setWidth(long width) { width_ = static_cast<std::int32_t>(width); }
  long getHeight() const { return height_; }
  void setHeight(long height) { height_ = static_cast<std::int32_t>(height); }
  /// Distance from the top down to the axis on which a row aligns its items.
  long getMidHeight() const { return midHeight_; }
  void setMidHeight(long midHeight) { midHeight_ = static_cast<std::int32_t>(midHeight); }
  long getDX() const { return state_.stretch ? dx_ + getShift() : dx_; }
  void setDX(long dx) { dx_ = static_cast<std::int32_t>(state_.stretch ? dx - getShift() : dx); }
  long getDY() const { return state_.stretch ? dy_ + state_.stretch->dy : dy_; }
  void setDY(long dy) { dy_ = static_cast<std::int32_t>(state_.stretch ? dy - state_.stretch->dy : dy); }
  unsigned long getFontDepth() const { return fontDepth_; }
  void increaseFontDepth() { ++fontDepth_; }
  void selectFont(GraphicsABC const& graphics) const { graphics.selectFont(fontDepth_); }

  // ---- Children -----------------------------------------------------------------------------------------
  unsigned long numChildren() const { return children_.size(); }
  Node4C* child(unsigned long i) const { return children_[i]; }
  Node4C* getParent() const { return parent_; }
  void setParent(Node4C* parent) { parent_ = parent; }
  /// Puts `node` (may be null) into slot i; the caller then owns the node that was there.
  void setChild(unsigned long i, Node4C* node);
  /// Puts `node` into slot i and destroys the node that was there, unless it is the same node.
  void replaceChild(unsigned long i, Node4C* node);
  /// Inserts `node` before slot i; i == numChildren() appends. When memory runs out, `node` is destroyed.
  void insertChild(unsigned long i, Node4C* node);
  /// Takes the node, which the caller then owns, out of slot i and closes the gap.
  void removeChild(unsigned long i);
  /// Destroys the nodes in slot i, or in `count` slots from slot i on, and closes the gap.
  void deleteChild(unsigned long i);
  void deleteChildren(unsigned long i, unsigned long count);
  /// Takes the node out of slot i, which becomes null; the caller then owns the node. Its parent pointer is
  /// kept, so it must be set to another parent or to null before that parent is destroyed.
  Node4C* cutChild(unsigned long i);
  /// Moves all children of `row` into this node before slot i, in order, and destroys `row`.
  void spliceChildren(unsigned long i, Node4C* row);
  // Whole rows and columns of a table (`OperatorBC::getColumns`); those that are not concerned keep what is
  // known of them.
  /// Makes the table one of `op`, with further columns from number `column` on, whose cells are given row by
  /// row.
  void insertColumns(PointerTC<OperatorBC> const& op, unsigned long column,
                     std::vector<std::unique_ptr<Node4C>> cells);
  /// Makes the table one of `op`, which has so many columns less.
  void deleteColumns(PointerTC<OperatorBC> const& op, unsigned long column, unsigned long count);
  /// Moves rows, or columns, as `std::rotate` does.
  void rotateRows(unsigned long first, unsigned long middle, unsigned long last);
  void rotateColumns(unsigned long first, unsigned long middle, unsigned long last);
  /// This node's index in its parent; 0 without a parent or when the parent does not hold it.
  unsigned long findChildNumber() const;
  // The neighbours in the parent, and the last leaf before and the first leaf after this node in reading
  // order; null when there is none.
  Node4C* goLeft() const;
  Node4C* goRight() const;
  Node4C* goLeftLeaf() const;
  Node4C* goRightLeaf() const;
  /// The sum of all offsets from the root down to this node.
  PointS getAbsolutePosition() const;

  // ---- Normalisation (tree/node4_check.cpp) ---------------------------------------------------------------
  /// Brings every row of this subtree into canonical form, in time linear in what changed since the last
  /// call. The caret and the anchor stay at their characters when texts are merged, and move to the inside of
  /// supplied brackets.
  void checkTree();
  void checkTree(SelectionS& places);
  void checkTree(Node4C*& caretNode, unsigned& caretPos, Node4C*& anchorNode, unsigned& anchorPos);
  /// Moves a place between a supplied bracket and the end of its row to the inside of all such brackets.
  static void stepInside(PlaceS& place);
  /// This node if it is a row, else a new row with this node as its only child; the caller places the row.
  Node4C* inLine();

  // ---- Serialisation (tree/node4_stream.cpp) --------------------------------------------------------------
  static char16_t const* getCastableId() { return TheCastableId; }
  static oss::SerializableABC* create();
  static void registerSerializable();
  oss::SerializableABC const* lookUpBase(char16_t const* id) const override;
  char16_t const* qCastableId() const override;
  void writeObject(PointerTC<oss::ObjectOutputStreamABC>& out) const override;
  /// Rebuilds this default-constructed node from a stream. False on a stream error, an operator name that the
  /// engine's table does not know, or rows nested beyond the limit; the tree is walkable (no null slot) then.
  bool readObject(PointerTC<oss::ObjectInputStreamABC>& in) override;

  // ---- Copies of states (tree/node4_record.cpp) -----------------------------------------------------------
  /// A copy of this subtree, which shares what is unchanged with the copy before and costs what has changed.
  NodeRecordPointerC makeRecord() const;
  /// The subtree that `record` is a copy of, detached, without metrics.
  static std::unique_ptr<Node4C> fromRecord(NodeRecordC const& record);
  /// Makes this tree equal to the one that `state` is a copy of, which the caller keeps alive; costs what is
  /// different. The tree must be normalised before it is laid out.
  void turnInto(NodeRecordC const& state);

  // ---- Layout and drawing (render/) -----------------------------------------------------------------------
  /// Measures and places this node and everything in it; a node without a parent is at font depth 0.
  bool layout(GraphicsABC const& graphics) { return layout(graphics, nullptr); }
  /// Gives the same result, as long as the surface measures as before, by looking only at what has changed
  /// since the last layout and at the rows and constructs around that.
  bool layoutChanged(GraphicsABC const& graphics) { return layoutChanged(graphics, nullptr); }
  /// The same with text that is being composed in the formula (null: none). Where it begins, changes or ends,
  /// its node must be told to `measureAgain`.
  bool layout(GraphicsABC const& graphics, CompositionS const* composition);
  bool layoutChanged(GraphicsABC const& graphics, CompositionS const* composition);
  void measureAgain() { touch(STALE_LAYOUT); }
  void layout_standard(GraphicsABC const& graphics);
  /// How far the boxes of texts reach out of the boxes around them, up to this node's, at most. Looks only at
  /// what has been laid out since the last call.
  long measureReach() const;
  /// Draws the laid-out subtree, as far as the surface's clip box shows it; (x, y) is where the parent is.
  /// `current`, the caret's node, shows no placeholder; with a null `current` none is drawn. `composition` is
  /// that of the layout.
  bool display(GraphicsABC const& graphics, long x, long y, Node4C const* current,
               CompositionS const* composition = nullptr) const;
  void display_standard(GraphicsABC const& graphics, long x, long y, long current) const;

  /// For passes over rows and for the check of their invariants (docs/incremental.md).
  NodeStateS const& crefState() const { return state_; }
  static long maxDim(long a, long b) { return a < b ? b : a; }
  static long minDim(long a, long b) { return b < a ? b : a; }
  static void max1stDim(long& a, long b) { a = maxDim(a, b); }
  static void min1stDim(long& a, long b) { a = minDim(a, b); }

  // ---- Conversion (parser/, convert/) -------------------------------------------------------------------
  /// Infix text to prefix text. On failure false, with the start and end of the offending token in `infix`
  /// (in characters) and the cause; an output that has no meaning for the result is untouched.
  static bool convertInfixToPrefix(wstring const& infix, wstring& prefix, unsigned int& first,
                                   unsigned int& second, ErrorCauseE& cause);
  /// The infix text of this row, as the grammar reads it: constructs are prefix text between grave accents.
  /// False, with `error` filled, on an empty slot or a construct that does not convert.
  bool getInfixString(wstring& infix, ErrorSelectionS& error);
  /// The prefix text of this row. On failure false with `error` filled and `prefix` untouched.
  bool getExpressionString(wstring& prefix, ErrorSelectionS& error);
  /// The expression of a root or a row; null, with `error` (may be null) filled, when there is none.
  PointerTC<algexpr::AlgebraicExpressionC> getAlgebraicExpression(ErrorSelectionS* error);
  /// The tree of an expression; never null and never without a row under the root; the caller owns it. A null
  /// expression gives an empty row. Numbers show `precision` significant digits (0: as written).
  static Node4C* fromAlgebraicExpression(PointerTC<algexpr::AlgebraicExpressionC> const& expression,
                                         unsigned long precision, algexpr::NumberDisplayFormatE format);

 private:
  friend class RowWriterC;
  friend class RowNormaliserC;
  friend class TableLayoutC;
  friend class TreeDrawerC;

  bool isPlaceholder() const;
  bool readNode(PointerTC<oss::ObjectInputStreamABC>& in, unsigned long levelsAbove);
  void adopt(unsigned long i, Node4C* node);
  void touch(std::uint8_t stale);
  void noteNewKind();
  void unmark(std::uint8_t stale) const { state_.stale &= static_cast<std::uint8_t>(~stale); }
  /// The next child from `next` on that has the mark; null when there is none. Moves `next` past it.
  Node4C* findMarked(unsigned long& next, StaleE mark) const;
  void dropIndex();
  void indexTable();
  void noteNewShape();
  bool keepsIndex(unsigned long i, unsigned long count) const;
  long getShift() const {
    return state_.stretch->columns ? state_.stretch->shiftOf(findColumn()) : state_.stretch->dx;
  }
  std::uint32_t findColumn() const;
  void putColumns(unsigned long columns, unsigned long column, std::vector<std::unique_ptr<Node4C>> cells);
  void takeColumns(unsigned long columns, unsigned long column, unsigned long count);
  bool turnColumnsInto(NodeRecordC const& state, NodeDifferenceS const& difference);
  void rotateCells(unsigned long first, unsigned long middle, unsigned long last);
  NodeRecordPointerC recordNode() const;
  bool needsLayout() const;
  struct LayoutPassS;
  bool layoutNode(LayoutPassS const& pass);
  void placeChildren(LayoutPassS const& pass);
  void noteOverflow();
  void noteReach() const;

  // The members that layout and drawing read come first, so that they are near each other in memory.
  ChildArrayC children_;
  std::int16_t type_ = NODE4_TEXT;
  std::uint16_t fontDepth_ = 0;  // rows nest less deep than 16 bits count
  std::int32_t dx_ = 0;
  std::int32_t dy_ = 0;
  std::int32_t width_ = 0;
  std::int32_t height_ = 0;
  std::int32_t midHeight_ = 0;
  NodeStateS state_;
  Node4C* parent_ = nullptr;
  PointerTC<OperatorBC> op_;
  wstring text_;
};

/// The bytes that `writeObject` writes to a `BinaryOutputStreamC`.
oss::bytestring writeBytes(Node4C const& node);

}  // namespace zolt::math::ved
