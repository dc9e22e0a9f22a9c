#include <algorithm>

#include "hosts/web/bridge/bridge_state.h"
#include "zolt/constraints/constraints.h"
#include "zolt/field/readable_text.h"
#include "zolt/field/surrounding_text.h"

// The module and its fields; input; options; the selection as data.

using namespace zolt::web;
using namespace zolt::field;
using zolt::math::ved::RectangleS;
using zolt::math::ved::SelectionS;

namespace {

bool isCommand(std::int32_t command) { return command >= 0 && command < COMMAND_COUNT; }

SelectionS selectionOf(FieldS const& shown) {
  SelectionS selection = shown.field.crefView().getSelection();
  if (!selection.anchor) selection.anchor = selection.caret;
  return selection;
}

ReadableTextS wordsOf(FieldS const& shown) {
  return makeReadableText(shown.field.crefView(), shown.speech.getStyle());
}

void answerBox(RectangleS const& box) {
  std::vector<std::int32_t> numbers;
  append(numbers, box);
  buffers().answer(std::move(numbers));
}

/// Reads a path and a position at `at`, which moves to what is after them; false when there is none.
bool readPlace(std::vector<std::int32_t> const& numbers, std::size_t count, std::size_t& at,
               zolt::math::ved::PlacePathS& place) {
  if (at >= count) return false;
  std::size_t const length = toCount(numbers[at]);
  if (length >= count || count - length < at + 2) return false;
  for (std::size_t i = 1; i <= length; ++i) place.path.push_back(toCount(numbers[at + i]));
  place.pos = toCount(numbers[at + length + 1]);
  at += length + 2;
  return true;
}

}  // namespace

// ---- Module and fields

std::int32_t zolt_version(void) { return ZOLT_BRIDGE_VERSION; }
std::int32_t zolt_start(std::int32_t extended) { return module().start(extended != 0) ? 1 : 0; }
void zolt_prepare(void) { module().prepare(); }
std::int32_t zolt_take_shortage(void) { return module().takeShortage() ? 1 : 0; }
std::int32_t zolt_open(void) { return module().open(); }
void zolt_close(std::int32_t field) { module().close(field); }

// ---- Input

std::int32_t zolt_type(std::int32_t field, std::int32_t length) {
  return withField(
      field,
      [&](FieldS& shown) {
        auto const text = buffers().takeText(length);
        return text.size() == 1 ? shown.field.typeCharacter(text[0]) : shown.field.insertText(text);
      },
      length);
}

std::int32_t zolt_compose(std::int32_t field, std::int32_t length, std::int32_t caret) {
  return withField(
      field,
      [&](FieldS& shown) {
        return shown.field.compose(buffers().takeText(length), std::min(toCount(caret), toCount(length)));
      },
      length);
}

std::int32_t zolt_run(std::int32_t field, std::int32_t command) {
  bool const copies = command == COMMAND_COPY || command == COMMAND_CUT;
  if (copies && !askAll(field, 0, [](FieldS const&) { return 1; })) return 0;
  if (command == COMMAND_PASTE) return zolt_paste(field) > 0 ? 1 : 0;
  return withField(field, [&](FieldS& shown) {
    return isCommand(command) && shown.field.run(static_cast<CommandE>(command));
  });
}

std::int32_t zolt_is_enabled(std::int32_t field, std::int32_t command) {
  return askField(field, 0, [&](FieldS const& shown) {
    return isCommand(command) && shown.field.isEnabled(static_cast<CommandE>(command)) ? 1 : 0;
  });
}

void zolt_complete(std::int32_t field) {
  withField(field, [](FieldS& shown) {
    shown.field.completeName();
    return true;
  });
}

std::int32_t zolt_insert(std::int32_t field, std::int32_t length) {
  return withField(field,
                   [&](FieldS& shown) { return shown.field.insertOperator(buffers().takeText(length)); });
}

std::int32_t zolt_pointer(std::int32_t field, std::int32_t act, std::int32_t x, std::int32_t y,
                          std::int32_t clicks, std::int32_t extend) {
  return withField(field, [&](FieldS& shown) {
    switch (act) {
      case ZOLT_POINTER_DOWN:
        return shown.field.pressPointer(x, y, static_cast<unsigned>(std::clamp(clicks, 1, 4)), extend != 0);
      case ZOLT_POINTER_MOVE:
        return shown.field.movePointer(x, y);
      default:
        return shown.field.releasePointer();
    }
  });
}

std::int32_t zolt_find_place(std::int32_t field, std::int32_t x, std::int32_t y) {
  return askField(field, 0, [&](FieldS const& shown) {
    auto const place = shown.field.findPlace(x, y);
    answerBox(shown.field.crefView().getRectangle({place, place}));
    return 1;
  });
}

std::int32_t zolt_drag_end(std::int32_t field, std::int32_t end, std::int32_t x, std::int32_t y) {
  return withField(field, [&](FieldS& shown) {
    SelectionS selection = selectionOf(shown);
    (end == 0 ? selection.anchor : selection.caret) = shown.field.findPlace(x, y);
    return shown.field.setSelection(selection);
  });
}

std::int32_t zolt_move_selection(std::int32_t field, std::int32_t x, std::int32_t y) {
  return withField(field,
                   [&](FieldS& shown) { return shown.field.moveSelection(shown.field.findPlace(x, y)); });
}

std::int32_t zolt_take_refusal(std::int32_t field) {
  FieldS* const shown = module().findShown(field);
  RefusalS refusal;
  if (!shown || !shown->field.takeRefusal(refusal)) return -1;
  answerError(refusal, refusal.box);
  return buffers().getTextLength();
}

// ---- Options

void zolt_set_editable(std::int32_t field, std::int32_t editable) {
  change(module().findShown(field), [&](FieldS& shown) {
    shown.field.setEditable(editable != 0);
    return true;
  });
}

std::int32_t zolt_set_option(std::int32_t field, std::int32_t length, std::int32_t on) {
  return withField(field, [&](FieldS& shown) {
    auto const name = buffers().takeText(length);
    if (name == u"powers-of-ten") {
      shown.surface->setTypesetter(on != 0 ? module().getPowersTypesetter() : module().getTypesetter());
      return shown.field.refView().measureAgain();
    }
    InputOptionsS options = shown.field.getOptions();
    if (!setOption(options, name, on != 0)) return false;
    shown.field.setOptions(options);
    return true;
  });
}

void zolt_set_names(std::int32_t field, std::int32_t length) {
  withField(field, [&](FieldS& shown) {
    InputOptionsS options = shown.field.getOptions();
    options.names.clear();
    bool begins = true;
    for (char16_t const c : buffers().takeText(length)) {
      if (c == u' ') {
        begins = true;
        continue;
      }
      if (begins) options.names.emplace_back();
      options.names.back() += c;
      begins = false;
    }
    shown.field.setOptions(options);
    return true;
  });
}

std::int32_t zolt_set_constraints(std::int32_t field, std::int32_t length) {
  return askField(field, -1, [&](FieldS& shown) {
    auto const text = buffers().takeText(length);
    std::size_t fault = text.size();
    auto const constraints = zolt::constraints::fromText(text, &fault);
    if (!constraints && fault < text.size()) return static_cast<std::int32_t>(fault);
    shown.field.setConstraints(constraints);
    return -1;
  });
}

void zolt_set_numbers(std::int32_t field, std::int32_t precision, std::int32_t format) {
  FieldS* const shown = module().findShown(field);
  if (!shown) return;
  using namespace zolt::math::algexpr;
  shown->precision = toCount(precision);
  shown->format = static_cast<NumberDisplayFormatE>(
      std::clamp<std::int32_t>(format, NUMBER_FORMAT_AUTOMATIC, NUMBER_FORMAT_ENGINEERING));
  shown->setForm = -1;
}

void zolt_set_speech(std::int32_t field, std::int32_t language, std::int32_t verbosity) {
  using namespace zolt::exchange;
  FieldS* const shown = module().findShown(field);
  if (!shown) return;
  SpeechStyleS const style{
      static_cast<SpeechLanguageE>(std::clamp<std::int32_t>(language, 0, num_speech_languages - 1)),
      static_cast<SpeechVerbosityE>(std::clamp<std::int32_t>(verbosity, SPEECH_BRIEF, SPEECH_FULL))};
  if (style != shown->speech.getStyle()) shown->speech = CaretSpeechC(style);
}

// ---- The selection as data

std::int32_t zolt_get_selection(std::int32_t field) {
  return askField(field, 0, [](FieldS const& shown) {
    SelectionS const selection = selectionOf(shown);
    std::vector<std::int32_t> numbers;
    for (PlaceS const place : {selection.anchor, selection.caret}) {
      auto const path = zolt::math::ved::pathOf(place);
      numbers.push_back(toNumber(path.path.size()));
      for (unsigned long const step : path.path) numbers.push_back(toNumber(step));
      numbers.push_back(toNumber(path.pos));
    }
    std::int32_t const count = toNumber(numbers.size());
    buffers().answer(std::move(numbers));
    return count;
  });
}

std::int32_t zolt_set_selection(std::int32_t field, std::int32_t numbers) {
  return withField(field, [&](FieldS& shown) {
    auto const& words = buffers().crefNumbers();
    std::size_t const count = std::min<std::size_t>(toCount(numbers), words.size());
    std::size_t at = 0;
    zolt::math::ved::SelectionPathS path;
    if (!readPlace(words, count, at, path.anchor) || !readPlace(words, count, at, path.caret)) return false;
    return shown.field.setSelection(zolt::math::ved::selectionAt(shown.field.crefView().crefRoot(), path));
  });
}

std::int32_t zolt_get_words(std::int32_t field) {
  return askAll(field, -1, [](FieldS const& shown) {
    ReadableTextS const words = wordsOf(shown);
    SelectionS const selection = selectionOf(shown);
    buffers().answer({toNumber(words.offsetOf(selection.anchor)), toNumber(words.offsetOf(selection.caret))});
    return buffers().answer(words.text);
  });
}

std::int32_t zolt_select_words(std::int32_t field, std::int32_t anchor, std::int32_t caret) {
  return withField(field, [&](FieldS& shown) {
    ReadableTextS const words = wordsOf(shown);
    return shown.field.setSelection({words.placeAt(toCount(anchor)), words.placeAt(toCount(caret))});
  });
}

std::int32_t zolt_get_around(std::int32_t field, std::int32_t reach) {
  return askField(field, -1, [&](FieldS const& shown) {
    SurroundingTextS const around = makeSurroundingText(shown.field.crefView(), toCount(reach));
    buffers().answer({toNumber(around.anchor), toNumber(around.caret)});
    return buffers().answer(around.text);
  });
}

std::int32_t zolt_select_around(std::int32_t field, std::int32_t from, std::int32_t to) {
  return withField(field, [&](FieldS& shown) {
    PlaceS const caret = selectionOf(shown).caret;
    return shown.field.setSelection({placeAtDistance(caret, from), placeAtDistance(caret, to)});
  });
}

std::int32_t zolt_announce(std::int32_t field) {
  return askAll(field, -1, [](FieldS& shown) {
    auto const& view = shown.field.crefView();
    SpokenMoveS told;
    if (!shown.speech.isListening()) {
      shown.speech.listen(view);
    } else if (shown.announcesEdit) {
      SpokenEditS const edit = shown.speech.tellEdit(view);
      told = {edit.said, edit.isPlace};
    } else {
      told = shown.speech.tellMove(view);
    }
    shown.announcesEdit = false;
    buffers().answer({told.isPlace ? 1 : 0});
    return buffers().answer(told.said);
  });
}
