#include "zolt/field/detail/row_text.h"

#include <vector>

#include "zolt/field/detail/construct_names.h"
#include "zolt/field/detail/words.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/operators/operator_list.h"
#include "zolt/ved/tree/node4.h"

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
  if (isOpeningBracket(item.getType())) {
    out += u'(';
  } else if (isClosingBracket(item.getType())) {
    out += u')';
  } else if (isConstruct(item.getType())) {
    appendConstruct(item);
  } else {
    appendSigns(item.crefText());
  }
}

// Recursion is safe, since the nesting of rows is limited.
wstring WriterC::writeRow(Node4C const& row) const {
  WriterC writer(operators_);
  for (unsigned long i = 0; i < row.numChildren(); ++i) writer.appendItem(*row.child(i));
  return writer.out;
}

}  // namespace

wstring writeRowText(SelectionS const& stretch, OperatorListC const& operators) {
  auto const [begin, end] = stretch;
  WriterC writer(operators);
  for (Node4C const* item = begin.node;; item = item->goRight()) {
    if (item->getType() == NODE4_TEXT) {
      unsigned int const first = item == begin.node ? begin.pos : 0;
      writer.appendSigns(item->crefText().substr(first, (item == end.node ? end : endOf(item)).pos - first));
    } else {
      writer.appendItem(*item);
    }
    if (item == end.node) return writer.out;
  }
}

}  // namespace zolt::field::detail
