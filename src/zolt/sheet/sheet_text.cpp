#include "zolt/sheet/sheet_text.h"

#include <string_view>
#include <utility>

#include "zolt/field/formula_field.h"
#include "zolt/ved/geometry/blind_graphics.h"
#include "zolt/ved/tree/tree_notation.h"

namespace zolt::sheet {

namespace {

using math::algexpr::AlgebraicExpressionC;
using TextViewT = std::u16string_view;

constexpr TextViewT magic = u"zolt-sheet";
constexpr unsigned long version = 1;
constexpr unsigned long no_number = ~0ul;

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

unsigned long toNumber(TextViewT digits) {
  unsigned long number = 0;
  if (digits.empty() || digits.size() > 9) return no_number;
  for (char16_t const c : digits) {
    if (c < u'0' || c > u'9') return no_number;
    number = 10 * number + (c - u'0');
  }
  return number;
}

wstring toText(unsigned long number) {
  wstring digits;
  do digits.insert(digits.begin(), char16_t(u'0' + number % 10));
  while (number /= 10);
  return digits;
}

bool isTooLong(SheetLineKindE kind, TextViewT text) {
  return text.size() > (kind == SHEET_FORMULA ? max_sheet_formula : max_sheet_text);
}

class SheetReaderC {
 public:
  enum FaultE { FAULT_FAILS, FAULT_IS_KEPT };

  SheetReaderC(TextViewT text, FaultE fault) : rest_(text), salvages_(fault == FAULT_IS_KEPT) {}

  bool read() {
    if (rest_.size() > max_sheet_characters) return fail(SHEET_ERROR_TOO_LARGE);
    if (!takeLine() || !readHeader()) return false;
    while (takeLine()) {
      if (readLine()) continue;
      if (!salvages_ || !keepAsText()) return false;
    }
    return ended_ || salvages_ || fail(SHEET_ERROR_NO_END);
  }

  SheetT& refSheet() { return sheet_; }
  SheetErrorS const& error() const { return error_; }

 private:
  bool fail(SheetErrorE cause) {
    error_ = {cause, number_};
    return false;
  }

  bool keepAsText() {
    do {
      if (sheet_.size() == max_sheet_lines) return false;
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
    std::size_t const blank = line_.find(u' ');
    if (line_.substr(0, blank) != magic) return fail(SHEET_ERROR_NO_SHEET);
    unsigned long const written = blank == TextViewT::npos ? no_number : toNumber(line_.substr(blank + 1));
    if (written == no_number || written < version) return fail(SHEET_ERROR_BAD_VERSION);
    return written == version || fail(SHEET_ERROR_NEWER_VERSION);
  }

  bool readLine() {
    if (ended_) return line_.empty() || fail(SHEET_ERROR_BEHIND_END);
    std::size_t const blank = line_.find(u' ');
    TextViewT const word = line_.substr(0, blank);
    wstring const rest(blank == TextViewT::npos ? TextViewT() : line_.substr(blank + 1));
    if (word == u"end") return readEnd(rest);
    if (word == u"tree") return readTree(rest);
    if (sheet_.size() == max_sheet_lines) return fail(SHEET_ERROR_TOO_MANY_LINES);
    if (isTooLong(word == u"formula" ? SHEET_FORMULA : SHEET_TEXT, rest)) return fail(SHEET_ERROR_LONG_LINE);
    if (word == u"formula") {
      if (!rest.empty() && !AlgebraicExpressionC::fromPrefixString(rest)) {
        return fail(SHEET_ERROR_BAD_EXPRESSION);
      }
      sheet_.push_back({SHEET_FORMULA, {}, rest, {}});
    } else if (word == u"text" || word == u"heading") {
      sheet_.push_back({word == u"text" ? SHEET_TEXT : SHEET_HEADING, rest, {}, {}});
    } else {
      return fail(SHEET_ERROR_UNKNOWN_WORD);
    }
    return true;
  }

  bool readTree(wstring const& text) {
    if (sheet_.empty() || sheet_.back().kind != SHEET_FORMULA || !sheet_.back().tree.empty()) {
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
    ended_ = salvages_ || toNumber(count) == sheet_.size();
    return ended_ || fail(SHEET_ERROR_WRONG_COUNT);
  }

  TextViewT rest_;
  TextViewT line_;
  unsigned long number_ = 0;
  bool const salvages_;
  bool ended_ = false;
  SheetT sheet_;
  SheetErrorS error_;
  FormulaTrialC trial_;
};

void appendLine(wstring& text, TextViewT word, wstring const& rest) {
  text += word;
  text += u' ';
  for (char16_t const c : rest) text += c == u'\n' || c == u'\r' ? u' ' : c;
  text += u'\n';
}

wstring describe(SheetErrorE cause) {
  switch (cause) {
    case SHEET_ERROR_NONE:
      break;
    case SHEET_ERROR_TOO_LARGE:
      return u"this is too large for a sheet";
    case SHEET_ERROR_NO_SHEET:
      return u"this is no sheet: it does not start with \"zolt-sheet\"";
    case SHEET_ERROR_BAD_VERSION:
      return u"the version cannot be read";
    case SHEET_ERROR_NEWER_VERSION:
      return u"the sheet was written by a newer program";
    case SHEET_ERROR_UNKNOWN_WORD:
      return u"its first word means nothing in a sheet";
    case SHEET_ERROR_BAD_EXPRESSION:
      return u"the expression cannot be read";
    case SHEET_ERROR_BAD_TREE:
      return u"the formula cannot be read";
    case SHEET_ERROR_STRAY_TREE:
      return u"\"tree\" stands behind no formula";
    case SHEET_ERROR_TOO_MANY_LINES:
      return u"a sheet has " + toText(max_sheet_lines) + u" lines at most";
    case SHEET_ERROR_LONG_LINE:
      return u"it is too long";
    case SHEET_ERROR_WRONG_COUNT:
      return u"the sheet has another number of lines than it says";
    case SHEET_ERROR_NO_END:
      return u"the sheet ends too early; its last line, \"end\", is missing";
    case SHEET_ERROR_BEHIND_END:
      return u"there is something behind the end";
  }
  return u"this cannot be read";
}

}  // namespace

wstring describe(SheetErrorS const& error) {
  wstring why = describe(error.cause);
  if (error.line > 0) return u"Line " + toText(error.line) + u": " + why;
  why[0] = static_cast<char16_t>(why[0] - u'a' + u'A');
  return why;
}

bool readSheet(wstring const& text, SheetT& sheet, SheetErrorS& error) {
  SheetReaderC reader(text, SheetReaderC::FAULT_FAILS);
  if (!reader.read()) {
    error = reader.error();
    return false;
  }
  sheet = std::move(reader.refSheet());
  return true;
}

bool salvageSheet(wstring const& text, SheetT& sheet) {
  // A sound sheet needs no salvage.
  SheetErrorS error;
  if (readSheet(text, sheet, error)) return true;
  SheetReaderC reader(text, SheetReaderC::FAULT_IS_KEPT);
  if (!reader.read()) return false;
  sheet = std::move(reader.refSheet());
  return true;
}

bool isWithinLimits(SheetT const& sheet) {
  unsigned long size = 0;
  for (SheetLineS const& line : sheet) {
    if (isTooLong(SHEET_FORMULA, line.prefix) || isTooLong(SHEET_FORMULA, line.tree)) return false;
    if (isTooLong(SHEET_TEXT, line.text)) return false;
    constexpr unsigned long words_size = 20;  // "formula ", "tree " and the line ends
    size += words_size + line.text.size() + line.prefix.size() + line.tree.size();
  }
  return sheet.size() <= max_sheet_lines && size <= max_sheet_characters;
}

wstring writeSheet(SheetT const& sheet) {
  wstring text(magic);
  text += u' ' + toText(version) + u'\n';
  for (SheetLineS const& line : sheet) {
    if (line.kind == SHEET_FORMULA) {
      if (line.prefix.empty()) {
        text += u"formula\n";
      } else {
        appendLine(text, u"formula", line.prefix);
      }
      if (!line.tree.empty()) appendLine(text, u"tree", line.tree);
    } else {
      appendLine(text, line.kind == SHEET_TEXT ? u"text" : u"heading", line.text);
    }
  }
  text += u"end " + toText(static_cast<unsigned long>(sheet.size())) + u'\n';
  return text;
}

SheetLineS makeFormulaLine(wstring const& prefix, wstring const& tree) {
  return FormulaTrialC().makeLine(prefix, tree);
}

}  // namespace zolt::sheet
