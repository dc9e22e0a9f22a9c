#include "zolt/mathml/mathml_tree.h"

#include <algorithm>
#include <iterator>

#include "zolt/oss/quoted_text.h"

namespace zolt::mathml {

namespace {

struct TagS {
  std::u16string_view name;
  MathmlTagE tag;
};

constexpr TagS tags[] = {{u"ci", MATHML_CI},
                         {u"cn", MATHML_CN},
                         {u"cs", MATHML_CS},
                         {u"csymbol", MATHML_CSYMBOL},
                         {u"maction", MATHML_MACTION},
                         {u"maligngroup", MATHML_SPACE},
                         {u"malignmark", MATHML_SPACE},
                         {u"math", MATHML_MATH},
                         {u"menclose", MATHML_MENCLOSE},
                         {u"merror", MATHML_MERROR},
                         {u"mfenced", MATHML_MFENCED},
                         {u"mfrac", MATHML_MFRAC},
                         {u"mi", MATHML_MI},
                         {u"mlabeledtr", MATHML_MLABELEDTR},
                         {u"mmultiscripts", MATHML_MMULTISCRIPTS},
                         {u"mn", MATHML_MN},
                         {u"mo", MATHML_MO},
                         {u"mover", MATHML_MOVER},
                         {u"mpadded", MATHML_MPADDED},
                         {u"mphantom", MATHML_SPACE},
                         {u"mprescripts", MATHML_PRESCRIPTS},
                         {u"mroot", MATHML_MROOT},
                         {u"mrow", MATHML_MROW},
                         {u"ms", MATHML_MS},
                         {u"mspace", MATHML_SPACE},
                         {u"msqrt", MATHML_MSQRT},
                         {u"mstyle", MATHML_MSTYLE},
                         {u"msub", MATHML_MSUB},
                         {u"msubsup", MATHML_MSUBSUP},
                         {u"msup", MATHML_MSUP},
                         {u"mtable", MATHML_MTABLE},
                         {u"mtd", MATHML_MTD},
                         {u"mtext", MATHML_MTEXT},
                         {u"mtr", MATHML_MTR},
                         {u"munder", MATHML_MUNDER},
                         {u"munderover", MATHML_MUNDEROVER},
                         {u"none", MATHML_SPACE},
                         {u"semantics", MATHML_SEMANTICS}};

MathmlTagE findTag(std::u16string_view name) {
  auto const* const found = std::lower_bound(std::begin(tags), std::end(tags), name,
                                             [](TagS const& entry, auto key) { return entry.name < key; });
  return found != std::end(tags) && found->name == name ? found->tag : MATHML_OTHER;
}

bool isBlank(char16_t c) { return c == u' ' || c == u'\t' || c == u'\n' || c == u'\r'; }

}  // namespace

MathmlTreeC::PartS MathmlTreeC::keep(std::u16string_view text) {
  PartS const kept{pool_.size(), text.size()};
  pool_ += text;
  return kept;
}

void MathmlTreeC::open(std::u16string_view name, std::size_t begin) {
  std::size_t const colon = name.find(u':');
  std::u16string_view const prefix = colon == name.npos ? std::u16string_view() : name.substr(0, colon);
  std::u16string_view const local = colon == name.npos ? name : name.substr(colon + 1);
  bool const isAnnotation = local == u"annotation" || local == u"annotation-xml";
  bool const inToken = open_ != no_element && isToken(elements_[open_].element.tag);
  if (skipped_ > 0 || isAnnotation || inToken) {
    if (inToken && local == u"sep") addText({&number_separator, 1});
    if (skipped_++ == 0) keepsText_ = inToken;
    return;
  }
  if (elements_.empty()) prefix_ = prefix;
  auto const id = static_cast<MathmlIdT>(elements_.size());
  RecordS& record = elements_.emplace_back();
  record.element.tag = prefix == prefix_ ? findTag(local) : MATHML_FOREIGN;
  record.element.parent = open_;
  record.element.begin = record.element.end = begin;
  record.name = keep(local);
  record.text.begin = pool_.size();
  record.firstAttribute = attributes_.size();
  if (open_ != no_element) {
    RecordS& parent = elements_[open_];
    (parent.last == no_element ? parent.element.first : elements_[parent.last].element.next) = id;
    parent.last = id;
  }
  open_ = id;
}

void MathmlTreeC::addAttribute(std::u16string_view name, std::u16string_view value) {
  if (skipped_ == 1 && name == u"encoding" && value.substr(0, 8) == u"StarMath") typedRows_ = true;
  if (skipped_ > 0 || open_ == no_element) return;
  RecordS& record = elements_[open_];
  if (name == u"xmlns" && value != u"http://www.w3.org/1998/Math/MathML") record.element.tag = MATHML_FOREIGN;
  attributes_.push_back({keep(name), keep(value)});
  ++record.numAttributes;
  record.text.begin = pool_.size();
}

void MathmlTreeC::addText(std::u16string_view text) {
  if (open_ == no_element || (skipped_ > 0 && !keepsText_)) return;
  RecordS& record = elements_[open_];
  if (!isToken(record.element.tag)) {
    bool const isSpace = std::all_of(text.begin(), text.end(), isBlank);
    if (isSpace || record.text.size > 0) return;
    record.text = keep(text);
    return;
  }
  pool_ += text;
  record.text.size += text.size();
}

bool MathmlTreeC::close(std::size_t end) {
  if (skipped_ > 0) {
    --skipped_;
    return true;
  }
  if (open_ == no_element) return false;
  RecordS& record = elements_[open_];
  record.element.end = end;
  if (isToken(record.element.tag)) trim(record);
  open_ = record.element.parent;
  return true;
}

// The text of a token is the last one of the pool until it is closed.
void MathmlTreeC::trim(RecordS& record) {
  std::size_t const begin = record.text.begin;
  std::size_t to = begin;
  for (std::size_t from = begin; from < pool_.size(); ++from) {
    bool const isSpace = isBlank(pool_[from]);
    if (isSpace && (to == begin || pool_[to - 1] == u' ')) continue;
    pool_[to++] = isSpace ? u' ' : pool_[from];
  }
  if (to > begin && pool_[to - 1] == u' ') --to;
  pool_.resize(to);
  record.text.size = to - begin;
}

MathmlTreeC::AttributeS const* MathmlTreeC::findAttribute(MathmlIdT id, std::u16string_view name) const {
  RecordS const& record = elements_[id];
  for (std::size_t i = 0; i < record.numAttributes; ++i) {
    AttributeS const& attribute = attributes_[record.firstAttribute + i];
    if (part(attribute.name) == name) return &attribute;
  }
  return nullptr;
}

std::u16string_view MathmlTreeC::attribute(MathmlIdT id, std::u16string_view name) const {
  AttributeS const* const found = findAttribute(id, name);
  return found ? part(found->value) : std::u16string_view();
}

bool MathmlTreeC::hasAttribute(MathmlIdT id, std::u16string_view name) const {
  return findAttribute(id, name) != nullptr;
}

wstring MathmlTreeC::path(MathmlIdT id) const {
  constexpr int max_steps = 6;
  wstring path;
  for (int steps = 0; id != no_element; ++steps, id = elements_[id].element.parent) {
    if (steps == max_steps) return u"\u2026/" + path;
    wstring step(name(id));
    MathmlIdT const parent = elements_[id].element.parent;
    if (parent != no_element && elements_[parent].element.first != elements_[parent].last) {
      unsigned long place = 1;
      for (MathmlIdT other = elements_[parent].element.first; other != id; ++place)
        other = elements_[other].element.next;
      step += u'[' + oss::toDigits(place) + u']';
    }
    path = path.empty() ? step : step + u'/' + path;
  }
  return path;
}

}  // namespace zolt::mathml
