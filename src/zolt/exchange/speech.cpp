#include "zolt/exchange/speech.h"

#include <algorithm>
#include <deque>
#include <map>
#include <set>
#include <string>
#include <utility>

#include "zolt/exchange/detail/notation.h"
#include "zolt/exchange/detail/speech_tables.h"

namespace zolt::exchange {

using namespace detail;

namespace {

struct LetterNameS {
  char16_t letter;
  std::u16string_view name;
};

// Letters that are no Greek letters of plain text.
constexpr LetterNameS further_letters[] = {
    {u'ϵ', u"epsilon variant"}, {u'ϑ', u"theta variant"}, {u'ϕ', u"phi variant"},   {u'ϱ', u"rho variant"},
    {u'ς', u"sigma variant"},   {u'ϖ', u"pi variant"},    {u'ϰ', u"kappa variant"}, {u'π', u"pi letter"},
    {u'Π', u"Pi letter"},       {u'ℏ', u"h bar"},         {u'ℓ', u"script l"},      {u'ℵ', u"aleph"}};

wstring toSmall(std::u16string_view text) {
  wstring small(text);
  for (char16_t& c : small) {
    if ((c >= u'A' && c <= u'Z') || (c >= u'À' && c <= u'Þ')) c = static_cast<char16_t>(c + 0x20);
  }
  return small;
}

void addWords(std::u16string_view text, std::set<wstring>& words) {
  wstring word;
  for (std::size_t i = 0; i <= text.size(); ++i) {
    char16_t const c = i < text.size() ? text[i] : u' ';
    if (c != u' ' && c != u',' && c != u'#') {
      word += c;
    } else {
      if (word.size() > 1) words.insert(toSmall(word));
      word.clear();
    }
  }
}

/// A language's rows by name, with what hosts have added.
class LanguageC {
 public:
  explicit LanguageC(SpeechTableS table) : table_(std::move(table)) {
    for (SpokenFormS const& form : table_.forms) note(form);
    for (std::u16string_view const word : table_.words) addWords(word, spoken_);
    auto const [first, last] = greekLetters();
    for (auto const* letter = first; letter != last; ++letter) addWords(letter->name, spoken_);
    for (LetterNameS const& letter : further_letters) addWords(letter.name, spoken_);
  }

  void add(SpeechOperatorS op) {
    added_.push_back(std::move(op));
    SpeechOperatorS const& kept = added_.back();
    note({kept.name, kept.words, kept.brief, kept.small, kept.nouns});
  }

  SpokenFormS const* find(std::u16string_view name) const {
    auto const found = byName_.find(name);
    return found == byName_.end() ? nullptr : &found->second;
  }
  std::u16string_view getWord(SpeechWordE word) const { return table_.words[word]; }
  bool speaks(std::u16string_view word) const { return spoken_.count(toSmall(word)) != 0; }

 private:
  void note(SpokenFormS const& form) {
    byName_[form.name] = form;
    addWords(form.words, spoken_);
  }

  SpeechTableS table_;
  std::deque<SpeechOperatorS> added_;  // the rows refer to their texts
  std::map<std::u16string_view, SpokenFormS> byName_;
  std::set<wstring> spoken_;
};

LanguageC& languageOf(SpeechLanguageE language) {
  static LanguageC all[num_speech_languages] = {LanguageC(makeEnglish()), LanguageC(makeGerman())};
  return all[language];
}

}  // namespace

SpokenFormS const* findSpokenForm(std::u16string_view name, SpeechLanguageE language) {
  SpokenFormS const* const form = languageOf(language).find(name);
  return form ? form : languageOf(SPEECH_ENGLISH).find(name);
}

void registerSpeechOperator(SpeechOperatorS op, SpeechLanguageE language) {
  languageOf(language).add(std::move(op));
}

std::u16string_view getSpeechWord(SpeechWordE word, SpeechLanguageE language) {
  return languageOf(language).getWord(word);
}

std::u16string_view findLetterName(char16_t letter, bool* isCapital) {
  *isCapital = false;
  auto const [first, last] = greekLetters();
  auto const* const greek =
      std::find_if(first, last, [&](auto const& one) { return one.letter[0] == letter; });
  if (greek != last) {
    // A capital has the name of the small letter that comes before all capitals.
    *isCapital = greek->name[0] < u'a';
    auto const isSmall = [&](auto const& one) {
      return one.name[0] == greek->name[0] - u'A' + u'a' && one.name.substr(1) == greek->name.substr(1);
    };
    return *isCapital ? std::find_if(first, last, isSmall)->name : greek->name;
  }
  auto const* const end = std::end(further_letters);
  auto const* const other = std::find_if(std::begin(further_letters), end,
                                         [&](LetterNameS const& one) { return one.letter == letter; });
  return other == end ? std::u16string_view() : other->name;
}

bool isSpeechWord(std::u16string_view text, SpeechLanguageE language) {
  return languageOf(language).speaks(text);
}

}  // namespace zolt::exchange
