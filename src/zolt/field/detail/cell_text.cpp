#include "zolt/field/detail/cell_text.h"

#include <algorithm>
#include <iterator>

namespace zolt::field::detail {

namespace {

/// The last line ends, too.
std::size_t findEnd(wstring const& text) {
  std::size_t const last = text.find_last_not_of(u"\r\n");
  return last == wstring::npos ? 0 : last + 1;
}

/// Reads the cell that begins at `at`, up to what ends it.
wstring readCell(wstring const& text, std::size_t& at, std::size_t end) {
  wstring cell;
  bool const isQuoted = text[at] == u'"' && text.find(u'"', at + 1) < end;
  if (isQuoted) {
    for (++at; at < end; ++at) {
      if (text[at] == u'"' && (at + 1 >= end || text[++at] != u'"')) break;
      cell += text[at];
    }
  }
  for (; at < end && text[at] != u'\t' && text[at] != u'\n'; ++at) {
    if (text[at] != u'\r' && !(isQuoted && text[at] == u'"')) cell += text[at];
  }
  return cell;
}

}  // namespace

bool hasCells(wstring const& text, CellMarkE marks) {
  return text.find_first_of(marks == TABS_ONLY ? u"\t" : u"\t\n") < findEnd(text);
}

CellTextsS readCells(wstring const& text) {
  std::vector<std::vector<wstring>> rows(1);
  std::size_t const end = findEnd(text);
  std::size_t at = 0;
  for (bool goesOn = true; goesOn; ++at) {
    rows.back().push_back(at < end ? readCell(text, at, end) : wstring());
    goesOn = at < end;
    if (goesOn && text[at] == u'\n') rows.emplace_back();
  }
  CellTextsS read;
  for (auto const& row : rows) read.columns = std::max<unsigned long>(read.columns, row.size());
  for (auto& row : rows) {
    row.resize(read.columns);
    std::move(row.begin(), row.end(), std::back_inserter(read.cells));
  }
  return read;
}

wstring writeCells(CellTextsS const& texts) {
  wstring out;
  for (std::size_t i = 0; i < texts.cells.size(); ++i) {
    if (i > 0) out += i % texts.columns == 0 ? u'\n' : u'\t';
    wstring const& cell = texts.cells[i];
    if (cell.find_first_of(u"\"\t\n") == wstring::npos) {
      out += cell;
      continue;
    }
    out += u'"';
    for (char16_t const c : cell) out += c == u'"' ? wstring(2, c) : wstring(1, c);
    out += u'"';
  }
  return out;
}

}  // namespace zolt::field::detail
