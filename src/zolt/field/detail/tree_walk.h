#pragma once

#include "zolt/oss/wstring.h"
#include "zolt/ved/tree/node4.h"
#include "zolt/ved/tree/place.h"

namespace zolt::field::detail {

using math::ved::Node4C;
using math::ved::PlaceS;
using oss::wstring;

/// The text before or after `text` in reading order, in whatever row; null when there is none.
Node4C const* previousText(Node4C const* text);
Node4C const* nextText(Node4C const* text);

/// The construct or exponent whose row the node (a row's item) stands in; null in the root's row.
Node4C const* enclosingItem(Node4C const* node);
/// Whether nothing stands behind the place in its row.
bool isAtRowEnd(PlaceS place);
bool isEmptyRow(Node4C const& row);
/// Whether a text stands for a missing operand: it shows the "●".
bool isSlot(Node4C const& text);

bool isTypedOpen(Node4C const& item);
bool isTypedClose(Node4C const& item);
/// Supplied brackets included.
bool isOpen(Node4C const& item);
bool isClose(Node4C const& item);
bool isConstruct(Node4C const& item);  ///< an operator with its rows, or an exponent
/// The bracket that belongs to `bracket`, in either direction; null when the row has none.
Node4C const* findPartner(Node4C const& bracket);

/// The innermost typed "(" of the place's own row that is still open there; null when there is none.
Node4C const* findOpenBracket(PlaceS place);

/// A letter or digit of a name or number, a decimal point included.
bool isWordCharacter(char16_t c);
/// Whether the caret should not stand before this character: the second half of a pair, a combining mark.
bool isContinuation(char16_t c);
/// Where the run of word characters that ends (starts) at `pos` starts (ends).
unsigned int wordStart(wstring const& text, unsigned int pos);
unsigned int wordEnd(wstring const& text, unsigned int pos);

}  // namespace zolt::field::detail
