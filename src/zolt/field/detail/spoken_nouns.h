#pragma once

#include "zolt/exchange/speech.h"
#include "zolt/oss/wstring.h"

namespace zolt::math::ved {
class Node4C;
}

namespace zolt::field::detail {

using oss::wstring;

/// What a part of a formula is called, with its gender: so many words after that for nouns without one.
struct NounS {
  wstring text;
  int gender = 0;
};

/// The names of the parts of formulas in one language.
class NounsC {
 public:
  explicit NounsC(exchange::SpeechLanguageE language) : language_(language) {}

  /// The noun of a construct or an exponent.
  NounS ofItem(math::ved::Node4C const& item) const;
  /// The noun of a row: "denominator", "formula".
  NounS ofRow(math::ved::Node4C const& row) const;

  wstring say(exchange::SpeechWordE word, wstring const& about) const;
  /// The words about a noun, in its gender.
  wstring say(exchange::SpeechWordE word, NounS const& about) const;

 private:
  NounS find(math::ved::Node4C const& item, unsigned long index) const;

  exchange::SpeechLanguageE language_;
};

}  // namespace zolt::field::detail
