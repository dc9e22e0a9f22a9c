#include "zolt/sheet/sheet_text.h"

#include <algorithm>
#include <array>
#include <locale>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>

#include "zolt/field/formula_field.h"
#include "zolt/oss/quoted_text.h"
#include "zolt/ved/geometry/blind_graphics.h"
#include "zolt/ved/tree/tree_notation.h"

namespace zolt::sheet {

namespace {

using math::algexpr::AlgebraicExpressionC;
using TextViewT = std::u16string_view;

constexpr TextViewT magic = u"zolt-sheet";
constexpr unsigned long version = 1;

/// Checks formulas in a field that is never shown.
class FormulaTrialC {
 public:
  FormulaTrialC() : field_(new math::ved::BlindGraphicsC) {}

  bool show(wstring const& prefix) {
    auto expression = AlgebraicExpressionC::fromPrefixString(prefix);
    if (!expression) return false;
    field_.setExpression(std::move(expression));
    return true;
  }
  bool showTree(wstring const& tree) {
    field_.setExpression(nullptr);  // drops the history of the last check
    return field_.setNotation(tree);
  }

  SheetLineS makeLine(wstring const& prefix, wstring const& tree) {
    field_.setExpression(nullptr);
    bool const readable = prefix.empty() || show(prefix);
    bool const tellsAll = readable && this->tree() == tree;
    return {SHEET_FORMULA, {}, prefix, tellsAll ? wstring() : tree};
  }
  wstring tree() const { return writeTreeNotation(field_.crefView().crefRoot()); }
  wstring prefix() {
    auto const expression = field_.getExpression();
    return expression ? expression->toPrefixString() : wstring();
  }

 private:
  field::FormulaFieldC field_;
};

// ---- Graphs -----------------------------------------------------------------------------------------------

constexpr TextViewT graph_begin = u"[graph x ", graph_middle = u" y ", graph_end = u"]";
/// The shortest text that reads back to the value, in every locale the same.
wstring writeEdge(double value) {
  constexpr int least_digits = 6, most_digits = 17;
  std::string text;
  double read = 0;
  for (int digits = least_digits; digits <= most_digits && (text.empty() || read != value); ++digits) {
    std::stringstream stream;
    stream.imbue(std::locale::classic());
    stream.precision(digits);
    stream << value;
    text = stream.str();
    stream >> read;
  }
  return wstring(text.begin(), text.end());
}

wstring writeGraph(GraphWindowS const& graph) {
  wstring text(graph_begin);
  text += writeEdge(graph.left) + u' ' + writeEdge(graph.right);
  text.append(graph_middle).append(writeEdge(graph.bottom) + u' ' + writeEdge(graph.top));
  return text.append(graph_end);
}

/// Only what `writeGraph` writes is a graph: a text of a person stays one.
bool readGraph(wstring const& text, GraphWindowS& graph) {
  constexpr std::size_t most = 150;
  if (text.size() > most || text.compare(0, graph_begin.size(), graph_begin) != 0) return false;
  std::string numbers;
  for (char16_t const c : text) {
    bool const isNumber = (c >= u'0' && c <= u'9') || c == u'.' || c == u'-' || c == u'+' || c == u'e';
    numbers += isNumber ? static_cast<char>(c) : ' ';
  }
  std::istringstream stream(numbers);
  stream.imbue(std::locale::classic());
  GraphWindowS read;
  stream >> read.left >> read.right >> read.bottom >> read.top;
  if (stream.fail() || !read.isShown() || writeGraph(read) != text) return false;
  graph = read;
  return true;
}

/// A line's first word, and what comes after the blank.
std::pair<TextViewT, TextViewT> cutAtBlank(TextViewT line) {
  std::size_t const blank = std::min(line.find(u' '), line.size());
  return {line.substr(0, blank), line.substr(std::min(blank + 1, line.size()))};
}

bool isTooLong(SheetLineKindE kind, TextViewT text) {
  return text.size() > (kind == SHEET_FORMULA ? max_sheet_formula : max_sheet_text);
}

class SheetReaderC {
 public:
  enum FaultE { FAULT_FAILS, FAULT_IS_KEPT };

  SheetReaderC(TextViewT text, FaultE fault, SheetErrorS& error, ProgressT const& goOn = {})
      : rest_(text), size_(text.size()), salvages_(fault == FAULT_IS_KEPT), error_(error), goOn_(goOn) {}

  bool read(SheetT& sheet) {
    if (!readLines()) return false;
    sheet = std::move(sheet_);
    return true;
  }

 private:
  bool readLines() {
    if (rest_.size() > max_sheet_characters) return fail(SHEET_ERROR_TOO_LARGE);
    if (!takeLine() || !readHeader()) return false;
    while (takeLine()) {
      if (goOn_ && !goOn_(size_ - rest_.size() - line_.size())) return fail(SHEET_ERROR_STOPPED);
      if (readLine()) continue;
      if (!salvages_ || !keepAsText()) return false;
    }
    return ended_ || salvages_ || fail(SHEET_ERROR_NO_END);
  }

  bool fail(SheetErrorE cause) {
    error_ = {cause, number_};
    return false;
  }

  bool keepAsText() {
    do {
      if (numItems_++ == max_sheet_lines) return false;
      sheet_.push_back({SHEET_TEXT, wstring(line_.substr(0, max_sheet_text)), {}, {}});
      line_.remove_prefix(sheet_.back().text.size());
    } while (!line_.empty());
    return true;
  }

  /// The empty text has one line, and a line end at the end of the text does not start another.
  bool takeLine() {
    if (number_ > 0 && rest_.empty()) return false;
    std::size_t const end = rest_.find(u'\n');
    line_ = rest_.substr(0, end);
    rest_ = end == TextViewT::npos ? TextViewT() : rest_.substr(end + 1);
    if (end != TextViewT::npos && !line_.empty() && line_.back() == u'\r') line_.remove_suffix(1);
    ++number_;
    return true;
  }

  bool readHeader() {
    auto const [word, number] = cutAtBlank(line_);
    unsigned long written = 0;
    if (word != magic) return fail(SHEET_ERROR_NO_SHEET);
    if (!oss::readDigits(number, 10, written) || written < version) return fail(SHEET_ERROR_BAD_VERSION);
    return written == version || fail(SHEET_ERROR_NEWER_VERSION);
  }

  bool readLine() {
    if (ended_) return line_.empty() || fail(SHEET_ERROR_BEHIND_END);
    auto const [word, after] = cutAtBlank(line_);
    wstring const rest(after);
    if (word == u"end") return readEnd(rest);
    if (word == u"tree") return readTree(rest);
    if (numItems_ == max_sheet_lines) return fail(SHEET_ERROR_TOO_MANY_LINES);
    if (isTooLong(word == u"formula" ? SHEET_FORMULA : SHEET_TEXT, rest)) return fail(SHEET_ERROR_LONG_LINE);
    if (word == u"formula") {
      if (!rest.empty() && !AlgebraicExpressionC::fromPrefixString(rest)) {
        return fail(SHEET_ERROR_BAD_EXPRESSION);
      }
      sheet_.push_back({SHEET_FORMULA, {}, rest, {}});
    } else if (word == u"text" && readGraphOf(rest)) {
      // It belongs to the formula before it.
    } else if (word == u"text" || word == u"heading") {
      sheet_.push_back({word == u"text" ? SHEET_TEXT : SHEET_HEADING, rest, {}, {}});
    } else {
      return fail(SHEET_ERROR_UNKNOWN_WORD);
    }
    ++numItems_;
    return true;
  }

  bool readGraphOf(wstring const& text) {
    if (sheet_.empty() || sheet_.back().kind != SHEET_FORMULA || sheet_.back().graph.isShown()) return false;
    return readGraph(text, sheet_.back().graph);
  }

  bool readTree(wstring const& text) {
    bool const isFormula = !sheet_.empty() && sheet_.back().kind == SHEET_FORMULA;
    if (!isFormula || !sheet_.back().tree.empty() || sheet_.back().graph.isShown()) {
      return fail(SHEET_ERROR_STRAY_TREE);
    }
    if (isTooLong(SHEET_FORMULA, text)) return fail(SHEET_ERROR_LONG_LINE);
    if (!trial_.showTree(text)) return fail(SHEET_ERROR_BAD_TREE);
    // The text may hold characters that the tree notation escapes, such as line ends, so the tree is written
    // again.
    wstring const tree = trial_.tree();
    wstring const shown = trial_.prefix();
    if (sheet_.back().prefix.empty()) {
      sheet_.back() = trial_.makeLine(shown, tree);
      return true;
    }
    // An expression that differs was changed by hand and counts instead of the tree. In a damaged sheet the
    // damage may have changed it, so the tree is refused.
    if (sheet_.back().prefix != shown) return !salvages_;
    sheet_.back().tree = tree;
    return true;
  }

  bool readEnd(TextViewT count) {
    // In a damaged sheet the number is not reliable.
    unsigned long number = 0;
    ended_ = salvages_ || (oss::readDigits(count, 10, number) && number == numItems_);
    return ended_ || fail(SHEET_ERROR_WRONG_COUNT);
  }

  TextViewT rest_;
  std::size_t const size_;
  TextViewT line_;
  unsigned long number_ = 0;
  bool const salvages_;
  SheetErrorS& error_;
  ProgressT const goOn_;
  bool ended_ = false;
  SheetT sheet_;
  std::size_t numItems_ = 0;  // lines and graphs
  FormulaTrialC trial_;
};

void appendLine(wstring& text, TextViewT word, wstring const& rest) {
  text += word;
  text += u' ';
  for (char16_t const c : rest) text += c == u'\n' || c == u'\r' ? u' ' : c;
  text += u'\n';
}

constexpr std::pair<SheetErrorE, TextViewT> reasons[] = {
    {SHEET_ERROR_TOO_LARGE, u"this is too large for a sheet"},
    {SHEET_ERROR_NO_SHEET, u"this is no sheet: it does not start with \"zolt-sheet\""},
    {SHEET_ERROR_BAD_VERSION, u"the version cannot be read"},
    {SHEET_ERROR_NEWER_VERSION, u"the sheet was written by a newer program"},
    {SHEET_ERROR_UNKNOWN_WORD, u"its first word means nothing in a sheet"},
    {SHEET_ERROR_BAD_EXPRESSION, u"the expression cannot be read"},
    {SHEET_ERROR_BAD_TREE, u"the formula cannot be read"},
    {SHEET_ERROR_STRAY_TREE, u"\"tree\" stands behind no formula"},
    {SHEET_ERROR_TOO_MANY_LINES, u"a sheet has 20000 lines at most"},
    {SHEET_ERROR_LONG_LINE, u"a formula has 4194304 characters at most, a text 100000"},
    {SHEET_ERROR_WRONG_COUNT, u"the sheet has another number of lines than it says"},
    {SHEET_ERROR_NO_END, u"the sheet ends too early; its last line, \"end\", is missing"},
    {SHEET_ERROR_BEHIND_END, u"there is something behind the end"},
    {SHEET_ERROR_STOPPED, u"reading was stopped"}};
static_assert(max_sheet_lines == 20000, "a reason names it");

}  // namespace

wstring describe(SheetErrorS const& error) {
  auto const* const found = std::find_if(std::begin(reasons), std::end(reasons),
                                         [&](auto const& reason) { return reason.first == error.cause; });
  wstring why(found == std::end(reasons) ? u"this cannot be read" : found->second);
  if (error.line > 0) return u"Line " + oss::toDigits(error.line) + u": " + why;
  why[0] = static_cast<char16_t>(why[0] - u'a' + u'A');
  return why;
}

bool readSheet(wstring const& text, SheetT& sheet, SheetErrorS& error, ProgressT const& goOn) {
  return SheetReaderC(text, SheetReaderC::FAULT_FAILS, error, goOn).read(sheet);
}

bool salvageSheet(wstring const& text, SheetT& sheet, ProgressT const& goOn) {
  // A sound sheet needs no salvage.
  SheetErrorS error;
  return readSheet(text, sheet, error, goOn) ||
         SheetReaderC(text, SheetReaderC::FAULT_IS_KEPT, error, goOn).read(sheet);
}

bool isWithinLimits(SheetT const& sheet) {
  unsigned long size = 0;
  std::size_t numItems = sheet.size();
  for (SheetLineS const& line : sheet) {
    if (isTooLong(SHEET_FORMULA, line.prefix) || isTooLong(SHEET_FORMULA, line.tree)) return false;
    if (isTooLong(SHEET_TEXT, line.text)) return false;
    constexpr unsigned long words_size = 20;  // "formula ", "tree " and the line ends
    size += words_size + line.text.size() + line.prefix.size() + line.tree.size();
    if (!line.graph.isShown()) continue;
    size += words_size + writeGraph(line.graph).size();
    ++numItems;
  }
  return numItems <= max_sheet_lines && size <= max_sheet_characters;
}

wstring writeSheet(SheetT const& sheet) {
  wstring text(magic);
  std::size_t numItems = sheet.size();
  text += u' ' + oss::toDigits(version) + u'\n';
  for (SheetLineS const& line : sheet) {
    if (line.kind == SHEET_FORMULA) {
      if (line.prefix.empty()) {
        text += u"formula\n";
      } else {
        appendLine(text, u"formula", line.prefix);
      }
      if (!line.tree.empty()) appendLine(text, u"tree", line.tree);
      if (!line.graph.isShown()) continue;
      appendLine(text, u"text", writeGraph(line.graph));
      ++numItems;
    } else {
      appendLine(text, line.kind == SHEET_TEXT ? u"text" : u"heading", line.text);
    }
  }
  text += u"end " + oss::toDigits(static_cast<unsigned long>(numItems)) + u'\n';
  return text;
}

SheetLineS makeFormulaLine(wstring const& prefix, wstring const& tree) {
  return FormulaTrialC().makeLine(prefix, tree);
}

}  // namespace zolt::sheet
