#include "zolt/field/detail/row_text.h"

#include <vector>

#include "zolt/field/detail/construct_names.h"
#include "zolt/field/detail/tree_walk.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/operators/operator_list.h"

namespace zolt::field::detail {

using namespace math::ved;

namespace {

/// Writes a stretch with the signs that the operators have in plain text.
class WriterC {
 public:
  explicit WriterC(OperatorListC const& operators) : operators_(operators) {}

  void appendSigns(wstring const& text);
  void appendItem(Node4C const& item);
  wstring out;

 private:
  wstring writeRow(Node4C const& row) const;
  void appendConstruct(Node4C const& construct);

  OperatorListC const& operators_;
};

bool isOneWord(wstring const& text) { return wordEnd(text, 0) == text.size(); }

wstring bracketed(wstring const& text) { return isOneWord(text) ? text : u"(" + text + u")"; }

void WriterC::appendSigns(wstring const& text) {
  for (char16_t const c : text) {
    auto const op = c < 0x80 ? nullptr : operators_.lookupText(wstring(1, c));
    bool const isSign = op && (op->isLinear() || op->getArity() == 0);
    out += isSign ? typedForm(*op) : wstring(1, c);
  }
}

void WriterC::appendConstruct(Node4C const& construct) {
  std::vector<wstring> rows;
  for (unsigned long i = 0; i < construct.numChildren(); ++i) rows.push_back(writeRow(*construct.child(i)));
  wstring const& name = construct.crefText();
  if (construct.getType() == NODE4_POWER) {
    out += u"^" + bracketed(rows[0]);
  } else if (rows.size() == 2 && !isWrittenAsCall(*construct.crefOperator())) {
    out += bracketed(rows[0]) + name + bracketed(rows[1]);
  } else {
    out += name + u"(" + construct.crefOperator()->arrangeArgumentList(rows) + u")";
  }
}

void WriterC::appendItem(Node4C const& item) {
  if (isOpen(item)) {
    out += u'(';
  } else if (isClose(item)) {
    out += u')';
  } else if (isConstruct(item)) {
    appendConstruct(item);
  } else {
    appendSigns(item.crefText());
  }
}

// The nesting of rows is limited, so it may recurse with them.
wstring WriterC::writeRow(Node4C const& row) const {
  WriterC writer(operators_);
  for (unsigned long i = 0; i < row.numChildren(); ++i) writer.appendItem(*row.child(i));
  return writer.out;
}

}  // namespace

wstring writeRowText(StretchS const& stretch, OperatorListC const& operators) {
  WriterC writer(operators);
  for (unsigned long i = stretch.first; i <= stretch.last; ++i) {
    Node4C const& item = *stretch.row->child(i);
    if (item.getType() != NODE4_TEXT) {
      writer.appendItem(item);
      continue;
    }
    unsigned int const begin = i == stretch.first ? stretch.firstPos : 0;
    auto const end = i == stretch.last ? stretch.lastPos : static_cast<unsigned int>(item.sizeText());
    writer.appendSigns(item.crefText().substr(begin, end - begin));
  }
  return writer.out;
}

}  // namespace zolt::field::detail
