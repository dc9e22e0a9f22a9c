#include "zolt/ved/view/detail/tree_record.h"

#include <algorithm>

#include "zolt/ved/tree/node4.h"
#include "zolt/ved/view/detail/varint.h"
#include "zolt/ved/view/edit_backup.h"

namespace zolt::math::ved {

namespace {

using oss::bytestring;

// A node starts with its kind in the low four bits and what follows in the next ones: the index of its
// operator (constructs only), its text, its children up to the end mark.
constexpr unsigned char kind_mask = 0x0F;
constexpr unsigned char has_text = 0x10;
constexpr unsigned char has_children = 0x20;
constexpr unsigned char end_of_children = 0xFF;

void appendPath(bytestring& bytes, Node4C const* node) {
  std::vector<unsigned long> path;
  for (; node->getParent(); node = node->getParent()) path.push_back(node->findChildNumber());
  appendVarint(bytes, path.size());
  for (auto i = path.rbegin(); i != path.rend(); ++i) appendVarint(bytes, *i);
}

Node4C* followPath(bytestring const& bytes, std::size_t& position, Node4C* node) {
  for (std::size_t left = readVarint(bytes, position); left > 0; --left) {
    node = node->child(readVarint(bytes, position));
  }
  return node;
}

}  // namespace

bytestring TreeRecorderC::recordTree(Node4C const& root) {
  bytestring bytes;
  Node4C const* node = &root;
  appendNode(bytes, *node);
  unsigned long next = 0;
  for (;;) {
    if (next < node->numChildren()) {
      node = node->child(next);
      appendNode(bytes, *node);
      next = 0;
    } else {
      if (next > 0) bytes += end_of_children;
      if (node == &root) return bytes;
      next = node->findChildNumber() + 1;
      node = node->getParent();
    }
  }
}

void TreeRecorderC::appendNode(bytestring& bytes, Node4C const& node) {
  wstring const& text = node.crefText();
  bool const construct = node.getType() == NODE4_OPERATOR;
  auto head = static_cast<unsigned char>(node.getType());
  if (!construct && !text.empty()) head |= has_text;
  if (node.numChildren() > 0) head |= has_children;
  bytes += head;
  if (construct) appendVarint(bytes, findOperator(node));
  if (head & has_text) {
    appendVarint(bytes, text.size());
    for (char16_t c : text) appendVarint(bytes, c);
  }
}

std::size_t TreeRecorderC::findOperator(Node4C const& node) {
  auto const found = std::find_if(operators_.begin(), operators_.end(),
                                  [&](auto const& op) { return op.get() == node.crefOperator(); });
  if (found == operators_.end()) {
    operators_.push_back(node.getOperator());
    return operators_.size() - 1;
  }
  return static_cast<std::size_t>(found - operators_.begin());
}

bytestring TreeRecorderC::recordPlaces(EditPlacesS const& places) {
  bytestring bytes;
  appendVarint(bytes, places.caretPos);
  appendPath(bytes, places.caretNode);
  if (places.anchorNode) {
    appendVarint(bytes, places.anchorPos);
    appendPath(bytes, places.anchorNode);
  }
  return bytes;
}

std::unique_ptr<Node4C> TreeRecorderC::restoreTree(bytestring const& bytes) const {
  std::unique_ptr<Node4C> root;
  Node4C* parent = nullptr;
  for (std::size_t position = 0; position < bytes.size();) {
    unsigned char const head = bytes[position++];
    if (head == end_of_children) {
      parent = parent->getParent();
      continue;
    }
    auto const type = static_cast<Node4TypeE>(head & kind_mask);
    PointerTC<OperatorBC> op;
    if (type == NODE4_OPERATOR) op = operators_[readVarint(bytes, position)];
    wstring text;
    if (head & has_text) {
      text.resize(readVarint(bytes, position));
      for (char16_t& c : text) c = static_cast<char16_t>(readVarint(bytes, position));
    }
    auto node = std::make_unique<Node4C>(type, op, text, 0);
    Node4C* const current = node.get();
    if (parent) {
      parent->insertChild(parent->numChildren(), node.release());
    } else {
      root = std::move(node);
    }
    if (head & has_children) parent = current;
  }
  return root;
}

PointerTC<EditBackupC> TreeRecorderC::restore(bytestring const& tree, bytestring const& places) const {
  std::unique_ptr<Node4C> root = restoreTree(tree);
  std::size_t position = 0;
  auto const caretPos = readVarint(places, position);
  Node4C* const caretNode = followPath(places, position, root.get());
  unsigned long anchorPos = 0;
  Node4C* anchorNode = nullptr;
  if (position < places.size()) {
    anchorPos = readVarint(places, position);
    anchorNode = followPath(places, position, root.get());
  }
  return new EditBackupC(false, root.release(), caretNode, caretPos, anchorNode, anchorPos);
}

}  // namespace zolt::math::ved
