// Makes inputs to start from: every line of the tests' corpora, in the form that each target reads.

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <set>
#include <string>
#include <vector>

#include "fuzzing/bytes_text.h"
#include "fuzzing/event_bytes.h"
#include "fuzzing/growth.h"
#include "fuzzing/trip.h"
#include "zolt/algexpr/cas_session.h"
#include "zolt/script/event_script.h"
#include "zolt/ved/operators/operator_list_repository.h"
#include "zolt/ved/tree/tree_notation.h"

namespace zolt::fuzz {

namespace {

std::string trimmed(std::string const& text) {
  std::size_t const first = text.find_first_not_of(' ');
  return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(' ') + 1 - first);
}

std::vector<std::string> splitAt(std::string const& text, std::string const& separator) {
  std::vector<std::string> parts;
  std::size_t start = 0;
  for (std::size_t at; (at = text.find(separator, start)) != std::string::npos;
       start = at + separator.size()) {
    parts.push_back(trimmed(text.substr(start, at - start)));
  }
  parts.push_back(trimmed(text.substr(start)));
  return parts;
}

/// The lines of all corpora, without comments.
std::vector<std::string> const& lines() {
  static std::vector<std::string> const all = [] {
    std::vector<std::filesystem::path> files;
    for (auto const& entry : std::filesystem::recursive_directory_iterator(ZOLT_TEST_FOLDER)) {
      if (entry.path().extension() == ".cases") files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    std::vector<std::string> found;
    for (auto const& file : files) {
      std::ifstream in(file);
      for (std::string line; std::getline(in, line);) {
        if (!line.empty() && line.compare(0, 2, "# ") != 0) found.push_back(line);
      }
    }
    return found;
  }();
  return all;
}

/// Both sides of each arrow, and of each bar.
std::set<std::string> const& texts() {
  static std::set<std::string> const all = [] {
    std::set<std::string> found;
    for (std::string line : lines()) {
      if (auto const both = line.find("\u21D4"); both != std::string::npos) line.replace(both, 3, "\u21D2");
      for (std::string const& side : splitAt(line, "\u21D2")) {
        found.insert(side);
        for (std::string const& part : splitAt(side, " | ")) found.insert(part);
      }
    }
    return found;
  }();
  return all;
}

bool isNotation(std::string const& text) {
  return !text.empty() && text.front() == '[' && text.back() == ']';
}

BytesT toSeed(std::string const& text) { return {text.begin(), text.end()}; }

std::vector<BytesT> textSeeds(bool notations) {
  std::vector<BytesT> seeds;
  for (std::string const& text : texts()) {
    if (isNotation(text) == notations) seeds.push_back(toSeed(text));
  }
  return seeds;
}

field::EventScriptT readScript(std::string const& text) {
  field::EventScriptT steps;
  unsigned long position = 0;
  script::readEventScript(toText(text), steps, position);
  return steps;
}

}  // namespace

// Whatever is nested in whatever reads back from every notation.
std::vector<BytesT> prefixSeeds() {
  std::vector<BytesT> seeds = textSeeds(false);
  for (BytesT& seed : nestedSeeds("prefix", 100)) seeds.push_back(std::move(seed));
  return seeds;
}
std::vector<BytesT> infixSeeds() { return textSeeds(false); }
std::vector<BytesT> plainSeeds() { return textSeeds(false); }
std::vector<BytesT> latexSeeds() { return textSeeds(false); }
std::vector<BytesT> mathJsonSeeds() { return textSeeds(false); }
std::vector<BytesT> mathmlSeeds() { return textSeeds(false); }
std::vector<BytesT> notationSeeds() { return textSeeds(true); }

std::vector<BytesT> eventsSeeds() {
  std::vector<BytesT> seeds;
  for (std::string const& line : lines()) {
    std::vector<std::string> const parts = splitAt(splitAt(line, "\u21D2").front(), " | ");
    field::EventScriptT script;
    if (isNotation(parts.front())) {
      field::ScriptStepS tree;
      tree.word = field::SCRIPT_TREE;
      tree.text = toText(parts.front());
      script.push_back(tree);
      if (parts.size() < 2) continue;
    }
    field::EventScriptT const rest = readScript(parts.back());
    script.insert(script.end(), rest.begin(), rest.end());
    if (!rest.empty()) seeds.push_back(fromEvents(script));
  }
  // Some inputs that are in no script are typed.
  unsigned long number = 0;
  for (std::string const& text : texts()) {
    if (isNotation(text) || text.size() > 40 || number++ % 4 > 0) continue;
    field::ScriptStepS typed;
    typed.word = field::SCRIPT_TYPE;
    typed.text = toText(text);
    seeds.push_back(fromEvents({typed}));
  }
  return seeds;
}

std::vector<BytesT> scriptSeeds() {
  std::vector<BytesT> seeds;
  for (BytesT const& events : eventsSeeds()) {
    seeds.push_back(toSeed(toBytes(script::writeEventScript(toEvents(events.data(), events.size())))));
  }
  return seeds;
}

/// Sheets of a few formulas and texts each, some of them faulty.
std::vector<BytesT> sheetSeeds() {
  std::vector<BytesT> seeds;
  std::string sheet;
  unsigned long count = 0;
  for (std::string const& text : texts()) {
    if (sheet.empty()) sheet = "zolt-sheet 1\nheading \n";
    if (isNotation(text)) {
      sheet += "formula\ntree " + text + "\n";
    } else {
      bool const prefix = static_cast<bool>(AlgebraicExpressionC::fromPrefixString(toText(text)));
      sheet += (prefix ? "formula " : "text ") + text + "\n";
    }
    if (++count % 4 > 0) continue;
    seeds.push_back(toSeed(sheet + "end 5\n"));
    sheet.clear();
  }
  return seeds;
}

std::vector<BytesT> memorySeeds() {
  std::vector<BytesT> seeds = eventsSeeds();
  std::uint8_t manner = 0;
  for (BytesT& seed : seeds) seed.insert(seed.begin(), manner++);
  return seeds;
}

// The engine's cases have the operation before a colon. What else is a formula is computed in each way in
// turn.
std::vector<BytesT> engineSeeds() {
  constexpr char const* operations[] = {"eval",  "num",  "simplify", "expand", "factor",
                                        "solve", "diff", "int",      "subst"};
  std::vector<BytesT> seeds;
  for (std::string const& text : texts()) {
    if (isNotation(text)) continue;
    BytesT seed{static_cast<std::uint8_t>(seeds.size() % std::size(operations)), 30};
    std::size_t const colon = text.find(": ");
    std::string const command = text.substr(0, colon == text.npos ? 0 : colon);
    auto const* const found =
        std::find(std::begin(operations), std::end(operations), splitAt(command, " ")[0]);
    bool const isCase = found != std::end(operations);
    if (isCase) seed[0] = static_cast<std::uint8_t>(found - std::begin(operations));
    if (isCase && command.find(" deg") != command.npos) ++seed[1];
    seed.insert(seed.end(), text.begin() + static_cast<long>(isCase ? colon + 2 : 0), text.end());
    seeds.push_back(std::move(seed));
  }
  return seeds;
}

std::vector<BytesT> clipboardSeeds() {
  prepare();
  auto const operators =
      math::ved::OperatorListRepositoryC::lookup(math::algexpr::CASSessionBC::getSession()->getEngine());
  std::vector<BytesT> seeds;
  for (std::string const& text : texts()) {
    math::ved::TreeNotationS tree;
    unsigned long position = 0;
    if (!readTreeNotation(toText(text), *operators, tree, position)) continue;
    bytestring const bytes = writeBytes(*tree.root->child(0));
    BytesT seed{static_cast<std::uint8_t>(seeds.size()), 0};
    seed.insert(seed.end(), bytes.begin(), bytes.end());
    seeds.push_back(std::move(seed));
  }
  return seeds;
}

}  // namespace zolt::fuzz
