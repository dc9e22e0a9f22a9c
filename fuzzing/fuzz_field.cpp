// Plays any events of a person and a host on a formula field: given as bytes, and as the text of a script.

#include <memory>

#include "fuzzing/bytes_text.h"
#include "fuzzing/event_bytes.h"
#include "fuzzing/trip.h"
#include "zolt/script/script_runner.h"
#include "zolt/surfaces/recording/recording_graphics.h"
#include "zolt/ved/tree/validate_tree.h"
#ifdef ZOLT_HAS_MATHML_TEXT
#include "zolt/mathml/text/mathml_text.h"
#endif

namespace zolt::fuzz {

using namespace field;
using namespace script;
using namespace math::ved;
using surfaces::RecordingGraphicsC;

namespace {

/// A field and its user.
class FieldSessionC {
 public:
  FieldSessionC()
      : field_((prepare(), new RecordingGraphicsC(RecordingGraphicsC::LOG_NOTHING))), runner_(field_) {
#ifdef ZOLT_HAS_MATHML_TEXT
    field_.setMathmlReader(mathml::fromMathmlText);
#endif
    start_ = bytes();
    field_.record(&recorded_);
  }

  bytestring bytes() const { return writeBytes(field_.crefView().crefRoot()); }
  EventScriptT const& getRecorded() const { return recorded_; }
  wstring notation() const { return field_.writeNotation(); }

  std::string play(EventScriptT const& script) {
    for (ScriptStepS const& step : script) {
      if (isTooLarge()) break;
      if (auto fault = play(step); !fault.empty()) return toBytes(writeScriptStep(step)) + ": " + fault;
    }
    return {};
  }

  std::string finish() {
    field_.record(nullptr);
    field_.setEditable(true);
    bytestring const end = bytes();
    unsigned long steps = 0;
    for (; field_.run(COMMAND_UNDO); ++steps) {
      if (only_searches) continue;
      if (auto fault = checkState(); !fault.empty()) return "undoing: " + fault;
    }
    if (bytes() != start_) return "undoing everything does not lead back to the start";
    for (; steps > 0; --steps) {
      if (!field_.run(COMMAND_REDO)) return "what was undone cannot be done again";
    }
    if (bytes() != end) return "doing everything again does not lead back to the end";

    auto const told = field_.diagnose().expression;
    if (bytes() != end) return "a question changed the formula";
    FormulaErrorS error;
    auto const expression = field_.getExpression(&error);
    if (bool(told) != bool(expression) || (told && told->toPrefixString() != expression->toPrefixString())) {
      return "the formula was said to be another one";
    }
    if (auto fault = checkState(); !fault.empty()) return "after conversion: " + fault;
    if (!expression) return error.message.empty() ? "no expression, and no word why" : "";
    if (auto fault = checkTexts(*expression); !fault.empty()) return fault;
    return checkTrips(expression, false);
  }

 private:
  /// One step may double the formula.
  bool isTooLarge() {
    if (!only_searches) return bytes().size() > 30000;
    PointS const size = field_.refView().getExpressionSize();
    return size.x > 5000 || size.y > 5000;
  }

  std::string play(ScriptStepS const& step) {
    wstring const before = only_searches ? wstring() : notation();
    // An open command that is there in full is accepted by whatever comes next, also by what is refused.
    bool const mayComplete = field_.crefCompletion().isOpen();
    bool const taken = runner_.run(step);
    if (auto fault = checkState(); !fault.empty()) return fault;
    if (step.word == SCRIPT_SHOW && taken) start_ = bytes();
    if (only_searches) return {};
    if (!taken && !mayComplete && step.word != SCRIPT_TYPE && notation() != before)
      return "refused, and yet changed something";
    return {};
  }

  std::string checkState() {
    Node4C const& root = field_.crefView().crefRoot();
    ViewZNT4C const& view = field_.crefView();
    if (!only_searches) {
      if (auto fault = checkInvariants(root); !fault.empty()) return fault;
    }
    if (validateSelection(root, view.getSelection()).invariant != TREE_VALID) {
      return "the caret or the anchor is nowhere";
    }
    RectangleS const caret = field_.getCaretRectangle();
    if (caret.right - caret.left != 1 || caret.top > caret.bottom) return "the caret has no box";
    RectangleS box;
    field_.takeRevealRequest(box);
    for (RectangleS const& band : field_.getSelectionRectangles()) {
      if (band.left >= band.right || band.top > band.bottom) return "a band of the selection is empty";
    }
    askedFor_ = (askedFor_ + 1) % COMMAND_COUNT;
    field_.isEnabled(static_cast<CommandE>(askedFor_));
    FormulaDiagnosisS const told = askedFor_ % 8 == 0 ? field_.diagnose() : FormulaDiagnosisS();
    if (told.error.range.caret && validateSelection(root, told.error.range).invariant != TREE_VALID) {
      return "what is faulty is nowhere";
    }
    return {};
  }

  FormulaFieldC field_;
  ScriptRunnerC runner_;
  EventScriptT recorded_;
  bytestring start_;
  int askedFor_ = 0;
};

/// A recording does the same when it is played again, also after a conversion to text and back.
std::string checkRecording(FieldSessionC const& session) {
  wstring const text = writeEventScript(session.getRecorded());
  EventScriptT script;
  unsigned long position = 0;
  if (!readEventScript(text, script, position)) return "the recording does not read: " + toBytes(text);
  if (writeEventScript(script) != text) return "the recording reads as another: " + toBytes(text);
  if (only_searches) return {};
  FieldSessionC again;
  if (auto fault = again.play(script); !fault.empty()) return fault;
  if (again.notation() == session.notation()) return {};
  return "the recording leads to " + toBytes(again.notation()) + " and not to " + toBytes(session.notation());
}

std::string playOnField(EventScriptT const& script) {
  FieldSessionC session;
  std::string fault = session.play(script);
  if (fault.empty()) fault = checkRecording(session);
  if (fault.empty()) fault = session.finish();
  return fault.empty() ? fault : fault + "\n" + toBytes(writeEventScript(script));
}

}  // namespace

std::string checkField(std::uint8_t const* data, std::size_t size) {
  chooseStretches(size);
  return playOnField(toEvents(data, size));
}

std::string checkScript(std::uint8_t const* data, std::size_t size) {
  prepare();
  wstring const text = toText(data, size);
  EventScriptT script;
  unsigned long position = 0;
  startMeter();
  bool const read = readEventScript(text, script, position);
  if (auto fault = checkMeter(text.size()); !fault.empty()) return fault;
  if (!read) {
    if (!script.empty()) return "a refused text has left steps";
    return position <= text.size() ? "" : "the fault is past the end of the text";
  }
  wstring const written = writeEventScript(script);
  EventScriptT again;
  if (!readEventScript(written, again, position)) return "the script does not read back: " + toBytes(written);
  if (writeEventScript(again) != written) return "the script reads back as another: " + toBytes(written);
  return playOnField(script);
}

}  // namespace zolt::fuzz
