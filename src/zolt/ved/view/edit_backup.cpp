#include "zolt/ved/view/edit_backup.h"

#include <vector>

namespace zolt::math::ved {

namespace {

/// The node of the tree `copy` that stands where `node` stands in its own tree; null for null.
Node4C* findCounterpart(Node4C const* node, Node4C* copy) {
  if (!node) return nullptr;
  std::vector<unsigned long> path;
  for (; node->getParent(); node = node->getParent()) path.push_back(node->findChildNumber());
  for (auto i = path.rbegin(); i != path.rend(); ++i) copy = copy->child(*i);
  return copy;
}

}  // namespace

EditBackupC::EditBackupC(bool deep, Node4C* root, Node4C* caretNode, unsigned long caretPos,
                         Node4C* anchorNode, unsigned long anchorPos)
    : root_(deep ? root->clone() : root),
      caretNode_(deep ? findCounterpart(caretNode, root_.get()) : caretNode),
      caretPos_(static_cast<unsigned int>(caretPos)),
      anchorNode_(deep ? findCounterpart(anchorNode, root_.get()) : anchorNode),
      anchorPos_(static_cast<unsigned int>(anchorPos)) {}

EditBackupC::~EditBackupC() = default;

Node4C* EditBackupC::releaseRoot() { return root_.release(); }

}  // namespace zolt::math::ved
