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
/// or delete the selection, split the text at the caret. Only valid inside `OperatorBC::runOperator`; the
/// view normalises the tree afterwards.
class ViewInsertionC {
 public:
  explicit ViewInsertionC(ViewZNT4C& view) : view_(view) {}

  OperatorListC const& crefOperatorList() const;

  PlaceS getCaret() const;
  /// The caret's text, to be changed.
  Node4C& refCaretNode();
  void placeCaret(PlaceS place);
  /// A place without a node ends the selection.
  void placeAnchor(PlaceS place);

  /// The selection as a new row; null when nothing is selected.
  std::unique_ptr<Node4C> copySelection() const;
  /// The same, taken out of the tree.
  std::unique_ptr<Node4C> cutSelection();
  /// False when the view refuses to change.
  bool deleteSelection();
  /// Splits the caret's text in two at the caret, which stays at the end of the left part or (`toRight`) goes
  /// to the start of the right one. Either part may be empty.
  void splitText(bool toRight);
  /// Writes `text` at the caret and moves the caret past it.
  void insertText(wstring const& text);
  /// Inserts `node` into the caret's row just before the caret's text, and owns it from then on.
  void insertBeforeCaret(std::unique_ptr<Node4C> node);
  /// Brings `row` (in the tree or detached) into canonical form, keeping the view's caret and anchor.
  void checkRow(Node4C& row);
  /// Whether one more row may be nested at the caret's place: an empty one, one that the selection (if any)
  /// goes into, one that everything in the caret's row may go into. Ask before anything is changed.
  bool mayNest() const;
  bool mayNestSelection() const;
  bool mayNestRow() const;

 private:
  ViewZNT4C& view_;
};

}  // namespace zolt::math::ved
