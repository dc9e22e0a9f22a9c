#include "zolt/ved/render/composition.h"

#include <algorithm>

#include "zolt/ved/tree/node4.h"

namespace zolt::math::ved {

long measureShown(Node4C const& text, unsigned long count, CompositionS const* composition,
                  GraphicsABC const& graphics) {
  wstring const& written = text.crefText();
  if (!composition || !composition->isIn(text)) return graphics.getTextWidth(written.substr(0, count));
  unsigned long const before = composition->place.pos;
  long width = graphics.getTextWidth(written.substr(0, std::min(count, before)));
  if (count <= before) return width;
  unsigned long const composed = std::min<unsigned long>(count - before, composition->text.size());
  width += graphics.getComposedWidth(composition->text.substr(0, composed));
  unsigned long const after = count - before - composed;
  return after > 0 ? width + graphics.getTextWidth(written.substr(before, after)) : width;
}

void drawShown(Node4C const& text, TextRoleE role, CompositionS const& composition, long x, long y,
               GraphicsABC const& graphics) {
  wstring const before = text.crefText().substr(0, composition.place.pos);
  wstring const after = text.crefText().substr(composition.place.pos);
  graphics.drawTextAs(role, before, x, y);
  x += graphics.getTextWidth(before);
  graphics.drawComposed(composition.text, x, y);
  // A surface may place an exponent by the text that was drawn last.
  graphics.drawTextAs(TEXT_FOLLOWS_ITEM, after, x + graphics.getComposedWidth(composition.text), y);
}

}  // namespace zolt::math::ved
