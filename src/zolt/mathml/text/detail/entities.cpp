#include "zolt/mathml/text/detail/entities.h"

#include <algorithm>
#include <iterator>

#include "zolt/common/signs.h"
#include "zolt/mathml/text/detail/entity_list.h"

namespace zolt::mathml::detail {

using TextT = std::u16string_view;

namespace {

struct EntityS {
  TextT name;
  TextT characters;
};

std::vector<EntityS> const& entities() {
  static std::vector<EntityS> const all = [] {
    std::vector<EntityS> list;
    for (TextT rest = entity_list; !rest.empty();) {
      std::size_t const equals = rest.find(u'=');
      std::size_t const end = rest.find(u';', equals + 2);
      list.push_back({rest.substr(0, equals), rest.substr(equals + 1, end - equals - 1)});
      rest.remove_prefix(end + 1);
    }
    return list;
  }();
  return all;
}

bool isNameCharacter(char16_t c) { return math::common::isAsciiLetter(c) || math::common::isDigit(c); }

bool isOfXml(TextT name) {
  static constexpr TextT names[] = {u"amp", u"lt", u"gt", u"quot", u"apos"};
  return std::find(std::begin(names), std::end(names), name) != std::end(names);
}

}  // namespace

TextT findEntity(TextT name) {
  std::vector<EntityS> const& all = entities();
  auto const found = std::lower_bound(all.begin(), all.end(), name,
                                      [](EntityS const& entry, TextT key) { return entry.name < key; });
  return found != all.end() && found->name == name ? found->characters : TextT();
}

bool ExpandedC::expand(TextT text) {
  text_.reserve(text.size());
  for (std::size_t i = 0; i < text.size();) {
    for (auto const& [open, close] : {std::pair<TextT, TextT>(u"<!--", u"-->"), {u"<![CDATA[", u"]]>"}}) {
      if (i == text.size() || text[i] != u'<' || text.compare(i, open.size(), open) != 0) continue;
      std::size_t const end = std::min(text.find(close, i), text.size());
      text_ += text.substr(i, end - i);
      i = end;
    }
    if (i == text.size()) break;
    std::size_t end = i + 1;
    while (text[i] == u'&' && end < text.size() && isNameCharacter(text[end])) ++end;
    TextT const name = text.substr(i + 1, end - i - 1);
    bool const isEntity = !name.empty() && end < text.size() && text[end] == u';';
    if (!isEntity || isOfXml(name)) {
      text_ += text[i++];
      continue;
    }
    TextT const characters = findEntity(name);
    if (characters.empty()) {
      faultBegin = i;
      faultEnd = end + 1;
      return false;
    }
    text_ += characters;
    i = end + 1;
    shifts_.push_back({text_.size(), i - text_.size()});
  }
  return true;
}

std::size_t ExpandedC::toOriginal(std::size_t position) const {
  auto const after =
      std::upper_bound(shifts_.begin(), shifts_.end(), position,
                       [](std::size_t key, ShiftS const& shift) { return key < shift.position; });
  return after == shifts_.begin() ? position : position + (after - 1)->shift;
}

}  // namespace zolt::mathml::detail
