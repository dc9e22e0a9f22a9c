#pragma once

#include <array>
#include <string_view>
#include <vector>

#include "zolt/exchange/speech.h"

namespace zolt::exchange::detail {

/// All that a language has: a row for each operator, and the words that belong to none.
struct SpeechTableS {
  std::vector<SpokenFormS> forms;
  std::array<std::u16string_view, num_speech_words> words;
};

// One source file each.
SpeechTableS makeEnglish();
SpeechTableS makeGerman();

}  // namespace zolt::exchange::detail
