#pragma once

#include <vector>

#include "zolt/algexpr/cas_request.h"

namespace zolt::engine_sheet::detail {

using math::algexpr::CASDefinitionS;
using math::algexpr::NodeABC;
using oss::PointerTC;
using oss::wstring;

/// The names of variables and functions in an expression that the library does not know, each once, sorted.
/// Names of bound variables are among them.
std::vector<wstring> findNames(NodeABC const& expression);

/// What an assignment would define, as it is written; without a name when the expression is none.
CASDefinitionS readDefinition(NodeABC const& expression);

/// The names that the value of a definition leaves open: those in it but for its parameters.
std::vector<wstring> findOpenNames(CASDefinitionS const& definition);

/// Whether both define the same.
bool areEqual(CASDefinitionS const& a, CASDefinitionS const& b);

}  // namespace zolt::engine_sheet::detail
