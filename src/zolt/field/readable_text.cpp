#include "zolt/field/readable_text.h"

#include <algorithm>

#include "zolt/common/signs.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/operators/operator_list.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/row_view.h"
#include "zolt/ved/view/view.h"

namespace zolt::field {

using namespace math::ved;

namespace {

class ReaderC {
 public:
  ReaderC(ReadableTextS& out, OperatorListC const& operators) : out_(out), operators_(operators) {}

  // Recursion is safe, since the nesting of rows is limited.
  void readRow(Node4C const& row) {
    for (unsigned long i = 0; i < row.numChildren(); ++i) readItem(*row.child(i));
  }

 private:
  void readItem(Node4C const& item) {
    if (item.getType() == NODE4_TEXT) {
      readText(item);
    } else if (isOpeningBracket(item.getType()) || isClosingBracket(item.getType())) {
      out_.text += isOpeningBracket(item.getType()) ? u'(' : u')';
    } else if (item.getType() == NODE4_POWER) {
      auto const power = operators_.lookup(u"^");
      readRows(item, power ? power->crefWords().spoken : std::vector<wstring>());
    } else if (auto const& spoken = item.crefOperator()->crefWords().spoken; !spoken.empty()) {
      readRows(item, spoken);
    } else {
      out_.text += item.crefOperator()->getText();
      if (item.numChildren() > 0) readRows(item, {u"(", u")"});
    }
  }

  void readText(Node4C const& text) {
    mark(text, 0);
    if (isSlot(text)) out_.text += u"empty";
    for (unsigned int i = 0; i < text.sizeText(); ++i) {
      wstring const sign(1, text.crefText()[i]);
      auto const op = operators_.lookupText(sign);
      bool const isIndex = sign == u"_" && i > 0 && i + 1 < text.sizeText();
      say(op && op->crefWords().spoken.size() == 1 ? op->crefWords().spoken[0]
          : sign[0] == math::common::prime_sign    ? wstring(u" prime")
          : isIndex                                ? wstring(u" sub ")
                                                   : sign);
      mark(text, i + 1);
    }
  }

  /// A sign may have blanks around it, and what is said for it too.
  void say(wstring const& words) {
    bool const doubled = !out_.text.empty() && out_.text.back() == u' ' && words[0] == u' ';
    out_.text.append(words, doubled ? 1 : 0, wstring::npos);
  }

  /// Reads the rows of a construct; `spoken` has what is said before each of them and, last, at the end.
  void readRows(Node4C const& construct, std::vector<wstring> const& spoken) {
    unsigned long const count = construct.numChildren();
    for (unsigned long i = 0; i < count; ++i) {
      out_.text += i + 1 < spoken.size() ? spoken[i] : u", ";
      readRow(*construct.child(i));
    }
    if (!spoken.empty()) out_.text += spoken.back();
  }

  void mark(Node4C const& text, unsigned int pos) {
    out_.marks.push_back({{&text, pos}, static_cast<unsigned long>(out_.text.size())});
  }

  ReadableTextS& out_;
  OperatorListC const& operators_;
};

}  // namespace

unsigned long ReadableTextS::offsetOf(PlaceS place) const {
  for (MarkS const& mark : marks) {
    if (mark.place == place) return mark.offset;
  }
  return static_cast<unsigned long>(text.size());
}

namespace {

auto findMarkAfter(std::vector<ReadableTextS::MarkS> const& marks, unsigned long offset) {
  return std::upper_bound(
      marks.begin(), marks.end(), offset,
      [](unsigned long wanted, ReadableTextS::MarkS const& mark) { return wanted < mark.offset; });
}

}  // namespace

PlaceS ReadableTextS::placeAt(unsigned long offset) const {
  auto const after = findMarkAfter(marks, offset);
  if (marks.empty()) return {};
  return after == marks.begin() ? marks.front().place : (after - 1)->place;
}

PlaceS ReadableTextS::placeAfter(unsigned long offset) const {
  auto const after = findMarkAfter(marks, offset);
  return after == marks.end() ? PlaceS() : after->place;
}

ReadableTextS makeReadableText(ViewZNT4C const& view) {
  return makeReadableText(view.crefRoot(), view.crefOperatorList());
}

ReadableTextS makeReadableText(Node4C const& tree, OperatorListC const& operators) {
  bool const isRoot = tree.getType() == math::ved::NODE4_ROOT;
  ReadableTextS readable;
  ReaderC(readable, operators).readRow(isRoot ? *tree.child(0) : tree);
  return readable;
}

}  // namespace zolt::field
