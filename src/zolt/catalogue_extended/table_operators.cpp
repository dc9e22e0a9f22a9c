#include "zolt/catalogue_extended/table_operators.h"

#include <utility>

#include "zolt/catalogue_extended/operator_cases.h"
#include "zolt/catalogue_extended/operator_det.h"
#include "zolt/catalogue_extended/operator_matrix.h"
#include "zolt/exchange/plain_operator.h"
#include "zolt/ved/operators/operator_table_act.h"
#include "zolt/ved/operators/operator_table_template.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/row_view.h"
#include "zolt/ved/view/view_insertion.h"

namespace zolt::catalogue_extended {

using namespace math::ved;

namespace {

OperatorWordsS makeWords(wstring const& title, wstring const& label, std::vector<wstring> aliases) {
  OperatorWordsS words;
  words.group = u"Matrices";
  words.title = title;
  words.label = label;
  words.aliases = std::move(aliases);
  return words;
}

/// "]" or ")" typed in a last row that is empty, as in "[a,b;]", or at the end of the last row that is not,
/// as in "matrix(a,b,c)": the table ends with the row before the empty ones.
class TableEndC : public OperatorBC {
 public:
  TableEndC() : OperatorBC(table_end_name, table_end_name, 0, 0, false, false, 0) {}

  bool appliesAt(PlaceS const& caret) const override { return findFirstEmpty(caret) > 0; }

  bool runOperator(ViewZNT4C& view) const override {
    ViewInsertionC insertion(view);
    Node4C* const table = insertion.refEnclosing();
    unsigned long const first = table ? findFirstEmpty(insertion.getCaret()) : 0;
    if (first == 0) return false;
    insertion.placeCaret(placeAfter(*table));
    while (table->numChildren() > first) table->deleteChild(table->numChildren() - 1);
    return true;
  }

 private:
  /// The first cell of the empty rows; 0: there are none, or the table goes on.
  static unsigned long findFirstEmpty(PlaceS const& caret) {
    Node4C const* const table = enclosingItem(*caret.node);
    if (!table || table->getType() != NODE4_OPERATOR) return 0;
    unsigned long const columns = table->crefOperator()->getColumns(), count = table->numChildren();
    if (columns == 0) return 0;
    Node4C const& cell = *caret.node->getParent();
    unsigned long const at = cell.findChildNumber();
    bool const isFilled = !isEmptyRow(cell);
    if (at % columns != (isFilled ? columns - 1 : 0) || (isFilled && !isAtRowEnd(caret))) return 0;
    unsigned long const first = isFilled ? at + 1 : at;
    if (first == count || (!isFilled && first + columns != count)) return 0;
    for (unsigned long i = first; i < count; ++i) {
      if (!isEmptyRow(*table->child(i))) return 0;
    }
    return first;
  }
};

}  // namespace

void addTableOperators(OperatorListC& operators) {
  auto const add = [&operators](OperatorBC* made, OperatorWordsS words) {
    PointerTC<OperatorBC> const op(made);
    op->setWords(std::move(words));
    operators.add(op);
  };
  operators.add(new OperatorMatrixC);
  add(new OperatorTableTemplateC(u"_matrix3", u"matrix", 3, 3),
      makeWords(u"3 \u00D7 3 matrix", u"3\u00D73", {u"matrix"}));
  add(new OperatorTableTemplateC(u"_vector2", u"matrix", 2, 1),
      makeWords(u"vector of two", u"2\u00D71", {u"vector"}));
  add(new OperatorTableTemplateC(u"_vector3", u"matrix", 3, 1),
      makeWords(u"vector of three", u"3\u00D71", {u"vector"}));
  // "det(" is the function, which a second argument makes the construct.
  operators.add(new OperatorBC(u"det", u"det", 0, 0, false, false, 0));
  operators.add(new OperatorDetC);
  add(new OperatorTableTemplateC(u"_det3", u"det", 3, 3),
      makeWords(u"3 \u00D7 3 determinant", u"|3\u00D73|", {u"det"}));
  operators.add(new OperatorCasesC);
  struct ActS {
    char16_t const* name;
    TableActE act;
    char16_t const* title;
    char16_t const* label;
  };
  for (ActS const& one :
       {ActS{u"_add_row", TABLE_ADD_ROW_BELOW, u"insert row below", u"+ row"},
        ActS{u"_add_column", TABLE_ADD_COLUMN_RIGHT, u"insert column right", u"+ column"},
        ActS{u"_remove_row", TABLE_REMOVE_ROWS, u"delete row", u"\u2212 row"},
        ActS{u"_remove_column", TABLE_REMOVE_COLUMNS, u"delete column", u"\u2212 column"}}) {
    add(new OperatorTableActC(one.name, one.act, 0), makeWords(one.title, one.label, {u"matrix"}));
  }
  exchange::registerPlainTable({u"matrix", u'[', u']'});
  exchange::registerPlainTable({u"det"});
  exchange::registerPlainTable({u"cases"});
  operators.add(new TableEndC);
  operators.add(new OperatorTableActC(next_cell_name, TABLE_NEXT_CELL, 0));
  operators.add(new OperatorTableActC(next_row_name, TABLE_NEXT_ROW, 0));
}

}  // namespace zolt::catalogue_extended
