#include "zolt/algexpr/make_node.h"

#include <algorithm>
#include <utility>

#include "zolt/algexpr/detail/core_names.h"
#include "zolt/algexpr/detail/node_access.h"
#include "zolt/algexpr/float_node.h"
#include "zolt/algexpr/nodes.h"
#include "zolt/common/decimal_text.h"
#include "zolt/common/signs.h"

namespace zolt::math::algexpr {

namespace detail {

bool startsLikeNumber(wstring_view text) {
  if (!text.empty() && common::isMinus(text[0])) text.remove_prefix(1);
  return !text.empty() && common::startsNumber(text[0]);
}

bool isForbidden(char16_t c) { return c < u' ' || (c >= 0x7F && c <= 0x9F) || c == u'`'; }

bool endsName(char16_t c) { return c == u' ' || c == u'(' || c == u')' || c == u','; }

PointerTC<NodeABC> NodeAccessS::makeFunction(wstring_view name, PointerTC<NodeABC>* first,
                                             unsigned long count) {
  CoreNameS const* const core = findCoreName(name);
  if (core && (core->traits & CORE_FUNCTION) != 0) return new CoreFunctionNodeC(core->name, first, count);
  return new UserFunctionNodeC(wstring(name), first, count);
}

PointerTC<NodeABC> NodeAccessS::makeNamed(wstring_view name) {
  CoreNameS const* const core = findCoreName(name);
  if (core && (core->traits & CORE_CONSTANT) != 0) return new CoreConstantNodeC(core->name);
  return new SymbolNodeC(wstring(name));
}

PointerTC<NodeABC> NodeAccessS::makeNumber(wstring_view text, std::size_t* breakPosition) {
  std::size_t const signLength = !text.empty() && common::isMinus(text[0]) ? 1 : 0;
  common::DecimalTextS parts;
  if (!common::readDecimalText(text.substr(signLength), parts, breakPosition)) {
    if (breakPosition) *breakPosition += signLength;
    return nullptr;
  }
  wstring kept(text);
  if (signLength > 0) kept[0] = common::minus_sign;
  if (parts.isInteger()) return new IntegerNodeC(std::move(kept));
  return new FloatNodeC(std::move(kept));
}

}  // namespace detail

bool isWritableName(wstring const& name) {
  return !name.empty() && !detail::startsLikeNumber(name) &&
         std::none_of(name.begin(), name.end(),
                      [](char16_t c) { return detail::endsName(c) || detail::isForbidden(c); });
}

PointerTC<NodeABC> makeFunction(wstring const& name, std::vector<PointerTC<NodeABC>> children) {
  bool const complete = !children.empty() && std::all_of(children.begin(), children.end(),
                                                         [](auto const& child) { return bool(child); });
  if (!complete || !isWritableName(name)) return nullptr;
  return detail::NodeAccessS::makeFunction(name, children.data(),
                                           static_cast<unsigned long>(children.size()));
}

PointerTC<NodeABC> makeNamed(wstring const& name) {
  return isWritableName(name) ? detail::NodeAccessS::makeNamed(name) : nullptr;
}

PointerTC<NodeABC> makeNumber(wstring const& text) { return detail::NodeAccessS::makeNumber(text, nullptr); }

}  // namespace zolt::math::algexpr
