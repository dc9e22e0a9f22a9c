#include "zolt/catalogue_extended/operator_accent.h"

#include <utility>

#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/row_view.h"

namespace zolt::catalogue_extended {

using namespace math::ved;

namespace {

// In the order of the marks: how high the mark is with the unit between it and the row, and how narrow it may
// become.
constexpr long mark_heights[] = {2, 5, 4, 3};
constexpr long least_widths[] = {0, 7, 5, 3};

OperatorWordsS makeWords(wstring const& title, wstring const& label, std::vector<wstring> aliases) {
  OperatorWordsS words;
  words.group = u"Structures";
  words.title = title;
  words.label = label;
  words.aliases = std::move(aliases);
  return words;
}

}  // namespace

OperatorAccentBC::OperatorAccentBC(wstring const& name, AccentE accent, OperatorWordsS words)
    : ConstructBC(name, name, {1}, 0, false, 0), accent_(accent) {
  setWords(std::move(words));
}

void OperatorAccentBC::layoutNode4(Node4C* node, GraphicsABC const&) const {
  Node4C& content = *node->child(0);
  long const mark = mark_heights[accent_];
  long const width = Node4C::maxDim(content.getWidth(), least_widths[accent_]);
  content.setDX((width - content.getWidth()) / 2);
  content.setDY(mark);
  node->setWidth(width);
  node->setHeight(mark + content.getHeight());
  node->setMidHeight(mark + content.getMidHeight());
}

void OperatorAccentBC::displayNode4(Node4C* node, GraphicsABC const& graphics, long x, long y, long width,
                                    long, long) const {
  Node4C const& content = *node->child(0);
  if (content.numChildren() == 1) graphics.isAbove(crefFirstText(content));
  long const height = mark_heights[accent_] - 1;
  switch (accent_) {
    case ACCENT_BAR:
      return graphics.drawHorizontalLine(x, y, width);
    case ACCENT_ARROW:
      return graphics.drawSign(SIGN_ARROW, x, y, width, height);
    case ACCENT_HAT:
      return graphics.drawSign(SIGN_HAT, x, y, width, height);
    case ACCENT_DOT:
      return graphics.drawSign(SIGN_DOT, x, y, width, height);
  }
}

OperatorConjC::OperatorConjC()
    : OperatorAccentBC(u"conj", ACCENT_BAR, makeWords(u"conjugate", u"x̄", {u"bar", u"overline", u"mean"})) {}

OperatorVecC::OperatorVecC()
    : OperatorAccentBC(u"vec", ACCENT_ARROW, makeWords(u"vector", u"x⃗", {u"overrightarrow"})) {}

OperatorHatC::OperatorHatC() : OperatorAccentBC(u"hat", ACCENT_HAT, makeWords(u"hat", u"x̂", {u"widehat"})) {}

OperatorDotC::OperatorDotC()
    : OperatorAccentBC(u"dot", ACCENT_DOT, makeWords(u"derivative by time", u"ẋ", {})) {}

}  // namespace zolt::catalogue_extended
