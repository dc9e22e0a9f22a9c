#include <algorithm>

#include "zolt/common/signs.h"
#include "zolt/mathml/detail/presentation_reader.h"
#include "zolt/mathml/detail/presentation_table.h"

// What elements are.
namespace zolt::mathml::detail {

using namespace math::common;
using TextT = std::u16string_view;

std::vector<MathmlIdT> PresentationReaderC::childrenOf(MathmlIdT id) const {
  std::vector<MathmlIdT> children;
  for (MathmlIdT child = at(id).first; child != no_element; child = at(child).next) {
    if (!isSpace(child)) children.push_back(child);
  }
  return children;
}

bool PresentationReaderC::isSpace(MathmlIdT id) const {
  if (at(id).tag == MATHML_SPACE) return true;
  if (isToken(at(id).tag)) {
    return isOnlyRoom(tree_.text(id)) && !isEmptyFence(id) && !tree_.hasAttribute(id, u"data-name");
  }
  return isRow(id) && at(id).first == no_element;
}

bool PresentationReaderC::isRow(MathmlIdT id) const {
  MathmlTagE const tag = at(id).tag;
  return tag == MATHML_MROW || tag == MATHML_MSTYLE || tag == MATHML_MPADDED || tag == MATHML_MATH ||
         tag == MATHML_MTD;
}

// The only thing inside of rows that hold nothing else. The look inside is limited, since many may look.
MathmlIdT PresentationReaderC::coreOf(MathmlIdT id) const {
  constexpr int max_depth = 8;
  for (int depth = 0; depth < max_depth && isRow(id); ++depth) {
    MathmlIdT only = no_element;
    for (MathmlIdT child = at(id).first; child != no_element; child = at(child).next) {
      if (isSpace(child)) continue;
      if (only != no_element) return id;
      only = child;
    }
    if (only == no_element) return id;
    id = only;
  }
  return id;
}

bool PresentationReaderC::isSign(MathmlIdT id, TextT text) const {
  return at(id).tag == MATHML_MO && tree_.text(id) == text;
}

bool PresentationReaderC::isEmptyFence(MathmlIdT id) const {
  if (at(id).tag != MATHML_MO) return false;
  bool const isFence = tree_.attribute(id, u"fence") == u"true" || tree_.hasAttribute(id, u"form") ||
                       tree_.attribute(id, u"stretchy") == u"true";
  TextT const text = tree_.text(id);
  return isFence && (text.empty() || text == u".");
}

// The delimiter that an element is, "." for an empty one; U+0000 for anything else.
char16_t PresentationReaderC::fenceOf(MathmlIdT id) const {
  MathmlIdT const core = coreOf(id);
  if (at(core).tag != MATHML_MO && at(core).tag != MATHML_MI) return u'\0';
  if (isEmptyFence(core)) return u'.';
  TextT const text = tree_.text(core);
  if (char16_t const bar = asBar(text); bar != u'\0') return bar;
  return text.size() == 1 && findFenceSign(text[0]) ? text[0] : u'\0';
}

// Whether the row begins with a delimiter that its last element closes.
bool PresentationReaderC::isFenced(std::vector<MathmlIdT> const& row) const {
  if (row.size() < 2) return false;
  char16_t const first = fenceOf(row.front());
  char16_t const last = fenceOf(row.back());
  if (first == u'\0' || last == u'\0') return false;
  if (first == u'.' || last == u'.') return true;
  int depth = 0;
  for (std::size_t i = 0; i + 1 < row.size(); ++i) {
    char16_t const fence = fenceOf(row[i]);
    FenceS const* const pair = fence == u'\0' ? nullptr : findFenceSign(fence);
    if (!pair) continue;
    if (pair->openSign == pair->closeSign) {
      if (i > 0 && fence == first) return false;
    } else {
      depth += fence == pair->openSign ? 1 : -1;
      if (depth == 0 && fence != first) return false;
    }
  }
  return true;
}

// Whether the row ends with the only bar in it, whose other side is empty, as before the value of a variable.
bool PresentationReaderC::isHalfFenced(std::vector<MathmlIdT> const& row) const {
  if (row.size() < 2 || fenceOf(row.front()) != u'\0') return false;
  MathmlIdT const last = coreOf(row.back());
  MathmlIdT const parent = at(at(row.front()).parent).parent;
  bool const isBase =
      parent != no_element && (at(parent).tag == MATHML_MSUB || at(parent).tag == MATHML_MSUBSUP);
  bool const isFence =
      at(last).tag == MATHML_MO && (tree_.attribute(last, u"fence") == u"true" ||
                                    (isBase && tree_.attribute(last, u"form") == u"postfix"));
  if (!isFence || asBar(tree_.text(last)) == u'\0') return false;
  return std::none_of(row.begin(), row.end() - 1, [&](MathmlIdT id) {
    char16_t const fence = fenceOf(id);
    return fence != u'\0' && asBar({&fence, 1}) != u'\0';
  });
}

bool PresentationReaderC::isAtop(MathmlIdT id) const {
  TextT const thickness = tree_.attribute(id, u"linethickness");
  return at(id).tag == MATHML_MFRAC && !thickness.empty() && thickness[0] == u'0' &&
         thickness.find_first_of(u"123456789") == TextT::npos;
}

// Whether the row is one operand, which would fall apart without it.
bool PresentationReaderC::groups(std::vector<MathmlIdT> const& row) const {
  if (tree_.hasTypedRows()) return false;
  bool isLoose = false;
  int depth = 0;
  for (std::size_t i = 0; i < row.size(); ++i) {
    MathmlIdT const core = coreOf(row[i]);
    if (at(core).tag != MATHML_MO) continue;
    TextT const text = tree_.text(core);
    if (text == u"(" || text == u"[" || text == u"{") ++depth;
    if (text == u")" || text == u"]" || text == u"}") --depth;
    if (depth < 0 || text == u"," || text == u";" || asBar(text) != u'\0') return false;
    bool const isEnd = i == 0 || i + 1 == row.size();
    if (isLooseSign(text) && i + 1 == row.size()) return false;
    isLoose = isLoose || (isLooseSign(text) && !isEnd && depth == 0);
  }
  return isLoose && depth == 0 && !endsWithDifferential(row);
}

bool PresentationReaderC::endsWithDifferential(std::vector<MathmlIdT> const& row) const {
  if (row.size() < 2) return false;
  auto const isD = [](TextT text) { return text == u"d" || text == u"ⅆ" || text == u"𝑑"; };
  MathmlIdT const last = coreOf(row.back());
  TextT const text = tree_.text(last);
  if (at(last).tag != MATHML_MI) return false;
  return (text.size() == 2 && text[0] == u'd') || isD(tree_.text(coreOf(row[row.size() - 2])));
}

std::size_t PresentationReaderC::countPrimesOf(MathmlIdT id) const {
  MathmlTagE const tag = at(id).tag;
  if (tag != MATHML_MO && tag != MATHML_MI) return 0;
  std::size_t count = 0;
  for (char16_t const c : tree_.text(id)) {
    unsigned const primes = c == u'\u2057' ? 4 : countPrimes(c);
    if (primes == 0) return 0;
    count += primes;
  }
  return count;
}

// Whether the delimiters at the ends of the row have to say on which side they are.
bool PresentationReaderC::hasSides(std::vector<MathmlIdT> const& row) const {
  if (row.size() < 2) return false;
  char16_t const first = fenceOf(row.front());
  MathmlIdT end = row.back();
  MathmlTagE const tag = at(end).tag;
  if ((tag == MATHML_MSUB || tag == MATHML_MSUP || tag == MATHML_MSUBSUP) && at(end).first != no_element)
    end = at(end).first;
  char16_t const last = fenceOf(end);
  if (first == u'\0') return false;
  bool const isTable = row.size() <= 3 && at(coreOf(row[1])).tag == MATHML_MTABLE;
  if (isTable) return false;
  if (last == u'\0') return false;
  if (first == u'.' || last == u'.') return true;
  FenceS const* const pair = findFenceSign(first);
  if (first == last && pair->openSign == pair->closeSign) return row.size() > 2;
  bool const isPair = first == pair->openSign && last == pair->closeSign;
  bool const hasOthers = std::any_of(row.begin() + 1, row.end() - 1, [&](MathmlIdT id) {
    char16_t const fence = fenceOf(id);
    return fence != u'\0' && fence != u'.';
  });
  bool const areBars = asBar({&first, 1}) != u'\0' || asBar({&last, 1}) != u'\0';
  return !isPair && !hasOthers && !areBars;
}

}  // namespace zolt::mathml::detail
