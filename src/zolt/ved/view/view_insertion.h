#pragma once

#include <memory>

#include "zolt/oss/wstring.h"
#include "zolt/ved/tree/place.h"

namespace zolt::math::ved {

using oss::wstring;

class Node4C;
class OperatorListC;
class ViewZNT4C;

/// What an operator may do to the view while it inserts itself: read and place the caret and the anchor, cut
/// or delete the selection, and split the text at the caret. It is valid only inside
/// `OperatorBC::runOperator`; the view normalises the tree afterwards.
class ViewInsertionC {
 public:
  explicit ViewInsertionC(ViewZNT4C& view) : view_(view) {}

  OperatorListC const& crefOperatorList() const;

  PlaceS getCaret() const;
  /// Caret and anchor; the anchor is no place when nothing is selected.
  SelectionS getSelection() const;
  /// The caret's text, which may be changed.
  Node4C& refCaretNode();
  void placeCaret(PlaceS place);
  /// A place without a node drops the selection.
  void placeAnchor(PlaceS place);

  /// The selection as a new row; null when nothing is selected.
  std::unique_ptr<Node4C> copySelection() const;
  /// The selection as a new row, taken out of the tree; null when nothing is selected.
  std::unique_ptr<Node4C> cutSelection();
  /// False when the view refuses to change.
  bool deleteSelection();
  /// Splits the caret's text in two at the caret. The caret stays at the end of the left part or, with
  /// `toRight`, moves to the start of the right part. Either part may be empty.
  void splitText(bool toRight);
  /// Writes `text` at the caret and moves the caret past it.
  void insertText(wstring const& text);
  /// Inserts `node` into the caret's row just before the caret's text; the tree then owns it.
  void insertBeforeCaret(std::unique_ptr<Node4C> node);
  /// Inserts `construct` at the caret and puts the caret at the end of its row number `row`.
  void insertConstruct(std::unique_ptr<Node4C> construct, unsigned long row);
  /// The innermost construct or exponent with the caret in one of its rows, to be changed: a row may be
  /// added (`Node4C::insertChild`) or destroyed, the operator replaced by another variant with as many rows
  /// (`Node4C::setOperator`). Null in the formula's own row. A caret in what is destroyed must be placed
  /// elsewhere before.
  Node4C* refEnclosing();
  /// The innermost construct of that operator's name around the caret; null when there is none.
  Node4C* refEnclosing(wstring const& name);
  /// The number of the construct's row that the caret is in, however deep.
  unsigned long enclosingRow(Node4C const& construct) const;
  /// Brings `row` (in the tree or detached) into canonical form, keeping the view's caret and anchor.
  void checkRow(Node4C& row);
  /// Whether the limit of nesting allows one more row at the caret. The three members ask for an empty row,
  /// for a row that takes the selection (if any), and for a row that may take everything in the caret's row.
  /// Ask before any change.
  bool mayNest() const;
  bool mayNestSelection() const;
  bool mayNestRow() const;

 private:
  ViewZNT4C& view_;
};

}  // namespace zolt::math::ved
