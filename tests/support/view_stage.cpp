#include "tests/support/view_stage.h"

#include <memory>
#include <tuple>
#include <vector>

#include "tests/support/cases.h"
#include "tests/support/operators.h"
#include "zolt/oss/binary_stream.h"
#include "zolt/oss/binary_string_stream.h"
#include "zolt/ved/tree/tree_notation.h"
#include "zolt/ved/tree/validate_tree.h"

namespace zolt::tests {

using namespace math::ved;

namespace {

/// The node of `tree` at the place where `node` stands in its own tree.
Node4C const* findCounterpart(Node4C const& tree, Node4C const* node) {
  if (!node) return nullptr;
  std::vector<unsigned long> path;
  for (; node->getParent(); node = node->getParent()) path.push_back(node->findChildNumber());
  Node4C const* found = &tree;
  for (auto i = path.rbegin(); i != path.rend(); ++i) found = found->child(*i);
  return found;
}

/// Whether two trees of one shape have the same metrics everywhere.
bool isLaidOutAlike(Node4C const& a, Node4C const& b) {
  auto const metrics = [](Node4C const& node) {
    return std::make_tuple(node.getDX(), node.getDY(), node.getWidth(), node.getHeight(), node.getMidHeight(),
                           node.getFontDepth());
  };
  if (metrics(a) != metrics(b) || a.numChildren() != b.numChildren()) return false;
  for (unsigned long i = 0; i < a.numChildren(); ++i) {
    if (!isLaidOutAlike(*a.child(i), *b.child(i))) return false;
  }
  return true;
}

/// What was done since the last time must come to the same as doing everything at once.
std::string findShortcutFault(Node4C const& root) {
  std::unique_ptr<Node4C> const fresh(root.clone());
  Node4C* noNode = nullptr;
  unsigned noPos = 0;
  fresh->checkTree(noNode, noPos, noNode, noPos);
  if (writeTreeNotation(*fresh) != writeTreeNotation(root)) return "the tree is not normal";
  fresh->layout(surfaces::RecordingGraphicsC(surfaces::RecordingGraphicsC::LOG_NOTHING));
  return isLaidOutAlike(root, *fresh) ? std::string() : "the layout is not that of the whole tree";
}

}  // namespace

oss::bytestring writeBytes(Node4C const& node) {
  oss::PointerTC<oss::BinaryStringOutputStreamC> const bytes(new oss::BinaryStringOutputStreamC);
  oss::PointerTC<oss::ObjectOutputStreamABC> out(new oss::BinaryOutputStreamC(bytes));
  node.writeObject(out);
  return bytes->getString();
}

ViewStageC::ViewStageC()
    : graphics_(new surfaces::RecordingGraphicsC(surfaces::RecordingGraphicsC::LOG_NOTHING)),
      view_(graphics_),
      player_(view_) {
  standardOperators();
}

bool ViewStageC::setUp(wstring const& notation) {
  TreeNotationS tree;
  unsigned long position = 0;
  if (!readTreeNotation(notation, standardOperators(), tree, position) || !tree.caretNode) return false;
  view_.setAlgebraicExpression(nullptr, nullptr, 0, math::algexpr::NUMBER_FORMAT_AUTOMATIC);
  view_.paste(writeBytes(*tree.root->child(0)));
  if (writeBytes(*tree.root) != bytes()) return false;
  view_.display(0, 0);
  Node4C const* const anchor = findCounterpart(view_.crefRoot(), tree.anchorNode);
  return view_.selectRange(anchor, tree.anchorPos, findCounterpart(view_.crefRoot(), tree.caretNode),
                           tree.caretPos);
}

wstring ViewStageC::notation() const {
  bool const selected = view_.isSelected();
  return writeTreeNotation(view_.crefRoot(), view_.getCaretNode(), view_.getCaretPos(),
                           selected ? view_.getAnchorNode() : nullptr, view_.getAnchorPos());
}

wstring ViewStageC::notationWithoutPlaces() const { return writeTreeNotation(view_.crefRoot()); }

oss::bytestring ViewStageC::bytes() const { return writeBytes(view_.crefRoot()); }

bool ViewStageC::play(EventScriptT const& script) {
  bool result = true;
  for (ScriptStepS const& step : script) {
    result = player_.play(step);
    view_.display(0, 0);
  }
  return result;
}

std::string ViewStageC::findFault() const {
  Node4C const& root = view_.crefRoot();
  TreeFaultS fault = validateTree(root);
  if (fault.invariant == TREE_VALID) fault = validatePlace(root, view_.getCaretNode(), view_.getCaretPos());
  if (fault.invariant == TREE_VALID && view_.isSelected()) {
    fault = validatePlace(root, view_.getAnchorNode(), view_.getAnchorPos());
  }
  if (fault.invariant != TREE_VALID) return toUtf8(describeInvariant(fault.invariant));
  view_.display(0, 0);
  return findShortcutFault(root);
}

}  // namespace zolt::tests
