#include "zolt/field/detail/speaker.h"

#include <algorithm>

#include "zolt/common/decimal_text.h"
#include "zolt/common/signs.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/operators/operator_list.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/row_view.h"

namespace zolt::field::detail {

using namespace exchange;
using namespace math::ved;
using std::u16string_view;

namespace {

constexpr bool isCapital(char16_t c) { return (c >= u'A' && c <= u'Z') || (c >= u'À' && c <= u'Þ'); }

constexpr bool isLetterOrDigit(char16_t c) {
  return math::common::isDigit(c) || math::common::isAsciiLetter(c);
}

/// The words before row `row` of `count`, or after the last one.
u16string_view takePiece(u16string_view frame, unsigned long row, unsigned long count) {
  std::vector<u16string_view> pieces;
  for (std::size_t begin = 0;; begin = frame.find(u'#', begin) + 1) {
    std::size_t const end = frame.find(u'#', begin);
    pieces.push_back(frame.substr(begin, end - begin));
    if (end == frame.npos) break;
  }
  if (row == count) return pieces.back();
  if (pieces.size() == count + 1 || row == 0) return pieces[row];
  return pieces.size() > 2 ? pieces[1] : u16string_view();
}

bool isBlank(u16string_view text) { return text.find_first_not_of(u' ') == text.npos; }

}  // namespace

void SpeakerC::speak(SelectionS const& stretch) {
  for (Node4C const* item = stretch.anchor.node; item; item = item->goRight()) {
    bool const isLast = item == stretch.caret.node;
    if (item->getType() == NODE4_TEXT) {
      unsigned int const begin = item == stretch.anchor.node ? stretch.anchor.pos : 0;
      speakText(*item, begin, (isLast ? stretch.caret : endOf(item)).pos);
    } else if (item->getType() == NODE4_POWER) {
      speakPower(*item);
    } else if (item->getType() == NODE4_OPERATOR) {
      speakConstruct(*item);
    } else {
      speakBracket(*item);
    }
    if (isLast) return;
  }
}

void SpeakerC::speakRow(Node4C const& row) {
  if (row.numChildren() > 0) speak({startOf(row.child(0)), endOf(row.child(row.numChildren() - 1))});
}

// ---- Constructs -------------------------------------------------------------------------------------------

void SpeakerC::speakConstruct(Node4C const& construct) {
  OperatorBC const& op = *construct.crefOperator();
  SpokenFormS const* form = findSpokenForm(op.getStoredName(), style_.language);
  if (!form) form = findSpokenForm(op.getName(), style_.language);
  if (!form || form->words.find(u'#') == form->words.npos) {
    wstring const text = op.getText().empty() ? op.getName() : op.getText();
    wstring frame = (form ? wstring(form->words) : text) + u" ";
    frame.append(word(SPEECH_OF)).append(u" ").append(word(SPEECH_OPEN)).append(u" # ");
    frame.append(word(SPEECH_COMMA)).append(u" # ").append(word(SPEECH_CLOSE));
    return construct.numChildren() > 0 ? speakRows(construct, frame) : say(text);
  }
  bool isSmall = !isFull() && !form->small.empty();
  for (unsigned long i = 0; isSmall && i < construct.numChildren(); ++i) {
    isSmall = isShortRow(*construct.child(i), operators_);
  }
  speakRows(construct, isSmall ? form->small : isBrief() && !form->brief.empty() ? form->brief : form->words);
}

void SpeakerC::speakPower(Node4C const& power) {
  Node4C const& row = *power.child(0);
  wstring const& text = row.child(0)->crefText();
  bool const isShort = isShortRow(row, operators_, WITH_SIGN);
  if (isShort) {
    if (u16string_view const whole = findWord(u"^" + text); !whole.empty()) {
      nextPos_ = 0;
      markUpTo(*row.child(0), 0);
      say(whole);
      return markUpTo(*row.child(0), endOf(row.child(0)).pos);
    }
  }
  SpokenFormS const* const form = findSpokenForm(u"^", style_.language);
  if (!form) return speakRow(row);
  speakRows(power, isShort && !isFull()                ? form->small
                   : isBrief() && !form->brief.empty() ? form->brief
                                                       : form->words);
}

void SpeakerC::speakRows(Node4C const& construct, u16string_view frame) {
  unsigned long const count = construct.numChildren();
  OperatorBC const* const op = construct.crefOperator();
  unsigned long const columns = op ? op->getColumns() : 0;
  for (unsigned long i = 0; i <= count; ++i) {
    bool const beginsRow = columns > 0 && i > 0 && i < count && i % columns == 0;
    say(beginsRow ? word(SPEECH_NEXT_ROW)
                  : takePiece(frame, i, columns > 0 && i < count ? count + 2 : count));
    if (i < count) speakRow(*construct.child(i));
  }
}

void SpeakerC::speakCall(Node4C const& open) {
  say(SPEECH_OF);
  Node4C const* const argument = open.goRight();
  Node4C const* const close = argument ? argument->goRight() : nullptr;
  if (isFull() || !close || !isClosingBracket(close->getType()) || !isShortText(*argument, operators_))
    return;
  silentOpen_ = &open;
  silentClose_ = close;
}

void SpeakerC::speakBracket(Node4C const& bracket) {
  if (&bracket == silentOpen_ || &bracket == silentClose_) return;
  if (isOpeningBracket(bracket.getType())) {
    say(isBrief() ? SPEECH_BRIEF_OPEN : SPEECH_OPEN);
  } else {
    say(isBrief() ? SPEECH_BRIEF_CLOSE : SPEECH_CLOSE);
  }
}

// ---- Texts ------------------------------------------------------------------------------------------------

void SpeakerC::speakText(Node4C const& text, unsigned int begin, unsigned int end) {
  nextPos_ = begin;
  markUpTo(text, begin);
  if (isSlot(text)) say(SPEECH_EMPTY);
  wstring const& characters = text.crefText();
  Node4C const* const next = end == text.sizeText() ? text.goRight() : nullptr;
  for (SpokenTokenS const& token : findSpokenTokens(characters, begin, end, operators_)) {
    markUpTo(text, token.begin);
    switch (token.kind) {
      case SPOKEN_NUMBER:
        speakNumber(text, token);
        break;
      case SPOKEN_NAME:
        speakName(text, token, token.end == end && next && isOpeningBracket(next->getType()));
        break;
      case SPOKEN_SIGN:
        speakSign(characters.substr(token.begin, token.end - token.begin));
        break;
      case SPOKEN_PREFIX:
        say(SPEECH_TEXT);
        say(u16string_view(characters).substr(token.begin, token.end - token.begin));
        say(SPEECH_END_TEXT);
        break;
    }
  }
  markUpTo(text, end);
}

void SpeakerC::speakSign(wstring const& sign) {
  if (sign[0] == Node4C::COMMA_C) return say(SPEECH_COMMA);
  u16string_view const spoken = findWordOfText(sign);
  say(spoken.empty() ? u16string_view(sign) : spoken);
}

void SpeakerC::speakNumber(Node4C const& text, SpokenTokenS const& number) {
  bool goesOn = false;
  for (unsigned int i = number.begin; i < number.end; ++i) {
    char16_t const c = text.crefText()[i];
    bool const isDigits = math::common::startsNumber(c);
    wstring const written = c == u'.' ? wstring(word(SPEECH_DECIMAL_SIGN)) : wstring(1, c);
    if (isDigits && goesOn) {
      markHere(text, i);
      out_.text += written;
    } else {
      markUpTo(text, i);
      if (isDigits) {
        say(written);
      } else if (c == u'e' || c == u'E') {
        say(u"e");
      } else {
        speakSign(c == u'+' ? u"+" : wstring(1, math::common::minus_sign));
      }
    }
    goesOn = isDigits;
  }
}

void SpeakerC::speakName(Node4C const& text, SpokenTokenS const& name, bool isCall) {
  wstring const written = text.crefText().substr(name.begin, name.end - name.begin);
  auto const op = operators_.lookupText(written);
  u16string_view const spoken = op ? findWord(op->getName()) : isCall ? findWord(written) : u16string_view();
  if (!spoken.empty()) {
    say(spoken);
  } else {
    auto const isMixed = [&](char16_t c) { return isCapital(c) && written.size() > 1; };
    bool const hasCapitals = std::any_of(written.begin() + 1, written.end(), isMixed);
    if (isFull() && (hasCapitals || isSpeechWord(written, style_.language))) {
      say(SPEECH_NAME);
      for (unsigned int i = name.begin; i < name.end; ++i) {
        markUpTo(text, i);
        speakPart(text, i, i + 1);
      }
      say(SPEECH_END_NAME);
    } else {
      speakPart(text, name.begin, name.end);
    }
  }
  markUpTo(text, name.end);
  if (isCall && !(op && op->isLinear())) speakCall(*text.goRight());
}

void SpeakerC::speakPart(Node4C const& text, unsigned int begin, unsigned int end) {
  wstring const& characters = text.crefText();
  unsigned int run = begin;
  for (unsigned int i = begin; i < end; ++i) {
    char16_t const c = characters[i];
    bool isGreat = false;
    u16string_view spoken = findLetterName(c, &isGreat);
    bool const isIndex = c == u'_' && i > begin && i + 1 < end;
    if (spoken.empty()) spoken = isIndex ? word(SPEECH_SUB) : findWord(wstring(1, c));
    if (spoken.empty() || isLetterOrDigit(c)) continue;
    speakLetters(text, run, i);
    markUpTo(text, i);
    if (isGreat) say(SPEECH_CAPITAL);
    say(spoken);
    run = i + 1;
  }
  speakLetters(text, run, end);
}

void SpeakerC::speakLetters(Node4C const& text, unsigned int begin, unsigned int end) {
  if (begin == end) return;
  wstring const& characters = text.crefText();
  markUpTo(text, begin);
  if (isFull() && isCapital(characters[begin])) say(SPEECH_CAPITAL);
  say(u16string_view(characters).substr(begin, 1));
  for (unsigned int i = begin + 1; i < end; ++i) {
    markHere(text, i);
    out_.text += characters[i];
  }
}

// ---- Words ------------------------------------------------------------------------------------------------

u16string_view SpeakerC::findWord(wstring const& name) const {
  SpokenFormS const* const form = findSpokenForm(name, style_.language);
  if (!form || form->words.find(u'#') != form->words.npos) return {};
  return isBrief() && !form->brief.empty() ? form->brief : form->words;
}

u16string_view SpeakerC::findWordOfText(wstring const& text) const {
  auto const op = operators_.lookupText(text);
  u16string_view const spoken = op ? findWord(op->getName()) : u16string_view();
  return spoken.empty() ? findWord(text) : spoken;
}

void SpeakerC::say(u16string_view words) {
  if (isBlank(words)) return;
  words.remove_prefix(words.find_first_not_of(u' '));
  if (words[0] == u',' && words.size() > 1) {
    out_.text += u',';
    words.remove_prefix(words.find_first_not_of(u' ', 1));
  }
  words = words.substr(0, words.find_last_not_of(u' ') + 1);
  if (!out_.text.empty()) out_.text += u' ';
  settle();
  out_.text += words;
}

void SpeakerC::settle() {
  auto const offset = static_cast<unsigned long>(out_.text.size());
  for (; settled_ < out_.marks.size(); ++settled_) out_.marks[settled_].offset = offset;
}

void SpeakerC::markUpTo(Node4C const& text, unsigned int pos) {
  for (; nextPos_ <= pos; ++nextPos_) out_.marks.push_back({{&text, nextPos_}, 0});
}

void SpeakerC::markHere(Node4C const& text, unsigned int pos) {
  markUpTo(text, pos);
  settle();
}

}  // namespace zolt::field::detail
