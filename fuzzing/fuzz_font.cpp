// Reads font files.

#include <cmath>

#include "fuzzing/allocations.h"
#include "fuzzing/targets.h"
#include "zolt/surfaces/typeset/font_set.h"
#include "zolt/surfaces/typeset/typesetter.h"

namespace zolt::fuzz {

using namespace surfaces;

namespace {

constexpr char16_t sample[] = u"sin2x+(a\u2212\u0960)\u221A\u2264f\u25CF\U0001D44E!";

std::string checkGlyphs(SfntFontC const& font, bool readable) {
  for (char32_t c = 0; c < 0x20000; c += c < 0x100 ? 1 : 0x3F1) {
    std::uint16_t const glyph = font.findGlyph(c);
    if (!readable && glyph != SfntFontC::no_glyph) return "a font that does not read has glyphs";
    if (font.getAdvance(glyph) < 0 || font.getOverhang(glyph) < 0) return "a glyph goes backwards";
  }
  return {};
}

/// Each beginning of a text is no wider than the text, and glyphs are where a surface can paint.
std::string checkTexts(TypesetterC const& typesetter, unsigned long depth) {
  oss::wstring text;
  long width = 0;
  for (char16_t const c : sample) {
    text += c;
    long const wider = typesetter.measure(text, depth);
    if (wider < width || wider > 0x7FFFFFFF) return "a width is out of range";
    width = wider;
  }
  auto const placed = typesetter.place(text, depth, math::ved::TEXT_STARTS_ROW);
  for (PlacedGlyphS const& glyph : placed->glyphs) {
    if (!std::isfinite(glyph.x) || !std::isfinite(glyph.width)) return "a glyph has no place";
  }
  return {};
}

/// Appends numbers as font files hold them.
class FontBytesC {
 public:
  FontBytesC& put16(unsigned value) {
    bytes_.push_back(static_cast<std::uint8_t>(value >> 8U & 0xFFU));
    bytes_.push_back(static_cast<std::uint8_t>(value & 0xFFU));
    return *this;
  }
  FontBytesC& put32(unsigned value) { return put16(value >> 16U).put16(value); }
  FontBytesC& put(std::string const& text) {
    bytes_.insert(bytes_.end(), text.begin(), text.end());
    return *this;
  }
  FontBytesC& put(BytesT const& bytes) {
    bytes_.insert(bytes_.end(), bytes.begin(), bytes.end());
    return *this;
  }
  BytesT const& get() const { return bytes_; }
  unsigned size() const { return static_cast<unsigned>(bytes_.size()); }

 private:
  BytesT bytes_;
};

struct TableS {
  char const* tag;
  BytesT bytes;
};

BytesT makeFont(std::vector<TableS> const& tables) {
  auto const count = static_cast<unsigned>(tables.size());
  FontBytesC font;
  font.put32(0x00010000).put16(count).put16(0).put32(0);
  unsigned offset = 12 + 16 * count;
  for (TableS const& table : tables) {
    auto const size = static_cast<unsigned>(table.bytes.size());
    font.put(table.tag).put32(0).put32(offset).put32(size);
    offset += size;
  }
  for (TableS const& table : tables) font.put(table.bytes);
  return font.get();
}

/// Letters from "a" on have the glyphs from 1 on.
BytesT makeMap(bool groups, unsigned letters) {
  FontBytesC map;
  map.put16(0).put16(1).put16(3).put16(groups ? 10 : 1).put32(12);
  if (groups) {
    map.put16(12).put16(0).put32(28).put32(0).put32(1).put32(u'a').put32(u'a' + letters - 1).put32(1);
  } else {
    map.put16(4).put16(32).put16(0).put16(4).put16(0).put16(0).put16(0);
    map.put16(u'a' + letters - 1).put16(0xFFFF).put16(0).put16(u'a').put16(0xFFFF);
    map.put16(0x10000 - u'a' + 1).put16(1).put16(0).put16(0);
  }
  return map.get();
}

}  // namespace

std::string checkFont(std::uint8_t const* data, std::size_t size) {
  std::string const bytes(data, data + size);
  std::string error;
  SfntFontC font;
  AllocationsS::reset();
  bool const readable = font.parse(bytes, error);
  if (AllocationsS::get().peak > size + 20000) return "reading holds more memory than the file has bytes";
  if (!readable && error.empty()) return "refused without a word why";
  if (auto fault = checkGlyphs(font, readable); !fault.empty()) return fault;
  auto const fonts = FontSetC::fromMemory({{"KaTeX_Main", bytes}, {"KaTeX_Math", bytes}}, error);
  if (static_cast<bool>(fonts) != readable) return "a set of the font is not what the font is";
  if (!fonts) return {};
  TypesetterC const typesetter(fonts);
  for (unsigned long depth = 0; depth < 3; ++depth) {
    if (auto fault = checkTexts(typesetter, depth); !fault.empty()) return fault;
  }
  return {};
}

std::vector<BytesT> fontSeeds() {
  std::vector<BytesT> seeds;
  for (unsigned letters = 1; letters <= 26; ++letters) {
    for (unsigned kind = 0; kind < 4; ++kind) {
      bool const longPlaces = kind % 2 == 1;
      FontBytesC head, hhea, maxp, advances, outlines, places;
      for (unsigned i = 0; i < 27; ++i) head.put16(i == 9 ? 1000 : i == 25 ? longPlaces : 0);
      for (unsigned i = 0; i < 18; ++i) hhea.put16(i == 17 ? letters + 1 : 0);
      maxp.put32(0x00010000).put16(letters + 1);
      for (unsigned i = 0; i <= letters; ++i) {
        unsigned const place = outlines.size();
        longPlaces ? places.put32(place) : places.put16(place / 2);
        advances.put16(400 + 20 * i).put16(0);
        outlines.put16(1).put16(0).put16(0).put16(450 + 15 * i).put16(700);
      }
      longPlaces ? places.put32(outlines.size()) : places.put16(outlines.size() / 2);
      seeds.push_back(makeFont({{"cmap", makeMap(kind / 2 == 1, letters)},
                                {"glyf", outlines.get()},
                                {"head", head.get()},
                                {"hhea", hhea.get()},
                                {"hmtx", advances.get()},
                                {"loca", places.get()},
                                {"maxp", maxp.get()}}));
    }
  }
  return seeds;
}

}  // namespace zolt::fuzz
