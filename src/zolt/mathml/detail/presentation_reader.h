#pragma once

#include <cstddef>
#include <string_view>
#include <utility>
#include <vector>

#include "zolt/mathml/mathml.h"
#include "zolt/mathml/mathml_tree.h"

namespace zolt::mathml::detail {

using math::common::ReadErrorE;

/// Writes presentation MathML as LaTeX, whose reader knows how rows of operators are read, and remembers
/// which element each part is of. Keeps a stack instead of recursion.
class PresentationReaderC {
 public:
  /// `tree` must outlive the reader.
  explicit PresentationReaderC(MathmlTreeC const& tree) : tree_(tree) {}

  /// Writes the element. False when something in it has no meaning; then `crefFault` says what and why.
  [[nodiscard]] bool read(MathmlIdT id);
  wstring const& crefLatex() const { return latex_; }

  struct FaultS {
    ReadErrorE cause = math::common::READ_ERROR_NONE;
    MathmlIdT element = no_element;
  };
  FaultS const& crefFault() const { return fault_; }
  /// The element that a character of the LaTeX is of.
  MathmlIdT elementAt(std::size_t position) const;

 private:
  enum TaskE {
    TASK_ELEMENT,
    TASK_BARE,  ///< an element without the braces that keep its parts together
    TASK_ROW,   ///< the children of an element
    TASK_UPRIGHT,
    TASK_TABLE,
    TASK_TEXT
  };
  struct TaskS {
    TaskE kind;
    MathmlIdT element;
    std::u16string_view text = {};  ///< of a table, its environment
    std::size_t count = 0;
  };

  // What elements are. None of these looks at more than one element's children.
  MathmlElementS const& at(MathmlIdT id) const { return tree_.cref(id); }
  std::vector<MathmlIdT> childrenOf(MathmlIdT id) const;
  bool isSpace(MathmlIdT id) const;
  bool isRow(MathmlIdT id) const;
  MathmlIdT coreOf(MathmlIdT id) const;
  bool isSign(MathmlIdT id, std::u16string_view text) const;
  char16_t fenceOf(MathmlIdT id) const;
  bool isEmptyFence(MathmlIdT id) const;
  bool isFenced(std::vector<MathmlIdT> const& row) const;
  bool isHalfFenced(std::vector<MathmlIdT> const& row) const;
  bool isAtop(MathmlIdT id) const;
  bool groups(std::vector<MathmlIdT> const& row) const;
  bool endsWithDifferential(std::vector<MathmlIdT> const& row) const;
  std::size_t countPrimesOf(MathmlIdT id) const;

  // Elements.
  void readElement(MathmlIdT id, TaskE kind);
  void readRow(MathmlIdT id, TaskE kind);
  std::size_t readTogether(std::vector<MathmlIdT> const& row, std::size_t place);
  bool hasSides(std::vector<MathmlIdT> const& row) const;
  void readAction(MathmlIdT id);
  void readFraction(MathmlIdT id);
  void readRoot(MathmlIdT id);
  void readCommand(std::u16string_view command, MathmlIdT id, std::vector<MathmlIdT> const& row);
  void readScripts(MathmlIdT id);
  void readMultiscripts(MathmlIdT id);
  void readFenced(MathmlIdT id);
  void readTable(MathmlIdT id, std::u16string_view environment);
  void readEnclosed(MathmlIdT id);

  // Tokens.
  void readToken(MathmlIdT id);
  void readIdentifier(MathmlIdT id, wstring const& name);
  void readNumber(MathmlIdT id, wstring const& number);
  void readSign(MathmlIdT id, wstring const& sign);
  void readBar(MathmlIdT id, char16_t bar);
  bool needsDelimiter() const;
  std::size_t countUpright(std::vector<MathmlIdT> const& row, std::size_t first) const;
  void readUprightRun(MathmlIdT id, std::size_t count);
  wstring letters(MathmlIdT id) const;

  // What is planned last is written first.
  void later(MathmlIdT id, TaskE kind = TASK_ELEMENT) { tasks_.push_back({kind, id}); }
  void later(std::u16string_view text, MathmlIdT id) { tasks_.push_back({TASK_TEXT, id, text}); }
  void laterArgument(MathmlIdT id);
  void laterScripts(MathmlIdT base, MathmlIdT lower, MathmlIdT upper);
  void laterScript(std::u16string_view sign, MathmlIdT id);
  void laterUpper(MathmlIdT id);
  void laterPrimes(std::size_t count, MathmlIdT id);
  void laterBase(MathmlIdT id);
  void laterDelimiter(std::u16string_view side, std::u16string_view delimiter, MathmlIdT id);
  void put(std::u16string_view text, MathmlIdT id);
  void fail(MathmlIdT id, ReadErrorE cause);

  MathmlTreeC const& tree_;
  wstring latex_;
  std::vector<std::pair<std::size_t, MathmlIdT>> places_;  // where the part of an element begins
  std::vector<TaskS> tasks_;                               // the next task is the last element
  FaultS fault_;
  bool endsCommand_ = false;  // a letter after the LaTeX needs a blank
  bool inIntegral_ = false;   // an integral sign has been read
};

}  // namespace zolt::mathml::detail
