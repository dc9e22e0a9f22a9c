#pragma once

#include "zolt/field/caret_motion.h"

namespace zolt::math::ved {
class ViewZNT4C;
}

namespace zolt::field::detail {

using math::ved::PlaceS;

/// The text place above `from` (MOTION_UP) or below it (MOTION_DOWN) that is nearest to `column`; null when
/// there is none. The search begins in the constructs beside the place and continues outwards, with the other
/// rows of each construct around it and the row that this construct is in.
PlaceS findVertical(math::ved::ViewZNT4C const& view, PlaceS from, CaretMotionE motion, long& column);

}  // namespace zolt::field::detail
