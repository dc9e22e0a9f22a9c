#pragma once

#include "zolt/field/commands.h"
#include "zolt/ved/tree/place.h"

namespace zolt::math::ved {
class ViewZNT4C;
}

namespace zolt::field {

using math::ved::PlaceS;

/// The value of `column` before the first vertical move.
constexpr long no_column = -1;

/// Where `motion`, one of COMMAND_LEFT to COMMAND_OUT_RIGHT, leads from `from`; null when it leads nowhere.
/// `column` is the horizontal position, in view
/// coordinates, that consecutive vertical moves keep to: the caller keeps it between them, and the first one
/// sets it when it is `no_column`. Vertical moves lay the view out.
PlaceS findTarget(CommandE motion, math::ved::ViewZNT4C const& view, PlaceS from, long& column);
/// The same for the end of a selection. In a table it goes from cell to cell as soon as it has left the cell
/// that the selection began in, and out of the table at its edge.
PlaceS findSelectionTarget(CommandE motion, math::ved::ViewZNT4C const& view,
                           math::ved::SelectionS const& selection, long& column);

}  // namespace zolt::field
