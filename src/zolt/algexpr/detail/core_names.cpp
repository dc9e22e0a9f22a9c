#include "zolt/algexpr/detail/core_names.h"

#include <algorithm>
#include <array>

namespace zolt::math::algexpr::detail {

namespace {

auto makeTable() {
  std::array table = {
      CoreNameS{u"+", true, false},         CoreNameS{u"-", true, false},
      CoreNameS{u"*", true, false},         CoreNameS{u"div", true, false},
      CoreNameS{u"mod", true, false},       CoreNameS{u"_pos", true, false},
      CoreNameS{u"_neg", true, false},      CoreNameS{u"^", true, false},
      CoreNameS{u"_rad", true, false},      CoreNameS{u"_deg", true, false},
      CoreNameS{u"!", true, false},         CoreNameS{u"=", true, false},
      CoreNameS{u"<>", true, false},        CoreNameS{u"<", true, false},
      CoreNameS{u">", true, false},         CoreNameS{u"<=", true, false},
      CoreNameS{u">=", true, false},        CoreNameS{u"not", true, false},
      CoreNameS{u"and", true, false},       CoreNameS{u"or", true, false},
      CoreNameS{u":=", true, false},        CoreNameS{u":>", true, false},
      CoreNameS{u"_quietpos", true, false}, CoreNameS{u"_PI", false, true},
      CoreNameS{u"/", true, false},         CoreNameS{u"sqrt", true, false},
      CoreNameS{u"nthroot", true, false},   CoreNameS{u"abs", true, false},
      CoreNameS{u"floor", true, false},     CoreNameS{u"ceil", true, false},
      CoreNameS{u"log", true, false},       CoreNameS{u"log10", true, false},
      CoreNameS{u"diff", true, false},      CoreNameS{u"integral", true, false},
      CoreNameS{u"sum", true, false},       CoreNameS{u"where", true, false},
      CoreNameS{u"error", true, true},      CoreNameS{u"sin", true, false},
      CoreNameS{u"cos", true, false},       CoreNameS{u"tan", true, false},
      CoreNameS{u"asin", true, false},      CoreNameS{u"acos", true, false},
      CoreNameS{u"atan", true, false},      CoreNameS{u"sinh", true, false},
      CoreNameS{u"cosh", true, false},      CoreNameS{u"tanh", true, false},
      CoreNameS{u"ln", true, false},        CoreNameS{u"exp", true, false},
  };
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
