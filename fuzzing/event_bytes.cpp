#include "fuzzing/event_bytes.h"

#include <algorithm>
#include <iterator>
#include <limits>
#include <vector>

#include "fuzzing/bytes_text.h"
#include "fuzzing/trip.h"
#include "zolt/algexpr/cas_session.h"
#include "zolt/catalogue/standard_operators.h"
#include "zolt/field/commands.h"
#include "zolt/oss/quoted_text.h"
#include "zolt/ved/operators/operator_list_repository.h"
#include "zolt/ved/view/key_code.h"

namespace zolt::fuzz {

using namespace field;

namespace {

constexpr unsigned first_code = 0x80;
constexpr unsigned path_lengths = 16;

constexpr ScriptWordE words[] = {
    SCRIPT_KEY,      SCRIPT_CHAR,   SCRIPT_INSERT,   SCRIPT_OPERATOR,     SCRIPT_PEN_DOWN,
    SCRIPT_PEN_MOVE, SCRIPT_PEN_UP, SCRIPT_COMMAND,  SCRIPT_COPY,         SCRIPT_CUT,
    SCRIPT_PASTE,    SCRIPT_UNDO,   SCRIPT_REDO,     SCRIPT_PASTE_PREFIX, SCRIPT_PASTE_BYTES,
    SCRIPT_SHOW,     SCRIPT_TREE,   SCRIPT_SET,      SCRIPT_PASTE_TEXT,   SCRIPT_LOCK,
    SCRIPT_UNLOCK,   SCRIPT_PAINT,  SCRIPT_COMPLETE, SCRIPT_ASK,          SCRIPT_MOVE,
    SCRIPT_SELECT,   SCRIPT_NAMES,  SCRIPT_SUGGEST,  SCRIPT_ACCEPT};

constexpr char16_t const* standard_names[] = {
    u"+",         u"-",        u"*",   u"div",   u"mod",   u"_pos",   u"_neg", u"^",     u"_rad", u"_deg",
    u"!",         u"=",        u"<>",  u"<",     u">",     u"<=",     u">=",   u"not",   u"and",  u"or",
    u":=",        u":>",       u"_PI", u"/",     u"d",     u"sqrt",   u"abs",  u"floor", u"ceil", u"log",
    u"diff",      u"integral", u"sum", u"where", u"error", u"sin",    u"cos",  u"log10", u"exp",  u"nthroot",
    u"_quietpos", u"tan",      u"ln",  u"∞",     u"+-",    u"_posneg"};

/// The names of all operators; those that a catalogue adds are the last.
std::vector<wstring> const& operators() {
  static std::vector<wstring> const names = [] {
    prepare();
    std::vector<wstring> all(std::begin(standard_names), std::end(standard_names));
    auto const list =
        math::ved::OperatorListRepositoryC::lookup(math::algexpr::CASSessionBC::getSession()->getEngine());
    for (auto const* const op : list->crefInOrder()) {
      if (std::find(all.begin(), all.end(), op->getName()) == all.end()) all.push_back(op->getName());
    }
    return all;
  }();
  return names;
}

constexpr char16_t const* options[] = {
    u"constructs", u"letters",    u"leaving",          u"decimal-comma", u"implied-products",
    u"exponents",  u"grouping",   u"implied-brackets", u"fractions",     u"single-letters",
    u"separation", u"completion", u"suggestions"};

// The view's own keys come first, followed by as many codes as there are operators with a key.
constexpr unsigned long view_keys[] = {
    math::ved::KEY_LEFT,      math::ved::KEY_RIGHT,  math::ved::KEY_UP,
    math::ved::KEY_DOWN,      math::ved::KEY_DELETE, math::ved::KEY_CLEAR,
    math::ved::KEY_BACKSPACE, math::ved::KEY_THETA,  math::ved::KEY_CAPITAL_E};
constexpr unsigned long first_operator_key = catalogue::KEY_PLUS;
constexpr unsigned long operator_keys = catalogue::KEY_EXP - catalogue::KEY_PLUS + 1;

unsigned long toKey(unsigned long code) {
  code %= std::size(view_keys) + operator_keys;
  return code < std::size(view_keys) ? view_keys[code] : first_operator_key + (code - std::size(view_keys));
}

unsigned long fromKey(unsigned long key) {
  if (key >= first_operator_key) return std::size(view_keys) + (key - first_operator_key);
  auto const* const found = std::find(std::begin(view_keys), std::end(view_keys), key);
  return static_cast<unsigned long>(found - std::begin(view_keys));
}

template <class TableT>
std::size_t find(TableT const& table, wstring const& name) {
  auto const found = std::find(std::begin(table), std::end(table), name);
  return static_cast<std::size_t>(found - std::begin(table));
}

/// Reads arguments; everything after the end of the bytes is 0.
class ReaderC {
 public:
  ReaderC(std::uint8_t const* data, std::size_t size) : data_(data), size_(size) {}

  bool atEnd() const { return at_ == size_; }
  unsigned byte() { return atEnd() ? 0 : data_[at_++]; }
  template <class TableT>
  wstring name(TableT const& table) {
    return table[byte() % std::size(table)];
  }
  /// A place near the formula, or as far away as possible.
  long coordinate() {
    auto const place = static_cast<std::int8_t>(byte());
    if (place == 127) return std::numeric_limits<std::int32_t>::max();
    if (place == -128) return std::numeric_limits<std::int32_t>::min();
    return place * 2L;
  }
  math::ved::PlacePathS place() {
    math::ved::PlacePathS place;
    for (unsigned left = byte() % path_lengths; left > 0; --left) place.path.push_back(byte());
    place.pos = byte();
    return place;
  }
  wstring text() {
    std::size_t const length = takeLength();
    return toText(data_ + at_ - length, length);
  }
  oss::bytestring bytes() {
    std::size_t const length = takeLength();
    return oss::bytestring(data_ + at_ - length, data_ + at_);
  }

 private:
  /// Skips a length and the bytes that it counts.
  std::size_t takeLength() {
    std::size_t const announced = byte();
    std::size_t const length = std::min(announced, size_ - at_);
    at_ += length;
    return length;
  }

  std::uint8_t const* data_;
  std::size_t size_;
  std::size_t at_ = 0;
};

void readArguments(ReaderC& reader, ScriptStepS& step) {
  switch (step.word) {
    case SCRIPT_KEY: {
      unsigned const code = reader.byte();
      step.shift = (code & 0x80U) != 0;
      step.code = toKey(code & 0x7FU);
      break;
    }
    case SCRIPT_CHAR:
      step.code = reader.byte();
      step.code |= static_cast<unsigned long>(reader.byte()) << 8U;
      break;
    case SCRIPT_ACCEPT:
      step.code = reader.byte();
      break;
    case SCRIPT_OPERATOR:
      step.text = reader.name(operators());
      break;
    case SCRIPT_COMMAND:
      step.text = commands()[reader.byte() % COMMAND_COUNT].name;
      break;
    case SCRIPT_SET: {
      unsigned const code = reader.byte();
      step.on = (code & 0x80U) != 0;
      step.text = options[(code & 0x7FU) % std::size(options)];
      break;
    }
    case SCRIPT_PEN_DOWN: {
      unsigned const code = reader.byte();
      step.clicks = 1 + code % 4;
      step.shift = (code & 0x80U) != 0;
      [[fallthrough]];
    }
    case SCRIPT_PEN_MOVE:
      step.x = reader.coordinate();
      step.y = reader.coordinate();
      break;
    case SCRIPT_SELECT:
      step.places.push_back(reader.place());
      [[fallthrough]];
    case SCRIPT_MOVE:
      step.places.push_back(reader.place());
      break;
    case SCRIPT_PASTE_BYTES:
      step.text = oss::toHexadecimal(reader.bytes());
      break;
    case SCRIPT_INSERT:
    case SCRIPT_PASTE_TEXT:
    case SCRIPT_PASTE_PREFIX:
    case SCRIPT_SHOW:
    case SCRIPT_TREE:
    case SCRIPT_NAMES:
      step.text = reader.text();
      break;
    default:
      break;
  }
}

class WriterC {
 public:
  BytesT take() { return std::move(out_); }

  void write(ScriptStepS const& step) {
    if (step.word == SCRIPT_TYPE) {
      for (char16_t const c : step.text) writeCharacter(c);
    } else if (step.word == SCRIPT_CHAR) {
      writeCharacter(step.code);
    } else {
      writeEvent(step);
    }
  }

 private:
  void put(unsigned long byte) { out_.push_back(static_cast<std::uint8_t>(byte & 0xFFU)); }
  void putWord(ScriptWordE word) {
    auto const* const found = std::find(std::begin(words), std::end(words), word);
    put(first_code + static_cast<unsigned long>(found - std::begin(words)));
  }
  void putCoordinate(long value) { put(static_cast<unsigned long>(std::clamp(value / 2, -128L, 127L))); }

  void putPlace(math::ved::PlacePathS const& place) {
    std::size_t const length = std::min<std::size_t>(place.path.size(), path_lengths - 1);
    put(length);
    for (std::size_t i = 0; i < length; ++i) put(std::min(place.path[i], 0xFFUL));
    put(std::min(place.pos, 0xFFUL));
  }

  template <class BytesT>
  void putBytes(ScriptWordE word, BytesT const& bytes) {
    if (bytes.size() > 0xFF) return;
    putWord(word);
    put(bytes.size());
    for (auto const byte : bytes) put(static_cast<unsigned char>(byte));
  }

  void writeCharacter(unsigned long code) {
    if (code < first_code) return put(code);
    putWord(SCRIPT_CHAR);
    put(code);
    put(code >> 8U);
  }

  void writeEvent(ScriptStepS const& step) {
    switch (step.word) {
      case SCRIPT_KEY:
        putWord(step.word);
        return put((step.shift ? 0x80U : 0) | fromKey(step.code));
      case SCRIPT_ACCEPT:
        putWord(step.word);
        return put(std::min(step.code, 0xFFUL));
      case SCRIPT_OPERATOR:
        putWord(step.word);
        return put(find(operators(), step.text));
      case SCRIPT_COMMAND: {
        CommandS const* const command = findCommand(step.text);
        putWord(step.word);
        return put(command ? command->command : 0);
      }
      case SCRIPT_SET:
        putWord(step.word);
        return put((step.on ? 0x80U : 0) | find(options, step.text));
      case SCRIPT_PEN_DOWN:
        putWord(step.word);
        put((step.shift ? 0x80U : 0) | (step.clicks - 1));
        putCoordinate(step.x);
        return putCoordinate(step.y);
      case SCRIPT_PEN_MOVE:
        putWord(step.word);
        putCoordinate(step.x);
        return putCoordinate(step.y);
      case SCRIPT_SELECT:
      case SCRIPT_MOVE:
        putWord(step.word);
        for (math::ved::PlacePathS const& place : step.places) putPlace(place);
        return;
      case SCRIPT_PASTE_BYTES: {
        oss::bytestring bytes;
        // A text that is not hexadecimal is refused in the same way as an empty one.
        if (!oss::fromHexadecimal(step.text, bytes)) bytes.clear();
        return putBytes(step.word, bytes);
      }
      case SCRIPT_INSERT:
      case SCRIPT_PASTE_TEXT:
      case SCRIPT_PASTE_PREFIX:
      case SCRIPT_SHOW:
      case SCRIPT_TREE:
      case SCRIPT_NAMES:
        return putBytes(step.word, toBytes(step.text));
      default:
        putWord(step.word);
    }
  }

  BytesT out_;
};

}  // namespace

EventScriptT toEvents(std::uint8_t const* data, std::size_t size) {
  EventScriptT script;
  for (ReaderC reader(data, size); !reader.atEnd();) {
    ScriptStepS step;
    unsigned const code = reader.byte();
    if (code < first_code) {
      step.word = SCRIPT_CHAR;
      step.code = code;
    } else {
      step.word = words[(code - first_code) % std::size(words)];
      readArguments(reader, step);
    }
    script.push_back(std::move(step));
  }
  return script;
}

BytesT fromEvents(EventScriptT const& script) {
  WriterC writer;
  for (ScriptStepS const& step : script) writer.write(step);
  return writer.take();
}

}  // namespace zolt::fuzz
