// Internal to the edit history: a tree as a compact byte string.
#pragma once

#include <memory>
#include <vector>

#include "zolt/oss/pointer.h"
#include "zolt/oss/wstring.h"
#include "zolt/ved/operators/operator.h"

namespace zolt::math::ved {

using oss::PointerTC;

class EditBackupC;
class Node4C;

/// Where caret and anchor stand. The anchor node is null when nothing is selected.
struct EditPlacesS {
  Node4C const* caretNode = nullptr;
  unsigned int caretPos = 0;
  Node4C const* anchorNode = nullptr;
  unsigned int anchorPos = 0;
};

/// Writes trees and places as bytes in which a local edit changes few bytes (no counts stand in front of what
/// they count), and reads them back. Operators are kept by identity: what the operator table forgets in
/// between is still brought back.
class TreeRecorderC {
 public:
  oss::bytestring recordTree(Node4C const& root);
  static oss::bytestring recordPlaces(EditPlacesS const& places);

  /// The recorded tree with caret and anchor in it.
  PointerTC<EditBackupC> restore(oss::bytestring const& tree, oss::bytestring const& places) const;

  void clear() { operators_.clear(); }

 private:
  void appendNode(oss::bytestring& bytes, Node4C const& node);
  std::size_t findOperator(Node4C const& node);
  std::unique_ptr<Node4C> restoreTree(oss::bytestring const& bytes) const;

  std::vector<PointerTC<OperatorBC>> operators_;
};

}  // namespace zolt::math::ved
