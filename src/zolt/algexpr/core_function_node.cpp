#include "zolt/algexpr/core_function_node.h"

#include "zolt/algexpr/detail/core_names.h"
#include "zolt/algexpr/node_visitor.h"
#include "zolt/oss/castable_id.h"

namespace zolt::math::algexpr {

wstring const& CoreFunctionNodeC::crefName() const { return name_->name; }

char16_t const* CoreFunctionNodeC::getCastableId() { return u"CoreFunctionNodeC"; }

char16_t const* CoreFunctionNodeC::qCastableId() const { return getCastableId(); }

NodeABC const* CoreFunctionNodeC::lookUpBase(char16_t const* id) const {
  return oss::equalCastableIds(id, getCastableId()) ? this : ParentNodeABC::lookUpBase(id);
}

void CoreFunctionNodeC::visit(NodeVisitorABC& visitor) { visitor.visitCoreFunction(*this); }

}  // namespace zolt::math::algexpr
