#pragma once

#include <optional>
#include <utility>

#include "zolt/oss/pointer.h"
#include "zolt/ved/geometry/graphics.h"

namespace zolt::field::detail {

using oss::wstring;

/// A shown text with points for decimal signs and commas between arguments as one with "," and ";" for them.
wstring toCommas(wstring text);
/// The same for plain text, and back. There ";" ends a row of a table, which becomes ";;".
wstring toCommaText(wstring const& text);
wstring toPointText(wstring const& text);

/// A surface that shows the decimal sign as "," and the comma between arguments as ";" when asked to, and
/// passes everything else to another surface. Each character is replaced by one character, so that positions
/// in a text keep their meaning.
class DecimalCommaGraphicsC final : public math::ved::GraphicsABC {
 public:
  explicit DecimalCommaGraphicsC(oss::PointerTC<math::ved::GraphicsABC> surface)
      : surface_(std::move(surface)) {}
  ~DecimalCommaGraphicsC() override;

  void showCommas(bool commas) { commas_ = commas; }

  void invalidate() const override { surface_->invalidate(); }
  void getTextExtent(wstring const& text, long& width, long& height, long& midHeight) const override {
    surface_->getTextExtent(ShownC(*this, text), width, height, midHeight);
  }
  long getTextWidth(wstring const& text) const override {
    return surface_->getTextWidth(ShownC(*this, text));
  }
  long getTextHeight(wstring const& text) const override {
    return surface_->getTextHeight(ShownC(*this, text));
  }
  long getTextMidHeight(wstring const& text) const override {
    return surface_->getTextMidHeight(ShownC(*this, text));
  }
  long getMetric(long index) const override { return surface_->getMetric(index); }
  void drawText(wstring const& text, long x, long y) const override {
    surface_->drawText(ShownC(*this, text), x, y);
  }
  void drawLine(long x1, long y1, long x2, long y2) const override { surface_->drawLine(x1, y1, x2, y2); }
  void drawHorizontalLine(long x, long y, long length) const override {
    surface_->drawHorizontalLine(x, y, length);
  }
  void drawVerticalLine(long x, long y, long length) const override {
    surface_->drawVerticalLine(x, y, length);
  }
  void drawOpenBracket(long x, long y, long height, bool automatic) const override {
    surface_->drawOpenBracket(x, y, height, automatic);
  }
  void drawCloseBracket(long x, long y, long height, bool automatic) const override {
    surface_->drawCloseBracket(x, y, height, automatic);
  }
  void drawBracketPair(long x, long y, long width, long height, bool automatic) const override {
    surface_->drawBracketPair(x, y, width, height, automatic);
  }
  void selectFont(unsigned long fontDepth) const override { surface_->selectFont(fontDepth); }
  std::optional<math::ved::RectangleS> getClipBox() const override { return surface_->getClipBox(); }
  void drawTextAs(math::ved::TextRoleE role, wstring const& text, long x, long y) const override {
    surface_->drawTextAs(role, ShownC(*this, text), x, y);
  }
  void drawStroke(math::ved::StrokeE kind, std::vector<math::ved::PointS> const& points) const override {
    surface_->drawStroke(kind, points);
  }
  long getIndexWidth(wstring const& text) const override {
    return surface_->getIndexWidth(ShownC(*this, text));
  }
  double getTextBaseline() const override { return surface_->getTextBaseline(); }
  long getComposedWidth(wstring const& text) const override { return surface_->getComposedWidth(text); }
  void drawComposed(wstring const& text, long x, long y) const override {
    surface_->drawComposed(text, x, y);
  }
  void isAbove(wstring const& text) const override { surface_->isAbove(text); }
  void drawSpareBrackets(long x, long y, long width, long height) const override {
    surface_->drawSpareBrackets(x, y, width, height);
  }
  void drawSign(math::ved::SignE sign, long x, long y, long width, long height) const override {
    surface_->drawSign(sign, x, y, width, height);
  }
  void beginsWith(wstring const& text) const override { surface_->beginsWith(ShownC(*this, text)); }

 private:
  /// A text as it is shown; most texts are shown as they are.
  class ShownC {
   public:
    ShownC(DecimalCommaGraphicsC const& surface, wstring const& text) : text_(text) {
      if (surface.commas_ && text.find_first_of(u".,") != wstring::npos) replaced_ = toCommas(text);
    }
    operator wstring const&() const { return replaced_ ? *replaced_ : text_; }

   private:
    wstring const& text_;
    std::optional<wstring> replaced_;
  };

  oss::PointerTC<math::ved::GraphicsABC> surface_;
  bool commas_ = false;
};

}  // namespace zolt::field::detail
