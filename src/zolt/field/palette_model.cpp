#include "zolt/field/palette_model.h"

#include <algorithm>

#include "zolt/common/signs.h"
#include "zolt/exchange/plain_text.h"
#include "zolt/field/detail/construct_names.h"
#include "zolt/field/formula_field.h"
#include "zolt/ved/geometry/blind_graphics.h"
#include "zolt/ved/operators/operator_list.h"
#include "zolt/ved/operators/operator_table_template.h"
#include "zolt/ved/tree/tree_notation.h"

namespace zolt::field {

using namespace detail;
using namespace math::ved;

namespace {

constexpr char16_t const* greek_names[] = {
    u"alpha", u"beta",    u"gamma",  u"delta", u"epsilon", u"zeta",  u"eta",   u"theta",
    u"iota",  u"kappa",   u"lambda", u"mu",    u"nu",      u"xi",    u"rho",   u"sigma",
    u"tau",   u"upsilon", u"phi",    u"chi",   u"psi",     u"omega", u"Gamma", u"Delta",
    u"Theta", u"Lambda",  u"Xi",     u"Sigma", u"Phi",     u"Psi",   u"Omega"};

wstring capitalised(wstring text) {
  if (!text.empty() && text[0] >= u'a' && text[0] <= u'z') {
    text[0] = static_cast<char16_t>(text[0] - (u'a' - u'A'));
  }
  return text;
}

wstring pictureOf(wstring const& insert) {
  ViewZNT4C view(new BlindGraphicsC);
  return view.insertText(insert) ? writeTreeNotation(view.crefRoot()) : wstring();
}

std::vector<wstring> keywordsOf(OperatorBC const& op) {
  OperatorWordsS const& words = op.crefWords();
  std::vector<wstring> all = words.aliases;
  all.push_back(op.getName());
  all.push_back(op.getText());
  for (auto const& other : words.names) all.push_back(other.name);
  for (char16_t const sign : words.signs) all.emplace_back(1, sign);
  for (wstring run : words.signRuns) {
    for (char16_t& c : run) c = math::common::foldLookAlike(c, math::common::LOOK_ALIKE_PASTED);
    all.push_back(run);
  }
  return all;
}

PaletteEntryS makeEntry(wstring const& insert, wstring const& title, wstring const& label,
                        wstring const& shortcut, std::vector<wstring> keywords) {
  wstring const toolTip =
      shortcut.empty() ? title : title + u' ' + math::common::en_dash + u" type " + shortcut;
  keywords.push_back(shortcut);
  return {insert, title, label, shortcut, toolTip, std::move(keywords), pictureOf(insert)};
}

PaletteGroupS makeGreekLetters() {
  PaletteGroupS group{u"Greek letters", {}};
  for (wstring const name : greek_names) {
    auto const read = exchange::fromPlainText(name, nullptr);
    if (!read) continue;
    wstring const letter = read->getNode()->getName();
    group.entries.push_back(makeEntry(letter, capitalised(name), letter, name, {letter}));
  }
  return group;
}

}  // namespace

std::vector<PaletteGroupS> makePalette(ViewZNT4C const& view) {
  std::vector<PaletteGroupS> groups;
  for (OperatorBC const* const op : view.crefOperatorList().crefInOrder()) {
    OperatorWordsS const& words = op->crefWords();
    if (words.group.empty()) continue;
    auto group = std::find_if(groups.begin(), groups.end(),
                              [&](PaletteGroupS const& known) { return known.title == words.group; });
    if (group == groups.end()) group = groups.insert(group, {words.group, {}});
    group->entries.push_back(makeEntry(op->getName(), capitalised(words.title),
                                       words.label.empty() ? op->getText() : words.label, typedForm(*op),
                                       keywordsOf(*op)));
    group->entries.back().takesSize = op->getColumns() > 0 && op->findColumns(op->getColumns() + 1);
  }
  groups.push_back(makeGreekLetters());
  return groups;
}

SearchMatchE matchSearch(PaletteEntryS const& entry, wstring const& wanted) {
  wstring const small = math::common::toAsciiLower(wanted), title = math::common::toAsciiLower(entry.title);
  SearchMatchE best = small.empty() || title == small      ? SEARCH_MATCH_WHOLE
                      : title.find(small) != wstring::npos ? SEARCH_MATCH_PART
                                                           : SEARCH_MATCH_NONE;
  for (wstring const& keyword : entry.keywords) {
    wstring const name = math::common::toAsciiLower(keyword);
    if (keyword == wanted) return SEARCH_MATCH_EXACT;
    if (name == small) best = SEARCH_MATCH_WHOLE;
    if (best == SEARCH_MATCH_NONE && name.compare(0, small.size(), small) == 0) best = SEARCH_MATCH_PART;
  }
  return best;
}

PaletteEntryS withSize(PaletteEntryS entry, unsigned long rows, unsigned long columns) {
  entry.insert = OperatorTableTemplateC::sizedName(entry.insert, rows, columns);
  entry.takesSize = false;
  return entry;
}

namespace {

/// Null for a letter.
PointerTC<OperatorBC> findOperator(PaletteEntryS const& entry, OperatorListC const& operators) {
  auto op = operators.lookup(entry.insert);
  return op ? op : OperatorTableTemplateC::read(entry.insert);
}

}  // namespace

bool isEnabled(PaletteEntryS const& entry, FormulaFieldC const& field) {
  if (!field.isEditable()) return false;
  auto const& view = field.crefView();
  auto const op = findOperator(entry, view.crefOperatorList());
  return !op || op->mayRun(view.getSelection(), view.crefOperatorList());
}

bool runEntry(PaletteEntryS const& entry, FormulaFieldC& field) {
  // A letter is pasted, so that it does not join the name beside it.
  return findOperator(entry, field.crefView().crefOperatorList())
             ? field.insertOperator(entry.insert)
             : field.paste({{}, {}, entry.insert}) != PASTE_REFUSED;
}

}  // namespace zolt::field
