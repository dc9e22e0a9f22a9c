#include "zolt/surfaces/typeset/typesetter.h"

#include <algorithm>
#include <iterator>
#include <map>
#include <optional>

#include "zolt/common/signs.h"
#include "zolt/oss/code_point.h"
#include "zolt/surfaces/typeset/detail/text_ruler.h"
#include "zolt/surfaces/typeset/font_size.h"

namespace zolt::surfaces {

namespace {

constexpr double prime_size = 0.75, prime_rise = 0.36;
constexpr double index_size = TextRulerC::index_percent / 100.0, index_drop = 0.15, power_rise = 0.4;
/// The space between a prefix and its operand, in ems.
constexpr double prefix_space = 0.04;
/// The share of the blank before a prefix by which it and its operand move to the left.
constexpr double prefix_move = 0.3;

/// The sign of degrees, of the size and height that it has in an exponent.
constexpr char32_t degree_ring = 0x2218;

bool isSign(CharClassE charClass) {
  return charClass == CLASS_PLUS_MINUS || charClass == CLASS_BINARY || charClass == CLASS_RELATION ||
         charClass == CLASS_COLON;
}

/// Converts the characters of a ruler to positions at one font size.
class PlacerC {
 public:
  PlacerC(FontSizeS const& size, math::ved::TextRoleE role, std::vector<PlacedGlyphS>& glyphs)
      : em_(size.em),
        halfGap_(double(size.metrics[0]) / 2),
        followsBracket_(role == math::ved::TEXT_FOLLOWS_BRACKET),
        followsItem_(followsBracket_ || role == math::ved::TEXT_FOLLOWS_ITEM),
        glyphs_(glyphs) {}

  void place(RuledCharS const& ruled) {
    endMark(ruled.lowered);
    if (ruled.look.charClass == CLASS_SPACE) {
      // A sign beside it is placed as if it were not there.
      signIsLast_ = signIsLast_ && ruled.after > 0;
      if (glyphs_.size() == blanks_) ++blanks_;
      return append(ruled, ruled.look.upright, ruled.origin);
    }
    if (glyphs_.size() == blanks_) {
      firstShift_ = findFirstShift(ruled);
    } else if (!ruled.joined) {
      firstShift_ = 0;
    }
    if (!ruled.joined) sign_ = glyphs_.size();
    signIsLast_ = isSign(ruled.look.charClass) && ruled.after > 0;
    if (isSign(ruled.look.charClass) && prefixEnd_ == 0) prefixEnd_ = glyphs_.size();
    if (ruled.marksIndex) {
      mark_ = ruled;
      hasMark_ = true;
      return;
    }
    if (ruled.marksPower) power_ = glyphs_.size();
    append(ruled, ruled.look.upright, ruled.origin);
    if (ruled.look.overlay.face != FaceGlyphS::no_face) append(ruled, ruled.look.overlay, ruled.origin);
  }

  /// To be called after the last character: the gap of the row follows the text. A sign alone at the start
  /// has no neighbour to keep away from, or is drawn by a construct between two rows of its own.
  void finish() {
    endMark(false);
    if (prefixRoom_ > 0 && glyphs_.size() > blanks_ + 1) movePrefix();
    if (signIsLast_ && sign_ == blanks_ && prefixRoom_ > 0) {
      for (PlacedGlyphS& glyph : glyphs_) glyph.x += prefix_space * em_;
    }
    if (!signIsLast_ || (sign_ == blanks_ && !followsItem_)) return;
    for (std::size_t i = sign_; i < glyphs_.size(); ++i) glyphs_[i].x += halfGap_;
  }

  double getPrefixRoom() const { return prefixRoom_; }

  /// Replaces the mark of a number's exponent, and the sign after it, by a factor of ten.
  void startPower(RuledCharS const& digit, TextRulerC const& ruler) {
    std::optional<PlacedGlyphS> sign;
    if (glyphs_.size() > power_ + 1) sign = glyphs_.back();
    glyphs_.resize(power_);
    firstShift_ = 0;
    std::int64_t at = digit.power + ruler.getFactorSpace();
    for (std::size_t i = 0; i < std::size(TextRulerC::factor); ++i) {
      FaceGlyphS const glyph = ruler.getFactor(i);
      append({}, glyph, at);
      at += glyph.advance + (i == 0 ? ruler.getFactorSpace() : 0);
    }
    if (!sign) return;
    sign->x = toUnits(at);
    for (double* const size : {&sign->em, &sign->width, &sign->overhang}) *size *= index_size;
    sign->rise = em_ * power_rise;
    glyphs_.push_back(*sign);
  }

  /// Places a whole run of letters and digits.
  void placeRun(std::vector<RuledCharS> const& run, bool upright) {
    endMark(run.front().lowered);
    firstShift_ = 0;
    signIsLast_ = false;
    auto const glyphOf = [&](RuledCharS const& letter) -> FaceGlyphS const& {
      return upright ? letter.look.upright : run.back().letters > 1 ? letter.look.word : letter.look.italic;
    };
    std::int64_t natural = 0;
    for (RuledCharS const& letter : run) natural += glyphOf(letter).advance;
    std::int64_t const start = run.front().origin, room = run.back().end - start;
    // A run that was measured as the beginning of a name and did not become one is spread over that room. The
    // products of a long run do not fit an integer.
    double const stretch = natural == 0 ? 0 : double(room) / double(natural);
    std::int64_t used = 0;
    for (RuledCharS const& letter : run) {
      FaceGlyphS const& glyph = glyphOf(letter);
      append(letter, glyph, start + std::int64_t(double(used) * stretch));
      used += glyph.advance;
    }
  }

 private:
  /// The sign after the operand is then in the middle of what is between the operands.
  void movePrefix() {
    double const move = prefix_move * prefixRoom_;
    std::size_t const end = prefixEnd_ > 0 ? prefixEnd_ : glyphs_.size();
    for (std::size_t i = blanks_; i < end; ++i) glyphs_[i].x -= move;
    if (prefixEnd_ > 0) glyphs_[prefixEnd_].x -= move / 2;
  }

  /// Shows the underscore that waits for an index when none comes.
  void endMark(bool indexFollows) {
    if (hasMark_ && !indexFollows) append(mark_, mark_.look.upright, mark_.origin);
    hasMark_ = false;
  }

  double findFirstShift(RuledCharS const& ruled) {
    CharClassE const charClass = ruled.look.charClass;
    if (followsBracket_) return 0;  // no gap comes between the two
    if (followsItem_) {
      return isSign(charClass) ? -halfGap_ : charClass == CLASS_COMMA ? -2 * halfGap_ : 0;
    }
    if (charClass != CLASS_PLUS_MINUS) return 0;
    double const shift = std::max(0.0, toUnits(ruled.after) - prefix_space * em_);
    prefixRoom_ = toUnits(ruled.origin) + shift;
    return shift;
  }

  double toUnits(std::int64_t parts) const { return double(parts) * em_ / em_parts; }

  void append(RuledCharS const& ruled, FaceGlyphS const& glyph, std::int64_t x) {
    PlacedGlyphS placed{};
    bool const prime = ruled.look.charClass == CLASS_PRIME,
               small = ruled.lowered || ruled.marksIndex || ruled.raised;
    double const size = small ? index_size : 1;
    bool const missing = glyph.face == FaceGlyphS::no_face;
    placed.shape = missing ? SHAPE_MISSING : SHAPE_GLYPH;
    placed.face = missing ? 0 : glyph.face;
    placed.glyph = glyph.glyph;
    placed.codePoint = glyph.codePoint;
    placed.x = toUnits(x) + firstShift_;
    placed.width = toUnits(glyph.advance) * size;
    placed.overhang = toUnits(glyph.overhang) * size;
    placed.em = em_ * (prime ? prime_size : size);
    placed.rise = em_ * (prime ? prime_rise : ruled.raised ? power_rise : ruled.lowered ? -index_drop : 0);
    glyphs_.push_back(placed);
  }

  int em_;
  double halfGap_;
  bool followsBracket_, followsItem_;
  std::vector<PlacedGlyphS>& glyphs_;
  double firstShift_ = 0;  // of a sign or comma that starts the text
  double prefixRoom_ = 0;
  std::size_t prefixEnd_ = 0;  // glyph of the first sign after the start of the text; 0: there is none
  std::size_t blanks_ = 0;     // how many the text starts with
  std::size_t sign_ = 0;       // glyph of the last sign
  bool signIsLast_ = false;
  bool hasMark_ = false;  // an underscore waits for an index
  RuledCharS mark_;
  std::size_t power_ = 0;  // glyph of the mark of a number's exponent
};

bool isTight(unsigned long depth) { return depth > 0; }

/// The surface units of parts of an em.
long toWidth(std::int64_t parts, unsigned long depth) {
  return long((parts * getFontSize(depth).em + em_parts / 2) / em_parts);
}

bool marksIndex(char16_t c) { return c == u'_' || (c >= 0x2080 && c <= 0x2089); }

bool mayBeInName(char16_t c) {
  bool const isSign = c >= 0x2190 && c < 0x2C00;
  return c >= 0x80 ? !isSign : c == u'_' || math::common::isDigit(c) || math::common::isAsciiLetter(c);
}

/// Longer texts are not kept, and no more of them.
constexpr std::size_t longest_kept = 32, most_kept = 1000;

struct PlacedKeyS {
  oss::wstring text;
  unsigned long depth;
  math::ved::TextRoleE role;
};
struct PlacedQuestionS {
  oss::wstring const& text;
  unsigned long depth;
  math::ved::TextRoleE role;
};
struct PlacedOrderS {
  using is_transparent = void;

  template <class FirstT, class SecondT>
  bool operator()(FirstT const& a, SecondT const& b) const {
    if (a.depth != b.depth) return a.depth < b.depth;
    if (a.role != b.role) return a.role < b.role;
    return a.text < b.text;
  }
};

}  // namespace

struct TypesetterC::StateS {
  explicit StateS(oss::PointerTC<FontSetC> fonts) : characters(fonts) {}

  CharTableC characters;
  LetterStyleC names;
  std::vector<RuledCharS> run;  // kept for its memory
  NumberLookE numberLook = NUMBERS_AS_TYPED;
  std::map<PlacedKeyS, std::shared_ptr<PlacedTextS const>, PlacedOrderS> kept;
};

TypesetterC::TypesetterC(oss::PointerTC<FontSetC> fonts) : state_(std::make_unique<StateS>(fonts)) {}
TypesetterC::~TypesetterC() = default;

FontSetC const& TypesetterC::getFonts() const { return state_->characters.getFonts(); }

void TypesetterC::setNumberLook(NumberLookE look) {
  state_->numberLook = look;
  state_->kept.clear();
}

void TypesetterC::addUprightName(oss::wstring const& name) {
  state_->names.add(name);
  state_->kept.clear();
}

bool TypesetterC::hasIndex(oss::wstring const& text) const {
  TextRulerC ruler(state_->characters, state_->names, false, state_->numberLook);
  for (char16_t const c : text) ruler.read(c);
  return ruler.hasIndex();
}

long TypesetterC::measure(oss::wstring const& text, unsigned long depth) const {
  TextRulerC ruler(state_->characters, state_->names, isTight(depth), state_->numberLook);
  for (char16_t const c : text) ruler.read(c);
  return toWidth(ruler.getEnd(), depth);
}

long TypesetterC::measureIndex(oss::wstring const& text, unsigned long depth) const {
  std::size_t name = text.size();
  bool hasIndex = false;
  for (; name > 0 && mayBeInName(text[name - 1]); --name) hasIndex = hasIndex || marksIndex(text[name - 1]);
  if (!hasIndex) return 0;
  TextRulerC ruler(state_->characters, state_->names, isTight(depth), state_->numberLook);
  for (; name < text.size(); ++name) ruler.read(text[name]);
  return toWidth(ruler.getIndexWidth(), depth);
}

double TypesetterC::findPrefixRoom(oss::wstring const& text, unsigned long depth) const {
  if (text.empty() || state_->characters.find(text[0]).charClass != CLASS_PLUS_MINUS) return 0;
  std::vector<PlacedGlyphS> ignored;
  PlacerC placer(getFontSize(depth), math::ved::TEXT_STARTS_ROW, ignored);
  TextRulerC ruler(state_->characters, state_->names, isTight(depth), state_->numberLook);
  placer.place(ruler.read(text[0]));
  return placer.getPrefixRoom();
}

std::shared_ptr<PlacedTextS const> TypesetterC::place(oss::wstring const& text, unsigned long depth,
                                                      math::ved::TextRoleE role) const {
  auto& kept = state_->kept;
  auto const found = kept.find(PlacedQuestionS{text, depth, role});
  if (found != kept.end()) return found->second;
  auto placed = std::make_shared<PlacedTextS const>(makePlaced(text, depth, role));
  if (text.size() > longest_kept) return placed;
  if (kept.size() >= most_kept) kept.clear();
  kept.emplace(PlacedKeyS{text, depth, role}, placed);
  return placed;
}

PlacedTextS TypesetterC::makePlaced(oss::wstring const& text, unsigned long depth,
                                    math::ved::TextRoleE role) const {
  PlacedTextS placed;
  placed.glyphs.reserve(text.size());
  PlacerC placer(getFontSize(depth), role, placed.glyphs);
  TextRulerC ruler(state_->characters, state_->names, isTight(depth), state_->numberLook);
  std::vector<RuledCharS>& run = state_->run;
  bool const isUnit = role == math::ved::TEXT_IS_UNIT;
  auto const endRun = [&] {
    if (run.empty()) return;
    if (isUnit && text == u"o") run[0].look = state_->characters.find(degree_ring);
    placer.placeRun(run, isUnit || state_->names.isUpright(run.back().names));
    run.clear();
  };
  for (std::size_t i = 0; i < text.size(); ++i) {
    RuledCharS const& ruled = ruler.read(text[i]);
    // Both halves of a pair are placed when the second is read.
    if (oss::isHighSurrogate(text[i]) && i + 1 < text.size() && oss::isLowSurrogate(text[i + 1])) continue;
    if (ruled.inRun) {
      run.push_back(ruled);
    } else {
      endRun();
      if (ruled.startsPower) placer.startPower(ruled, ruler);
      placer.place(ruled);
    }
  }
  endRun();
  placer.finish();
  placed.width = toWidth(ruler.getEnd(), depth);
  placed.indexWidth = measureIndex(text, depth);
  return placed;
}

}  // namespace zolt::surfaces
