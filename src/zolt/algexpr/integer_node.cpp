#include "zolt/algexpr/integer_node.h"

#include "zolt/algexpr/node_visitor.h"
#include "zolt/oss/castable_id.h"

namespace zolt::math::algexpr {

char16_t const* IntegerNodeC::getCastableId() { return u"IntegerNodeC"; }

char16_t const* IntegerNodeC::qCastableId() const { return getCastableId(); }

NodeABC const* IntegerNodeC::lookUpBase(char16_t const* id) const {
  return oss::equalCastableIds(id, getCastableId()) ? this : NodeABC::lookUpBase(id);
}

void IntegerNodeC::visit(NodeVisitorABC& visitor) { visitor.visitInteger(*this); }

}  // namespace zolt::math::algexpr
