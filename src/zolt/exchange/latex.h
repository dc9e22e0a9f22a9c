#pragma once

#include <string_view>

#include "zolt/algexpr/algebraic_expression.h"
#include "zolt/common/read_error.h"
#include "zolt/oss/pointer.h"
#include "zolt/oss/wstring.h"

namespace zolt::exchange {

using math::algexpr::AlgebraicExpressionC;
using math::algexpr::CASSessionBC;
using math::common::ReadErrorS;
using oss::PointerTC;
using oss::wstring;

// Expressions in LaTeX: \frac{a+b}{2}, 2x^{2}, \sin 30^{\circ}, \int_0^1 x^2\,dx. docs/latex.md says what is
// read as what. Macros are never defined or run. Reading and writing take linear time and do not recurse.

/// The expression that `text`, one formula with or without "$" around it, means. Sums and products are
/// binary. Brackets that only group leave no trace. Null when the text is malformed or has no meaning;
/// `*error` (may be null) then says where and why. Otherwise `*error` is untouched.
[[nodiscard]] PointerTC<AlgebraicExpressionC> fromLatex(wstring const& text, PointerTC<CASSessionBC> session,
                                                        ReadErrorS* error = nullptr);

/// Whether `text` is written as only LaTeX is: all of it in "$", "\\(" or "\\[", or with a command in it.
[[nodiscard]] bool looksLikeLatex(wstring const& text);

/// The expression as in a textbook, for LaTeX with amsmath, KaTeX and MathJax. The text of every expression
/// reads back to an equal expression. Empty for the empty expression.
wstring toLatex(AlgebraicExpressionC const& expression);
/// The same with the signs that nobody sees, for programs that make other notations of it: U+2062 between
/// factors without a sign, U+2061 between functions and arguments. `fromLatex` reads these.
wstring toMarkedLatex(AlgebraicExpressionC const& expression);

/// A text as LaTeX shows it, "\\text{a-b}".
wstring toLatexText(std::u16string_view text);
/// The text in braces of such a form, "a\\_b", as it was.
wstring fromLatexText(std::u16string_view written);

/// What a command without operands, such as "\\leq", "\\alpha" or "\\sin", shows: a character or a word.
/// Empty for any other command.
wstring findLatexSign(std::u16string_view command);
/// The bracket or bar that a command such as "\\lfloor" or "\\{" is; U+0000 for any other.
char16_t findLatexBracket(std::u16string_view command);
/// Whether a command says only how what follows is shown, as "\\left", "\\quad" and "\\mathrm" do.
bool isLatexStyle(std::u16string_view command);

}  // namespace zolt::exchange
