#include "zolt/script/event_script.h"

#include <algorithm>
#include <iterator>
#include <string_view>

#include "zolt/oss/quoted_text.h"
#include "zolt/ved/view/key_code.h"

namespace zolt::script {

using namespace field;

namespace {

using math::algexpr::NumberDisplayFormatE;
using math::ved::PlacePathS;
using TextViewT = std::u16string_view;

/// What is written after the word of a step.
enum ArgumentsE {
  NO_ARGUMENT,
  CHARACTER,
  KEY,
  NUMBER,
  TEXT,
  NAME,
  POINT,
  PRESS,
  SWITCH,
  SHOWN,
  PLACE,
  PLACES
};

/// A name is listed before the names that are its beginning, since the first match counts.
struct WordS {
  TextViewT name;
  ScriptWordE word;
  ArgumentsE arguments;
};

constexpr WordS words[] = {
    {u"char", SCRIPT_CHAR, CHARACTER},
    {u"key", SCRIPT_KEY, KEY},
    {u"type", SCRIPT_TYPE, TEXT},
    {u"insert", SCRIPT_INSERT, TEXT},
    {u"op", SCRIPT_OPERATOR, NAME},
    {u"pen down", SCRIPT_PEN_DOWN, PRESS},
    {u"pen move", SCRIPT_PEN_MOVE, POINT},
    {u"pen up", SCRIPT_PEN_UP, NO_ARGUMENT},
    {u"command", SCRIPT_COMMAND, NAME},
    {u"copy", SCRIPT_COPY, NO_ARGUMENT},
    {u"cut", SCRIPT_CUT, NO_ARGUMENT},
    {u"paste prefix", SCRIPT_PASTE_PREFIX, TEXT},
    {u"paste bytes", SCRIPT_PASTE_BYTES, TEXT},
    {u"paste", SCRIPT_PASTE, NO_ARGUMENT},
    {u"paste", SCRIPT_PASTE_TEXT, TEXT},
    {u"undo", SCRIPT_UNDO, NO_ARGUMENT},
    {u"redo", SCRIPT_REDO, NO_ARGUMENT},
    {u"show", SCRIPT_SHOW, SHOWN},
    {u"tree", SCRIPT_TREE, TEXT},
    {u"set", SCRIPT_SET, SWITCH},
    {u"names", SCRIPT_NAMES, TEXT},
    {u"lock", SCRIPT_LOCK, NO_ARGUMENT},
    {u"unlock", SCRIPT_UNLOCK, NO_ARGUMENT},
    {u"paint", SCRIPT_PAINT, NO_ARGUMENT},
    {u"complete", SCRIPT_COMPLETE, NO_ARGUMENT},
    {u"ask", SCRIPT_ASK, NO_ARGUMENT},
    {u"suggest", SCRIPT_SUGGEST, NO_ARGUMENT},
    {u"accept", SCRIPT_ACCEPT, NUMBER},
    {u"move", SCRIPT_MOVE, PLACE},
    {u"select", SCRIPT_SELECT, PLACES},
};

struct KeyS {
  TextViewT name;
  unsigned long code;
};

constexpr KeyS keys[] = {
    {u"backspace", math::ved::KEY_BACKSPACE}, {u"clear", math::ved::KEY_CLEAR},
    {u"left", math::ved::KEY_LEFT},           {u"up", math::ved::KEY_UP},
    {u"right", math::ved::KEY_RIGHT},         {u"down", math::ved::KEY_DOWN},
    {u"delete", math::ved::KEY_DELETE},
};

/// The names of the formats, in the order of their values.
constexpr TextViewT formats[] = {u"automatic", u"fixed", u"scientific", u"engineering"};

/// Goes through the arguments of a step, which the reader sets and the writer appends.
template <class TextT, class StepT>
bool visitArguments(TextT& text, ArgumentsE arguments, StepT& step) {
  switch (arguments) {
    case NO_ARGUMENT:
      return true;
    case CHARACTER:
      return text.character(step.code);
    case KEY:
      return text.key(step.code) && text.shift(step.shift);
    case NUMBER:
      return text.number(step.code);
    case TEXT:
      return text.quoted(step.text);
    case NAME:
      return text.name(step.text);
    case POINT:
      return text.coordinate(step.x) && text.coordinate(step.y);
    case PRESS:
      return visitArguments(text, POINT, step) && text.clicks(step.clicks) && text.shift(step.shift);
    case SWITCH:
      return text.name(step.text) && text.onOrOff(step.on);
    case SHOWN:
      return text.quoted(step.text) && text.precision(step.code) && text.format(step.format);
    case PLACE:
      return text.places(step.places, 1);
    case PLACES:
      return text.places(step.places, 2);
  }
  return false;
}

bool isBlank(char16_t c) { return c == u' ' || c == u'\n' || c == u'\t' || c == u'\r'; }

class ScriptReaderC {
 public:
  explicit ScriptReaderC(wstring const& text) : text_(text) {}

  bool read(EventScriptT& script, unsigned long& position) {
    EventScriptT steps;
    for (skipBlanks(); at_ < text_.size(); skipBlanks()) {
      position = at_;
      if (text_[at_] == u'#') {
        at_ = std::min(text_.find(u'\n', at_), text_.size());
      } else if (!readStep(steps.emplace_back())) {
        return false;
      }
    }
    script = std::move(steps);
    return true;
  }

  bool character(unsigned long& code) {
    TextViewT const word = readWord();
    if (word.size() == 1) return code = word[0], true;
    return word.substr(0, 2) == u"U+" && oss::readDigits(word.substr(2), 16, code);
  }
  bool key(unsigned long& code) {
    TextViewT const word = readWord();
    for (KeyS const& key : keys) {
      if (word == key.name) return code = key.code, true;
    }
    return oss::readDigits(word, 10, code);
  }
  bool number(unsigned long& value) { return oss::readDigits(readWord(), 10, value); }
  bool shift(bool& held) { return held = take(u"shift"), true; }
  bool name(wstring& name) { return !(name = wstring(readWord())).empty(); }
  bool onOrOff(bool& on) { return (on = take(u"on")) || take(u"off"); }
  bool clicks(unsigned& clicks) {
    std::size_t const before = at_;
    TextViewT const word = readWord();
    unsigned long count = 0;
    if (word.substr(0, 1) == u"x" && oss::readDigits(word.substr(1), 10, count)) {
      clicks = static_cast<unsigned>(count);
    } else {
      at_ = before;
    }
    return true;
  }
  bool precision(unsigned long& digits) {
    return !take(u"precision") || oss::readDigits(readWord(), 10, digits);
  }
  bool format(NumberDisplayFormatE& format) {
    if (!take(u"format")) return true;
    auto const* const found = std::find(std::begin(formats), std::end(formats), readWord());
    format = static_cast<NumberDisplayFormatE>(found - std::begin(formats));
    return found != std::end(formats);
  }

  bool places(std::vector<PlacePathS>& places, unsigned count) {
    bool read = true;
    while (read && places.size() < count) read = readPlace(places.emplace_back());
    return read;
  }

  bool coordinate(long& value) {
    TextViewT const word = readWord();
    bool const negative = word.substr(0, 1) == u"-";
    unsigned long size = 0;
    if (!oss::readDigits(word.substr(negative ? 1 : 0), 10, size)) return false;
    constexpr unsigned long largest = 0x7FFFFFFF;
    if (size > largest + (negative ? 1 : 0)) return false;
    value = negative && size > 0 ? -static_cast<long>(size - 1) - 1 : static_cast<long>(size);
    return true;
  }

  bool quoted(wstring& text) {
    if (!isAtQuote()) return false;
    ++at_;
    while (at_ < text_.size()) {
      char16_t c = text_[at_++];
      if (c == u'"') return true;
      if (c == u'\\' && !oss::readEscaped(text_, at_, c)) return false;
      text += c;
    }
    return false;
  }

 private:
  void skipBlanks() {
    while (at_ < text_.size() && isBlank(text_[at_])) ++at_;
  }

  bool isAtQuote() {
    skipBlanks();
    return at_ < text_.size() && text_[at_] == u'"';
  }

  TextViewT readWord() {
    skipBlanks();
    std::size_t const start = at_;
    while (at_ < text_.size() && !isBlank(text_[at_])) ++at_;
    return TextViewT(text_).substr(start, at_ - start);
  }

  /// Reads the words of `phrase` if they come next; false, with nothing read, if not.
  bool take(TextViewT phrase) {
    std::size_t const before = at_;
    std::size_t const blank = phrase.find(u' ');
    if (readWord() == phrase.substr(0, blank) && (blank == phrase.npos || take(phrase.substr(blank + 1)))) {
      return true;
    }
    at_ = before;
    return false;
  }

  bool readStep(ScriptStepS& step) {
    for (WordS const& word : words) {
      if (!take(word.name)) continue;
      bool const pastesText = word.word == SCRIPT_PASTE && isAtQuote();
      step.word = pastesText ? SCRIPT_PASTE_TEXT : word.word;
      return visitArguments(*this, pastesText ? TEXT : word.arguments, step);
    }
    return false;
  }

  bool readPlace(PlacePathS& place) {
    TextViewT const word = readWord();
    std::size_t const colon = word.find(u':');
    if (colon == word.npos || !oss::readDigits(word.substr(colon + 1), 10, place.pos)) return false;
    for (std::size_t start = 0; start <= colon;) {
      std::size_t const end = std::min(word.find(u'.', start), colon);
      if (!oss::readDigits(word.substr(start, end - start), 10, place.path.emplace_back())) return false;
      start = end + 1;
    }
    return true;
  }

  wstring const& text_;
  std::size_t at_ = 0;
};

class ScriptWriterC {
 public:
  explicit ScriptWriterC(wstring& out) : out_(out) {}

  bool character(unsigned long code) {
    bool const plain = code > u' ' && code < 0x7F;
    return append(plain ? wstring(1, static_cast<char16_t>(code)) : u"U+" + oss::toDigits(code, 16));
  }
  bool key(unsigned long code) {
    for (KeyS const& key : keys) {
      if (key.code == code) return append(key.name);
    }
    return append(oss::toDigits(code));
  }
  bool number(unsigned long value) { return append(oss::toDigits(value)); }
  bool shift(bool held) { return !held || append(u"shift"); }
  bool name(wstring const& name) { return append(name); }
  bool onOrOff(bool on) { return append(on ? u"on" : u"off"); }
  bool clicks(unsigned clicks) { return clicks <= 1 || append(u"x" + oss::toDigits(clicks)); }
  bool precision(unsigned long digits) {
    return digits == 0 || append(u"precision " + oss::toDigits(digits));
  }
  bool format(NumberDisplayFormatE format) {
    auto const number = static_cast<std::size_t>(format);
    return number == 0 || number >= std::size(formats) || (append(u"format") && append(formats[number]));
  }
  bool places(std::vector<PlacePathS> const& places, unsigned) {
    for (PlacePathS const& place : places) {
      char16_t before = u' ';
      for (unsigned long const number : place.path) {
        out_ += before + oss::toDigits(number);
        before = u'.';
      }
      out_ += u':' + oss::toDigits(place.pos);
    }
    return true;
  }
  bool coordinate(long value) {
    unsigned long const bits = static_cast<unsigned long>(value);
    return append(value < 0 ? u'-' + oss::toDigits(0 - bits) : oss::toDigits(bits));
  }
  bool quoted(wstring const& text) {
    out_ += u" \"";
    for (char16_t const c : text) oss::appendQuoted(out_, c);
    out_ += u'"';
    return true;
  }

 private:
  bool append(TextViewT word) {
    out_ += u' ';
    out_ += word;
    return true;
  }

  wstring& out_;
};

}  // namespace

bool readEventScript(wstring const& text, EventScriptT& script, unsigned long& position) {
  return ScriptReaderC(text).read(script, position);
}

wstring writeScriptStep(ScriptStepS const& step) {
  auto const* const found = std::find_if(std::begin(words), std::end(words),
                                         [&](WordS const& word) { return word.word == step.word; });
  wstring out(found->name);
  ScriptWriterC writer(out);
  visitArguments(writer, found->arguments, step);
  return out;
}

wstring writeEventScript(EventScriptT const& script) {
  wstring out;
  for (ScriptStepS const& step : script) out += writeScriptStep(step) + u'\n';
  return out;
}

}  // namespace zolt::script
