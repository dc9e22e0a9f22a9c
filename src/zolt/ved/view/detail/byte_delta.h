// Internal to the edit history: the difference between two byte strings.
#pragma once

#include "zolt/oss/wstring.h"

namespace zolt::math::ved {

/// The stretches in which `after` differs from `before`, with the bytes of both, so that either can be made
/// from the other. Empty when they are equal. Small when they differ in a few places; linear in time.
oss::bytestring makeDelta(oss::bytestring const& before, oss::bytestring const& after);

/// Turns the `before` of a delta into its `after`, or (`backwards`) the other way round.
oss::bytestring applyDelta(oss::bytestring const& bytes, oss::bytestring const& delta, bool backwards);

}  // namespace zolt::math::ved
