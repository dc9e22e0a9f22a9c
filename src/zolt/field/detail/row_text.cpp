#include "zolt/field/detail/row_text.h"

#include <vector>

#include "zolt/common/signs.h"
#include "zolt/field/detail/tree_walk.h"
#include "zolt/ved/operators/operator.h"

namespace zolt::field::detail {

using namespace math::ved;

namespace {

void appendSigns(wstring& out, wstring const& text) {
  for (char16_t const c : text) {
    switch (c) {
      case math::common::times_sign:
        out += u'*';
        break;
      case math::common::minus_sign:
        out += u'-';
        break;
      case math::common::not_equal_sign:
        out += u"<>";
        break;
      case math::common::less_or_equal_sign:
        out += u"<=";
        break;
      case math::common::greater_or_equal_sign:
        out += u">=";
        break;
      case math::common::store_sign:
        out += u":>";
        break;
      case math::common::pi_sign:
        out += u"pi";
        break;
      default:
        out += c;
    }
  }
}

wstring writeRow(Node4C const& row);

bool isOneWord(wstring const& text) { return wordEnd(text, 0) == text.size(); }

wstring bracketed(wstring const& text) { return isOneWord(text) ? text : u"(" + text + u")"; }

wstring writeConstruct(Node4C const& construct) {
  std::vector<wstring> rows;
  for (unsigned long i = 0; i < construct.numChildren(); ++i) rows.push_back(writeRow(*construct.child(i)));
  if (construct.getType() == NODE4_POWER) return u"^" + bracketed(rows[0]);
  if (construct.crefText() == u"/") return bracketed(rows[0]) + u"/" + bracketed(rows[1]);
  return construct.crefText() + u"(" + construct.crefOperator()->arrangeArgumentList(rows) + u")";
}

void appendItem(wstring& out, Node4C const& item) {
  if (isOpen(item)) {
    out += u'(';
  } else if (isClose(item)) {
    out += u')';
  } else if (isConstruct(item)) {
    out += writeConstruct(item);
  } else {
    appendSigns(out, item.crefText());
  }
}

// The nesting of rows is limited, so it may recurse with them.
wstring writeRow(Node4C const& row) {
  wstring out;
  for (unsigned long i = 0; i < row.numChildren(); ++i) appendItem(out, *row.child(i));
  return out;
}

}  // namespace

wstring writeRowText(StretchS const& stretch) {
  wstring out;
  for (unsigned long i = stretch.first; i <= stretch.last; ++i) {
    Node4C const& item = *stretch.row->child(i);
    if (item.getType() != NODE4_TEXT) {
      appendItem(out, item);
      continue;
    }
    unsigned int const begin = i == stretch.first ? stretch.firstPos : 0;
    auto const end = i == stretch.last ? stretch.lastPos : static_cast<unsigned int>(item.sizeText());
    appendSigns(out, item.crefText().substr(begin, end - begin));
  }
  return out;
}

}  // namespace zolt::field::detail
