#include "zolt/mathml/detail/xml_builder.h"

#include "zolt/mathml/mathml_tree.h"

namespace zolt::mathml::detail {

namespace {

void appendEscaped(std::u16string_view text, wstring& out) {
  for (char16_t const c : text) {
    if (c == u'&') {
      out += u"&amp;";
    } else if (c == u'<') {
      out += u"&lt;";
    } else if (c == u'>') {
      out += u"&gt;";
    } else if (c == number_separator) {
      out += u"<sep/>";
    } else if (c == u'"') {
      out += u"&quot;";
    } else {
      out += c;
    }
  }
}

}  // namespace

XmlBuilderC::IdT XmlBuilderC::addToken(std::u16string_view tag, std::u16string_view text) {
  ItemS& item = items_.emplace_back();
  item.tag = tag;
  item.text = pool_.size();
  pool_ += text;
  item.size = text.size();
  return static_cast<IdT>(items_.size() - 1);
}

XmlBuilderC::IdT XmlBuilderC::addElement(std::u16string_view tag, IdT const* children, std::size_t count) {
  ItemS item;
  item.tag = tag;
  if (count > 0) item.first = children[0];
  for (std::size_t i = 1; i < count; ++i) items_[children[i - 1]].next = children[i];
  if (count > 0) items_[children[count - 1]].next = none;
  items_.push_back(item);
  return static_cast<IdT>(items_.size() - 1);
}

void XmlBuilderC::addAttribute(IdT id, std::u16string_view name, std::u16string_view value) {
  wstring text = u" " + wstring(name) + u"=\"";
  appendEscaped(value, text);
  attributes_.push_back({text + u'"', items_[id].attribute});
  items_[id].attribute = static_cast<IdT>(attributes_.size() - 1);
}

XmlBuilderC::IdT XmlBuilderC::addRow(IdT const* children, std::size_t count) {
  return count == 1 ? children[0] : addElement(u"mrow", children, count);
}

std::vector<XmlBuilderC::IdT> XmlBuilderC::children(IdT id) const {
  std::vector<IdT> all;
  for (IdT child = items_[id].first; child != none; child = items_[child].next) all.push_back(child);
  return all;
}

void XmlBuilderC::writeOpening(ItemS const& item, wstring& out) const {
  out += u'<';
  out += item.tag;
  for (IdT id = item.attribute; id != none; id = attributes_[id].next) out += attributes_[id].text;
  out += item.first == none && item.size == 0 ? u"/>" : u">";
}

wstring XmlBuilderC::write(IdT root) const {
  wstring out;
  std::vector<IdT> open;
  IdT id = root;
  for (;;) {
    ItemS const& item = items_[id];
    writeOpening(item, out);
    appendEscaped(text(id), out);
    open.push_back(id);
    if (item.first != none) {
      id = item.first;
      continue;
    }
    for (;;) {
      ItemS const& closed = items_[open.back()];
      if (closed.first != none || closed.size > 0) out += u"</" + wstring(closed.tag) + u'>';
      open.pop_back();
      if (open.empty()) return out;
      if (closed.next != none) {
        id = closed.next;
        break;
      }
    }
  }
}

}  // namespace zolt::mathml::detail
