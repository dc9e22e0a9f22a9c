#pragma once

#include "zolt/ved/tree/place.h"

namespace zolt::math::ved {
class ViewZNT4C;
}

namespace zolt::field {

using math::ved::PlaceS;
using math::ved::SelectionS;

// The units in which a selection around a place grows: a name, number or sign; an operand with its exponents
// and arguments; a term; a side of a relation or an argument; the content of brackets; the same with the
// brackets; the row; the construct around the row; and so on outwards.

/// The smallest of these units that contains the view's selection (or caret) and is larger than it. The caret
/// is at the end. When everything is selected, the result is the same selection.
SelectionS growSelection(math::ved::ViewZNT4C const& view);

/// Selects the name, number or sign at a place, else the construct beside it.
SelectionS selectItem(PlaceS place);

SelectionS selectRow(PlaceS place);

/// Selects the innermost construct whose box contains (x, y), if no text with characters contains it: a
/// pointer on a fraction bar means the fraction. The ends are null when there is none. Lays the view out.
SelectionS selectConstructAt(math::ved::ViewZNT4C const& view, long x, long y);

}  // namespace zolt::field
