#include "zolt/ved/view/edit_backup.h"

#include "zolt/ved/tree/tree_path.h"

namespace zolt::math::ved {

EditBackupC::EditBackupC(bool deep, Node4C* root, Node4C* caretNode, unsigned long caretPos,
                         Node4C* anchorNode, unsigned long anchorPos)
    : root_(deep ? root->clone() : root),
      selection_{{anchorNode, static_cast<unsigned int>(anchorPos)},
                 {caretNode, static_cast<unsigned int>(caretPos)}} {
  if (deep) selection_ = selectionAt(*root_, pathOf(selection_));
}

EditBackupC::~EditBackupC() = default;

Node4C* EditBackupC::getCaretNode() const { return const_cast<Node4C*>(selection_.caret.node); }

Node4C* EditBackupC::getAnchorNode() const { return const_cast<Node4C*>(selection_.anchor.node); }

Node4C* EditBackupC::releaseRoot() { return root_.release(); }

}  // namespace zolt::math::ved
