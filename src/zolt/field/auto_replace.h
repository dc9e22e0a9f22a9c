#pragma once

#include "zolt/field/input_options.h"
#include "zolt/oss/pointer.h"
#include "zolt/oss/wstring.h"
#include "zolt/ved/tree/place.h"

namespace zolt::math::ved {
class Node4C;
class OperatorBC;
class OperatorListC;
class ViewZNT4C;
}  // namespace zolt::math::ved

namespace zolt::field {

using math::ved::PlaceS;
using oss::PointerTC;
using oss::wstring;

// The rules of typing, as pure functions: they say what one character does and what replaces the text that it
// completes. The field carries it out.

enum InputKindE {
  INPUT_MOVE,      ///< only the caret moves, to the target
  INPUT_TEXT,      ///< the text is typed
  INPUT_OPERATOR,  ///< the operator of that name is inserted
  INPUT_EXPONENT,  ///< the text becomes an exponent of what is before the caret; the caret then leaves it
  INPUT_OPEN_EXPONENT,  ///< the same, but the caret stays in the exponent
  INPUT_CALL,     ///< the construct of that name is inserted, with what the name says about its arguments
  INPUT_RECOUNT,  ///< the construct around the caret becomes the one of another number of arguments
  INPUT_BRACKETS  ///< the selection is put between brackets
};

/// What becomes of a typed character.
struct InputDecisionS {
  InputKindE kind = INPUT_TEXT;
  wstring text;
  PlaceS target;  ///< where the caret moves first; null: it does not move
  PlaceS begin;   ///< from where to there the operand reaches that a text takes; null: the text decides
};

/// A big sign around the caret whose bounds are typed as text has them: "sum_(k=1)^n k", "∫_0^1 x dx",
/// "\\lim_{x\\to 0} f". In it, signs lead from row to row, and out of what is summed, as they do in the text;
/// in the same construct that is filled otherwise they are typed.
struct TypedBoundsS {
  math::ved::Node4C const* construct;  ///< gone, perhaps, when the caret has left it
  char16_t close = u'\0';     ///< the bracket that ends the bound at the caret; none: any sign that may
  bool isDerivative = false;  ///< its variable was typed before what it applies to, as in "d/dx f"
};

/// What is typed in braces or square brackets, as in LaTeX.
struct TypedGroupS {
  enum KindE {
    ROW,        ///< a row of a construct: "\frac{1}{x+1}"
    SHORT_ROW,  ///< one without braces, which takes a single character: "\frac12"
    ARGUMENT,   ///< of a function, in the tree in brackets: "\sin{2x}"
    INDEX,      ///< "x_{max}"
    LETTERS,    ///< "\mathrm{max}"
    STRUCK      ///< "\mathbb{R}"
  };
  KindE kind;
  char16_t close = u'}';                         ///< the sign that ends it
  math::ved::Node4C const* construct = nullptr;  ///< of the row; gone, perhaps, when the caret has left it
};

/// What typing `c` does at the view's caret. A character that looks like one of the table's signs counts as
/// that sign, since keyboards differ in what they send.
InputDecisionS decideInput(math::ved::ViewZNT4C const& view, char16_t c, InputOptionsS const& options);

/// A piece of text and what replaces it.
struct ReplacementS {
  PlaceS begin;  ///< null: nothing is replaced
  PlaceS end;
  wstring text;        ///< what is typed in its place; an operator's name inserts the operator
  wstring exponent;    ///< what is typed after that as an exponent, in which the caret stays
  PlaceS target = {};  ///< where the caret goes instead of anything being typed; usually null
};

/// The replacement for the signs just typed before the caret: "<=", "!=", "**", or a letter with the accent
/// that a dead "^" key left on it. A blank comes before a name that begins where another is complete: after
/// its primes, or after "∞".
ReplacementS findSignReplacement(math::ved::ViewZNT4C const& view);

enum NameUseE {
  NAME_STANDS_ALONE,
  NAME_IS_CALLED  ///< "(" comes next, so its last factor is a function's name
};

/// The replacement for the name that ends at `end`: the letter for "alpha", the constant for "pi", with
/// single letters the product for "ac".
ReplacementS findNameReplacement(math::ved::OperatorListC const& operators, PlaceS end,
                                 InputOptionsS const& options, NameUseE use = NAME_STANDS_ALONE);

/// The replacement for another name of a function that ends at `end`: "asin" for "arcsin".
ReplacementS findFunctionReplacement(math::ved::ViewZNT4C const& view, PlaceS end);

/// The replacement for a blank between a name and the "(" that was just typed: there the brackets are a
/// factor, "a (b+c)", and not arguments.
ReplacementS findFactorReplacement(math::ved::ViewZNT4C const& view);

}  // namespace zolt::field
