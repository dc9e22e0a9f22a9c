#pragma once

#include "zolt/field/input_options.h"
#include "zolt/oss/pointer.h"
#include "zolt/oss/wstring.h"
#include "zolt/ved/tree/place.h"

namespace zolt::math::ved {
class OperatorBC;
class ViewZNT4C;
}  // namespace zolt::math::ved

namespace zolt::field {

using math::ved::PlaceS;
using oss::PointerTC;
using oss::wstring;

// The rules of typing, as pure functions: what one character is to do, and what becomes of the text that it
// completed. Carrying it out is the field's business.

enum InputKindE {
  INPUT_MOVE,           ///< only the caret moves, to the target
  INPUT_TEXT,           ///< the text is typed
  INPUT_OPERATOR,       ///< the operator of that name is inserted
  INPUT_EXPONENT,       ///< the text goes into an exponent on what is before the caret, which then leaves it
  INPUT_OPEN_EXPONENT,  ///< the same, and the caret stays in the exponent
  INPUT_BRACKETS        ///< the selection is put between brackets
};

struct InputDecisionS {
  InputKindE kind = INPUT_TEXT;
  wstring text;
  PlaceS target;  ///< where the caret goes first; null: it stays
};

/// What typing `c` is to do at the view's caret. Characters that only look like one of the table's signs are
/// taken for it, whatever keyboard they come from.
InputDecisionS decideInput(math::ved::ViewZNT4C const& view, char16_t c, InputOptionsS const& options);

/// Text that becomes something else.
struct ReplacementS {
  PlaceS begin;  ///< null: there is nothing to replace
  PlaceS end;
  wstring text;      ///< typed in its place; an operator's name inserts the operator
  wstring exponent;  ///< typed behind that, where the caret then stays
};

/// What becomes of the signs just typed before the caret: "<=", "!=", "**", a letter with the accent that a
/// dead "^" left on it.
ReplacementS findSignReplacement(math::ved::ViewZNT4C const& view);

/// What becomes of the name that ends at `end`: "alpha" becomes the letter, "pi" the constant.
ReplacementS findLetterReplacement(PlaceS end);

/// A call that becomes a construct.
struct ConstructReplacementS {
  PointerTC<math::ved::OperatorBC> op;  ///< null: there is nothing to replace
  PlaceS begin;
  PlaceS end;
  /// What stood between the brackets and goes into the row `contentRow`. Null: nothing.
  PlaceS contentBegin;
  PlaceS contentEnd;
  unsigned long contentRow = 0;
  /// What was written behind the name, as in "log_2(", and goes into the row `markRow`.
  wstring mark;
  unsigned long markRow = 0;
  unsigned long caretRow = 0;
};

/// What becomes of the call whose "(" (or first ",") was just typed before the caret. A name whose text the
/// operator table knows as a plain function stays one until the comma: "log(x)" is a decimal logarithm.
ConstructReplacementS findConstructReplacement(math::ved::ViewZNT4C const& view);

}  // namespace zolt::field
