#pragma once

namespace zolt::oss {

/// True when both castable ids (zero-terminated names of classes) are the same text. Null equals nothing.
/// Ids are usually one shared constant, so the addresses are compared first.
[[nodiscard]] inline bool equalCastableIds(char16_t const* a, char16_t const* b) {
  if (!a || !b || a == b) return a && a == b;
  while (*a == *b && *a != 0) ++a, ++b;
  return *a == *b;
}

}  // namespace zolt::oss
