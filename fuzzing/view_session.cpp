#include "fuzzing/view_session.h"

#include <memory>

#include "fuzzing/bytes_text.h"
#include "zolt/exchange/plain_text.h"
#include "zolt/ved/tree/tree_notation.h"
#include "zolt/ved/tree/tree_path.h"
#include "zolt/ved/tree/validate_tree.h"

namespace zolt::fuzz {

using namespace field;
using namespace script;
using namespace math::ved;
using surfaces::RecordingGraphicsC;

namespace {

constexpr std::size_t largest_tree = 30000;
constexpr long largest_picture = 5000;

bool isOrdered(RectangleS const& box) { return box.left <= box.right && box.top <= box.bottom; }

}  // namespace

ViewSessionC::ViewSessionC()
    : graphics_((prepare(), new RecordingGraphicsC(RecordingGraphicsC::LOG_NOTHING))),
      view_(graphics_),
      player_(view_) {
  show(nullptr);
}

wstring ViewSessionC::notation() const { return writeTreeNotation(view_.crefRoot(), view_.getSelection()); }

std::string ViewSessionC::play(EventScriptT const& script) {
  for (ScriptStepS const& step : script) {
    if (isTooLarge()) break;
    auto const fault = play(step);
    if (!fault.empty()) return toBytes(writeScriptStep(step)) + ": " + fault;
  }
  return {};
}

bool ViewSessionC::isTooLarge() {
  if (!only_searches) return tree_.size() > largest_tree;
  PointS const size = view_.getExpressionSize();
  return size.x > largest_picture || size.y > largest_picture;
}

std::string ViewSessionC::play(ScriptStepS const& step) {
  if (only_searches) {
    perform(step);
    view_.getCaretRectangle();
    view_.getCurrentNodeRectangle();
    return {};
  }
  wstring const before = notation();
  bytestring const treeBefore = tree_;
  bool const answer = perform(step);
  if (auto fault = checkState(); !fault.empty()) return fault;
  return checkHistory(step, answer, before, treeBefore);
}

bool ViewSessionC::perform(ScriptStepS const& step) {
  switch (step.word) {
    case SCRIPT_PASTE:
      return view_.paste(player_.crefClipboard());
    case SCRIPT_PASTE_TEXT:
      return view_.paste(exchange::fromPlainText(step.text, nullptr));
    case SCRIPT_PASTE_PREFIX:
      return view_.paste(AlgebraicExpressionC::fromPrefixString(step.text));
    case SCRIPT_SHOW:
      show(AlgebraicExpressionC::fromPrefixString(step.text));
      return true;
    case SCRIPT_TREE:
      return showTree(step.text);
    case SCRIPT_SET:
      set(step);
      return true;
    default:
      return player_.play(step);
  }
}

void ViewSessionC::show(PointerTC<AlgebraicExpressionC> const& expression) {
  if (grouping_) endGroup(true);
  PointerTC<math::algexpr::ConstraintsBC> rule;
  if (constrained_) rule = new RuleC;
  view_.setAlgebraicExpression(expression, rule, 0, math::algexpr::NUMBER_FORMAT_AUTOMATIC);
  steps_.clear();
  done_ = 0;
  start_ = tree_ = writeBytes(view_.crefRoot());
}

/// Pastes over everything; caret and selection can only be restored where the view has the same texts.
bool ViewSessionC::showTree(wstring const& notation) {
  TreeNotationS tree;
  unsigned long position = 0;
  if (!readTreeNotation(notation, view_.crefOperatorList(), tree, position)) return false;
  bytestring const bytes = writeBytes(*tree.root->child(0));
  if (view_.isEditable()) {
    view_.selectRange(wholeRow(*view_.crefRoot().child(0)));
  }
  if (!view_.paste(bytes)) return false;
  view_.selectRange(selectionAt(view_.crefRoot(), pathOf(tree.selection)));
  return true;
}

void ViewSessionC::set(ScriptStepS const& step) {
  if (step.text == u"constructs") {
    constrained_ = step.on;
  } else if (step.text != u"letters") {
    if (grouping_) endGroup(false);
  } else if (grouping_ && !step.on) {
    endGroup(true);
  } else if (!grouping_ && step.on) {
    view_.beginGroup();
    grouping_ = true;
    groupStart_ = tree_;
  }
}

void ViewSessionC::endGroup(bool keep) {
  grouping_ = false;
  if (keep) {
    view_.endGroup();
  } else {
    view_.cancelGroup();
  }
  bytestring const now = writeBytes(view_.crefRoot());
  if (now == groupStart_) return;
  steps_.resize(done_);
  steps_.push_back({{}, {}, groupStart_, now, true});
  ++done_;
}

std::string ViewSessionC::checkHistory(ScriptStepS const& step, bool answer, wstring const& before,
                                       bytestring const& treeBefore) {
  bool const refusable = step.word == SCRIPT_INSERT || step.word == SCRIPT_OPERATOR ||
                         step.word == SCRIPT_PASTE || step.word == SCRIPT_PASTE_TEXT ||
                         step.word == SCRIPT_PASTE_PREFIX || step.word == SCRIPT_PASTE_BYTES ||
                         step.word == SCRIPT_UNDO || step.word == SCRIPT_REDO;
  if (refusable && !answer && !grouping_ && notation() != before) return "refused, and yet changed something";
  if (!view_.isEditable()) return {};
  if (step.word == SCRIPT_SHOW || step.word == SCRIPT_SET || grouping_) return {};

  if (step.word == SCRIPT_UNDO || step.word == SCRIPT_REDO) {
    bool const undo = step.word == SCRIPT_UNDO;
    if (answer != (undo ? done_ > 0 : done_ < steps_.size())) return "the answer is not the history's";
    if (!answer) return {};
    StepS const& moved = steps_[undo ? --done_ : done_++];
    if (tree_ != (undo ? moved.treeBefore : moved.treeAfter)) return "another tree comes back";
    if (!moved.onlyTree && notation() != (undo ? moved.before : moved.after)) return "other places come back";
  } else if (tree_ != treeBefore) {
    steps_.resize(done_);
    // A newly shown tree has places that no event has chosen.
    steps_.push_back({before, notation(), treeBefore, tree_, step.word == SCRIPT_TREE});
    ++done_;
  }
  if (view_.canUndo() != (done_ > 0)) return "it can be undone, or not, against the history";
  if (view_.canRedo() != (done_ < steps_.size())) return "it can be redone, or not, against the history";
  return {};
}

std::string ViewSessionC::checkState() {
  Node4C const& root = view_.crefRoot();
  if (auto fault = checkInvariants(root); !fault.empty()) return fault;
  if (validateSelection(root, view_.getSelection()).invariant != TREE_VALID) {
    return "the caret or the anchor is nowhere";
  }

  RectangleS const caret = view_.getCaretRectangle();
  if (!isOrdered(caret) || caret.right - caret.left != 1) return "the caret has no box";
  if (!isOrdered(view_.getCurrentNodeRectangle())) return "the selection has no box";
  bytestring tree = writeBytes(root);
  if (tree == tree_) return {};
  tree_ = std::move(tree);
  std::unique_ptr<Node4C> const copy(root.clone());
  copy->layout(*graphics_);
  return draw(*copy) == draw(root) ? "" : "the picture is not that of the tree";
}

std::string ViewSessionC::finish() {
  if (grouping_) endGroup(true);
  view_.setEditable(true);
  if (auto fault = checkState(); !fault.empty()) return fault;
  bytestring const end = tree_;
  unsigned long undone = 0;
  for (; view_.undo(); ++undone) {
    if (only_searches) continue;
    if (auto fault = checkState(); !fault.empty()) return "undoing: " + fault;
  }
  if (auto fault = checkState(); !fault.empty()) return fault;
  if (tree_ != start_) return "undoing everything does not lead back to the start";
  for (; undone > 0; --undone) {
    if (!view_.redo()) return "what was undone cannot be done again";
  }
  if (auto fault = checkState(); !fault.empty()) return fault;
  if (tree_ != end) return "doing everything again does not lead back to the end";

  std::unique_ptr<Node4C> const copy(view_.crefRoot().clone());
  if (auto fault = checkTreeForms(*copy); !fault.empty()) return fault;
  auto cause = static_cast<ErrorCauseE>(-1);
  auto const expression = view_.getAlgebraicExpression(&cause);
  if (auto fault = checkState(); !fault.empty()) return "after conversion: " + fault;
  if (!expression) return cause == static_cast<ErrorCauseE>(-1) ? "no expression and no cause" : "";
  if (auto fault = checkTexts(*expression); !fault.empty()) return fault;
  bool const verbatim = toBytes(writeTreeNotation(view_.crefRoot())).find('`') != std::string::npos;
  return checkTrips(expression, !verbatim);
}

}  // namespace zolt::fuzz
