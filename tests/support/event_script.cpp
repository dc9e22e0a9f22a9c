#include "tests/support/event_script.h"

#include <algorithm>
#include <iterator>

#include "zolt/ved/view/key_code.h"

namespace zolt::tests {

namespace {

enum ArgumentsE { NO_ARGUMENT, CHARACTER, KEY, TEXT, OPTIONAL_TEXT, NAME, POINT };

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
    {u"down", SCRIPT_DOWN, POINT},
    {u"move", SCRIPT_MOVE, POINT},
    {u"up", SCRIPT_UP, NO_ARGUMENT},
    {u"copy", SCRIPT_COPY, NO_ARGUMENT},
    {u"cut", SCRIPT_CUT, NO_ARGUMENT},
    {u"paste", SCRIPT_PASTE, OPTIONAL_TEXT},
    {u"undo", SCRIPT_UNDO, NO_ARGUMENT},
    {u"redo", SCRIPT_REDO, NO_ARGUMENT},
    {u"show", SCRIPT_SHOW, TEXT},
    {u"lock", SCRIPT_LOCK, NO_ARGUMENT},
    {u"unlock", SCRIPT_UNLOCK, NO_ARGUMENT},
    {u"paint", SCRIPT_PAINT, NO_ARGUMENT},
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

bool isBlank(char16_t c) { return c == u' ' || c == u'\n' || c == u'\t' || c == u'\r'; }

bool readNumber(wstring const& word, int base, unsigned long& value) {
  value = 0;
  for (char16_t c : word) {
    int digit = base;
    if (c >= u'0' && c <= u'9') digit = c - u'0';
    if (c >= u'A' && c <= u'F') digit = c - u'A' + 10;
    if (digit >= base || value > 0xFFFFFF) return false;
    value = value * static_cast<unsigned long>(base) + static_cast<unsigned long>(digit);
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
      ScriptStepS step;
      if (!readStep(step)) return false;
      steps.push_back(step);
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

  bool readStep(ScriptStepS& step) {
    wstring const name = readWord();
    auto const* const word =
        std::find_if(std::begin(words), std::end(words), [&](WordS const& w) { return name == w.name; });
    if (word == std::end(words)) return false;
    step.word = word->word;
    switch (word->arguments) {
      case NO_ARGUMENT:
        return true;
      case CHARACTER:
        return readCharacter(step.code);
      case KEY:
        return readKey(step);
      case TEXT:
        return readText(step);
      case OPTIONAL_TEXT:
        skipBlanks();
        return at_ == text_.size() || text_[at_] != u'"' || readText(step);
      case NAME:
        step.text = readWord();
        return !step.text.empty();
      case POINT:
        return readCoordinate(step.x) && readCoordinate(step.y);
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
    std::size_t const behindKey = at_;
    step.shift = readWord() == u"shift";
    if (!step.shift) at_ = behindKey;
    return true;
  }

  bool readCoordinate(long& value) {
    wstring word = readWord();
    bool const negative = !word.empty() && word[0] == u'-';
    unsigned long size = 0;
    if (!readNumber(word.substr(negative ? 1 : 0), 10, size)) return false;
    value = negative ? -static_cast<long>(size) : static_cast<long>(size);
    return true;
  }

  bool readText(ScriptStepS& step) {
    skipBlanks();
    if (at_ == text_.size() || text_[at_++] != u'"') return false;
    step.hasText = true;
    while (at_ < text_.size()) {
      char16_t c = text_[at_++];
      if (c == u'"') return true;
      if (c == u'\\') {
        if (at_ == text_.size()) return false;
        c = text_[at_++];
        if (c == u'u') {
          unsigned long code = 0;
          if (text_.size() - at_ < 4 || !readNumber(text_.substr(at_, 4), 16, code)) return false;
          at_ += 4;
          c = static_cast<char16_t>(code);
        }
      }
      step.text += c;
    }
    return false;
  }

  wstring const& text_;
  std::size_t at_ = 0;
};

void appendNumber(wstring& out, long value, unsigned base = 10) {
  wstring digits;
  bool const negative = value < 0;
  auto size = static_cast<unsigned long>(negative ? -value : value);
  do {
    digits += u"0123456789ABCDEF"[size % base];
    size /= base;
  } while (size > 0);
  if (negative) digits += u'-';
  out.append(digits.rbegin(), digits.rend());
}

void appendText(wstring& out, wstring const& text) {
  out += u'"';
  for (char16_t c : text) {
    if (c < u' ' || (c >= 0xD800 && c < 0xE000)) {
      out += u"\\u";
      for (int shift = 12; shift >= 0; shift -= 4) out += u"0123456789ABCDEF"[(c >> shift) & 0xF];
      continue;
    }
    if (c == u'"' || c == u'\\') out += u'\\';
    out += c;
  }
  out += u'"';
}

void appendArguments(wstring& out, ScriptStepS const& step, ArgumentsE arguments) {
  switch (arguments) {
    case NO_ARGUMENT:
      break;
    case CHARACTER:
      if (step.code > u' ' && step.code < 0x7F) {
        out += static_cast<char16_t>(step.code);
      } else {
        out += u"U+";
        appendNumber(out, static_cast<long>(step.code), 16);
      }
      break;
    case KEY: {
      auto const* const key =
          std::find_if(std::begin(keys), std::end(keys), [&](KeyS const& k) { return step.code == k.code; });
      if (key != std::end(keys)) {
        out += key->name;
      } else {
        appendNumber(out, static_cast<long>(step.code));
      }
      if (step.shift) out += u" shift";
      break;
    }
    case TEXT:
    case OPTIONAL_TEXT:
      appendText(out, step.text);
      break;
    case NAME:
      out += step.text;
      break;
    case POINT:
      appendNumber(out, step.x);
      out += u' ';
      appendNumber(out, step.y);
      break;
  }
}

}  // namespace

bool readEventScript(wstring const& text, EventScriptT& script, unsigned long& position) {
  return ScriptReaderC(text).read(script, position);
}

wstring writeEventScript(EventScriptT const& script) {
  wstring out;
  for (ScriptStepS const& step : script) {
    auto const* const word =
        std::find_if(std::begin(words), std::end(words), [&](WordS const& w) { return step.word == w.word; });
    if (!out.empty()) out += u' ';
    out += word->name;
    if (word->arguments == NO_ARGUMENT || (word->arguments == OPTIONAL_TEXT && !step.hasText)) continue;
    out += u' ';
    appendArguments(out, step, word->arguments);
  }
  return out;
}

}  // namespace zolt::tests
