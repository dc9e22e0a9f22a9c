#pragma once

#include "zolt/ved/tree/place.h"

namespace zolt::math::ved {
class ViewZNT4C;
}

namespace zolt::field {

using math::ved::PlaceS;
using math::ved::SelectionS;

// What is selected around a place, as people see a formula: a name or number or sign, an operand with its
// exponents and arguments, a term, a side of a relation or an argument, what is between brackets, the
// brackets with it, the row, the construct around the row, and so on outwards.

/// The smallest of these that contains the view's selection (or caret) and is larger. The caret is the end.
/// The same selection again when everything is selected.
SelectionS growSelection(math::ved::ViewZNT4C const& view);

/// The item at a place: the name, number or sign there, else the construct beside it.
SelectionS selectItem(PlaceS place);

SelectionS selectRow(PlaceS place);

/// The innermost construct whose box contains (x, y) while no text with characters does: what a pointer on a
/// fraction bar means. Null ends when there is none. Lays the view out.
SelectionS selectConstructAt(math::ved::ViewZNT4C const& view, long x, long y);

}  // namespace zolt::field
