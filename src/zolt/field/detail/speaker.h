#pragma once

#include <string_view>
#include <vector>

#include "zolt/field/detail/spoken_tokens.h"
#include "zolt/field/readable_text.h"

namespace zolt::field::detail {

/// Appends what is said for rows and stretches of rows to a text.
class SpeakerC {
 public:
  SpeakerC(ReadableTextS& out, math::ved::OperatorListC const& operators, SpeechStyleS style)
      : out_(out), operators_(operators), style_(style) {}

  /// Speaks from one place of a row to another. Recursion is safe, since the nesting of rows is limited.
  void speak(SelectionS const& stretch);
  /// To be called last.
  void finish() { settle(); }

 private:
  using Node4C = math::ved::Node4C;
  using ViewT = std::u16string_view;

  void speakRow(Node4C const& row);
  void speakConstruct(Node4C const& construct);
  void speakPower(Node4C const& power);
  void speakRows(Node4C const& construct, ViewT frame);
  void speakBracket(Node4C const& bracket);
  /// Speaks what comes between a function's name and its argument.
  void speakCall(Node4C const& open);
  void speakText(Node4C const& text, unsigned int begin, unsigned int end);
  void speakName(Node4C const& text, SpokenTokenS const& name, bool isCall);
  void speakPart(Node4C const& text, unsigned int begin, unsigned int end);
  void speakLetters(Node4C const& text, unsigned int begin, unsigned int end);
  void speakNumber(Node4C const& text, SpokenTokenS const& number);
  void speakSign(wstring const& sign);

  bool isFull() const { return style_.verbosity == exchange::SPEECH_FULL; }
  bool isBrief() const { return style_.verbosity == exchange::SPEECH_BRIEF; }
  /// What is said for the operator as a word; empty when it has rows.
  ViewT findWord(wstring const& name) const;
  /// The same for the operator with that text.
  ViewT findWordOfText(wstring const& text) const;
  ViewT word(exchange::SpeechWordE which) const { return exchange::getSpeechWord(which, style_.language); }
  void say(exchange::SpeechWordE which) { say(word(which)); }

  /// Appends words, after a blank or, when they begin with one, a comma.
  void say(ViewT words);
  /// Marks the places of the text up to `pos`, at the next word.
  void markUpTo(Node4C const& text, unsigned int pos);
  /// Marks the place inside a word.
  void markHere(Node4C const& text, unsigned int pos);
  void settle();

  ReadableTextS& out_;
  math::ved::OperatorListC const& operators_;
  SpeechStyleS style_;
  Node4C const* silentOpen_ = nullptr;  // the brackets of a call that need not be heard
  Node4C const* silentClose_ = nullptr;
  unsigned int nextPos_ = 0;   // the first position of the current text that is not marked
  unsigned long settled_ = 0;  // so many marks have their offset
};

}  // namespace zolt::field::detail
