#pragma once

#include <memory>

#include "zolt/oss/wstring.h"
#include "zolt/ved/tree/place.h"

namespace zolt::math::ved {

using oss::wstring;

class Node4C;
class OperatorListC;

/// A tree with the places of caret and anchor, as the notation holds them.
struct TreeNotationS {
  std::unique_ptr<Node4C> root;
  SelectionS selection;  ///< a node is null when its mark is absent
};

/// A tree as one line of text, for dumps, tests and bug reports: rows in brackets, texts in quotes,
/// constructs by name (and, after a blank, variant) with their rows, `P[…]` an exponent, `(` `)` typed
/// brackets, `AO` `AC` supplied ones, `‸` the caret and `⚑` the anchor: `["a+", /<["b‸"] ; ["c"]>, ""]`.
/// Inside quotes `\` escapes a quote, itself and the two marks, and `\uXXXX` a control character. `node` is a
/// root or a row; no marks are written for null nodes.
wstring writeTreeNotation(Node4C const& node, SelectionS const& selection = {});

/// Reads that notation into a tree exactly as it is written, without normalisation. On failure false, with
/// `tree` untouched and `position` at the character that could not be read; a row that nests deeper than
/// `limits` allow fails at its start. Constructs are looked up by name.
bool readTreeNotation(wstring const& text, OperatorListC const& operators, TreeNotationS& tree,
                      unsigned long& position);

}  // namespace zolt::math::ved
