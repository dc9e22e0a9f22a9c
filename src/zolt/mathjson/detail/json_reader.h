#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "zolt/algexpr/node.h"
#include "zolt/common/read_error.h"
#include "zolt/mathjson/detail/json_table.h"

namespace zolt::mathjson::detail {

/// Makes expression nodes of the values of a JSON text, which are handed in one after the other, as a parser
/// finds them. Each operation is false when the value means nothing, or is in the wrong place: nothing more
/// is to be handed in then.
class JsonReaderC {
 public:
  /// `text` must outlive the reader.
  explicit JsonReaderC(std::u16string_view text) : text_(text) {}

  [[nodiscard]] bool takeNumber();
  [[nodiscard]] bool takeString(wstring const& value);
  /// A truth value or "null".
  [[nodiscard]] bool takeWord();
  [[nodiscard]] bool beginArray();
  [[nodiscard]] bool endArray();
  [[nodiscard]] bool beginObject();
  [[nodiscard]] bool takeKey(wstring const& key);
  [[nodiscard]] bool endObject();
  /// The text is no JSON after the last value. Returns false.
  bool refuseText();

  /// The node of the whole text, after all of it was handed in.
  oss::PointerTC<math::algexpr::NodeABC> takeNode();
  math::common::ReadErrorS const& crefError() const { return error_; }

 private:
  using NodeT = oss::PointerTC<math::algexpr::NodeABC>;

  enum KeyE { KEY_NONE, KEY_NUMBER, KEY_SYMBOL, KEY_FUNCTION, KEY_MINUS, KEY_OTHER };

  /// An array or object whose values are being read.
  struct FrameS {
    bool isArray;
    KeyE key;
    char16_t minus;  // of the exponent of a number
    NodeT head;      // the name of the function
    std::size_t begin;
    std::size_t firstOperand;
  };

  void findToken();
  /// Takes away the innermost array or object, whose end was found; none when it was skipped.
  std::optional<FrameS> endFrame();
  bool isSkipped() const;
  bool mayBegin() const;
  bool push(NodeT node, math::common::ReadErrorE cause);
  NodeT makeSymbol(wstring const& name);
  NodeT makeCall(wstring const& head, std::vector<NodeT> const& operands);
  bool fail(math::common::ReadErrorE cause);
  bool failAt(std::size_t begin, math::common::ReadErrorE cause);

  std::u16string_view text_;
  std::size_t begin_ = 0;  // of the current token
  std::size_t end_ = 0;
  std::vector<FrameS> frames_;
  std::vector<NodeT> operands_;
  std::size_t skippedDepth_ = 0;  // of values that say nothing
  math::common::ReadErrorS error_;
};

/// The function of a row applied to operands as MathJSON has them; null when they do not fit.
oss::PointerTC<math::algexpr::NodeABC> makeJsonFunction(
    JsonRowS const& row, std::vector<oss::PointerTC<math::algexpr::NodeABC>> const& operands);

/// What a character that JSON cannot have is written after: four hexadecimal digits follow.
constexpr char16_t escape_mark = u'\uFFFE';
/// What the parser takes for another character, since it is the mark of the end of 16-bit text. JSON's own
/// escape carries it.
constexpr char16_t not_read = u'\uFFFF';

}  // namespace zolt::mathjson::detail
