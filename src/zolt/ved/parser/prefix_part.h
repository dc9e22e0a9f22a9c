#pragma once

#include <vector>

#include "zolt/oss/wstring.h"

namespace zolt::math::ved {

enum ErrorCauseE : int;

/// A name or number that the grammar writes as prefix text, and where in the infix text it and its operands
/// are.
struct PrefixPartS {
  unsigned int start;
  unsigned int end;
  bool isFunction;  ///< no operand; finished prefix text in grave accents is one operand
};

/// `Node4C::convertInfixToPrefix`, which also lists what is written, in its order, unless `parts` is null.
bool convertInfixToParts(oss::wstring const& infix, oss::wstring& prefix, unsigned int& first,
                         unsigned int& second, ErrorCauseE& cause, std::vector<PrefixPartS>* parts);

}  // namespace zolt::math::ved
