#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace zolt::fuzz {

using BytesT = std::vector<std::uint8_t>;

/// One way by which outside data enters the component. Every sequence of bytes is a valid input.
struct TargetS {
  char const* name;  ///< of its program (fuzz_<name>) and its folders
  /// Returns an empty text, or the promise that the component did not keep, with the input in readable form.
  /// A broken program (a sanitizer's finding, a crash) returns nothing.
  std::string (*check)(std::uint8_t const* data, std::size_t size);
  /// Inputs to start from, made of the corpora of the tests.
  std::vector<BytesT> (*seeds)();
};

std::string checkPrefix(std::uint8_t const* data, std::size_t size);
std::string checkInfix(std::uint8_t const* data, std::size_t size);
std::string checkPlain(std::uint8_t const* data, std::size_t size);
std::string checkLatex(std::uint8_t const* data, std::size_t size);
std::string checkMathJson(std::uint8_t const* data, std::size_t size);
std::string checkMathml(std::uint8_t const* data, std::size_t size);
std::string checkClipboard(std::uint8_t const* data, std::size_t size);
std::string checkEvents(std::uint8_t const* data, std::size_t size);
std::string checkField(std::uint8_t const* data, std::size_t size);
std::string checkNotation(std::uint8_t const* data, std::size_t size);
std::string checkScript(std::uint8_t const* data, std::size_t size);
std::string checkSheet(std::uint8_t const* data, std::size_t size);
std::string checkFont(std::uint8_t const* data, std::size_t size);
std::string checkMemory(std::uint8_t const* data, std::size_t size);
std::string checkGrowth(std::uint8_t const* data, std::size_t size);
std::string checkEngine(std::uint8_t const* data, std::size_t size);

std::vector<BytesT> prefixSeeds();
std::vector<BytesT> infixSeeds();
std::vector<BytesT> plainSeeds();
std::vector<BytesT> latexSeeds();
std::vector<BytesT> mathJsonSeeds();
std::vector<BytesT> mathmlSeeds();
std::vector<BytesT> clipboardSeeds();
std::vector<BytesT> eventsSeeds();
std::vector<BytesT> notationSeeds();
std::vector<BytesT> scriptSeeds();
std::vector<BytesT> sheetSeeds();
std::vector<BytesT> fontSeeds();
std::vector<BytesT> memorySeeds();
std::vector<BytesT> growthSeeds();
std::vector<BytesT> engineSeeds();

constexpr TargetS targets[] = {
    {"prefix", checkPrefix, prefixSeeds},       {"infix", checkInfix, infixSeeds},
    {"plain", checkPlain, plainSeeds},          {"latex", checkLatex, latexSeeds},
    {"mathjson", checkMathJson, mathJsonSeeds}, {"clipboard", checkClipboard, clipboardSeeds},
    {"events", checkEvents, eventsSeeds},       {"field", checkField, eventsSeeds},
    {"notation", checkNotation, notationSeeds}, {"script", checkScript, scriptSeeds},
    {"sheet", checkSheet, sheetSeeds},          {"font", checkFont, fontSeeds},
    {"memory", checkMemory, memorySeeds},       {"growth", checkGrowth, growthSeeds},
    {"engine", checkEngine, engineSeeds},
#ifdef ZOLT_HAS_MATHML_TEXT
    {"mathml", checkMathml, mathmlSeeds},
#endif
};

}  // namespace zolt::fuzz
