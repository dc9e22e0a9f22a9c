#include "zolt/catalogue_extended/operator_table.h"

#include "zolt/algexpr/parent_node.h"
#include "zolt/ved/operators/call_row.h"
#include "zolt/ved/operators/row_building.h"
#include "zolt/ved/tree/node4.h"

namespace zolt::catalogue_extended {

using namespace math::ved;

namespace {

constexpr char16_t const* list_name = u"list";
constexpr unsigned long inserted_rows = 2;

using RowT = std::unique_ptr<Node4C>;

bool isComma(Node4C const& item) {
  return item.getType() == NODE4_TEXT && item.sizeText() == 1 && item.crefText()[0] == Node4C::COMMA_C;
}

/// Whether the row is a call as `makeCallRow` makes it, of a list.
bool isListCall(Node4C const& row) {
  unsigned long const count = row.numChildren();
  return count > 2 && row.child(0)->getType() == NODE4_TEXT && row.child(0)->crefText() == list_name &&
         row.child(1)->getType() == NODE4_OPEN && row.child(count - 1)->getType() == NODE4_CLOSE;
}

/// Takes the arguments out of a list's call and appends each to `cells` as a row.
void takeCells(Node4C& call, std::vector<RowT>& cells) {
  unsigned long depth = 0;
  auto const open = [&cells] { cells.push_back(std::make_unique<Node4C>(NODE4_LINE)); };
  open();
  for (unsigned long i = 2; i + 1 < call.numChildren(); ++i) {
    if (depth == 0 && isComma(*call.child(i))) {
      open();
      continue;
    }
    Node4C* const item = call.cutChild(i);
    if (item->getType() == NODE4_OPEN) ++depth;
    if (item->getType() == NODE4_CLOSE) --depth;
    cells.back()->insertChild(cells.back()->numChildren(), item);
  }
}

}  // namespace

OperatorTableBC::OperatorTableBC(wstring const& name, wstring const& text, unsigned long columns)
    : ConstructBC(name, text,
                  {0,
                   0,
                   columns > 1 ? 1ul : 0ul,
                   {},
                   ROWS_LIKE_ARGUMENTS,
                   EXPONENT_OF_CONSTRUCT,
                   inserted_rows * columns},
                  0, false, 0),
      columns_(columns) {}

OperatorWordsS OperatorTableBC::makeWords(wstring const& title) {
  OperatorWordsS words;
  words.group = u"Matrices";
  words.title = title;
  words.insideSigns = {{u',', next_cell_name}, {u';', next_row_name}, {u')', table_end_name}};
  return words;
}

bool OperatorTableBC::fits(math::algexpr::NodeABC const& node, unsigned long numArguments) const {
  auto const* const lists = node.asParent();
  auto const* const first = lists ? lists->child(0).asParent() : nullptr;
  if (!first || !findFor(first->numChildren())) return false;
  unsigned long const columns = first->numChildren();
  if (numArguments > limits::max_table_cells / columns) return false;
  for (unsigned long i = 0; i < numArguments; ++i) {
    auto const* const list = lists->child(i).asParent();
    if (!list || list->crefName() != list_name || list->numChildren() != columns) return false;
  }
  return true;
}

wstring OperatorTableBC::arrangeArgumentList(std::vector<wstring> const& cells) const {
  wstring lists;
  for (unsigned long i = 0; i < cells.size(); ++i) {
    bool const starts = i % columns_ == 0;
    if (i > 0) lists += Node4C::COMMA_C;
    if (starts) lists += wstring(list_name) + Node4C::OPEN_C;
    lists += cells[i];
    if ((i + 1) % columns_ == 0) lists += Node4C::CLOSE_C;
  }
  return lists;
}

OperatorTableBC::RowT OperatorTableBC::fromArguments(math::algexpr::NodeABC const& node,
                                                     std::vector<RowT> lists) const {
  std::vector<RowT> cells;
  bool taken = true;
  for (RowT const& list : lists) taken = taken && isListCall(*list);
  if (taken) {
    for (RowT const& list : lists) takeCells(*list, cells);
    auto const op = findFor(cells.size() / lists.size());
    if (op && cells.size() % lists.size() == 0) return rows::makeConstruct(*op, std::move(cells));
  }
  // A list that nests too deep is a text.
  ConversionStackT stack;
  for (RowT& list : lists) stack.emplace(list.release(), 0);
  return RowT(makeCallRow(node.crefName(), lists.size(), stack));
}

TableSpacesS OperatorTableBC::spacesBetween(GraphicsABC const& graphics, long left, long right) {
  long const gap = graphics.getMetric(0);
  return {left, right, 2 * (graphics.getMetric(1) + gap), gap + graphics.getMetric(3)};
}

// ---- Any number of columns -------------------------------------------------------------------------------

wstring OperatorResizableTableBC::getVariant() const {
  wstring digits;
  if (getColumns() == usual_columns) return digits;
  for (unsigned long rest = getColumns(); rest > 0; rest /= 10) {
    digits.insert(digits.begin(), static_cast<char16_t>(u'0' + rest % 10));
  }
  return digits;
}

PointerTC<OperatorBC> OperatorResizableTableBC::findVariant(wstring const& variant) const {
  unsigned long columns = 0;
  for (char16_t const c : variant) {
    if (c < u'0' || c > u'9' || columns > limits::max_table_columns) return nullptr;
    columns = 10 * columns + static_cast<unsigned long>(c - u'0');
  }
  auto const op = columns != usual_columns ? findColumns(columns) : nullptr;
  return op && op->getVariant() == variant ? op : nullptr;
}

PointerTC<OperatorBC> OperatorResizableTableBC::findColumns(unsigned long columns) const {
  if (columns == getColumns()) return const_cast<OperatorResizableTableBC*>(this);
  return columns > 0 && columns <= variants_.size() ? variants_[columns - 1] : nullptr;
}

}  // namespace zolt::catalogue_extended
