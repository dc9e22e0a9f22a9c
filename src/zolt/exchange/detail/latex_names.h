#pragma once

#include <cstddef>
#include <string_view>

#include "zolt/oss/wstring.h"

namespace zolt::exchange::detail {

using oss::wstring;

// Names, numbers and wrappings in LaTeX, in a `text` from `position` on, which is moved to the end of what
// was read. A function that returns false may have moved it.

constexpr char16_t opening_brace = u'{';
constexpr char16_t closing_brace = u'}';

/// Letters that a bracket calls: f(x).
constexpr std::u16string_view function_letters = u"fghFGH";

struct LatexEscapeS {
  std::u16string_view written;
  char16_t meant;
};

/// What characters are written as in text.
constexpr LatexEscapeS latex_escapes[] = {{u"\\textbackslash{}", u'\\'},
                                          {u"\\textasciicircum{}", u'^'},
                                          {u"\\textasciitilde{}", u'~'},
                                          {u"\\_", u'_'},
                                          {u"\\{", u'{'},
                                          {u"\\}", u'}'},
                                          {u"\\#", u'#'},
                                          {u"\\$", u'$'},
                                          {u"\\%", u'%'},
                                          {u"\\&", u'&'},
                                          {u"\\ ", u' '}};

/// Cuts off what surrounds a formula in a document: "$$", "\[", an environment, punctuation at its end.
void unwrapLatex(std::u16string_view& text, std::size_t& position);

/// The position after the brace that closes the first one; the length of the text when there is none.
std::size_t findBraceEnd(std::u16string_view text, std::size_t position);

/// Skips an argument in braces or a length without them: "1em", "-3mu".
void skipLatexLength(std::u16string_view text, std::size_t& position);

/// The end of the letter that is not ASCII, with its marks; `position` when there is none.
std::size_t findLatexLetterEnd(std::u16string_view text, std::size_t position);

/// Reads letters and digits up to the closing brace.
[[nodiscard]] bool readLatexWord(std::u16string_view text, std::size_t& position, wstring& word);
/// Reads a command with a word in braces, "\mathrm{max}".
[[nodiscard]] bool readStyledLatexWord(std::u16string_view text, std::size_t& position, wstring& word);
/// Whether "\text{" follows.
bool startsLatexText(std::u16string_view text, std::size_t position);
/// Reads text up to so many closing braces, of which the blanks around it are no part.
[[nodiscard]] bool readLatexText(std::u16string_view text, std::size_t& position, wstring& word, int braces);
/// Whether a text between operands is an operator: "and".
bool isLatexOperatorWord(std::u16string_view word);

/// Reads an index that is a part of a name.
[[nodiscard]] bool readLatexIndex(std::u16string_view text, std::size_t& position, wstring& index);
/// Reads lowered digits and letters, "₁"; empty when there are none.
wstring readLoweredLatex(std::u16string_view text, std::size_t& position);
/// Adds the exponent of a number, "\mathrm{e}{-3}", if there is one.
void readLatexExponent(std::u16string_view text, std::size_t& position, wstring& number);

enum LatexNameKindE {
  LATEX_NAME_PLAIN,
  LATEX_NAME_FUNCTION  ///< brackets after it would be, or seem to be, those of a call; a number has an
                       ///< exponent
};

/// A name or number as LaTeX.
struct LatexNameS {
  wstring text;
  LatexNameKindE kind = LATEX_NAME_PLAIN;
};

LatexNameS writeLatexName(std::u16string_view name);
/// Whether the name is also a sign before an operand, as of a gradient.
bool isPrefixLetter(std::u16string_view name);
/// The name before the brackets of a call.
LatexNameS writeLatexFunction(std::u16string_view name);
/// A number without a sign.
LatexNameS writeLatexNumber(std::u16string_view number);

}  // namespace zolt::exchange::detail
