#include "zolt/ved/view/view.h"

namespace zolt::math::ved {

bool ViewZNT4C::moveCaretLeft() {
  PlaceS& caret = selection_.caret;
  if (caret.pos > 0) {
    --caret.pos;
    return true;
  }
  Node4C const* leaf = caret.node->goLeftLeaf();
  while (leaf && leaf->getType() != NODE4_TEXT) leaf = leaf->goLeftLeaf();
  if (leaf) caret = endOf(leaf);
  return leaf != nullptr;
}

bool ViewZNT4C::moveCaretRight() {
  PlaceS& caret = selection_.caret;
  if (caret.pos < caret.node->sizeText()) {
    ++caret.pos;
    return true;
  }
  Node4C const* leaf = caret.node->goRightLeaf();
  while (leaf && leaf->getType() != NODE4_TEXT) leaf = leaf->goRightLeaf();
  if (leaf) caret = startOf(leaf);
  return leaf != nullptr;
}

bool ViewZNT4C::doLeft() {
  bool const dropped = isSelected();
  if (dropped) selection_.anchor = {};
  bool const moved = moveCaretLeft();
  return (dropped || moved) && needRedraw();
}

bool ViewZNT4C::doRight() {
  bool const dropped = isSelected();
  if (dropped) selection_.anchor = {};
  bool const moved = moveCaretRight();
  return (dropped || moved) && needRedraw();
}

bool ViewZNT4C::doSelLeft() {
  startSelection();
  return moveCaretLeft() && needRedraw();
}

bool ViewZNT4C::doSelRight() {
  startSelection();
  return moveCaretRight() && needRedraw();
}

void ViewZNT4C::startSelection() {
  if (!isSelected()) selection_.anchor = selection_.caret;
}

// The host does vertical movement, since it knows the geometry that a person sees.
bool ViewZNT4C::doUp() { return false; }

bool ViewZNT4C::doDown() { return false; }

bool ViewZNT4C::doSelUp() { return false; }

bool ViewZNT4C::doSelDown() { return false; }

}  // namespace zolt::math::ved
