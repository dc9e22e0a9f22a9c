#include "zolt/field/detail/cell_html.h"

#include <algorithm>
#include <string_view>
#include <vector>

#include "zolt/common/signs.h"
#include "zolt/field/detail/cell_text.h"
#include "zolt/oss/code_point.h"
#include "zolt/ved/limits.h"

namespace zolt::field::detail {

namespace {

using math::common::toAsciiLower;
using ViewT = std::u16string_view;

struct EntityS {
  ViewT name;
  char16_t meaning;
};

constexpr EntityS entities[] = {
    {u"amp", u'&'},         {u"lt", u'<'},         {u"gt", u'>'},          {u"quot", u'"'},
    {u"apos", u'\''},       {u"nbsp", u' '},       {u"minus", u'\u2212'},  {u"times", u'\u00D7'},
    {u"middot", u'\u00B7'}, {u"le", u'\u2264'},    {u"ge", u'\u2265'},     {u"ne", u'\u2260'},
    {u"pi", u'\u03C0'},     {u"infin", u'\u221E'}, {u"plusmn", u'\u00B1'}, {u"radic", u'\u221A'}};

bool isBlank(char16_t c) { return c == u' ' || c == u'\n' || c == u'\r' || c == u'\t' || c == u'\u00A0'; }

/// What comes between "<" and ">".
struct TagS {
  wstring name;  ///< in small letters, with "/" before that of an end
  ViewT attributes;
};

/// The digits at the start of the text; `most` for more than that.
unsigned long readNumber(ViewT text, unsigned long base, unsigned long most) {
  unsigned long number = 0;
  for (char16_t const c : text) {
    char16_t const small = toAsciiLower(c);
    unsigned long const digit = small >= u'0' && small <= u'9' ? static_cast<unsigned long>(small - u'0')
                                : small >= u'a' && small <= u'f'
                                    ? static_cast<unsigned long>(small - u'a') + 10
                                    : base;
    if (digit >= base) break;
    number = std::min(most, base * number + digit);
  }
  return number;
}

/// The value of an attribute; empty when there is none.
ViewT findValue(ViewT attributes, ViewT name) {
  auto const skip = [&](std::size_t from) {
    while (from < attributes.size() && isBlank(attributes[from])) ++from;
    return from;
  };
  for (std::size_t i = skip(0); i < attributes.size(); i = skip(i)) {
    bool isName = true;
    std::size_t const first = i;
    for (; i < attributes.size() && !isBlank(attributes[i]) && attributes[i] != u'='; ++i) {
      isName = isName && i - first < name.size() && toAsciiLower(attributes[i]) == name[i - first];
    }
    isName = isName && i - first == name.size();
    std::size_t const sign = skip(i);
    if (sign == attributes.size() || attributes[sign] != u'=') continue;
    i = skip(sign + 1);
    char16_t const quote =
        i < attributes.size() && (attributes[i] == u'"' || attributes[i] == u'\'') ? attributes[i] : u'\0';
    std::size_t const begin = quote ? i + 1 : i;
    for (i = begin; i < attributes.size() && (quote ? attributes[i] != quote : !isBlank(attributes[i]));) ++i;
    if (isName) return attributes.substr(begin, i - begin);
    if (quote && i < attributes.size()) ++i;
  }
  return {};
}

unsigned long readSpan(ViewT attributes, ViewT name) {
  constexpr unsigned long most = math::ved::limits::max_table_cells + 1;
  return std::max(1ul, readNumber(findValue(attributes, name), 10, most));
}

/// The number that a program for tables keeps beside what a cell shows of it; empty: none.
wstring readExactNumber(ViewT attributes) {
  for (ViewT const name : {ViewT(u"sdval"), ViewT(u"x:num")}) {
    ViewT const value = findValue(attributes, name);
    bool const isNumber = !value.empty() && value.find_first_not_of(u"0123456789.eE+-") == ViewT::npos;
    if (!isNumber) continue;
    return toAsciiLower(wstring(value));
  }
  return {};
}

/// Reads the first table of a page. Whatever else there is, it passes over.
class TableReaderC {
 public:
  explicit TableReaderC(wstring const& html) : html_(html) {}

  wstring read() {
    for (std::size_t at = 0; at < html_.size() && !isDone_;) {
      if (html_[at] == u'<') {
        at = readTag(at);
      } else if (html_[at] == u'&') {
        at = readEntity(at);
      } else {
        append(html_[at++]);
      }
    }
    endCell();
    CellTextsS texts;
    for (auto const& row : rows_) texts.columns = std::max<unsigned long>(texts.columns, row.size());
    if (isTooLarge_ || texts.columns * rows_.size() < 2) return {};
    for (auto& row : rows_) {
      row.resize(texts.columns);
      for (wstring& cell : row) texts.cells.push_back(std::move(cell));
    }
    return writeCells(texts);
  }

 private:
  std::size_t readTag(std::size_t at) {
    if (html_.compare(at, 4, u"<!--") == 0) return after(u"-->", at);
    std::size_t const end = findTagEnd(at);
    if (end == wstring::npos) return html_.size();
    TagS tag;
    std::size_t i = at + 1;
    for (; i < end && !isBlank(html_[i]) && (html_[i] != u'/' || i == at + 1); ++i) {
      tag.name += toAsciiLower(html_[i]);
    }
    tag.attributes = ViewT(html_).substr(i, end - i);
    // What these have in them is not shown.
    if (tag.name == u"style" || tag.name == u"script") {
      return after(u">", after(u"</" + tag.name, end));
    }
    follow(tag);
    return end + 1;
  }

  /// The ">" of the tag at `at`; there may be others in the values of its attributes. A tag without an end
  /// goes on to the end of the text.
  std::size_t findTagEnd(std::size_t at) const {
    char16_t before = u'\0';  // the last character that is no blank
    for (std::size_t i = at; i < html_.size() && html_[i] != u'>'; ++i) {
      char16_t const c = html_[i];
      if (before == u'=' && (c == u'"' || c == u'\'')) i = html_.find(c, i + 1);
      if (i == wstring::npos) break;
      if (!isBlank(c)) before = c;
      at = i;
    }
    return html_.find(u'>', at + 1);
  }

  void follow(TagS const& tag) {
    if (tag.name == u"table") ++depth_;
    if (tag.name == u"/table" && depth_ > 0 && --depth_ == 0) isDone_ = true;
    if (isDone_ || depth_ != 1 || tag.name == u"/table") return append(u' ');
    if (tag.name == u"tr") {
      beginRow();
    } else if (tag.name == u"td" || tag.name == u"th") {
      endCell();
      if (rows_.empty()) rows_.emplace_back();
      fillSpanned();
      if (!isDone_) beginCell(tag.attributes);
    } else if (tag.name == u"/td" || tag.name == u"/th" || tag.name == u"/tr") {
      endCell();
    } else if (tag.name == u"sup" || tag.name == u"sub") {
      if (isInCell_) cell_ += tag.name == u"sup" ? u"^(" : u"_";
    } else if (tag.name == u"/sup") {
      if (isInCell_) cell_ += u')';
    } else if (tag.name == u"br" || tag.name == u"p" || tag.name == u"div") {
      append(u' ');
    }
  }

  void beginRow() {
    endCell();
    if (!rows_.empty()) {
      for (std::size_t i = rows_.back().size(); i < spanned_.size(); ++i)
        spanned_[i] -= spanned_[i] > 0 ? 1 : 0;
    }
    rows_.emplace_back();
    noteSize(0);
    if (!isDone_) fillSpanned();
  }

  /// So many more columns are to be in the last row.
  void noteSize(unsigned long columns) {
    std::size_t const size = std::max<std::size_t>(spanned_.size(), rows_.back().size() + columns);
    isTooLarge_ = size > math::ved::limits::max_table_columns ||
                  size * rows_.size() > math::ved::limits::max_table_cells;
    isDone_ = isTooLarge_;
  }

  void beginCell(ViewT attributes) {
    unsigned long const columns = readSpan(attributes, u"colspan");
    unsigned long const rows = readSpan(attributes, u"rowspan");
    auto& row = rows_.back();
    noteSize(columns);
    if (isDone_) return;
    isInCell_ = true;
    exact_ = readExactNumber(attributes);
    column_ = row.size();
    row.resize(row.size() + columns);
    if (spanned_.size() < row.size()) spanned_.resize(row.size());
    for (unsigned long i = column_; i < row.size(); ++i) spanned_[i] = rows - 1;
  }

  /// Leaves out the cells that one of a row above covers.
  void fillSpanned() {
    auto& row = rows_.back();
    while (row.size() < spanned_.size() && spanned_[row.size()] > 0) {
      --spanned_[row.size()];
      row.emplace_back();
    }
  }

  void endCell() {
    if (!isInCell_) return;
    isInCell_ = false;
    while (!cell_.empty() && cell_.back() == u' ') cell_.pop_back();
    rows_.back()[column_] = exact_.empty() ? std::move(cell_) : std::move(exact_);
    cell_.clear();
  }

  void append(char16_t c) {
    if (!isInCell_) return;
    bool const blank = isBlank(c);
    if (!blank) cell_ += c;
    if (blank && !cell_.empty() && cell_.back() != u' ') cell_ += u' ';
  }

  std::size_t readEntity(std::size_t at) {
    constexpr std::size_t longest = 10;
    std::size_t const length = ViewT(html_).substr(at, longest).find(u';');
    std::size_t const end = at + length;
    if (length == ViewT::npos) {
      append(u'&');
      return at + 1;
    }
    ViewT const name = ViewT(html_).substr(at + 1, end - at - 1);
    if (!name.empty() && name[0] == u'#') {
      bool const isHex = name.size() > 1 && toAsciiLower(name[1]) == u'x';
      auto const code =
          static_cast<char32_t>(readNumber(name.substr(isHex ? 2 : 1), isHex ? 16 : 10, 0x110000));
      wstring sign;
      if (code > 0 && code < 0x110000 && !oss::isSurrogate(code)) oss::appendUtf16(sign, code);
      for (char16_t const c : sign) append(c);
      return end + 1;
    }
    for (EntityS const& entity : entities) {
      if (entity.name != name) continue;
      append(entity.meaning);
      return end + 1;
    }
    append(u'&');
    return at + 1;
  }

  std::size_t after(wstring const& mark, std::size_t at) const {
    std::size_t const found = html_.find(mark, at);
    return found == wstring::npos ? html_.size() : found + mark.size();
  }

  wstring const& html_;
  std::vector<std::vector<wstring>> rows_;
  std::vector<unsigned long> spanned_;  // by column: for how many further rows a cell covers it
  wstring cell_;
  wstring exact_;  // the number in the cell, where its element has it
  std::size_t column_ = 0;
  unsigned long depth_ = 0;  // of tables
  bool isInCell_ = false;
  bool isDone_ = false;
  bool isTooLarge_ = false;
};

}  // namespace

wstring cellsToHtml(wstring const& plainText) {
  if (!hasCells(plainText, TABS_OR_LINES)) return {};
  CellTextsS const texts = readCells(plainText);
  wstring html = u"<table>";
  for (std::size_t i = 0; i < texts.cells.size(); ++i) {
    if (i % texts.columns == 0) html += i > 0 ? u"</tr>\n<tr>" : u"\n<tr>";
    html += u"<td>";
    for (char16_t const c : texts.cells[i]) {
      if (c == u'<') {
        html += u"&lt;";
      } else if (c == u'&') {
        html += u"&amp;";
      } else {
        html += c;
      }
    }
    html += u"</td>";
  }
  return html + u"</tr>\n</table>\n";
}

bool hasExactNumbers(wstring const& html) {
  return html.find(u" sdval=\"") != wstring::npos || html.find(u" x:num=\"") != wstring::npos;
}

wstring cellsFromHtml(wstring const& html) { return TableReaderC(html).read(); }

}  // namespace zolt::field::detail
