#include "tests/formula/formula_support.h"

#include <gtest/gtest.h>

#include <sstream>

#include "tests/support/uneven_graphics.h"

namespace zolt::tests {

using namespace math::ved;

namespace {

/// Knows where the ink of each call is.
class InkGraphicsC final : public UnevenGraphicsC {
 public:
  explicit InkGraphicsC(std::optional<RectangleS> const& clip) : clip_(clip) {}

  mutable std::vector<std::pair<std::string, RectangleS>> calls;

  std::optional<RectangleS> getClipBox() const override { return clip_; }
  void drawText(wstring const& text, long x, long y) const override {
    UnevenGraphicsC::drawText(text, x, y);
    if (!text.empty()) note(x, y, getTextWidth(text), getTextHeight(text));
  }
  void drawLine(long x1, long y1, long x2, long y2) const override {
    UnevenGraphicsC::drawLine(x1, y1, x2, y2);
    note(std::min(x1, x2), std::min(y1, y2), std::abs(x2 - x1) + 1, std::abs(y2 - y1) + 1);
  }
  void drawHorizontalLine(long x, long y, long length) const override {
    UnevenGraphicsC::drawHorizontalLine(x, y, length);
    note(x, y, length, 1);
  }
  void drawVerticalLine(long x, long y, long length) const override {
    UnevenGraphicsC::drawVerticalLine(x, y, length);
    note(x, y, 1, length);
  }
  void drawOpenBracket(long x, long y, long height, bool automatic) const override {
    UnevenGraphicsC::drawOpenBracket(x, y, height, automatic);
    note(x, y, getMetric(1), height);
  }
  void drawCloseBracket(long x, long y, long height, bool automatic) const override {
    UnevenGraphicsC::drawCloseBracket(x, y, height, automatic);
    note(x - getMetric(1), y, getMetric(1), height);
  }
  void drawBracketPair(long x, long y, long width, long height, bool automatic) const override {
    UnevenGraphicsC::drawBracketPair(x, y, width, height, automatic);
    note(x - getMetric(1), y - getMetric(2), width + 2 * getMetric(1), height + 2 * getMetric(2));
  }

 private:
  void note(long x, long y, long width, long height) const {
    calls.emplace_back(getLines().back(), RectangleS(x, y, x + width, y + height));
  }

  std::optional<RectangleS> clip_;
};

}  // namespace

unsigned long countDrawingCalls(Node4C const& root, RectangleS const& clip) {
  InkGraphicsC const part(clip);
  root.display(part, 0, 0, nullptr);
  return part.calls.size();
}

void expectClippedDrawings(Node4C& root) {
  constexpr long parts = 4;
  InkGraphicsC const whole(std::nullopt);
  root.layout(whole);
  root.display(whole, 0, 0, &root);
  long const width = root.getWidth() / parts + 1;
  long const height = root.getHeight() / parts + 1;
  for (long i = -1; i <= parts * parts; ++i) {
    long const x = i % parts * width;
    long const y = i / parts * height + i;
    RectangleS const clip(x, y, x + width, y + height / 2);
    InkGraphicsC const part(clip);
    root.display(part, 0, 0, &root);
    auto next = part.calls.begin();
    for (auto const& [call, ink] : whole.calls) {
      bool const isDrawn = next != part.calls.end() && next->first == call;
      if (isDrawn) ++next;
      bool const isSeen =
          ink.right > clip.left && ink.left < clip.right && ink.bottom > clip.top && ink.top < clip.bottom;
      ASSERT_TRUE(isDrawn || !isSeen) << call << " is missing at " << x << " " << y;
    }
    ASSERT_TRUE(next == part.calls.end()) << next->first;
  }
}

Node4C const* findNode(Node4C const& row, std::string const& name) {
  Node4C const* node = &row;
  std::istringstream steps(name);
  char slash = 0;
  unsigned long index = 0;
  while (node && steps >> slash >> index) node = index < node->numChildren() ? node->child(index) : nullptr;
  return node;
}

static std::string nameNode(Node4C const& row, Node4C const* node) {
  if (!node) return "null";
  std::string name;
  for (; node && node != &row; node = node->getParent())
    name = "/" + std::to_string(node->findChildNumber()) + name;
  return name.empty() ? "/" : name;
}

std::string describe(ErrorSelectionS const& error, Node4C const& row) {
  return std::to_string(error.cause) + "@" + nameNode(row, error.firstNode) + ":" +
         std::to_string(error.firstIndex) + " " + nameNode(row, error.secondNode) + ":" +
         std::to_string(error.secondIndex);
}

}  // namespace zolt::tests
