#include "zolt/field/readable_text.h"

#include <algorithm>

#include "zolt/common/signs.h"
#include "zolt/field/detail/tree_walk.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/view/view.h"

namespace zolt::field {

using namespace detail;
using namespace math::ved;

namespace {

/// How a construct is spoken: what stands before each row, in the order of the rows, and at the end.
struct PhraseS {
  char16_t const* name;
  char16_t const* beforeRow[4];
  char16_t const* end;
};

constexpr PhraseS phrases[] = {
    {u"/", {u"fraction ", u" over "}, u" end fraction"},
    {u"sqrt", {u"square root "}, u" end root"},
    {u"nthroot", {u"root with index ", u" of "}, u" end root"},
    {u"abs", {u"absolute value "}, u" end absolute value"},
    {u"floor", {u"floor "}, u" end floor"},
    {u"ceil", {u"ceiling "}, u" end ceiling"},
    {u"log", {u"logarithm to base ", u" of "}, u" end logarithm"},
    {u"diff", {u"derivative by ", u" of "}, u" end derivative"},
    {u"integral", {u"integral from ", u" to ", u" of ", u" by "}, u" end integral"},
    {u"sum", {u"sum over ", u" from ", u" to ", u" of "}, u" end sum"},
    {u"where", {u"value of ", u" where ", u" is "}, u" end value"},
};

PhraseS const* findPhrase(wstring const& name) {
  auto const found =
      std::find_if(std::begin(phrases), std::end(phrases), [&](PhraseS const& p) { return name == p.name; });
  return found == std::end(phrases) ? nullptr : found;
}

wstring spoken(char16_t c) {
  switch (c) {
    case math::common::minus_sign:
      return u" minus ";
    case u'+':
      return u" plus ";
    case math::common::times_sign:
      return u" times ";
    case u'=':
      return u" equals ";
    case math::common::not_equal_sign:
      return u" not equal to ";
    case u'<':
      return u" less than ";
    case u'>':
      return u" greater than ";
    case math::common::less_or_equal_sign:
      return u" at most ";
    case math::common::greater_or_equal_sign:
      return u" at least ";
    case math::common::store_sign:
      return u" store into ";
    case u'!':
      return u" factorial";
    case math::common::pi_sign:
      return u"pi";
    default:
      return wstring(1, c);
  }
}

class ReaderC {
 public:
  explicit ReaderC(ReadableTextS& out) : out_(out) {}

  // The nesting of rows is limited, so it may recurse with them.
  void readRow(Node4C const& row) {
    for (unsigned long i = 0; i < row.numChildren(); ++i) readItem(*row.child(i));
  }

 private:
  void readItem(Node4C const& item) {
    if (item.getType() == NODE4_TEXT) {
      readText(item);
    } else if (isOpen(item) || isClose(item)) {
      out_.text += isOpen(item) ? u'(' : u')';
    } else if (item.getType() == NODE4_POWER) {
      readRows(item, {u"", {u" to the power "}, u" end power"});
    } else if (PhraseS const* const phrase = findPhrase(item.crefText())) {
      readRows(item, *phrase);
    } else {
      readCall(item);
    }
  }

  void readText(Node4C const& text) {
    mark(text, 0);
    if (isSlot(text)) out_.text += u"empty";
    for (unsigned int i = 0; i < text.sizeText(); ++i) {
      out_.text += spoken(text.crefText()[i]);
      mark(text, i + 1);
    }
  }

  void readRows(Node4C const& construct, PhraseS const& phrase) {
    for (unsigned long i = 0; i < construct.numChildren(); ++i) {
      bool const known = i < std::size(phrase.beforeRow) && phrase.beforeRow[i];
      out_.text += known ? phrase.beforeRow[i] : u", ";
      readRow(*construct.child(i));
    }
    out_.text += phrase.end;
  }

  void readCall(Node4C const& construct) {
    out_.text += construct.crefOperator() ? construct.crefOperator()->getText() : construct.crefText();
    if (construct.numChildren() > 0) readRows(construct, {u"", {u"("}, u")"});
  }

  void mark(Node4C const& text, unsigned int pos) {
    out_.marks.push_back({{&text, pos}, static_cast<unsigned long>(out_.text.size())});
  }

  ReadableTextS& out_;
};

}  // namespace

unsigned long ReadableTextS::offsetOf(PlaceS place) const {
  for (MarkS const& mark : marks) {
    if (mark.place == place) return mark.offset;
  }
  return static_cast<unsigned long>(text.size());
}

PlaceS ReadableTextS::placeAt(unsigned long offset) const {
  auto const behind = std::upper_bound(marks.begin(), marks.end(), offset,
                                       [](unsigned long o, MarkS const& mark) { return o < mark.offset; });
  if (marks.empty()) return {};
  return behind == marks.begin() ? marks.front().place : (behind - 1)->place;
}

ReadableTextS makeReadableText(ViewZNT4C const& view) {
  ReadableTextS readable;
  ReaderC(readable).readRow(*view.crefRoot().child(0));
  return readable;
}

}  // namespace zolt::field
