// Reads trees in notation, as from dumps and bug reports.

#include "fuzzing/bytes_text.h"
#include "fuzzing/trip.h"
#include "zolt/algexpr/cas_session.h"
#include "zolt/field/formula_field.h"
#include "zolt/surfaces/recording/recording_graphics.h"
#include "zolt/ved/operators/operator_list_repository.h"
#include "zolt/ved/tree/tree_notation.h"
#include "zolt/ved/tree/validate_tree.h"

namespace zolt::fuzz {

using namespace math::ved;

namespace {

wstring write(TreeNotationS const& tree) { return writeTreeNotation(*tree.root, tree.selection); }

/// A field takes only the tree of a formula.
std::string checkInField(wstring const& text) {
  field::FormulaFieldC field(new surfaces::RecordingGraphicsC(surfaces::RecordingGraphicsC::LOG_NOTHING));
  field.insertText(u"a+b");
  wstring const before = field.writeNotation();
  bool const taken = field.setNotation(text);
  Node4C const& root = field.crefView().crefRoot();
  if (auto fault = checkInvariants(root); !fault.empty()) return fault;
  TreeFaultS const place = validateSelection(root, field.crefView().getSelection());
  if (place.invariant != TREE_VALID) return "the caret is nowhere";
  if (!taken && field.writeNotation() != before) return "a refused tree has changed the field";
  std::unique_ptr<Node4C> const copy(root.clone());
  return checkTreeForms(*copy);
}

}  // namespace

std::string checkNotation(std::uint8_t const* data, std::size_t size) {
  chooseStretches(size);
  prepare();
  wstring const text = toText(data, size);
  auto const operators =
      OperatorListRepositoryC::lookup(math::algexpr::CASSessionBC::getSession()->getEngine());
  TreeNotationS tree;
  unsigned long position = 0;
  startMeter();
  bool const read = readTreeNotation(text, *operators, tree, position);
  if (auto fault = checkMeter(text.size()); !fault.empty()) return fault;
  if (!read) {
    if (tree.root || tree.selection.caret || tree.selection.anchor) return "a refused text has left a tree";
    return position <= text.size() ? "" : "the fault is past the end of the text";
  }

  wstring const notation = write(tree);
  TreeNotationS again;
  if (!readTreeNotation(notation, *operators, again, position)) return "the tree does not read back";
  if (write(again) != notation) return "the tree reads back as another";

  // Whatever the rows hold, normalisation makes normal rows of them.
  again.root->checkTree(again.selection);
  wstring const normal = writeTreeNotation(*again.root);
  if (again.selection.caret && validateSelection(*again.root, again.selection).invariant != TREE_VALID) {
    return "normalising has lost the caret or the anchor";
  }
  again.root->checkTree(again.selection);
  if (writeTreeNotation(*again.root) != normal) return "normalising again changes the tree";
  return checkInField(text);
}

}  // namespace zolt::fuzz
