#include "zolt/mathml/text/mathml_text.h"

#include <expat.h>

#include <algorithm>
#include <climits>
#include <memory>
#include <utility>

#include "zolt/exchange/markup.h"
#include "zolt/mathml/text/detail/entities.h"
#include "zolt/oss/utf8.h"

namespace zolt::mathml {

using namespace math::common;
using TextT = std::u16string_view;

namespace {

constexpr TextT blanks = u" \t\r\n";

/// What Expat tells, on its way into the tree.
struct LoaderS {
  XML_Parser parser;
  MathmlTreeC& tree;
  detail::ExpandedC const& source;
  std::size_t offset;  // of the element in the whole text

  std::size_t place(XML_Index index) const {
    return offset + source.toOriginal(static_cast<std::size_t>(index) / sizeof(char16_t));
  }
  std::size_t here() const { return place(XML_GetCurrentByteIndex(parser)); }
};

void onOpen(void* data, char const* name, char const** attributes) {
  auto& loader = *static_cast<LoaderS*>(data);
  loader.tree.open(oss::fromUtf8(name), loader.here());
  for (; *attributes; attributes += 2)
    loader.tree.addAttribute(oss::fromUtf8(attributes[0]), oss::fromUtf8(attributes[1]));
}

void onClose(void* data, char const*) {
  auto& loader = *static_cast<LoaderS*>(data);
  XML_Index const begin = XML_GetCurrentByteIndex(loader.parser);
  [[maybe_unused]] bool const closed =
      loader.tree.close(loader.place(begin + XML_GetCurrentByteCount(loader.parser)));
  if (loader.tree.isComplete()) XML_StopParser(loader.parser, XML_FALSE);
}

void onText(void* data, char const* text, int length) {
  static_cast<LoaderS*>(data)->tree.addText(
      oss::fromUtf8(std::string_view(text, static_cast<std::size_t>(length))));
}

bool fail(ReadErrorS* error, ReadErrorE cause, std::size_t begin, std::size_t end) {
  if (error)
    *error = {cause, static_cast<unsigned long>(begin), static_cast<unsigned long>(end), describe(cause)};
  return false;
}

}  // namespace

bool readMathmlTree(wstring const& text, MathmlTreeC& tree, ReadErrorS* error) {
  if (text.find_first_not_of(blanks) == wstring::npos) return fail(error, READ_ERROR_EMPTY, 0, text.size());
  std::size_t const begin = exchange::findMathElement(text);
  if (begin == TextT::npos) return fail(error, READ_ERROR_BAD_MARKUP, 0, text.size());
  detail::ExpandedC source;
  TextT const whole = TextT(text).substr(begin);
  if (!source.expand(whole))
    return fail(error, READ_ERROR_BAD_CHARACTER, begin + source.faultBegin, begin + source.faultEnd);

  constexpr char16_t one = 1;
  bool const isLittle = *reinterpret_cast<unsigned char const*>(&one) == 1;
  std::unique_ptr<std::remove_pointer_t<XML_Parser>, void (*)(XML_Parser)> const parser(
      XML_ParserCreate(isLittle ? "UTF-16LE" : "UTF-16BE"), XML_ParserFree);
  LoaderS loader{parser.get(), tree, source, begin};
  XML_SetUserData(parser.get(), &loader);
  XML_SetElementHandler(parser.get(), onOpen, onClose);
  XML_SetCharacterDataHandler(parser.get(), onText);
  // Expat takes the length as an int.
  auto const* bytes = reinterpret_cast<char const*>(source.crefText().data());
  std::size_t left = source.crefText().size() * sizeof(char16_t);
  constexpr std::size_t most = INT_MAX / 4 * 2;
  XML_Status status = XML_STATUS_OK;
  do {
    std::size_t const part = std::min(left, most);
    left -= part;
    status = XML_Parse(parser.get(), bytes, static_cast<int>(part), left == 0);
    bytes += part;
  } while (status == XML_STATUS_OK && left > 0);
  if (!tree.isComplete()) {
    std::size_t const place = std::min(loader.here(), text.size());
    return fail(error, READ_ERROR_BAD_MARKUP, place, std::min(place + 1, text.size()));
  }
  std::size_t const end = tree.cref(MathmlTreeC::root).end;
  // What comes after a formula that begins the text belongs to it; around others there is a page.
  std::size_t const after = TextT(text).find_first_not_of(blanks, end);
  bool const isPage = TextT(text).find_first_not_of(blanks) != begin;
  std::size_t const second = isPage ? exchange::findMathElement(text, end) : after;
  return second == TextT::npos || fail(error, READ_ERROR_TRAILING_TEXT, second, text.size());
}

PointerTC<AlgebraicExpressionC> fromMathmlText(wstring const& text, PointerTC<CASSessionBC> session,
                                               ReadErrorS* error) {
  MathmlTreeC tree;
  if (!readMathmlTree(text, tree, error)) return nullptr;
  return fromMathml(tree, std::move(session), error);
}

bool decodeXml(oss::bytestring const& bytes, wstring& text) {
  auto const at = [&](std::size_t i) { return i < bytes.size() ? bytes[i] : 0u; };
  text.clear();
  // Without a mark, the zero of "<" tells.
  bool const isBig = (at(0) == 0xFE && at(1) == 0xFF) || (at(0) == 0 && at(1) == u'<');
  bool const isLittle = (at(0) == 0xFF && at(1) == 0xFE) || (at(0) == u'<' && at(1) == 0 && bytes.size() > 1);
  if (isBig || isLittle) {
    for (std::size_t i = at(0) >= 0xFE ? 2 : 0; i + 1 < bytes.size(); i += 2)
      text += static_cast<char16_t>(isBig ? at(i) << 8 | at(i + 1) : at(i + 1) << 8 | at(i));
    return bytes.size() % 2 == 0;
  }
  std::string plain(bytes.begin(), bytes.end());
  if (plain.compare(0, 3, "\xEF\xBB\xBF") == 0) plain.erase(0, 3);
  std::size_t const declared =
      plain.compare(0, 5, "<?xml") == 0 ? plain.find("encoding=") : std::string::npos;
  if (declared < plain.find("?>")) {
    std::size_t const begin = declared + 10;
    std::string name = plain.substr(begin, plain.find_first_of("'\"", begin) - begin);
    std::transform(name.begin(), name.end(), name.begin(),
                   [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    if (name == "iso-8859-1") {
      for (char const c : plain) text += char16_t{static_cast<unsigned char>(c)};
      return true;
    }
    if (name != "utf-8" && name != "us-ascii") return false;
  }
  return oss::fromUtf8(plain, text);
}

}  // namespace zolt::mathml
