// Plays any events of a person and a host on a view or a field while memory runs out.
//
// The first byte of an input says how: every step is tried with ever more allocations until it succeeds,
// first one by one, then in steps that the byte chooses; its lowest bit chooses between view and field, the
// next one whether the formula is painted before the end.

#include <memory>
#include <new>
#include <utility>

#include "fuzzing/allocations.h"
#include "fuzzing/bytes_text.h"
#include "fuzzing/event_bytes.h"
#include "fuzzing/script_player.h"
#include "fuzzing/trip.h"
#include "zolt/exchange/plain_text.h"
#include "zolt/script/script_runner.h"
#include "zolt/surfaces/recording/recording_graphics.h"
#include "zolt/ved/tree/tree_notation.h"
#include "zolt/ved/tree/validate_tree.h"

namespace zolt::fuzz {

#if defined(__cpp_exceptions) && !defined(ZOLT_BARE_CORE)

using namespace field;
using namespace script;
using namespace math::ved;
using surfaces::RecordingGraphicsC;

namespace {

constexpr std::size_t first_allocations = 24;  // of a step, each of which fails once
constexpr std::size_t largest_notation = 2000;

PointerTC<RecordingGraphicsC> makeSurface() {
  return new RecordingGraphicsC(RecordingGraphicsC::LOG_NOTHING);
}

wstring write(ViewZNT4C const& view) { return writeTreeNotation(view.crefRoot(), view.getSelection()); }

/// A view of which every call has to do all or nothing. Options, which only fields have, here begin (on) and
/// end a group, or ask questions that a host may ask at any time.
class ScarceViewC {
 public:
  static constexpr bool all_or_nothing = true;

  ScarceViewC() : view_(makeSurface()), player_(view_) { show(nullptr); }

  ViewZNT4C& refView() { return view_; }
  bool isGrouping() const { return grouping_; }
  void play(ScriptStepS const& step) {
    switch (step.word) {
      case SCRIPT_PASTE_TEXT:
        view_.paste(exchange::fromPlainText(step.text, nullptr));
        break;
      case SCRIPT_TREE: {
        TreeNotationS tree;
        unsigned long position = 0;
        if (readTreeNotation(step.text, view_.crefOperatorList(), tree, position))
          view_.paste(writeBytes(*tree.root->child(0)));
        break;
      }
      case SCRIPT_SHOW:
        // In the middle of a group it would become the group's new beginning.
        if (!grouping_) show(AlgebraicExpressionC::fromPrefixString(step.text));
        break;
      case SCRIPT_SET:
        set(step);
        break;
      default:
        player_.play(step);
    }
  }

 private:
  void show(PointerTC<AlgebraicExpressionC> const& expression) {
    PointerTC<RuleC> const rule(new RuleC);
    view_.setAlgebraicExpression(expression, rule, 0, math::algexpr::NUMBER_FORMAT_AUTOMATIC);
  }

  void set(ScriptStepS const& step) {
    if (step.text == u"letters" && step.on != grouping_) {
      // A group whose end fails is over.
      bool const ends = std::exchange(grouping_, false);
      if (ends) view_.endGroup();
      if (ends) return;
      view_.beginGroup();
      grouping_ = true;
    } else if (step.text == u"constructs") {
      view_.measureAgain();
    } else {
      view_.getAlgebraicExpression(nullptr);
      view_.getCaretRectangle();
      view_.getCurrentNodeRectangle();
    }
  }

  ViewZNT4C view_;
  ScriptPlayerC player_;
  bool grouping_ = false;
};

/// A field, some of whose acts are several undo steps.
class ScarceFieldC {
 public:
  static constexpr bool all_or_nothing = false;

  ScarceFieldC() : field_(makeSurface()), runner_(field_) {}

  ViewZNT4C& refView() { return field_.refView(); }
  bool isGrouping() const { return false; }
  void play(ScriptStepS const& step) {
    runner_.run(step);
    RectangleS box;
    field_.takeRevealRequest(box);
    field_.getSelectionRectangles();
    if (step.word == SCRIPT_SET) field_.getExpression();
  }

 private:
  FormulaFieldC field_;
  ScriptRunnerC runner_;
};

struct HowS {
  std::size_t stride;
  bool paints;
};

std::string checkSound(ViewZNT4C const& view) {
  if (auto fault = checkInvariants(view.crefRoot()); !fault.empty()) return fault;
  bool const placed = validateSelection(view.crefRoot(), view.getSelection()).invariant == TREE_VALID;
  return placed ? "" : "the caret or the anchor is nowhere";
}

/// Checks that the picture equals that of a layout of everything.
std::string checkPicture(ViewZNT4C& view) {
  // What is being composed is shown, but is no part of the tree.
  if (view.crefComposition().place) return {};
  PointerTC<RecordingGraphicsC> const surface = makeSurface();
  std::unique_ptr<Node4C> const copy(view.crefRoot().clone());
  copy->layout(*surface);
  PointS const size = view.getExpressionSize();
  RecordingGraphicsC shown;
  view.crefRoot().display(shown, 0, 0, nullptr);
  RecordingGraphicsC full;
  copy->display(full, 0, 0, nullptr);
  bool const same = size.x == copy->getWidth() && size.y == copy->getHeight();
  return same && shown.getText() == full.getText() ? "" : "the picture is not that of the tree";
}

/// Returns true when the step succeeded.
template <class SubjectT>
bool playScarce(SubjectT& subject, ScriptStepS const& step, std::size_t allocations) {
  ScarceHeapC const heap(allocations);
  try {
    subject.play(step);
    return true;
  } catch (std::bad_alloc const&) {
    return false;
  }
}

template <class SubjectT>
std::string playStep(SubjectT& subject, ScriptStepS const& step, HowS how, wstring& groupStart) {
  ViewZNT4C& view = subject.refView();
  wstring before = only_searches ? wstring() : write(view);
  if (!subject.isGrouping()) groupStart = before;
  bool const undoable = view.canUndo();
  bool const redoable = view.canRedo();
  for (std::size_t n = 0; !playScarce(subject, step, n);
       n += n < first_allocations ? 1 : n / 4 + how.stride) {
    if (only_searches && SubjectT::all_or_nothing) {
      view.crefRoot();  // rolls back
      continue;
    }
    wstring const after = write(view);
    if (only_searches) {
      if (after.size() > largest_notation) break;
      continue;
    }
    if (auto fault = checkSound(view); !fault.empty()) return fault;
    if (!SubjectT::all_or_nothing) {
      if (after.size() > largest_notation) break;
      continue;
    }
    // A failed call takes back the group around it, unless it did not try to change anything.
    if (after == groupStart) before = after;
    bool const same = after == before && view.canUndo() == undoable && view.canRedo() == redoable;
    if (!same) return "left after " + std::to_string(n) + " allocations: " + toBytes(after);
  }
  if (auto fault = checkSound(view); !fault.empty()) return fault;
  if (only_searches) {
    if (how.paints) view.getExpressionSize();
    return {};
  }
  return how.paints ? checkPicture(view) : "";
}

template <class SubjectT>
std::string playAll(EventScriptT const& script, HowS how) {
  SubjectT subject;
  ViewZNT4C& view = subject.refView();
  bytestring start = writeBytes(view.crefRoot());
  wstring groupStart;
  for (ScriptStepS const& step : script) {
    if (write(view).size() > largest_notation) break;
    if (auto fault = playStep(subject, step, how, groupStart); !fault.empty())
      return toBytes(writeScriptStep(step)) + ": " + fault;
    // A view shows the empty formula for a text that cannot be read; a field keeps what it shows.
    bool const shown = step.word == SCRIPT_SHOW && (SubjectT::all_or_nothing || step.text.empty() ||
                                                    AlgebraicExpressionC::fromPrefixString(step.text));
    if (shown && !subject.isGrouping() && !view.canUndo()) start = writeBytes(view.crefRoot());
  }
  if (auto fault = checkPicture(view); !fault.empty()) return "in the end " + fault;
  view.setEditable(true);
  view.endGroup();
  while (view.undo()) {
  }
  return writeBytes(view.crefRoot()) == start ? "" : "undoing everything does not lead back to the start";
}

}  // namespace

std::string checkMemory(std::uint8_t const* data, std::size_t size) {
  chooseStretches(size);
  if (size < 1) return {};
  prepare();
  EventScriptT const script = toEvents(data + 1, size - 1);
  auto const play = data[0] % 2 ? playAll<ScarceFieldC> : playAll<ScarceViewC>;
  HowS const how{1 + data[0] / 4u, data[0] / 2 % 2 == 0};
  std::string fault = play(script, how);
  std::size_t const blocks = AllocationsS::blocks();
  // The first step has made everything that is kept permanently.
  if (fault.empty() && !only_searches) {
    fault = play(script, how);
    if (fault.empty() && AllocationsS::blocks() != blocks) {
      fault = std::to_string(AllocationsS::blocks() - blocks) + " blocks of memory are lost";
    }
  }
  return fault.empty() ? fault : fault + "\n" + toBytes(writeEventScript(script));
}

#else

// Without exceptions a program that has no memory ends.
std::string checkMemory(std::uint8_t const*, std::size_t) { return {}; }

#endif

}  // namespace zolt::fuzz
