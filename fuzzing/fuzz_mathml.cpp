// Reads MathML, as from web pages and other programs.

#include "fuzzing/bytes_text.h"
#include "fuzzing/trip.h"
#include "zolt/exchange/markup.h"
#include "zolt/field/detail/cell_html.h"
#include "zolt/mathml/text/mathml_text.h"
#include "zolt/oss/utf8.h"
#include "zolt/ved/limits.h"

namespace zolt::fuzz {

namespace {

/// A page is looked through for a table, too, whose empty cells are limited.
std::string checkCells(wstring const& page) {
  std::size_t const size = field::detail::cellsFromHtml(page).size();
  std::size_t const most = 3 * page.size() + 2 * math::ved::limits::max_table_cells;
  return size <= most ? "" : "the cells have " + std::to_string(size) + " characters";
}

}  // namespace

std::string checkMathml(std::uint8_t const* data, std::size_t size) {
  std::string bytes(data, data + size);
  std::string fault = checkCells(toText(bytes));
  if (!fault.empty()) return fault;
  // The corpora have the inside of the element.
  if (exchange::findMathElement(toText(bytes)) == wstring::npos) bytes = "<math>" + bytes + "</math>";
  static_cast<void>(mathml::fromMathmlText(u"<math>&pi;</math>", nullptr));
  BytesT const input(bytes.begin(), bytes.end());
  return checkReader(mathml::fromMathmlText, input.data(), input.size());
}

std::string checkMathmlTrips(AlgebraicExpressionC const& expression) {
  // XML cannot hold these characters.
  wstring const prefix = expression.toPrefixString();
  if (oss::fromUtf8(oss::toUtf8(prefix)) != prefix || prefix.find(u'\uFFFE') != wstring::npos ||
      prefix.find(u'\uFFFF') != wstring::npos) {
    return {};
  }
  for (wstring const& text : {mathml::toMathml(expression), mathml::toContentMathml(expression)}) {
    auto const again = mathml::fromMathmlText(text, nullptr);
    if (!again) return "the MathML does not read back: " + toBytes(text);
    if (!again->equals(expression)) {
      return "the MathML " + toBytes(text) + " of " + toBytes(prefix) + " reads back as " +
             toBytes(again->toPrefixString());
    }
  }
  return {};
}

}  // namespace zolt::fuzz
