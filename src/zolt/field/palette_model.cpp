#include "zolt/field/palette_model.h"

#include <iterator>

#include "zolt/catalogue/standard_operators.h"
#include "zolt/common/signs.h"
#include "zolt/exchange/plain_text.h"
#include "zolt/field/detail/construct_names.h"
#include "zolt/field/formula_field.h"
#include "zolt/ved/geometry/blind_graphics.h"
#include "zolt/ved/operators/operator.h"
#include "zolt/ved/tree/tree_notation.h"

namespace zolt::field {

using namespace detail;
using namespace math::ved;
using catalogue::OperatorGroupE;

namespace {

struct GroupTitleS {
  OperatorGroupE group;
  char16_t const* title;
};

constexpr GroupTitleS group_titles[] = {
    {catalogue::GROUP_ARITHMETIC, u"Arithmetic"}, {catalogue::GROUP_CONSTRUCT, u"Structures"},
    {catalogue::GROUP_CALCULUS, u"Calculus"},     {catalogue::GROUP_FUNCTION, u"Functions"},
    {catalogue::GROUP_RELATION, u"Relations"},    {catalogue::GROUP_LOGIC, u"Logic"}};

struct NameS {
  char16_t const* name;
  char16_t const* text;
};

/// What is typed for operators that are not typed by their name or text.
constexpr NameS shortcuts[] = {{u"_PI", u"pi"},        {u"_pos", u"+"}, {u"_neg", u"-"},
                               {u"_deg", u"°"},        {u"_rad", u"ʳ"}, {u"nthroot", u"root("},
                               {u"integral", u"int("}, {u"abs", u"|"},  {u"log", u"log(x,"},
                               {u"log10", u"log("}};

constexpr NameS labels[] = {{u"_PI", u"π"},     {u"/", u"a/b"},     {u"^", u"xⁿ"},       {u"nthroot", u"ⁿ√"},
                            {u"abs", u"|x|"},   {u"floor", u"⌊x⌋"}, {u"ceil", u"⌈x⌉"},   {u"_deg", u"°"},
                            {u"_rad", u"ʳ"},    {u"log", u"logₙ"},  {u"integral", u"∫"}, {u"sum", u"∑"},
                            {u"diff", u"d/dx"}, {u"where", u"f|ₓ"}, {u"*", u"·"}};

constexpr char16_t const* greek_names[] = {
    u"alpha", u"beta",    u"gamma",  u"delta", u"epsilon", u"zeta",  u"eta",   u"theta",
    u"iota",  u"kappa",   u"lambda", u"mu",    u"nu",      u"xi",    u"rho",   u"sigma",
    u"tau",   u"upsilon", u"phi",    u"chi",   u"psi",     u"omega", u"Gamma", u"Delta",
    u"Theta", u"Lambda",  u"Xi",     u"Sigma", u"Phi",     u"Psi",   u"Omega"};

template <std::size_t size>
wstring find(NameS const (&table)[size], wstring const& name) {
  for (NameS const& entry : table) {
    if (name == entry.name) return entry.text;
  }
  return {};
}

wstring capitalised(wstring text) {
  if (!text.empty() && text[0] >= u'a' && text[0] <= u'z') {
    text[0] = static_cast<char16_t>(text[0] - (u'a' - u'A'));
  }
  return text;
}

wstring shortcutOf(OperatorBC const& op) {
  wstring const name = op.getName();
  wstring const own = find(shortcuts, name);
  if (!own.empty()) return own;
  bool const called = isWrittenAsCall(op) && (op.isConstruct() || (!op.isLinear() && op.getArity() > 0));
  return called ? name + u"(" : name;
}

wstring pictureOf(wstring const& insert) {
  ViewZNT4C view(new BlindGraphicsC);
  view.insertText(insert);
  return writeTreeNotation(view.crefRoot());
}

PaletteEntryS makeEntry(wstring const& insert, wstring const& title, wstring const& label,
                        wstring const& shortcut) {
  wstring const toolTip =
      shortcut.empty() ? title : title + u' ' + math::common::en_dash + u" type " + shortcut;
  return {insert, title, label, shortcut, toolTip, pictureOf(insert)};
}

PaletteGroupS makeGreekLetters() {
  PaletteGroupS group{u"Greek letters", {}};
  for (wstring const name : greek_names) {
    auto const read = exchange::fromPlainText(name, nullptr);
    if (!read) continue;
    wstring const letter = read->getNode()->getName();
    group.entries.push_back(makeEntry(letter, capitalised(name), letter, name));
  }
  return group;
}

}  // namespace

std::vector<PaletteGroupS> makePalette(ViewZNT4C const& view) {
  std::vector<PaletteGroupS> groups;
  for (GroupTitleS const& title : group_titles) {
    PaletteGroupS group{title.title, {}};
    for (catalogue::StandardOperatorS const& standard : catalogue::standardOperators()) {
      auto const op = view.crefOperatorList().lookup(standard.name);
      if (standard.group != title.group || !op) continue;
      wstring const label = find(labels, standard.name);
      group.entries.push_back(makeEntry(standard.name, capitalised(standard.title),
                                        label.empty() ? op->getText() : label, shortcutOf(*op)));
    }
    if (!group.entries.empty()) groups.push_back(std::move(group));
  }
  groups.push_back(makeGreekLetters());
  return groups;
}

bool isEnabled(PaletteEntryS const&, FormulaFieldC const& field) { return field.isEditable(); }

bool runEntry(PaletteEntryS const& entry, FormulaFieldC& field) {
  bool const isOperator = static_cast<bool>(field.crefView().crefOperatorList().lookup(entry.insert));
  return isOperator ? field.insertOperator(entry.insert) : field.insertText(entry.insert);
}

}  // namespace zolt::field
