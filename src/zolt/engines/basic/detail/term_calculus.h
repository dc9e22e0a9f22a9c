#pragma once

#include "zolt/engines/basic/detail/term_pool.h"

namespace zolt::engine_basic::detail {

// All answer with 0, and the watch's fault, when there is no such term.

/// `term` with `value` in place of a name or slot.
TermT substitute(TermPoolC& pool, TermT term, TermT variable, TermT value);
/// Whether `term` depends on a name or slot.
bool dependsOn(TermPoolC const& pool, TermT term, TermT variable);
TermT differentiate(TermPoolC& pool, TermT term, TermT variable);
/// Products of sums, and whole powers of sums, multiplied out.
TermT expand(TermPoolC& pool, TermT term);

/// The coefficients of a polynomial in `variable`, by degree, the last one not 0; the term is expanded. False
/// when it is none, or of a higher degree than `most`.
[[nodiscard]] bool findCoefficients(TermPoolC& pool, TermT expanded, TermT variable, std::size_t most,
                                    std::vector<TermT>& coefficients);

}  // namespace zolt::engine_basic::detail
