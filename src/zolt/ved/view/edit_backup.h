#pragma once

#include <memory>

#include "zolt/oss/ref_counted.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved {

/// A snapshot of a tree with its caret and anchor, with which a rejected edit is undone.
class EditBackupC : public oss::RefCountedBC {
 public:
  /// `deep`: keeps a deep copy of `root`, with caret and anchor found in the copy by their paths. Otherwise
  /// takes over the pointers as they are. Either way the snapshot owns its root until `releaseRoot`.
  EditBackupC(bool deep, Node4C* root, Node4C* caretNode, unsigned long caretPos, Node4C* anchorNode,
              unsigned long anchorPos);
  ~EditBackupC() override;
  EditBackupC(EditBackupC const&) = delete;
  EditBackupC& operator=(EditBackupC const&) = delete;

  Node4C* getCaretNode() const;
  unsigned int getCaretPos() const { return selection_.caret.pos; }
  /// Null when there was no anchor.
  Node4C* getAnchorNode() const;
  unsigned int getAnchorPos() const { return selection_.anchor.pos; }
  SelectionS const& getSelection() const { return selection_; }
  Node4C const* crefRoot() const { return root_.get(); }
  /// Hands the tree over to the caller.
  Node4C* releaseRoot();

 private:
  std::unique_ptr<Node4C> root_;
  SelectionS selection_;
};

}  // namespace zolt::math::ved
