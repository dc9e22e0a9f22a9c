#pragma once

#include <string_view>

#include "zolt/oss/wstring.h"

namespace zolt::mathml::detail {

// How presentation MathML shows what LaTeX has a command for. The signs of operators are not here: they are
// the characters that LaTeX reads, too (`exchange::findLatexSign`).

/// Something above a base.
struct AccentS {
  std::u16string_view command;
  std::u16string_view signs;  ///< the first one is written, all are read
  std::u16string_view intent;
};
/// The row with that command or that sign; null when there is none.
AccentS const* findAccent(std::u16string_view command);
AccentS const* findAccentSign(std::u16string_view sign);

/// Delimiters.
struct FenceS {
  std::u16string_view open;  ///< in LaTeX
  std::u16string_view close;
  char16_t openSign;
  char16_t closeSign;
  std::u16string_view intent = {};
  std::u16string_view environment = {};  ///< of a table between them
};
/// The row that `open` or `close` of LaTeX begins or ends; null when there is none.
FenceS const* findFence(std::u16string_view delimiter);
/// The row with that sign on either side.
FenceS const* findFenceSign(char16_t sign);
FenceS const* findFenceOfTable(std::u16string_view environment);
/// The bar that a character looks like, "|" or "‖"; U+0000 for any other.
char16_t asBar(std::u16string_view text);
/// Whether a token of these characters is only room between others.
bool isOnlyRoom(std::u16string_view text);
/// Whether the text at the end of a formula belongs to the sentence around it.
bool isPunctuation(std::u16string_view text);

/// Signs that are characters with a meaning of their own in LaTeX, and signs of several characters.
/// The LaTeX of a sign; empty when it is written as it is.
std::u16string_view findSignCommand(std::u16string_view sign);
/// The sign of such a command; empty for any other.
std::u16string_view findCommandSign(std::u16string_view command);

/// Whether a sign has its bounds below and above instead of beside it.
bool takesLimits(std::u16string_view sign);
/// Whether a sign between two operands binds looser than a product, so that "mrow" around it groups.
bool isLooseSign(std::u16string_view sign);

/// The letter that a character of the mathematical alphabets is, "𝐱" as "x", in text `from` a position on,
/// which is moved past it; anything else as it is.
void appendPlainLetter(std::u16string_view text, std::size_t& position, oss::wstring& out);
/// The letter with double strokes, "ℝ" for "R"; U+0000 when there is none in use.
char16_t findDoubleStruck(char16_t letter);

}  // namespace zolt::mathml::detail
