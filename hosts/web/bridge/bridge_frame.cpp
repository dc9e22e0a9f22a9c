#include "hosts/web/bridge/bridge_state.h"
#include "zolt/ved/tree/node4.h"

// Showing: frames and pictures.

namespace zolt::web {

namespace {

void appendSize(std::vector<std::int32_t>& words, math::ved::ViewZNT4C const& view) {
  math::ved::PointS const size = view.getExpressionSize();
  words[ZOLT_FRAME_WIDTH] = static_cast<std::int32_t>(size.x);
  words[ZOLT_FRAME_HEIGHT] = static_cast<std::int32_t>(size.y);
  words[ZOLT_FRAME_BASELINE] = toWord(view.getBaseline());
}

void putBox(std::vector<std::int32_t>& words, std::size_t at, math::ved::RectangleS const& box) {
  std::size_t i = at;
  for (long const edge : {box.left, box.top, box.right, box.bottom}) {
    words[i++] = static_cast<std::int32_t>(edge);
  }
}

std::int32_t getFlags(FieldS const& field) {
  math::ved::ViewZNT4C const& view = field.field.crefView();
  math::ved::SelectionS const whole = view.getWhole();
  std::int32_t flags = 0;
  auto const set = [&](bool condition, ZoltFlagE flag) { flags |= condition ? flag : 0; };
  set(whole.anchor == whole.caret, ZOLT_FLAG_EMPTY);
  set(view.isSelected(), ZOLT_FLAG_SELECTED);
  set(bool(view.crefComposition().place), ZOLT_FLAG_COMPOSES);
  set(field.field.crefCompletion().isOpen(), ZOLT_FLAG_COMPLETES);
  set(field.field.isEditable(), ZOLT_FLAG_EDITABLE);
  // As the commands say, without their table, which a first frame does not need.
  set(field.field.isEditable() && view.canUndo(), ZOLT_FLAG_CAN_UNDO);
  set(field.field.isEditable() && view.canRedo(), ZOLT_FLAG_CAN_REDO);
  return flags;
}

std::vector<std::int32_t>& clear(FrameS& frame) {
  frame.items.clear();
  frame.words.assign(ZOLT_FRAME_HEAD, 0);
  return frame.words;
}

std::int32_t const* finish(std::vector<std::int32_t>& words) {
  words[ZOLT_FRAME_WORDS] = toNumber(words.size());
  return words.data();
}

}  // namespace

}  // namespace zolt::web

using namespace zolt::web;
using zolt::math::ved::RectangleS;

std::int32_t const* zolt_frame(std::int32_t field, std::int32_t left, std::int32_t top, std::int32_t right,
                               std::int32_t bottom) {
  FieldS* const shown = module().findShown(field);
  // What is in a box is little, however large the formula is.
  if (!shown || !mayBegin(right > left ? 0 : shown->weight)) return nullptr;
  auto& formula = shown->field;
  std::vector<std::int32_t>& words = clear(shown->frame);
  appendSize(words, formula.crefView());
  words[ZOLT_FRAME_REVISION] = shown->revision;
  words[ZOLT_FRAME_HISTORY] = toNumber(formula.crefView().getHistoryPosition());
  words[ZOLT_FRAME_FLAGS] = getFlags(*shown);
  putBox(words, ZOLT_FRAME_CARET, formula.getCaretRectangle());
  putBox(words, ZOLT_FRAME_ANCHOR, formula.getAnchorRectangle());
  if (RectangleS reveal; formula.takeRevealRequest(reveal)) {
    words[ZOLT_FRAME_FLAGS] |= ZOLT_FLAG_REVEAL;
    putBox(words, ZOLT_FRAME_REVEAL, reveal);
  }
  if (words[ZOLT_FRAME_FLAGS] & ZOLT_FLAG_COMPOSES) {
    putBox(words, ZOLT_FRAME_COMPOSED,
           formula.getComposedRectangle(0, formula.crefView().crefComposition().text.size()));
  }
  words[ZOLT_FRAME_BANDS] = toNumber(words.size());
  auto const bands = formula.getSelectionRectangles();
  words[ZOLT_FRAME_NUM_BANDS] = toNumber(bands.size());
  for (RectangleS const& band : bands) append(words, band);
  words[ZOLT_FRAME_LIST] = toNumber(words.size());
  std::optional<RectangleS> clip;
  if (right > left) clip = RectangleS(left, top, right, bottom);
  shown->surface->begin(shown->frame, clip);
  formula.crefView().display(0, 0);
  shown->surface->end();
  return finish(words);
}

std::int32_t const* zolt_changes(std::int32_t field, std::int32_t left, std::int32_t right) {
  FieldS* const shown = module().findShown(field);
  if (!shown || shown->frame.words.empty() || !mayBegin()) return nullptr;
  FrameS& now = shown->frame;
  SpanS span = {left, right};
  addChanges(span, shown->handedOver, now);
  std::vector<std::int32_t>& words = shown->changes;
  words.clear();
  auto const add = [&](std::int32_t const* begin, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) words.push_back(begin[i]);
  };
  add(now.words.data(), toCount(now.words[ZOLT_FRAME_LIST]));
  // What the host paints is on whole pixels, which may be some units wide.
  constexpr std::int64_t spare = 12;
  for (std::size_t i = 0; span.left <= span.right && i < now.items.size(); ++i) {
    ItemPlaceS const& item = now.items[i];
    if (item.right < span.left - spare || item.left > span.right + spare) continue;
    add(now.at(i), now.sizeOf(i));
  }
  now.words.swap(shown->handedOver.words);
  now.items.swap(shown->handedOver.items);
  now.words.clear();
  buffers().answer({span.left, span.right});
  return finish(words);
}

std::int32_t zolt_revision(std::int32_t field) {
  FieldS const* const shown = module().findShown(field);
  return shown ? shown->revision : 0;
}

std::int32_t zolt_moves(std::int32_t field) {
  FieldS const* const shown = module().findShown(field);
  return shown ? shown->moves : 0;
}

std::int32_t const* zolt_picture(std::int32_t length) {
  if (!mayBegin(toCount(length))) return nullptr;
  FieldS& scratch = module().refScratch();
  if (!scratch.field.setNotation(buffers().takeText(length))) return nullptr;
  std::vector<std::int32_t>& words = clear(scratch.frame);
  auto const& view = scratch.field.crefView();
  appendSize(words, view);
  words[ZOLT_FRAME_BANDS] = words[ZOLT_FRAME_LIST] = toNumber(words.size());
  scratch.surface->begin(scratch.frame, std::nullopt);
  // Without a caret, every empty place is shown.
  view.crefRoot().display(view.crefGraphics(), 0, 0, &view.crefRoot());
  scratch.surface->end();
  return finish(words);
}

std::int32_t zolt_faces(void) {
  auto const& fonts = module().getTypesetter()->getFonts();
  zolt::oss::wstring names;
  for (unsigned face = 0; face < fonts.getFaceCount(); ++face) {
    if (face > 0) names += u'\0';
    for (char const c : fonts.getFaceName(face)) names += static_cast<char16_t>(c);
    if (fonts.isItalic(face)) names += u" italic";
  }
  return buffers().answer(names);
}
