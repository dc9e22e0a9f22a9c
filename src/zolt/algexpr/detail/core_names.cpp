#include "zolt/algexpr/detail/core_names.h"

#include <algorithm>
#include <vector>

namespace zolt::math::algexpr::detail {

namespace {

using oss::wstring;

struct NamesS {
  unsigned traits;
  std::vector<wstring> names;
};

std::vector<CoreNameS> makeTable() {
  NamesS const known[] = {
      {CORE_FUNCTION,
       {u"+-",   u"_posneg", u"-",    u"div",  u"mod",   u"_pos", u"_neg", u"!",         u"=",    u"<>",
        u"<",    u">",       u"<=",   u">=",   u"not",   u":=",   u":>",   u"_quietpos", u"sqrt", u"nthroot",
        u"abs",  u"floor",   u"ceil", u"log",  u"log10", u"diff", u"sum",  u"sin",       u"cos",  u"tan",
        u"asin", u"acos",    u"atan", u"sinh", u"cosh",  u"tanh", u"ln",   u"exp"}},
      {CORE_FUNCTION | CORE_CHAIN, {u"+", u"*", u"and", u"or"}},
      {CORE_FUNCTION | CORE_GUARDED, {u"^", u"_rad", u"_deg", u"/", u"integral", u"where"}},
      {CORE_CONSTANT, {u"_PI"}},
      {CORE_FUNCTION | CORE_CONSTANT, {u"error"}}};
  std::vector<CoreNameS> table;
  for (NamesS const& entry : known) {
    for (wstring const& name : entry.names) table.push_back({name, entry.traits});
  }
  std::sort(table.begin(), table.end(), [](auto const& a, auto const& b) { return a.name < b.name; });
  return table;
}

}  // namespace

CoreNameS const* findCoreName(std::u16string_view name) {
  // Never destroyed: nodes that static objects hold may outlive any static table.
  static auto const& table = *new auto(makeTable());
  auto const found = std::lower_bound(table.begin(), table.end(), name,
                                      [](CoreNameS const& entry, auto key) { return entry.name < key; });
  return found != table.end() && found->name == name ? &*found : nullptr;
}

}  // namespace zolt::math::algexpr::detail
