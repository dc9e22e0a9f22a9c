#include "zolt/oss/castable_id.h"

namespace zolt::oss {

bool equalCastableIds(char16_t const* a, char16_t const* b) {
  if (!a || !b) return false;
  if (a == b) return true;
  while (*a == *b) {
    if (*a == 0) return true;
    ++a;
    ++b;
  }
  return false;
}

}  // namespace zolt::oss
