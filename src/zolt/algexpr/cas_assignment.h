#pragma once

#include <functional>

#include "zolt/algexpr/cas_request.h"

namespace zolt::math::algexpr {

/// How an engine does a request's operation, which is not a substitution, on an expression that is no
/// assignment; parts are numbered in `node`.
using CASComputeNodeT = std::function<CASResultS(CASRequestS const& request, PointerTC<NodeABC> const& node)>;

/// What engines do alike: requests without an expression, assignments, and substitution, which is the value
/// of a `where`. `isReserved` tells the names of functions that nobody defines.
CASResultS computeRequest(CASRequestS const& request, bool (*isReserved)(wstring const& name),
                          CASComputeNodeT const& compute);

/// A result without a value, its outcome by its cause.
CASResultS refuse(CASCauseE cause, unsigned long part = CASResultS::no_part, wstring subject = {});

}  // namespace zolt::math::algexpr
