#include "zolt/algexpr/user_function_node.h"

#include "zolt/algexpr/node_visitor.h"
#include "zolt/oss/castable_id.h"

namespace zolt::math::algexpr {

char16_t const* UserFunctionNodeC::getCastableId() { return u"UserFunctionNodeC"; }

char16_t const* UserFunctionNodeC::qCastableId() const { return getCastableId(); }

NodeABC const* UserFunctionNodeC::lookUpBase(char16_t const* id) const {
  return oss::equalCastableIds(id, getCastableId()) ? this : ParentNodeABC::lookUpBase(id);
}

void UserFunctionNodeC::visit(NodeVisitorABC& visitor) { visitor.visitUserFunction(*this); }

}  // namespace zolt::math::algexpr
