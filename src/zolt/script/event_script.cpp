#include "zolt/script/event_script.h"

#include <algorithm>
#include <iterator>

#include "zolt/oss/quoted_text.h"
#include "zolt/ved/view/key_code.h"

namespace zolt::script {

using namespace field;

namespace {

enum ArgumentsE { NO_ARGUMENT, CHARACTER, KEY, TEXT, NAME, POINT, PRESS, SWITCH, SHOWN, PLACE, PLACES };

/// A name is listed before the names that are its beginning, since the first match counts.
struct WordS {
  char16_t const* name;
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
    {u"lock", SCRIPT_LOCK, NO_ARGUMENT},
    {u"unlock", SCRIPT_UNLOCK, NO_ARGUMENT},
    {u"paint", SCRIPT_PAINT, NO_ARGUMENT},
    {u"complete", SCRIPT_COMPLETE, NO_ARGUMENT},
    {u"ask", SCRIPT_ASK, NO_ARGUMENT},
    {u"move", SCRIPT_MOVE, PLACE},
    {u"select", SCRIPT_SELECT, PLACES},
};

struct KeyS {
  char16_t const* name;
  unsigned long code;
};

constexpr KeyS keys[] = {
    {u"backspace", math::ved::KEY_BACKSPACE}, {u"clear", math::ved::KEY_CLEAR},
    {u"left", math::ved::KEY_LEFT},           {u"up", math::ved::KEY_UP},
    {u"right", math::ved::KEY_RIGHT},         {u"down", math::ved::KEY_DOWN},
    {u"delete", math::ved::KEY_DELETE},
};

/// The names of the formats, in the order of their values.
constexpr char16_t const* formats[] = {u"automatic", u"fixed", u"scientific", u"engineering"};

bool isBlank(char16_t c) { return c == u' ' || c == u'\n' || c == u'\t' || c == u'\r'; }

bool readNumber(wstring const& word, unsigned base, unsigned long& value) {
  constexpr unsigned long largest = 0xFFFFFFFF;
  value = 0;
  for (char16_t const c : word) {
    unsigned const digit = oss::hexadecimalValue(c);
    if (digit >= base || value > (largest - digit) / base) return false;
    value = value * base + digit;
  }
  return !word.empty();
}

class ScriptReaderC {
 public:
  explicit ScriptReaderC(wstring const& text) : text_(text) {}

  bool read(EventScriptT& script, unsigned long& position) {
    EventScriptT steps;
    for (skipBlanks(); at_ < text_.size(); skipBlanks()) {
      position = at_;
      if (text_[at_] == u'#') {
        at_ = std::min(text_.find(u'\n', at_), text_.size());
        continue;
      }
      ScriptStepS step;
      if (!readStep(step)) return false;
      steps.push_back(std::move(step));
    }
    script = std::move(steps);
    return true;
  }

 private:
  void skipBlanks() {
    while (at_ < text_.size() && isBlank(text_[at_])) ++at_;
  }

  wstring readWord() {
    skipBlanks();
    std::size_t const start = at_;
    while (at_ < text_.size() && !isBlank(text_[at_])) ++at_;
    return text_.substr(start, at_ - start);
  }

  /// Reads `word` if it comes next; false, with nothing read, if not.
  bool take(wstring const& word) {
    std::size_t const before = at_;
    if (readWord() == word) return true;
    at_ = before;
    return false;
  }

  bool takeName(wstring const& name) {
    std::size_t const before = at_;
    std::size_t const blank = name.find(u' ');
    if (take(name.substr(0, blank)) && (blank == wstring::npos || take(name.substr(blank + 1)))) return true;
    at_ = before;
    return false;
  }

  bool readStep(ScriptStepS& step) {
    for (WordS const& word : words) {
      if (!takeName(word.name)) continue;
      step.word = word.word;
      if (word.word == SCRIPT_PASTE && isAtQuote()) step.word = SCRIPT_PASTE_TEXT;
      return readArguments(step, step.word == SCRIPT_PASTE_TEXT ? TEXT : word.arguments);
    }
    return false;
  }

  bool isAtQuote() {
    skipBlanks();
    return at_ < text_.size() && text_[at_] == u'"';
  }

  bool readArguments(ScriptStepS& step, ArgumentsE arguments) {
    switch (arguments) {
      case NO_ARGUMENT:
        return true;
      case CHARACTER:
        return readCharacter(step.code);
      case KEY:
        return readKey(step);
      case TEXT:
        return readText(step.text);
      case NAME:
        step.text = readWord();
        return !step.text.empty();
      case POINT:
        return readCoordinate(step.x) && readCoordinate(step.y);
      case PRESS:
        return readCoordinate(step.x) && readCoordinate(step.y) && readPress(step);
      case SWITCH:
        step.text = readWord();
        step.on = take(u"on");
        return !step.text.empty() && (step.on || take(u"off"));
      case SHOWN:
        return readText(step.text) && readNumberFormat(step);
      case PLACE:
        return readPlace(step.places);
      case PLACES:
        return readPlace(step.places) && readPlace(step.places);
    }
    return false;
  }

  bool readCharacter(unsigned long& code) {
    wstring const word = readWord();
    if (word.size() == 1) {
      code = word[0];
      return true;
    }
    return word.compare(0, 2, u"U+") == 0 && readNumber(word.substr(2), 16, code);
  }

  bool readKey(ScriptStepS& step) {
    wstring const name = readWord();
    auto const* const key =
        std::find_if(std::begin(keys), std::end(keys), [&](KeyS const& k) { return name == k.name; });
    if (key != std::end(keys)) {
      step.code = key->code;
    } else if (!readNumber(name, 10, step.code)) {
      return false;
    }
    step.shift = take(u"shift");
    return true;
  }

  bool readPress(ScriptStepS& step) {
    std::size_t const before = at_;
    wstring const word = readWord();
    unsigned long clicks = 1;
    if (!word.empty() && word[0] == u'x' && readNumber(word.substr(1), 10, clicks)) {
      step.clicks = static_cast<unsigned>(clicks);
    } else {
      at_ = before;
    }
    step.shift = take(u"shift");
    return true;
  }

  bool readNumberFormat(ScriptStepS& step) {
    if (take(u"precision") && !readNumber(readWord(), 10, step.code)) return false;
    if (!take(u"format")) return true;
    wstring const name = readWord();
    auto const* const found = std::find(std::begin(formats), std::end(formats), name);
    step.format = static_cast<math::algexpr::NumberDisplayFormatE>(found - std::begin(formats));
    return found != std::end(formats);
  }

  bool readPlace(std::vector<math::ved::PlacePathS>& places) {
    places.emplace_back();
    math::ved::PlacePathS& place = places.back();
    wstring const word = readWord();
    std::size_t const colon = word.find(u':');
    if (colon == wstring::npos || !readNumber(word.substr(colon + 1), 10, place.pos)) return false;
    for (std::size_t start = 0; start <= colon;) {
      std::size_t const end = std::min(word.find(u'.', start), colon);
      place.path.push_back(0);
      if (!readNumber(word.substr(start, end - start), 10, place.path.back())) return false;
      start = end + 1;
    }
    return true;
  }

  bool readCoordinate(long& value) {
    wstring const word = readWord();
    bool const negative = !word.empty() && word[0] == u'-';
    unsigned long size = 0;
    if (!readNumber(word.substr(negative ? 1 : 0), 10, size)) return false;
    constexpr unsigned long largest = 0x7FFFFFFF;
    if (size > largest + (negative ? 1 : 0)) return false;
    value = negative && size > 0 ? -static_cast<long>(size - 1) - 1 : static_cast<long>(size);
    return true;
  }

  bool readText(wstring& text) {
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

  wstring const& text_;
  std::size_t at_ = 0;
};

void appendNumber(wstring& out, unsigned long value, unsigned base = 10) {
  wstring reversed;
  do {
    reversed += u"0123456789ABCDEF"[value % base];
    value /= base;
  } while (value > 0);
  out.append(reversed.rbegin(), reversed.rend());
}

void appendCoordinate(wstring& out, long value) {
  unsigned long const bits = static_cast<unsigned long>(value);
  if (value < 0) out += u'-';
  appendNumber(out, value < 0 ? 0 - bits : bits);
}

void appendText(wstring& out, wstring const& text) {
  out += u'"';
  for (char16_t const c : text) oss::appendQuoted(out, c);
  out += u'"';
}

void appendCharacter(wstring& out, unsigned long code) {
  if (code > u' ' && code < 0x7F) {
    out += static_cast<char16_t>(code);
  } else {
    out += u"U+";
    appendNumber(out, code, 16);
  }
}

void appendKey(wstring& out, unsigned long code) {
  for (KeyS const& key : keys) {
    if (key.code != code) continue;
    out += key.name;
    return;
  }
  appendNumber(out, code);
}

void appendPoint(wstring& out, ScriptStepS const& step) {
  appendCoordinate(out, step.x);
  out += u' ';
  appendCoordinate(out, step.y);
}

void appendNumberFormat(wstring& out, ScriptStepS const& step) {
  if (step.code > 0) {
    out += u" precision ";
    appendNumber(out, step.code);
  }
  auto const format = static_cast<std::size_t>(step.format);
  if (format > 0 && format < std::size(formats)) {
    out += u" format ";
    out += formats[format];
  }
}

void appendPlace(wstring& out, math::ved::PlacePathS const& place) {
  for (std::size_t i = 0; i < place.path.size(); ++i) {
    if (i > 0) out += u'.';
    appendNumber(out, place.path[i]);
  }
  out += u':';
  appendNumber(out, place.pos);
}

void appendPlaces(wstring& out, std::vector<math::ved::PlacePathS> const& places) {
  for (std::size_t i = 0; i < places.size(); ++i) {
    if (i > 0) out += u' ';
    appendPlace(out, places[i]);
  }
}

void appendArguments(wstring& out, ScriptStepS const& step, ArgumentsE arguments) {
  switch (arguments) {
    case NO_ARGUMENT:
      break;
    case CHARACTER:
      appendCharacter(out, step.code);
      break;
    case KEY:
      appendKey(out, step.code);
      if (step.shift) out += u" shift";
      break;
    case TEXT:
      appendText(out, step.text);
      break;
    case NAME:
      out += step.text;
      break;
    case POINT:
      appendPoint(out, step);
      break;
    case PRESS:
      appendPoint(out, step);
      if (step.clicks > 1) {
        out += u" x";
        appendNumber(out, step.clicks);
      }
      if (step.shift) out += u" shift";
      break;
    case SWITCH:
      out += step.text;
      out += step.on ? u" on" : u" off";
      break;
    case SHOWN:
      appendText(out, step.text);
      appendNumberFormat(out, step);
      break;
    case PLACE:
    case PLACES:
      appendPlaces(out, step.places);
      break;
  }
}

}  // namespace

bool readEventScript(wstring const& text, EventScriptT& script, unsigned long& position) {
  return ScriptReaderC(text).read(script, position);
}

wstring writeScriptStep(ScriptStepS const& step) {
  wstring out;
  for (WordS const& word : words) {
    if (word.word != step.word) continue;
    out = word.name;
    if (word.arguments == NO_ARGUMENT) break;
    out += u' ';
    appendArguments(out, step, word.arguments);
    break;
  }
  return out;
}

wstring writeEventScript(EventScriptT const& script) {
  wstring out;
  for (ScriptStepS const& step : script) {
    out += writeScriptStep(step);
    out += u'\n';
  }
  return out;
}

}  // namespace zolt::script
