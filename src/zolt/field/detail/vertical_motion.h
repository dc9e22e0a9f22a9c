#pragma once

#include "zolt/field/caret_motion.h"

namespace zolt::math::ved {
class ViewZNT4C;
}

namespace zolt::field::detail {

using math::ved::PlaceS;

/// The text place above `from` (MOTION_UP) or below it (MOTION_DOWN) that is nearest to `column`; null when
/// there is none. Looked for in the constructs beside the place, then in the other rows of the constructs
/// around it and the rows that these stand in, the innermost first.
PlaceS findVertical(math::ved::ViewZNT4C const& view, PlaceS from, CaretMotionE motion, long& column);

}  // namespace zolt::field::detail
