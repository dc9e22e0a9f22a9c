#pragma once

#include "zolt/surfaces/typeset/detail/stroke_joiner.h"
#include "zolt/surfaces/typeset/font_size.h"
#include "zolt/surfaces/typeset/path.h"
#include "zolt/surfaces/typeset/rule.h"

// Internal to the typeset library.

namespace zolt::surfaces {

/// Thickness of fraction bars and other plain lines at a font size.
inline double getRuleThickness(FontSizeS const& size) { return 0.046 * size.em; }

/// A sign that was recognised in a chain of strokes: an outline to fill and, for a radical, its bar.
struct SignS {
  PathC outline;
  bool hasBar = false;
  RuleS bar{};
};

/// The component draws an integral sign, a sum sign and a radical by a few straight strokes. True when the
/// chain is one of them; `sign` is then the sign as print has it, in the room that the strokes take up.
bool recogniseSign(ChainS const& chain, FontSizeS const& size, SignS& sign);

}  // namespace zolt::surfaces
