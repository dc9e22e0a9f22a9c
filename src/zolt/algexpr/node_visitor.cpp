#include "zolt/algexpr/node_visitor.h"

namespace zolt::math::algexpr {

NodeVisitorABC::~NodeVisitorABC() = default;

}  // namespace zolt::math::algexpr
