#include "zolt/algexpr/core_constant_node.h"

#include "zolt/algexpr/detail/core_names.h"
#include "zolt/algexpr/node_visitor.h"
#include "zolt/oss/castable_id.h"

namespace zolt::math::algexpr {

wstring const& CoreConstantNodeC::crefName() const { return name_->name; }

char16_t const* CoreConstantNodeC::getCastableId() { return u"CoreConstantNodeC"; }

char16_t const* CoreConstantNodeC::qCastableId() const { return getCastableId(); }

NodeABC const* CoreConstantNodeC::lookUpBase(char16_t const* id) const {
  return oss::equalCastableIds(id, getCastableId()) ? this : NodeABC::lookUpBase(id);
}

void CoreConstantNodeC::visit(NodeVisitorABC& visitor) { visitor.visitCoreConstant(*this); }

}  // namespace zolt::math::algexpr
