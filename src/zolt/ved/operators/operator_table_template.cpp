#include "zolt/ved/operators/operator_table_template.h"

#include "zolt/ved/limits.h"
#include "zolt/ved/operators/operator_list.h"
#include "zolt/ved/operators/row_building.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/view/view_insertion.h"

namespace zolt::math::ved {

namespace {

wstring digitsOf(unsigned long number) {
  wstring digits;
  do digits.insert(digits.begin(), static_cast<char16_t>(u'0' + number % 10));
  while ((number /= 10) > 0);
  return digits;
}

/// Takes the number off the end of `text`, with the mark before it; 0 when there is none of a table's size.
unsigned long takeNumber(wstring& text, char16_t mark) {
  std::size_t const at = text.rfind(mark);
  if (at == wstring::npos || at + 1 == text.size() || text[at + 1] == u'0') return 0;
  unsigned long number = 0;
  for (std::size_t i = at + 1; i < text.size(); ++i) {
    if (text[i] < u'0' || text[i] > u'9' || number > limits::max_table_cells) return 0;
    number = 10 * number + static_cast<unsigned long>(text[i] - u'0');
  }
  text.resize(at);
  return number;
}

}  // namespace

OperatorTableTemplateC::OperatorTableTemplateC(wstring const& name, wstring const& table, unsigned long rows,
                                               unsigned long columns)
    : OperatorBC(name, name, 0, 0, false, false, 0), table_(table), rows_(rows), columns_(columns) {}

PointerTC<OperatorBC> OperatorTableTemplateC::read(wstring const& text) {
  wstring table = text;
  unsigned long const columns = takeNumber(table, u'x');
  unsigned long const rows = columns > 0 ? takeNumber(table, u':') : 0;
  return rows > 0 ? PointerTC<OperatorBC>(new OperatorTableTemplateC(text, table, rows, columns)) : nullptr;
}

wstring OperatorTableTemplateC::sizedName(wstring const& table, unsigned long rows, unsigned long columns) {
  return table + u':' + digitsOf(rows) + u'x' + digitsOf(columns);
}

PointerTC<OperatorBC> OperatorTableTemplateC::findTable(OperatorListC const& operators) const {
  auto const registered = operators.lookup(table_);
  bool const fits = registered && registered->getColumns() > 0 && rows_ > 0 && columns_ > 0 &&
                    rows_ <= limits::max_table_cells / columns_;
  return fits ? registered->findColumns(columns_) : nullptr;
}

bool OperatorTableTemplateC::mayRun(SelectionS const&, OperatorListC const& operators) const {
  return static_cast<bool>(findTable(operators));
}

bool OperatorTableTemplateC::runOperator(ViewZNT4C& view) const {
  ViewInsertionC insertion(view);
  auto const op = findTable(insertion.crefOperatorList());
  if (!op || !insertion.mayNestSelection()) return false;
  std::vector<rows::NodeT> cells(rows_ * columns_);
  cells[0] = insertion.cutSelection();
  insertion.insertConstruct(rows::makeConstruct(*op, std::move(cells)), 0);
  return true;
}

}  // namespace zolt::math::ved
