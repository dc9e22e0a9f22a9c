#include "zolt/field/clipboard.h"

#include <optional>

#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/algexpr/cas_session.h"
#include "zolt/common/float64_util.h"
#include "zolt/exchange/latex.h"
#include "zolt/exchange/markup.h"
#include "zolt/exchange/plain_text.h"
#include "zolt/field/detail/cell_html.h"
#include "zolt/field/detail/cell_text.h"
#include "zolt/field/detail/construct_names.h"
#include "zolt/field/detail/decimal_comma_graphics.h"
#include "zolt/field/detail/implied_signs.h"
#include "zolt/field/detail/word_bounds.h"
#include "zolt/ved/geometry/blind_graphics.h"
#include "zolt/ved/limits.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/operators/row_building.h"
#include "zolt/ved/tree/row_view.h"
#include "zolt/ved/tree/table_view.h"
#include "zolt/ved/view/range_copy.h"
#include "zolt/ved/view/view.h"

namespace zolt::field {

using namespace detail;
using namespace math::ved;
using math::algexpr::AlgebraicExpressionC;
using math::algexpr::CASSessionBC;
using oss::PointerTC;

namespace {

using ExpressionT = PointerTC<AlgebraicExpressionC>;

/// How texts of other programs are read.
struct ReadersS {
  InputOptionsS const& options;
  MathmlReaderT readMathml;

  bool canReadMathml(wstring const& text) const {
    return readMathml && text.size() <= max_pasted_markup && exchange::findMathElement(text) != wstring::npos;
  }
};

ExpressionT readMathml(wstring const& text, ReadersS const& readers, ReadErrorS* error) {
  return readers.canReadMathml(text) ? readers.readMathml(text, CASSessionBC::getSession(), error) : nullptr;
}

ExpressionT readLatex(wstring const& text, ReadErrorS* error) {
  if (text.empty() || text.size() > max_pasted_markup) return nullptr;
  return exchange::fromLatex(text, CASSessionBC::getSession(), error);
}

/// The formula in MathML or LaTeX, as such or in a page.
ExpressionT readMarked(ClipboardContentS const& content, ReadersS const& readers, ReadErrorS* error) {
  if (auto found = readMathml(content.mathml, readers, error)) return found;
  if (auto found = readLatex(content.latex, error)) return found;
  if (auto found = readMathml(content.html, readers, error)) return found;
  if (content.html.size() > max_pasted_markup) return nullptr;
  return readLatex(exchange::findPageLatex(content.html), error);
}

ExpressionT readText(wstring const& text, ReadersS const& readers, ReadErrorS* error) {
  if (readers.canReadMathml(text)) return readMathml(text, readers, error);
  InputOptionsS const& options = readers.options;
  auto const session = CASSessionBC::getSession();
  if (exchange::looksLikeLatex(text)) return exchange::fromLatex(text, session, error);
  // Text from another program may use points even so.
  if (options.decimalComma) {
    if (auto expression = exchange::fromPlainText(toPointText(text), session)) return expression;
  }
  return exchange::fromPlainText(text, session, error);
}

/// Whether the text keeps its meaning when its characters are typed one by one. A typed fraction bar or
/// exponent may apply to more or less than the text says.
bool isTypable(wstring const& text) {
  static wstring const construct_signs = u"/^\u00F7\u2044\u2215\u221A";
  return text.find_first_of(construct_signs) == wstring::npos;
}

bool typeCharacters(ViewZNT4C& view, wstring const& text) {
  if (!view.crefOperatorList().lookup(text)) return view.insertText(text);
  // A text that is an operator's name would insert the operator.
  for (char16_t const c : text) {
    if (!view.insertText(wstring(1, c))) return false;
  }
  return true;
}

wstring withoutLineEnds(wstring text) {
  while (!text.empty() && (text.back() == u'\n' || text.back() == u'\r')) text.pop_back();
  for (char16_t& c : text) {
    if (c == u'\n' || c == u'\r' || c == u'\t') c = u' ';
  }
  return text;
}

PasteE pastePlainText(ViewZNT4C& view, ClipboardContentS& content, ReadersS const& readers,
                      ReadErrorS* error) {
  wstring const& text = content.plainText;
  if (auto const expression = readText(text, readers, error)) {
    if (readers.canReadMathml(text)) content.prefix = expression->toPrefixString();
    return view.paste(expression) ? PASTE_DONE : PASTE_REFUSED;
  }
  wstring const characters = withoutLineEnds(readers.options.decimalComma ? toPointText(text) : text);
  if (!isTypable(characters) || !typeCharacters(view, characters)) return PASTE_REFUSED;
  return PASTE_AS_CHARACTERS;
}

wstring writeRowText(SelectionS const& stretch, OperatorListC const& operators);

/// The signs that the operators have in plain text.
wstring writeSigns(wstring const& text, OperatorListC const& operators) {
  wstring out;
  for (char16_t const c : text) {
    auto const op = c < 0x80 ? nullptr : operators.lookupText(wstring(1, c));
    bool const isSign = op && (op->isLinear() || op->getArity() == 0);
    out += isSign ? typedForm(*op) : wstring(1, c);
  }
  return out;
}

wstring bracketed(wstring const& text) { return wordEnd(text, 0) == text.size() ? text : u"(" + text + u")"; }

// Recursion is safe, since the nesting of rows is limited.
wstring writeConstruct(Node4C const& construct, OperatorListC const& operators) {
  std::vector<wstring> rows;
  for (unsigned long i = 0; i < construct.numChildren(); ++i) {
    rows.push_back(writeRowText(wholeRow(*construct.child(i)), operators));
  }
  wstring const& name = construct.crefText();
  if (construct.getType() == NODE4_POWER) return u"^" + bracketed(rows[0]);
  OperatorBC const& op = *construct.crefOperator();
  if (rows.size() == 2 && !isWrittenAsCall(op)) return bracketed(rows[0]) + name + bracketed(rows[1]);
  return name + u"(" + op.arrangeArgumentList(rows) + u")";
}

/// Plain text for a stretch of a row, given in reading order, which may be incomplete: an empty slot adds no
/// text, a construct is written as a call, and signs are written as they are typed. For a complete stretch
/// the text of its expression is better.
wstring writeRowText(SelectionS const& stretch, OperatorListC const& operators) {
  auto const [begin, end] = stretch;
  wstring out;
  for (Node4C const* item = begin.node;; item = item->goRight()) {
    if (item->getType() == NODE4_TEXT) {
      unsigned int const first = item == begin.node ? begin.pos : 0;
      unsigned int const last = (item == end.node ? end : endOf(item)).pos;
      out += writeSigns(item->crefText().substr(first, last - first), operators);
    } else if (isConstruct(item->getType())) {
      out += writeConstruct(*item, operators);
    } else {
      out += isOpeningBracket(item->getType()) ? u'(' : u')';
    }
    if (item == end.node) return out;
  }
}

using RowT = std::unique_ptr<Node4C>;

/// The row of a cell with this text: its formula, or its characters where it is none. Null when a character
/// cannot be in a formula.
RowT makeCell(wstring const& text, OperatorListC const& operators, ReadersS const& readers) {
  if (text.find_first_not_of(u' ') == wstring::npos) return rows::makeEmptyRow();
  RowT root;
  if (auto const expression = readText(text, readers, nullptr)) {
    root.reset(Node4C::fromAlgebraicExpression(expression, math::common::Float64UtilC::max_display_precision,
                                               math::algexpr::NUMBER_FORMAT_AUTOMATIC));
    return RowT(root->cutChild(0));
  }
  ViewZNT4C view(new BlindGraphicsC);
  wstring const characters = readers.options.decimalComma ? toPointText(text) : text;
  if (&view.crefOperatorList() != &operators || !typeCharacters(view, characters)) return nullptr;
  return copyRow(view.getWhole(), view.crefOperatorList());
}

/// The first operator that makes a table of so many columns; null: none.
PointerTC<OperatorBC> findTable(OperatorListC const& operators, unsigned long columns) {
  for (OperatorBC const* const op : operators.crefInOrder()) {
    if (op->getColumns() == 0) continue;
    if (auto found = op->findColumns(columns)) return found;
  }
  return nullptr;
}

/// Puts cells into the table around the caret or, where there is none, a table of them into the formula;
/// `pasted` then gets its bytes.
bool pasteCells(ViewZNT4C& view, std::vector<RowT> cells, unsigned long columns, bytestring& pasted) {
  if (findBlockOrCell(view.getSelection())) return view.pasteCells(std::move(cells), columns);
  auto const op = findTable(view.crefOperatorList(), columns);
  if (!op || cells.size() > math::ved::limits::max_table_cells) return false;
  pasted = writeBytes(*rows::toRow(rows::makeConstruct(*op, std::move(cells))));
  return view.paste(pasted);
}

/// Text with tabs becomes the cells of a table. In a table, or where `marks` say so, it may also be a single
/// column. Nothing is returned where it is no such text; what no table can take is refused, since a person
/// who pastes cells wants no row of characters.
std::optional<PasteE> pasteCellTexts(ViewZNT4C& view, ClipboardContentS& content, ReadersS const& readers,
                                     CellMarkE marks, ReadErrorS& error) {
  wstring const& text = content.plainText;
  namespace limits = math::ved::limits;
  // These are indented with tabs.
  if (readers.canReadMathml(text) || text.find(u"\\begin{") != wstring::npos) return {};
  bool const isInTable = static_cast<bool>(findBlockOrCell(view.getSelection()));
  if (!isInTable && !findTable(view.crefOperatorList(), 1)) return {};
  if (!hasCells(text, isInTable ? TABS_OR_LINES : marks)) return {};
  CellTextsS const texts = readCells(text);
  if (texts.cells.size() > limits::max_table_cells || texts.columns > limits::max_table_columns) {
    error.cause = math::common::READ_ERROR_TABLE_SIZE;
    return PASTE_REFUSED;
  }
  std::vector<RowT> cells;
  for (wstring const& cell : texts.cells) {
    cells.push_back(makeCell(cell, view.crefOperatorList(), readers));
    if (!cells.back()) return {};
  }
  bytestring pasted;
  if (!pasteCells(view, std::move(cells), texts.columns, pasted)) return PASTE_REFUSED;
  // The text of a single column alone would be no table.
  if (!hasCells(text, TABS_ONLY)) content.bytes = std::move(pasted);
  return PASTE_DONE;
}

wstring writeBlock(TableBlockS const& block, OperatorListC const& operators, InputOptionsS const& options) {
  CellTextsS texts;
  texts.columns = block.countColumns();
  for (unsigned long row = block.firstRow; row <= block.lastRow; ++row) {
    for (unsigned long column = block.firstColumn; column <= block.lastColumn; ++column) {
      Node4C& cell = *cellAt(*block.table, row, column);
      auto const expression = diagnoseTyped(cell, operators, options).expression;
      texts.cells.push_back(expression ? exchange::toPlainText(*expression, exchange::PLAIN_TEXT_READABLE)
                                       : writeRowText(wholeRow(cell), operators));
    }
  }
  return writeCells(texts);
}

}  // namespace

ClipboardABC::~ClipboardABC() = default;

MemoryClipboardC::~MemoryClipboardC() = default;

ClipboardContentS copyRange(ViewZNT4C const& view, SelectionS const& range, InputOptionsS const& options) {
  ClipboardContentS content;
  if (!range.anchor || range.anchor == range.caret) return content;
  auto const row = copyRow(range, view.crefOperatorList());
  content.bytes = writeCopy(*row, range);
  auto const expression = diagnoseTyped(*row, view.crefOperatorList(), options).expression;
  if (expression) content.prefix = expression->toPrefixString();
  if (findBlock(range)) {
    content.plainText = writeBlock(wholeTable(*row->child(1)), view.crefOperatorList(), options);
  } else if (expression) {
    content.plainText = exchange::toPlainText(*expression, exchange::PLAIN_TEXT_READABLE);
  } else {
    content.plainText = writeRowText(inOneRow(range), view.crefOperatorList());
  }
  if (options.decimalComma) content.plainText = toCommaText(content.plainText);
  if (findBlock(range)) content.html = cellsToHtml(content.plainText);
  return content;
}

std::vector<ClipboardTypeS> const& getClipboardTypes() {
  static std::vector<ClipboardTypeS> const types{
      {"application/mathml+xml", &ClipboardContentS::mathml},
      {"application/mathml-presentation+xml", &ClipboardContentS::mathml},
      {"application/mathml-content+xml", &ClipboardContentS::mathml},
      {"application/x-tex", &ClipboardContentS::latex},
      {"application/x-latex", &ClipboardContentS::latex},
      {"text/x-tex", &ClipboardContentS::latex},
      {"text/html", &ClipboardContentS::html},
      {"text/plain", &ClipboardContentS::plainText}};
  return types;
}

PasteE pasteContent(ViewZNT4C& view, ClipboardContentS& content, InputOptionsS const& options,
                    MathmlReaderT readMathml, ReadErrorS* error) {
  if (!view.isEditable()) return PASTE_REFUSED;
  if (!content.bytes.empty() && view.paste(content.bytes)) return PASTE_DONE;
  content.bytes.clear();
  if (!content.prefix.empty() && view.paste(AlgebraicExpressionC::fromPrefixString(content.prefix))) {
    return PASTE_DONE;
  }
  content.prefix.clear();
  ReadersS const readers{options, readMathml};
  auto const expression = readMarked(content, readers, content.plainText.empty() ? error : nullptr);
  // A table is worth more than its words. Programs for tables have text with tabs, too.
  wstring const page = std::move(content.html);
  content.mathml.clear();
  content.latex.clear();
  content.html.clear();
  if (expression && view.paste(expression)) {
    // What has been read is the expression, however it was written.
    content.prefix = expression->toPrefixString();
    return PASTE_DONE;
  }
  bool isTable = false;
  bool const isBetter = content.plainText.find(u'\t') == wstring::npos || hasExactNumbers(page);
  if (page.size() <= max_pasted_markup && isBetter) {
    wstring cells = cellsFromHtml(page);
    isTable = !cells.empty();
    if (isTable) content.plainText = std::move(cells);
  }
  ReadErrorS found;
  if (auto const result =
          pasteCellTexts(view, content, readers, isTable ? TABS_OR_LINES : TABS_ONLY, found)) {
    if (error && found.cause != math::common::READ_ERROR_NONE) *error = found;
    return *result;
  }
  return content.plainText.empty() ? PASTE_REFUSED : pastePlainText(view, content, readers, error);
}

}  // namespace zolt::field
