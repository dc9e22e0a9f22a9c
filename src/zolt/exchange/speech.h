#pragma once

#include <string_view>

#include "zolt/oss/wstring.h"

namespace zolt::exchange {

using oss::wstring;

// The words in which formulas are spoken, in one table for each language. `field::makeReadableText` puts them
// together; docs/speech.md says what is said when.

enum SpeechLanguageE { SPEECH_ENGLISH, SPEECH_GERMAN };
constexpr int num_speech_languages = 2;

enum SpeechVerbosityE {
  SPEECH_BRIEF,   ///< few words: "fraction a plus b over c end fraction"
  SPEECH_MEDIUM,  ///< short things are short, "a over b", and long ones have all their words
  SPEECH_FULL     ///< everything has all its words, so that different formulas never sound the same
};

/// How formulas are spoken.
struct SpeechStyleS {
  SpeechLanguageE language = SPEECH_ENGLISH;
  SpeechVerbosityE verbosity = SPEECH_MEDIUM;
};

inline bool operator!=(SpeechStyleS a, SpeechStyleS b) {
  return a.language != b.language || a.verbosity != b.verbosity;
}

/// What is said for an operator in one language.
///
/// A sign, function or constant has `words` alone: "plus", "sine". In the texts of a construct or a power
/// every "#" is a row, in the tree's order; of one with any number of rows, the text between the first two
/// comes between all.
template <class TextT>
struct SpokenFormTS {
  TextT name = {};   ///< in expressions; of a variant as `OperatorBC::getStoredName`
  TextT words = {};  ///< "the fraction with numerator #, denominator #, end fraction"
  TextT brief = {};  ///< with few words; empty: `words`
  TextT small = {};  ///< when every row is one name or number: "# over #"; empty: there is none
  TextT nouns = {};  ///< the construct and its rows: "fraction,numerator,denominator", with "/m", "/f" or
                     ///< "/n" after a noun that has a gender; the last one is that of all further rows
};
using SpokenFormS = SpokenFormTS<std::u16string_view>;

/// What is said for the operator; null when the language has no row for it, and neither has English.
SpokenFormS const* findSpokenForm(std::u16string_view name, SpeechLanguageE language);

/// A row for an operator that a host adds.
using SpeechOperatorS = SpokenFormTS<wstring>;

/// Adds it for the whole process; the last row of a name wins over earlier ones and over ours. A language
/// without a row takes the English one. Call it before other threads make speech.
void registerSpeechOperator(SpeechOperatorS op, SpeechLanguageE language = SPEECH_ENGLISH);

/// Words that belong to no operator. "#" is what they are about.
enum SpeechWordE {
  SPEECH_EMPTY,         ///< a slot
  SPEECH_DECIMAL_SIGN,  ///< in numbers
  SPEECH_COMMA,
  SPEECH_OPEN,
  SPEECH_CLOSE,
  SPEECH_BRIEF_OPEN,
  SPEECH_BRIEF_CLOSE,
  SPEECH_NEXT_ROW,  ///< between two rows of a table
  SPEECH_OF,        ///< between a function and its argument
  SPEECH_SUB,
  SPEECH_CAPITAL,
  SPEECH_NAME,      ///< before a name that is spelled
  SPEECH_END_NAME,  ///< and after it
  SPEECH_TEXT,      ///< before what is shown as prefix text
  SPEECH_END_TEXT,
  SPEECH_FORMULA,  ///< the noun for the formula as a whole
  SPEECH_PART,     ///< the noun for a row without one of its own
  SPEECH_START,
  SPEECH_END,
  SPEECH_SELECTED,
  SPEECH_UNSELECTED,
  SPEECH_DELETED,
  // Each for a noun without gender or a masculine one, a feminine one, a neuter one, and a masculine one with
  // an ending of its own ("Exponent", "in den Exponenten").
  SPEECH_INTO,
  SPEECH_INTO_FEMININE,
  SPEECH_INTO_NEUTER,
  SPEECH_INTO_WEAK,
  SPEECH_EMPTY_ROW,
  SPEECH_EMPTY_ROW_FEMININE,
  SPEECH_EMPTY_ROW_NEUTER,
  SPEECH_EMPTY_ROW_WEAK,
  SPEECH_TABLE_ROW,     ///< after the noun of a cell
  SPEECH_TABLE_COLUMN,  ///< and after that
  num_speech_words
};

std::u16string_view getSpeechWord(SpeechWordE word, SpeechLanguageE language);

/// The name of a letter that speech programs may not know, "theta" for both "θ" and "Θ"; empty when there is
/// none. `*isCapital` tells which of the two.
std::u16string_view findLetterName(char16_t letter, bool* isCapital);

/// Whether the text, in whatever letters, is a word of more than one letter that the language uses for
/// something in formulas.
bool isSpeechWord(std::u16string_view text, SpeechLanguageE language);

}  // namespace zolt::exchange
