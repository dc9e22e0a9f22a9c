// Reads MathML, as from web pages and other programs.

#include "fuzzing/bytes_text.h"
#include "fuzzing/trip.h"
#include "zolt/exchange/markup.h"
#include "zolt/mathml/text/mathml_text.h"
#include "zolt/oss/utf8.h"

namespace zolt::fuzz {

std::string checkMathml(std::uint8_t const* data, std::size_t size) {
  std::string bytes(data, data + size);
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
