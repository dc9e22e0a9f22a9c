#include "zolt/algexpr/symbol_node.h"

#include "zolt/algexpr/node_visitor.h"
#include "zolt/oss/castable_id.h"

namespace zolt::math::algexpr {

char16_t const* SymbolNodeC::getCastableId() { return u"SymbolNodeC"; }

char16_t const* SymbolNodeC::qCastableId() const { return getCastableId(); }

NodeABC const* SymbolNodeC::lookUpBase(char16_t const* id) const {
  return oss::equalCastableIds(id, getCastableId()) ? this : NodeABC::lookUpBase(id);
}

void SymbolNodeC::visit(NodeVisitorABC& visitor) { visitor.visitSymbol(*this); }

}  // namespace zolt::math::algexpr
