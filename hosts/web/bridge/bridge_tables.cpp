#include "hosts/web/bridge/bridge_state.h"
#include "zolt/field/palette_model.h"

// Tables for menus: commands, the palette, completions.

using namespace zolt::web;
using namespace zolt::field;

namespace {

constexpr char16_t separator = u'\0';

/// Texts of one answer, with U+0000 between them.
class TextsC {
 public:
  void add(wstring const& text) {
    if (!isFirst_) all_ += separator;
    isFirst_ = false;
    all_ += text;
  }
  std::int32_t answer() const { return buffers().answer(all_); }

 private:
  wstring all_;
  bool isFirst_ = true;
};

std::vector<PaletteGroupS> const& palette() {
  static std::vector<PaletteGroupS> const& groups =
      *new std::vector<PaletteGroupS>(makePalette(module().refScratch().field.crefView()));
  return groups;
}

/// Answers with a number for each entry of the palette.
template <class AskT>
std::int32_t answerEntries(AskT ask) {
  std::vector<std::int32_t> numbers;
  for (PaletteGroupS const& group : palette()) {
    for (PaletteEntryS const& entry : group.entries) numbers.push_back(ask(entry));
  }
  std::int32_t const count = toNumber(numbers.size());
  buffers().answer(std::move(numbers));
  return count;
}

/// What stands before the size.
wstring nameOfTable(PaletteEntryS const& entry) { return entry.insert.substr(0, entry.insert.find(u':')); }

std::int32_t numberOf(CommandS const* command) { return command ? command->command : -1; }

}  // namespace

std::int32_t zolt_commands(void) {
  TextsC texts;
  for (CommandS const& command : commands()) {
    for (wstring const& text : {command.name, command.title, command.help, command.keys}) texts.add(text);
    texts.add(command.modifies ? u"1" : u"");
  }
  return texts.answer();
}

std::int32_t zolt_find_command(std::int32_t length) {
  return numberOf(findCommand(buffers().takeText(length)));
}
std::int32_t zolt_find_keys(std::int32_t length) {
  return numberOf(findCommandForKeys(buffers().takeText(length)));
}

std::int32_t zolt_palette(void) {
  TextsC texts;
  std::vector<std::int32_t> numbers{toNumber(palette().size())};
  for (PaletteGroupS const& group : palette()) {
    numbers.push_back(toNumber(group.entries.size()));
    texts.add(group.title);
    for (PaletteEntryS const& entry : group.entries) {
      wstring keywords;
      for (wstring const& word : entry.keywords) keywords += (keywords.empty() ? u"" : u" ") + word;
      for (wstring const& text : {entry.title, entry.label, entry.shortcut, entry.toolTip, keywords,
                                  entry.picture, entry.takesSize ? nameOfTable(entry) : wstring()}) {
        texts.add(text);
      }
    }
  }
  buffers().answer(std::move(numbers));
  return texts.answer();
}

std::int32_t zolt_run_entry(std::int32_t field, std::int32_t group, std::int32_t entry) {
  return withField(field, [&](FieldS& shown) {
    auto const& groups = palette();
    if (group < 0 || toCount(group) >= groups.size()) return false;
    auto const& entries = groups[toCount(group)].entries;
    return entry >= 0 && toCount(entry) < entries.size() && runEntry(entries[toCount(entry)], shown.field);
  });
}

std::int32_t zolt_enabled_entries(std::int32_t field) {
  return askField(field, 0, [](FieldS const& shown) {
    return answerEntries([&](PaletteEntryS const& entry) { return isEnabled(entry, shown.field) ? 1 : 0; });
  });
}

std::int32_t zolt_search(std::int32_t length) {
  auto const wanted = buffers().takeText(length);
  return answerEntries([&](PaletteEntryS const& entry) { return std::int32_t(matchSearch(entry, wanted)); });
}

std::int32_t zolt_completion(std::int32_t field) {
  return askField(field, -1, [](FieldS const& shown) {
    CompletionC const& completion = shown.field.crefCompletion();
    std::size_t const current = completion.getCurrent();
    std::vector<std::int32_t> numbers{completion.getKind(),
                                      current == CompletionC::none ? -1 : toNumber(current)};
    append(numbers,
           completion.isOpen() ? shown.field.getCompletionRectangle() : zolt::math::ved::RectangleS());
    auto const& entries = completion.crefEntries();
    numbers.push_back(completion.isOpen() ? toNumber(entries.size()) : 0);
    TextsC texts;
    texts.add(completion.crefQuery());
    if (completion.isOpen()) {
      for (PaletteEntryS const* const entry : entries) {
        for (wstring const& text : {entry->title, entry->label, entry->shortcut, entry->picture}) {
          texts.add(text);
        }
      }
    }
    buffers().answer(std::move(numbers));
    return texts.answer();
  });
}

std::int32_t zolt_suggest(std::int32_t field) {
  return withField(field, [](FieldS& shown) { return shown.field.suggestNames(); });
}

std::int32_t zolt_accept(std::int32_t field, std::int32_t entry) {
  return withField(field,
                   [&](FieldS& shown) { return entry >= 0 && shown.field.acceptCompletion(toCount(entry)); });
}
