#include "zolt/algexpr/node.h"

#include "zolt/oss/castable_id.h"

namespace zolt::math::algexpr {

char16_t const* NodeABC::getCastableId() { return u"NodeABC"; }

NodeABC const* NodeABC::lookUpBase(char16_t const* id) const {
  return oss::equalCastableIds(id, NodeABC::getCastableId()) ? this : nullptr;
}

}  // namespace zolt::math::algexpr
