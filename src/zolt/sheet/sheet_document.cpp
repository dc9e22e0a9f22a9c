#include "zolt/sheet/sheet_document.h"

#include <algorithm>
#include <array>
#include <iterator>
#include <string_view>
#include <utility>

#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/exchange/latex.h"
#include "zolt/exchange/plain_text.h"

namespace zolt::sheet {

namespace {

using math::algexpr::AlgebraicExpressionC;
using ViewT = std::u16string_view;

/// How a kind of document writes a character of a text, and how it writes what is around lines.
struct EscapeS {
  char16_t character;
  ViewT written;
};

constexpr EscapeS latex_escapes[] = {{u'\\', u"\\textbackslash{}"},
                                     {u'~', u"\\textasciitilde{}"},
                                     {u'^', u"\\textasciicircum{}"},
                                     {u'#', u"\\#"},
                                     {u'$', u"\\$"},
                                     {u'%', u"\\%"},
                                     {u'&', u"\\&"},
                                     {u'_', u"\\_"},
                                     {u'{', u"\\{"},
                                     {u'}', u"\\}"}};
constexpr EscapeS markdown_escapes[] = {{u'\\', u"\\\\"}, {u'$', u"\\$"}, {u'*', u"\\*"}, {u'_', u"\\_"},
                                        {u'`', u"\\`"},   {u'<', u"\\<"}, {u'[', u"\\["}, {u'#', u"\\#"}};

// Around what has no other form in a document.
constexpr ViewT latex_tree = u"% zolt-tree ";
constexpr ViewT markdown_tree = u"<!-- zolt-tree ";
constexpr ViewT markdown_tree_end = u" -->";
// Within a formula: what comes after it is its result. It is a comment in both kinds of documents.
constexpr ViewT result_mark = u"\n% zolt-result\n";

// In the line of a picture of a graph.
constexpr ViewT graph_mark = u"zolt-graph";

template <std::size_t size>
wstring escape(ViewT text, EscapeS const (&escapes)[size]) {
  wstring out;
  for (char16_t const c : text) {
    auto const* const found = std::find_if(std::begin(escapes), std::end(escapes),
                                           [&](EscapeS const& one) { return one.character == c; });
    if (found != std::end(escapes)) {
      out += found->written;
    } else {
      out += c == u'\n' || c == u'\r' ? u' ' : c;
    }
  }
  return out;
}

template <std::size_t size>
wstring unescape(ViewT text, EscapeS const (&escapes)[size]) {
  wstring out;
  while (!text.empty()) {
    auto const* const found = std::find_if(std::begin(escapes), std::end(escapes), [&](EscapeS const& one) {
      return text.substr(0, one.written.size()) == one.written;
    });
    bool const isEscape = text[0] == u'\\' && found != std::end(escapes);
    out += isEscape ? found->character : text[0];
    text.remove_prefix(isEscape ? found->written.size() : 1);
  }
  return out;
}

ViewT trim(ViewT text) {
  constexpr ViewT blanks = u" \t\r\n";
  std::size_t const begin = std::min(text.find_first_not_of(blanks), text.size());
  return text.substr(begin, text.find_last_not_of(blanks) + 1 - begin);
}

bool startsWith(ViewT text, ViewT start) { return text.substr(0, start.size()) == start; }

wstring toLatex(wstring const& prefix) {
  auto const expression = AlgebraicExpressionC::fromPrefixString(prefix);
  return expression ? exchange::toLatex(*expression) : wstring();
}

/// A number as a textbook has it: nobody reads a result back.
wstring toPowerOfTen(wstring latex) {
  constexpr ViewT exponent = u"\\mathrm{E}{";
  std::size_t const at = latex.find(exponent);
  return at == latex.npos ? latex : latex.replace(at, exponent.size(), u"\\cdot 10^{");
}

wstring toLatex(WrittenResultS const& result) {
  wstring latex;
  if (!result.value.empty()) {
    latex.append(result.isImplied ? u"\\quad\\Rightarrow\\quad " : u"= ").append(toLatex(result.value));
  }
  if (!result.number.empty()) {
    if (!latex.empty()) latex += u' ';
    latex.append(result.isNumberExact ? u"= " : u"\\approx ").append(toPowerOfTen(toLatex(result.number)));
  }
  return latex.empty() ? latex : wstring(result_mark) + latex;
}

// ---- Reading ----------------------------------------------------------------------------------------------

/// What may be around a displayed formula.
struct FenceS {
  ViewT open;
  ViewT close;
  bool hasRows = false;  // several formulas, with "\\\\" between them
};

constexpr FenceS fences[] = {{u"$$", u"$$"},
                             {u"\\[", u"\\]"},
                             {u"\\begin{equation}", u"\\end{equation}"},
                             {u"\\begin{equation*}", u"\\end{equation*}"},
                             {u"\\begin{displaymath}", u"\\end{displaymath}"},
                             {u"\\begin{align}", u"\\end{align}", true},
                             {u"\\begin{align*}", u"\\end{align*}", true},
                             {u"\\begin{gather}", u"\\end{gather}", true},
                             {u"\\begin{gather*}", u"\\end{gather*}", true},
                             {u"```math", u"```"},
                             {u"$", u"$"}};

constexpr ViewT latex_title = u"\\title{";
constexpr ViewT latex_headings[] = {u"\\chapter{",       u"\\chapter*{",       u"\\section{",
                                    u"\\section*{",      u"\\subsection{",     u"\\subsection*{",
                                    u"\\subsubsection{", u"\\subsubsection*{", u"\\paragraph{"};

/// The place of the brace that closes the group that was opened before `begin`; npos when there is none.
std::size_t findGroupEnd(ViewT text, std::size_t begin) {
  int depth = 1;
  for (std::size_t i = begin; i < text.size(); ++i) {
    if (text[i] == u'\\')
      ++i;
    else if (text[i] == u'{')
      ++depth;
    else if (text[i] == u'}' && --depth == 0)
      return i;
  }
  return text.npos;
}

/// The end of a row of formulas, "\\\\" outside of braces and environments.
std::size_t findRowEnd(ViewT text) {
  int depth = 0;
  for (std::size_t i = 0; i + 1 < text.size(); ++i) {
    if (text[i] == u'{') ++depth;
    if (text[i] == u'}') --depth;
    if (text[i] != u'\\') continue;
    if (text[i + 1] == u'\\' && depth <= 0) return i;
    if (startsWith(text.substr(i), u"\\begin{")) ++depth;
    if (startsWith(text.substr(i), u"\\end{")) --depth;
    ++i;
  }
  return text.size();
}

/// A formula in a line of text.
struct InlineS {
  std::size_t begin = ViewT::npos;
  std::size_t end = ViewT::npos;  // of all of it
  ViewT formula = {};
};

/// The first formula of a text. As in other programs, "$" opens only before and closes only after something,
/// and closes not before a digit, since text may be about money.
InlineS findInline(ViewT text) {
  bool mayClose = true;  // a "\\)" may come
  for (std::size_t i = 0; i + 1 < text.size(); ++i) {
    bool const isLatex = mayClose && startsWith(text.substr(i), u"\\(");
    if (text[i] == u'\\' && !isLatex)
      ++i;
    else if (text[i] == u'$' || isLatex) {
      std::size_t const first = i + (isLatex ? 2 : 1);
      std::size_t const end = text.find(isLatex ? ViewT(u"\\)") : ViewT(u"$"), first);
      mayClose = mayClose && !(isLatex && end == text.npos);
      if (end == text.npos || end == first) continue;
      char16_t const before = text[end - 1];
      char16_t const after = end + 1 < text.size() ? text[end + 1] : u' ';
      bool const isMoney =
          text[first] == u' ' || before == u' ' || before == u'\\' || (after >= u'0' && after <= u'9');
      if (isLatex || !isMoney) return {i, end + (isLatex ? 2 : 1), text.substr(first, end - first)};
    }
  }
  return {};
}

class DocumentReaderC {
 public:
  DocumentReaderC(ViewT text, DocumentKindE kind) : rest_(text), kind_(kind) {}

  bool read(SheetT& sheet) {
    if (kind_ == DOCUMENT_LATEX) skipPreamble();
    while (!rest_.empty() && sheet_.size() <= max_sheet_lines) readLine();
    endParagraph();
    if (!isWithinLimits(sheet_)) return false;
    sheet = std::move(sheet_);
    return true;
  }

 private:
  void skipPreamble() {
    constexpr ViewT begin = u"\\begin{document}", end = u"\\end{document}";
    std::size_t const first = rest_.find(begin);
    std::size_t const title = rest_.find(latex_title);
    std::size_t const titleEnd =
        title < rest_.size() ? findGroupEnd(rest_, title + latex_title.size()) : rest_.npos;
    if (titleEnd != rest_.npos) {
      std::size_t const inside = title + latex_title.size();
      addText(SHEET_HEADING, toText(rest_.substr(inside, titleEnd - inside)));
    }
    if (first != rest_.npos) rest_.remove_prefix(first + begin.size());
    rest_ = rest_.substr(0, rest_.find(end));
  }

  void readLine() {
    std::size_t const end = std::min(rest_.find(u'\n'), rest_.size());
    ViewT const line = trim(rest_.substr(0, end));
    if (readFormula(line)) return;
    rest_.remove_prefix(std::min(end + 1, rest_.size()));
    if (line.empty()) {
      endParagraph();
    } else if (!readTree(line) && !readHeading(line) && !isComment(line)) {
      if (!paragraph_.empty()) paragraph_ += u' ';
      paragraph_ += line;
    }
  }

  /// Takes the formula that starts with this line and ends with one of its own.
  bool readFormula(ViewT line) {
    auto const* const fence = std::find_if(std::begin(fences), std::end(fences),
                                           [&](FenceS const& one) { return startsWith(line, one.open); });
    if (fence == std::end(fences)) return false;
    // A line of a paragraph may begin with a formula that is no more than a word of it.
    bool const mayBeWord = fence->open == u"$";
    if (mayBeWord && !paragraph_.empty()) return false;
    std::size_t const begin = rest_.find(fence->open) + fence->open.size();
    bool& isMissing = isMissing_[static_cast<std::size_t>(fence - std::begin(fences))];
    std::size_t const end = isMissing ? rest_.npos : rest_.find(fence->close, begin);
    isMissing = end == rest_.npos;
    if (isMissing) return false;
    std::size_t const last = end + fence->close.size();
    std::size_t const lineEnd = std::min(rest_.find(u'\n', last), rest_.size());
    ViewT const formula = rest_.substr(begin, end - begin);
    bool const isInline = mayBeWord && formula.find(u'\n') != formula.npos;
    ViewT const after = trim(rest_.substr(last, lineEnd - last));
    bool const isAlone = after.empty() || (kind_ == DOCUMENT_LATEX && after[0] == u'%');
    if (isInline || !isAlone) return false;
    ViewT const whole = trim(rest_.substr(0, lineEnd));
    rest_.remove_prefix(std::min(lineEnd + 1, rest_.size()));
    endParagraph();
    if (fence->hasRows) {
      addRows(formula, whole);
    } else {
      addFormula(formula, whole);
    }
    return true;
  }

  /// Rows that begin with a relation go on with the one before.
  void addRows(ViewT formulas, ViewT whole) {
    std::vector<wstring> rows;
    while (!trim(formulas).empty()) {
      std::size_t const end = findRowEnd(formulas);
      ViewT const row = trim(formulas.substr(0, end));
      formulas.remove_prefix(std::min(end + 2, formulas.size()));
      bool const goesOn =
          !rows.empty() && row[0] == u'&' && !exchange::fromLatex(wstring(row.substr(1)), nullptr);
      if (!goesOn) {
        rows.emplace_back(row);
      } else {
        rows.back().append(row.substr(1));
      }
    }
    bool const isWhole = std::all_of(rows.begin(), rows.end(), [](wstring const& row) {
      return static_cast<bool>(exchange::fromLatex(row, nullptr));
    });
    if (!isWhole) return addFormula(formulas, whole);
    for (wstring const& row : rows) addFormula(row, whole);
  }

  /// The text of a paragraph or heading, its formulas as people type them.
  wstring toText(ViewT written) const {
    wstring out;
    auto const add = [&](ViewT text) {
      out += kind_ == DOCUMENT_LATEX ? unescape(text, latex_escapes) : unescape(text, markdown_escapes);
    };
    for (;;) {
      InlineS const found = findInline(written);
      add(written.substr(0, found.begin));
      if (found.begin == written.npos) return out;
      auto const expression = exchange::fromLatex(wstring(found.formula), nullptr);
      out += expression ? exchange::toPlainText(*expression, exchange::PLAIN_TEXT_READABLE)
                        : wstring(written.substr(found.begin, found.end - found.begin));
      written.remove_prefix(found.end);
    }
  }

  void addFormula(ViewT latex, ViewT whole) {
    latex = latex.substr(0, latex.find(result_mark));
    auto const expression = exchange::fromLatex(wstring(latex), nullptr);
    if (expression) {
      sheet_.push_back({SHEET_FORMULA, {}, expression->toPrefixString(), {}});
    } else {
      addText(SHEET_TEXT, wstring(whole));
    }
  }

  bool readTree(ViewT line) {
    ViewT const mark = kind_ == DOCUMENT_LATEX ? latex_tree : markdown_tree;
    if (!startsWith(line, mark)) return false;
    line.remove_prefix(mark.size());
    if (kind_ == DOCUMENT_MARKDOWN) line = line.substr(0, line.rfind(markdown_tree_end));
    // What is no tree would make the sheet unreadable.
    SheetLineS const formula = makeFormulaLine({}, wstring(line));
    SheetT checked;
    SheetErrorS error;
    endParagraph();
    if (readSheet(writeSheet({formula}), checked, error)) {
      sheet_.push_back(formula);
    } else {
      addText(SHEET_TEXT, wstring(line));
    }
    return true;
  }

  bool readHeading(ViewT line) {
    if (kind_ == DOCUMENT_MARKDOWN) {
      std::size_t const end = std::min(line.find_first_not_of(u'#'), line.size());
      if (end == 0 || end > 6 || (end < line.size() && line[end] != u' ')) return false;
      endParagraph();
      addText(SHEET_HEADING, toText(trim(line.substr(end))));
      return true;
    }
    auto const* const found = std::find_if(std::begin(latex_headings), std::end(latex_headings),
                                           [&](ViewT open) { return startsWith(line, open); });
    std::size_t const end = found == std::end(latex_headings) ? line.npos : findGroupEnd(line, found->size());
    if (end == line.npos) return false;
    ViewT const after = trim(line.substr(end + 1));
    if (!after.empty() && !startsWith(after, u"\\label") && after[0] != u'%') return false;
    endParagraph();
    addText(SHEET_HEADING, toText(line.substr(found->size(), end - found->size())));
    return true;
  }

  bool isComment(ViewT line) const {
    constexpr ViewT silent[] = {u"\\maketitle", u"\\tableofcontents", u"\\title{", u"\\author{",
                                u"\\date{",     u"\\label{",          u"\\newpage"};
    auto const isStart = [&](ViewT start) { return startsWith(line, start); };
    if (line.find(graph_mark) != line.npos && (line[0] == u'\\' || line[0] == u'!')) return true;
    return kind_ == DOCUMENT_LATEX &&
           (line[0] == u'%' || std::any_of(std::begin(silent), std::end(silent), isStart));
  }

  void endParagraph() {
    if (paragraph_.empty()) return;
    addText(SHEET_TEXT, toText(paragraph_));
    paragraph_.clear();
  }

  void addText(SheetLineKindE kind, wstring text) {
    std::replace_if(
        text.begin(), text.end(), [](char16_t c) { return c == u'\n' || c == u'\r'; }, u' ');
    do {
      sheet_.push_back({kind, text.substr(0, max_sheet_text), {}, {}});
      text.erase(0, max_sheet_text);
    } while (!text.empty());
  }

  ViewT rest_;
  DocumentKindE kind_;
  SheetT sheet_;
  wstring paragraph_;
  std::array<bool, std::size(fences)> isMissing_{};  // no further closing fence comes, so none is looked for
};

}  // namespace

namespace {

wstring writeGraph(wstring const& file, DocumentKindE kind) {
  if (kind == DOCUMENT_MARKDOWN) return u"![Graph](" + file + u" \"" + wstring(graph_mark) + u"\")\n\n";
  return u"\\includegraphics[width=0.7\\linewidth]{" + file + u"} % " + wstring(graph_mark) + u"\n\n";
}

}  // namespace

wstring writeDocument(SheetT const& sheet, DocumentKindE kind, std::vector<WrittenResultS> const& results) {
  bool const isLatex = kind == DOCUMENT_LATEX;
  wstring out;
  bool const hasGraph = std::any_of(results.begin(), results.end(),
                                    [](WrittenResultS const& result) { return !result.graph.empty(); });
  if (isLatex) {
    out += u"\\documentclass{article}\n\\usepackage{amsmath,amssymb}\n";
    if (hasGraph) out += u"\\usepackage{graphicx}\n";
    out += u"\\begin{document}\n\n";
  }
  for (std::size_t i = 0; i < sheet.size(); ++i) {
    SheetLineS const& line = sheet[i];
    wstring const text = isLatex ? escape(line.text, latex_escapes) : escape(line.text, markdown_escapes);
    wstring latex = line.kind == SHEET_FORMULA ? toLatex(line.prefix) : wstring();
    if (!latex.empty() && i < results.size()) latex += toLatex(results[i]);
    if (line.kind == SHEET_HEADING) {
      out += isLatex ? u"\\section*{" + text + u"}" : u"## " + text;
    } else if (line.kind == SHEET_TEXT) {
      out += text;
    } else if (!latex.empty()) {
      out += isLatex ? u"\\[\n" + latex + u"\n\\]" : u"$$\n" + latex + u"\n$$";
    } else if (!line.tree.empty()) {
      out.append(isLatex ? latex_tree : markdown_tree).append(line.tree);
      if (!isLatex) out += markdown_tree_end;
    } else {
      continue;
    }
    out += u"\n\n";
    if (i < results.size() && !results[i].graph.empty()) out += writeGraph(results[i].graph, kind);
  }
  if (isLatex) out += u"\\end{document}\n";
  return out;
}

bool readDocument(wstring const& text, DocumentKindE kind, SheetT& sheet) {
  return DocumentReaderC(text, kind).read(sheet);
}

}  // namespace zolt::sheet
