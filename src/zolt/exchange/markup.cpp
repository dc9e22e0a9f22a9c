#include "zolt/exchange/markup.h"

#include <algorithm>
#include <iterator>

#include "zolt/exchange/latex.h"
#include "zolt/oss/code_point.h"

namespace zolt::exchange {

namespace {

using TextT = std::u16string_view;

constexpr TextT blanks = u" \t\r\n";

/// A start tag of the text.
struct TagS {
  std::size_t begin = TextT::npos;
  std::size_t end = TextT::npos;  // of the name, or of the whole tag with its attributes
  TextT name = {};                // without a prefix
  TextT attributes = {};
};

/// The first start tag from `position` on, outside of comments, up to its name. Without a place when there is
/// none.
TagS findTag(TextT text, std::size_t position) {
  for (;; ++position) {
    position = text.find(u'<', position);
    if (position == TextT::npos) return {};
    if (text.compare(position, 4, u"<!--") == 0) {
      position = text.find(u"-->", position);
      if (position == TextT::npos) return {};
      continue;
    }
    std::size_t const end = text.find_first_of(u" \t\r\n></", position + 1);
    if (end == TextT::npos) return {};
    TextT name = text.substr(position + 1, end - position - 1);
    name.remove_prefix(std::min(name.find(u':') + 1, name.size()));
    if (!name.empty()) return {position, end, name};
  }
}

/// Reads the attributes of the tag, too. A ">" in quotes does not end it.
void readAttributes(TextT text, TagS& tag) {
  std::size_t close = tag.end;
  for (char16_t quote = 0; close < text.size() && (quote || text[close] != u'>'); ++close) {
    char16_t const c = text[close];
    if (c == quote) {
      quote = 0;
    } else if (!quote && (c == u'"' || c == u'\'')) {
      quote = c;
    }
  }
  tag.attributes = text.substr(tag.end, close - tag.end);
  tag.end = std::min(close + 1, text.size());
}

/// The value of an attribute in quotes; empty when there is none.
TextT findAttribute(TagS const& tag, TextT name) {
  TextT rest = tag.attributes;
  while (!rest.empty()) {
    std::size_t const begin = std::min(rest.find_first_not_of(u" \t\r\n/"), rest.size());
    rest.remove_prefix(begin);
    std::size_t const end = std::min(rest.find_first_of(u" \t\r\n="), rest.size());
    TextT const found = rest.substr(0, end);
    rest.remove_prefix(std::min(rest.find_first_not_of(blanks, end), rest.size()));
    if (rest.empty() || rest[0] != u'=') continue;
    rest.remove_prefix(std::min(rest.find_first_not_of(blanks, 1), rest.size()));
    if (rest.empty()) break;
    char16_t const first = rest[0];
    bool const isQuoted = first == u'"' || first == u'\'';
    if (isQuoted) rest.remove_prefix(1);
    std::size_t const stop = std::min(isQuoted ? rest.find(first) : rest.find_first_of(blanks), rest.size());
    if (found == name) return rest.substr(0, stop);
    rest.remove_prefix(std::min(stop + 1, rest.size()));
  }
  return {};
}

/// The text with its character references resolved. Programs write no others than these.
wstring withoutReferences(TextT text) {
  struct NamedS {
    TextT name;
    char32_t character;
  };
  constexpr NamedS named[] = {{u"amp", u'&'},  {u"lt", u'<'},    {u"gt", u'>'},
                              {u"quot", u'"'}, {u"apos", u'\''}, {u"nbsp", u' '}};
  wstring out;
  for (std::size_t i = 0; i < text.size(); ++i) {
    constexpr std::size_t longest = 10;
    std::size_t const end = text[i] == u'&' ? text.substr(i, longest).find(u';') : TextT::npos;
    if (end == TextT::npos) {
      out += text[i];
      continue;
    }
    TextT const reference = text.substr(i + 1, end - 1);
    char32_t character = 0;
    if (!reference.empty() && reference[0] == u'#') {
      bool const isHexadecimal = reference.size() > 1 && (reference[1] | 0x20) == u'x';
      for (char16_t const c : reference.substr(isHexadecimal ? 2 : 1)) {
        char16_t const low = c | 0x20;
        char32_t const digit = c >= u'0' && c <= u'9'       ? c - u'0'
                               : low >= u'a' && low <= u'f' ? low - u'a' + 10u
                                                            : 16u;
        if (digit >= (isHexadecimal ? 16u : 10u)) character = 0x110000;
        character = std::min<char32_t>(character * (isHexadecimal ? 16 : 10) + digit, 0x110000);
      }
    } else {
      auto const* const found = std::find_if(std::begin(named), std::end(named),
                                             [&](NamedS const& entry) { return entry.name == reference; });
      if (found != std::end(named)) character = found->character;
    }
    if (character == 0 || character >= 0x110000) {
      out += text[i];
      continue;
    }
    oss::appendUtf16(out, character);
    i += end;
  }
  return out;
}

/// Whether a media type or name means TeX: "application/x-tex", "LaTeX".
bool isTex(TextT encoding) {
  wstring end(encoding.substr(encoding.size() - std::min<std::size_t>(encoding.size(), 3)));
  for (char16_t& c : end) c |= 0x20;
  return end == u"tex";
}

}  // namespace

std::size_t findMathElement(TextT text, std::size_t position) {
  TagS tag = findTag(text, position);
  while (tag.begin != TextT::npos && tag.name != u"math") tag = findTag(text, tag.end);
  return tag.begin;
}

wstring findPageLatex(TextT page) {
  // In the order in which they are believed.
  enum KindE { ANNOTATION, SCRIPT, MATH, PICTURE, NUM_KINDS };
  struct FoundS {
    TextT text;
    int count = 0;
  } found[NUM_KINDS];
  auto const add = [&](KindE kind, TextT text) {
    if (text.empty()) return;
    found[kind].text = text;
    ++found[kind].count;
  };
  for (TagS tag = findTag(page, 0); tag.begin != TextT::npos; tag = findTag(page, tag.end)) {
    readAttributes(page, tag);
    bool const isScript = tag.name == u"script";
    TextT const content = page.substr(tag.end, page.find(isScript ? u"</" : u"<", tag.end) - tag.end);
    if (tag.name == u"annotation" && isTex(findAttribute(tag, u"encoding"))) add(ANNOTATION, content);
    if (isScript && findAttribute(tag, u"type").substr(0, 8) == u"math/tex") add(SCRIPT, content);
    if (tag.name == u"math") add(MATH, findAttribute(tag, u"alttext"));
    TextT const alternative = tag.name == u"img" ? findAttribute(tag, u"alt") : TextT();
    if (looksLikeLatex(wstring(alternative))) add(PICTURE, alternative);
  }
  auto const* const best =
      std::find_if(std::begin(found), std::end(found), [](FoundS const& one) { return one.count > 0; });
  if (best == std::end(found) || best->count > 1) return {};
  return best == found + SCRIPT ? wstring(best->text) : withoutReferences(best->text);
}

}  // namespace zolt::exchange
