#pragma once

#include <cstddef>
#include <string_view>
#include <vector>

#include "zolt/mathml/detail/xml_builder.h"

namespace zolt::mathml::detail {

struct FenceS;

/// Makes presentation MathML of LaTeX with all signs (`exchange::toMarkedLatex`), whose forms it knows: where
/// brackets and signs are needed is decided there. Keeps a stack instead of recursion.
class PresentationWriterC {
 public:
  using IdT = XmlBuilderC::IdT;

  /// `latex` must outlive the writer.
  PresentationWriterC(std::u16string_view latex, XmlBuilderC& builder) : latex_(latex), builder_(builder) {}

  /// The element with the whole formula.
  IdT write();

 private:
  enum FrameE {
    FRAME_GROUP,    ///< braces
    FRAME_OPTION,   ///< brackets after a command
    FRAME_FENCED,   ///< delimiters
    FRAME_COMMAND,  ///< waits for operands in braces
    FRAME_SCRIPT,   ///< waits for one
    FRAME_TABLE,
    FRAME_CELLS,  ///< of a row of a table
    FRAME_CELL
  };
  struct FrameS {
    FrameE kind;
    std::u16string_view command = {};  ///< also the opening delimiter, the sign of a script, the environment
    std::size_t first = 0;             ///< operand
    std::size_t numOperands = 1;       ///< that a command waits for
    bool hasOption = false;
    bool joins = false;  // a script: the last operand has got the other one
  };

  // What is next in the text.
  char16_t peek() const { return position_ < latex_.size() ? latex_[position_] : u'\0'; }
  bool skip(std::u16string_view text);
  std::u16string_view readWord();
  std::u16string_view readBraced();
  void readNumber();
  void readCommand();
  void readName(std::u16string_view command);
  void readSign(char16_t c);
  void readPrimes();
  void beginScript(char16_t sign);
  void beginCommand(std::u16string_view command, std::size_t numOperands);

  // What is done with it.
  void begin(FrameE kind, std::u16string_view command = {});
  void put(IdT id) { operands_.push_back(id); }
  void putToken(std::u16string_view tag, std::u16string_view text) { put(builder_.addToken(tag, text)); }
  void putSign(std::u16string_view sign);
  void putDelimiter(std::u16string_view delimiter);
  void closeGroup();
  void putFence(std::u16string_view sign, std::u16string_view form, std::u16string_view turned);
  void openFenced(std::u16string_view delimiter, std::u16string_view sign);
  /// Null: of no fence of the table.
  void closeFenced(std::u16string_view sign, FenceS const* fence);
  void closeTable();
  /// Takes the operands of the last frame, which it ends, into one element.
  IdT takeRow(std::u16string_view tag = {});
  /// Hands an operand in braces to what waits for it.
  void finish(IdT operand);
  void finishScript(FrameS const& frame, IdT script);
  void finishCommand(FrameS const& frame);
  IdT makeElement(std::u16string_view tag, std::vector<IdT> const& children) {
    return builder_.addElement(tag, children.data(), children.size());
  }
  /// Says what an element means, in terms of children that it names.
  void setIntent(IdT id, std::u16string_view concept, std::vector<IdT> const& arguments);

  std::u16string_view latex_;
  XmlBuilderC& builder_;
  std::size_t position_ = 0;
  std::vector<FrameS> frames_;
  std::vector<IdT> operands_;
  IdT group_ = 0;          // the last one in braces that are no operand's
  bool scripted_ = false;  // the last operand has got a script, and may get another
};

}  // namespace zolt::mathml::detail
