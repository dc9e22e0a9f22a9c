#pragma once

#include <algorithm>
#include <cstdint>
#include <string_view>
#include <vector>

namespace zolt::exchange::detail {

/// What a delimiter says about its side.
enum LatexSideE : std::uint8_t { LATEX_SIDE_ANY, LATEX_SIDE_SIZED, LATEX_SIDE_LEFT, LATEX_SIDE_RIGHT };

/// What a command that is no operator does.
enum LatexWordE {
  LATEX_WORD_UNKNOWN,
  LATEX_WORD_NOTHING,   ///< spaces, sizes, styles
  LATEX_WORD_SKIPPED,   ///< a command whose one argument is left out: "\hspace{1em}"
  LATEX_WORD_SIZE,      ///< a size before a delimiter, as "\big"
  LATEX_WORD_LEFT,      ///< the same before an opening one
  LATEX_WORD_RIGHT,     ///< the same before a closing one
  LATEX_WORD_NAME,      ///< letters in braces are one name: "\mathrm"
  LATEX_WORD_OPERATOR,  ///< the same, or the style of a formula: "\mathop"
  LATEX_WORD_FUNCTION,  ///< the same before the brackets of a call: "\operatorname"
  LATEX_WORD_TEXT,      ///< text in braces is one name: "\text"
  LATEX_WORD_DOUBLE_STRUCK,
  LATEX_WORD_DELIMITER,   ///< stands for the character of `findDelimiter`
  LATEX_WORD_BEGIN,       ///< before the name of an environment in braces
  LATEX_WORD_END,         ///< the same at its end
  LATEX_WORD_ROW,         ///< ends a row of a table
  LATEX_WORD_MEANINGLESS  ///< what no expression can hold: "\dots"
};

LatexWordE findLatexWord(std::u16string_view command);
/// The bracket for a command such as "\lfloor"; U+0000 for any other.
char16_t findDelimiter(std::u16string_view command);
/// On which side that command is.
LatexSideE findDelimiterSide(std::u16string_view command);

/// A command that is no operator.
struct LatexWordS {
  std::u16string_view text;
  LatexWordE meaning;
};

/// All of them, sorted by their texts.
std::vector<LatexWordS> const& latexWords();

/// Calls `action` with each word of a list that has a blank between two words.
template <class ActionT>
void forEachLatexWord(std::u16string_view list, ActionT action) {
  while (!list.empty()) {
    // "\ " ends with the blank that it is.
    std::size_t const end = std::min(list.find(u' ', list[0] == u'\\' ? 2 : 1), list.size());
    action(list.substr(0, end));
    list.remove_prefix(std::min(end + 1, list.size()));
  }
}

}  // namespace zolt::exchange::detail
