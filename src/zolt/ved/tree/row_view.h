// Questions about rows in canonical form, for code outside ved/tree. Only ved/tree knows that texts and other
// items alternate in a row, and what follows from that.
#pragma once

#include "zolt/oss/wstring.h"
#include "zolt/ved/tree/place.h"

namespace zolt::math::ved {

/// Whether the row is empty: its only item is a text without characters.
bool isEmptyRow(Node4C const& row);
/// The text that a row begins with; empty when it begins with something else.
oss::wstring const& crefFirstText(Node4C const& row);
/// Whether all rows of a construct or exponent are empty.
bool hasEmptyRows(Node4C const& construct);
/// Whether an empty text is a missing operand: it is alone in its row or before an exponent without a base.
bool lacksOperand(Node4C const& emptyText);
/// The same for any text, which shows "●". An empty formula shows one too, but is no slot.
bool isSlot(Node4C const& text);

/// The construct or exponent whose row contains `item`; null in the formula's own row.
Node4C const* enclosingItem(Node4C const& item);
/// Where an item of a laid-out row ends; an exponent, which may be above an index, not before its base.
long rightEnd(Node4C const& row, unsigned long item);
/// Where the item or the exponent after it begins, whatever is further left.
long leftEnd(Node4C const& row, unsigned long item);
/// The exponent on a laid-out text that is above the end of it, its index; null when there is none.
Node4C const* exponentAbove(Node4C const& text);

/// Whether nothing comes after the place in its row.
bool isAtRowEnd(PlaceS place);
/// The text before or after `text` in reading order, in any row; null when there is none.
Node4C const* previousText(Node4C const& text);
Node4C const* nextText(Node4C const& text);

/// The other bracket of the pair; null when the row has none.
Node4C const* findPartner(Node4C const& bracket);
/// Whether the row is one pair of brackets and what is in it.
bool isWholeGroup(Node4C const& row);
/// The innermost typed "(" before the place in its row that is still open there; null when there is none.
Node4C const* findOpenBracket(PlaceS place);
/// Whether the row has a supplied "(" at its start, or a supplied ")" at its end.
bool hasSuppliedOpen(Node4C const& row);
bool hasSuppliedClose(Node4C const& row);

/// The first and the last item of one row that a selection reaches, in reading order, each with the position
/// of that end. When the ends are in different rows of a construct, these are the texts around it. The anchor
/// may be no place; then both are the caret's.
SelectionS spanOf(SelectionS const& selection);
/// The same as places: beside an item that is not a text.
SelectionS inOneRow(SelectionS const& selection);

}  // namespace zolt::math::ved
