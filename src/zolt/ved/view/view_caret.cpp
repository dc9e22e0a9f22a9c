#include "zolt/ved/view/view.h"

namespace zolt::math::ved {

bool ViewZNT4C::moveCaretLeft() {
  if (caretPos_ > 0) {
    --caretPos_;
    return true;
  }
  Node4C* leaf = caretNode_->goLeftLeaf();
  while (leaf && leaf->getType() != NODE4_TEXT) leaf = leaf->goLeftLeaf();
  if (!leaf) return false;
  caretNode_ = leaf;
  caretPos_ = static_cast<unsigned int>(leaf->sizeText());
  return true;
}

bool ViewZNT4C::moveCaretRight() {
  if (caretPos_ < caretNode_->sizeText()) {
    ++caretPos_;
    return true;
  }
  Node4C* leaf = caretNode_->goRightLeaf();
  while (leaf && leaf->getType() != NODE4_TEXT) leaf = leaf->goRightLeaf();
  if (!leaf) return false;
  caretNode_ = leaf;
  caretPos_ = 0;
  return true;
}

bool ViewZNT4C::doLeft() {
  bool const dropped = isSelected();
  if (dropped) anchorNode_ = nullptr;
  bool const moved = moveCaretLeft();
  return (dropped || moved) && needRedraw();
}

bool ViewZNT4C::doRight() {
  bool const dropped = isSelected();
  if (dropped) anchorNode_ = nullptr;
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
  if (isSelected()) return;
  anchorNode_ = caretNode_;
  anchorPos_ = caretPos_;
}

// Vertical movement is left to the host, which knows the geometry that a person sees.
bool ViewZNT4C::doUp() { return false; }

bool ViewZNT4C::doDown() { return false; }

bool ViewZNT4C::doSelUp() { return false; }

bool ViewZNT4C::doSelDown() { return false; }

}  // namespace zolt::math::ved
