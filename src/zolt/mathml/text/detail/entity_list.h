#pragma once

#include <string_view>

namespace zolt::mathml::detail {

/// The named characters of HTML, which are those of MathML, in the order of their names: "alpha=α;beta=β;…".
extern std::u16string_view const entity_list;

}  // namespace zolt::mathml::detail
