#include "fuzzing/shared_seeds.h"

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <iterator>

#include "fuzzing/bytes_text.h"
#include "fuzzing/event_bytes.h"
#include "fuzzing/growth.h"
#include "fuzzing/trip.h"
#include "zolt/algexpr/cas_session.h"
#include "zolt/oss/quoted_text.h"
#include "zolt/script/event_script.h"
#include "zolt/ved/operators/operator_list_repository.h"
#include "zolt/ved/tree/tree_notation.h"

namespace zolt::fuzz {

using namespace field;
using namespace script;

namespace {

std::vector<BytesT> readInputs(std::filesystem::path const& folder) {
  std::vector<BytesT> inputs;
  if (!std::filesystem::is_directory(folder)) return inputs;
  std::vector<std::filesystem::path> files;
  for (auto const& entry : std::filesystem::directory_iterator(folder)) files.push_back(entry.path());
  std::sort(files.begin(), files.end());
  for (auto const& file : files) {
    std::ifstream in(file, std::ios::binary);
    inputs.emplace_back(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  }
  return inputs;
}

wstring toText(BytesT const& input) { return fuzz::toText(input.data(), input.size()); }

EventScriptT toStep(ScriptWordE word, wstring const& text) {
  ScriptStepS step;
  step.word = word;
  step.text = text;
  return {step};
}

EventScriptT readScript(wstring const& text) {
  EventScriptT script;
  unsigned long position = 0;
  readEventScript(text, script, position);
  return script;
}

/// The byte form of a row in notation; empty when the notation cannot be read.
bytestring readRow(wstring const& notation) {
  prepare();
  static auto const operators =
      math::ved::OperatorListRepositoryC::lookup(math::algexpr::CASSessionBC::getSession()->getEngine());
  math::ved::TreeNotationS tree;
  unsigned long position = 0;
  return readTreeNotation(notation, *operators, tree, position) ? writeBytes(*tree.root->child(0))
                                                                : bytestring();
}

/// The events that a session makes of another target's input.
EventScriptT toSession(std::string const& target, BytesT const& input) {
  if (target == "prefix") return toStep(SCRIPT_PASTE_PREFIX, toText(input));
  if (target == "plain") return toStep(SCRIPT_PASTE_TEXT, toText(input));
  if (target == "infix") return toStep(SCRIPT_INSERT, toText(input));
  if (target == "notation") return toStep(SCRIPT_TREE, toText(input));
  if (target == "script") return readScript(toText(input));
  if (target == "events" || target == "field") return toEvents(input.data(), input.size());
  if (target == "memory" && !input.empty()) return toEvents(input.data() + 1, input.size() - 1);
  if (target == "clipboard" && input.size() > 2) {
    std::size_t const events = std::min<std::size_t>(input[1], input.size() - 2);
    auto const row = input.begin() + 2 + static_cast<long>(events);
    EventScriptT script = toStep(SCRIPT_PASTE_BYTES, oss::toHexadecimal(bytestring(row, input.end())));
    EventScriptT const rest = toEvents(input.data() + 2, events);
    script.insert(script.end(), rest.begin(), rest.end());
    return script;
  }
  return {};
}

/// The target's input that plays the script; empty when there is none.
BytesT fromSession(std::string const& target, EventScriptT const& script, std::uint8_t manner) {
  if (target == "script") {
    std::string const text = toBytes(writeEventScript(script));
    return {text.begin(), text.end()};
  }
  BytesT events = fromEvents(script);
  if (target == "memory") {
    events.insert(events.begin(), manner);
  } else if (target == "clipboard") {
    bytestring const row = script.front().word == SCRIPT_TREE ? readRow(script.front().text) : bytestring();
    if (!row.empty()) events.clear();
    if (events.size() > 0xFF) return {};
    bytestring const pasted = row.empty() ? readRow(u"[\"a\"]") : row;
    events.insert(events.begin(), {manner, static_cast<std::uint8_t>(events.size())});
    events.insert(events.end(), pasted.begin(), pasted.end());
  }
  return events;
}

bool isText(std::string const& target) {
  return target == "prefix" || target == "plain" || target == "latex" || target == "mathjson" ||
         target == "mathml" || target == "infix" || target == "notation";
}

BytesT toSheet(std::string const& target, BytesT const& input) {
  std::string sheet = "zolt-sheet 1\n";
  sheet += target == "notation" ? "formula\ntree " : target == "prefix" ? "formula " : "text ";
  sheet.append(input.begin(), input.end());
  return {sheet.begin(), sheet.end()};
}

bool playsSessions(std::string const& target) {
  return target == "events" || target == "field" || target == "script" || target == "memory" ||
         target == "clipboard";
}

}  // namespace

std::vector<BytesT> sharedSeeds(std::string const& name, std::string const& corpora) {
  std::vector<BytesT> seeds = nestedSeeds(name, 1ul << 16);
  for (TargetS const& other : targets) {
    std::string const from = other.name;
    if (from == name) continue;
    for (BytesT const& input : readInputs(std::filesystem::path(corpora) / from)) {
      if (playsSessions(name)) {
        EventScriptT const script = toSession(from, input);
        if (script.empty()) continue;
        BytesT seed = fromSession(name, script, static_cast<std::uint8_t>(seeds.size()));
        if (!seed.empty()) seeds.push_back(std::move(seed));
      } else if (isText(name) && isText(from)) {
        seeds.push_back(input);
      } else if (name == "sheet" && isText(from)) {
        seeds.push_back(toSheet(from, input));
      }
    }
  }
  return seeds;
}

}  // namespace zolt::fuzz
